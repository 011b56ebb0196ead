#include "Functions/backup_cfg/backup_cfg.h"

#include <cstring>

#include "Public/cfg/raidConfig.h"
#include "Public/cfg/reader.h"
#include "Public/cfg/writer.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/flashPage.h"
#include "Public/listing.h"
#include "Public/wholeFile.h"

namespace {
struct BackupOptions {
    std::string file;
    KT_U8 mode = CFG_FULL_FORM;
};
} // namespace

static Take takeOption(int option, const char* value, BackupOptions& o) {
    switch (option) {
    case 'f':
        o.file = unquotedName(value);
        return Take::Yes;
    case 't':
        o.mode = CFG_PHY_FORM;
        if (strcasecmp(value, "phy") == 0) return Take::Yes;
        out("-p : invalid type setting '%s'\n", value);
        return Take::Failed;
    default:
        return Take::Help;
    }
}

// A member that is none, in either width of an id.
static bool isNoMember(KT_U16 id) {
    return id == KT_NO_ID || id == CFG_NO_DEVICE;
}

// Turns the block ids of a virtual disk, up to the first member that is missing, into the ids of the disks that hold
// them. False when that leaves ids of blocks.
static bool blocksToDisks(_LD_Info& ld) {
    unsigned members = cfgMembers(ld);
    unsigned known = 0;
    for (unsigned i = 0; i < members && !isNoMember(ld.BlockIDs[i]); ++i) {
        _BLK_Info_Request request;
        KT_U8 status = askItem(KT_BLK_GetInfo, ld.BlockIDs[i], request);
        if (status != KT_OK || request.header.numReturned != 1) continue;
        ld.BlockIDs[i] = request.blkInfo[0].HDID;
        ++known;
    }
    return known == members;
}

// Composes the text of what the adapter holds: empty for a page without its signature. Anything but 0 is what the
// command returns.
static int composeText(const BackupOptions& o, CfgRaid& raid, std::string& text) {
    FlashPage flash = newFlashPage();
    if (flash == nullptr) return KT_ERR_NO_RESOURCE;
    KT_U8 status = KT_Flash_Bin(gCurrentAdapter, KT_FLASH_BACKUP, KT_IMAGE_CONFIG, flash.get());
    if (status != KT_OK) {
        out("\nFailed to read HBA configuration from flash! (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    _HBA_Info_Page page;
    memcpy(&page, flash->Data, sizeof page);
    if ((page.RAID_Feature & RAID_FEATURE_ON) != 0) {
        status = readCfgRaid(raid);
        if (status != KT_OK) return status;
        for (unsigned i = 0; i < raid.ldCount; ++i) {
            if (blocksToDisks(raid.lds[i]) || o.mode == CFG_PHY_FORM) continue;
            fprintf(stderr, "[PD MEMBER] of virtual disk %d lacks disks or names blocks in their place.\n",
                    raid.lds[i].ID);
        }
    }
    KT_Form_Grammar(gCurrentAdapter, text, &page, raid.lds, raid.ldCount, raid.spares, raid.spareCount, o.mode);
    return 0;
}

// Blanks in a name, sizes from 4 TiB on and members that are missing get lost.
static bool comesBack(const _LD_Info& saved, const _LD_Info& read) {
    return strncmp(reinterpret_cast<const char*>(saved.Name), reinterpret_cast<const char*>(read.Name),
                   sizeof saved.Name) == 0 &&
           read.Size == saved.Size >> 10 && read.HDCount == saved.HDCount;
}

// Says on standard error when the text does not come back as it is: not every level, cache policy, rate or number of
// members has a form in it.
static void checkText(const BackupOptions& o, const CfgRaid& saved, std::string text) {
    CfgRaidHolder raid = newCfgRaid();
    if (raid == nullptr) return;
    _HBA_Info_Page page = {};
    _file_sasaddr_place_info_t places = {};
    KT_U16 counts = 0;
    FILE* printed = stream;
    stream = nullptr;
    clean_comment(text.data(), text.size());
    bool readable =
        KT_Analyze_Grammar(text.data(), text.size(), &places, &page, raid->lds, raid->spares, &counts, o.mode);
    stream = printed;
    std::string shown = shownName(o.file);
    if (!readable || text.size() > MOST_FILE_BYTES) {
        fprintf(stderr, "%s holds values that restore_cfg does not take; edit it before restoring.\n", shown.c_str());
        return;
    }
    std::string changed;
    for (unsigned i = 0; i < (counts & 0xFF); ++i) {
        if (!comesBack(saved.lds[i], raid->lds[i])) changed += ' ' + std::to_string(saved.lds[i].ID);
    }
    if (changed.empty()) return;
    fprintf(stderr, "%s holds another name, size or number of disks for virtual disks%s; edit it before restoring.\n",
            shown.c_str(), changed.c_str());
}

static int writeText(const BackupOptions& o, const std::string& text) {
    std::string shown = shownName(o.file);
    switch (writeWholeFile(o.file, text, Existing::Keep)) {
    case WroteFile::Yes:
        return 0;
    case WroteFile::Exists:
        out("There is the same file '%s', please rename this file!!\n", shown.c_str());
        return 1;
    case WroteFile::NotOpened:
        out("Error: Failed open %s !\n", shown.c_str());
        return 1;
    default:
        out("Error: Failed write %s !\n", shown.c_str());
        return 1;
    }
}

int doBackUp_CFG(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    BackupOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions(argc, argv, row, backupCfgOptions, given, result, take)) return result;
    if (!givenOnce(backupCfgOptions, given)) return 1;
    if (given['f'] == 0) o.file = "hba" + std::to_string(gCurrentAdapter) + "_cfg.txt";
    CfgRaidHolder raid = newCfgRaid();
    if (raid == nullptr) return KT_ERR_NO_RESOURCE;
    std::string text;
    result = composeText(o, *raid, text);
    if (result != 0) return result;
    if (text.empty()) {
        // The file is still created, empty.
        out("\nInvalid  HBA Info page!");
        result = 1;
    }
    if (writeText(o, text) != 0) return 1;
    if (!text.empty()) checkText(o, *raid, text);
    if (result == 0) out("Backup_cfg command is returned successfully!\n");
    return result;
}
