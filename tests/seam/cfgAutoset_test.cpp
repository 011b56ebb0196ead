#include <unistd.h>

#include "Functions/restore_cfg/assignment.h"
#include "tests/seam/cfg.h"

namespace {
const char assignment[] = "# addresses\n[PORT_GROUP]=1, 0\n"
                          "[SAS_ADDRESS_START]=500A1F40:00000010\n[SAS_ADDRESS_END]=500A1F40:FFFFFFFF\n"
                          "[SAS_ADDRESS_CURRENT]=500A1F40:0FFFFFFF  # next\n"
                          "[SERIALNUMBER_START]=TARN0000010000000001\n[SERIALNUMBER_END]=TARN0000010000000099\n"
                          "[SERIALNUMBER_CURRENT]=TARN0000010000000009\n";
struct Autoset : Cfg {
    Outcome autoset() { return runOn("restore_cfg -f c.txt --autoset"); }
};
} // namespace

TEST_F(Autoset, AssignsAndAdvances) {
    write("c.txt", configuration(""));
    write("setcfg.txt", assignment);
    fs::permissions("c.txt", fs::perms::owner_read);
    EXPECT_EQ("To autoset SAS Addr and Serial Number,setcfg.txt should be configed manually.\n\n"
              "KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n",
              autoset().printed);
    EXPECT_EQ(0, memcmp("\x50\x0A\x1F\x40\x0F\xFF\xFF\xFF", written().SAS_Address[1], 8));
    EXPECT_EQ(0, memcmp("\x50\x0A\x1F\x40\x10\0\0", written().SAS_Address[0], 8));
    EXPECT_EQ("TARN0000010000000009", serialOf(written()));
    EXPECT_EQ(fs::perms::owner_read, fs::status("c.txt").permissions());
    EXPECT_EQ(2, files());
    // The next adapter goes on from there.
    EXPECT_EQ(1, autoset().result);
    EXPECT_EQ("TARN0000010000000010", serialOf(written()));
    EXPECT_TRUE(has(fileText("setcfg.txt"), "[SERIALNUMBER_CURRENT]=TARN0000010000000011\n"));
}

TEST_F(Autoset, SerialNumbersGoOnWithoutLetters) {
    for (const auto& [counter, next] : std::vector<std::pair<KT_U64, KT_U64>>{
             {0x8, 0x9}, {0x9, 0x10}, {0xA0, 0x100}, {0x1999, 0x2000}, {0x9A9, 0x1000}, {0x9999999999, 0x999999999A}}) {
        EXPECT_EQ(next, nextSerialCounter(counter)) << std::hex << counter;
    }
}

TEST_F(Autoset, NothingIsFlashedWhenAFileCannotBeRewritten) {
    const std::string opening = "To autoset SAS Addr and Serial Number,setcfg.txt should be configed manually.\n\n"
                                "KTCLI_RAID_CONFIG End\n";
    const std::string longer = std::string(1000, '#') + "\n";
    const std::tuple<std::string, std::string, const char*> cases[] = {
        {configuration("") + longer, assignment, "Error: Failed open c.txt !\n"},
        {configuration(""), assignment + longer, "Error:Failed open setcfg.txt \n"},
    };
    for (const auto& [file, numbers, printed] : cases) {
        write("c.txt", file);
        write("setcfg.txt", numbers);
        FileLimit limit(1000);
        expect(autoset(), opening + printed, 1);
        EXPECT_EQ(READ, seam.calls.back());
        EXPECT_EQ(file, fileText("c.txt"));
        EXPECT_EQ(numbers, fileText("setcfg.txt"));
        EXPECT_EQ(2, files());
    }
}

// What the ranges no longer reach stays the adapter's own, also when the file is another adapter's.
TEST_F(Autoset, StartsAtTheStartAndStopsAtTheEnd) {
    write("c.txt", configuration(""));
    const std::string range = "[PORT_GROUP]=0,1\n[SAS_ADDRESS_START]=00000000:00000005\n"
                              "[SAS_ADDRESS_END]=00000000:00000008\n[SERIALNUMBER_START]=ABCDEFGHIJ00000000A0\n"
                              "[SERIALNUMBER_END]=ABCDEFGHIJ0000000100\n";
    gAdapterInfo[0].DevID = 0x4734;
    write("setcfg4.txt", range + "[SAS_ADDRESS_CURRENT]=\n[SERIALNUMBER_CURRENT]=\n");
    autoset();
    EXPECT_EQ(range + "[SAS_ADDRESS_CURRENT]=00000000:00000007\n[SERIALNUMBER_CURRENT]=ABCDEFGHIJ0000000100\n",
              fileText("setcfg4.txt"));
    EXPECT_EQ(5, written().SAS_Address[0][7]);
    write("setcfg4.txt", range + "[SAS_ADDRESS_CURRENT]=00000000:00000007");
    autoset();
    EXPECT_EQ(8, written().SAS_Address[1][7]);
    EXPECT_TRUE(fileText("setcfg4.txt").ends_with("=00000000:00000009\n[SERIALNUMBER_CURRENT]=ABCDEFGHIJ0000000100\n"));
    // One address is left for two ports: none is given; the serial number still is, and then that is gone, too.
    memcpy(page.Serial_Num, "OWN0000007", 10);
    memset(page.SAS_Address, 0xAB, sizeof page.SAS_Address);
    std::string numbers =
        range + "[SERIALNUMBER_CURRENT]=ABCDEFGHIJ0000000100\n[SAS_ADDRESS_CURRENT]=00000000:00000008";
    write("setcfg4.txt", numbers);
    EXPECT_TRUE(has(autoset().printed, "Restore_Warning: No available count for SAS Address!(setcfg.txt)\n"));
    EXPECT_EQ("ABCDEFGHIJ0000000100", serialOf(written()));
    numbers.replace(numbers.find("100\n[SAS_ADDRESS_C"), 3, "101");
    EXPECT_EQ(numbers, fileText("setcfg4.txt"));
    EXPECT_TRUE(has(autoset().printed, "Restore_Warning: No available count for Serial Number!(setcfg.txt)\n"));
    EXPECT_EQ(serialOf(page), serialOf(written()));
    EXPECT_EQ(0, memcmp(page.SAS_Address, written().SAS_Address, sizeof page.SAS_Address));
    EXPECT_TRUE(has(fileText("c.txt"), "[SERIAL_NUMBER]=" + serialOf(page) + " # serial\n"));
    EXPECT_TRUE(has(fileText("c.txt"), "[SASADDRESS]= ABABABAB:ABABABAB # blanks\n"));
    EXPECT_EQ(numbers, fileText("setcfg4.txt"));
}

