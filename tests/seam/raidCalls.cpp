// The calls that create, delete, look at and set to work virtual disks, arrays and disks.
#include "tests/seam/seam.h"

static constexpr KT_U16 NEW_ID = 7;

extern "C" {
LISTS(KT_LD_GetInfo, _LD_Info_Request, seam.lds, ID)
LISTS(KT_LD_GetStatus, _LD_Status_Request, seam.ldStatuses, LDID)
LISTS(KT_DG_GetInfo, _DG_Info_Request, seam.arrays, DGID)
LISTS(KT_PD_GetHDRaidStatus, _HD_RAID_Status_Request, seam.disks, HDID)
LISTS(KT_PD_GetHDInfo, _HD_Info_Request, seam.hds, Link.Self.DevID)
LISTS(KT_PD_GetHDInfo_Ext, _HD_Info_Request, seam.hds, Link.Self.DevID)
LISTS(KT_PD_GetBGAStatus, _HD_BGA_Status_Request, seam.hdActivities, HDID)
LISTS(KT_PD_GetConfig, _HD_Config_Request, seam.hdConfigs, HDID)
LISTS(KT_LD_GetConfig, _LD_Config_Request, seam.ldConfigs, LDID)
LISTS(KT_BLK_GetInfo, _BLK_Info_Request, seam.blocks, ID)
CALL(KT_DG_GetConfig, (KT_U8, _DG_Config_Request* request),
     list(name, request, std::vector<_DG_CONFIG>{{NEW_ID, 0, 0, "old", "untouched"}},
          [](const _DG_CONFIG& config) { return config.DGID; }))
CALL(KT_BBU_GetInfo, (KT_U8, _BBU_Info* info), give(name, info, seam.battery))

CALL(KT_LD_Delete, (KT_U8, KT_U16 vd, KT_U8 stop), note(name, vd, stop))
CALL(KT_LD_Create, (KT_U8, _Create_LD_Param* param), take(name, name, *param))
CALL(KT_LD_DG_QuickCreate, (KT_U8, KT_U8 type), note(name, type))
CALL(KT_LD_SetConfig, (KT_U8, KT_U16 vd, const _LD_Config*), note(name, vd))
CALL(KT_DG_SetConfig, (KT_U8, KT_U16 dg, const _DG_CONFIG* config), take(name, name, *config, dg))
CALL(KT_DG_Delete, (KT_U8, KT_U16 dg), note(name, dg))
CALL(KT_PD_SetConfig, (KT_U8, KT_U16 pd, const _HD_CONFIG*), note(name, pd))
CALL(KT_PD_SetHDStatus, (KT_U8, KT_U16 pd, KT_U8 status), note(name, pd, status))
CALL(KT_PD_Spare2FreeHD, (KT_U8, KT_U16 pd), note(name, pd))
CALL(KT_PD_FreeHD2GlobalSpare, (KT_U8, KT_U16 pd), note(name, pd))
CALL(KT_PD_FreeHD2DGSpare, (KT_U8, KT_U16 pd, KT_U16 dg), note(name, pd, dg))
CALL(KT_PD_WipeHDMDD, (KT_U8, KT_U16 pd, KT_U8 force), note(name, pd, force))
CALL(KT_LD_BGAControl, (KT_U8, KT_U16 vd, KT_U8 control), note(name, vd, control))
CALL(KT_DG_BGAControl, (KT_U8, KT_U16 dg, KT_U8 control), note(name, dg, control))
CALL(KT_PD_BGAControl, (KT_U8, KT_U16 pd, KT_U8 control), note(name, pd, control))
CALL(KT_LD_StartINIT, (KT_U8, KT_U16 vd, KT_U8 type), note(name, vd, type))
CALL(KT_LD_StartConsistencyCheck, (KT_U8, KT_U16 vd, KT_U8 fix), note(name, vd, fix))
CALL(KT_LD_StartRebuild, (KT_U8, KT_U16 vd, KT_U16 pd), note(name, vd, pd))
CALL(KT_PD_StartMediaPatrol, (KT_U8, KT_U16 pd), note(name, pd))
CALL(KT_LD_PauseAll, (KT_U8 adapter), note(name, adapter))
CALL(KT_LD_StartMigration, (KT_U8, _Create_LD_Param* param), take(name, name, *param, param->LDID))
KT_U8 KT_LD_DG_StartRebuild(KT_U8, KT_U16 dg, KT_U8 count, const KT_U16* pds) {
    std::string arguments = text(dg) + " " + text(count);
    for (unsigned i = 0; i < count; ++i) {
        arguments += " " + text(pds[i]);
    }
    return answer("KT_LD_DG_StartRebuild", arguments);
}

// Calls that fill in what they were handed.
KT_U8 KT_LD_GetMaxSize(KT_U8, _Create_LD_Param* param) {
    KT_U8 status = take("KT_LD_GetMaxSize", "KT_LD_GetMaxSize", *param);
    param->Size = seam.size;
    return status;
}
KT_U8 KT_CreateOrModify_VD(KT_U8, _CreateOrModify_VD_Param* param) {
    KT_U8 status = take("KT_CreateOrModify_VD", "KT_CreateOrModify_VD", *param);
    param->VDID = NEW_ID;
    return status;
}
KT_U8 KT_CreateOrModify_DG(KT_U8, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    KT_U8 status = take("KT_CreateOrModify_DG", "KT_CreateOrModify_DG", *param, sizeOnly);
    param->DGID = NEW_ID;
    param->Size = seam.size;
    return status;
}
KT_U8 KT_PD_GetMBRInfo(KT_U8, _HD_MBR_Info* info) {
    KT_U8 status = take("KT_PD_GetMBRInfo", "KT_PD_GetMBRInfo", *info);
    for (unsigned i = 0; i < info->HDCount; ++i) {
        info->hasMBR[i] = seam.disksWithFileSystem.contains(info->HDIDs[i]);
    }
    return status;
}
KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8, KT_U16 pd, _HD_FreeSpaceInfo* info) {
    info->ValidSize = info->FreeSize = seam.freeSpace;
    return note("KT_PD_GetFreeSpaceInfo", pd);
}
KT_U8 KT_LD_GetMigratedLdSize(KT_U8, _Create_LD_Param* param) {
    const char name[] = "KT_LD_GetMigratedLdSize";
    KT_U8 status = take(name, name, *param, param->LDID, param->RaidMode, param->NumParityDisk);
    if (status == KT_OK) param->Size = seam.size;
    return status;
}
KT_U8 KT_DG_StartMigration(KT_U8, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    if (sizeOnly == 0) return take("KT_DG_StartMigration", "KT_DG_StartMigration", *param, param->DGID);
    const char name[] = "KT_DG_StartMigration size";
    KT_U8 status = take(name, name, *param, param->DGID, param->RaidMode, param->NumParityDisk);
    if (status == KT_OK) param->Size = seam.size;
    return status;
}
}
