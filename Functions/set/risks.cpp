#include "Functions/set/risks.h"

#include "Public/diskUse.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/raidRules.h"

// A battery keeps the adapter's cache while it is there, holds something and is not being emptied.
static bool keepsCache(const _BBU_Info& battery) {
    if ((battery.status & KT_BBU_PRESENT) == 0 || (battery.status & KT_BBU_DISCHARGING) != 0) return false;
    return (battery.sensorSupport & KT_SENSOR_CAPACITY) == 0 || battery.percentage != 0;
}

static bool hasGoodBattery() {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_BBU) == 0) return false;
    _BBU_Info battery = {};
    return KT_BBU_GetInfo(gCurrentAdapter, &battery) == KT_OK && keepsCache(battery);
}

// True when the change turns a write cache on that was off, or whose battery nobody asked for.
static bool turnsOn(const SettingChange* change, const SetRecord& record, KT_U8 on) {
    return change != nullptr && change->bits == on && !holds(*change, record);
}

static bool nameVdRisks(const SetRequest& request, const SetRecord& record) {
    const bool on = turnsOn(changeOf(request, SetValue::CacheMode), record, 0) ||
                    turnsOn(changeOf(request, SetValue::WritePolicy), record, 0);
    if (!on || hasGoodBattery()) return false;
    out("No battery keeps what VD %d has in its write cache: it will be lost when the power fails.\n", request.id);
    return true;
}

// The cache is that of the disks themselves, which no battery of the adapter keeps.
static bool nameDiskCacheRisk(const SetRequest& request, const SetRecord& record) {
    for (int i = 0; i < request.count; ++i) {
        const SettingChange& change = request.changes[i];
        if (change.row->option != 'c' || !turnsOn(&change, record, 1)) continue;
        if (request.object == SetObject::Pd) {
            out("No battery keeps the write cache of PD %d: what it holds will be lost when the power fails.\n",
                request.id);
        } else {
            out("No battery keeps the write cache of the disks of array %d: what it holds will be lost when the power "
                "fails.\n",
                request.id);
        }
        return true;
    }
    return false;
}

// What a virtual disk comes to when it loses a disk; null for one that is lost already.
static const char* outlook(const _LD_Info& vd) {
    if (vd.Status == KT_VD_OFFLINE) return nullptr;
    if (vd.RaidMode == KT_RAID0 || vd.RaidMode == KT_JBOD) return "goes offline";
    if (vd.Status == KT_VD_DEGRADED || isHybridLevel(vd.RaidMode)) return "may go offline";
    const bool twice = vd.RaidMode == KT_RAID6 || vd.RaidMode == KT_RAID60;
    return twice && vd.Status == KT_VD_ONLINE ? "loses part of its redundancy" : "loses its redundancy";
}

static KT_U8 nameVd(KT_U16 id) {
    _LD_Info_Request vd;
    const KT_U8 status = getItem(KT_LD_GetInfo, id, vd);
    if (status != KT_OK) return status;
    const char* future = outlook(vd.ldInfo[0]);
    if (future != nullptr) out("VD %d (%s) %s.\n", id, FieldText(vd.ldInfo[0].Name).text, future);
    return KT_OK;
}

static bool nameOfflineRisks(KT_U16 pd) {
    _HD_RAID_Status_Request role;
    KT_U8 status = getItem(KT_PD_GetHDRaidStatus, pd, role);
    if (status == KT_OK && (role.hdRaidStatus[0].Status & KT_PD_MEMBER) == 0) return false;
    VdsOnDisk found;
    if (status == KT_OK) {
        out("PD %d is a member.\n", pd);
        status = findVdsOn(pd, found);
    }
    for (unsigned i = 0; status == KT_OK && i < found.count; ++i) {
        status = nameVd(found.ids[i]);
    }
    if (status != KT_OK) {
        out("What PD %d is needed for cannot be read (error %d: %s).\n", pd, status, ErrorMessage(status));
    }
    return true;
}

static bool writesBack(KT_U8 policy) {
    return (policy & (KT_CACHE_OFF | KT_CACHE_AUTO)) == 0;
}

// A virtual disk whose cache follows the battery writes through before that is empty; the others go on.
static bool nameDischargeRisks() {
    bool any = false;
    const ListEnd end = walkList<_LD_Config>(KT_LD_GetConfig, EVERYTHING, recordsPerPage(sizeof(_LD_Config)),
                                             [&](const _LD_Config& config) {
                                                 if (!writesBack(config.CachePolicy)) return true;
                                                 out("VD %d (%s) goes on writing to its cache without a battery.\n",
                                                     config.LDID, FieldText(config.Name).text);
                                                 any = true;
                                                 return true;
                                             });
    if (end.status == KT_OK) return any;
    out("What writes to its cache cannot be read (error %d: %s).\n", end.status, ErrorMessage(end.status));
    return true;
}

bool nameRisks(const SetRequest& request, const SetRecord& record) {
    const SettingChange* status = changeOf(request, SetValue::Status);
    const SettingChange* power = changeOf(request, SetValue::Power);
    bool any = false;
    if (request.object == SetObject::Vd) any = nameVdRisks(request, record);
    if (request.object == SetObject::Pd || request.object == SetObject::Array) any = nameDiskCacheRisk(request, record);
    if (status != nullptr && status->bits == 0 && nameOfflineRisks(request.id)) any = true;
    if (power != nullptr && power->bits == KT_POWER_DISCHARGE && nameDischargeRisks()) any = true;
    return any;
}
