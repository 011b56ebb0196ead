// create -o vd in the array-based set: a virtual disk in an empty slot of an array.
#include <algorithm>
#include <cstring>

#include "Functions/create/createV2Steps.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/raidRules.h"

static constexpr KT_U64 LEAST_SIZE = 100; // MB

// What a virtual disk needs; reported as createV2Options reports its own.
static const OptionSet vdNeeds = {.letters = "", .longOptions = nullptr, .required = "a"};

static bool checkOptions(const char* command, const CreateV2Options& o) {
    if (!givenRequired(vdNeeds, o.given, command)) return false;
    if (o.given['r'] == 0 && o.given['d'] == 0 && o.given['q'] == 0) return true;
    out("-r, -d and -q option are not allowed in creating VD\n");
    return false;
}

static bool readArray(KT_U16 id, _DG_Info_Request& request, int& result) {
    KT_U8 status = askItem(KT_DG_GetInfo, id, request);
    if (status == KT_OK && request.header.numReturned == 1) return true;
    out("Unable to get info for array %d  (error %d: %s)\n", id, status, ErrorMessage(status));
    result = status != KT_OK ? status : 1;
    return false;
}

static bool checkSlot(const CreateV2Options& o, const _DG_Info& array) {
    if (o.given['l'] == 0) return true;
    // Whatever the record says, it holds no more slots than this.
    constexpr int RECORD_SLOTS = sizeof array.VDIDs / sizeof array.VDIDs[0];
    int slots = std::min<int>(array.VDSlotCount, RECORD_SLOTS);
    if (o.slot >= slots) {
        out("Invalid slot number.  Total slot is %d\n", array.VDSlotCount);
        return false;
    }
    if (array.VDIDs[o.slot] == KT_NO_ID) return true;
    out("Slot number %d has already occupied by VD %d\n", o.slot, array.VDIDs[o.slot]);
    return false;
}

// What the array makes of the options.
static bool checkAgainstArray(const CreateV2Options& o, const _DG_Info& array) {
    if (array.RaidMode == KT_RAID0 && o.init != KT_INIT_NONE && o.init != KT_INIT_QUICK) {
        out("Invalid initialization mode. RAID0 only support none and quick initialize.\n");
        return false;
    }
    KT_U8 mostSlots = currentAdapter().MaxVDPerDG;
    if (o.given['s'] != 0 && array.VDSlotCount >= mostSlots) {
        out("Total slots has reached its max number (%d), VD will use up all specified slot space, '-s' is not "
            "allowed.\n",
            mostSlots);
        return false;
    }
    return true;
}

static bool checkSize(const CreateV2Options& o) {
    if (o.given['s'] == 0) return true;
    if ((o.rounding == KT_ROUND_1GB && o.size < 1000) || (o.rounding == KT_ROUND_10GB && o.size < 10000)) {
        out("VD size is too small for the specified rounding scheme.\n");
        return false;
    }
    if (o.size >= LEAST_SIZE) return true;
    out("VD size should be at least 100 MB.\n");
    return false;
}

// Without a cache mode the write policy follows the adapter alone, whatever -w or the battery said.
static void overrideCache(const CreateV2Options& o, KT_U8& cache) {
    if (o.given['c'] != 0) return;
    cache &= KT_CACHE_READ_AHEAD;
    if (!choosesWriteCache()) cache |= KT_CACHE_OFF;
}

static void fillParam(const CreateV2Options& o, const _DG_Info& array, _CreateOrModify_VD_Param& param) {
    param.VDID = KT_NO_ID;
    param.DGID = o.array;
    param.RaidMode = array.RaidMode;
    param.SubVDCount = array.SubVDCount;
    param.NumParityDisk = array.NumParityDisk;
    param.DGSlotNum = static_cast<KT_U8>(o.slot);
    param.StripeBlockSize = o.given['b'] != 0 ? o.stripe : array.StripeBlockSize;
    param.Size = o.size;
    param.RoundingScheme = o.rounding;
    param.CachePolicy = o.cache;
    param.InitializationOption = o.init;
    param.SectorCoefficient = 1;
    param.BlockSize = array.BlockSize;
    char name[NAME_FIELD];
    snprintf(name, sizeof name, "VD_%s_1", RaidModeStrInCreate(array.RaidMode));
    fillName(param.Name, o.given['n'] != 0 ? o.name : name);
}

static int create(_CreateOrModify_VD_Param& param, const _DG_Info& array) {
    KT_U8 status = KT_CreateOrModify_VD(gCurrentAdapter, &param);
    if (status == KT_OK) {
        out("Create VD %d successfully.\n", param.VDID);
    } else if (status == KT_ERR_NO_RESOURCE) {
        out("\nNo resources. Max available size is %lld M\n",
            static_cast<long long>(array.RemainingManagedSpace >> 10));
    } else {
        out("\nFailed to create virtual disk (error %d: %s).\n", status, ErrorMessage(status));
    }
    return status;
}

int createVdInArray(const char* command, CreateV2Options& o) {
    if (!checkOptions(command, o)) return 1;
    _DG_Info_Request request;
    int result = 0;
    if (!readArray(o.array, request, result)) return result;
    const _DG_Info& array = request.dgInfo[0];
    if (!checkSlot(o, array)) return 1;
    if (o.given['c'] == 0) addDefaultCache(array.RaidMode, o.cache);
    if (!checkAgainstArray(o, array) || !checkSize(o)) return 1;
    overrideCache(o, o.cache);
    if (!checkLevel(USE_VD_IN_ARRAY, array.RaidMode)) return 1;
    _CreateOrModify_VD_Param param = {};
    fillParam(o, array, param);
    return create(param, array);
}
