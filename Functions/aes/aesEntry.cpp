#include "Functions/aes/aesEntry.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Functions/aes/aesCommand.h"
#include "Public/hold.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

static constexpr int LABEL_WIDTH = 24;
static constexpr KT_U8 ALL_ENTRIES = 255;

namespace {
struct AesEntryOptions {
    KT_U8 entry = ALL_ENTRIES;
    AesSecret password = {};
    AesSecret key = {};
    size_t operation = 0; // index into operations
};
} // namespace

// Prints an entry and each port that the overview links to it.
static int reportEntry(KT_U8 entry, const _aes_entry_info& overview) {
    _AES_ENTRY_INFO info = {};
    KT_U8 status = KT_AES_OnlyGetEntryInfo(gCurrentAdapter, entry, &info);
    if (status != KT_OK) return entryFailed(entry, status);
    printNum(LABEL_WIDTH, "Entry ID:", entry);
    printStr(LABEL_WIDTH, "Has Key:", info.hasKey != 0 ? "Yes" : "No");
    for (const _aes_port_entry& port : overview.aes_port) {
        if (port.id == AES_NO_LINK || port.entry != entry) continue;
        _AES_PORT_INFO detail = {};
        status = KT_AES_OnlyGetPortInfo(gCurrentAdapter, port.id, &detail);
        if (status != KT_OK) return entryFailed(entry, status);
        printNum(LABEL_WIDTH, "Port ID:", port.id);
    }
    return 0;
}

// Whether there is such an entry: one that the adapter counts, or one that holds a key or has a port all the same.
static bool isEntry(KT_U8 entry, const _aes_entry_info& overview) {
    auto hasIt = [&](const _aes_port_entry& port) { return port.id != AES_NO_LINK && port.entry == entry; };
    return entry < currentAdapter().MaxAESEntry || overview.entry[entry] != 0 ||
           std::any_of(std::begin(overview.aes_port), std::end(overview.aes_port), hasIt);
}

static int getInfo(const AesEntryOptions& o, const OptionCounts& given, const char*) {
    _aes_entry_info overview = {};
    KT_U8 status = KT_AES_GetEntryInfo(gCurrentAdapter, &overview);
    if (status != KT_OK) return entryFailed(o.entry, status);
    if (given['i'] > 0) return reportEntry(o.entry, overview);
    bool found = false;
    int result = 0;
    for (KT_U8 entry = 0; entry < std::size(overview.entry) && result == 0; ++entry) {
        if (!isEntry(entry, overview)) continue;
        found = true;
        result = reportEntry(entry, overview);
    }
    if (!found) out("\nNo entry is found\n");
    return result;
}

static int getConfig(const AesEntryOptions& o, const OptionCounts& given, const char* command) {
    OptionSet needed = {.letters = nullptr, .longOptions = nullptr, .required = "ip"};
    if (!givenRequired(needed, given, command)) return 1;
    _AES_Entry_Config config = {};
    config.entry_id = o.entry;
    memcpy(config.user_auth, o.password, sizeof config.user_auth);
    KT_U8 status = KT_AES_GetEntryConfig(gCurrentAdapter, &config, o.password);
    if (status == KT_OK) {
        printNum(LABEL_WIDTH, "Entry ID:", o.entry);
        printNum(LABEL_WIDTH, "AES key length:", config.key_length);
    } else {
        entryFailed(o.entry, status);
    }
    explicit_bzero(&config, sizeof config); // the library may have put the key into it
    return status;
}

static int setConfig(const AesEntryOptions& o, const OptionCounts& given, const char* command) {
    if (given['i'] == 0 || given['p'] == 0) {
        out("\nAES entry id and password must be set.\n");
        return 1;
    }
    if (given['k'] == 0) {
        out(OptionRequired, command, 'k');
        return 1;
    }
    int result = 0;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    _AES_Entry_Config config = {};
    config.entry_id = o.entry;
    config.key_length = static_cast<KT_U8>(strnlen(reinterpret_cast<const char*>(o.key), sizeof o.key));
    memcpy(config.key_content, o.key, sizeof config.key_content);
    memcpy(config.user_auth, o.password, sizeof config.user_auth);
    const Hold hold("the entry would have the old key or the new one, and nothing would tell which");
    KT_U8 status = KT_AES_SetEntryConfig(gCurrentAdapter, &config, o.password);
    explicit_bzero(&config, sizeof config);
    if (status != KT_OK) {
        out("\nFailed to set configuration of entry %d (error %d: %s)\n", o.entry, status, ErrorMessage(status));
    }
    return status;
}

static const AesOperation<AesEntryOptions> operations[] = {
    {"getInfo", getInfo}, {"getCfg", getConfig}, {"setCfg", setConfig}};

static Take takeOption(int option, char* value, AesEntryOptions& o) {
    switch (option) {
    case 'o':
        return takeOperation(value, operations, o.operation);
    case 'i':
        if (parseDecimal(value, o.entry)) return Take::Yes;
        out("-i : invalid id '%s'\n", value);
        return Take::Failed;
    case 'p':
        return takePassword(value, o.password);
    case 'k':
        return takeKey(value, o.key);
    default:
        return Take::Help;
    }
}

static int runAesEntry(int argc, char** argv, _cmd_struct* row, AesEntryOptions& o) {
    OptionCounts given;
    int result = 0;
    auto take = [&](int option, char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, aesentryOptions, given, result, take)) return result;
    if (!givenOnce(aesentryOptions, given) || !givenRequired(aesentryOptions, given, argv[0])) return 1;
    return operations[o.operation].run(o, given, argv[0]);
}

int doAESEntry(int argc, char** argv, _cmd_struct* row) {
    return runAndWipe(argc, argv, row, runAesEntry);
}
