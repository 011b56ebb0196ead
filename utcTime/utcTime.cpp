#include "utcTime/utcTime.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>

// True when the line holds the setting outside a comment.
static bool holds(const char* line, const char* setting) {
    const char* at = strstr(line, setting);
    return at != nullptr && (at == line || at[-1] != '#');
}

// The first line with one of the two settings decides; UTC_CLOCK_UNKNOWN when none has.
static int scanFor(FILE* file, const char* utc, const char* local) {
    char line[1025];
    rewind(file);
    while (fgets(line, sizeof line, file) != nullptr) {
        if (holds(line, utc)) return UTC_CLOCK_UTC;
        if (holds(line, local)) return UTC_CLOCK_LOCAL;
    }
    return UTC_CLOCK_UNKNOWN;
}

int scanClockFile(const char* path) {
    // Most machines have no such file, and every start asks: the stream comes only with the file.
    FILE* file = access(path, R_OK) == 0 ? fopen(path, "re") : nullptr;
    if (file == nullptr) return UTC_CLOCK_UNKNOWN;
    int setting = scanFor(file, "HWCLOCK=\"-u\"", "HWCLOCK=\"--localtime\"");
    if (setting == UTC_CLOCK_UNKNOWN) setting = scanFor(file, "UTC=true", "UTC=false");
    fclose(file);
    return setting;
}

int ScanUTCStatus() {
    return scanClockFile("/etc/sysconfig/clock");
}

int UTCStatus_Init() {
    return ScanUTCStatus();
}
