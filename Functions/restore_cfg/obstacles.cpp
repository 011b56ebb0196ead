#include "Functions/restore_cfg/obstacles.h"

#include <algorithm>

#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/raidRules.h"
#include "Public/saidBy.h"

namespace {
// A disk that is to be used, as it will be once the present virtual disks are deleted.
struct Disk {
    KT_U16 id;
    std::string fault; // why it can be used for nothing; empty: it can
    KT_U8 status;      // its RAID status bits
    KT_U8 type;
    KT_U32 sector;  // bytes
    KT_U64 room;    // KiB that are left on it
    unsigned parts; // virtual disks that will be on it
    bool spare;     // it is to be one
};

// An array that stays, or that comes with the first virtual disk on disks of no array.
struct Array {
    std::string name; // "array 1 'databases'"
    KT_U16 id;        // KT_NO_ID for one that comes
    KT_U8 level;
    std::vector<KT_U16> disks; // in order of their ids
    KT_U64 room;               // KiB of virtual disks that are left in it
    KT_U64 smallest;           // KiB that a disk must have to stand by for it
    bool migrates;
};

struct Outlook {
    std::vector<KT_U16> released; // members of the present virtual disks
    std::vector<Disk> disks;
    std::vector<Array> arrays;
    std::vector<std::string> obstacles;
};
} // namespace

static void add(Outlook& outlook, const std::string& obstacle) {
    auto known = std::find(outlook.obstacles.begin(), outlook.obstacles.end(), obstacle);
    if (known == outlook.obstacles.end()) outlook.obstacles.push_back(obstacle);
}

static std::string nameOf(const _LD_Info& ld) {
    return "virtual disk " + std::to_string(ld.ID) + " '" + FieldText(ld.Name).text + "'";
}

static std::string diskName(KT_U16 id) {
    return "disk " + std::to_string(id);
}

static std::string megabytes(KT_U64 kib) {
    return std::to_string(kib >> 10) + " M";
}

// What is needed beside what is left: in whole megabytes, so that more is never shown as the same.
static std::string needText(KT_U64 kib) {
    return kib == 0 ? "needs room" : "needs " + megabytes(kib + 1023);
}

static Disk readDiskFacts(KT_U16 id, bool released) {
    Disk disk = {id, "", 0, 0, 0, 0, 0, false};
    _HD_Info_Request info;
    _HD_RAID_Status_Request raid;
    _HD_FreeSpaceInfo space = {};
    KT_U8 status = KT_OK;
    if (!readDisk(id, info, status)) {
        disk.fault = "is not there";
        return disk;
    }
    disk.type = info.hdInfo[0].HDType;
    disk.sector = info.hdInfo[0].BlockSize;
    status = getItem(KT_PD_GetHDRaidStatus, id, raid);
    if (status == KT_OK) {
        disk.status = raid.hdRaidStatus[0].Status;
        status = KT_PD_GetFreeSpaceInfo(gCurrentAdapter, id, &space);
    }
    disk.room = space.ValidSize;
    const DiskRole role = diskRole(disk.status);
    if (status != KT_OK) {
        disk.fault = std::string("cannot be read (") + ErrorMessage(status) + ")";
    } else if ((disk.type & KT_HD_ATAPI) != 0) {
        disk.fault = "is an ATAPI device";
    } else if (role == DiskRole::Offline) {
        disk.fault = "is offline";
    } else if (role == DiskRole::Foreign && !released) {
        disk.fault = "is foreign";
    } else if (KT_DiskHasOS(gCurrentAdapter, KT_DEVICE_PD, 1, &id) == KT_ERR_PD_HAS_OS) {
        disk.fault = "runs the operating system";
    }
    return disk;
}

static Disk& diskOf(Outlook& outlook, KT_U16 id) {
    for (Disk& disk : outlook.disks) {
        if (disk.id == id) return disk;
    }
    const auto& released = outlook.released;
    outlook.disks.push_back(readDiskFacts(id, std::find(released.begin(), released.end(), id) != released.end()));
    return outlook.disks.back();
}

