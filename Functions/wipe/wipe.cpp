#include "Functions/wipe/wipe.h"

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/listing.h"
#include "Public/utility.h"

namespace {
struct WipeOptions {
    OptionCounts given;
    int pd = 0;
};
} // namespace

static Take takeOption(int option, const char* value, int& pd) {
    if (option == 'f') return Take::Yes;
    if (option != 'd') return Take::Help;
    if (parseCapped(value, pd)) return Take::Yes;
    out("-d : invalid PD id '%s'\n", value);
    return Take::Failed;
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, WipeOptions& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o.pd); };
    return scanOptions({argc, argv, row}, wipeOptions, o.given, result, take);
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
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
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
