// The surfaces of disks: sectors that cannot be read, and sectors that hold other data than was written. Nothing
// notices before something reads there, which reading.h does.
#pragma once

#include "state/store.h"

#include <functional>

namespace sim {

inline constexpr KT_U64 BAD_SECTORS_KEPT = 1000; // of one disk; further ones are ignored

// visit(lba, sector) -> true to go on, over the bad sectors from `from` up to, not including, `end`.
using SectorVisit = std::function<bool(KT_U64, const BadSector&)>;
void forEachBadSector(const Context& context, KT_U16 pd, KT_U64 from, KT_U64 end, const SectorVisit& visit);
bool anyBadSector(const Context& context);                                // on any disk of the adapter
KT_U64 badSectorCount(const Context& context, KT_U16 pd, KT_U8 flaw = 0); // of that flaw, or (0) of any
std::optional<BadSector> badSectorAt(const Context& context, KT_U16 pd, KT_U64 lba);
void eraseBadSector(const Context& context, KT_U16 pd, KT_U64 lba);
// Notes that the drive has tried to read it and counts it as pending.
void knowBadSector(const Context& context, KT_U16 pd, KT_U64 lba);

// Makes a sector bad; false when that makes no difference to it, or the disk has as many as are kept.
bool addBadSector(const Context& context, KT_U16 pd, KT_U64 lba, const BadSector& sector);
// A stretch of a disk's sectors.
struct Extent {
    KT_U64 start;
    KT_U64 sectors;
};
Extent wholeDisk(const Context& context, KT_U16 pd);

// A scratch across neighbouring tracks: `count` sectors inside the extent become bad alike.
struct Scratch {
    Extent within;
    BadSector sector;
    KT_U32 count;
};
// Its place follows from the disk and what it has already. Answers how many sectors became bad, and the first.
KT_U32 scratchSurface(const Context& context, KT_U16 pd, const Scratch& scratch, KT_U64* first = nullptr);

// The bad sectors of the disk, of that flaw or (0) all, are no more.
void forgetSurface(const Context& context, KT_U16 pd, KT_U8 flaw = 0);
// A disk that gets another id, or comes from another adapter, brings its surface.
void copySurface(const Context& from, KT_U16 there, const Context& context, KT_U16 here);
// Nothing is wrong yet with the data of a new block; what cannot be read stays.
void forgetWrongData(const Context& context, const _Block_Info& block);
// The block of the disk that the sector lies in.
std::optional<_Block_Info> blockAt(const Context& context, KT_U16 pd, KT_U64 lba);

} // namespace sim
