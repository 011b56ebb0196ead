#include "devices/hybrid.h"
#include "frame/call.h"

using namespace sim;

static Arg magicList(_Device_Magic* magics, KT_U16 count) {
    return {"magics", ArgType::InOut, 0, magics, sizeof *magics * count};
}

KT_U8 KT_Tandemix_AddFSEntries(KT_U8 a, KT_U16 vd, const _Tandemix_Entry_Request* request, KT_U8 last) {
    return call("KT_Tandemix_AddFSEntries", a, Access::Write,
                {num("vd", vd), in("request", request), num("last", last)},
                [&](Context& context) { return addHybridEntry(context, vd, *request); });
}

KT_U8 KT_Tandemix_GetEntriesTableInfo(KT_U8 a, KT_U16 vd, _Tandemix_Table_Info* info) {
    return call("KT_Tandemix_GetEntriesTableInfo", a, Access::Read, {num("vd", vd), out("info", info)},
                [&](Context& context) { return getHybridTable(context, vd, *info); });
}

KT_U8 KT_Tandemix_RemoveEntriesTable(KT_U8 a, KT_U16 vd) {
    return call("KT_Tandemix_RemoveEntriesTable", a, Access::Write, {num("vd", vd)},
                [&](Context& context) { return removeHybridTable(context, vd); });
}

KT_U8 KT_Tandem_GetHDMagic(KT_U8 a, KT_U16 count, _Device_Magic* magics) {
    return call("KT_Tandem_GetHDMagic", a, Access::Read, {num("count", count), magicList(magics, count)},
                [&](Context& context) { return getDiskMagic(context, count, magics); });
}

KT_U8 KT_Tandem_GetVDMagic(KT_U8 a, KT_U16 count, _Device_Magic* magics) {
    return call("KT_Tandem_GetVDMagic", a, Access::Read, {num("count", count), magicList(magics, count)},
                [&](Context& context) { return getVdMagic(context, count, magics); });
}

KT_U8 KT_VDHDD_AddLink(KT_U8 a, KT_U16 vd, KT_U16 pd) {
    return call("KT_VDHDD_AddLink", a, Access::Write, {num("vd", vd), num("pd", pd)},
                [&](Context& context) { return addVdLink(context, vd, pd); });
}

KT_U8 KT_VDHDD_GetLink(KT_U8 a, KT_U16 vd, KT_U16* pd) {
    return call("KT_VDHDD_GetLink", a, Access::Read, {num("vd", vd), out("pd", pd)},
                [&](Context& context) { return getVdLink(context, vd, *pd); });
}
