// Calls that fail, and reads that succeed and bring no record: each ends the command in its own words, and nobody takes
// the zeroes of a record that did not come for a state.
#include "tests/seam/activity.h"
#include "tests/seam/commands.h"

namespace {
// What the read is tried with: a status, an answer without a record, or both.
enum Tried { FAILS, LACKS, BOTH };
struct Row {
    CommandHandler handler;
    const char* line;
    const char* call;
    const char* printed; // '@' stands for the error, '#' for one with a blank before its colon
    Tried tried;
    int failed = KT_ERR_VD_MISSING; // what the command returns for a status
};
const char vdInfo[] = "\nUnable to get info of VD 2 @.\n";
const char vdStatus2[] = "\nUnable to get status of VD 2 @.\n";
const char necessary[] = "\nUnable to get necessary info@.\n";
const char pd9[] = "Failed to get status for PD 9 @\n";
const char vdConfig[] = "\nVD 2 is invalid @\n";
const char pdConfig[] = "\nUnable to get configuration of hard disk 2 #.\n";
const char arrayConfig[] = "\nUnable to get configuration of array 2 @\n";
const char hbaConfig[] = "\nUnable to get configuration info of hba 0 @\n";
const char pd2[] = "Unable to get info of PD 2 #\n";
const char noElements[] = "\nUnable to get enclosure info @\n";

const Row rows[] = {
    {doInit, "init -l 2", "KT_LD_GetInfo", vdInfo, BOTH},
    {doInit, "init -l 2", "KT_LD_GetStatus", vdStatus2, BOTH},
    {doInit, "init -a pause -l 2", "KT_LD_GetStatus", vdStatus2, BOTH},
    {doCC, "cc -a stop -l 2", "KT_LD_GetInfo", vdInfo, BOTH},
    {doCC, "cc -l 2", "KT_LD_GetStatus", vdStatus2, BOTH},
    {doRebuild, "rebuild -l 2 -d 9", "KT_LD_GetStatus", vdStatus2, BOTH},
    {doRebuild, "rebuild -l 2 -d 9", "KT_BLK_GetInfo", "Can not get disk 9 information@.\n", FAILS},
    {doRebuild, "rebuild -l 2 -d 9", "KT_LD_GetInfo", necessary, BOTH},
    {doRebuild, "rebuild -l 2 -d 9", "KT_PD_GetFreeSpaceInfo", necessary, FAILS},
    {doRebuild, "rebuild -l 2 -d 9", "KT_BLK_GetInfo 12", necessary, BOTH},
    {doRebuildV2, "rebuild -l 2 -d 9", "KT_DG_GetInfo", "Unable to get info of array 2 @.\n", BOTH},
    {doRebuildV2, "rebuild -l 2 -d 9", "KT_PD_GetHDRaidStatus", "Unable to get status of PD 9 @.\n", BOTH},
    {doRebuildV2, "rebuild -l 2 -d 9", "KT_PD_GetHDInfo", "Unable to get size of PD 9 @.\n", LACKS},
    {doRebuildV2, "rebuild -l 2 -d 9", "KT_PD_GetFreeSpaceInfo", "Unable to get size of PD 9 @.\n", FAILS},
    {doMP, "mp -d 2", "KT_PD_GetHDRaidStatus", "\nUnable to get status of PD 2.\n", BOTH},
    {doMP, "mp -a stop -d 2", "KT_PD_GetBGAStatus", "\nUnable to get status of PD 2.\n", BOTH},
    {doCopyBack, "copyback -a pause -l 2", "KT_DG_GetInfo", "Unable to get info of array 2 @.\n", BOTH},
    {doMigrate, "migrate -l 2 -d 1", "KT_BLK_GetInfo", "Can not get disk 1 information@.\n", FAILS},
    {doMigrate, "migrate -l 2 -r 6", "KT_LD_GetInfo", vdInfo, BOTH},
    {doMigrate, "migrate -a size -l 2", "KT_LD_GetMigratedLdSize", "\nUnable to get migrate size of VD 2 @.\n", FAILS},
    {doMigrate, "migrate -l 2 -d 1,2,3", "KT_LD_GetStatus", vdStatus2, BOTH},
    {doMigrate, "migrate -a stop -l 2", "KT_LD_GetStatus", vdStatus2, BOTH},
    {doMigrate, "migrate -l 2 -d 1,2,3,9", "KT_PD_GetHDRaidStatus 2", "Failed to get status for PD 2 @\n", LACKS},
    {doMigrate, "migrate -l 2 -d 1,2,3,9", "KT_PD_GetHDRaidStatus", pd9, BOTH},
    {doMigrateV2, "migrate -a stop -l 2", "KT_DG_GetInfo", "\nUnable to get status of array 2 @.\n", BOTH},
    {doMigrateV2, "migrate -a size -l 2", "KT_DG_StartMigration size", "\nFailed to get migration size @.\n", FAILS},
    {doMigrateV2, "migrate -l 2 -d 1,2,3,9", "KT_PD_GetHDRaidStatus", pd9, BOTH},
    {doMigrateV2, "migrate -l 2 -d 1,2,3,9", "KT_PD_GetFreeSpaceInfo", "Unable to get size of PD 9 @.\n", FAILS},
    {doDelete, "delete -o vd -i 2 --waiveconfirmation", "KT_LD_GetStatus", vdStatus2, BOTH, 1},
    {doDelete, "delete -o array -i 2 --waiveconfirmation", "KT_DG_GetInfo", "\nUnable to get info of array 2 @.\n",
     BOTH, 1},
    {doCreate, "create -r 0 -d 8,9", "KT_PD_GetHDRaidStatus", "Failed to get status for PD 8 @\n", BOTH, 1},
    {doGet, "get -o pd -i 2", "KT_PD_GetConfig", pdConfig, FAILS},
    {doGet, "get -o array -i 2", "KT_DG_GetConfig", arrayConfig, FAILS},
    {doGet, "get -o vd -i 2", "KT_LD_GetConfig", vdConfig, FAILS},
    {doGet, "get -o link -i 2", "KT_LD_GetInfo", vdConfig, FAILS},
    {doGet, "get -o hba", "KT_Adapter_GetConfig", hbaConfig, FAILS},
    {doSetV2, "set -o pd -i 2 -c on", "KT_PD_GetConfig", pdConfig, BOTH},
    {doSetV2, "set -o array -i 2 -c on", "KT_DG_GetConfig", arrayConfig, BOTH},
    {doSetV2, "set -o vd -i 2 -c on", "KT_LD_GetConfig", vdConfig, BOTH},
    {doSetV2, "set -o hba --copyback on", "KT_Adapter_GetConfig", hbaConfig, FAILS},
    {doSetV2, "set -o bbu --power charge", "KT_BBU_GetInfo", "Unable to get info of BBU. @.\n", FAILS},
    {doInfo, "info -o bbu -i 0", "KT_BBU_GetInfo", "Unable to get info of BBU. @.\n", FAILS},
    {doInfo, "info -o pd", "KT_PD_GetHDInfo", "\nUnable to get info of PD @\n", FAILS},
    {doInfo, "info -o pd -i 2", "KT_PD_GetHDInfo", "\nUnable to get info of PD 2 @\n", FAILS},
    {doInfo, "info -o blk", "KT_BLK_GetInfo", "\nUnable to get info of block @\n", FAILS},
    {doInfo, "info -o blk -i 2", "KT_BLK_GetInfo", "\nUnable to get info of block 2 @\n", FAILS},
    {doInfo, "info -o spare", "KT_PD_GetHDRaidStatus", "\nUnable to get info of spare @\n", FAILS},
    {doInfo, "info -o spare -i 2", "KT_PD_GetHDRaidStatus", "\nUnable to get info of spare 2 @\n", FAILS},
    {doInfo, "info -o vd", "KT_LD_GetInfo", "\nUnable to get info of vd @\n", FAILS},
    {doInfo, "info -o vd -i 2", "KT_LD_GetInfo", "\nUnable to get info of vd 2 @\n", FAILS},
    {doInfo, "info -o array", "KT_DG_GetInfo", "\nUnable to get info of array@\n", FAILS},
    {doInfo, "info -o array -i 2", "KT_DG_GetInfo", "\nUnable to get info of array 2 @\n", FAILS},
    {doInfo, "info -o pm", "KT_PD_GetPMInfo", "\nUnable to get info of PM @\n", FAILS},
    {doInfo, "info -o pm -i 2", "KT_PD_GetPMInfo", "\nUnable to get info of PM 2 @\n", FAILS},
    {doInfo, "info -o exp", "KT_PD_GetExpanderInfo", "\nUnable to get info of expander @\n", FAILS},
    {doInfo, "info -o exp -i 2", "KT_PD_GetExpanderInfo", "\nUnable to get info of expander 2 @\n", FAILS},
    {doEnclosure, "enc -o enc", "KT_ENC_GetEnclosureInfo", noElements, FAILS},
    {doEnclosure, "enc -o ele -t fan", "KT_ENC_GetEnclosureInfo", noElements, FAILS},
    {doStatus, "status -o pd", "KT_PD_GetSmartStatus", "\nUnable to get status of hard disk 255 @.\n", FAILS},
    {doStatus, "status -o pd -i 2", "KT_PD_GetSmartStatus", "\nUnable to get status of hard disk 2 @.\n", FAILS},
    {doSmart, "smart -p 2", "KT_PD_GetHDInfo", pd2, FAILS},
    {doSmart, "smart -p 2", "KT_PassThrough_ATA", "\nUnable to get smart return status for PHY 2 @\n", FAILS},
    {doSmart, "smart -p 2", "KT_PD_GET_SMART_INFO",
     "SMART STATUS RETURN: NotOK.\n\nUnable to get smart information for PHY 2 @\n", FAILS},
    {doSsdDiagnostic, "ssd", "KT_PD_GetHDInfo", "\nUnable to get info of PD @\n", FAILS},
    {doSsdDiagnostic, "ssd -d 2", "KT_PD_GetHDInfo", pd2, BOTH},
    {doSsdDiagnostic, "ssd -d 2", "KT_SSD_SmartReadData", "\nUnable to get SMART data of PD 2 @\n", FAILS},
    {doSsdDiagnostic, "ssd -d 2 -a start", "KT_SSD_Diagnostic", "\nUnable to start the self-test of PD 2 @\n", FAILS},
    {doSsdDiagnostic, "ssd -d 2 -a stop", "KT_SSD_Diagnostic", "\nUnable to stop the self-test of PD 2 @\n", FAILS},
    {doSsdDiagnostic, "ssd -d 2 -a status", "KT_SSD_Diagnostic", "\nUnable to get the self-test of PD 2 @\n", FAILS},
    {doSsdOp, "ssdop -d 2 -a version", "KT_PD_GetHDInfo", pd2, BOTH},
    {doLocate, "locate -i 9", "KT_LocateArrayDevice", "Failed to set LED status @\n", FAILS},
    {doImport, "import -i 1", "KT_LD_Import", "Failed to import VD @\n", FAILS},
    {doReport, "report -i 1", "KT_LD_Report", "Failed to report VD @\n", FAILS},
    {doWipe, "wipe -d 254", "KT_PD_WipeHDMDD", "\nWipe MDD on PD 254 failed @.\n", FAILS},
    {doFlash, "flash -a erase -p pd", "KT_Flash_Erase", "\nFailed to erase flash PD page @.\n", FAILS},
    {doFlash, "flash -a erase -t BIN", "KT_Flash_Bin",
     "Do you want to erase ROM file in Flash?  (y or n)\n\nFailed to erase BIN @.\n", FAILS},
    {doNvsramRW, "nvsram -a read -c 257", "KT_Flash_NVSRAM", "\nFailed to run NVSRAM read/write test @.\n", FAILS},
    {doNvsramRW, "nvsram -a write -c 256", "KT_Flash_NVSRAM", "\nFailed to run nvsram read/write test @.\n", FAILS},
    {doRegister, "register -a read", "KT_Adapter_Read_Register", "Read 0 address register failed @.\n", FAILS},
    {doRegister, "register -a write -v 255", "KT_Adapter_Write_Register", "Write 0 address register failed @.\n",
     FAILS},
    {doTandem, "tandem -o empty -d 0", "KT_Tandemix_AddFSEntries", "", FAILS},
    {doTandem, "tandem -o delete -d 0", "KT_Tandemix_RemoveEntriesTable", "", FAILS},
    {doTandem, "tandem -o count -d 0", "KT_Tandemix_GetEntriesTableInfo", "\nFailed to get table information @.\n",
     FAILS},
    {doGetMaxsize, "maxcreatesize -r 1 -d 8,9", "KT_LD_GetMaxSize", "\nFailed to get Maxsize @.\n", FAILS},
    {doGetMaxsize, "maxcreatesize -r 1 -d 8,9", "KT_PD_GetHDRaidStatus", "Failed to get status for PD 8 @\n", FAILS, 1},
};

// The read is the last thing that the command does.
void check(const Row& row, const std::string& error, int result) {
    std::string printed = row.printed;
    if (size_t at = printed.find_first_of("@#"); at != printed.npos) {
        std::string shown = error;
        if (printed[at] == '#') shown.insert(shown.find(':'), " ");
        printed.replace(at, 1, shown);
    }
    arrayBasedRaid = strstr(row.line, "-o ") != nullptr;
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    gAdapterInfo[0].MaxPM = gAdapterInfo[0].MaxExpander = 1;
    seam.hds[2].HDType = KT_HD_SSD;
    seam.freeSpace = seam.size = 1 << 20;
    expect(run(row.handler, row.line, "y\n"), printed, result);
    EXPECT_TRUE(changes().empty());
    EXPECT_TRUE(seam.calls.back().starts_with(row.call)) << seam.calls.back();
}
using FailingRead = SeamTest;
} // namespace

TEST_F(FailingRead, EndsTheCommand) {
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.line) + " without " + row.call);
        if (row.tried != LACKS) {
            layOut();
            seam.statuses[row.call] = seam.statuses[std::string(row.call) + "_Ext"] = KT_ERR_VD_MISSING;
            check(row, "(error 59: Specified virtual disk doesn't exist)", row.failed);
        }
        if (row.tried != FAILS) {
            layOut();
            seam.withoutRecord = {row.call, std::string(row.call) + "_Ext"};
            // The disk is only asked about when its block cannot tell whose it is.
            if (row.call == std::string("KT_PD_GetHDRaidStatus 2")) seam.withoutRecord.insert("KT_BLK_GetInfo 12");
            check(row, "(error 1: Failed)", 1);
        }
    }
}
