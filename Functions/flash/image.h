// Moving a whole image between a file and an adapter's flash, page by page.
#pragma once

#include <string>

#include "ktraid.h"

// One image: which adapter, which kind, which file.
struct Image {
    KT_U8 adapter;
    KT_U8 type;
    std::string file; // as the user named it, without quotes
    bool quoted;      // it had quotes: its blanks belong to it
};

// Writes the file to the flash. Prints its progress and what went wrong; returns the handler's result.
int updateImage(const Image& image);

// Reads the flash into a new file; a backup that fails or is interrupted leaves none. Returns the handler's result.
int backUpImage(const Image& image);
