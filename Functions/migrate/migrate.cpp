#include "Functions/migrate/migrate.h"

#include "Functions/migrate/migration.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/vdBlocks.h"

static constexpr MigrationCommand migrateCommand = {
    .options = migrateOptions,
    .use = USE_MIGRATE_VD,
    .unsupported = "This adapter does not support migration.\n",
    .noDisks = {},
    .degraded =
        [](const char* from, const char* to) {
            out("\n Abort migration!!! Redundancy level is degraded from %s to %s\n", from, to);
        },
    .words = {
        .own = KT_BGA_MIGRATION,
        .control = KT_LD_BGAControl,
        .refusal = 1,
        .busy = "\nVD %d is currently having background activity.\n",
        .notOwn = "\nVD %d is not migrating (error %d: %s).\n",
        .idle = "\nVD %d does not having any background activities.\n",
        .running = {"\nMigration on VD %d is in progress.\n",
                    {{BGA_STOP, "Abort successfully\n", "\nUnable to abort migration on VD %d (error %d: %s).\n"},
                     {BGA_PAUSE, "Pause successfully\n", "\nUnable to pause migration on VD %d (error %d: %s).\n"}}},
        .paused = {"\nMigration on VD %d is currently paused.\n",
                   {{BGA_RESUME, "Resume successfully\n", "\nUnable to resume migration on VD %d (error %d: %s).\n"}}},
        .aborted = {"\nMigration on VD %d is aborted and need to restart.\n",
                    {{BGA_RESTART, "Restart successfully\n",
                      "\nUnable to restart migration on VD %d (error %d: %s).\n"}}},
    }};

// Members of the virtual disk count as free.
static bool checkFreeDisks(const MigrationRequest& request, int& result) {
    for (int i = 0; i < request.disks.count; ++i) {
        KT_U16 disk = request.disks.ids[i];
        KT_U8 status = HDisFreeDiskForKelo(disk, request.id);
        if (status == KT_OK) continue;
        if (status == KT_ERR_PD_TYPES_DIFFER) {
            out("Not free disk %d can not be used to migration VD.\n", disk);
            result = 1;
        } else {
            out("Can not get disk %d information(error %d: %s).\n", disk, status, ErrorMessage(status));
            result = status;
        }
        return false;
    }
    return true;
}

static KT_U8 readVirtualDisk(MigrationRequest& request, _LD_Info& ld) {
    _LD_Info_Request answer;
    KT_U8 status = getItem(KT_LD_GetInfo, request.id, answer);
    if (status != KT_OK) {
        out("\nUnable to get info of VD %d (error %d: %s).\n", request.id, status, ErrorMessage(status));
        return status;
    }
    ld = answer.ldInfo[0];
    completeMigration(migrateCommand, ld.RaidMode, request);
    return KT_OK;
}

static _Create_LD_Param migrationParam(const MigrationRequest& request, const _LD_Info& ld) {
    _Create_LD_Param param = {};
    param.RaidMode = request.level;
    param.HDCount = request.disks.count;
    param.NumParityDisk = static_cast<KT_U8>(request.parity);
    param.SectorCoefficient = ld.SectorCoefficient;
    param.LDID = request.id;
    static_assert(sizeof param.HDIDs == sizeof request.disks.ids);
    memcpy(param.HDIDs, request.disks.ids, request.disks.count * sizeof(KT_U16));
    return param;
}

// Asks, on a copy of the record, how large the result would be; a failure is reported.
static KT_U8 askSize(_Create_LD_Param param, KT_U64& size) {
    KT_U8 status = KT_LD_GetMigratedLdSize(gCurrentAdapter, &param);
    if (status != KT_OK) {
        out("\nUnable to get migrate size of VD %d (error %d: %s).\n", param.LDID, status, ErrorMessage(status));
    }
    size = param.Size;
    return status;
}

static int reportSize(MigrationRequest& request) {
    _LD_Info ld;
    KT_U64 size = 0;
    KT_U8 status = readVirtualDisk(request, ld);
    if (status != KT_OK) return status;
    if (!parityFits(request)) return refuseParity(request);
    status = askSize(migrationParam(request, ld), size);
    if (status == KT_OK) out("Migrate VD size = %lld M\n", static_cast<long long>(size >> 10));
    return status;
}

