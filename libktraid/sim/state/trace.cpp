#include "state/trace.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace sim {

static const size_t FLASH_HEAD = offsetof(_Flash_Data, Data);

static void appendHex(std::string& line, const void* data, size_t size, size_t secretFrom, size_t secretSize) {
    static const char DIGITS[] = "0123456789abcdef";
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (size_t i = 0; i < size; ++i) {
        if (i >= secretFrom && i - secretFrom < secretSize) {
            line += "**";
            continue;
        }
        line += DIGITS[bytes[i] >> 4];
        line += DIGITS[bytes[i] & 15];
    }
}

static void appendFlashPage(std::string& line, const void* data) {
    const auto* page = static_cast<const _Flash_Data*>(data);
    const size_t size = page->Size < sizeof page->Data ? page->Size : sizeof page->Data;
    char tail[40];
    snprintf(tail, sizeof tail, "+%zu:%08x", size, static_cast<unsigned>(crc32_z(0, page->Data, size)));
    appendHex(line, data, FLASH_HEAD, 0, 0);
    line += tail;
}

static void appendText(std::string& line, const char* value) {
    line += '"';
    for (; *value; ++value) {
        const auto byte = static_cast<unsigned char>(*value);
        if (byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\') {
            line += *value;
            continue;
        }
        char escaped[8];
        snprintf(escaped, sizeof escaped, "\\x%02x", byte);
        line += escaped;
    }
    line += '"';
}

// How many bytes of a list or array are worth printing: never more than the caller's buffer holds.
static size_t filledSize(const Arg& arg) {
    if (arg.type == ArgType::Array) return arg.size * std::min<KT_U64>(*arg.count, arg.number);
    if (arg.type != ArgType::List) return arg.size;
    _RequestHeader header;
    memcpy(&header, arg.data, sizeof header);
    const size_t records = header.numReturned < header.numRequested ? header.numReturned : header.numRequested;
    return sizeof header + records * arg.size;
}

static void appendArg(std::string& line, const Arg& arg, size_t size) {
    line += ' ';
    line += arg.name;
    line += '=';
    if (arg.type == ArgType::Number) {
        line += std::to_string(arg.number);
    } else if (!arg.data) {
        line += "null";
    } else if (arg.type == ArgType::Text) {
        appendText(line, static_cast<const char*>(arg.data));
    } else if (arg.pages) {
        appendFlashPage(line, arg.data);
    } else {
        appendHex(line, arg.data, size, arg.secretFrom, arg.secretSize);
    }
}

// Says so once; after the first lost line the trace is incomplete anyway.
static void reportIncomplete(const char* path, const char* reason) {
    static bool said = false;
    if (!said) fprintf(stderr, "ktraid-sim: the trace is incomplete: %s: %s\n", path, reason);
    said = true;
}

bool tracing() {
    const char* file = getenv("KTRAID_SIM_TRACE");
    return file && *file;
}

std::string traceBefore(const char* call, int adapter, std::initializer_list<Arg> args) {
    if (!tracing()) return {};
    std::string line = call;
    if (adapter >= 0) line += " a=" + std::to_string(adapter);
    for (const Arg& arg : args) {
        if (arg.type == ArgType::Out || arg.type == ArgType::Array) continue;
        appendArg(line, arg, arg.type == ArgType::List ? sizeof(_RequestHeader) : arg.size);
    }
    return line;
}

void traceAfter(const std::string& before, int status, std::initializer_list<Arg> args) {
    const char* path = getenv("KTRAID_SIM_TRACE");
    if (!path || !*path) return;
    std::string line = before + " -> " + std::to_string(status);
    for (const Arg& arg : args) {
        const bool given = arg.type != ArgType::Number && arg.type != ArgType::In && arg.type != ArgType::Text;
        if (status == KT_OK && given) appendArg(line, arg, filledSize(arg));
    }
    line += '\n';
    // A pipe is no file, and its reader is not waited for.
    const int file = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600);
    if (file < 0) return reportIncomplete(path, strerror(errno));
    struct stat info = {};
    if (fstat(file, &info) != 0 || !S_ISREG(info.st_mode)) {
        reportIncomplete(path, "this is not a file");
    } else {
        // One write a line keeps the lines of several processes whole.
        errno = ENOSPC;
        if (write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
            reportIncomplete(path, strerror(errno));
    }
    close(file);
}

} // namespace sim
