// Calls that fail, and reads that succeed and bring no record: each ends the command in its own words, and nobody takes
// the zeroes of a record that did not come for a state.
#include "tests/seam/activity.h"

namespace {

// The call is the last thing that the command does.
void check(const TableRow& row, const std::string& line, const std::string& call, const std::string& error) {
    std::string message = row.message;
    if (size_t at = message.find_first_of("@#"); at != message.npos) {
        std::string shown = error;
        if (message[at] == '#') shown.insert(shown.find(':'), " ");
        message.replace(at, 1, shown);
    }
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    gAdapterInfo[0].MaxPM = gAdapterInfo[0].MaxExpander = 1;
    seam.hds[2].HDType = KT_HD_SSD;
    seam.freeSpace = seam.size = 1 << 20;
    expect(run(line, "y\n"), message, row.result >= 0 ? row.result : std::stoi(error.substr(7)));
    EXPECT_TRUE(changes().empty());
    EXPECT_TRUE(seam.calls.back().starts_with(call)) << seam.calls.back();
}

// In the message '@' stands for the error, '#' for one with a blank before its colon; the result is the error's unless
// the arrow says another one.
void expectEnds(bool arrays, const std::string& table) {
    for (const TableRow& row : rowsOf(table)) {
        SCOPED_TRACE(row.line);
        const std::string line = row.line.substr(0, row.line.find(" : "));
        const std::string how = row.line.substr(line.size());
        const std::string call = how.substr(how.find("KT_"));
        for (const char* tried : {"fails", "lacks"}) {
            if (how.find(tried) == how.npos) continue;
            layOut();
            arrayBasedRaid = arrays;
            if (*tried == 'f') {
                seam.statuses[call] = seam.statuses[call + "_Ext"] = KT_ERR_VD_MISSING;
                check(row, line, call, "(error 59: Specified virtual disk doesn't exist)");
                continue;
            }
            seam.withoutRecord = {call, call + "_Ext"};
            // The disk is only asked about when its block cannot tell whose it is.
            if (call == "KT_PD_GetHDRaidStatus 2") seam.withoutRecord.insert("KT_BLK_GetInfo 12");
            check(row, line, call, "(error 1: Failed)");
        }
    }
}
using FailingRead = SeamTest;
} // namespace

