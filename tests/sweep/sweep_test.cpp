// What holds for every row of the four command tables, so that a new command is held to it without a test of its own:
// help works, an unknown option fails, required options and options given twice are refused, and the library is called
// by none of it.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "ktsetup/commandTables.h"
#include "tests/support/printed.h"

extern "C" unsigned KT_STUB_Calls;

namespace {

struct Row {
    const char* table;
    _cmd_struct* row;
};

std::vector<Row> allRows(bool arrayBased) {
    const CommandSet& set = arrayBased ? arrayBasedCommands : ldBasedCommands;
    std::vector<Row> rows;
    for (int i = 0; i < set.generalSize; ++i) {
        rows.push_back({"general", &set.general[i]});
    }
    for (int i = 0; i < set.internalSize; ++i) {
        rows.push_back({"internal", &set.internal[i]});
    }
    return rows;
}

struct Outcome {
    int result;
    std::string text;
};

// Runs the row's handler on the words; its output is caught.
Outcome run(_cmd_struct& row, std::vector<std::string> words) {
    words.insert(words.begin(), row.cmd);
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    Outcome outcome;
    outcome.text =
        printedBy([&] { outcome.result = row.cmdHandler(static_cast<int>(words.size()), argv.data(), &row); });
    return outcome;
}

bool takesOptions(const _cmd_struct& row) {
    return *optionsOf(row.cmdHandler)->letters != '\0';
}

bool isThere(const _cmd_struct& row) {
    return run(const_cast<_cmd_struct&>(row), {"-Z"}).text.find("not available in this build") == std::string::npos;
}

bool endsInDuplicate(const std::string& text) {
    constexpr size_t length = sizeof ErrorDuplicate - 1;
    return text.size() >= length && text.compare(text.size() - length, length, ErrorDuplicate) == 0;
}

// A value that the option takes: what the letter stands for differs from command to command, so several are tried.
std::vector<std::string> givenTwice(_cmd_struct& row, char letter) {
    static const char* const values[] = {"1",      "vd",     "pd",   "enc",   "on",      "read",      "enable",
                                         "hba",    "0",      "64",   "0x5A",  "start",   "changePwd", "getinfo",
                                         "getCfg", "bios",   "none", "quick", "mailbox", "phy",       "wb",
                                         "sync",   "update", "dev",  "spare", "100"};
    std::string option = std::string("-") + letter;
    const char* argument = strchr(optionsOf(row.cmdHandler)->letters, letter);
    if (argument == nullptr || argument[1] != ':') return {option, option};
    for (const char* value : values) {
        if (endsInDuplicate(run(row, {option, value, option, value}).text)) return {option, value, option, value};
    }
    return {option, "1", option, "1"};
}

class Sweep : public ::testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        setCommandSets(ldBasedCommands, arrayBasedCommands);
        gAdapterInfo[0] = {};
        gAdapterInfo[0].MaxDiskGroup = GetParam() ? 8 : 0;
        gAdapterInfo[0].Features = 0x7F;
        gAdapterInfo[0].LogicalDriverMode = 0x0FFF;
        gNumAdaptersFound = 1;
        chooseCommandSet();
        opterr = 0;
        KT_STUB_Calls = 0;
    }
    void TearDown() override { EXPECT_EQ(KT_STUB_Calls, 0U); }
};

TEST_P(Sweep, RowsAreWellFormed) {
    for (const Row& at : allRows(GetParam())) {
        SCOPED_TRACE(std::string(at.table) + " " + at.row->cmd);
        EXPECT_EQ(static_cast<size_t>(at.row->cmdLen), strlen(at.row->cmd) + 1);
        ASSERT_NE(optionsOf(at.row->cmdHandler), nullptr);
        EXPECT_EQ(strchr(at.row->cmdHelp, '%'), nullptr);
        EXPECT_EQ(strchr(at.row->cmdShortHelp, '%'), nullptr);
    }
}

TEST_P(Sweep, HelpIsPrinted) {
    for (const Row& at : allRows(GetParam())) {
        SCOPED_TRACE(std::string(at.table) + " " + at.row->cmd);
        if (!isThere(*at.row) || !takesOptions(*at.row)) continue;
        Outcome outcome = run(*at.row, {"-h"});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_NE(outcome.text.find(at.row->cmdHelp), std::string::npos);
        EXPECT_GT(strlen(at.row->cmdHelp), 10U);
    }
}

TEST_P(Sweep, UnknownOptionsFail) {
    for (const Row& at : allRows(GetParam())) {
        SCOPED_TRACE(std::string(at.table) + " " + at.row->cmd);
        if (!isThere(*at.row) || !takesOptions(*at.row)) continue;
        int expected = optionsOf(at.row->cmdHandler)->helpOnUnknown ? 0 : 1;
        EXPECT_EQ(run(*at.row, {"-Z"}).result, expected);
        EXPECT_EQ(run(*at.row, {"--no-such-option"}).result, expected);
    }
}

TEST_P(Sweep, RequiredOptionsAreAskedFor) {
    for (const Row& at : allRows(GetParam())) {
        SCOPED_TRACE(std::string(at.table) + " " + at.row->cmd);
        if (!isThere(*at.row)) continue;
        std::string expected;
        for (const char* letter = optionsOf(at.row->cmdHandler)->required; *letter != '\0'; ++letter) {
            char line[128];
            snprintf(line, sizeof line, OptionRequired, at.row->cmd, *letter);
            expected += line;
            if (optionsOf(at.row->cmdHandler)->oneMissing) break;
        }
        if (expected.empty()) continue;
        Outcome outcome = run(*at.row, {});
        EXPECT_EQ(outcome.result, 1);
        EXPECT_EQ(outcome.text.substr(0, expected.size()), expected);
    }
}

