#include "Functions/getMaxSize/getMaxSize.h"

#include <cinttypes>
#include <cstring>

#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/raidOptions.h"
#include "Public/raidRules.h"

static constexpr KT_U16 STRIPE = 64; // KB; the largest size does not depend on it

namespace {
struct MaxSizeOptions {
    OptionCounts given;
    KT_U8 level = KT_RAID0;
    int parity = 0;
    PdList disks = {};
    KT_U8 rounding = KT_ROUND_NONE;
};
} // namespace

// A size is only asked for, so the list is read leniently; what the record cannot hold is refused all the same.
static Take takeAnyDisks(const char* value, PdList& disks) {
    if (parsePdList(value, PdItems::Lenient, disks)) return Take::Yes;
    out("-d : invalid PD ID '%s'\n", value);
    return Take::Failed;
}

static Take takeOption(int option, const char* value, MaxSizeOptions& o) {
    switch (option) {
    case 'g':
        return takeRounding(emptyIsZero(value), o.rounding);
    case 'q':
        return takeParity(emptyIsZero(value), o.parity);
    case 'r':
        return takeLevel(value, o.level);
    case 'd':
        return takeAnyDisks(value, o.disks);
    default:
        return Take::Help;
    }
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, MaxSizeOptions& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    return scanOptions({argc, argv, row}, getmaxsizeOptions, o.given, result, take);
}

static bool checkOptions(const char* command, MaxSizeOptions& o) {
    return givenOnce(getmaxsizeOptions, o.given) && givenRequired(getmaxsizeOptions, o.given, command) &&
           checkLevel(USE_MAX_SIZE, o.level) && checkDiskCount(USE_MAX_SIZE, o.level, o.disks.count) &&
           checkParity(USE_MAX_SIZE, o.level, o.disks.count, o.given['q'] != 0, o.parity);
}

static bool checkDisks(const PdList& disks) {
    for (unsigned i = 0; i < disks.count; ++i) {
        KT_U16 pd = disks.ids[i];
        KT_U8 bits = 0;
        if (readDiskStatus(pd, bits) != KT_OK) return false;
        // Unlike for a creation, only a disk that has this role and no other is refused; foreign ones are not.
        switch (bits) {
        case KT_PD_OFFLINE:
            out("Offline disk %d can not be used to create VD.\n", pd);
            return false;
        case KT_PD_GLOBAL_SPARE:
        case KT_PD_DEDICATED_SPARE:
            out("Spare disk %d can not be used to create VD.\n", pd);
            return false;
        default:
            break;
        }
    }
    return true;
}

static int showMaxSize(const MaxSizeOptions& o) {
    _Create_LD_Param param = {};
    param.RaidMode = o.level;
    param.HDCount = o.disks.count;
    param.RoundingScheme = o.rounding;
    param.StripeBlockSize = STRIPE;
    param.NumParityDisk = static_cast<KT_U8>(o.parity);
    bool hybrid = o.level == KT_TANDEM_CAPACITY || o.level == KT_TANDEM_SAFE;
    if (hybrid) param.TandemWaterMark = TANDEM_WATER_MARK;
    memcpy(param.HDIDs, o.disks.ids, o.disks.count * sizeof o.disks.ids[0]);
    KT_U8 status = KT_LD_GetMaxSize(gCurrentAdapter, &param);
    if (status == KT_OK) {
        out("\nThe maxsize that VD can create with is:   %" PRIu64 " K\n", param.Size);
    } else {
        out("\nFailed to get Maxsize (error %d: %s).\n", status, ErrorMessage(status));
    }
    return status;
}

int doGetMaxsize(int argc, char** argv, _cmd_struct* row) {
    MaxSizeOptions o;
    int result = 0;
    if (!readOptions(argc, argv, row, o, result)) return result;
    if (!checkOptions(argv[0], o) || !checkDisks(o.disks)) return 1;
    return showMaxSize(o);
}
