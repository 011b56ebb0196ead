// What lies on a disk, for commands that ask before they disturb it.
#pragma once

#include "ktraid.h"

// The virtual disks that have a block on a disk, each once.
struct VdsOnDisk {
    unsigned count = 0;
    KT_U16 ids[128];
};

// Looks at every block of the disk. KT_OK, or the status of the first call that failed: found is then incomplete.
KT_U8 findVdsOn(KT_U16 pd, VdsOnDisk& found);
