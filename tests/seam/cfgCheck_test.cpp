#include <functional>

#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/obstacles.h"
#include "tests/seam/seam.h"
#include "tests/support/scratch.h"

using namespace std::string_literals;

namespace {
_LD_Info vd(KT_U16 id, KT_U8 level, KT_U64 megabytes, const std::vector<KT_U16>& disks, KT_U8 parity = 0) {
    _LD_Info ld = {.ID = id,
                   .RaidMode = level,
                   .HDCount = static_cast<KT_U8>(disks.size()),
                   .Size = megabytes,
                   .Name = "data",
                   .NumParityDisk = parity};
    std::copy(disks.begin(), disks.end(), ld.BlockIDs);
    return ld;
}

_DG_Info array(KT_U16 id, const char* name, KT_U8 level, const std::vector<KT_U16>& disks) {
    const auto count = static_cast<KT_U8>(disks.size());
    _DG_Info dg = {.DGID = id, .RaidMode = level, .TotalManagedSpace = 5000 << 10, .PDCount = count};
    memcpy(dg.Name, name, strlen(name));
    std::copy(disks.begin(), disks.end(), dg.PDIDs);
    return dg;
}

// Twelve disks with room for 10,000 M each, and a file and an adapter with nothing yet.
struct Obstacles : SeamTest {
    CfgRaidHolder present = newCfgRaid();
    CfgRaidHolder wanted = newCfgRaid();

    void SetUp() override { start(false); }
    void start(bool arrays) {
        seam = {};
        addDisks(12);
        seam.freeSpace = 10000 << 10;
        gCurrentAdapter = 0;
        gAdapterInfo[0] = {};
        gAdapterInfo[0].LogicalDriverMode = 0xFFFF;
        gAdapterInfo[0].MaxParityDisks = 2;
        arrayBasedRaid = arrays;
        *present = {};
        *wanted = {};
    }
    void hold(const _LD_Info& ld) { present->lds[present->ldCount++] = ld; }
    void want(const _LD_Info& ld) { wanted->lds[wanted->ldCount++] = ld; }
    void wantSpare(KT_U16 disk, KT_U16 array) { wanted->spares[wanted->spareCount++] = {disk, array, 0, {}}; }
    void expect(const std::vector<std::string>& obstacles) const {
        EXPECT_EQ(obstacles, findObstacles(*present, *wanted));
    }
};
} // namespace

TEST_F(Obstacles, OfVirtualDisksOnTheirOwnDisks) {
    want(vd(0, KT_RAID5, 12000, {0, 1, 2}));
    want(vd(1, KT_RAID5, 8000, {0, 1, 2}));
    want(vd(2, KT_RAID10, 20000, {3, 4, 5, 6}));
    wantSpare(7, CFG_GLOBAL_SPARE);
    expect({});
    // What is deleted makes room, and what was foreign with it.
    hold(vd(9, KT_RAID0, 1, {50}));
    seam.ldStatuses = {{KT_VD_ONLINE, 0, 0, 0, 0, 9}};
    seam.blocks = {{50, 0, 0, 9, 0, 0, 512, 0, 0, 0}};
    seam.disks[0].Status = KT_PD_FOREIGN;
    seam.disks[1].Status = KT_PD_MEMBER;
    expect({});
    wanted->lds[1].Size = 8002;
    wanted->lds[2].Size = 20001;
    std::vector<std::string> missing;
    for (const char* disk : {"0", "1", "2"})
        missing.push_back("virtual disk 1 'data': needs 4001 M on disk "s + disk + ", where 4000 M are left");
    for (const char* disk : {"3", "4", "5", "6"})
        missing.push_back("virtual disk 2 'data': needs 10001 M on disk "s + disk + ", where 10000 M are left");
    expect(missing);
}

