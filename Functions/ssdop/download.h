// Downloading microcode to a solid-state disk, page by page.
#pragma once

#include <string>

#include "ktraid.h"

struct Download {
    KT_U16 pd;
    KT_U8 mode;       // KT_MICROCODE_*
    bool waived;      // do not ask
    bool quoted;      // the file's name had quotes: its blanks belong to it
    std::string file; // as the user named it, without quotes
};

// Checks the file, asks, downloads and says what the disk runs then. Returns the handler's result: 0 also when the user
// declines.
int downloadMicrocode(const Download& download);
