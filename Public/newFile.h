// A file that a command creates: never over an existing one, and never left behind unless it is whole.
#pragma once

#include <cstddef>
#include <sys/types.h>

struct NewFile {
    int fd;
};

enum class Created { Yes, Exists, Failed };

// Creates path, which must not exist (a symbolic link counts as existing); errno says why it was not. Until keepNewFile
// or dropNewFile is called the file is removed when a signal ends the program. One new file can be open at a time; path
// must stay valid.
Created createNewFile(const char* path, NewFile& file, mode_t mode = 0644);

// Appends all bytes. False, with the reason in errno, when not all could be written.
bool writeNewFile(const NewFile& file, const void* bytes, size_t count);

// Brings the file to the disk and closes it. False, and no file, when that failed; errno says why.
bool keepNewFile(NewFile& file);

// Closes and removes the file.
void dropNewFile(NewFile& file);
