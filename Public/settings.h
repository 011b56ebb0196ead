// The settings of disks, arrays, virtual disks and adapters: how a command that shows them and one that changes them
// print their records, and what the adapter must have for each of its own.
#pragma once

#include "Public/output.h"

// The label width of these lines.
inline constexpr int CONFIG_WIDTH = 24;

const char* onOff(bool on);

void hdGet_printf(const _HD_CONFIG* config);
void dgGet_printf(const _DG_CONFIG* config);
void ldGet_printf(const _LD_Config* config);
void hbaGet_printf(KT_U8 adapter, const _Adapter_Config_V2* config);

// "1.5 Gb/s" to "12 Gb/s" for the speed codes 1 to 4, "N/A" for any other.
const char* driveSpeedWord(KT_U8 code);

// In any of the adapter's settings: the adapter has no such thing.
inline constexpr KT_U8 SETTING_NOT_SUPPORTED = 255;

enum class SettingKind : KT_U8 { Rate, Switch }; // 0 to 100 percent; on or off

// One of the adapter's settings and what it needs: any of `features` and any of `advanced` (0: nothing), none of
// `without`.
struct AdapterSetting {
    char label[26];
    SettingKind kind;
    KT_U8 offset; // in _Adapter_Config_V2, one byte
    KT_U8 features;
    KT_U32 advanced;
    KT_U32 without;
};

// The setting that stands at the offset; null when none does.
const AdapterSetting* adapterSettingAt(size_t offset);

// True when an adapter that answers `info` has the setting.
bool hasSetting(const _Adapter_Info& info, const AdapterSetting& setting);
