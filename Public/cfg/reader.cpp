#include "Public/cfg/reader.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>

#include "Public/cfg/sasAddress.h"
#include "Public/output.h"
#include "Public/utility.h"

static constexpr size_t MOST_CHARACTERS = 40; // of a value
static constexpr KT_U32 NO_NUMBER = 0xFFFFFFFF;

namespace {
// The value of the key that is pending; the characters behind it are NUL.
struct Value {
    char text[MOST_CHARACTERS + 1];
    size_t length;
    size_t begin; // offset in the file of the first character
    size_t end;   // and behind the last one
};

struct Reader {
    const char* text;
    size_t length;
    KT_U8 mode;
    size_t at;
    unsigned line;
    const CfgSection* section; // null outside of a section
    const CfgKey* key;         // pending until its line ends
    Value value;

    _file_sasaddr_place_info_t* places;
    _HBA_Info_Page* page;
    _LD_Info* lds;
    _HD_RAID_STATUS* spares;
    unsigned ldCount;
    unsigned spareCount;
    // The ids named last; NO_NUMBER before the first.
    KT_U32 port;
    KT_U32 vd;
    KT_U32 spare;
};

enum class Step { On, Done, Failed };
} // namespace

int str_isdigit(const char* text) {
    return isNumber(text) ? 0 : 1;
}

int str_isxdigit(const char* text) {
    return text[strspn(text, "0123456789abcdefABCDEF")] == '\0' ? 0 : 1;
}

void str_to_dec_u32(const char* text, KT_U32* value) {
    if (!parseDecimal(emptyIsZero(text), *value)) *value = NO_NUMBER;
}

void clean_comment(char* text, size_t length) {
    bool comment = false;
    for (size_t i = 0; i < length; ++i) {
        if (text[i] == '#') comment = true;
        if (text[i] == '\n' || text[i] == '\0') comment = false;
        if (comment) text[i] = ' ';
    }
}

// Every value that is refused ends with this line.
static bool refuse(const char* line) {
    if (line != nullptr) out("%s\n", line);
    out("Restore_Error: \n");
    return false;
}

// True when the value consists of at least one digit of the radix and nothing else, NUL bytes included.
static bool isOfDigits(const Value& value, KT_U8 radix) {
    if (value.length == 0 || strlen(value.text) != value.length) return false;
    return (radix == 16 ? str_isxdigit(value.text) : str_isdigit(value.text)) == 0;
}

// Reads the value as the row says. False when it is refused, which has been said.
static bool readNumber(const CfgKey& key, const Value& value, KT_U32& number) {
    if (!isOfDigits(value, key.checkedRadix)) return refuse(key.invalid);
    if (key.readRadix == 16) {
        // Only the low 32 bits are read, so more digits than those are never in range.
        const char* significant = value.text + strspn(value.text, "0");
        number = NO_NUMBER;
        if (strlen(significant) <= 8) str_to_hex_u32(value.text, &number);
    } else {
        str_to_dec_u32(value.text, &number);
    }
    bool fits = number != NO_NUMBER && number >= key.low && number <= key.high;
    return fits || refuse(key.outOfRange);
}

static bool storeSasAddress(const Reader& r) {
    switch (readSasAddress(r.value.text, r.value.length, r.page->SAS_Address[r.port])) {
    case SasTextProblem::Length:
        return refuse("Restore_Error: length of SASADDRESS isn't 17!");
    case SasTextProblem::Colon:
        return refuse("Restore_Error: the 9th bit of SASADDRESS isn't ':'");
    case SasTextProblem::FirstDigits:
        return refuse("Restore_Error: firt 8 bits of SASADDRESS isn't hex digit");
    case SasTextProblem::LastDigits:
        return refuse("Restore_Error: last 8 bits of SASADDRESS isn't hex digit");
    default:
        break;
    }
    if ((r.places->available_port >> r.port & 1) != 0) {
        r.places->sasaddr_place[r.port] = {r.value.begin, r.value.end - r.value.begin};
    }
    return true;
}

static bool startPort(Reader& r) {
    KT_U32 id = 0;
    if (!isOfDigits(r.value, r.key->checkedRadix)) return refuse(r.key->invalid);
    str_to_dec_u32(r.value.text, &id);
    if (id == r.port && id != NO_NUMBER) {
        out("Restore_Error: repeated portid :%d !\n", static_cast<int>(id));
        return refuse(nullptr);
    }
    if (id > r.key->high) return refuse(r.key->outOfRange);
    r.port = id;
    return true;
}

