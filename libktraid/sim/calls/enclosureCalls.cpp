#include "devices/enclosureElements.h"
#include "frame/call.h"

using namespace sim;

KT_U8 KT_ENC_GetEnclosureInfo(KT_U8 a, _Enclosure_Info_Request* request) {
    return listCall<_Enclosure_Info>("KT_ENC_GetEnclosureInfo", a, request, KT_ERR_INVALID_ENCLOSURE);
}

KT_U8 KT_ENC_GetElementInfo(KT_U8 a, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Info* info) {
    return call("KT_ENC_GetElementInfo", a, Access::Read,
                {num("enc", enc), num("type", type), num("element", element), out("info", info)},
                [&](Context& context) { return getElementInfo(context, enc, type, element, *info); });
}

KT_U8 KT_ENC_GetElementConfig(KT_U8 a, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Config* config) {
    return call("KT_ENC_GetElementConfig", a, Access::Read,
                {num("enc", enc), num("type", type), num("element", element), out("config", config)},
                [&](Context& context) { return getElementConfig(context, enc, type, element, *config); });
}
