#include "Functions/info/info.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

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
    // Everything that is wrong is said before the command ends.
    bool good = givenRequired(infoOptions, given, command);
    if (given['i'] > 0 && o.id > HIGHEST_ID) {
        out("-i : invalid id %d\n", o.id);
        good = false;
    }
    return givenOnce(infoOptions, given) && good;
}

int doInfo(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    InfoOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, infoOptions, given, result, take)) return result;
    if (!checkOptions(argv[0], given, o) || o.object == nullptr) return 1;
    return o.object->report(given['i'] > 0 ? o.id : o.object->all);
}
