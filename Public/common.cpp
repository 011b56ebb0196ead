#include "Public/common.h"

#include <algorithm>
#include <cstring>

#include "Public/incomplete.h"
#include "Public/nearWords.h"
#include "Public/utility.h"

KT_U8 gCurrentAdapter = 0;
KT_U8 gNumAdaptersFound = 0;
KT_U8 gAdapterID = 0;
_Adapter_Info gAdapterInfo[ADAPTER_INDEXES];
KT_U8 gAdapterStatus[ADAPTER_INDEXES];
bool arrayBasedRaid = false;
int gUTCStatus = 0;

static CommandSet commandSets[2];

void setCommandSets(const CommandSet& ldBased, const CommandSet& arrayBased) {
    commandSets[0] = ldBased;
    commandSets[1] = arrayBased;
}

void chooseCommandSet() {
    arrayBasedRaid = currentAdapter().MaxDiskGroup != 0;
    const CommandSet& set = commandSets[arrayBasedRaid ? 1 : 0];
    pCmdTable = set.general;
    cmdTableSize = set.generalSize;
    pInCmdTable = set.internal;
    inCmdTableSize = set.internalSize;
}

void readAdapterRecords() {
    memset(gAdapterStatus, KT_OK, sizeof gAdapterStatus);
    for (unsigned i = 0; i < gNumAdaptersFound; ++i) {
        KT_U8 ignored = 0;
        gAdapterStatus[i] = KT_Adapter_GetInfo(static_cast<KT_U8>(i), &ignored, &gAdapterInfo[i]);
    }
}

void noQuoteStrncpy(char* dst, const char* src, int n) {
    size_t room = static_cast<size_t>(std::max(n, 1));
    size_t length = strlen(src);
    if (*src != '"') {
        size_t copied = std::min(length, room - 1);
        memcpy(dst, src, copied);
        dst[copied] = '\0';
        return;
    }
    // A lone quote has nothing between its quotes.
    size_t inside = length >= 2 ? std::min(length - 2, room) : 0;
    memcpy(dst, src + 1, inside);
    dst[inside] = '\0';
}

LibraryVersion::LibraryVersion() {
    const char* version = KT_API_Version();
    fieldText(text, reinterpret_cast<const KT_U8*>(version != nullptr ? version : ""), sizeof text - 1);
}

void printVersionLine() {
    out("CLI Version: %s   RaidAPI Version: %s\n", CLI_VERSION, LibraryVersion().text);
}

void printAdapterCount() {
    out("Total number of adapters: %d\n", gNumAdaptersFound);
    out("Current default adapter ID for CLI commands: %d\n", gCurrentAdapter);
}

static int refuseWord(const char* word) {
    for (const char* at = word; *at != '\0'; ++at) {
        if (*at < 0x1E || *at > 0x7E) {
            out("Invalid command!\n");
            return 1;
        }
    }
    out("Invalid command '%s'!\n", word);
    return 1;
}

int cmdDispatcher(int argc, char** argv) {
    const char* word = strlwr(argv[0]);
    if (strcmp(word, "exit") == 0 || strcmp(word, "quit") == 0) return -1;
    if (strcmp(word, "ver") == 0) {
        printVersionLine();
        return 0;
    }
    size_t length = strlen(word);
    auto isPrefix = [&](const _cmd_struct& row) { return strncmp(row.cmd, word, length) == 0; };
    auto isWhole = [&](const _cmd_struct& row) { return static_cast<size_t>(row.cmdLen) == length + 1; };
    auto run = [&](_cmd_struct& row) { return completeResult(row.cmdHandler(argc, argv, &row)); };
    int count = 0;
    KT_U16 index = 0;
    bool inGeneral = false;
    for (KT_U16 i = 0; i < cmdTableSize; ++i) {
        if (!isPrefix(pCmdTable[i])) continue;
        if (isWhole(pCmdTable[i])) return run(pCmdTable[i]);
        index = i;
        ++count;
        inGeneral = true;
    }
    for (KT_U16 i = 0; i < inCmdTableSize; ++i) {
        if (!isPrefix(pInCmdTable[i])) continue;
        index = i;
        // When a general row matched too, the position counts in the general table, not in the internal one. That looks
        // wrong, but is how the program has always behaved, and no word of today's tables matches in both.
        if (isWhole(pInCmdTable[i])) return run(inGeneral ? pCmdTable[i] : pInCmdTable[i]);
        ++count;
    }
    if (count == 1) return run(inGeneral ? pCmdTable[index] : pInCmdTable[index]);
    if (count > 1) {
        out("Ambiguous command '%s'!\n", word);
        return 1;
    }
    const int result = refuseWord(word);
    suggestCommands(word);
    return result;
}
