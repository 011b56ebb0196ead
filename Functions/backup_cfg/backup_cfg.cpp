#include "Functions/backup_cfg/backup_cfg.h"

#include <cstring>

#include "Public/cfg/losses.h"
#include "Public/cfg/raidConfig.h"
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

// What the adapter holds, and the text of it; empty for a page without its signature.
struct Backup {
    _HBA_Info_Page page = {};
    CfgRaidHolder raid = newCfgRaid();
    std::string text;
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

// Reads the adapter and composes the text. Anything but 0 is what the command returns.
static int composeText(const BackupOptions& o, Backup& backup) {
    CfgRaid& raid = *backup.raid;
    FlashPage flash = newFlashPage();
    if (flash == nullptr) return KT_ERR_NO_RESOURCE;
    KT_U8 status = KT_Flash_Bin(gCurrentAdapter, KT_FLASH_BACKUP, KT_IMAGE_CONFIG, flash.get());
    if (status != KT_OK) {
        out("\nFailed to read HBA configuration from flash! (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    const _HBA_Info_Page& page = backup.page;
    memcpy(&backup.page, flash->Data, sizeof page);
    if ((page.RAID_Feature & RAID_FEATURE_ON) != 0) {
        status = readCfgRaid(raid);
        if (status != KT_OK) return status;
        for (unsigned i = 0; i < raid.ldCount; ++i) {
            if (blocksToDisks(raid.lds[i]) || o.mode == CFG_PHY_FORM) continue;
            fprintf(stderr, "[PD MEMBER] of virtual disk %d lacks disks or names blocks in their place.\n",
                    raid.lds[i].ID);
        }
    }
    KT_Form_Grammar(gCurrentAdapter, backup.text, &page, raid.lds, raid.ldCount, raid.spares, raid.spareCount, o.mode);
    return 0;
}

// The lists tell the cache that is in force, not whether it follows the battery.
static bool mayHideAutomaticCaches(const BackupOptions& o, const Backup& backup) {
    const bool follows = (currentAdapter().AdvancedFeatures & KT_ADV_BBU) != 0;
    return follows && o.mode != CFG_PHY_FORM && backup.raid->ldCount != 0;
}

// Says on standard error what the text does not bring back.
static void reportLosses(const BackupOptions& o, const Backup& backup) {
    const std::string shown = shownName(o.file);
    if (backup.text.size() > MOST_FILE_BYTES) {
        fprintf(stderr, "%s is too long for restore_cfg; edit it before restoring.\n", shown.c_str());
    }
    const std::vector<std::string> losses = cfgLosses({backup.page, *backup.raid, cfgPorts(gCurrentAdapter), o.mode});
    for (const std::string& loss : losses) {
        fprintf(stderr, "%s.\n", loss.c_str());
    }
    if (mayHideAutomaticCaches(o, backup)) {
        fprintf(stderr, "[WRITE POLICY] is the cache in force now; one that was auto comes back as on or off.\n");
    }
    if (losses.empty()) return;
    fprintf(stderr, "Edit '%s' before restoring it; a report (ktreport json) keeps all of this.\n", shown.c_str());
}

// False, and said, when it is not.
static bool writeText(const BackupOptions& o, const std::string& text) {
    std::string shown = shownName(o.file);
    switch (writeWholeFile(o.file, text, Existing::Keep)) {
    case WroteFile::Yes:
        return true;
    case WroteFile::Exists:
        out("There is the same file '%s', please rename this file!!\n", shown.c_str());
        return false;
    case WroteFile::NotOpened:
        out("Error: Failed open %s !\n", shown.c_str());
        return false;
    default:
        out("Error: Failed write %s !\n", shown.c_str());
        return false;
    }
}

int doBackUp_CFG(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    BackupOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, backupCfgOptions, given, result, take)) return result;
    if (!givenOnce(backupCfgOptions, given)) return 1;
    if (given['f'] == 0) o.file = "hba" + std::to_string(gCurrentAdapter) + "_cfg.txt";
    Backup backup;
    if (backup.raid == nullptr) return KT_ERR_NO_RESOURCE;
    result = composeText(o, backup);
    if (result != 0) return result;
    if (backup.text.empty()) {
        // The file is still created, empty.
        out("\nInvalid  HBA Info page!");
        result = 1;
    }
    if (!writeText(o, backup.text)) return 1;
    if (!backup.text.empty()) reportLosses(o, backup);
    if (result == 0) out("Backup_cfg command is returned successfully!\n");
    return result;
}
