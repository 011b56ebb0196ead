// What the tests of background activities stand on: virtual disk 2 and array 2, both RAID5 on the disks 1, 2 and 3.
#pragma once

#include "tests/seam/seam.h"

inline _LD_Info& vd() {
    return seam.lds[0];
}
inline _LD_STATUS& vdStatus() {
    return seam.ldStatuses[0];
}
inline _DG_Info& array() {
    return seam.arrays[0];
}
inline _HD_RAID_STATUS& disk(KT_U16 id) {
    return seam.disks[id];
}

// The calls so far that change something, and the others.
inline Calls callsThat(bool change) {
    Calls found;
    for (const std::string& call : seam.calls) {
        const bool sizeOnly = call.starts_with("KT_DG_StartMigration 1");
        if ((has(call, "_Start") || has(call, "BGAControl")) && !sizeOnly ? change : !change) found.push_back(call);
    }
    return found;
}
inline Calls changes() {
    return callsThat(true);
}
inline Calls reads() {
    return callsThat(false);
}

// Starts over: everything is idle, and the disks 0 and 4 to 9 are free, on an adapter that can do everything.
inline void layOut() {
    seam = {};
    gCurrentAdapter = 0;
    arrayBasedRaid = false;
    gAdapterInfo[0] = {.DevID = 0x4701, .Features = 0xFF, .MaxParityDisks = 3, .LogicalDriverMode = 0x0FFF};
    seam.lds.resize(1);
    seam.ldStatuses.resize(1);
    seam.arrays.resize(1);
    seam.hdActivities.resize(1);
    vd().ID = vdStatus().LDID = array().DGID = seam.hdActivities[0].HDID = 2;
    vd().RaidMode = array().RaidMode = KT_RAID5;
    vd().BlkCount = vd().HDCount = array().PDCount = 3;
    vd().SectorCoefficient = 8;
    array().BlockSize = 512;
    addDisks(10);
    for (KT_U16 id = 1; id <= 3; ++id) {
        seam.blocks.push_back({.ID = static_cast<KT_U16>(10 + id), .HDID = id, .LDID = 2});
        vd().BlockIDs[id - 1] = seam.blocks.back().ID;
        array().PDIDs[id - 1] = id;
        disk(id).Status = KT_PD_MEMBER;
    }
}
struct Activity : SeamTest {
    Activity() { layOut(); }
};
