#include "lab/reportAdapter.h"

#include "changes/ciphers.h"
#include "devices/battery.h"
#include "devices/settingsPage.h"
#include "lab/reportWords.h"
#include "state/adapterInfo.h"
#include "state/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace sim {

static constexpr WordField ADAPTER_WORDS[] = {
    {"model", "ModelNumber"}, {"serial", "SerialNo"},     {"wwn", "WWN"},
    {"ports", "PortCount"},   {"buzzer", "AlarmSupport"}, {"portAddresses", "PortSasAddress"}};
static constexpr WordField BUS_WORDS[] = {
    {"vendor", "VenID"},        {"device", "DevID"},    {"subVendor", "SubVenID"},    {"subDevice", "SubDevID"},
    {"revision", "RevisionID"}, {"slot", "SlotNumber"}, {"maxLanes", "MaxLinkWidth"}, {"lanes", "CurrentLinkWidth"}};
static constexpr WordField LIMIT_WORDS[] = {{"disks", "MaxHD_Ext"},
                                            {"virtualDisks", "MaxLogicalDrive"},
                                            {"disksPerVirtualDisk", "MaxPDPerVD"},
                                            {"parity", "MaxParityDisks"},
                                            {"arrays", "MaxDiskGroup"},
                                            {"disksPerArray", "MaxPDPerDG"},
                                            {"virtualDisksPerArray", "MaxVDPerDG"},
                                            {"blocks", "MaxTotalBlocks_V2"},
                                            {"blocksPerDisk", "MaxBlockPerPD"},
                                            {"expanders", "MaxExpander"},
                                            {"portMultipliers", "MaxPM"},
                                            {"keys", "MaxAESEntry"},
                                            {"keyPorts", "MaxAESPort"},
                                            {"hybridDisks", "MaxTandemHdd"},
                                            {"hybridSsds", "MaxSSDPerTandemix"},
                                            {"ssdSegments", "MaxSSDSegment"}};
static constexpr WordField IMAGE_WORDS[] = {{"image", "img_health"},
                                            {"autoload", "autoload_img_health"},
                                            {"boot loader", "boot_loader_img_health"},
                                            {"firmware", "firmware_img_health"},
                                            {"boot ROM", "boot_rom_img_health"},
                                            {"settings", "hba_info_img_health"}};
static constexpr WordBit PORT_TYPES[] = {{"SATA", KT_HD_SATA}, {"PATA", KT_HD_PATA}, {"SAS", KT_HD_SAS}};
static constexpr WordBit LEVELS[] = {{"RAID0", KT_MODE_RAID0},
                                     {"RAID1", KT_MODE_RAID1},
                                     {"RAID5", KT_MODE_RAID5},
                                     {"RAID6", KT_MODE_RAID6},
                                     {"RAID10", KT_MODE_RAID10},
                                     {"RAID1E", KT_MODE_RAID1E},
                                     {"RAID50", KT_MODE_RAID50},
                                     {"RAID60", KT_MODE_RAID60},
                                     {"JBOD", KT_MODE_JBOD},
                                     {"TANDEM CAPACITY", KT_MODE_TANDEM_CAPACITY},
                                     {"TANDEM SAFE", KT_MODE_TANDEM_SAFE},
                                     {"HYBRID", KT_MODE_HYBRID}};
static constexpr WordBit FEATURES[] = {
    {"rebuild", KT_FEATURE_REBUILD},           {"background init", KT_FEATURE_BACKGROUND_INIT},
    {"synchronize", KT_FEATURE_SYNC},          {"migration", KT_FEATURE_MIGRATION},
    {"media patrol", KT_FEATURE_MEDIA_PATROL}, {"foreground init", KT_FEATURE_FOREGROUND_INIT},
    {"copy back", KT_FEATURE_COPY_BACK},       {"only same type hd for create", KT_FEATURE_SAME_TYPE_ONLY}};
static constexpr WordBit ADVANCED[] = {{"event sense code", 1U << 0},
                                       {"big stripe", 1U << 1},
                                       {"flash bios", 1U << 2},
                                       {"bbu", 1U << 3},
                                       {"config in flash", 1U << 4},
                                       {"cpu efficiency", 1U << 5},
                                       {"multi VD", 1U << 6},
                                       {"spc 4", 1U << 7},
                                       {"ses2", 1U << 8},
                                       {"module consolidate", 1U << 9},
                                       {"image health", 1U << 10},
                                       {"phy control by port", 1U << 11},
                                       {"sata phy ctrl", 1U << 11},
                                       {"crypto", 1U << 12},
                                       {"time setting by application", 1U << 13},
                                       {"vd write cache", 1U << 14},
                                       {"vd read cache", 1U << 15},
                                       {"smart", 1U << 16},
                                       {"rounding", 1U << 17},
                                       {"hd set free", 1U << 18},
                                       {"hd write cache", 1U << 19},
                                       {"aes partition", 1U << 22},
                                       {"tandemix intelligent init", 1U << 23},
                                       {"set spare", 1U << 24},
                                       {"hybrid switch", 1U << 25},
                                       {"hot plug", 1U << 26},
                                       {"ata pass through", 1U << 27},
                                       {"remap", 1U << 28},
                                       {"access register", 1U << 29},
                                       {"oem data", 1U << 30},
                                       {"flash predata", 1U << 31},
                                       {"raw update", 1U << 31}};
