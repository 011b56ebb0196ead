// The reader of the assignment file: the first byte is the adapter's port count, the rest the file.
#include <vector>

#include "Functions/restore_cfg/assignment.h"
#include "Public/common.h"
#include "tests/fuzz/fuzz.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    printToNowhere();
    gAdapterInfo[0].PortCount = data[0] % 16;
    std::vector<char> text(data + 1, data + size);
    const std::string raw(text.begin(), text.end());
    clean_comment(text.data(), text.size());
    _updata_sasaddr_info_t info = {};
    if (KT_AutoGet_SASAddrSN(text.data(), text.size(), &info) != 0) return 0;
    for (unsigned port = 0; port < CFG_PORTS; ++port)
        require(info.port_sasaddr[port] == 0 || (info.available_port >> port & 1) != 0);
    const std::string advanced = advancedAssignment(raw, info);
    require(advanced.size() + 64 > raw.size());
    if (info.serialnumber_flag != 0) {
        const std::string next = serialNumberText(info, nextSerialCounter(info.serialnumber_current));
        require(advanced.find(next) != std::string::npos);
    }
    return 0;
}
