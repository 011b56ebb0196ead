// Splitting lines into words, and finding the command for a word.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "ktsetup/commandTables.h"
#include "tests/support/printed.h"

namespace {

// The result, and each word behind a stroke.
std::string split(std::string line) {
    std::vector<char*> argv(line.size() + 1);
    int argc = -1;
    std::string text = std::to_string(parse(&argc, argv.data(), line.data()));
    for (int i = 0; i < argc; ++i)
        text += "|" + std::string(argv[static_cast<size_t>(i)]);
    return text;
}

TEST(Parse, SplitsAtBlanksAndKeepsQuotes) {
    // clang-format off
    const std::pair<const char*, const char*> lines[] = {
        {"", "1"}, {"info -o vd", "1|info|-o|vd"}, {"info    -o", "1|info|-o"}, {"info  ", "1|info"}, {" info", "1||info"},
        {"   ", "1|"}, {"a\tb", "1|a|b"}, {"a\t\tb", "1|a||b"}, {"a \tb", "1|a||b"}, {"a\t  b", "1|a|b"},
        {R"(-n "My VD")", R"(1|-n|"My VD")"}, {R"(a"b c"d)", R"(1|a"b c"d)"}, {R"(a"b c" d)", R"(1|a"b c"|d)"},
        {R"("")", R"(1|"")"}, {R"(")", "0"}, {R"(a "b)", "0|a"}, {R"(a b")", "0|a"}};
    // clang-format on
    for (const auto& [line, words] : lines)
        EXPECT_EQ(split(line), words) << line;
}

const char* ran;
template <int RESULT>
int runs(int, char**, _cmd_struct* row) {
    ran = row->cmd;
    return RESULT;
}

struct Dispatcher : testing::Test {
    _cmd_struct general[4] = {{"alpha", 6, runs<7>, "", ""},
                              {"alphabet", 9, runs<7>, "", ""},
                              {"beta", 5, runs<7>, "", ""},
                              {"inner-most", 11, runs<7>, "", ""}};
    _cmd_struct internal[2] = {{"inner", 6, runs<8>, "", ""}, {"beta", 5, runs<8>, "", ""}};
    void SetUp() override {
        pCmdTable = general;
        cmdTableSize = 4;
        pInCmdTable = internal;
        inCmdTableSize = 2;
    }
    // Runs a word; the answer is its result and the row that ran or the text that was printed.
    static std::string dispatch(std::string word) {
        char* argv[] = {word.data(), nullptr};
        ran = "";
        int result = 0;
        const std::string text = printedBy([&] { result = cmdDispatcher(1, argv); });
        return std::to_string(result) + ran + text;
    }
};

TEST_F(Dispatcher, FindsRowsByWordAndUniquePrefixOrRefuses) {
    EXPECT_EQ(dispatch("alpha"), "7alpha");
    EXPECT_EQ(dispatch("ALPHABET"), "7alphabet");
    EXPECT_EQ(dispatch("alphab"), "7alphabet");
    EXPECT_EQ(dispatch("exit"), "-1");
    EXPECT_EQ(dispatch("QUIT"), "-1");
    EXPECT_EQ(dispatch("al"), "1Ambiguous command 'al'!\n");
    EXPECT_EQ(dispatch("bet"), "1Ambiguous command 'bet'!\n");
    EXPECT_EQ(dispatch(""), "1Ambiguous command ''!\n");
    EXPECT_EQ(dispatch("gamma"), "1Invalid command 'gamma'!\n");
    EXPECT_EQ(dispatch("ex"), "1Invalid command 'ex'!\n");
    EXPECT_EQ(dispatch("ga\x01ma"), "1Invalid command!\n");
    EXPECT_EQ(dispatch("ga\xC3\xA4"), "1Invalid command!\n");
    EXPECT_EQ(dispatch("\x1D"), "1Invalid command!\n");
    EXPECT_EQ(dispatch("\x1E~"), "1Invalid command '?~'!\n");
    EXPECT_EQ(dispatch("\x7F"), "1Invalid command!\n");
    // Positions are looked up in the general table once that matched.
    EXPECT_EQ(dispatch("inner"), "7alpha");
    EXPECT_EQ(dispatch("inn"), "1Ambiguous command 'inn'!\n");
    cmdTableSize = 3;
    EXPECT_EQ(dispatch("inner"), "8inner");
    EXPECT_EQ(dispatch("inn"), "8inner");
}

TEST(AdapterRecords, ForgetTheStatusOfAdaptersThatWent) {
    gAdapterStatus[5] = KT_ERR_FAILED;
    gNumAdaptersFound = 0;
    readAdapterRecords();
    EXPECT_EQ(gAdapterStatus[5], KT_OK);
}

} // namespace
