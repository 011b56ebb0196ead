#include "Functions/copyBack/copyBack.h"

#include "Public/activity.h"

const char copyback_sh[] = ":Pause or resume copy back on an array.";
const char copyback_help[] = "\n\ncopyback -a <pause|resume> -l <array id> [-h]\n\n"
                             "Options:\n"
                             "    -a, --action <pause|resume>\n"
                             "        What to do. Copy back starts by itself when a failed disk is replaced.\n"
                             "    -l, --id <array id>\n"
                             "        ID of the array.\n"
                             "    -h, --help\n\n"
                             "Examples:\n"
                             "    copyback -a pause -l 0\n\n"
                             "    Pause copy back on array 0.\n\n";

static const LongOption copyback_long[] = {
    {"action", required_argument, 'a'}, {"id", required_argument, 'l'}, OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
// -d is taken with a value and prints the help.
const OptionSet copybackOptions = {
    .letters = "a:l:d:\1:h", .longOptions = copyback_long, .once = "al", .required = "l"};

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
