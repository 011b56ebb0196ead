// The set command of both command sets: changes the settings of virtual disks, arrays, disks, the adapter and its
// battery that get shows.
#pragma once

#include "Functions/set/changes.h"
#include "Public/optionRows.h"

int doSet(int argc, char** argv, _cmd_struct* row);
int doSetV2(int argc, char** argv, _cmd_struct* row);

inline constexpr OptionRow setFirstRows[] = {
    {'o', "object", "<vd|ld|pd|hd|hba|driver>", Takes::Words, ONCE | REQUIRED,
     "Object whose settings are changed: virtual disk (vd or ld), physical\n"
     "disk (pd or hd), the current adapter (hba) or the driver, which has\n"
     "nothing to set."},
    {'i', "id", "<id>", Takes::ObjectId, ONCE, "ID of the virtual disk or physical disk. Required for these."},
    {'n', "name", "<name>", Takes::Text, ONCE, "vd: name, at most 10 letters, digits, blanks or underlines."},
    {'c', "cache", "<on|off|auto>", Takes::Words, ONCE,
     "vd: cache mode; auto follows the battery.\n"
     "pd: write cache of the disk, on or off."},
};
inline constexpr OptionRow setV2FirstRows[] = {
    {'o', "object", "<vd|ld|pd|hd|array|hba|bbu>", Takes::Words, ONCE | REQUIRED,
     "Object whose settings are changed: virtual disk (vd or ld), physical\n"
     "disk (pd or hd), disk array, the current adapter (hba) or its battery\n"
     "(bbu)."},
    {'i', "id", "<id>", Takes::ObjectId, ONCE, "ID of the virtual disk, physical disk or array. Required for these."},
    {'n', "name", "<name>", Takes::Text, ONCE, "vd, array: name, at most 16 letters, digits, blanks or underlines."},
    {'c', "cachemode", "<on|off|auto>", Takes::Words, ONCE,
     "vd: cache mode; auto follows the battery.\n"
     "pd, array: write cache of the disk or of the array's disks, on or off."},
    {OPT_POWER, "power", "<charge|discharge|stop>", Takes::Words, 0,
     "bbu: charge or discharge the battery, or stop either."},
};
inline constexpr OptionRow setOtherRows[] = {
    {'w', "writepolicy", "<wt|wb>", Takes::Words, ONCE,
     "vd: write policy: write through (cache mode off) or write back (on)."},
    {'p', "readpolicy", "<ra|none>", Takes::Words, ONCE, "vd: read policy: read ahead or none."},
    {OPT_RESTORE, "restore", "<on|off>", Takes::Words, 0, "vd: restore, on adapters with hybrid virtual disks."},
    {OPT_SMART, "smart", "<on|off>", Takes::Words, 0, "pd: SMART of the disk."},
    {OPT_SPEED, "speed", "<1.5|3|6|12>", Takes::Words, 0, "pd: speed of the link in Gb/s, one that the disk supports."},
    {OPT_STATUS, "status", "<online|offline>", Takes::Words, 0,
     "pd: take a member out of service, or bring an offline disk back."},
    {OPT_AUTO_REBUILD, "autorebuild", "<on|off>", Takes::Words, 0, "hba: rebuild on a spare disk without being asked."},
    {OPT_COPY_BACK, "copyback", "<on|off>", Takes::Words, 0,
     "hba: copy from a spare disk to the one that takes its place again."},
    {OPT_POLL_SMART, "pollsmart", "<on|off>", Takes::Words, 0, "hba: look at the SMART status of the disks."},
    {OPT_EFFICIENCY, "efficiency", "<on|off>", Takes::Words, 0, "hba: optimize CPU efficiency."},
    {OPT_CONSOLIDATION, "consolidation", "<on|off>", Takes::Words, 0, "hba: module consolidation."},
    {OPT_ALARM, "alarm", "<on|off>", Takes::Words, 0, "hba: alarm."},
    {OPT_MUTE, "mute", "", Takes::Nothing, 0, "hba: silence the alarm that sounds now."},
    {OPT_BGA_RATE, "bgarate", "<0-100>", Takes::Text, 0,
     "hba: percent of their speed that the disks give to background\n"
     "activities."},
    {OPT_SYNC_RATE, "syncrate", "<0-100>", Takes::Text, 0, "hba: the same for consistency checks."},
    {OPT_INIT_RATE, "initrate", "<0-100>", Takes::Text, 0, "hba: the same for initializations."},
    {OPT_REBUILD_RATE, "rebuildrate", "<0-100>", Takes::Text, 0, "hba: the same for rebuilds."},
    {OPT_MIGRATION_RATE, "migrationrate", "<0-100>", Takes::Text, 0, "hba: the same for migrations."},
    {OPT_COPY_BACK_RATE, "copybackrate", "<0-100>", Takes::Text, 0, "hba: the same for copy back."},
    {OPT_MP_RATE, "mprate", "<0-100>", Takes::Text, 0, "hba: the same for media patrol."},
    {OPT_WAIVE, "waiveconfirmation", "", Takes::Nothing, 0, "Do not ask before a change that can lose data."},
    HELP_ROW,
};

template <size_t N, size_t M>
consteval std::array<OptionRow, N + M> joined(const OptionRow (&first)[N], const OptionRow (&other)[M]) {
    std::array<OptionRow, N + M> rows = {};
    for (size_t i = 0; i < N; ++i)
        rows[i] = first[i];
    for (size_t i = 0; i < M; ++i)
        rows[N + i] = other[i];
    return rows;
}
inline constexpr auto setRows = joined(setFirstRows, setOtherRows);
inline constexpr auto setV2Rows = joined(setV2FirstRows, setOtherRows);

inline constexpr char set_sh[] = ":Set configuration parameters of VD, PD, HBA or Driver.";
inline constexpr CommandWords setWords = {
    .usage = "\nset -o <vd|ld|pd|hd|hba|driver> [-i <id>] <setting>... [--waiveconfirmation]\n    [-h]\n",
    .rows = setRows,
    .examples = "set -o hba --autorebuild on\n\n"
                "Let the adapter rebuild on a spare disk without being asked.\n\n"
                "set -o vd -i 0 -n data -w wt\n\n"
                "Name virtual disk 0 \"data\" and let it write through.\n"};
inline constexpr const char* set_help = helpOf<setWords>;
inline constexpr const OptionSet& setOptions = optionSet<setWords>;

inline constexpr char setV2_sh[] = ":Set configuration parameters of VD, PD, Array, HBA or BBU.";
inline constexpr CommandWords setV2Words = {
    .usage = "\nset -o <vd|ld|pd|hd|array|hba|bbu> [-i <id>] <setting>...\n    [--waiveconfirmation] [-h]\n",
    .rows = setV2Rows,
    .examples = "set -o hba --autorebuild on\n\n"
                "Let the adapter rebuild on a spare disk without being asked.\n\n"
                "set -o array -i 0 -n \"My Array\"\n\n"
                "Name array 0 \"My Array\".\n"};
inline constexpr const char* setV2_help = helpOf<setV2Words>;
inline constexpr const OptionSet& setV2Options = optionSet<setV2Words>;