// These bits take a feature away.
static const KT_U32 SWITCHED_OFF = 0x3FU << 14 | 1U << 24;

static bool takeVersion(LabReader& versions, const char* word, unsigned (&parts)[4]) {
    if (!hasWord(versions, word)) return false;
    const std::string text = takeText(versions, word, "");
    char more = 0;
    if (sscanf(text.c_str(), "%9u.%9u.%9u.%9u%c", &parts[0], &parts[1], &parts[2], &parts[3], &more) != 4)
        failLab(versions, word, "should be a version such as \"4.1.15.2108\"");
    return true;
}

static void takeVersions(LabReader& adapter, _Adapter_Info& info) {
    const struct {
        const char* word;
        _Version_Info_CIM& version;
    } all[] = {{"bios", info.BIOSVersion}, {"firmware", info.FirmwareVersion}, {"bootLoader", info.BootLoaderVersion}};
    for (LabReader& versions : takeRecord(adapter, "versions")) {
        unsigned parts[4] = {};
        if (takeVersion(versions, "driver", parts)) info.DriverVersion = {parts[0], parts[1], parts[2], parts[3]};
        for (const auto& each : all) {
            if (!takeVersion(versions, each.word, parts)) continue;
            if (*std::max_element(parts, parts + 4) > 0xFFFF) failLab(versions, each.word, "is too large");
            each.version = {static_cast<KT_U16>(parts[0]), static_cast<KT_U16>(parts[1]), static_cast<KT_U16>(parts[2]),
                            static_cast<KT_U16>(parts[3])};
        }
        takeNothingElse(versions);
    }
}

static KT_U8 takeBusSpeed(LabReader& bus, const char* word) {
    static const KT_U64 SPEEDS[] = {0, 2500000000, 5000000000, 8000000000};
    const KT_U64 speed = takeNumber(bus, word, 0, NEVER);
    const auto* found = std::find(std::begin(SPEEDS), std::end(SPEEDS), speed);
    if (found == std::end(SPEEDS)) failLab(bus, word, "is no speed of such a bus");
    return static_cast<KT_U8>(found - SPEEDS);
}

// Words that are one field each, in the adapter's object and in those inside it.
static void takeNested(LabReader& adapter, const char* word, _Adapter_Info& info, std::span<const WordField> words) {
    for (LabReader& reader : takeRecord(adapter, word)) {
        if (!strcmp(word, "bus")) info.MaxSpeed = takeBusSpeed(reader, "maxSpeed");
        if (!strcmp(word, "bus")) info.CurrentSpeed = takeBusSpeed(reader, "speed");
        if (!strcmp(word, "limits")) info.MaxBufferSize = static_cast<KT_U16>(takeUnits(reader, "buffer", 1024, 0));
        takeAs(reader, KIND_ADAPTER, &info, words);
        takeNothingElse(reader);
    }
    info.MaxTotalBlocks = static_cast<KT_U8>(std::min<KT_U16>(info.MaxTotalBlocks_V2, 255));
    info.MaxHD = static_cast<KT_U8>(std::min<KT_U16>(info.MaxHD_Ext, 255));
}

static void takeAbilities(LabReader& adapter, _Adapter_Info& info) {
    info.PortSupportType = static_cast<KT_U8>(takeBits(adapter, "portTypes", PORT_TYPES));
    info.LogicalDriverMode = static_cast<KT_U16>(takeBits(adapter, "levels", LEVELS));
    info.Features = static_cast<KT_U8>(takeBits(adapter, "features", FEATURES));
    const KT_U32 advanced = takeBits(adapter, "advancedFeatures", ADVANCED);
    info.AdvancedFeatures = advanced ? advanced ^ SWITCHED_OFF : 0;
    for (const KT_U16 kib : takeIds(adapter, "stripes")) {
        for (unsigned i = 0; i < 7; ++i)
            if (kib == 16U << i) info.StripeSizeSupported |= static_cast<KT_U16>(1U << i);
    }
}

static void addToldConfig(Context& context, LabReader& adapter) {
    for (LabReader& reader : takeRecord(adapter, "config")) {
        _Adapter_Config_V2 config = {};
        takeFields(reader, KIND_ADAPTER_CONFIG, &config);
        takeNothingElse(reader);
        save(context, 0, config);
    }
}

static void addSettings(Context& context, LabReader& adapter) {
    for (LabReader& reader : takeRecord(adapter, "settings")) {
        _HBA_Info_Page page = {};
        takeFields(reader, KIND_SETTINGS_PAGE, &page);
        takeNothingElse(reader);
        restoreSettingsPage(context, page);
    }
}

