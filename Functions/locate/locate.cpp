#include "Functions/locate/locate.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

namespace {
struct LocateOptions {
    KT_U16 id = 0;
    bool on = true;
    bool actionRefused = false;
};
} // namespace

static Take takeOption(int option, const char* value, LocateOptions& o) {
    switch (option) {
    case 'o':
        return Take::Yes;
    case 'i':
        if (parseDecimalOrHex(emptyIsZero(value), o.id)) return Take::Yes;
        out("-i: id should be a number\n");
        return Take::Failed;
    case 'a':
        o.on = strcasecmp(value, "on") == 0;
        if (!o.on && strcasecmp(value, "off") != 0) {
            // The other options are still read, so that everything wrong is said at once.
            out("-a: invalid action '%s'\n", value);
            o.actionRefused = true;
        }
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const OptionCounts& given, const LocateOptions& o) {
    if (!givenOnce(locateOptions, given)) return false;
    if (given['i'] == 0) {
        out("missing PD id\n");
        return false;
    }
    return !o.actionRefused;
}

int doLocate(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    LocateOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, locateOptions, given, result, take)) return result;
    if (!checkOptions(given, o)) return 1;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    KT_U8 status = KT_LocateArrayDevice(gCurrentAdapter, KT_DEVICE_PD, o.id, o.on ? 1 : 0);
    if (status != KT_OK) {
        out("Failed to set LED status (error %d: %s)\n", status, ErrorMessage(status));
        return status;
    }
    out("Success to set PD %d LED status \n", o.id);
    return 0;
}
