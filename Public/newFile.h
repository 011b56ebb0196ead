// A file that a command creates: never over an existing one, and never left behind unless it is whole.
#pragma once

#include <cstddef>

struct NewFile {
    int fd;
};

enum class Created { Yes, Exists, Failed };

// Creates path, which must not exist (a symbolic link counts as existing), with mode 0644. Until keepNewFile or
// dropNewFile is called the file is removed when a signal ends the program. One new file can be open at a time; path
// must stay valid.
Created createNewFile(const char* path, NewFile& file);

// Appends all bytes. False when not all could be written.
bool writeNewFile(const NewFile& file, const void* bytes, size_t count);

// Brings the file to the disk and closes it. False, and no file, when that failed.
bool keepNewFile(NewFile& file);

// Closes and removes the file.
void dropNewFile(NewFile& file);
