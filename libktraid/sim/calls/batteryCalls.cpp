#include "devices/battery.h"
#include "devices/batteryDeeds.h"
#include "frame/call.h"

using namespace sim;

KT_U8 KT_BBU_GetInfo(KT_U8 a, _BBU_Info* info) {
    return call("KT_BBU_GetInfo", a, Access::Read, {out("info", info)},
                [&](Context& context) { return getBattery(context, *info); });
}

KT_U8 KT_BBU_ChangePower(KT_U8 a, KT_U8 action) {
    return call("KT_BBU_ChangePower", a, Access::Write, {num("action", action)},
                [&](Context& context) { return changeBatteryPower(context, action); });
}
