// Reads that fail, and reads that succeed and bring no record: each ends the command in its own words, and nobody takes
// the zeroes of a record that did not come for a state.
#include "Functions/consistencyCheck/consistencyCheck.h"
#include "Functions/copyBack/copyBack.h"
#include "Functions/create/create.h"
#include "Functions/delete/delete.h"
#include "Functions/init/init.h"
#include "Functions/mediaPatrol/mediaPatrol.h"
#include "Functions/migrate/migrate.h"
#include "Functions/migrate/migrateV2.h"
#include "Functions/rebuild/rebuild.h"
#include "Functions/rebuild/rebuildV2.h"
#include "tests/seam/activity.h"

namespace {
// What the read is tried with: a status, an answer without a record, or both.
enum Tried { FAILS, LACKS, BOTH };
struct Row {
    CommandHandler handler;
    const char* line;
    const char* call;
    const char* printed; // '@' stands for the error
    Tried tried;
    int failed = KT_ERR_VD_MISSING; // what the command returns for a status
};
const char vdInfo[] = "\nUnable to get info of VD 2 @.\n";
const char vdStatus2[] = "\nUnable to get status of VD 2 @.\n";
const char necessary[] = "\nUnable to get necessary info@.\n";
const char pd9[] = "Failed to get status for PD 9 @\n";

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
};

// The read is the last thing that the command does.
void check(const Row& row, const std::string& error, int result) {
    std::string printed = row.printed;
    if (size_t at = printed.find('@'); at != printed.npos) printed.replace(at, 1, error);
    arrayBasedRaid = row.handler == CommandHandler{doDelete};
    seam.freeSpace = seam.size = 1 << 20;
    expect(run(row.handler, row.line, "y\n"), printed, result);
    EXPECT_TRUE(changes().empty());
    EXPECT_TRUE(seam.calls.back().starts_with(row.call)) << seam.calls.back();
    arrayBasedRaid = false;
}
} // namespace

TEST(FailingRead, EndsTheCommand) {
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.line) + " without " + row.call);
        if (row.tried != LACKS) {
            layOut();
            seam.statuses[row.call] = KT_ERR_VD_MISSING;
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
