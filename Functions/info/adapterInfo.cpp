#include <cstring>

#include "Functions/info/info.h"
#include "Public/errorMsg.h"

static constexpr int ADAPTER_WIDTH = 36;

// Controllers from this id on carry a BIOS, a boot loader and firmware of their own.
static constexpr KT_U16 NEWER_CONTROLLERS = 0x4700;
static constexpr KT_U16 FIRST_WITH_FIRMWARE = 0x4761;
static constexpr KT_U16 WITHOUT_FIRMWARE = 0x4790;

namespace {
// A word that stands for a bit; `whenSet` tells in which state of the bit it is shown.
struct BitWord {
    KT_U8 bit;
    bool whenSet;
    const char* word;
};

const BitWord portTypes[] = {{0, true, "SATA "}, {1, true, "PATA "}, {2, true, "SAS "}};

const BitWord raidModes[] = {
    {0, true, "RAID0 "},
    {1, true, "RAID1 "},
    {4, true, "RAID5 "},
    {5, true, "RAID6 "},
    {2, true, "RAID10 "},
    {3, true, "RAID1E "},
    {6, true, "RAID50 "},
    {8, true, "RAID60 "},
    {7, true, "JBOD "},
    {9, true, "hc(tandem capacity) "},
    {10, true, "hs(tandem safe) "},
    {11, true, "hybrid(tandem hybrid) "},
};

const BitWord features[] = {
    {0, true, "rebuild,"},      {1, true, "background init,"},
    {2, true, "synchronize,"},  {3, true, "migration,"},
    {4, true, "media patrol,"}, {5, true, "foreground init,"},
    {6, true, "copy back,"},    {7, true, "only same type hd for create,"},
};

// Bit 11 stands for two words, and so does bit 31.
const BitWord advancedFeatures[] = {
    {0, true, "event sense code,"},
    {1, true, "big stripe,"},
    {2, true, "flash bios,"},
    {3, true, "bbu,"},
    {4, true, "config in flash,"},
    {5, true, "cpu efficiency,"},
    {6, true, "multi VD,"},
    {7, true, "spc 4,"},
    {8, true, "ses2,"},
    {9, true, "module consolidate,"},
    {10, true, "image health,"},
    {11, true, "phy control by port,"},
    {12, true, "crypto,"},
    {11, true, "sata phy ctrl,"},
    {13, true, "time setting by application,"},
    {14, false, "vd write cache,"},
    {15, false, "vd read cache,"},
    {16, false, "smart,"},
    {17, false, "rounding,"},
    {18, false, "hd set free,"},
    {19, false, "hd write cache,"},
    {22, true, "aes partition,"},
    {23, true, "tandemix intelligent init,"},
    {24, false, "set spare,"},
    {25, true, "hybrid switch,"},
    {26, true, "hot plug,"},
    {27, true, "ata pass through,"},
    {28, true, "remap,"},
    {29, true, "access register,"},
    {30, true, "oem data,"},
    {31, true, "flash predata,"},
    {31, true, "raw update,"},
};
} // namespace

const char* AdapterPCIeSpeed(KT_U8 speed) {
    static const char* const words[] = {"Unknown", "2.5Gb/s", "5Gb/s", "8Gb/s"};
    return words[speed <= 3 ? speed : 0];
}

template <size_t N>
static void addWords(LineText& line, KT_U32 bits, const BitWord (&words)[N]) {
    for (const BitWord& row : words) {
        bool isSet = (bits >> row.bit & 1) != 0;
        if (isSet == row.whenSet) line.add("%s", row.word);
    }
}

static void dropFinalComma(LineText& line) {
    if (line.length > 0 && line.text[line.length - 1] == ',') line.text[--line.length] = '\0';
}

static const char* supported(bool yes) {
    return yes ? "Supported" : "Not supported";
}

static void printSupport(const char* label, bool yes) {
    printStr(ADAPTER_WIDTH, label, supported(yes));
}

static void printVersion(const char* label, const _Version_Info_CIM& version) {
    LineText line;
    line.add("%d.%d.%d.%04d", version.MajorVersion, version.MinorVersion, version.RevisionNumber, version.BuildNumber);
    printStr(ADAPTER_WIDTH, label, line.text);
}

static void printVersionOr(const char* label, const _Version_Info_CIM& version, const char* labelOfNone) {
    if (version.MajorVersion != 0) {
        printVersion(label, version);
    } else {
        printStr(ADAPTER_WIDTH, labelOfNone, "none");
    }
}

static void printHex(const char* label, unsigned value) {
    LineText line;
    line.add("%x", value);
    printStr(ADAPTER_WIDTH, label, line.text);
}

