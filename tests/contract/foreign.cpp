// Disks that come from other adapters, with virtual disks on them.
#include "frame.h"

static const char FOREIGN_LAB[] = R"({"adapters": [{"type": "array-based", "enclosures": [{}], "disks": [
  {"count": 11, "type": "SAS", "size": "100GB"}]}]})";

static const char OTHER[] = R"({"adapters": [{"type": "LD-based", "disks": [
  {"count": 4, "type": "SATA", "size": "100GB"}], "virtualDisks": [
  {"level": "RAID5", "disks": [0, 1, 2], "size": "10GiB", "name": "Five"}, {"level": "RAID0", "disks": [0, 3], "size": "10GiB"}]}]})";

static std::string adapterWith(const std::string& words) {
    return R"({"adapters": [{"disks": [{"count": 7, "size": "100GB"}], )" + words + "}]}";
}

struct Foreign : LabTest<FOREIGN_LAB> {
    Ids ids; // of the disks that were brought

    void bring(const Ids& disks, const std::string& lab = OTHER) {
        succeed({insertForeignDisks(0, lab.c_str(), disks, ids)});
    }
    void bringAnew(const Ids& disks, const std::string& lab = OTHER) {
        start(FOREIGN_LAB);
        ids.clear();
        bring(disks, lab);
    }
};

TEST_F(Foreign, DisksBringTheirVirtualDisks) {
    succeed({pullDisk(0, 5)});
    newEvents();
    bring({0});
    EXPECT_EQ(newEvents(), "2/1:11");
    EXPECT_EQ(look(0, 0), "not importable 11 - -") << "one of three";
    bring({1, 2});
    EXPECT_EQ(ids, (Ids{11, 12, 13})) << "the pulled disk keeps its id";
    EXPECT_EQ(look(0, 0), "not importable 11 12 13") << "an array would lie on the other one's block";
    EXPECT_EQ(look(0, 1), "not importable 11 -");
    EXPECT_EQ(roleOf(0, 11), KT_PD_FOREIGN);
    _CreateOrModify_DG_Param param = dgParam(KT_RAID1, {0, 11});
    EXPECT_EQ(KT_CreateOrModify_DG(0, &param, 0), KT_ERR_PD_ASSIGNED);
    answer(KT_ERR_VD_NOT_IMPORTABLE, {KT_LD_Import(0, 1), KT_LD_Import(0, 0)});
    EXPECT_EQ(KT_LD_Report(0, 1), KT_ERR_VD_NOT_REPORTABLE);
    succeed({KT_LD_Delete(0, 1, 0)});
    succeed({pullDisk(0, 11), pullDisk(0, 12), pullDisk(0, 13)});
    EXPECT_EQ(KT_LD_Import(0, 0), KT_ERR_VD_MISSING) << "its disks have left";
    EXPECT_EQ(look(0, 0, {insertDisk(0, 13), insertDisk(0, 11), insertDisk(0, 12)}), "importable 11 12 13");
    EXPECT_EQ(LOG_OF(0, KT_LD_Import(0, 0)), "13/0:0 1/9:0");
    EXPECT_EQ(look(0, 0), "online 11 12 13");
    const _DG_Info array = dgInfo(0, 0);
    EXPECT_EQ(array.VDIDs[0], 0);
    EXPECT_EQ(textOf(array.Name), "Five");
    EXPECT_EQ(array.RemainingManagedSpace, array.TotalManagedSpace - vdInfo(0, 0).Size);
    EXPECT_EQ(KT_LD_Import(0, 0), KT_ERR_VD_STATUS);
}

TEST_F(Foreign, WhatIsInUseAlreadyIsInConflict) {
    bring({1, 2});
    succeed({KT_LD_Import(0, 0)});
    bring({0});
    EXPECT_EQ(look(0, 1), "conflicted 13 - -");
    EXPECT_EQ(look(0, 1, {pullDisk(0, 13), insertDisk(0, 13)}), "conflicted 13 - -");
    EXPECT_EQ(KT_LD_Import(0, 1), KT_ERR_VD_NOT_IMPORTABLE);
    EXPECT_EQ(KT_LD_Report(0, 1), KT_ERR_VD_NOT_REPORTABLE) << "one of three";
    EXPECT_EQ(KT_LD_Report(0, 0), KT_ERR_VD_NOT_REPORTABLE) << "it is no conflicted one";
    EXPECT_EQ(look(0, 1, {KT_LD_Delete(0, 0, 0)}), "not importable 13 - -") << "with nothing in conflict any more";
    bringAnew({0, 1, 2});
    succeed({KT_PD_WipeHDMDD(0, ids[0], 1)});
    EXPECT_EQ(readList(KT_LD_GetInfo, KT_U8{0}, &_LD_Info_Request::ldInfo).size(), 1U) << "its only part here is gone";
    EXPECT_EQ(look(0, 0, {KT_LD_Import(0, 0)}), "degraded - 12 13") << "two of three are left";
    EXPECT_EQ(dgInfo(0, 0).Status, 1);
}

