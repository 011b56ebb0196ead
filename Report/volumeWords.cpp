// The words of virtual disks, arrays and blocks.
#include <algorithm>
#include <iterator>

#include "Public/vdBlocks.h"
#include "Report/parts.h"
#include "Report/records.h"

// What of an adapter the words of its virtual disks are made from.
struct VolumeContext {
    const AdapterReading& adapter;
    const ReadOptions& options;
};

static const _Block_Info* findBlock(const AdapterReading& adapter, KT_U16 id) {
    if (!adapter.blocks) return nullptr;
    const auto at = adapter.blocks->find(id);
    return at == adapter.blocks->end() ? nullptr : &at->second;
}

// The block in each slot of a virtual disk, KT_NO_ID where there is none.
static std::vector<KT_U16> slotsOf(const _LD_Info& vd) {
    const BlockSlots slots = blockSlots(vd);
    std::vector<KT_U16> blocks;
    for (unsigned i = 0; i < slots.count; ++i) {
        blocks.push_back(vd.BlockIDs[i] == slots.empty ? KT_U16{KT_NO_ID} : vd.BlockIDs[i]);
    }
    // Firmware that does not count its blocks fills sixteen slots whatever it uses.
    while (vd.BlkCount == 0 && !blocks.empty() && blocks.back() == KT_NO_ID)
        blocks.pop_back();
    return blocks;
}

// The disk in each slot, KT_NO_ID where one is missing; empty when a block is not known.
static std::vector<KT_U16> disksOf(const AdapterReading& adapter, const _LD_Info& vd) {
    std::vector<KT_U16> disks;
    for (const KT_U16 id : slotsOf(vd)) {
        const _Block_Info* block = findBlock(adapter, id);
        if (id != KT_NO_ID && block == nullptr) return {};
        disks.push_back(block ? block->HDID : KT_U16{KT_NO_ID});
    }
    return disks;
}

static Json idsOrNull(const std::vector<KT_U16>& ids) {
    Json list = Json::array();
    for (const KT_U16 id : ids) {
        list.push_back(id == KT_NO_ID ? Json() : Json(id));
    }
    return list;
}

static void addLayout(Json& object, const AdapterReading& adapter, const _LD_Info& vd) {
    addCode(object, "level", levelWords, vd.RaidMode, "RaidMode");
    const std::vector<KT_U16> slots = slotsOf(vd);
    const std::vector<KT_U16> disks = disksOf(adapter, vd);
    if (disks.size() == slots.size()) add(object, "disks", idsOrNull(disks));
    add(object, "blocks", idsOrNull(slots));
    add(object, "members", vd.HDCount);
    if (vd.NumParityDisk != 0) add(object, "parity", vd.NumParityDisk);
    if (vd.SubLDCount != 0) add(object, "parts", vd.SubLDCount);
    add(object, "stripe", vd.StripeBlockSize);
    add(object, "sector", vd.BlockSize);
    addProduct(object, "size", vd.Size, 1024);
}

static void addCache(Json& object, const VdReading& vd) {
    static constexpr unsigned SHOWN = 0x0B;
    if (vd.config) {
        const unsigned policy = vd.config->CachePolicy;
        static constexpr unsigned KNOWN = KT_CACHE_OFF | KT_CACHE_READ_AHEAD | KT_CACHE_AUTO | KT_CACHE_RESTORE;
        const bool both = (policy & KT_CACHE_OFF) != 0 && (policy & KT_CACHE_AUTO) != 0;
        const char* cache = policy & KT_CACHE_AUTO ? "auto" : policy & KT_CACHE_OFF ? "off" : "on";
        if ((policy & ~KNOWN) == 0 && !both) add(object, "cache", cache);
        if ((policy & ~KNOWN) != 0 || both) add(object, "CachePolicy", policy);
        add(object, "readAhead", (policy & KT_CACHE_READ_AHEAD) != 0);
        add(object, "restore", (policy & KT_CACHE_RESTORE) != 0);
    }
    const unsigned mode = vd.info.CacheMode & SHOWN;
    if (mode <= 1) add(object, "cacheInForce", mode == 0 ? "on" : "off");
    if (mode > 1) add(object, "CacheMode", vd.info.CacheMode);
}

