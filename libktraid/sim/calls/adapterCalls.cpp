#include "devices/adapterConfig.h"
#include "devices/flashMemory.h"
#include "devices/registers.h"
#include "frame/call.h"

using namespace sim;

static const KT_U8 ADAPTER_INFO_VERSION = 1;

KT_U8 KT_Adapter_GetInfo(KT_U8 a, KT_U8* infoVersion, _Adapter_Info* info) {
    return call("KT_Adapter_GetInfo", a, Access::Read, {out("infoVersion", infoVersion), out("info", info)},
                [&](Context& context) -> KT_U8 {
                    const auto found = find<_Adapter_Info>(context, 0);
                    if (!found) return KT_ERR_INVALID_ADAPTER;
                    *infoVersion = ADAPTER_INFO_VERSION;
                    *info = *found;
                    return KT_OK;
                });
}

KT_U8 KT_Adapter_GetConfig(KT_U8 a, _Adapter_Config_V2* config) {
    return call("KT_Adapter_GetConfig", a, Access::Read, {out("config", config)}, [&](Context& context) -> KT_U8 {
        const auto found = find<_Adapter_Config_V2>(context, 0);
        if (!found) return KT_ERR_NOT_SUPPORTED;
        *config = *found;
        return KT_OK;
    });
}

KT_U8 KT_Adapter_SetConfig(KT_U8 a, const _Adapter_Config_V2* config) {
    return call("KT_Adapter_SetConfig", a, Access::Write, {in("config", config)},
                [&](Context& context) { return setAdapterConfig(context, *config); });
}

KT_U8 KT_Adapter_Read_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request) {
    return call("KT_Adapter_Read_Register", a, Access::Read,
                {num("type", type), num("address", address), inOut("request", request)},
                [&](Context& context) { return readRegister(context, type, address, *request); });
}

KT_U8 KT_Adapter_Write_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request) {
    return call("KT_Adapter_Write_Register", a, Access::Write,
                {num("type", type), num("address", address), inOut("request", request)},
                [&](Context& context) { return writeRegister(context, type, address, *request); });
}

KT_U8 KT_AdapterMute(KT_U8 a) {
    return call("KT_AdapterMute", a, Access::Write, {}, [](Context& context) { return muteAdapter(context); });
}
