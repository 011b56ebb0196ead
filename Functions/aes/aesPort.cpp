#include "Functions/aes/aesPort.h"

#include <cstring>
#include <iterator>

#include "Functions/aes/aesCommand.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

static constexpr int LABEL_WIDTH = 24;

namespace {
struct AesPortOptions {
    KT_U8 port = 0;
    KT_U8 entry = 0;
    bool on = false; // of --aeson and --aesoff the last one counts
    AesSecret password = {};
    size_t operation = 0; // index into operations
};
} // namespace

static KT_U8 portFailed(KT_U8 port, KT_U8 status) {
    out("\nGet configure of AES port %d failed (error %d: %s).\n", port, status, ErrorMessage(status));
    return status;
}

// Reads which entry the port is linked to now (AES_NO_LINK: none); a failure has been printed.
static KT_U8 aesPort2Entry(KT_U8 port, _AES_PORT_INFO& link) {
    _aes_entry_info overview = {};
    KT_U8 status = KT_AES_GetEntryInfo(gCurrentAdapter, &overview);
    if (status != KT_OK) return portFailed(port, status);
    link = {};
    status = KT_AES_OnlyGetPortInfo(gCurrentAdapter, port, &link);
    if (status != KT_OK) return portFailed(port, status);
    if (link.entry == AES_NO_LINK) return KT_OK;
    _AES_ENTRY_INFO entry = {};
    status = KT_AES_OnlyGetEntryInfo(gCurrentAdapter, link.entry, &entry);
    return status == KT_OK ? KT_U8{KT_OK} : entryFailed(link.entry, status);
}

static void aesPortGet_printf(KT_U8 port, const _AES_Port_Config& config, const _AES_PORT_INFO& link) {
    printNum(LABEL_WIDTH, "Port ID:", port);
    printStr(LABEL_WIDTH, "mount status:", link.entry == AES_NO_LINK ? "dismounted" : "mounted");
    if (link.entry != AES_NO_LINK) printNum(LABEL_WIDTH, "entry id:", link.entry);
    printStr(LABEL_WIDTH, "AES enable:", config.aes_enable != 0 ? "Enabled" : "Disabled");
}

static KT_U8 reportPort(KT_U8 port) {
    _AES_Port_Config config = {};
    KT_U8 status = KT_AES_GetPortConfig(gCurrentAdapter, port, &config);
    if (status != KT_OK) return portFailed(port, status);
    _AES_PORT_INFO link;
    status = aesPort2Entry(port, link);
    if (status == KT_OK) aesPortGet_printf(port, config, link);
    return status;
}

static int getConfig(const AesPortOptions& o, const OptionCounts& given, const char*) {
    if (given['i'] > 0) return reportPort(o.port);
    _aes_entry_info overview = {};
    KT_U8 status = KT_AES_GetEntryInfo(gCurrentAdapter, &overview);
    if (status != KT_OK) return portFailed(AES_NO_LINK, status);
    bool found = false;
    for (const _aes_port_entry& port : overview.aes_port) {
        if (port.id == AES_NO_LINK) continue;
        found = true;
        status = reportPort(port.id);
        if (status != KT_OK) return status;
    }
    if (!found) out("\nNo port is found\n");
    return 0;
}

static int setConfig(const AesPortOptions& o, const OptionCounts& given, const char* command) {
    if (given['i'] == 0) {
        out(OptionRequired, command, 'i');
        return 1;
    }
    if (given[OPT_AES_ON] == 0 && given[OPT_AES_OFF] == 0) {
        out("\n --aeson or --aesoff is required for set AES configuration.\n");
        return 1;
    }
    _AES_PORT_INFO link;
    KT_U8 status = aesPort2Entry(o.port, link);
    if (status != KT_OK) return status;
    _AES_Port_Config config = {};
    config.port_id = o.port;
    config.aes_enable = o.on ? 1 : 0;
    status = KT_AES_SetPortConfig(gCurrentAdapter, &config);
    if (status == KT_OK) {
        out("\nSet configure of AES port %d is returned successfully.\n", o.port);
    } else {
        out("\nSet configure of AES port %d failed (error %d: %s).\n", o.port, status, ErrorMessage(status));
    }
    return status;
}

static int mount(const AesPortOptions& o, const OptionCounts& given, const char*) {
    if (given['i'] == 0 || given['e'] == 0 || given['p'] == 0) {
        out("\n  port id ,entry id, password and mount AES must be set.\n");
        return 1;
    }
    _AES_PORT_INFO link;
    KT_U8 status = aesPort2Entry(o.port, link);
    if (status != KT_OK) return status;
    link = {};
    link.id = o.port;
    link.entry = o.entry;
    _AES_Entry_Config config = {};
    config.entry_id = o.entry;
    memcpy(config.user_auth, o.password, sizeof config.user_auth);
    status = KT_AES_SetLink(gCurrentAdapter, &link, &config);
    explicit_bzero(&config, sizeof config);
    if (status == KT_OK) {
        out("\nLink aes port %d to entry %d is returned successfully.\n", o.port, o.entry);
    } else {
        out("\nFailed to link aes port %d to entry %d (error %d: %s)\n", o.port, o.entry, status, ErrorMessage(status));
    }
    return status;
}

static int dismount(const AesPortOptions& o, const OptionCounts& given, const char* command) {
    if (given['i'] == 0) {
        out(OptionRequired, command, 'i');
        return 1;
    }
    _AES_PORT_INFO link;
    KT_U8 status = aesPort2Entry(o.port, link);
    if (status != KT_OK) return status;
    status = KT_AES_ClearLink(gCurrentAdapter, o.port);
    if (status == KT_OK) {
        out("\nClear AES link of port %d is returned successfully.\n", o.port);
    } else {
        out("\nClear AES link of port %d failed (error %d: %s).\n", o.port, status, ErrorMessage(status));
    }
    return status;
}

static const AesOperation<AesPortOptions> operations[] = {
    {"getCfg", getConfig}, {"set", setConfig}, {"mount", mount}, {"dismount", dismount}};

static Take takeOption(int option, char* value, AesPortOptions& o) {
    switch (option) {
    case 'o':
        return takeOperation(value, operations, o.operation);
    case 'i':
        if (parseDecimal(value, o.port)) return Take::Yes;
        out("-i : invalid port id '%s'\n", value);
        return Take::Failed;
    case 'e':
        if (parseDecimal(value, o.entry)) return Take::Yes;
        out("-e : invalid entry id '%s'\n", value);
        return Take::Failed;
    case 'p':
        return takePassword(value, o.password);
    case OPT_AES_ON:
    case OPT_AES_OFF:
        o.on = option == OPT_AES_ON;
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static int runAesPort(int argc, char** argv, _cmd_struct* row, AesPortOptions& o) {
    OptionCounts given;
    int result = 0;
    auto take = [&](int option, char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, aesportOptions, given, result, take)) return result;
    if (given[OPT_AES_ON] > 1 || given[OPT_AES_OFF] > 1) {
        out(ErrorDuplicate);
        return 1;
    }
    if (!givenOnce(aesportOptions, given) || !givenRequired(aesportOptions, given, argv[0])) return 1;
    const bool changes = operations[o.operation].run != getConfig;
    if (changes && !isKnownAdapter(gCurrentAdapter, result)) return result;
    return operations[o.operation].run(o, given, argv[0]);
}

int doAESPort(int argc, char** argv, _cmd_struct* row) {
    return runAndWipe(argc, argv, row, runAesPort);
}
