#include <gtest/gtest.h>

#include "tests/seam/commands.h"
#include "tests/seam/seam.h"
#include "tests/support/printed.h"

namespace {

struct Maintenance : SeamTest {
    Maintenance() {
        gAdapterInfo[0].LogicalDriverMode = KT_MODE_TANDEM_SAFE;
        for (unsigned i = 0; i < sizeof seam.nvsram.Data; ++i) {
            seam.nvsram.Data[i] = static_cast<KT_U8>(i);
        }
    }
};
using Nvsram = Maintenance;
using Register = Maintenance;
using Tandem = Maintenance;

std::string dumpOf(KT_U32 length) {
    return printedBy([&] { Nvsram_Byte_PrintInfo(seam.nvsram.Data, length, 0x1F0); });
}

std::string range(unsigned first, unsigned last) {
    std::string line;
    for (unsigned i = first; i <= last; ++i) {
        char byte[8];
        snprintf(byte, sizeof byte, "0x%02x\t", i);
        line += byte;
        if (i % 8 == 7) line += "\n";
    }
    return line;
}

} // namespace

TEST_F(Nvsram, DumpsEightALineInGroupsOfSixtyFour) {
    const std::string first = "nvsram offset at : 0x000001f0\n";
    EXPECT_EQ(first + "0x00\t", dumpOf(1));
    EXPECT_EQ(first + "0x00\t0x01\t0x02\t0x03\t0x04\t0x05\t0x06\t0x07\t\n", dumpOf(8));
    EXPECT_EQ(first + range(0, 63) + "\n", dumpOf(64));
    EXPECT_EQ(first + range(0, 63) + "\nnvsram offset: 0x00000230\n0x40\t", dumpOf(65));
    EXPECT_EQ(first + range(0, 63) + "\nnvsram offset: 0x00000230\n" + range(64, 127) +
                  "\nnvsram offset: 0x00000270\n" + range(128, 191) + "\nnvsram offset: 0x000002b0\n" +
                  range(192, 255) + "\n",
              dumpOf(256));
}

TEST_F(Nvsram, ReadsInTransfersOf256Bytes) {
    EXPECT_EQ("nvsram offset at : 0x00000000\n0x00\t", run(doNvsramRW, "nvsram -a read").printed);
    EXPECT_EQ(0, run(doNvsramRW, "nvsram -a READ -c 256 -s 0X10").result);
    std::string printed = run(doNvsramRW, "nvsram -a read -c 257 -s 16").printed;
    EXPECT_EQ("\nnvsram offset at : 0x00000110\n0x00\t", printed.substr(printed.size() - 36));
    EXPECT_EQ(0, run(doNvsramRW, "nvsram -a read -c 2 -s 4294967294").result);
    EXPECT_EQ((Calls{"KT_Flash_NVSRAM 0 1 0 1", "KT_Flash_NVSRAM 0 1 16 256", "KT_Flash_NVSRAM 0 1 16 256",
                     "KT_Flash_NVSRAM 0 1 272 1", "KT_Flash_NVSRAM 0 1 4294967294 2"}),
              seam.calls);
    EXPECT_EQ(bytesOf(_NVSRAM_Data{4294967294, 2, {}, {}}), seam.sent["nvsram"]);
}

TEST_F(Nvsram, WritesThePattern) {
    EXPECT_EQ("\n256 bytes have been written into nvsram!\n\n1 bytes have been written into nvsram!\n",
              run(doNvsramRW, "nvsram -a write -c 257").printed);
    EXPECT_EQ((Calls{"KT_Flash_NVSRAM 0 0 0 256", "KT_Flash_NVSRAM 0 0 256 1"}), seam.calls);
    EXPECT_EQ(std::string(256, 0x5A), seam.sent["nvsram"].substr(16));
    run(doNvsramRW, "nvsram -a write -p 0x00ff");
    EXPECT_EQ(std::string(256, '\xff'), seam.sent["nvsram"].substr(16));
}

