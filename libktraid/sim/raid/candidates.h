// Which disks may be used for what.
#pragma once

#include "media/disks.h"

#include <span>
#include <vector>

namespace sim {

enum class Sharing {
    Whole, // the disk must be unused: arrays take whole disks
    Part   // other virtual disks may be on it already
};

// KT_OK and the disks in order, or why these cannot become members of one virtual disk or array.
KT_U8 collectMembers(const Context& context, KT_U8 level, std::span<const KT_U16> ids, Sharing sharing,
                     std::vector<Disk>& disks);
// KT_OK when the disk may newly join something: there, working, no spare, not foreign, not running the system.
KT_U8 checkNewMember(const Context& context, KT_U16 id, Sharing sharing, Disk& disk);
// KT_OK when the disks can serve together: as large sectors, and of one type (SATA or SAS, solid state or not) where
// the adapter asks for that.
KT_U8 checkAlike(const Context& context, const _HD_Info& one, const _HD_Info& other);
// The largest stretch of KiB that no block holds.
KT_U64 largestGapKib(const Context& context, const Disk& disk);

} // namespace sim
