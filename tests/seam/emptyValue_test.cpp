// An empty value, which an unset variable or a second tab leaves behind, is no number for a command that changes
// something; for one that only looks it is 0.
#include "tests/seam/activity.h"
#include "tests/seam/commands.h"

struct EmptyValue : SeamTest {
    EmptyValue() { layOut(); }
};
using WideNumber = EmptyValue;

// The blank and the tab behind an option hold an empty word between them.
TEST_F(EmptyValue, ChangesNothing) {
    arrayBasedRaid = true;
    gAdapterInfo[0].AdvancedFeatures = 0;
    expectRefused({
        {doDelete, "delete -o vd --waiveconfirmation -i \t", "-i : invalid id ''\n"},
        {doWipe, "wipe -f -d \t", "-d : invalid PD id ''\n"},
        {doAssign, "assign -d \t", "-d : invalid disk id ''\n"},
        {doAssign, "assign -o array -d 1 -a \t", "-a : invalid VD id or array id''\n"},
        {doInit, "init -l \t", "-l : VD id should be a number\n"},
        {doCC, "cc -l \t", "-l : invalid vd ''\n"},
        {doRebuild, "rebuild -d 9 -l \t", "-l : VD id should be a number\n"},
        {doRebuild, "rebuild -l 2 -d \t", "-d:invalid PD IDs \n"},
        {doRebuildV2, "rebuild -d 9 -l \t", "-l : Array id should be a number\n"},
        {doRebuildV2, "rebuild -l 2 -d 8,,9", "-d:invalid PD IDs 8,,9\n"},
        {doMP, "mp -d \t", "-d : invalid pd id\n"},
        {doCopyBack, "copyback -a pause -l \t", "-l : Array id should be a number\n"},
        {doPause, "pause -c \t", "-c : id should be a number\n"},
        {doMigrate, "migrate -r 5 -l \t", "-l : invalid VD id ''\n"},
        {doMigrate, "migrate -l 2 -d ,", "-d : invalid PD ID ','\n"},
        {doMigrateV2, "migrate -d 1,2,3 -l \t", "-l : invalid VD id ''\n"},
        {doMigrateV2, "migrate -l 2 -d \t", "-d : invalid PD ID ''\n"},
        {doMigrateV2, "migrate -l 2 -d 1,2,3,9 -q \t", "-q : invalid number of parity disks ''\n"},
        {doCreate, "create -r 0 -d \t", "-d : invalid PD ID ''\n"},
        {doCreate, "create -r 0 -d 1,,2", "-d : invalid PD ID '1,,2'\n"},
        {doCreate, "create -r 0 -d 8,9 -b \t", "-b : invalid stripe block size ''.\n"},
        {doCreate, "create -r 0 -d 8,9 -s \t", "-s : invalid size ''.\n"},
        {doCreate, "create -r 0 -d 8,9 -g \t", "-g : invalid giga byte rounding scheme ''\n"},
        {doCreateV2, "create -a \t", "-a : invalid array id ''\n"},
        {doCreateV2, "create -a 2 -l \t", "-l : invalid slot number ''\n"},
        {doCreateV2, "create -a 2 -b \t", "-b : invalid stripe block size ''.\n"},
        {doCreateV2, "create -o array -r 0 -d \t", "-d : no PD ID is specified.\n"},
        {doCreateV2, "create -o array -r 0 -d 8,9,", "-d : invalid PD IDs '8,9,'\n"},
        {doImport, "import -i \t", "-i: id should be a number\n"},
        {doReport, "report -i \t", "-i: id should be a number\n"},
        {doFlash, "flash -a erase -t bios -i \t", "-i : invalid adapter id ''.\n"},
        {doNvsramRW, "nvsram -a write -s \t", "-s : invalid address offset ''\n"},
        {doNvsramRW, "nvsram -a write -c \t", "-c : invalid byte counts ''\n"},
        {doNvsramRW, "nvsram -a write -p \t", "-p: invalid hex pattern ''\n"},
        {doRegister, "register -a write -v 1 -d \t", "-d : invalid address ''\n"},
        {doRegister, "register -a write -v \t", "-v : invalid value ''\n"},
        {doAESOp, "aesop -o changepwd -p a -w b -e \t", "-i : invalid entry id ''\n"},
        {doAESEntry, "aesentry -o setcfg -p a -k b -i \t", "-i : invalid id ''\n"},
        {doAESPort, "aesport -o dismount -i \t", "-i : invalid port id ''\n"},
        {doAESPort, "aesport -o mount -i 1 -p a -e \t", "-e : invalid entry id ''\n"},
        {doForceOnline, "forceonline -i \t", "-i : invalid id ''\n"},
        {doForceOnline, "forceonline -i 1 -p \t", "-p : invalid percentage ''\n"},
    });
}

