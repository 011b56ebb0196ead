#include "devices/flashImage.h"
#include "devices/flashMemory.h"
#include "devices/registers.h"
#include "frame/call.h"

using namespace sim;

static KT_U8 moveImage(Context& context, KT_U8 action, KT_U8 imageType, _Flash_Data* page) {
    if (action == KT_FLASH_UPDATE) return updateImage(context, imageType, *page);
    if (action == KT_FLASH_BACKUP) return backupImage(context, imageType, *page);
    return action == KT_FLASH_ERASE ? eraseImage(context, imageType) : KT_U8{KT_ERR_FLASH_ACTION};
}

KT_U8 KT_Flash_Bin(KT_U8 a, KT_U8 action, KT_U8 imageType, _Flash_Data* page) {
    return call(
        "KT_Flash_Bin", a, Access::Write,
        {num("action", action), num("imageType", imageType), flashPage("page", page, action == KT_FLASH_BACKUP)},
        [&](Context& context) { return moveImage(context, action, imageType, page); });
}

KT_U8 KT_Flash_Erase(KT_U8 a, KT_U8 pageCode) {
    return call("KT_Flash_Erase", a, Access::Write, {num("pageCode", pageCode)},
                [&](Context& context) { return erasePdPage(context, pageCode); });
}

KT_U8 KT_Flash_PreData(KT_U8 a, const _KT_FLASH_PER_DATA* announcement) {
    return call("KT_Flash_PreData", a, Access::Write, {in("announcement", announcement)},
                [&](Context& context) { return announceImage(context, *announcement); });
}

KT_U8 KT_Flash_NVSRAM(KT_U8 a, KT_U8 action, _NVSRAM_Data* data) {
    return call("KT_Flash_NVSRAM", a, action == KT_NVSRAM_WRITE ? Access::Write : Access::Read,
                {num("action", action), inOut("data", data)},
                [&](Context& context) { return accessNvsram(context, action, *data); });
}

// The interface is as it is. NOLINTNEXTLINE(readability-function-size)
KT_U8 KT_Flash_GetHeaderInfo(const char* path, KT_U8* imageType, KT_U32* major, KT_U16* minor, KT_U16* revision,
                             KT_U16* build, KT_U16* subVendorId) {
    return call("KT_Flash_GetHeaderInfo", -1, Access::Read,
                {text("path", path), out("imageType", imageType), out("major", major), out("minor", minor),
                 out("revision", revision), out("build", build), out("subVendorId", subVendorId)},
                [&](Context&) {
                    ImageHeader header = {};
                    const KT_U8 status = readImageHeader(path, header);
                    if (status != KT_OK) return status;
                    *imageType = header.imageType;
                    *major = header.major;
                    *minor = header.minor;
                    *revision = header.revision;
                    *build = header.build;
                    *subVendorId = header.subVendorId;
                    return status;
                });
}
