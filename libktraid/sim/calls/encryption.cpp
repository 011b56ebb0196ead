#include "call.h"

using namespace sim;

KT_U8 KT_AES_GetEntryInfo(KT_U8 a, _aes_entry_info* info) {
    return notSupported("KT_AES_GetEntryInfo", a, {out("info", info)});
}

KT_U8 KT_AES_OnlyGetEntryInfo(KT_U8 a, KT_U8 entry, _AES_ENTRY_INFO* info) {
    return notSupported("KT_AES_OnlyGetEntryInfo", a, {num("entry", entry), out("info", info)});
}

KT_U8 KT_AES_OnlyGetPortInfo(KT_U8 a, KT_U8 port, _AES_PORT_INFO* info) {
    return notSupported("KT_AES_OnlyGetPortInfo", a, {num("port", port), out("info", info)});
}

KT_U8 KT_AES_GetEntryConfig(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password) {
    return notSupported("KT_AES_GetEntryConfig", a,
                        {masked(inOut("config", config), 8, 64), secret("password", password, 32)});
}

KT_U8 KT_AES_SetEntryConfig(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password) {
    return notSupported("KT_AES_SetEntryConfig", a,
                        {masked(inOut("config", config), 8, 64), secret("password", password, 32)});
}

KT_U8 KT_AES_GetPortConfig(KT_U8 a, KT_U8 port, _AES_Port_Config* config) {
    return notSupported("KT_AES_GetPortConfig", a, {num("port", port), out("config", config)});
}

KT_U8 KT_AES_SetPortConfig(KT_U8 a, const _AES_Port_Config* config) {
    return notSupported("KT_AES_SetPortConfig", a, {in("config", config)});
}

KT_U8 KT_AES_SetLink(KT_U8 a, const _AES_PORT_INFO* port, const _AES_Entry_Config* entry) {
    return notSupported("KT_AES_SetLink", a, {in("port", port), masked(in("entry", entry), 8, 64)});
}

KT_U8 KT_AES_ClearLink(KT_U8 a, KT_U8 port) {
    return notSupported("KT_AES_ClearLink", a, {num("port", port)});
}

KT_U8 KT_AES_VerifyKey(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password) {
    return notSupported("KT_AES_VerifyKey", a,
                        {masked(inOut("config", config), 8, 64), secret("password", password, 32)});
}

KT_U8 KT_AES_ChangePwd(KT_U8 a, _AES_Entry_Config* config, const KT_U8* newPassword) {
    return notSupported("KT_AES_ChangePwd", a,
                        {masked(inOut("config", config), 8, 64), secret("newPassword", newPassword, 32)});
}

KT_U8 KT_AES_ForcePDOnline(KT_U8 a, const _AES_Entry_Config* config, KT_U16 pd, KT_U8 percentage) {
    return notSupported("KT_AES_ForcePDOnline", a,
                        {masked(in("config", config), 8, 64), num("pd", pd), num("percentage", percentage)});
}
