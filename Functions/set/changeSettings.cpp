#include "Functions/set/changeSettings.h"

#include "Functions/set/objects.h"
#include "Functions/set/risks.h"
#include "Public/confirm.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/hold.h"
#include "Public/listing.h"
#include "Public/settings.h"

// True when the disk can run its link at the speed; otherwise says so, and `result` is what the command returns.
static bool checkSpeed(KT_U16 pd, const SettingChange* speed, int& result) {
    if (speed == nullptr) return true;
    _HD_Info_Request disk;
    KT_U8 status = KT_OK;
    if (!readDisk(pd, disk, status)) {
        if (status == KT_OK) status = KT_ERR_FAILED;
        out("Unable to get info of PD %d (error %d : %s)\n", pd, status, ErrorMessage(status));
        result = status;
        return false;
    }
    if ((disk.hdInfo[0].FeatureSupport & (KT_U32{KT_HD_SPEED_1_5} << (speed->bits - 1))) != 0) return true;
    out("PD %d does not support %s\n", pd, driveSpeedWord(speed->bits));
    result = 1;
    return false;
}

// What the record tells that the adapter lacks.
static bool checkRecord(const SetRequest& request, const SetRecord& record, int& result) {
    if (request.object == SetObject::Pd) return checkSpeed(request.id, changeOf(request, SetValue::Speed), result);
    if (request.object != SetObject::Hba) return true;
    for (int i = 0; i < request.count; ++i) {
        const SettingRow& row = *request.changes[i].row;
        if (record.bytes[row.offset] != SETTING_NOT_SUPPORTED) continue;
        out("%s is not supported on adapter %d.\n", row.name, gCurrentAdapter);
        result = 1;
        return false;
    }
    return true;
}

// What of the request is still to be done.
struct ToDo {
    bool record;                 // write it
    const SettingChange* status; // each null when it is not asked for, or is so already
    const SettingChange* mute;
    const SettingChange* power;
};

static bool isPowered(const _BBU_Info& battery, KT_U8 action) {
    const int flow = battery.status & (KT_BBU_CHARGING | KT_BBU_DISCHARGING);
    if (action == KT_POWER_CHARGE) return flow == KT_BBU_CHARGING;
    return action == KT_POWER_DISCHARGE ? flow == KT_BBU_DISCHARGING : flow == 0;
}

// The record and the disk's role must both say so: a disk is asked to go offline once too often rather than not at all.
static bool isStatus(KT_U16 pd, const SettingChange& change, const SetRecord& record) {
    _HD_RAID_Status_Request role;
    if (!holds(change, record) || getItem(KT_PD_GetHDRaidStatus, pd, role) != KT_OK) return false;
    return ((role.hdRaidStatus[0].Status & KT_PD_OFFLINE) == 0) == (change.bits != 0);
}

static ToDo findToDo(const SetRequest& request, const SetRecord& record) {
    ToDo todo = {};
    for (int i = 0; i < request.count; ++i) {
        const SettingChange& change = request.changes[i];
        if (isInRecord(change) && !holds(change, record)) todo.record = true;
    }
    todo.status = changeOf(request, SetValue::Status);
    if (todo.status != nullptr && isStatus(request.id, *todo.status, record)) todo.status = nullptr;
    todo.mute = changeOf(request, SetValue::Mute);
    todo.power = changeOf(request, SetValue::Power);
    if (todo.power != nullptr && isPowered(record.bbu, todo.power->bits)) todo.power = nullptr;
    return todo;
}

static KT_U8 writeRecord(const SetRequest& request, SetRecord record) {
    for (int i = 0; i < request.count; ++i) {
        if (isInRecord(request.changes[i])) apply(request.changes[i], record);
    }
    return writeObject(request, record);
}

// Makes the calls. A disk comes online before its settings are written, and goes offline behind that; its record says
// whether it is online, so it is read anew in between.
static KT_U8 makeChanges(const SetRequest& request, const ToDo& todo, SetRecord record) {
    KT_U8 status = KT_OK;
    int made = 0;
    auto next = [&](bool wanted, auto call) {
        if (!wanted || status != KT_OK) return;
        status = call();
        if (status == KT_OK) ++made;
    };
    const bool comes = todo.status != nullptr && todo.status->bits != 0;
    const bool goes = todo.status != nullptr && todo.status->bits == 0;
    next(comes, [&] { return setDiskStatus(request.id, true); });
    next(comes && todo.record, [&] { return readObject(request, record); });
    next(todo.record, [&] { return writeRecord(request, record); });
    next(goes, [&] { return setDiskStatus(request.id, false); });
    next(todo.mute != nullptr, muteAlarm);
    next(todo.power != nullptr, [&] { return changePower(todo.power->bits); });
    if (status != KT_OK && made != 0) out("What was changed before that stays changed.\n");
    return status;
}

// Reads the object again and shows it. The result is 1 when the adapter did not take everything.
static int show(const SetRequest& request) {
    SetRecord record;
    const KT_U8 status = readObject(request, record);
    if (status != KT_OK) return status;
    printObject(request, record);
    int result = 0;
    for (int i = 0; i < request.count; ++i) {
        const SettingChange& change = request.changes[i];
        const SetValue value = change.row->value;
        if (value == SetValue::Mute) continue;
        if (value == SetValue::Power ? isPowered(record.bbu, change.bits) : holds(change, record)) continue;
        out("The adapter did not take %s %s.\n", change.row->name, change.word);
        result = 1;
    }
    return result;
}

int changeSettings(const SetRequest& request) {
    SetRecord record;
    const KT_U8 status = readObject(request, record);
    if (status != KT_OK) return status;
    int result = 0;
    if (!checkRecord(request, record, result)) return result;
    const ToDo todo = findToDo(request, record);
    if (!todo.record && todo.status == nullptr && todo.mute == nullptr && todo.power == nullptr) {
        out("nothing to change\n");
        return 0;
    }
    if (!request.waived && nameRisks(request, record)) {
        out("Do you still want to change the settings? (y or n)\n");
        if (!confirmYesOrNo()) return 0;
    }
    // What the adapter took belongs to the change: it is read again and told before a signal ends the run.
    const Hold hold("some of the settings would be changed and some not");
    const KT_U8 changed = makeChanges(request, todo, record);
    return changed == KT_OK ? show(request) : changed;
}
