#include "call.h"

using namespace sim;

KT_U8 KT_ENC_GetEnclosureInfo(KT_U8 a, _Enclosure_Info_Request* request) {
    return notSupported("KT_ENC_GetEnclosureInfo", a,
                        {Arg{"request", ArgType::List, 0, request, sizeof(_Enclosure_Info)}});
}

KT_U8 KT_ENC_GetElementInfo(KT_U8 a, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Info* info) {
    return notSupported("KT_ENC_GetElementInfo", a,
                        {num("enc", enc), num("type", type), num("element", element), out("info", info)});
}

KT_U8 KT_ENC_GetElementConfig(KT_U8 a, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Config* config) {
    return notSupported("KT_ENC_GetElementConfig", a,
                        {num("enc", enc), num("type", type), num("element", element), out("config", config)});
}
