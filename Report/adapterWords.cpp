// An adapter's own words: what it is, what it can, how it is set.
#include <algorithm>

#include "Report/parts.h"
#include "Report/records.h"

static std::string versionText(unsigned a, unsigned b, unsigned c, unsigned d) {
    char text[48];
    snprintf(text, sizeof text, "%u.%u.%u.%04u", a, b, c, d);
    return text;
}

static void addVersion(Json& versions, const char* word, const _Version_Info_CIM& version) {
    if (version.MajorVersion == 0 && version.MinorVersion == 0 && version.RevisionNumber == 0 &&
        version.BuildNumber == 0) {
        return;
    }
    add(versions, word,
        versionText(version.MajorVersion, version.MinorVersion, version.RevisionNumber, version.BuildNumber));
}

static Json versionsOf(const _Adapter_Info& info) {
    Json versions = Json::object();
    const _Version_Info& driver = info.DriverVersion;
    add(versions, "driver", versionText(driver.VerMajor, driver.VerMinor, driver.VerOEM, driver.VerBuild));
    addVersion(versions, "bios", info.BIOSVersion);
    addVersion(versions, "firmware", info.FirmwareVersion);
    addVersion(versions, "bootLoader", info.BootLoaderVersion);
    return versions;
}

static Json busOf(const _Adapter_Info& info) {
    Json bus = Json::object();
    add(bus, "vendor", info.VenID);
    add(bus, "device", info.DevID);
    add(bus, "subVendor", info.SubVenID);
    add(bus, "subDevice", info.SubDevID);
    add(bus, "revision", info.RevisionID);
    add(bus, "slot", info.SlotNumber);
    if (info.MaxSpeed == 0) return bus;
    if (busSpeed(info.MaxSpeed)) add(bus, "maxSpeed", busSpeed(info.MaxSpeed));
    if (busSpeed(info.CurrentSpeed)) add(bus, "speed", busSpeed(info.CurrentSpeed));
    add(bus, "maxLanes", info.MaxLinkWidth);
    add(bus, "lanes", info.CurrentLinkWidth);
    return bus;
}

static Json limitsOf(const _Adapter_Info& info) {
    Json limits = Json::object();
    add(limits, "disks", info.MaxHD_Ext);
    add(limits, "virtualDisks", info.MaxLogicalDrive);
    add(limits, "disksPerVirtualDisk", info.MaxPDPerVD);
    add(limits, "parity", info.MaxParityDisks);
    add(limits, "arrays", info.MaxDiskGroup);
    add(limits, "disksPerArray", info.MaxPDPerDG);
    add(limits, "virtualDisksPerArray", info.MaxVDPerDG);
    add(limits, "blocks", std::max<unsigned>(info.MaxTotalBlocks, info.MaxTotalBlocks_V2));
    add(limits, "blocksPerDisk", info.MaxBlockPerPD);
    add(limits, "expanders", info.MaxExpander);
    add(limits, "portMultipliers", info.MaxPM);
    add(limits, "keys", info.MaxAESEntry);
    add(limits, "keyPorts", info.MaxAESPort);
    add(limits, "hybridDisks", info.MaxTandemHdd);
    add(limits, "hybridSsds", info.MaxSSDPerTandemix);
    add(limits, "ssdSegments", info.MaxSSDSegment);
    add(limits, "buffer", info.MaxBufferSize * 1024);
    return limits;
}

// Stripe sizes in KiB; an adapter that names none has those of its generation.
static Json stripesOf(const _Adapter_Info& info) {
    unsigned bits = info.StripeSizeSupported;
    if (bits == 0) bits = info.AdvancedFeatures & KT_ADV_BIG_STRIPE ? 0x7F : 0x0F;
    Json stripes = Json::array();
    for (unsigned i = 0; i < 7; ++i) {
        if (bits >> i & 1) stripes.push_back(16U << i);
    }
    return stripes;
}

static void addAddresses(Json& object, const _Adapter_Info& info) {
    constexpr unsigned room = sizeof info.PortSasAddress / sizeof info.PortSasAddress[0];
    add(object, "ports", info.PortCount);
    if (isZero(info.PortSasAddress[0])) return;
    Json addresses = Json::array();
    for (unsigned i = 0; i < room && i < info.PortCount; ++i) {
        addresses.push_back(hexOf(info.PortSasAddress[i]));
    }
    add(object, "portAddresses", std::move(addresses));
}

// Whether each of the images in flash is sound; only some adapters know.
static void addImages(Json& object, const _Adapter_Info& info) {
    if ((info.AdvancedFeatures & KT_ADV_IMAGE_HEALTH) == 0) return;
    Json images = Json::object();
    add(images, "image", info.img_health == 1);
    add(images, "autoload", info.autoload_img_health == 1);
    add(images, "boot loader", info.boot_loader_img_health == 1);
    add(images, "firmware", info.firmware_img_health == 1);
    add(images, "boot ROM", info.boot_rom_img_health == 1);
    add(images, "settings", info.hba_info_img_health == 1);
    add(object, "images", std::move(images));
}

static void addAbilities(Json& object, const _Adapter_Info& info) {
    add(object, "portTypes", wordsOfBits(portTypeBits, info.PortSupportType));
    add(object, "levels", wordsOfBits(raidModeBits, info.LogicalDriverMode));
    add(object, "stripes", stripesOf(info));
    add(object, "buzzer", info.AlarmSupport == 1);
    add(object, "features", wordsOfBits(featureBits, info.Features));
    add(object, "advancedFeatures", advancedWords(info));
    add(object, "limits", limitsOf(info));
    addImages(object, info);
}

Json adapterOf(const AdapterReading& adapter, const ReadOptions& options) {
    Json object = Json::object();
    add(object, "id", adapter.index);
    if (!adapter.info) return object;
    const _Adapter_Info& info = *adapter.info;
    add(object, "type", info.MaxDiskGroup != 0 ? "array-based" : "LD-based");
    add(object, "model", textOf(info.ModelNumber));
    add(object, "serial", textOf(info.SerialNo));
    if (!isZero(info.WWN)) add(object, "wwn", hexOf(info.WWN));
    add(object, "versions", versionsOf(info));
    add(object, "bus", busOf(info));
    addAddresses(object, info);
    addAbilities(object, info);
    if (adapter.config) add(object, "config", fieldsOf(configFields, &*adapter.config));
    if (options.records) addFields(object, adapterFields, &info);
    if (adapter.settings) add(object, "settings", fieldsOf(settingsFields, &*adapter.settings));
    addParts(object, adapter, options);
    addDisks(object, adapter);
    addVolumes(object, adapter, options);
    addEvents(object, adapter);
    return object;
}