static void printIdentity(const _Adapter_Info& info, KT_U8 adapter) {
    printNum(ADAPTER_WIDTH, "Adapter ID:", adapter);
    LineText product;
    product.add("%x-%x", info.VenID, info.DevID);
    printStr(ADAPTER_WIDTH, "Product:", product.text);
    printHex("Sub vendor ID:", info.SubVenID);
    printHex("Sub device ID:", info.SubDevID);
    LineText revision;
    revision.add("%x", info.RevisionID);
    if (revision.text[0] >= 'a' && revision.text[0] <= 'f') {
        revision.text[0] = static_cast<char>(revision.text[0] - 'a' + 'A');
    }
    printStr(ADAPTER_WIDTH, "Chip revision:", revision.text);
    printNum(ADAPTER_WIDTH, "slot number:", static_cast<long>(info.SlotNumber));
}

static void printLink(const _Adapter_Info& info) {
    if (info.MaxSpeed == 0) {
        printStr(ADAPTER_WIDTH, "PCIe status:", "N/A");
        return;
    }
    printStr(ADAPTER_WIDTH, "Max PCIe speed:", AdapterPCIeSpeed(info.MaxSpeed));
    printStr(ADAPTER_WIDTH, "Current PCIe speed:", AdapterPCIeSpeed(info.CurrentSpeed));
    LineText most;
    most.add("%dX", info.MaxLinkWidth);
    printStr(ADAPTER_WIDTH, "Max PCIe link:", most.text);
    LineText current;
    current.add("%dX", info.CurrentLinkWidth);
    printStr(ADAPTER_WIDTH, "Current PCIe link:", current.text);
}

static void printVersions(const _Adapter_Info& info) {
    LineText driver;
    const _Version_Info& version = info.DriverVersion;
    driver.add("%d.%d.%d.%04d", static_cast<int>(version.VerMajor), static_cast<int>(version.VerMinor),
               static_cast<int>(version.VerOEM), static_cast<int>(version.VerBuild));
    printStr(ADAPTER_WIDTH, "Driver version:", driver.text);
    if (info.DevID > NEWER_CONTROLLERS && info.BIOSVersion.MajorVersion != 0) {
        printVersion("BIOS version:", info.BIOSVersion);
    }
    if (info.DevID >= FIRST_WITH_FIRMWARE && info.DevID != WITHOUT_FIRMWARE) {
        printVersionOr("Firmware version:", info.FirmwareVersion, "Firmware:");
        printVersionOr("Boot loader version:", info.BootLoaderVersion, "Boot loader:");
    }
    printNum(ADAPTER_WIDTH, "# of ports:", info.PortCount);
}

static void printPorts(const _Adapter_Info& info) {
    if (info.AdvancedFeatures & KT_ADV_CRYPTO) printNum(ADAPTER_WIDTH, "# of AES ports:", info.MaxAESPort);
    static const KT_U8 noAddress[8] = {};
    if (memcmp(info.PortSasAddress[0], noAddress, sizeof noAddress) == 0) return;
    constexpr int ports = sizeof info.PortSasAddress / sizeof info.PortSasAddress[0];
    for (int i = 0; i < info.PortCount && i < ports; ++i) {
        out("    Port %d SAS address : %s\n", i, SasAddressText(info.PortSasAddress[i]).text);
    }
}

static void printNames(const _Adapter_Info& info) {
    if (info.SerialNo[0] != 0) printField(ADAPTER_WIDTH, "Serial number:", info.SerialNo);
    if (info.ModelNumber[0] != 0) printField(ADAPTER_WIDTH, "Model:", info.ModelNumber);
}

static void printModes(const _Adapter_Info& info) {
    printSupport("Buzzer:", info.AlarmSupport == 1);
    LineText types;
    addWords(types, info.PortSupportType, portTypes);
    printStr(ADAPTER_WIDTH, "Supported port type:", types.text);
    LineText modes;
    addWords(modes, info.LogicalDriverMode, raidModes);
    printStr(ADAPTER_WIDTH, "Supported RAID mode:", modes.text);
    if (info.MaxSSDPerTandemix != 0) {
        printNum(ADAPTER_WIDTH, "Maximum SSD in one Tandemix:", info.MaxSSDPerTandemix);
    }
    if (info.AdvancedFeatures & KT_ADV_REMAP) printNum(ADAPTER_WIDTH, "Maximum SSD Segment:", info.MaxSSDSegment);
    printNum(ADAPTER_WIDTH, "Maximum disk in one VD:", info.MaxPDPerVD);
    if (info.LogicalDriverMode & KT_MODE_RAID6) {
        printNum(ADAPTER_WIDTH, "Maximum parity disk for RAID6:", info.MaxParityDisks);
    }
}

static void printActivities(const _Adapter_Info& info) {
    printSupport("PM:", info.MaxPM != 0);
    printSupport("Expander:", info.MaxExpander != 0);
    printSupport("Rebuild:", info.Features & KT_FEATURE_REBUILD);
    printSupport("Background init:", info.Features & KT_FEATURE_BACKGROUND_INIT);
    printSupport("Sync:", info.Features & KT_FEATURE_SYNC);
    printSupport("Migrate:", info.Features & KT_FEATURE_MIGRATION);
    printSupport("Media patrol:", info.Features & KT_FEATURE_MEDIA_PATROL);
    printSupport("Foreground init:", info.Features & KT_FEATURE_FOREGROUND_INIT);
    printSupport("Copy back:", info.Features & KT_FEATURE_COPY_BACK);
}

