#include "Functions/info/info.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

const char info_sh[] = ":Display adapter(hba), virtual disk(vd), disk array,\n"
                       "              physical disk(pd), Port multiplexer(pm), expander(exp),\n"
                       "              block disk(blk) or spare drive information.";
const char info_help[] = "\ninfo -o <hba|vd|ld|array|pd|hd|pm|exp|blk|spare|bbu|tandem> [-i <id>] [-h]\n\n"
                         "Options:\n"
                         "    -o, --object <hba|vd|ld|array|pd|hd|pm|exp|blk|spare|bbu|tandem>\n"
                         "        Object to display: adapter (hba), virtual disk (vd or ld), disk array,\n"
                         "        physical disk (pd or hd), port multiplexer (pm), expander (exp),\n"
                         "        block disk (blk), spare drive, battery backup unit (bbu) or hybrid\n"
                         "        virtual disk (tandem).\n"
                         "    -i, --id <id>\n"
                         "        ID of the object, 0 to 254. Default: all objects of the kind.\n"
                         "    -h, --help\n\n"
                         "Examples:\n"
                         "    info -o hba\n\n"
                         "    Display all adapters.\n\n"
                         "    info -o vd -i 1\n\n"
                         "    Display virtual disk 1.\n\n";

static const LongOption info_long[] = {
    {"object", required_argument, 'o'}, {"id", required_argument, 'i'}, OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
static const char* const info_objects[] = {"hba", "pd",  "hd",    "vd",  "ld",     "array", "pm",
                                           "exp", "blk", "spare", "bbu", "tandem", nullptr};
const OptionSet infoOptions = {
    .letters = "\1:o:i:h", .longOptions = info_long, .once = "oi", .required = "o", .objects = info_objects};

static KT_U8 reportBattery(KT_U16 id) {
    // There is one battery: no id, or 0.
    if (id != 0 && id != ALL_ITEMS) {
        out("\nUnable to get info of BBU %d (error %d: %s)\n", id, KT_ERR_INVALID_BBU,
            ErrorMessage(KT_ERR_INVALID_BBU));
        return KT_ERR_INVALID_BBU;
    }
    return getBBUInfo();
}

namespace {
struct InfoObject {
    const char* word;
    KT_U8 (*report)(KT_U16 id);
    KT_U16 all; // the id that stands for every item
};
const InfoObject infoObjects[] = {
    {"hba", getAdapterInfo, ALL_ITEMS}, {"pd", getHDInfo, ALL_DISKS},      {"hd", getHDInfo, ALL_DISKS},
    {"vd", getLDInfo, ALL_ITEMS},       {"ld", getLDInfo, ALL_ITEMS},      {"array", getDGInfo, ALL_ITEMS},
    {"pm", getPMInfo, ALL_ITEMS},       {"exp", getExpInfo, ALL_ITEMS},    {"blk", getBlkInfo, ALL_ITEMS},
    {"spare", getSpareInfo, ALL_ITEMS}, {"bbu", reportBattery, ALL_ITEMS}, {"tandem", getTandemInfo, ALL_ITEMS},
};

struct InfoOptions {
    const InfoObject* object = nullptr;
    KT_U16 id = 0;
};
} // namespace

static Take takeObject(const char* word, InfoOptions& o) {
    o.object = nullptr;
    for (const InfoObject& row : infoObjects) {
        if (o.object == nullptr && strcasecmp(row.word, word) == 0) o.object = &row;
    }
    if (o.object == nullptr) {
        out("-o : invalid object '%s'\n", word);
        return Take::Failed;
    }
    if (o.object->report == getDGInfo && !arrayBasedRaid) {
        out("-o : array is not supported on this adapter\n");
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeOption(int option, const char* value, InfoOptions& o) {
    if (option == 'o') return takeObject(value, o);
    if (option != 'i') return Take::Help;
    if (!isNumber(value)) {
        out("-i : id should be a number\n");
        return Take::Failed;
    }
    // Ids have sixteen bits here: the range below is checked on those.
    o.id = narrowed<KT_U16>(value);
    return Take::Yes;
}

static bool checkOptions(const char* command, const OptionCounts& given, const InfoOptions& o) {
    bool complete = givenRequired(infoOptions, given, command);
    if (given['i'] > 0 && o.id > HIGHEST_ID) {
        out("-i : invalid id %d\n", o.id);
        return false;
    }
    return givenOnce(infoOptions, given) && complete && o.object != nullptr;
}

int doInfo(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    InfoOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions(argc, argv, row, infoOptions, given, result, take)) return result;
    if (!checkOptions(argv[0], given, o)) return 1;
    return o.object->report(given['i'] > 0 ? o.id : o.object->all);
}
