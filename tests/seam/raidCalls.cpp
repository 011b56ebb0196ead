// The calls that create, delete, look at and set to work virtual disks, arrays and disks.
#include "tests/seam/seam.h"

static constexpr KT_U16 NEW_ID = 7;

extern "C" {
LISTS(KT_LD_GetInfo, _LD_Info_Request, seam.lds, ID)
LISTS(KT_LD_GetStatus, _LD_Status_Request, seam.ldStatuses, LDID)
NOTES2(KT_LD_BGAControl, KT_U16, KT_U8)
NOTES2(KT_LD_Delete, KT_U16, KT_U8)
KT_U8 KT_LD_Create(KT_U8, _Create_LD_Param* param) {
    return take("KT_LD_Create", "", *param);
}
KT_U8 KT_LD_GetMaxSize(KT_U8, _Create_LD_Param* param) {
    KT_U8 status = take("KT_LD_GetMaxSize", "", *param);
    param->Size = seam.size;
    return status;
}
NOTES1(KT_LD_DG_QuickCreate, KT_U8)
KT_U8 KT_CreateOrModify_VD(KT_U8, _CreateOrModify_VD_Param* param) {
    KT_U8 status = take("KT_CreateOrModify_VD", "", *param);
    param->VDID = NEW_ID;
    return status;
}

LISTS(KT_DG_GetInfo, _DG_Info_Request, seam.arrays, DGID)
KT_U8 KT_DG_GetConfig(KT_U8, _DG_Config_Request* request) {
    std::vector<_DG_CONFIG> configs = {{NEW_ID, 0, 0, "old", "untouched"}};
    return list("KT_DG_GetConfig", request, configs, [](const _DG_CONFIG& config) { return config.DGID; });
}
KT_U8 KT_DG_SetConfig(KT_U8, KT_U16 dg, const _DG_CONFIG* config) {
    return take("KT_DG_SetConfig", text(dg), *config);
}
NOTES1(KT_DG_Delete, KT_U16)
KT_U8 KT_CreateOrModify_DG(KT_U8, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    KT_U8 status = take("KT_CreateOrModify_DG", text(sizeOnly), *param);
    param->DGID = NEW_ID;
    param->Size = seam.size;
    return status;
}

LISTS(KT_PD_GetHDInfo, _HD_Info_Request, seam.hds, Link.Self.DevID)
LISTS(KT_PD_GetHDInfo_Ext, _HD_Info_Request, seam.hds, Link.Self.DevID)
KT_U8 KT_PD_GetMBRInfo(KT_U8, _HD_MBR_Info* info) {
    KT_U8 status = take("KT_PD_GetMBRInfo", "", *info);
    for (unsigned i = 0; i < info->HDCount; ++i) {
        info->hasMBR[i] = seam.disksWithFileSystem.contains(info->HDIDs[i]);
    }
    return status;
}
NOTES1(KT_PD_Spare2FreeHD, KT_U16)
NOTES1(KT_PD_FreeHD2GlobalSpare, KT_U16)
NOTES2(KT_PD_FreeHD2DGSpare, KT_U16, KT_U16)
NOTES2(KT_PD_WipeHDMDD, KT_U16, KT_U8)
KT_U8 KT_BBU_GetInfo(KT_U8, _BBU_Info* info) {
    *info = seam.battery;
    return answer("KT_BBU_GetInfo", "");
}

LISTS(KT_PD_GetBGAStatus, _HD_BGA_Status_Request, seam.hdActivities, HDID)
KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8, KT_U16 pd, _HD_FreeSpaceInfo* info) {
    info->ValidSize = info->FreeSize = seam.freeSpace;
    return answer("KT_PD_GetFreeSpaceInfo", text(pd));
}
NOTES2(KT_LD_StartINIT, KT_U16, KT_U8)
NOTES2(KT_LD_StartConsistencyCheck, KT_U16, KT_U8)
NOTES2(KT_LD_StartRebuild, KT_U16, KT_U16)
KT_U8 KT_LD_DG_StartRebuild(KT_U8, KT_U16 dg, KT_U8 count, const KT_U16* pds) {
    std::string arguments = text(dg) + " " + text(count);
    for (unsigned i = 0; i < count; ++i) {
        arguments += " " + text(pds[i]);
    }
    return answer("KT_LD_DG_StartRebuild", arguments);
}
NOTES1(KT_PD_StartMediaPatrol, KT_U16)
NOTES2(KT_DG_BGAControl, KT_U16, KT_U8)
NOTES2(KT_PD_BGAControl, KT_U16, KT_U8)
KT_U8 KT_LD_PauseAll(KT_U8 adapter) {
    return answer("KT_LD_PauseAll", text(adapter));
}
KT_U8 KT_LD_GetMigratedLdSize(KT_U8, _Create_LD_Param* param) {
    KT_U8 status = take("KT_LD_GetMigratedLdSize",
                        text(param->LDID) + " " + text(param->RaidMode) + " " + text(param->NumParityDisk), *param);
    if (status == KT_OK) param->Size = seam.size;
    return status;
}
KT_U8 KT_LD_StartMigration(KT_U8, _Create_LD_Param* param) {
    return take("KT_LD_StartMigration", text(param->LDID), *param);
}
KT_U8 KT_DG_StartMigration(KT_U8, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    if (sizeOnly == 0) return take("KT_DG_StartMigration", text(param->DGID), *param);
    KT_U8 status = take("KT_DG_StartMigration size",
                        text(param->DGID) + " " + text(param->RaidMode) + " " + text(param->NumParityDisk), *param);
    if (status == KT_OK) param->Size = seam.size;
    return status;
}
}
