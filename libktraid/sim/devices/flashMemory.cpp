#include "devices/flashMemory.h"

#include "changes/diskIds.h"
#include "devices/flashRegions.h"
#include "devices/settingsPage.h"
#include "raid/activityRecords.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

// The controllers that run no firmware have no boot loader for it either.
static const KT_U16 FIRST_WITH_FIRMWARE = 0x4761;
static const KT_U16 WITHOUT_FIRMWARE = 0x4790;

static KT_U8 failWith(Context& context, EventName event, KT_U8 status) {
    context.keepOnFailure = true;
    logEvent(context, event, context.adapter);
    return status;
}

// The kind of image, null when the adapter has none of that type.
static const ImageKind* imageKindOn(const Context& context, KT_U8 type) {
    const KT_U16 controller = adapterInfo(context).DevID;
    const bool firmware = controller >= FIRST_WITH_FIRMWARE && controller != WITHOUT_FIRMWARE;
    const bool partOfIt = type == KT_IMAGE_FIRMWARE || type == KT_IMAGE_BIN;
    return partOfIt && !firmware ? nullptr : imageKind(type);
}

static void endUpdate(const Context& context) {
    erase<FlashUpdate>(context, 0);
    eraseRows(context.store, context.adapter, static_cast<Kind>(KIND_FLASH_STAGED));
}

static KT_U8 refuseImage(Context& context, KT_U8 status) {
    endUpdate(context);
    return failWith(context, EVT_FLASH_UPDATE_FAILED, status);
}

static KT_U8 refuseWrite(Context& context, KT_U8 status) {
    logEvent(context, EVT_FLASH_WRITE_FAILED, context.adapter);
    return refuseImage(context, status);
}

static std::string stagedImage(const Context& context, const FlashUpdate& update) {
    std::string image;
    image.reserve(update.received);
    for (KT_U64 page = 0; page < update.nextPage; ++page)
        image += readBytes(context.store, {context.adapter, static_cast<Kind>(KIND_FLASH_STAGED), page}).value_or("");
    return image;
}

// The whole image is here: it is written, or nothing of it is written and everything stays as it was.
static KT_U8 finishUpdate(Context& context, const ImageKind& kind, const FlashUpdate& update) {
    const std::string image = stagedImage(context, update);
    ImageHeader header = {};
    if (kind.headed) {
        const ImageFault fault = checkImage(image, header);
        if (fault == ImageFault::Data) return refuseImage(context, KT_ERR_FLASH_DATA);
        if (fault != ImageFault::None) return refuseImage(context, KT_ERR_INVALID_MICROCODE);
        if (header.imageType != kind.type) return refuseImage(context, KT_ERR_FLASH_TYPE);
        if (header.subVendorId != adapterInfo(context).SubVenID)
            return refuseImage(context, KT_ERR_ADAPTER_DEVICE_MISMATCH);
        // The adapter's record calls a region of major version 0 empty.
        if (header.major == 0 || header.major > 0xFFFF) return refuseImage(context, KT_ERR_INVALID_MICROCODE);
    }
    endUpdate(context);
    storeImage(context, kind, image);
    showHealth(context, kind, true);
    logEvent(context, EVT_FLASH_UPDATED, context.adapter);
    return KT_OK;
}

