#include "call.h"

using namespace sim;

KT_U8 KT_PD_GetHDInfo(KT_U8 a, _HD_Info_Request* request) {
    return notSupported("KT_PD_GetHDInfo", a, {Arg{"request", ArgType::List, 0, request, sizeof(_HD_Info)}});
}

KT_U8 KT_PD_GetHDInfo_Ext(KT_U8 a, _HD_Info_Request* request) {
    return notSupported("KT_PD_GetHDInfo_Ext", a, {Arg{"request", ArgType::List, 0, request, sizeof(_HD_Info)}});
}

KT_U8 KT_PD_GetHDRaidStatus(KT_U8 a, _HD_RAID_Status_Request* request) {
    return notSupported("KT_PD_GetHDRaidStatus", a,
                        {Arg{"request", ArgType::List, 0, request, sizeof(_HD_RAID_STATUS)}});
}

KT_U8 KT_PD_GetConfig(KT_U8 a, _HD_Config_Request* request) {
    return notSupported("KT_PD_GetConfig", a, {Arg{"request", ArgType::List, 0, request, sizeof(_HD_CONFIG)}});
}

KT_U8 KT_PD_SetConfig(KT_U8 a, KT_U16 pd, const _HD_CONFIG* config) {
    return notSupported("KT_PD_SetConfig", a, {num("pd", pd), in("config", config)});
}

KT_U8 KT_PD_SetHDStatus(KT_U8 a, KT_U16 pd, KT_U8 status) {
    return notSupported("KT_PD_SetHDStatus", a, {num("pd", pd), num("status", status)});
}

KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8 a, KT_U16 pd, _HD_FreeSpaceInfo* info) {
    return notSupported("KT_PD_GetFreeSpaceInfo", a, {num("pd", pd), out("info", info)});
}

KT_U8 KT_PD_GetBGAStatus(KT_U8 a, _HD_BGA_Status_Request* request) {
    return notSupported("KT_PD_GetBGAStatus", a, {Arg{"request", ArgType::List, 0, request, sizeof(_HD_BGA_STATUS)}});
}

KT_U8 KT_PD_BGAControl(KT_U8 a, KT_U16 pd, KT_U8 control) {
    return notSupported("KT_PD_BGAControl", a, {num("pd", pd), num("control", control)});
}

KT_U8 KT_PD_StartMediaPatrol(KT_U8 a, KT_U16 pd) {
    return notSupported("KT_PD_StartMediaPatrol", a, {num("pd", pd)});
}

KT_U8 KT_PD_GetMBRInfo(KT_U8 a, _HD_MBR_Info* info) {
    return notSupported("KT_PD_GetMBRInfo", a, {inOut("info", info)});
}

KT_U8 KT_PD_GetSmartStatus(KT_U8 a, _HD_SMART_Status_Request* request) {
    return notSupported("KT_PD_GetSmartStatus", a,
                        {Arg{"request", ArgType::List, 0, request, sizeof(_HD_SMART_STATUS)}});
}

KT_U8 KT_PD_GET_SMART_INFO(KT_U8 a, KT_U16 pd, _SMART_Info* info) {
    return notSupported("KT_PD_GET_SMART_INFO", a, {num("pd", pd), out("info", info)});
}

KT_U8 KT_PD_GetPMInfo(KT_U8 a, _PM_Info_Request* request) {
    return notSupported("KT_PD_GetPMInfo", a, {Arg{"request", ArgType::List, 0, request, sizeof(_PM_Info)}});
}

KT_U8 KT_PD_GetExpanderInfo(KT_U8 a, _Exp_Info_Request* request) {
    return notSupported("KT_PD_GetExpanderInfo", a, {Arg{"request", ArgType::List, 0, request, sizeof(_Exp_Info)}});
}

KT_U8 KT_PD_FreeHD2DGSpare(KT_U8 a, KT_U16 pd, KT_U16 dg) {
    return notSupported("KT_PD_FreeHD2DGSpare", a, {num("pd", pd), num("dg", dg)});
}

KT_U8 KT_PD_FreeHD2GlobalSpare(KT_U8 a, KT_U16 pd) {
    return notSupported("KT_PD_FreeHD2GlobalSpare", a, {num("pd", pd)});
}

KT_U8 KT_PD_Spare2FreeHD(KT_U8 a, KT_U16 pd) {
    return notSupported("KT_PD_Spare2FreeHD", a, {num("pd", pd)});
}

KT_U8 KT_PD_WipeHDMDD(KT_U8 a, KT_U16 pd, KT_U8 force) {
    return notSupported("KT_PD_WipeHDMDD", a, {num("pd", pd), num("force", force)});
}

KT_U8 KT_DiskHasOS(KT_U8 a, KT_U8 kind, KT_U8 count, const KT_U16* ids) {
    return notSupported("KT_DiskHasOS", a,
                        {num("kind", kind), num("count", count), bytes("ids", ids, sizeof(KT_U16) * count)});
}

KT_U8 KT_LocateArrayDevice(KT_U8 a, KT_U8 kind, KT_U16 id, KT_U8 on) {
    return notSupported("KT_LocateArrayDevice", a, {num("kind", kind), num("id", id), num("on", on)});
}

KT_U8 KT_PassThrough_ATA(KT_U8 a, KT_U16 pd, _ATA_PassThrough* command) {
    return notSupported("KT_PassThrough_ATA", a, {num("pd", pd), inOut("command", command)});
}
