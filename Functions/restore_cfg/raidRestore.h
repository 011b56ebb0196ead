// Replacing the current adapter's virtual disks and spares by those of a configuration text.
#pragma once

#include "Public/cfg/raidConfig.h"

// What a virtual disk of a text is created with.
void KT_Restore_LdCreateParam(const _LD_Info* vd, _Create_LD_Param* param);

// Deletes what there is and creates what the text lists, after saying on standard error what that is. What was done
// before a failure stays done. Returns the command's result, which is 1 for success as well.
int restoreRaid(const CfgRaid& wanted);

// True when every virtual disk and spare of the text is named in full; otherwise says which is not.
bool isCompleteRaid(const CfgRaid& wanted);
