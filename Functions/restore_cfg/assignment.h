// The assignment file: a range of SAS addresses and one of serial numbers, of which each restored adapter takes the
// next ones.
#pragma once

#include <string>

#include "Public/cfg/reader.h"

inline constexpr size_t SERIAL_HEADER_SIZE = 10; // characters of a serial number before its counter

// Places are offsets into the file; they are wide enough for any file that is read.
struct _updata_sasaddr_info_t {
    const char* filename;
    KT_U64 sasaddr_current; // the first address that is free
    size_t file_size;
    size_t sasaddr_current_place_in_file; // file_size when the file has no such line
    size_t sasaddr_current_str_length;
    KT_U32 available_port;          // a bit for each port of the group
    KT_U64 port_sasaddr[CFG_PORTS]; // what each port is given; 0: nothing
    KT_U64 serialnumber_current;    // the counter that is free; ten hexadecimal digits
    size_t serialnumber_current_place_in_file;
    size_t serialnumber_current_str_length;
    KT_U16 serialnumber_numbersize; // digits of the counter
    KT_U16 serialnumber_flag;       // 1 when a serial number is assigned
    KT_U64 serialnumber_start;
    KT_U8 serialnumber_header[20];
    bool hasCurrentAddress; // the file has the lines of the current values
    bool hasCurrentSerial;
};

// Reads a text whose comments are blanked and assigns the next address to each port of the group and the next serial
// number, as far as the ranges reach: a warning says where they do not. 0, or 1 after an error that has been printed.
int KT_AutoGet_SASAddrSN(const char* text, size_t length, _updata_sasaddr_info_t* info);

// An address as eight bytes, most significant first.
void sasAddressBytes(KT_U64 address, KT_U8 (&bytes)[8]);

// The serial number of a counter: header and ten hexadecimal digits.
std::string serialNumberText(const _updata_sasaddr_info_t& info, KT_U64 counter);

// The counter behind this one. The text of a counter that is current holds decimal digits only, though it counts in
// hexadecimal ones: 0x10 follows 0x9. Behind the last such counter comes one that no run accepts.
KT_U64 nextSerialCounter(KT_U64 counter);

// The text of the assignment file with the values that the next adapter takes; `text` when nothing was assigned.
std::string advancedAssignment(const std::string& text, const _updata_sasaddr_info_t& info);
