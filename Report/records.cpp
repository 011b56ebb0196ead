#include "Report/records.h"

#include <type_traits>
#include <utility>

template <class Member>
static constexpr RecordField makeField(const char* name, size_t offset, FieldKind kind) {
    if (kind == FieldKind::Number || kind == FieldKind::Signed) {
        using Element = std::remove_all_extents_t<Member>;
        constexpr size_t whole = sizeof(Member);
        return {name, offset, sizeof(Element), whole / sizeof(Element), kind};
    }
    if constexpr (std::rank_v<Member> == 2) {
        return {name, offset, std::extent_v<Member, 1>, std::extent_v<Member, 0>, kind};
    } else {
        return {name, offset, sizeof(Member), 1, kind};
    }
}

// Members are names, not expressions. NOLINTBEGIN(bugprone-macro-parentheses)
#define FIELD(record, member, kind)                                                                                    \
    makeField<std::remove_reference_t<decltype((std::declval<record&>().member))>>(#member, offsetof(record, member),  \
                                                                                   FieldKind::kind)
#define NUM(record, member) FIELD(record, member, Number)
#define SGN(record, member) FIELD(record, member, Signed)
#define TXT(record, member) FIELD(record, member, Text)
#define HEX(record, member) FIELD(record, member, Hex)
#define ENDPOINT(record, member)                                                                                       \
    NUM(record, member.DevID), NUM(record, member.DevType), NUM(record, member.PhyCnt), NUM(record, member.PhyID),     \
        HEX(record, member.SAS_Address), NUM(record, member.EnclosureID)
#define LINK(record) ENDPOINT(record, Link.Parent), ENDPOINT(record, Link.Self)
#define VERSION(member)                                                                                                \
    NUM(_Adapter_Info, member.MajorVersion), NUM(_Adapter_Info, member.MinorVersion),                                  \
        NUM(_Adapter_Info, member.RevisionNumber), NUM(_Adapter_Info, member.BuildNumber)
// NOLINTEND(bugprone-macro-parentheses)

// clang-format off
static constexpr RecordField adapter[] = {
    NUM(_Adapter_Info, DriverVersion.VerMajor), NUM(_Adapter_Info, DriverVersion.VerMinor),
    NUM(_Adapter_Info, DriverVersion.VerOEM), NUM(_Adapter_Info, DriverVersion.VerBuild),
    VERSION(BIOSVersion), VERSION(FirmwareVersion), VERSION(BootLoaderVersion),
    NUM(_Adapter_Info, SystemIOBusNumber), NUM(_Adapter_Info, SlotNumber), NUM(_Adapter_Info, InterruptLevel),
    NUM(_Adapter_Info, InterruptVector), NUM(_Adapter_Info, VenID), NUM(_Adapter_Info, SubVenID),
    NUM(_Adapter_Info, DevID), NUM(_Adapter_Info, SubDevID), NUM(_Adapter_Info, PortCount),
    NUM(_Adapter_Info, PortSupportType), NUM(_Adapter_Info, Features), NUM(_Adapter_Info, AlarmSupport),
    NUM(_Adapter_Info, RevisionID), NUM(_Adapter_Info, MaxPDPerVD), NUM(_Adapter_Info, StripeSizeSupported),
    NUM(_Adapter_Info, AdvancedFeatures), NUM(_Adapter_Info, MaxPDPerDG), NUM(_Adapter_Info, MaxVDPerDG),
    NUM(_Adapter_Info, MaxParityDisks), NUM(_Adapter_Info, MaxDiskGroup), NUM(_Adapter_Info, MaxTotalBlocks),
    NUM(_Adapter_Info, MaxBlockPerPD), NUM(_Adapter_Info, MaxHD), NUM(_Adapter_Info, MaxExpander),
    NUM(_Adapter_Info, MaxPM), NUM(_Adapter_Info, MaxLogicalDrive), NUM(_Adapter_Info, LogicalDriverMode),
    HEX(_Adapter_Info, WWN), NUM(_Adapter_Info, MaxHD_Ext), NUM(_Adapter_Info, MaxBufferSize),
    NUM(_Adapter_Info, MaxTotalBlocks_V2), NUM(_Adapter_Info, MaxAESPort), NUM(_Adapter_Info, MaxTandemHdd),
    NUM(_Adapter_Info, MaxSSDPerTandemix), NUM(_Adapter_Info, MaxAESEntry), NUM(_Adapter_Info, MaxSSDSegment),
    TXT(_Adapter_Info, SerialNo), HEX(_Adapter_Info, PortSasAddress), NUM(_Adapter_Info, MaxSpeed),
    NUM(_Adapter_Info, CurrentSpeed), NUM(_Adapter_Info, MaxLinkWidth), NUM(_Adapter_Info, CurrentLinkWidth),
    NUM(_Adapter_Info, img_health), NUM(_Adapter_Info, autoload_img_health),
    NUM(_Adapter_Info, boot_loader_img_health), NUM(_Adapter_Info, firmware_img_health),
    NUM(_Adapter_Info, boot_rom_img_health), NUM(_Adapter_Info, hba_info_img_health), TXT(_Adapter_Info, ModelNumber)};
