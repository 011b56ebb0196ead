#include "devices/flashRegions.h"

#include "state/adapterInfo.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static const KT_U32 PAGE = sizeof(_Flash_Data::Data);
static const size_t NAME_BYTE = offsetof(ImageHeader, name);

static _Version_Info_CIM& versionOf(_Adapter_Info& info, const ImageKind& kind) {
    return *reinterpret_cast<_Version_Info_CIM*>(reinterpret_cast<KT_U8*>(&info) + kind.version);
}

static bool isZero(const _Version_Info_CIM& version) {
    return !version.MajorVersion && !version.MinorVersion && !version.RevisionNumber && !version.BuildNumber;
}

void showHealth(const Context& context, const ImageKind& kind, bool sound) {
    _Adapter_Info info = adapterInfo(context);
    if (kind.health) reinterpret_cast<KT_U8*>(&info)[kind.health] = sound ? 1 : 0;
    info.img_health =
        info.autoload_img_health && info.boot_loader_img_health && info.firmware_img_health && info.boot_rom_img_health
            ? 1
            : 0;
    save(context, 0, info);
}

static KT_U64 regionId(const ImageKind& kind, Generation generation) {
    return KT_U64{kind.type} + generation;
}

// As the adapter left the factory, both copies are alike.
static FlashImage factoryRegion(const Context& context, const ImageKind& kind) {
    _Adapter_Info info = adapterInfo(context);
    const _Version_Info_CIM version = kind.version ? versionOf(info, kind) : info.FirmwareVersion;
    return FlashImage{isZero(version) ? KT_U8{IMAGE_ERASED} : KT_U8{IMAGE_FACTORY}, {}, 0, version};
}

static FlashImage regionOf(const Context& context, const ImageKind& kind, Generation generation) {
    if (const auto region = find<FlashImage>(context, regionId(kind, generation))) return *region;
    const bool untouched = !find<FlashImage>(context, regionId(kind, LATEST));
    return untouched ? factoryRegion(context, kind) : FlashImage{IMAGE_ERASED, {}, 0, {}};
}

static KT_U64 chunkId(KT_U64 region, KT_U64 page) {
    return (region << 16) + page;
}

static void removePages(const Context& context, KT_U64 region) {
    const KT_U64 size = find<FlashImage>(context, region).value_or(FlashImage{}).size;
    for (KT_U64 page = 0; page * PAGE < size; ++page)
        eraseRow(context.store, {context.adapter, static_cast<Kind>(KIND_FLASH_CHUNK), chunkId(region, page)});
}

static void writeRegion(const Context& context, KT_U64 region, const std::string& image) {
    removePages(context, region);
    for (size_t at = 0; at < image.size(); at += PAGE) {
        writeRow(context.store, {context.adapter, static_cast<Kind>(KIND_FLASH_CHUNK), chunkId(region, at / PAGE)},
                 image.data() + at, std::min<size_t>(PAGE, image.size() - at));
    }
    save(context, region, FlashImage{IMAGE_STORED, {}, static_cast<KT_U32>(image.size()), {}});
}

static void writeMark(const Context& context, KT_U64 region, const FlashImage& mark) {
    removePages(context, region);
    save(context, region, mark);
}

// Says in the state what follows from the factory so far.
static void keepRegion(const Context& context, const ImageKind& kind, Generation generation) {
    const KT_U64 id = regionId(kind, generation);
    if (!find<FlashImage>(context, id)) save(context, id, regionOf(context, kind, generation));
}

// The copy goes to another region, with its pages.
static void copyRegion(const Context& context, const ImageKind& kind, Generation from, Generation to) {
    const FlashImage region = regionOf(context, kind, from);
    if (region.state == IMAGE_STORED) {
        writeRegion(context, regionId(kind, to), imageInFlash(context, kind, from));
    } else {
        writeMark(context, regionId(kind, to), region);
    }
}

std::string imageInFlash(const Context& context, const ImageKind& kind, Generation generation) {
    const FlashImage region = regionOf(context, kind, generation);
    if (region.state == IMAGE_ERASED) return {};
    if (region.state == IMAGE_FACTORY) {
        const _Version_Info_CIM& version = region.version;
        return makeImage(
            kind, ImageVersion{version.MajorVersion, version.MinorVersion, version.RevisionNumber, version.BuildNumber},
            adapterInfo(context).SubVenID, imageFiller(kind.type, size_t{kind.factoryKib} * 1024));
    }
    std::string bytes;
    for (KT_U64 page = 0; page * PAGE < region.size; ++page) {
        const KT_U64 id = chunkId(regionId(kind, generation), page);
        bytes += readBytes(context.store, {context.adapter, static_cast<Kind>(KIND_FLASH_CHUNK), id}).value_or("");
    }
    return bytes;
}

