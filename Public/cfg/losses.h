// What a configuration text does not bring back: not every level, policy, rate, size, name or number of members has a
// form in it.
#pragma once

#include <string>
#include <vector>

#include "Public/cfg/raidConfig.h"

// What a text was written from.
struct CfgSaved {
    const _HBA_Info_Page& page;
    const CfgRaid& raid; // its members are disk ids
    unsigned ports;
    KT_U8 mode;
};

// A line for each value that restore_cfg would read differently or refuse, with what the adapter has and what is
// written: "virtual disk 3: 7630767 M is written as 3436463 M". Nothing is printed; without memory there are none.
std::vector<std::string> cfgLosses(const CfgSaved& saved);
