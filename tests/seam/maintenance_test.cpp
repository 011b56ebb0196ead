#include "Functions/nvsram/nvsram.h"
#include "tests/seam/seam.h"
#include "tests/support/printed.h"

namespace {

struct Maintenance : SeamTest {
    Maintenance() {
        gAdapterInfo[0].LogicalDriverMode = KT_MODE_TANDEM_SAFE;
        for (unsigned i = 0; i < sizeof seam.nvsram.Data; ++i)
            seam.nvsram.Data[i] = static_cast<KT_U8>(i);
    }
};

std::string range(unsigned first, unsigned last) {
    std::string line;
    for (unsigned i = first; i <= last; ++i)
        line +=
            std::string("0x") + "0123456789abcdef"[i / 16] + "0123456789abcdef"[i % 16] + (i % 8 == 7 ? "\t\n" : "\t");
    return line;
}

} // namespace

TEST_F(Maintenance, NvsramDumpsEightALineInGroupsOfSixtyFour) {
    EXPECT_EQ("nvsram offset at : 0x000001f0\n" + range(0, 63) + "\nnvsram offset: 0x00000230\n" + range(64, 127) +
                  "\nnvsram offset: 0x00000270\n" + range(128, 191) + "\nnvsram offset: 0x000002b0\n" +
                  range(192, 255) + "\n",
              printedBy([] { Nvsram_Byte_PrintInfo(seam.nvsram.Data, 256, 0x1F0); }));
}

TEST_F(Maintenance, NvsramReadsInTransfersOf256Bytes) {
    expect("nvsram -a read", "nvsram offset at : 0x00000000\n0x00\t");
    EXPECT_EQ(0, run("nvsram -a READ -c 256 -s 0X10").result);
    EXPECT_TRUE(printed("nvsram -a read -c 257 -s 16").ends_with("\nnvsram offset at : 0x00000110\n0x00\t"));
    EXPECT_EQ(0, run("nvsram -a read -c 2 -s 4294967294").result);
    EXPECT_EQ((Calls{"KT_Flash_NVSRAM 1 0 1", "KT_Flash_NVSRAM 1 16 256", "KT_Flash_NVSRAM 1 16 256",
                     "KT_Flash_NVSRAM 1 272 1", "KT_Flash_NVSRAM 1 4294967294 2"}),
              seam.calls);
    EXPECT_EQ(bytesOf(_NVSRAM_Data{4294967294, 2, {}, {}}), seam.sent["KT_Flash_NVSRAM"]);
}

TEST_F(Maintenance, NvsramWritesThePattern) {
    expect("nvsram -a write -c 257",
           "\n256 bytes have been written into nvsram!\n\n1 bytes have been written into nvsram!\n");
    EXPECT_EQ((Calls{"KT_Flash_NVSRAM 0 0 256", "KT_Flash_NVSRAM 0 256 1"}), seam.calls);
    EXPECT_EQ(std::string(256, 0x5A), seam.sent["KT_Flash_NVSRAM"].substr(16));
    run("nvsram -a write -p 0x00ff");
    EXPECT_EQ(std::string(256, '\xff'), seam.sent["KT_Flash_NVSRAM"].substr(16));
}

TEST_F(Maintenance, RegisterReadsAndWrites) {
    seam.reg = UINT64_MAX;
    expect("register", "0 address register value is -1.\n");
    EXPECT_EQ((std::string{8, 16} + std::string(14, '\0')), seam.sent["KT_Adapter_Read_Register"]);
    seam.reg = 1;
    expect("register -a READ -d 0x1 -t MailBox", "1 address register value is 1.\n");
    expect("register -a write -d 1 -v 0xFFfffffffffffffe", "Write 1 address register successfully.\n");
    EXPECT_EQ((std::string{8, 16, 0, 0, 0, 0, 0, 0, '\xfe'} + std::string(7, '\xff')),
              seam.sent["KT_Adapter_Write_Register"]);
    EXPECT_EQ((Calls{"KT_Adapter_Read_Register 0 0", "KT_Adapter_Read_Register 0 1", "KT_Adapter_Write_Register 0 1"}),
              seam.calls);
}

TEST_F(Maintenance, TandemAddsCountsAndDeletes) {
    expect("tandem -o delete -o EMPTY -d 65535 -a 18446744073709551615 -l 2", "");
    EXPECT_EQ(bytesOf(_Tandemix_Entry_Request{{0, 2, 0, 1, 0, 0, {}}, UINT64_MAX, 2}),
              seam.sent["KT_Tandemix_AddFSEntries"]);
    run("tandem -o empty -d 0");
    EXPECT_EQ(bytesOf(_Tandemix_Entry_Request{{0, 2, 0, 1, 0, 0, {}}, 0, 0}), seam.sent["KT_Tandemix_AddFSEntries"]);
    expect("tandem -o delete -o count -d 1",
           "Tandemix table total enties count 65535\nTandemix table remian enties count 12\n");
    expect("tandem -o Delete --Tandemix 1", "");
    EXPECT_EQ((Calls{"KT_Tandemix_AddFSEntries 65535 0", "KT_Tandemix_AddFSEntries 0 0",
                     "KT_Tandemix_GetEntriesTableInfo 1", "KT_Tandemix_RemoveEntriesTable 1"}),
              seam.calls);
}
