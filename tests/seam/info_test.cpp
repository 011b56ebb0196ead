// info: what is read for a disk and where it is attached.
#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <vector>

#include "Functions/info/info.h"
#include "tests/seam/seam.h"
#include "tests/support/printed.h"

namespace {
struct Info : SeamTest {
    Info() {
        addDisks(1);
        seam.hds[0].Link.Self.DevID = seam.disks[0].HDID = 7;
    }
    // The value behind a label in lines that are printed, without the blanks before it.
    static std::string in(const std::string& lines, const std::string& label) {
        const std::string printed = "\n" + lines;
        size_t at = printed.find("\n" + label + ":");
        if (at == printed.npos) return "no line";
        at = printed.find_first_not_of(' ', at + label.size() + 2);
        return printed.substr(at, printed.find('\n', at) - at);
    }
    static std::string value(const std::string& line, const std::string& label) { return in(printed(line), label); }
};

// clang-format off
TEST_F(Info, DiskNamesWhatItIsAttachedTo) {
    _Link_Entity& link = seam.hds[0].Link;
    // Everything about the disk's own end differs from its parent's, and so do the ids of the enclosures.
    link.Self = {7, 77, 1, {76}, {}, 75, {}};
    link.Parent = {3, 0, 2, {5, 6}, {}, 12, {}};
    const std::pair<KT_U8, const char*> places[] = {
        {0, "HBA port 5"}, {1, "PM 3, port 5"}, {2, "Expander 3, port 5"}, {3, "enclosure 3, HBA port 5"},
        {4, "unknown device, type 4, id 3, port 5"}, {254, "unknown device, type 254, id 3, port 5"}, {255, "no line"}};
    for (const auto& [type, place] : places) {
        link.Parent.DevType = type;
        EXPECT_EQ(value("info -o pd -i 7", "Linked at"), place);
    }
    EXPECT_EQ(value("info -o pd -i 7", "PD ID"), "7");
}

TEST_F(Info, SizeCountsTheDisksOwnSectors) {
    _HD_Info& disk = seam.hds[0];
    const std::tuple<KT_U64, KT_U32, const char*> rows[] = {
        {1001, 4096, "4004 K"}, {1001, 512, "500 K"}, {1001, 520, "508 K"}, {1001, 0, "500 K"},
        {0, 4096, "not available"}, {UINT64_MAX, 512, "not available"}, {1ULL << 51, 4096, "9007199254740992 K"}};
    for (const auto& [sectors, bytes, size] : rows) {
        disk.Size = sectors;
        disk.BlockSize = bytes;
        EXPECT_EQ(value("info -o pd -i 7", "Size"), size) << sectors << " of " << bytes;
    }
}

TEST_F(Info, RunningSystemIsSaidForDisksAndVirtualDisks) {
    seam.lds = {{.ID = 7, .BlkCount = 1, .BlockIDs = {KT_NO_ID}}};
    const std::tuple<KT_U8, const char*, const char*> rows[] = {
        {0, "no", "no"}, {158, "yes", "yes"}, {159, "yes", "unknown"}, {9, "unknown", "unknown"}};
    for (const auto& [status, disk, vd] : rows) {
        seam.statuses["KT_DiskHasOS"] = status;
        seam.calls.clear();
        EXPECT_EQ(value("info -o pd -i 7", "Running OS"), disk) << int{status};
        EXPECT_EQ(value("info -o vd -i 7", "Running OS"), vd) << int{status};
        EXPECT_EQ(std::count(seam.calls.begin(), seam.calls.end(), "KT_DiskHasOS 1 1 7"), 1);
        EXPECT_EQ(std::count(seam.calls.begin(), seam.calls.end(), "KT_DiskHasOS 0 1 7"), 1);
    }
}

TEST_F(Info, RestoringAHybridDiskIsSaid) {
    seam.lds = {{.BGAStatus = KT_STATE_RUNNING, .RaidMode = KT_TANDEM_SAFE, .BlkCount = 1, .BlockIDs = {KT_NO_ID}}};
    const std::tuple<KT_U8, KT_U8, const char*> rows[] = {
        {KT_BGA_REBUILD, KT_STATE_RUNNING, "restore is 40% done"}, {KT_BGA_INIT_QUICK, KT_STATE_RUNNING, "40% done"},
        {KT_BGA_REBUILD, KT_STATE_PAUSED, "paused at 40%"}, {KT_BGA_REBUILD, KT_STATE_ABORTED, "aborted"},
        {0, KT_STATE_NONE, "N/A"}};
    for (const auto& [activity, state, said] : rows) {
        seam.ldStatuses = {{KT_VD_ONLINE, activity, 40, state, 0, 0}};
        for (const char* object : {"vd", "tandem"})
            EXPECT_EQ(value(std::string("info -o ") + object, "initializing status"), said) << object;
    }
}
// clang-format on

TEST_F(Info, AdapterIsDescribedToItsLastField) {
    _Adapter_Info info = {};
    // The values behind labels, line by line or behind strokes; "no line" where there is none.
    const auto expectSaid = [&](const std::string& expected) {
        const std::string lines = printedBy([&] { Adapter_PrintInfo(&info, 3); });
        std::istringstream all(expected);
        for (std::string row; std::getline(all, row);) {
            const size_t colon = row.find(": ");
            std::istringstream labels(row.substr(0, colon));
            for (std::string label; std::getline(labels, label, '|');)
                EXPECT_EQ(row.substr(colon + 2), in(lines, label)) << label;
        }
        return lines;
    };
    // More ports than the record holds.
    info = {.BIOSVersion = {.MajorVersion = 2},
            .DevID = 0x4700,
            .PortCount = 255,
            .MaxTotalBlocks = 8,
            .PortSasAddress = {{1}}};
    EXPECT_TRUE(has(expectSaid(R"(PCIe status: N/A
# of ports: 255
Max total blocks: 8
BIOS version|Firmware|Boot loader|Serial number|Model|# of AES ports|Maximum SSD in one Tandemix|Maximum SSD Segment: no line
Maximum parity disk for RAID6|Maximum supported array|Features|Max buffer size|Image health: no line)"),
                    "    Port 15 SAS address : 0000000000000000\nBuzzer: "));
    info.StripeSizeSupported = 0x80;
    info.DevID = 0x4760;
    expectSaid("Stripe size supported|Firmware: no line\nBIOS version: 2.0.0.0000");
    info = {.DevID = 0x4761, .MaxTotalBlocks = 8, .MaxTotalBlocks_V2 = 9};
    expectSaid("Firmware|Boot loader: none\nMax total blocks: 9");
    info.DevID = 0x4790;
    expectSaid("Firmware: no line");
}

TEST_F(Info, ABatteryTellsWhatItsSensorsMeasure) {
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    const char* const words[] = {"N/A", "temperature ", "voltage ", "temperature voltage ", "Ecapacity"};
    for (KT_U8 sensors = 0; sensors < std::size(words); ++sensors) {
        seam.battery = {};
        seam.battery.status = KT_BBU_PRESENT;
        seam.battery.sensorSupport = sensors;
        const std::string lines = printed("info -o bbu");
        EXPECT_EQ(words[sensors], in(lines, "feature supported (supported sensor)"));
        EXPECT_EQ((sensors & 1) != 0, has(lines, "\ncurrent temperature: 0.00 C\ntemperature range: 0 - 0 degrees"));
        EXPECT_EQ((sensors & 2) != 0, has(lines, "\ncurrent voltage: 0.00 V\nvoltage range: 0mV - 0mV\n"));
        EXPECT_EQ((sensors & 4) != 0,
                  has(lines, "\ncurrent capacity: 0.00 watt-hours\nmax capacity: 0.00 watt-hours\n"));
    }
}

TEST_F(Info, BlocksTellTheirStateInAWord) {
    seam.blocks.resize(1);
    const char* const words[] = {"good", "offline", "rebuilding", "copying back", "unknown (4)"};
    for (size_t state = 0; state < std::size(words); ++state) {
        seam.blocks[0].Status = static_cast<KT_U8>(state);
        EXPECT_EQ(value("info -o blk", "Status"), words[state]);
    }
}
} // namespace
