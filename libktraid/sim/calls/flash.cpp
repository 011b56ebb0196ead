#include "call.h"

using namespace sim;

KT_U8 KT_Flash_Bin(KT_U8 a, KT_U8 action, KT_U8 imageType, _Flash_Data* page) {
    return notSupported(
        "KT_Flash_Bin", a,
        {num("action", action), num("imageType", imageType), flashPage("page", page, action == KT_FLASH_BACKUP)});
}

KT_U8 KT_Flash_Erase(KT_U8 a, KT_U8 pageCode) {
    return notSupported("KT_Flash_Erase", a, {num("pageCode", pageCode)});
}

KT_U8 KT_Flash_PreData(KT_U8 a, const _KT_FLASH_PER_DATA* announcement) {
    return notSupported("KT_Flash_PreData", a, {in("announcement", announcement)});
}

KT_U8 KT_Flash_NVSRAM(KT_U8 a, KT_U8 action, _NVSRAM_Data* data) {
    return notSupported("KT_Flash_NVSRAM", a, {num("action", action), inOut("data", data)});
}

KT_U8 KT_Flash_GetHeaderInfo(const char* path, KT_U8* imageType, KT_U32* major, KT_U16* minor, KT_U16* revision,
                             KT_U16* build, KT_U16* subVendorId) {
    return call("KT_Flash_GetHeaderInfo", -1, Access::Read,
                {text("path", path), out("imageType", imageType), out("major", major), out("minor", minor),
                 out("revision", revision), out("build", build), out("subVendorId", subVendorId)},
                [](Context&) { return KT_ERR_NOT_SUPPORTED; });
}
