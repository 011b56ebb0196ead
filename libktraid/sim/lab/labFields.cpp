#include "lab/labFields.h"

#include "lab/labFieldMaker.h"
#include "lab/labPeripheralFields.h"

#include <algorithm>
#include <array>

namespace sim {

static constexpr Field GLOBAL_FIELDS[] = {NUM(GlobalState, adapterCount), NUM(GlobalState, powerOff),
                                          NUM(GlobalState, rescanCount), NUM(GlobalState, sgVersion),
                                          TXT(GlobalState, lab)};
static constexpr Field CLOCK_FIELDS[] = {NUM(Clock, base), NUM(Clock, realBase), NUM(Clock, speed), NUM(Clock, stopped),
                                         SGN(Clock, ahead)};
static constexpr Field FAULT_FIELDS[] = {TXT(Fault, call),  NUM(Fault, kind),  NUM(Fault, status), NUM(Fault, adapter),
                                         NUM(Fault, after), NUM(Fault, times), NUM(Fault, seen)};
static constexpr Field ADAPTER_FIELDS[] = {
    NUM(_Adapter_Info, DriverVersion.VerMajor),
    NUM(_Adapter_Info, DriverVersion.VerMinor),
    NUM(_Adapter_Info, DriverVersion.VerOEM),
    NUM(_Adapter_Info, DriverVersion.VerBuild),
    VERSION(_Adapter_Info, BIOSVersion),
    VERSION(_Adapter_Info, FirmwareVersion),
    VERSION(_Adapter_Info, BootLoaderVersion),
    NUM(_Adapter_Info, SystemIOBusNumber),
    NUM(_Adapter_Info, SlotNumber),
    NUM(_Adapter_Info, InterruptLevel),
    NUM(_Adapter_Info, InterruptVector),
    NUM(_Adapter_Info, VenID),
    NUM(_Adapter_Info, SubVenID),
    NUM(_Adapter_Info, DevID),
    NUM(_Adapter_Info, SubDevID),
    NUM(_Adapter_Info, PortCount),
    NUM(_Adapter_Info, PortSupportType),
    NUM(_Adapter_Info, Features),
    NUM(_Adapter_Info, AlarmSupport),
    NUM(_Adapter_Info, RevisionID),
    NUM(_Adapter_Info, MaxPDPerVD),
    NUM(_Adapter_Info, StripeSizeSupported),
    NUM(_Adapter_Info, AdvancedFeatures),
    NUM(_Adapter_Info, MaxPDPerDG),
    NUM(_Adapter_Info, MaxVDPerDG),
    NUM(_Adapter_Info, MaxParityDisks),
    NUM(_Adapter_Info, MaxDiskGroup),
    NUM(_Adapter_Info, MaxTotalBlocks),
    NUM(_Adapter_Info, MaxBlockPerPD),
    NUM(_Adapter_Info, MaxHD),
    NUM(_Adapter_Info, MaxExpander),
    NUM(_Adapter_Info, MaxPM),
    NUM(_Adapter_Info, MaxLogicalDrive),
    NUM(_Adapter_Info, LogicalDriverMode),
    HEX(_Adapter_Info, WWN),
    NUM(_Adapter_Info, MaxHD_Ext),
    NUM(_Adapter_Info, MaxBufferSize),
    NUM(_Adapter_Info, MaxTotalBlocks_V2),
    NUM(_Adapter_Info, MaxAESPort),
    NUM(_Adapter_Info, MaxTandemHdd),
    NUM(_Adapter_Info, MaxSSDPerTandemix),
    NUM(_Adapter_Info, MaxAESEntry),
    NUM(_Adapter_Info, MaxSSDSegment),
    TXT(_Adapter_Info, SerialNo),
    HEX(_Adapter_Info, PortSasAddress),
    NUM(_Adapter_Info, MaxSpeed),
    NUM(_Adapter_Info, CurrentSpeed),
    NUM(_Adapter_Info, MaxLinkWidth),
    NUM(_Adapter_Info, CurrentLinkWidth),
    NUM(_Adapter_Info, img_health),
    NUM(_Adapter_Info, autoload_img_health),
    NUM(_Adapter_Info, boot_loader_img_health),
    NUM(_Adapter_Info, firmware_img_health),
    NUM(_Adapter_Info, boot_rom_img_health),
    NUM(_Adapter_Info, hba_info_img_health),
    TXT(_Adapter_Info, ModelNumber),
};
static constexpr Field CONFIG_FIELDS[] = {
    NUM(_Adapter_Config_V2, AutoRebuildOn),
    NUM(_Adapter_Config_V2, CpuEfficiencyOn),
    NUM(_Adapter_Config_V2, BGARate),
    NUM(_Adapter_Config_V2, SyncRate),
    NUM(_Adapter_Config_V2, InitRate),
    NUM(_Adapter_Config_V2, RebuildRate),
    NUM(_Adapter_Config_V2, MigrationRate),
    NUM(_Adapter_Config_V2, CopybackRate),
    NUM(_Adapter_Config_V2, MPRate),
    NUM(_Adapter_Config_V2, PollSMARTStatus),
    NUM(_Adapter_Config_V2, CopyBackOn),
    NUM(_Adapter_Config_V2, ModuleConsolidation),
    NUM(_Adapter_Config_V2, rawimg_update_disabled),
    NUM(_Adapter_Config_V2, AlarmOn),
    TXT(_Adapter_Config_V2, SerialNo),
    TXT(_Adapter_Config_V2, ModelNumber),
};
static constexpr Field ADAPTER_STATE_FIELDS[] = {NUM(AdapterState, dueRaid),    NUM(AdapterState, duePeripherals),
                                                 NUM(AdapterState, muted),      NUM(AdapterState, patrols),
                                                 NUM(AdapterState, losses),     NUM(AdapterState, down),
                                                 NUM(AdapterState, lossesAtOff)};
static constexpr Field VD_FIELDS[] = {
    NUM(_LD_Info, ID),
    NUM(_LD_Info, Status),
    NUM(_LD_Info, BGAStatus),
    NUM(_LD_Info, StripeBlockSize),
    NUM(_LD_Info, RaidMode),
    NUM(_LD_Info, HDCount),
    NUM(_LD_Info, CacheMode),
    HEX(_LD_Info, LD_GUID),
    NUM(_LD_Info, SectorCoefficient),
    NUM(_LD_Info, AdapterID),
    NUM(_LD_Info, BlkCount),
    NUM(_LD_Info, time_hi),
    NUM(_LD_Info, DGID),
    NUM(_LD_Info, Size),
    TXT(_LD_Info, Name),
    NUM(_LD_Info, BlockIDs),
    NUM(_LD_Info, SubLDCount),
    NUM(_LD_Info, NumParityDisk),
    NUM(_LD_Info, time_low),
    NUM(_LD_Info, BlockSize),
};
// A target's record begins with a virtual disk's.
static constexpr auto targetFields() {
    std::array<Field, std::size(VD_FIELDS) + 1> all = {};
    std::copy(std::begin(VD_FIELDS), std::end(VD_FIELDS), all.begin());
    all.back() = NUM(VdTarget, homes);
    return all;
}
static constexpr auto TARGET_FIELDS = targetFields();
static constexpr Field VD_STATE_FIELDS[] = {
    NUM(VdState, cachePolicy), NUM(VdState, hasOs),         NUM(VdState, initialized),
    NUM(VdState, unfinished),  NUM(VdState, whole),         NUM(VdState, linkedDisk),
    NUM(VdState, offline),     ACTIVITY(VdState, activity), NUM(VdState, homes)};
static constexpr Field DG_FIELDS[] = {
    NUM(_DG_Info, DGID),
    TXT(_DG_Info, Name),
    NUM(_DG_Info, RaidMode),
    NUM(_DG_Info, SubVDCount),
    NUM(_DG_Info, NumParityDisk),
    NUM(_DG_Info, AdapterID),
    NUM(_DG_Info, StripeBlockSize),
    NUM(_DG_Info, BlockSize),
    NUM(_DG_Info, TotalManagedSpace),
    NUM(_DG_Info, RemainingManagedSpace),
    NUM(_DG_Info, SmallestAvailablePDSize),
    NUM(_DG_Info, Status),
    NUM(_DG_Info, PDBgaRunning),
    NUM(_DG_Info, PDCount),
    NUM(_DG_Info, PDIDs),
    NUM(_DG_Info, VDSlotCount),
    NUM(_DG_Info, VDSlotSize),
    NUM(_DG_Info, VDIDs),
    NUM(_DG_Info, SparePDCount),
    NUM(_DG_Info, SparePDIDs),
    NUM(_DG_Info, BgaType),
    NUM(_DG_Info, BgaState),
};
static constexpr Field DG_STATE_FIELDS[] = {NUM(DgState, writeCacheOn), NUM(DgState, memberCount),
                                            ACTIVITY(DgState, activity), NUM(DgState, members), NUM(DgState, homes)};
static constexpr Field PD_FIELDS[] = {
    LINK(_HD_Info, Link),
    NUM(_HD_Info, AdapterID),
    NUM(_HD_Info, InitStatus),
    NUM(_HD_Info, HDType),
    NUM(_HD_Info, PIOMode),
    NUM(_HD_Info, MDMAMode),
    NUM(_HD_Info, UDMAMode),
    NUM(_HD_Info, ConnectionType),
    NUM(_HD_Info, DeviceType),
    NUM(_HD_Info, FeatureSupport),
    TXT(_HD_Info, Model),
    TXT(_HD_Info, SerialNo),
    TXT(_HD_Info, FWVersion),
    NUM(_HD_Info, Size),
    HEX(_HD_Info, WWN),
    NUM(_HD_Info, CurrentPIOMode),
    NUM(_HD_Info, CurrentMDMAMode),
    NUM(_HD_Info, CurrentUDMAMode),
    NUM(_HD_Info, ElementIdx),
    NUM(_HD_Info, BlockSize),
    NUM(_HD_Info, ActivityLEDStatus),
    NUM(_HD_Info, LocateLEDStatus),
    NUM(_HD_Info, ErrorLEDStatus),
    NUM(_HD_Info, SesDeviceType),
    NUM(_HD_Info, sata_signature),
    NUM(_HD_Info, HD_SSD_Type),
    NUM(_HD_Info, Media_Rotation_Rate),
};
static constexpr Field PD_STATE_FIELDS[] = {
    NUM(PdState, config.WriteCacheOn),
    NUM(PdState, config.SMARTOn),
    NUM(PdState, config.Online),
    NUM(PdState, config.DriveSpeed),
    NUM(PdState, config.crypto),
    NUM(PdState, config.AESPercentage),
    NUM(PdState, config.HDID),
    NUM(PdState, raid),
    NUM(PdState, left),
    NUM(PdState, health),
    NUM(PdState, hasMbr),
    NUM(PdState, hasOs),
    NUM(PdState, dgid),
    NUM(PdState, smartTripped),
    NUM(PdState, toldTooSmall),
    NUM(PdState, reservedKib),
    ACTIVITY(PdState, patrol),
};
static constexpr Field BLOCK_FIELDS[] = {
    NUM(_Block_Info, ID),       NUM(_Block_Info, HDID),
    NUM(_Block_Info, Flags),    NUM(_Block_Info, LDID),
    NUM(_Block_Info, Status),   NUM(_Block_Info, BlockSize),
    NUM(_Block_Info, StartLBA), NUM(_Block_Info, ReservedSpaceForMigration),
    NUM(_Block_Info, Size),
};
static constexpr Field PD_BLOCK_FIELDS[] = {NUM(_HD_Block_Info, HDID), NUM(_HD_Block_Info, BlkCount),
                                            NUM(_HD_Block_Info, BlkIDs)};
static constexpr Field PM_FIELDS[] = {
    LINK(_PM_Info, Link),         NUM(_PM_Info, AdapterID), NUM(_PM_Info, ProductRevision), NUM(_PM_Info, SpecRevision),
    NUM(_PM_Info, NumberOfPorts), NUM(_PM_Info, VendorID),  NUM(_PM_Info, DeviceID)};
static constexpr Field EXPANDER_FIELDS[] = {
    LINK(_Exp_Info, Link),
    NUM(_Exp_Info, AdapterID),
    NUM(_Exp_Info, Configuring),
    NUM(_Exp_Info, RouteTableConfigurable),
    NUM(_Exp_Info, PhyCount),
    NUM(_Exp_Info, ChangeCount),
    NUM(_Exp_Info, RouteIndexes),
    TXT(_Exp_Info, VendorID),
    TXT(_Exp_Info, ProductID),
    TXT(_Exp_Info, ProductRevision),
    TXT(_Exp_Info, ComponentVendorID),
    NUM(_Exp_Info, ComponentID),
    NUM(_Exp_Info, ComponentRevision),
};
static constexpr Field ENCLOSURE_FIELDS[] = {NUM(_Enclosure_Info, EnclosureID), NUM(_Enclosure_Info, AdapterID),
                                             NUM(_Enclosure_Info, Status),      NUM(_Enclosure_Info, ElementTypeCount),
                                             HEX(_Enclosure_Info, LogicalID),   TXT(_Enclosure_Info, VendorID),
                                             TXT(_Enclosure_Info, ProductID),   TXT(_Enclosure_Info, RevisionLevel)};
static constexpr Field EVENT_FIELDS[] = {NUM(_Event, Class),      NUM(_Event, Code),     NUM(_Event, TimeStamp),
                                         NUM(_Event, DeviceID),   NUM(_Event, Severity), NUM(_Event, AdapterID),
                                         NUM(_Event, SequenceNo), NUM(_Event, Params),   NUM(_Event, SenseDataLength),
                                         HEX(_Event, SenseData)};
static constexpr Field BATTERY_FIELDS[] = {
    NUM(_BBU_Info, status),        NUM(_BBU_Info, sensorSupport),  NUM(_BBU_Info, rechargeCycle),
    NUM(_BBU_Info, minutesToFull), NUM(_BBU_Info, minutesToEmpty), SGN(_BBU_Info, temperature),
    SGN(_BBU_Info, tempLow),       SGN(_BBU_Info, tempHigh),       NUM(_BBU_Info, voltage),
    NUM(_BBU_Info, voltLow),       NUM(_BBU_Info, voltHigh),       NUM(_BBU_Info, capacity),
    NUM(_BBU_Info, maxCapacity),   NUM(_BBU_Info, percentage)};

static constexpr RecordFields TABLES[] = {
    TABLE(KIND_GLOBAL, "global", GlobalState, GLOBAL_FIELDS),
    TABLE(KIND_CLOCK, "clock", Clock, CLOCK_FIELDS),
    TABLE(KIND_FAULT, "faults", Fault, FAULT_FIELDS),
    TABLE(KIND_ADAPTER, "adapter", _Adapter_Info, ADAPTER_FIELDS),
    TABLE(KIND_ADAPTER_CONFIG, "adapterConfig", _Adapter_Config_V2, CONFIG_FIELDS),
    TABLE(KIND_ADAPTER_STATE, "adapterState", AdapterState, ADAPTER_STATE_FIELDS),
    TABLE(KIND_VD, "virtualDisks", _LD_Info, VD_FIELDS),
    TABLE(KIND_VD_STATE, "virtualDiskStates", VdState, VD_STATE_FIELDS),
    {KIND_VD_TARGET, "migrationTargets", sizeof(VdTarget), TARGET_FIELDS.data(), TARGET_FIELDS.size()},
    TABLE(KIND_DG, "arrays", _DG_Info, DG_FIELDS),
    TABLE(KIND_DG_STATE, "arrayStates", DgState, DG_STATE_FIELDS),
    TABLE(KIND_PD, "disks", _HD_Info, PD_FIELDS),
    TABLE(KIND_PD_STATE, "diskStates", PdState, PD_STATE_FIELDS),
    TABLE(KIND_BLOCK, "blocks", _Block_Info, BLOCK_FIELDS),
    TABLE(KIND_PD_BLOCKS, "diskBlocks", _HD_Block_Info, PD_BLOCK_FIELDS),
    TABLE(KIND_PM, "portMultipliers", _PM_Info, PM_FIELDS),
    TABLE(KIND_EXPANDER, "expanders", _Exp_Info, EXPANDER_FIELDS),
    TABLE(KIND_ENCLOSURE, "enclosures", _Enclosure_Info, ENCLOSURE_FIELDS),
    TABLE(KIND_EVENT, "events", _Event, EVENT_FIELDS),
    TABLE(KIND_BATTERY, "battery", _BBU_Info, BATTERY_FIELDS),
};
static_assert(offsetof(VdTarget, info) == 0);

template <class Fits>
static const RecordFields* firstTable(Fits fits) {
    const auto* table = std::find_if(std::begin(TABLES), std::end(TABLES), fits);
    if (table != std::end(TABLES)) return table;
    const std::span<const RecordFields> more = peripheralTables();
    const auto found = std::find_if(more.begin(), more.end(), fits);
    return found == more.end() ? nullptr : &*found;
}

const RecordFields* fieldsOf(Kind kind) {
    return firstTable([&](const RecordFields& table) { return table.kind == kind; });
}

const RecordFields* fieldsOfSection(const std::string& section) {
    return firstTable([&](const RecordFields& table) { return section == table.section; });
}

} // namespace sim
