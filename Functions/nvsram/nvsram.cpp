#include "Functions/nvsram/nvsram.h"

#include <cstring>
#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/hold.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

static constexpr KT_U32 TRANSFER = sizeof(_NVSRAM_Data::Data);

namespace {
struct NvsramOptions {
    KT_U8 action = KT_NVSRAM_READ;
    KT_U32 offset = 0;
    KT_U32 count = 1;
    const char* countText = "";
    int pattern = 0x5A;
};
} // namespace

static Take takeCount(const char* value, NvsramOptions& o) {
    o.countText = value;
    if (parseDecimal(value, o.count)) return Take::Yes;
    out("-c : invalid byte counts '%s'\n", value);
    return Take::Failed;
}

static Take takePattern(const char* value, NvsramOptions& o) {
    if (isHex(value) && parseCappedOrHex(value, o.pattern)) return Take::Yes;
    out("-p: invalid hex pattern '%s'\n", value);
    return Take::Failed;
}

static Take takeOption(int option, const char* value, NvsramOptions& o) {
    switch (option) {
    case 'a':
        o.action = strcasecmp(value, "write") == 0 ? KT_NVSRAM_WRITE : KT_NVSRAM_READ;
        if (o.action == KT_NVSRAM_WRITE || strcasecmp(value, "read") == 0) return Take::Yes;
        out("-a : invalid action '%s'\n", value);
        return Take::Failed;
    case 's':
        if (parseDecimalOrHex(value, o.offset)) return Take::Yes;
        out("-s : invalid address offset '%s'\n", value);
        return Take::Failed;
    case 'c':
        return takeCount(value, o);
    case 'p':
        return takePattern(value, o);
    default:
        return Take::Help;
    }
}

void Nvsram_Byte_PrintInfo(const KT_U8* data, KT_U32 length, KT_U32 offset) {
    out("nvsram offset at : 0x%08x\n", offset);
    for (KT_U32 done = 0; done < length;) {
        out("0x%02x\t", data[done]);
        ++done;
        if (done % 8 == 0) out("\n");
        if (done % 64 != 0) continue;
        out("\n");
        if (done < length) out("nvsram offset: 0x%08x\n", offset + done);
    }
}

// One transfer of at most TRANSFER bytes.
static KT_U8 transfer(const NvsramOptions& o, KT_U32 offset, KT_U32 length) {
    _NVSRAM_Data data = {};
    data.Offset = offset;
    data.Length = length;
    if (o.action == KT_NVSRAM_WRITE) memset(data.Data, o.pattern, sizeof data.Data);
    KT_U8 status = KT_Flash_NVSRAM(gCurrentAdapter, o.action, &data);
    if (status != KT_OK) return status;
    if (o.action == KT_NVSRAM_WRITE) {
        out("\n%d bytes have been written into nvsram!\n", static_cast<int>(length));
    } else {
        Nvsram_Byte_PrintInfo(data.Data, length, offset);
    }
    return KT_OK;
}

static KT_U8 transferPieces(const NvsramOptions& o) {
    KT_U32 offset = o.offset;
    KT_U32 left = o.count;
    for (; left > TRANSFER; left -= TRANSFER, offset += TRANSFER) {
        KT_U8 status = transfer(o, offset, TRANSFER);
        if (status != KT_OK) {
            out("\nFailed to run NVSRAM read/write test (error %d: %s).\n", status, ErrorMessage(status));
            return status;
        }
    }
    KT_U8 status = transfer(o, offset, left);
    if (status != KT_OK) {
        out("\nFailed to run nvsram read/write test (error %d: %s).\n", status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 transferAll(const NvsramOptions& o) {
    if (o.action != KT_NVSRAM_WRITE) return transferPieces(o);
    const Hold hold("a part of the range would keep what it held before");
    return transferPieces(o);
}

static bool checkRanges(const NvsramOptions& o) {
    if (o.count == 0) {
        out("Number of bytes should be > 0\n");
        return false;
    }
    if (o.pattern > UINT8_MAX) {
        out("-p: hex pattern should be 8 bit \n");
        return false;
    }
    return true;
}

int doNvsramRW(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    NvsramOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, nvsramOptions, given, result, take)) return result;
    if (!givenOnce(nvsramOptions, given) || !checkRanges(o)) return 1;
    if (!givenRequired(nvsramOptions, given, argv[0])) {
        printHelp(row, HelpStyle::LongOnly);
        return 1;
    }
    // A range that passes the last address would go on at address 0.
    if (o.offset > UINT32_MAX - (o.count - 1)) {
        out("-c : invalid byte counts '%s'\n", o.countText);
        return 1;
    }
    if (o.action == KT_NVSRAM_WRITE && !isKnownAdapter(gCurrentAdapter, result)) return result;
    return transferAll(o);
}
