#include "activities/activities.h"
#include "lab/report.h"
#include "media/diskMakes.h"
#include "media/surface.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace sim {

static const LabWord PARENT_WORDS[] = {
    {"HBA", KT_LINK_HBA}, {"PM", KT_LINK_PM}, {"expander", KT_LINK_EXPANDER}, {"enclosure", KT_LINK_ENCLOSURE}};
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

static void linkDisk(_HD_Info& disk, const Context& context, LabReader& reader, KT_U16 id, KT_U64 copy) {
    const KT_U8 parent = static_cast<KT_U8>(takeWord(reader, "on", PARENT_WORDS, std::size(PARENT_WORDS), KT_LINK_HBA));
    const KT_U16 parentId = static_cast<KT_U16>(takeNumber(reader, "parent", 0, 0xFFFE));
    const auto adapter = find<_Adapter_Info>(context, 0);
    const KT_U64 port = takeNumber(reader, "port", NEVER, 255);
    const KT_U16 enclosure = static_cast<KT_U16>(takeNumber(reader, "enclosure", KT_NO_ID, KT_NO_ID));
    if (parent == KT_LINK_EXPANDER && !find<_Exp_Info>(context, parentId))
        failLab(reader, "parent", "there is no expander " + std::to_string(parentId));
    const auto multiplier = find<_PM_Info>(context, parentId);
    if (parent == KT_LINK_PM && !multiplier)
        failLab(reader, "parent", "there is no port multiplier " + std::to_string(parentId));
    if (enclosure != KT_NO_ID && !find<_Enclosure_Info>(context, enclosure))
        failLab(reader, "enclosure", "there is no enclosure " + std::to_string(enclosure));
    disk.Link.Parent.DevType = parent;
    disk.Link.Parent.DevID = parentId;
    disk.Link.Parent.PhyCnt = 1;
    disk.Link.Parent.PhyID[0] = static_cast<KT_U8>(
        port == NEVER ? (parent == KT_LINK_HBA && adapter->PortCount ? id % adapter->PortCount : id) : port + copy);
    if (parent == KT_LINK_PM && disk.Link.Parent.PhyID[0] >= multiplier->NumberOfPorts)
        failLab(reader, "port", "goes beyond the ports of port multiplier " + std::to_string(parentId));
    disk.Link.Parent.EnclosureID = enclosure;
    disk.Link.Self.DevID = id;
    disk.Link.Self.PhyCnt = 1;
    disk.Link.Self.EnclosureID = enclosure;
    const KT_U8 address[8] = {
        0x50, 0x0C, 0x2A, 0x71, context.adapter, 0x10, static_cast<KT_U8>(id >> 8), static_cast<KT_U8>(id & 0xFF)};
    memcpy(disk.Link.Self.SAS_Address, address, sizeof address);
    memcpy(disk.WWN, address, sizeof address);
}

static _HD_Info makeDisk(const Context& context, LabReader& reader, const DiskMake& make, KT_U16 id, KT_U64 copy) {
    const KT_U64 bytes = takeSize(reader, "size", make.type & KT_HD_ATAPI ? 0 : 1000000000000U);
    // A text is what the drive is sold with, a number what it has.
    const bool exact = hasWord(reader, "size") && reader.object["size"].is_number();
    const KT_U32 sector = static_cast<KT_U32>(takeNumber(reader, "sector", 512, 4096));
    if (!isSectorSize(sector)) failLab(reader, "sector", "should be 512, 1024, 2048 or 4096");
    _HD_Info disk = {};
    disk.AdapterID = context.adapter;
    manufacture(disk, make, bytes, sector);
    if (exact) disk.Size = bytes / sector;
    numberDisk(disk, context, make, id);
    linkDisk(disk, context, reader, id, copy);
    const std::string name = takeText(reader, "model", "");
    if (!name.empty()) putText(reader, "model", name, disk.Model, sizeof disk.Model);
    const std::string serial = takeText(reader, "serial", "");
    if (!serial.empty()) putText(reader, "serial", serial, disk.SerialNo, sizeof disk.SerialNo);
    const std::string firmware = takeText(reader, "firmware", "");
    if (!firmware.empty()) putText(reader, "firmware", firmware, disk.FWVersion, sizeof disk.FWVersion);
    if (disk.ElementIdx == 0 && disk.Link.Parent.EnclosureID != KT_NO_ID) disk.ElementIdx = disk.Link.Parent.PhyID[0];
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
    for (const Json& lba : list->is_array() ? *list : Json::array({*list})) {
        const bool good = lba.is_number_unsigned() && lba.get<KT_U64>() < disk.Size &&
                          addBadSector(context, id, lba.get<KT_U64>(), BadSector{FLAW_UNREADABLE, 0, {}});
        if (!good) failLab(reader, "badSectors", "should be a list of at most 1000 sectors of the disk");
    }
}

