// What the queries refuse, what they ask the library, and records that claim more than they hold.
#include <cstring>

#include "tests/seam/seam.h"

using Query = SeamTest;

TEST_F(Query, ShowsWhateverVersionTheLibraryClaims) {
    seam.version = "4.\x1b[2J%s\n" + std::string(1000, '9');
    const std::string text = printed("version");
    EXPECT_NE(text.find("RaidAPI Version: 4.?[2J%s?9999"), std::string::npos);
    EXPECT_TRUE(text.ends_with("99\n"));
    EXPECT_LT(text.size(), 330U);
}

// 255 stands for every disk only where nobody has typed it, and an empty id for 0.
TEST_F(Query, TakesTheIdThatIsNamed) {
    expectSteps(R"(
get -o pd -i 255 => \nNo PD is found | KT_PD_GetConfig 255
get -o pd -i \t => \nNo PD is found | KT_PD_GetConfig 0
get -o pd => \nNo PD is found | KT_PD_GetConfig
locate -a on -i \t => Success to set PD 0 LED status  | KT_LocateArrayDevice 1 0 1
locate -i 0x10 => Success to set PD 16 LED status  | KT_LocateArrayDevice 1 16 1
locate -a OFF -i 3 => Success to set PD 3 LED status  | KT_LocateArrayDevice 1 3 0
import -i 0xFE =>  | KT_LD_Import 254
report --id 7 =>  | KT_LD_Report 7
pause -c 3 =>  | KT_LD_PauseAll @3
get -o hd ! KT_PD_GetConfig=9 =9> \nUnable to get configuration of hard disk 255 (error 9 : Invalid physical disk id).
get -o hba -i 255 ! KT_PD_GetConfig=9 =13> \nUnable to get configuration info of hba 255 (error 13: Invalid adapter id)
)");
    EXPECT_EQ(0, run("enc -o enc -i \t").result);
}

TEST_F(Query, MapsAnyNumberOfDevicesAndOnlyFreeDisksUnasked) {
    addDisks(300, KT_HD_SATA);
    for (KT_U8 used = 1; used != 0; used = static_cast<KT_U8>(used << 1))
        if (used & KT_PD_NOT_FREE) seam.disks[used].Status = used;
    seam.disks[2].Status = KT_PD_SPARE_IN_USE | KT_PD_MEDIA_PATROL;
    EXPECT_EQ(0, run("devmap -o pd").result);
    Calls magic = seam.calls;
    std::erase_if(magic, [](const std::string& call) { return !has(call, "KT_Tandem"); });
    EXPECT_EQ((Calls{"KT_Tandem_GetHDMagic 256 from 0 to 260", "KT_Tandem_GetHDMagic 39 from 261 to 299"}), magic);
    expectSteps({{"magic", std::string(24, 'm')}}, R"(
devmap -o PDx -i 0x40 => Device ID:           64\nMagic Number:        $magic | KT_PD_GetHDInfo 64; KT_Tandem_GetHDMagic 1 from 64 to 64
devmap -o pd ! KT_PD_GetHDRaidStatus 5=4 =4> Fail! (error 4: Resource not available).
)");
    seam.hds.clear();
    expect("devmap -o pd", "No free physical disk is found.\n");
}

TEST_F(Query, ReadsSmartRecordsWithinTheirFields) {
    addDisks(2, KT_HD_SATA);
    seam.hds[1].HDType = KT_HD_SATA | KT_HD_SAS;
    seam.driveStatus = 'O';
    expect("smart -p 0", "SMART STATUS RETURN: OK.\n");
    EXPECT_EQ(std::string("\xDA\0\0\x4F\xC2\0\xB0\0\0\0\0\0\0\0\0\0", 16), seam.sent["KT_PassThrough_ATA"]);
    expect("smart -p 1", "SAS PD 1 has not SMART information\n");
    seam.smart.AttributeCount = 255;
    for (auto& attribute : seam.smart.Attributes) {
        attribute = {0xC2, 1, 2, 3, 9, {}, UINT64_MAX, {}};
        memset(attribute.Name, '%', sizeof attribute.Name);
    }
    seam.smart.Attributes[0] = {5, 255, 0, 255, KT_SMART_FAILED_BEFORE, {}, 0x29, {}};
    seam.smart.Attributes[1].Status = KT_SMART_FAILING;
    seam.driveStatus = 'F';
    std::string expected = "SMART STATUS RETURN: NotOK.\n\nSmart Info\n"
                           "ID\tAttribute Name\t\tCurrent\tWorst\tThreshhold\tRawValue\tStatus\n"
                           "05\tUnknown_Attribute   \t255\t0\t255     \t000000000029\tIn the past\n";
    for (int i = 1; i < 30; ++i) {
        expected += "C2\t" + std::string(32, '%') + "\t1\t2\t3       \tFFFFFFFFFFFF\t";
        expected += i == 1 ? "Failing now\n" : "Unknown\n";
    }
    expect("smart -p 0", expected);
    seam.statuses["KT_PD_GetHDInfo_Ext"] = 19;
    expect("smart -p 0", expected);
    expect("smart -p 9", "Unable to get info of PD 9 (error 9 : Invalid physical disk id)\n", 9);
}

TEST_F(Query, AsksEachEnclosureForEachElement) {
    EXPECT_EQ(0, run("enc -o ele -t FAN").result);
    EXPECT_EQ((Calls{"KT_ENC_GetEnclosureInfo", "KT_ENC_GetElementConfig 0 3 255", "KT_ENC_GetElementInfo 0 3 0",
                     "KT_ENC_GetElementConfig 7 3 255", "KT_ENC_GetElementInfo 7 3 0", "KT_ENC_GetElementInfo 7 3 1"}),
              seam.calls);
    expect("enc -o ele -t alm -i 3", "\nNo element is found\n");
    seam.calls.clear();
    run("enc -o ele -t arydev -e 254 -i 254");
    run("enc -o elecfg -t dpl -i 3");
    EXPECT_EQ((Calls{"KT_ENC_GetElementInfo 254 23 254", "KT_ENC_GetElementConfig 3 12 255"}), seam.calls);
    // An enclosure that fails does not hide the next one.
    seam.statuses["KT_ENC_GetElementConfig 0 18 255"] = 18;
    const Outcome failed = run("enc -o elecfg -t vlt");
    EXPECT_EQ(18, failed.result);
    EXPECT_TRUE(
        failed.printed.starts_with("\nUnable to get enclosure info (error 18: Invalid enclosure element id)\nE"));
}
