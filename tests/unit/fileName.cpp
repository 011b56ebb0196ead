#include "Public/fileName.h"
#include "Public/newFile.h"
#include "tests/support/scratch.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

TEST(FileName, TakesAQuotedNameUpToTheClosingQuote) {
    EXPECT_EQ(unquotedName("plain\"x"), "plain\"x");
    EXPECT_EQ(unquotedName("\"my file\""), "my file");
    EXPECT_EQ(unquotedName("\"my file\"rest"), "my file");
    EXPECT_EQ(unquotedName("\"open end"), "open end");
    EXPECT_EQ(unquotedName("\""), "");
    EXPECT_EQ(unquotedName(""), "");
}

TEST(FileName, ExpandsLikeAShellButRunsNothing) {
    setenv("KT_TEST_NAME", "value", 1);
    std::string path = "untouched";
    EXPECT_TRUE(expandName("${KT_TEST_NAME}.bin second", false, path));
    EXPECT_EQ(path, "value.bin");
    EXPECT_TRUE(expandName("${KT_TEST_NAME} two\tthree", true, path));
    EXPECT_EQ(path, "value two\tthree");
    EXPECT_TRUE(expandName("no*such*file", false, path));
    EXPECT_EQ(path, "no*such*file");
    path = "untouched";
    for (const char* name : {"", "  ", "$(echo x)", "`echo x`", "a;b", "a|b", "$KT_TEST_UNSET", "'open"}) {
        EXPECT_FALSE(expandName(name, false, path)) << name;
        EXPECT_EQ(path, "untouched");
    }
    for (const char* name : {"a(1).bin", "it's.bin", "a;b", "{x"}) {
        EXPECT_TRUE(expandName(name, true, path)) << name;
        EXPECT_EQ(path, name);
    }
    path = "untouched";
    for (const char* name : {"", "$(echo x)", "`echo x`", "$KT_TEST_UNSET"})
        EXPECT_FALSE(expandName(name, true, path)) << name;
    EXPECT_EQ(path, "untouched");
    EXPECT_EQ(shownName("a\x1b[m\n\xc3\xa9"), "a?[m?\xc3\xa9");
}

TEST(NewFiles, AreNeverMadeOverSomethingAndWithANameInQuotesTakenAsTheyStandFirst) {
    setenv("KT_TEST_NAME", "value", 1);
    const ScratchFolder folder;
    const std::string path = folder.path + "/image $KT_TEST_NAME*";
    std::string found;
    EXPECT_TRUE(expandName(path, true, found));
    EXPECT_EQ(found, folder.path + "/image value*");
    NewFile file = {};
    ASSERT_EQ(createNewFile(path.c_str(), file), Created::Yes);
    ASSERT_TRUE(keepNewFile(file));
    EXPECT_TRUE(expandName(path, true, found));
    EXPECT_EQ(found, path);
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0133, 0u);
    ASSERT_EQ(unlink(path.c_str()), 0);
    ASSERT_EQ(symlink("nowhere", path.c_str()), 0);
    EXPECT_EQ(createNewFile(path.c_str(), file), Created::Exists);
}

} // namespace