// Two virtual disks of one array, and adapters that take one of an array, or one at all.
TEST_F(Foreign, ImportHasItsLimits) {
    const std::string pair = R"({"adapters": [{"type": "array-based", "disks": [
      {"count": 2, "type": "SAS", "size": "100GB", "os": true}], "arrays": [{"level": "RAID1", "disks": [0, 1],
      "virtualDisks": [{"size": "10GiB"}, {"size": "10GiB"}]}]}]})";
    const auto onAdapterWith = [&](const std::string& limit) {
        start(R"({"adapters": [{"type": "array-based", "disks": [{"type": "SAS", "size": "100GB"}], )" + limit + "}]}");
        return insertForeignDisks(0, pair.c_str(), {0, 1}, ids);
    };
    succeed({onAdapterWith(R"("MaxVDPerDG": 2)"), KT_DiskHasOS(0, KT_DEVICE_PD, 2, Ids{1, 2}.data())});
    EXPECT_EQ(look(0, 0) + ", " + look(0, 1), "importable 1 2, importable 1 2") << "not the system of this machine";
    succeed({onAdapterWith(R"("MaxVDPerDG": 1)")});
    EXPECT_EQ(look(0, 0) + ", " + look(0, 1), "not importable 1 2, not importable 1 2");
    EXPECT_EQ(KT_LD_Import(0, 0), KT_ERR_VD_NOT_IMPORTABLE);
    EXPECT_EQ(onAdapterWith(R"("MaxLogicalDrive": 1)"), KT_ERR_NO_VD_ID);
}

TEST_F(Foreign, ADiskBringsBackWhatWasDeletedWithoutIt) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("arrays": [{"level": "RAID1", "disks": [0, 1], "virtualDisks": [{}]}])", "13/0:1 1/9:0(1) 1/4:0"},
        {R"("type": "LD-based", "virtualDisks": [{"level": "RAID1", "disks": [0, 1]}])", "1/1:0 1/4:0"}};
    for (const auto& [lab, imported] : cases) {
        start(adapterWith(lab));
        succeed({pullDisk(0, 1), KT_LD_Delete(0, 0, 0), insertDisk(0, 1)});
        EXPECT_EQ(roleOf(0, 1), KT_PD_FOREIGN) << lab;
        EXPECT_EQ(look(0, 0), "importable - 1") << lab;
        EXPECT_EQ(LOG_OF(0, KT_LD_Import(0, 0)), imported) << lab;
    }
}

TEST_F(Foreign, WhatWasPulledFirstHasMissedWhatWasWritten) {
    start(adapterWith(R"("config": {"AutoRebuildOn": 0}, "arrays": [{"level": "RAID5", "disks": [0, 1, 2],
        "virtualDisks": [{"size": "10GiB"}]}])"));
    succeed({pullDisk(0, 1), pullDisk(0, 0)});
    const std::string elsewhere = show();
    for (const auto& [disks, seen] : {std::pair<Ids, const char*>{{1, 0}, "not importable 12 - -"},
                                      {{0, 1, 2}, "importable 11 - 13"},
                                      {{1}, "not importable - 11 -"}}) {
        bringAnew(disks, elsewhere);
        EXPECT_EQ(look(0, 0), seen);
    }
}

// The array itself would work without it, what the virtual disk is turning into would not.
TEST_F(Foreign, WhatLeavesAMigrationLastTakesItsPlaceAgain) {
    start(adapterWith(R"("config": {"AutoRebuildOn": 0}, "arrays": [{"level": "RAID5", "disks": [0, 1, 2],
        "virtualDisks": [{"size": "10GiB", "activity": {"kind": "migration", "percent": 40},
                          "target": {"disks": [0, 1, 2, 3]}}]}])"));
    EXPECT_EQ(look(0, 0, {pullDisk(0, 3), insertDisk(0, 3), pullDisk(0, 0)}), "offline - 1 2, 32/5 40");
    EXPECT_EQ(LOG_OF(0, insertDisk(0, 0)), "2/1:0 1/4:0 1/89:0");
    EXPECT_EQ(look(0, 0), "degraded 0 1 2, 32/1 40");
    EXPECT_EQ(LOG_OF(0, pullDisk(0, 0)), "2/0:0 1/0:0 1/88:0");
}

// A migration cannot be gone on with elsewhere; the parts of an array are known there.
TEST_F(Foreign, AnArrayIsWhatItWas) {
    bringAnew({0, 1, 2, 3, 4, 5}, adapterWith(R"("arrays": [{"level": "RAID0", "disks": [0, 1], "virtualDisks": [
        {"activity": {"kind": "migration"}, "target": {"disks": [0, 1, 2]}}]}])"));
    EXPECT_EQ(KT_LD_Import(0, 0), KT_ERR_VD_NOT_IMPORTABLE);
    for (const auto act : {pullDisk, insertDisk}) {
        for (const KT_U16 pd : ids)
            succeed({act(0, pd)});
    }
    EXPECT_EQ(KT_LD_Import(0, 0), KT_ERR_VD_NOT_IMPORTABLE);
    bringAnew({0, 1, 2, 3, 4, 5}, adapterWith(R"("arrays": [{"level": "RAID50", "disks": [0, 1, 2, 3, 4, 5],
        "name": "Own", "virtualDisks": [{"linkedDisk": 6, "os": true}]}])"));
    KT_U16 linked = 0;
    succeed({KT_LD_Import(0, 0), KT_DiskHasOS(0, KT_DEVICE_VD, 1, &linked), KT_VDHDD_GetLink(0, 0, &linked)});
    EXPECT_EQ(textOf(dgInfo(0, 0).Name), "Own");
    EXPECT_EQ(linked, KT_NO_ID) << "its link was to a disk that stayed there";
    EXPECT_EQ((Ints{dgInfo(0, 0).SubVDCount, vdInfo(0, 0).SubLDCount}), (Ints{2, 2}));
}
