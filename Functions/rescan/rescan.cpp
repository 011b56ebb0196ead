#include "Functions/rescan/rescan.h"

#include <cstdlib>
#include <cstring>

#include "Public/errorMsg.h"

// -a may be given twice: once for each action.

namespace {
struct RescanOptions {
    bool scan = false;
    bool count = false;
    bool force = false;
};
} // namespace

static Take takeOption(int option, const char* value, RescanOptions& o) {
    if (option == 'f') {
        o.force = true;
        return Take::Yes;
    }
    if (option != 'a') return Take::Help;
    if (strcmp(value, "scan") == 0) {
        o.scan = true;
    } else if (strcmp(value, "getcount") == 0) {
        o.count = true;
    } else {
        out("Invalid action!\n");
        return Take::Failed;
    }
    return Take::Yes;
}

static KT_U8 scanAdapters() {
    KT_U8 status = KT_API_RescanAdapter();
    if (status != KT_OK) {
        out("\nScan Adapter failed (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    out("\nScan Adapter is returned successfully.\n");
    gNumAdaptersFound = KT_Adapter_GetCount();
    gAdapterID = 0;
    gCurrentAdapter = 0;
    if (gNumAdaptersFound == 0) {
        // Without an adapter there is nothing left to address: this is the one command that ends the program.
        out("No adapter is found. Exit!\n");
        KT_API_Finalize();
        closeOutput();
        exit(1);
    }
    printAdapterCount();
    readAdapterRecords();
    chooseCommandSet();
    return KT_OK;
}

int doRescan(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    RescanOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, rescanOptions, given, result, take)) return result;
    if (!givenRequired(rescanOptions, given, argv[0])) return 1;
    KT_U8 status = o.scan ? scanAdapters() : KT_U8{KT_OK};
    if (o.count) {
        KT_U32 count = KT_API_GetRescanCount(o.force ? 1 : 0);
        out("\nGet Rescan Count : (%d).\n", static_cast<KT_U16>(count));
    }
    return status;
}
