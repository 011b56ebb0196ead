#include "tests/seam/seam.h"

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Functions/version/version.h"
#include "ktsetup/commandTables.h"
#include "tests/support/printed.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

Seam seam;

// Standard input becomes the text and ends behind it.
static void typeIn(const std::string& answers) {
    int ends[2];
    if (pipe(ends) != 0 || write(ends[1], answers.data(), answers.size()) < 0 || dup2(ends[0], STDIN_FILENO) < 0)
        abort();
    close(ends[0]);
    close(ends[1]);
}

static CommandHandler handlerOf(std::string word) {
    static const std::map<std::string, CommandHandler> ofKtcfg = {
        {"backup_cfg", doBackUp_CFG}, {"restore_cfg", doRestore_CFG}, {"check", doCheck_CFG}};
    if (ofKtcfg.contains(word)) return ofKtcfg.at(word);
    for (bool arrays : {arrayBasedRaid, !arrayBasedRaid}) {
        const CommandSet& set = arrays ? arrayBasedCommands : ldBasedCommands;
        for (const auto& [rows, size] : {std::pair{set.general, set.generalSize}, {set.internal, set.internalSize}}) {
            for (int i = 0; i < size; ++i)
                if (word == rows[i].cmd) return rows[i].cmdHandler;
        }
    }
    ADD_FAILURE() << "no command " << word;
    return doVersion;
}

Outcome run(const std::string& line, const std::string& answers) {
    typeIn(answers);
    std::string text = line;
    std::vector<char*> words(line.size() + 2);
    int argc = 0;
    parse(&argc, words.data(), text.data());
    _cmd_struct row = {"word", 5, handlerOf(words[0]), "\nlong help\n", ":short"};
    Outcome outcome = {line, 0, "", ""};
    outcome.printed = printedBy([&] { outcome.result = row.cmdHandler(argc, words.data(), &row); });
    outcome.words = text.substr(text.find('\0') + 1);
    return outcome;
}

void expect(const Outcome& outcome, const std::string& printed, int result, const char* file, int line) {
    testing::ScopedTrace trace(file, line, outcome.line);
    EXPECT_EQ(printed, outcome.printed);
    EXPECT_EQ(result, outcome.result);
}

static void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
}
static std::string unescaped(std::string text) {
    replaceAll(text, "\\n", "\n");
    replaceAll(text, "\\t", "\t");
    return text;
}
// What stands behind the mark, which is taken away with it.
static std::string cutBehind(std::string& text, const std::string& mark) {
    const size_t at = text.find(mark);
    const std::string behind = at == text.npos ? "" : text.substr(at + mark.size());
    text.resize(std::min(at, text.size()));
    return behind;
}

std::vector<TableRow> rowsOf(const std::string& table) {
    std::vector<TableRow> rows;
    std::istringstream lines(table);
    for (std::string row; std::getline(lines, row);) {
        if (row.empty()) continue;
        const size_t equals = row.find(" =");
        const size_t arrow = row.find("> ", equals);
        if (arrow == row.npos) throw std::invalid_argument("no arrow in: " + row);
        const std::string line = row.substr(0, equals);
        const size_t open = line.find('{');
        const size_t end = line.find('}') + 1;
        std::istringstream choices(open == line.npos ? "-" : line.substr(open + 1, end - open - 2));
        for (std::string word; std::getline(choices, word, '|');) {
            TableRow found = {line, row.substr(arrow + 2), -1};
            if (arrow > equals + 2) found.result = std::stoi(row.substr(equals + 2));
            if (open != line.npos) found.line.replace(open, end - open, word);
            word.erase(0, word.rfind(' ') + 1);
            replaceAll(found.message, "{}", word == "\\t" ? "" : word);
            if (!found.message.empty()) found.message += "\n";
            rows.push_back({unescaped(found.line), unescaped(found.message), found.result});
        }
    }
    return rows;
}

void expectRows(Calls (*unwanted)(), const std::string& table) {
    for (const TableRow& row : rowsOf(table)) {
        seam.calls.clear();
        expect(row.line, row.message, row.result < 0 ? 1 : row.result);
        EXPECT_EQ(Calls{}, unwanted()) << row.line;
    }
}

