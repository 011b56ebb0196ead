#include "devices/encryption.h"
#include "frame/call.h"

using namespace sim;

static Arg maskedConfig(Arg config) {
    return masked(config, offsetof(_AES_Entry_Config, key_content),
                  sizeof(_AES_Entry_Config) - offsetof(_AES_Entry_Config, key_content));
}

static Arg secretText(const char* name, const KT_U8* password) {
    return secret(name, password, sizeof(_AES_Entry_Config::user_auth));
}

KT_U8 KT_AES_GetEntryInfo(KT_U8 a, _aes_entry_info* info) {
    return call("KT_AES_GetEntryInfo", a, Access::Read, {out("info", info)},
                [&](Context& context) { return getAesOverview(context, *info); });
}

KT_U8 KT_AES_OnlyGetEntryInfo(KT_U8 a, KT_U8 entry, _AES_ENTRY_INFO* info) {
    return call("KT_AES_OnlyGetEntryInfo", a, Access::Read, {num("entry", entry), out("info", info)},
                [&](Context& context) { return getAesEntry(context, entry, *info); });
}

KT_U8 KT_AES_OnlyGetPortInfo(KT_U8 a, KT_U8 port, _AES_PORT_INFO* info) {
    return call("KT_AES_OnlyGetPortInfo", a, Access::Read, {num("port", port), out("info", info)},
                [&](Context& context) { return getAesPort(context, port, *info); });
}

KT_U8 KT_AES_GetEntryConfig(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password) {
    return call("KT_AES_GetEntryConfig", a, Access::Read,
                {maskedConfig(inOut("config", config)), secretText("password", password)},
                [&](Context& context) { return getAesEntryConfig(context, *config, password); });
}

KT_U8 KT_AES_SetEntryConfig(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password) {
    return call("KT_AES_SetEntryConfig", a, Access::Write,
                {maskedConfig(inOut("config", config)), secretText("password", password)},
                [&](Context& context) { return setAesEntryConfig(context, *config, password); });
}

KT_U8 KT_AES_GetPortConfig(KT_U8 a, KT_U8 port, _AES_Port_Config* config) {
    return call("KT_AES_GetPortConfig", a, Access::Read, {num("port", port), out("config", config)},
                [&](Context& context) { return getAesPortConfig(context, port, *config); });
}

KT_U8 KT_AES_SetPortConfig(KT_U8 a, const _AES_Port_Config* config) {
    return call("KT_AES_SetPortConfig", a, Access::Write, {in("config", config)},
                [&](Context& context) { return setAesPortConfig(context, *config); });
}

KT_U8 KT_AES_SetLink(KT_U8 a, const _AES_PORT_INFO* port, const _AES_Entry_Config* entry) {
    return call("KT_AES_SetLink", a, Access::Write, {in("port", port), maskedConfig(in("entry", entry))},
                [&](Context& context) { return setAesLink(context, port->id, *entry); });
}

KT_U8 KT_AES_ClearLink(KT_U8 a, KT_U8 port) {
    return call("KT_AES_ClearLink", a, Access::Write, {num("port", port)},
                [&](Context& context) { return clearAesLink(context, port); });
}

KT_U8 KT_AES_VerifyKey(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password) {
    return call("KT_AES_VerifyKey", a, Access::Read,
                {maskedConfig(inOut("config", config)), secretText("password", password)},
                [&](Context& context) { return verifyAesKey(context, *config, password); });
}

KT_U8 KT_AES_ChangePwd(KT_U8 a, _AES_Entry_Config* config, const KT_U8* newPassword) {
    return call("KT_AES_ChangePwd", a, Access::Write,
                {maskedConfig(inOut("config", config)), secretText("newPassword", newPassword)},
                [&](Context& context) { return changeAesPassword(context, *config, newPassword); });
}

KT_U8 KT_AES_ForcePDOnline(KT_U8 a, const _AES_Entry_Config* config, KT_U16 pd, KT_U8 percentage) {
    return call("KT_AES_ForcePDOnline", a, Access::Write,
                {maskedConfig(in("config", config)), num("pd", pd), num("percentage", percentage)},
                [&](Context& context) { return forceDiskOnline(context, *config, pd, percentage); });
}
