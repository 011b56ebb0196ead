#include "frame.h"
#include "outside.h"

// Disk 0 SATA, 1 SAS, 2 a solid state one, 3 tripped from the start.
static const char LAB[] = R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
  {"type": "array-based", "disks": [
    {"type": "SATA", "size": "1TB", "on": "HBA", "port": 0}, {"type": "SAS", "size": "1TB", "on": "HBA", "port": 1},
    {"type": "SATA SSD", "size": "480GB", "on": "HBA", "port": 2},
    {"type": "SATA", "size": "1TB", "on": "HBA", "port": 3, "smartTripped": true}]}]})";
static const KT_U8 REALLOCATED = 0x05, PENDING = 0xC5, HOURS = 0x09, AIRFLOW = 0xBE;

struct Smart : LabTest<LAB> {};

static bool age(KT_U16 pd, const char* aspect, KT_U32 amount) {
    return outside::ageDisk(0, pd, aspect, amount);
}

static _SMART_Attribute attribute(KT_U16 pd, KT_U8 id) {
    return attribute(0, pd, id);
}

static _ATA_PassThrough ata(KT_U16 pd, KT_U8 command, KT_U8 features, KT_U8 mid = KT_SMART_LBA_MID) {
    _ATA_PassThrough pass = {};
    pass.Command = command;
    pass.Features = features;
    pass.LBAMid = mid;
    pass.LBAHigh = KT_SMART_LBA_HIGH;
    EXPECT_EQ(KT_PassThrough_ATA(0, pd, &pass), KT_OK);
    return pass;
}

static KT_U8 returnStatus(KT_U16 pd) {
    return ata(pd, KT_ATA_SMART, KT_SMART_RETURN_STATUS).Status;
}

static std::vector<int> tripped() {
    std::vector<int> flags;
    for (const _HD_SMART_STATUS& disk :
         readList(KT_PD_GetSmartStatus, KT_U8{0}, &_HD_SMART_Status_Request::hdSmartStatus))
        flags.push_back(disk.SmartThresholdExceeded);
    return flags;
}

TEST_F(Smart, AttributesTellADisksLife) {
    const KT_U64 hours = attribute(0, HOURS).RawValue;
    EXPECT_GT(hours, 1000U);
    advance(48 * 3600);
    EXPECT_EQ(attribute(0, HOURS).RawValue, hours + 48);
    EXPECT_STREQ(reinterpret_cast<const char*>(attribute(0, REALLOCATED).Name), "Reallocated_Sectors");
    EXPECT_STREQ(reinterpret_cast<const char*>(attribute(2, 0xE7).Name), "SSD_Life_Left");
    EXPECT_EQ(returnStatus(0), KT_ATA_HEALTHY);
    EXPECT_EQ(tripped(), std::vector<int>({0, 0, 0, 1}));
    EXPECT_EQ(attribute(3, REALLOCATED).Status, KT_SMART_FAILING) << "a tripped disk has a reason";
    EXPECT_NE(returnStatus(3), KT_ATA_HEALTHY);
}

TEST_F(Smart, WornDisksTrip) {
    ASSERT_TRUE(age(0, "reallocated", 511));
    EXPECT_EQ(attribute(0, REALLOCATED).Current, 37);
    EXPECT_EQ(returnStatus(0), KT_ATA_HEALTHY);
    EXPECT_EQ(newEvents(), Events({"2/15 of 0", "2/13 of 0"}));
    ASSERT_TRUE(age(0, "reallocated", 1));
    EXPECT_EQ(newEvents(), Events({"2/15 of 0", "2/14 of 0", "2/11 of 0"}));
    EXPECT_EQ(attribute(0, REALLOCATED).Status, KT_SMART_FAILING);
    EXPECT_EQ(attribute(0, REALLOCATED).RawValue, 512U);
    const _ATA_PassThrough reply = ata(0, KT_ATA_SMART, KT_SMART_RETURN_STATUS);
    EXPECT_EQ(std::vector<int>({reply.LBAMidReturned, reply.LBAHighReturned}), std::vector<int>({0xF4, 0x2C}));
    EXPECT_EQ(tripped(), std::vector<int>({1, 0, 0, 1}));
    ASSERT_TRUE(age(2, "wear", 89));
    EXPECT_EQ(tripped(), std::vector<int>({1, 0, 0, 1}));
    ASSERT_TRUE(age(2, "wear", 1));
    EXPECT_EQ(tripped(), std::vector<int>({1, 0, 1, 1}));
    ASSERT_TRUE(age(2, "wear", 0xFFFFFFFF));
    EXPECT_EQ(attribute(2, 0xE7).Current, 1) << "no value wraps";
    EXPECT_FALSE(age(1, "wear", 1)) << "a SAS disk";
    EXPECT_FALSE(age(0, "wear", 1)) << "a spinning one";
    EXPECT_FALSE(age(0, "beauty", 1));
    EXPECT_FALSE(age(9, "wear", 1));
}

TEST_F(Smart, WhatNobodyPolledIsToldWhenPollingBegins) {
    _Adapter_Config_V2 config = {};
    ASSERT_EQ(KT_Adapter_GetConfig(0, &config), KT_OK);
    config.PollSMARTStatus = 0;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    ASSERT_TRUE(age(0, "reallocated", 512));
    newEvents();
    config.PollSMARTStatus = 1;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    EXPECT_EQ(newEvents(), Events({"0/0 of 0", "2/11 of 0", "2/11 of 3"}));
    _HD_CONFIG disk = {};
    ASSERT_EQ(readItem(KT_PD_GetConfig, 0, 0, &_HD_Config_Request::hdConfig, disk), KT_OK);
    for (const KT_U8 on : {KT_U8{0}, KT_U8{1}}) {
        disk.SMARTOn = on;
        ASSERT_EQ(KT_PD_SetConfig(0, 0, &disk), KT_OK);
    }
    EXPECT_EQ(newEvents(), Events({"2/5 of 0", "2/11 of 0"}));
}