void expectSteps(const std::map<std::string, std::string>& texts, const std::string& table) {
    std::string whole = table;
    for (const auto& [name, text] : texts)
        replaceAll(whole, "$" + name, text);
    for (TableRow& row : rowsOf(whole)) {
        SCOPED_TRACE(row.line);
        std::string answers = cutBehind(row.line, " < ");
        replaceAll(answers, ",", "\n");
        if (!answers.empty()) answers += "\n";
        seam.statuses.clear();
        for (std::string call = cutBehind(row.line, " ! "), rest; !call.empty(); call = rest) {
            rest = cutBehind(call, ", ");
            const std::string status = cutBehind(call, "=");
            seam.statuses[call] = static_cast<KT_U8>(std::stoi(status));
        }
        std::string calls = cutBehind(row.message, " | ");
        const bool counted = !calls.empty();
        replaceAll(calls, "\n", "");
        seam.calls.clear();
        seam.sent.clear();
        const Outcome outcome = run(row.line, answers);
        if (counted) row.message += row.message.empty() ? "" : "\n";
        expect(outcome, row.message, std::max(row.result, 0));
        if (!counted) continue;
        std::string made;
        for (const std::string& call : seam.calls)
            made += (made.empty() ? "" : "; ") + call;
        EXPECT_EQ(calls, made);
    }
}

KT_U8 answer(const char* name, const std::string& arguments) {
    seam.calls.push_back(arguments.empty() ? name : std::string(name) + " " + arguments);
    auto status = seam.statuses.find(seam.calls.back());
    if (status == seam.statuses.end()) status = seam.statuses.find(name);
    return status == seam.statuses.end() ? KT_U8{KT_OK} : status->second;
}
static std::string secret(const KT_U8* password) {
    return {reinterpret_cast<const char*>(password), 32};
}

