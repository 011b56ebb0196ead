// What a configuration text is made from: the adapter's settings page and its lists of virtual disks and spares.
#pragma once

#include <cstdlib>
#include <memory>

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

// The page's bits that say whether RAID is on.
inline constexpr KT_U8 RAID_FEATURE_ON = 0x2;