static void readArrays(Outlook& outlook) {
    const KT_U16 perPage = recordsPerPage(sizeof(_DG_Info));
    ListEnd end = walkList<_DG_Info>(KT_DG_GetInfo, EVERYTHING, perPage, [&](const _DG_Info& dg) {
        Array array = {};
        array.name = "array " + std::to_string(dg.DGID) + " '" + FieldText(dg.Name).text + "'";
        array.id = dg.DGID;
        array.level = dg.RaidMode;
        array.disks.assign(dg.PDIDs, dg.PDIDs + std::min<size_t>(dg.PDCount, std::size(dg.PDIDs)));
        std::sort(array.disks.begin(), array.disks.end());
        array.room = dg.TotalManagedSpace;
        array.smallest = dg.SmallestAvailablePDSize;
        array.migrates = (dg.BgaType & KT_BGA_MIGRATION) != 0;
        outlook.arrays.push_back(array);
        return true;
    });
    if (end.status != KT_OK) add(outlook, std::string("the arrays cannot be read (") + ErrorMessage(end.status) + ")");
}

static bool isMigrating(const Outlook& outlook, KT_U16 array) {
    return std::any_of(outlook.arrays.begin(), outlook.arrays.end(),
                       [&](const Array& known) { return known.id == array && known.migrates; });
}

static void checkDeletion(Outlook& outlook, const CfgRaid& present) {
    for (unsigned i = 0; i < present.ldCount; ++i) {
        const _LD_Info& ld = present.lds[i];
        const std::vector<KT_U16> disks = memberDisks(ld);
        outlook.released.insert(outlook.released.end(), disks.begin(), disks.end());
        if (isMigrating(outlook, ld.DGID)) {
            add(outlook, nameOf(ld) + " is in an array that is being migrated: it cannot be deleted");
        }
        _LD_Status_Request request;
        KT_U8 status = getItem(KT_LD_GetStatus, ld.ID, request);
        if (status != KT_OK) add(outlook, nameOf(ld) + " cannot be read (" + ErrorMessage(status) + ")");
        if (KT_DiskHasOS(gCurrentAdapter, KT_DEVICE_VD, 1, &ld.ID) == KT_ERR_VD_HAS_OS) {
            add(outlook, nameOf(ld) + " runs the operating system: it cannot be deleted");
        }
    }
}

// The level, its number of disks and its redundancy, by the rules that commands follow. True when they fit.
static bool checkRules(Outlook& outlook, const std::string& who, const _LD_Info& ld) {
    const RaidUse use = arrayBasedRaid ? USE_CREATE_ARRAY : USE_CREATE_VD;
    int parity = ld.NumParityDisk;
    bool fits = false;
    const std::string said = saidBy([&] {
        fits = checkLevel(use, ld.RaidMode) && checkDiskCount(use, ld.RaidMode, ld.HDCount) &&
               checkParity(use, ld.RaidMode, ld.HDCount, true, parity);
    });
    const size_t end = std::min(said.find_last_not_of(".\n") + 1, said.size());
    if (!fits) add(outlook, who + ": " + said.substr(0, end));
    const unsigned most = arrayBasedRaid ? currentAdapter().MaxPDPerDG : currentAdapter().MaxPDPerVD;
    if (most == 0 || ld.HDCount <= most) return fits;
    add(outlook, who + ": the adapter takes at most " + std::to_string(most) + " disks");
    return false;
}

// Whether the disks of a virtual disk or an array have to be of one type.
static bool mustBeAlike() {
    return (currentAdapter().Features & KT_FEATURE_SAME_TYPE_ONLY) != 0;
}

