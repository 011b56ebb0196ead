#include "frame.h"

#include <set>

// Virtual disk 0 is a plain one, 1 a hybrid one of 200 GiB; disks 4 and 5 are free, 6 is a spare.
static const char HYBRID_LAB[] = R"({"adapters": [
  {"type": "LD-based", "PortCount": 8, "disks": [
     {"count": 3, "size": "1TB"}, {"type": "SATA SSD", "size": "240GB"}, {"count": 2, "size": "1TB"},
     {"size": "1TB", "spare": "global"}],
   "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "10GiB"},
                    {"level": "HYBRID", "disks": [3, 2], "size": "200GiB"}]},
  {"type": "array-based", "disks": [{}]}]})";
static const KT_U64 SIZE = KT_U64{200} << 30;

struct Hybrid : LabTest<HYBRID_LAB> {};

struct Asked {
    KT_U8 type = KT_REQUEST_ITEM;
    KT_U16 records = 1;
    KT_U8 adapter = 0;
};

static KT_U8 add(KT_U16 vd, KT_U64 from, KT_U64 length, Asked asked = {}) {
    _Tandemix_Entry_Request request = {};
    request.header.requestType = asked.type;
    request.header.numRequested = asked.records;
    request.start = from;
    request.length = length;
    return KT_Tandemix_AddFSEntries(asked.adapter, vd, &request, 0);
}

static int used() {
    _Tandemix_Table_Info info = {};
    succeed({KT_Tandemix_GetEntriesTableInfo(0, 1, &info)});
    return info.total - info.remaining;
}

TEST_F(Hybrid, TablesFill) {
    EXPECT_EQ(adapterInfo(0).MaxTandemHdd, 1);
    succeed({add(1, 0, 0), add(1, SIZE - 1, 1), reopen()});
    EXPECT_EQ(used(), 2);
    answer(KT_ERR_OUT_OF_RANGE, {add(1, SIZE, 1), add(1, 1, ~KT_U64{0}), add(1, ~KT_U64{0}, 1)});
    EXPECT_EQ(add(1, 0, 1, {KT_REQUEST_LIST}), KT_ERR_REQUEST_TYPE);
    EXPECT_EQ(add(1, 0, 1, {KT_REQUEST_ITEM, 2}), KT_ERR_NUM_REQUESTED);
    EXPECT_EQ(add(0, 0, 1), KT_ERR_INVALID_RAID_MODE);
    EXPECT_EQ(add(7, 0, 1), KT_ERR_INVALID_VD);
    EXPECT_EQ(add(0, 0, 1, {KT_REQUEST_ITEM, 1, 1}), KT_ERR_NOT_ON_THIS_ADAPTER);
    EXPECT_EQ(used(), 2);
    _Tandemix_Table_Info info = {};
    succeed({KT_Tandemix_GetEntriesTableInfo(0, 1, &info)});
    for (int i = 2; i < info.total; ++i)
        succeed({add(1, 0, 1)});
    EXPECT_EQ(add(1, 0, 1), KT_ERR_NO_RESOURCE);
    EXPECT_NE(show().find("hybridEntries"), std::string::npos);
    succeed({KT_Tandemix_RemoveEntriesTable(0, 1), add(1, 0, 1)});
    EXPECT_EQ(used(), 1);
    answer(KT_ERR_INVALID_RAID_MODE,
           {KT_Tandemix_RemoveEntriesTable(0, 0), KT_Tandemix_GetEntriesTableInfo(0, 0, &info)});
}

TEST_F(Hybrid, MagicsAreTheDevicesOwn) {
    _Device_Magic magics[5] = {};
    magics[1].ID = magics[4].ID = 1;
    magics[2].ID = 5;
    succeed({KT_Tandem_GetHDMagic(0, 3, magics), KT_Tandem_GetVDMagic(0, 2, magics + 3)});
    std::set<std::string> all;
    for (const _Device_Magic& magic : magics)
        all.insert(std::string(reinterpret_cast<const char*>(magic.Magic), 20));
    EXPECT_EQ(all.size(), 5U);
    EXPECT_EQ(all.begin()->find_first_not_of("0123456789ABCDEF"), std::string::npos);
    EXPECT_EQ(KT_Tandem_GetHDMagic(0, 0, magics), KT_ERR_NUM_REQUESTED);
    EXPECT_EQ(KT_Tandem_GetHDMagic(1, 1, magics), KT_ERR_NOT_ON_THIS_ADAPTER);
    magics[0].ID = 99;
    EXPECT_EQ(KT_Tandem_GetHDMagic(0, 1, magics), KT_ERR_INVALID_PD);
    EXPECT_EQ(KT_Tandem_GetVDMagic(0, 1, magics), KT_ERR_INVALID_VD);
}

TEST_F(Hybrid, LinksGoToFreeDisks) {
    KT_U16 pd = 7;
    succeed({KT_VDHDD_GetLink(0, 1, &pd)});
    EXPECT_EQ(pd, KT_NO_ID);
    EXPECT_EQ(KT_VDHDD_AddLink(0, 1, 0), KT_ERR_PD_ASSIGNED) << "a member";
    EXPECT_EQ(KT_VDHDD_AddLink(0, 1, 6), KT_ERR_IS_SPARE);
    EXPECT_EQ(KT_VDHDD_AddLink(0, 1, 60), KT_ERR_INVALID_PD);
    answer(KT_ERR_INVALID_VD, {KT_VDHDD_AddLink(0, 9, 4), KT_VDHDD_GetLink(0, 9, &pd)});
    succeed({KT_VDHDD_AddLink(0, 1, 4), KT_VDHDD_AddLink(0, 0, 5), KT_VDHDD_GetLink(0, 1, &pd), failDisk(0, 5)});
    EXPECT_EQ(pd, 4);
    EXPECT_EQ(KT_VDHDD_AddLink(0, 0, 4), KT_ERR_PD_ASSIGNED) << "linked already";
    EXPECT_EQ(KT_VDHDD_AddLink(0, 0, 5), KT_ERR_PD_MISSING);
}
