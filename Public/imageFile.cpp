#include "Public/imageFile.h"

#include <cerrno>
#include <unistd.h>

#include "Public/fileName.h"
#include "Public/wholeFile.h"

static off_t FileSeek(int fd, off_t offset, int whence) {
    return lseek(fd, offset, whence);
}

// The file's length; the position stays where it was. Negative when the file cannot be sought in.
static off_t GetFileLen(int fd) {
    const off_t position = FileSeek(fd, 0, SEEK_CUR);
    const off_t length = FileSeek(fd, 0, SEEK_END);
    return FileSeek(fd, position, SEEK_SET) < 0 ? -1 : length;
}

// Reads `length` bytes; count is less than that only at the end of the file. False when reading failed.
static bool ReadFromFile(int fd, KT_U8* buffer, KT_U32 length, KT_U32& count) {
    for (count = 0; count < length;) {
        const ssize_t got = read(fd, buffer + count, length - count);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return false;
        if (got == 0) break;
        count += static_cast<KT_U32>(got);
    }
    return true;
}

int openImageFile(const std::string& name, bool quoted, KT_U32& length) {
    std::string path;
    if (!expandName(name, quoted, path)) return -1;
    const int fd = openRegularFile(path.c_str());
    if (fd < 0) return -1;
    const off_t size = GetFileLen(fd);
    if (size < 0 || size > off_t{UINT32_MAX}) {
        close(fd);
        return -1;
    }
    length = static_cast<KT_U32>(size);
    return fd;
}

bool readImagePage(int fd, KT_U32 wanted, _Flash_Data& page) {
    return wanted != 0 && ReadFromFile(fd, page.Data, wanted, page.Size) && page.Size == wanted;
}
