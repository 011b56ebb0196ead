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

static std::string unescaped(std::string text) {
    for (const auto& [from, to] : {std::pair{"\\n", "\n"}, {"\\t", "\t"}}) {
        for (size_t at = 0; (at = text.find(from)) != text.npos;)
            text.replace(at, 2, to);
    }
    return text;
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
            if (size_t at = found.message.find("{}"); at != row.npos)
                found.message.replace(at, 2, word == "\\t" ? "" : word);
            if (!found.message.empty()) found.message += "\n";
            rows.push_back({unescaped(found.line), unescaped(found.message), found.result});
        }
    }
    return rows;
}

void expectRows(const std::string& table, Calls (*unwanted)()) {
    for (const TableRow& row : rowsOf(table)) {
        seam.calls.clear();
        expect(row.line, row.message, row.result < 0 ? 1 : row.result);
        EXPECT_EQ(Calls{}, unwanted()) << row.line;
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
    return answer("KT_API_RescanAdapter", "");
}
KT_U32 KT_API_GetRescanCount(KT_U8 force) {
    return note("KT_API_GetRescanCount", force);
}
void KT_API_Finalize() {}
KT_U8 KT_Adapter_GetCount() {
    return 1;
}
KT_U8 KT_Adapter_GetInfo(KT_U8, KT_U8*, _Adapter_Info*) {
    return KT_OK;
}

KT_U8 KT_AES_GetEntryInfo(KT_U8, _aes_entry_info* info) {
    *info = seam.aesOverview;
    return answer("KT_AES_GetEntryInfo", "");
}
KT_U8 KT_AES_OnlyGetEntryInfo(KT_U8, KT_U8 entry, _AES_ENTRY_INFO* info) {
    *info = {entry, seam.aesOverview.entry[entry % 10], {}};
    return answer("KT_AES_OnlyGetEntryInfo", text(entry));
}
KT_U8 KT_AES_OnlyGetPortInfo(KT_U8, KT_U8 port, _AES_PORT_INFO* info) {
    *info = {port, seam.aesOverview.aes_port[port % 4].entry, {}};
    return answer("KT_AES_OnlyGetPortInfo", text(port));
}
KT_U8 KT_AES_GetEntryConfig(KT_U8, _AES_Entry_Config* config, const KT_U8* password) {
    seam.sent["entry"] = bytesOf(*config);
    config->entry_id = 99; // not the entry that was asked for
    config->key_length = 32;
    memset(config->key_content, 'K', sizeof config->key_content);
    return answer("KT_AES_GetEntryConfig", secret(password));
}
KT_U8 KT_AES_SetEntryConfig(KT_U8, _AES_Entry_Config* config, const KT_U8* password) {
    return take("KT_AES_SetEntryConfig", secret(password), *config, "entry");
}
KT_U8 KT_AES_VerifyKey(KT_U8, _AES_Entry_Config* config, const KT_U8* password) {
    return take("KT_AES_VerifyKey", secret(password), *config, "entry");
}
KT_U8 KT_AES_ChangePwd(KT_U8, _AES_Entry_Config* config, const KT_U8* newPassword) {
    return take("KT_AES_ChangePwd", secret(newPassword), *config, "entry");
}
KT_U8 KT_AES_GetPortConfig(KT_U8, KT_U8 port, _AES_Port_Config* config) {
    *config = {99, port == 1, {}}; // not the port that was asked for
    return answer("KT_AES_GetPortConfig", text(port));
}
KT_U8 KT_AES_SetPortConfig(KT_U8, const _AES_Port_Config* config) {
    return take("KT_AES_SetPortConfig", "", *config, "port");
}
KT_U8 KT_AES_SetLink(KT_U8, const _AES_PORT_INFO* port, const _AES_Entry_Config* entry) {
    seam.sent["port"] = bytesOf(*port);
    return take("KT_AES_SetLink", "", *entry, "entry");
}
NOTES1(KT_AES_ClearLink, KT_U8)
KT_U8 KT_AES_ForcePDOnline(KT_U8, const _AES_Entry_Config* config, KT_U16 pd, KT_U8 percentage) {
    return take("KT_AES_ForcePDOnline", text(pd) + " " + text(percentage), *config, "entry");
}

LISTS(KT_PD_GetHDRaidStatus, _HD_RAID_Status_Request, seam.disks, HDID)
LISTS(KT_BLK_GetInfo, _BLK_Info_Request, seam.blocks, ID)

KT_U8 KT_EVT_GetEvent(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event* events) {
    size_t given = std::min<size_t>(seam.events.size(), maxCount);
    std::copy_n(seam.events.begin(), given, events);
    *count = seam.claimed != 0 ? seam.claimed : static_cast<KT_U8>(given);
    return answer("KT_EVT_GetEvent", text(a) + " " + text(maxCount));
}
KT_U8 KT_EVT_GetEventMessage(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event_Message* messages) {
    size_t given = std::min<size_t>(seam.messages.size(), maxCount);
    std::copy_n(seam.messages.begin(), given, messages);
    *count = seam.claimed != 0 ? seam.claimed : static_cast<KT_U8>(given);
    return answer("KT_EVT_GetEventMessage", text(a) + " " + text(maxCount));
}

KT_U8 KT_Adapter_GetConfig(KT_U8 a, _Adapter_Config_V2* config) {
    *config = seam.adapterConfig;
    config->rawimg_update_disabled = seam.rawDisabled;
    return answer("KT_Adapter_GetConfig", text(a));
}
KT_U8 KT_Flash_PreData(KT_U8 a, const _KT_FLASH_PER_DATA* announcement) {
    return answer("KT_Flash_PreData",
                  text(a) + " type " + text(announcement->image_type) + " size " + text(announcement->image_size));
}
KT_U8 KT_Flash_Erase(KT_U8 a, KT_U8 pageCode) {
    return answer("KT_Flash_Erase", text(a) + " " + text(pageCode));
}
KT_U8 KT_Flash_Bin(KT_U8 a, KT_U8 action, KT_U8 imageType, _Flash_Data* page) {
    size_t start = size_t{page->PageNum} * sizeof page->Data;
    std::string arguments = text(a) + " " + text(action) + " " + text(imageType) + " page " + text(page->PageNum) +
                            " last " + text(page->isLastPage) + " size " + text(page->Size);
    bool clean = action == KT_FLASH_BACKUP ||
                 std::all_of(page->Data + page->Size, std::end(page->Data), [](KT_U8 byte) { return byte == 0; });
    KT_U8 status = answer("KT_Flash_Bin", clean ? arguments : arguments + " with remains");
    if (seam.flashFailsAt >= 0 && page->PageNum != seam.flashFailsAt) status = KT_OK;
    if (status != KT_OK || action == KT_FLASH_ERASE) return status;
    if (action == KT_FLASH_UPDATE) {
        seam.flash.insert(seam.flash.end(), page->Data, page->Data + page->Size);
        if (seam.flashed != nullptr) seam.flashed();
        return status;
    }
    size_t count = start < seam.flash.size() ? std::min(seam.flash.size() - start, sizeof page->Data) : 0;
    std::copy_n(seam.flash.begin() + static_cast<std::ptrdiff_t>(std::min(start, seam.flash.size())), count,
                page->Data);
    page->Size = seam.flashClaims != 0 ? seam.flashClaims : static_cast<KT_U32>(count);
    page->isLastPage = !seam.flashEndless && start + count >= seam.flash.size();
    return status;
}
KT_U8 KT_Flash_GetHeaderInfo(const char* path, KT_U8* imageType, KT_U32* major, KT_U16* minor, KT_U16* revision,
                             KT_U16* build, KT_U16* subVendorId) {
    KT_U8 status =
        answer("KT_Flash_GetHeaderInfo", std::string(path) + " " + text(*imageType) + text(*major) + text(*minor) +
                                             text(*revision) + text(*build) + " " + text(*subVendorId));
    if (status != KT_OK) return status;
    *imageType = KT_IMAGE_FIRMWARE;
    *major = 4000000000;
    *minor = 1;
    *revision = 2;
    *build = 65535;
    *subVendorId = 0x1B4B;
    return status;
}
KT_U8 KT_Flash_NVSRAM(KT_U8 a, KT_U8 action, _NVSRAM_Data* data) {
    seam.sent["nvsram"] = bytesOf(*data);
    memcpy(data->Data, seam.nvsram.Data, sizeof data->Data);
    return answer("KT_Flash_NVSRAM",
                  text(a) + " " + text(action) + " " + text(data->Offset) + " " + text(data->Length));
}
KT_U8 KT_Adapter_Read_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request) {
    seam.sent["register"] = bytesOf(*request);
    request->Value = seam.reg;
    return answer("KT_Adapter_Read_Register", text(a) + " " + text(type) + " " + text(address));
}
KT_U8 KT_Adapter_Write_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request) {
    return take("KT_Adapter_Write_Register", text(a) + " " + text(type) + " " + text(address), *request, "register");
}

KT_U8 KT_Tandemix_AddFSEntries(KT_U8 a, KT_U16 vd, const _Tandemix_Entry_Request* request, KT_U8 last) {
    return take("KT_Tandemix_AddFSEntries", text(a) + " " + text(vd) + " " + text(last), *request, "entry");
}
KT_U8 KT_Tandemix_GetEntriesTableInfo(KT_U8 a, KT_U16 vd, _Tandemix_Table_Info* info) {
    *info = {65535, 12};
    return answer("KT_Tandemix_GetEntriesTableInfo", text(a) + " " + text(vd));
}
KT_U8 KT_Tandemix_RemoveEntriesTable(KT_U8 a, KT_U16 vd) {
    return answer("KT_Tandemix_RemoveEntriesTable", text(a) + " " + text(vd));
}
}
