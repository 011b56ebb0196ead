#include "Functions/migrate/migrate.h"

const char migrate_sh[] = ":Start,pause or resume VD migration.";
const char migrate_help[] = "\n\n";
static const option migrate_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet migrateOptions = {"\1:h", migrate_long};

int doMigrate(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
