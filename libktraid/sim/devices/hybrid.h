// Hybrid virtual disks: entries tables, magic numbers, links between virtual and hard disks.
#pragma once

#include "state/store.h"

namespace sim {

// `id` is a virtual disk's.
KT_U8 addHybridEntry(const Context& context, KT_U16 id, const _Tandemix_Entry_Request& request);
KT_U8 getHybridTable(const Context& context, KT_U16 id, _Tandemix_Table_Info& info);
KT_U8 removeHybridTable(const Context& context, KT_U16 id);

// Fill the Magic of each record for its ID; the first unknown one ends it.
KT_U8 getDiskMagic(const Context& context, KT_U16 count, _Device_Magic* magics);
KT_U8 getVdMagic(const Context& context, KT_U16 count, _Device_Magic* magics);

KT_U8 addVdLink(const Context& context, KT_U16 vd, KT_U16 pd);
KT_U8 getVdLink(const Context& context, KT_U16 vd, KT_U16& pd);

} // namespace sim
