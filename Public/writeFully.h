// Bytes to a file or a pipe, however many calls of the system that takes.
#pragma once

#include <cstddef>

// Answers how many bytes were written; when that is less than count, errno says why.
size_t writeFully(int file, const void* bytes, size_t count);
