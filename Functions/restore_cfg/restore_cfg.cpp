#include "Functions/restore_cfg/restore_cfg.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "Functions/restore_cfg/assignment.h"
#include "Functions/restore_cfg/configFile.h"
#include "Functions/restore_cfg/raidRestore.h"
#include "Public/cfg/sasAddress.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/flashPage.h"
#include "Public/hold.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"
#include "Public/wholeFile.h"

static Take takeOption(int option, const char* value, RestoreOptions& o) {
    if (option == 'a') {
        o.autoset = true;
        return Take::Yes;
    }
    return takeRestoreOption(option, value, "-p : invalid type setting", o);
}

static bool chooseDefaultFile(std::string& file) {
    switch (currentAdapter().DevID) {
    case 0x4740:
    case 0x4745:
        file = "4740.txt";
        return true;
    case 0x4730:
    case 0x4732:
    case 0x4734:
    case 0x4735:
        file = "4730.txt";
        return true;
    default:
        out("Error: Unknown DeviceID:%x !\n", currentAdapter().DevID);
        return false;
    }
}

static const char* assignmentFile() {
    switch (currentAdapter().DevID) {
    case 0x4730:
    case 0x4734:
    case 0x4735:
        return "setcfg4.txt";
    default:
        return "setcfg.txt";
    }
}

static bool readAssignment(CfgFile& file, _updata_sasaddr_info_t& assigned) {
    useFile(file, assignmentFile());
    out("To autoset SAS Addr and Serial Number,");
    out("%s should be configed manually.\n\n", file.shown.c_str());
    ReadFile result = readFile(file);
    if (result == ReadFile::NotOpened) out("Error:Failed open %s \n", file.shown.c_str());
    if (result != ReadFile::Yes) return false;
    assigned.filename = file.path.c_str();
    return KT_AutoGet_SASAddrSN(file.clean.data(), file.clean.size(), &assigned) == 0;
}

// The configuration text with the assigned addresses and serial number in their places.
static std::string assignedText(const std::string& text, const _file_sasaddr_place_info_t& places,
                                const _HBA_Info_Page& page) {
    struct Change {
        CfgPlace place;
        std::string value;
    };
    std::vector<Change> changes;
    for (unsigned port = 0; port < CFG_PORTS; ++port) {
        if (places.sasaddr_place[port].length == 0) continue;
        changes.push_back({places.sasaddr_place[port], sasAddressText(page.SAS_Address[port])});
    }
    changes.push_back({places.serialnumber_place,
                       std::string(reinterpret_cast<const char*>(page.Serial_Num), sizeof page.Serial_Num)});
    // From the end on, so that the places before a change stay valid.
    std::sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) { return a.place.at > b.place.at; });
    std::string assigned = text;
    for (const Change& change : changes) {
        assigned.replace(change.place.at, change.place.length, change.value);
    }
    return assigned;
}

// Puts what was assigned into the page. What the ranges no longer reach stays the adapter's own: the file may be
// another adapter's, and no two have one identity.
static void useAssigned(const _updata_sasaddr_info_t& assigned, const _HBA_Info_Page& current, _HBA_Info_Page& page) {
    for (unsigned port = 0; port < CFG_PORTS; ++port) {
        if ((assigned.available_port >> port & 1) == 0) continue;
        memcpy(page.SAS_Address[port], current.SAS_Address[port], sizeof page.SAS_Address[port]);
        if (assigned.port_sasaddr[port] != 0) sasAddressBytes(assigned.port_sasaddr[port], page.SAS_Address[port]);
    }
    memcpy(page.Serial_Num, current.Serial_Num, sizeof page.Serial_Num);
    if (assigned.serialnumber_flag != 0) {
        std::string serial = serialNumberText(assigned, assigned.serialnumber_current);
        memset(page.Serial_Num, 0, sizeof page.Serial_Num);
        memcpy(page.Serial_Num, serial.data(), std::min(serial.size(), sizeof page.Serial_Num));
    }
    page.Check_Sum = 0;
    page.Check_Sum = static_cast<KT_U8>(-GetHBAInfoChksum_Flash(&page));
}

