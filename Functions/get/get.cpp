#include "Functions/get/get.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/settings.h"
#include "Public/utility.h"

// The id that a failure names: the one asked for, or the number that stands for all.
static int shownId(ListRange range) {
    return range.all ? ALL_ITEMS : range.id;
}

// Prints every configuration record of a list, or `none` for an empty one.
template <class Record, class Request>
static KT_U8 printConfigs(KT_U8 (*call)(KT_U8, Request*), ListRange range, const char* none,
                          void (*print)(const Record*)) {
    ListEnd end = walkList<Record, Cut::Shows>(call, range, recordsPerPage(sizeof(Record)), [&](const Record& record) {
        print(&record);
        return true;
    });
    if (end.status == KT_OK && end.total == 0) out("%s", none);
    return end.status;
}

static KT_U8 reportDisks(ListRange range) {
    KT_U8 status = printConfigs(KT_PD_GetConfig, range, "\nNo PD is found\n", hdGet_printf);
    if (status != KT_OK) {
        out("\nUnable to get configuration of hard disk %d (error %d : %s).\n", shownId(range), status,
            ErrorMessage(status));
    }
    return status;
}

static KT_U8 reportArrays(ListRange range) {
    KT_U8 status = printConfigs(KT_DG_GetConfig, range, "\nNo array is found\n", dgGet_printf);
    if (status != KT_OK) {
        out("\nUnable to get configuration of array %d (error %d: %s)\n", shownId(range), status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 reportVirtualDisks(ListRange range) {
    KT_U8 status = printConfigs(KT_LD_GetConfig, range, "\nNo VD is found\n", ldGet_printf);
    if (status != KT_OK) out("\nVD %d is invalid (error %d: %s)\n", shownId(range), status, ErrorMessage(status));
    return status;
}

static KT_U8 reportAdapter(ListRange range) {
    _Adapter_Config_V2 config = {};
    KT_U8 status = KT_ERR_INVALID_ADAPTER;
    // Without an id the current adapter is meant; the library judges whether that one exists.
    KT_U16 id = range.all ? gCurrentAdapter : range.id;
    if (id == gCurrentAdapter || id < gNumAdaptersFound) {
        status = KT_Adapter_GetConfig(static_cast<KT_U8>(id), &config);
    }
    if (status != KT_OK) {
        out("\nUnable to get configuration info of hba %d (error %d: %s)\n", id, status, ErrorMessage(status));
        return status;
    }
    hbaGet_printf(static_cast<KT_U8>(id), &config);
    return KT_OK;
}

static KT_U8 reportDriver(ListRange) {
    out("\nLinux CLI needn't support :get -o driver.\n");
    return KT_OK;
}

static void linkGet_printf(const _LD_Info* ld) {
    KT_U16 disk = KT_NO_ID;
    if (KT_VDHDD_GetLink(gCurrentAdapter, ld->ID, &disk) == KT_OK && disk != KT_NO_ID) {
        out("VD %d ATA link to PD %d.\n", ld->ID, disk);
    } else {
        out("VD %d ATA is unlinked.\n", ld->ID);
    }
}

static KT_U8 reportLinks(ListRange range) {
    KT_U8 status = printConfigs(KT_LD_GetInfo, range, "\nNo VD is found\n", linkGet_printf);
    if (status != KT_OK) out("\nVD %d is invalid (error %d: %s)\n", shownId(range), status, ErrorMessage(status));
    return status;
}

namespace {
struct ConfigObject {
    const char* word;
    KT_U8 (*report)(ListRange range);
};
const ConfigObject configObjects[] = {
    {"pd", reportDisks},     {"hd", reportDisks},    {"vd", reportVirtualDisks}, {"ld", reportVirtualDisks},
    {"array", reportArrays}, {"hba", reportAdapter}, {"driver", reportDriver},   {"link", reportLinks},
};

struct GetOptions {
    const ConfigObject* object = configObjects;
    ListRange range = EVERYTHING;
};
} // namespace

static Take takeObject(const char* word, GetOptions& o) {
    const ConfigObject* found = nullptr;
    for (const ConfigObject& row : configObjects) {
        if (strcasecmp(row.word, word) == 0) found = &row;
    }
    if (found == nullptr) {
        out("-o : invalid object '%s', should be VD, PD or Array\n", word);
        return Take::Failed;
    }
    o.object = found;
    if (o.object->report == reportArrays && !arrayBasedRaid) {
        out("-o : array is not supported on this adapter\n");
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeOption(int option, const char* value, GetOptions& o) {
    if (option == 'o') return takeObject(value, o);
    if (option != 'i') return Take::Help;
    o.range.all = false;
    if (!parseDecimal(emptyIsZero(value), o.range.id)) {
        out("-i : id is not a number\n");
        return Take::Failed;
    }
    return Take::Yes;
}

int doGet(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    GetOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, getOptions, given, result, take)) return result;
    if (!givenOnce(getOptions, given) || !givenRequired(getOptions, given, argv[0])) return 1;
    return o.object->report(o.range);
}
