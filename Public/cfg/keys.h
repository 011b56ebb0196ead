// The configuration text: an adapter's settings page, its ports' PHY tuning, its virtual disks and spares as a plain
// text that people edit. Here are its keys, one table per section, which the writer and the reader share, so that the
// two cannot drift apart. Where they differ on purpose, a row says so.
#pragma once

#include <cstddef>

#include "ktraid.h"

// Modes of the text: the PHY-only form holds nothing but the ports' tuning.
enum : KT_U8 { CFG_FULL_FORM = 0, CFG_PHY_FORM = 241 };

inline constexpr unsigned CFG_PORTS = 8;         // ports that the settings page has room for
inline constexpr unsigned CFG_MOST_VDS = 255;    // virtual disks of one text; their count has eight bits
inline constexpr unsigned CFG_MOST_SPARES = 255; // spares, likewise

// What check_str answers.
enum CfgWordCode : KT_U8 {
    CFG_DISABLE = 0,
    CFG_ENABLE = 1,
    CFG_1_5_GBS = 2,
    CFG_3_GBS = 3,
    CFG_6_GBS = 4,
    CFG_RAID0 = 5,
    CFG_RAID1 = 6,
    CFG_RAID10 = 7,
    CFG_RAID1E = 8,
    CFG_RAID5 = 9,
    CFG_RAID6 = 10,
    CFG_RAID50 = 11,
    CFG_RAID60 = 12,
    CFG_WRITETHROUGH = 13,
    CFG_WRITEBACK = 14,
    CFG_READAHEAD = 15,
    CFG_NONE = 16,
    CFG_QUICK = 17,
    CFG_NO_WORD = 255
};

// The code of the word that `word` begins with, in any case; CFG_NO_WORD without one.
KT_U8 check_str(const char* word);

// The word of a code, as it is written.
const char* cfgWord(KT_U8 code);

// How a value is written and read.
enum class CfgForm {
    Raw,        // bytes as they are
    Word,       // one of the row's words
    Number,     // digits
    SasAddress, // two groups of eight hexadecimal digits
    Members,    // disk ids separated by commas
    PortId,     // chooses the port that the next values belong to
    VdId,       // starts a virtual disk
    SpareId,    // starts a spare
    SparePd,    // the disk of a spare
    SpareArray, // the array a spare serves, or CFG_GLOBAL_SPARE
    Discarded,  // hexadecimal digits that are checked and dropped
    NoRule      // known, but never accepted
};

// Which record a value belongs to.
enum class CfgOwner { Page, Port, Vd, Spare };

// Bits of a record: `size` bytes at offset + index * stride, those of `mask`.
struct CfgField {
    size_t offset = 0;
    size_t size = 0;
    size_t stride = 0;
    KT_U32 mask = 0xFFFFFFFF;
};
KT_U32 fieldValue(const void* record, const CfgField& field, unsigned index);
void setFieldValue(void* record, const CfgField& field, unsigned index, KT_U32 value);

// A word and the value of the field that it stands for.
struct CfgWord {
    KT_U8 code;
    KT_U32 value;
};
struct CfgWords {
    const CfgWord* words = nullptr;
    size_t count = 0;
};

enum class CfgUse {
    Always,   // in both forms of the text
    FullForm, // not written in the PHY-only form
    ReadOnly  // never written
};

struct CfgKey {
    const char* key; // with its brackets
    CfgForm form;
    CfgOwner owner;
    CfgUse use = CfgUse::FullForm;
    CfgField field = {};
    CfgWords words = {};
    const char* alwaysWritten = nullptr; // what is written whatever the field holds
    KT_U8 writtenRadix = 10;
    KT_U8 writtenShift = 0;           // the value is written without so many low bits
    KT_U8 checkedRadix = 10;          // the digits a value may consist of
    KT_U8 readRadix = 10;             // how they are read: a letter among decimal digits makes no number
    KT_U32 low = 0;                   // accepted range
    KT_U32 high = 0xFFFFFFFF;         //
    bool onParityLevels = false;      // stands only with levels whose parity disks are counted
    size_t writtenBytes = 0;          // Raw: bytes of the field that are written
    size_t mostCharacters = 0;        // Raw: longest value accepted; 0: any
    const char* invalid = nullptr;    // the error line of a value of another form; null: none of its own
    const char* outOfRange = nullptr; // the error line of a number out of range
    const char* beforeId = nullptr;   // the error line of a value before the id that it belongs to; null: it is dropped
};

struct CfgSection {
    const char* header;
    const CfgKey* keys;
    size_t count;
    const char* unknownKey; // the error line of a text that is no key
};
enum { CFG_ADAPTER_SECTION, CFG_PORT_SECTION, CFG_RAID_SECTION, CFG_SECTIONS };
extern const CfgSection cfgSections[CFG_SECTIONS];

inline constexpr KT_U8 CFG_GLOBAL_SPARE = 0xFF;   // the array of a spare that serves all
inline constexpr KT_U8 CFG_NO_DEVICE = 255;       // an id that no disk of a file may have
inline constexpr KT_U8 CFG_NO_LEVEL = 0xFF;       // level of a virtual disk whose level the file does not name
inline constexpr KT_U32 CFG_NO_SIZE = 0xFFFFFFFF; // likewise its size in megabytes; no size that is read is this one

// Levels whose parity disks are counted.
inline bool hasParityDisks(KT_U8 level) {
    return level == KT_RAID6 || level == KT_RAID60;
}

inline constexpr char CFG_SIGNATURE[] = "TLVN";
inline constexpr char CFG_BEGIN[] = "[BEGIN]";
inline constexpr char CFG_END[] = "[END]";
