#include "media/surface.h"

#include "media/blocks.h"

#include <algorithm>
#include <vector>

namespace sim {

static const int LBA_BITS = 48;
static const KT_U64 LBA_END = KT_U64{1} << LBA_BITS;
static const KT_U64 RUN = 8;      // a head that touches the surface spoils some neighbours ...
static const KT_U64 TRACK = 2000; // ... on every track it passes; sectors, about

static KT_U64 keyOf(KT_U16 pd, KT_U64 lba) {
    return KT_U64{pd} << LBA_BITS | std::min(lba, LBA_END - 1);
}

void forEachBadSector(const Context& context, KT_U16 pd, KT_U64 from, KT_U64 end, const SectorVisit& visit) {
    forEach<BadSector>(context, keyOf(pd, from), [&](KT_U64 key, const BadSector& sector) {
        const KT_U64 lba = key % LBA_END;
        return key >> LBA_BITS == pd && lba < end && visit(lba, sector);
    });
}

bool anyBadSector(const Context& context) {
    return lastRow(context.store, context.adapter, KIND_BAD_SECTOR).has_value();
}

KT_U64 badSectorCount(const Context& context, KT_U16 pd, KT_U8 flaw) {
    KT_U64 found = 0;
    forEachBadSector(context, pd, 0, NEVER, [&](KT_U64, const BadSector& sector) {
        found += flaw == 0 || sector.flaw == flaw ? 1 : 0;
        return true;
    });
    return found;
}

std::optional<BadSector> badSectorAt(const Context& context, KT_U16 pd, KT_U64 lba) {
    return find<BadSector>(context, keyOf(pd, lba));
}

void eraseBadSector(const Context& context, KT_U16 pd, KT_U64 lba) {
    erase<BadSector>(context, keyOf(pd, lba));
}

void knowBadSector(const Context& context, KT_U16 pd, KT_U64 lba) {
    auto sector = badSectorAt(context, pd, lba);
    if (!sector || sector->known) return;
    sector->known = 1;
    save(context, keyOf(pd, lba), *sector);
}

// `kept` is how many bad sectors the disk has; one more is added to it.
static bool addBadSector(const Context& context, KT_U16 pd, KT_U64 lba, const BadSector& sector, KT_U64& kept) {
    const auto there = badSectorAt(context, pd, lba);
    // An unreadable or lost sector holds no data that could be wrong.
    if (there && (there->flaw == sector.flaw || sector.flaw == FLAW_WRONG)) return false;
    if (there && there->flaw == FLAW_UNREADABLE) return false;
    if (!there && kept >= BAD_SECTORS_KEPT) return false;
    save(context, keyOf(pd, lba), sector);
    kept += there ? 0 : 1;
    return true;
}

bool addBadSector(const Context& context, KT_U16 pd, KT_U64 lba, const BadSector& sector) {
    KT_U64 kept = badSectorCount(context, pd);
    return addBadSector(context, pd, lba, sector, kept);
}

std::optional<_Block_Info> blockAt(const Context& context, KT_U16 pd, KT_U64 lba) {
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (block && lba >= block->StartLBA && lba - block->StartLBA < block->Size) return block;
    }
    return std::nullopt;
}

Extent wholeDisk(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    return Extent{0, disk ? std::min(disk->Size, LBA_END) : 0};
}

// A number that follows from the disk and what is on it, the same whenever it is asked for.
static KT_U64 chance(const Context& context, KT_U16 pd, const _HD_Info& disk) {
    const std::string serial(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo);
    const Digest digest = sha256(serial + std::to_string(badSectorCount(context, pd)));
    KT_U64 number = 0;
    memcpy(&number, digest.bytes, sizeof number);
    return number;
}

KT_U32 scratchSurface(const Context& context, KT_U16 pd, const Scratch& scratch, KT_U64* first) {
    const auto disk = find<_HD_Info>(context, pd);
    const Extent extent = scratch.within;
    if (!disk || extent.sectors == 0) return 0;
    const KT_U64 start = chance(context, pd, *disk) % extent.sectors;
    const KT_U64 wanted = std::min<KT_U64>(scratch.count, BAD_SECTORS_KEPT);
    KT_U64 kept = badSectorCount(context, pd);
    KT_U32 added = 0;
    // Those that meet an older scratch try again further on, twice as often as there can be any.
    for (KT_U64 i = 0; added < wanted && i < 2 * BAD_SECTORS_KEPT; ++i) {
        const KT_U64 lba = extent.start + (start + i / RUN * TRACK + i % RUN) % extent.sectors;
        if (!addBadSector(context, pd, lba, scratch.sector, kept)) continue;
        if (added++ == 0 && first) *first = lba;
    }
    return added;
}

// Collected first: rows must not go while they are walked over.
static std::vector<KT_U64> sectorsWith(const Context& context, KT_U16 pd, KT_U8 flaw, KT_U64 from, KT_U64 end) {
    std::vector<KT_U64> found;
    forEachBadSector(context, pd, from, end, [&](KT_U64 lba, const BadSector& sector) {
        if (flaw == 0 || sector.flaw == flaw) found.push_back(lba);
        return true;
    });
    return found;
}

void forgetSurface(const Context& context, KT_U16 pd, KT_U8 flaw) {
    for (const KT_U64 lba : sectorsWith(context, pd, flaw, 0, NEVER))
        eraseBadSector(context, pd, lba);
}

void forgetWrongData(const Context& context, const _Block_Info& block) {
    for (const KT_U8 flaw : {FLAW_WRONG, FLAW_LOST}) {
        for (const KT_U64 lba : sectorsWith(context, block.HDID, flaw, block.StartLBA, block.StartLBA + block.Size))
            eraseBadSector(context, block.HDID, lba);
    }
}

void copySurface(const Context& from, KT_U16 there, const Context& context, KT_U16 here) {
    forEachBadSector(from, there, 0, NEVER, [&](KT_U64 lba, const BadSector& sector) {
        save(context, keyOf(here, lba), sector);
        return true;
    });
}

} // namespace sim