static ImageFault faultOf(const Context& context, const ImageKind& kind, Generation generation, ImageHeader& header) {
    return checkImage(imageInFlash(context, kind, generation), header);
}

void storeImage(const Context& context, const ImageKind& kind, const std::string& image) {
    ImageHeader header = {};
    const bool keeps = kind.headed && faultOf(context, kind, LATEST, header) == ImageFault::None;
    if (keeps) copyRegion(context, kind, LATEST, EARLIER);
    writeRegion(context, regionId(kind, LATEST), image);
}

void eraseImages(const Context& context, const ImageKind& kind) {
    for (const Generation generation : {LATEST, EARLIER})
        writeMark(context, regionId(kind, generation), FlashImage{IMAGE_ERASED, {}, 0, {}});
}

bool spoilImage(const Context& context, const ImageKind& kind, ImageFault fault) {
    std::string image = imageInFlash(context, kind, LATEST);
    if (image.size() <= sizeof(ImageHeader)) return false;
    if (fault != ImageFault::Data) image[NAME_BYTE] = static_cast<char>(image[NAME_BYTE] ^ 1);
    if (fault != ImageFault::Header) image.back() = static_cast<char>(image.back() ^ 1);
    keepRegion(context, kind, EARLIER);
    writeRegion(context, regionId(kind, LATEST), image);
    return true;
}

static void reportLoss(const Context& context) {
    logEvent(context, EVT_FLASH_NO_GENERATION, context.adapter);
    logEvent(context, EVT_FLASH_RECOVER_FAILED, context.adapter);
}

static EventName eventOf(ImageFault fault) {
    if (fault == ImageFault::Header) return EVT_FLASH_BAD_HEADER;
    return fault == ImageFault::Data ? EVT_FLASH_BAD_DATA : EVT_FLASH_BAD_HEADER_AND_DATA;
}

// An update that the power ended has left half an image where the earlier one was.
static void dropHalfImage(const Context& context) {
    const auto update = find<FlashUpdate>(context, 0);
    erase<FlashUpdate>(context, 0);
    eraseRows(context.store, context.adapter, static_cast<Kind>(KIND_FLASH_STAGED));
    const ImageKind* kind = update && update->received ? imageKind(update->imageType) : nullptr;
    if (!kind || !kind->headed) return;
    keepRegion(context, *kind, LATEST);
    writeMark(context, regionId(*kind, EARLIER), FlashImage{IMAGE_ERASED, {}, 0, {}});
    showHealth(context, *kind, false);
    logEvent(context, EVT_FLASH_BAD_GENERATION, context.adapter);
}

// Looks for a copy that can run, the latest first; false when there is none.
static bool findImage(const Context& context, const ImageKind& kind, ImageHeader& header) {
    const ImageFault fault = faultOf(context, kind, LATEST, header);
    if (fault == ImageFault::None) return true;
    showHealth(context, kind, false);
    const bool erased = imageInFlash(context, kind, LATEST).empty();
    if (!erased) logEvent(context, eventOf(fault), context.adapter);
    if (faultOf(context, kind, EARLIER, header) == ImageFault::None) {
        logEvent(context, EVT_FLASH_BAD_GENERATION, context.adapter);
        copyRegion(context, kind, EARLIER, LATEST);
        writeMark(context, regionId(kind, EARLIER), FlashImage{IMAGE_ERASED, {}, 0, {}});
        return true;
    }
    header = {};
    reportLoss(context);
    return false;
}

// Images that nobody has touched run as ever.
static bool bootImage(const Context& context, const ImageKind& kind) {
    if (!kind.headed || !find<FlashImage>(context, regionId(kind, LATEST))) return true;
    ImageHeader header = {};
    const bool runs = findImage(context, kind, header);
    _Adapter_Info info = adapterInfo(context);
    if (kind.version) {
        versionOf(info, kind) =
            _Version_Info_CIM{static_cast<KT_U16>(header.major), header.minor, header.revision, header.build};
    }
    save(context, 0, info);
    return runs;
}

template <class Visit>
static void forEachImageKind(Visit&& visit) {
    for (int type = 0; type <= KT_IMAGE_RAW; ++type)
        if (const ImageKind* kind = imageKind(static_cast<KT_U8>(type))) visit(*kind);
}

bool bootImages(const Context& context) {
    dropHalfImage(context);
    bool runs = true;
    forEachImageKind([&](const ImageKind& kind) {
        const bool needed = kind.type == KT_IMAGE_FIRMWARE || kind.type == KT_IMAGE_BIN;
        const bool sound = bootImage(context, kind);
        runs = runs && (sound || !needed);
    });
    return runs;
}

void examineFlash(const Context& context) {
    forEachImageKind([&](const ImageKind& kind) {
        const auto image = kind.headed ? find<FlashImage>(context, kind.type) : std::nullopt;
        if (image && image->state == IMAGE_ERASED) reportLoss(context);
    });
}

} // namespace sim
