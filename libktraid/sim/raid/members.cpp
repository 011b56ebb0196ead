#include "raid/members.h"

#include "media/blocks.h"
#include "raid/candidates.h"
#include "raid/roles.h"

#include <algorithm>

namespace sim {

Owner groupOwner(const _LD_Info& vd) {
    return vd.DGID == KT_NO_ID ? Owner{OwnerKind::Vd, vd.ID} : Owner{OwnerKind::Array, vd.DGID};
}

std::vector<Owner> allGroups(const Context& context) {
    std::vector<Owner> owners;
    forEach<_DG_Info>(context, 0, [&](KT_U64 id, const _DG_Info&) {
        owners.push_back(Owner{OwnerKind::Array, static_cast<KT_U16>(id)});
        return true;
    });
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        if (vd.DGID == KT_NO_ID) owners.push_back(Owner{OwnerKind::Vd, static_cast<KT_U16>(id)});
        return true;
    });
    return owners;
}

static bool isOut(const Context& context, KT_U16 pd) {
    const auto disk = find<PdState>(context, pd);
    return !disk || (disk->raid & KT_PD_OFFLINE) != 0;
}

static void fillFromVd(const Context& context, Group& group) {
    Vd vd = {};
    if (findVd(context, group.owner.id, vd) != KT_OK) return;
    group.geometry = geometryOf(vd.info);
    group.vds.push_back(vd.info.ID);
    group.usable = isUsable(vd.info);
    for (int i = 0; i < group.geometry.disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.info.BlockIDs[i]);
        group.members.push_back(block ? block->HDID : KT_U16{KT_NO_ID});
        group.homes.push_back(vd.state.homes[i]);
    }
}

static void fillFromArray(const Context& context, Group& group) {
    Array array = {};
    if (findArray(context, group.owner.id, array) != KT_OK) return;
    group.geometry = geometryOf(array);
    group.dgid = group.owner.id;
    group.usable = array.info.Status != ARRAY_OFFLINE;
    for (int i = 0; i < array.info.VDSlotCount; ++i)
        if (array.info.VDIDs[i] != KT_NO_ID) group.vds.push_back(array.info.VDIDs[i]);
    group.members.assign(array.state.members, array.state.members + group.geometry.disks);
    group.homes.assign(array.state.homes, array.state.homes + group.geometry.disks);
}

Group groupOf(const Context& context, Owner owner) {
    Group group = {};
    group.owner = owner;
    group.dgid = KT_NO_ID;
    if (owner.kind == OwnerKind::Array) {
        fillFromArray(context, group);
    } else {
        fillFromVd(context, group);
    }
    for (const KT_U16 pd : group.members)
        group.needsDisk.push_back(isOut(context, pd));
    return group;
}

bool isMember(const Group& group, KT_U16 pd) {
    return std::find(group.members.begin(), group.members.end(), pd) != group.members.end();
}

void setHome(const Context& context, const Group& group, int slot, KT_U16 pd) {
    if (group.dgid == KT_NO_ID) {
        auto state = find<VdState>(context, group.owner.id);
        if (!state) return;
        state->homes[slot] = pd;
        save(context, group.owner.id, *state);
    } else {
        auto state = find<DgState>(context, group.dgid);
        if (!state) return;
        state->homes[slot] = pd;
        save(context, group.dgid, *state);
    }
}

void forgetHome(const Context& context, Owner owner, KT_U16 pd) {
    const Group group = groupOf(context, owner);
    for (size_t i = 0; i < group.homes.size(); ++i)
        if (group.homes[i] == pd && group.members[i] != pd) setHome(context, group, static_cast<int>(i), KT_NO_ID);
    for (const KT_U16 vd : group.vds) {
        auto target = find<VdTarget>(context, vd);
        if (!target) continue;
        std::replace(std::begin(target->homes), std::end(target->homes), pd, KT_U16{KT_NO_ID});
        save(context, vd, *target);
    }
}

// A block of the virtual disk on one of its working disks, as the model for a new one.
static std::optional<_Block_Info> modelBlock(const Context& context, const _LD_Info& vd, int slot) {
    std::optional<_Block_Info> model = find<_Block_Info>(context, vd.BlockIDs[slot]);
    for (int i = 0; !model && i < geometryOf(vd).disks; ++i)
        model = find<_Block_Info>(context, vd.BlockIDs[i]);
    return model;
}

static std::optional<Disk> anyMember(const Context& context, const Group& group) {
    Disk disk = {};
    for (const KT_U16 pd : group.members)
        if (findDisk(context, pd, disk) == KT_OK) return disk;
    return std::nullopt;
}

KT_U8 checkFits(const Context& context, const Group& group, const Disk& disk) {
    const auto member = anyMember(context, group);
    const KT_U8 status = member ? checkAlike(context, member->info, disk.info) : KT_U8{KT_OK};
    if (status != KT_OK) return status;
    if (group.dgid != KT_NO_ID) {
        const auto array = find<_DG_Info>(context, group.dgid);
        const KT_U64 room = validKib(disk.info, disk.state);
        return array && room < array->SmallestAvailablePDSize ? KT_U8{KT_ERR_TARGET_TOO_SMALL} : KT_U8{KT_OK};
    }
    const auto vd = find<_LD_Info>(context, group.owner.id);
    const KT_U64 share = vd ? shareOf(context, *vd) : 0;
    return largestGapKib(context, disk) < share ? KT_U8{KT_ERR_TARGET_TOO_SMALL} : KT_U8{KT_OK};
}

