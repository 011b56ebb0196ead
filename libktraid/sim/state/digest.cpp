#include "state/digest.h"

#include <bit>

namespace sim {

static const KT_U32 ROUND_CONSTANTS[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};

static void digestBlock(KT_U32 (&sum)[8], const char* block) {
    KT_U32 w[64];
    for (int i = 0; i < 16; ++i) {
        w[i] = 0;
        for (int byte = 0; byte < 4; ++byte)
            w[i] = w[i] << 8 | static_cast<KT_U8>(block[i * 4 + byte]);
    }
    for (int i = 16; i < 64; ++i) {
        const KT_U32 s0 = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ (w[i - 15] >> 3);
        const KT_U32 s1 = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ (w[i - 2] >> 10);
        w[i] = w[i - 16] + s0 + w[i - 7] + s1;
    }
    KT_U32 v[8];
    memcpy(v, sum, sizeof v);
    for (int i = 0; i < 64; ++i) {
        const KT_U32 s1 = std::rotr(v[4], 6) ^ std::rotr(v[4], 11) ^ std::rotr(v[4], 25);
        const KT_U32 choice = (v[4] & v[5]) ^ (~v[4] & v[6]);
        const KT_U32 t1 = v[7] + s1 + choice + ROUND_CONSTANTS[i] + w[i];
        const KT_U32 s0 = std::rotr(v[0], 2) ^ std::rotr(v[0], 13) ^ std::rotr(v[0], 22);
        const KT_U32 t2 = s0 + ((v[0] & v[1]) ^ (v[0] & v[2]) ^ (v[1] & v[2]));
        memmove(v + 1, v, sizeof v - sizeof v[0]);
        v[4] += t1;
        v[0] = t1 + t2;
    }
    for (int i = 0; i < 8; ++i)
        sum[i] += v[i];
}

Digest sha256(const std::string& text) {
    KT_U32 sum[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::string padded = text + '\x80';
    padded.resize((padded.size() + 8 + 63) / 64 * 64);
    const KT_U64 bits = KT_U64{text.size()} * 8;
    for (unsigned i = 0; i < 8; ++i)
        padded[padded.size() - 1 - i] = static_cast<char>(bits >> (8 * i));
    for (size_t at = 0; at < padded.size(); at += 64)
        digestBlock(sum, padded.data() + at);
    Digest digest = {};
    for (unsigned i = 0; i < 32; ++i)
        digest.bytes[i] = static_cast<KT_U8>(sum[i / 4] >> (24 - 8 * (i % 4)));
    return digest;
}

} // namespace sim
