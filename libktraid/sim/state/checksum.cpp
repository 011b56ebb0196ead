#include "state/checksum.h"

#include <array>

namespace sim {

static constexpr std::array<KT_U32, 256> makeTable() {
    std::array<KT_U32, 256> table = {};
    for (KT_U32 byte = 0; byte < 256; ++byte) {
        KT_U32 crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320U & (0U - (crc & 1U)));
        table[byte] = crc;
    }
    return table;
}

static constexpr std::array<KT_U32, 256> TABLE = makeTable();

KT_U32 crc32(const void* bytes, size_t size) {
    KT_U32 crc = 0xFFFFFFFFU;
    const auto* at = static_cast<const unsigned char*>(bytes);
    for (size_t i = 0; i < size; ++i)
        crc = (crc >> 8) ^ TABLE[(crc ^ at[i]) & 0xFF];
    return ~crc;
}

} // namespace sim
