#include "lab/reportVolumes.h"

#include "activities/activities.h"
#include "activities/steering.h"
#include "changes/foreign.h"
#include "lab/labVolumes.h"
#include "lab/reportSizes.h"
#include "lab/reportWords.h"
#include "media/blocks.h"
#include "raid/members.h"

#include <algorithm>
#include <cstring>

namespace sim {

static constexpr WordField VD_WORDS[] = {
    {"name", "Name"},        {"members", "HDCount"},        {"parity", "NumParityDisk"}, {"parts", "SubLDCount"},
    {"sector", "BlockSize"}, {"stripe", "StripeBlockSize"}, {"array", "DGID"},           {"guid", "LD_GUID"}};
static constexpr WordField LAYOUT_WORDS[] = {{"members", "HDCount"},
                                             {"parity", "NumParityDisk"},
                                             {"parts", "SubLDCount"},
                                             {"sector", "BlockSize"},
                                             {"stripe", "StripeBlockSize"}};
static constexpr WordField ARRAY_WORDS[] = {{"name", "Name"},        {"parity", "NumParityDisk"},
                                            {"parts", "SubVDCount"}, {"stripe", "StripeBlockSize"},
                                            {"sector", "BlockSize"}, {"memberPatrol", "PDBgaRunning"}};
static const LabWord CACHES[] = {{"on", 0}, {"off", KT_CACHE_OFF}, {"auto", KT_CACHE_AUTO}};
static const int ARRAYS_OWN = KT_BGA_REBUILD | KT_BGA_MIGRATION | KT_BGA_COPY_BACK;
static const KT_U16 TABLE_ENTRIES = 512;

// Blocks.

static void takeBlock(Context& context, LabReader& reader) {
    _Block_Info block = {};
    const auto id = static_cast<KT_U16>(needNumber(reader, "id", 0xFFFE));
    if (find<_Block_Info>(context, id)) failLab(reader, "id", "is another block's already");
    block.ID = id;
    block.HDID = static_cast<KT_U16>(needNumber(reader, "disk", 0xFFFE));
    block.LDID = static_cast<KT_U16>(takeNumber(reader, "virtualDisk", KT_BLOCK_FREE, 0xFFFF));
    block.BlockSize = static_cast<KT_U16>(takeNumber(reader, "sector", 512, 0xFFFF));
    block.StartLBA = takeUnits(reader, "start", block.BlockSize, 0);
    block.Size = takeUnits(reader, "size", block.BlockSize, 0);
    block.Status = static_cast<KT_U8>(takeNumber(reader, "status", 0, 255));
    block.Flags = static_cast<KT_U8>(takeNumber(reader, "flags", 0, 255));
    takeFields(reader, KIND_BLOCK, &block);
    takeNothingElse(reader);
    if (block.ID != id) failLab(reader, "ID", "is not the block's id");
    const auto disk = find<_HD_Info>(context, block.HDID);
    if (!disk) failLab(reader, "disk", "there is no disk " + std::to_string(block.HDID));
    if (block.StartLBA > disk->Size || block.Size > disk->Size - block.StartLBA)
        failLab(reader, "size", "goes beyond the end of disk " + std::to_string(block.HDID));
    save(context, id, block);
}

static void listBlocks(Context& context, const LabReader& adapter) {
    std::map<KT_U16, std::vector<_Block_Info>> byDisk;
    forEach<_Block_Info>(context, 0, [&](KT_U64, const _Block_Info& block) {
        byDisk[block.HDID].push_back(block);
        return true;
    });
    for (auto& [pd, blocks] : byDisk) {
        std::stable_sort(blocks.begin(), blocks.end(),
                         [](const _Block_Info& a, const _Block_Info& b) { return a.StartLBA < b.StartLBA; });
        _HD_Block_Info list = blocksOf(context, pd);
        if (blocks.size() > std::size(list.BlkIDs))
            failLab(adapter, "blocks", "disk " + std::to_string(pd) + " has more than it can have");
        KT_U64 end = 0;
        for (const _Block_Info& block : blocks) {
            if (block.StartLBA < end)
                failLab(adapter, "blocks", "block " + std::to_string(block.ID) + " lies on another one");
            end = block.StartLBA + block.Size;
            list.BlkIDs[list.BlkCount++] = block.ID;
        }
        save(context, pd, list);
    }
}

// Virtual disks.

static void takeBlockIds(Context& context, LabReader& reader, _LD_Info& vd) {
    const std::vector<KT_U16> ids = takeIds(reader, "blocks");
    if (ids.size() > std::size(vd.BlockIDs)) failLab(reader, "blocks", "are more than a virtual disk has");
    std::fill(std::begin(vd.BlockIDs), std::end(vd.BlockIDs), KT_U16{KT_NO_ID});
    std::copy(ids.begin(), ids.end(), vd.BlockIDs);
    vd.BlkCount = static_cast<KT_U8>(ids.size());
    const std::vector<KT_U16> disks = takeIds(reader, "disks");
    for (size_t i = 0; i < ids.size(); ++i) {
        const auto block = find<_Block_Info>(context, ids[i]);
        if (ids[i] != KT_NO_ID && (!block || block->LDID != vd.ID))
            failLab(reader, "blocks", "there is no block " + std::to_string(ids[i]) + " of this virtual disk");
        if (block && i < disks.size() && disks[i] != block->HDID) {
            failLab(reader, "disks",
                    "block " + std::to_string(ids[i]) + " lies on disk " + std::to_string(block->HDID));
        }
    }
}

static void takeVdCode(LabReader& reader, _LD_Info& vd) {
    const WordList levels = levelWords();
    vd.RaidMode = static_cast<KT_U8>(takeCode(reader, "level", levels, "RaidMode", 0));
    vd.Size = takeUnits(reader, "size", 1024, 0);
}

static void takeCache(LabReader& reader, _LD_Info& vd, VdState& state) {
    static const LabWord IN_FORCE[] = {{"on", 0}, {"off", KT_CACHE_OFF}};
    int policy = takeWord(reader, "cache", CACHES, std::size(CACHES), 0);
    if (takeFlag(reader, "readAhead", false)) policy |= KT_CACHE_READ_AHEAD;
    if (takeFlag(reader, "restore", false)) policy |= KT_CACHE_RESTORE;
    state.cachePolicy = static_cast<KT_U8>(takeNumber(reader, "CachePolicy", static_cast<KT_U64>(policy), 255));
    for (LabReader& config : takeRecord(reader, "LD_Config")) {
        state.cachePolicy = static_cast<KT_U8>(takeNumber(config, "CachePolicy", state.cachePolicy, 255));
        leaveOut(config, {"LDID", "Name"});
        takeNothingElse(config);
    }
    const int rest = state.cachePolicy & ~(KT_CACHE_AUTO | KT_CACHE_OFF);
    vd.CacheMode = static_cast<KT_U8>(rest | takeWord(reader, "cacheInForce", IN_FORCE, std::size(IN_FORCE), 0));
}

// KiB that the activity has to do for one virtual disk.
static KT_U64 workOf(const Context& context, const Activity& activity, const _LD_Info& vd) {
    const KT_U64 share = shareOf(context, vd);
    if (activity.kind == KT_BGA_INIT_QUICK) return initializationWork(activity.kind, share);
    return activity.kind == KT_BGA_MIGRATION ? 2 * share : share;
}

static KT_U16 filledDisk(const Context& context, const _LD_Info& vd, KT_U8 kind) {
    const KT_U8 status = kind == KT_BGA_COPY_BACK ? BLOCK_COPYING : BLOCK_REBUILDING;
    KT_U16 filled = KT_NO_ID;
    if (kind != KT_BGA_REBUILD && kind != KT_BGA_COPY_BACK) return filled;
    forEach<_Block_Info>(context, 0, [&](KT_U64, const _Block_Info& block) {
        if (block.LDID == vd.ID && block.Status == status) filled = block.HDID;
        return filled == KT_NO_ID;
    });
    return filled;
}

static void takeToldActivity(const Context& context, LabReader& vdReader, _LD_Info& vd, VdState& state) {
    state.activity.disk = KT_NO_ID;
    leaveOut(vdReader, {"LD_STATUS", "memberPatrol", "magic"});
    for (LabReader& reader : takeRecord(vdReader, "activity")) {
        const WordList kinds = activityWords();
        const WordList states = activityStateWords();
        Activity& activity = state.activity;
        activity.kind = static_cast<KT_U8>(takeCode(reader, "kind", kinds, "Bga", 0));
        activity.state = static_cast<KT_U8>(takeCode(reader, "state", states, "BgaState", 0));
        activity.disk =
            static_cast<KT_U16>(takeNumber(reader, "disk", filledDisk(context, vd, activity.kind), KT_NO_ID));
        setReportedProgress(context, activity, workOf(context, activity, vd), takeNumber(reader, "percent", 0, 100));
        leaveOut(reader, {"BgaPercentage"});
        takeNothingElse(reader);
        vd.BGAStatus = activity.state;
    }
}

static KT_U16 diskIn(const Context& context, KT_U16 blockId) {
    const auto block = find<_Block_Info>(context, blockId);
    return block ? block->HDID : KT_U16{KT_NO_ID};
}

// Whose place the slots are: the disks in them, but for spares that stand in.
static void setHomes(const Context& context, const _LD_Info& vd, KT_U16 (&homes)[128]) {
    for (size_t i = 0; i < std::size(homes); ++i)
        homes[i] = diskIn(context, vd.BlockIDs[i]);
}

static void takeToldTarget(const Context& context, LabReader& vdReader, const _LD_Info& vd) {
    for (LabReader& reader : takeRecord(vdReader, "target")) {
        VdTarget target{vd, {}};
        target.info.BGAStatus = KT_STATE_NONE;
        const std::vector<KT_U16> ids = takeIds(reader, "blocks");
        if (ids.size() > std::size(vd.BlockIDs)) failLab(reader, "blocks", "are more than a virtual disk has");
        std::fill(std::begin(target.info.BlockIDs), std::end(target.info.BlockIDs), KT_U16{KT_NO_ID});
        std::copy(ids.begin(), ids.end(), target.info.BlockIDs);
        target.info.BlkCount = static_cast<KT_U8>(ids.size());
        target.info.NumParityDisk = target.info.SubLDCount = 0;
        takeVdCode(reader, target.info);
        takeAs(reader, KIND_VD_TARGET, &target, LAYOUT_WORDS);
        leaveOut(reader, {"disks"});
        takeFields(reader, KIND_VD_TARGET, &target);
        takeNothingElse(reader);
        setHomes(context, target.info, target.homes);
        save(context, vd.ID, target);
    }
}

static void takeTable(const Context& context, LabReader& vdReader, const _LD_Info& vd) {
    for (LabReader& reader : takeRecord(vdReader, "table")) {
        if (needNumber(reader, "total", 0xFFFF) != TABLE_ENTRIES)
            failLab(reader, "total", "is not " + std::to_string(TABLE_ENTRIES));
        const KT_U64 remaining = needNumber(reader, "remaining", TABLE_ENTRIES);
        takeNothingElse(reader);
        HybridTable table = {};
        memcpy(table.guid, vd.LD_GUID, sizeof table.guid);
        table.used = static_cast<KT_U16>(TABLE_ENTRIES - remaining);
        if (table.used == 0) continue;
        save(context, vd.ID, table);
    }
}

static _LD_Info takeVdRecord(Context& context, LabReader& reader, VdState& state) {
    _LD_Info vd = {};
    vd.ID = static_cast<KT_U16>(needNumber(reader, "id", KT_BLOCK_FREE - 1));
    if (find<_LD_Info>(context, vd.ID)) failLab(reader, "id", "is another virtual disk's already");
    const KT_U16 id = vd.ID;
    const WordList statuses = vdStatusWords();
    vd.AdapterID = context.adapter;
    vd.DGID = KT_NO_ID;
    vd.Status = static_cast<KT_U8>(takeCode(reader, "status", statuses, "Status", KT_VD_ONLINE));
    takeVdCode(reader, vd);
    takeBlockIds(context, reader, vd);
    takeAs(reader, KIND_VD, &vd, VD_WORDS);
    const KT_U64 written = takeTime(reader, "written", 0);
    vd.time_hi = static_cast<KT_U16>(written >> 16);
    vd.time_low = static_cast<KT_U16>(written & 0xFFFF);
    takeCache(reader, vd, state);
    takeToldActivity(context, reader, vd, state);
    takeFields(reader, KIND_VD, &vd);
    if (vd.ID != id) failLab(reader, "ID", "is not the virtual disk's id");
    return vd;
}

static _LD_Info addToldVd(Context& context, LabReader& reader, const Past& past) {
    VdState state = {};
    const _LD_Info vd = takeVdRecord(context, reader, state);
    state.hasOs = takeFlag(reader, "os", false) ? 1 : 0;
    state.linkedDisk = static_cast<KT_U16>(takeNumber(reader, "linkedDisk", KT_NO_ID, KT_NO_ID));
    const auto known = past.initialized.find(vd.ID);
    const bool initializing =
        (state.activity.kind & (KT_BGA_INIT_QUICK | KT_BGA_INIT_FOREGROUND | KT_BGA_INIT_BACKGROUND)) != 0;
    state.initialized = (known == past.initialized.end() ? !initializing : known->second) ? 1 : 0;
    state.unfinished = vd.Status == KT_VD_NOT_IMPORTABLE ? 1 : 0;
    const auto offline = past.offline.find(vd.ID);
    if (vd.Status == KT_VD_OFFLINE) state.offline = offline == past.offline.end() ? past.lossCount : offline->second;
    setHomes(context, vd, state.homes);
    takeToldTarget(context, reader, vd);
    takeTable(context, reader, vd);
    takeNothingElse(reader);
    save(context, vd.ID, vd);
    save(context, vd.ID, state);
    return vd;
}

// Arrays.

static void takeSlots(LabReader& reader, _DG_Info& array) {
    for (LabReader& slot : takeObjects(reader, "slots")) {
        const KT_U64 number = needNumber(slot, "slot", std::size(array.VDIDs) - 1);
        if (number != array.VDSlotCount) failLab(slot, "slot", "is not the next one");
        array.VDSlotSize[number] = takeUnits(slot, "size", 1024, 0);
        array.VDIDs[number] = static_cast<KT_U16>(takeNumber(slot, "virtualDisk", KT_NO_ID, KT_NO_ID));
        ++array.VDSlotCount;
        takeNothingElse(slot);
    }
}

static _DG_Info takeArrayRecord(Context& context, LabReader& reader, const std::vector<KT_U16>& disks) {
    static const LabWord STATUSES[] = {{"functional", ARRAY_FUNCTIONAL}, {"disk missing", ARRAY_PD_MISSING}};
    const WordList levels = levelWords();
    _DG_Info array = {};
    array.DGID = static_cast<KT_U16>(needNumber(reader, "id", KT_BLOCK_FREE - 1));
    if (find<_DG_Info>(context, array.DGID)) failLab(reader, "id", "is another array's already");
    const KT_U16 id = array.DGID;
    array.AdapterID = context.adapter;
    std::fill(std::begin(array.PDIDs), std::end(array.PDIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(array.VDIDs), std::end(array.VDIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(array.SparePDIDs), std::end(array.SparePDIDs), KT_U16{KT_NO_ID});
    array.RaidMode = static_cast<KT_U8>(takeCode(reader, "level", levels, "RaidMode", 0));
    array.Status = static_cast<KT_U8>(takeCode(reader, "status", STATUSES, "Status", ARRAY_FUNCTIONAL));
    takeAs(reader, KIND_DG, &array, ARRAY_WORDS);
    array.TotalManagedSpace = takeUnits(reader, "size", 1024, 0);
    array.RemainingManagedSpace = takeUnits(reader, "freeSize", 1024, 0);
    array.SmallestAvailablePDSize = takeUnits(reader, "memberSize", 1024, 0);
    if (disks.size() > std::size(array.PDIDs) + 1) failLab(reader, "disks", "are more than an array has");
    for (const KT_U16 pd : disks)
        if (pd != KT_NO_ID && array.PDCount < std::size(array.PDIDs)) array.PDIDs[array.PDCount++] = pd;
    for (const KT_U16 pd : takeIds(reader, "spares")) {
        if (array.SparePDCount == std::size(array.SparePDIDs)) failLab(reader, "spares", "are more than an array has");
        array.SparePDIDs[array.SparePDCount++] = pd;
    }
    takeSlots(reader, array);
    for (LabReader& activity : takeRecord(reader, "activity")) {
        const WordList kinds = activityWords();
        const WordList states = activityStateWords();
        array.BgaType = static_cast<KT_U16>(takeCode(activity, "kind", kinds, "Bga", 0));
        array.BgaState = static_cast<KT_U8>(takeCode(activity, "state", states, "BgaState", 0));
        takeNothingElse(activity);
    }
    takeFields(reader, KIND_DG, &array);
    if (array.DGID != id) failLab(reader, "DGID", "is not the array's id");
    return array;
}

// What concerns all virtual disks of an array the array has, with the work of all of them.
static void gatherActivity(const Context& context, const _DG_Info& array, DgState& state) {
    KT_U64 work = 0;
    KT_U64 percent = 0;
    for (const KT_U16 id : array.VDIDs) {
        const auto vd = find<_LD_Info>(context, id);
        auto own = find<VdState>(context, id);
        if (id == KT_NO_ID || !vd || !own || (own->activity.kind & ARRAYS_OWN) == 0) continue;
        state.activity = own->activity;
        percent = own->activity.work ? own->activity.done / std::max<KT_U64>(own->activity.work / 100, 1) : 0;
        work += workOf(context, own->activity, *vd);
        own->activity = Activity{};
        own->activity.disk = KT_NO_ID;
        save(context, id, *own);
    }
    if (state.activity.kind) setReportedProgress(context, state.activity, work, std::min<KT_U64>(percent, 100));
}

static void addToldArray(Context& context, LabReader& reader, const Past& past) {
    std::vector<KT_U16> disks = takeIds(reader, "disks");
    DgState state = {};
    state.writeCacheOn = takeFlag(reader, "writeCache", true) ? 1 : 0;
    for (LabReader& config : takeRecord(reader, "DG_CONFIG")) {
        state.writeCacheOn = static_cast<KT_U8>(takeNumber(config, "WriteCacheOn", state.writeCacheOn, 255));
        leaveOut(config, {"DGID", "Name"});
        takeNothingElse(config);
    }
    const _DG_Info array = takeArrayRecord(context, reader, disks);
    for (LabReader& vdReader : takeObjects(reader, "virtualDisks")) {
        const _LD_Info vd = addToldVd(context, vdReader, past);
        if (vd.DGID != array.DGID) failLab(vdReader, "array", "is not the array that the virtual disk stands in");
        // Its slots tell more than the list of the disks that are there.
        if (vd.HDCount > disks.size()) disks.resize(vd.HDCount, KT_NO_ID);
    }
    takeNothingElse(reader);
    if (disks.size() > std::size(state.members)) failLab(reader, "disks", "are more than an array has");
    state.memberCount = static_cast<KT_U8>(disks.size());
    std::fill(std::begin(state.members), std::end(state.members), KT_U16{KT_NO_ID});
    std::copy(disks.begin(), disks.end(), state.members);
    std::copy(std::begin(state.members), std::end(state.members), state.homes);
    state.activity.disk = KT_NO_ID;
    gatherActivity(context, array, state);
    save(context, array.DGID, array);
    save(context, array.DGID, state);
}

// A spare at work stands in for a disk that the adapter has taken out, as far as one is left to be seen.
static void findHomes(const Context& context) {
    std::vector<KT_U16> out;
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& disk) {
        if ((disk.raid & KT_PD_OFFLINE) && !(disk.raid & KT_PD_MEMBER)) out.push_back(static_cast<KT_U16>(id));
        return true;
    });
    for (const Owner owner : allGroups(context)) {
        const Group group = groupOf(context, owner);
        const Activity activity = activityOf(context, owner);
        for (size_t i = 0; i < group.members.size(); ++i) {
            const auto spare = find<PdState>(context, group.members[i]);
            if (!spare || !(spare->raid & KT_PD_SPARE_IN_USE)) continue;
            KT_U16 home = KT_NO_ID;
            if (activity.kind == KT_BGA_COPY_BACK) home = activity.disk;
            if (home == KT_NO_ID && !out.empty()) {
                home = out.front();
                out.erase(out.begin());
            }
            setHome(context, group, static_cast<int>(i), home);
        }
    }
}

void addReportedVolumes(Context& context, LabReader& adapter, const Past& past) {
    for (LabReader& reader : takeObjects(adapter, "blocks"))
        takeBlock(context, reader);
    listBlocks(context, adapter);
    for (LabReader& reader : takeObjects(adapter, "arrays"))
        addToldArray(context, reader, past);
    for (LabReader& reader : takeObjects(adapter, "virtualDisks"))
        addToldVd(context, reader, past);
    findHomes(context);
    findWhole(context);
}

} // namespace sim
