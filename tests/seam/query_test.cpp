// What the queries refuse, what they ask the library, and records that claim more than they hold.
#include <cstring>
#include <gtest/gtest.h>

#include "tests/seam/commands.h"
#include "tests/seam/seam.h"

static struct {
    _SMART_Info smart;
    KT_U8 driveStatus;
    _Exp_Info expander;
} answers;

extern "C" {
LISTS(KT_PD_GetConfig, _HD_Config_Request, seam.hdConfigs, HDID)
LISTS(KT_LD_GetConfig, _LD_Config_Request, seam.ldConfigs, LDID)
KT_U8 KT_VDHDD_GetLink(KT_U8, KT_U16 vd, KT_U16* pd) {
    *pd = vd == 1 ? 6 : KT_NO_ID;
    return answer("KT_VDHDD_GetLink", text(vd));
}
KT_U8 KT_ENC_GetEnclosureInfo(KT_U8, _Enclosure_Info_Request* request) {
    std::vector<_Enclosure_Info> both(2);
    both[1].EnclosureID = 7;
    return list("KT_ENC_GetEnclosureInfo", request, both, [](const _Enclosure_Info& e) { return e.EnclosureID; });
}
KT_U8 KT_ENC_GetElementInfo(KT_U8, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Info*) {
    return answer("element", text(enc) + " " + text(type) + " " + text(element));
}
KT_U8 KT_ENC_GetElementConfig(KT_U8, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Config* config) {
    config->NumberOfElements = type == KT_SES_ALARM ? 0 : enc == 7 ? 2 : 1;
    return answer("config", text(enc) + " " + text(type) + " " + text(element));
}
LISTS(KT_PD_GetSmartStatus, _HD_SMART_Status_Request, std::vector<_HD_SMART_STATUS>(), HDID)
KT_U8 KT_PD_GET_SMART_INFO(KT_U8, KT_U16 pd, _SMART_Info* info) {
    *info = answers.smart;
    return answer("KT_PD_GET_SMART_INFO", text(pd));
}
KT_U8 KT_PassThrough_ATA(KT_U8, KT_U16 pd, _ATA_PassThrough* command) {
    seam.sent["command"] = bytesOf(*command);
    command->Status = answers.driveStatus;
    return answer("KT_PassThrough_ATA", text(pd));
}
LISTS(KT_PD_GetExpanderInfo, _Exp_Info_Request, std::vector{answers.expander}, Link.Self.DevID)
static KT_U8 magic(const char* name, KT_U16 count, _Device_Magic* devices) {
    memset(devices[0].Magic, 'm', sizeof devices[0].Magic);
    return answer(name, text(count) + " from " + text(devices[0].ID) + " to " + text(devices[count - 1].ID));
}
KT_U8 KT_Tandem_GetHDMagic(KT_U8, KT_U16 count, _Device_Magic* devices) {
    return magic("KT_Tandem_GetHDMagic", count, devices);
}
KT_U8 KT_Tandem_GetVDMagic(KT_U8, KT_U16 count, _Device_Magic* devices) {
    return magic("KT_Tandem_GetVDMagic", count, devices);
}
NOTES3(KT_LocateArrayDevice, KT_U8, KT_U16, KT_U8)
NOTES1(KT_LD_Import, KT_U16)
NOTES1(KT_LD_Report, KT_U16)
}

namespace {
struct Query : SeamTest {
    Query() { answers = {}; }
};
} // namespace

