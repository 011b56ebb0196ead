#include "Functions/create/create.h"

#include <cstring>
#include <strings.h>

#include "Functions/create/createShared.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/listing.h"
#include "Public/raidRules.h"

// Above this device id an adapter takes a size only when it is forced to, and then also wants to be told so.
static constexpr KT_U16 LAST_FREELY_SIZED = 0x4700;

namespace {
struct CreateOptions {
    OptionCounts given;
    KT_U8 level = KT_RAID0;
    int parity = 0;
    PdList disks = {};
    TypedName name = {};
    KT_U16 stripe = 64; // KB
    KT_U8 cache = 0;
    KT_U32 size = 0;
    KT_U8 rounding = KT_ROUND_NONE;
    KT_U8 init = KT_INIT_QUICK;
};
} // namespace

static Take takeStripe(const char* value, KT_U16& stripe) {
    if (!isTypedNumber(value)) {
        out("-b : invalid stripe block size '%s'.\n", value);
        return Take::Failed;
    }
    if (parseDecimal(value, stripe) && isValidStripe(stripe)) return Take::Yes;
    out("-b : invalid stripe block size '%s'.Please refer to info -o hba command to get detail stripe size support "
        "information.\n",
        value);
    return Take::Failed;
}

static Take takeObject(const char* value) {
    if (strcasecmp(value, "array") != 0 || arrayBasedRaid) return Take::Yes;
    out("-o : array is not supported on this adapter\n");
    return Take::Failed;
}

static Take takeSize(const char* value, KT_U32& size) {
    if (parseDecimal(value, size)) return Take::Yes;
    out("-s : invalid size '%s'.\n", value);
    return Take::Failed;
}

static Take takeSupportedRounding(const char* value, KT_U8& rounding) {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_NO_ROUNDING) == 0) return takeRounding(value, rounding);
    out("Gigabyte rounding scheme is not supported\n");
    return Take::Failed;
}

