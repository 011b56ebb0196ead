#include "Functions/copyBack/copyBack.h"

#include "Public/activity.h"

// -d is taken with a value and prints the help.

static constexpr ActivityCommand copybackCommand = {
    .options = copybackOptions,
    .target = ActivityTarget::Array,
    .invalidId = "-l : Array id should be a number\n",
    .infoFailed = "Unable to get info of array %d (error %d: %s).\n",
    .words = {
        .own = KT_BGA_COPY_BACK,
        .control = KT_DG_BGAControl,
        .refusal = 0,
        .notOwn = "\nArray %d is not doing copy back.\n",
        .idle = "\nArray %d is not doing any background operation.\n",
        .running = {"\nArray %d is currently doing copy back.\n",
                    {{BGA_PAUSE, "Pause successfully\n", "\nUnable to pause copyback on array %d (error %d: %s)\n"}}},
        .paused = {"\narray %d copy back is currently paused\n",
                   {{BGA_RESUME, "Resume successfully\n",
                     "\nCopy back can not be resumed on array %d (error %d: %s)\n"}}},
    }};

int doCopyBack(int argc, char** argv, _cmd_struct* row) {
    return runActivityCommand(argc, argv, row, copybackCommand);
}
