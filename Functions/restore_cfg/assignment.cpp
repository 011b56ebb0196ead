#include "Functions/restore_cfg/assignment.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstring>
#include <iterator>

#include "Public/cfg/sasAddress.h"
#include "Public/common.h"
#include "Public/utility.h"

static constexpr size_t SERIAL_SIZE = 20;
static constexpr size_t COUNTER_SIZE = SERIAL_SIZE - SERIAL_HEADER_SIZE;

namespace {
enum { PORT_GROUP, ADDRESS_START, ADDRESS_END, ADDRESS_CURRENT, SERIAL_START, SERIAL_END, SERIAL_CURRENT, KEYS };

struct Key {
    const char* word;
    bool optional; // absent or empty, the range's start stands for it
    // The error lines of an address, and of the serial numbers behind the first one.
    const char* length;
    const char* second; // the colon; the header
    const char* third;  // the first digits; the counter
    const char* fourth; // the last digits
};
#define ADDRESS_LINES(article, key)                                                                                    \
    "Restore_Error: length of " key " isn't 17!(setcfg.txt)",                                                          \
        "Restore_Error: " article "9th bit of " key " isn't ':'!(setcfg.txt)",                                         \
        "Restore_Error: First 8bits of " key " isn't  hex digit!(setcfg.txt)",                                         \
        "Restore_Error: Last 8bits of " key " isn't  hexadecimal digit!(setcfg.txt)"
#define SERIAL_LINES(key)                                                                                              \
    "Restore_Error: length of " key " isn't 20!(setcfg.txt)",                                                          \
        "Restore_Error: First 10bits of " key " isn't euqal with SERIALNUMBER_START!(setcfg.txt)",                     \
        "Restore_Error: Last 10bits of " key " isn't digital!(setcfg.txt)", nullptr
const Key sasaddr_sn_command_table[KEYS] = {
    {"PORT_GROUP", false, nullptr, nullptr, nullptr, nullptr},
    {"SAS_ADDRESS_START", false, ADDRESS_LINES("The ", "SAS_ADDRESS_START")},
    {"SAS_ADDRESS_END", false, ADDRESS_LINES("", "SAS_ADDRESS_END")},
    {"SAS_ADDRESS_CURRENT", true, ADDRESS_LINES("", "SAS_ADDRESS_CURRENT")},
    {"SERIALNUMBER_START", false, "Restore_Error: length of SERIALNUMBER_START isn't 20!(setcfg.txt)", nullptr,
     "Restore_Error: Last 10bits of SERIALNUMBER_START isn't a hex digital!(setcfg.txt)", nullptr},
    {"SERIALNUMBER_END", false, SERIAL_LINES("SERIALNUMBER_END")},
    {"SERIALNUMBER_CURRENT", true, SERIAL_LINES("SERIALNUMBER_CURRENT")},
};

struct Value {
    bool found;
    CfgPlace place;
    std::string text;
};
using Values = Value[KEYS];
} // namespace

static bool refuse(const char* line) {
    out("%s\n", line);
    return false;
}

static bool isBlank(char c) {
    return isspace(static_cast<unsigned char>(c)) != 0;
}

static const Key* findKey(const char* word, size_t length) {
    for (const Key& key : sasaddr_sn_command_table) {
        if (strlen(key.word) == length && strncasecmp(key.word, word, length) == 0) return &key;
    }
    return nullptr;
}

// One line, from `at` to `end`: nothing, or "[KEY]=value" with blanks around its parts.
static bool readLine(const char* text, size_t at, size_t end, Values& values) {
    auto skipBlanks = [&] {
        while (at < end && isBlank(text[at])) {
            ++at;
        }
    };
    skipBlanks();
    if (at == end) return true;
    const char* close = static_cast<const char*>(memchr(text + at, ']', end - at));
    if (text[at] != '[' || close == nullptr) return refuse("Restore_Error: Error grammar in setcfg.txt!");
    ++at;
    const Key* key = findKey(text + at, static_cast<size_t>(close - text) - at);
    if (key == nullptr) return refuse("Restore_Error: Unknown option!(setcfg.txt)");
    at = static_cast<size_t>(close - text) + 1;
    skipBlanks();
    if (at == end || text[at] != '=') return refuse("Restore_Error: Error grammar in setcfg.txt!");
    ++at;
    skipBlanks();
    size_t length = end - at;
    while (length > 0 && isBlank(text[at + length - 1])) {
        --length;
    }
    values[key - sasaddr_sn_command_table] = {true, {at, length}, std::string(text + at, length)};
    return true;
}

