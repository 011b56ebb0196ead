#include "Functions/wipe/wipe.h"

#include <limits>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

const char wipe_sh[] = ":Wipe out disk drive MDD data.";
const char wipe_help[] = "\n\nwipe -d <PDid> [-f] [-h]\n\n"
                         "Options:\n"
                         "    -d, --pdid <PDid>\n"
                         "        ID of the physical disk, 0 to 254.\n"
                         "    -f, --force\n"
                         "        force wipe out if VD exist on this PD\n"
                         "    -h, --help\n\n"
                         "Examples:\n"
                         "    wipe -d 3\n\n"
                         "    Wipe out the MDD data of physical disk 3.\n\n";

static const LongOption wipe_long[] = {
    {"pdid", required_argument, 'd'}, {"force", no_argument, 'f'}, OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet wipeOptions = {.letters = "\1:d:fh", .longOptions = wipe_long, .once = "d", .required = "d"};

namespace {
struct WipeOptions {
    OptionCounts given;
    int pd = 0;
};
} // namespace

static Take takeOption(int option, const char* value, int& pd) {
    if (option == 'f') return Take::Yes;
    if (option != 'd') return Take::Help;
    KT_U64 number = 0;
    if (!parseUpTo(value, std::numeric_limits<int>::max(), number)) {
        out("-d : invalid PD id '%s'\n", value);
        return Take::Failed;
    }
    pd = static_cast<int>(number);
    return Take::Yes;
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, WipeOptions& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o.pd); };
    return scanOptions(argc, argv, row, wipeOptions, o.given, result, take);
}

static bool checkOptions(const char* command, const WipeOptions& o) {
    if (o.pd > HIGHEST_ID) {
        out("-i : invalid id %d\n", o.pd);
        return false;
    }
    return givenOnce(wipeOptions, o.given) && givenRequired(wipeOptions, o.given, command);
}

int doWipe(int argc, char** argv, _cmd_struct* row) {
    WipeOptions o;
    int result = 0;
    if (!readOptions(argc, argv, row, o, result)) return result;
    if (!checkOptions(argv[0], o)) return 1;
    auto pd = static_cast<KT_U16>(o.pd);
    KT_U8 force = o.given['f'] != 0 ? 1 : 0;
    KT_U8 status = KT_PD_WipeHDMDD(gCurrentAdapter, pd, force);
    if (status == KT_OK) {
        out("\nWipe PD %d is returned successfully.\n", pd);
    } else {
        out("\nWipe MDD on PD %d failed (error %d: %s).\n", pd, status, ErrorMessage(status));
    }
    return status;
}
