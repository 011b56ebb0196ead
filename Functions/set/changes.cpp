#include "Functions/set/changes.h"

#include <cstring>
#include <strings.h>

#include "Public/settings.h"
#include "Public/utility.h"

static constexpr KT_U8 CACHE_MODE = KT_CACHE_OFF | KT_CACHE_AUTO;
static constexpr KT_U8 WHOLE = 0xFF;

#define VD(field) SetObject::Vd, SetValue::field, offsetof(_LD_Config, CachePolicy)
#define PD(kind, field) SetObject::Pd, SetValue::kind, offsetof(_HD_CONFIG, field), WHOLE
#define HBA(kind, field) SetObject::Hba, SetValue::kind, offsetof(_Adapter_Config_V2, field), WHOLE
static const SettingRow settingRows[] = {
    {'n', "-n", SetObject::Vd, SetValue::Name, offsetof(_LD_Config, Name), WHOLE},
    {'c', "-c", VD(CacheMode), CACHE_MODE},
    {'w', "-w", VD(WritePolicy), CACHE_MODE},
    {'p', "-p", VD(ReadPolicy), KT_CACHE_READ_AHEAD},
    {OPT_RESTORE, "--restore", VD(Restore), KT_CACHE_RESTORE},
    {'c', "-c", PD(OnOff, WriteCacheOn)},
    {OPT_SMART, "--smart", PD(OnOff, SMARTOn)},
    {OPT_SPEED, "--speed", PD(Speed, DriveSpeed)},
    {OPT_STATUS, "--status", PD(Status, Online)},
    {'n', "-n", SetObject::Array, SetValue::Name, offsetof(_DG_CONFIG, Name), WHOLE},
    {'c', "-c", SetObject::Array, SetValue::OnOff, offsetof(_DG_CONFIG, WriteCacheOn), WHOLE},
    {OPT_AUTO_REBUILD, "--autorebuild", HBA(OnOff, AutoRebuildOn)},
    {OPT_COPY_BACK, "--copyback", HBA(OnOff, CopyBackOn)},
    {OPT_POLL_SMART, "--pollsmart", HBA(OnOff, PollSMARTStatus)},
    {OPT_EFFICIENCY, "--efficiency", HBA(OnOff, CpuEfficiencyOn)},
    {OPT_CONSOLIDATION, "--consolidation", HBA(OnOff, ModuleConsolidation)},
    {OPT_ALARM, "--alarm", HBA(OnOff, AlarmOn)},
    {OPT_MUTE, "--mute", HBA(Mute, AlarmOn)},
    {OPT_BGA_RATE, "--bgarate", HBA(Rate, BGARate)},
    {OPT_SYNC_RATE, "--syncrate", HBA(Rate, SyncRate)},
    {OPT_INIT_RATE, "--initrate", HBA(Rate, InitRate)},
    {OPT_REBUILD_RATE, "--rebuildrate", HBA(Rate, RebuildRate)},
    {OPT_MIGRATION_RATE, "--migrationrate", HBA(Rate, MigrationRate)},
    {OPT_COPY_BACK_RATE, "--copybackrate", HBA(Rate, CopybackRate)},
    {OPT_MP_RATE, "--mprate", HBA(Rate, MPRate)},
    {OPT_POWER, "--power", SetObject::Bbu, SetValue::Power, 0, WHOLE},
};
#undef VD
#undef PD
#undef HBA

namespace {
struct ValueWord {
    char word[10];
    KT_U8 code;
};
const ValueWord switchWords[] = {{"off", 0}, {"on", 1}};
const ValueWord speedWords[] = {{"1.5", 1}, {"3", 2}, {"6", 3}, {"12", 4}};
const ValueWord statusWords[] = {{"offline", 0}, {"online", 1}};
const ValueWord powerWords[] = {
    {"stop", KT_POWER_STOP}, {"charge", KT_POWER_CHARGE}, {"discharge", KT_POWER_DISCHARGE}};
} // namespace

template <size_t N>
static bool takeWord(const ValueWord (&words)[N], const char* value, KT_U8& code) {
    for (const ValueWord& row : words) {
        if (strcasecmp(row.word, value) != 0) continue;
        code = row.code;
        return true;
    }
    return false;
}

static bool refuse(const SettingChange& change, const char* expected) {
    out("%s : invalid value '%s', should be %s\n", change.row->name, change.word, expected);
    return false;
}

static bool takeRate(SettingChange& change) {
    KT_U64 rate = 0;
    if (!parseUpTo(change.word, 100, rate)) return refuse(change, "0 to 100");
    change.bits = static_cast<KT_U8>(rate);
    return true;
}

static bool takeNewName(SettingChange& change) {
    if (takeName(change.word, arrayBasedRaid ? LONGEST_ARRAY_NAME : LONGEST_LD_NAME, change.name) != Take::Yes) {
        return false;
    }
    if (change.name[0] == '\0') {
        out("-n : the name is empty\n");
        return false;
    }
    return checkName(change.name);
}

