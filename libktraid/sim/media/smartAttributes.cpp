#include "media/smartAttributes.h"

#include "changes/health.h"
#include "media/life.h"
#include "media/surface.h"
#include "raid/candidates.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

enum : KT_U16 { EVT_BAD_BLOCKS_80 = 13, EVT_BAD_BLOCKS_FULL = 14 };
static const KT_U32 BAD_BLOCK_TABLE = 512; // sectors a disk can reassign

enum Counter : KT_U8 {
    READ_ERRORS,
    REALLOCATED,
    HOURS,
    SPIN_RETRIES,
    POWER_CYCLES,
    WEAR,
    WRITTEN,
    UNCORRECTABLE,
    OFFLINE_UNCORRECTABLE,
    TEMPERATURE,
    PENDING,
    LINK_ERRORS,
    NOTHING
};

// An attribute: its value falls from `start` by one for every `perPoint` of its counter (0 = never).
struct Attribute {
    KT_U8 id;
    KT_U8 start;
    KT_U8 threshold;
    Counter counter;
    KT_U32 perPoint;
    const char* name;
};
static const Attribute SPINNING[] = {
    {0x01, 100, 6, READ_ERRORS, 10, "Raw_Read_Error_Rate"},
    {0x03, 97, 0, NOTHING, 1, "Spin_Up_Time"},
    {0x04, 100, 20, POWER_CYCLES, 1000, "Start_Stop_Count"},
    {0x05, 100, 36, REALLOCATED, BAD_BLOCK_TABLE / 64, "Reallocated_Sectors"},
    {0x07, 87, 30, NOTHING, 1, "Seek_Error_Rate"},
    {0x09, 100, 0, HOURS, 1000, "Power_On_Hours"},
    {0x0A, 100, 97, SPIN_RETRIES, 1, "Spin_Retry_Count"},
    {0x0C, 100, 20, POWER_CYCLES, 1000, "Power_Cycle_Count"},
    {0xBB, 100, 0, UNCORRECTABLE, 1, "Reported_Uncorrect"},
    {0xBE, 100, 45, TEMPERATURE, 1, "Airflow_Temperature"},
    {0xC2, 100, 0, TEMPERATURE, 1, "Temperature_Celsius"},
    {0xC5, 100, 0, PENDING, 8, "Pending_Sectors"},
    {0xC6, 100, 0, OFFLINE_UNCORRECTABLE, 8, "Offline_Uncorrect"},
    {0xC7, 200, 0, LINK_ERRORS, 10, "UDMA_CRC_Error_Count"},
};
static const Attribute SOLID_STATE[] = {
    {0x05, 100, 36, REALLOCATED, BAD_BLOCK_TABLE / 64, "Reallocated_Sectors"},
    {0x09, 100, 0, HOURS, 1000, "Power_On_Hours"},
    {0x0C, 100, 0, POWER_CYCLES, 1000, "Power_Cycle_Count"},
    {0xAB, 100, 0, NOTHING, 1, "Program_Fail_Count"},
    {0xAC, 100, 0, NOTHING, 1, "Erase_Fail_Count"},
    {0xB1, 100, 5, WEAR, 1, "Wear_Leveling_Count"},
    {0xBB, 100, 0, UNCORRECTABLE, 1, "Reported_Uncorrect"},
    {0xC2, 100, 0, TEMPERATURE, 1, "Temperature_Celsius"},
    {0xC7, 200, 0, LINK_ERRORS, 10, "UDMA_CRC_Error_Count"},
    {0xE7, 100, 10, WEAR, 1, "SSD_Life_Left"},
    {0xF1, 100, 0, WRITTEN, 0, "Total_LBAs_Written"},
};

struct Aspect {
    const char* word;
    KT_U32 DiskAge::*count;
    Ageing refusal = Ageing::Done; // what the other kind of disk answers
};
static const Aspect ASPECTS[] = {
    {"reallocated", &DiskAge::reallocated},
    {"pending", &DiskAge::pending},
    {"uncorrectable", &DiskAge::uncorrectable},
    {"read-errors", &DiskAge::readErrors, Ageing::OnlySpinning},
    {"spin-retries", &DiskAge::spinRetries, Ageing::OnlySpinning},
    {"link-errors", &DiskAge::linkErrors},
    {"hours", &DiskAge::hours},
    {"wear", &DiskAge::wear, Ageing::OnlySolidState},
    {"warmth", &DiskAge::warmth},
};

