/* Virtual disks that were made on another adapter. */
#ifndef KTSIM_ADAPTER_FOREIGN_H
#define KTSIM_ADAPTER_FOREIGN_H

#include "adapter/volumes.h"

#include <vector>

namespace sim {

/* KT_LD_Import: KT_ERR_VD_NOT_IMPORTABLE when too much of it is missing or in other use, KT_ERR_VD_STATUS when it is
   not foreign. With arrays, all virtual disks on the same foreign disks come along in one new array. */
KT_U8 importVd(const Context& context, KT_U16 id);
/* KT_LD_Report: shows the virtual disk to the host. */
KT_U8 reportVd(const Context& context, KT_U16 id);

/* Disks of another state (a lab) are put into this adapter, with what is on them; `ids` are theirs here, the lowest
   free ones. Their virtual disks show up as foreign ones, importable as soon as enough of their members have come.
   KT_ERR_PD_MISSING when there is no such disk, KT_ERR_NOT_SUPPORTED when it does not fit the adapter's ports,
   KT_ERR_NO_RESOURCE and KT_ERR_NO_VD_ID when the adapter is full. */
KT_U8 insertForeignDisks(const Context& context, Store& other, KT_U8 otherAdapter, const std::vector<KT_U16>& disks,
                         std::vector<KT_U16>& ids);

} // namespace sim
#endif
