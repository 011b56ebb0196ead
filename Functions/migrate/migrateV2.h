#pragma once

#include "Public/optionRows.h"

int doMigrateV2(int argc, char** argv, _cmd_struct* row);

inline constexpr char migrateV2_sh[] = ":Start,pause or resume VD migration.";
inline constexpr OptionRow migrateV2Rows[] = {
    {'a', "action", "<start|stop|pause|resume|restart|size>", Takes::Words, 0,
     "What to do. If -a is not specified, migration is started.\n"
     "size only reports how large the array would be.\n"
     "A paused migration can be resumed, an aborted one restarted."},
    {'l', "id", "<array id>", Takes::Array, REQUIRED, "ID of the array."},
    {'r', "raidmode", "<0|1|10|1E|5|50|6|60>", Takes::Words, 0,
     "The level to migrate to, the present one or one that is more redundant.\n"
     "If -r is not specified, the level stays as it is."},
    {'q', "paritydisks", "<# of parity disks>", Takes::Text, 0,
     "Number of parity disks: RAID6 (default 2) and RAID60 (default 4) only."},
    {'d', "pdid", "<PD id list>", Takes::Disks, 0,
     "IDs of the target disks, separated by commas, all present member disks\n"
     "included.\n"
     "Needed to start."},
    HELP_ROW,
};
inline constexpr CommandWords migrateV2Words = {
    .usage = "\n\nmigrate [-a <start|stop|pause|resume|restart|size>] -l <array id>\n"
             "        [-r <0|1|10|1E|5|50|6|60>] [-q <# of parity disks>] [-d <PD id list>]\n"
             "        [-h]\n",
    .rows = migrateV2Rows,
    .examples = "migrate -l 0 -r 5 -d 1,2,3\n\n"
                "Migrate array 0 to RAID5 on physical disks 1, 2 and 3.\n\n"
                "migrate -a pause -l 0\n\n"
                "Pause the migration of array 0.\n"};
inline constexpr const char* migrateV2_help = helpOf<migrateV2Words>;
inline constexpr const OptionSet& migrateV2Options = optionSet<migrateV2Words>;
