// create -o array: a disk array from physical disks.
#include <cstring>

#include "Functions/create/createV2Steps.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/hold.h"
#include "Public/listing.h"
#include "Public/raidRules.h"

// Arrays that one call lists when the adapter sets no limit.
static constexpr KT_U16 ARRAYS_PER_PAGE = 64;

// What an array needs; these letters are reported as createV2Options reports its own.
static const OptionSet arrayNeeds = {.letters = "", .longOptions = nullptr, .required = "rd"};

static bool checkOptions(const char* command, const CreateV2Options& o, int& result) {
    result = 1;
    if (!givenRequired(arrayNeeds, o.given, command)) return false;
    if (o.given['a'] != 0) {
        out("-a option is not used for creating array\n");
        return false;
    }
    if (!checkParityAllowed(o.level, o.given['q'] != 0)) {
        result = KT_ERR_NOT_SUPPORTED;
        return false;
    }
    return true;
}

// The default name counts on from the arrays that exist. False when they cannot be counted; `result` is then what the
// command returns.
static bool nameArray(const CreateV2Options& o, KT_U8 (&field)[NAME_FIELD], int& result) {
    if (o.given['n'] != 0) {
        fillName(field, o.name);
        return true;
    }
    auto count = [](const _DG_Info&) { return true; };
    KT_U16 perPage = recordsPerPage(sizeof(_DG_Info), ARRAYS_PER_PAGE);
    ListEnd end = walkList<_DG_Info>(KT_DG_GetInfo, EVERYTHING, perPage, count);
    if (end.unallocated != 0) {
        out("Unable to allocate buffer for %zu bytes.\n", end.unallocated);
        result = KT_ERR_NO_RESOURCE;
        return false;
    }
    if (end.cut) {
        out("\nFailed to create array (error %d: %s).\n", end.status, ErrorMessage(end.status));
        result = end.status;
        return false;
    }
    char name[NAME_FIELD];
    snprintf(name, sizeof name, "DG_%s_%u", RaidModeStrInCreate(o.level), end.total + 1);
    fillName(field, name);
    return true;
}

static bool answered(KT_U8 status, const _RequestHeader& header) {
    return status == KT_OK && header.numReturned == 1;
}

static bool refuseUnreadable(KT_U16 pd, KT_U8 status) {
    out("Unable to get info of PD %d, (error %d : %s)\n", pd, status, ErrorMessage(status));
    return false;
}

static bool checkDisk(KT_U16 pd, KT_U32 sectorSize) {
    _HD_Info_Request info;
    KT_U8 status = KT_OK;
    if (!readDisk(pd, info, status)) return refuseUnreadable(pd, status);
    if (info.hdInfo[0].BlockSize != sectorSize) {
        out("All PDs should have the same sector size, PD %d has sector size %u\n", pd, info.hdInfo[0].BlockSize);
        return false;
    }
    _HD_RAID_Status_Request raid;
    status = askItem(KT_PD_GetHDRaidStatus, pd, raid);
    if (status != KT_OK || raid.header.numReturned == 0) return refuseUnreadable(pd, status);
    switch (diskRole(raid.hdRaidStatus[0].Status)) {
    case DiskRole::Offline:
        out("Offline disk %d can not be used to create arrray.\n", pd);
        return false;
    case DiskRole::Spare:
        out("Spare disk %d can not be used to create array.\n", pd);
        return false;
    case DiskRole::Foreign:
        out("Foreign disk %d can not be used to create array.\n", pd);
        return false;
    default:
        return true;
    }
}

// The first disk sets the sector size that all must have.
static bool checkDisks(const PdList& disks, KT_U32& sectorSize) {
    _HD_Info_Request first;
    KT_U8 status = KT_OK;
    if (!readDisk(disks.ids[0], first, status)) {
        out("Unable to get info of PD %d (error %d : %s)\n", disks.ids[0], status, ErrorMessage(status));
        return false;
    }
    sectorSize = first.hdInfo[0].BlockSize;
    for (unsigned i = 0; i < disks.count; ++i) {
        if (!checkDisk(disks.ids[i], sectorSize)) return false;
    }
    return true;
}

static void fillParam(const CreateV2Options& o, _CreateOrModify_DG_Param& param) {
    param.DGID = KT_NO_ID;
    param.RaidMode = o.level;
    param.NumParityDisk = static_cast<KT_U8>(o.parity);
    param.StripeBlockSize = o.stripe;
    param.Size = o.size;
    param.InitializationOption = o.init;
    param.PDCount = o.disks.count;
    memcpy(param.PDIDs, o.disks.ids, o.disks.count * sizeof o.disks.ids[0]);
}

static int showSize(_CreateOrModify_DG_Param& param) {
    KT_U8 status = KT_CreateOrModify_DG(gCurrentAdapter, &param, 1);
    if (status != KT_OK) {
        out("\nFailed to calculate array size by the given parameters(error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    KT_U64 megabytes = param.Size >> 10;
    out("\nArry of size 0x%x%08x M can be created by the given parameters\n", static_cast<unsigned>(megabytes >> 32),
        static_cast<unsigned>(megabytes));
    return KT_OK;
}

// Gives the new array its write cache and name; an array whose settings cannot be read keeps them.
static void setArrayCache(const _CreateOrModify_DG_Param& param, KT_BOOLEAN cacheOn) {
    _DG_Config_Request request;
    KT_U8 status = askItem(KT_DG_GetConfig, param.DGID, request);
    if (!answered(status, request.header)) return;
    _DG_CONFIG& config = request.dgConfig[0];
    config.WriteCacheOn = cacheOn;
    memcpy(config.Name, param.Name, sizeof config.Name);
    if (KT_DG_SetConfig(gCurrentAdapter, param.DGID, &config) != KT_OK) out("Set Array cache on failed!\n");
}

static int create(_CreateOrModify_DG_Param& param, KT_BOOLEAN cacheOn) {
    const Hold hold("the new array would be left without its write cache setting and name");
    KT_U8 status = KT_CreateOrModify_DG(gCurrentAdapter, &param, 0);
    if (status == KT_OK) {
        out("Create array %d successfully.\n", param.DGID);
        setArrayCache(param, cacheOn);
    } else if (status == KT_ERR_NO_RESOURCE) {
        out("\nNo resources. Max available size is %lld M\n", static_cast<long long>(param.Size >> 10));
    } else {
        out("\nFailed to create array (error %d: %s).\n", status, ErrorMessage(status));
    }
    return status;
}

int createArray(const char* command, CreateV2Options& o) {
    int result = 0;
    if (!checkOptions(command, o, result)) return result;
    _CreateOrModify_DG_Param param = {};
    if (!nameArray(o, param.Name, result)) return result;
    if (!checkDiskCount(USE_CREATE_ARRAY, o.level, o.disks.count) ||
        !checkParity(USE_CREATE_ARRAY, o.level, o.disks.count, o.given['q'] != 0, o.parity)) {
        return 1;
    }
    fillParam(o, param);
    if (!checkDisks(o.disks, param.BlockSize)) return 1;
    if (o.given[OPT_WAIVE] == 0 && !acceptFileSystems(o.disks, true, result)) return result;
    return o.given[OPT_SIZE_ONLY] != 0 ? showSize(param) : create(param, o.arrayCache);
}
