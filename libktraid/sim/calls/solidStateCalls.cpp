#include "devices/solidState.h"
#include "frame/call.h"

using namespace sim;

KT_U8 KT_SSD_SmartReadData(KT_U8 a, KT_U16 pd, _SSD_Smart_Data* data) {
    return call("KT_SSD_SmartReadData", a, Access::Read, {num("pd", pd), out("data", data)},
                [&](Context& context) { return readSmartPage(context, pd, *data); });
}

KT_U8 KT_SSD_Diagnostic(KT_U8 a, KT_U16 pd, _SSD_Diagnostic* diagnostic) {
    return call("KT_SSD_Diagnostic", a, Access::Write, {num("pd", pd), inOut("diagnostic", diagnostic)},
                [&](Context& context) { return runDiagnostic(context, pd, *diagnostic); });
}

KT_U8 KT_Download_SSD_Microcode(KT_U8 a, KT_U16 pd, KT_U8 mode, _Flash_Data* page) {
    return call("KT_Download_SSD_Microcode", a, Access::Write,
                {num("pd", pd), num("mode", mode), flashPage("page", page, false)},
                [&](Context& context) { return downloadMicrocode(context, pd, mode, *page); });
}