TEST_F(Obstacles, OfEachKind) {
    const std::string v = "virtual disk 0 'data'";
    const std::string second = "virtual disk 1 'data'";
    // clang-format off
    const std::pair<std::function<void()>, std::vector<std::string>> cases[] = {
        {[&] { wanted->lds[0].BlockIDs[1] = 40; }, {v + ": disk 40 is not there"}},
        {[] { seam.disks[1].Status = KT_PD_OFFLINE; }, {v + ": disk 1 is offline"}},
        {[] { seam.disks[1].Status = KT_PD_FOREIGN; }, {v + ": disk 1 is foreign"}},
        {[] { seam.disks[1].Status = KT_PD_GLOBAL_SPARE; },
         {v + ": disk 1 is a spare, and those are released only when the virtual disks are made"}},
        {[] { seam.hds[1].HDType = KT_HD_ATAPI; }, {v + ": disk 1 is an ATAPI device"}},
        {[] { seam.hds[1].BlockSize = 4096; }, {v + ": disk 1 has sectors of another size than disk 0"}},
        {[] { seam.hds[1].HDType = KT_HD_SSD; }, {}},
        {[] {
             seam.hds[1].HDType = KT_HD_SSD;
             gAdapterInfo[0].Features = KT_FEATURE_SAME_TYPE_ONLY;
         }, {v + ": disk 1 is of another type than disk 0"}},
        {[] { seam.statuses["KT_DiskHasOS 1 1 1"] = KT_ERR_PD_HAS_OS; }, {v + ": disk 1 runs the operating system"}},
        {[] { seam.statuses["KT_PD_GetFreeSpaceInfo 1"] = 9; },
         {v + ": disk 1 cannot be read (Invalid physical disk id)"}},
        {[&] { wanted->lds[0].HDCount = 1; }, {v + ": RAID0 needs at least 2 PD"}},
        {[] { gAdapterInfo[0].LogicalDriverMode = 0; }, {v + ": Specified RAID mode is not supported"}},
        {[] { gAdapterInfo[0].MaxPDPerVD = 1; }, {v + ": the adapter takes at most 1 disks"}},
        {[&] { want(vd(1, KT_RAID6, 1, {2, 3, 4, 5}, 3)); },
         {second + ": Number of parity disks should be at least 2 and less than 2"}},
        {[&] { want(vd(1, KT_RAID0, 0, {1, 2})); },
         {second + ": needs room on disk 1, where 0 M are left", second + ": needs room on disk 2, where 10000 M are left"}},
        // Newer controllers, and some of the others, give a disk to few virtual disks.
        {[&] {
             wanted->lds[0].Size = 10;
             want(vd(1, KT_RAID0, 10, {1, 2}));
             gAdapterInfo[0].DevID = 0x4740;
         }, {second + ": disk 1 holds as many virtual disks as this adapter allows"}},
        {[&] {
             want(vd(1, KT_RAID0, 10, {2, 3}));
             gAdapterInfo[0].MaxLogicalDrive = 1;
         }, {"the file lists 2 virtual disks, the adapter takes 1"}},
        {[&] {
             hold(vd(3, KT_RAID1, 1, {}));
             hold(vd(4, KT_RAID1, 1, {}));
             seam.statuses["KT_DiskHasOS 0 1 4"] = KT_ERR_VD_HAS_OS;
         }, {"virtual disk 3 'data' cannot be read (Failed)", "virtual disk 4 'data' cannot be read (Failed)",
             "virtual disk 4 'data' runs the operating system: it cannot be deleted"}},
        {[&] { wantSpare(1, CFG_GLOBAL_SPARE); }, {"spare disk 1 is a member as well"}},
        {[&] { wantSpare(9, CFG_GLOBAL_SPARE); }, {"spare disk 9 is listed twice"}},
        {[&] { wantSpare(40, CFG_GLOBAL_SPARE); }, {"spare disk 40 is not there"}},
        {[&] { wantSpare(5, 0); }, {"spare disk 5: no array, and so no disk for one, is on this adapter"}},
    };
    // clang-format on
    for (const auto& [change, obstacles] : cases) {
        start(false);
        want(vd(0, KT_RAID0, 0, {0, 1}));
        wantSpare(9, CFG_GLOBAL_SPARE);
        seam.disks[9].Status = KT_PD_GLOBAL_SPARE; // what is a spare may be one again
        change();
        expect(obstacles);
    }
}