static bool readLines(const char* text, size_t length, Values& values) {
    for (size_t at = 0; at < length;) {
        const void* found = memchr(text + at, '\n', length - at);
        size_t end = found == nullptr ? length : static_cast<size_t>(static_cast<const char*>(found) - text);
        if (!readLine(text, at, end, values)) return false;
        at = end + 1;
    }
    for (size_t i = 0; i < KEYS; ++i) {
        if (!values[i].found && !sasaddr_sn_command_table[i].optional)
            return refuse("Did you config setcfg.txt file ?");
    }
    return true;
}

// The ports of the group, in its order.
static bool readPorts(std::string text, KT_U8 (&ports)[CFG_PORTS], unsigned& count, KT_U32& set) {
    text.erase(std::remove_if(text.begin(), text.end(), isBlank), text.end());
    count = 0;
    set = 0;
    for (size_t at = 0; at <= text.size();) {
        size_t comma = std::min(text.find(',', at), text.size());
        std::string item = text.substr(at, comma - at);
        KT_U8 port = 0;
        bool usable = !item.empty() && strlen(item.c_str()) == item.size() && parseDecimal(item.c_str(), port) &&
                      port < CFG_PORTS;
        if (!usable) return refuse("Restore_Error: port ID in PORT_GROUP isn't digital!(setcfg.txt)");
        if ((set >> port & 1) == 0) ports[count++] = port;
        set |= 1U << port;
        at = comma + 1;
    }
    unsigned expected = std::min<unsigned>(currentAdapter().PortCount, getMaxPortNum());
    if (count == expected) return true;
    out("Restore_Error:Port count %d in setcfg.txt \n", static_cast<int>(count));
    out("don't match with adapter port number:%d!(setcfg.txt)\n", static_cast<int>(expected));
    return false;
}

static bool readAddress(const Values& values, size_t index, KT_U64& address) {
    const Key& key = sasaddr_sn_command_table[index];
    const std::string& text = values[index].text;
    KT_U8 bytes[8] = {};
    switch (readSasAddress(text.data(), text.size(), bytes)) {
    case SasTextProblem::Length:
        return refuse(key.length);
    case SasTextProblem::Colon:
        return refuse(key.second);
    case SasTextProblem::FirstDigits:
        return refuse(key.third);
    case SasTextProblem::LastDigits:
        return refuse(key.fourth);
    default:
        break;
    }
    address = 0;
    for (KT_U8 byte : bytes) {
        address = address << 8 | byte;
    }
    return true;
}

// A serial number: its header must be the start's, its counter ten digits. They are read as hexadecimal ones, though
// letters are only taken in the start.
static bool readSerial(const Values& values, size_t index, KT_U64& counter) {
    const Key& key = sasaddr_sn_command_table[index];
    const std::string& text = values[index].text;
    if (text.size() != SERIAL_SIZE) return refuse(key.length);
    if (text.compare(0, SERIAL_HEADER_SIZE, values[SERIAL_START].text, 0, SERIAL_HEADER_SIZE) != 0) {
        return refuse(key.second);
    }
    const char* digits = index == SERIAL_START ? "0123456789abcdefABCDEF" : "0123456789";
    if (text.find_first_not_of(digits, SERIAL_HEADER_SIZE) != std::string::npos) return refuse(key.third);
    counter = strtoull(text.c_str() + SERIAL_HEADER_SIZE, nullptr, 16);
    return true;
}

static bool assignAddresses(const Values& values, _updata_sasaddr_info_t& info) {
    KT_U8 ports[CFG_PORTS];
    unsigned count = 0;
    KT_U64 start = 0;
    KT_U64 end = 0;
    if (!readPorts(values[PORT_GROUP].text, ports, count, info.available_port)) return false;
    if (!readAddress(values, ADDRESS_START, start)) return false;
    if (!readAddress(values, ADDRESS_END, end)) return false;
    if (start == 0) return refuse("Did you config setcfg.txt file ?");
    KT_U64& current = info.sasaddr_current;
    current = start;
    if (!values[ADDRESS_CURRENT].text.empty() && !readAddress(values, ADDRESS_CURRENT, current)) {
        return false;
    }
    // The address behind the last one taken becomes the current one, so it must exist.
    if (current < start || current > end || end - current + 1 < count || current + count < current) {
        out("Restore_Warning: No available count for SAS Address!(setcfg.txt)\n");
        return true;
    }
    for (unsigned i = 0; i < count; ++i) {
        info.port_sasaddr[ports[i]] = current + i;
    }
    return true;
}