static void addToldBattery(Context& context, LabReader& adapter) {
    if (!hasWord(adapter, "battery")) return;
    _BBU_Info battery = {};
    if (isFlag(adapter, "battery")) {
        if (takeFlag(adapter, "battery", false)) failLab(adapter, "battery", "should be false, or its fields");
    } else {
        for (LabReader& reader : takeRecord(adapter, "battery")) {
            takeFields(reader, KIND_BATTERY, &battery);
            takeNothingElse(reader);
        }
    }
    KT_U64 rechargeBelow = 0;
    if (hasWord(adapter, "settings")) {
        LabReader settings = objectIn(adapter, "settings");
        rechargeBelow = takeNumber(settings, "bbu_charge_threshold", 0, 255);
    }
    restoreBattery(context, battery, static_cast<KT_U8>(rechargeBelow));
}

void addReportedAdapter(Context& context, LabReader& adapter) {
    static const LabWord TYPES[] = {{"array-based", 1}, {"LD-based", 0}};
    const int arrays = takeWord(adapter, "type", TYPES, std::size(TYPES), -1);
    _Adapter_Info info = {};
    takeAs(adapter, KIND_ADAPTER, &info, ADAPTER_WORDS);
    takeVersions(adapter, info);
    takeNested(adapter, "bus", info, BUS_WORDS);
    takeNested(adapter, "limits", info, LIMIT_WORDS);
    takeNested(adapter, "images", info, IMAGE_WORDS);
    takeAbilities(adapter, info);
    takeFields(adapter, KIND_ADAPTER, &info);
    if (arrays >= 0 && (info.MaxDiskGroup != 0) != (arrays == 1))
        failLab(adapter, "type", "does not go with the most arrays that the adapter can have");
    save(context, 0, info);
    save(context, 0, AdapterState{});
    addToldConfig(context, adapter);
    addToldBattery(context, adapter);
    addSettings(context, adapter);
}

// Keys.

static Digest unknownKey(const Context& context, unsigned number) {
    return sha256("unknown key " + std::to_string(context.adapter) + " " + std::to_string(number));
}

static void takePorts(const Context& context, LabReader& owner, const char* word, KT_U8 entry) {
    for (LabReader& reader : takeObjects(owner, word)) {
        const KT_U64 id = needNumber(reader, "id", 254);
        AesPort port = {};
        port.entry = static_cast<KT_U8>(takeNumber(reader, "entry", entry, 254));
        port.enabled = takeFlag(reader, "enabled", false) ? 1 : 0;
        takeNothingElse(reader);
        if (find<AesPort>(context, id)) failLab(reader, "id", "is another port's already");
        if (port.entry != NO_ENTRY || port.enabled) save(context, id, port);
    }
}

static const KT_U8 KEY_LENGTH = 32;
static const unsigned NO_ENTRYS_KEY = 1000;

// The key that the disk is encrypted with, as far as its port and the log tell.
static void addCipher(const Context& context, KT_U16 pd, const PdState& disk, KT_U16 complaint) {
    const auto info = find<_HD_Info>(context, pd);
    const auto number = rootPort(context, info->Link.Parent);
    if (!number || checkCryptoPort(context, *number) != KT_OK) return;
    const AesPort port = cryptoPort(context, *number);
    const auto entry = port.enabled ? find<AesEntry>(context, port.entry) : std::nullopt;
    const bool encrypted = disk.config.crypto != 0;
    DiskCipher cipher = {};
    if (encrypted) {
        cipher.key = entry && complaint != KT_U16{EVT_PD_CIPHER_MISMATCH & 0xFFFF} ? entry->key
                                                                                   : unknownKey(context, NO_ENTRYS_KEY);
    }
    const bool fits = port.enabled ? entry && cipher.key == entry->key : !encrypted;
    cipher.offline = (disk.raid & KT_PD_OFFLINE) &&
                     (!fits || (complaint == KT_U16{EVT_PD_PLAIN_ON_CRYPTO_PORT & 0xFFFF} && port.enabled));
    saveCipher(context, pd, cipher);
}

void addReportedKeys(Context& context, LabReader& adapter, const Past& past) {
    for (LabReader& reader : takeObjects(adapter, "keys")) {
        const auto id = static_cast<KT_U8>(needNumber(reader, "id", 254));
        if (takeFlag(reader, "hasKey", false))
            save(context, id, AesEntry{KEY_LENGTH, {}, unknownKey(context, id), Digest{}});
        takePorts(context, reader, "ports", id);
        takeNothingElse(reader);
    }
    takePorts(context, adapter, "unlinkedPorts", NO_ENTRY);
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& disk) {
        const auto pd = static_cast<KT_U16>(id);
        const auto complaint = past.cipherComplaint.find(pd);
        addCipher(context, pd, disk, complaint == past.cipherComplaint.end() ? KT_U16{0} : complaint->second);
        return true;
    });
}

} // namespace sim
