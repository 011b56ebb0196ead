// What a configuration text is made from: the adapter's settings page and its lists of virtual disks and spares.
#pragma once

#include <cstdlib>
#include <memory>
#include <vector>

#include "Public/cfg/keys.h"

// The virtual disks and spares of an adapter or of a text. About 80 KiB, so it is allocated; null without memory.
struct CfgRaid {
    _LD_Info lds[CFG_MOST_VDS];
    _HD_RAID_STATUS spares[CFG_MOST_SPARES];
    KT_U8 ldCount;
    KT_U8 spareCount;
};
using CfgRaidHolder = std::unique_ptr<CfgRaid, decltype(&free)>;
CfgRaidHolder newCfgRaid();

// Reads the current adapter's spares (disks that are none are left out), then its virtual disks. Anything but KT_OK is
// what the command returns: a refusal has been printed, KT_ERR_NO_RESOURCE stands for want of room.
KT_U8 readCfgRaid(CfgRaid& raid);

// The disks of a virtual disk as the adapter lists it, in its order; KT_NO_ID for a member that is missing or whose
// block cannot be asked for.
std::vector<KT_U16> memberDisks(const _LD_Info& ld);

// The page's bits that say whether RAID is on.
inline constexpr KT_U8 RAID_FEATURE_ON = 0x2;