// Each disk by itself, and how they go together. True when nothing is wrong with them.
static bool checkMembers(Outlook& outlook, const std::string& who, const _LD_Info& ld) {
    bool good = true;
    auto refuse = [&](const std::string& why) {
        add(outlook, who + ": " + why);
        good = false;
    };
    for (unsigned i = 0; i < ld.HDCount; ++i) {
        const Disk disk = diskOf(outlook, ld.BlockIDs[i]);
        const Disk first = diskOf(outlook, ld.BlockIDs[0]);
        if (!disk.fault.empty()) refuse(diskName(disk.id) + " " + disk.fault);
        if (diskRole(disk.status) == DiskRole::Spare) {
            refuse(diskName(disk.id) + " is a spare, and those are released only when the virtual disks are made");
        }
        if (!disk.fault.empty() || !first.fault.empty()) continue;
        if (disk.sector != first.sector) {
            refuse(diskName(disk.id) + " has sectors of another size than " + diskName(first.id));
        } else if (mustBeAlike() && disk.type != first.type) {
            refuse(diskName(disk.id) + " is of another type than " + diskName(first.id));
        }
    }
    return good;
}

// How many disks hold data rather than redundancy, in halves. The level's rules have been checked, so there are some.
static KT_U64 dataHalves(const _LD_Info& ld) {
    const KT_U64 disks = ld.HDCount;
    switch (ld.RaidMode) {
    case KT_RAID1:
        return 2;
    case KT_RAID10:
    case KT_RAID1E:
        return disks;
    case KT_RAID5:
        return 2 * (disks - 1);
    case KT_RAID50:
        return 2 * (disks - 2);
    case KT_RAID6:
    case KT_RAID60:
        return 2 * (disks - ld.NumParityDisk);
    default:
        return 2 * disks;
    }
}

// The smallest room among the disks of a virtual disk.
static KT_U64 leastRoom(Outlook& outlook, const _LD_Info& ld) {
    KT_U64 least = UINT64_MAX;
    for (unsigned i = 0; i < ld.HDCount; ++i) {
        least = std::min(least, diskOf(outlook, ld.BlockIDs[i]).room);
    }
    return least;
}

// Puts a virtual disk onto its disks, beside those of the file that come before it.
static void placeOnDisks(Outlook& outlook, const std::string& who, const _LD_Info& ld) {
    const KT_U64 least = leastRoom(outlook, ld);
    const KT_U64 halves = std::max<KT_U64>(dataHalves(ld), 1);
    const KT_U64 share = ld.Size == 0 ? least : ((ld.Size << 11) + halves - 1) / halves;
    const unsigned most = sharesDisks() ? currentAdapter().MaxBlockPerPD : 1;
    for (unsigned i = 0; i < ld.HDCount; ++i) {
        Disk& disk = diskOf(outlook, ld.BlockIDs[i]);
        if (most != 0 && ++disk.parts > most) {
            add(outlook, who + ": " + diskName(disk.id) + " holds as many virtual disks as this adapter allows");
        } else if (share > disk.room || share == 0) {
            add(outlook, who + ": " + needText(share) + " on " + diskName(disk.id) + ", where " + megabytes(disk.room) +
                             " are left");
        }
        disk.room -= std::min(disk.room, share);
    }
}

// The array of exactly these disks, or one that holds a disk of them; null for disks of no array.
static Array* arrayOf(Outlook& outlook, const std::vector<KT_U16>& disks) {
    for (Array& array : outlook.arrays) {
        bool shared = std::any_of(disks.begin(), disks.end(), [&](KT_U16 id) {
            return std::binary_search(array.disks.begin(), array.disks.end(), id);
        });
        if (shared) return &array;
    }
    return nullptr;
}

static void placeInArray(Outlook& outlook, const std::string& who, const _LD_Info& ld) {
    std::vector<KT_U16> disks(ld.BlockIDs, ld.BlockIDs + ld.HDCount);
    std::sort(disks.begin(), disks.end());
    Array* array = arrayOf(outlook, disks);
    if (array == nullptr) {
        outlook.arrays.push_back({"the array that comes with it", KT_NO_ID, ld.RaidMode, disks,
                                  leastRoom(outlook, ld) * dataHalves(ld) / 2, 0, false});
        array = &outlook.arrays.back();
    } else if (array->disks != disks || array->level != ld.RaidMode) {
        add(outlook, who + ": its disks are in " + array->name + ", which stays and has other disks or another level");
        return;
    }
    const KT_U64 size = ld.Size == 0 ? array->room : ld.Size << 10;
    if (size > array->room || size == 0) {
        add(outlook,
            who + ": " + needText(size) + " in " + array->name + ", where " + megabytes(array->room) + " are left");
    }
    array->room -= std::min(array->room, size);
}