static void printLimits(const _Adapter_Info& info) {
    printNum(ADAPTER_WIDTH, "Maximum supported disk:", info.MaxHD_Ext);
    printNum(ADAPTER_WIDTH, "Maximum supported VD:", info.MaxLogicalDrive);
    if (info.MaxDiskGroup != 0) {
        printNum(ADAPTER_WIDTH, "Maximum supported array:", info.MaxDiskGroup);
        printNum(ADAPTER_WIDTH, "Maximum disk in one array:", info.MaxPDPerDG);
        printNum(ADAPTER_WIDTH, "Maximum VD in one array:", info.MaxVDPerDG);
    }
    bool extended = info.MaxTotalBlocks_V2 > info.MaxTotalBlocks;
    printNum(ADAPTER_WIDTH, "Max total blocks:", extended ? info.MaxTotalBlocks_V2 : info.MaxTotalBlocks);
}

static void printFeatures(const _Adapter_Info& info) {
    if (info.Features != 0) {
        LineText line;
        addWords(line, info.Features, features);
        dropFinalComma(line);
        printStr(ADAPTER_WIDTH, "Features:", line.text);
    }
    if (info.AdvancedFeatures != 0) {
        // Spares are set for the sake of rebuilding: without that, the bit says nothing and its word stays away.
        KT_U32 bits = info.AdvancedFeatures;
        if ((info.Features & KT_FEATURE_REBUILD) == 0) bits |= KT_ADV_NO_SET_SPARE;
        LineText line;
        addWords(line, bits, advancedFeatures);
        dropFinalComma(line);
        printStr(ADAPTER_WIDTH, "Advanced features:", line.text);
    }
    if (info.MaxBufferSize != 0) printNum(ADAPTER_WIDTH, "Max buffer size:", info.MaxBufferSize);
}

static void printStripes(const _Adapter_Info& info) {
    static constexpr unsigned KNOWN_SIZES = 0x7F;
    unsigned sizes = info.StripeSizeSupported;
    if (sizes == 0) sizes = info.AdvancedFeatures & KT_ADV_BIG_STRIPE ? 127 : 15;
    if ((sizes & KNOWN_SIZES) == 0) return;
    LineText line;
    for (int i = 0; i <= 6; ++i) {
        if (sizes >> i & 1) line.add("%dK ", 16 << i);
    }
    printStr(ADAPTER_WIDTH, "Stripe size supported:", line.text);
}

static void printHealth(const _Adapter_Info& info) {
    if ((info.AdvancedFeatures & KT_ADV_IMAGE_HEALTH) == 0) return;
    auto print = [](const char* label, KT_BOOLEAN flag) {
        printStr(ADAPTER_WIDTH, label, flag == 1 ? "Healthy" : "Unhealthy");
    };
    print("Image health:", info.img_health);
    print("Autoload image health:", info.autoload_img_health);
    print("Boot loader image health:", info.boot_loader_img_health);
    print("Firmware image health:", info.firmware_img_health);
    print("Boot ROM image health:", info.boot_rom_img_health);
    print("HBA info image health:", info.hba_info_img_health);
    out("\n");
}

void Adapter_PrintInfo(const _Adapter_Info* info, KT_U8 adapter) {
    printIdentity(*info, adapter);
    printLink(*info);
    printVersions(*info);
    printPorts(*info);
    printNames(*info);
    printModes(*info);
    printActivities(*info);
    printLimits(*info);
    printFeatures(*info);
    printStripes(*info);
    printHealth(*info);
}

KT_U8 getAdapterInfo(KT_U16 id) {
    bool all = id == ALL_ITEMS;
    if (!all && id >= gNumAdaptersFound) {
        out("\nUnable to get info of Adapter %d (error %d: %s)\n", id, KT_ERR_INVALID_ADAPTER,
            ErrorMessage(KT_ERR_INVALID_ADAPTER));
        return KT_ERR_INVALID_ADAPTER;
    }
    int first = all ? 0 : id;
    int last = all ? gNumAdaptersFound - 1 : id;
    KT_U8 status = KT_OK;
    for (int i = first; i <= last; ++i) {
        auto adapter = static_cast<KT_U8>(i);
        KT_U8 version = 0;
        _Adapter_Info info = {};
        status = KT_Adapter_GetInfo(adapter, &version, &info);
        if (status != KT_OK) {
            out("\nCould not get info for Adapter ID %d (error %d: %s)\n", adapter, status, ErrorMessage(status));
            continue;
        }
        Adapter_PrintInfo(&info, adapter);
    }
    return status;
}
