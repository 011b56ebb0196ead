#include "call.h"
#include "lab.h"

#include <cstdio>

using namespace sim;

KT_U8 KT_API_Initialize(void) {
    KT_U8 status = KT_OK;
    if (!openState()) {
        try {
            setOpenState(openStore(statePath(), fillFromLab, labNamed("default")));
        } catch (const StoreFailure& failure) {
            fprintf(stderr, "ktraid-sim: %s\n", failure.message.c_str());
            status = KT_ERR_FAILED;
        } catch (const LabError& error) {
            fprintf(stderr, "ktraid-sim: %s\n", error.message.c_str());
            status = KT_ERR_FAILED;
        }
    }
    traceAfter(traceBefore("KT_API_Initialize", -1, {}), status, {});
    return status;
}

void KT_API_Finalize(void) {
    traceAfter(traceBefore("KT_API_Finalize", -1, {}), KT_OK, {});
    closeStore(openState());
    setOpenState(nullptr);
}

const char* KT_API_Version(void) {
    return "4.1.0.15 (simulated)";
}

KT_U8 KT_Adapter_GetCount(void) {
    KT_U8 adapters = 0;
    const KT_U8 status = call("KT_Adapter_GetCount", -1, Access::Read, {}, [&](Context& context) {
        const auto global = find<GlobalState>(context.store, ADAPTER_GLOBAL, 0);
        if (global) adapters = static_cast<KT_U8>(global->adapterCount);
        return KT_OK;
    });
    return status == KT_OK ? adapters : KT_U8{0};
}

KT_U8 KT_API_RescanAdapter(void) {
    return call("KT_API_RescanAdapter", -1, Access::Write, {}, [](Context& context) -> KT_U8 {
        auto global = find<GlobalState>(context.store, ADAPTER_GLOBAL, 0);
        if (!global) return KT_ERR_FAILED;
        global->rescanCount++;
        save(context.store, ADAPTER_GLOBAL, 0, *global);
        return KT_OK;
    });
}

KT_U32 KT_API_GetRescanCount(KT_U8 force) {
    KT_U32 rescans = 0;
    call("KT_API_GetRescanCount", -1, Access::Read, {num("force", force)}, [&](Context& context) {
        const auto global = find<GlobalState>(context.store, ADAPTER_GLOBAL, 0);
        if (global) rescans = global->rescanCount;
        return KT_OK;
    });
    return rescans;
}

int KT_SIM_SgVersion(void) {
    int version = 0;
    if (!openState()) return version;
    call("KT_SIM_SgVersion", -1, Access::Read, {}, [&](Context& context) {
        const auto global = find<GlobalState>(context.store, ADAPTER_GLOBAL, 0);
        if (global) version = static_cast<int>(global->sgVersion);
        return KT_OK;
    });
    return version;
}