TEST_F(Query, RefusesOptionsBeforeAnyCall) {
    static const char noObject[] = "-o : invalid object 'disk', should be VD, PD or Array\n";
    static const char noType[] = "Missing -t: please specify the type of the given element id\n";
    expectRefused({
        {doGet, "get -o disk", noObject},
        {doGet, "get -o array", "-o : array is not supported on this adapter\n"},
        {doGet, "get -o vd -i 65536", "-i : id is not a number\n"},
        {doInfo, "info -o disk", "-o : invalid object 'disk'\n"},
        {doInfo, "info -o array", "-o : array is not supported on this adapter\n"},
        {doInfo, "info -o vd -i x", "-i : id should be a number\n"},
        {doInfo, "info -o vd -i 255", "-i : invalid id 255\n"},
        {doInfo, "info -i 300 -i 300",
         "info: option -o is required\n-i : invalid id 300\nDuplicated option specified.\n"},
        {doEnclosure, "enc -o fan", "-o: invalid option 'fan'\n"},
        {doEnclosure, "enc -o enc -i one", "-i: invalid enclosure id 'one'\n"},
        {doEnclosure, "enc -o enc -i 255", "-i : invalid id 255\n"},
        {doEnclosure, "enc -o enc -i 65536", "-i : invalid id 65536\n"},
        {doEnclosure, "enc -o ele -e 0x1", "-e: invalid element id '0x1'\n"},
        {doEnclosure, "enc -o ele -e 255", "-e: element id should be less than 255\n"},
        {doEnclosure, "enc -o ele -e 256", "-e: element id should be less than 255\n"},
        {doEnclosure, "enc -o ele -e 255 -e 1", "Duplicated option specified.\n"},
        {doEnclosure, "enc -o ele -t disk", "-t: element type error:'disk'\n"},
        {doEnclosure, "enc -o ele -i 0 -e 1", noType},
        {doEnclosure, "enc -o elecfg", noType},
        {doStatus, "status -o vd", "-o : invalid object 'vd'\n"},
        {doStatus, "status -o pd -i 70000", "-i : id is not a number\n"},
        {doSmart, "smart -p 65536", "-p : invalid phyiscal disk id '65536'\n"},
        {doDevMap, "devmap -o p", "-o: Invalid object 'p'.\n"},
        {doDevMap, "devmap -o vd -i 0x", "-i: invalid object id '0x'.\n"},
        {doDevMap, "devmap -o vd -i 0x10000", "-i: invalid object id '0x10000'.\n"},
        {doLocate, "locate", "missing PD id\n"},
        {doLocate, "locate -a blink", "-a: invalid action 'blink'\nmissing PD id\n"},
        {doLocate, "locate -a blink -i 3", "-a: invalid action 'blink'\n"},
        {doLocate, "locate -i 65536", "-i: id should be a number\n"},
        {doImport, "import", "missing VD id\n"},
        {doImport, "import -i vd", "-i: id should be a number\n"},
        {doImport, "import -i 0x100000000000000000", "-i : invalid id 2147483647\n"},
        {doReport, "report -i 255", "-i : invalid id 255\n"},
    });
}

TEST_F(Query, ShowsWhateverVersionTheLibraryClaims) {
    seam.version = "4.\x1b[2J%s\n" + std::string(1000, '9');
    const std::string printed = run(doVersion, "ver").printed;
    EXPECT_NE(printed.find("RaidAPI Version: 4.?[2J%s?9999"), std::string::npos);
    EXPECT_EQ(printed.substr(printed.size() - 3), "99\n");
    EXPECT_LT(printed.size(), 330U);
}

TEST_F(Query, SaysThatThereIsNothing) {
    arrayBasedRaid = true;
    gAdapterInfo[0].MaxPM = gAdapterInfo[0].MaxExpander = 1;
    const std::tuple<CommandHandler, const char*, const char*> rows[] = {
        {doGet, "get -o pd", "\nNo PD is found\n"},
        {doGet, "get -o array -i 2", "\nNo array is found\n"},
        {doGet, "get -o vd", "\nNo VD is found\n"},
        {doGet, "get -o link", "\nNo VD is found\n"},
        {doInfo, "info -o pd", "No hard disk is found.\n"},
        {doInfo, "info -o vd", "No virtual disk is found.\n"},
        {doInfo, "info -o tandem", "No tandem virtual disk is found.\n"},
        {doInfo, "info -o array", "No array is found.\n"},
        {doInfo, "info -o blk", "No block disk is found.\n"},
        {doInfo, "info -o pm -i 2", "No port multiplexer is found.\n"},
        {doInfo, "info -o exp -i 2", "No expander is found.\n"},
        {doInfo, "info -o bbu", "No BBU is found.\n"},
        {doStatus, "status -o pd", "No hard disk is found.\n"},
        {doSsdDiagnostic, "ssd", "\nNo solid-state disk is found\n"},
    };
    for (const auto& [handler, line, printed] : rows) {
        expect(run(handler, line), printed);
    }
    addDisks(1); // no spare
    expect(run(doInfo, "info -o spare"), "No spare drive is found.\n");
    gAdapterInfo[0].MaxPM = gAdapterInfo[0].MaxExpander = 0;
    expect(run(doInfo, "info -o pm"), "PM is not supported on adapter 0.\n", 19);
    expect(run(doInfo, "info -o exp"), "Expander is not supported on adapter 0.\n", 19);
    expect(run(doInfo, "info -o bbu -i 1"), "\nUnable to get info of BBU 1 (error 16: Invalid BBU id)\n", 16);
}