// The disk that is being filled: the one whose block is not as those of the others are.
static std::optional<KT_U16> filledDisk(const AdapterReading& adapter, const VdReading& vd) {
    if (!adapter.blocks || (vd.status->Bga != KT_BGA_REBUILD && vd.status->Bga != KT_BGA_COPY_BACK)) return {};
    std::optional<KT_U16> disk;
    for (const auto& [id, block] : *adapter.blocks) {
        if (block.LDID != vd.info.ID || block.Status == 0) continue;
        if (disk && *disk != block.HDID) return {};
        disk = block.HDID;
    }
    return disk;
}

static void addActivity(Json& object, const AdapterReading& adapter, const VdReading& vd) {
    Json activity = Json::object();
    if (vd.status && vd.status->BgaState != KT_STATE_NONE) {
        addCode(activity, "kind", activityWords, vd.status->Bga, "Bga");
        addCode(activity, "state", stateWords, vd.status->BgaState, "BgaState");
        const unsigned percent = vd.status->BgaPercentage;
        add(activity, percent <= 100 ? "percent" : "BgaPercentage", percent);
        if (const auto disk = filledDisk(adapter, vd)) add(activity, "disk", *disk);
    } else if (!vd.status && vd.info.BGAStatus != KT_STATE_NONE) {
        addCode(activity, "state", stateWords, vd.info.BGAStatus, "BgaState");
    }
    if (!activity.empty()) add(object, "activity", std::move(activity));
}

static Json targetOf(const VolumeContext& context, const _LD_Info& target) {
    Json object = Json::object();
    addLayout(object, context.adapter, target);
    if (context.options.records) addFields(object, vdFields, &target);
    return object;
}

static void addVdRecords(Json& object, const VdReading& vd) {
    addFields(object, vdFields, &vd.info);
    if (vd.status) object["LD_STATUS"] = fieldsOf(vdStatusFields, &*vd.status);
    if (vd.config) object["LD_Config"] = fieldsOf(vdConfigFields, &*vd.config);
}

static Json vdOf(const VolumeContext& context, const VdReading& vd) {
    Json object = Json::object();
    add(object, "id", vd.info.ID);
    add(object, "name", textOf(vd.info.Name));
    addCode(object, "status", vdStatusWords, vd.info.Status, "Status");
    addLayout(object, context.adapter, vd.info);
    if (vd.info.DGID != KT_NO_ID && context.adapter.info->MaxDiskGroup != 0) add(object, "array", vd.info.DGID);
    addCache(object, vd);
    if (vd.os) add(object, "os", *vd.os);
    if (vd.link && *vd.link != KT_NO_ID) add(object, "linkedDisk", *vd.link);
    addActivity(object, context.adapter, vd);
    if (vd.status && (vd.status->BgaExt & KT_BGAEXT_MEDIA_PATROL)) add(object, "memberPatrol", true);
    if (vd.target) add(object, "target", targetOf(context, *vd.target));
    add(object, "written", timeText(KT_U64{vd.info.time_hi} << 16 | vd.info.time_low));
    if (!isZero(vd.info.LD_GUID)) add(object, "guid", hexOf(vd.info.LD_GUID));
    if (vd.table) add(object, "table", Json{{"total", vd.table->total}, {"remaining", vd.table->remaining}});
    if (vd.magic) add(object, "magic", textOf(vd.magic->Magic));
    if (context.options.records) addVdRecords(object, vd);
    return object;
}

template <size_t N>
static std::vector<KT_U16> someOf(const KT_U16 (&ids)[N], unsigned count) {
    return {ids, ids + std::min<size_t>(count, N)};
}

// The members in their slots, which only a virtual disk tells: an array lists the disks that are there.
static std::vector<KT_U16> membersOf(const AdapterReading& adapter, const _DG_Info& info) {
    std::vector<KT_U16> there = someOf(info.PDIDs, info.PDCount);
    for (const KT_U16 id : info.VDIDs) {
        if (!adapter.virtualDisks || !adapter.virtualDisks->count(id)) continue;
        std::vector<KT_U16> slots = disksOf(adapter, adapter.virtualDisks->at(id).info);
        const auto isThere = [&](KT_U16 disk) {
            return disk == KT_NO_ID || std::count(there.begin(), there.end(), disk);
        };
        const auto present = std::count_if(slots.begin(), slots.end(), [](KT_U16 disk) { return disk != KT_NO_ID; });
        if (std::all_of(slots.begin(), slots.end(), isThere) && static_cast<size_t>(present) == there.size()) {
            return slots;
        }
    }
    if (info.Status != 0) there.push_back(KT_NO_ID);
    return there;
}

