#include "Public/wholeFile.h"

#include "tests/support/scratch.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

// Watches what is asked of the kernel: these stand before the C library's own.
static std::vector<std::string> gAsked;
static std::string gTarget;
static int gFailure = 0; // what the kernel answers to both; 0: what it would

static std::string describe(int fd) {
    struct stat status = {};
    fstat(fd, &status);
    return std::string(S_ISDIR(status.st_mode) ? "folder" : "file") +
           (access(gTarget.c_str(), F_OK) == 0 ? ", named" : ", unnamed");
}

extern "C" int fsync(int fd) {
    gAsked.push_back("flush " + describe(fd));
    errno = gFailure;
    return gFailure != 0 ? -1 : static_cast<int>(syscall(SYS_fsync, fd));
}

extern "C" int fchown(int fd, uid_t owner, gid_t group) {
    gAsked.push_back("owner " + std::to_string(owner) + ":" + std::to_string(group));
    errno = gFailure;
    return gFailure != 0 ? -1 : static_cast<int>(syscall(SYS_fchown, fd, owner, group));
}

static bool gPlainRename = false;      // as of a file system that knows no other
static bool gSomebodyIsFaster = false; // and makes a file of that name meanwhile

extern "C" int renameat2(int, const char* from, int, const char* to, unsigned flags) {
    if (gSomebodyIsFaster) close(open(to, O_CREAT | O_WRONLY, 0600));
    if (!gPlainRename) return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, flags));
    errno = EINVAL;
    return -1;
}

namespace {

struct WholeFile : testing::Test {
    const ScratchFolder scratch;
    const std::string folder = scratch.path;

    void SetUp() override {
        gTarget = folder + "/f";
        gAsked.clear();
    }
    void TearDown() override {
        unlink(gTarget.c_str());
        EXPECT_TRUE(std::filesystem::is_empty(folder)) << "something else is left";
    }
};

// A file that outlives a crash is on the disk before it has its name, and so is the name afterwards.
TEST_F(WholeFile, IsOnTheDiskBeforeItHasItsNameAndSoIsTheName) {
    EXPECT_EQ(writeWholeFile(gTarget, "text", Existing::Keep), WroteFile::Yes);
    EXPECT_EQ(gAsked, (std::vector<std::string>{"flush file, unnamed", "flush folder, named"}));
}

TEST_F(WholeFile, KeepsOwnerAndPermissionsOfTheOneItReplaces) {
    ASSERT_EQ(writeWholeFile(gTarget, "old", Existing::Keep), WroteFile::Yes);
    const bool mayGiveAway = chown(gTarget.c_str(), 12345, 54321) == 0;
    ASSERT_EQ(chmod(gTarget.c_str(), 0640), 0);
    gAsked.clear();
    EXPECT_EQ(writeWholeFile(gTarget, "new", Existing::Replace), WroteFile::Yes);
    struct stat status = {};
    ASSERT_EQ(stat(gTarget.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(status.st_uid, mayGiveAway ? 12345U : getuid());
    const std::string owner = "owner " + std::to_string(status.st_uid) + ":" + std::to_string(status.st_gid);
    EXPECT_EQ(gAsked.front(), owner) << "asked for by everybody, granted to the superuser";
}

TEST_F(WholeFile, IsWholeOrNotThere) {
    const std::tuple<int, WroteFile, WroteFile> rows[] = {
        {EIO, WroteFile::NotWritten, WroteFile::NotWritten}, // a new file, and one that replaces another
        {EPERM, WroteFile::NotWritten, WroteFile::NotWritten},
        {EINVAL, WroteFile::Yes, WroteFile::NotWritten}, // of a file system that knows no flushing
        {EROFS, WroteFile::Yes, WroteFile::NotWritten},
    };
    for (const auto& [failure, made, replaced] : rows) {
        gFailure = failure;
        EXPECT_EQ(writeWholeFile(gTarget, "new", Existing::Keep), made) << failure;
        EXPECT_EQ(fileText(gTarget), made == WroteFile::Yes ? "new" : "");
        writeText(gTarget, "old");
        EXPECT_EQ(writeWholeFile(gTarget, "new", Existing::Replace), replaced) << failure;
        gFailure = 0;
        EXPECT_EQ(fileText(gTarget), "old");
        EXPECT_EQ(writeWholeFile(gTarget, "x", Existing::Keep), WroteFile::Exists);
        unlink(gTarget.c_str());
    }
    EXPECT_EQ(writeWholeFile(folder, "x", Existing::Replace), WroteFile::NotOpened);
    EXPECT_EQ(writeWholeFile(folder + "/", "x", Existing::Keep), WroteFile::Exists);
    EXPECT_EQ(writeWholeFile(folder + "/none/x", "x", Existing::Keep), WroteFile::NotOpened);
    write_mem_to_file(nullptr, "x", 1);
    write_mem_to_file(stdout, nullptr, 1);
}

TEST_F(WholeFile, NeverTakesTheNameOfAnother) {
    for (bool plain : {false, true}) {
        gPlainRename = plain;
        EXPECT_EQ(writeWholeFile(gTarget, "text", Existing::Keep), WroteFile::Yes);
        EXPECT_EQ(fileText(gTarget), "text");
        unlink(gTarget.c_str());
        gSomebodyIsFaster = true;
        EXPECT_EQ(writeWholeFile(gTarget, "text", Existing::Keep), WroteFile::Exists);
        gPlainRename = gSomebodyIsFaster = false;
        EXPECT_EQ(fileText(gTarget), "");
        unlink(gTarget.c_str());
    }
}

} // namespace
