// The info command and the objects it reports on. Each get function prints what it finds; it answers KT_OK or the
// library's status after printing what went wrong.
#pragma once

#include "Public/listing.h"
#include "Public/optionRows.h"

int doInfo(int argc, char** argv, _cmd_struct* row);

inline constexpr char info_sh[] = ":Display adapter(hba), virtual disk(vd), disk array,\n"
                                  "              physical disk(pd), Port multiplexer(pm), expander(exp),\n"
                                  "              block disk(blk) or spare drive information.";
inline constexpr OptionRow infoRows[] = {
    {'o', "object", "<hba|vd|ld|array|pd|hd|pm|exp|blk|spare|bbu|tandem>", Takes::Words, ONCE | REQUIRED,
     "Object to display: adapter (hba), virtual disk (vd or ld), disk array,\n"
     "physical disk (pd or hd), port multiplexer (pm), expander (exp),\n"
     "block disk (blk), spare drive, battery backup unit (bbu) or hybrid\n"
     "virtual disk (tandem)."},
    {'i', "id", "<id>", Takes::ObjectId, ONCE, "ID of the object, 0 to 254. Default: all objects of the kind."},
    HELP_ROW,
};
inline constexpr CommandWords infoWords = {
    .usage = "\ninfo -o <hba|vd|ld|array|pd|hd|pm|exp|blk|spare|bbu|tandem> [-i <id>] [-h]\n",
    .rows = infoRows,
    .examples = "info -o hba\n\n"
                "Display all adapters.\n\n"
                "info -o vd -i 1\n\n"
                "Display virtual disk 1.\n"};
inline constexpr const char* info_help = helpOf<infoWords>;
inline constexpr const OptionSet& infoOptions = optionSet<infoWords>;

// Disks have ids of their own beyond 254, so every disk is another id than every item of the other kinds.
inline constexpr KT_U16 ALL_DISKS = 0xFFFF;

KT_U8 getAdapterInfo(KT_U16 id); // ALL_ITEMS = every adapter
KT_U8 getLDInfo(KT_U16 id);      // ALL_ITEMS = every virtual disk
KT_U8 getDGInfo(KT_U16 id);      // ALL_ITEMS = every array
KT_U8 getHDInfo(KT_U16 id);      // ALL_DISKS = every disk
KT_U8 getBlkInfo(KT_U16 id);     // ALL_ITEMS = every block
KT_U8 getSpareInfo(KT_U16 id);   // ALL_ITEMS = every spare
KT_U8 getTandemInfo(KT_U16 id);  // ALL_ITEMS = every hybrid virtual disk
KT_U8 getPMInfo(KT_U16 id);      // ALL_ITEMS = every port multiplier
KT_U8 getExpInfo(KT_U16 id);     // ALL_ITEMS = every expander
KT_U8 getBBUInfo();

// The word for a PCIe generation code.
const char* AdapterPCIeSpeed(KT_U8 speed);

void Adapter_PrintInfo(const _Adapter_Info* info, KT_U8 adapter);
void LD_PrintInfo(const _LD_Info* ld);
void LD_PrintStatus(const _LD_STATUS* status);
void Tandem_Print(const _LD_Info* ld, const _LD_STATUS* status);
void DG_PrintInfo(const _DG_Info* dg);
// config is null when it could not be read; osStatus is what KT_DiskHasOS answered.
void HD_PrintInfo(const _HD_Info* disk, const _HD_CONFIG* config, KT_U8 osStatus);
void HD_PrintBGAStatus(const _HD_BGA_STATUS* status);
void HD_PrintFreeInfo(const _HD_FreeSpaceInfo* space);
void HD_Blk_PrintInfo(const _HD_Block_Info* blocks);
void Blk_PrintInfo(const _Block_Info* block);
void Spare_PrintInfo(const _HD_RAID_STATUS* spare);
void PM_PrintInfo(const _PM_Info* pm);
void Exp_PrintInfo(const _Exp_Info* expander);
// The words for what the battery is doing, without a line break.
void BBU_PrintStatus(const _BBU_Info* battery);
