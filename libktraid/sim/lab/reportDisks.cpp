#include "lab/reportDisks.h"

#include "lab/labVolumes.h"
#include "lab/reportWords.h"
#include "media/blocks.h"
#include "media/diskMakes.h"

#include <algorithm>
#include <cstring>

namespace sim {

static const LabWord PARENTS[] = {
    {"HBA", KT_LINK_HBA}, {"PM", KT_LINK_PM}, {"expander", KT_LINK_EXPANDER}, {"enclosure", KT_LINK_ENCLOSURE}};
static const LabWord DISK_STATES[] = {{"healthy", 0}, {"offline", KT_PD_OFFLINE}, {"foreign", KT_PD_FOREIGN}};
static const LabWord SPARE_KINDS[] = {{"global", KT_PD_GLOBAL_SPARE}, {"dedicated", KT_PD_DEDICATED_SPARE}};
static const LabWord PATROLS[] = {{"media patrol", KT_PD_BGA_MEDIA_PATROL}, {"data scrub", KT_PD_BGA_DATA_SCRUB}};
static constexpr WordField DISK_WORDS[] = {{"model", "Model"},
                                           {"serial", "SerialNo"},
                                           {"firmware", "FWVersion"},
                                           {"sector", "BlockSize"},
                                           {"parent", "Link.Parent.DevID"},
                                           {"enclosure", "Link.Self.EnclosureID"},
                                           {"slot", "ElementIdx"},
                                           {"address", "Link.Self.SAS_Address"},
                                           {"wwn", "WWN"},
                                           {"pio", "PIOMode"},
                                           {"mdma", "MDMAMode"},
                                           {"udma", "UDMAMode"},
                                           {"currentPio", "CurrentPIOMode"},
                                           {"currentMdma", "CurrentMDMAMode"},
                                           {"currentUdma", "CurrentUDMAMode"},
                                           {"locateLed", "LocateLEDStatus"},
                                           {"errorLed", "ErrorLEDStatus"},
                                           {"ssdType", "HD_SSD_Type"},
                                           {"rotation", "Media_Rotation_Rate"}};
static constexpr WordBit SUPPORTS[] = {
    {"NCQ", KT_HD_NCQ}, {"write cache", KT_HD_WRITE_CACHE}, {"48 bits LBA", KT_HD_48BIT_LBA}, {"SMART", KT_HD_SMART}};
static const KT_U64 SPEEDS[] = {0, 1500000000, 3000000000, 6000000000, 12000000000};

static KT_U32 speedCode(const LabReader& reader, const char* word, KT_U64 speed) {
    const auto* found = std::find(SPEEDS + 1, std::end(SPEEDS), speed);
    if (found == std::end(SPEEDS)) failLab(reader, word, "is no speed of a drive's link");
    return static_cast<KT_U32>(found - SPEEDS);
}

static void takeKind(LabReader& reader, _HD_Info& disk) {
    const DiskMake* make = diskMakeNamed(takeText(reader, "type", ""));
    if (!make && hasWord(reader, "type"))
        failLab(reader, "type", "should be SATA, SAS, SATA SSD, SAS SSD, PATA or ATAPI");
    const auto type = static_cast<KT_U8>(takeNumber(reader, "HDType", make ? make->type : KT_U8{KT_HD_SATA}, 255));
    disk.HDType = type;
    disk.ConnectionType = type & (KT_HD_SATA | KT_HD_PATA | KT_HD_SAS);
    disk.DeviceType = type & KT_HD_ATAPI ? 5 : 0;
    disk.Media_Rotation_Rate = type & KT_HD_SSD ? 1 : 0;
    disk.PIOMode = disk.MDMAMode = disk.UDMAMode = 0xFF;
    disk.CurrentPIOMode = disk.CurrentMDMAMode = disk.CurrentUDMAMode = 0xFF;
    disk.LocateLEDStatus = disk.ErrorLEDStatus = 0xFF;
    disk.FeatureSupport = takeBits(reader, "supports", SUPPORTS);
    const Json* speeds = take(reader, "linkSpeeds");
    if (speeds && !isList(*speeds)) failLab(reader, "linkSpeeds", "should be a list of speeds");
    for (const KT_U64 speed : speeds ? wholeNumbers(*speeds) : std::vector<KT_U64>())
        disk.FeatureSupport |= 1U << (7 + speedCode(reader, "linkSpeeds", speed));
}

static _HD_Info takeDisk(Context& context, LabReader& reader, KT_U16 id) {
    _HD_Info disk = {};
    disk.AdapterID = context.adapter;
    takeKind(reader, disk);
    disk.BlockSize = 512;
    disk.Link.Parent.DevType = static_cast<KT_U8>(takeCode(reader, "on", PARENTS, "Link.Parent.DevType", KT_LINK_HBA));
    disk.Link.Parent.PhyCnt = disk.Link.Self.PhyCnt = 1;
    disk.Link.Parent.PhyID[0] = static_cast<KT_U8>(takeNumber(reader, "port", 0, 255));
    disk.Link.Self.DevID = id;
    disk.Link.Self.EnclosureID = KT_NO_ID;
    takeAs(reader, KIND_PD, &disk, DISK_WORDS);
    disk.Link.Parent.EnclosureID = disk.Link.Self.EnclosureID;
    disk.Size = takeUnits(reader, "size", disk.BlockSize, 0);
    takeFields(reader, KIND_PD, &disk);
    if (disk.Link.Self.DevID != id) failLab(reader, "Link.Self.DevID", "is not the disk's id");
    return disk;
}

static void takeRole(LabReader& reader, KT_U16 id, PdState& state) {
    state.raid = static_cast<KT_U8>(takeWord(reader, "state", DISK_STATES, std::size(DISK_STATES), 0) |
                                    takeWord(reader, "spare", SPARE_KINDS, std::size(SPARE_KINDS), 0));
    if (takeFlag(reader, "member", false)) state.raid |= KT_PD_MEMBER;
    if (takeFlag(reader, "spareInUse", false)) state.raid |= KT_PD_SPARE_IN_USE;
    state.dgid = static_cast<KT_U16>(takeNumber(reader, "array", KT_NO_ID, KT_NO_ID));
    for (LabReader& raid : takeRecord(reader, "HD_RAID_STATUS")) {
        if (needNumber(raid, "HDID", 0xFFFF) != id) failLab(raid, "HDID", "is not the disk's id");
        state.dgid = static_cast<KT_U16>(takeNumber(raid, "DGID", state.dgid, KT_NO_ID));
        state.raid = static_cast<KT_U8>(takeNumber(raid, "Status", state.raid, 255) & ~unsigned{KT_PD_MEDIA_PATROL});
        takeNothingElse(raid);
    }
}

static void takeConfig(LabReader& reader, KT_U16 id, PdState& state) {
    _HD_CONFIG& config = state.config;
    config.HDID = id;
    config.WriteCacheOn = takeFlag(reader, "writeCache", false) ? 1 : 0;
    config.SMARTOn = takeFlag(reader, "smart", false) ? 1 : 0;
    config.Online = state.raid & KT_PD_OFFLINE ? 0 : 1;
    if (const Json* speed = take(reader, "linkSpeed"))
        config.DriveSpeed = static_cast<KT_U8>(speedCode(reader, "linkSpeed", wholeNumber(*speed)));
    config.crypto = static_cast<KT_U8>(takeNumber(reader, "cipher", 0, 255));
    config.AESPercentage = static_cast<KT_U8>(takeNumber(reader, "cipherPercent", 0, 255));
    for (LabReader& record : takeRecord(reader, "HD_CONFIG")) {
        const auto byte = [&](const char* field, KT_U8& value) {
            value = static_cast<KT_U8>(takeNumber(record, field, value, 255));
        };
        byte("WriteCacheOn", config.WriteCacheOn);
        byte("SMARTOn", config.SMARTOn);
        byte("Online", config.Online);
        byte("DriveSpeed", config.DriveSpeed);
        byte("crypto", config.crypto);
        byte("AESPercentage", config.AESPercentage);
        if (takeNumber(record, "HDID", id, 0xFFFF) != id) failLab(record, "HDID", "is not the disk's id");
        takeNothingElse(record);
    }
}

static void takePatrol(const Context& context, LabReader& disk, KT_U64 kib, PdState& state) {
    state.patrol.disk = KT_NO_ID;
    for (LabReader& reader : takeRecord(disk, "patrol")) {
        const WordList states = activityStateWords();
        Activity& patrol = state.patrol;
        patrol.kind = static_cast<KT_U8>(takeCode(reader, "kind", PATROLS, "Bga", 0));
        patrol.state = static_cast<KT_U8>(takeCode(reader, "state", states, "BgaState", 0));
        setReportedProgress(context, patrol, kib, takeNumber(reader, "percent", 0, 100));
        leaveOut(reader, {"Percentage"});
        takeNothingElse(reader);
        AdapterState adapter = find<AdapterState>(context, 0).value_or(AdapterState{});
        ++adapter.patrols;
        save(context, 0, adapter);
    }
}

static PdState takeState(const Context& context, LabReader& reader, const _HD_Info& disk, const Past& past) {
    const KT_U16 id = disk.Link.Self.DevID;
    PdState state = {};
    takeRole(reader, id, state);
    takeConfig(reader, id, state);
    state.hasOs = takeFlag(reader, "os", false) ? 1 : 0;
    state.hasMbr = takeFlag(reader, "mbr", false) ? 1 : 0;
    state.smartTripped = takeFlag(reader, "smartTripped", false) ? 1 : 0;
    const KT_U64 kib = sectorsToKib(disk.Size, disk.BlockSize);
    const KT_U64 valid =
        takeUnits(reader, "validSize", 1024, kib - std::min(kib, reservedKibOf(diskMakeOfType(disk.HDType))));
    if (valid > kib) failLab(reader, "validSize", "is more than the disk has");
    state.reservedKib = kib - valid;
    takePatrol(context, reader, kib, state);
    const bool offline = (state.raid & KT_PD_OFFLINE) != 0;
    if (offline && (past.silentDisks.count(id) || past.deadDisks.count(id))) state.health = PD_FAILED;
    const auto told = past.toldTooSmall.find(id);
    if (told != past.toldTooSmall.end()) state.toldTooSmall = told->second;
    const auto loss = past.losses.find(id);
    if (offline) state.left = loss == past.losses.end() ? past.lossCount : loss->second;
    return state;
}

void addReportedDisks(Context& context, LabReader& adapter, const Past& past) {
    for (LabReader& reader : takeObjects(adapter, "disks")) {
        const auto id = static_cast<KT_U16>(needNumber(reader, "id", 0xFFFE));
        if (find<_HD_Info>(context, id)) failLab(reader, "id", "is another disk's already");
        const _HD_Info disk = takeDisk(context, reader, id);
        const PdState state = takeState(context, reader, disk, past);
        // The rest is about its health, which addReportedHealth() sees to, or follows from blocks.
        leaveOut(reader, {"temperature", "poweredOn", "powerCycles", "reallocated", "pending", "uncorrectable",
                          "linkErrors", "wear", "attributes", "freeSize", "blocks", "magic", "HD_BGA_STATUS",
                          "HD_SMART_STATUS", "HD_FreeSpaceInfo"});
        takeNothingElse(reader);
        save(context, id, disk);
        save(context, id, state);
    }
}

} // namespace sim
