// Image files, as they are read page by page for the library.
#pragma once

#include <string>

#include "Public/flashPage.h"

// Opens the file of that name (expandName, with `quoted`) for reading and learns its length in bytes. -1 for anything
// but a regular file whose length fits 32 bits. The caller closes it.
int openImageFile(const std::string& name, bool quoted, KT_U32& length);

// Reads the next `wanted` bytes of the file, FLASH_PAGE_SIZE at most, into the page's Data, their count into Size.
// False when they cannot be read or there are none: also for a file that is empty, or became shorter than it was.
bool readImagePage(int fd, KT_U32 wanted, _Flash_Data& page);
