#include "devices/settingsPage.h"

#include "activities/activities.h"
#include "devices/battery.h"
#include "devices/batteryDeeds.h"

#include <algorithm>

namespace sim {

static const KT_U8 PAGE_SIGNATURE[4] = {'T', 'L', 'V', 'N'};
static const size_t PAGE_PORTS = std::size(_HBA_Info_Page{}.SAS_Address);
enum : KT_U8 { RAID_FEATURE_ON = 0x02, RATE_3GB = 1, LARGEST_RATE = 100 };

struct RateField {
    size_t page;
    size_t config;
};
static const RateField RATES[] = {
    {offsetof(_HBA_Info_Page, BGA_Rate), offsetof(_Adapter_Config_V2, BGARate)},
    {offsetof(_HBA_Info_Page, Sync_Rate), offsetof(_Adapter_Config_V2, SyncRate)},
    {offsetof(_HBA_Info_Page, Init_Rate), offsetof(_Adapter_Config_V2, InitRate)},
    {offsetof(_HBA_Info_Page, Rebuild_Rate), offsetof(_Adapter_Config_V2, RebuildRate)},
    {offsetof(_HBA_Info_Page, Migration_Rate), offsetof(_Adapter_Config_V2, MigrationRate)},
    {offsetof(_HBA_Info_Page, Copyback_Rate), offsetof(_Adapter_Config_V2, CopybackRate)},
    {offsetof(_HBA_Info_Page, MP_Rate), offsetof(_Adapter_Config_V2, MPRate)},
};

template <class Record>
static KT_U8& byteAt(Record& record, size_t offset) {
    return reinterpret_cast<KT_U8*>(&record)[offset];
}

static KT_U8 sumOf(const _HBA_Info_Page& page) {
    KT_U8 sum = 0;
    for (size_t i = 0; i < sizeof page; ++i)
        sum = static_cast<KT_U8>(sum + reinterpret_cast<const KT_U8*>(&page)[i]);
    return sum;
}

static void seal(_HBA_Info_Page& page) {
    page.Check_Sum = 0;
    page.Check_Sum = static_cast<KT_U8>(-sumOf(page));
}

static void copyRates(_HBA_Info_Page& page, const _Adapter_Config_V2& config) {
    for (const RateField& rate : RATES)
        byteAt(page, rate.page) = reinterpret_cast<const KT_U8*>(&config)[rate.config];
}

static _HBA_Info_Page factoryPage(const Context& context) {
    const _Adapter_Info info = adapterInfo(context);
    _HBA_Info_Page page = {};
    memcpy(page.Signature, PAGE_SIGNATURE, sizeof PAGE_SIGNATURE);
    page.MajorRev = 1;
    page.Next_Page = 0xFFFF;
    page.Major = static_cast<KT_U8>(info.DriverVersion.VerMajor);
    page.Minor = static_cast<KT_U8>(info.DriverVersion.VerMinor);
    page.Max_PHY_Num = info.PortCount;
    page.RAID_Feature = RAID_FEATURE_ON;
    page.DSpinUpGroup = 1;
    page.DSpinUpTimer = 1;
    page.Delay_Time = 5;
    memcpy(page.Serial_Num, info.SerialNo, sizeof page.Serial_Num);
    memcpy(page.model_number, info.ModelNumber, sizeof page.model_number);
    memcpy(page.SAS_Address, info.PortSasAddress, sizeof page.SAS_Address);
    for (size_t port = 0; port < PAGE_PORTS; ++port) {
        page.PHY_Rate[port] = RATE_3GB;
        page.PHY_Tuning[port] = _PHY_Tuning{0x6, 0x2, 0x20, 1, 0};
    }
    const BatteryLimits limits = batteryLimits(context);
    page.bbu_charge_threshold = limits.rechargeBelow;
    page.bbu_temp_lowerbound = limits.tempLow;
    page.bbu_temp_upperbound = limits.tempHigh;
    page.bbu_volt_lowerbound = limits.voltLow;
    page.bbu_volt_upperbound = limits.voltHigh;
    copyRates(page, find<_Adapter_Config_V2>(context, 0).value_or(_Adapter_Config_V2{}));
    seal(page);
    return page;
}

_HBA_Info_Page settingsPage(const Context& context) {
    const auto stored = find<_HBA_Info_Page>(context, 0);
    return stored ? *stored : factoryPage(context);
}

void restoreSettingsPage(const Context& context, const _HBA_Info_Page& page) {
    const _HBA_Info_Page now = settingsPage(context);
    if (memcmp(&now, &page, sizeof page) != 0) save(context, 0, page);
}

static bool isSigned(const _HBA_Info_Page& page) {
    return memcmp(page.Signature, PAGE_SIGNATURE, sizeof PAGE_SIGNATURE) == 0;
}

static bool pageIsSound(const _HBA_Info_Page& page) {
    const bool rates = std::all_of(std::begin(RATES), std::end(RATES), [&](const RateField& rate) {
        return reinterpret_cast<const KT_U8*>(&page)[rate.page] <= LARGEST_RATE;
    });
    return isSigned(page) && sumOf(page) == 0 && rates;
}

// The adapter's record and settings after a page was written.
static void applyPage(const Context& context, const _HBA_Info_Page& page) {
    _Adapter_Info info = adapterInfo(context);
    memcpy(info.SerialNo, page.Serial_Num, sizeof info.SerialNo);
    memcpy(info.ModelNumber, page.model_number, sizeof info.ModelNumber);
    for (size_t port = 0; port < std::min<size_t>(info.PortCount, PAGE_PORTS); ++port)
        memcpy(info.PortSasAddress[port], page.SAS_Address[port], sizeof page.SAS_Address[port]);
    info.hba_info_img_health = 1;
    save(context, 0, info);
    auto config = find<_Adapter_Config_V2>(context, 0);
    if (!config) return;
    memcpy(config->SerialNo, page.Serial_Num, sizeof config->SerialNo);
    memcpy(config->ModelNumber, page.model_number, sizeof config->ModelNumber);
    for (const RateField& rate : RATES)
        byteAt(*config, rate.config) = reinterpret_cast<const KT_U8*>(&page)[rate.page];
    save(context, 0, *config);
    applyRates(context);
}

KT_U8 writeSettingsPage(const Context& context, const _HBA_Info_Page& page) {
    if (!pageIsSound(page)) return KT_ERR_FLASH_DATA;
    save(context, 0, page);
    applyPage(context, page);
    setBatteryLimits(context,
                     BatteryLimits{page.bbu_charge_threshold, page.bbu_temp_lowerbound, page.bbu_temp_upperbound,
                                   page.bbu_volt_lowerbound, page.bbu_volt_upperbound});
    return KT_OK;
}

void eraseSettingsPage(const Context& context) {
    _HBA_Info_Page page;
    memset(&page, 0xFF, sizeof page);
    save(context, 0, page);
    _Adapter_Info info = adapterInfo(context);
    info.hba_info_img_health = 0;
    memset(info.SerialNo, 0, sizeof info.SerialNo);
    memset(info.ModelNumber, 0, sizeof info.ModelNumber);
    memset(info.PortSasAddress, 0, sizeof info.PortSasAddress);
    save(context, 0, info);
    auto config = find<_Adapter_Config_V2>(context, 0);
    if (!config) return;
    memset(config->SerialNo, 0, sizeof config->SerialNo);
    memset(config->ModelNumber, 0, sizeof config->ModelNumber);
    save(context, 0, *config);
}

void settingsChanged(const Context& context, const _Adapter_Config_V2& config) {
    auto page = find<_HBA_Info_Page>(context, 0);
    if (!page || !pageIsSound(*page)) return;
    copyRates(*page, config);
    seal(*page);
    save(context, 0, *page);
}

} // namespace sim