static bool assignSerial(const Values& values, _updata_sasaddr_info_t& info) {
    KT_U64 end = 0;
    if (!readSerial(values, SERIAL_START, info.serialnumber_start)) return false;
    if (!readSerial(values, SERIAL_END, end)) return false;
    KT_U64& current = info.serialnumber_current;
    current = info.serialnumber_start;
    if (!values[SERIAL_CURRENT].text.empty() && !readSerial(values, SERIAL_CURRENT, current)) {
        return false;
    }
    memcpy(info.serialnumber_header, values[SERIAL_START].text.data(), SERIAL_HEADER_SIZE);
    info.serialnumber_numbersize = COUNTER_SIZE;
    info.serialnumber_flag = current >= info.serialnumber_start && current <= end ? 1 : 0;
    if (info.serialnumber_flag == 0) {
        out("Restore_Warning: No available count for Serial Number!(setcfg.txt)\n");
    }
    return true;
}

int KT_AutoGet_SASAddrSN(const char* text, size_t length, _updata_sasaddr_info_t* info) {
    const char* name = info->filename;
    *info = {};
    info->filename = name;
    info->file_size = length;
    Values values = {};
    if (!readLines(text, length, values)) return 1;
    if (!assignAddresses(values, *info) || !assignSerial(values, *info)) return 1;
    info->hasCurrentAddress = values[ADDRESS_CURRENT].found;
    info->sasaddr_current_place_in_file = values[ADDRESS_CURRENT].place.at;
    info->sasaddr_current_str_length = values[ADDRESS_CURRENT].place.length;
    info->hasCurrentSerial = values[SERIAL_CURRENT].found;
    info->serialnumber_current_place_in_file = values[SERIAL_CURRENT].place.at;
    info->serialnumber_current_str_length = values[SERIAL_CURRENT].place.length;
    return 0;
}

void sasAddressBytes(KT_U64 address, KT_U8 (&bytes)[8]) {
    for (unsigned i = 0; i < 8; ++i) {
        bytes[i] = static_cast<KT_U8>(address >> (56 - 8 * i));
    }
}

std::string serialNumberText(const _updata_sasaddr_info_t& info, KT_U64 counter) {
    char digits[32];
    snprintf(digits, sizeof digits, "%0*llX", info.serialnumber_numbersize, static_cast<unsigned long long>(counter));
    return std::string(reinterpret_cast<const char*>(info.serialnumber_header), SERIAL_HEADER_SIZE) + digits;
}

KT_U64 nextSerialCounter(KT_U64 counter) {
    KT_U64 next = counter + 1;
    for (unsigned digit = 0; digit < COUNTER_SIZE; ++digit) {
        if ((next >> 4 * digit & 0xF) > 9) next = ((next >> 4 * (digit + 1)) + 1) << 4 * (digit + 1);
    }
    return next >> 4 * COUNTER_SIZE == 0 ? next : counter + 1;
}

// Where a value stands in the file, if it does.
namespace {
struct Place {
    bool found;
    size_t at;
    size_t length;
};
} // namespace

// Puts a value into its place, or in a line of its own at the end of a file that has none.
static void putValue(std::string& text, const Place& place, const char* key, const std::string& value) {
    if (place.found) {
        text.replace(place.at, place.length, value);
        return;
    }
    if (!text.empty() && text.back() != '\n') text += '\n';
    text += std::string("[") + key + "]=" + value + "\n";
}

std::string advancedAssignment(const std::string& text, const _updata_sasaddr_info_t& info) {
    std::string advanced = text;
    auto address = [&] {
        bool assigned = std::any_of(std::begin(info.port_sasaddr), std::end(info.port_sasaddr),
                                    [](KT_U64 given) { return given != 0; });
        if (!assigned) return;
        KT_U8 bytes[8];
        sasAddressBytes(info.sasaddr_current + static_cast<unsigned>(std::popcount(info.available_port)), bytes);
        putValue(advanced,
                 {info.hasCurrentAddress, info.sasaddr_current_place_in_file, info.sasaddr_current_str_length},
                 sasaddr_sn_command_table[ADDRESS_CURRENT].word, sasAddressText(bytes));
    };
    auto serial = [&] {
        if (info.serialnumber_flag == 0) return;
        putValue(advanced,
                 {info.hasCurrentSerial, info.serialnumber_current_place_in_file, info.serialnumber_current_str_length},
                 sasaddr_sn_command_table[SERIAL_CURRENT].word,
                 serialNumberText(info, nextSerialCounter(info.serialnumber_current)));
    };
    // What stands later is replaced first, so that the other place stays valid; added lines come last.
    bool serialFirst = info.serialnumber_current_place_in_file > info.sasaddr_current_place_in_file;
    if (serialFirst && info.hasCurrentSerial) {
        serial();
        address();
    } else {
        address();
        serial();
    }
    return advanced;
}
