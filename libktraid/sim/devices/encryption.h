// Key entries, encrypting ports and the disks on them. Statuses as the calls answer them.
#pragma once

#include "state/store.h"

namespace sim {

KT_U8 getAesOverview(const Context& context, _aes_entry_info& info);
KT_U8 getAesEntry(const Context& context, KT_U8 entry, _AES_ENTRY_INFO& info);
KT_U8 getAesPort(const Context& context, KT_U8 port, _AES_PORT_INFO& info);
KT_U8 getAesPortConfig(const Context& context, KT_U8 port, _AES_Port_Config& config);

// Passwords are 32 bytes, NUL-padded. The key itself never leaves its entry: only its length is given.
KT_U8 getAesEntryConfig(const Context& context, _AES_Entry_Config& config, const KT_U8* password);
// Gives an empty entry its key and password; a key of length 0 takes the key of an entry that no port uses away.
KT_U8 setAesEntryConfig(const Context& context, const _AES_Entry_Config& config, const KT_U8* password);
KT_U8 verifyAesKey(const Context& context, const _AES_Entry_Config& config, const KT_U8* password);
// The old password stands in config.key_content.
KT_U8 changeAesPassword(const Context& context, const _AES_Entry_Config& config, const KT_U8* newPassword);

// The ports forget their keys, as at each boot: every one of them has to be linked again.
void lockPorts(const Context& context);
// The changes of a port take its disks offline, and back online, as their ciphers demand.
KT_U8 setAesPortConfig(const Context& context, const _AES_Port_Config& config);
KT_U8 setAesLink(const Context& context, KT_U8 port, const _AES_Entry_Config& entry);
KT_U8 clearAesLink(const Context& context, KT_U8 port);
// Gives a disk that its cipher keeps offline the cipher of its port, on that part of it, and brings it up.
KT_U8 forceDiskOnline(const Context& context, const _AES_Entry_Config& config, KT_U16 pd, KT_U8 percentage);

} // namespace sim