TEST_F(Autoset, RefusesItsFile) {
    const std::string changes = R"(
[PORT_GROUP] : [PORTS] => Restore_Error: Unknown option!(setcfg.txt)
[PORT_GROUP] : PORT_GROUP => Restore_Error: Error grammar in setcfg.txt!
[PORT_GROUP]= : [PORT_GROUP] 0 => Restore_Error: Error grammar in setcfg.txt!
[PORT_GROUP]=1, 0 :  => Did you config setcfg.txt file ?
START]=500A1F40:00000010 : START]=00000000:00000000 => Did you config setcfg.txt file ?
1, 0 : 1,{x|8} => Restore_Error: port ID in PORT_GROUP isn't digital!(setcfg.txt)
1, 0 : 1,1 => Restore_Error:Port count 1 in setcfg.txt \ndon't match with adapter port number:2!(setcfg.txt)
START]=5 : START]= => Restore_Error: length of SAS_ADDRESS_START isn't 17!(setcfg.txt)
START]=500A1F40: : START]=500A1F40. => Restore_Error: The 9th bit of SAS_ADDRESS_START isn't ':'!(setcfg.txt)
END]=500A1F40: : END]=500A1F40. => Restore_Error: 9th bit of SAS_ADDRESS_END isn't ':'!(setcfg.txt)
CURRENT]=5 : CURRENT]=X => Restore_Error: First 8bits of SAS_ADDRESS_CURRENT isn't  hex digit!(setcfg.txt)
0FFFFFFF : 0FFFFFFG => Restore_Error: Last 8bits of SAS_ADDRESS_CURRENT isn't  hexadecimal digit!(setcfg.txt)
START]=TARN : START]=TAR => Restore_Error: length of SERIALNUMBER_START isn't 20!(setcfg.txt)
START]=TARN0000010 : START]=TARN000001G => Restore_Error: Last 10bits of SERIALNUMBER_START isn't a hex digital!(setcfg.txt)
END]=TARN : END]=BARN => Restore_Error: First 10bits of SERIALNUMBER_END isn't euqal with SERIALNUMBER_START!(setcfg.txt)
0000000009 : 000000000A => Restore_Error: Last 10bits of SERIALNUMBER_CURRENT isn't digital!(setcfg.txt)
)";
    write("c.txt", configuration(""));
    const std::string opening = "To autoset SAS Addr and Serial Number,setcfg.txt should be configed manually.\n\n";
    EXPECT_EQ(opening + "Error:Failed open setcfg.txt \n", autoset().printed);
    for (const TableRow& row : rowsOf(changes)) {
        const size_t colon = row.line.find(" : ");
        std::string text = assignment;
        text.replace(text.find(row.line.substr(0, colon)), colon, row.line.substr(colon + 3));
        write("setcfg.txt", text);
        expect(autoset(), opening + row.message, 1);
        EXPECT_EQ(READ, seam.calls.back());
        EXPECT_EQ(text, fileText("setcfg.txt"));
    }
    write("setcfg.txt", assignment);
    write("c.txt", "[PORT CONFIG][END][RAID CONFIG][END]");
    EXPECT_EQ(opening + "KTCLI_RAID_CONFIG End\nError:Didn't find the Serial number.\n", autoset().printed);
    // The adapter keeps what it has, and the next one gets the same, when the flash refuses.
    write("c.txt", configuration(""));
    seam.statuses = {{WRITE, 5}};
    EXPECT_EQ(5, autoset().result);
    EXPECT_EQ(assignment, fileText("setcfg.txt"));
    EXPECT_EQ(2, files());
    // The flash has its page, and the file cannot follow.
    seam.statuses.clear();
    seam.flashed = [] {
        fs::remove("setcfg.txt");
        fs::create_directories("setcfg.txt/full");
    };
    expect(autoset(),
           opening + "KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n"
                     "Error:Failed open setcfg.txt \n",
           1);
}
