#include "state/digest.h"

#include <nettle/sha2.h>

namespace sim {

Digest sha256(const std::string& text) {
    sha256_ctx context;
    sha256_init(&context);
    sha256_update(&context, text.size(), reinterpret_cast<const unsigned char*>(text.data()));
    Digest digest = {};
    sha256_digest(&context, sizeof digest.bytes, digest.bytes);
    return digest;
}

} // namespace sim
