#include "Functions/import/import.h"

#include "Public/errorMsg.h"
#include "Public/vdId.h"

const char import_sh[] = ":Import a virtual disk.";
const char import_help[] = "\nimport -i <VD id> [-h]\n\n"
                           "Options:\n"
                           "    -i, --id <VD id>\n"
                           "        ID of the foreign virtual disk, decimal or hexadecimal (0x...).\n"
                           "    -h, --help\n\n"
                           "Examples:\n"
                           "    import -i 2\n\n"
                           "    Import virtual disk 2.\n\n";

const OptionSet importOptions = {.letters = "\1:i:h", .longOptions = vdIdLongOptions, .once = "i"};

int doImport(int argc, char** argv, _cmd_struct* row) {
    int result = 0;
    KT_U16 vd = 0;
    if (!readVdId(argc, argv, row, importOptions, vd, result)) return result;
    KT_U8 status = KT_LD_Import(gCurrentAdapter, vd);
    if (status != KT_OK) out("Failed to import VD (error %d: %s)\n", status, ErrorMessage(status));
    return status;
}
