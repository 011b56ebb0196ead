#include "Functions/tandem/tandem.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/listing.h"
#include "Public/utility.h"

namespace {
struct TandemOptions {
    bool addEmpty = false;
    bool count = false;
    bool remove = false;
    KT_U64 start = 0;
    KT_U64 length = 0;
    KT_U16 id = 0;
};
} // namespace

static Take takeObject(const char* word, TandemOptions& o) {
    if (strcasecmp(word, "empty") == 0) {
        o.addEmpty = true;
    } else if (strcasecmp(word, "count") == 0) {
        o.count = true;
    } else if (strcasecmp(word, "delete") == 0) {
        o.remove = true;
    } else {
        out("-o : invalid object '%s', should be empty or delete\n", word);
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeOption(int option, const char* value, TandemOptions& o) {
    switch (option) {
    case 'o':
        return takeObject(value, o);
    case 'a':
        if (parseDecimal(emptyIsZero(value), o.start)) return Take::Yes;
        out("-a : address is not a number\n");
        return Take::Failed;
    case 'l':
        if (value != nullptr && parseDecimal(emptyIsZero(value), o.length)) return Take::Yes;
        out("-l : length is not a number\n");
        return Take::Failed;
    case 'd':
        if (parseDecimal(emptyIsZero(value), o.id)) return Take::Yes;
        out("-d : Tandemix ID is not a number\n");
        return Take::Failed;
    default:
        return Take::Help;
    }
}

static KT_U8 addEmptyEntry(const TandemOptions& o) {
    _Tandemix_Entry_Request request;
    askForItem(request, 0);
    request.start = o.start;
    request.length = o.length;
    return KT_Tandemix_AddFSEntries(gCurrentAdapter, o.id, &request, 0);
}

static KT_U8 countEntries(const TandemOptions& o) {
    _Tandemix_Table_Info info = {};
    KT_U8 status = KT_Tandemix_GetEntriesTableInfo(gCurrentAdapter, o.id, &info);
    if (status != KT_OK) {
        out("\nFailed to get table information (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    out("Tandemix table total enties count %d\n", info.total);
    out("Tandemix table remian enties count %d\n", info.remaining);
    return KT_OK;
}

int doTandem(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    TandemOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, tandemOptions, given, result, take)) return result;
    if (!givenOnce(tandemOptions, given)) return 1;
    const bool changes = o.addEmpty || (o.remove && !o.count);
    if (changes && !isKnownAdapter(gCurrentAdapter, result)) return result;
    if ((currentAdapter().LogicalDriverMode & (KT_MODE_TANDEM_CAPACITY | KT_MODE_TANDEM_SAFE)) == 0) {
        out("Tandemix is not supported.\n");
        return 1;
    }
    if (!givenRequired(tandemOptions, given, argv[0])) return 1;
    if (o.addEmpty) return addEmptyEntry(o);
    if (o.count) return countEntries(o);
    return KT_Tandemix_RemoveEntriesTable(gCurrentAdapter, o.id);
}
