#include "call.h"

using namespace sim;

KT_U8 KT_BBU_GetInfo(KT_U8 a, _BBU_Info* info) {
    return notSupported("KT_BBU_GetInfo", a, {out("info", info)});
}

KT_U8 KT_BBU_ChangePower(KT_U8 a, KT_U8 action) {
    return notSupported("KT_BBU_ChangePower", a, {num("action", action)});
}