// The value as the setting's row wants it.
static bool takeValue(SettingChange& change) {
    const char* word = change.word;
    switch (change.row->value) {
    case SetValue::Name:
        return takeNewName(change);
    case SetValue::CacheMode:
        return takeCacheMode(word, true, change.bits) == Take::Yes;
    case SetValue::WritePolicy:
        return takeWritePolicy(word, false, change.bits) == Take::Yes;
    case SetValue::ReadPolicy:
        return takeReadPolicy(word, change.bits) == Take::Yes;
    case SetValue::Restore:
        if (!takeWord(switchWords, word, change.bits)) return refuse(change, "on or off");
        if (change.bits != 0) change.bits = KT_CACHE_RESTORE;
        return true;
    case SetValue::OnOff:
        return takeWord(switchWords, word, change.bits) || refuse(change, "on or off");
    case SetValue::Rate:
        return takeRate(change);
    case SetValue::Speed:
        return takeWord(speedWords, word, change.bits) || refuse(change, "1.5, 3, 6 or 12");
    case SetValue::Status:
        return takeWord(statusWords, word, change.bits) || refuse(change, "online or offline");
    case SetValue::Power:
        return takeWord(powerWords, word, change.bits) || refuse(change, "charge, discharge or stop");
    case SetValue::Mute:
        return true;
    }
    return false;
}

static bool isOffered(const SettingRow& row) {
    const _Adapter_Info& info = currentAdapter();
    if (row.value == SetValue::Restore) return (info.AdvancedFeatures & KT_ADV_HYBRID_SWITCH) != 0;
    if (row.option == OPT_SMART) return (info.AdvancedFeatures & KT_ADV_NO_SMART) == 0;
    if (row.object == SetObject::Bbu) return (info.AdvancedFeatures & KT_ADV_BBU) != 0;
    if (row.object != SetObject::Hba) return true;
    if (row.option == OPT_ALARM || row.option == OPT_MUTE) return info.AlarmSupport != 0;
    const AdapterSetting* setting = adapterSettingAt(row.offset);
    return setting != nullptr && hasSetting(info, *setting);
}

static const SettingRow* rowFor(int option, SetObject object) {
    for (const SettingRow& row : settingRows) {
        if (row.option == option && row.object == object) return &row;
    }
    return nullptr;
}

static bool takeChange(const SettingRow& row, const char* word, SetRequest& request) {
    SettingChange& change = request.changes[request.count++];
    change = {&row, word, 0, {}};
    if (!takeValue(change)) return false;
    if (isOffered(row)) return true;
    out("%s is not supported on adapter %d.\n", row.name, gCurrentAdapter);
    return false;
}

static bool checkAgreement(const SetRequest& request) {
    const SettingChange* mode = changeOf(request, SetValue::CacheMode);
    const SettingChange* policy = changeOf(request, SetValue::WritePolicy);
    if (mode == nullptr || policy == nullptr || mode->bits == policy->bits) return true;
    out("-c %s and -w %s contradict each other\n", mode->word, policy->word);
    return false;
}

bool readChanges(const char* command, const char* objectWord, const OptionCounts& given, const char* const* words,
                 SetRequest& request) {
    for (const SettingRow& row : settingRows) {
        if (given[row.option] == 0 || rowFor(row.option, request.object) != nullptr) continue;
        out("%s: option %s does not belong to -o %s\n", command, row.name, objectWord);
        return false;
    }
    for (const SettingRow& row : settingRows) {
        if (given[row.option] == 0 || row.object != request.object) continue;
        if (!takeChange(row, words[row.option], request)) return false;
    }
    return checkAgreement(request);
}

const SettingChange* changeOf(const SetRequest& request, SetValue value) {
    for (int i = 0; i < request.count; ++i) {
        if (request.changes[i].row->value == value) return &request.changes[i];
    }
    return nullptr;
}

bool isInRecord(const SettingChange& change) {
    const SetValue value = change.row->value;
    return value != SetValue::Status && value != SetValue::Mute && value != SetValue::Power;
}

bool holds(const SettingChange& change, const SetRecord& record) {
    const KT_U8* field = record.bytes + change.row->offset;
    switch (change.row->value) {
    case SetValue::Name:
        return strncmp(reinterpret_cast<const char*>(field), change.name, NAME_FIELD) == 0;
    case SetValue::OnOff:
    case SetValue::Status:
        return (*field != 0) == (change.bits != 0);
    default:
        return (*field & change.row->mask) == change.bits;
    }
}

void apply(const SettingChange& change, SetRecord& record) {
    KT_U8* field = record.bytes + change.row->offset;
    if (change.row->value == SetValue::Name) {
        KT_U8 name[NAME_FIELD];
        fillName(name, change.name);
        memcpy(field, name, sizeof name);
    } else {
        *field = static_cast<KT_U8>((*field & ~change.row->mask) | change.bits);
    }
}
