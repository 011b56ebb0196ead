#include "Public/output.h"

#include <cstdarg>
#include <cstdlib>

#include "Public/lostOutput.h"

FILE* stream = nullptr;

// Messages repeat what somebody typed: on its way to a terminal a control byte in it would be a command.
static void hideControlBytes(char* text) {
    for (; *text != '\0'; ++text) {
        const bool isControl = (*text >= 0 && *text < 0x20) || *text == 0x7F;
        if (isControl && *text != '\n' && *text != '\t') *text = '?';
    }
}

void out(const char* format, ...) {
    if (stream == nullptr) return;
    char* text = nullptr;
    va_list arguments;
    va_start(arguments, format);
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    if (length < 0) return noteLostOutput();
    hideControlBytes(text);
    if (fputs(text, stream) < 0) noteLostOutput();
    free(text);
}

void flushOutput() {
    if (stream != nullptr) flushStream(stream);
}

bool closeOutput() {
    FILE* closing = stream;
    stream = nullptr;
    if (closing != nullptr) flushStream(closing);
    if (closing != nullptr && closing != stdout && fclose(closing) != 0) noteLostOutput();
    return endOutput(0) == 0;
}

void printNum(int width, const char* label, long value) {
    out(fmt_Num, width, label, value);
}

void printStr(int width, const char* label, const char* value) {
    out(fmt_Str, width, label, value);
}

void printMegaBytes(int width, const char* label, KT_U64 kib) {
    out(fmt_MegaBytes, width, label, static_cast<long long>(kib >> 10));
}

void printKiloBytes(int width, const char* label, KT_U64 kib) {
    out(fmt_KiloBytes, width, label, static_cast<long long>(kib));
}

char* fieldText(char* dst, const KT_U8* field, size_t size) {
    size_t i = 0;
    for (; i < size && field[i] != 0; ++i) {
        dst[i] = field[i] >= 0x20 && field[i] < 0x7F ? static_cast<char>(field[i]) : '?';
    }
    dst[i] = '\0';
    return dst;
}

SasAddressText::SasAddressText(const KT_U8 (&address)[8]) {
    static const char digits[] = "0123456789ABCDEF";
    for (size_t i = 0; i < 8; ++i) {
        text[2 * i] = digits[address[i] >> 4];
        text[2 * i + 1] = digits[address[i] & 0x0F];
    }
    text[16] = '\0';
}

void LineText::add(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    int written = vsnprintf(text + length, sizeof text - length, format, arguments);
    va_end(arguments);
    if (written > 0) length += static_cast<size_t>(written);
    if (length >= sizeof text) length = sizeof text - 1;
}
