// SAS addresses as the configuration text and the assignment file hold them: "01234567:89ABCDEF".
#pragma once

#include <string>

#include "ktraid.h"

inline constexpr unsigned CFG_SAS_ADDRESS_SIZE = 17; // characters: eight, a colon, eight

// Reads a SAS address into eight bytes, most significant first. For anything else it changes nothing and tells what is
// wrong.
enum class SasTextProblem { None, Length, Colon, FirstDigits, LastDigits };
SasTextProblem readSasAddress(const char* text, size_t length, KT_U8 (&address)[8]);

// The reverse.
std::string sasAddressText(const KT_U8 (&address)[8]);
