// Small helpers that commands share: numbers and words typed by people, level and action words, hexadecimal text.
#pragma once

#include <limits>

#include "ktraid.h"

// True when every character is a decimal digit; the empty text counts as a number (0).
bool isNumber(const char* text);

// True for "0x" or "0X" and at least one hexadecimal digit, nothing else.
bool isHex(const char* text);

// The number behind a two-character prefix, read as hexadecimal without any check; "" behind it gives 0. The text has
// at least two characters.
KT_U32 atohex(const char* text);

// The leading run of hexadecimal digits of text (no prefix), its low 32 bits; 0 without one.
void str_to_hex_u32(const char* text, KT_U32* value);

// True for at least one decimal digit and nothing else: the empty text, which an unset variable leaves behind, is no
// number that anybody typed. All the parsers below go by it.
bool isTypedNumber(const char* text);

// "0" for the empty text, else the text itself: what commands that only look take for a number.
const char* emptyIsZero(const char* text);

// Reads decimal digits into 64 bits. False when text is not a number or above `most`; value is then unchanged.
bool parseUpTo(const char* text, KT_U64 most, KT_U64& value);

// Reads decimal digits into an unsigned field: false, and nothing changed, when text is no number or does not fit.
template <class Field>
bool parseDecimal(const char* text, Field& field) {
    KT_U64 value = 0;
    if (!parseUpTo(text, std::numeric_limits<Field>::max(), value)) return false;
    field = static_cast<Field>(value);
    return true;
}

// As parseUpTo, for decimal digits or hexadecimal ones behind "0x".
bool parseDecimalOrHexUpTo(const char* text, KT_U64 most, KT_U64& value);
template <class Field>
bool parseDecimalOrHex(const char* text, Field& field) {
    KT_U64 value = 0;
    if (!parseDecimalOrHexUpTo(text, std::numeric_limits<Field>::max(), value)) return false;
    field = static_cast<Field>(value);
    return true;
}

// Reads a number whose range has a message of its own: one that is too wide becomes the largest that "%d" can show.
// False, and nothing changed, when text is no number.
bool parseCapped(const char* text, int& number);
bool parseCappedOrHex(const char* text, int& number);

// Reads decimal digits the way a narrow field takes them over: only the low bits of `Field` are kept. For the few
// places where wrapping is the documented behaviour; the caller has checked isNumber.
KT_U64 decimalDigits(const char* text);
template <class Field>
Field narrowed(const char* text) {
    return static_cast<Field>(decimalDigits(text));
}

// Disk ids as the creation records hold them.
struct PdList {
    KT_U16 ids[128];
    KT_U8 count;
};

// Strict: an item is a number, a repeated id is skipped. WithGaps: the same, but an empty item counts for nothing.
// Lenient: the digits that an item begins with, behind blanks, are its id, none mean 0, repeated ids stay, and an empty
// item counts for nothing.
enum class PdItems { Strict, WithGaps, Lenient };

// Reads a comma list of decimal disk ids; the empty text is one empty item. False for an item that the rule refuses or
// whose id is above 65535, and for more ids than the list holds.
bool parsePdList(const char* text, PdItems items, PdList& list);

// Writes one '0' for each leading zero digit of v as eight hexadecimal digits, at most 7; returns how many.
unsigned short fill_zero_to_str_before_u32value(char* buf, unsigned v);

// Writes the zeros that v lacks to `width` hexadecimal digits (v = 0 counts as no digits); returns how many.
unsigned short fill_zero_to_str_before_hexu32value(char* buf, unsigned v, unsigned short width);

// Writes v at buf[pos] in the given radix (2 to 36), most significant digit first, upper-case letters, unterminated;
// nothing for 0 beyond its digit '0'. Returns the position behind the last digit.
unsigned short U32_TRANSLATE_STR(char* buf, unsigned v, unsigned short pos, unsigned char radix);

// The printed name of a level code; "unknown" for any other.
const char* RaidModeStr(unsigned char mode);

// The code of a level word; 255 for any other word.
KT_U8 chooseRaidMode(const char* word);

// Actions on a background activity, as the library's control codes number them.
enum BgaAction : KT_U8 {
    BGA_START = 0,
    BGA_RESTART = 1,
    BGA_PAUSE = 2,
    BGA_RESUME = 3,
    BGA_STOP = 4,
    BGA_INVALID = 255
};

// The action of a word; BGA_INVALID for any other word.
KT_U8 chooseBGAAction(const char* word);

// The word of an action; "" for any other number.
const char* BGAActionStr(KT_U8 action);

// The ids in decimal separated by ", "; dst holds 5 bytes an id and at least 1.
void getPhyIdString(char* dst, const unsigned char* ids, unsigned char count);

// Copies the characters of src, without a terminator, to the start of dst.
void str_add_str(char* dst, const char* src);

// Lower-cases the ASCII letters of text in place and returns it.
char* strlwr(char* text);

// Ports that the settings page has room for.
unsigned char getMaxPortNum();

// The sum, modulo 256, of all 256 bytes of the settings page; 0 for a consistent page.
KT_U8 GetHBAInfoChksum_Flash(const _HBA_Info_Page* page);

// A disk's protocol, with its kind (" ATAPI", " SSD") when withKind is not 0; "unknown 0x%x" with the type bits for a
// disk of none. dst holds 32 bytes.
void getHdTypeString(char* dst, const _HD_Info* disk, unsigned char withKind);
