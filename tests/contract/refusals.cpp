#include "frame.h"

// Adapter 0: an array that is being rebuilt, one without virtual disks, a CD drive (9), a SAS disk without a light (10)
// and a solid-state one (11).
// Adapter 1: virtual disks as many as it takes: a system, a degraded one, a hybrid one; disks 7 and 8 are free.
// Adapter 2 may have one block only.
static const char REFUSALS_LAB[] = R"({"adapters": [
  {"type": "array-based", "disks": [{"count": 8, "size": "100GB"}, {"size": "100GB", "spare": "global"},
     {"size": "1GB", "HDType": 8}, {"type": "SAS", "size": "100GB", "LocateLEDStatus": 255},
     {"type": "SATA SSD", "size": "100GB"}],
   "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"size": "10GiB"}]},
              {"level": "RAID1", "disks": [3, 4]}, {"level": "RAID0", "disks": [7]}]},
  {"type": "LD-based", "MaxLogicalDrive": 3, "disks": [
     {"count": 4, "type": "SATA", "size": "100GB"}, {"type": "SATA SSD", "size": "50GB"},
     {"count": 2, "type": "SATA", "size": "100GB"}, {"type": "SATA", "size": "10GB"}, {"type": "SATA", "size": "100GB"}],
   "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "10GiB", "os": true},
                    {"level": "RAID1", "disks": [2, 3], "size": "20GiB"},
                    {"level": "HYBRID", "disks": [4, 5], "size": "10GiB"}]},
  {"type": "LD-based", "MaxTotalBlocks": 1, "MaxTotalBlocks_V2": 1, "disks": [{"count": 2, "size": "10GB"}]}]})";

static const KT_U16 NOBODY = 99;

using Refusals = ContractTest;

static KT_U8 createRaid0(KT_U8 adapter, KT_U16 one, KT_U16 other) {
    _Create_LD_Param param = ldParam(KT_RAID0, {one, other});
    return KT_LD_Create(adapter, &param);
}

// What a list call answers to an id that is nobody's.
template <class Request>
static KT_U8 item(KT_U8 (*list)(KT_U8, Request*)) {
    Request request = {};
    return askItem(list, 0, NOBODY, request);
}

// A call with a record that is all zero.
template <class Record, class... Args>
static KT_U8 with(KT_U8 (*call)(KT_U8, KT_U16, Args...)) {
    std::remove_const_t<Record> record = {};
    return call(0, NOBODY, &record);
}

TEST_F(Refusals, NameWhatIsNotThere) {
    start(REFUSALS_LAB);
    _Create_LD_Param vd = ldParam(KT_RAID0, {});
    vd.LDID = NOBODY;
    _HD_MBR_Info mbr = {};
    mbr.HDCount = 1;
    mbr.HDIDs[0] = NOBODY;
    answer(KT_ERR_INVALID_PD, {item(KT_PD_GetHDInfo), item(KT_PD_GetHDInfo_Ext), item(KT_PD_GetHDRaidStatus),
                               item(KT_PD_GetConfig), item(KT_PD_GetBGAStatus), item(KT_PD_GetSmartStatus)});
    answer(KT_ERR_INVALID_PD, {with<_HD_CONFIG>(KT_PD_SetConfig), with<_HD_FreeSpaceInfo>(KT_PD_GetFreeSpaceInfo),
                               with<_HD_Block_Info>(KT_BLK_GetHDBlock), KT_PD_GetMBRInfo(0, &mbr),
                               KT_PD_SetHDStatus(0, NOBODY, 0), KT_PD_SetHDStatus(0, NOBODY, 1)});
    answer(KT_ERR_INVALID_PD,
           {KT_PD_BGAControl(0, NOBODY, KT_CONTROL_PAUSE), KT_PD_StartMediaPatrol(0, NOBODY),
            KT_PD_FreeHD2DGSpare(0, NOBODY, 0), KT_PD_FreeHD2GlobalSpare(0, NOBODY), KT_PD_Spare2FreeHD(0, NOBODY),
            KT_PD_WipeHDMDD(0, NOBODY, 1), KT_DiskHasOS(0, KT_DEVICE_PD, 1, &NOBODY),
            KT_LocateArrayDevice(0, KT_DEVICE_PD, NOBODY, 1)});
    answer(KT_ERR_INVALID_VD,
           {item(KT_LD_GetInfo), item(KT_LD_GetStatus), item(KT_LD_GetConfig), with<_LD_Config>(KT_LD_SetConfig),
            with<_LD_Info>(KT_LD_GetTargetLDInfo), migrateLd(0, NOBODY, KT_RAID0, {}), KT_LD_GetMigratedLdSize(0, &vd),
            KT_LD_Delete(0, NOBODY, 0), KT_LD_BGAControl(0, NOBODY, KT_CONTROL_PAUSE),
            KT_LD_StartINIT(0, NOBODY, KT_INIT_QUICK), KT_LD_StartConsistencyCheck(0, NOBODY, 0),
            KT_LD_StartRebuild(0, NOBODY, 0), KT_LD_Import(0, NOBODY), KT_LD_Report(0, NOBODY),
            KT_DiskHasOS(0, KT_DEVICE_VD, 1, &NOBODY), KT_LocateArrayDevice(0, KT_DEVICE_VD, NOBODY, 1)});
    answer(KT_ERR_INVALID_ARRAY, {item(KT_DG_GetInfo), item(KT_DG_GetConfig), with<_DG_CONFIG>(KT_DG_SetConfig),
                                  migrateDg(0, NOBODY, KT_RAID10, {3, 4}), KT_DG_Delete(0, NOBODY),
                                  KT_DG_BGAControl(0, NOBODY, KT_CONTROL_PAUSE),
                                  KT_LD_DG_StartRebuild(0, NOBODY, 1, &NOBODY), KT_PD_FreeHD2DGSpare(0, 5, NOBODY)});
    EXPECT_EQ(item(KT_BLK_GetInfo), KT_ERR_INVALID_BLOCK);
    EXPECT_EQ(item(KT_ENC_GetEnclosureInfo), KT_ERR_INVALID_ENCLOSURE);
    EXPECT_EQ(item(KT_PD_GetPMInfo), KT_ERR_INVALID_PM);
    EXPECT_EQ(item(KT_PD_GetExpanderInfo), KT_ERR_INVALID_EXPANDER);
}