static Json arraySlots(const _DG_Info& info) {
    Json slots = Json::array();
    for (unsigned i = 0; i < info.VDSlotCount && i < std::size(info.VDSlotSize); ++i) {
        Json slot = Json::object();
        add(slot, "slot", i);
        addProduct(slot, "size", info.VDSlotSize[i], 1024);
        if (info.VDIDs[i] != KT_NO_ID) add(slot, "virtualDisk", info.VDIDs[i]);
        slots.push_back(std::move(slot));
    }
    return slots;
}

static Json arrayOf(const VolumeContext& context, const ArrayReading& array) {
    const _DG_Info& info = array.info;
    Json object = Json::object();
    add(object, "id", info.DGID);
    add(object, "name", textOf(info.Name));
    addCode(object, "level", levelWords, info.RaidMode, "RaidMode");
    addCode(object, "status", arrayStatusWords, info.Status, "Status");
    add(object, "disks", idsOrNull(membersOf(context.adapter, info)));
    if (info.NumParityDisk != 0) add(object, "parity", info.NumParityDisk);
    if (info.SubVDCount != 0) add(object, "parts", info.SubVDCount);
    add(object, "stripe", info.StripeBlockSize);
    add(object, "sector", info.BlockSize);
    add(object, "spares", someOf(info.SparePDIDs, info.SparePDCount));
    if (array.config) add(object, "writeCache", array.config->WriteCacheOn != 0);
    addProduct(object, "size", info.TotalManagedSpace, 1024);
    addProduct(object, "freeSize", info.RemainingManagedSpace, 1024);
    addProduct(object, "memberSize", info.SmallestAvailablePDSize, 1024);
    if (info.BgaState != KT_STATE_NONE) {
        Json activity = Json::object();
        addCode(activity, "kind", activityWords, info.BgaType, "Bga");
        addCode(activity, "state", stateWords, info.BgaState, "BgaState");
        add(object, "activity", std::move(activity));
    }
    if (info.PDBgaRunning) add(object, "memberPatrol", true);
    add(object, "slots", arraySlots(info));
    if (context.options.records) {
        addFields(object, arrayFields, &info);
        if (array.config) object["DG_CONFIG"] = fieldsOf(arrayConfigFields, &*array.config);
    }
    return object;
}

static Json blockOf(const _Block_Info& block, bool records) {
    Json object = Json::object();
    const KT_U64 sector = block.BlockSize == 0 ? 512 : block.BlockSize;
    add(object, "id", block.ID);
    add(object, "disk", block.HDID);
    if (block.LDID != KT_BLOCK_FREE) add(object, "virtualDisk", block.LDID);
    addProduct(object, "start", block.StartLBA, sector);
    addProduct(object, "size", block.Size, sector);
    add(object, "sector", sector);
    add(object, "status", block.Status);
    add(object, "flags", block.Flags);
    if (records) addFields(object, blockFields, &block);
    fitObject(object);
    return object;
}

// The virtual disks that `mine` takes, in the order of their ids.
template <class Mine>
static Json vdsOf(const VolumeContext& context, Mine mine) {
    Json list = Json::array();
    for (const auto& [id, vd] : *context.adapter.virtualDisks) {
        if (mine(vd.info)) list.push_back(vdOf(context, vd));
    }
    return list;
}

void addVolumes(Json& object, const AdapterReading& adapter, const ReadOptions& options) {
    const VolumeContext context = {adapter, options};
    const auto isInArray = [&](const _LD_Info& vd) { return adapter.arrays && adapter.arrays->count(vd.DGID) != 0; };
    if (adapter.arrays) {
        Json arrays = Json::array();
        for (const auto& [id, array] : *adapter.arrays) {
            Json one = arrayOf(context, array);
            const KT_U16 own = id;
            if (adapter.virtualDisks) {
                add(one, "virtualDisks", vdsOf(context, [&](const _LD_Info& vd) { return vd.DGID == own; }));
            }
            arrays.push_back(std::move(one));
        }
        add(object, "arrays", std::move(arrays));
    }
    if (adapter.virtualDisks) {
        add(object, "virtualDisks", vdsOf(context, [&](const _LD_Info& vd) { return !isInArray(vd); }));
    }
    if (!adapter.blocks) return;
    Json blocks = Json::array();
    for (const auto& [id, block] : *adapter.blocks) {
        blocks.push_back(blockOf(block, options.records));
    }
    add(object, "blocks", std::move(blocks));
}