static KT_U8 readStatus(KT_U16 id, ActivityStatus& now) {
    _LD_Status_Request answer;
    KT_U8 status = getItem(KT_LD_GetStatus, id, answer);
    if (status != KT_OK) {
        out("\nUnable to get status of VD %d (error %d: %s).\n", id, status, ErrorMessage(status));
        return status;
    }
    now = activityOf(answer.ldStatus[0]);
    return KT_OK;
}

static void findMembers(const MigrationRequest& request, const _LD_Info& ld, MigrationMembers& members) {
    // A block that cannot be read counts, so that nothing is migrated away from a disk that is not known.
    eachBlock(ld, [&](KT_U8 status, const _Block_Info& block) -> KT_U8 {
        ++members.present;
        if (status == KT_OK) addMember(request, block.HDID, members);
        return KT_OK;
    });
}

static bool checkNewDisk(KT_U16 disk, int& result) {
    KT_U8 bits = 0;
    result = readDiskStatus(disk, bits);
    if (result != KT_OK) return false;
    result = 1;
    switch (diskRole(bits)) {
    case DiskRole::Offline:
        out("Offline disk %d can not be used as target of a migration.\n", disk);
        return false;
    case DiskRole::Spare:
        out("Spare disk %d can not be used as target of a migration.\n", disk);
        return false;
    case DiskRole::Foreign:
        out("Foreign disk %d can not be used as target of a migration.\n", disk);
        return false;
    default:
        return true;
    }
}

// The checks of a start, up to the question. False after a message, with the result set.
static bool checkStart(const MigrationRequest& request, const _LD_Info& ld, ActivityStatus& now,
                       MigrationMembers& members, int& result) {
    KT_U64 size = 0;
    result = 1;
    // A number of parity disks that no record holds is refused before the library is asked with one.
    if (!parityFits(request)) return checkMigrationTarget(migrateCommand, ld.RaidMode, request);
    // When the library cannot tell the size that is reported; the migration itself may still be possible.
    if (askSize(migrationParam(request, ld), size) == KT_OK && size < ld.Size) {
        out("\nTarget VD size can not smaller than source VD.\n");
        return false;
    }
    KT_U8 status = readStatus(request.id, now);
    if (status != KT_OK) {
        result = status;
        return false;
    }
    if (now.bga != 0) {
        say(migrateCommand.words.busy, request.id, KT_OK);
        return false;
    }
    if (!checkMigrationTarget(migrateCommand, ld.RaidMode, request)) return false;
    findMembers(request, ld, members);
    for (int i = 0; i < request.disks.count; ++i) {
        if (!members.isMember[i] && !checkNewDisk(request.disks.ids[i], result)) return false;
    }
    return true;
}

static int startMigration(MigrationRequest& request) {
    static constexpr Line question = "Migrate VD will stop Media patrol on PD. Do you want to continue?(y or n)\n";
    _LD_Info ld;
    KT_U8 status = readVirtualDisk(request, ld);
    if (status != KT_OK) return status;
    ActivityStatus now;
    MigrationMembers members;
    int result = 0;
    if (!checkStart(request, ld, now, members, result)) return result;
    if (!confirmMigration(now, question)) return 0;
    if (!checkMembersKept(members)) return 1;
    _Create_LD_Param param = migrationParam(request, ld);
    status = KT_LD_StartMigration(gCurrentAdapter, &param);
    if (status == KT_OK) {
        out("Start migration successfully\n");
    } else {
        out("\nUnable to start migration on VD %d (error %d: %s).\n", request.id, status, ErrorMessage(status));
    }
    return status;
}

int doMigrate(int argc, char** argv, _cmd_struct* row) {
    MigrationRequest request;
    int result = 0;
    if (!readMigration({argc, argv, row}, migrateCommand, request, result)) return result;
    if (!checkFreeDisks(request, result)) return result;
    if (request.sizeOnly) return reportSize(request);
    if (request.action == BGA_START) return startMigration(request);
    ActivityStatus now;
    KT_U8 status = readStatus(request.id, now);
    if (status != KT_OK) return status;
    return steerActivity(migrateCommand.words, request.id, request.action, now);
}
