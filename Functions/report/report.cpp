#include "Functions/report/report.h"

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/vdId.h"

int doReport(int argc, char** argv, _cmd_struct* row) {
    int result = 0;
    KT_U16 vd = 0;
    if (!readVdId({argc, argv, row}, reportOptions, vd, result)) return result;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    KT_U8 status = KT_LD_Report(gCurrentAdapter, vd);
    if (status != KT_OK) out("Failed to report VD (error %d: %s)\n", status, ErrorMessage(status));
    return status;
}
