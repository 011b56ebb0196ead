#include "Functions/rebuild/rebuildV2.h"

#include "Public/activity.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"

static bool checkRequest(const ActivityRequest& request) {
    if (request.action != BGA_START || request.targets.count > 0) return true;
    out("At least one target PD is required\n");
    return false;
}

// A target is free, or a spare kept for this very array.
static bool checkRole(KT_U16 pd, KT_U16 array, int& result) {
    _HD_RAID_Status_Request answer;
    KT_U8 status = getItem(KT_PD_GetHDRaidStatus, pd, answer);
    result = 1;
    if (status != KT_OK) {
        out("Unable to get status of PD %d (error %d: %s).\n", pd, status, ErrorMessage(status));
        result = status;
        return false;
    }
    const _HD_RAID_STATUS& role = answer.hdRaidStatus[0];
    if ((role.Status & KT_PD_NOT_FREE & ~KT_PD_DEDICATED_SPARE) != 0) {
        out("PD %d is not a free disk.\n", pd);
        return false;
    }
    if ((role.Status & KT_PD_DEDICATED_SPARE) != 0 && role.DGID != array) {
        out("PD %d is dedicated for array %d.\n", pd, role.DGID);
        return false;
    }
    return true;
}

static bool checkSize(KT_U16 pd, const _DG_Info& array, int& result) {
    _HD_FreeSpaceInfo space = {};
    KT_U8 status = KT_PD_GetFreeSpaceInfo(gCurrentAdapter, pd, &space);
    if (status != KT_OK) {
        out("Unable to get size of PD %d (error %d: %s).\n", pd, status, ErrorMessage(status));
        result = status;
        return false;
    }
    // What the array uses of each of its members.
    if (space.ValidSize < array.SmallestAvailablePDSize) {
        out("PD %d doesn't have enough space for rebuild.\n", pd);
        result = 1;
        return false;
    }
    return true;
}

static bool checkBlockSize(KT_U16 pd, KT_U16 id, const _DG_Info& array, int& result) {
    _HD_Info_Request answer;
    KT_U8 status = KT_OK;
    if (!readDisk(pd, answer, status)) {
        if (status == KT_OK) status = KT_ERR_FAILED;
        out("Unable to get size of PD %d (error %d: %s).\n", pd, status, ErrorMessage(status));
        result = status;
        return false;
    }
    KT_U32 size = answer.hdInfo[0].BlockSize;
    if (size != array.BlockSize) {
        out("Block size of PD %d (%d) doesn't match block size of array %d (%d).\n", pd, static_cast<int>(size), id,
            static_cast<int>(array.BlockSize));
        result = 1;
        return false;
    }
    return true;
}

static bool checkStart(const ActivityRequest& request, const ActivitySubject& subject, int& result) {
    for (int i = 0; i < request.targets.count; ++i) {
        KT_U16 pd = request.targets.ids[i];
        if (!checkRole(pd, request.id, result) || !checkSize(pd, subject.array, result) ||
            !checkBlockSize(pd, request.id, subject.array, result)) {
            return false;
        }
    }
    return true;
}

static constexpr ActivityCommand rebuildV2Command = {
    .options = rebuildV2Options,
    .target = ActivityTarget::Array,
    .invalidId = "-l : Array id should be a number\n",
    .invalidTargets = "-d:invalid PD IDs %s\n",
    .feature = KT_FEATURE_REBUILD,
    .unsupported = "Rebuilding is not supported by this HBA!\n",
    .infoFailed = "Unable to get info of array %d (error %d: %s).\n",
    .checkRequest = checkRequest,
    .checkStart = checkStart,
    .kinds = {{nullptr, 0, "Rebuild Array will stop Media patrol on PD. Do you want to continue?(y or n)\n"}},
    .start =
        [](const ActivityRequest& request, KT_U8) {
            return KT_LD_DG_StartRebuild(gCurrentAdapter, request.id, request.targets.count, request.targets.ids);
        },
    .started = "Start rebuild successfully\n",
    .startFailed = "Unable to rebuild array %d (error %d: %s).\n",
    .words = {
        .own = KT_BGA_REBUILD,
        .control = KT_DG_BGAControl,
        .refusal = 0,
        .busy = "\nArray %d is having background activity.\n",
        .notOwn = "\nArray %d is not at rebuilding state.\n",
        .idle = "\nArray %d is not doing any background operation.\n",
        .running = {"\nArray %d is currently rebuilding.\n",
                    {{BGA_STOP, "Abort successfully\n", "\nUnable to abort array %d rebuilding (error %d: %s)\n"},
                     {BGA_PAUSE, "Pause successfully\n", "\nUnable to pause array %d rebuilding (error %d: %s)\n"}}},
        .paused = {"\narray %d rebuilding is currently paused\n",
                   {{BGA_RESUME, "Resume successfully\n",
                     "\nRebuilding can not be resumed on array %d (error %d: %s)\n"}}},
        .aborted = {"\nRebuilding array %d is aborted and need to restart.\n",
                    {{BGA_RESTART, "Restart successfully\n",
                      "\nRebuilding can not be resumed on array %d (error %d: %s)\n"}}},
    }};

int doRebuildV2(int argc, char** argv, _cmd_struct* row) {
    return runActivityCommand(argc, argv, row, rebuildV2Command);
}
