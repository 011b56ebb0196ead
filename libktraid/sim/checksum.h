/* CRC-32 as Ethernet and zip use it. */
#ifndef KTSIM_CHECKSUM_H
#define KTSIM_CHECKSUM_H

#include "ktraid.h"

namespace sim {

KT_U32 crc32(const void* bytes, size_t size);

} // namespace sim
#endif
