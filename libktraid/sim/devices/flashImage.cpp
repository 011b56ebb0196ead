#include "devices/flashImage.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace sim {

static const KT_U8 IMAGE_SIGNATURE[4] = {'K', 'T', 'I', 'M'};
static const KT_U32 KIB = 1024;

static const ImageKind IMAGE_KINDS[] = {
    {KT_IMAGE_BIN, true, 8192 * KIB, 96, "bin", offsetof(_Adapter_Info, BootLoaderVersion),
     offsetof(_Adapter_Info, boot_loader_img_health)},
    {KT_IMAGE_BIOS, true, 1024 * KIB, 128, "bios", offsetof(_Adapter_Info, BIOSVersion),
     offsetof(_Adapter_Info, boot_rom_img_health)},
    {KT_IMAGE_FIRMWARE, true, 4096 * KIB, 400, "firmware", offsetof(_Adapter_Info, FirmwareVersion),
     offsetof(_Adapter_Info, firmware_img_health)},
    {KT_IMAGE_AUTOLOAD, true, 256 * KIB, 24, "autoload", 0, offsetof(_Adapter_Info, autoload_img_health)},
    {KT_IMAGE_RAW, false, 16384 * KIB, 1024, "raw", 0, 0},
};

const ImageKind* imageKind(KT_U8 type) {
    for (const ImageKind& kind : IMAGE_KINDS)
        if (kind.type == type) return &kind;
    return nullptr;
}

const ImageKind* imageKindNamed(const std::string& word) {
    for (const ImageKind& kind : IMAGE_KINDS)
        if (word == kind.word) return &kind;
    return nullptr;
}

static KT_U32 checksum(const void* bytes, size_t size) {
    return static_cast<KT_U32>(crc32_z(0, static_cast<const Bytef*>(bytes), size));
}

static KT_U32 headerChecksum(const ImageHeader& header) {
    return checksum(&header, offsetof(ImageHeader, headerChecksum));
}

std::string makeImage(const ImageKind& kind, const ImageVersion& version, KT_U16 subVendorId, const std::string& data) {
    if (!kind.headed) return data;
    ImageHeader header = {};
    memcpy(header.signature, IMAGE_SIGNATURE, sizeof IMAGE_SIGNATURE);
    header.headerSize = sizeof header;
    header.imageType = kind.type;
    header.dataSize = static_cast<KT_U32>(data.size());
    header.dataChecksum = checksum(data.data(), data.size());
    header.major = version.major;
    header.minor = version.minor;
    header.revision = version.revision;
    header.build = version.build;
    header.subVendorId = subVendorId;
    memcpy(header.name, kind.word, strlen(kind.word));
    header.headerChecksum = headerChecksum(header);
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + data;
}

std::string imageFiller(KT_U32 seed, size_t size) {
    std::string bytes(size, '\0');
    KT_U32 state = seed * 2654435761U + 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

static bool headerIsSound(const ImageHeader& header) {
    return memcmp(header.signature, IMAGE_SIGNATURE, sizeof IMAGE_SIGNATURE) == 0 &&
           header.headerSize == sizeof header && header.headerChecksum == headerChecksum(header);
}

ImageFault checkImage(const std::string& image, ImageHeader& header) {
    if (image.size() < sizeof header) return ImageFault::Both;
    memcpy(&header, image.data(), sizeof header);
    const size_t size = image.size() - sizeof header;
    const bool data =
        header.dataSize == size && header.dataChecksum == checksum(image.data() + sizeof header, size) && size > 0;
    if (!headerIsSound(header)) return data ? ImageFault::Header : ImageFault::Both;
    return data ? ImageFault::None : ImageFault::Data;
}

KT_U8 readImageHeader(const char* path, ImageHeader& header) {
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return KT_ERR_INVALID_FILE;
    struct stat about = {};
    const bool whole = fstat(file, &about) == 0 && S_ISREG(about.st_mode) &&
                       read(file, &header, sizeof header) == static_cast<ssize_t>(sizeof header);
    close(file);
    if (!whole) return KT_ERR_INVALID_FILE;
    return headerIsSound(header) ? KT_OK : KT_ERR_INVALID_MICROCODE;
}

} // namespace sim
