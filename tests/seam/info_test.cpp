// info: what is read for a disk and where it is attached.
#include "tests/seam/seam.h"

namespace {
struct Info : SeamTest {
    Info() {
        addDisks(1);
        seam.hds[0].Link.Self.DevID = seam.disks[0].HDID = 7;
    }
    // The value behind a label, without the blanks before it.
    static std::string value(const std::string& line, const std::string& label) {
        const std::string lines = "\n" + printed(line);
        size_t at = lines.find("\n" + label + ":");
        if (at == lines.npos) return "no line";
        at = lines.find_first_not_of(' ', at + label.size() + 2);
        return lines.substr(at, lines.find('\n', at) - at);
    }
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

TEST_F(Info, TellsHowAPatrolDoes) {
    const std::tuple<KT_U8, KT_U8, const char*> rows[] = {
        {KT_STATE_NONE, 0, "no line"}, {KT_STATE_RUNNING, 100, "running, 100% done"},
        {KT_STATE_RUNNING, 101, "Invalid Percentage  101% "},
        {KT_STATE_RUNNING, 255, "Percentage is 255% ,Invalid,suggest updating PD LD or RCT"},
        {KT_STATE_PAUSED, 7, "paused at 7%"}, {KT_STATE_AUTO_PAUSED, 7, "auto-paused"}, {KT_STATE_ABORTED, 7, "aborted"},
        {9, 7, "unknown BGA status 9"}};
    for (const auto& [state, percentage, text] : rows) {
        seam.hdActivities = {{}};
        seam.hdActivities[0].HDID = 7;
        seam.hdActivities[0].Bga = KT_PD_BGA_MEDIA_PATROL;
        seam.hdActivities[0].BgaState = state;
        seam.hdActivities[0].Percentage = percentage;
        EXPECT_EQ(value("info -o pd -i 7", "Media patrol"), text);
    }
}

// clang-format on

} // namespace