static constexpr RecordField config[] = {
    NUM(_Adapter_Config_V2, AutoRebuildOn), NUM(_Adapter_Config_V2, CpuEfficiencyOn), NUM(_Adapter_Config_V2, BGARate),
    NUM(_Adapter_Config_V2, SyncRate), NUM(_Adapter_Config_V2, InitRate), NUM(_Adapter_Config_V2, RebuildRate),
    NUM(_Adapter_Config_V2, MigrationRate), NUM(_Adapter_Config_V2, CopybackRate), NUM(_Adapter_Config_V2, MPRate),
    NUM(_Adapter_Config_V2, PollSMARTStatus), NUM(_Adapter_Config_V2, CopyBackOn),
    NUM(_Adapter_Config_V2, ModuleConsolidation), NUM(_Adapter_Config_V2, rawimg_update_disabled),
    NUM(_Adapter_Config_V2, AlarmOn), TXT(_Adapter_Config_V2, SerialNo), TXT(_Adapter_Config_V2, ModelNumber)};
static constexpr RecordField battery[] = {
    NUM(_BBU_Info, status), NUM(_BBU_Info, sensorSupport), NUM(_BBU_Info, rechargeCycle), NUM(_BBU_Info, minutesToFull),
    NUM(_BBU_Info, minutesToEmpty), SGN(_BBU_Info, temperature), SGN(_BBU_Info, tempLow), SGN(_BBU_Info, tempHigh),
    NUM(_BBU_Info, voltage), NUM(_BBU_Info, voltLow), NUM(_BBU_Info, voltHigh), NUM(_BBU_Info, capacity),
    NUM(_BBU_Info, maxCapacity), NUM(_BBU_Info, percentage)};
static constexpr RecordField settings[] = {
    TXT(_HBA_Info_Page, Signature), NUM(_HBA_Info_Page, MinorRev), NUM(_HBA_Info_Page, MajorRev),
    NUM(_HBA_Info_Page, Next_Page), NUM(_HBA_Info_Page, Major), NUM(_HBA_Info_Page, Minor),
    NUM(_HBA_Info_Page, OEM_Num), NUM(_HBA_Info_Page, Build_Num), NUM(_HBA_Info_Page, Page_Code),
    NUM(_HBA_Info_Page, Max_PHY_Num), NUM(_HBA_Info_Page, RAID_Feature), NUM(_HBA_Info_Page, HBA_Flag),
    NUM(_HBA_Info_Page, Boot_Device), NUM(_HBA_Info_Page, DSpinUpGroup), NUM(_HBA_Info_Page, DSpinUpTimer),
    NUM(_HBA_Info_Page, Delay_Time), NUM(_HBA_Info_Page, bbu_charge_threshold),
    NUM(_HBA_Info_Page, bbu_temp_lowerbound), NUM(_HBA_Info_Page, bbu_temp_upperbound),
    NUM(_HBA_Info_Page, bbu_volt_lowerbound), NUM(_HBA_Info_Page, bbu_volt_upperbound),
    TXT(_HBA_Info_Page, Serial_Num), HEX(_HBA_Info_Page, SAS_Address), NUM(_HBA_Info_Page, FFE_Control),
    TXT(_HBA_Info_Page, model_number), NUM(_HBA_Info_Page, PHY_Rate), HEX(_HBA_Info_Page, PHY_Tuning),
    NUM(_HBA_Info_Page, BGA_Rate), NUM(_HBA_Info_Page, Sync_Rate), NUM(_HBA_Info_Page, Init_Rate),
    NUM(_HBA_Info_Page, Rebuild_Rate), NUM(_HBA_Info_Page, Migration_Rate), NUM(_HBA_Info_Page, Copyback_Rate),
    NUM(_HBA_Info_Page, MP_Rate), NUM(_HBA_Info_Page, Check_Sum)};
