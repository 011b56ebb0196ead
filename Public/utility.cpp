#include "Public/utility.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <strings.h>

static bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

static int hexDigit(char c) {
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool isNumber(const char* text) {
    while (isDigit(*text)) {
        ++text;
    }
    return *text == '\0';
}

bool isHex(const char* text) {
    if (text[0] != '0' || (text[1] != 'x' && text[1] != 'X') || text[2] == '\0') return false;
    return text[2 + strspn(text + 2, "0123456789abcdefABCDEF")] == '\0';
}

KT_U32 atohex(const char* text) {
    KT_U32 value = 0;
    for (const char* at = text + 2; *at != '\0'; ++at) {
        KT_U32 digit = isDigit(*at) ? static_cast<KT_U32>(*at - '0') : static_cast<KT_U32>(*at - 0x37) & 0x0F;
        value = value * 16 + digit;
    }
    return value;
}

void str_to_hex_u32(const char* text, KT_U32* value) {
    *value = 0;
    for (; hexDigit(*text) >= 0; ++text) {
        *value = *value * 16 + static_cast<KT_U32>(hexDigit(*text));
    }
}

// Reads digits of the radix up to the end of text; false when the number is above `most`.
static bool readDigits(const char* text, unsigned radix, KT_U64 most, KT_U64& value) {
    KT_U64 sum = 0;
    for (; *text != '\0'; ++text) {
        auto digit = static_cast<KT_U64>(hexDigit(*text));
        if (sum > most / radix || digit > most - sum * radix) return false;
        sum = sum * radix + digit;
    }
    value = sum;
    return true;
}

bool isTypedNumber(const char* text) {
    return *text != '\0' && isNumber(text);
}

const char* emptyIsZero(const char* text) {
    return *text == '\0' ? "0" : text;
}

bool parseUpTo(const char* text, KT_U64 most, KT_U64& value) {
    return isTypedNumber(text) && readDigits(text, 10, most, value);
}

bool parseDecimalOrHexUpTo(const char* text, KT_U64 most, KT_U64& value) {
    if (isTypedNumber(text)) return readDigits(text, 10, most, value);
    return isHex(text) && readDigits(text + 2, 16, most, value);
}

bool parseCapped(const char* text, int& number) {
    return isTypedNumber(text) && parseCappedOrHex(text, number);
}

bool parseCappedOrHex(const char* text, int& number) {
    constexpr int MOST = std::numeric_limits<int>::max();
    if (!isTypedNumber(text) && !isHex(text)) return false;
    KT_U64 value = 0;
    number = parseDecimalOrHexUpTo(text, MOST, value) ? static_cast<int>(value) : MOST;
    return true;
}

KT_U64 decimalDigits(const char* text) {
    KT_U64 value = 0;
    return readDigits(text, 10, UINT64_MAX, value) ? value : UINT64_MAX;
}

bool parsePdList(const char* text, PdItems items, PdList& list) {
    list.count = 0;
    for (const char* item = text;;) {
        const char* end = item + strcspn(item, ",");
        if (item == end && items == PdItems::Strict) return false;
        if (item != end) {
            KT_U32 id = 0;
            // Leniently, an item is read as people write lists: "0, 2, 4".
            const char* at = items == PdItems::Lenient ? item + strspn(item, " \t") : item;
            for (; isDigit(*at) && id <= UINT16_MAX; ++at) {
                id = id * 10 + static_cast<KT_U32>(*at - '0');
            }
            if (id > UINT16_MAX || (items != PdItems::Lenient && at != end)) return false;
            KT_U16* known = list.ids + list.count;
            if (items == PdItems::Lenient || std::find(list.ids, known, id) == known) {
                if (list.count == sizeof list.ids / sizeof list.ids[0]) return false;
                list.ids[list.count++] = static_cast<KT_U16>(id);
            }
        }
        if (*end == '\0') return true;
        item = end + 1;
    }
}

unsigned short fill_zero_to_str_before_u32value(char* buf, unsigned v) {
    unsigned short zeros = 0;
    while (zeros < 7 && ((v >> (28 - 4 * zeros)) & 0xFF) == 0) {
        buf[zeros++] = '0';
    }
    return zeros;
}

unsigned short fill_zero_to_str_before_hexu32value(char* buf, unsigned v, unsigned short width) {
    unsigned short digits = 0;
    for (; v != 0; v >>= 4) {
        ++digits;
    }
    unsigned short zeros = digits < width ? static_cast<unsigned short>(width - digits) : 0;
    memset(buf, '0', zeros);
    return zeros;
}

unsigned short U32_TRANSLATE_STR(char* buf, unsigned v, unsigned short pos, unsigned char radix) {
    unsigned short at = pos;
    if (v >= radix) at = U32_TRANSLATE_STR(buf, v / radix, pos, radix);
    buf[at] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[v % radix];
    return static_cast<unsigned short>(at + 1);
}

namespace {
struct RaidModeRow {
    KT_U8 code;
    const char* word; // what chooseRaidMode accepts; null for a level nobody can ask for
    const char* text;
};
const RaidModeRow raidModes[] = {
    {KT_RAID0, "0", "RAID0"},
    {KT_RAID1, "1", "RAID1"},
    {KT_RAID10, "10", "RAID10"},
    {KT_RAID1E, "1E", "RAID1e"},
    {KT_RAID5, "5", "RAID5"},
    {KT_RAID50, "50", "RAID50"},
    {KT_RAID6, "6", "RAID6"},
    {KT_RAID60, "60", "RAID60"},
    {KT_JBOD, nullptr, "JBOD"},
    {KT_TANDEM_CAPACITY, "hc", "tandemix capacity"},
    {KT_TANDEM_SAFE, "hs", "tandemix safe"},
    {KT_HYBRID, "hybrid", "tandemix hybrid"},
};
const char* const actionWords[] = {"start", "restart", "pause", "resume", "stop"};
} // namespace

const char* RaidModeStr(unsigned char mode) {
    for (const RaidModeRow& row : raidModes) {
        if (row.code == mode) return row.text;
    }
    return "unknown";
}

KT_U8 chooseRaidMode(const char* word) {
    for (const RaidModeRow& row : raidModes) {
        if (row.word == nullptr) continue;
        // 1E is the one word whose letter may be of either case.
        if (row.code == KT_RAID1E ? strcasecmp(row.word, word) == 0 : strcmp(row.word, word) == 0) return row.code;
    }
    return 255;
}

KT_U8 chooseBGAAction(const char* word) {
    for (KT_U8 action = BGA_START; action <= BGA_STOP; ++action) {
        if (strcmp(actionWords[action], word) == 0) return action;
    }
    return BGA_INVALID;
}

const char* BGAActionStr(KT_U8 action) {
    return action <= BGA_STOP ? actionWords[action] : "";
}

void getPhyIdString(char* dst, const unsigned char* ids, unsigned char count) {
    *dst = '\0';
    for (unsigned i = 0; i < count; ++i) {
        dst += sprintf(dst, i == 0 ? "%d" : ", %d", ids[i]);
    }
}

void str_add_str(char* dst, const char* src) {
    std::copy_n(src, strlen(src), dst);
}

char* strlwr(char* text) {
    for (char* at = text; *at != '\0'; ++at) {
        if (*at >= 'A' && *at <= 'Z') *at = static_cast<char>(*at - 'A' + 'a');
    }
    return text;
}

unsigned char getMaxPortNum() {
    return 8;
}

KT_U8 GetHBAInfoChksum_Flash(const _HBA_Info_Page* page) {
    KT_U8 bytes[sizeof *page];
    memcpy(bytes, page, sizeof bytes);
    unsigned sum = 0;
    for (KT_U8 byte : bytes) {
        sum += byte;
    }
    return static_cast<KT_U8>(sum);
}

void getHdTypeString(char* dst, const _HD_Info* disk, unsigned char withKind) {
    const char* protocol = nullptr;
    if (disk->HDType & KT_HD_SATA) protocol = "SATA";
    if (disk->HDType & KT_HD_PATA) protocol = "PATA";
    if (disk->HDType & KT_HD_SAS) protocol = "SAS";
    if (protocol == nullptr && (disk->HDType & KT_HD_ATAPI)) protocol = "ATA";
    if (protocol == nullptr) {
        sprintf(dst, "unknown 0x%x", disk->HDType);
        return;
    }
    bool atapi = withKind != 0 && (disk->HDType & KT_HD_ATAPI) != 0;
    bool ssd = withKind != 0 && (disk->HDType & KT_HD_SSD) != 0;
    sprintf(dst, "%s%s%s", protocol, atapi ? " ATAPI" : "", ssd ? " SSD" : "");
}