TEST_F(FailingRead, EndsTheCommand) {
    expectEnds(false, R"(
{init|cc -a stop|migrate -r 6} -l 2 : fails or lacks KT_LD_GetInfo => \nUnable to get info of VD 2 @.
{init -a pause|init|cc|rebuild -d 9|migrate -d 1,2,3|migrate -a stop} -l 2 : fails or lacks KT_LD_GetStatus => \nUnable to get status of VD 2 @.
rebuild -l 2 -d 9 : fails KT_BLK_GetInfo => Can not get disk 9 information@.
rebuild -l 2 -d 9 : fails or lacks {KT_LD_GetInfo|KT_BLK_GetInfo 12} => \nUnable to get necessary info@.
rebuild -l 2 -d 9 : fails KT_PD_GetFreeSpaceInfo => \nUnable to get necessary info@.
mp {-d 2 : fails or lacks KT_PD_GetHDRaidStatus|-a stop -d 2 : fails or lacks KT_PD_GetBGAStatus} => \nUnable to get status of PD 2.
migrate -l 2 -d 1 : fails KT_BLK_GetInfo => Can not get disk 1 information@.
pause -c 0 : fails KT_LD_PauseAll => \nExecutes  fail @.
migrate -a size -l 2 : fails KT_LD_GetMigratedLdSize => \nUnable to get migrate size of VD 2 @.
migrate -l 2 -d 1,2,3,9 : lacks KT_PD_GetHDRaidStatus 2 => Failed to get status for PD 2 @
migrate -l 2 -d 1,2,3,9 : fails or lacks KT_PD_GetHDRaidStatus => Failed to get status for PD 9 @
{create|maxcreatesize} -r 0 -d 8,9 : fails or lacks KT_PD_GetHDRaidStatus =1> Failed to get status for PD 8 @
maxcreatesize -r 1 -d 8,9 : fails KT_LD_GetMaxSize => \nFailed to get Maxsize @.
smart -p 2 : fails KT_PD_GetHDInfo => Unable to get info of PD 2 #
{ssd -d 2|ssdop -d 2 -a version} : fails or lacks KT_PD_GetHDInfo => Unable to get info of PD 2 #
smart -p 2 : fails KT_PassThrough_ATA => \nUnable to get smart return status for PHY 2 @
smart -p 2 : fails KT_PD_GET_SMART_INFO => SMART STATUS RETURN: NotOK.\n\nUnable to get smart information for PHY 2 @
ssd : fails KT_PD_GetHDInfo => \nUnable to get info of PD @
ssd -d 2 : fails KT_SSD_SmartReadData => \nUnable to get SMART data of PD 2 @
ssd -d 2 -a {start|stop} : fails KT_SSD_Diagnostic => \nUnable to {} the self-test of PD 2 @
ssd -d 2 -a status : fails KT_SSD_Diagnostic => \nUnable to get the self-test of PD 2 @
locate -i 9 : fails KT_LocateArrayDevice => Failed to set LED status @
import -i 1 : fails KT_LD_Import => Failed to import VD @
report -i 1 : fails KT_LD_Report => Failed to report VD @
wipe -d 254 : fails KT_PD_WipeHDMDD => \nWipe MDD on PD 254 failed @.
flash -a erase -p pd : fails KT_Flash_Erase => \nFailed to erase flash PD page @.
flash -a erase -t BIN : fails KT_Flash_Bin => Do you want to erase ROM file in Flash?  (y or n)\n\nFailed to erase BIN @.
nvsram -a read -c 257 : fails KT_Flash_NVSRAM => \nFailed to run NVSRAM read/write test @.
nvsram -a write -c 256 : fails KT_Flash_NVSRAM => \nFailed to run nvsram read/write test @.
register -a read : fails KT_Adapter_Read_Register => Read 0 address register failed @.
register -a write -v 255 : fails KT_Adapter_Write_Register => Write 0 address register failed @.
)");
    expectEnds(true, R"(
rebuild -l 2 -d 9 : fails or lacks KT_DG_GetInfo => Unable to get info of array 2 @.
rebuild -l 2 -d 9 : fails or lacks KT_PD_GetHDRaidStatus => Unable to get status of PD 9 @.
rebuild -l 2 -d 9 : {lacks KT_PD_GetHDInfo|fails KT_PD_GetFreeSpaceInfo} => Unable to get size of PD 9 @.
copyback -a pause -l 2 : fails or lacks KT_DG_GetInfo => Unable to get info of array 2 @.
migrate -a stop -l 2 : fails or lacks KT_DG_GetInfo => \nUnable to get status of array 2 @.
migrate -a size -l 2 : fails KT_DG_StartMigration 1 => \nFailed to get migration size @.
migrate -l 2 -d 1,2,3,9 : fails or lacks KT_PD_GetHDRaidStatus => Failed to get status for PD 9 @
migrate -l 2 -d 1,2,3,9 : fails KT_PD_GetFreeSpaceInfo => Unable to get size of PD 9 @.
delete -o vd -i 2 --waiveconfirmation : fails or lacks KT_LD_GetStatus =1> \nUnable to get status of VD 2 @.
delete -o array -i 2 --waiveconfirmation : fails or lacks KT_DG_GetInfo =1> \nUnable to get info of array 2 @.
{get -o pd -i 2 : fails|set -o pd -i 2 -c on : fails or lacks} KT_PD_GetConfig => \nUnable to get configuration of hard disk 2 #.
{get -o array -i 2 : fails|set -o array -i 2 -c on : fails or lacks} KT_DG_GetConfig => \nUnable to get configuration of array 2 @
{get -o vd -i 2 : fails|set -o vd -i 2 -c on : fails or lacks} KT_LD_GetConfig => \nVD 2 is invalid @
get -o link -i 2 : fails KT_LD_GetInfo => \nVD 2 is invalid @
{get -o hba|set -o hba --copyback on} : fails KT_Adapter_GetConfig => \nUnable to get configuration info of hba 0 @
{set -o bbu --power charge|info -o bbu -i 0} : fails KT_BBU_GetInfo => Unable to get info of BBU. @.
info -o pd : fails KT_PD_GetHDInfo => \nUnable to get info of PD @
info -o pd -i 2 : fails KT_PD_GetHDInfo => \nUnable to get info of PD 2 @
info -o blk : fails KT_BLK_GetInfo => \nUnable to get info of block @
info -o blk -i 2 : fails KT_BLK_GetInfo => \nUnable to get info of block 2 @
info -o spare : fails KT_PD_GetHDRaidStatus => \nUnable to get info of spare @
info -o spare -i 2 : fails KT_PD_GetHDRaidStatus => \nUnable to get info of spare 2 @
info -o vd : fails KT_LD_GetInfo => \nUnable to get info of vd @
info -o vd -i 2 : fails KT_LD_GetInfo => \nUnable to get info of vd 2 @
info -o array : fails KT_DG_GetInfo => \nUnable to get info of array@
info -o array -i 2 : fails KT_DG_GetInfo => \nUnable to get info of array 2 @
info -o pm : fails KT_PD_GetPMInfo => \nUnable to get info of PM @
info -o pm -i 2 : fails KT_PD_GetPMInfo => \nUnable to get info of PM 2 @
info -o exp : fails KT_PD_GetExpanderInfo => \nUnable to get info of expander @
info -o exp -i 2 : fails KT_PD_GetExpanderInfo => \nUnable to get info of expander 2 @
enc -o {enc|ele -t fan} : fails KT_ENC_GetEnclosureInfo => \nUnable to get enclosure info @
status -o pd : fails KT_PD_GetSmartStatus => \nUnable to get status of hard disk 255 @.
status -o pd -i 2 : fails KT_PD_GetSmartStatus => \nUnable to get status of hard disk 2 @.
tandem -d 0 -o {empty : fails KT_Tandemix_AddFSEntries|delete : fails KT_Tandemix_RemoveEntriesTable} => 
tandem -d 0 -o count : fails KT_Tandemix_GetEntriesTableInfo => \nFailed to get table information @.
)");
}
