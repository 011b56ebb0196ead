#include "media/smartAttributes.h"

#include "media/disks.h"

#include <algorithm>

namespace sim {

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
    if (described.Worst <= attribute.threshold) described.Status = KT_SMART_FAILED_BEFORE;
    if (described.Current <= attribute.threshold) described.Status = KT_SMART_FAILING;
    return described;
}

_SMART_Info describeAttributes(const Life& life, const _HD_Info& disk) {
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

bool isFailing(const _SMART_Info& info) {
    return std::any_of(info.Attributes, info.Attributes + info.AttributeCount,
                       [](const _SMART_Attribute& attribute) { return attribute.Status == KT_SMART_FAILING; });
}

bool knowsSmart(const _HD_Info& disk) {
    return (disk.FeatureSupport & KT_HD_SMART) && !(disk.HDType & (KT_HD_SAS | KT_HD_ATAPI));
}

} // namespace sim
