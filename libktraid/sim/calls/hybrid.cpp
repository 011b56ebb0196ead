#include "call.h"

using namespace sim;

KT_U8 KT_Tandemix_AddFSEntries(KT_U8 a, KT_U16 vd, const _Tandemix_Entry_Request* request, KT_U8 last) {
    return notSupported("KT_Tandemix_AddFSEntries", a, {num("vd", vd), in("request", request), num("last", last)});
}

KT_U8 KT_Tandemix_GetEntriesTableInfo(KT_U8 a, KT_U16 vd, _Tandemix_Table_Info* info) {
    return notSupported("KT_Tandemix_GetEntriesTableInfo", a, {num("vd", vd), out("info", info)});
}

KT_U8 KT_Tandemix_RemoveEntriesTable(KT_U8 a, KT_U16 vd) {
    return notSupported("KT_Tandemix_RemoveEntriesTable", a, {num("vd", vd)});
}

KT_U8 KT_Tandem_GetHDMagic(KT_U8 a, KT_U16 count, _Device_Magic* magics) {
    return notSupported("KT_Tandem_GetHDMagic", a,
                        {num("count", count), bytes("magics", magics, sizeof *magics * count)});
}

KT_U8 KT_Tandem_GetVDMagic(KT_U8 a, KT_U16 count, _Device_Magic* magics) {
    return notSupported("KT_Tandem_GetVDMagic", a,
                        {num("count", count), bytes("magics", magics, sizeof *magics * count)});
}

KT_U8 KT_VDHDD_AddLink(KT_U8 a, KT_U16 vd, KT_U16 pd) {
    return notSupported("KT_VDHDD_AddLink", a, {num("vd", vd), num("pd", pd)});
}

KT_U8 KT_VDHDD_GetLink(KT_U8 a, KT_U16 vd, KT_U16* pd) {
    return notSupported("KT_VDHDD_GetLink", a, {num("vd", vd), out("pd", pd)});
}
