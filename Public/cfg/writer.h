// Writes the configuration text.
#pragma once

#include <string>

#include "Public/cfg/keys.h"

// Slots of BlockIDs that hold members.
inline unsigned cfgMembers(const _LD_Info& ld) {
    constexpr unsigned room = sizeof ld.BlockIDs / sizeof ld.BlockIDs[0];
    unsigned count = ld.BlkCount > 0 ? ld.BlkCount : ld.HDCount;
    return count < room ? count : room;
}

// Whether a form of the text has this key for a record: not every one has each.
bool isWritten(const CfgKey& key, const void* record, KT_U8 mode);

// What is written behind "=" for a key. `record` is the one that the key belongs to; index the port of a port's key,
// the running number of a spare's.
std::string cfgValueText(const CfgKey& key, const void* record, unsigned index);

// A written value for a message: up to the NUL bytes that fill it, and nothing that a terminal would obey.
std::string shownCfgValue(const std::string& written);

// Ports that a text of the current adapter lists.
unsigned cfgPorts(KT_U8 adapter);

// Appends the text to `text` and returns its length; 0, and nothing appended, for a page without its signature. The
// ports are those of the adapter's record, the members of the virtual disks disk ids.
size_t KT_Form_Grammar(KT_U8 adapter, std::string& text, const _HBA_Info_Page* page, const _LD_Info* lds, KT_U8 ldCount,
                       const _HD_RAID_STATUS* spares, KT_U8 spareCount, KT_U8 mode);