static void checkCreation(Outlook& outlook, const CfgRaid& wanted) {
    const unsigned most = currentAdapter().MaxLogicalDrive;
    if (most != 0 && wanted.ldCount > most) {
        add(outlook, "the file lists " + std::to_string(wanted.ldCount) + " virtual disks, the adapter takes " +
                         std::to_string(most));
    }
    for (unsigned i = 0; i < wanted.ldCount; ++i) {
        const _LD_Info& ld = wanted.lds[i];
        const std::string who = nameOf(ld);
        const bool fits = checkRules(outlook, who, ld);
        if (!checkMembers(outlook, who, ld) || !fits) continue;
        if (arrayBasedRaid) {
            placeInArray(outlook, who, ld);
        } else {
            placeOnDisks(outlook, who, ld);
        }
    }
}

// Why a disk cannot stand by for an array; empty when it can, or when that cannot be told of an array that comes.
static std::string dedicationFault(Outlook& outlook, const Disk& disk, KT_U16 id) {
    if (!arrayBasedRaid) return "no array, and so no disk for one, is on this adapter";
    bool comes = false;
    for (const Array& array : outlook.arrays) {
        comes = comes || array.id == KT_NO_ID;
        if (array.id != id) continue;
        if (array.level == KT_RAID0 || array.level == KT_JBOD) return array.name + " is not redundant";
        if (disk.room < array.smallest) return "it is too small for " + array.name;
        const Disk first = array.disks.empty() ? disk : diskOf(outlook, array.disks[0]);
        const bool alike = !mustBeAlike() || first.type == disk.type;
        return first.sector == disk.sector && alike ? "" : "it is of another kind than the disks of " + array.name;
    }
    return comes ? "" : "there will be no array " + std::to_string(id);
}

static bool isMember(const CfgRaid& wanted, KT_U16 disk) {
    return std::any_of(wanted.lds, wanted.lds + wanted.ldCount, [&](const _LD_Info& ld) {
        return std::find(ld.BlockIDs, ld.BlockIDs + ld.HDCount, disk) != ld.BlockIDs + ld.HDCount;
    });
}

static void checkSpares(Outlook& outlook, const CfgRaid& wanted) {
    for (unsigned i = 0; i < wanted.spareCount; ++i) {
        const _HD_RAID_STATUS& spare = wanted.spares[i];
        const std::string who = "spare disk " + std::to_string(spare.HDID);
        const Disk disk = diskOf(outlook, spare.HDID);
        const bool global = spare.DGID == CFG_GLOBAL_SPARE;
        const std::string fault = global ? "" : dedicationFault(outlook, disk, spare.DGID);
        bool inArray = std::any_of(outlook.arrays.begin(), outlook.arrays.end(), [&](const Array& array) {
            return std::binary_search(array.disks.begin(), array.disks.end(), spare.HDID);
        });
        if (!disk.fault.empty()) {
            add(outlook, who + " " + disk.fault);
        } else if (disk.spare) {
            add(outlook, who + " is listed twice");
        } else if (inArray || isMember(wanted, spare.HDID)) {
            add(outlook, who + " is a member as well");
        } else if (!fault.empty()) {
            std::string why = who;
            add(outlook, why.append(": ").append(fault));
        }
        diskOf(outlook, spare.HDID).spare = true;
    }
}

std::vector<std::string> findObstacles(const CfgRaid& present, const CfgRaid& wanted) {
    Outlook outlook;
    if (arrayBasedRaid) readArrays(outlook);
    checkDeletion(outlook, present);
    checkCreation(outlook, wanted);
    checkSpares(outlook, wanted);
    return outlook.obstacles;
}