std::vector<std::string> agingWords() {
    std::vector<std::string> words;
    for (const Aspect& aspect : ASPECTS)
        words.emplace_back(aspect.word);
    return words;
}

static KT_U64 counterOf(const Life& life, Counter counter) {
    switch (counter) {
    case READ_ERRORS:
        return life.age.readErrors;
    case REALLOCATED:
        return life.age.reallocated;
    case HOURS:
        return life.hours;
    case SPIN_RETRIES:
        return life.age.spinRetries;
    case POWER_CYCLES:
        return life.powerCycles;
    case WEAR:
        return life.wear;
    case WRITTEN:
        return life.written;
    case UNCORRECTABLE:
        return life.age.uncorrectable;
    case OFFLINE_UNCORRECTABLE: // until they are written again, unlike what was once reported
        return std::min(life.age.uncorrectable, life.age.pending);
    case TEMPERATURE:
        return life.temperature;
    case PENDING:
        return life.age.pending;
    case LINK_ERRORS:
        return life.age.linkErrors;
    default:
        return 0;
    }
}

static KT_U8 valueOf(const Attribute& attribute, KT_U64 counter) {
    const KT_U64 lost = attribute.perPoint ? counter / attribute.perPoint : 0;
    return static_cast<KT_U8>(lost + 1 < attribute.start ? attribute.start - lost : 1);
}

// The counter at the disk's worst moment; only what recovers was ever worse than now.
static KT_U64 worstCounter(const Life& life, Counter counter) {
    const KT_U32 mostPending = std::max(life.age.mostPending, life.age.pending);
    if (counter == PENDING) return mostPending;
    if (counter == OFFLINE_UNCORRECTABLE) return std::min(life.age.uncorrectable, mostPending);
    return counter == TEMPERATURE ? life.hottest : counterOf(life, counter);
}

static _SMART_Attribute describe(const Attribute& attribute, const Life& life) {
    _SMART_Attribute described = {};
    const KT_U64 counter = counterOf(life, attribute.counter);
    described.Id = attribute.id;
    described.Current = valueOf(attribute, counter);
    described.Worst = valueOf(attribute, worstCounter(life, attribute.counter));
    described.Threshold = attribute.threshold;
    described.RawValue = counter;
    strncpy(reinterpret_cast<char*>(described.Name), attribute.name, sizeof described.Name - 1);
    if (attribute.threshold == 0) return described;
    if (described.Worst <= attribute.threshold) described.Status = KT_SMART_FAILED_BEFORE;
    if (described.Current <= attribute.threshold) described.Status = KT_SMART_FAILING;
    return described;
}

static _SMART_Info describeAll(const Life& life, const _HD_Info& disk) {
    _SMART_Info info = {};
    const auto add = [&](const Attribute& attribute) {
        info.Attributes[info.AttributeCount++] = describe(attribute, life);
    };
    if (isSolidState(disk)) {
        std::for_each(std::begin(SOLID_STATE), std::end(SOLID_STATE), add);
    } else {
        std::for_each(std::begin(SPINNING), std::end(SPINNING), add);
    }
    return info;
}

// As it is at this very moment.
static _SMART_Info describeNow(const Context& context, KT_U16 pd, const _HD_Info& disk) {
    Life life = lifeOf(context, pd, disk);
    life.temperature += static_cast<KT_U64>(warmthNow(context, pd));
    return describeAll(life, disk);
}

