#include "Functions/mediaPatrol/mediaPatrol.h"

#include "Public/activity.h"

static constexpr Line FAILED = "\nFailed to %s media patrol on PD %d (error %d: %s)\n";

static constexpr ActivityCommand mpCommand = {
    .options = mpOptions,
    .target = ActivityTarget::Disk,
    .invalidId = "-d : invalid pd id\n",
    .feature = KT_FEATURE_MEDIA_PATROL,
    .unsupported = "Media patrol is not supported.\n",
    .statusFailed = "\nUnable to get status of PD %d.\n",
    .wrongRole = "\nPD %d is not a spare or assigned disk.\n",
    .start = [](const ActivityRequest& request, KT_U8) { return KT_PD_StartMediaPatrol(gCurrentAdapter, request.id); },
    .started = "Start media patrol successfully\n",
    .startFailed = "\nFailed to start media patrol on PD %d (error %d: %s)\n",
    .words = {
        .own = KT_PD_BGA_MEDIA_PATROL,
        .control = KT_PD_BGAControl,
        .refusal = 0,
        .busy = "\nPD %d is currently having background activity.\n",
        .notOwn = "\nPD %d is not in media patrol state.\n",
        .idle = "\nPD %d is currently does not have any background activity.\n",
        .running = {"\nMedai patrol is in progress on PD %d.\n",
                    {{BGA_STOP, "Abort successfully\n", FAILED}, {BGA_PAUSE, "Pause successfully\n", FAILED}}},
        .paused = {"\nMedia patrol on PD %d is currently paused\n", {{BGA_RESUME, "Resume successfully\n", FAILED}}},
        .aborted = {"\nMedia patrol on PD %d is aborted and need to restart.\n",
                    {{BGA_RESTART, "Restart successfully\n", FAILED}}},
    }};

int doMP(int argc, char** argv, _cmd_struct* row) {
    return runActivityCommand(argc, argv, row, mpCommand);
}
