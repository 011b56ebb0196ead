#include "Functions/consistencyCheck/consistencyCheck.h"

#include "Public/activity.h"

static constexpr ActivityCommand ccCommand = {
    .options = ccOptions,
    .target = ActivityTarget::VirtualDisk,
    .invalidObject = "-o : invalid object '%s', should be VD\n",
    .invalidId = "-l : invalid vd '%s'\n",
    .invalidKind = "-t : invalid argument '%s'\n",
    .infoFailed = "\nUnable to get info of VD %d (error %d: %s).\n",
    .refusedRaid0 = "Consistency check for RAID 0 is not supported.\n",
    .statusFailed = "\nUnable to get status of VD %d (error %d: %s).\n",
    // The number tells the library whether to repair.
    .kinds = {{"sync", 1, "Fix VD will stop Media patrol on PD. Do you want to continue?(y or n)\n"},
              {"check", 0, "Check VD will stop Media patrol on PD. Do you want to continue?(y or n)\n"}},
    .start = [](const ActivityRequest& request,
                KT_U8 kind) { return KT_LD_StartConsistencyCheck(gCurrentAdapter, request.id, kind); },
    .started = "Start consistency check\n",
    .startFailed = "\nUnable to start consistency check on VD %d (error %d: %s)\n",
    .words = {
        .own = KT_BGA_CHECK_FIX | KT_BGA_CHECK,
        .control = KT_LD_BGAControl,
        .refusal = 0,
        .busy = "\nVD %d is having background activities.\n",
        .notOwn = "\nVD %d is not in consistency check mode.\n",
        .idle = "\nVD %d is not having any background activity.\n",
        .running = {"\nVD %d is having consistency check.\n",
                    {{BGA_STOP, "Abort successfully\n", "\nAbort Consistency check on VD %d failed (error %d: %s).\n"},
                     {BGA_PAUSE, "Pause successfully\n",
                      "\nPause Consistency check on VD %d failed (error %d: %s).\n"}}},
        .paused = {"\nConsistency check on VD %d is paused, resume it first.\n",
                   {{BGA_RESUME, "Resume successfully\n",
                     "\nUnable to resume consistency chec on VD %d (error %d: %s).\n"}}},
        .aborted = {"\nVD %d consistency check is aborted and need to restart.\n",
                    {{BGA_RESTART, "Restart successfully\n",
                      "\nUnable to resume consistency chec on VD %d (error %d: %s).\n"}}},
    }};

int doCC(int argc, char** argv, _cmd_struct* row) {
    return runActivityCommand(argc, argv, row, ccCommand);
}
