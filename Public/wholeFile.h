// Text files that are read into memory and written from it, whole or not at all.
#pragma once

#include <cstdio>
#include <string>

inline constexpr size_t MOST_FILE_BYTES = 0x30000; // a longer file is too big
inline constexpr size_t FILE_TOO_BIG = 65535;      // what read_file_to_mem answers for one

// Reads the stream to its end and returns the byte count; FILE_TOO_BIG, with an empty buffer, for too big a file.
size_t read_file_to_mem(FILE* file, std::string& buffer);

// Writes the bytes one by one; nothing for a null stream, a null buffer or no bytes.
void write_mem_to_file(FILE* file, const char* buffer, size_t length);

// Opens a regular file for reading, without waiting for anything; -1 for what cannot be opened and what is none (errno
// is EINVAL then): the other end of a pipe may never come. The caller closes it.
int openRegularFile(const char* path);

enum class ReadFile { Yes, NotOpened, TooBig };

// Reads the file at path, NUL bytes included. What is no regular file or cannot be read counts as not opened.
ReadFile readWholeFile(const std::string& path, std::string& bytes);

enum class Existing { Keep, Replace };
enum class WroteFile { Yes, Exists, NotOpened, NotWritten };

// Writes a new file in the same folder, brings it to the disk and only then gives it the name: a file of that name is
// kept as it is (Exists), or until the new one is complete; what is no regular file is never replaced. A replaced
// file's permissions and owner go over to the new one; a symbolic link to it stays.
WroteFile writeWholeFile(const std::string& path, const std::string& bytes, Existing existing);

// The same in two steps, for whoever must know that the file can be written before doing something else: a staged file
// is complete and on the disk, but not under its name. Each one that was staged (Yes) is either placed or dropped;
// where nothing was staged both have nothing to do.
struct StagedFile {
    std::string unnamed; // the path it has for now; empty: nothing was staged
    std::string target;
    Existing existing;
};
WroteFile stageWholeFile(const std::string& path, const std::string& bytes, Existing existing, StagedFile& staged);
WroteFile placeStagedFile(const StagedFile& staged);
void dropStagedFile(const StagedFile& staged);
