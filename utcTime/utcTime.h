// How the machine's hardware clock is set, which decides how event times are read.
#pragma once

enum { UTC_CLOCK_UTC = 0, UTC_CLOCK_LOCAL = 1, UTC_CLOCK_UNKNOWN = 2 };

// The setting in "/etc/sysconfig/clock"; UTC_CLOCK_UNKNOWN without the file or a setting in it.
int ScanUTCStatus();

// The same for another file of that form.
int scanClockFile(const char* path);

int UTCStatus_Init();
