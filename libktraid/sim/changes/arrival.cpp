#include "changes/arrival.h"

#include "changes/ciphers.h"
#include "changes/diskIds.h"
#include "changes/foreign.h"
#include "changes/places.h"
#include "media/blocks.h"
#include "media/disks.h"
#include "media/life.h"
#include "media/selfTest.h"
#include "media/surface.h"
#include "state/due.h"
#include "state/events.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

namespace sim {

struct Arrival {
    Store& store;
    KT_U8 adapter;
    std::map<KT_U16, KT_U16> disks; // id there -> id here
    std::set<KT_U16> strangers;     // those of them, by their ids here, that had to be told apart from disks here
    std::map<KT_U16, _LD_Info> vds; // id there -> what it is here, with a part that arrives now
    std::map<KT_U16, PulledBlocks> pulled; // id there -> what it held, of those that had been pulled out there
};

static Context thereOf(const Context& context, const Arrival& arrival) {
    return Context{arrival.store, arrival.adapter, context.now};
}

// A disk there: in its bay, or pulled out of it.
static bool findThere(Arrival& arrival, KT_U16 pd, Disk& disk) {
    if (findDisk(Context{arrival.store, arrival.adapter, 0}, pd, disk) == KT_OK) return true;
    const auto out = find<PulledDisk>(arrival.store, arrival.adapter, pd);
    if (!out) return false;
    disk = Disk{out->info, out->state};
    // What has failed is not read any more.
    const bool works = disk.state.health != PD_FAILED;
    const auto held = works ? find<PulledBlocks>(arrival.store, arrival.adapter, pd) : std::nullopt;
    arrival.pulled[pd] = held.value_or(PulledBlocks{});
    return true;
}

static bool isDiskHere(const Context& context, const _HD_Info& disk) {
    bool here = false;
    forEach<_HD_Info>(context, 0, [&](KT_U64, const _HD_Info& mine) {
        here = memcmp(mine.WWN, disk.WWN, sizeof disk.WWN) == 0;
        return !here;
    });
    return here;
}

// Labs number their disks alike; two adapters' disks are never the same one. Answers whether they had to be told apart.
static bool tellApart(const Context& context, _HD_Info& disk) {
    static const char MARKS[] = "123456789ABCDEFGHJKLMNPQRSTUVWXYZ";
    const bool stranger = isDiskHere(context, disk);
    for (size_t i = 0; i + 1 < sizeof MARKS && isDiskHere(context, disk); ++i) {
        ++disk.WWN[4];
        disk.Link.Self.SAS_Address[4] = disk.WWN[4];
        disk.SerialNo[strnlen(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo) / 2] =
            static_cast<KT_U8>(MARKS[i]);
    }
    return stranger;
}

static KT_U8 bringDisk(const Context& context, Arrival& arrival, KT_U16 pd) {
    Disk disk = {};
    if (!findThere(arrival, pd, disk)) return KT_ERR_PD_MISSING;
    if (arrival.disks.count(pd)) return KT_ERR_INVALID_PARAMETER;
    _HD_Info* const info = &disk.info;
    PdState* const state = &disk.state;
    const _Adapter_Info adapter = adapterInfo(context);
    // SATA disks do on SAS ports, the reverse does not.
    if ((info->HDType & KT_HD_SAS) && !(adapter.PortSupportType & KT_HD_SAS)) return KT_ERR_NOT_SUPPORTED;
    const KT_U16 id = freeDiskId(context);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    if (tellApart(context, *info)) arrival.strangers.insert(id);
    info->AdapterID = context.adapter;
    info->Link.Self.DevID = id;
    if (putAnywhere(context, *info) != KT_OK) return KT_ERR_NO_RESOURCE;
    const bool failed = state->health == PD_FAILED;
    state->raid = failed ? KT_PD_OFFLINE : 0;
    state->config.Online = failed ? 0 : 1;
    state->config.HDID = id;
    state->dgid = KT_NO_ID;
    state->hasOs = 0; // this machine does not run its system from it
    state->patrol = Activity{};
    state->patrol.disk = KT_NO_ID;
    save(context, id, *info);
    save(context, id, *state);
    forgetDisk(context, id);
    const Context there = thereOf(context, arrival);
    copySurface(there, pd, context, id);
    moveDrive(there, pd, context, id);
    moveLife(there, pd, context, id);
    if (const auto cipher = find<DiskCipher>(arrival.store, arrival.adapter, pd)) save(context, id, *cipher);
    logEvent(context, EVT_PD_PLUGGED_IN, id);
    arrival.disks[pd] = id;
    return KT_OK;
}

// Adds the blocks of disks that had been pulled out there: of a virtual disk that has been written to since, only those
// that left last, when none of its blocks comes from a bay.
static void addPulledBlocks(const Context& context, const Arrival& arrival, const Vd& vd,
                            std::map<int, _Block_Info>& blocks) {
    const auto forEachOf = [&](auto&& visit) {
        for (const auto& [pd, pulled] : arrival.pulled) {
            for (int i = 0; i < pulled.count; ++i) {
                const PulledBlock& entry = pulled.entries[i];
                const bool its = memcmp(entry.guid, vd.info.LD_GUID, sizeof entry.guid) == 0;
                if (its && entry.slot < geometryOf(vd.info).disks && entry.block.Status != BLOCK_REBUILDING)
                    visit(arrival.disks.at(pd), pulled.left, entry);
            }
        }
    };
    KT_U64 newest = blocks.empty() ? 0 : NEVER;
    forEachOf([&](KT_U16, KT_U64 left, const PulledBlock&) { newest = std::max(newest, left); });
    forEachOf([&](KT_U16 here, KT_U64 left, const PulledBlock& entry) {
        const bool atRest = isForeign(vd.info) || (vd.info.Status == KT_VD_OFFLINE && left >= vd.state.offline) ||
                            wasLostDown(thereOf(context, arrival), left);
        if ((!atRest && left < newest) || blocks.count(entry.slot)) return;
        _Block_Info block = entry.block;
        block.HDID = here;
        block.Status = BLOCK_GOOD;
        blocks[entry.slot] = block;
    });
}

// What arrives of the virtual disk: whole blocks only, by slot; an unfinished rebuild leaves nothing to rely on.
static std::map<int, _Block_Info> arrivingBlocks(const Context& context, const Arrival& arrival, const Vd& vd) {
    std::map<int, _Block_Info> blocks;
    for (int i = 0; i < geometryOf(vd.info).disks; ++i) {
        auto block = find<_Block_Info>(arrival.store, arrival.adapter, vd.info.BlockIDs[i]);
        const auto here = block ? arrival.disks.find(block->HDID) : arrival.disks.end();
        if (here == arrival.disks.end() || block->Status != BLOCK_GOOD) continue;
        block->HDID = here->second;
        blocks[i] = *block;
    }
    addPulledBlocks(context, arrival, vd, blocks);
    return blocks;
}

static bool isSameMake(const _LD_Info& mine, const _LD_Info& vd) {
    return mine.RaidMode == vd.RaidMode && mine.HDCount == vd.HDCount && mine.Size == vd.Size;
}

// Whether none of the arriving blocks has its slot taken in `mine`.
static bool lacks(const _LD_Info& mine, const std::map<int, _Block_Info>& blocks) {
    return std::all_of(blocks.begin(), blocks.end(),
                       [&](const auto& entry) { return mine.BlockIDs[entry.first] == KT_NO_ID; });
}

// Whether `mine`, in use here with the same GUID, is the arriving virtual disk, a part of which was imported before.
// Its missing member may have been made up for since.
static bool isImportedPart(const Arrival& arrival, const _LD_Info& mine, const _LD_Info& vd,
                           const std::map<int, _Block_Info>& blocks) {
    if (isForeign(mine) || !isSameMake(mine, vd)) return false;
    return lacks(mine, blocks) || std::none_of(blocks.begin(), blocks.end(), [&](const auto& entry) {
               return arrival.strangers.count(entry.second.HDID) != 0;
           });
}

static Vd newArrival(const Context& context, const Arrival& arrival, const Vd& vd) {
    Vd mine = vd;
    const KT_U64 limit = std::min<KT_U64>(adapterInfo(context).MaxLogicalDrive, KT_BLOCK_FREE);
    mine.info.ID = freeId(context, KIND_VD, limit);
    mine.info.DGID = KT_NO_ID;
    mine.info.AdapterID = context.adapter;
    mine.info.BGAStatus = KT_STATE_NONE;
    mine.info.Status = KT_VD_NOT_IMPORTABLE;
    mine.state.activity = Activity{};
    mine.state.activity.disk = mine.state.linkedDisk = KT_NO_ID;
    mine.state.hasOs = 0;
    if (find<VdTarget>(arrival.store, arrival.adapter, vd.info.ID)) mine.state.unfinished = 1;
    std::fill(std::begin(mine.info.BlockIDs), std::end(mine.info.BlockIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(mine.state.homes), std::end(mine.state.homes), KT_U16{KT_NO_ID});
    return mine;
}

// The part that came before, or a new virtual disk, in conflict when the other part is in use already. Labs number
// these alike, too: a GUID that another one has here is counted up, always the same way, so that the parts of one find
// each other.
static Vd placeOf(const Context& context, const Arrival& arrival, const Vd& vd,
                  const std::map<int, _Block_Info>& blocks) {
    Vd place = newArrival(context, arrival, vd);
    for (int attempt = 0; attempt < 256; ++attempt) {
        bool known = false;
        bool found = false;
        forEachVd(context, [&](const Vd& mine) {
            if (memcmp(mine.info.LD_GUID, place.info.LD_GUID, sizeof place.info.LD_GUID) != 0) return;
            known = true;
            found = isForeign(mine.info) && isSameMake(mine.info, vd.info) && lacks(mine.info, blocks);
            if (found) place = mine;
            if (isImportedPart(arrival, mine.info, vd.info, blocks)) place.info.Status = KT_VD_PLUGIN_CONFLICTED;
        });
        if (!known || found) break;
        ++place.info.LD_GUID[COUNTED_GUID_BYTE];
    }
    return place;
}

static KT_U8 bringVd(const Context& context, Arrival& arrival, const Vd& vd) {
    const std::map<int, _Block_Info> blocks = arrivingBlocks(context, arrival, vd);
    if (blocks.empty()) return KT_OK;
    Vd mine = placeOf(context, arrival, vd, blocks);
    if (mine.info.ID == KT_NO_ID) return KT_ERR_NO_VD_ID;
    for (const auto& [slot, arriving] : blocks) {
        _Block_Info block = arriving;
        block.LDID = mine.info.ID;
        mine.info.BlockIDs[slot] = addBlock(context, block);
        if (mine.info.BlockIDs[slot] == KT_NO_ID) return KT_ERR_NO_RESOURCE;
        mine.state.homes[slot] = block.HDID;
        Disk disk = {};
        if (findDisk(context, block.HDID, disk) != KT_OK) continue;
        disk.state.raid |= KT_PD_FOREIGN;
        saveDisk(context, disk);
    }
    saveVd(context, mine);
    arrival.vds[vd.info.ID] = mine.info;
    return KT_OK;
}

// What the array says of itself on its disks; without virtual disks there is nothing to import it with.
static std::optional<ArrayLabel> labelFor(const Context& context, const Arrival& arrival, const _DG_Info& array) {
    const auto id =
        std::find_if(std::begin(array.VDIDs), std::end(array.VDIDs), [](KT_U16 vd) { return vd != KT_NO_ID; });
    Vd first = {};
    if (id == std::end(array.VDIDs) || findVd(thereOf(context, arrival), *id, first) != KT_OK) return std::nullopt;
    const auto here = arrival.vds.find(first.info.ID);
    const _LD_Info vd = here == arrival.vds.end() ? placeOf(context, arrival, first, {}).info : here->second;
    ArrayLabel label = {};
    memcpy(label.guid, vd.LD_GUID, sizeof label.guid);
    memcpy(label.name, array.Name, sizeof label.name);
    return label;
}

static void bringLabels(const Context& context, const Arrival& arrival) {
    forEach<_DG_Info>(arrival.store, arrival.adapter, 0, [&](KT_U64, const _DG_Info& array) {
        auto label = labelFor(context, arrival, array);
        const auto put = [&](const KT_U16* pds, size_t count, KT_U8 role) {
            for (const auto& [there, here] : arrival.disks) {
                const auto out = arrival.pulled.find(there);
                const bool wasIts =
                    out != arrival.pulled.end() && out->second.dgid == array.DGID && (out->second.raid & role);
                if (label && (wasIts || std::find(pds, pds + count, there) != pds + count)) save(context, here, *label);
            }
        };
        put(array.PDIDs, array.PDCount, KT_PD_MEMBER);
        if (label) label->spare = 1;
        put(array.SparePDIDs, array.SparePDCount, KT_PD_DEDICATED_SPARE);
        return true;
    });
}

KT_U8 insertForeignDisks(const Context& context, Store& other, KT_U8 otherAdapter, const std::vector<KT_U16>& disks,
                         std::vector<KT_U16>& ids) {
    Arrival arrival{other, otherAdapter, {}, {}, {}, {}};
    for (const KT_U16 pd : disks) {
        const KT_U8 status = bringDisk(context, arrival, pd);
        if (status != KT_OK) return status;
        ids.push_back(arrival.disks[pd]);
    }
    std::vector<Vd> vds;
    forEachVd(thereOf(context, arrival), [&](const Vd& vd) { vds.push_back(vd); });
    forEach<AwayVd>(other, otherAdapter, 0, [&](KT_U64, const AwayVd& vd) {
        vds.push_back(Vd{vd.info, vd.state});
        vds.back().info.ID = KT_NO_ID;
        return true;
    });
    for (const Vd& vd : vds) {
        const KT_U8 status = bringVd(context, arrival, vd);
        if (status != KT_OK) return status;
    }
    bringLabels(context, arrival);
    reviewForeign(context);
    reviewCiphers(context, ids);
    return KT_OK;
}

} // namespace sim
