#include "Functions/ssdop/ssdop.h"

#include <strings.h>

#include "Functions/ssdop/download.h"
#include "Public/disks.h"
#include "Public/fileName.h"
#include "Public/knownAdapter.h"

namespace {
struct SsdOpOptions {
    OptionCounts given;
    bool showVersion = false;
    Download download = {};
};
} // namespace

static Take takeOption(int option, const char* value, SsdOpOptions& o) {
    switch (option) {
    case 'd':
        if (parseDecimal(value, o.download.pd)) return Take::Yes;
        out("-d : invalid PD ID '%s'\n", value);
        return Take::Failed;
    case 'a':
        o.showVersion = strcasecmp(value, "version") == 0;
        if (o.showVersion || strcasecmp(value, "update") == 0) return Take::Yes;
        out("-a : invalid action '%s'.\n", value);
        return Take::Failed;
    case 'f':
        o.download.file = unquotedName(value);
        o.download.quoted = *value == '"';
        return Take::Yes;
    case 'm':
        o.download.mode = strcasecmp(value, "later") == 0 ? KT_MICROCODE_LATER : KT_MICROCODE_NOW;
        if (o.download.mode == KT_MICROCODE_LATER || strcasecmp(value, "now") == 0) return Take::Yes;
        out("-m : invalid mode '%s', should be now or later\n", value);
        return Take::Failed;
    case OPT_WAIVE:
        o.download.waived = true;
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const SsdOpOptions& o, const char* command) {
    if (!givenOnce(ssdopOptions, o.given) || !givenRequired(ssdopOptions, o.given, command)) return false;
    if (!o.showVersion && o.given['f'] == 0) {
        out(OptionRequired, command, 'f');
        return false;
    }
    const char foreign = o.given['f'] != 0 ? 'f' : 'm';
    if (!o.showVersion || o.given[foreign] == 0) return true;
    out("%s: option -%c does not belong to -a version\n", command, foreign);
    return false;
}

int doSsdOp(int argc, char** argv, _cmd_struct* row) {
    int result = 0;
    SsdOpOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, ssdopOptions, o.given, result, take)) return result;
    if (!checkOptions(o, argv[0])) return 1;
    if (!o.showVersion && !isKnownAdapter(gCurrentAdapter, result)) return result;
    _HD_Info_Request disk;
    if (!readSolidState(o.download.pd, disk, result)) return result;
    if (!o.showVersion) return downloadMicrocode(o.download);
    printNum(18, "hard disk id:", o.download.pd);
    printField(18, "model:", disk.hdInfo[0].Model);
    printField(18, "microcode version:", disk.hdInfo[0].FWVersion);
    return 0;
}
