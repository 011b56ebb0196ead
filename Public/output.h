// The one stream that every command prints to, and the label/value lines that reports are made of.
#pragma once

#include <cstddef>
#include <cstdio>

#include "ktraid.h"

// Standard output, or the file of "-output"; null when that file could not be opened: output is then dropped.
extern FILE* stream;

inline constexpr char fmt_Num[] = "%-*s %ld\n";
inline constexpr char fmt_Str[] = "%-*s %s\n";
inline constexpr char fmt_Array[] = "%-*s %ld %ld\n";
inline constexpr char fmt_MegaBytes[] = "%-*s %lld M\n";
inline constexpr char fmt_KiloBytes[] = "%-*s %lld K\n";

inline constexpr char OptionRequired[] = "%s: option -%c is required\n";
inline constexpr char ErrorDuplicate[] = "Duplicated option specified.\n";

// printf to `stream`, control bytes but line ends and tabs shown as '?'; nothing happens while there is none.
void out(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Writes out what is pending.
void flushOutput();

// Closes `stream`; standard output is only flushed. False, after one line on standard error, when something printed was
// lost since the start. Nothing is printed afterwards.
bool closeOutput();

// One line: the label padded to `width` columns, a blank, the value.
void printNum(int width, const char* label, long value);
void printStr(int width, const char* label, const char* value);

// Sizes given in KiB, printed in MB ("M") or as they are ("K").
void printMegaBytes(int width, const char* label, KT_U64 kib);
void printKiloBytes(int width, const char* label, KT_U64 kib);

// A text field of a record, made safe to print: at most `size` bytes up to the first NUL, every byte that is not
// printable ASCII shown as '?'. dst holds size + 1 bytes and is returned.
char* fieldText(char* dst, const KT_U8* field, size_t size);
template <size_t N>
struct FieldText {
    char text[N + 1];
    explicit FieldText(const KT_U8 (&field)[N]) { fieldText(text, field, N); }
};
template <size_t N>
void printField(int width, const char* label, const KT_U8 (&field)[N]) {
    printStr(width, label, FieldText<N>(field).text);
}

// The eight bytes of a SAS address as 16 upper-case hexadecimal digits, byte 0 first.
struct SasAddressText {
    char text[17];
    explicit SasAddressText(const KT_U8 (&address)[8]);
};

// Text that grows as it is composed, for lines whose length depends on a record's counts. Appending beyond the capacity
// of 4096 characters drops the rest.
struct LineText {
    char text[4096];
    size_t length;
    LineText() : length(0) { text[0] = '\0'; }
    void add(const char* format, ...) __attribute__((format(printf, 2, 3)));
};
