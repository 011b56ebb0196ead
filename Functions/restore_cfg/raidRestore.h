// Replacing the current adapter's virtual disks and spares by those of a configuration text.
#pragma once

#include <string>

#include "Public/cfg/raidConfig.h"

// What a virtual disk of a text is created with.
void KT_Restore_LdCreateParam(const _LD_Info* vd, _Create_LD_Param* param);

// Deletes what there is and creates what the text lists, after saying on standard error what that is. What was done
// before a failure stays done. Returns the command's result, which is 1 for success as well.
int restoreRaid(const CfgRaid& wanted);

// What a restore decides, and a check foretells: with RAID on both on the adapter and in the file, the file's virtual
// disks and spares take the place of all that the adapter has, unless the file lacks something; that is answered as a
// sentence without its end, else an empty text.
bool isRaidOn(const _HBA_Info_Page& current, const _HBA_Info_Page& page);
std::string raidLack(const CfgRaid& wanted, KT_U8 mode);

// What is to be made, in the words of both: "virtual disk 'data' (RAID1, 3000 M) on disks 7, 8", "disk 9 as global
// spare disk".
std::string wantedText(const _LD_Info& ld);
std::string wantedText(const _HD_RAID_STATUS& spare);