TEST_F(Smart, AClearedTripIsForgottenByTheAttributesToo) {
    ASSERT_TRUE(age(0, "reallocated", 512));
    ASSERT_EQ(tripped()[0], 1);
    EXPECT_EQ(outside::untripDisk(0, 0), KT_OK);
    EXPECT_EQ(tripped()[0], 0);
    EXPECT_EQ(attribute(0, REALLOCATED).Status, KT_SMART_GOOD);
    EXPECT_EQ(returnStatus(0), KT_ATA_HEALTHY);
}

TEST_F(Smart, HeatPasses) {
    outside::ageDisk(0, 0, "warmth", 40);
    outside::coolDisk(0, 0);
    EXPECT_EQ(attribute(0, AIRFLOW).Status, KT_SMART_FAILED_BEFORE);
    EXPECT_GT(attribute(0, AIRFLOW).Current, attribute(0, AIRFLOW).Worst);
    EXPECT_EQ(attribute(0, PENDING).Status, KT_SMART_GOOD);
}

TEST_F(Smart, TheDayWarmsAndThePullStopsTheHours) {
    const KT_U64 morning = attribute(2, 0xC2).RawValue;
    const KT_U64 hours = attribute(2, HOURS).RawValue;
    const KT_U64 cycles = attribute(2, 0x0C).RawValue;
    const KT_U64 written = attribute(2, 0xF1).RawValue;
    advance(6 * 3600);
    EXPECT_EQ(attribute(2, 0xC2).RawValue, morning + 2);
    EXPECT_GT(attribute(2, 0xF1).RawValue, written);
    outside::pullDisk(0, 2);
    advance(10 * 3600);
    outside::insertDisk(0, 2);
    EXPECT_EQ(attribute(2, HOURS).RawValue, hours + 6);
    EXPECT_EQ(attribute(2, 0x0C).RawValue, cycles + 1);
    outside::replaceDisk(0, 2);
    advance(3 * 3600);
    EXPECT_EQ(attribute(2, HOURS).RawValue, 3U) << "a new one";
    EXPECT_EQ(attribute(2, 0x0C).RawValue, 1U);
}

TEST_F(Smart, DrivesAnswerCommands) {
    _HD_Info disk = {};
    EXPECT_EQ(readItem(KT_PD_GetHDInfo, 0, 0, &_HD_Info_Request::hdInfo, disk), KT_OK);
    EXPECT_EQ(std::vector<int>({disk.PIOMode, disk.MDMAMode, disk.UDMAMode}), std::vector<int>({4, 2, 6}));
    EXPECT_EQ(ata(0, KT_ATA_SMART, KT_SMART_RETURN_STATUS, 0).Status, 0x51) << "without its signature";
    EXPECT_EQ(ata(0, 0x25, 0).Error, 0x04) << "a command that moves data";
    EXPECT_EQ(ata(0, 0xE7, 0).Status, 0x50);
    EXPECT_EQ(ata(0, KT_ATA_SMART, 0xD9).Status, 0x50);
    EXPECT_EQ(returnStatus(0), 0x51) << "SMART is off";
    _SMART_Info info = {};
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 0, &info), KT_ERR_INVALID_REQUEST);
    EXPECT_EQ(ata(0, KT_ATA_SMART, 0xD8).Status, 0x50);
    EXPECT_EQ(returnStatus(0), KT_ATA_HEALTHY);
    EXPECT_EQ(ata(0, 0xEF, 0x82).Status, 0x50);
    EXPECT_EQ(ata(0, 0xEF, 0x05).Status, 0x51) << "a feature that it does not have";
    EXPECT_EQ(pdConfig(0, 0).WriteCacheOn, 0);
    _ATA_PassThrough pass = {};
    EXPECT_EQ(KT_PassThrough_ATA(0, 9, &pass), KT_ERR_INVALID_PD);
    EXPECT_EQ(KT_PassThrough_ATA(0, 1, &pass), KT_ERR_NOT_SUPPORTED);
    pass.Protocol = 1;
    EXPECT_EQ(KT_PassThrough_ATA(0, 0, &pass), KT_ERR_NOT_SUPPORTED);
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 1, &info), KT_ERR_NOT_SUPPORTED);
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 9, &info), KT_ERR_INVALID_PD);
    outside::failDisk(0, 0);
    EXPECT_EQ(KT_PD_GET_SMART_INFO(0, 0, &info), KT_ERR_LINK_TIMEOUT);
}

// Disks 0 to 2 are solid state.
static const char SOLID[] = R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
  {"type": "LD-based", "disks": [{"count": 3, "type": "SATA SSD", "size": "120GB"}],
   "virtualDisks": [{"level": "RAID0", "disks": [0, 1], "size": "10GiB"}]}]})";

TEST_F(Smart, WhatActivitiesWriteIsWritten) {
    static const KT_U8 WRITTEN = 0xF1;
    const auto after = [&](const std::function<void()>& act) {
        start(SOLID);
        act();
        advance(6 * 3600);
        std::vector<KT_U64> written;
        for (const KT_U16 pd : Ids{0, 1, 2})
            written.push_back(attribute(pd, WRITTEN).RawValue);
        return written;
    };
    const auto idle = after([] {});
    const auto migrated = after([] { EXPECT_EQ(migrateLd(0, 0, KT_RAID0, {0, 1, 2}), KT_OK); });
    for (size_t pd = 0; pd < 3; ++pd)
        EXPECT_GT(migrated[pd], idle[pd]) << pd << ": all of them are written anew";
}
