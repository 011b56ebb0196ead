// A disk's words.
#include <algorithm>

#include "Report/parts.h"
#include "Report/records.h"

// Attributes whose raw value means the same on every drive.
enum : KT_U8 {
    REALLOCATED = 5,
    POWER_ON_HOURS = 9,
    POWER_CYCLES = 12,
    WEAR_LEVELING = 177,
    UNCORRECTABLE = 187,
    AIRFLOW_TEMPERATURE = 190,
    TEMPERATURE = 194,
    PENDING = 197,
    LINK_ERRORS = 199,
    LIFE_LEFT = 231,
    MEDIA_WEAR = 233
};
static constexpr KT_U64 RAW_BITS = 0xFFFFFFFFFFFF;

static void addPlace(Json& object, const _HD_Info& info) {
    const _Link_Endpoint& parent = info.Link.Parent;
    addCode(object, "on", parentWords, parent.DevType, "Link.Parent.DevType");
    if (parent.DevType != KT_LINK_HBA) add(object, "parent", parent.DevID);
    add(object, "port", parent.PhyID[0]);
    const KT_U16 enclosure = info.Link.Self.EnclosureID != KT_NO_ID ? info.Link.Self.EnclosureID : parent.EnclosureID;
    if (enclosure != KT_NO_ID) {
        add(object, "enclosure", enclosure);
        add(object, "slot", info.ElementIdx);
    }
    if (!isZero(info.Link.Self.SAS_Address)) add(object, "address", hexOf(info.Link.Self.SAS_Address));
    if (!isZero(info.WWN)) add(object, "wwn", hexOf(info.WWN));
}

static void addRole(Json& object, const DiskReading& disk) {
    if (!disk.raid) return;
    const unsigned bits = disk.raid->Status;
    const char* state = bits & KT_PD_OFFLINE ? "offline" : bits & KT_PD_FOREIGN ? "foreign" : "healthy";
    add(object, "state", state);
    add(object, "member", (bits & KT_PD_MEMBER) != 0);
    if (disk.raid->DGID != KT_NO_ID) add(object, "array", disk.raid->DGID);
    if (bits & KT_PD_SPARE) add(object, "spare", bits & KT_PD_GLOBAL_SPARE ? "global" : "dedicated");
    if (bits & KT_PD_SPARE_IN_USE) add(object, "spareInUse", true);
}

static void addPatrol(Json& object, const DiskReading& disk) {
    if (!disk.activity || disk.activity->BgaState == KT_STATE_NONE) return;
    Json patrol = Json::object();
    addCode(patrol, "kind", patrolWords, disk.activity->Bga, "Bga");
    addCode(patrol, "state", stateWords, disk.activity->BgaState, "BgaState");
    const unsigned percent = disk.activity->Percentage;
    add(patrol, percent <= 100 ? "percent" : "Percentage", percent);
    add(object, "patrol", std::move(patrol));
}

static void addSizes(Json& object, const DiskReading& disk) {
    static constexpr KT_U64 UNKNOWN = ~KT_U64{0};
    const KT_U64 sector = disk.info.BlockSize == 0 ? 512 : disk.info.BlockSize;
    if (disk.info.Size != 0 && disk.info.Size != UNKNOWN) addProduct(object, "size", disk.info.Size, sector);
    add(object, "sector", sector);
    if (disk.space) {
        addProduct(object, "validSize", disk.space->ValidSize, 1024);
        addProduct(object, "freeSize", disk.space->FreeSize, 1024);
    }
}

static void addMode(Json& modes, const char* word, KT_U8 mode) {
    static constexpr KT_U8 NOT_VALID = 255;
    if (mode != NOT_VALID) add(modes, word, mode);
}

static void addLink(Json& object, const DiskReading& disk) {
    Json speeds = Json::array();
    for (unsigned code = 1; code <= 4; ++code) {
        if (disk.info.FeatureSupport >> (7 + code) & 1) speeds.push_back(driveSpeed(code));
    }
    add(object, "linkSpeeds", std::move(speeds));
    if (disk.config && driveSpeed(disk.config->DriveSpeed))
        add(object, "linkSpeed", driveSpeed(disk.config->DriveSpeed));
    addMode(object, "pio", disk.info.PIOMode);
    addMode(object, "mdma", disk.info.MDMAMode);
    addMode(object, "udma", disk.info.UDMAMode);
    addMode(object, "currentPio", disk.info.CurrentPIOMode);
    addMode(object, "currentMdma", disk.info.CurrentMDMAMode);
    addMode(object, "currentUdma", disk.info.CurrentUDMAMode);
}

static void addSwitches(Json& object, const DiskReading& disk) {
    add(object, "supports", wordsOfBits(driveBits, disk.info.FeatureSupport & 0xFF));
    if (disk.config) {
        add(object, "writeCache", disk.config->WriteCacheOn != 0);
        add(object, "smart", disk.config->SMARTOn != 0);
        if (disk.config->crypto) add(object, "cipher", disk.config->crypto);
        if (disk.config->crypto) add(object, "cipherPercent", disk.config->AESPercentage);
    }
    if (disk.info.LocateLEDStatus != 0xFF) add(object, "locateLed", disk.info.LocateLEDStatus != 0);
    if (disk.info.ErrorLEDStatus != 0xFF) add(object, "errorLed", disk.info.ErrorLEDStatus != 0);
    if (disk.info.HD_SSD_Type != 0) add(object, "ssdType", disk.info.HD_SSD_Type);
    if (disk.info.Media_Rotation_Rate > 1) add(object, "rotation", disk.info.Media_Rotation_Rate);
}

