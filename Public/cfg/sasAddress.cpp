#include "Public/cfg/sasAddress.h"

#include <cstring>

#include "Public/utility.h"

SasTextProblem readSasAddress(const char* text, size_t length, KT_U8 (&address)[8]) {
    if (length != CFG_SAS_ADDRESS_SIZE) return SasTextProblem::Length;
    if (text[8] != ':') return SasTextProblem::Colon;
    KT_U8 bytes[sizeof address];
    for (size_t half = 0; half < 2; ++half) {
        const std::string digits(text + 9 * half, 8);
        if (digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return half == 0 ? SasTextProblem::FirstDigits : SasTextProblem::LastDigits;
        }
        KT_U32 word = 0;
        str_to_hex_u32(digits.c_str(), &word);
        for (size_t i = 0; i < 4; ++i) {
            bytes[4 * half + i] = static_cast<KT_U8>(word >> (24 - 8 * i));
        }
    }
    memcpy(address, bytes, sizeof address);
    return SasTextProblem::None;
}

std::string sasAddressText(const KT_U8 (&address)[8]) {
    std::string text;
    for (unsigned half = 0; half < 2; ++half) {
        KT_U32 word = 0;
        for (unsigned i = 0; i < 4; ++i) {
            word = word << 8 | address[4 * half + i];
        }
        char digits[16];
        KT_U16 length = fill_zero_to_str_before_u32value(digits, word);
        if (half > 0) text += ':';
        text.append(digits, U32_TRANSLATE_STR(digits, word, length, 16));
    }
    return text;
}
