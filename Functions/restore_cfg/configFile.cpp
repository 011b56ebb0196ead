#include "Functions/restore_cfg/configFile.h"

#include <cstring>
#include <strings.h>

#include "Public/common.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/flashPage.h"

Take takeRestoreOption(int option, const char* value, const char* wrongType, RestoreOptions& o) {
    switch (option) {
    case 'f':
        o.file = unquotedName(value);
        return Take::Yes;
    case 'r':
        o.raid = true;
        return Take::Yes;
    case 't':
        o.mode = CFG_PHY_FORM;
        if (strcasecmp(value, "phy") == 0) return Take::Yes;
        out("%s '%s'\n", wrongType, value);
        return Take::Failed;
    default:
        return Take::Help;
    }
}

void useFile(CfgFile& file, const std::string& path) {
    file.path = path;
    file.shown = shownName(path);
}

ReadFile readFile(CfgFile& file) {
    ReadFile result = readWholeFile(file.path, file.text);
    if (result == ReadFile::TooBig) {
        out("Size of the file %s is too big (%d).\n", file.shown.c_str(), static_cast<int>(FILE_TOO_BIG));
    }
    file.clean = file.text;
    clean_comment(file.clean.data(), file.clean.size());
    return result;
}

KT_U8 readPage(_HBA_Info_Page& page) {
    FlashPage flash = newFlashPage();
    if (flash == nullptr) return KT_ERR_NO_RESOURCE;
    KT_U8 status = KT_Flash_Bin(gCurrentAdapter, KT_FLASH_BACKUP, KT_IMAGE_CONFIG, flash.get());
    if (status != KT_OK) {
        out("\nExecutes read hba config fail (error %d: %s).\n", status, ErrorMessage(status));
        return status;
    }
    memcpy(&page, flash->Data, sizeof page);
    return KT_OK;
}

bool readConfiguration(CfgFile& file, KT_U8 mode, _file_sasaddr_place_info_t& places, _HBA_Info_Page& page,
                       CfgRaid& raid) {
    ReadFile result = readFile(file);
    if (result == ReadFile::NotOpened) out("Error: Failed open %s !\n", file.shown.c_str());
    if (result != ReadFile::Yes) return false;
    KT_U16 counts = 0;
    if (!KT_Analyze_Grammar(file.clean.data(), file.clean.size(), &places, &page, raid.lds, raid.spares, &counts,
                            mode)) {
        out("Analysis config file error!\n");
        return false;
    }
    raid.ldCount = static_cast<KT_U8>(counts);
    raid.spareCount = static_cast<KT_U8>(counts >> 8);
    return true;
}
