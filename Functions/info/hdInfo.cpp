#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"
#include "Public/utility.h"

static void printLinkedAt(const _HD_Info* disk) {
    static constexpr KT_U8 NO_PARENT = 255;
    const _Link_Endpoint& parent = disk->Link.Parent;
    if (parent.DevType == NO_PARENT) return;
    LineText line;
    if (!addParent(line, parent)) {
        line.add("unknown device, type %d, id %d, port %d", parent.DevType, parent.DevID, parent.PhyID[0]);
    }
    printStr(REPORT_WIDTH, "Linked at:", line.text);
}

static void printSize(const _HD_Info* disk) {
    static constexpr KT_U64 UNKNOWN = UINT64_MAX;
    if (disk->Size == 0 || disk->Size == UNKNOWN) {
        printStr(REPORT_WIDTH, "Size:", "not available");
        return;
    }
    KT_U64 sector = disk->BlockSize == 0 ? 512 : disk->BlockSize;
    // Sectors in halves of 1024, so that the product fits for every real disk.
    printKiloBytes(REPORT_WIDTH, "Size:", (disk->Size >> 10) * sector + ((disk->Size & 1023) * sector >> 10));
}

static const char* switchWord(bool capable, const _HD_CONFIG* config, KT_BOOLEAN on) {
    if (!capable) return "not supported";
    if (config == nullptr) return "supported";
    return on ? "supported (on)" : "supported (off)";
}

static void printFeatureLines(const _HD_Info* disk, const _HD_CONFIG* config) {
    KT_U32 features = disk->FeatureSupport;
    bool cacheOn = config != nullptr && config->WriteCacheOn != 0;
    bool smartOn = config != nullptr && config->SMARTOn != 0;
    printStr(REPORT_WIDTH, "Write cache:", switchWord(features & KT_HD_WRITE_CACHE, config, cacheOn));
    printStr(REPORT_WIDTH, "SMART:", switchWord(features & KT_HD_SMART, config, smartOn));
    printStr(REPORT_WIDTH, "NCQ:", features & KT_HD_NCQ ? "supported (on)" : "not supported");
    printStr(REPORT_WIDTH, "48 bits LBA:", features & KT_HD_48BIT_LBA ? "supported" : "not supported");
}

static void printTransferModes(const _HD_Info* disk) {
    static constexpr KT_U8 NOT_VALID = 255;
    auto print = [](const char* label, KT_U8 mode) {
        if (mode != NOT_VALID) printNum(REPORT_WIDTH, label, mode);
    };
    print("Supported PIO:", disk->PIOMode);
    print("Supported MDMA:", disk->MDMAMode);
    print("Supported UDMA:", disk->UDMAMode);
    print("Current PIO:", disk->CurrentPIOMode);
    print("Current MDMA:", disk->CurrentMDMAMode);
    print("Current UDMA:", disk->CurrentUDMAMode);
}

static void printSpeeds(const _HD_Info* disk, const _HD_CONFIG* config) {
    static const struct {
        KT_U32 bit;
        const char* word;
    } speeds[] = {{KT_HD_SPEED_1_5, "1.5 Gb/s"},
                  {KT_HD_SPEED_3, "3 Gb/s"},
                  {KT_HD_SPEED_6, "6 Gb/s"},
                  {KT_HD_SPEED_12, "12 Gb/s"}};
    LineText line;
    for (const auto& speed : speeds) {
        if (disk->FeatureSupport & speed.bit) line.add("%s%s", line.length == 0 ? "" : ", ", speed.word);
    }
    if (line.length == 0) line.add("unknown");
    printStr(REPORT_WIDTH, "supported speed:", line.text);
    bool known = config != nullptr && config->DriveSpeed >= 1 && config->DriveSpeed <= 4;
    printStr(REPORT_WIDTH, "Current speed:", known ? speeds[config->DriveSpeed - 1].word : "unknown");
}

static void printLocateLed(KT_U8 status) {
    const char* word = status == 0 ? "off" : "on";
    printStr(REPORT_WIDTH, "Locate LED status:", status == 0xFF ? "Not Support" : word);
}

void HD_PrintInfo(const _HD_Info* disk, const _HD_CONFIG* config, KT_U8 osStatus) {
    static constexpr unsigned char WITH_KIND = 1;
    char type[32];
    getHdTypeString(type, disk, WITH_KIND);
    printNum(REPORT_WIDTH, "Adapter:", disk->AdapterID);
    printNum(REPORT_WIDTH, "PD ID:", disk->Link.Self.DevID);
    printStr(REPORT_WIDTH, "Type:", type);
    printLinkedAt(disk);
    if (currentAdapter().MaxExpander != 0 || (disk->HDType & KT_HD_SAS) != 0) {
        printStr(REPORT_WIDTH, "SAS address:", SasAddressText(disk->Link.Self.SAS_Address).text);
    }
    printSize(disk);
    printFeatureLines(disk, config);
    printTransferModes(disk);
    printSpeeds(disk, config);
    printField(REPORT_WIDTH, "model:", disk->Model);
    printField(REPORT_WIDTH, "Serial:", disk->SerialNo);
    printField(REPORT_WIDTH, "Firmware version:", disk->FWVersion);
    printLocateLed(disk->LocateLEDStatus);
    printStr(REPORT_WIDTH, "Running OS:", runningOsWord(KT_DEVICE_PD, osStatus));
    if (disk->HD_SSD_Type != 0) printNum(REPORT_WIDTH, "SSD Type:", disk->HD_SSD_Type);
}