TEST_F(EmptyValue, IsZeroForThoseWhoOnlyLook) {
    run(doLocate, "locate -a on -i \t");
    run(doGet, "get -o pd -i \t");
    EXPECT_EQ(seam.calls, (Calls{"KT_LocateArrayDevice 1 0 1", "KT_PD_GetConfig 0"}));
    EXPECT_EQ(run(doEnclosure, "enc -o enc -i \t").result, 0);
    EXPECT_EQ(run(doGetMaxsize, "maxcreatesize -r 6 -d 1,2,3 -q \t").printed,
              "Number of parity disks should be at least 2 and less than 3.\n");
    EXPECT_EQ(run(doGetMaxsize, "maxcreatesize -r 0 -d 0,,4 -g \t").result, 0);
}

// What does not fit its field is a number all the same, and gets the message of its range.
TEST_F(WideNumber, GetsTheMessageOfItsRange) {
    expectRefused({
        {doCreate, "create -r 6 -d 1,2,3 -q 300", "Number of parity disks should be at least 2 and less than 3.\n"},
        {doCreate, "create -r 5 -d 1,2,3 -q 300", "RAID mode RAID5 don't support the setting of parity disks.\n", 19},
        {doCreate, "create -r 60 -d 1,2,3,4,5,6 -q 99999999998",
         "RAID60 need even number of parity disks between 4 and 6.\n"},
        {doGetMaxsize, "maxcreatesize -r 60 -d 1,2,3,4,5,6 -q 300",
         "# of parity disks (300) should be less than # of total disks (6).\n"},
        {doRegister, "register -d 99999999999", "address must be 0 or 1. Now is -d 2147483647.\n"},
        {doEnclosure, "enc -o enc -i 99999999999", "-i : invalid id 2147483647\n"},
    });
    array().VDSlotCount = 4;
    expect(run(doCreateV2, "create -a 2 -l 300"), "Invalid slot number.  Total slot is 4\n", 1);
    const struct {
        const char *words, *vd, *array;
    } migrations[] = {
        {"-r 6 -d 1,2,3,9 -q 300", "Number of parity disks should be at least 2 and less than 4.\n",
         "Number of parity disks should be at between 2 and 3.\n"},
        {"-d 1,2,3,9 -q 300", "-q : invalid number of parity disks '300'\n",
         "-q : invalid number of parity disks '300'\n"},
        {"-a size -r 6 -d 1,2,3,9 -q 300", "-q : invalid number of parity disks '300'\n",
         "-q : invalid number of parity disks '300'\n"},
    };
    for (const auto& row : migrations) {
        seam.calls.clear();
        expect(run(doMigrate, std::string("migrate -l 2 ") + row.words), row.vd, 1);
        expect(run(doMigrateV2, std::string("migrate -l 2 ") + row.words), row.array, 1);
        for (const std::string& call : seam.calls) {
            EXPECT_EQ(call.find("igrat"), call.npos) << call;
        }
    }
}