TEST_P(Sweep, OptionsGivenTwiceAreRefused) {
    for (const Row& at : allRows(GetParam())) {
        if (!isThere(*at.row)) continue;
        for (const char* letter = optionsOf(at.row->cmdHandler)->once; *letter != '\0'; ++letter) {
            SCOPED_TRACE(std::string(at.table) + " " + at.row->cmd + " -" + *letter);
            Outcome outcome = run(*at.row, givenTwice(*at.row, *letter));
            EXPECT_EQ(outcome.result, 1);
            EXPECT_TRUE(endsInDuplicate(outcome.text)) << outcome.text;
        }
    }
}

TEST_P(Sweep, CompletionWordsAreTaken) {
    for (const Row& at : allRows(GetParam())) {
        const char* const* objects = optionsOf(at.row->cmdHandler)->objects;
        for (; objects != nullptr && *objects != nullptr; ++objects) {
            SCOPED_TRACE(std::string(at.row->cmd) + " -o " + *objects);
            // Given twice, a word that is understood is refused for that, or taken; never called invalid.
            std::string text = run(*at.row, {"-o", *objects, "-Z"}).text;
            EXPECT_EQ(text.find("invalid"), std::string::npos) << text;
        }
    }
}

// Words of help texts that stand as they are although no option table has them, options that a text leaves out, and
// letters that are accepted only to print the help.
struct KnownGap {
    const char* command;
    const char* option;
};
const KnownGap knownGaps[] = {
    {"error", "--controller"}, {"error", "--help"},     {"event", "--sequence"}, {"event", "--seqno"},
    {"rescan", "--force"},     {"rescan", "-f"},        {"tandem", "--help"},    {"tandem", "--adress"},
    {"copyback", "-d"},        {"create", "-t"},        {"enc", "-a"},           {"init", "-t"},
    {"maxcreatesize", "-b"},   {"maxcreatesize", "-i"}, {"maxcreatesize", "-n"}, {"maxcreatesize", "-p"},
    {"maxcreatesize", "-s"},   {"maxcreatesize", "-w"}, {"tandem", "--length"},  {"tandem", "--Tandemix"},
};

bool isKnownGap(const _cmd_struct& row, const std::string& option) {
    return std::any_of(std::begin(knownGaps), std::end(knownGaps),
                       [&](const KnownGap& gap) { return strcmp(gap.command, row.cmd) == 0 && option == gap.option; });
}

// True when the text names the option, not just a longer one that begins alike.
bool names(const std::string& help, const std::string& option) {
    for (size_t at = help.find(option); at != std::string::npos; at = help.find(option, at + 1)) {
        char before = at == 0 ? ' ' : help[at - 1];
        char after = at + option.size() < help.size() ? help[at + option.size()] : ' ';
        bool isWord = isalnum(static_cast<unsigned char>(after)) != 0 || after == '-';
        if (before != '-' && !isalnum(static_cast<unsigned char>(before)) && (option[1] != '-' || !isWord)) return true;
    }
    return false;
}

TEST_P(Sweep, HelpNamesEveryOption) {
    for (const Row& at : allRows(GetParam())) {
        const OptionSet& set = *optionsOf(at.row->cmdHandler);
        if (!isThere(*at.row)) continue;
        for (const LongOption* row = set.longOptions; row->name[0] != '\0'; ++row) {
            std::string option = std::string("--") + row->name;
            if (row->value == OPT_OUTPUT || isKnownGap(*at.row, option)) continue;
            EXPECT_TRUE(names(at.row->cmdHelp, option)) << at.row->cmd << " does not explain " << option;
        }
        for (const char* letter = set.letters; *letter != '\0'; ++letter) {
            if (*letter == ':' || *letter == '\1') continue;
            std::string option = std::string("-") + *letter;
            if (isKnownGap(*at.row, option)) continue;
            EXPECT_TRUE(names(at.row->cmdHelp, option)) << at.row->cmd << " does not explain " << option;
        }
    }
}

TEST_P(Sweep, HelpNamesNoOtherOption) {
    for (const Row& at : allRows(GetParam())) {
        const OptionSet& set = *optionsOf(at.row->cmdHandler);
        if (!isThere(*at.row)) continue;
        std::string help = at.row->cmdHelp;
        for (size_t from = help.find("--"); from != std::string::npos; from = help.find("--", from + 2)) {
            size_t end = from + 2;
            while (isalnum(static_cast<unsigned char>(help[end])) != 0) {
                ++end;
            }
            std::string option = help.substr(from, end - from);
            if (option == "--" || isKnownGap(*at.row, option)) continue;
            bool found = false;
            for (const LongOption* row = set.longOptions; row->name[0] != '\0'; ++row) {
                found = found || option == std::string("--") + row->name;
            }
            EXPECT_TRUE(found) << at.row->cmd << " explains " << option << ", which it does not take";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(CommandSets, Sweep, ::testing::Values(false, true),
                         [](const auto& each) { return each.param ? "ArrayBased" : "LdBased"; });

} // namespace