// Rewrites the configuration file with what was assigned, once it is certain that the assignment file can be rewritten
// as well: staged is what it will hold. Otherwise the next adapter would be given the same address and serial number.
static bool rewriteFiles(const CfgFile& file, const std::string& text, const CfgFile& assignment,
                         const _updata_sasaddr_info_t& assigned, StagedFile& staged) {
    std::string advanced = advancedAssignment(assignment.text, assigned);
    bool advances = advanced != assignment.text;
    if (advances && stageWholeFile(assignment.path, advanced, Existing::Replace, staged) != WroteFile::Yes) {
        out("Error:Failed open %s \n", assignment.shown.c_str());
        return false;
    }
    if (writeWholeFile(file.path, text, Existing::Replace) == WroteFile::Yes) return true;
    dropStagedFile(staged);
    out("Error: Failed open %s !\n", file.shown.c_str());
    return false;
}

static KT_U8 writePage(const _HBA_Info_Page& page) {
    FlashPage flash = newFlashPage();
    if (flash == nullptr) return KT_ERR_NO_RESOURCE;
    flash->Size = sizeof page;
    flash->isLastPage = 1;
    memcpy(flash->Data, &page, sizeof page);
    KT_U8 status = KT_Flash_Bin(gCurrentAdapter, KT_FLASH_UPDATE, KT_IMAGE_CONFIG, flash.get());
    if (status != KT_OK) {
        out("\nExecutes write hba config fail (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    out("Restore HBA and Port config is returned successfully!\n\n");
    return KT_OK;
}

// The settings page, with `raid` filled from the file. 0 when it was restored.
static int restorePage(const RestoreOptions& o, _HBA_Info_Page& current, _HBA_Info_Page& page, CfgRaid& raid) {
    KT_U8 status = readPage(current);
    if (status != KT_OK) return status;
    page = current;
    CfgFile assignment;
    _updata_sasaddr_info_t assigned = {};
    if (o.autoset && !readAssignment(assignment, assigned)) return 1;
    CfgFile file;
    useFile(file, o.file);
    _file_sasaddr_place_info_t places = {};
    places.available_port = assigned.available_port;
    if (!readConfiguration(file, o.mode, places, page, raid)) return 1;
    if (!o.autoset) return writePage(page);
    if (places.serialnumber_place.length == 0) {
        out("Error:Didn't find the Serial number.\n");
        return 1;
    }
    useAssigned(assigned, current, page);
    StagedFile staged = {};
    if (!rewriteFiles(file, assignedText(file.text, places, page), assignment, assigned, staged)) return 1;
    status = writePage(page);
    if (status != KT_OK) {
        dropStagedFile(staged);
        return status;
    }
    if (placeStagedFile(staged) == WroteFile::Yes) return 0;
    out("Error:Failed open %s \n", assignment.shown.c_str());
    return 1;
}

static int restore(const RestoreOptions& o) {
    CfgRaidHolder raid = newCfgRaid();
    if (raid == nullptr) return KT_ERR_NO_RESOURCE;
    _HBA_Info_Page current;
    _HBA_Info_Page page;
    const Hold hold("the configuration would be restored in part, and virtual disks of it may be missing");
    int result = restorePage(o, current, page, *raid);
    if (result != 0) return result;
    // From here on 1 is the result of success, too.
    if (!o.raid || !isRaidOn(current, page)) return 1;
    const std::string lack = raidLack(*raid, o.mode);
    if (lack.empty()) return restoreRaid(*raid);
    out("%s; the RAID configuration stays as it is.\n", lack.c_str());
    return KT_ERR_INVALID_PARAMETER;
}

int doRestore_CFG(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    RestoreOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, restoreCfgOptions, given, result, take)) return result;
    if (!givenOnce(restoreCfgOptions, given)) return 1;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    if (given['f'] == 0 && !chooseDefaultFile(o.file)) return 1;
    return restore(o);
}
