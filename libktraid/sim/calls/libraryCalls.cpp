#include "devices/flashRegions.h"
#include "frame/call.h"
#include "lab/lab.h"
#include "state/storeFile.h"

#include <cstdio>
#include <new>

using namespace sim;

static bool openDefaultState() {
    std::string reason;
    try {
        setCurrentStore(openStore(statePath(), fillFromLab, labNamed("default")));
        return true;
    } catch (const StoreFailure& failure) {
        reason = failure.message;
    } catch (const LabError& error) {
        reason = error.message;
    } catch (const std::bad_alloc&) {
        reason = "out of memory";
    }
    fprintf(stderr, "ktraid-sim: %s\n", reason.c_str());
    return false;
}

KT_U8 KT_API_Initialize(void) {
    if (!currentStore() && !openDefaultState()) {
        traceAfter(traceBefore("KT_API_Initialize", -1, {}), KT_ERR_FAILED, {});
        return KT_ERR_FAILED;
    }
    const KT_U8 status = call("KT_API_Initialize", -1, Access::Read, {}, [](Context&) { return KT_OK; });
    if (status != KT_OK) {
        closeStore(currentStore());
        setCurrentStore(nullptr);
    }
    return status;
}

void KT_API_Finalize(void) {
    traceAfter(traceBefore("KT_API_Finalize", -1, {}), KT_OK, {});
    closeStore(currentStore());
    setCurrentStore(nullptr);
}

const char* KT_API_Version(void) {
    return KT_VERSION " (simulated)";
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
        ++global->rescanCount;
        save(context.store, ADAPTER_GLOBAL, 0, *global);
        for (int adapter = 0; adapter < global->adapterCount; ++adapter)
            examineFlash(Context{context.store, static_cast<KT_U8>(adapter), context.now});
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
    if (!currentStore()) return version;
    call("KT_SIM_SgVersion", -1, Access::Read, {}, [&](Context& context) {
        const auto global = find<GlobalState>(context.store, ADAPTER_GLOBAL, 0);
        if (global) version = static_cast<int>(global->sgVersion);
        return KT_OK;
    });
    return version;
}
