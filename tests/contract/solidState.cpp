#include "frame.h"
#include "outside.h"

#include <memory>
#include <numeric>

// Disk 0 a solid state one, 1 the same, 2 a spinning one, 3 a solid state one that speaks SAS.
static const char LAB[] = R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
  {"type": "array-based", "disks": [
    {"type": "SATA SSD", "size": "480GB", "on": "HBA", "port": 0, "model": "Model A", "firmware": "1.0"},
    {"type": "SATA SSD", "size": "480GB", "on": "HBA", "port": 1, "model": "Model A", "firmware": "1.0"},
    {"type": "SATA", "size": "1TB", "on": "HBA", "port": 2}, {"type": "SAS SSD", "size": "1TB", "on": "HBA", "port": 3}]}]})";
static const KT_U64 HALF = 480000000; // a sector in the middle of disk 0

struct SolidStateDisks : LabTest<LAB> {};

static _SSD_Diagnostic test(KT_U16 pd, KT_U8 action, KT_U8 expected = KT_OK) {
    _SSD_Diagnostic diagnostic = {};
    diagnostic.Action = action;
    EXPECT_EQ(KT_SSD_Diagnostic(0, pd, &diagnostic), expected);
    return diagnostic;
}

static std::string versions() {
    return textOf(pdInfo(0, 0).FWVersion) + ", " + textOf(pdInfo(0, 1).FWVersion);
}

// Hands out the pages of the file from `first` on; the status of the last call.
static KT_U8 download(KT_U16 pd, const std::string& file, KT_U8 mode = KT_MICROCODE_NOW, KT_U16 first = 0) {
    const auto page = std::make_unique<_Flash_Data>();
    KT_U8 status = KT_OK;
    for (size_t at = 0; at < file.size() && status == KT_OK; ++page->PageNum) {
        if (at == 0) page->PageNum = first;
        page->Size = static_cast<KT_U32>(std::min(sizeof page->Data, file.size() - at));
        memcpy(page->Data, file.data() + at, page->Size);
        at += page->Size;
        page->isLastPage = at == file.size();
        status = KT_Download_SSD_Microcode(0, pd, mode, page.get());
    }
    return status;
}

static std::string microcode(const char* name, const char* version) {
    return outside::makeMicrocode(name, version, 500000);
}

TEST_F(SolidStateDisks, TellTheirLifeInASoundPage) {
    outside::ageDisk(0, 0, "reallocated", 258);
    _SSD_Smart_Data page = {};
    succeed({KT_SSD_SmartReadData(0, 0, &page)});
    const auto* bytes = reinterpret_cast<const KT_U8*>(&page);
    EXPECT_EQ(std::accumulate(bytes, bytes + sizeof page, 0U) % 256, 0U);
    const auto& first = page.Attributes[0];
    EXPECT_EQ((Ints{first.Id, first.Raw[0], first.Raw[1]}), (Ints{5, 2, 1}));
    EXPECT_EQ((Ints{page.ShortTestMinutes, page.LongTestMinutes}), (Ints{2, 21})) << "480 GB at 400 MB/s, rounded up";
    answer(KT_ERR_NOT_SUPPORTED, {KT_SSD_SmartReadData(0, 2, &page), KT_SSD_SmartReadData(0, 3, &page)});
    EXPECT_EQ(KT_SSD_SmartReadData(0, 9, &page), KT_ERR_INVALID_PD);
}

TEST_F(SolidStateDisks, TestThemselvesInTime) {
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_NEVER);
    test(0, KT_SSD_ABORT, KT_ERR_SSD_COMMAND_ERROR);
    test(0, 4, KT_ERR_SSD_COMMAND_ERROR);
    test(2, KT_SSD_ASK, KT_ERR_NOT_SUPPORTED);
    test(0, KT_SSD_START_LONG);
    test(0, KT_SSD_START_SHORT, KT_ERR_SSD_COMMAND_ERROR);
    advance(610);
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_RUNNING);
    EXPECT_EQ(test(0, KT_SSD_ASK).Percentage, 50);
    _SSD_Smart_Data page = {};
    KT_SSD_SmartReadData(0, 0, &page);
    EXPECT_EQ(page.SelfTestStatus, 0xF5);
    advance(7200);
    const _SSD_Diagnostic done = test(0, KT_SSD_ASK);
    EXPECT_EQ(done.State, KT_SSD_PASSED);
    EXPECT_EQ(done.FirstErrorLBA, KT_SSD_NO_LBA);
    advance(36000);
    EXPECT_EQ(test(0, KT_SSD_ASK).PowerOnHours, done.PowerOnHours) << "when it ended, not now";
    test(0, KT_SSD_START_SHORT);
    EXPECT_EQ(test(0, KT_SSD_ABORT).State, KT_SSD_ABORTED);
}

TEST_F(SolidStateDisks, FailWhereTheyCannotBeRead) {
    outside::spoil(0, 0, outside::UNREADABLE, HALF);
    test(0, KT_SSD_START_SHORT);
    advance(120);
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_PASSED) << "it does not get there";
    test(0, KT_SSD_START_LONG);
    advance(590);
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_RUNNING);
    advance(30);
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_FAILED);
    EXPECT_EQ(test(0, KT_SSD_ASK).FirstErrorLBA, HALF);
    outside::ageDisk(0, 1, "wear", 100);
    test(1, KT_SSD_START_SHORT);
    advance(120);
    EXPECT_EQ(test(1, KT_SSD_ASK).State, KT_SSD_FAILED);
    EXPECT_LT(test(1, KT_SSD_ASK).FirstErrorLBA, 2 * HALF) << "on the disk";
    EXPECT_EQ(test(1, KT_SSD_ASK).Result, 5) << "its electronics";
    succeed({outside::failDisk(0, 1)});
    test(1, KT_SSD_ASK, KT_ERR_SSD_COMMAND_PHASE);
}

TEST_F(SolidStateDisks, TakeMicrocodeOfTheirModelOnly) {
    EXPECT_EQ(download(0, microcode("Model A", "2.0")), KT_OK);
    EXPECT_EQ(versions(), "2.0, 1.0");
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
    const auto page = std::make_unique<_Flash_Data>();
    page->Size = static_cast<KT_U32>(whole);
    memcpy(page->Data, file.data(), whole);
    succeed({KT_Download_SSD_Microcode(0, 0, KT_MICROCODE_NOW, page.get())});
    EXPECT_EQ(download(0, file.substr(2 * whole), KT_MICROCODE_NOW, 2), KT_ERR_INVALID_REQUEST);
    EXPECT_EQ(download(0, file.substr(whole), KT_MICROCODE_NOW, 1), KT_ERR_INVALID_REQUEST) << "it is over";
    EXPECT_EQ(versions(), "1.0, 1.0");
}

TEST_F(SolidStateDisks, KeepMicrocodeForTheirNextStart) {
    EXPECT_EQ(download(0, microcode("Model A", "2.0"), KT_MICROCODE_LATER), KT_OK);
    EXPECT_EQ(versions(), "1.0, 1.0");
    test(0, KT_SSD_START_LONG);
    EXPECT_NE(show().find("\"2.0\""), std::string::npos);
    succeed({outside::pullDisk(0, 0), outside::insertDisk(0, 0)});
    EXPECT_EQ(versions(), "2.0, 1.0");
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_ABORTED);
    succeed({outside::replaceDisk(0, 0, 0)});
    EXPECT_EQ(test(0, KT_SSD_ASK).State, KT_SSD_NEVER) << "another disk";
}
