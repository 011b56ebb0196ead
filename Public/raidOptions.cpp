#include "Public/raidOptions.h"

static constexpr KT_U8 NO_LEVEL = 255;

Take takeLevel(const char* value, KT_U8& level) {
    level = chooseRaidMode(value);
    if (level != NO_LEVEL) return Take::Yes;
    out("-r : invalid raid mode %s\n", value);
    return Take::Failed;
}

Take takeParity(const char* value, int& parity) {
    if (parseCapped(value, parity)) return Take::Yes;
    out("-q : invalid number of parity disks '%s'\n", value);
    return Take::Failed;
}

Take takeDisks(const char* value, PdList& disks) {
    if (parsePdList(value, PdItems::Strict, disks)) return Take::Yes;
    out("-d : invalid PD ID '%s'\n", value);
    return Take::Failed;
}

Take takeRounding(const char* value, KT_U8& rounding) {
    KT_U8 gigabytes = 0;
    bool known = parseDecimal(value, gigabytes);
    if (known && gigabytes == 0) {
        rounding = KT_ROUND_NONE;
    } else if (known && gigabytes == 1) {
        rounding = KT_ROUND_1GB;
    } else if (known && gigabytes == 10) {
        rounding = KT_ROUND_10GB;
    } else {
        out("-g : invalid giga byte rounding scheme '%s'\n", value);
        return Take::Failed;
    }
    return Take::Yes;
}
