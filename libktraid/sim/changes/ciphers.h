// Disks whose cipher does not suit the port that they are on stay offline.
#pragma once

#include "state/store.h"

#include <vector>

namespace sim {

// KT_OK, or why the adapter does not encrypt at all or not on that port.
KT_U8 checkCrypto(const Context& context);
KT_U8 checkCryptoPort(const Context& context, KT_U8 port);
AesPort cryptoPort(const Context& context, KT_U8 port);
// The adapter's port that a chain of links ends at; nothing for a chain that ends nowhere.
std::optional<KT_U8> rootPort(const Context& context, _Link_Endpoint parent);
void saveCipher(const Context& context, KT_U16 pd, const DiskCipher& cipher);

// To be called for disks that arrive or whose port changes, all of them at once: offline, with its event, is each whose
// cipher does not suit its port; up again is one that suits it now.
void reviewCiphers(const Context& context, const std::vector<KT_U16>& pds);

// Why the cipher of an offline disk keeps it so, for people ("no key fits", ...); empty when that is not the reason.
const char* whyLocked(const Context& context, KT_U16 pd);

} // namespace sim