TEST_F(Refusals, NameTheirReasonAndChangeNothing) {
    start(REFUSALS_LAB);
    succeed({failDisk(0, 2), failDisk(1, 3), KT_PD_StartMediaPatrol(1, 2)});
    const std::string before = show();
    answer(KT_ERR_LINK_TIMEOUT, {KT_PD_WipeHDMDD(1, 3, 1), KT_PD_SetHDStatus(1, 3, 1)});
    answer(KT_ERR_TANDEM_HDD_DATA, {KT_PD_WipeHDMDD(1, 5, 1)});
    answer(KT_ERR_TARGET_TOO_SMALL, {KT_LD_StartRebuild(1, 1, 7)});
    answer(KT_ERR_BGA_RUNNING, {KT_PD_StartMediaPatrol(1, 2)});
    answer(KT_ERR_NO_VD_ID, {createRaid0(1, 6, 8)});
    answer(KT_ERR_NO_RESOURCE, {createRaid0(2, 0, 1)});
    answer(KT_ERR_ATAPI, {createRaid0(0, 9, 5)});
    answer(KT_ERR_PD_TYPES_DIFFER, {createRaid0(0, 5, 11), createRaid0(0, 5, 10)});
    answer(KT_ERR_NOT_REDUNDANT, {KT_LD_DG_StartRebuild(0, 2, 1, &NOBODY)});
    answer(KT_ERR_ARRAY_EMPTY, {migrateDg(0, 1, KT_RAID10, {3, 4, 5, 6})});
    answer(KT_ERR_ARRAY_BUSY, {KT_LD_BGAControl(0, 0, KT_CONTROL_PAUSE)});
    answer(KT_ERR_PD_NOT_OFFLINE, {KT_PD_SetHDStatus(1, 2, 1)});
    answer(KT_ERR_PD_CANNOT_SET_DOWN, {KT_PD_SetHDStatus(1, 8, 0)});
    answer(KT_ERR_VD_HAS_OS, {KT_LD_Delete(1, 0, 1), KT_LD_StartINIT(1, 0, KT_INIT_QUICK), KT_PD_WipeHDMDD(1, 0, 1)});
    answer(KT_ERR_SGPIO, {KT_LocateArrayDevice(0, KT_DEVICE_PD, 10, 1)});
    EXPECT_TRUE(show() == before);
    EXPECT_EQ(KT_Flash_Erase(0, KT_PAGE_PD), KT_ERR_BGA_RUNNING) << "this one logs that it failed";
    const KT_U16 system = 0;
    EXPECT_EQ(KT_DiskHasOS(1, KT_DEVICE_VD, 1, &system), KT_ERR_VD_HAS_OS);
    succeed({failDisk(1, 0), failDisk(1, 1), KT_DiskHasOS(1, KT_DEVICE_VD, 1, &system), KT_LD_Delete(1, 0, 0)});
}
