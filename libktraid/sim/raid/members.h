// Members of virtual disks and arrays seen alike: who is in which slot, and putting another disk in.
#pragma once

#include "media/disks.h"
#include "raid/activityRecords.h"

#include <vector>

namespace sim {

// A virtual disk outside arrays, or an array with its virtual disks.
struct Group {
    Owner owner;
    Geometry geometry;
    KT_U16 dgid;                 // KT_NO_ID outside arrays
    std::vector<KT_U16> vds;     // the virtual disk, or those of the array
    std::vector<KT_U16> members; // by slot: the disk there, KT_NO_ID = none
    std::vector<KT_U16> homes;   // by slot: whose place it is
    std::vector<bool> needsDisk; // by slot: empty, or its disk does not work
    bool usable;                 // takes commands: not offline or foreign
};

Group groupOf(const Context& context, Owner owner);
bool isMember(const Group& group, KT_U16 pd);
// Every virtual disk outside arrays and every array.
std::vector<Owner> allGroups(const Context& context);
// The group a virtual disk belongs to.
Owner groupOwner(const _LD_Info& vd);
void setHome(const Context& context, const Group& group, int slot, KT_U16 pd);

// The disk is no longer the home of any slot: none waits for its return.
void forgetHome(const Context& context, Owner owner, KT_U16 pd);

// KT_OK when the disk has room for a member's blocks and goes with the others: KT_ERR_TARGET_TOO_SMALL and what
// checkAlike() says.
KT_U8 checkFits(const Context& context, const Group& group, const Disk& disk);
// Adds to the disk what it has to hold as the member in that slot, in blocks of the given status; the slot's old blocks
// go when the new ones take their place (all but BLOCK_COPYING).
struct Placed {
    KT_U8 status; // KT_OK, or why it has no room
    KT_U64 work;  // KiB to be filled
};
Placed placeMember(const Context& context, const Group& group, int slot, KT_U16 pd, KT_U8 blockStatus);
// Puts the blocks that a disk holds for the group with that status into their slot.
void adoptCopies(const Context& context, const Group& group, int slot, KT_U16 pd);
// Ids of the blocks that the disk holds for the group.
std::vector<KT_U16> blocksFor(const Context& context, const Group& group, KT_U16 pd);
// Takes away the blocks that the disk holds for the group, out of the slots too, and looks what else it is for.
void removeMember(const Context& context, const Group& group, KT_U16 pd);
// Statuses of the group's virtual disks, then of its array.
void refreshGroup(const Context& context, const Group& group);

} // namespace sim
