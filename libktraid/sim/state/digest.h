// SHA-256: how secrets are kept, and stable numbers out of names.
#pragma once

#include "ktraid.h"

#include <cstring>
#include <string>

namespace sim {

struct Digest {
    KT_U8 bytes[32];
    bool operator==(const Digest& other) const { return memcmp(bytes, other.bytes, sizeof bytes) == 0; }
};

Digest sha256(const std::string& text);

} // namespace sim
