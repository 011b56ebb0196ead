#include "Functions/rebuild/rebuild.h"

#include "Public/activity.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/vdBlocks.h"

static bool checkRequest(const ActivityRequest& request) {
    if (request.action != BGA_START || request.targets.count == 1) return true;
    if (request.targets.count == 0) {
        out("At least one target PD is required\n");
    } else {
        out("-d: Only One PD is needed for rebuilding!\n");
    }
    return false;
}

static bool checkFree(KT_U16 pd, int& result) {
    KT_U8 status = HDisFreeDiskForKelo(pd, KT_BLOCK_FREE);
    if (status == KT_OK) return true;
    if (status == KT_ERR_PD_TYPES_DIFFER) {
        out("PD %d is not a free disk and can not be used to rebuild VD.\n", pd);
        result = 1;
    } else {
        out("Can not get disk %d information(error %d: %s).\n", pd, status, ErrorMessage(status));
        result = status;
    }
    return false;
}

// Whether the disk holds a block of the virtual disk; the disk's free space is read first.
static KT_U8 findMember(KT_U16 vd, KT_U16 pd, bool& member) {
    _LD_Info_Request info;
    KT_U8 status = getItem(KT_LD_GetInfo, vd, info);
    if (status != KT_OK) return status;
    _HD_FreeSpaceInfo space = {};
    status = KT_PD_GetFreeSpaceInfo(gCurrentAdapter, pd, &space);
    if (status != KT_OK) return status;
    return eachBlock(info.ldInfo[0], [&](KT_U8 read, const _Block_Info& block) {
        if (read == KT_OK && block.HDID == pd) member = true;
        return read;
    });
}

static bool checkStart(const ActivityRequest& request, const ActivitySubject&, int& result) {
    KT_U16 pd = request.targets.ids[0];
    if (!checkFree(pd, result)) return false;
    bool member = false;
    KT_U8 status = findMember(request.id, pd, member);
    if (status != KT_OK) {
        out("\nUnable to get necessary info(error %d: %s).\n", status, ErrorMessage(status));
        result = status;
        return false;
    }
    if (member) {
        out("\nPD %d is member disk of VD %d and can not use to rebuild\n", pd, request.id);
        result = 1;
    }
    return !member;
}

static constexpr ActivityCommand rebuildCommand = {
    .options = rebuildOptions,
    .target = ActivityTarget::VirtualDisk,
    .invalidId = "-l : VD id should be a number\n",
    .invalidTargets = "-d:invalid PD IDs %s\n",
    .feature = KT_FEATURE_REBUILD,
    .unsupported = "Rebuilding is not supported by this HBA!\n",
    .statusFailed = "\nUnable to get status of VD %d (error %d: %s).\n",
    .checkRequest = checkRequest,
    .checkStart = checkStart,
    .kinds = {{nullptr, 0, "Rebuild VD will stop Media patrol on PD. Do you want to continue?(y or n)\n"}},
    .start = [](const ActivityRequest& request,
                KT_U8) { return KT_LD_StartRebuild(gCurrentAdapter, request.id, request.targets.ids[0]); },
    .started = "Start rebuild successfully\n",
    .startFailed = "\nUnable to rebuild VD %d (error %d: %s).\n",
    .words = {
        .own = KT_BGA_REBUILD,
        .control = KT_LD_BGAControl,
        .refusal = 0,
        .busy = "\nVirtual disk %d is having background activity.\n",
        .notOwn = "\nVD %d is not at rebuilding state.\n",
        .idle = "\nVD %d is not doing any background operation.\n",
        .running = {"\nVD %d is currently rebuilding.\n",
                    {{BGA_STOP, "Abort successfully\n", "\nUnable to abort VD %d rebuilding (error %d: %s)\n"},
                     {BGA_PAUSE, "Pause successfully\n", "\nUnable to pause VD %d rebuilding (error %d: %s)\n"}}},
        .paused = {"\nVD %d rebuilding is currently paused\n",
                   {{BGA_RESUME, "Resume successfully\n",
                     "\nRebuilding can not be resumed on VD %d (error %d: %s)\n"}}},
        .aborted = {"\nRebuilding VD %d is aborted and need to restart.\n",
                    {{BGA_RESTART, "Restart successfully\n",
                      "\nRebuilding can not be resumed on VD %d (error %d: %s)\n"}}},
    }};

int doRebuild(int argc, char** argv, _cmd_struct* row) {
    return runActivityCommand(argc, argv, row, rebuildCommand);
}
