// The rules of RAID levels: what the adapter supports and how many disks and parity disks a level takes. Each command
// that chooses a level has limits of its own; they stand side by side in the tables of raidRules.cpp.
#pragma once

#include "ktraid.h"

// What a level is chosen for.
enum RaidUse : KT_U8 {
    USE_CREATE_VD = 1,     // create, LD-based set
    USE_CREATE_ARRAY = 2,  // create -o array
    USE_VD_IN_ARRAY = 4,   // create -o vd, array-based set: the level comes from the array
    USE_MAX_SIZE = 8,      // maxcreatesize
    USE_MIGRATE_VD = 16,   // migrate, LD-based set
    USE_MIGRATE_ARRAY = 32 // migrate, array-based set
};

// True when the current adapter offers the level; otherwise says so.
bool checkLevel(RaidUse use, KT_U8 level);

// True when the level takes `disks` disks; otherwise says what it takes. Levels without a rule take any number.
bool checkDiskCount(RaidUse use, KT_U8 level, unsigned disks);

// RAID6 and RAID60: without a count given, parity becomes the level's own; a given one must fit the level, the adapter
// and the number of disks, else the limits are printed and the answer is false. Other levels: true, parity untouched.
bool checkParity(RaidUse use, KT_U8 level, unsigned disks, bool given, int& parity);

// True for the levels whose number of parity disks can be chosen.
inline bool takesParityDisks(KT_U8 level) {
    return level == KT_RAID6 || level == KT_RAID60;
}

// The water mark that every record of a hybrid virtual disk carries.
inline constexpr KT_U8 TANDEM_WATER_MARK = 90;

// True for the levels that join SSDs with a hard disk.
inline bool isHybridLevel(KT_U8 level) {
    return level == KT_TANDEM_CAPACITY || level == KT_TANDEM_SAFE || level == KT_HYBRID;
}

// The rank of a level's redundancy; migration never goes to a lower one.
KT_U8 RedundencyLevel(unsigned char raidMode);

// True when the current adapter supports stripe blocks of `kb` KB: multiples of 16 whose every power of two is
// supported. An adapter that names no sizes gets its defaults filled into the adapter table.
bool isValidStripe(unsigned short kb);

// The short level word of default names; "NA" for an unknown level.
const char* RaidModeStrInCreate(unsigned char mode);
