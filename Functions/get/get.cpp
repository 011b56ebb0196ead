#include "Functions/get/get.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

const char get_sh[] = ":Get configuration information of VD, PD, Array, HBA or Driver.";
const char get_help[] = "\nget -o <vd|ld|array|pd|hd|hba|driver|link> [-i <id>] [-h]\n\n"
                        "Options:\n"
                        "    -o, --object <vd|ld|array|pd|hd|hba|driver|link>\n"
                        "        Object whose configuration is displayed: virtual disk (vd or ld),\n"
                        "        disk array, physical disk (pd or hd), adapter (hba), driver, or the\n"
                        "        ATA link of hybrid virtual disks (link).\n"
                        "    -i, --id <id>\n"
                        "        ID of the object. Default: all objects of the kind; for hba, the\n"
                        "        current adapter.\n"
                        "    -h, --help\n\n"
                        "Examples:\n"
                        "    get -o vd -i 0\n\n"
                        "    Display the configuration of virtual disk 0.\n\n"
                        "    get -o hba\n\n"
                        "    Display the configuration of the current adapter.\n\n";

static const LongOption get_long[] = {
    {"object", required_argument, 'o'}, {"id", required_argument, 'i'}, OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
static const char* const get_objects[] = {"pd", "hd", "vd", "ld", "array", "hba", "driver", "link", nullptr};
const OptionSet getOptions = {
    .letters = "\1:o:i:h", .longOptions = get_long, .once = "oi", .required = "o", .objects = get_objects};

static constexpr int CONFIG_WIDTH = 24;

static const char* onOff(bool on) {
    return on ? "on" : "off";
}

void hdGet_printf(const _HD_CONFIG* config) {
    static const char* const speeds[] = {"N/A", "1.5 Gb/s", "3 Gb/s", "6 Gb/s", "12 Gb/s"};
    printNum(CONFIG_WIDTH, "hard disk id:", config->HDID);
    printStr(CONFIG_WIDTH, "write cache:", onOff(config->WriteCacheOn != 0));
    printStr(CONFIG_WIDTH, "drive speed:", config->DriveSpeed <= 4 ? speeds[config->DriveSpeed] : speeds[0]);
}

void dgGet_printf(const _DG_CONFIG* config) {
    printNum(CONFIG_WIDTH, "array id:", config->DGID);
    printStr(CONFIG_WIDTH, "write cache:", onOff(config->WriteCacheOn != 0));
}

void ldGet_printf(const _LD_Config* config) {
    static constexpr unsigned KNOWN = KT_CACHE_OFF | KT_CACHE_READ_AHEAD | KT_CACHE_AUTO | KT_CACHE_RESTORE;
    unsigned policy = config->CachePolicy;
    printNum(CONFIG_WIDTH, "virtual disk id:", config->LDID);
    if (currentAdapter().AdvancedFeatures & KT_ADV_HYBRID_SWITCH) {
        printStr(CONFIG_WIDTH, "restore:", onOff((policy & KT_CACHE_RESTORE) != 0));
    }
    LineText mode;
    if (policy & KT_CACHE_OFF) mode.add("Off ");
    if (policy & KT_CACHE_AUTO) mode.add("Auto");
    if (policy & ~KNOWN) {
        printStr(CONFIG_WIDTH, "cache mode:", "Unknown");
    } else {
        printStr(CONFIG_WIDTH, "cache mode:", mode.length == 0 ? "On" : mode.text);
    }
}

namespace {
enum class Shown { Rate, Switch };
// One line of the adapter's settings; it stands only where the adapter is capable of what it sets.
struct SettingLine {
    const char* label;
    Shown as;
    bool capable;
    KT_U8 value;
};
} // namespace

static void printSetting(const SettingLine& line) {
    static constexpr KT_U8 NOT_SUPPORTED = 255;
    if (!line.capable) return;
    if (line.as == Shown::Rate) {
        out("%-*s %d %%\n", CONFIG_WIDTH, line.label, line.value);
    } else {
        printStr(CONFIG_WIDTH, line.label, line.value == NOT_SUPPORTED ? "not support" : onOff(line.value != 0));
    }
}

void hbaGet_printf(KT_U8 adapter, const _Adapter_Config_V2* config) {
    static constexpr unsigned INIT = KT_FEATURE_BACKGROUND_INIT | KT_FEATURE_FOREGROUND_INIT;
    static constexpr unsigned ANY_ACTIVITY = INIT | KT_FEATURE_REBUILD | KT_FEATURE_SYNC | KT_FEATURE_MIGRATION |
                                             KT_FEATURE_MEDIA_PATROL | KT_FEATURE_COPY_BACK;
    KT_U32 advanced = gAdapterInfo[adapter].AdvancedFeatures;
    auto can = [&](unsigned features) { return (gAdapterInfo[adapter].Features & features) != 0; };
    const SettingLine lines[] = {
        {"Auto Rebuild:", Shown::Switch, true, config->AutoRebuildOn},
        {"Optimize CPU efficiency:", Shown::Switch, (advanced & KT_ADV_CPU_EFFICIENCY) != 0, config->CpuEfficiencyOn},
        {"BGA Rate:", Shown::Rate, can(ANY_ACTIVITY), config->BGARate},
        {"Syncronization Rate:", Shown::Rate, can(KT_FEATURE_SYNC), config->SyncRate},
        {"Initialization Rate:", Shown::Rate, can(INIT), config->InitRate},
        {"Rebuild Rate:", Shown::Rate, can(KT_FEATURE_REBUILD), config->RebuildRate},
        {"Migration Rate:", Shown::Rate, can(KT_FEATURE_MIGRATION), config->MigrationRate},
        {"Copyback Rate:", Shown::Rate, can(KT_FEATURE_COPY_BACK), config->CopybackRate},
        {"Media Patrol Rate:", Shown::Rate, can(KT_FEATURE_MEDIA_PATROL), config->MPRate},
        {"Poll SMART Status:", Shown::Switch, (advanced & KT_ADV_NO_SMART) == 0, config->PollSMARTStatus},
        {"Copy Back:", Shown::Switch, can(KT_FEATURE_COPY_BACK), config->CopyBackOn},
        {"Module Consolidation:", Shown::Switch, (advanced & KT_ADV_MODULE_CONSOLIDATE) != 0,
         config->ModuleConsolidation},
        // The record says whether updates are disabled, the line whether they are on.
        {"Raw Update:", Shown::Switch, (advanced & KT_ADV_RAW_UPDATE) != 0,
         static_cast<KT_U8>(config->rawimg_update_disabled == 0 ? 1 : 0)},
    };
    printNum(CONFIG_WIDTH, "HBA Index:", adapter);
    for (const SettingLine& line : lines) {
        printSetting(line);
    }
    if (config->ModelNumber[0] != 0) printField(CONFIG_WIDTH, "Model:", config->ModelNumber);
}

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
