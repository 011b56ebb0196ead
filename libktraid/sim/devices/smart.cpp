#include "devices/smart.h"

#include "activities/activities.h"
#include "media/smartAttributes.h"

#include <algorithm>

namespace sim {

// KT_OK when the disk is there and speaks ATA.
static KT_U8 findAtaDisk(const Context& context, KT_U16 pd, _HD_Info& disk, PdState& state) {
    const auto found = find<_HD_Info>(context, pd);
    if (!found) return KT_ERR_INVALID_PD;
    disk = *found;
    state = find<PdState>(context, pd).value_or(PdState{});
    if (disk.HDType & KT_HD_SAS) return KT_ERR_NOT_SUPPORTED;
    return state.health == PD_FAILED ? KT_ERR_LINK_TIMEOUT : KT_OK;
}

// With its age and temperature at context.now.
static _SMART_Info describeNow(const Context& context, KT_U16 pd, const _HD_Info& disk) {
    if (const auto told = find<ToldHealth>(context, pd)) return told->shown;
    Life life = lifeOf(context, pd, disk);
    life.temperature += static_cast<KT_U64>(warmthAt(context.now, isBusy(context, pd)));
    return describeAttributes(life, disk);
}

// A disk that a lab calls tripped without saying why has run out of sectors to reassign.
static void explainTrip(const PdState& state, _SMART_Info& info) {
    if (!state.smartTripped || isFailing(info)) return;
    for (_SMART_Attribute& attribute : info.Attributes) {
        if (attribute.Id != 0x05) continue;
        attribute.RawValue = BAD_BLOCK_TABLE;
        attribute.Current = attribute.Worst = attribute.Threshold;
        attribute.Status = KT_SMART_FAILING;
    }
}

KT_U8 getSmartInfo(const Context& context, KT_U16 pd, _SMART_Info& info) {
    if (adapterInfo(context).AdvancedFeatures & KT_ADV_NO_SMART) return KT_ERR_NOT_ON_THIS_ADAPTER;
    _HD_Info disk = {};
    PdState state = {};
    const KT_U8 status = findAtaDisk(context, pd, disk, state);
    if (status != KT_OK) return status;
    if (!knowsSmart(disk)) return KT_ERR_NOT_SUPPORTED;
    if (!state.config.SMARTOn) return KT_ERR_INVALID_REQUEST;
    info = describeNow(context, pd, disk);
    if (!find<ToldHealth>(context, pd)) explainTrip(state, info);
    return KT_OK;
}

enum : KT_U8 { ATA_READY = 0x50, ATA_ERROR = 0x51, ATA_ABORTED = 0x04, NON_DATA = 0 };
enum : KT_U8 { SMART_ENABLE = 0xD8, SMART_DISABLE = 0xD9, SMART_FAILING_MID = 0xF4, SMART_FAILING_HIGH = 0x2C };
enum : KT_U8 { ATA_SET_FEATURES = 0xEF, FEATURE_CACHE_ON = 0x02, FEATURE_CACHE_OFF = 0x82 };

static bool doSmart(const _HD_Info& disk, PdState& state, bool failing, _ATA_PassThrough& command) {
    const bool signed_ = command.LBAMid == KT_SMART_LBA_MID && command.LBAHigh == KT_SMART_LBA_HIGH;
    if (!signed_ || !knowsSmart(disk)) return false;
    if (command.Features == SMART_ENABLE || command.Features == SMART_DISABLE) {
        state.config.SMARTOn = command.Features == SMART_ENABLE ? 1 : 0;
        return true;
    }
    if (command.Features != KT_SMART_RETURN_STATUS || !state.config.SMARTOn) return false;
    command.Status = KT_ATA_HEALTHY;
    command.LBAMidReturned = KT_SMART_LBA_MID;
    command.LBAHighReturned = KT_SMART_LBA_HIGH;
    if (failing) {
        command.Status = command.LBAMidReturned = SMART_FAILING_MID;
        command.LBAHighReturned = SMART_FAILING_HIGH;
    }
    return true;
}

static bool doSetFeatures(PdState& state, const _ATA_PassThrough& command) {
    if (command.Features != FEATURE_CACHE_ON && command.Features != FEATURE_CACHE_OFF) return false;
    state.config.WriteCacheOn = command.Features == FEATURE_CACHE_ON ? 1 : 0;
    return true;
}

// Flush cache (and ext), idle and standby immediate, check power mode: nothing that could be seen.
static bool isHarmless(KT_U8 command) {
    const KT_U8 harmless[] = {0xE7, 0xEA, 0xE1, 0xE0, 0xE5};
    return std::find(std::begin(harmless), std::end(harmless), command) != std::end(harmless);
}

KT_U8 passThroughAta(const Context& context, KT_U16 pd, _ATA_PassThrough& command) {
    if (!(adapterInfo(context).AdvancedFeatures & KT_ADV_ATA_PASS_THROUGH)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    _HD_Info disk = {};
    PdState state = {};
    const KT_U8 status = findAtaDisk(context, pd, disk, state);
    if (status != KT_OK) return status;
    if (command.Protocol != NON_DATA) return KT_ERR_NOT_SUPPORTED;
    command.Status = ATA_READY;
    command.Error = command.LBAMidReturned = command.LBAHighReturned = 0;
    const PdState before = state;
    bool done = isHarmless(command.Command);
    if (command.Command == KT_ATA_SMART)
        done = doSmart(disk, state, state.smartTripped || isFailing(describeNow(context, pd, disk)), command);
    if (command.Command == ATA_SET_FEATURES) done = doSetFeatures(state, command);
    if (!done) {
        command.Status = ATA_ERROR;
        command.Error = ATA_ABORTED;
    }
    if (memcmp(&before, &state, sizeof state) != 0) save(context, pd, state);
    return KT_OK;
}

} // namespace sim
