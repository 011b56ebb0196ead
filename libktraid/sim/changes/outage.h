// What follows for everything built on a disk when it is lost, and when it is there again.
#pragma once

#include "raid/activityRecords.h"

#include <vector>

namespace sim {

// Everything that follows when disks can no longer be used, all at one blow; they stay listed, offline. The caller says
// why.
void loseDisks(const Context& context, const std::vector<KT_U16>& pds);
inline void loseDisk(const Context& context, KT_U16 pd) {
    loseDisks(context, {pd});
}
// KT_ERR_PD_NOT_OFFLINE when it is up; KT_ERR_LINK_TIMEOUT when it is broken. What went on without it does not take it
// back as it is, nor does anything when it comes back `emptied`: it becomes a free disk, or is rebuilt onto.
KT_U8 bringDiskUp(const Context& context, KT_U16 pd, bool emptied);

// The same for several at once, where nothing forbids it.
void bringDisksUp(const Context& context, const std::vector<KT_U16>& pds);

// The steps of these, for disks that come and go altogether.

// The groups that have something on one of the disks, or count it among their members; each once.
std::vector<Owner> groupsOn(const Context& context, const std::vector<KT_U16>& pds);
// The virtual disk's initialisation or check ends without success.
void failOwnActivity(const Context& context, KT_U16 vd);
void failPatrol(const Context& context, KT_U16 pd);
// What a disk held when it left the virtual disks it belonged to, or since.
PulledBlocks rememberBlocks(const Context& context, KT_U16 pd);
// Takes the disk out of everything, leaving it without blocks. Answers the groups that had it.
std::vector<Owner> detach(const Context& context, KT_U16 pd);
// The disks, free of blocks, go back together to what still waits for them. One that an offline virtual disk has gone
// on without stays known as its member, foreign, for it may be the last copy; others are free disks.
struct Returning {
    KT_U16 pd;
    PulledBlocks blocks;
};
void rejoin(const Context& context, const std::vector<Returning>& disks);
// What was interrupted waits for its turn again where the group works; arbitrate() gives it.
void resumeInterrupted(const Context& context, const std::vector<Owner>& owners);
// The groups' activities, statuses and spares after they lost the disks.
void followUp(const Context& context, const std::vector<Owner>& owners, const std::vector<KT_U16>& pds);

} // namespace sim
