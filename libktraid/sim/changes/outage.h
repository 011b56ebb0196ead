// What follows for everything built on a disk when it is lost, and when it is there again.
#pragma once

#include "raid/activityRecords.h"

#include <vector>

namespace sim {

// Everything that follows when a disk can no longer be used; it stays listed, offline. The caller says why.
void loseDisk(const Context& context, KT_U16 pd);
// KT_ERR_PD_NOT_OFFLINE when it is up; KT_ERR_LINK_TIMEOUT when it is broken. What went on without it does not take it
// back as it is, nor does anything when it comes back `emptied`: it becomes a free disk, or is rebuilt onto.
KT_U8 bringDiskUp(const Context& context, KT_U16 pd, bool emptied);

// The steps of these, for disks that come and go altogether.

// The groups that have something on the disk, or count it among their members.
std::vector<Owner> groupsOn(const Context& context, KT_U16 pd);
void failPatrol(const Context& context, KT_U16 pd);
// What a disk held when it left the virtual disks it belonged to.
PulledBlocks rememberBlocks(const Context& context, KT_U16 pd);
// Takes the disk out of everything, leaving it without blocks. Answers the groups that had it.
std::vector<Owner> detach(const Context& context, KT_U16 pd);
// The disk, free of blocks, goes back to what still waits for it; else it is a free disk.
void rejoin(const Context& context, KT_U16 pd, const PulledBlocks& blocks);
// The groups' activities, statuses and spares after they lost `pd` (KT_NO_ID = none).
void followUp(const Context& context, const std::vector<Owner>& owners, KT_U16 pd);

} // namespace sim