static Take takeOption(int option, const char* value, CreateOptions& o) {
    switch (option) {
    case 'b':
        return takeStripe(value, o.stripe);
    case 'c':
        // The mode takes the place of every policy given before it.
        o.cache = 0;
        return takeCacheMode(value, false, o.cache);
    case 'w':
        return takeWritePolicy(value, false, o.cache);
    case 'p':
        return takeReadPolicy(value, o.cache);
    case 'd':
        return takeDisks(value, o.disks);
    case 'g':
        return takeSupportedRounding(value, o.rounding);
    case 'i':
        return takeInit(value, false, o.init);
    case 'n':
        return takeName(value, LONGEST_LD_NAME, o.name);
    case 'o':
        return takeObject(value);
    case 'q':
        return takeParity(value, o.parity);
    case 'r':
        return takeLevel(value, o.level);
    case 's':
        return takeSize(value, o.size);
    case OPT_WAIVE:
    case OPT_FORCE_SIZE:
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, CreateOptions& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    return scanOptions({argc, argv, row}, createOptions, o.given, result, take);
}

static bool checkOptions(const char* command, CreateOptions& o, int& result) {
    result = 1;
    if (!givenOnce(createOptions, o.given) || !givenRequired(createOptions, o.given, command)) return false;
    if (o.given['n'] != 0 && !checkName(o.name)) return false;
    bool parityGiven = o.given['q'] != 0;
    if (!checkParityAllowed(o.level, parityGiven)) {
        result = KT_ERR_NOT_SUPPORTED;
        return false;
    }
    return checkLevel(USE_CREATE_VD, o.level) && checkDiskCount(USE_CREATE_VD, o.level, o.disks.count) &&
           checkParity(USE_CREATE_VD, o.level, o.disks.count, parityGiven, o.parity);
}

// False with a message and the command's result when the disk cannot become part of the virtual disk.
static bool checkDisk(KT_U16 pd, KT_U8 level, int& result) {
    result = 1;
    KT_U8 bits = 0;
    if (readDiskStatus(pd, bits) != KT_OK) return false;
    switch (diskRole(bits)) {
    case DiskRole::Offline:
        out("Offline disk %d can not be used to create VD.\n", pd);
        return false;
    case DiskRole::Spare:
        out("Spare disk %d can not be used to create VD.\n", pd);
        return false;
    case DiskRole::Foreign:
        out("Foreign disk %d can not be used to create VD.\n", pd);
        return false;
    case DiskRole::Usable:
        break;
    }
    // The hybrid levels share their disks.
    KT_U8 status = HDisFreeDiskForKelo(pd, KT_BLOCK_FREE);
    if (status == KT_OK || isHybridLevel(level)) return true;
    if (status == KT_ERR_PD_TYPES_DIFFER) {
        out("Non-free disk %d can not be used to create VD.\n", pd);
        return false;
    }
    out("Can not get disk %d information(error %d: %s).\n", pd, status, ErrorMessage(status));
    result = status;
    return false;
}

static bool checkDisks(const CreateOptions& o, int& result) {
    for (unsigned i = 0; i < o.disks.count; ++i) {
        if (!checkDisk(o.disks.ids[i], o.level, result)) return false;
    }
    return true;
}

// The default name counts on from the virtual disks that exist. False when they cannot be counted; `result` is then
// what the command returns.
static bool nameVirtualDisk(const CreateOptions& o, KT_U8 (&field)[NAME_FIELD], int& result) {
    if (o.given['n'] != 0) {
        fillName(field, o.name);
        return true;
    }
    auto count = [](const _LD_Info&) { return true; };
    ListEnd end = walkList<_LD_Info>(KT_LD_GetInfo, EVERYTHING, recordsPerPage(sizeof(_LD_Info)), count);
    if (end.unallocated != 0) {
        out("Unable to allocate buffer for %zu bytes.\n", end.unallocated);
        result = KT_ERR_NO_RESOURCE;
        return false;
    }
    if (end.cut) {
        out("\nFailed to create virtual disk (error %d: %s).\n", end.status, ErrorMessage(end.status));
        result = end.status;
        return false;
    }
    char name[NAME_FIELD];
    const char* prefix = isHybridLevel(o.level) ? "" : "VD_";
    snprintf(name, sizeof name, "%s%s_%u", prefix, RaidModeStrInCreate(o.level), end.total + 1);
    fillName(field, name);
    return true;
}

static void fillSize(const CreateOptions& o, _Create_LD_Param& param) {
    param.Size = o.size;
    if (currentAdapter().DevID <= LAST_FREELY_SIZED) return;
    if (o.given[OPT_FORCE_SIZE] != 0) {
        param.ReservedForApp = 1;
    } else if (!isHybridLevel(o.level)) {
        param.Size = 0;
    }
}

static void fillParam(const CreateOptions& o, _Create_LD_Param& param) {
    param.RaidMode = o.level;
    param.HDCount = o.disks.count;
    param.RoundingScheme = o.rounding;
    param.StripeBlockSize = o.stripe;
    param.NumParityDisk = static_cast<KT_U8>(o.parity);
    param.CachePolicy = o.cache;
    param.InitializationOption = o.init;
    param.SectorCoefficient = 1;
    if (isHybridLevel(o.level)) param.TandemWaterMark = TANDEM_WATER_MARK;
    memcpy(param.HDIDs, o.disks.ids, o.disks.count * sizeof o.disks.ids[0]);
    fillSize(o, param);
}

int doCreate(int argc, char** argv, _cmd_struct* row) {
    CreateOptions o;
    int result = 0;
    if (!readOptions(argc, argv, row, o, result)) return result;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    if (!checkOptions(argv[0], o, result) || !checkDisks(o, result)) return result;
    if (o.given[OPT_WAIVE] == 0 && !acceptFileSystems(o.disks, false, result)) return result;
    if (o.given['c'] == 0) addDefaultCache(o.level, o.cache);
    _Create_LD_Param param = {};
    fillParam(o, param);
    if (!nameVirtualDisk(o, param.Name, result)) return result;
    KT_U8 status = KT_LD_Create(gCurrentAdapter, &param);
    if (status != KT_OK) out("\nFailed to create virtual disk (error %d: %s).\n", status, ErrorMessage(status));
    return status;
}