TEST_F(Obstacles, OfVirtualDisksInArrays) {
    start(true);
    seam.arrays = {array(1, "old", KT_RAID5, {0, 1, 2}), array(2, "fast", KT_RAID0, {8, 9})};
    seam.arrays[0].SmallestAvailablePDSize = 4000 << 10;
    want(vd(0, KT_RAID5, 3000, {2, 1, 0}));
    want(vd(1, KT_RAID5, 2000, {0, 1, 2}));
    want(vd(2, KT_RAID1, 10000, {3, 4}));
    wantSpare(5, 1);
    wantSpare(6, 7); // the id that the new array gets cannot be told
    expect({});
    want(vd(3, KT_RAID5, 0, {0, 1, 2}));
    want(vd(4, KT_RAID1, 1, {4, 3}));
    want(vd(5, KT_RAID5, 1, {2, 5, 6}));
    want(vd(6, KT_RAID1, 1, {8, 9}));
    wanted->spareCount = 0;
    wantSpare(9, CFG_GLOBAL_SPARE);
    wantSpare(10, 2);
    seam.hds[11].BlockSize = 4096;
    wantSpare(11, 1);
    expect({"virtual disk 3 'data': needs room in array 1 'old', where 0 M are left",
            "virtual disk 4 'data': needs 1 M in the array that comes with it, where 0 M are left",
            "virtual disk 5 'data': its disks are in array 1 'old', which stays and has other disks or another level",
            "virtual disk 6 'data': its disks are in array 2 'fast', which stays and has other disks or another level",
            "spare disk 9 is a member as well", "spare disk 10: array 2 'fast' is not redundant",
            "spare disk 11: it is of another kind than the disks of array 1 'old'"});
    // An array that is being migrated keeps its virtual disks.
    start(true);
    seam.arrays = {array(1, "old", KT_RAID5, {0, 1, 2})};
    seam.arrays[0].BgaType = KT_BGA_MIGRATION;
    seam.arrays[0].SmallestAvailablePDSize = 20000 << 10;
    seam.ldStatuses = {{KT_VD_ONLINE, 0, 0, 0, 0, 4}};
    hold(vd(4, KT_RAID5, 1, {}));
    present->lds[0].DGID = 1;
    wantSpare(5, 1);
    wantSpare(6, 3);
    expect({"virtual disk 4 'data' is in an array that is being migrated: it cannot be deleted",
            "spare disk 5: it is too small for array 1 'old'", "spare disk 6: there will be no array 3"});
}

TEST_F(Obstacles, AreToldWithWhatWouldChange) {
    const ScratchFolder folder;
    const std::string file = folder.path + "/a b.txt";
    writeText(file, "[ADAPTER CONFIG]\n[SPINUP GROUP]=4\n[END]\n[PORT CONFIG]\n[PORT ID]=1\n[AMP]=F\n[END]\n"
                    "[RAID CONFIG]\n[VD ID]=0\n[RAID NAME]=new\n[RAID MODE]=RAID1\n[CAPACITY (M)]=500\n"
                    "[PD MEMBER]=3,4\n[END]\n");
    const _HBA_Info_Page page = {.RAID_Feature = 2, .DSpinUpGroup = 1};
    _LD_Info old = vd(7, KT_RAID0, 2048, {1, KT_NO_ID, 2});
    old.BlkCount = 3;
    const std::string settings = "Settings would change:\n  adapter: [SPINUP GROUP]=1 becomes 4\n"
                                 "  port 1: [AMP]=0 becomes F\n";
    const std::string changes = "Would be deleted:\n  virtual disk 7 'data' (RAID0, 2 M)\n"
                                "    disk 9, Model 9, serial number SN9\n    a disk that is missing\n"
                                "    disk 40, which is not there\n"
                                "Would be created:\n  virtual disk 'new' (RAID1, 500 M) on disks 3, 4\n";
    const std::string can = "'" + file + "' can be restored here.\n";
    const std::string cannot = "'" + file + "' cannot be restored here.\n";
    auto check = [&](const std::string& words) {
        start(false);
        seam.flash = bytesOf(page);
        seam.lds = {old};
        seam.ldStatuses = {{KT_VD_ONLINE, 0, 0, 0, 0, 7}};
        seam.blocks = {{1, 9, 0, 7, 0, 0, 512, 0, 0, 0}, {2, 40, 0, 7, 0, 0, 512, 0, 0, 0}};
        memcpy(seam.hds[9].Model, "Model 9  ", 9);
        memcpy(seam.hds[9].SerialNo, "SN9", 3);
        return run("check -f \"" + file + "\" " + words);
    };
    ::expect(check("--raid"), settings + changes + can);
    ::expect(check(""), settings + "Its virtual disks and spares are looked at with --raid only.\n" + can);
    EXPECT_EQ(1U, seam.calls.size());
    const std::string stays = "; the RAID configuration stays as it is.\n";
    ::expect(check("--raid -t phy"), settings + "The file was read for its PHY tuning only" + stays + cannot, 1);
    writeText(file, "[ADAPTER CONFIG]\n[RAID FEATURE]=DISABLE\n[END]\n[PORT CONFIG]\n[END]\n[RAID CONFIG]\n[END]\n");
    ::expect(check("--raid"), "Settings would change:\n  adapter: [RAID FEATURE]=ENABLE becomes DISABLE\n"
                              "The file switches RAID off" +
                                  stays + can);
    writeText(file, "[PORT CONFIG]\n[PORT ID]=9\n");
    const std::string exceeds = "Restore_Error: port id in the file exceed MAX_PORT_NUMBER!\n";
    ::expect(check("--raid"), exceeds + "Restore_Error: \nAnalysis config file error!\n" + cannot, 1);
}
