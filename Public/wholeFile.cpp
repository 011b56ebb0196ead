#include "Public/wholeFile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Public/newFile.h"

size_t read_file_to_mem(FILE* file, std::string& buffer) {
    buffer.clear();
    int byte;
    while ((byte = fgetc(file)) != EOF) {
        if (buffer.size() == MOST_FILE_BYTES) {
            buffer.clear();
            return FILE_TOO_BIG;
        }
        buffer += static_cast<char>(byte);
    }
    return buffer.size();
}

void write_mem_to_file(FILE* file, const char* buffer, size_t length) {
    if (file == nullptr || buffer == nullptr) return;
    for (size_t i = 0; i < length; ++i) {
        fputc(static_cast<unsigned char>(buffer[i]), file);
    }
}

int openRegularFile(const char* path) {
    int fd = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return -1;
    struct stat status = {};
    if (fstat(fd, &status) == 0 && S_ISREG(status.st_mode)) return fd;
    close(fd);
    errno = EINVAL;
    return -1;
}

ReadFile readWholeFile(const std::string& path, std::string& bytes) {
    int fd = openRegularFile(path.c_str());
    if (fd < 0) return ReadFile::NotOpened;
    FILE* file = fdopen(fd, "r");
    if (file == nullptr) {
        close(fd);
        return ReadFile::NotOpened;
    }
    size_t size = read_file_to_mem(file, bytes);
    bool read = ferror(file) == 0;
    fclose(file);
    if (!read) return ReadFile::NotOpened;
    return size == FILE_TOO_BIG && bytes.empty() ? ReadFile::TooBig : ReadFile::Yes;
}

static bool fill(const NewFile& file, const std::string& bytes, const struct stat* replaced) {
    if (replaced != nullptr) {
        // The owner first: changing it takes special permission bits away. It can only be kept by the superuser.
        if (fchown(file.fd, replaced->st_uid, replaced->st_gid) != 0 && errno != EPERM) return false;
        if (fchmod(file.fd, replaced->st_mode & 07777) != 0) return false;
    }
    FILE* out = fdopen(fcntl(file.fd, F_DUPFD_CLOEXEC, 0), "w");
    if (out == nullptr) return false;
    write_mem_to_file(out, bytes.data(), bytes.size());
    bool written = ferror(out) == 0;
    return fclose(out) == 0 && written;
}

// Gives a complete file its name without taking that of another one.
static WroteFile name(const std::string& unnamed, const std::string& path) {
    if (renameat2(AT_FDCWD, unnamed.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) return WroteFile::Yes;
    int reason = errno;
    if (reason == EINVAL || reason == ENOSYS) {
        // A file system that knows no such rename may know links.
        reason = link(unnamed.c_str(), path.c_str()) == 0 ? 0 : errno;
    }
    unlink(unnamed.c_str());
    if (reason == 0) return WroteFile::Yes;
    return reason == EEXIST ? WroteFile::Exists : WroteFile::NotWritten;
}

// The entry of the folder that holds path's name outlives a crash as well.
static void flushFolder(const std::string& path) {
    size_t slash = path.rfind('/');
    int fd =
        open(slash == std::string::npos ? "." : path.substr(0, slash + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

WroteFile stageWholeFile(const std::string& path, const std::string& bytes, Existing existing, StagedFile& staged) {
    staged = {"", path, existing};
    std::string& target = staged.target;
    struct stat replaced = {};
    bool exists = lstat(target.c_str(), &replaced) == 0;
    if (exists && existing == Existing::Keep) return WroteFile::Exists;
    if (exists) {
        char resolved[PATH_MAX];
        if (realpath(path.c_str(), resolved) == nullptr || stat(resolved, &replaced) != 0) return WroteFile::NotOpened;
        // A device or a pipe that stands there is no file to be replaced by one.
        if (!S_ISREG(replaced.st_mode)) {
            errno = EINVAL;
            return WroteFile::NotOpened;
        }
        target = resolved;
    }
    size_t slash = target.rfind('/');
    size_t base = slash == std::string::npos ? 0 : slash + 1;
    if (base == target.size()) return WroteFile::NotOpened;
    // Not made of the target's name, which may be as long as a name can be.
    static unsigned count = 0;
    staged.unnamed =
        target.substr(0, base) + ".kt." + std::to_string(getpid()) + "." + std::to_string(++count) + ".new";
    NewFile file = {};
    if (createNewFile(staged.unnamed.c_str(), file) != Created::Yes) return WroteFile::NotOpened;
    if (!fill(file, bytes, exists ? &replaced : nullptr)) {
        dropNewFile(file);
        return WroteFile::NotWritten;
    }
    return keepNewFile(file) ? WroteFile::Yes : WroteFile::NotWritten;
}

WroteFile placeStagedFile(const StagedFile& staged) {
    if (staged.unnamed.empty()) return WroteFile::Yes;
    WroteFile result = WroteFile::Yes;
    if (staged.existing == Existing::Keep) {
        result = name(staged.unnamed, staged.target);
    } else if (rename(staged.unnamed.c_str(), staged.target.c_str()) != 0) {
        dropStagedFile(staged);
        result = WroteFile::NotWritten;
    }
    if (result == WroteFile::Yes) flushFolder(staged.target);
    return result;
}

void dropStagedFile(const StagedFile& staged) {
    if (!staged.unnamed.empty()) unlink(staged.unnamed.c_str());
}

WroteFile writeWholeFile(const std::string& path, const std::string& bytes, Existing existing) {
    StagedFile staged;
    WroteFile result = stageWholeFile(path, bytes, existing, staged);
    return result == WroteFile::Yes ? placeStagedFile(staged) : result;
}
