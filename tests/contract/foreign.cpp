// Disks that come from other adapters, with virtual disks on them.
#include "frame.h"
#include "outside.h"

#include <algorithm>

static const char LAB[] = R"({"adapters": [{"type": "array-based", "enclosures": [{}], "disks": [
  {"count": 11, "type": "SAS", "size": "100GB"}]}]})";
static const KT_U8 ARRAYS = 0;

struct Foreign : LabTest<LAB> {};

static const char OTHER[] = R"({"adapters": [{"type": "LD-based", "disks": [
  {"count": 4, "type": "SATA", "size": "100GB"}], "virtualDisks": [
  {"level": "RAID5", "disks": [0, 1, 2], "size": "10GiB", "name": "Five"}, {"level": "RAID0", "disks": [0, 3], "size": "10GiB"}]}]})";

TEST_F(Foreign, ForeignDisksBringTheirVirtualDisks) {
    std::vector<KT_U16> ids;
    const auto bring = [&](const std::vector<KT_U16>& disks) {
        EXPECT_EQ(outside::insertForeignDisks(ARRAYS, OTHER, disks, ids), KT_OK);
    };
    outside::pullDisk(ARRAYS, 5);
    bring({0});
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_NOT_IMPORTABLE) << "one of three";
    bring({1, 2});
    EXPECT_EQ(ids, (std::vector<KT_U16>{11, 12, 13})) << "the pulled disk keeps its id";
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_NOT_IMPORTABLE) << "an array would lie on the other one's block";
    EXPECT_EQ(vdInfo(ARRAYS, 1).Status, KT_VD_NOT_IMPORTABLE);
    EXPECT_EQ(roleOf(ARRAYS, 11) & KT_PD_FOREIGN, KT_PD_FOREIGN);
    _CreateOrModify_DG_Param param = dgParam(KT_RAID1, {0, 11});
    EXPECT_EQ(KT_CreateOrModify_DG(ARRAYS, &param, 0), KT_ERR_PD_ASSIGNED);
    EXPECT_EQ(KT_LD_Import(ARRAYS, 1), KT_ERR_VD_NOT_IMPORTABLE);
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_ERR_VD_NOT_IMPORTABLE);
    EXPECT_EQ(KT_LD_Report(ARRAYS, 1), KT_ERR_VD_NOT_REPORTABLE);
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 1, 0), KT_OK);
    for (const KT_U16 pd : Ids{11, 12, 13})
        outside::pullDisk(ARRAYS, pd);
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_ERR_VD_MISSING) << "its disks have left";
    for (const KT_U16 pd : Ids{13, 11, 12})
        outside::insertDisk(ARRAYS, pd);
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_IMPORTABLE);
    EXPECT_EQ(roleOf(ARRAYS, 11), KT_PD_FOREIGN);
    newEvents(ARRAYS);
    ASSERT_EQ(KT_LD_Import(ARRAYS, 0), KT_OK);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"13/0 of 0", "1/9 of 0"}));
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_ONLINE);
    EXPECT_EQ(dgInfo(ARRAYS, 0).VDIDs[0], 0);
    EXPECT_STREQ(reinterpret_cast<const char*>(dgInfo(ARRAYS, 0).Name), "Five");
    EXPECT_EQ(dgInfo(ARRAYS, 0).RemainingManagedSpace, dgInfo(ARRAYS, 0).TotalManagedSpace - vdInfo(ARRAYS, 0).Size);
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_ERR_VD_STATUS);
    start(LAB);
    bring({1, 2});
    ASSERT_EQ(KT_LD_Import(ARRAYS, 0), KT_OK);
    bring({0});
    EXPECT_EQ(vdInfo(ARRAYS, 1).Status, KT_VD_PLUGIN_CONFLICTED) << "the rest of what is in use already";
    EXPECT_EQ(outside::pullDisk(ARRAYS, 13), KT_OK);
    EXPECT_EQ(outside::insertDisk(ARRAYS, 13), KT_OK);
    EXPECT_EQ(vdInfo(ARRAYS, 1).Status, KT_VD_PLUGIN_CONFLICTED);
    EXPECT_EQ(KT_LD_Import(ARRAYS, 1), KT_ERR_VD_NOT_IMPORTABLE);
    EXPECT_EQ(KT_LD_Report(ARRAYS, 1), KT_ERR_VD_NOT_REPORTABLE) << "one of three";
    EXPECT_EQ(KT_LD_Report(ARRAYS, 0), KT_ERR_VD_NOT_REPORTABLE) << "it is no conflicted one";
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 0, 0), KT_OK);
    EXPECT_EQ(vdInfo(ARRAYS, 1).Status, KT_VD_NOT_IMPORTABLE) << "nothing is in conflict with it any more";
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 1, 0), KT_OK);
    start(LAB);
    ids.clear();
    bring({0, 1, 2});
    ASSERT_EQ(KT_PD_WipeHDMDD(ARRAYS, ids[0], 1), KT_OK);
    EXPECT_EQ(readList(KT_LD_GetInfo, ARRAYS, &_LD_Info_Request::ldInfo).size(), 1U) << "its only part here is gone";
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_OK) << "two of three are left";
}

// Two virtual disks of one array, and adapters that take one of an array, or one at all.
static const char PAIR[] = R"({"adapters": [{"type": "array-based", "disks": [
  {"count": 2, "type": "SAS", "size": "100GB", "os": true}], "arrays": [{"level": "RAID1", "disks": [0, 1],
  "virtualDisks": [{"size": "10GiB"}, {"size": "10GiB"}]}]}]})";