TEST_F(Nvsram, RefusesOptions) {
    expectRefused(doNvsramRW, "nvsram",
                  {{"-a erase", "-a : invalid action 'erase'\n"},
                   {"", "nvsram: option -a is required\n\nlong help\n"},
                   {"-s 4294967296", "-s : invalid address offset '4294967296'\n"},
                   {"-s ff", "-s : invalid address offset 'ff'\n"},
                   {"-c 4294967296", "-c : invalid byte counts '4294967296'\n"},
                   {"-c 0", "Number of bytes should be > 0\n"},
                   {"-c 0 -c 5", "Duplicated option specified.\n"},
                   {"-p 0x100 -p 0x5", "Duplicated option specified.\n"},
                   {"-p 5A", "-p: invalid hex pattern '5A'\n"},
                   {"-p 0x100", "-p: hex pattern should be 8 bit \n"},
                   {"-p 0x1000000000000005A", "-p: hex pattern should be 8 bit \n"},
                   {"-a write -s 4294967295 -c 2", "-c : invalid byte counts '2'\n"}});
}

TEST_F(Register, ReadsAndWrites) {
    seam.reg = UINT64_MAX;
    EXPECT_EQ("0 address register value is -1.\n", run(doRegister, "register").printed);
    EXPECT_EQ((std::string{8, 16} + std::string(14, '\0')), seam.sent["register"]);
    seam.reg = 1;
    EXPECT_EQ("1 address register value is 1.\n", run(doRegister, "register -a READ -d 0x1 -t MailBox").printed);
    EXPECT_EQ("Write 1 address register successfully.\n",
              run(doRegister, "register -a write -d 1 -v 0xFFfffffffffffffe").printed);
    EXPECT_EQ((std::string{8, 16, 0, 0, 0, 0, 0, 0, '\xfe'} + std::string(7, '\xff')), seam.sent["register"]);
    EXPECT_EQ(
        (Calls{"KT_Adapter_Read_Register 0 0 0", "KT_Adapter_Read_Register 0 0 1", "KT_Adapter_Write_Register 0 0 1"}),
        seam.calls);
}

TEST_F(Register, RefusesOptions) {
    expectRefused(doRegister, "register",
                  {{"-t other", "-t : invalid register type 'other'\n"},
                   {"-a erase", "-t : invalid operation type 'erase'\n"},
                   {"-v ff", "-v : invalid value 'ff'\n"},
                   {"-v 18446744073709551616", "-v : invalid value '18446744073709551616'\n"},
                   {"-a write -d 2", "-v is must in the write register command.\n"},
                   {"-d 2 -v 1", "-v is must not be set in the read register command.\n"},
                   {"-d 2", "address must be 0 or 1. Now is -d 2.\n"}});
}

TEST_F(Tandem, AddsCountsAndDeletes) {
    EXPECT_EQ("", run(doTandem, "tandem -o delete -o EMPTY -d 65535 -a 18446744073709551615 -l 2").printed);
    EXPECT_EQ(bytesOf(_Tandemix_Entry_Request{{0, 2, 0, 1, 0, 0, {}}, UINT64_MAX, 2}), seam.sent["entry"]);
    run(doTandem, "tandem -o empty -d 0");
    EXPECT_EQ(bytesOf(_Tandemix_Entry_Request{{0, 2, 0, 1, 0, 0, {}}, 0, 0}), seam.sent["entry"]);
    EXPECT_EQ("Tandemix table total enties count 65535\nTandemix table remian enties count 12\n",
              run(doTandem, "tandem -o delete -o count -d 1").printed);
    EXPECT_EQ("", run(doTandem, "tandem -o Delete --Tandemix 1").printed);
    EXPECT_EQ((Calls{"KT_Tandemix_AddFSEntries 0 65535 0", "KT_Tandemix_AddFSEntries 0 0 0",
                     "KT_Tandemix_GetEntriesTableInfo 0 1", "KT_Tandemix_RemoveEntriesTable 0 1"}),
              seam.calls);
}

TEST_F(Tandem, RefusesOptionsBeforeItAsksForSupport) {
    expectRefused(doTandem, "tandem",
                  {{"-o system", "-o : invalid object 'system', should be empty or delete\n"},
                   {"-a 0x1", "-a : address is not a number\n"},
                   {"-l 18446744073709551616", "-l : length is not a number\n"},
                   {"-o empty -d 1 --length 5", "-l : length is not a number\n"},
                   {"-d 65536", "-d : Tandemix ID is not a number\n"},
                   {"-o empty", "tandem: option -d is required\n"}});
    gAdapterInfo[0].LogicalDriverMode = static_cast<KT_U16>(~(KT_MODE_TANDEM_SAFE | KT_MODE_TANDEM_CAPACITY));
    expectRefused(doTandem, "tandem",
                  {{"-o count -d 0", "Tandemix is not supported.\n"},
                   {"", "Tandemix is not supported.\n"},
                   {"-d x", "-d : Tandemix ID is not a number\n"}});
}
