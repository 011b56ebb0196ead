#include "lab/labAdapter.h"

#include "lab/labDisks.h"
#include "lab/labPeripherals.h"
#include "lab/labVolumes.h"
#include "state/adapterInfo.h"
#include "state/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace sim {

enum { TYPE_ARRAY_BASED, TYPE_LD_BASED };
static const LabWord TYPE_WORDS[] = {{"array-based", TYPE_ARRAY_BASED}, {"LD-based", TYPE_LD_BASED}};
static const KT_U16 VENDOR = 0x1FA4;

static void setVersion(_Version_Info_CIM& version, KT_U16 major, KT_U16 minor, KT_U16 revision, KT_U16 build) {
    version = _Version_Info_CIM{major, minor, revision, build};
}

static const KT_U8 ALL_FEATURES = KT_FEATURE_REBUILD | KT_FEATURE_BACKGROUND_INIT | KT_FEATURE_SYNC |
                                  KT_FEATURE_MIGRATION | KT_FEATURE_MEDIA_PATROL | KT_FEATURE_FOREGROUND_INIT |
                                  KT_FEATURE_COPY_BACK | KT_FEATURE_SAME_TYPE_ONLY;
static const KT_U32 COMMON_ADVANCED = KT_ADV_SENSE_CODE | KT_ADV_BIG_STRIPE | KT_ADV_FLASH_BIOS | 1U << 4 |
                                      KT_ADV_CPU_EFFICIENCY | KT_ADV_IMAGE_HEALTH | 1U << 26 | 1U << 27 | 1U << 29;

// What both types of adapter have.
static _Adapter_Info commonInfo(const Context& context) {
    _Adapter_Info info = {};
    info.DriverVersion = _Version_Info{4, 1, 0, 2031};
    info.SystemIOBusNumber = 1U + context.adapter;
    info.SlotNumber = 1U + context.adapter;
    info.InterruptLevel = 16U + context.adapter;
    info.VenID = info.SubVenID = VENDOR;
    info.Features = ALL_FEATURES;
    info.AlarmSupport = 1;
    info.RevisionID = 0xB1;
    info.StripeSizeSupported = 0x7F;
    info.MaxHD = 128;
    info.MaxHD_Ext = 128;
    info.MaxSpeed = 3;
    info.CurrentSpeed = 3;
    info.MaxLinkWidth = 8;
    info.CurrentLinkWidth = 8;
    info.img_health = info.autoload_img_health = info.boot_loader_img_health = 1;
    info.firmware_img_health = info.boot_rom_img_health = info.hba_info_img_health = 1;
    const KT_U8 wwn[8] = {0x50, 0x0A, 0x1F, 0x40, 0x00, 0x10, context.adapter, 0x00};
    memcpy(info.WWN, wwn, sizeof wwn);
    char serial[sizeof info.SerialNo + 1];
    snprintf(serial, sizeof serial, "KS26%04u%06u", 100U + context.adapter, 4711U + context.adapter * 7U);
    memcpy(info.SerialNo, serial, strlen(serial));
    return info;
}

static void setPorts(_Adapter_Info& info, KT_U8 ports) {
    info.PortCount = ports;
    for (KT_U8 port = 0; port < std::min<KT_U8>(ports, 16); ++port) {
        const KT_U8* address = info.PortSasAddress[port];
        if (std::any_of(address, address + sizeof info.WWN, [](KT_U8 byte) { return byte != 0; })) continue;
        memcpy(info.PortSasAddress[port], info.WWN, sizeof info.WWN);
        info.PortSasAddress[port][7] = port;
    }
}

static _Adapter_Info arrayBasedInfo(const Context& context) {
    _Adapter_Info info = commonInfo(context);
    info.DevID = info.SubDevID = 0x4780;
    setVersion(info.BIOSVersion, 3, 2, 0, 1017);
    setVersion(info.FirmwareVersion, 4, 1, 15, 2108);
    setVersion(info.BootLoaderVersion, 2, 1, 0, 1009);
    setPorts(info, 8);
    info.PortSupportType = KT_HD_SATA | KT_HD_SAS;
    info.MaxPDPerVD = 32;
    info.AdvancedFeatures = COMMON_ADVANCED | KT_ADV_BBU | 1U << 8 | KT_ADV_MODULE_CONSOLIDATE | KT_ADV_RAW_UPDATE;
    info.MaxPDPerDG = 32;
    info.MaxVDPerDG = 16;
    info.MaxParityDisks = 3;
    info.MaxDiskGroup = 32;
    info.MaxTotalBlocks = 255;
    info.MaxTotalBlocks_V2 = 1024;
    info.MaxBlockPerPD = 16;
    info.MaxExpander = 8;
    info.MaxLogicalDrive = 64;
    info.LogicalDriverMode = KT_MODE_RAID0 | KT_MODE_RAID1 | KT_MODE_RAID10 | KT_MODE_RAID5 | KT_MODE_RAID6 |
                             KT_MODE_RAID50 | KT_MODE_RAID60;
    info.MaxBufferSize = 64;
    memcpy(info.ModelNumber, "Tarn R8i", 8);
    return info;
}

