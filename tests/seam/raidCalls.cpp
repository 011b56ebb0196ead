// The calls that create, delete, look at and set to work virtual disks, arrays and disks.
#include "tests/seam/seam.h"

static constexpr KT_U16 NEW_ID = 7;

template <class Record>
static KT_U8 take(const char* name, const std::string& arguments, const Record& record) {
    seam.sent[name] = bytesOf(record);
    return answer(name, arguments);
}

extern "C" {
KT_U8 KT_LD_GetInfo(KT_U8, _LD_Info_Request* request) {
    return list("KT_LD_GetInfo", request, seam.lds, [](const _LD_Info& ld) { return ld.ID; });
}
KT_U8 KT_LD_GetStatus(KT_U8, _LD_Status_Request* request) {
    return list("KT_LD_GetStatus", request, seam.ldStatuses, [](const _LD_STATUS& ld) { return ld.LDID; });
}
KT_U8 KT_LD_BGAControl(KT_U8, KT_U16 vd, KT_U8 control) {
    return answer("KT_LD_BGAControl", text(vd) + " " + text(control));
}
KT_U8 KT_LD_Delete(KT_U8, KT_U16 vd, KT_U8 stopBga) {
    return answer("KT_LD_Delete", text(vd) + " " + text(stopBga));
}
KT_U8 KT_LD_Create(KT_U8, _Create_LD_Param* param) {
    return take("KT_LD_Create", "", *param);
}
KT_U8 KT_LD_GetMaxSize(KT_U8, _Create_LD_Param* param) {
    KT_U8 status = take("KT_LD_GetMaxSize", "", *param);
    param->Size = seam.size;
    return status;
}
KT_U8 KT_LD_DG_QuickCreate(KT_U8, KT_U8 type) {
    return answer("KT_LD_DG_QuickCreate", text(type));
}
KT_U8 KT_CreateOrModify_VD(KT_U8, _CreateOrModify_VD_Param* param) {
    KT_U8 status = take("KT_CreateOrModify_VD", "", *param);
    param->VDID = NEW_ID;
    return status;
}

KT_U8 KT_DG_GetInfo(KT_U8, _DG_Info_Request* request) {
    return list("KT_DG_GetInfo", request, seam.arrays, [](const _DG_Info& array) { return array.DGID; });
}
KT_U8 KT_DG_GetConfig(KT_U8, _DG_Config_Request* request) {
    std::vector<_DG_CONFIG> configs = {{NEW_ID, 0, 0, "old", "untouched"}};
    return list("KT_DG_GetConfig", request, configs, [](const _DG_CONFIG& config) { return config.DGID; });
}
KT_U8 KT_DG_SetConfig(KT_U8, KT_U16 dg, const _DG_CONFIG* config) {
    return take("KT_DG_SetConfig", text(dg), *config);
}
KT_U8 KT_DG_Delete(KT_U8, KT_U16 dg) {
    return answer("KT_DG_Delete", text(dg));
}
KT_U8 KT_CreateOrModify_DG(KT_U8, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    KT_U8 status = take("KT_CreateOrModify_DG", text(sizeOnly), *param);
    param->DGID = NEW_ID;
    param->Size = seam.size;
    return status;
}

KT_U8 KT_PD_GetHDInfo(KT_U8, _HD_Info_Request* request) {
    return list("KT_PD_GetHDInfo", request, seam.hds, [](const _HD_Info& hd) { return hd.Link.Self.DevID; });
}
KT_U8 KT_PD_GetHDInfo_Ext(KT_U8, _HD_Info_Request* request) {
    return list("KT_PD_GetHDInfo_Ext", request, seam.hds, [](const _HD_Info& hd) { return hd.Link.Self.DevID; });
}
KT_U8 KT_PD_GetMBRInfo(KT_U8, _HD_MBR_Info* info) {
    KT_U8 status = take("KT_PD_GetMBRInfo", "", *info);
    for (unsigned i = 0; i < info->HDCount; ++i) {
        info->hasMBR[i] = seam.disksWithFileSystem.contains(info->HDIDs[i]);
    }
    return status;
}
KT_U8 KT_PD_Spare2FreeHD(KT_U8, KT_U16 pd) {
    return answer("KT_PD_Spare2FreeHD", text(pd));
}
KT_U8 KT_PD_FreeHD2GlobalSpare(KT_U8, KT_U16 pd) {
    return answer("KT_PD_FreeHD2GlobalSpare", text(pd));
}
KT_U8 KT_PD_FreeHD2DGSpare(KT_U8, KT_U16 pd, KT_U16 dg) {
    return answer("KT_PD_FreeHD2DGSpare", text(pd) + " " + text(dg));
}
KT_U8 KT_PD_WipeHDMDD(KT_U8, KT_U16 pd, KT_U8 force) {
    return answer("KT_PD_WipeHDMDD", text(pd) + " " + text(force));
}
KT_U8 KT_BBU_GetInfo(KT_U8, _BBU_Info* info) {
    *info = seam.battery;
    return answer("KT_BBU_GetInfo", "");
}

KT_U8 KT_PD_GetBGAStatus(KT_U8, _HD_BGA_Status_Request* request) {
    return list("KT_PD_GetBGAStatus", request, seam.hdActivities, [](const _HD_BGA_STATUS& hd) { return hd.HDID; });
}
KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8, KT_U16 pd, _HD_FreeSpaceInfo* info) {
    info->ValidSize = info->FreeSize = seam.freeSpace;
    return answer("KT_PD_GetFreeSpaceInfo", text(pd));
}
KT_U8 KT_LD_StartINIT(KT_U8, KT_U16 vd, KT_U8 type) {
    return answer("KT_LD_StartINIT", text(vd) + " " + text(type));
}
KT_U8 KT_LD_StartConsistencyCheck(KT_U8, KT_U16 vd, KT_U8 fix) {
    return answer("KT_LD_StartConsistencyCheck", text(vd) + " " + text(fix));
}
KT_U8 KT_LD_StartRebuild(KT_U8, KT_U16 vd, KT_U16 pd) {
    return answer("KT_LD_StartRebuild", text(vd) + " " + text(pd));
}
KT_U8 KT_LD_DG_StartRebuild(KT_U8, KT_U16 dg, KT_U8 count, const KT_U16* pds) {
    std::string arguments = text(dg) + " " + text(count);
    for (unsigned i = 0; i < count; ++i) {
        arguments += " " + text(pds[i]);
    }
    return answer("KT_LD_DG_StartRebuild", arguments);
}
KT_U8 KT_PD_StartMediaPatrol(KT_U8, KT_U16 pd) {
    return answer("KT_PD_StartMediaPatrol", text(pd));
}
KT_U8 KT_DG_BGAControl(KT_U8, KT_U16 dg, KT_U8 control) {
    return answer("KT_DG_BGAControl", text(dg) + " " + text(control));
}
KT_U8 KT_PD_BGAControl(KT_U8, KT_U16 pd, KT_U8 control) {
    return answer("KT_PD_BGAControl", text(pd) + " " + text(control));
}
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
