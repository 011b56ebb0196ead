#include "Functions/migrate/migrateV2.h"

#include "Functions/migrate/migration.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"

static constexpr MigrationCommand migrateV2Command = {
    .options = migrateV2Options,
    .use = USE_MIGRATE_ARRAY,
    .unsupported = "Migration is not supported on adapter %d.\n",
    .noDisks = "No target disk is specified.\n",
    .degraded =
        [](const char* from, const char* to) {
            out("\n Abort migration!!! Redundancy level is degraded from %s to %s.\n", from, to);
        },
    // Some lines name the array, some keep "VD".
    .words = {
        .own = KT_BGA_MIGRATION,
        .control = KT_DG_BGAControl,
        .refusal = 1,
        .busy = "\nVD %d is currently having background activity.\n",
        .notOwn = "\nArray %d is not migrating (error %d: %s).\n",
        .idle = "\nArray %d does not have any background activities.\n",
        .running = {"\nMigration on VD %d is in progress.\n",
                    {{BGA_STOP, "Abort successfully\n", "\nUnable to abort migration on VD %d (error %d: %s).\n"},
                     {BGA_PAUSE, "Pause successfully\n", "\nUnable to pause migration on VD %d (error %d: %s).\n"}}},
        .paused = {"\nMigration on array %d is currently paused.\n",
                   {{BGA_RESUME, "Resume successfully\n",
                     "\nUnable to resume migration on array %d (error %d: %s).\n"}}},
        .aborted = {"\nMigration on array %d is aborted and need to restart.\n",
                    {{BGA_RESTART, "Restart successfully\n",
                      "\nUnable to restart migration on array %d (error %d: %s).\n"}}},
    }};

static KT_U8 readArray(MigrationRequest& request, _DG_Info& array) {
    _DG_Info_Request answer;
    KT_U8 status = getItem(KT_DG_GetInfo, request.id, answer);
    if (status != KT_OK) {
        out("\nUnable to get status of array %d (error %d: %s).\n", request.id, status, ErrorMessage(status));
        return status;
    }
    array = answer.dgInfo[0];
    completeMigration(migrateV2Command, array.RaidMode, request);
    // An array that keeps its level keeps what redundancy it has, unless somebody says otherwise.
    bool keepsLevel = request.level == array.RaidMode && takesParityDisks(request.level);
    if (keepsLevel && !request.parityGiven && array.NumParityDisk != 0) request.parity = array.NumParityDisk;
    return KT_OK;
}

static _CreateOrModify_DG_Param migrationParam(const MigrationRequest& request) {
    _CreateOrModify_DG_Param param = {};
    param.DGID = request.id;
    param.RaidMode = request.level;
    param.NumParityDisk = static_cast<KT_U8>(request.parity);
    param.PDCount = request.disks.count;
    static_assert(sizeof param.PDIDs == sizeof request.disks.ids);
    memcpy(param.PDIDs, request.disks.ids, request.disks.count * sizeof(KT_U16));
    return param;
}

// Asks, on a record of its own, how large the result would be; a failure is reported.
static KT_U8 askSize(const MigrationRequest& request, KT_U64& size) {
    _CreateOrModify_DG_Param param = migrationParam(request);
    KT_U8 status = KT_DG_StartMigration(gCurrentAdapter, &param, 1);
    if (status != KT_OK) out("\nFailed to get migration size (error %d: %s).\n", status, ErrorMessage(status));
    size = param.Size;
    return status;
}

static int reportSize(const MigrationRequest& request) {
    KT_U64 size = 0;
    if (!parityFits(request)) return refuseParity(request);
    KT_U8 status = askSize(request, size);
    if (status == KT_OK) out("Migrated size will be %lld M\n", static_cast<long long>(size >> 10));
    return status;
}

static void findMembers(const MigrationRequest& request, const _DG_Info& array, MigrationMembers& members) {
    constexpr int room = sizeof array.PDIDs / sizeof array.PDIDs[0];
    for (int i = 0; i < array.PDCount && i < room; ++i) {
        // A missing disk has left its place empty.
        if (array.PDIDs[i] == KT_NO_ID) continue;
        ++members.present;
        addMember(request, array.PDIDs[i], members);
    }
}

static bool checkNewDisk(KT_U16 disk, int& result) {
    KT_U8 bits = 0;
    result = readDiskStatus(disk, bits);
    if (result != KT_OK) return false;
    if ((bits & KT_PD_NOT_FREE) != 0) {
        out("Target PD %d is not free.\n", disk);
        result = 1;
        return false;
    }
    _HD_FreeSpaceInfo space = {};
    KT_U8 status = KT_PD_GetFreeSpaceInfo(gCurrentAdapter, disk, &space);
    if (status != KT_OK) {
        out("Unable to get size of PD %d (error %d: %s).\n", disk, status, ErrorMessage(status));
        result = status;
        return false;
    }
    return true;
}

// The checks of a start, up to the question. False after a message, with the result set.
static bool checkStart(const MigrationRequest& request, const _DG_Info& array, MigrationMembers& members, int& result) {
    result = 1;
    if (array.BgaType != 0) {
        say(migrateV2Command.words.busy, request.id, KT_OK);
        return false;
    }
    // A number of parity disks that no record holds is refused before the library is asked with one.
    if (!parityFits(request)) return checkMigrationTarget(migrateV2Command, array.RaidMode, request);
    KT_U64 size = 0;
    // A size that cannot be had is said, but no reason to stop: the library decides.
    if (askSize(request, size) == KT_OK && size < array.TotalManagedSpace) {
        out("\nTarget VD size can not smaller than source VD.\n");
        return false;
    }
    if (!checkMigrationTarget(migrateV2Command, array.RaidMode, request)) return false;
    findMembers(request, array, members);
    for (int i = 0; i < request.disks.count; ++i) {
        if (!members.isMember[i] && !checkNewDisk(request.disks.ids[i], result)) return false;
    }
    return true;
}

static int startMigration(const MigrationRequest& request, const _DG_Info& array, const ActivityStatus& now) {
    static constexpr Line question = "Migrate Array will stop Media patrol on PD. Do you want to continue?(y or n)\n";
    MigrationMembers members;
    int result = 0;
    if (!checkStart(request, array, members, result)) return result;
    if (!confirmMigration(now, question)) return 0;
    if (!checkMembersKept(members)) return 1;
    _CreateOrModify_DG_Param param = migrationParam(request);
    KT_U8 status = KT_DG_StartMigration(gCurrentAdapter, &param, 0);
    if (status == KT_OK) {
        out("Start migrate successfully\n");
    } else {
        out("\nUnable to migrate array %d (error %d: %s).\n", request.id, status, ErrorMessage(status));
    }
    return status;
}

int doMigrateV2(int argc, char** argv, _cmd_struct* row) {
    MigrationRequest request;
    int result = 0;
    if (!readMigration({argc, argv, row}, migrateV2Command, request, result)) return result;
    _DG_Info array;
    KT_U8 status = readArray(request, array);
    if (status != KT_OK) return status;
    if (request.sizeOnly) return reportSize(request);
    const ActivityStatus now = activityOf(array);
    if (request.action == BGA_START) return startMigration(request, array, now);
    return steerActivity(migrateV2Command.words, request.id, request.action, now);
}
