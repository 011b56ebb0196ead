#include "Public/raidRules.h"

#include "Public/common.h"

namespace {
struct LevelBits {
    KT_U8 level;
    KT_U16 onDisks; // any of these bits of LogicalDriverMode enables the level
    KT_U16 inArray; // the same for a virtual disk in an array that exists; 0: always enabled
};
const LevelBits levelBits[] = {
    {KT_RAID0, KT_MODE_RAID0, KT_MODE_RAID0},
    {KT_RAID1, KT_MODE_RAID1, KT_MODE_RAID1},
    {KT_RAID10, KT_MODE_RAID10, KT_MODE_RAID10},
    {KT_RAID1E, KT_MODE_RAID1E, KT_MODE_RAID1E},
    {KT_RAID5, KT_MODE_RAID5, KT_MODE_RAID5},
    {KT_RAID6, KT_MODE_RAID6, KT_MODE_RAID6},
    {KT_RAID50, KT_MODE_RAID50, KT_MODE_RAID50},
    {KT_RAID60, KT_MODE_RAID60, KT_MODE_RAID60},
    {KT_JBOD, KT_MODE_JBOD, KT_MODE_JBOD},
    {KT_TANDEM_CAPACITY, KT_MODE_TANDEM_CAPACITY, KT_MODE_TANDEM_CAPACITY},
    {KT_TANDEM_SAFE, KT_MODE_TANDEM_SAFE, KT_MODE_RAID0 | KT_MODE_RAID1 | KT_MODE_RAID1E},
    {KT_HYBRID, KT_MODE_HYBRID, 0},
};

enum class Count : KT_U8 { AtLeast, Exactly, EvenAtLeast, OddAtLeast };

constexpr KT_U8 MIGRATE = USE_MIGRATE_VD | USE_MIGRATE_ARRAY;
constexpr KT_U8 CREATE = USE_CREATE_VD | USE_CREATE_ARRAY | USE_MAX_SIZE;
constexpr KT_U8 ANY_USE = CREATE | MIGRATE;
constexpr KT_U8 ON_DISKS = USE_CREATE_VD | USE_MAX_SIZE | USE_MIGRATE_VD;

struct DiskCountRule {
    KT_U8 level;
    KT_U8 uses; // RaidUse bits
    Count count;
    KT_U8 disks;
    const char* refusal;
};
const DiskCountRule diskCountRules[] = {
    {KT_RAID0, CREATE, Count::AtLeast, 2, "RAID0 needs at least 2 PD.\n"},
    {KT_RAID1, ANY_USE, Count::Exactly, 2, "RAID1 needs exactly 2 PDs.\n"},
    {KT_RAID10, ANY_USE, Count::EvenAtLeast, 4, "RAID10 needs at least 4 or more even number of PDs.\n"},
    {KT_RAID1E, ANY_USE, Count::OddAtLeast, 3, "RAID1E needs at least 3 or more odd number of PDs.\n"},
    {KT_RAID5, ANY_USE, Count::AtLeast, 3, "RAID5 needs at least 3 PDs.\n"},
    {KT_RAID50, ANY_USE, Count::EvenAtLeast, 6, "RAID50 needs least 6 or more even number of PDs.\n"},
    {KT_RAID6, ON_DISKS, Count::AtLeast, 3, "RAID6 needs least 3 PDs.\n"},
    {KT_RAID6, USE_CREATE_ARRAY, Count::AtLeast, 4, "RAID6 needs least 4 or more number of PDs.\n"},
    {KT_RAID6, USE_MIGRATE_ARRAY, Count::AtLeast, 4, "RAID6 needs least 4 PDs.\n"},
    {KT_RAID60, ON_DISKS, Count::EvenAtLeast, 6, "RAID60 needs least 6 or more even number of PDs.\n"},
    {KT_RAID60, USE_CREATE_ARRAY | USE_MIGRATE_ARRAY, Count::EvenAtLeast, 8,
     "RAID60 needs least 8 or more even number of PDs.\n"},
};

enum class Room : KT_U8 { Any, BelowDisks, HalfOfDisks };

struct ParityRule {
    KT_U8 level;
    KT_U8 uses;           // RaidUse bits
    KT_U8 least;          // also the count when none is given
    KT_U8 step;           // the count is a multiple of this
    KT_U8 perAdapterMost; // at most this many times the adapter's MaxParityDisks; 0: the adapter sets no limit
    Room room;
};
const ParityRule parityRules[] = {
    {KT_RAID6, USE_CREATE_VD, 2, 1, 1, Room::BelowDisks},
    {KT_RAID6, USE_CREATE_ARRAY, 2, 1, 1, Room::HalfOfDisks},
    {KT_RAID6, USE_MAX_SIZE | USE_MIGRATE_VD, 2, 1, 0, Room::BelowDisks},
    {KT_RAID6, USE_MIGRATE_ARRAY, 2, 1, 1, Room::Any},
    {KT_RAID60, USE_CREATE_VD, 4, 2, 2, Room::BelowDisks},
    {KT_RAID60, USE_CREATE_ARRAY, 4, 2, 2, Room::HalfOfDisks},
    {KT_RAID60, USE_MAX_SIZE | MIGRATE, 4, 2, 0, Room::BelowDisks},
};
} // namespace