static constexpr RecordField disk[] = {
    LINK(_HD_Info), NUM(_HD_Info, AdapterID), NUM(_HD_Info, InitStatus), NUM(_HD_Info, HDType), NUM(_HD_Info, PIOMode),
    NUM(_HD_Info, MDMAMode), NUM(_HD_Info, UDMAMode), NUM(_HD_Info, ConnectionType), NUM(_HD_Info, DeviceType),
    NUM(_HD_Info, FeatureSupport), TXT(_HD_Info, Model), TXT(_HD_Info, SerialNo), TXT(_HD_Info, FWVersion),
    NUM(_HD_Info, Size), HEX(_HD_Info, WWN), NUM(_HD_Info, CurrentPIOMode), NUM(_HD_Info, CurrentMDMAMode),
    NUM(_HD_Info, CurrentUDMAMode), NUM(_HD_Info, ElementIdx), NUM(_HD_Info, BlockSize),
    NUM(_HD_Info, ActivityLEDStatus), NUM(_HD_Info, LocateLEDStatus), NUM(_HD_Info, ErrorLEDStatus),
    NUM(_HD_Info, SesDeviceType), NUM(_HD_Info, sata_signature), NUM(_HD_Info, HD_SSD_Type),
    NUM(_HD_Info, Media_Rotation_Rate)};
static constexpr RecordField diskRaid[] = {NUM(_HD_RAID_STATUS, HDID), NUM(_HD_RAID_STATUS, DGID),
                                           NUM(_HD_RAID_STATUS, Status)};
static constexpr RecordField diskConfig[] = {
    NUM(_HD_CONFIG, WriteCacheOn), NUM(_HD_CONFIG, SMARTOn), NUM(_HD_CONFIG, Online), NUM(_HD_CONFIG, DriveSpeed),
    NUM(_HD_CONFIG, crypto), NUM(_HD_CONFIG, AESPercentage), NUM(_HD_CONFIG, HDID)};
static constexpr RecordField diskActivity[] = {NUM(_HD_BGA_STATUS, HDID), NUM(_HD_BGA_STATUS, Bga),
                                               NUM(_HD_BGA_STATUS, BgaState), NUM(_HD_BGA_STATUS, Percentage)};
static constexpr RecordField diskSmart[] = {NUM(_HD_SMART_STATUS, HDID), NUM(_HD_SMART_STATUS, SmartThresholdExceeded)};
static constexpr RecordField diskSpace[] = {NUM(_HD_FreeSpaceInfo, HDID), NUM(_HD_FreeSpaceInfo, AdapterID),
                                            NUM(_HD_FreeSpaceInfo, ValidSize), NUM(_HD_FreeSpaceInfo, FreeSize)};
static constexpr RecordField vd[] = {
    NUM(_LD_Info, ID), NUM(_LD_Info, Status), NUM(_LD_Info, BGAStatus), NUM(_LD_Info, StripeBlockSize),
    NUM(_LD_Info, RaidMode), NUM(_LD_Info, HDCount), NUM(_LD_Info, CacheMode), HEX(_LD_Info, LD_GUID),
    NUM(_LD_Info, SectorCoefficient), NUM(_LD_Info, AdapterID), NUM(_LD_Info, BlkCount), NUM(_LD_Info, time_hi),
    NUM(_LD_Info, DGID), NUM(_LD_Info, Size), TXT(_LD_Info, Name), NUM(_LD_Info, BlockIDs), NUM(_LD_Info, SubLDCount),
    NUM(_LD_Info, NumParityDisk), NUM(_LD_Info, time_low), NUM(_LD_Info, BlockSize)};
static constexpr RecordField vdStatus[] = {NUM(_LD_STATUS, Status), NUM(_LD_STATUS, Bga),
                                           NUM(_LD_STATUS, BgaPercentage), NUM(_LD_STATUS, BgaState),
                                           NUM(_LD_STATUS, BgaExt), NUM(_LD_STATUS, LDID)};
static constexpr RecordField vdConfig[] = {NUM(_LD_Config, LDID), NUM(_LD_Config, CachePolicy), TXT(_LD_Config, Name)};
static constexpr RecordField array[] = {
    NUM(_DG_Info, DGID), TXT(_DG_Info, Name), NUM(_DG_Info, RaidMode), NUM(_DG_Info, SubVDCount),
    NUM(_DG_Info, NumParityDisk), NUM(_DG_Info, AdapterID), NUM(_DG_Info, StripeBlockSize), NUM(_DG_Info, BlockSize),
    NUM(_DG_Info, TotalManagedSpace), NUM(_DG_Info, RemainingManagedSpace), NUM(_DG_Info, SmallestAvailablePDSize),
    NUM(_DG_Info, Status), NUM(_DG_Info, PDBgaRunning), NUM(_DG_Info, PDCount), NUM(_DG_Info, PDIDs),
    NUM(_DG_Info, VDSlotCount), NUM(_DG_Info, VDSlotSize), NUM(_DG_Info, VDIDs), NUM(_DG_Info, SparePDCount),
    NUM(_DG_Info, SparePDIDs), NUM(_DG_Info, BgaType), NUM(_DG_Info, BgaState)};
