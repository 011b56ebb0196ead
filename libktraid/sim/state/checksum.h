// CRC-32 as Ethernet and zip use it.
#pragma once

#include "ktraid.h"

namespace sim {

KT_U32 crc32(const void* bytes, size_t size);

} // namespace sim