bool checkLevel(RaidUse use, KT_U8 level) {
    for (const LevelBits& row : levelBits) {
        if (row.level != level) continue;
        KT_U16 bits = use == USE_VD_IN_ARRAY ? row.inArray : row.onDisks;
        if (bits == 0 || (currentAdapter().LogicalDriverMode & bits) != 0) return true;
    }
    out("Specified RAID mode is not supported.\n");
    return false;
}

static bool countFits(const DiskCountRule& rule, unsigned disks) {
    switch (rule.count) {
    case Count::Exactly:
        return disks == rule.disks;
    case Count::EvenAtLeast:
        return disks >= rule.disks && disks % 2 == 0;
    case Count::OddAtLeast:
        return disks >= rule.disks && disks % 2 == 1;
    default:
        return disks >= rule.disks;
    }
}

bool checkDiskCount(RaidUse use, KT_U8 level, unsigned disks) {
    for (const DiskCountRule& rule : diskCountRules) {
        if (rule.level == level && (rule.uses & use) != 0 && !countFits(rule, disks)) {
            out("%s", rule.refusal);
            return false;
        }
    }
    return true;
}

// The count is not one that the level takes on this adapter. `most` is the adapter's limit, where there is one.
static void refuseParityNumber(RaidUse use, KT_U8 level, int most) {
    if (level == KT_RAID6) {
        if (use == USE_CREATE_ARRAY) {
            out("Number of parity disks for RAID6 should be between 2 & %d\n", most);
        } else if (use == USE_MIGRATE_ARRAY) {
            out("Number of parity disks should be at between 2 and %d.\n", most);
        } else {
            out("Number of parity disks should be at least 2 and less than %d.\n", most);
        }
    } else if (use == USE_CREATE_VD) {
        out("RAID60 need even number of parity disks between 4 and %d.\n", most);
    } else if (use == USE_CREATE_ARRAY) {
        out("Number of parity disks for RAID60 should be even and between 4 & %d\n", most);
    } else {
        out("RAID60 need at least 4 even number of parity disks.\n");
    }
}

// The count leaves too few disks for data.
static void refuseParityRoom(const ParityRule& rule, int parity, int disks, int most) {
    if (rule.level == KT_RAID6 && rule.room == Room::HalfOfDisks) {
        out("Number of parity disks for RAID6 can not exceed half of total disks\n");
    } else if (rule.level == KT_RAID6) {
        out("Number of parity disks should be at least 2 and less than %d.\n", most);
    } else if (rule.room == Room::HalfOfDisks) {
        out("Number of parity disks for RAID60 can not exceed half of total disks\n");
    } else {
        out("# of parity disks (%d) should be less than # of total disks (%d).\n", parity, disks);
    }
}

static bool leavesRoom(const ParityRule& rule, int parity, int disks) {
    if (rule.room == Room::BelowDisks) return parity < disks;
    return rule.room == Room::Any || parity <= disks / 2;
}

bool checkParity(RaidUse use, KT_U8 level, unsigned disks, bool given, int& parity) {
    auto room = static_cast<int>(disks);
    for (const ParityRule& rule : parityRules) {
        if (rule.level != level || (rule.uses & use) == 0) continue;
        if (!given) {
            parity = rule.least;
            return true;
        }
        // Where the adapter sets no limit, the number of disks is the one that messages name.
        int most = rule.perAdapterMost != 0 ? rule.perAdapterMost * currentAdapter().MaxParityDisks : room;
        bool tooMany = rule.perAdapterMost != 0 && parity > most;
        if (parity < rule.least || parity % rule.step != 0 || tooMany) {
            refuseParityNumber(use, level, most);
            return false;
        }
        if (!leavesRoom(rule, parity, room)) {
            refuseParityRoom(rule, parity, room, most);
            return false;
        }
    }
    return true;
}

KT_U8 RedundencyLevel(unsigned char raidMode) {
    switch (raidMode) {
    case KT_RAID10:
    case KT_RAID1E:
        return 1;
    case KT_RAID50:
        return 5;
    case KT_RAID60:
        return 6;
    default:
        return raidMode;
    }
}

bool isValidStripe(unsigned short kb) {
    constexpr KT_U16 UP_TO_128_KB = 15;
    constexpr KT_U16 UP_TO_1024_KB = 127;
    _Adapter_Info& adapter = currentAdapter();
    if (adapter.StripeSizeSupported == 0) {
        bool big = (adapter.AdvancedFeatures & KT_ADV_BIG_STRIPE) != 0;
        adapter.StripeSizeSupported = big ? UP_TO_1024_KB : UP_TO_128_KB;
    }
    unsigned sixteens = kb / 16U;
    return kb % 16 == 0 && (sixteens & ~static_cast<unsigned>(adapter.StripeSizeSupported)) == 0;
}

const char* RaidModeStrInCreate(unsigned char mode) {
    switch (mode) {
    case KT_RAID0:
        return "R0";
    case KT_RAID1:
        return "R1";
    case KT_RAID10:
        return "R10";
    case KT_RAID1E:
        return "R1E";
    case KT_RAID5:
        return "R5";
    case KT_RAID50:
        return "R50";
    case KT_RAID6:
        return "R6";
    case KT_RAID60:
        return "R60";
    case KT_JBOD:
        return "JBD";
    case KT_TANDEM_CAPACITY:
        return "Tandemix_c";
    case KT_TANDEM_SAFE:
        return "Tandemix_s";
    case KT_HYBRID:
        return "Hybrid";
    default:
        return "NA";
    }
}
