#include "Functions/ssdop/download.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

#include "Public/confirm.h"
#include "Public/diskUse.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/fileName.h"
#include "Public/hold.h"
#include "Public/imageFile.h"
#include "Public/listing.h"
#include "Public/progress.h"

// What the drive's own command can take: 65,535 blocks of 512 bytes.
static constexpr KT_U32 LARGEST_MICROCODE = 0xFFFF * 512;

// Says what the adapter sees of the drive; answers whether it sees it.
static KT_U8 reportDrive(KT_U16 pd) {
    _HD_Info_Request disk;
    _HD_RAID_Status_Request role;
    KT_U8 status = KT_OK;
    if (!readDisk(pd, disk, status)) {
        if (status == KT_OK) status = KT_ERR_FAILED;
    } else {
        status = getItem(KT_PD_GetHDRaidStatus, pd, role);
    }
    if (status != KT_OK) {
        out("PD %d does not answer (error %d: %s).\n", pd, status, ErrorMessage(status));
        return status;
    }
    const bool offline = (role.hdRaidStatus[0].Status & KT_PD_OFFLINE) != 0;
    out("PD %d is %s, its microcode is %s.\n", pd, offline ? "offline" : "online",
        FieldText(disk.hdInfo[0].FWVersion).text);
    return KT_OK;
}

// Names what else is on the disk. A failure to read it is reported but does not forbid the download, which may be what
// repairs the disk.
static void nameUses(KT_U16 pd) {
    VdsOnDisk found;
    KT_U8 status = findVdsOn(pd, found);
    for (unsigned i = 0; status == KT_OK && i < found.count; ++i) {
        _LD_Info_Request vd;
        status = getItem(KT_LD_GetInfo, found.ids[i], vd);
        if (status != KT_OK) break;
        out("PD %d is part of VD %d (%s).\n", pd, found.ids[i], FieldText(vd.ldInfo[0].Name).text);
        const KT_U8 running = KT_DiskHasOS(gCurrentAdapter, KT_DEVICE_VD, 1, &found.ids[i]);
        if (running == KT_ERR_VD_HAS_OS || running == KT_ERR_PD_HAS_OS)
            out("VD %d has running OS in it.\n", found.ids[i]);
    }
    if (status != KT_OK) {
        out("What PD %d is needed for cannot be read (error %d: %s).\n", pd, status, ErrorMessage(status));
    }
    const KT_U8 system = KT_DiskHasOS(gCurrentAdapter, KT_DEVICE_PD, 1, &pd);
    if (system == KT_ERR_PD_HAS_OS || system == KT_ERR_VD_HAS_OS) out("PD %d has running OS in it.\n", pd);
}

static bool confirm(const Download& download) {
    if (download.waived) return true;
    nameUses(download.pd);
    out("The disk may be lost when the download fails. Do you want to download '%s' to PD %d? (y or n)\n",
        shownName(download.file).c_str(), download.pd);
    return confirmYesOrNo();
}

// Sends the page: KT_OK, or what the command returns.
static int sendPage(const Download& download, _Flash_Data& page, Progress& progress) {
    out("page %d write to device.\n", page.PageNum);
    drawProgress(progress);
    const KT_U8 status = KT_Download_SSD_Microcode(gCurrentAdapter, download.pd, download.mode, &page);
    hideProgress(progress);
    if (status == KT_OK) return KT_OK;
    out("\nFailed to download page %d of file '%s' to PD %d (error %d: %s).\n", page.PageNum,
        shownName(download.file).c_str(), download.pd, status, ErrorMessage(status));
    return status;
}

static int readPage(const Download& download, int fd, KT_U32 wanted, _Flash_Data& page) {
    if (readImagePage(fd, wanted, page)) return KT_OK;
    out("Unable to read from file %s\n", shownName(download.file).c_str());
    return 1;
}

static int sendPages(const Download& download, int fd, KT_U32 length) {
    FlashPage page = newFlashPage();
    if (page == nullptr) {
        out("Unable to allocate buffer for %zu bytes.\n", sizeof(_Flash_Data));
        return KT_ERR_NO_RESOURCE;
    }
    const Hold hold("the microcode of the disk would be incomplete");
    Progress progress = startProgress((length + FLASH_PAGE_SIZE - 1) / FLASH_PAGE_SIZE);
    for (KT_U32 left = length; left > 0;) {
        const KT_U32 wanted = std::min(left, FLASH_PAGE_SIZE);
        left -= wanted;
        memset(page.get(), 0, sizeof *page);
        page->PageNum = static_cast<KT_U16>(progress.done);
        page->isLastPage = left == 0;
        int result = readPage(download, fd, wanted, *page);
        if (result == KT_OK) result = sendPage(download, *page, progress);
        if (result != KT_OK) {
            reportDrive(download.pd);
            return result;
        }
        ++progress.done;
        progress.bytes += wanted;
    }
    out("Microcode is downloaded successfully.\n");
    if (download.mode == KT_MICROCODE_LATER) out("It takes effect at the next power cycle of the disk.\n");
    return reportDrive(download.pd);
}

int downloadMicrocode(const Download& download) {
    KT_U32 length = 0;
    const int fd = openImageFile(download.file, download.quoted, length);
    const std::string shown = shownName(download.file);
    if (fd < 0) {
        out("Unable to open file '%s', or it is not a regular file.\n", shown.c_str());
        return 1;
    }
    int result = 1;
    if (length == 0) {
        out("File '%s' is empty.\n", shown.c_str());
    } else if (length > LARGEST_MICROCODE) {
        out("File '%s' is too large: microcode has at most %u bytes.\n", shown.c_str(), LARGEST_MICROCODE);
    } else {
        result = confirm(download) ? sendPages(download, fd, length) : 0;
    }
    close(fd);
    return result;
}
