// The SMART attributes that a disk with such a life behind it states.
#pragma once

#include "media/life.h"

namespace sim {

inline constexpr KT_U32 BAD_BLOCK_TABLE = 512; // sectors a disk can reassign

// Whether the disk keeps SMART attributes.
bool knowsSmart(const _HD_Info& disk);
_SMART_Info describeAttributes(const Life& life, const _HD_Info& disk);
// Whether one of them is at its threshold now.
bool isFailing(const _SMART_Info& info);

} // namespace sim
