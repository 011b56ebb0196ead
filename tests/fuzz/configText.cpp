// The reader of the configuration text: the first byte chooses the form, the rest is the file.
#include <vector>

#include "Public/cfg/raidConfig.h"
#include "Public/cfg/reader.h"
#include "Public/cfg/writer.h"
#include "Public/common.h"
#include "Public/utility.h"
#include "tests/fuzz/fuzz.h"

static void requireInside(const CfgPlace& place, size_t size) {
    require(place.length <= size && place.at <= size - place.length);
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    printToNowhere();
    const KT_U8 mode = data[0] % 2 == 0 ? CFG_FULL_FORM : CFG_PHY_FORM;
    // A copy of exactly this size, so that every byte behind it is noticed.
    std::vector<char> text(data + 1, data + size);
    CfgRaidHolder raid = newCfgRaid();
    _HBA_Info_Page page = {};
    _file_sasaddr_place_info_t places = {};
    places.available_port = 0xFF;
    KT_U16 counts = 0;
    clean_comment(text.data(), text.size());
    if (!KT_Analyze_Grammar(text.data(), text.size(), &places, &page, raid->lds, raid->spares, &counts, mode)) return 0;
    require(GetHBAInfoChksum_Flash(&page) == 0);
    requireInside(places.serialnumber_place, text.size());
    for (const CfgPlace& place : places.sasaddr_place)
        requireInside(place, text.size());
    gAdapterInfo[0].PortCount = CFG_PORTS;
    std::string written;
    KT_Form_Grammar(0, written, &page, raid->lds, static_cast<KT_U8>(counts), raid->spares,
                    static_cast<KT_U8>(counts >> 8), mode);
    require(!written.empty());
    return 0;
}