// 255 stands for every disk only where nobody has typed it.
TEST_F(Query, ReadsTheSettingsOfDisk255) {
    expect(run(doGet, "get -o pd -i 255"), "\nNo PD is found\n");
    run(doGet, "get -o pd");
    EXPECT_EQ(seam.calls, (Calls{"KT_PD_GetConfig 255", "KT_PD_GetConfig"}));
    seam.statuses["KT_PD_GetConfig"] = KT_ERR_INVALID_PD;
    expect(run(doGet, "get -o hd"),
           "\nUnable to get configuration of hard disk 255 (error 9 : Invalid physical disk id).\n", 9);
    expect(run(doGet, "get -o hba -i 255"),
           "\nUnable to get configuration info of hba 255 (error 13: Invalid adapter id)\n", 13);
}

TEST_F(Query, LocatesImportsAndReportsWhatIsNamed) {
    EXPECT_EQ("Success to set PD 16 LED status \n", run(doLocate, "locate -i 0x10").printed);
    EXPECT_EQ("Success to set PD 3 LED status \n", run(doLocate, "locate -a OFF -i 3").printed);
    EXPECT_EQ("", run(doImport, "import -i 0xFE").printed);
    EXPECT_EQ("", run(doReport, "report --id 7").printed);
    EXPECT_EQ(
        (Calls{"KT_LocateArrayDevice 1 16 1", "KT_LocateArrayDevice 1 3 0", "KT_LD_Import 254", "KT_LD_Report 7"}),
        seam.calls);
}

TEST_F(Query, MapsAnyNumberOfDevicesAndOnlyFreeDisksUnasked) {
    addDisks(300, KT_HD_SATA);
    for (KT_U8 used = 1; used != 0; used = static_cast<KT_U8>(used << 1))
        if (used & KT_PD_NOT_FREE) seam.disks[used].Status = used;
    seam.disks[2].Status = KT_PD_SPARE_IN_USE | KT_PD_MEDIA_PATROL;
    EXPECT_EQ(0, run(doDevMap, "devmap -o pd").result);
    Calls magic;
    for (const std::string& call : seam.calls) {
        if (call.starts_with("KT_Tandem")) magic.push_back(call);
    }
    EXPECT_EQ((Calls{"KT_Tandem_GetHDMagic 256 from 0 to 260", "KT_Tandem_GetHDMagic 39 from 261 to 299"}), magic);
    seam.calls.clear();
    EXPECT_EQ("Device ID:           64\nMagic Number:        mmmmmmmmmmmmmmmmmmmmmmmm\n",
              run(doDevMap, "devmap -o PDx -i 0x40").printed);
    EXPECT_EQ((Calls{"KT_PD_GetHDInfo 64", "KT_Tandem_GetHDMagic 1 from 64 to 64"}), seam.calls);
    seam.statuses["KT_PD_GetHDRaidStatus 5"] = 4;
    expect(run(doDevMap, "devmap -o pd"), "Fail! (error 4: Resource not available).\n", 4);
    seam.hds.clear();
    EXPECT_EQ("No free physical disk is found.\n", run(doDevMap, "devmap -o pd").printed);
}

