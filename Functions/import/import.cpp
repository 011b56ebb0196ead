#include "Functions/import/import.h"

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/vdId.h"

int doImport(int argc, char** argv, _cmd_struct* row) {
    int result = 0;
    KT_U16 vd = 0;
    if (!readVdId({argc, argv, row}, importOptions, vd, result)) return result;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    KT_U8 status = KT_LD_Import(gCurrentAdapter, vd);
    if (status != KT_OK) out("Failed to import VD (error %d: %s)\n", status, ErrorMessage(status));
    return status;
}