static const char* patrolLabel(KT_U8 activity) {
    switch (activity) {
    case KT_PD_BGA_MEDIA_PATROL:
        return "Media patrol: ";
    case KT_PD_BGA_DATA_SCRUB:
        return "Data scrub: ";
    default:
        return nullptr;
    }
}

void HD_PrintBGAStatus(const _HD_BGA_STATUS* status) {
    const char* label = patrolLabel(status->Bga);
    if (status->BgaState == KT_STATE_NONE || label == nullptr) return;
    int percentage = status->Percentage;
    LineText line;
    switch (status->BgaState) {
    case KT_STATE_RUNNING:
        if (percentage <= 100) {
            line.add("running, %d%% done", percentage);
        } else if (percentage < 255) {
            line.add("Invalid Percentage  %d%% ", percentage);
        } else {
            line.add(" Percentage is %d%% ,Invalid,suggest updating PD LD or RCT", percentage);
        }
        break;
    case KT_STATE_ABORTED:
        line.add("aborted");
        break;
    case KT_STATE_PAUSED:
        line.add("paused at %d%%", percentage);
        break;
    case KT_STATE_AUTO_PAUSED:
        line.add("auto-paused");
        break;
    default:
        line.add("unknown BGA status %d", status->BgaState);
        break;
    }
    printStr(REPORT_WIDTH, label, line.text);
}

void HD_PrintFreeInfo(const _HD_FreeSpaceInfo* space) {
    out("%-*s %llu K\n", REPORT_WIDTH, "PD valid size:", static_cast<unsigned long long>(space->ValidSize));
}

void HD_Blk_PrintInfo(const _HD_Block_Info* blocks) {
    constexpr int room = sizeof blocks->BlkIDs / sizeof blocks->BlkIDs[0];
    LineText line;
    for (int i = 0; i < blocks->BlkCount && i < room; ++i) {
        line.add("%d ", blocks->BlkIDs[i]);
    }
    printStr(REPORT_WIDTH, "Block ids:", line.text);
}

static void reportDisk(const _HD_Info& disk) {
    KT_U16 id = disk.Link.Self.DevID;
    _HD_Config_Request config;
    bool known = askItem(KT_PD_GetConfig, id, config) == KT_OK && config.header.numReturned == 1;
    KT_U8 osStatus = KT_DiskHasOS(gCurrentAdapter, KT_DEVICE_PD, 1, &id);
    HD_PrintInfo(&disk, known ? &config.hdConfig[0] : nullptr, osStatus);
}

// What the disk is busy with, how much of it is usable and which blocks lie on it.
static KT_U8 reportUse(KT_U16 id) {
    _HD_BGA_Status_Request activity;
    KT_U8 status = askItem(KT_PD_GetBGAStatus, id, activity);
    if (status != KT_OK) return status;
    HD_PrintBGAStatus(&activity.hdBgaStatus[0]);
    _HD_FreeSpaceInfo space = {};
    status = KT_PD_GetFreeSpaceInfo(gCurrentAdapter, id, &space);
    if (status != KT_OK) return status;
    HD_PrintFreeInfo(&space);
    _HD_Block_Info blocks = {};
    status = KT_BLK_GetHDBlock(gCurrentAdapter, id, &blocks);
    if (status != KT_OK) return status;
    HD_Blk_PrintInfo(&blocks);
    return KT_OK;
}

KT_U8 getHDInfo(KT_U16 id) {
    static const ListingWords words = {"No hard disk is found.\n",
                                       "\nPhysical Disk Information\n----------------------------\n", "Total # of PD:"};
    bool all = id == ALL_DISKS;
    ListingFrame frame = {words};
    KT_U8 status = KT_OK;
    KT_U16 perPage = recordsPerPage(sizeof(_HD_Info));
    ListEnd end = walkList<_HD_Info, Cut::Shows>(KT_PD_GetHDInfo, all ? EVERYTHING : oneItem(id), perPage,
                                                 [&](const _HD_Info& disk) {
                                                     frame.begin();
                                                     reportDisk(disk);
                                                     status = reportUse(disk.Link.Self.DevID);
                                                     if (status == KT_OK) out("\n");
                                                     return status == KT_OK;
                                                 });
    frame.end(end, all);
    if (!end.stopped) status = end.status;
    if (!end.stopped && !refused(end)) return status;
    if (all) {
        out("\nUnable to get info of PD (error %d: %s)\n", status, ErrorMessage(status));
    } else {
        out("\nUnable to get info of PD %d (error %d: %s)\n", id, status, ErrorMessage(status));
    }
    return status;
}
