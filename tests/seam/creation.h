// What the tests of the creation commands stand on: an adapter with ten free disks and one array.
#pragma once

#include <gtest/gtest.h>

#include "tests/seam/seam.h"

struct Creation : SeamTest {
    _Adapter_Info& adapter = gAdapterInfo[0];
    Creation() {
        adapter.DevID = 0x4600;
        adapter.LogicalDriverMode = 0x0FFF;
        adapter.MaxParityDisks = 3;
        adapter.MaxVDPerDG = 8;
        addDisks(10);
        _DG_Info array = {};
        array.DGID = 3;
        array.RaidMode = KT_RAID6;
        array.SubVDCount = 1;
        array.NumParityDisk = 2;
        array.StripeBlockSize = 128;
        array.BlockSize = 4096;
        array.RemainingManagedSpace = 2048;
        array.VDSlotCount = 2;
        array.VDIDs[0] = 11;
        array.VDIDs[1] = KT_NO_ID;
        seam.arrays.push_back(array);
    }
};

// 129 disks, one more than a record holds.
inline std::string tooManyDisks() {
    std::string ids = "0";
    for (int id = 1; id <= 128; ++id) {
        ids += "," + std::to_string(id);
    }
    return ids;
}
template <size_t N, class Field>
void fill(Field (&field)[N], std::initializer_list<KT_U16> ids) {
    size_t at = 0;
    for (KT_U16 id : ids)
        field[at++] = static_cast<Field>(id);
}
inline void fillText(KT_U8* field, const std::string& name) {
    memcpy(field, name.data(), name.size());
}
