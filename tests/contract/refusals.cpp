#include "frame.h"
#include "outside.h"

// Adapter 0: an array that is being rebuilt, one without virtual disks, a CD drive (9), a SAS disk without a light (10)
// and a solid-state one (11).
// Adapter 1: virtual disks as many as it takes: a system, a degraded one, a hybrid one; disks 7 and 8 are free.
static const char LAB[] = R"({"adapters": [
  {"type": "array-based", "disks": [{"count": 8, "size": "100GB"}, {"size": "100GB", "spare": "global"},
     {"size": "1GB", "HDType": 8}, {"type": "SAS", "size": "100GB", "LocateLEDStatus": 255},
     {"type": "SATA SSD", "size": "100GB"}],
   "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"size": "10GiB"}]},
              {"level": "RAID1", "disks": [3, 4]}]},
  {"type": "LD-based", "MaxLogicalDrive": 3, "disks": [
     {"count": 4, "type": "SATA", "size": "100GB"}, {"type": "SATA SSD", "size": "50GB"},
     {"count": 2, "type": "SATA", "size": "100GB"}, {"type": "SATA", "size": "10GB"}, {"type": "SATA", "size": "100GB"}],
   "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "10GiB", "os": true},
                    {"level": "RAID1", "disks": [2, 3], "size": "20GiB"},
                    {"level": "HYBRID", "disks": [4, 5], "size": "10GiB"}]}]})";

using Refusals = ContractTest;

static KT_U8 createRaid0(KT_U8 adapter, KT_U16 one, KT_U16 other) {
    _Create_LD_Param param = ldParam(KT_RAID0, {one, other});
    return KT_LD_Create(adapter, &param);
}

static KT_U8 migrateArray(KT_U16 id) {
    _CreateOrModify_DG_Param param = dgParam(KT_RAID10, {3, 4, 5, 6});
    param.DGID = id;
    return KT_DG_StartMigration(0, &param, 0);
}

TEST_F(Refusals, NameTheirReasonAndChangeNothing) {
    start(LAB);
    outside::failDisk(0, 2);
    outside::failDisk(1, 3);
    ASSERT_EQ(KT_PD_StartMediaPatrol(1, 2), KT_OK);
    const struct {
        KT_U8 expected;
        KT_U8 (*call)();
    } cases[] = {
        {KT_ERR_LINK_TIMEOUT, [] { return KT_PD_WipeHDMDD(1, 3, 1); }},
        {KT_ERR_LINK_TIMEOUT, [] { return KT_PD_SetHDStatus(1, 3, 1); }},
        {KT_ERR_TANDEM_HDD_DATA, [] { return KT_PD_WipeHDMDD(1, 5, 1); }},
        {KT_ERR_TARGET_TOO_SMALL, [] { return KT_LD_StartRebuild(1, 1, 7); }},
        {KT_ERR_BGA_RUNNING, [] { return KT_PD_StartMediaPatrol(1, 2); }},
        {KT_ERR_NO_VD_ID, [] { return createRaid0(1, 6, 8); }},
        {KT_ERR_ATAPI, [] { return createRaid0(0, 9, 5); }},
        {KT_ERR_PD_TYPES_DIFFER, [] { return createRaid0(0, 5, 11); }},
        {KT_ERR_PD_TYPES_DIFFER, [] { return createRaid0(0, 5, 10); }},
        {KT_ERR_ARRAY_EMPTY, [] { return migrateArray(1); }},
        {KT_ERR_ARRAY_BUSY, [] { return KT_LD_BGAControl(0, 0, KT_CONTROL_PAUSE); }},
        {KT_ERR_PD_NOT_OFFLINE, [] { return KT_PD_SetHDStatus(1, 2, 1); }},
        {KT_ERR_VD_HAS_OS, [] { return KT_LD_Delete(1, 0, 1); }},
        {KT_ERR_VD_HAS_OS, [] { return KT_LD_StartINIT(1, 0, KT_INIT_QUICK); }},
        {KT_ERR_VD_HAS_OS, [] { return KT_PD_WipeHDMDD(1, 0, 1); }},
        {KT_ERR_SGPIO, [] { return KT_LocateArrayDevice(0, KT_DEVICE_PD, 10, 1); }},
        {KT_ERR_INVALID_ARRAY, [] { return KT_DG_Delete(0, 7); }},
    };
    const std::string before = show();
    for (const auto& each : cases) {
        EXPECT_EQ(each.call(), each.expected) << &each - cases;
        EXPECT_TRUE(show() == before) << &each - cases;
    }
    EXPECT_EQ(KT_Flash_Erase(0, KT_PAGE_PD), KT_ERR_BGA_RUNNING) << "this one logs that it failed";
    const KT_U16 system = 0;
    EXPECT_EQ(KT_DiskHasOS(1, KT_DEVICE_VD, 1, &system), KT_ERR_VD_HAS_OS);
    outside::failDisk(1, 0);
    outside::failDisk(1, 1);
    EXPECT_EQ(KT_DiskHasOS(1, KT_DEVICE_VD, 1, &system), KT_OK) << "the system has crashed";
    EXPECT_EQ(KT_LD_Delete(1, 0, 0), KT_OK);
}
