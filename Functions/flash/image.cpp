#include "Functions/flash/image.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

#include "Public/common.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/flashPage.h"
#include "Public/hold.h"
#include "Public/imageFile.h"
#include "Public/newFile.h"
#include "Public/progress.h"

static int reportUpdate(const Image& image, KT_U8 status) {
    out("\nFailed to update file '%s', error %d: %s\n", shownName(image.file).c_str(), status, ErrorMessage(status));
    return status;
}

// True when an image of this type may be written; otherwise `result` is what the command returns.
static bool mayUpdate(const Image& image, int& result) {
    if (image.type != KT_IMAGE_RAW || (gAdapterInfo[image.adapter].AdvancedFeatures & KT_ADV_RAW_UPDATE) == 0) {
        return true;
    }
    _Adapter_Config_V2 config = {};
    KT_U8 status = KT_Adapter_GetConfig(image.adapter, &config);
    if (status != KT_OK) {
        result = reportUpdate(image, status);
        return false;
    }
    if (config.rawimg_update_disabled != 1) return true;
    out("\nFail to update file '%s' since raw image format is not supported.\n", shownName(image.file).c_str());
    result = 0; // the adapter is as it was asked to be
    return false;
}

static void announce(const Image& image, KT_U32 length) {
    const _KT_FLASH_PER_DATA announcement = {image.type, {}, length};
    // An adapter that needs no announcement may refuse it.
    KT_Flash_PreData(image.adapter, &announcement);
}

static int readFilePage(const Image& image, int fd, KT_U32 wanted, _Flash_Data& page) {
    if (readImagePage(fd, wanted, page)) return KT_OK;
    out("Unable to read from file %s\n", shownName(image.file).c_str());
    return 1;
}

// Sends the page: KT_OK, or what the command returns.
static int writePage(const Image& image, _Flash_Data& page, Progress& progress) {
    out("page %d write to device.\n", page.PageNum);
    drawProgress(progress);
    KT_U8 status = KT_Flash_Bin(image.adapter, KT_FLASH_UPDATE, image.type, &page);
    hideProgress(progress);
    return status == KT_OK ? KT_OK : reportUpdate(image, status);
}

static int writePages(const Image& image, int fd, KT_U32 length) {
    FlashPage page = newFlashPage();
    if (page == nullptr) return reportUpdate(image, KT_ERR_NO_RESOURCE);
    Progress progress = startProgress(length / FLASH_PAGE_SIZE + (length % FLASH_PAGE_SIZE != 0 ? 1 : 0));
    KT_U32 left = length;
    do {
        const KT_U32 wanted = std::min(left, FLASH_PAGE_SIZE);
        left -= wanted;
        memset(page.get(), 0, sizeof *page);
        page->PageNum = static_cast<KT_U16>(progress.done);
        page->isLastPage = left == 0;
        int result = readFilePage(image, fd, wanted, *page);
        if (result == KT_OK) result = writePage(image, *page, progress);
        if (result != KT_OK) return result;
        ++progress.done;
        progress.bytes += wanted;
    } while (left > 0);
    out("Flash command is returned successfully.\n");
    return 0;
}

int updateImage(const Image& image) {
    KT_U32 length = 0;
    const int fd = openImageFile(image.file, image.quoted, length);
    if (fd < 0) {
        out("Unable to open file '%s'.\n", shownName(image.file).c_str());
        return 1;
    }
    int result = 0;
    if (mayUpdate(image, result)) {
        const Hold hold("the flash would keep an incomplete image, with which the adapter may not start again");
        announce(image, length);
        result = writePages(image, fd, length);
    }
    close(fd);
    return result;
}

static int reportBackup(KT_U8 status) {
    out("\nFailed to flash (error %d: %s).\n", status, ErrorMessage(status));
    return status;
}

static int reportCreate(const Image& image) {
    out("Unable to create file '%s'.\n", shownName(image.file).c_str());
    return 1;
}

// Fetches one page. False when there is none, or none that can belong to an image: one that claims more bytes than it
// holds, or one of more pages than can be numbered.
static bool readPage(const Image& image, _Flash_Data& page, Progress& progress, int& result) {
    memset(&page, 0, sizeof page);
    page.PageNum = static_cast<KT_U16>(progress.done);
    drawProgress(progress);
    KT_U8 status = KT_Flash_Bin(image.adapter, KT_FLASH_BACKUP, image.type, &page);
    hideProgress(progress);
    if (status == KT_OK && (page.Size > FLASH_PAGE_SIZE || progress.done > UINT16_MAX)) status = KT_ERR_FLASH_DATA;
    if (status != KT_OK) result = reportBackup(status);
    return status == KT_OK;
}

// Reads page after page into the file. True when all of it was written; otherwise `result` is what the command returns.
static bool readPages(const Image& image, const NewFile& file, int& result) {
    FlashPage page = newFlashPage();
    if (page == nullptr) {
        result = reportBackup(KT_ERR_NO_RESOURCE);
        return false;
    }
    Progress progress = startProgress(0);
    do {
        if (!readPage(image, *page, progress, result)) return false;
        out("page %d write to file.\n", static_cast<int>(progress.done));
        if (!writeNewFile(file, page->Data, page->Size)) {
            result = reportCreate(image);
            return false;
        }
        ++progress.done;
        progress.bytes += page->Size;
    } while (!page->isLastPage);
    return true;
}

int backUpImage(const Image& image) {
    std::string path;
    NewFile file = {};
    const Created created =
        expandName(image.file, image.quoted, path) ? createNewFile(path.c_str(), file) : Created::Failed;
    if (created == Created::Exists) {
        out("File '%s' has already existed.\n", shownName(image.file).c_str());
        return 1;
    }
    if (created == Created::Failed) return reportCreate(image);
    int result = 0;
    if (!readPages(image, file, result)) {
        dropNewFile(file);
        return result;
    }
    if (!keepNewFile(file)) return reportCreate(image);
    out("Flash command is returned successfully.\n");
    return 0;
}
