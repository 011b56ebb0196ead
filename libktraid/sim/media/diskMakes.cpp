#include "media/diskMakes.h"

#include <algorithm>
#include <cstring>

namespace sim {

static const KT_U64 RESERVED_KIB = 65536;
static const KT_U8 NO_MODE = 0xFF;

static const KT_U32 SATA_FEATURES =
    KT_HD_NCQ | KT_HD_WRITE_CACHE | KT_HD_48BIT_LBA | KT_HD_SMART | KT_HD_SPEED_1_5 | KT_HD_SPEED_3 | KT_HD_SPEED_6;
static const KT_U32 SAS_FEATURES =
    KT_HD_NCQ | KT_HD_WRITE_CACHE | KT_HD_48BIT_LBA | KT_HD_SMART | KT_HD_SPEED_3 | KT_HD_SPEED_6 | KT_HD_SPEED_12;
static const DiskMake MAKES[] = {
    {"SATA", KT_HD_SATA, 0, 3, 7200, SATA_FEATURES, "Gannet GT%s", "GT03A1"},
    {"SAS", KT_HD_SAS, 0, 4, 10500, SAS_FEATURES, "Fulmar FX%s-SAS", "FX12"},
    {"SATA SSD", KT_HD_SATA | KT_HD_SSD, 1, 3, 1, SATA_FEATURES, "Petrel PS%s SSD", "PS41C"},
    {"SAS SSD", KT_HD_SAS | KT_HD_SSD, 1, 4, 1, SAS_FEATURES, "Petrel PX%s SAS SSD", "PX20"},
    {"PATA", KT_HD_PATA, 0, 0, 7200, KT_HD_WRITE_CACHE | KT_HD_SMART, "Gannet GP%s", "GP01"},
    {"ATAPI", KT_HD_SATA | KT_HD_ATAPI, 0, 1, 0, KT_HD_SPEED_1_5, "Auk DVD-16", "1.04"},
};

const DiskMake* diskMakeNamed(const std::string& word) {
    for (const DiskMake& make : MAKES)
        if (word == make.word) return &make;
    return nullptr;
}

std::vector<std::string> diskMakeWords() {
    std::vector<std::string> words;
    for (const DiskMake& make : MAKES)
        words.emplace_back(make.word);
    return words;
}

const DiskMake& diskMakeOfType(KT_U8 type) {
    for (const DiskMake& make : MAKES)
        if (type == make.type) return make;
    return MAKES[0];
}

KT_U64 sectorsFor(KT_U64 bytes, KT_U32 sector) {
    const KT_U64 gigabytes = bytes / 1000000000;
    const KT_U64 sectors512 = gigabytes >= 50 ? 97696368 + 1953504 * (gigabytes - 50) : bytes / 512;
    return sector == 512 ? sectors512 : sectors512 / (sector / 512);
}

KT_U64 bytesSoldAs(KT_U64 sectors, KT_U32 sector) {
    const KT_U64 sectors512 = sectors * (sector / 512);
    const KT_U64 gigabytes =
        sectors512 >= 97696368 ? 50 + (sectors512 - 97696368 + 1953503) / 1953504 : sectors512 * 512 / 1000000000;
    return gigabytes * 1000000000;
}

static void setModes(_HD_Info& disk, bool ata) {
    disk.PIOMode = disk.CurrentPIOMode = ata ? 4 : NO_MODE;
    disk.MDMAMode = disk.CurrentMDMAMode = ata ? 2 : NO_MODE;
    disk.UDMAMode = disk.CurrentUDMAMode = ata ? 6 : NO_MODE;
}

static void nameDisk(_HD_Info& disk, const DiskMake& make, KT_U64 bytes) {
    const KT_U64 gigabytes = std::min<KT_U64>(bytes / 1000000000, 999999);
    std::string name = make.model;
    const size_t at = name.find("%s");
    if (at != std::string::npos) name.replace(at, 2, std::to_string(gigabytes) + "G");
    memset(disk.Model, 0, sizeof disk.Model);
    memset(disk.FWVersion, 0, sizeof disk.FWVersion);
    memcpy(disk.Model, name.data(), std::min(name.size(), sizeof disk.Model));
    memcpy(disk.FWVersion, make.firmware, std::min(strlen(make.firmware), sizeof disk.FWVersion));
}

void manufacture(_HD_Info& disk, const DiskMake& make, KT_U64 bytes, KT_U32 sector) {
    disk.HDType = make.type;
    disk.ConnectionType = make.type & (KT_HD_SATA | KT_HD_PATA | KT_HD_SAS);
    disk.DeviceType = make.type & KT_HD_ATAPI ? 5 : 0; // the SCSI peripheral type: optical, else direct access
    disk.FeatureSupport = make.features;
    disk.BlockSize = sector;
    disk.Size = sectorsFor(bytes, sector);
    disk.HD_SSD_Type = make.ssd;
    disk.Media_Rotation_Rate = make.rotation;
    setModes(disk, (make.type & KT_HD_SAS) == 0);
    nameDisk(disk, make, bytes);
}

KT_U64 reservedKibOf(const DiskMake& make) {
    return make.type & KT_HD_ATAPI ? 0 : RESERVED_KIB;
}

} // namespace sim
