#include "Functions/tandem/tandem.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

const char tandem_sh[] = ":Tandemix Test Command.";
const char tandem_help[] = "\ntandem -o empty -a address -l length -d vdid[-h]\n\n"
                           "tandem -o count -d vdid[-h]\n\n"
                           "tandem -o delete -d vdid[-h]\n\n\n"
                           "Options:\n"
                           "    -o, --object <empty|count|delete|system>\n"
                           "        empty: add empty entry.\n"
                           "        count: get entries table free information.\n"
                           "        delete: delete entries table.\n"
                           "    -a, entry start lba\n"
                           "    -l, entry length\n"
                           "    -h, --help\n\n"
                           "Examples:\n"
                           "    tandem -o empty -a 1073741824 -l 2147483648 -d 0\n\n"
                           "    add 1G to 2G as empty entry to Tandemix 0.\n\n";

// The long form of -l takes no value, so a length can only be given as -l.
static const LongOption tandem_long[] = {{"object", required_argument, 'o'},   {"adress", required_argument, 'a'},
                                         {"Tandemix", required_argument, 'd'}, OUTPUT_OPTION,
                                         {"length", no_argument, 'l'},         END_OF_OPTIONS};
static const char* const objects[] = {"empty", "count", "delete", nullptr};
// -o may be repeated.
const OptionSet tandemOptions = {.letters = "o:a:\1:d:l:h",
                                 .longOptions = tandem_long,
                                 .once = "ald",
                                 .required = "od",
                                 .objects = objects,
                                 .oneMissing = true};

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
        if (parseDecimal(value, o.start)) return Take::Yes;
        out("-a : address is not a number\n");
        return Take::Failed;
    case 'l':
        if (value != nullptr && parseDecimal(value, o.length)) return Take::Yes;
        out("-l : length is not a number\n");
        return Take::Failed;
    case 'd':
        if (parseDecimal(value, o.id)) return Take::Yes;
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
    if (!scanOptions(argc, argv, row, tandemOptions, given, result, take)) return result;
    if (!givenOnce(tandemOptions, given)) return 1;
    if ((currentAdapter().LogicalDriverMode & (KT_MODE_TANDEM_CAPACITY | KT_MODE_TANDEM_SAFE)) == 0) {
        out("Tandemix is not supported.\n");
        return 1;
    }
    if (!givenRequired(tandemOptions, given, argv[0])) return 1;
    if (o.addEmpty) return addEmptyEntry(o);
    if (o.count) return countEntries(o);
    return KT_Tandemix_RemoveEntriesTable(gCurrentAdapter, o.id);
}
