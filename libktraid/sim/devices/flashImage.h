// Flash images as files: a header of 64 bytes, then the data.
#pragma once

#include "ktraid.h"

#include <string>

namespace sim {

struct ImageHeader {
    KT_U8 signature[4]; // "KTIM"
    KT_U16 headerSize;  // 64
    KT_U8 imageType;    // KT_IMAGE_*
    KT_U8 reserved;
    KT_U32 dataSize; // bytes after the header
    KT_U32 dataChecksum;
    KT_U32 major;
    KT_U16 minor;
    KT_U16 revision;
    KT_U16 build;
    KT_U16 subVendorId; // of the adapters it is for
    KT_U8 name[32];
    KT_U32 headerChecksum; // of the 60 bytes before it
};
static_assert(sizeof(ImageHeader) == 64);

// The kinds of image an adapter's flash has room for.
struct ImageKind {
    KT_U8 type;
    bool headed;       // begins with an ImageHeader that an update checks
    KT_U32 capacity;   // bytes
    KT_U32 factoryKib; // data in the image it leaves the factory with
    const char* word;  // as `flash -t` calls it
    size_t version;    // where _Adapter_Info shows its version; 0 = nowhere
    size_t health;     // where it shows whether the image is sound; 0 = nowhere
};
// Null for a type that there is no image of; the settings page is none.
const ImageKind* imageKind(KT_U8 type);
const ImageKind* imageKindNamed(const std::string& word);

struct ImageVersion {
    KT_U32 major;
    KT_U16 minor;
    KT_U16 revision;
    KT_U16 build;
};
std::string makeImage(const ImageKind& kind, const ImageVersion& version, KT_U16 subVendorId, const std::string& data);
// `size` bytes that are the same for the same seed.
std::string imageFiller(KT_U32 seed, size_t size);

enum class ImageFault { None, Header, Data, Both };
ImageFault checkImage(const std::string& image, ImageHeader& header);
// The header of an image file, the data not looked at. KT_ERR_INVALID_FILE when there is no readable file of that name
// or it is too short for a header, KT_ERR_INVALID_MICROCODE when it begins with anything else.
KT_U8 readImageHeader(const char* path, ImageHeader& header);

} // namespace sim