static _Adapter_Info ldBasedInfo(const Context& context) {
    _Adapter_Info info = commonInfo(context);
    info.DevID = info.SubDevID = 0x4740;
    setVersion(info.BIOSVersion, 1, 4, 0, 1023);
    setVersion(info.FirmwareVersion, 2, 3, 0, 1114);
    setVersion(info.BootLoaderVersion, 1, 0, 0, 1003);
    setPorts(info, 4);
    info.PortSupportType = KT_HD_SATA;
    info.MaxPDPerVD = 8;
    info.AdvancedFeatures = COMMON_ADVANCED | KT_ADV_CRYPTO | KT_ADV_HYBRID_SWITCH | KT_ADV_REMAP;
    info.MaxParityDisks = 2;
    info.MaxTotalBlocks = 128;
    info.MaxTotalBlocks_V2 = 128;
    info.MaxBlockPerPD = 8;
    info.MaxPM = 4;
    info.MaxLogicalDrive = 32;
    info.LogicalDriverMode = KT_MODE_RAID0 | KT_MODE_RAID1 | KT_MODE_RAID10 | KT_MODE_RAID1E | KT_MODE_RAID5 |
                             KT_MODE_RAID6 | KT_MODE_JBOD | KT_MODE_TANDEM_CAPACITY | KT_MODE_TANDEM_SAFE |
                             KT_MODE_HYBRID;
    info.MaxAESPort = 4;
    info.MaxAESEntry = 10;
    info.MaxTandemHdd = 1;
    info.MaxSSDPerTandemix = 2;
    info.MaxSSDSegment = 4;
    memcpy(info.ModelNumber, "Tarn S4h", 8);
    return info;
}

static _Adapter_Config_V2 defaultConfig(const _Adapter_Info& info) {
    _Adapter_Config_V2 config = {};
    config.AutoRebuildOn = info.Features & KT_FEATURE_REBUILD ? 1 : 255;
    config.BGARate = 50;
    config.SyncRate = config.InitRate = config.RebuildRate = 50;
    config.MigrationRate = config.CopybackRate = config.MPRate = 50;
    config.PollSMARTStatus = 1;
    config.CopyBackOn = 1;
    config.AlarmOn = info.AlarmSupport;
    memcpy(config.SerialNo, info.SerialNo, sizeof config.SerialNo);
    memcpy(config.ModelNumber, info.ModelNumber, sizeof config.ModelNumber);
    return config;
}

static void addConfig(Context& context, LabReader& adapter, const _Adapter_Info& info) {
    _Adapter_Config_V2 config = defaultConfig(info);
    for (LabReader& reader : takeObjects(adapter, "config")) {
        takeFields(reader, KIND_ADAPTER_CONFIG, &config);
        takeNothingElse(reader);
    }
    save(context, 0, config);
}

// "battery": true for a charged one, or its fields.
static void addBattery(Context& context, LabReader& adapter) {
    if (!hasWord(adapter, "battery")) return;
    _BBU_Info battery = {};
    battery.status = KT_BBU_PRESENT;
    battery.sensorSupport = KT_SENSOR_TEMPERATURE | KT_SENSOR_VOLTAGE | KT_SENSOR_CAPACITY;
    battery.rechargeCycle = 17;
    battery.temperature = 3140;
    battery.tempLow = 0;
    battery.tempHigh = 60;
    battery.voltage = 4120;
    battery.voltLow = 3300;
    battery.voltHigh = 4300;
    battery.capacity = 620;
    battery.maxCapacity = 650;
    battery.percentage = 95;
    if (isFlag(adapter, "battery")) {
        if (!takeFlag(adapter, "battery", false)) return;
    } else {
        for (LabReader& reader : takeObjects(adapter, "battery")) {
            takeFields(reader, KIND_BATTERY, &battery);
            takeNothingElse(reader);
        }
    }
    save(context, 0, battery);
    if (hasWord(adapter, "AdvancedFeatures")) return;
    // An adapter that has one can have one.
    _Adapter_Info info = adapterInfo(context);
    info.AdvancedFeatures |= KT_ADV_BBU;
    save(context, 0, info);
}

static void addEvents(Context& context, LabReader& adapter) {
    for (LabReader& reader : takeObjects(adapter, "events")) {
        _Event event = {};
        event.Severity = SEV_INFO;
        const KT_U64 earlier = takeNumber(reader, "secondsAgo", 0, context.now / 1000);
        const KT_U64 repeat = takeNumber(reader, "count", 1, EVENTS_KEPT);
        takeFields(reader, KIND_EVENT, &event);
        takeNothingElse(reader);
        Context then = context;
        then.now -= earlier * 1000;
        for (KT_U64 i = 0; i < repeat; ++i)
            logEvent(then, event);
    }
}

static void logDetected(const Context& context, const _Adapter_Info& info) {
    _Event event = newEvent(EVT_ADAPTER_DETECTED, context.adapter);
    event.SenseDataLength = sizeof info.SerialNo;
    memcpy(event.SenseData, info.SerialNo, sizeof info.SerialNo);
    logEvent(context, event);
}

void addLabAdapter(Context& context, LabReader& adapter) {
    const int type = takeWord(adapter, "type", TYPE_WORDS, std::size(TYPE_WORDS), TYPE_ARRAY_BASED);
    _Adapter_Info info = type == TYPE_ARRAY_BASED ? arrayBasedInfo(context) : ldBasedInfo(context);
    takeFields(adapter, KIND_ADAPTER, &info);
    setPorts(info, info.PortCount); // the lab may have said more of them
    save(context, 0, info);
    save(context, 0, AdapterState{});
    addConfig(context, adapter, info);
    logDetected(context, info);
    addBattery(context, adapter);
    addLabDisks(context, adapter);
    addLabVolumes(context, adapter);
    addLabPeripherals(context, adapter);
    addEvents(context, adapter);
    takeNothingElse(adapter);
}

} // namespace sim
