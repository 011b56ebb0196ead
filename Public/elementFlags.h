// The yes/no fields of the status elements of SCSI enclosure services.
#pragma once

#include <span>

#include "ktraid.h"

struct ElementFlag {
    KT_U8 type; // KT_SES_*, or ANY_ELEMENT
    KT_U8 byte; // of the status element, and the bit in it
    KT_U8 bit;
    const char* label;
};
inline constexpr KT_U8 ANY_ELEMENT = 0;

// All of them, in the order in which they are printed.
extern const std::span<const ElementFlag> elementFlags;

// The label of one; null for bits that mean nothing in elements of that type.
const char* elementFlagLabel(KT_U8 type, KT_U8 byte, KT_U8 bit);
