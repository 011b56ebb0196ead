// The configuration text: an adapter's settings page, its ports' PHY tuning, its virtual disks and spares as a plain
// text that people edit. One file writes it, one reads it; both follow the tables of cfgKeys.h.
#pragma once

#include <string>

#include "Public/cfgKeys.h"

// Modes of the text: the PHY-only form holds nothing but the ports' tuning.
enum : KT_U8 { CFG_FULL_FORM = 0, CFG_PHY_FORM = 241 };

inline constexpr unsigned CFG_PORTS = 8;             // ports that the settings page has room for
inline constexpr unsigned CFG_MOST_VDS = 255;        // virtual disks of one text; their count has eight bits
inline constexpr unsigned CFG_MOST_SPARES = 255;     // spares, likewise
inline constexpr unsigned CFG_SAS_ADDRESS_SIZE = 17; // characters of a SAS address: eight, a colon, eight

// Slots of BlockIDs that hold members.
inline unsigned cfgMembers(const _LD_Info& ld) {
    constexpr unsigned room = sizeof ld.BlockIDs / sizeof ld.BlockIDs[0];
    unsigned count = ld.BlkCount > 0 ? ld.BlkCount : ld.HDCount;
    return count < room ? count : room;
}

// Appends the text to `text` and returns its length; 0, and nothing appended, for a page without its signature. The
// ports are those of the adapter's record, the members of the virtual disks disk ids.
size_t KT_Form_Grammar(KT_U8 adapter, std::string& text, const _HBA_Info_Page* page, const _LD_Info* lds, KT_U8 ldCount,
                       const _HD_RAID_STATUS* spares, KT_U8 spareCount, KT_U8 mode);

// A stretch of the file: offset and length in bytes. A length of 0 stands for none.
struct CfgPlace {
    size_t at;
    size_t length;
};

// Where the values stand that are assigned afresh.
struct _file_sasaddr_place_info_t {
    KT_U32 available_port;             // in: a bit for each port that is to have a new address
    CfgPlace sasaddr_place[CFG_PORTS]; // out: the address values of those ports
    CfgPlace serialnumber_place;       // out
};

// Parses `length` bytes of a text whose comments are blanked, in one pass and whatever they are. False after the first
// error, which has been printed; page and records are then worthless. On success the page holds what the text names,
// is signed and sums to zero; lds (room for CFG_MOST_VDS; members are disk ids, sizes megabytes, BGAStatus the
// initialisation) and spares (CFG_MOST_SPARES; DGID CFG_GLOBAL_SPARE for one that serves all) hold what it lists, in
// its order, counted in the low and the high byte of *counts.
bool KT_Analyze_Grammar(const char* text, size_t length, _file_sasaddr_place_info_t* places, _HBA_Info_Page* page,
                        _LD_Info* lds, _HD_RAID_STATUS* spares, KT_U16* counts, KT_U8 mode);

// Blanks each comment: from "#" to the end of its line, or to a NUL.
void clean_comment(char* text, size_t length);

// 0 when every character is a decimal, or a hexadecimal, digit; a failure flag, not a truth value.
int str_isdigit(const char* text);
int str_isxdigit(const char* text);

// The value of decimal digits; the largest one for a text that is no such number or does not fit.
void str_to_dec_u32(const char* text, KT_U32* value);

// Reads "01234567:89ABCDEF" into eight bytes, most significant first. False, and nothing changed, for anything else:
// `problem` then tells what is wrong.
enum class SasTextProblem { None, Length, Colon, FirstDigits, LastDigits };
SasTextProblem readSasAddress(const char* text, size_t length, KT_U8 (&address)[8]);

// The reverse.
std::string sasAddressText(const KT_U8 (&address)[8]);