static void becomeMember(const Context& context, const Group& group, int slot, KT_U16 pd, KT_U8 blockStatus) {
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK) return;
    disk.state.raid |= KT_PD_MEMBER;
    if (disk.state.raid & KT_PD_SPARE) disk.state.raid |= KT_PD_SPARE_IN_USE;
    disk.state.hasMbr = 0;
    if (group.dgid != KT_NO_ID) disk.state.dgid = group.dgid;
    saveDisk(context, disk);
    if (group.dgid == KT_NO_ID || blockStatus == BLOCK_COPYING) return;
    Array array = {};
    if (findArray(context, group.dgid, array) != KT_OK) return;
    array.state.members[slot] = pd;
    listMembers(array);
    saveArray(context, array);
}

static KT_U8 placeFor(const Context& context, _LD_Info& vd, int slot, const Disk& disk, KT_U8 blockStatus) {
    const auto model = modelBlock(context, vd, slot);
    if (!model) return KT_ERR_VD_NOT_READY;
    _Block_Info block = *model;
    block.HDID = disk.state.config.HDID;
    block.Status = blockStatus;
    if (vd.DGID == KT_NO_ID || !isFreeSpace(context, block.HDID, block.StartLBA, block.Size)) {
        const auto start = findSpace(context, block.HDID, disk.info, disk.state, block.Size);
        if (!start) return KT_ERR_TARGET_TOO_SMALL;
        block.StartLBA = *start;
    }
    const KT_U16 id = addBlock(context, block);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    if (blockStatus == BLOCK_COPYING) return KT_OK;
    vd.BlockIDs[slot] = id;
    save(context, vd.ID, vd);
    return KT_OK;
}

Placed placeMember(const Context& context, const Group& group, int slot, KT_U16 pd, KT_U8 blockStatus) {
    const KT_U16 before = group.members[static_cast<size_t>(slot)];
    KT_U64 work = 0;
    Disk disk = {};
    KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return {status, 0};
    for (const KT_U16 id : group.vds) {
        auto vd = find<_LD_Info>(context, id);
        if (!vd) continue;
        const KT_U16 oldBlock = vd->BlockIDs[slot];
        status = placeFor(context, *vd, slot, disk, blockStatus);
        if (status != KT_OK) return {status, 0};
        work += shareOf(context, *vd);
        if (blockStatus != BLOCK_COPYING && oldBlock != KT_NO_ID) removeBlock(context, oldBlock);
    }
    becomeMember(context, group, slot, pd, blockStatus);
    if (blockStatus != BLOCK_COPYING && before != pd) releaseDisk(context, before);
    return {KT_OK, work};
}

std::vector<KT_U16> blocksFor(const Context& context, const Group& group, KT_U16 pd) {
    std::vector<KT_U16> found;
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (block && std::find(group.vds.begin(), group.vds.end(), block->LDID) != group.vds.end())
            found.push_back(block->ID);
    }
    return found;
}

void adoptCopies(const Context& context, const Group& group, int slot, KT_U16 pd) {
    const KT_U16 before = group.members[static_cast<size_t>(slot)];
    for (const KT_U16 id : blocksFor(context, group, pd)) {
        auto block = find<_Block_Info>(context, id);
        auto vd = block ? find<_LD_Info>(context, block->LDID) : std::nullopt;
        if (!vd || block->Status != BLOCK_COPYING) continue;
        if (vd->BlockIDs[slot] != KT_NO_ID) removeBlock(context, vd->BlockIDs[slot]);
        vd->BlockIDs[slot] = id;
        block->Status = BLOCK_GOOD;
        updateBlock(context, *block);
        save(context, vd->ID, *vd);
    }
    becomeMember(context, group, slot, pd, BLOCK_GOOD);
    releaseDisk(context, before);
}

static void emptySlots(const Context& context, const Group& group, KT_U16 pd) {
    Array array = {};
    if (group.dgid == KT_NO_ID || findArray(context, group.dgid, array) != KT_OK) return;
    for (int i = 0; i < group.geometry.disks; ++i)
        if (array.state.members[i] == pd) array.state.members[i] = KT_NO_ID;
    listMembers(array);
    saveArray(context, array);
}

static void emptyVdSlot(_LD_Info& vd, KT_U16 block) {
    std::replace(std::begin(vd.BlockIDs), std::end(vd.BlockIDs), block, KT_U16{KT_NO_ID});
}

void removeMember(const Context& context, const Group& group, KT_U16 pd) {
    for (const KT_U16 id : blocksFor(context, group, pd)) {
        const auto block = find<_Block_Info>(context, id);
        auto vd = block ? find<_LD_Info>(context, block->LDID) : std::nullopt;
        if (vd) {
            emptyVdSlot(*vd, id);
            save(context, vd->ID, *vd);
            auto target = find<VdTarget>(context, vd->ID);
            if (target) {
                emptyVdSlot(target->info, id);
                save(context, vd->ID, *target);
            }
        }
        removeBlock(context, id);
    }
    emptySlots(context, group, pd);
    releaseDisk(context, pd);
}

void refreshGroup(const Context& context, const Group& group) {
    for (const KT_U16 vd : group.vds)
        refreshVdStatus(context, vd);
    if (group.dgid != KT_NO_ID) refreshArrayStatus(context, group.dgid);
}

} // namespace sim
