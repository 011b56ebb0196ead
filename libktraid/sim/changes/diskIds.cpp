#include "changes/diskIds.h"

#include "media/blocks.h"
#include "media/surface.h"
#include "raid/volumes.h"

#include <algorithm>
#include <vector>

namespace sim {

static const KT_U16 FORGOTTEN = 0xF000; // the first of the numbers of pulled disks whose id was forgotten

// change(row) makes the row that of disk `to`.
template <class Record, class Change>
static void moveRow(const Context& context, KT_U16 from, KT_U16 to, Change change) {
    auto row = find<Record>(context, from);
    if (!row) return;
    change(*row);
    erase<Record>(context, from);
    save(context, to, *row);
}

static void moveRows(const Context& context, KT_U16 from, KT_U16 to) {
    moveRow<_HD_Info>(context, from, to, [&](_HD_Info& disk) { disk.Link.Self.DevID = to; });
    moveRow<PdState>(context, from, to, [&](PdState& disk) { disk.config.HDID = to; });
    moveRow<PulledDisk>(context, from, to,
                        [&](PulledDisk& disk) { disk.info.Link.Self.DevID = disk.state.config.HDID = to; });
    moveRow<PulledBlocks>(context, from, to, [](PulledBlocks&) {}); // what returns with a disk lies on that disk
    moveRow<DiskAge>(context, from, to, [](DiskAge&) {});
    moveRow<ToldHealth>(context, from, to, [](ToldHealth&) {});
    moveRow<DiskCipher>(context, from, to, [](DiskCipher&) {});
    moveRow<SolidState>(context, from, to, [](SolidState&) {});
    moveRow<MicrocodeUpdate>(context, from, to, [](MicrocodeUpdate&) {});
    moveRow<ArrayLabel>(context, from, to, [](ArrayLabel&) {});
    moveRow<_HD_Block_Info>(context, from, to, [&](_HD_Block_Info& list) { list.HDID = to; });
    forEach<_Block_Info>(context, 0, [&](KT_U64 id, _Block_Info block) {
        if (block.HDID == from) {
            block.HDID = to;
            save(context, id, block);
        }
        return true;
    });
    copySurface(context, from, context, to);
    forgetSurface(context, from);
}

static void followInVds(const Context& context, KT_U16 from, KT_U16 to) {
    forEach<VdState>(context, 0, [&](KT_U64 id, VdState vd) {
        const int disks = geometryOf(find<_LD_Info>(context, id).value_or(_LD_Info{})).disks;
        std::replace(vd.homes, vd.homes + disks, from, to);
        for (KT_U16* disk : {&vd.linkedDisk, &vd.activity.disk})
            if (*disk == from) *disk = to;
        save(context, id, vd);
        return true;
    });
    forEach<VdTarget>(context, 0, [&](KT_U64 id, VdTarget target) {
        std::replace(target.homes, target.homes + geometryOf(target.info).disks, from, to);
        save(context, id, target);
        return true;
    });
    forEach<AwayVd>(context, 0, [&](KT_U64 id, AwayVd vd) {
        std::replace(vd.state.homes, vd.state.homes + geometryOf(vd.info).disks, from, to);
        save(context, id, vd);
        return true;
    });
}

static void followInArrays(const Context& context, KT_U16 from, KT_U16 to) {
    forEach<DgState>(context, 0, [&](KT_U64 id, DgState array) {
        std::replace(array.members, array.members + array.memberCount, from, to);
        std::replace(array.homes, array.homes + array.memberCount, from, to);
        if (array.activity.disk == from) array.activity.disk = to;
        save(context, id, array);
        return true;
    });
    forEach<_DG_Info>(context, 0, [&](KT_U64 id, _DG_Info array) {
        std::replace(array.PDIDs, array.PDIDs + array.PDCount, from, to);
        std::replace(std::begin(array.SparePDIDs), std::end(array.SparePDIDs), from, to);
        save(context, id, array);
        return true;
    });
}

static void renumberDisk(const Context& context, KT_U16 from, KT_U16 to) {
    moveRows(context, from, to);
    followInVds(context, from, to);
    followInArrays(context, from, to);
}

KT_U16 freeDiskId(const Context& context) {
    const _Adapter_Info adapter = adapterInfo(context);
    const KT_U16 limit = adapter.MaxHD_Ext ? adapter.MaxHD_Ext : adapter.MaxHD;
    for (KT_U16 id = 0; id < limit; ++id)
        if (!find<_HD_Info>(context, id) && !find<PulledDisk>(context, id)) return id;
    return KT_NO_ID;
}

KT_U16 idOnReturn(const Context& context, KT_U16 pd) {
    if (pd < FORGOTTEN || !find<PulledDisk>(context, pd)) return pd;
    const KT_U16 id = freeDiskId(context);
    if (id != KT_NO_ID) renumberDisk(context, pd, id);
    return id;
}

template <class Record>
static std::vector<KT_U16> idsOf(const Context& context) {
    std::vector<KT_U16> ids;
    forEach<Record>(context, 0, [&](KT_U64 id, const Record&) {
        ids.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return ids;
}

void forgetAwayIds(const Context& context) {
    KT_U16 number = FORGOTTEN;
    for (const KT_U16 pd : idsOf<PulledDisk>(context)) {
        if (pd >= FORGOTTEN) continue;
        while (find<PulledDisk>(context, number))
            ++number;
        renumberDisk(context, pd, number);
    }
}

void renumberDisks(const Context& context) {
    forgetAwayIds(context);
    KT_U16 next = 0;
    for (const KT_U16 pd : idsOf<_HD_Info>(context)) {
        if (pd != next) renumberDisk(context, pd, next);
        ++next;
    }
}

} // namespace sim