static bool isFailing(const _SMART_Info& info) {
    return std::any_of(info.Attributes, info.Attributes + info.AttributeCount,
                       [](const _SMART_Attribute& attribute) { return attribute.Status == KT_SMART_FAILING; });
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

static bool knowsSmart(const _HD_Info& disk) {
    return (disk.FeatureSupport & KT_HD_SMART) && !(disk.HDType & (KT_HD_SAS | KT_HD_ATAPI));
}

// KT_OK when the disk is there and speaks ATA.
static KT_U8 checkDisk(const Context& context, KT_U16 pd, _HD_Info& disk, PdState& state) {
    const auto found = find<_HD_Info>(context, pd);
    if (!found) return KT_ERR_INVALID_PD;
    disk = *found;
    state = find<PdState>(context, pd).value_or(PdState{});
    if (disk.HDType & KT_HD_SAS) return KT_ERR_NOT_SUPPORTED;
    return state.health == PD_FAILED ? KT_ERR_LINK_TIMEOUT : KT_OK;
}

KT_U8 getSmartInfo(const Context& context, KT_U16 pd, _SMART_Info& info) {
    if (adapterInfo(context).AdvancedFeatures & KT_ADV_NO_SMART) return KT_ERR_NOT_ON_THIS_ADAPTER;
    _HD_Info disk = {};
    PdState state = {};
    const KT_U8 status = checkDisk(context, pd, disk, state);
    if (status != KT_OK) return status;
    if (!knowsSmart(disk)) return KT_ERR_NOT_SUPPORTED;
    if (!state.config.SMARTOn) return KT_ERR_INVALID_REQUEST;
    info = describeNow(context, pd, disk);
    explainTrip(state, info);
    return KT_OK;
}

// ATA commands.

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
    const KT_U8 status = checkDisk(context, pd, disk, state);
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

// Ageing.

static void logTable(const Context& context, KT_U16 pd, KT_U32 before, KT_U32 now) {
    const KT_U32 most = BAD_BLOCK_TABLE * 8 / 10;
    if (before < most && now >= most) logEvent(context, EVT_PD, EVT_BAD_BLOCKS_80, pd, SEV_WARNING);
    if (before < BAD_BLOCK_TABLE && now >= BAD_BLOCK_TABLE)
        logEvent(context, EVT_PD, EVT_BAD_BLOCKS_FULL, pd, SEV_MAJOR);
}

static void addTo(KT_U32& count, KT_U32 amount) {
    count = static_cast<KT_U32>(std::min<KT_U64>(KT_U64{count} + amount, 0xFFFFFFU));
}

// Keeps what has become of the disk, with the events of thresholds that it crosses.
static void keepAge(const Context& context, KT_U16 pd, DiskAge age) {
    const KT_U32 reallocated = ageOf(context, pd).reallocated;
    age.mostPending = std::max(age.mostPending, age.pending);
    age.mostWarmth = std::max(age.mostWarmth, age.warmth);
    save(context, pd, age);
    logTable(context, pd, reallocated, age.reallocated);
    const auto disk = find<_HD_Info>(context, pd);
    const auto state = find<PdState>(context, pd);
    const bool trips =
        disk && state && !state->smartTripped && isFailing(describeAll(lifeOf(context, pd, *disk), *disk));
    if (trips && (disk->FeatureSupport & KT_HD_SMART)) tripSmart(context, pd, true);
}

Ageing ageDisk(const Context& context, KT_U16 pd, const std::string& aspect, KT_U32 amount) {
    const auto* found =
        std::find_if(std::begin(ASPECTS), std::end(ASPECTS), [&](const Aspect& known) { return aspect == known.word; });
    const auto disk = find<_HD_Info>(context, pd);
    if (found == std::end(ASPECTS) || !disk) return Ageing::NoDisk;
    if (!knowsSmart(*disk)) return Ageing::NoAttributes;
    if (found->refusal == (isSolidState(*disk) ? Ageing::OnlySpinning : Ageing::OnlySolidState)) return found->refusal;
    DiskAge age = ageOf(context, pd);
    const KT_U32 reallocated = age.reallocated;
    addTo(age.*found->count, amount);
    if (age.reallocated > reallocated) logEvent(context, EVT_PD, EVT_REASSIGNED, pd, SEV_INFO);
    if (found->count == &DiskAge::pending) addBadSectors(context, pd, BadSector{FLAW_UNREADABLE, 1, {}}, amount);
    keepAge(context, pd, age);
    return Ageing::Done;
}

void countUnreadable(const Context& context, KT_U16 pd, KT_U32 sectors) {
    if (sectors == 0) return;
    DiskAge age = ageOf(context, pd);
    addTo(age.pending, sectors);
    addTo(age.uncorrectable, sectors);
    addTo(age.readErrors, sectors);
    keepAge(context, pd, age);
}

void countReassigned(const Context& context, KT_U16 pd, KT_U32 sectors, KT_U32 known) {
    DiskAge age = ageOf(context, pd);
    age.pending -= std::min(age.pending, known);
    addTo(age.reallocated, sectors);
    keepAge(context, pd, age);
}

void countWritten(const Context& context, KT_U16 pd, KT_U64 kib) {
    const auto disk = find<_HD_Info>(context, pd);
    if (!disk || !isSolidState(*disk) || kib == 0) return;
    DiskAge age = ageOf(context, pd);
    age.writtenKib += kib;
    keepAge(context, pd, age);
}

KT_U32 sectorsToSpare(const Context& context, KT_U16 pd) {
    return BAD_BLOCK_TABLE - std::min(ageOf(context, pd).reallocated, BAD_BLOCK_TABLE);
}

} // namespace sim
