#pragma once

#include "Public/optionRows.h"

int doMigrate(int argc, char** argv, _cmd_struct* row);

inline constexpr char migrate_sh[] = ":Start,pause or resume VD migration.";
inline constexpr OptionRow migrateRows[] = {
    {'a', "action", "<start|stop|pause|resume|restart|size>", Takes::Words, 0,
     "What to do. If -a is not specified, migration is started.\n"
     "size only reports how large the virtual disk would be.\n"
     "A paused migration can be resumed, an aborted one restarted."},
    {'l', "id", "<VD id>", Takes::Vd, REQUIRED, "ID of the virtual disk."},
    {'r', "raidmode", "<0|1|10|1E|5|50|6|60>", Takes::Words, 0,
     "The level to migrate to, the present one or one that is more redundant.\n"
     "If -r is not specified, the level stays as it is."},
    {'q', "paritydisks", "<# of parity disks>", Takes::Text, 0,
     "Number of parity disks: RAID6 (default 2) and RAID60 (default 4) only."},
    {'d', "pdid", "<PD id list>", Takes::Disks, 0,
     "IDs of the target disks, separated by commas, all present member disks\n"
     "included."},
    HELP_ROW,
};
inline constexpr CommandWords migrateWords = {
    .usage = "\n\nmigrate [-a <start|stop|pause|resume|restart|size>] -l <VD id>\n"
             "        [-r <0|1|10|1E|5|50|6|60>] [-q <# of parity disks>] [-d <PD id list>]\n"
             "        [-h]\n",
    .rows = migrateRows,
    .examples = "migrate -l 0 -r 5 -d 1,2,3\n\n"
                "Migrate virtual disk 0 to RAID5 on physical disks 1, 2 and 3.\n\n"
                "migrate -a pause -l 0\n\n"
                "Pause the migration of virtual disk 0.\n"};
inline constexpr const char* migrate_help = helpOf<migrateWords>;
inline constexpr const OptionSet& migrateOptions = optionSet<migrateWords>;
