#include "frame.h"

#include <numeric>

// Disk 0 a solid state one, 1 the same, 2 a spinning one, 3 a solid state one that speaks SAS.
static const char SOLID_STATE_LAB[] = R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
  {"disks": [{"count": 2, "type": "SATA SSD", "size": "480GB", "model": "Model A", "firmware": "1.0"},
             {"type": "SATA", "size": "1TB"}, {"type": "SAS SSD", "size": "1TB"}]}]})";
static const KT_U64 HALF = 480000000; // a sector in the middle of disk 0

struct SolidStateDisks : LabTest<SOLID_STATE_LAB> {};

// What a self-test is like after so many seconds and the action: how far, its result, when it ended, and where it met
// an error.
static std::string test(KT_U16 pd, KT_U8 action = KT_SSD_ASK, uint64_t seconds = 0) {
    advance(seconds);
    _SSD_Diagnostic found = {};
    found.Action = action;
    if (const KT_U8 error = KT_SSD_Diagnostic(0, pd, &found)) return "error " + std::to_string(error);
    static const char* const STATES[] = {"never", "running", "passed", "failed", "aborted"};
    const std::string seen = STATES[found.State] + (" " + std::to_string(found.Percentage)) + "% " +
                             std::to_string(found.Result) + " " + std::to_string(found.PowerOnHours) + " h";
    return found.FirstErrorLBA == KT_SSD_NO_LBA ? seen : seen + ", LBA " + std::to_string(found.FirstErrorLBA);
}

static std::string versions() {
    return textOf(pdInfo(0, 0).FWVersion) + ", " + textOf(pdInfo(0, 1).FWVersion);
}

static KT_U8 download(KT_U16 pd, const std::string& file, KT_U8 mode = KT_MICROCODE_NOW, KT_U16 first = 0,
                      bool ends = true) {
    return sendPages(
        file, [&](_Flash_Data* page) { return KT_Download_SSD_Microcode(0, pd, mode, page); }, first, ends);
}

static std::string microcode(const char* name, const char* version) {
    return makeMicrocode(name, version, 500000);
}

TEST_F(SolidStateDisks, TellTheirLifeInASoundPage) {
    _SSD_Smart_Data page = {};
    succeed({ageDisk(0, 0, "reallocated", 258), KT_SSD_SmartReadData(0, 0, &page)});
    const auto* bytes = reinterpret_cast<const KT_U8*>(&page);
    EXPECT_EQ(std::accumulate(bytes, bytes + sizeof page, 0U) % 256, 0U);
    const auto& first = page.Attributes[0];
    EXPECT_EQ((Ints{first.Id, first.Raw[0], first.Raw[1]}), (Ints{5, 2, 1}));
    EXPECT_EQ((Ints{page.ShortTestMinutes, page.LongTestMinutes}), (Ints{2, 21})) << "480 GB at 400 MB/s, rounded up";
    answer(KT_ERR_NOT_SUPPORTED, {KT_SSD_SmartReadData(0, 2, &page), KT_SSD_SmartReadData(0, 3, &page)});
    EXPECT_EQ(KT_SSD_SmartReadData(0, 9, &page), KT_ERR_INVALID_PD);
}

TEST_F(SolidStateDisks, TestThemselvesInTime) {
    EXPECT_EQ(test(0), "never 0% 0 0 h");
    EXPECT_EQ(test(0, KT_SSD_ABORT) + ", " + test(0, 4) + ", " + test(2), "error 27, error 27, error 19");
    EXPECT_EQ(test(0, KT_SSD_START_LONG), "running 0% 15 0 h");
    EXPECT_EQ(test(0, KT_SSD_START_SHORT), "error 27");
    EXPECT_EQ(test(0, KT_SSD_ASK, 610), "running 50% 15 0 h");
    _SSD_Smart_Data page = {};
    succeed({KT_SSD_SmartReadData(0, 0, &page)});
    EXPECT_EQ(page.SelfTestStatus, 0xF5);
    EXPECT_EQ(test(0, KT_SSD_ASK, 12 * HOUR), "passed 0% 0 13112 h") << "when it ended, not now";
    succeed({spoilSectors(0, 0, UNREADABLE, HALF)});
    test(0, KT_SSD_START_SHORT);
    EXPECT_EQ(test(0, KT_SSD_ASK, 120), "passed 0% 0 13124 h") << "it does not get there";
    test(0, KT_SSD_START_LONG);
    EXPECT_EQ(test(0, KT_SSD_ASK, 590), "running 49% 15 0 h");
    EXPECT_EQ(test(0, KT_SSD_ASK, 30), "failed 0% 7 13124 h, LBA 480000000");
    succeed({ageDisk(0, 1, "wear", 100)});
    test(1, KT_SSD_START_SHORT);
    EXPECT_EQ(test(1, KT_SSD_ASK, 120), "failed 0% 5 14468 h, LBA 824300105") << "its electronics";
}

TEST_F(SolidStateDisks, TakeMicrocodeOfTheirModelOnly) {
    test(0, KT_SSD_START_LONG);
    succeed({download(0, microcode("Model A", "2.0"))});
    EXPECT_EQ(versions() + ", " + test(0).substr(0, 7), "2.0, 1.0, aborted");
    answer(KT_ERR_INVALID_MICROCODE,
           {download(0, microcode("Model B", "3.0")), download(0, microcode("Model AB", "3.0")),
            download(0, std::string(300000, 'x'))});
    std::string spoilt = microcode("Model A", "3.0");
    spoilt.back() ^= 1;
    answer(KT_ERR_FLASH_DATA, {download(0, spoilt), download(0, microcode("Model A", "3.0") + "more")});
    EXPECT_EQ(download(0, microcode("Model A", "3.0"), 2), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(download(2, microcode("Model A", "3.0")), KT_ERR_NOT_SUPPORTED);
    EXPECT_EQ(versions(), "2.0, 1.0");
}

TEST_F(SolidStateDisks, LoseADownloadWhosePagesAreOutOfOrder) {
    const std::string file = microcode("Model A", "2.0");
    const size_t whole = sizeof _Flash_Data{}.Data;
    succeed({download(0, file.substr(0, whole), KT_MICROCODE_NOW, 0, false)});
    EXPECT_EQ(download(0, file.substr(2 * whole), KT_MICROCODE_NOW, 2), KT_ERR_INVALID_REQUEST);
    EXPECT_EQ(download(0, file.substr(whole), KT_MICROCODE_NOW, 1), KT_ERR_INVALID_REQUEST) << "it is over";
    EXPECT_EQ(versions(), "1.0, 1.0");
}

TEST_F(SolidStateDisks, KeepMicrocodeForTheirNextStart) {
    succeed({download(0, microcode("Model A", "2.0"), KT_MICROCODE_LATER)});
    EXPECT_EQ(versions() + ", " + test(0, KT_SSD_START_LONG), "1.0, 1.0, running 0% 15 0 h");
    EXPECT_NE(show().find("\"2.0\""), std::string::npos);
    succeed({pullDisk(0, 0), insertDisk(0, 0)});
    EXPECT_EQ(versions() + ", " + test(0), "2.0, 1.0, aborted 0% 1 13112 h");
    succeed({replaceDisk(0, 0), download(0, microcode("Model A", "3.0"), KT_MICROCODE_LATER), reboot()});
    EXPECT_EQ(versions() + ", " + test(0), "3.0, 1.0, never 0% 0 0 h") << "another disk";
}
