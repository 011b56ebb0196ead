#include "call.h"

using namespace sim;

KT_U8 KT_BLK_GetInfo(KT_U8 a, _BLK_Info_Request* request) {
    return notSupported("KT_BLK_GetInfo", a, {Arg{"request", ArgType::List, 0, request, sizeof(_Block_Info)}});
}

KT_U8 KT_BLK_GetHDBlock(KT_U8 a, KT_U16 pd, _HD_Block_Info* info) {
    return notSupported("KT_BLK_GetHDBlock", a, {num("pd", pd), out("info", info)});
}