static constexpr RecordField arrayConfig[] = {NUM(_DG_CONFIG, DGID), NUM(_DG_CONFIG, WriteCacheOn),
                                              TXT(_DG_CONFIG, Name)};
static constexpr RecordField block[] = {
    NUM(_Block_Info, ID), NUM(_Block_Info, HDID), NUM(_Block_Info, Flags), NUM(_Block_Info, LDID),
    NUM(_Block_Info, Status), NUM(_Block_Info, BlockSize), NUM(_Block_Info, ReservedSpaceForMigration),
    NUM(_Block_Info, StartLBA), NUM(_Block_Info, Size)};
static constexpr RecordField expander[] = {
    LINK(_Exp_Info), NUM(_Exp_Info, AdapterID), NUM(_Exp_Info, Configuring), NUM(_Exp_Info, RouteTableConfigurable),
    NUM(_Exp_Info, PhyCount), NUM(_Exp_Info, ChangeCount), NUM(_Exp_Info, RouteIndexes), TXT(_Exp_Info, VendorID),
    TXT(_Exp_Info, ProductID), TXT(_Exp_Info, ProductRevision), TXT(_Exp_Info, ComponentVendorID),
    NUM(_Exp_Info, ComponentID), NUM(_Exp_Info, ComponentRevision)};
static constexpr RecordField multiplier[] = {
    LINK(_PM_Info), NUM(_PM_Info, AdapterID), NUM(_PM_Info, ProductRevision), NUM(_PM_Info, SpecRevision),
    NUM(_PM_Info, NumberOfPorts), NUM(_PM_Info, VendorID), NUM(_PM_Info, DeviceID)};
static constexpr RecordField enclosure[] = {
    NUM(_Enclosure_Info, EnclosureID), NUM(_Enclosure_Info, AdapterID), NUM(_Enclosure_Info, Status),
    NUM(_Enclosure_Info, ElementTypeCount), HEX(_Enclosure_Info, LogicalID), TXT(_Enclosure_Info, VendorID),
    TXT(_Enclosure_Info, ProductID), TXT(_Enclosure_Info, RevisionLevel)};
static constexpr RecordField event[] = {
    NUM(_Event, Class), NUM(_Event, Code), NUM(_Event, TimeStamp), NUM(_Event, DeviceID), NUM(_Event, Severity),
    NUM(_Event, AdapterID), NUM(_Event, SequenceNo), NUM(_Event, Params), NUM(_Event, SenseDataLength),
    HEX(_Event, SenseData)};
// clang-format on

const RecordFields adapterFields = adapter;
const RecordFields configFields = config;
const RecordFields batteryFields = battery;
const RecordFields settingsFields = settings;
const RecordFields diskFields = disk;
const RecordFields diskRaidFields = diskRaid;
const RecordFields diskConfigFields = diskConfig;
const RecordFields diskActivityFields = diskActivity;
const RecordFields diskSmartFields = diskSmart;
const RecordFields diskSpaceFields = diskSpace;
const RecordFields vdFields = vd;
const RecordFields vdStatusFields = vdStatus;
const RecordFields vdConfigFields = vdConfig;
const RecordFields arrayFields = array;
const RecordFields arrayConfigFields = arrayConfig;
const RecordFields blockFields = block;
const RecordFields expanderFields = expander;
const RecordFields multiplierFields = multiplier;
const RecordFields enclosureFields = enclosure;
const RecordFields eventFields = event;

static Json elementOf(const RecordField& field, const unsigned char* at) {
    if (field.kind == FieldKind::Hex) return hexOfBytes(at, field.size);
    if (field.kind == FieldKind::Text) return textOfBytes(at, field.size);
    if (field.kind == FieldKind::Signed) {
        KT_S16 number = 0;
        memcpy(&number, at, sizeof number);
        return number;
    }
    KT_U64 number = 0;
    memcpy(&number, at, field.size);
    return number;
}

static Json listOf(const RecordField& field, const unsigned char* at) {
    size_t told = field.count;
    while (told > 1 && memcmp(at + (told - 1) * field.size, at + (told - 2) * field.size, field.size) == 0)
        --told;
    Json list = Json::array();
    for (size_t i = 0; i < told; ++i) {
        list.push_back(elementOf(field, at + i * field.size));
    }
    if (told < field.count) list.push_back("...");
    return list;
}

void addFields(Json& object, RecordFields fields, const void* record) {
    for (const RecordField& field : fields) {
        const unsigned char* at = static_cast<const unsigned char*>(record) + field.offset;
        object[field.name] = field.count == 1 ? elementOf(field, at) : listOf(field, at);
    }
}

Json fieldsOf(RecordFields fields, const void* record) {
    Json object = Json::object();
    addFields(object, fields, record);
    return object;
}
