#include "Functions/migrate/migrateV2.h"

const char migrateV2_sh[] = ":Start,pause or resume VD migration.";
const char migrateV2_help[] = "\n\n";
static const option migrateV2_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet migrateV2Options = {"\1:h", migrateV2_long};

int doMigrateV2(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
