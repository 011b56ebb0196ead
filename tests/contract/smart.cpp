#include "frame.h"

// Disk 0 SATA, 1 SAS, 2 a solid state one, 3 tripped from the start.
static const char SMART_LAB[] = R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
  {"disks": [{"type": "SATA", "size": "1TB"}, {"type": "SAS", "size": "1TB"}, {"type": "SATA SSD", "size": "480GB"},
             {"type": "SATA", "size": "1TB", "smartTripped": true}]}]})";
static const KT_U8 REALLOCATED = 0x05, HOURS = 0x09, CYCLES = 0x0C, CELSIUS = 0xC2, WRITTEN = 0xF1;

static _ATA_PassThrough ata(KT_U16 pd, KT_U8 command, KT_U8 features, KT_U8 mid = KT_SMART_LBA_MID) {
    _ATA_PassThrough pass = {};
    pass.Command = command;
    pass.Features = features;
    pass.LBAMid = mid;
    pass.LBAHigh = KT_SMART_LBA_HIGH;
    succeed({KT_PassThrough_ATA(0, pd, &pass)});
    return pass;
}

struct Smart : LabTest<SMART_LAB> {
    static KT_U64 raw(KT_U16 pd, KT_U8 id) { return attribute(0, pd, id).RawValue; }
    static KT_U8 returnStatus(KT_U16 pd) { return ata(pd, KT_ATA_SMART, KT_SMART_RETURN_STATUS).Status; }
};

static Ints tripped() {
    Ints flags;
    for (const auto& disk : readList(KT_PD_GetSmartStatus, KT_U8{0}, &_HD_SMART_Status_Request::hdSmartStatus))
        flags.push_back(disk.SmartThresholdExceeded);
    return flags;
}

TEST_F(Smart, AttributesTellADisksLife) {
    EXPECT_EQ(textOf(attribute(0, 2, 0xE7).Name), "SSD_Life_Left");
    EXPECT_EQ(tripped(), (Ints{0, 0, 0, 1}));
    EXPECT_EQ(attribute(0, 3, REALLOCATED).Status, KT_SMART_FAILING) << "a tripped disk has a reason";
    succeed({ageDisk(0, 0, "warmth", 40)});
    std::string cooled = show();
    start(cooled.replace(cooled.find("\"warmth\":40"), 11, "\"warmth\":0"));
    const _SMART_Attribute airflow = attribute(0, 0, 0xBE);
    EXPECT_EQ(airflow.Status, KT_SMART_FAILED_BEFORE);
    EXPECT_GT(airflow.Current, airflow.Worst);
}

TEST_F(Smart, WornDisksTrip) {
    EXPECT_EQ(LOG_OF(0, ageDisk(0, 0, "reallocated", 511)), "2/15:0 2/13:0");
    EXPECT_EQ(attribute(0, 0, REALLOCATED).Current, 37);
    EXPECT_EQ(returnStatus(0), KT_ATA_HEALTHY);
    EXPECT_EQ(LOG_OF(0, ageDisk(0, 0, "reallocated", 1)), "2/15:0 2/14:0 2/11:0");
    EXPECT_EQ(attribute(0, 0, REALLOCATED).Status, KT_SMART_FAILING);
    EXPECT_EQ(raw(0, REALLOCATED), 512U);
    const _ATA_PassThrough reply = ata(0, KT_ATA_SMART, KT_SMART_RETURN_STATUS);
    EXPECT_EQ((Ints{reply.LBAMidReturned, reply.LBAHighReturned}), (Ints{0xF4, 0x2C}));
    for (const int threshold : {0, 1}) {
        succeed({ageDisk(0, 2, "wear", threshold ? 1 : 89)});
        EXPECT_EQ(tripped(), (Ints{1, 0, threshold, 1}));
    }
    succeed({ageDisk(0, 2, "wear", 0xFFFFFFFF)});
    EXPECT_EQ(attribute(0, 2, 0xE7).Current, 1) << "no value wraps";
    // A SAS disk and a spinning one do not wear.
    answer(KT_ERR_FAILED,
           {ageDisk(0, 1, "wear", 1), ageDisk(0, 0, "wear", 1), ageDisk(0, 0, "beauty", 1), ageDisk(0, 9, "wear", 1)});
}

