// Reads the configuration text.
#pragma once

#include "Public/cfg/keys.h"

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
