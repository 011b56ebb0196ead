// Changing the level of virtual disks and arrays, or spreading them over more disks. Members keep the KiB they hold;
// the new level over all target disks decides what that makes.
#pragma once

#include "raid/activityRecords.h"

namespace sim {

// KT_LD_GetMigratedLdSize: Size in KiB.
KT_U8 migratedVdSize(const Context& context, _Create_LD_Param& param);
// KT_LD_StartMigration; HDCount 0 keeps the disks.
KT_U8 startVdMigration(const Context& context, _Create_LD_Param& param);
// KT_DG_StartMigration: Size of the array in KiB on return.
KT_U8 startArrayMigration(const Context& context, _CreateOrModify_DG_Param& param, bool sizeOnly);

void finishMigration(const Context& context, Owner owner);

} // namespace sim