TEST_F(Smart, WhatNobodyPolledIsToldWhenPollingBegins) {
    succeed({configure(0, &Config::PollSMARTStatus, 0), ageDisk(0, 0, "reallocated", 512)});
    EXPECT_EQ(LOG_OF(0, configure(0, &Config::PollSMARTStatus, 1)), "0/0:0 2/11:0 2/11:3");
    _HD_CONFIG disk = pdConfig(0, 0);
    for (const KT_U8 on : {KT_U8{0}, KT_U8{1}}) {
        disk.SMARTOn = on;
        succeed({KT_PD_SetConfig(0, 0, &disk)});
    }
    EXPECT_EQ(newEvents(), "2/5:0 2/11:0");
    succeed({untripDisk(0, 0)});
    EXPECT_EQ(tripped()[0], 0);
    EXPECT_EQ(attribute(0, 0, REALLOCATED).Status, KT_SMART_GOOD) << "a cleared trip is forgotten there too";
    EXPECT_EQ(returnStatus(0), KT_ATA_HEALTHY);
}

TEST_F(Smart, TheDayWarmsAndThePullStopsTheHours) {
    const auto life = [] { return std::vector<KT_U64>{raw(2, HOURS), raw(2, CYCLES)}; };
    const auto before = life();
    const KT_U64 written = raw(2, WRITTEN);
    std::string day;
    for (int hour = 0; hour < 24; ++hour) {
        day += std::to_string(raw(2, CELSIUS)) + " ";
        advance(HOUR);
    }
    EXPECT_EQ(day, "32 32 33 33 33 34 34 34 34 34 33 33 33 32 32 31 31 31 30 30 30 30 31 31 ");
    EXPECT_GT(raw(2, WRITTEN), written);
    succeed({pullDisk(0, 2), advance(10 * HOUR), insertDisk(0, 2)});
    EXPECT_EQ(life(), (std::vector<KT_U64>{before[0] + 24, before[1] + 1}));
    succeed({replaceDisk(0, 2), advance(3 * HOUR)});
    EXPECT_EQ(life(), (std::vector<KT_U64>{3, 1})) << "a new one";
}

TEST_F(Smart, DrivesAnswerCommands) {
    EXPECT_EQ(ata(0, KT_ATA_SMART, KT_SMART_RETURN_STATUS, 0).Status, 0x51) << "without its signature";
    EXPECT_EQ(ata(0, 0x25, 0).Error, 0x04) << "a command that moves data";
    EXPECT_EQ((Ints{ata(0, 0xE7, 0).Status, ata(0, KT_ATA_SMART, 0xD9).Status, returnStatus(0)}),
              (Ints{0x50, 0x50, 0x51}))
        << "SMART is off";
    _SMART_Info info = {};
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 0, &info), KT_ERR_INVALID_REQUEST);
    EXPECT_EQ((Ints{ata(0, KT_ATA_SMART, 0xD8).Status, returnStatus(0), ata(0, 0xEF, 0x82).Status}),
              (Ints{0x50, KT_ATA_HEALTHY, 0x50}));
    EXPECT_EQ(ata(0, 0xEF, 0x05).Status, 0x51) << "a feature that it does not have";
    EXPECT_EQ(pdConfig(0, 0).WriteCacheOn, 0);
    _ATA_PassThrough pass = {};
    EXPECT_EQ(KT_PassThrough_ATA(0, 9, &pass), KT_ERR_INVALID_PD);
    EXPECT_EQ(KT_PassThrough_ATA(0, 1, &pass), KT_ERR_NOT_SUPPORTED);
    pass.Protocol = 1;
    answer(KT_ERR_NOT_SUPPORTED, {KT_PassThrough_ATA(0, 0, &pass), KT_PD_GET_SMART_INFO(0, 1, &info)});
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 9, &info), KT_ERR_INVALID_PD);
    succeed({failDisk(0, 0)});
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 0, &info), KT_ERR_LINK_TIMEOUT);
}

TEST_F(Smart, WhatActivitiesWriteIsWritten) {
    const auto after = [&](const Ids& disks) {
        start(R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
          {"type": "LD-based", "disks": [{"count": 3, "type": "SATA SSD", "size": "120GB"}],
           "virtualDisks": [{"level": "RAID0", "disks": [0, 1], "size": "10GiB"}]}]})");
        succeed({disks.empty() ? KT_U8{KT_OK} : migrateLd(0, 0, KT_RAID0, disks), advance(6 * HOUR)});
        return std::vector<KT_U64>{raw(0, WRITTEN), raw(1, WRITTEN), raw(2, WRITTEN)};
    };
    const auto idle = after({});
    const auto migrated = after({0, 1, 2});
    for (size_t pd = 0; pd < 3; ++pd)
        EXPECT_EQ(migrated[pd] - idle[pd], 5 * (KT_U64{1} << 30) / 512) << pd << ": half of it each, written anew";
}
