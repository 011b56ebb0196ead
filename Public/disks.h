// What commands ask about the disks they were given before they use them.
#pragma once

#include "Public/output.h"
#include "Public/utility.h"

// Why a disk cannot be given away, by its RAID status bits; the first reason counts, in this order.
enum class DiskRole { Usable, Offline, Spare, Foreign };
DiskRole diskRole(KT_U8 status);

// Reads a disk's RAID status bits; answers the library's status and says so when it is not KT_OK.
KT_U8 readDiskStatus(KT_U16 pd, KT_U8& bits);

// The disks of a list that carry a file system: their ids, each followed by a blank, and how many there are.
struct FileSystems {
    LineText ids;
    unsigned count = 0;
};

// Looks for file systems on the disks; answers the library's status.
KT_U8 findFileSystems(const PdList& disks, FileSystems& found);

// Reads a disk's record, by the older call where the newer one fails. False when there is none; status says why.
bool readDisk(KT_U16 pd, _HD_Info_Request& request, KT_U8& status);

bool isSolidState(const _HD_Info& disk);

// Reads the record of a solid-state disk. False, after a message, when it cannot be read (result: the library's status)
// or is that of another kind of disk (result: 1).
bool readSolidState(KT_U16 pd, _HD_Info_Request& request, int& result);

// Whether virtual disks may share disks on the current adapter. Older controllers let them; with arrays it is these
// that share.
bool sharesDisks();

// On controllers that cannot mix disks of virtual disks: KT_ERR_PD_TYPES_DIFFER when a block of the disk belongs to a
// virtual disk other than ldId (255 = to any). KT_OK for a free disk, elsewhere and in the array-based set;
// KT_ERR_NO_RESOURCE without memory; the library's status when the blocks cannot be read.
KT_U8 HDisFreeDiskForKelo(unsigned short pdId, unsigned short ldId);
