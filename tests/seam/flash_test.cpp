#include <memory>
#include <pty.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Public/imageFile.h"
#include "tests/seam/seam.h"
#include "tests/support/scratch.h"

namespace {

constexpr size_t PAGE = 0x30000;
struct Flash : SeamTest {
    ScratchFolder folder;
    const std::string path = folder.path + "/image";
    Outcome backUp() const { return run("flash -a backup -t bin -f " + path); }
    Outcome update(const std::string& words = "-t firmware") const {
        return run("flash -a update -f " + path + " " + words);
    }
};

std::string makeImage(size_t size) {
    std::string image(size, ' ');
    for (size_t i = 0; i < size; ++i)
        image[i] = static_cast<char>(i * 7 + i / PAGE + 1);
    return image;
}

} // namespace

TEST_F(Flash, GoesThereAndBackPageByPage) {
    const std::tuple<size_t, std::vector<size_t>> cases[] = {
        {1, {1}}, {PAGE - 1, {PAGE - 1}}, {PAGE, {PAGE}}, {PAGE + 1, {PAGE, 1}}, {2 * PAGE, {PAGE, PAGE}}};
    for (const auto& [size, pages] : cases) {
        seam = {};
        const std::string image = makeImage(size);
        writeText(path, image);
        Calls written = {"KT_Flash_PreData type 3 size " + std::to_string(size)};
        Calls read;
        std::string toDevice, toFile;
        for (size_t i = 0; i < pages.size(); ++i) {
            const std::string number = std::to_string(i);
            written.push_back("KT_Flash_Bin 15 3 page " + number + (i + 1 == pages.size() ? " last 1" : " last 0") +
                              " size " + std::to_string(pages[i]));
            read.push_back("KT_Flash_Bin 240 1 page " + number + " last 0 size 0");
            toDevice += "page " + number + " write to device.\n";
            toFile += "page " + number + " write to file.\n";
        }
        expect(update(), toDevice + "Flash command is returned successfully.\n");
        EXPECT_EQ(written, seam.calls);
        EXPECT_TRUE(image == seam.flash);
        seam.calls.clear();
        expect(backUp(), "File '" + path + "' has already existed.\n", 1);
        EXPECT_TRUE(seam.calls.empty());
        unlink(path.c_str());
        expect(backUp(), toFile + "Flash command is returned successfully.\n");
        EXPECT_EQ(read, seam.calls);
        EXPECT_TRUE(image == fileText(path));
    }
    expect("flash -a backup -t bin -f " + path + "/x", "Unable to create file '" + path + "/x'.\n", 1);
}

TEST_F(Flash, DrawsABarOnATerminalOnly) {
    writeText(path, makeImage(PAGE + 1));
    const std::string printed = update().printed;
    int terminal, end;
    ASSERT_EQ(0, openpty(&terminal, &end, nullptr, nullptr, nullptr));
    const int before = dup(STDERR_FILENO);
    dup2(end, STDERR_FILENO);
    EXPECT_EQ(printed, update().printed);
    seam.flash = makeImage(PAGE + 1);
    unlink(path.c_str());
    EXPECT_EQ(0, backUp().result);
    dup2(before, STDERR_FILENO);
    close(before);
    char drawn[2048];
    const ssize_t count = read(terminal, drawn, sizeof drawn);
    close(end);
    close(terminal);
    const std::string bars(drawn, static_cast<size_t>(count));
    const std::string gone = "\r\033[K";
    EXPECT_EQ(0U, bars.find("[..............................] 0 of 2 pages, 0.0 MiB/s" + gone +
                            "[###############...............] 1 of 2 pages, "));
    EXPECT_TRUE(has(bars, " MiB/s" + gone + "1 pages, "));
    EXPECT_EQ("MiB/s" + gone, bars.substr(bars.size() - 9));
}

TEST_F(Flash, StopsAnUpdateThatFails) {
    writeText(path, makeImage(3 * PAGE));
    seam.statuses["KT_Flash_PreData"] = 19;
    seam.statuses["KT_Flash_Bin @3 15 2 page 1"] = 184;
    expect(update("-t BIOS -i 3"),
           "page 0 write to device.\npage 1 write to device.\n\nFailed to update file '" + path +
               "', error 184: Invalid flash buffer data\n",
           184);
    EXPECT_EQ(3U, seam.calls.size());
    EXPECT_EQ("KT_Flash_PreData @3 type 2 size 589824", seam.calls[0]);
}

