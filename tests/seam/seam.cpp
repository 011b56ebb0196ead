#include "tests/seam/seam.h"

#include <cstring>

Seam seam;

Outcome run(CommandHandler handler, const std::string& line) {
    std::string text = line;
    std::vector<char*> words(line.size() + 2);
    int argc = 0;
    parse(&argc, words.data(), text.data());
    char* printed = nullptr;
    size_t size = 0;
    stream = open_memstream(&printed, &size);
    _cmd_struct row = {"word", 5, handler, "\nlong help\n", ":short"};
    int result = handler(argc, words.data(), &row);
    fclose(stream);
    stream = nullptr;
    Outcome outcome = {result, std::string(printed, size), text.substr(text.find('\0') + 1)};
    free(printed);
    return outcome;
}

static KT_U8 answer(const char* name, const std::string& arguments) {
    seam.calls.push_back(arguments.empty() ? name : std::string(name) + " " + arguments);
    auto status = seam.statuses.find(name);
    return status == seam.statuses.end() ? KT_U8{KT_OK} : status->second;
}
static std::string text(unsigned value) {
    return std::to_string(value);
}
static std::string secret(const KT_U8* password) {
    return {reinterpret_cast<const char*>(password), 32};
}

// Hands out the records from the asked index on, or the one with the asked id.
template <class Request, class Record, class IdOf>
static KT_U8 list(const char* name, Request* request, const std::vector<Record>& records, IdOf idOf) {
    _RequestHeader& header = request->header;
    bool all = header.requestType == KT_REQUEST_LIST;
    KT_U8 status = answer(name, all ? "" : text(header.startingIndexOrId));
    header.numReturned = 0;
    header.nextStartingIndex = KT_LIST_END;
    auto* behind = reinterpret_cast<char*>(request) + sizeof header;
    for (size_t i = all ? header.startingIndexOrId : 0; i < records.size(); ++i) {
        if (!all && idOf(records[i]) != header.startingIndexOrId) continue;
        if (header.numReturned == header.numRequested) {
            header.nextStartingIndex = static_cast<KT_U16>(i);
            break;
        }
        memcpy(behind + header.numReturned++ * sizeof(Record), &records[i], sizeof(Record));
    }
    return status;
}

extern "C" {
const char* KT_API_Version() {
    return "recorded";
}
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
    config->key_length = 32;
    memset(config->key_content, 'K', sizeof config->key_content);
    return answer("KT_AES_GetEntryConfig", secret(password));
}
KT_U8 KT_AES_SetEntryConfig(KT_U8, _AES_Entry_Config* config, const KT_U8* password) {
    seam.sent["entry"] = bytesOf(*config);
    return answer("KT_AES_SetEntryConfig", secret(password));
}
KT_U8 KT_AES_VerifyKey(KT_U8, _AES_Entry_Config* config, const KT_U8* password) {
    seam.sent["entry"] = bytesOf(*config);
    return answer("KT_AES_VerifyKey", secret(password));
}
KT_U8 KT_AES_ChangePwd(KT_U8, _AES_Entry_Config* config, const KT_U8* newPassword) {
    seam.sent["entry"] = bytesOf(*config);
    return answer("KT_AES_ChangePwd", secret(newPassword));
}
KT_U8 KT_AES_GetPortConfig(KT_U8, KT_U8 port, _AES_Port_Config* config) {
    *config = {port, port == 1, {}};
    return answer("KT_AES_GetPortConfig", text(port));
}
KT_U8 KT_AES_SetPortConfig(KT_U8, const _AES_Port_Config* config) {
    seam.sent["port"] = bytesOf(*config);
    return answer("KT_AES_SetPortConfig", "");
}
KT_U8 KT_AES_SetLink(KT_U8, const _AES_PORT_INFO* port, const _AES_Entry_Config* entry) {
    seam.sent["port"] = bytesOf(*port);
    seam.sent["entry"] = bytesOf(*entry);
    return answer("KT_AES_SetLink", "");
}
KT_U8 KT_AES_ClearLink(KT_U8, KT_U8 port) {
    return answer("KT_AES_ClearLink", text(port));
}
KT_U8 KT_AES_ForcePDOnline(KT_U8, const _AES_Entry_Config* config, KT_U16 pd, KT_U8 percentage) {
    seam.sent["entry"] = bytesOf(*config);
    return answer("KT_AES_ForcePDOnline", text(pd) + " " + text(percentage));
}

KT_U8 KT_PD_GetHDRaidStatus(KT_U8, _HD_RAID_Status_Request* request) {
    return list("KT_PD_GetHDRaidStatus", request, seam.disks, [](const _HD_RAID_STATUS& disk) { return disk.HDID; });
}
KT_U8 KT_BLK_GetInfo(KT_U8, _BLK_Info_Request* request) {
    return list("KT_BLK_GetInfo", request, seam.blocks, [](const _Block_Info& block) { return block.ID; });
}
}