static bool startVd(Reader& r) {
    KT_U32 id = 0;
    if (!readNumber(*r.key, r.value, id)) return false;
    if (id == r.vd) {
        out("Restore_Error: repeated vdid :%d !\n", static_cast<int>(id));
        return refuse(nullptr);
    }
    if (id == CFG_NO_DEVICE) return refuse("Restore_Error: vd id = 0xff ");
    if (r.ldCount == CFG_MOST_VDS) return refuse("Restore_Error: vd id is invalid!");
    r.vd = id;
    _LD_Info& ld = r.lds[r.ldCount++];
    memset(&ld, 0, sizeof ld);
    ld.ID = static_cast<KT_U16>(id);
    // Until the file says otherwise.
    ld.RaidMode = CFG_NO_LEVEL;
    ld.Size = CFG_NO_SIZE;
    ld.BGAStatus = KT_INIT_NONE;
    std::fill(std::begin(ld.BlockIDs), std::end(ld.BlockIDs), KT_U16{KT_NO_ID});
    return true;
}

static bool startSpare(Reader& r) {
    KT_U32 id = 0;
    if (!readNumber(*r.key, r.value, id)) return false;
    if (id == r.spare) {
        out("Restore_Error: repeated sparedisk id :%d !\n", static_cast<int>(id));
        return refuse(nullptr);
    }
    if (r.spareCount == CFG_MOST_SPARES) return refuse("Restore_Error: invalid pd id for spare config!");
    r.spare = id;
    r.spares[r.spareCount++] = {KT_NO_ID, CFG_GLOBAL_SPARE, KT_PD_GLOBAL_SPARE, {}};
    return true;
}

static bool storeMembers(const Reader& r, _LD_Info& ld) {
    PdList list = {};
    const Value& value = r.value;
    bool usable = value.length > 0 && value.text[0] != ',' && strlen(value.text) == value.length &&
                  parsePdList(value.text, PdItems::WithGaps, list) &&
                  std::find(list.ids, list.ids + list.count, KT_NO_ID) == list.ids + list.count;
    if (!usable) return refuse(r.key->invalid);
    std::fill(std::begin(ld.BlockIDs), std::end(ld.BlockIDs), KT_U16{KT_NO_ID});
    std::copy(list.ids, list.ids + list.count, ld.BlockIDs);
    ld.HDCount = list.count;
    return true;
}

static bool storeWord(const Reader& r, void* record, unsigned index) {
    KT_U8 code = check_str(r.value.text);
    for (size_t i = 0; i < r.key->words.count; ++i) {
        if (r.key->words.words[i].code != code) continue;
        setFieldValue(record, r.key->field, index, r.key->words.words[i].value);
        return true;
    }
    return refuse(r.key->invalid);
}

static bool storeRaw(const Reader& r, void* record) {
    if (r.key->mostCharacters != 0 && r.value.length > r.key->mostCharacters) return refuse(r.key->invalid);
    memcpy(static_cast<char*>(record) + r.key->field.offset, r.value.text, r.key->field.size);
    if (r.key->owner == CfgOwner::Page) {
        r.places->serialnumber_place = {r.value.begin, r.value.end - r.value.begin};
    }
    return true;
}

static bool storeSpareNumber(const Reader& r, _HD_RAID_STATUS& spare) {
    KT_U32 number = 0;
    if (!readNumber(*r.key, r.value, number)) return false;
    if (r.key->form == CfgForm::SparePd && number == CFG_NO_DEVICE) return refuse(r.key->invalid);
    setFieldValue(&spare, r.key->field, 0, number);
    spare.Status = spare.DGID == CFG_GLOBAL_SPARE ? KT_PD_GLOBAL_SPARE : KT_PD_DEDICATED_SPARE;
    return true;
}

// Checks and stores a value that is more than an id. `record` is the one that the key belongs to.
static bool storeValue(const Reader& r, void* record, unsigned index) {
    KT_U32 number = 0;
    switch (r.key->form) {
    case CfgForm::Raw:
        return storeRaw(r, record);
    case CfgForm::Word:
        return storeWord(r, record, index);
    case CfgForm::SasAddress:
        return storeSasAddress(r);
    case CfgForm::Members:
        return storeMembers(r, *static_cast<_LD_Info*>(record));
    case CfgForm::SparePd:
    case CfgForm::SpareArray:
        return storeSpareNumber(r, *static_cast<_HD_RAID_STATUS*>(record));
    case CfgForm::Discarded:
        if (!isOfDigits(r.value, 16)) return refuse(r.key->invalid);
        str_to_hex_u32(r.value.text, &number);
        return true;
    case CfgForm::Number:
        if (r.key->onParityLevels && !hasParityDisks(static_cast<_LD_Info*>(record)->RaidMode)) {
            return refuse("Restore_Error: RaidMode isn't raid6/60,but parity disk option is set !");
        }
        if (!readNumber(*r.key, r.value, number)) return false;
        setFieldValue(record, r.key->field, index, number);
        return true;
    default:
        return refuse(r.key->invalid);
    }
}