TEST_F(Foreign, ImportHasItsLimits) {
    const auto bring = [&](const char* limit, KT_U8 answer = KT_OK) {
        start((std::string(R"({"adapters": [{"type": "array-based", "disks": [{"type": "SAS", "size": "100GB"}], )") +
               limit + "}]}")
                  .c_str());
        std::vector<KT_U16> ids;
        EXPECT_EQ(outside::insertForeignDisks(0, PAIR, {0, 1}, ids), answer);
        EXPECT_EQ(KT_DiskHasOS(0, KT_DEVICE_PD, 2, Ids{1, 2}.data()), KT_OK) << "not the system of this machine";
        std::vector<KT_U8> statuses;
        for (const _LD_Info& vd : readList(KT_LD_GetInfo, KT_U8{0}, &_LD_Info_Request::ldInfo))
            statuses.push_back(vd.Status);
        return statuses;
    };
    using Statuses = std::vector<KT_U8>;
    EXPECT_EQ(bring(R"("MaxVDPerDG": 2)"), (Statuses{KT_VD_IMPORTABLE, KT_VD_IMPORTABLE}));
    EXPECT_EQ(bring(R"("MaxVDPerDG": 1)"), (Statuses{KT_VD_NOT_IMPORTABLE, KT_VD_NOT_IMPORTABLE}));
    EXPECT_EQ(KT_LD_Import(0, 0), KT_ERR_VD_NOT_IMPORTABLE);
    bring(R"("MaxLogicalDrive": 1)", KT_ERR_NO_VD_ID);
}

static std::string adapterWith(const std::string& words) {
    return R"({"adapters": [{"disks": [{"count": 7, "size": "100GB"}], )" + words + "}]}";
}

TEST_F(Foreign, ADiskBringsBackWhatWasDeletedWithoutIt) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("arrays": [{"level": "RAID1", "disks": [0, 1], "virtualDisks": [{}]}])", "1/9 of 0"},
        {R"("type": "LD-based", "virtualDisks": [{"level": "RAID1", "disks": [0, 1]}])", "1/1 of 0"}};
    for (const auto& [lab, imported] : cases) {
        start(adapterWith(lab).c_str());
        outside::pullDisk(0, 1);
        ASSERT_EQ(KT_LD_Delete(0, 0, 0), KT_OK);
        outside::insertDisk(0, 1);
        EXPECT_EQ(roleOf(0, 1), KT_PD_FOREIGN) << lab;
        EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_IMPORTABLE) << lab;
        newEvents();
        ASSERT_EQ(KT_LD_Import(0, 0), KT_OK) << lab;
        const Events events = newEvents();
        EXPECT_NE(std::find(events.begin(), events.end(), imported), events.end()) << lab;
    }
}

// The array itself would work without it, what the virtual disk is turning into would not.
TEST_F(Foreign, WhatLeavesAMigrationLastTakesItsPlaceAgain) {
    start(adapterWith(R"("config": {"AutoRebuildOn": 0}, "arrays": [{"level": "RAID5", "disks": [0, 1, 2],
        "virtualDisks": [{"size": "10GiB", "activity": {"kind": "migration", "percent": 40},
                          "target": {"disks": [0, 1, 2, 3]}}]}])")
              .c_str());
    outside::pullDisk(0, 3);
    outside::insertDisk(0, 3);
    outside::pullDisk(0, 0);
    ASSERT_EQ(vdInfo(0, 0).Status, KT_VD_OFFLINE);
    newEvents();
    outside::insertDisk(0, 0);
    EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_DEGRADED);
    EXPECT_EQ(newEvents(), (std::vector<std::string>{"2/1 of 0", "1/4 of 0", "1/89 of 0"}));
    outside::pullDisk(0, 0);
    EXPECT_EQ(newEvents(), (std::vector<std::string>{"2/0 of 0", "1/0 of 0", "1/88 of 0"}));
}

// A migration cannot be gone on with elsewhere; the parts of an array are known there.
TEST_F(Foreign, AnArrayIsWhatItWas) {
    std::vector<KT_U16> ids;
    const auto bring = [&](const std::string& array) {
        start(LAB);
        ids.clear();
        const std::string lab = adapterWith(R"("arrays": [)" + array + "]");
        EXPECT_EQ(outside::insertForeignDisks(ARRAYS, lab.c_str(), {0, 1, 2, 3, 4, 5}, ids), KT_OK);
    };
    bring(R"({"level": "RAID0", "disks": [0, 1], "virtualDisks": [
        {"activity": {"kind": "migration"}, "target": {"disks": [0, 1, 2]}}]})");
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_ERR_VD_NOT_IMPORTABLE);
    for (const auto act : {outside::pullDisk, outside::insertDisk})
        for (const KT_U16 pd : ids)
            act(ARRAYS, pd);
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_ERR_VD_NOT_IMPORTABLE);
    bring(R"({"level": "RAID50", "disks": [0, 1, 2, 3, 4, 5], "name": "Own",
              "virtualDisks": [{"linkedDisk": 6, "os": true}]})");
    EXPECT_EQ(KT_LD_Import(ARRAYS, 0), KT_OK);
    EXPECT_STREQ(reinterpret_cast<const char*>(dgInfo(ARRAYS, 0).Name), "Own");
    KT_U16 linked = 0;
    EXPECT_EQ(KT_DiskHasOS(ARRAYS, KT_DEVICE_VD, 1, &linked), KT_OK);
    EXPECT_EQ(KT_VDHDD_GetLink(ARRAYS, 0, &linked), KT_OK);
    EXPECT_EQ(linked, KT_NO_ID) << "its link was to a disk that stayed there";
    EXPECT_EQ(dgInfo(ARRAYS, 0).SubVDCount, 2);
    EXPECT_EQ(vdInfo(ARRAYS, 0).SubLDCount, 2);
}
