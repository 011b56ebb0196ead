#include "lab/labDisks.h"

#include "activities/activities.h"
#include "lab/labLinks.h"
#include "lab/labPlaces.h"
#include "lab/reportWords.h"
#include "media/diskMakes.h"
#include "media/surface.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <set>

namespace sim {

static const LabWord SPARE_WORDS[] = {{"global", KT_PD_GLOBAL_SPARE}};
static const LabWord STATE_WORDS[] = {{"healthy", 0}, {"offline", KT_PD_OFFLINE}, {"foreign", KT_PD_FOREIGN}};

static const DiskMake& takeMake(LabReader& disk) {
    const DiskMake* make = diskMakeNamed(takeText(disk, "type", "SATA"));
    if (!make) failLab(disk, "type", "should be SATA, SAS, SATA SSD, SAS SSD, PATA or ATAPI");
    return *make;
}

static void numberDisk(_HD_Info& disk, const Context& context, const DiskMake& make, KT_U16 id) {
    char serial[sizeof disk.SerialNo + 1];
    snprintf(serial, sizeof serial, "%c%c%02X%05u%04X", make.type & KT_HD_SAS ? 'S' : 'A', make.ssd ? 'P' : 'G',
             context.adapter, id, (id * 40503U + 257U * context.adapter) & 0xFFFFU);
    memcpy(disk.SerialNo, serial, strlen(serial));
}

// The disk's own end of its link.
static void linkDisk(_HD_Info& disk, const Context& context, KT_U16 id) {
    disk.Link.Self.DevID = id;
    disk.Link.Self.PhyCnt = 1;
    const KT_U8 address[8] = {
        0x50, 0x0C, 0x2A, 0x71, context.adapter, 0x10, static_cast<KT_U8>(id >> 8), static_cast<KT_U8>(id & 0xFF)};
    memcpy(disk.Link.Self.SAS_Address, address, sizeof address);
    memcpy(disk.WWN, address, sizeof address);
}

static _HD_Info makeDisk(const Context& context, LabReader& reader, const DiskMake& make, KT_U16 id) {
    const KT_U64 bytes = takeSize(reader, "size", make.type & KT_HD_ATAPI ? 0 : 1000000000000U);
    // A text is what the drive is sold with, a number what it has.
    const bool exact = isNumber(reader, "size");
    const KT_U32 sector = static_cast<KT_U32>(takeNumber(reader, "sector", 512, 4096));
    if (!isSectorSize(sector)) failLab(reader, "sector", "should be 512, 1024, 2048 or 4096");
    _HD_Info disk = {};
    disk.AdapterID = context.adapter;
    manufacture(disk, make, bytes, sector);
    if (exact) disk.Size = bytes / sector;
    numberDisk(disk, context, make, id);
    linkDisk(disk, context, id);
    const std::string name = takeText(reader, "model", "");
    if (!name.empty()) putText(reader, "model", name, disk.Model, sizeof disk.Model);
    const std::string serial = takeText(reader, "serial", "");
    if (!serial.empty()) putText(reader, "serial", serial, disk.SerialNo, sizeof disk.SerialNo);
    const std::string firmware = takeText(reader, "firmware", "");
    if (!firmware.empty()) putText(reader, "firmware", firmware, disk.FWVersion, sizeof disk.FWVersion);
    return disk;
}

static PdState makeState(LabReader& reader, const DiskMake& make, KT_U16 id) {
    PdState state = {};
    state.config.WriteCacheOn = make.features & KT_HD_WRITE_CACHE ? 1 : 0;
    state.config.SMARTOn = make.features & KT_HD_SMART ? 1 : 0;
    state.config.Online = 1;
    state.config.DriveSpeed = make.speed;
    state.config.HDID = id;
    state.dgid = KT_NO_ID;
    state.reservedKib = reservedKibOf(make);
    state.patrol.disk = KT_NO_ID;
    state.raid = static_cast<KT_U8>(takeWord(reader, "state", STATE_WORDS, std::size(STATE_WORDS), 0) |
                                    takeWord(reader, "spare", SPARE_WORDS, std::size(SPARE_WORDS), 0));
    if (state.raid & KT_PD_OFFLINE) state.config.Online = 0;
    state.hasOs = takeFlag(reader, "os", false) ? 1 : 0;
    state.hasMbr = takeFlag(reader, "mbr", state.hasOs != 0) ? 1 : 0;
    state.smartTripped = takeFlag(reader, "smartTripped", false) ? 1 : 0;
    return state;
}

// A media patrol that is some way through the disk.
static void addPatrol(const Context& context, LabReader& disk, KT_U64 kib, PdState& state) {
    static const LabWord STATES[] = {{"running", KT_STATE_RUNNING},
                                     {"aborted", KT_STATE_ABORTED},
                                     {"paused", KT_STATE_PAUSED},
                                     {"auto paused", KT_STATE_AUTO_PAUSED}};
    for (LabReader& reader : takeObjects(disk, "patrol")) {
        state.patrol.kind = KT_PD_BGA_MEDIA_PATROL;
        state.patrol.state = static_cast<KT_U8>(takeWord(reader, "state", STATES, std::size(STATES), KT_STATE_RUNNING));
        setReportedProgress(context, state.patrol, kib, takeNumber(reader, "percent", 0, 100));
        takeNothingElse(reader);
        AdapterState adapter = find<AdapterState>(context, 0).value_or(AdapterState{});
        ++adapter.patrols;
        save(context, 0, adapter);
    }
}

static void takeBadSectors(const Context& context, LabReader& reader, const _HD_Info& disk, KT_U16 id) {
    const Json* list = take(reader, "badSectors");
    if (!list) return;
    for (const KT_U64 lba : wholeNumbers(*list)) {
        const bool good = lba < disk.Size && addBadSector(context, id, lba, BadSector{FLAW_UNREADABLE, 0, {}});
        if (!good) failLab(reader, "badSectors", "should be a list of at most 1000 sectors of the disk");
    }
}

// One of the disks that an object of "disks" stands for.
struct LabDisk {
    const LabReader* entry;
    KT_U16 id;
    KT_U64 copy;
};

static void addDisk(const Context& context, const LabDisk& one, LabPlaces& places) {
    LabReader reader = *one.entry;
    const DiskMake& make = takeMake(reader);
    _HD_Info disk = makeDisk(context, reader, make, one.id);
    placeLabDisk(context, places, reader, one.copy, disk);
    PdState state = makeState(reader, make, one.id);
    addPatrol(context, reader, disk.Size / 1024 * disk.BlockSize, state);
    takeFields(reader, KIND_PD, &disk);
    takeBadSectors(context, reader, disk, one.id);
    takeNothingElse(reader);
    save(context, one.id, disk);
    save(context, one.id, state);
}

static std::vector<LabDisk> listDisks(std::vector<LabReader>& entries) {
    std::vector<LabDisk> disks;
    std::set<KT_U64> ids;
    KT_U64 next = 0;
    for (LabReader& entry : entries) {
        const KT_U64 copies = takeNumber(entry, "count", 1, 65000);
        next = takeNumber(entry, "id", next, 0xFFFE);
        for (KT_U64 copy = 0; copy < copies; ++copy, ++next) {
            if (next >= KT_NO_ID) failLab(entry, "count", "goes beyond the last disk id");
            if (!ids.insert(next).second) failLab(entry, "id", "is another disk's already");
            disks.push_back(LabDisk{&entry, static_cast<KT_U16>(next), copy});
        }
    }
    return disks;
}

// What says most of its place comes first, so that nothing else gets there.
static void addDisks(Context& context, LabReader& adapter) {
    std::vector<LabReader> entries = takeObjects(adapter, "disks");
    const std::vector<LabDisk> disks = listDisks(entries);
    LabPlaces places;
    for (const PlaceSaid said : {PlaceSaid::Port, PlaceSaid::Device, PlaceSaid::Nothing}) {
        const auto isNow = [said](const LabDisk& disk) { return placeSaid(*disk.entry) == said; };
        if (said == PlaceSaid::Nothing)
            makeRoom(context, places, adapter, static_cast<KT_U64>(std::count_if(disks.begin(), disks.end(), isNow)));
        for (const LabDisk& disk : disks)
            if (isNow(disk)) addDisk(context, disk, places);
    }
}

void addLabDisks(Context& context, LabReader& adapter) {
    addLabLinks(context, adapter);
    addDisks(context, adapter);
}

} // namespace sim
