// The call log. With KTRAID_SIM_TRACE=FILE every call appends one line to FILE:
//
//     KT_LD_Delete a=0 vd=3 stopBga=0 -> 0
//     KT_LD_Create a=0 param=<hex> -> 0 param=<hex>
//     KT_LD_GetInfo a=0 request=<hex of the header> -> 0 request=<hex of the header and of the records returned>
//     KT_Flash_Bin a=0 action=15 imageType=3 page=<hex of the 12-byte head>+<bytes>:<CRC-32 of them> -> 0
//
// Scalars are decimal, records lower-case hexadecimal in memory order, bytes of keys and passwords '**', an absent
// pointer "null", text quoted with control bytes as \xNN. Before "->" stands what the caller handed over (records that
// the library only fills are left out), after it the status and, when it is 0, what the library gave back.
#pragma once

#include "ktraid.h"

#include <initializer_list>
#include <string>

namespace sim {

enum class ArgType { Number, In, Out, InOut, List, Array, Text };

// One argument of a call, as the frame checks and the trace prints it.
struct Arg {
    const char* name;
    ArgType type;
    KT_U64 number = 0; // Array: how many records fit the caller's buffer
    const void* data = nullptr;
    size_t size = 0;              // of the record; for List and Array of one record
    const KT_U8* count = nullptr; // Array: how many records the library filled
    size_t secretFrom = 0;        // bytes of the record that are printed as **
    size_t secretSize = 0;
    bool pages = false; // a _Flash_Data, abbreviated
};

inline Arg num(const char* name, KT_U64 value) {
    return {name, ArgType::Number, value};
}
inline Arg text(const char* name, const char* value) {
    return {name, ArgType::Text, 0, value};
}
inline Arg bytes(const char* name, const void* data, size_t size) {
    return {name, ArgType::In, 0, data, size};
}
inline Arg secret(const char* name, const void* data, size_t size) {
    return {name, ArgType::In, 0, data, size, nullptr, 0, size};
}
template <class Record>
Arg in(const char* name, const Record* record) {
    return {name, ArgType::In, 0, record, sizeof *record};
}
template <class Record>
Arg out(const char* name, Record* record) {
    return {name, ArgType::Out, 0, record, sizeof *record};
}
template <class Record>
Arg inOut(const char* name, Record* record) {
    return {name, ArgType::InOut, 0, record, sizeof *record};
}
// Records that the library fills, as many as *count says on return, at most `most`.
template <class Record>
Arg outArray(const char* name, Record* records, KT_U8 most, const KT_U8* count) {
    return {name, ArgType::Array, most, records, sizeof *records, count};
}
// The same record with the bytes [from, from + size) masked.
inline Arg masked(Arg arg, size_t from, size_t size) {
    arg.secretFrom = from;
    arg.secretSize = size;
    return arg;
}
inline Arg flashPage(const char* name, _Flash_Data* page, bool filledByLibrary) {
    Arg arg = filledByLibrary ? out(name, page) : in(name, page);
    arg.pages = true;
    return arg;
}

bool tracing();
// What stands before "->"; empty when there is no trace.
std::string traceBefore(const char* call, int adapter, std::initializer_list<Arg> args);
// Completes the line and appends it.
void traceAfter(const std::string& before, int status, std::initializer_list<Arg> args);

} // namespace sim
