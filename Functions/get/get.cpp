#include "Functions/get/get.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/settings.h"
#include "Public/utility.h"

// Prints every configuration record of a list, or `none` for an empty one.
template <class Record, class Request>
static KT_U8 printConfigs(KT_U8 (*call)(KT_U8, Request*), KT_U16 id, const char* none, void (*print)(const Record*)) {
    ListEnd end = walkList<Record>(call, itemRange(id), recordsPerPage(sizeof(Record)), [&](const Record& record) {
        print(&record);
        return true;
    });
    if (end.status == KT_OK && end.total == 0) out("%s", none);
    return end.status;
}

static KT_U8 reportDisks(KT_U16 id) {
    KT_U8 status = printConfigs(KT_PD_GetConfig, id, "\nNo PD is found\n", hdGet_printf);
    if (status != KT_OK) {
        out("\nUnable to get configuration of hard disk %d (error %d : %s).\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 reportArrays(KT_U16 id) {
    KT_U8 status = printConfigs(KT_DG_GetConfig, id, "\nNo array is found\n", dgGet_printf);
    if (status != KT_OK) {
        out("\nUnable to get configuration of array %d (error %d: %s)\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 reportVirtualDisks(KT_U16 id) {
    KT_U8 status = printConfigs(KT_LD_GetConfig, id, "\nNo VD is found\n", ldGet_printf);
    if (status != KT_OK) out("\nVD %d is invalid (error %d: %s)\n", id, status, ErrorMessage(status));
    return status;
}

static KT_U8 reportAdapter(KT_U16 id) {
    _Adapter_Config_V2 config = {};
    KT_U8 status = KT_ERR_INVALID_ADAPTER;
    // Without an id the current adapter is meant; the library judges whether that one exists.
    if (id == ALL_ITEMS) id = gCurrentAdapter;
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

static KT_U8 reportDriver(KT_U16) {
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

static KT_U8 reportLinks(KT_U16 id) {
    KT_U8 status = printConfigs(KT_LD_GetInfo, id, "\nNo VD is found\n", linkGet_printf);
    if (status != KT_OK) out("\nVD %d is invalid (error %d: %s)\n", id, status, ErrorMessage(status));
    return status;
}

namespace {
struct ConfigObject {
    const char* word;
    KT_U8 (*report)(KT_U16 id);
};
const ConfigObject configObjects[] = {
    {"pd", reportDisks},     {"hd", reportDisks},    {"vd", reportVirtualDisks}, {"ld", reportVirtualDisks},
    {"array", reportArrays}, {"hba", reportAdapter}, {"driver", reportDriver},   {"link", reportLinks},
};

struct GetOptions {
    const ConfigObject* object = configObjects;
    KT_U16 id = ALL_ITEMS;
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
    if (!parseDecimal(value, o.id)) {
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
    if (!scanOptions(argc, argv, row, getOptions, given, result, take)) return result;
    if (!givenOnce(getOptions, given) || !givenRequired(getOptions, given, argv[0])) return 1;
    return o.object->report(o.id);
}
