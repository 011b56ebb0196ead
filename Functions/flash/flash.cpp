#include "Functions/flash/flash.h"

#include <string>
#include <strings.h>

#include "Functions/flash/image.h"
#include "Public/confirm.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/flashPage.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

// The word that shows a version; it transfers nothing, so the library has no code for it.
static constexpr KT_U8 ACTION_VERSION = 0;

namespace {
struct FlashWord {
    const char* word;
    KT_U8 code;
};
const FlashWord actions[] = {
    {"update", KT_FLASH_UPDATE}, {"backup", KT_FLASH_BACKUP}, {"erase", KT_FLASH_ERASE}, {"version", ACTION_VERSION}};
// "config", the settings page, is for maintenance and stands in no help.
const FlashWord types[] = {{"config", KT_IMAGE_CONFIG},     {"bin", KT_IMAGE_BIN},           {"bios", KT_IMAGE_BIOS},
                           {"firmware", KT_IMAGE_FIRMWARE}, {"autoload", KT_IMAGE_AUTOLOAD}, {"raw", KT_IMAGE_RAW}};
const FlashWord pages[] = {{"pd", KT_PAGE_PD}, {"pdforce", KT_PAGE_PD_FORCE}};

struct FlashOptions {
    KT_U8 action = 0;
    KT_U8 adapter = 0;
    KT_U8 type = KT_IMAGE_BIOS;
    const char* typeWord = "";
    KT_U8 page = KT_PAGE_PD;
    std::string file;
    bool quoted = false; // the file's name was
};
} // namespace

template <size_t N>
static bool findWord(const FlashWord (&words)[N], const char* word, KT_U8& code) {
    for (const FlashWord& row : words) {
        if (strcasecmp(row.word, word) != 0) continue;
        code = row.code;
        return true;
    }
    return false;
}

static Take takeOption(int option, const char* value, FlashOptions& o) {
    switch (option) {
    case 'a':
        if (findWord(actions, value, o.action)) return Take::Yes;
        out("-a : invalid action '%s'.\n", value);
        return Take::Failed;
    case 'f':
        o.file = unquotedName(value);
        o.quoted = *value == '"';
        return Take::Yes;
    case 'i':
        if (parseDecimal(value, o.adapter)) return Take::Yes;
        out("-i : invalid adapter id '%s'.\n", value);
        return Take::Failed;
    case 't':
        o.typeWord = value;
        if (findWord(types, value, o.type)) return Take::Yes;
        out("-t : invalid type '%s'.\n", value);
        return Take::Failed;
    case 'p':
        if (findWord(pages, value, o.page)) return Take::Yes;
        out("-p : invalid flash page '%s'.\n", value);
        return Take::Failed;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const FlashOptions& o, const OptionCounts& given, const char* command) {
    if (!givenOnce(flashOptions, given) || !givenRequired(flashOptions, given, command)) return false;
    if (given['t'] == 0 && given['p'] == 0) {
        out(OptionRequired, command, 't');
        return false;
    }
    if (o.action != KT_FLASH_ERASE && given['f'] == 0) {
        out(OptionRequired, command, 'f');
        return false;
    }
    return true;
}

static KT_U8 erasePage(const FlashOptions& o) {
    KT_U8 status = KT_Flash_Erase(o.adapter, o.page);
    if (status == KT_OK) {
        out("Erase PD Page command is returned successfully.\n");
    } else {
        out("\nFailed to erase flash PD page (error %d: %s).\n", status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 eraseImage(const FlashOptions& o) {
    if (o.type == KT_IMAGE_BIOS) {
        out("Warning: Autoload will be erased too! Do you want to erase ROM file in Flash?  (y or n)\n");
    } else {
        out("Do you want to erase ROM file in Flash?  (y or n)\n");
    }
    if (!confirmYesOrNo()) return KT_OK;
    FlashPage page = newFlashPage();
    KT_U8 status = KT_ERR_NO_RESOURCE;
    if (page != nullptr) {
        page->Size = FLASH_PAGE_SIZE;
        status = KT_Flash_Bin(o.adapter, KT_FLASH_ERASE, o.type, page.get());
    }
    if (status == KT_OK) {
        out("Erase bios command is returned successfully.\n");
    } else {
        out("\nFailed to erase %s (error %d: %s).\n", o.typeWord, status, ErrorMessage(status));
    }
    return status;
}

static KT_U8 showVersion(const FlashOptions& o, bool typeGiven) {
    KT_U8 type = 0xFF;
    KT_U32 major = 0;
    KT_U16 minor = 0;
    KT_U16 revision = 0;
    KT_U16 build = 0;
    KT_U16 subVendor = 0xFFFF;
    KT_U8 status = KT_Flash_GetHeaderInfo(o.file.c_str(), &type, &major, &minor, &revision, &build, &subVendor);
    if (status != KT_OK) {
        out("\nFailed to check version of file '%s', error %d: %s\n", shownName(o.file).c_str(), status,
            ErrorMessage(status));
        return status;
    }
    if (typeGiven && type != o.type) {
        out("\nImage type sepecified by '-t' is not the same as type get from file. type from '-t': %d, type from "
            "file: %d\n",
            o.type, type);
        return KT_OK;
    }
    char hex[8];
    snprintf(hex, sizeof hex, "%x", subVendor);
    printNum(18, "major version:", major);
    printNum(18, "minor version:", minor);
    printNum(18, "revision number:", revision);
    printNum(18, "build number:", build);
    printStr(18, "Sub Verndor ID:", hex);
    return KT_OK;
}

int doFlash(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    FlashOptions o;
    o.adapter = gCurrentAdapter;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, flashOptions, given, result, take)) return result;
    if (!checkOptions(o, given, argv[0])) return 1;
    const bool changes = o.action == KT_FLASH_UPDATE || o.action == KT_FLASH_ERASE;
    if (changes && !isKnownAdapter(o.adapter, result)) return result;
    switch (o.action) {
    case KT_FLASH_UPDATE:
        return updateImage({o.adapter, o.type, o.file, o.quoted});
    case KT_FLASH_BACKUP:
        return backUpImage({o.adapter, o.type, o.file, o.quoted});
    case KT_FLASH_ERASE:
        return given['p'] != 0 ? erasePage(o) : eraseImage(o);
    default:
        return showVersion(o, given['t'] != 0);
    }
}
