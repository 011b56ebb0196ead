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

// Checks each row of both tables with its options.
template <class Check>
void eachRow(bool arrayBased, Check check) {
    const CommandSet& set = arrayBased ? arrayBasedCommands : ldBasedCommands;
    auto walk = [&](const char* table, _cmd_struct* rows, int size) {
        for (_cmd_struct* row = rows; row < rows + size; ++row) {
            SCOPED_TRACE(std::string(table) + " " + row->cmd);
            ASSERT_NE(optionsOf(row->cmdHandler), nullptr);
            check(*row, *optionsOf(row->cmdHandler));
        }
    };
    walk("general", set.general, set.generalSize);
    walk("internal", set.internal, set.internalSize);
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
                                         "sync",   "update", "dev",  "spare", "100",     "short",     "now"};
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
    auto check = [](_cmd_struct& row, const OptionSet&) {
        EXPECT_EQ(static_cast<size_t>(row.cmdLen), strlen(row.cmd) + 1);
        EXPECT_EQ(strchr(row.cmdHelp, '%'), nullptr);
        EXPECT_EQ(strchr(row.cmdShortHelp, '%'), nullptr);
    };
    eachRow(GetParam(), check);
}

TEST_P(Sweep, HelpIsPrintedAndUnknownOptionsFail) {
    eachRow(GetParam(), [](_cmd_struct& row, const OptionSet& set) {
        if (*set.letters == '\0') return;
        Outcome help = run(row, {"-h"});
        EXPECT_EQ(help.result, 0);
        EXPECT_NE(help.text.find(row.cmdHelp), std::string::npos);
        EXPECT_GT(strlen(row.cmdHelp), 10U);
        EXPECT_EQ(run(row, {"-Z"}).result, set.helpOnUnknown ? 0 : 1);
        EXPECT_EQ(run(row, {"--no-such-option"}).result, set.helpOnUnknown ? 0 : 1);
    });
}

// Each command with the letters that must be given, in the order in which they are asked for, and behind the stroke
// those that may be given only once; create has two forms.
const std::string commandLetters =
    " ? /i; help /i; devmap o/io; adapter /i; assign d/ado; flash a/afipt; rescan a/; cc l/alot; "
    "create rd/bdnpqrsw; create /abdnpqrstw; delete oi/fio; event /; get o/io; info o/io; init l/alo; "
    "migrate l/; rebuild l/adl; enc o/eiot; import /i; locate /aio; mp d/ad; set o/cinopw; ssd /adt; ssdop d/adfm; "
    "report /i; "
    "aesop oep/eikopw; aesentry o/ikop; aesport o/eiop; forceonline i/ip; smart p/p; register /adtv; nvsram a/acps; "
    "maxcreatesize rd/dqr; wipe d/d; status o/io; error c/c; version /; tandem od/adl; pause c/c; "
    "copyback l/al; message /; ";

TEST_P(Sweep, RequiredAndSingleOptionsAreTheseLetters) {
    eachRow(GetParam(), [](_cmd_struct& row, const OptionSet& set) {
        std::string once = set.once;
        std::sort(once.begin(), once.end());
        const std::string letters = std::string(row.cmd) + " " + set.required + "/" + once;
        EXPECT_NE(commandLetters.find(" " + letters + "; "), std::string::npos) << letters;
    });
}

TEST_P(Sweep, RequiredOptionsAreAskedFor) {
    eachRow(GetParam(), [](_cmd_struct& row, const OptionSet& set) {
        std::string expected;
        for (const char* letter = set.required; *letter != '\0'; ++letter) {
            char line[128];
            snprintf(line, sizeof line, OptionRequired, row.cmd, *letter);
            expected += line;
            if (set.oneMissing) break;
        }
        if (expected.empty()) return;
        Outcome outcome = run(row, {});
        EXPECT_EQ(outcome.result, 1);
        EXPECT_EQ(outcome.text.substr(0, expected.size()), expected);
    });
}

TEST_P(Sweep, OptionsGivenTwiceAreRefused) {
    eachRow(GetParam(), [](_cmd_struct& row, const OptionSet& set) {
        for (const char* letter = set.once; *letter != '\0'; ++letter) {
            Outcome outcome = run(row, givenTwice(row, *letter));
            EXPECT_EQ(outcome.result, 1) << *letter;
            EXPECT_TRUE(endsInDuplicate(outcome.text)) << *letter << ": " << outcome.text;
        }
    });
}

TEST_P(Sweep, CompletionWordsAreTaken) {
    eachRow(GetParam(), [](_cmd_struct& row, const OptionSet& set) {
        for (const LongOption* option = set.longOptions; option->value != 0; ++option) {
            const char* at = shownArgument(set, *option);
            std::string_view word;
            while (option->takes == Takes::Words && option->value < OPT_WAIVE && nextWord(at, word)) {
                std::string text =
                    run(row, {"-" + std::string(1, static_cast<char>(option->value)), std::string(word), "-Z"}).text;
                EXPECT_EQ(text.find("nvalid"), std::string::npos) << row.cmd << " " << word << ": " << text;
            }
        }
    });
}

// Most help texts are made of the rows; these few stand as they are, with words that no row has and without some that
// a row has.
struct KnownGap {
    const char* command;
    const char* option;
};
const KnownGap knownGaps[] = {
    {"error", "--controller"}, {"error", "--help"},    {"event", "--sequence"},
    {"event", "--seqno"},      {"rescan", "--force"},  {"tandem", "--adress"},
    {"tandem", "--Tandemix"},  {"tandem", "--length"}, {"tandem", "--help"},
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

TEST_P(Sweep, HelpNamesEveryOptionAndNoOther) {
    eachRow(GetParam(), [](_cmd_struct& row, const OptionSet& set) {
        auto expectNamed = [&](const std::string& option) {
            if (isKnownGap(row, option)) return;
            EXPECT_TRUE(names(row.cmdHelp, option)) << row.cmd << " does not explain " << option;
        };
        std::vector<std::string> known = {"--"};
        for (const LongOption* option = set.longOptions; option->value != 0; ++option) {
            if (option->name[0] == '\0') continue;
            known.push_back(std::string("--") + option->name);
            if (option->value != OPT_OUTPUT) expectNamed(known.back());
        }
        std::string help = row.cmdHelp;
        for (size_t from = help.find("--"); from != std::string::npos; from = help.find("--", from + 2)) {
            size_t end = from + 2;
            while (isalnum(static_cast<unsigned char>(help[end])) != 0)
                ++end;
            std::string option = help.substr(from, end - from);
            if (isKnownGap(row, option)) continue;
            EXPECT_NE(std::find(known.begin(), known.end(), option), known.end())
                << row.cmd << " explains " << option << ", which it does not take";
        }
    });
}

INSTANTIATE_TEST_SUITE_P(CommandSets, Sweep, ::testing::Values(false, true),
                         [](const auto& each) { return each.param ? "ArrayBased" : "LdBased"; });

} // namespace
