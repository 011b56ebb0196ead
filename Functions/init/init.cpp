#include "Functions/init/init.h"

#include "Public/activity.h"

// -t is taken with a value and prints the help.

static constexpr ActivityCommand initCommand = {
    .options = initOptions,
    .target = ActivityTarget::VirtualDisk,
    .invalidObject = "-o : invalid object '%s'\n",
    .invalidId = "-l : VD id should be a number\n",
    .infoFailed = "\nUnable to get info of VD %d (error %d: %s).\n",
    .refusedRaid0 = "Full initialization for RAID 0 is not supported.\n",
    .statusFailed = "\nUnable to get status of VD %d (error %d: %s).\n",
    .kinds = {{nullptr, KT_INIT_BACKGROUND,
               "Init VD will stop Media patrol on PD. Do you want to continue?(y or n)\n"}},
    .start = [](const ActivityRequest& request,
                KT_U8 kind) { return KT_LD_StartINIT(gCurrentAdapter, request.id, kind); },
    .started = "Start initialization successfully\n",
    .startFailed = "\nUnable to start initialization on VD %d (error %d: %s).\n",
    .words = {
        .own = KT_BGA_INIT_QUICK | KT_BGA_INIT_FOREGROUND | KT_BGA_INIT_BACKGROUND,
        .control = KT_LD_BGAControl,
        .refusal = 0,
        .busy = "\nVD %d is currently having background activities.\n",
        .notOwn = "\nVD %d is not initializing.\n",
        .idle = "\nVD %d is not having any background activity.\n",
        .running = {"\nVD %d is initializing.\n",
                    {{BGA_STOP, "Abort successfully\n", "\nUnable to abort initialization on VD %d (error %d: %s).\n"},
                     {BGA_PAUSE, "Pause successfully\n",
                      "\nUnable to pause initialization on VD %d (error %d: %s).\n"}}},
        .paused = {"\nVD %d initialization is in pause state, you can resume it only.\n",
                   {{BGA_RESUME, "Resume successfully\n",
                     "\nUnable to resume initialization on Ld %d (error %d: %s).\n"}}},
        // A restart reports itself with the words of a resume.
        .aborted = {"\nVD %d initialization was aborted and need to restart.\n",
                    {{BGA_RESTART, "Resume successfully\n",
                      "\nUnable to restart initialization on VD %d (error %d: %s)\n"}}},
    }};

int doInit(int argc, char** argv, _cmd_struct* row) {
    return runActivityCommand(argc, argv, row, initCommand);
}
