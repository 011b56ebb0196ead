#include "frame/call.h"
#include "media/blocks.h"

using namespace sim;

KT_U8 KT_BLK_GetInfo(KT_U8 a, _BLK_Info_Request* request) {
    return listCall<_Block_Info>("KT_BLK_GetInfo", a, request, KT_ERR_INVALID_BLOCK);
}

KT_U8 KT_BLK_GetHDBlock(KT_U8 a, KT_U16 pd, _HD_Block_Info* info) {
    return call("KT_BLK_GetHDBlock", a, Access::Read, {num("pd", pd), out("info", info)},
                [&](Context& context) -> KT_U8 {
                    if (!find<_HD_Info>(context, pd)) return KT_ERR_INVALID_PD;
                    *info = blocksOf(context, pd);
                    return KT_OK;
                });
}
