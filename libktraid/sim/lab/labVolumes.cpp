#include "lab/labVolumes.h"

#include "activities/activities.h"
#include "activities/rebuilding.h"
#include "changes/foreign.h"
#include "lab/reportWords.h"
#include "media/blocks.h"
#include "media/disks.h"
#include "raid/activityRecords.h"
#include "raid/cacheMode.h"
#include "state/simClock.h"

#include <algorithm>
#include <cstring>

namespace sim {

static const LabWord LEVEL_WORDS[] = {{"RAID0", KT_RAID0},   {"RAID1", KT_RAID1},
                                      {"RAID5", KT_RAID5},   {"RAID6", KT_RAID6},
                                      {"RAID10", KT_RAID10}, {"RAID1E", KT_RAID1E},
                                      {"RAID50", KT_RAID50}, {"RAID60", KT_RAID60},
                                      {"JBOD", KT_JBOD},     {"TANDEM CAPACITY", KT_TANDEM_CAPACITY},
                                      {"HYBRID", KT_HYBRID}, {"TANDEM SAFE", KT_TANDEM_SAFE}};
static const LabWord STATUS_WORDS[] = {{"online", KT_VD_ONLINE},
                                       {"degraded", KT_VD_DEGRADED},
                                       {"deleted", KT_VD_DELETED},
                                       {"offline", KT_VD_OFFLINE},
                                       {"partially optimal", KT_VD_PARTIALLY_OPTIMAL},
                                       {"foreign", KT_VD_FOREIGN},
                                       {"importable", KT_VD_IMPORTABLE},
                                       {"not importable", KT_VD_NOT_IMPORTABLE},
                                       {"conflicted", KT_VD_CONFLICTED},
                                       {"plugin conflicted", KT_VD_PLUGIN_CONFLICTED},
                                       {"using table", KT_VD_USING_TABLE}};
static const LabWord ACTIVITY_WORDS[] = {{"rebuild", KT_BGA_REBUILD},
                                         {"check and fix", KT_BGA_CHECK_FIX},
                                         {"check", KT_BGA_CHECK},
                                         {"quick init", KT_BGA_INIT_QUICK},
                                         {"foreground init", KT_BGA_INIT_FOREGROUND},
                                         {"migration", KT_BGA_MIGRATION},
                                         {"background init", KT_BGA_INIT_BACKGROUND},
                                         {"copy back", KT_BGA_COPY_BACK}};
static const LabWord ACTIVITY_STATES[] = {{"running", KT_STATE_RUNNING},
                                          {"aborted", KT_STATE_ABORTED},
                                          {"paused", KT_STATE_PAUSED},
                                          {"auto paused", KT_STATE_AUTO_PAUSED},
                                          {"interrupted", KT_STATE_INTERRUPTED}};
static const LabWord CACHE_WORDS[] = {{"on", 0}, {"off", KT_CACHE_OFF}, {"auto", KT_CACHE_AUTO}};

WordList levelWords() {
    return LEVEL_WORDS;
}
WordList vdStatusWords() {
    return STATUS_WORDS;
}
WordList activityWords() {
    return ACTIVITY_WORDS;
}
WordList activityStateWords() {
    return ACTIVITY_STATES;
}

static const KT_U64 STRIPE_KIB = 64;
static const size_t MEMBERS = sizeof(_DG_Info::PDIDs) / sizeof(KT_U16);
static const size_t SLOTS = sizeof(_DG_Info::VDIDs) / sizeof(KT_U16);
static const size_t MOST_SPARES = sizeof(_DG_Info::SparePDIDs) / sizeof(KT_U16);

// What a virtual disk or an array is made of.
struct Layout {
    KT_U8 level;
    KT_U8 parity; // disks' worth of parity of RAID6 and RAID60
    KT_U8 subs;   // parts of RAID50 and RAID60
    KT_U16 stripe;
    std::vector<KT_U16> disks; // KT_NO_ID = missing
};

static Geometry geometryFor(const Layout& layout) {
    return Geometry{layout.level, static_cast<KT_U8>(layout.disks.size()), layout.parity};
}

// A lab gives the members of hybrid levels equal blocks; at these levels those on solid-state disks are copies.
static bool keepsCopies(const Layout& layout) {
    return layout.level == KT_TANDEM_SAFE || layout.level == KT_HYBRID;
}

// Data on `share` KiB of every member.
static KT_U64 capacityFor(const Layout& layout, KT_U64 share) {
    return keepsCopies(layout) ? share : capacityOf(geometryFor(layout), share);
}

// KiB of every member, in whole stripes and at least one, that hold `size` KiB.
static KT_U64 shareFor(const Layout& layout, KT_U64 size) {
    const Geometry alone{KT_JBOD, 1, 0};
    const KT_U64 share = shareFor(keepsCopies(layout) ? alone : geometryFor(layout), size, layout.stripe);
    return std::max<KT_U64>(share, layout.stripe);
}

static void checkMembers(const LabReader& reader, std::vector<KT_U16> disks) {
    std::sort(disks.begin(), disks.end());
    if (disks.front() == KT_NO_ID) failLab(reader, "disks", "are all missing");
    const auto twice = std::adjacent_find(disks.begin(), disks.end());
    if (twice != disks.end() && *twice != KT_NO_ID)
        failLab(reader, "disks", "name disk " + std::to_string(*twice) + " twice");
}

// Arrays share no disk with anything else.
static void refuseUsed(const Context& context, const LabReader& reader, const char* word, KT_U16 pd, KT_U8 flags) {
    const auto state = find<PdState>(context, pd);
    if (state && (state->raid & flags)) failLab(reader, word, "disk " + std::to_string(pd) + " is in use already");
}

static Layout takeLayout(LabReader& reader, Layout inherited) {
    Layout layout = std::move(inherited);
    layout.level = static_cast<KT_U8>(takeWord(reader, "level", LEVEL_WORDS, std::size(LEVEL_WORDS), layout.level));
    if (hasWord(reader, "disks")) layout.disks = takeIds(reader, "disks");
    if (layout.disks.empty() || layout.disks.size() > MEMBERS)
        failLab(reader, "disks", "should name 1 to " + std::to_string(MEMBERS) + " disks");
    checkMembers(reader, layout.disks);
    const bool raid60 = layout.level == KT_RAID60;
    const bool parted = raid60 || layout.level == KT_RAID50;
    const KT_U8 parity = raid60 ? 4 : layout.level == KT_RAID6 ? 2 : 0;
    layout.parity = static_cast<KT_U8>(takeNumber(reader, "parity", layout.parity ? layout.parity : parity, 255));
    layout.subs = static_cast<KT_U8>(takeNumber(reader, "parts", layout.subs ? layout.subs : parted ? 2 : 0, 255));
    layout.stripe = static_cast<KT_U16>(takeNumber(reader, "stripe", layout.stripe ? layout.stripe : STRIPE_KIB, 1024));
    if (layout.stripe == 0) failLab(reader, "stripe", "should be 1 to 1024 (KiB)");
    const size_t least = layout.level == KT_RAID5 ? 2 : layout.level == KT_RAID50 ? 4 : layout.parity + 1U;
    if (layout.disks.size() < least) failLab(reader, "disks", "are too few for the level");
    return layout;
}

// The smallest room among the members that are there, in whole stripes; KiB.
static KT_U64 memberRoom(const Context& context, const Layout& layout, const LabReader& reader) {
    KT_U64 room = NEVER;
    for (const KT_U16 pd : layout.disks) {
        if (pd == KT_NO_ID) continue;
        Disk disk = {};
        if (findDisk(context, pd, disk) != KT_OK) failLab(reader, "disks", "there is no disk " + std::to_string(pd));
        room = std::min(room, freeKib(context, pd, validKib(disk.info, disk.state)));
    }
    return room == NEVER ? 0 : room / layout.stripe * layout.stripe;
}

static void markMember(const Context& context, KT_U16 pd, KT_U8 flag, KT_U16 array) {
    auto state = find<PdState>(context, pd);
    if (!state) return;
    state->raid |= flag;
    if (array != KT_NO_ID) state->dgid = array;
    save(context, pd, *state);
}

// The members that get blocks: those from the slot `from` on, `kib` each.
struct Share {
    const Layout& layout;
    size_t from;
    KT_U64 kib;
};

// The blocks' ids are in the order of the members.
static void placeBlocks(const Context& context, const LabReader& reader, const Share& share, _LD_Info& vd) {
    const Layout& layout = share.layout;
    for (size_t i = share.from; i < layout.disks.size(); ++i) {
        const KT_U16 pd = layout.disks[i];
        if (pd == KT_NO_ID) continue;
        const auto disk = find<_HD_Info>(context, pd);
        const auto state = find<PdState>(context, pd);
        if (!disk || !state) failLab(reader, "disks", "there is no disk " + std::to_string(pd));
        const KT_U64 sectors = kibToSectors(share.kib, disk->BlockSize);
        const auto start = findSpace(context, pd, *disk, *state, sectors);
        if (!start) failLab(reader, "size", "does not fit on disk " + std::to_string(pd));
        _Block_Info block = {};
        block.HDID = pd;
        block.LDID = vd.ID;
        block.BlockSize = static_cast<KT_U16>(disk->BlockSize);
        block.StartLBA = *start;
        block.Size = sectors;
        vd.BlockIDs[i] = addBlock(context, block);
        if (vd.BlockIDs[i] == KT_NO_ID) failLab(reader, "disks", "disk " + std::to_string(pd) + " has no more blocks");
        vd.BlockSize = disk->BlockSize;
        markMember(context, pd, isForeign(vd) ? KT_PD_FOREIGN : KT_PD_MEMBER, vd.DGID);
    }
}

static void markRebuilding(const Context& context, const _LD_Info& vd, KT_U16 pd) {
    for (const KT_U16 id : vd.BlockIDs) {
        auto block = find<_Block_Info>(context, id);
        if (!block || block->HDID != pd) continue;
        block->Status = BLOCK_REBUILDING;
        updateBlock(context, *block);
    }
}

static void takeActivity(const Context& context, LabReader& vdReader, KT_U64 work, _LD_Info& vd, VdState& state) {
    for (LabReader& reader : takeObjects(vdReader, "activity")) {
        Activity& activity = state.activity;
        activity.kind =
            static_cast<KT_U8>(takeWord(reader, "kind", ACTIVITY_WORDS, std::size(ACTIVITY_WORDS), KT_BGA_REBUILD));
        activity.state = static_cast<KT_U8>(
            takeWord(reader, "state", ACTIVITY_STATES, std::size(ACTIVITY_STATES), KT_STATE_RUNNING));
        activity.disk = static_cast<KT_U16>(takeNumber(reader, "disk", KT_NO_ID, KT_NO_ID));
        const KT_U16* homes = state.homes;
        if (activity.disk != KT_NO_ID && std::find(homes, homes + vd.HDCount, activity.disk) == homes + vd.HDCount)
            failLab(reader, "disk", "is not a member");
        const bool redundant = vd.RaidMode != KT_RAID0 && vd.RaidMode != KT_JBOD;
        if (!redundant && (activity.kind & (KT_BGA_REBUILD | KT_BGA_CHECK | KT_BGA_CHECK_FIX)))
            failLab(reader, "kind", "does not go with the level");
        setReportedProgress(context, activity, work, takeNumber(reader, "percent", 0, 100));
        vd.BGAStatus = activity.state;
        if (activity.kind == KT_BGA_REBUILD) markRebuilding(context, vd, activity.disk);
        takeNothingElse(reader);
    }
}

static void takeTarget(const Context& context, LabReader& vdReader, const Layout& from, KT_U64 kib,
                       const _LD_Info& vd) {
    for (LabReader& reader : takeObjects(vdReader, "target")) {
        const Layout layout = takeLayout(reader, from);
        VdTarget target{vd, {}};
        target.info.RaidMode = layout.level;
        target.info.NumParityDisk = layout.parity;
        target.info.SubLDCount = layout.subs;
        target.info.HDCount = target.info.BlkCount = static_cast<KT_U8>(layout.disks.size());
        target.info.Size = capacityFor(layout, kib);
        target.info.BGAStatus = 0;
        placeBlocks(context, reader, Share{layout, from.disks.size(), kib}, target.info);
        std::fill(std::begin(target.homes), std::end(target.homes), KT_U16{KT_NO_ID});
        std::copy(layout.disks.begin(), layout.disks.end(), target.homes);
        takeFields(reader, KIND_VD_TARGET, &target);
        takeNothingElse(reader);
        save(context, vd.ID, target);
    }
}

static KT_U16 takeVdId(const Context& context, LabReader& reader) {
    const auto last = lastRow(context.store, context.adapter, KIND_VD);
    const KT_U64 id = takeNumber(reader, "id", last ? *last + 1 : 0, KT_BLOCK_FREE - 1);
    if (find<_LD_Info>(context, id)) failLab(reader, "id", "is another virtual disk's already");
    return static_cast<KT_U16>(id);
}

static _LD_Info makeVd(const Context& context, LabReader& reader, const Layout& layout) {
    _LD_Info vd = {};
    vd.ID = takeVdId(context, reader);
    vd.AdapterID = context.adapter;
    vd.DGID = KT_NO_ID;
    vd.RaidMode = layout.level;
    vd.StripeBlockSize = layout.stripe;
    vd.SubLDCount = layout.subs;
    vd.NumParityDisk = layout.parity;
    vd.HDCount = vd.BlkCount = static_cast<KT_U8>(layout.disks.size());
    std::fill(std::begin(vd.BlockIDs), std::end(vd.BlockIDs), KT_U16{KT_NO_ID});
    const KT_U8 guid[8] = {0x6B, 0x74, context.adapter, static_cast<KT_U8>(vd.ID), 0x20, 0x26, 0x01, 0x05};
    memcpy(vd.LD_GUID, guid, sizeof guid);
    putText(reader, "name", takeText(reader, "name", "VD_" + std::to_string(vd.ID)), vd.Name, sizeof vd.Name);
    const bool missing = std::count(layout.disks.begin(), layout.disks.end(), KT_U16{KT_NO_ID}) != 0;
    vd.Status = static_cast<KT_U8>(
        takeWord(reader, "status", STATUS_WORDS, std::size(STATUS_WORDS), missing ? KT_VD_DEGRADED : KT_VD_ONLINE));
    const auto created = static_cast<KT_U32>(shownTime(context) / 1000);
    vd.time_hi = static_cast<KT_U16>(created >> 16);
    vd.time_low = static_cast<KT_U16>(created & 0xFFFF);
    return vd;
}

// Adds one virtual disk; `dgid` KT_NO_ID outside arrays.
static _LD_Info addVd(const Context& context, LabReader& reader, const Layout& layout, KT_U16 dgid) {
    _LD_Info vd = makeVd(context, reader, layout);
    vd.DGID = dgid;
    const KT_U64 room = memberRoom(context, layout, reader);
    const KT_U64 wanted = takeSize(reader, "size", capacityFor(layout, room) * 1024) / 1024;
    const KT_U64 kib = shareFor(layout, wanted);
    vd.Size = capacityFor(layout, kib);
    VdState state = {};
    state.linkedDisk = static_cast<KT_U16>(takeNumber(reader, "linkedDisk", KT_NO_ID, KT_NO_ID));
    state.initialized = takeFlag(reader, "initialized", true) ? 1 : 0;
    state.whole = capacityFor(layout, room) - vd.Size < 1024 ? 1 : 0; // what is less than a megabyte is no room
    state.hasOs = takeFlag(reader, "os", false) ? 1 : 0;
    state.cachePolicy = static_cast<KT_U8>(takeWord(reader, "cache", CACHE_WORDS, std::size(CACHE_WORDS), 0));
    if (takeFlag(reader, "readAhead", false)) state.cachePolicy |= KT_CACHE_READ_AHEAD;
    vd.CacheMode = cacheModeFor(context, state.cachePolicy);
    state.activity.disk = KT_NO_ID;
    std::fill(std::begin(state.homes), std::end(state.homes), KT_U16{KT_NO_ID});
    std::copy(layout.disks.begin(), layout.disks.end(), state.homes);
    placeBlocks(context, reader, Share{layout, 0, kib}, vd);
    takeActivity(context, reader, kib, vd, state);
    takeTarget(context, reader, layout, kib, vd);
    takeFields(reader, KIND_VD, &vd);
    takeNothingElse(reader);
    save(context, vd.ID, vd);
    save(context, vd.ID, state);
    return vd;
}

static void addSlots(const Context& context, LabReader& reader, const Layout& layout, _DG_Info& array, DgState& state) {
    for (LabReader& vdReader : repeatObjects(reader, "virtualDisks")) {
        if (array.VDSlotCount + 1U >= SLOTS) failLab(reader, "virtualDisks", "are too many for one array");
        const _LD_Info vd = addVd(context, vdReader, layout, array.DGID);
        array.VDSlotSize[array.VDSlotCount] = vd.Size;
        array.VDIDs[array.VDSlotCount++] = vd.ID;
        array.RemainingManagedSpace -= std::min(array.RemainingManagedSpace, vd.Size);
        array.BlockSize = vd.BlockSize;
        VdState vdState = find<VdState>(context, vd.ID).value_or(VdState{});
        const int arraysOwn = KT_BGA_REBUILD | KT_BGA_MIGRATION | KT_BGA_COPY_BACK;
        if (vdState.activity.kind != 0 && array.BgaState != KT_STATE_RUNNING) {
            array.BgaType = vdState.activity.kind;
            array.BgaState = vdState.activity.state;
        }
        if ((vdState.activity.kind & arraysOwn) == 0) continue;
        // These concern all virtual disks of an array, which is why the array has them.
        state.activity = vdState.activity;
        vdState.activity = Activity{};
        vdState.activity.disk = KT_NO_ID;
        save(context, vd.ID, vdState);
    }
    if (array.RemainingManagedSpace == 0) return;
    array.VDSlotSize[array.VDSlotCount++] = array.RemainingManagedSpace;
}

static void takeSpares(const Context& context, LabReader& reader, _DG_Info& array) {
    for (const KT_U16 pd : takeIds(reader, "spares")) {
        if (array.SparePDCount == MOST_SPARES) failLab(reader, "spares", "are too many for one array");
        if (!find<PdState>(context, pd)) failLab(reader, "spares", "there is no disk " + std::to_string(pd));
        refuseUsed(context, reader, "spares", pd, KT_PD_MEMBER | KT_PD_SPARE);
        array.SparePDIDs[array.SparePDCount++] = pd;
        markMember(context, pd, KT_PD_DEDICATED_SPARE, array.DGID);
    }
}

static void addArray(Context& context, LabReader& reader, const Layout& layout) {
    const auto last = lastRow(context.store, context.adapter, KIND_DG);
    const auto id = static_cast<KT_U16>(takeNumber(reader, "id", last ? *last + 1 : 0, KT_BLOCK_FREE - 1));
    if (find<_DG_Info>(context, id)) failLab(reader, "id", "is another array's already");
    _DG_Info array = {};
    array.DGID = id;
    array.AdapterID = context.adapter;
    array.RaidMode = layout.level;
    array.SubVDCount = layout.subs;
    array.NumParityDisk = layout.parity;
    array.StripeBlockSize = layout.stripe;
    array.BlockSize = 512;
    putText(reader, "name", takeText(reader, "name", "Array_" + std::to_string(id)), array.Name, sizeof array.Name);
    array.SmallestAvailablePDSize = memberRoom(context, layout, reader);
    array.TotalManagedSpace = capacityFor(layout, array.SmallestAvailablePDSize);
    array.RemainingManagedSpace = array.TotalManagedSpace;
    std::fill(std::begin(array.PDIDs), std::end(array.PDIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(array.VDIDs), std::end(array.VDIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(array.SparePDIDs), std::end(array.SparePDIDs), KT_U16{KT_NO_ID});
    for (const KT_U16 pd : layout.disks) {
        refuseUsed(context, reader, "disks", pd, KT_PD_MEMBER | KT_PD_SPARE);
        if (pd == KT_NO_ID) array.Status = 1;
        if (pd != KT_NO_ID) array.PDIDs[array.PDCount++] = pd;
        markMember(context, pd, KT_PD_MEMBER, id);
    }
    DgState state = {};
    state.writeCacheOn = takeFlag(reader, "writeCache", true) ? 1 : 0;
    state.memberCount = static_cast<KT_U8>(layout.disks.size());
    std::fill(std::begin(state.members), std::end(state.members), KT_U16{KT_NO_ID});
    std::copy(layout.disks.begin(), layout.disks.end(), state.members);
    std::copy(std::begin(state.members), std::end(state.members), state.homes);
    state.activity.disk = KT_NO_ID;
    addSlots(context, reader, layout, array, state);
    takeSpares(context, reader, array);
    takeFields(reader, KIND_DG, &array);
    takeNothingElse(reader);
    save(context, id, array);
    save(context, id, state);
    // What goes on in one of its virtual disks goes on in all of them.
    for (const KT_U16 vd : array.VDIDs)
        if (vd != KT_NO_ID) showActivity(context, vd);
}

// With "count", each copy takes as many disks further on.
template <class Add>
static void forEachCopy(std::vector<LabReader> readers, Add add) {
    for (LabReader& reader : readers) {
        const KT_U64 copies = takeNumber(reader, "count", 1, KT_BLOCK_FREE);
        Layout layout = takeLayout(reader, Layout{KT_RAID5, 0, 0, 0, {}});
        for (KT_U64 copy = 0; copy < copies; ++copy) {
            LabReader one = reader;
            add(one, layout);
            for (KT_U16& pd : layout.disks)
                if (pd != KT_NO_ID) pd = static_cast<KT_U16>(pd + layout.disks.size());
        }
    }
}

void addLabVolumes(Context& context, LabReader& adapter) {
    if (hasWord(adapter, "arrays") && adapterInfo(context).MaxDiskGroup == 0)
        failLab(adapter, "arrays", "are not for LD-based adapters");
    forEachCopy(takeObjects(adapter, "arrays"),
                [&](LabReader& reader, const Layout& layout) { addArray(context, reader, layout); });
    forEachCopy(takeObjects(adapter, "virtualDisks"),
                [&](LabReader& reader, const Layout& layout) { addVd(context, reader, layout, KT_NO_ID); });
    // No adapter would be at rest with a spare that could be at work.
    reviewForeign(context);
    engageSpares(context);
}

} // namespace sim
