// The blocks that a virtual disk is made of.
#pragma once

#include "Public/listing.h"

// How many slots of BlockIDs are in use, and the id that marks an empty one among them.
struct BlockSlots {
    unsigned count;
    KT_U16 empty;
};

inline BlockSlots blockSlots(const _LD_Info& ld) {
    constexpr unsigned room = sizeof ld.BlockIDs / sizeof ld.BlockIDs[0];
    // Firmware that does not count its blocks fills sixteen slots and marks the empty ones with an eight-bit id.
    if (ld.BlkCount == 0) return {16, 0xFF};
    return {ld.BlkCount < room ? ld.BlkCount : room, KT_NO_ID};
}

// Asks the library for each block and calls visit(status, block) -> status; a status other than KT_OK that it answers
// ends the walk and is returned.
template <class Visit>
KT_U8 eachBlock(const _LD_Info& ld, Visit visit) {
    BlockSlots slots = blockSlots(ld);
    for (unsigned i = 0; i < slots.count; ++i) {
        if (ld.BlockIDs[i] == slots.empty) continue;
        _BLK_Info_Request answer;
        KT_U8 status = getItem(KT_BLK_GetInfo, ld.BlockIDs[i], answer);
        status = visit(status, answer.blkInfo[0]);
        if (status != KT_OK) return status;
    }
    return KT_OK;
}
