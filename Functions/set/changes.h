// What set can change: one row a setting, which object it belongs to, how its value is written and where it stands in
// the object's record.
#pragma once

#include "Public/options.h"
#include "Public/vdOptions.h"

enum class SetObject : KT_U8 { Vd, Pd, Array, Hba, Bbu, Driver };

// An object's settings as the library holds them: _LD_Config, _HD_CONFIG, _DG_CONFIG, _Adapter_Config_V2; or _BBU_Info.
union SetRecord {
    _LD_Config vd;
    _HD_CONFIG pd;
    _DG_CONFIG array;
    _Adapter_Config_V2 hba;
    _BBU_Info bbu;
    KT_U8 bytes[sizeof(_Adapter_Config_V2)];
};

// The long options without a letter.
enum : short {
    OPT_RESTORE = OPT_FIRST_OWN,
    OPT_SMART,
    OPT_SPEED,
    OPT_STATUS,
    OPT_AUTO_REBUILD,
    OPT_COPY_BACK,
    OPT_POLL_SMART,
    OPT_EFFICIENCY,
    OPT_CONSOLIDATION,
    OPT_ALARM,
    OPT_MUTE,
    OPT_BGA_RATE,
    OPT_SYNC_RATE,
    OPT_INIT_RATE,
    OPT_REBUILD_RATE,
    OPT_MIGRATION_RATE,
    OPT_COPY_BACK_RATE,
    OPT_MP_RATE,
    OPT_POWER,
    OPT_SET_END
};
static_assert(int{OPT_SET_END} <= int{OPT_LIMIT});

// How a setting's value is written. The last three change no byte of a record: they are calls of their own.
enum class SetValue : KT_U8 {
    Name,
    CacheMode,
    WritePolicy,
    ReadPolicy,
    Restore,
    OnOff,
    Rate,
    Speed,
    Status,
    Mute,
    Power
};

struct SettingRow {
    short option;
    char name[16]; // as messages call the option
    SetObject object;
    SetValue value;
    KT_U8 offset; // in the object's record
    KT_U8 mask;   // the bits of that byte that are the setting's; 0xFF: a number or a truth of its own
};

// One setting that the user asked for.
struct SettingChange {
    const SettingRow* row;
    const char* word; // as it was typed; null for an option without a value
    KT_U8 bits;       // what the setting is to become; a call's argument for those that are calls
    TypedName name;
};

// Every setting of one object at most.
inline constexpr int MOST_CHANGES = 16;

struct SetRequest {
    SetObject object;
    KT_U16 id; // of the virtual disk, disk or array; the adapter for the others
    bool waived;
    int count;
    SettingChange changes[MOST_CHANGES];
};

// Reads the values of the given options into request.changes. False, with a message, for an option that belongs to
// another object, a value that the option does not take, and a setting that this adapter's record says it lacks.
bool readChanges(const char* command, const char* objectWord, const OptionCounts& given, const char* const* words,
                 SetRequest& request);

// The change of that kind; null when it was not asked for.
const SettingChange* changeOf(const SetRequest& request, SetValue value);

// True for what is written with the record.
bool isInRecord(const SettingChange& change);

// True when the record already is as the change wants it.
bool holds(const SettingChange& change, const SetRecord& record);

// Makes the change in the record, which keeps everything else.
void apply(const SettingChange& change, SetRecord& record);
