#include "Functions/backup_cfg/backup_cfg.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "Public/cfgAdapter.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/flashPage.h"
#include "Public/listing.h"
#include "Public/wholeFile.h"

const char backup_cfg_sh[] = ":Backup current HBA,RAID configuration and autoload data.";
const char backup_cfg_help[] = "\n\nbackup_cfg [-f <filename>][-t ][-h]\n\n"
                               "Options:\n"
                               "    -i, --id <adapter id>\n"
                               "        The adapter is always the current one.\n"
                               "    -f, --filename <filename>\n"
                               "        File to create; double quotes around it may hold blanks. An existing file is\n"
                               "        never overwritten. Default: hbaN_cfg.txt, N being the ID of the adapter.\n"
                               "    -t, --type phy\n"
                               "        Back up the PHY tuning of the ports only.\n"
                               "    -h, --help\n\n"
                               "Examples:\n"
                               "    backup_cfg -f \"my adapter.txt\"\n\n"
                               "    Save settings, ports, virtual disks and spares to a file.\n\n"
                               "    backup_cfg -t phy\n\n"
                               "    Save the PHY tuning of the ports.\n\n";

static const option backup_cfg_long[] = {{"filename", required_argument, nullptr, 'f'},
                                         {"type", required_argument, nullptr, 't'},
                                         OUTPUT_OPTION,
                                         HELP_OPTION,
                                         END_OF_OPTIONS};
const OptionSet backupCfgOptions = {.letters = "f:\1:t:h", .longOptions = backup_cfg_long, .once = "ft"};

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

// Turns the block ids of a virtual disk into the ids of the disks that hold them. What follows the first member that
// is missing is no disk's id and is taken out.
static void blocksToDisks(_LD_Info& ld) {
    unsigned i = 0;
    for (; i < cfgMembers(ld) && !isNoMember(ld.BlockIDs[i]); ++i) {
        _BLK_Info_Request request;
        KT_U8 status = getItem(KT_BLK_GetInfo, ld.BlockIDs[i], request);
        if (status == KT_OK && request.header.numReturned == 1) ld.BlockIDs[i] = request.blkInfo[0].HDID;
    }
    std::fill(ld.BlockIDs + i, std::end(ld.BlockIDs), KT_U16{KT_NO_ID});
}

// Composes the text: empty for a page without its signature. Anything but 0 is what the command returns.
static int composeText(const BackupOptions& o, std::string& text) {
    FlashPage flash = newFlashPage();
    CfgRaidHolder raid = newCfgRaid();
    if (flash == nullptr || raid == nullptr) return KT_ERR_NO_RESOURCE;
    KT_U8 status = KT_Flash_Bin(gCurrentAdapter, KT_FLASH_BACKUP, KT_IMAGE_CONFIG, flash.get());
    if (status != KT_OK) {
        out("\nFailed to read HBA configuration from flash! (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    _HBA_Info_Page page;
    memcpy(&page, flash->Data, sizeof page);
    if ((page.RAID_Feature & RAID_FEATURE_ON) != 0) {
        status = readCfgRaid(*raid);
        if (status != KT_OK) return status;
        std::for_each(raid->lds, raid->lds + raid->ldCount, blocksToDisks);
    }
    KT_Form_Grammar(gCurrentAdapter, text, &page, raid->lds, raid->ldCount, raid->spares, raid->spareCount, o.mode);
    return 0;
}

// Says on standard error when the text does not come back: not every level, cache policy, rate or number of members
// has a form in it.
static void checkText(const BackupOptions& o, std::string text) {
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
    if (readable && text.size() <= MOST_FILE_BYTES) return;
    fprintf(stderr, "%s holds values that restore_cfg does not take; edit it before restoring.\n",
            shownName(o.file).c_str());
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
    std::string text;
    result = composeText(o, text);
    if (result != 0) return result;
    if (text.empty()) {
        // The file is still created, empty.
        out("\nInvalid  HBA Info page!");
        result = 1;
    }
    if (writeText(o, text) != 0) return 1;
    if (!text.empty()) checkText(o, text);
    if (result == 0) out("Backup_cfg command is returned successfully!\n");
    return result;
}