static void addDisks(Context& context, LabReader& adapter) {
    KT_U64 next = 0;
    for (LabReader& entry : takeObjects(adapter, "disks")) {
        const KT_U64 copies = takeNumber(entry, "count", 1, 65000);
        next = takeNumber(entry, "id", next, 0xFFFE);
        for (KT_U64 copy = 0; copy < copies; ++copy, ++next) {
            if (next >= KT_NO_ID) failLab(entry, "count", "goes beyond the last disk id");
            const auto id = static_cast<KT_U16>(next);
            if (find<_HD_Info>(context, id)) failLab(entry, "id", "is another disk's already");
            LabReader reader = entry;
            const DiskMake& make = takeMake(reader);
            _HD_Info disk = makeDisk(context, reader, make, id, copy);
            PdState state = makeState(reader, make, id);
            addPatrol(context, reader, disk.Size / 1024 * disk.BlockSize, state);
            takeFields(reader, KIND_PD, &disk);
            takeBadSectors(context, reader, disk, id);
            takeNothingElse(reader);
            save(context, id, disk);
            save(context, id, state);
        }
    }
}

// Wide links of four: to the adapter as long as it has ports for them, then from expander to expander.
static _Link_Endpoint expanderParent(const Context& context, KT_U16 id) {
    const _Adapter_Info adapter = find<_Adapter_Info>(context, 0).value_or(_Adapter_Info{});
    const KT_U16 links = std::max<KT_U16>(adapter.PortCount / 4, 1);
    _Link_Endpoint parent = {context.adapter, KT_LINK_HBA, 4, {0, 1, 2, 3}, {}, KT_NO_ID, {}};
    if (id >= links) {
        const auto above = static_cast<KT_U16>(id - links);
        parent = _Link_Endpoint{above, KT_LINK_EXPANDER, 4, {20, 21, 22, 23}, {}, KT_NO_ID, {}};
        const auto expander = find<_Exp_Info>(context, above);
        memcpy(parent.SAS_Address, expander->Link.Self.SAS_Address, sizeof parent.SAS_Address);
        return parent;
    }
    for (int i = 0; i < 4; ++i)
        parent.PhyID[i] = static_cast<KT_U8>(4 * id + i);
    memcpy(parent.SAS_Address, adapter.PortSasAddress[std::min(4 * id, 15)], sizeof parent.SAS_Address);
    return parent;
}

// The shelf that the expander is in: the first one in the first shelf, and so on; 0 where there are none.
static KT_U16 shelfOf(const Context& context, KT_U16 expander) {
    KT_U16 shelf = 0;
    KT_U16 number = 0;
    forEach<_Enclosure_Info>(context, 0, [&](KT_U64 id, const _Enclosure_Info&) {
        shelf = static_cast<KT_U16>(id);
        return number++ < expander;
    });
    return shelf;
}

