#include "devices/adapterConfig.h"

#include "activities/activities.h"
#include "activities/rebuilding.h"
#include "devices/settingsPage.h"
#include "media/wear.h"
#include "state/events.h"

namespace sim {

enum : KT_U8 { NOT_SUPPORTED = 255 };
static const EventName UNLOGGED{0xFFFFFFFF};

// One setting: its largest value, the advanced feature that a change needs (0 = none), and what a change logs: the
// event for "on", or for any value of a rate, and the event for "off".
struct Setting {
    size_t offset;
    KT_U8 largest;
    KT_U32 feature;
    EventName event;
    EventName offEvent;
};

#define KTSIM_SWITCH(field, feature, on, off)                                                                          \
    { offsetof(_Adapter_Config_V2, field), 1, feature, on, off }
#define KTSIM_RATE(field, event)                                                                                       \
    { offsetof(_Adapter_Config_V2, field), 100, 0, event, event }
static const Setting SETTINGS[] = {
    KTSIM_SWITCH(AutoRebuildOn, 0, EVT_ADAPTER_AUTO_REBUILD_ON, EVT_ADAPTER_AUTO_REBUILD_OFF),
    KTSIM_SWITCH(CpuEfficiencyOn, KT_ADV_CPU_EFFICIENCY, UNLOGGED, UNLOGGED),
    KTSIM_RATE(BGARate, EVT_MISC_ACTIVITY_RATE),
    KTSIM_RATE(SyncRate, EVT_MISC_SYNC_RATE),
    KTSIM_RATE(InitRate, EVT_MISC_INIT_RATE),
    KTSIM_RATE(RebuildRate, EVT_MISC_REBUILD_RATE),
    KTSIM_RATE(MigrationRate, EVT_MISC_MIGRATION_RATE),
    KTSIM_RATE(CopybackRate, EVT_MISC_COPY_BACK_RATE),
    KTSIM_RATE(MPRate, EVT_MISC_PATROL_RATE),
    KTSIM_SWITCH(PollSMARTStatus, 0, EVT_ADAPTER_SMART_ON, EVT_ADAPTER_SMART_OFF),
    KTSIM_SWITCH(CopyBackOn, 0, EVT_ADAPTER_COPY_BACK_ON, EVT_ADAPTER_COPY_BACK_OFF),
    KTSIM_SWITCH(ModuleConsolidation, KT_ADV_MODULE_CONSOLIDATE, UNLOGGED, UNLOGGED),
    KTSIM_SWITCH(rawimg_update_disabled, KT_ADV_RAW_UPDATE, UNLOGGED, UNLOGGED),
    KTSIM_SWITCH(AlarmOn, 0, EVT_ADAPTER_BUZZER_ON, EVT_ADAPTER_BUZZER_OFF),
};

static KT_U8 valueOf(const _Adapter_Config_V2& config, const Setting& setting) {
    return reinterpret_cast<const KT_U8*>(&config)[setting.offset];
}

// KT_OK when the setting may become `value`.
static KT_U8 checkSetting(const _Adapter_Info& info, const Setting& setting, KT_U8 now, KT_U8 value) {
    if (value == now) return KT_OK;
    if (now == NOT_SUPPORTED) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (value > setting.largest) return KT_ERR_OUT_OF_RANGE;
    if (setting.feature && !(info.AdvancedFeatures & setting.feature)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (setting.offset == offsetof(_Adapter_Config_V2, AlarmOn) && !info.AlarmSupport)
        return KT_ERR_NOT_ON_THIS_ADAPTER;
    return KT_OK;
}

static void logSetting(const Context& context, const Setting& setting, KT_U8 value) {
    if (setting.event == UNLOGGED) return;
    const bool rate = setting.event == setting.offEvent;
    logEvent(context, rate || value ? setting.event : setting.offEvent, context.adapter, {rate ? value : 0U});
}

static void unmute(const Context& context) {
    AdapterState state = find<AdapterState>(context, 0).value_or(AdapterState{});
    state.muted = 0;
    save(context, 0, state);
}

KT_U8 setAdapterConfig(const Context& context, const _Adapter_Config_V2& wanted) {
    auto config = find<_Adapter_Config_V2>(context, 0).value_or(_Adapter_Config_V2{});
    const _Adapter_Info info = adapterInfo(context);
    for (const Setting& setting : SETTINGS) {
        const KT_U8 status = checkSetting(info, setting, valueOf(config, setting), valueOf(wanted, setting));
        if (status != KT_OK) return status;
    }
    const bool alarmComesOn = wanted.AlarmOn && !config.AlarmOn;
    const bool pollingBegins = wanted.PollSMARTStatus == 1 && config.PollSMARTStatus == 0;
    for (const Setting& setting : SETTINGS) {
        const KT_U8 value = valueOf(wanted, setting);
        if (value == valueOf(config, setting)) continue;
        reinterpret_cast<KT_U8*>(&config)[setting.offset] = value;
        logSetting(context, setting, value);
    }
    save(context, 0, config);
    settingsChanged(context, config);
    if (alarmComesOn) unmute(context);
    if (pollingBegins) pollSmart(context);
    applyRates(context);
    engageSpares(context);
    return KT_OK;
}

KT_U8 muteAdapter(const Context& context) {
    if (!adapterInfo(context).AlarmSupport) return KT_ERR_NOT_ON_THIS_ADAPTER;
    AdapterState state = find<AdapterState>(context, 0).value_or(AdapterState{});
    if (state.muted) return KT_OK;
    state.muted = 1;
    save(context, 0, state);
    logEvent(context, EVT_MISC_MUTED, context.adapter);
    return KT_OK;
}

} // namespace sim
