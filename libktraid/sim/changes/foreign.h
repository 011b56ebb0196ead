// Virtual disks that were made on another adapter.
#pragma once

#include "raid/volumes.h"

#include <vector>

namespace sim {

// The byte of a GUID that is counted up when another virtual disk with the same one arrives.
inline constexpr size_t COUNTED_GUID_BYTE = 2;

// KT_LD_Import: KT_ERR_VD_NOT_IMPORTABLE when too much of it is missing or in other use, KT_ERR_VD_STATUS when it is
// not foreign. With arrays, all virtual disks on the same foreign disks come along in one new array.
KT_U8 importVd(const Context& context, KT_U16 id);
// A conflicted one: its virtual disk is in use here already, without this part. It is never imported by itself, but can
// be reported or deleted.
inline bool isConflicted(const _LD_Info& vd) {
    return vd.Status == KT_VD_CONFLICTED || vd.Status == KT_VD_PLUGIN_CONFLICTED;
}
// A virtual disk that the adapter knows of, but does not use.
inline bool isForeign(const _LD_Info& vd) {
    return vd.Status == KT_VD_FOREIGN || vd.Status == KT_VD_IMPORTABLE || vd.Status == KT_VD_NOT_IMPORTABLE ||
           isConflicted(vd);
}
// Whether what a disk held is an old copy of something that is offline now. As long as it is, the disk stays known as a
// member, foreign, with its PulledBlocks, for it may be the last copy.
bool isStale(const Context& context, const PulledBlocks& blocks);
// Says of every foreign virtual disk anew whether it can be imported; those whose disks have all left go away. To be
// called after anything that disks or other virtual disks come or go by, or work again.
void reviewForeign(const Context& context);
// After the virtual disk was deleted: what conflicted with it is a foreign one like others, to be looked at anew.
void endConflicts(const Context& context, const _LD_Info& deleted);
// Remembers a virtual disk that leaves while pulled disks still hold parts of it.
void rememberAway(const Context& context, const Vd& vd);
// The virtual disk with that GUID; one that was away is there again, as a foreign one.
std::optional<_LD_Info> vdWithGuid(const Context& context, const KT_U8* guid);

// KT_LD_Report: shows a conflicted virtual disk to the host as one of its own; KT_ERR_VD_NOT_REPORTABLE for any other,
// and when too much of it is missing.
KT_U8 reportVd(const Context& context, KT_U16 id);

} // namespace sim
