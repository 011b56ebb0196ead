#include "Public/settings.h"

#include <iterator>

#include "Public/common.h"

const char* onOff(bool on) {
    return on ? "on" : "off";
}

const char* driveSpeedWord(KT_U8 code) {
    static const char* const speeds[] = {"N/A", "1.5 Gb/s", "3 Gb/s", "6 Gb/s", "12 Gb/s"};
    return code < std::size(speeds) ? speeds[code] : speeds[0];
}

void hdGet_printf(const _HD_CONFIG* config) {
    printNum(CONFIG_WIDTH, "hard disk id:", config->HDID);
    printStr(CONFIG_WIDTH, "write cache:", onOff(config->WriteCacheOn != 0));
    printStr(CONFIG_WIDTH, "drive speed:", driveSpeedWord(config->DriveSpeed));
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

static constexpr KT_U8 INIT = KT_FEATURE_BACKGROUND_INIT | KT_FEATURE_FOREGROUND_INIT;
static constexpr KT_U8 ANY_ACTIVITY =
    INIT | KT_FEATURE_REBUILD | KT_FEATURE_SYNC | KT_FEATURE_MIGRATION | KT_FEATURE_MEDIA_PATROL | KT_FEATURE_COPY_BACK;

#define AT(field) offsetof(_Adapter_Config_V2, field)
static const AdapterSetting adapterSettings[] = {
    {"Auto Rebuild:", SettingKind::Switch, AT(AutoRebuildOn), 0, 0, 0},
    {"Optimize CPU efficiency:", SettingKind::Switch, AT(CpuEfficiencyOn), 0, KT_ADV_CPU_EFFICIENCY, 0},
    {"BGA Rate:", SettingKind::Rate, AT(BGARate), ANY_ACTIVITY, 0, 0},
    {"Syncronization Rate:", SettingKind::Rate, AT(SyncRate), KT_FEATURE_SYNC, 0, 0},
    {"Initialization Rate:", SettingKind::Rate, AT(InitRate), INIT, 0, 0},
    {"Rebuild Rate:", SettingKind::Rate, AT(RebuildRate), KT_FEATURE_REBUILD, 0, 0},
    {"Migration Rate:", SettingKind::Rate, AT(MigrationRate), KT_FEATURE_MIGRATION, 0, 0},
    {"Copyback Rate:", SettingKind::Rate, AT(CopybackRate), KT_FEATURE_COPY_BACK, 0, 0},
    {"Media Patrol Rate:", SettingKind::Rate, AT(MPRate), KT_FEATURE_MEDIA_PATROL, 0, 0},
    {"Poll SMART Status:", SettingKind::Switch, AT(PollSMARTStatus), 0, 0, KT_ADV_NO_SMART},
    {"Copy Back:", SettingKind::Switch, AT(CopyBackOn), KT_FEATURE_COPY_BACK, 0, 0},
    {"Module Consolidation:", SettingKind::Switch, AT(ModuleConsolidation), 0, KT_ADV_MODULE_CONSOLIDATE, 0},
    {"Raw Update:", SettingKind::Switch, AT(rawimg_update_disabled), 0, KT_ADV_RAW_UPDATE, 0},
};

const AdapterSetting* adapterSettingAt(size_t offset) {
    for (const AdapterSetting& setting : adapterSettings) {
        if (setting.offset == offset) return &setting;
    }
    return nullptr;
}

bool hasSetting(const _Adapter_Info& info, const AdapterSetting& setting) {
    if ((info.AdvancedFeatures & setting.without) != 0) return false;
    if (setting.features != 0 && (info.Features & setting.features) == 0) return false;
    return setting.advanced == 0 || (info.AdvancedFeatures & setting.advanced) != 0;
}

static void printSetting(const AdapterSetting& setting, KT_U8 value) {
    if (setting.kind == SettingKind::Rate) {
        out("%-*s %d %%\n", CONFIG_WIDTH, setting.label, value);
    } else {
        printStr(CONFIG_WIDTH, setting.label, value == SETTING_NOT_SUPPORTED ? "not support" : onOff(value != 0));
    }
}

void hbaGet_printf(KT_U8 adapter, const _Adapter_Config_V2* config) {
    printNum(CONFIG_WIDTH, "HBA Index:", adapter);
    for (const AdapterSetting& setting : adapterSettings) {
        if (!hasSetting(gAdapterInfo[adapter], setting)) continue;
        KT_U8 value = reinterpret_cast<const KT_U8*>(config)[setting.offset];
        // The record says whether updates are disabled, the line whether they are on.
        if (setting.offset == AT(rawimg_update_disabled)) value = value == 0 ? 1 : 0;
        printSetting(setting, value);
    }
    if (config->ModelNumber[0] != 0) printField(CONFIG_WIDTH, "Model:", config->ModelNumber);
}
#undef AT
