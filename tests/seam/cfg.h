// What the tests of backup_cfg and restore_cfg stand on: a folder of their own, and an adapter whose flash holds a
// page.
#pragma once

#include <cstring>

#include "Public/utility.h"
#include "tests/seam/seam.h"
#include "tests/support/scratch.h"

namespace fs = std::filesystem;
inline std::string configuration(const std::string& raid) {
    return "[ADAPTER CONFIG]\n[BEGIN]\n[SERIAL_NUMBER]=old # serial\n[INT13]=ENABLE\n[RAID FEATURE]=ENABLE\n[END]\n"
           "[PORT CONFIG]\n[BEGIN]\n[PORT ID]=0\n[SASADDRESS]=00000000:00000000\n[PORT ID]=1\n"
           "[SASADDRESS]= 11111111 : 11111111 # blanks\n[END]\n[RAID CONFIG]\n[BEGIN]\n" +
           raid + "[END]\n";
}

inline constexpr char READ[] = "KT_Flash_Bin 240 0 page 0 last 0 size 0";
inline constexpr char WRITE[] = "KT_Flash_Bin 15 0 page 0 last 1 size 256";

inline std::string serialOf(const _HBA_Info_Page& page) {
    return {reinterpret_cast<const char*>(page.Serial_Num), sizeof page.Serial_Num};
}

struct Cfg : SeamTest {
    fs::path before = fs::current_path();
    ScratchFolder folder;
    _HBA_Info_Page page = {}; // what the flash of the adapter holds that commands run on

    void SetUp() override {
        memcpy(page.Signature, "TLVN", 4);
        page.RAID_Feature = 2;
        page.BGA_Rate = 0x5A;
        gCurrentAdapter = 0;
        gAdapterInfo[0].PortCount = 2;
        gAdapterInfo[0].DevID = 0x4740;
        fs::current_path(folder.path);
    }
    void TearDown() override { fs::current_path(before); }
    static void write(const char* name, const std::string& text) { writeText(name, text); }
    static void addVd(KT_U16 id, std::vector<KT_U16> blocks, KT_U8 status) {
        _LD_Info ld = {.ID = id, .Status = status, .RaidMode = KT_RAID5, .BlkCount = static_cast<KT_U8>(blocks.size())};
        memset(ld.BlockIDs, 0xFF, sizeof ld.BlockIDs);
        for (size_t i = 0; i < blocks.size(); ++i) {
            ld.BlockIDs[i] = blocks[i];
            seam.blocks.push_back({blocks[i], static_cast<KT_U16>(blocks[i] + 100), 0, id, 0, 0, 512, 0, 0, 0});
        }
        seam.lds.push_back(ld);
        seam.ldStatuses.push_back({status, 0, 0, 0, 0, id});
    }
    // Two virtual disks, of which the second is offline, and two spares.
    static void addRaid() {
        addVd(0, {0, 1, 2}, KT_VD_ONLINE);
        addVd(4, {3, KT_NO_ID, 5}, KT_VD_OFFLINE);
        seam.disks = {
            {100, 0, KT_PD_MEMBER, {}}, {107, 0xFFFF, KT_PD_GLOBAL_SPARE, {}}, {108, 3, KT_PD_DEDICATED_SPARE, {}}};
    }
    Outcome runOn(const std::string& line) {
        seam.flash = bytesOf(page);
        return run(line);
    }
    // What the last run put behind it, with a sum that is right.
    static _HBA_Info_Page written() {
        _HBA_Info_Page behind = {};
        EXPECT_EQ(2 * sizeof behind, seam.flash.size());
        if (seam.flash.size() == 2 * sizeof behind) memcpy(&behind, &seam.flash[sizeof behind], sizeof behind);
        _HBA_Info_Page sums = behind;
        EXPECT_EQ(0, GetHBAInfoChksum_Flash(&sums));
        return behind;
    }
    static long files() { return std::distance(fs::directory_iterator("."), fs::directory_iterator()); }
};