// Whether the adapter lets this image be written or erased.
static KT_U8 checkUpdate(const Context& context, const ImageKind& kind) {
    const _Adapter_Info info = adapterInfo(context);
    const auto config = find<_Adapter_Config_V2>(context, 0);
    const bool rawForbidden =
        !(info.AdvancedFeatures & KT_ADV_RAW_UPDATE) || (config && config->rawimg_update_disabled);
    if (kind.type == KT_IMAGE_RAW && rawForbidden) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (kind.type == KT_IMAGE_BIOS && !(info.AdvancedFeatures & KT_ADV_FLASH_BIOS)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    return KT_OK;
}

static KT_U8 updatePage(Context& context, const _Flash_Data& page) {
    if (page.PageNum != 0 || page.isLastPage != 1 || page.Size != sizeof(_HBA_Info_Page))
        return KT_ERR_FLASH_DESCRIPTOR;
    _HBA_Info_Page settings;
    memcpy(&settings, page.Data, sizeof settings);
    const KT_U8 status = writeSettingsPage(context, settings);
    if (status != KT_OK) return failWith(context, EVT_FLASH_UPDATE_FAILED, status);
    logEvent(context, EVT_FLASH_UPDATED, context.adapter);
    return KT_OK;
}

// The update that this page belongs to: page 0 begins one, with what was announced for its type.
static FlashUpdate updateOf(const Context& context, KT_U8 type, const _Flash_Data& page) {
    FlashUpdate update = find<FlashUpdate>(context, 0).value_or(FlashUpdate{type, 0, 0, 0, 0});
    if (page.PageNum != 0) return update;
    const bool announced = update.announced && update.imageType == type;
    // One that broke off has left half an image behind.
    if (update.received != 0) logEvent(context, EVT_FLASH_BAD_GENERATION, context.adapter);
    endUpdate(context);
    return FlashUpdate{type, static_cast<KT_U8>(announced ? 1 : 0), 0, announced ? update.expected : 0, 0};
}

KT_U8 updateImage(Context& context, KT_U8 type, const _Flash_Data& page) {
    if (page.Size > FLASH_PAGE) return KT_ERR_BUFFER_TOO_BIG;
    if (type == KT_IMAGE_CONFIG) return updatePage(context, page);
    const ImageKind* kind = imageKindOn(context, type);
    if (!kind) return KT_ERR_FLASH_TYPE;
    const KT_U8 status = checkUpdate(context, *kind);
    if (status != KT_OK) return status;
    FlashUpdate update = updateOf(context, type, page);
    const bool follows = update.imageType == type && update.nextPage == page.PageNum;
    if (!follows || page.Size == 0 || page.isLastPage > 1) return refuseWrite(context, KT_ERR_FLASH_DESCRIPTOR);
    update.received += page.Size;
    ++update.nextPage;
    if (update.received > kind->capacity) return refuseWrite(context, KT_ERR_OUT_OF_RANGE);
    const bool complete = update.received == update.expected;
    if (update.announced && (page.isLastPage ? !complete : update.received >= update.expected))
        return refuseWrite(context, KT_ERR_FLASH_DESCRIPTOR);
    writeRow(context.store, {context.adapter, static_cast<Kind>(KIND_FLASH_STAGED), page.PageNum}, page.Data,
             page.Size);
    save(context, 0, update);
    return page.isLastPage ? finishUpdate(context, *kind, update) : KT_U8{KT_OK};
}

static void fillPage(_Flash_Data& page, const std::string& image) {
    const size_t at = size_t{page.PageNum} * FLASH_PAGE;
    const size_t size = std::min<size_t>(FLASH_PAGE, image.size() - at);
    page.Size = static_cast<KT_U32>(size);
    page.isLastPage = at + size == image.size() ? 1 : 0;
    memcpy(page.Data, image.data() + at, size);
}

KT_U8 backupImage(Context& context, KT_U8 type, _Flash_Data& page) {
    std::string image;
    if (type == KT_IMAGE_CONFIG) {
        const _HBA_Info_Page settings = settingsPage(context);
        image.assign(reinterpret_cast<const char*>(&settings), sizeof settings);
    } else {
        const ImageKind* kind = imageKindOn(context, type);
        if (!kind) return KT_ERR_FLASH_TYPE;
        image = imageInFlash(context, *kind, LATEST);
        if (image.empty()) return failWith(context, EVT_FLASH_BACKUP_FAILED, KT_ERR_FLASH_DATA);
    }
    if (size_t{page.PageNum} * FLASH_PAGE >= image.size()) return KT_ERR_FLASH_DESCRIPTOR;
    fillPage(page, image);
    if (page.isLastPage && type != KT_IMAGE_CONFIG) logEvent(context, EVT_FLASH_BACKED_UP, context.adapter);
    return KT_OK;
}

KT_U8 eraseImage(const Context& context, KT_U8 type) {
    const ImageKind* kind = imageKindOn(context, type);
    if (!kind && type != KT_IMAGE_CONFIG) return KT_ERR_FLASH_TYPE;
    if (!kind) {
        eraseSettingsPage(context);
        return KT_OK;
    }
    const KT_U8 status = checkUpdate(context, *kind);
    if (status != KT_OK) return status;
    eraseImages(context, *kind);
    showHealth(context, *kind, false);
    if (type != KT_IMAGE_BIOS) return KT_OK;
    eraseImages(context, *imageKind(KT_IMAGE_AUTOLOAD));
    showHealth(context, *imageKind(KT_IMAGE_AUTOLOAD), false);
    return KT_OK;
}

KT_U8 damageImage(const Context& context, KT_U8 type, ImageFault fault) {
    const ImageKind* kind = imageKindOn(context, type);
    if (!kind || !kind->headed) return KT_ERR_FLASH_TYPE;
    return spoilImage(context, *kind, fault) ? KT_U8{KT_OK} : KT_U8{KT_ERR_FLASH_DATA};
}

KT_U8 announceImage(const Context& context, const _KT_FLASH_PER_DATA& announcement) {
    const _Adapter_Info info = adapterInfo(context);
    if (!(info.AdvancedFeatures & KT_ADV_RAW_UPDATE)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (announcement.image_type == KT_IMAGE_CONFIG) return KT_OK;
    const ImageKind* kind = imageKindOn(context, announcement.image_type);
    if (!kind) return KT_ERR_FLASH_TYPE;
    if (announcement.image_size == 0 || announcement.image_size > kind->capacity) return KT_ERR_OUT_OF_RANGE;
    endUpdate(context);
    save(context, 0, FlashUpdate{announcement.image_type, 1, 0, announcement.image_size, 0});
    return KT_OK;
}

KT_U8 erasePdPage(Context& context, KT_U8 pageCode) {
    if (pageCode != KT_PAGE_PD && pageCode != KT_PAGE_PD_FORCE) return KT_ERR_INVALID_PARAMETER;
    bool busy = false;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        busy |= owner.kind != OwnerKind::Disk && activity.state == KT_STATE_RUNNING;
    });
    if (busy && pageCode == KT_PAGE_PD) return failWith(context, EVT_FLASH_ERASE_FAILED, KT_ERR_BGA_RUNNING);
    pageCode == KT_PAGE_PD_FORCE ? renumberDisks(context) : forgetAwayIds(context);
    return KT_OK;
}

} // namespace sim
