#include "Functions/set/objects.h"

#include <cstring>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/settings.h"

template <class Request>
static KT_U8 readItem(KT_U8 (*call)(KT_U8, Request*), KT_U16 id, SetRecord& record) {
    Request request;
    KT_U8 status = getItem(call, id, request);
    if (status == KT_OK) memcpy(&record, &request.header + 1, sizeof request - sizeof request.header);
    return status;
}

static KT_U8 readVd(KT_U16 id, SetRecord& record) {
    KT_U8 status = readItem(KT_LD_GetConfig, id, record);
    if (status != KT_OK) out("\nVD %d is invalid (error %d: %s)\n", id, status, ErrorMessage(status));
    return status;
}

static KT_U8 readPd(KT_U16 id, SetRecord& record) {
    KT_U8 status = readItem(KT_PD_GetConfig, id, record);
    if (status != KT_OK) {
        out("\nUnable to get configuration of hard disk %d (error %d : %s).\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 readArray(KT_U16 id, SetRecord& record) {
    KT_U8 status = readItem(KT_DG_GetConfig, id, record);
    if (status != KT_OK) {
        out("\nUnable to get configuration of array %d (error %d: %s)\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 readHba(KT_U16 id, SetRecord& record) {
    KT_U8 status = KT_Adapter_GetConfig(gCurrentAdapter, &record.hba);
    if (status != KT_OK) {
        out("\nUnable to get configuration info of hba %d (error %d: %s)\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 readBattery(SetRecord& record) {
    KT_U8 status = KT_BBU_GetInfo(gCurrentAdapter, &record.bbu);
    if (status != KT_OK) {
        out("Unable to get info of BBU. (error %d: %s).\n", status, ErrorMessage(status));
    } else if (record.bbu.status == 0) {
        out("No BBU is found.\n");
        status = KT_ERR_INVALID_BBU;
    }
    return status;
}

KT_U8 readObject(const SetRequest& request, SetRecord& record) {
    memset(&record, 0, sizeof record);
    switch (request.object) {
    case SetObject::Vd:
        return readVd(request.id, record);
    case SetObject::Pd:
        return readPd(request.id, record);
    case SetObject::Array:
        return readArray(request.id, record);
    case SetObject::Hba:
        return readHba(request.id, record);
    default:
        return readBattery(record);
    }
}

static KT_U8 writeVd(KT_U16 id, const _LD_Config& config) {
    KT_U8 status = KT_LD_SetConfig(gCurrentAdapter, id, &config);
    if (status != KT_OK)
        out("\nUnable to set configuration of VD %d (error %d: %s)\n", id, status, ErrorMessage(status));
    return status;
}

static KT_U8 writePd(KT_U16 id, const _HD_CONFIG& config) {
    KT_U8 status = KT_PD_SetConfig(gCurrentAdapter, id, &config);
    if (status != KT_OK) {
        out("\nUnable to set configuration of hard disk %d (error %d : %s).\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 writeArray(KT_U16 id, const _DG_CONFIG& config) {
    KT_U8 status = KT_DG_SetConfig(gCurrentAdapter, id, &config);
    if (status != KT_OK) {
        out("\nUnable to set configuration of array %d (error %d: %s)\n", id, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 writeHba(KT_U16 id, const _Adapter_Config_V2& config) {
    KT_U8 status = KT_Adapter_SetConfig(gCurrentAdapter, &config);
    if (status != KT_OK) {
        out("\nUnable to set configuration info of hba %d (error %d: %s)\n", id, status, ErrorMessage(status));
    }
    return status;
}

KT_U8 writeObject(const SetRequest& request, const SetRecord& record) {
    switch (request.object) {
    case SetObject::Vd:
        return writeVd(request.id, record.vd);
    case SetObject::Pd:
        return writePd(request.id, record.pd);
    case SetObject::Array:
        return writeArray(request.id, record.array);
    default:
        return writeHba(request.id, record.hba);
    }
}

KT_U8 setDiskStatus(KT_U16 pd, bool online) {
    KT_U8 status = KT_PD_SetHDStatus(gCurrentAdapter, pd, online ? 1 : 0);
    if (status != KT_OK) {
        out("\nUnable to set hard disk %d %s (error %d : %s).\n", pd, online ? "online" : "offline", status,
            ErrorMessage(status));
    }
    return status;
}

KT_U8 muteAlarm() {
    KT_U8 status = KT_AdapterMute(gCurrentAdapter);
    if (status != KT_OK) {
        out("\nUnable to mute the alarm of hba %d (error %d: %s)\n", gCurrentAdapter, status, ErrorMessage(status));
    }
    return status;
}

KT_U8 changePower(KT_U8 action) {
    KT_U8 status = KT_BBU_ChangePower(gCurrentAdapter, action);
    if (status != KT_OK) out("Unable to set power of BBU. (error %d: %s).\n", status, ErrorMessage(status));
    return status;
}

static const char* powerWord(KT_U8 status) {
    if ((status & KT_BBU_CHARGING) != 0) return "charging";
    return (status & KT_BBU_DISCHARGING) != 0 ? "discharging" : "idle";
}

void printObject(const SetRequest& request, const SetRecord& record) {
    switch (request.object) {
    case SetObject::Vd:
        ldGet_printf(&record.vd);
        printStr(CONFIG_WIDTH, "read policy:", (record.vd.CachePolicy & KT_CACHE_READ_AHEAD) != 0 ? "ra" : "none");
        printField(CONFIG_WIDTH, "name:", record.vd.Name);
        break;
    case SetObject::Pd:
        hdGet_printf(&record.pd);
        printStr(CONFIG_WIDTH, "SMART:", onOff(record.pd.SMARTOn != 0));
        printStr(CONFIG_WIDTH, "status:", record.pd.Online != 0 ? "online" : "offline");
        break;
    case SetObject::Array:
        dgGet_printf(&record.array);
        printField(CONFIG_WIDTH, "name:", record.array.Name);
        break;
    case SetObject::Hba:
        hbaGet_printf(gCurrentAdapter, &record.hba);
        if (currentAdapter().AlarmSupport != 0) printStr(CONFIG_WIDTH, "Alarm:", onOff(record.hba.AlarmOn != 0));
        break;
    default:
        printStr(CONFIG_WIDTH, "BBU status:", powerWord(record.bbu.status));
        out("%-*s %d %%\n", CONFIG_WIDTH, "BBU charge:", record.bbu.percentage);
        break;
    }
}