TEST_F(Flash, RefusesWhatIsNoImageFile) {
    const std::string unable = "Unable to open file '" + path + "'.\n";
    EXPECT_EQ(unable, update().printed);
    mkdir(path.c_str(), 0700);
    EXPECT_EQ(unable, update().printed);
    rmdir(path.c_str());
    mkfifo(path.c_str(), 0600);
    EXPECT_EQ(unable, update().printed);
    unlink(path.c_str());
    // Holes only; more than an announcement can say.
    writeText(path, "");
    ASSERT_EQ(0, truncate(path.c_str(), off_t{1} << 32));
    EXPECT_EQ(unable, update().printed);
    EXPECT_TRUE(seam.calls.empty());
    ASSERT_EQ(0, truncate(path.c_str(), 0));
    expect(update(), "Unable to read from file " + path + "\n", 1);
    EXPECT_EQ(Calls{"KT_Flash_PreData type 3 size 0"}, seam.calls);
}

TEST_F(Flash, DoesNotReadAnImageThatGotShorterMeanwhileAsIfItHadNot) {
    writeText(path, "0123456789");
    KT_U32 length = 0;
    const int fd = openImageFile(path, false, length);
    EXPECT_EQ(length, 10U);
    const auto page = std::make_unique<_Flash_Data>();
    writeText(path, "0123");
    EXPECT_FALSE(readImagePage(fd, length, *page));
    close(fd);
}

TEST_F(Flash, AsksWhetherRawImagesAreTaken) {
    writeText(path, "x");
    const std::map<std::string, std::string> texts = {
        {"raw", "flash -a update -t raw -f " + path},
        {"bin", "flash -a update -t bin -f " + path},
        {"f", path},
        {"done", "page 0 write to device.\\nFlash command is returned successfully."}};
    gAdapterInfo[0].AdvancedFeatures = ~KT_ADV_RAW_UPDATE;
    seam.adapterConfig.rawimg_update_disabled = 1;
    expectSteps(texts, "$raw => $done | KT_Flash_PreData type 6 size 1; KT_Flash_Bin 15 6 page 0 last 1 size 1");
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_RAW_UPDATE;
    expectSteps(texts, R"(
$bin => $done | KT_Flash_PreData type 1 size 1; KT_Flash_Bin 15 1 page 0 last 1 size 1
$raw => \nFail to update file '$f' since raw image format is not supported. | KT_Adapter_GetConfig
$raw ! KT_Adapter_GetConfig=1 =1> \nFailed to update file '$f', error 1: Failed | KT_Adapter_GetConfig
)");
    seam.adapterConfig.rawimg_update_disabled = 0;
    expectSteps(texts, "$raw => $done");
}

TEST_F(Flash, LeavesNoFileOfABackupThatFails) {
    const auto expectNone = [&](const std::string& printed, int result) {
        expect(backUp(), printed, result);
        EXPECT_NE(0, access(path.c_str(), F_OK));
    };
    seam.flash = makeImage(2 * PAGE);
    seam.statuses["KT_Flash_Bin 240 1 page 1"] = 20;
    expectNone("page 0 write to file.\n\nFailed to flash (error 20: Link time out).\n", 20);
    seam.statuses.clear();
    seam.flashClaims = PAGE + 1;
    expectNone("\nFailed to flash (error 184: Invalid flash buffer data).\n", 184);
    seam.flashClaims = 0;
    {
        FileLimit limit(4096);
        expectNone("page 0 write to file.\nUnable to create file '" + path + "'.\n", 1);
    }
    seam.flash.clear();
    seam.flashEndless = true;
    EXPECT_EQ(184, backUp().result);
    EXPECT_NE(0, access(path.c_str(), F_OK));
}

TEST_F(Flash, ErasesAnImageWhenToldSoAndThePdPageUnasked) {
    expectSteps({{"asked", "Do you want to erase ROM file in Flash?  (y or n)"}}, R"(
flash -a erase -t Firmware < yes,n => $asked\nErase bios command is returned successfully. | KT_Flash_Bin 1 3 page 0 last 0 size 196608
flash -a erase -t bios < , maybe,no,y => Warning: Autoload will be erased too! $asked\nPlease input y or n.\nPlease input y or n.
flash -a erase -t raw => $asked
flash -a erase -p PD => Erase PD Page command is returned successfully. | KT_Flash_Erase 1
flash -a erase -p pdforce -t bios => Erase PD Page command is returned successfully. | KT_Flash_Erase 254
)");
}