static void addExpanders(Context& context, LabReader& adapter) {
    KT_U16 id = 0;
    for (LabReader& reader : takeObjects(adapter, "expanders")) {
        _Exp_Info expander = {};
        expander.AdapterID = context.adapter;
        expander.RouteTableConfigurable = 1;
        expander.PhyCount = 28;
        expander.RouteIndexes = 128;
        memcpy(expander.VendorID, "TARNWARE", 8);
        memcpy(expander.ProductID, "Fanout 28       ", 16);
        memcpy(expander.ProductRevision, "1.07", 4);
        memcpy(expander.ComponentVendorID, "TARNWARE", 8);
        expander.ComponentID = 0x0228;
        expander.ComponentRevision = 2;
        const KT_U8 address[8] = {0x50, 0x0A, 0x1F, 0x40, 0x00, 0x28, context.adapter, static_cast<KT_U8>(id)};
        expander.Link.Parent = expanderParent(context, id);
        expander.Link.Self = _Link_Endpoint{id, KT_LINK_EXPANDER, 4, {24, 25, 26, 27}, {}, shelfOf(context, id), {}};
        memcpy(expander.Link.Self.SAS_Address, address, sizeof address);
        takeFields(reader, KIND_EXPANDER, &expander);
        takeNothingElse(reader);
        save(context, id++, expander);
    }
}

static void addPortMultipliers(Context& context, LabReader& adapter) {
    KT_U16 id = 0;
    for (LabReader& reader : takeObjects(adapter, "portMultipliers")) {
        _PM_Info multiplier = {};
        multiplier.AdapterID = context.adapter;
        multiplier.ProductRevision = 1;
        multiplier.SpecRevision = 0x12;
        multiplier.NumberOfPorts = 5;
        multiplier.VendorID = 0x1FA4;
        multiplier.DeviceID = 0x3705;
        // From the last port down; single disks take those from the first on.
        const int port = std::max(find<_Adapter_Info>(context, 0)->PortCount - 1 - id, 0);
        multiplier.Link.Parent =
            _Link_Endpoint{context.adapter, KT_LINK_HBA, 1, {static_cast<KT_U8>(port)}, {}, KT_NO_ID, {}};
        multiplier.Link.Self = _Link_Endpoint{id, KT_LINK_PM, 1, {0}, {}, KT_NO_ID, {}};
        takeFields(reader, KIND_PM, &multiplier);
        takeNothingElse(reader);
        save(context, id++, multiplier);
    }
}

static void addEnclosures(Context& context, LabReader& adapter) {
    KT_U16 next = 0;
    for (LabReader& reader : takeObjects(adapter, "enclosures")) {
        const auto id = static_cast<KT_U16>(takeNumber(reader, "id", next, 0xFFFE));
        if (find<_Enclosure_Info>(context, id)) failLab(reader, "id", "is another enclosure's already");
        _Enclosure_Info enclosure = {};
        enclosure.EnclosureID = id;
        enclosure.AdapterID = context.adapter;
        const KT_U8 logical[8] = {0x50, 0x0A, 0x1F, 0x40, 0x00, 0x3E, context.adapter, static_cast<KT_U8>(id)};
        memcpy(enclosure.LogicalID, logical, sizeof logical);
        memcpy(enclosure.VendorID, "TARNWARE", 8);
        memcpy(enclosure.ProductID, "Shelf 24        ", 16);
        memcpy(enclosure.RevisionLevel, "0103", 4);
        save(context, id, enclosure);
        addLabElements(context, id, reader);
        enclosure = find<_Enclosure_Info>(context, id).value_or(enclosure);
        takeFields(reader, KIND_ENCLOSURE, &enclosure);
        takeNothingElse(reader);
        save(context, id, enclosure);
        next = static_cast<KT_U16>(id + 1);
    }
}

void addLabDisks(Context& context, LabReader& adapter) {
    addEnclosures(context, adapter);
    addExpanders(context, adapter);
    addPortMultipliers(context, adapter);
    addDisks(context, adapter);
}

} // namespace sim