extern "C" {
const char* KT_API_Version() {
    return seam.version.c_str();
}
KT_U8 KT_API_RescanAdapter() {
    return KT_OK;
}
KT_U32 KT_API_GetRescanCount(KT_U8) {
    return 0;
}
void KT_API_Finalize() {}
KT_U8 KT_Adapter_GetCount() {
    return 1;
}
KT_U8 KT_Adapter_GetInfo(KT_U8, KT_U8*, _Adapter_Info*) {
    return KT_OK;
}

CALL(KT_AES_GetEntryInfo, (KT_U8, _aes_entry_info* info), give(name, info, seam.aesOverview))
CALL(KT_AES_OnlyGetEntryInfo, (KT_U8, KT_U8 entry, _AES_ENTRY_INFO* info),
     give(name, info, {entry, seam.aesOverview.entry[entry % 10], {}}, entry))
CALL(KT_AES_OnlyGetPortInfo, (KT_U8, KT_U8 port, _AES_PORT_INFO* info),
     give(name, info, {port, seam.aesOverview.aes_port[port % 4].entry, {1, 2, 3}}, port))
KT_U8 KT_AES_GetEntryConfig(KT_U8, _AES_Entry_Config* config, const KT_U8* password) {
    KT_U8 status = take("KT_AES_GetEntryConfig", "entry", *config, secret(password));
    config->entry_id = 99; // not the entry that was asked for
    config->key_length = 32;
    memset(config->key_content, 'K', sizeof config->key_content);
    return status;
}
CALL(KT_AES_SetEntryConfig, (KT_U8, _AES_Entry_Config* config, const KT_U8* password),
     take(name, "entry", *config, secret(password)))
CALL(KT_AES_VerifyKey, (KT_U8, _AES_Entry_Config* config, const KT_U8* password),
     take(name, "entry", *config, secret(password)))
CALL(KT_AES_ChangePwd, (KT_U8, _AES_Entry_Config* config, const KT_U8* password),
     take(name, "entry", *config, secret(password)))
// The answer is not of the port that was asked for.
CALL(KT_AES_GetPortConfig, (KT_U8, KT_U8 port, _AES_Port_Config* config), give(name, config, {99, port == 1, {}}, port))
CALL(KT_AES_SetPortConfig, (KT_U8, const _AES_Port_Config* config), take(name, "port", *config))
KT_U8 KT_AES_SetLink(KT_U8, const _AES_PORT_INFO* port, const _AES_Entry_Config* entry) {
    seam.sent["port"] = bytesOf(*port);
    return take("KT_AES_SetLink", "entry", *entry);
}
CALL(KT_AES_ClearLink, (KT_U8, KT_U8 port), note(name, port))
CALL(KT_AES_ForcePDOnline, (KT_U8, const _AES_Entry_Config* config, KT_U16 pd, KT_U8 percentage),
     take(name, "entry", *config, pd, percentage))

#define GIVES(call, Record, records)                                                                                   \
    KT_U8 call(KT_U8 a, KT_U8 maxCount, KT_U8* count, Record* given) {                                                 \
        size_t fit = std::min<size_t>(records.size(), maxCount);                                                       \
        std::copy_n(records.begin(), fit, given);                                                                      \
        *count = seam.claimed != 0 ? seam.claimed : static_cast<KT_U8>(fit);                                           \
        return note(#call, a, maxCount);                                                                               \
    }
GIVES(KT_EVT_GetEvent, _Event, seam.events)
GIVES(KT_EVT_GetEventMessage, _Event_Message, seam.messages)

KT_U8 KT_Adapter_GetConfig(KT_U8 a, _Adapter_Config_V2* config) {
    *config = seam.adapterConfig;
    config->rawimg_update_disabled = seam.rawDisabled;
    return note("KT_Adapter_GetConfig", a);
}
CALL(KT_Flash_PreData, (KT_U8 a, const _KT_FLASH_PER_DATA* announcement),
     note(name, a, "type", announcement->image_type, "size", announcement->image_size))
CALL(KT_Flash_Erase, (KT_U8 a, KT_U8 pageCode), note(name, a, pageCode))
KT_U8 KT_Flash_Bin(KT_U8 a, KT_U8 action, KT_U8 imageType, _Flash_Data* page) {
    size_t start = size_t{page->PageNum} * sizeof page->Data;
    bool clean = action == KT_FLASH_BACKUP ||
                 std::all_of(page->Data + page->Size, std::end(page->Data), [](KT_U8 byte) { return byte == 0; });
    KT_U8 status = note("KT_Flash_Bin", a, action, imageType, "page", page->PageNum, "last", page->isLastPage, "size",
                        text(page->Size) + (clean ? "" : " with remains"));
    if (seam.flashFailsAt >= 0 && page->PageNum != seam.flashFailsAt) status = KT_OK;
    if (status != KT_OK || action == KT_FLASH_ERASE) return status;
    if (action == KT_FLASH_UPDATE) {
        seam.flash.append(page->Data, page->Data + page->Size);
        if (seam.flashed != nullptr) seam.flashed();
        return status;
    }
    const std::string found = seam.flash.substr(std::min(start, seam.flash.size()), sizeof page->Data);
    const size_t count = found.size();
    memcpy(page->Data, found.data(), count);
    page->Size = seam.flashClaims != 0 ? seam.flashClaims : static_cast<KT_U32>(count);
    page->isLastPage = !seam.flashEndless && start + count >= seam.flash.size();
    return status;
}
KT_U8 KT_Flash_GetHeaderInfo(const char* path, KT_U8* imageType, KT_U32* major, KT_U16* minor, KT_U16* revision,
                             KT_U16* build, KT_U16* subVendorId) {
    KT_U8 status = note("KT_Flash_GetHeaderInfo", path, *imageType, *major, *minor, *revision, *build, *subVendorId);
    if (status == KT_OK)
        std::tie(*imageType, *major, *minor, *revision, *build, *subVendorId) =
            std::tuple(KT_IMAGE_FIRMWARE, 4000000000, 1, 2, 65535, 0x1B4B);
    return status;
}
KT_U8 KT_Flash_NVSRAM(KT_U8 a, KT_U8 action, _NVSRAM_Data* data) {
    KT_U8 status = take("KT_Flash_NVSRAM", "nvsram", *data, a, action, data->Offset, data->Length);
    memcpy(data->Data, seam.nvsram.Data, sizeof data->Data);
    return status;
}
KT_U8 KT_Adapter_Read_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request) {
    KT_U8 status = take("KT_Adapter_Read_Register", "register", *request, a, type, address);
    request->Value = seam.reg;
    return status;
}
CALL(KT_Adapter_Write_Register, (KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request),
     take(name, "register", *request, a, type, address))

CALL(KT_Tandemix_AddFSEntries, (KT_U8 a, KT_U16 vd, const _Tandemix_Entry_Request* request, KT_U8 last),
     take(name, "entry", *request, a, vd, last))
CALL(KT_Tandemix_GetEntriesTableInfo, (KT_U8 a, KT_U16 vd, _Tandemix_Table_Info* info),
     give(name, info, {65535, 12}, a, vd))
CALL(KT_Tandemix_RemoveEntriesTable, (KT_U8 a, KT_U16 vd), note(name, a, vd))
}
