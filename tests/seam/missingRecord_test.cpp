// A library that answers an item request with success and no record: nobody takes the zeroes for a state.
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

TEST(MissingRecord, EndsACommandThatWouldChangeSomething) {
#define E1 "(error 1: Failed)"
    const struct {
        CommandHandler handler;
        const char* line;
        std::set<std::string> missing;
        const char* text;
    } cases[] = {
        {doInit, "init -l 2", {"KT_LD_GetInfo"}, "\nUnable to get info of VD 2 " E1 ".\n"},
        {doInit, "init -l 2", {"KT_LD_GetStatus"}, "\nUnable to get status of VD 2 " E1 ".\n"},
        {doCC, "cc -l 2", {"KT_LD_GetInfo"}, "\nUnable to get info of VD 2 " E1 ".\n"},
        {doRebuild, "rebuild -l 2 -d 9", {"KT_LD_GetStatus"}, "\nUnable to get status of VD 2 " E1 ".\n"},
        {doRebuild, "rebuild -l 2 -d 9", {"KT_LD_GetInfo"}, "\nUnable to get necessary info" E1 ".\n"},
        {doRebuild, "rebuild -l 2 -d 9", {"KT_BLK_GetInfo 12"}, "\nUnable to get necessary info" E1 ".\n"},
        {doRebuildV2, "rebuild -l 2 -d 9", {"KT_DG_GetInfo"}, "Unable to get info of array 2 " E1 ".\n"},
        {doRebuildV2, "rebuild -l 2 -d 9", {"KT_PD_GetHDRaidStatus"}, "Unable to get status of PD 9 " E1 ".\n"},
        {doRebuildV2,
         "rebuild -l 2 -d 9",
         {"KT_PD_GetHDInfo", "KT_PD_GetHDInfo_Ext"},
         "Unable to get size of PD 9 " E1 ".\n"},
        {doMP, "mp -d 2", {"KT_PD_GetHDRaidStatus"}, "\nUnable to get status of PD 2.\n"},
        {doMP, "mp -d 2", {"KT_PD_GetBGAStatus"}, "\nUnable to get status of PD 2.\n"},
        {doCopyBack, "copyback -a pause -l 2", {"KT_DG_GetInfo"}, "Unable to get info of array 2 " E1 ".\n"},
        {doMigrate, "migrate -l 2 -d 1,2,3,9", {"KT_LD_GetInfo"}, "\nUnable to get info of VD 2 " E1 ".\n"},
        {doMigrate, "migrate -l 2 -d 1,2,3,9", {"KT_LD_GetStatus"}, "\nUnable to get status of VD 2 " E1 ".\n"},
        {doMigrate, "migrate -l 2 -d 1,2,3,9", {"KT_BLK_GetInfo 12"}, "Failed to get status for PD 2 " E1 "\n"},
        {doMigrate, "migrate -l 2 -d 1,2,3,9", {"KT_PD_GetHDRaidStatus"}, "Failed to get status for PD 9 " E1 "\n"},
        {doMigrateV2, "migrate -l 2 -d 1,2,3,9", {"KT_DG_GetInfo"}, "\nUnable to get status of array 2 " E1 ".\n"},
        {doMigrateV2, "migrate -l 2 -d 1,2,3,9", {"KT_PD_GetHDRaidStatus"}, "Failed to get status for PD 9 " E1 "\n"},
        {doDelete,
         "delete -o vd -i 2 --waiveconfirmation",
         {"KT_LD_GetStatus"},
         "\nUnable to get status of VD 2 " E1 ".\n"},
        {doDelete,
         "delete -o array -i 2 --waiveconfirmation",
         {"KT_DG_GetInfo"},
         "\nUnable to get info of array 2 " E1 ".\n"},
        {doCreate, "create -r 0 -d 8,9", {"KT_PD_GetHDRaidStatus"}, "Failed to get status for PD 8 " E1 "\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.line) + " without the record of " + *row.missing.begin());
        layOut();
        arrayBasedRaid = row.handler == CommandHandler{doDelete};
        seam.freeSpace = seam.size = 1 << 20;
        seam.withoutRecord = row.missing;
        if (row.missing.contains("KT_BLK_GetInfo 12")) seam.withoutRecord.insert("KT_PD_GetHDRaidStatus 2");
        expect(run(row.handler, row.line, "y\n"), row.text, 1);
        for (const std::string& call : seam.calls) {
            bool asks = call.find("_Get") != call.npos || call.starts_with("KT_DG_StartMigration size");
            EXPECT_TRUE(asks) << call;
        }
    }
    arrayBasedRaid = false;
}