// The line of the pending key has ended.
static bool finishValue(Reader& r) {
    switch (r.key->form) {
    case CfgForm::PortId:
        return startPort(r);
    case CfgForm::VdId:
        return startVd(r);
    case CfgForm::SpareId:
        return startSpare(r);
    default:
        break;
    }
    switch (r.key->owner) {
    case CfgOwner::Port:
        // Without a port that the page has room for there is nothing to store.
        return r.port >= getMaxPortNum() || storeValue(r, r.page, r.port);
    case CfgOwner::Vd:
        return r.ldCount == 0 ? refuse(r.key->beforeId) : storeValue(r, &r.lds[r.ldCount - 1], 0);
    case CfgOwner::Spare:
        return r.spareCount == 0 ? refuse(r.key->beforeId) : storeValue(r, &r.spares[r.spareCount - 1], 0);
    default:
        return storeValue(r, r.page, 0);
    }
}

// True, and the position behind it, when `word` stands at the position, in any case.
static bool take(Reader& r, const char* word) {
    size_t length = strlen(word);
    if (r.length - r.at < length || strncasecmp(r.text + r.at, word, length) != 0) return false;
    r.at += length;
    return true;
}

static bool takeSection(Reader& r, int section) {
    if (!take(r, cfgSections[section].header)) return false;
    r.section = &cfgSections[section];
    return true;
}

static void emptyValue(Reader& r) {
    r.value = {};
}

// Between values: a bracket of the section or one of its keys.
static Step takeBracketOrKey(Reader& r) {
    if (r.section == nullptr) {
        out("Restore_Error! \n");
        return Step::Failed;
    }
    if (take(r, CFG_BEGIN)) return Step::On;
    if (take(r, CFG_END)) {
        const int last = r.mode == CFG_PHY_FORM ? CFG_PORT_SECTION : CFG_RAID_SECTION;
        bool done = r.section == &cfgSections[last];
        r.section = nullptr;
        return done ? Step::Done : Step::On;
    }
    for (size_t i = 0; i < r.section->count; ++i) {
        if (!take(r, r.section->keys[i].key)) continue;
        r.key = &r.section->keys[i];
        emptyValue(r);
        return Step::On;
    }
    out("%s\n", r.section->unknownKey);
    return Step::Failed;
}

static Step addToValue(Reader& r) {
    char c = r.text[r.at];
    if (c == '=') {
        emptyValue(r);
    } else if (r.value.length == MOST_CHARACTERS) {
        refuse("Restore_Error: failed to get config value! ");
        return Step::Failed;
    } else {
        if (r.value.length == 0) r.value.begin = r.at;
        r.value.text[r.value.length++] = c;
        r.value.end = r.at + 1;
    }
    ++r.at;
    return Step::On;
}

static Step step(Reader& r) {
    if (takeSection(r, CFG_PORT_SECTION) || takeSection(r, CFG_RAID_SECTION)) return Step::On;
    char c = r.text[r.at];
    if (c == '\n') {
        ++r.line;
        ++r.at;
        if (r.key == nullptr) return Step::On;
        bool stored = finishValue(r);
        r.key = nullptr;
        return stored ? Step::On : Step::Failed;
    }
    if (isspace(static_cast<unsigned char>(c)) != 0) {
        ++r.at;
        return Step::On;
    }
    return r.key == nullptr ? takeBracketOrKey(r) : addToValue(r);
}

// Goes to the first section that can open a text; whatever stands before it counts for nothing.
static void search(Reader& r) {
    while (r.at < r.length && !takeSection(r, CFG_ADAPTER_SECTION) && !takeSection(r, CFG_PORT_SECTION)) {
        if (r.text[r.at++] == '\n') ++r.line;
    }
}

// What it takes is settled. NOLINTNEXTLINE(readability-function-size)
bool KT_Analyze_Grammar(const char* text, size_t length, _file_sasaddr_place_info_t* places, _HBA_Info_Page* page,
                        _LD_Info* lds, _HD_RAID_STATUS* spares, KT_U16* counts, KT_U8 mode) {
    Reader r = {text, length, mode,   0, 1, nullptr,   nullptr,   {},       places,
                page, lds,    spares, 0, 0, NO_NUMBER, NO_NUMBER, NO_NUMBER};
    memcpy(page->Signature, CFG_SIGNATURE, sizeof page->Signature);
    search(r);
    Step result = Step::On;
    while (result == Step::On && r.at < r.length) {
        result = step(r);
    }
    if (result == Step::On) out("syntax error!! line %d \n>>", static_cast<int>(r.line));
    if (result != Step::Done) return false;
    if (mode != CFG_PHY_FORM) out("KTCLI_RAID_CONFIG End\n");
    page->Check_Sum = 0;
    page->Check_Sum = static_cast<KT_U8>(-GetHBAInfoChksum_Flash(page));
    *counts = static_cast<KT_U16>(r.ldCount | r.spareCount << 8);
    return true;
}