static const _SMART_Attribute* findAttribute(const DiskReading& disk, KT_U8 id) {
    if (!disk.attributes) return nullptr;
    for (const _SMART_Attribute& attribute : *disk.attributes) {
        if (attribute.Id == id) return &attribute;
    }
    return nullptr;
}

static void addMeasured(Json& object, const DiskReading& disk) {
    if (disk.smart) add(object, "smartTripped", disk.smart->SmartThresholdExceeded != 0);
    const auto raw = [&](const char* word, KT_U8 id, KT_U64 bits, KT_U64 unit) {
        if (const _SMART_Attribute* attribute = findAttribute(disk, id))
            add(object, word, (attribute->RawValue & bits) * unit);
    };
    // The upper bytes hold what each maker likes: extremes of temperature, minutes, further counts.
    const bool direct = findAttribute(disk, TEMPERATURE) != nullptr;
    raw("temperature", direct ? TEMPERATURE : AIRFLOW_TEMPERATURE, 0xFF, 1);
    raw("poweredOn", POWER_ON_HOURS, 0xFFFFFFFF, 3600);
    raw("powerCycles", POWER_CYCLES, 0xFFFFFFFF, 1);
    raw("reallocated", REALLOCATED, 0xFFFFFFFF, 1);
    raw("pending", PENDING, 0xFFFFFFFF, 1);
    raw("uncorrectable", UNCORRECTABLE, 0xFFFFFFFF, 1);
    raw("linkErrors", LINK_ERRORS, 0xFFFFFFFF, 1);
    if ((disk.info.HDType & KT_HD_SSD) == 0) return;
    for (const KT_U8 id : {LIFE_LEFT, MEDIA_WEAR, WEAR_LEVELING}) {
        const _SMART_Attribute* attribute = findAttribute(disk, id);
        if (!attribute) continue;
        add(object, "wear", 100 - std::min<int>(attribute->Current, 100));
        return;
    }
}

Json diskOf(const AdapterReading& adapter, KT_U16 id, const DiskReading& disk, const std::vector<KT_U16>& blocks) {
    Json object = Json::object();
    object.get_ref<Json::object_t&>().reserve(48);
    add(object, "id", id);
    addCode(object, "type", diskTypeWords, disk.info.HDType, "HDType");
    add(object, "model", textOf(disk.info.Model));
    add(object, "serial", textOf(disk.info.SerialNo));
    add(object, "firmware", textOf(disk.info.FWVersion));
    addSizes(object, disk);
    addPlace(object, disk.info);
    addRole(object, disk);
    if (disk.os) add(object, "os", *disk.os);
    if (disk.mbr) add(object, "mbr", *disk.mbr);
    addMeasured(object, disk);
    addPatrol(object, disk);
    addSwitches(object, disk);
    addLink(object, disk);
    if (adapter.blocks) add(object, "blocks", blocks);
    if (disk.magic) add(object, "magic", textOf(disk.magic->Magic));
    fitObject(object);
    return object;
}

static Json attributeOf(const _SMART_Attribute& attribute) {
    Json object = Json::object();
    object.get_ref<Json::object_t&>().reserve(7);
    add(object, "id", attribute.Id);
    add(object, "name", textOf(attribute.Name));
    add(object, "current", attribute.Current);
    add(object, "worst", attribute.Worst);
    add(object, "threshold", attribute.Threshold);
    add(object, "raw", attribute.RawValue & RAW_BITS);
    addCode(object, "status", attributeWords, attribute.Status, "Status");
    return object;
}

void addDetails(Json& object, const DiskReading& disk, const ReadOptions& options) {
    if (options.attributes && disk.attributes) {
        Json attributes = Json::array();
        for (const _SMART_Attribute& attribute : *disk.attributes) {
            attributes.push_back(attributeOf(attribute));
        }
        add(object, "attributes", std::move(attributes));
    }
    if (!options.records) return;
    addFields(object, diskFields, &disk.info);
    const auto addRecord = [&](const char* word, RecordFields fields, const auto& record) {
        if (record) object[word] = fieldsOf(fields, &*record);
    };
    addRecord("HD_RAID_STATUS", diskRaidFields, disk.raid);
    addRecord("HD_CONFIG", diskConfigFields, disk.config);
    addRecord("HD_BGA_STATUS", diskActivityFields, disk.activity);
    addRecord("HD_SMART_STATUS", diskSmartFields, disk.smart);
    addRecord("HD_FreeSpaceInfo", diskSpaceFields, disk.space);
}

void addDisks(Json& object, const AdapterReading& adapter) {
    if (!adapter.disks) return;
    std::map<KT_U16, std::vector<KT_U16>> blocks;
    if (adapter.blocks) {
        for (const auto& [id, block] : *adapter.blocks) {
            blocks[block.HDID].push_back(id);
        }
    }
    static const std::vector<KT_U16> none;
    Json disks = Json::array();
    disks.get_ref<Json::array_t&>().reserve(adapter.disks->size());
    for (const auto& [id, disk] : *adapter.disks) {
        const auto own = blocks.find(id);
        disks.push_back(diskOf(adapter, id, disk, own == blocks.end() ? none : own->second));
    }
    add(object, "disks", std::move(disks));
}