TEST_F(Query, AsksEachEnclosureForEachElement) {
    EXPECT_EQ(0, run(doEnclosure, "enc -o ele -t FAN").result);
    EXPECT_EQ((Calls{"KT_ENC_GetEnclosureInfo", "config 0 3 255", "element 0 3 0", "config 7 3 255", "element 7 3 0",
                     "element 7 3 1"}),
              seam.calls);
    seam.calls.clear();
    run(doEnclosure, "enc -o ele -t arydev -e 254 -i 254");
    run(doEnclosure, "enc -o elecfg -t dpl -i 3");
    EXPECT_EQ((Calls{"element 254 23 254", "config 3 12 255"}), seam.calls);
    EXPECT_EQ("\nNo element is found\n", run(doEnclosure, "enc -o ele -t alm -i 3").printed);
    // An enclosure that fails does not hide the next one.
    seam.statuses["config 0 18 255"] = 18;
    Outcome failed = run(doEnclosure, "enc -o elecfg -t vlt");
    EXPECT_EQ(18, failed.result);
    EXPECT_TRUE(
        failed.printed.starts_with("\nUnable to get enclosure info (error 18: Invalid enclosure element id)\nE"));
}

TEST_F(Query, ReadsSmartRecordsWithinTheirFields) {
    addDisks(2, KT_HD_SATA);
    seam.hds[1].HDType = KT_HD_SATA | KT_HD_SAS;
    answers.driveStatus = 'O';
    EXPECT_EQ("SMART STATUS RETURN: OK.\n", run(doSmart, "smart -p 0").printed);
    EXPECT_EQ(std::string("\xDA\0\0\x4F\xC2\0\xB0\0\0\0\0\0\0\0\0\0", 16), seam.sent["command"]);
    EXPECT_EQ("SAS PD 1 has not SMART information\n", run(doSmart, "smart -p 1").printed);
    answers.smart.AttributeCount = 255;
    for (auto& attribute : answers.smart.Attributes) {
        attribute = {0xC2, 1, 2, 3, 9, {}, UINT64_MAX, {}};
        memset(attribute.Name, '%', sizeof attribute.Name);
    }
    answers.smart.Attributes[0] = {5, 255, 0, 255, KT_SMART_FAILED_BEFORE, {}, 0x29, {}};
    answers.smart.Attributes[1].Status = KT_SMART_FAILING;
    answers.driveStatus = 'F';
    std::string expected = "SMART STATUS RETURN: NotOK.\n\nSmart Info\n"
                           "ID\tAttribute Name\t\tCurrent\tWorst\tThreshhold\tRawValue\tStatus\n"
                           "05\tUnknown_Attribute   \t255\t0\t255     \t000000000029\tIn the past\n";
    for (int i = 1; i < 30; ++i) {
        expected += "C2\t" + std::string(32, '%') + "\t1\t2\t3       \tFFFFFFFFFFFF\t";
        expected += i == 1 ? "Failing now\n" : "Unknown\n";
    }
    EXPECT_EQ(expected, run(doSmart, "smart -p 0").printed);
    seam.statuses["KT_PD_GetHDInfo_Ext"] = 19;
    EXPECT_EQ(expected, run(doSmart, "smart -p 0").printed);
    EXPECT_EQ("Unable to get info of PD 9 (error 9 : Invalid physical disk id)\n", run(doSmart, "smart -p 9").printed);
}

TEST_F(Query, ListsTheLinksOfVirtualDisks) {
    seam.lds.resize(3);
    seam.lds[1].ID = 1;
    seam.lds[2].ID = 2;
    seam.statuses["KT_VDHDD_GetLink 2"] = 1;
    EXPECT_EQ("VD 0 ATA is unlinked.\nVD 1 ATA link to PD 6.\nVD 2 ATA is unlinked.\n",
              run(doGet, "get -o link").printed);
}

TEST_F(Query, ShowsNoMorePhysThanAnExpanderRecordHolds) {
    gAdapterInfo[0].MaxExpander = 1;
    answers.expander.Link.Parent = {3, KT_LINK_EXPANDER, 255, {0, 1, 2, 3, 4, 5, 6, 255}, {1}, 0, {}};
    answers.expander.Link.Self = {9, 0, 1, {27}, {}, 2, {}};
    auto list = [](int, char**, _cmd_struct*) -> int { return getExpInfo(9); };
    std::string printed = run(list, "list").printed;
    EXPECT_NE(std::string::npos, printed.find("\nLinks to:            expander 3, port [0, 1, 2, 3, 4, 5, 6, 255] "
                                              "on SAS addr 0100000000000000\n"
                                              "From parent:         port [27] on SAS addr 0000000000000000\n"));
}
