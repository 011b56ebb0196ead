// What holds for every row of the four command tables, so that a new command is held to it without a test of its own:
// help works, an unknown option fails, required options and options given twice are refused, and the library is called
// by none of it.
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <set>
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

// Checks each row of all tables with its options.
template <class Check>
void eachRow(Check check) {
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    opterr = 0;
    KT_STUB_Calls = 0;
    gNumAdaptersFound = 1;
    for (const CommandSet* set : {&ldBasedCommands, &arrayBasedCommands}) {
        gAdapterInfo[0] = {};
        gAdapterInfo[0].MaxDiskGroup = set == &arrayBasedCommands ? 8 : 0;
        gAdapterInfo[0].Features = 0x7F;
        gAdapterInfo[0].LogicalDriverMode = 0x0FFF;
        chooseCommandSet();
        for (auto [row, size] : {std::pair{set->general, set->generalSize}, {set->internal, set->internalSize}}) {
            for (const _cmd_struct* end = row + size; row < end; ++row) {
                SCOPED_TRACE(std::string(row->cmd) + (arrayBasedRaid ? " of the array-based set" : ""));
                ASSERT_NE(optionsOf(row->cmdHandler), nullptr);
                check(*row, *optionsOf(row->cmdHandler));
            }
        }
    }
    EXPECT_EQ(KT_STUB_Calls, 0U);
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
        if (run(row, {option, value, option, value}).text.ends_with(ErrorDuplicate))
            return {option, value, option, value};
    }
    return {option, "1", option, "1"};
}

TEST(Sweep, RowsAreWellFormedWithHelpAndUnknownOptionsFail) {
    eachRow([](_cmd_struct& row, const OptionSet& set) {
        EXPECT_EQ(static_cast<size_t>(row.cmdLen), strlen(row.cmd) + 1);
        EXPECT_EQ(strchr(row.cmdHelp, '%'), nullptr);
        EXPECT_EQ(strchr(row.cmdShortHelp, '%'), nullptr);
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

TEST(Sweep, RequiredOptionsAreAskedForAndSecondOnesRefused) {
    eachRow([](_cmd_struct& row, const OptionSet& set) {
        std::string once = set.once;
        std::sort(once.begin(), once.end());
        const std::string letters = std::string(row.cmd) + " " + set.required + "/" + once;
        EXPECT_NE(commandLetters.find(" " + letters + "; "), std::string::npos) << letters;
        std::string expected;
        for (const char* letter = set.required; *letter != '\0'; ++letter) {
            expected += std::string(row.cmd) + ": option -" + *letter + " is required\n";
            if (set.oneMissing) break;
        }
        if (!expected.empty()) {
            Outcome outcome = run(row, {});
            EXPECT_EQ(outcome.result, 1);
            EXPECT_TRUE(outcome.text.starts_with(expected)) << outcome.text;
        }
        for (const char* letter = set.once; *letter != '\0'; ++letter) {
            Outcome outcome = run(row, givenTwice(row, *letter));
            EXPECT_EQ(outcome.result, 1) << *letter;
            EXPECT_TRUE(outcome.text.ends_with(ErrorDuplicate)) << *letter << ": " << outcome.text;
        }
    });
}

TEST(Sweep, CompletionWordsAreTaken) {
    eachRow([](_cmd_struct& row, const OptionSet& set) {
        for (const LongOption* option = set.longOptions; option->value != 0; ++option) {
            const char* at = shownArgument(set, *option);
            std::string_view word;
            while (option->takes == Takes::Words && option->value < OPT_WAIVE && nextWord(at, word)) {
                std::string text =
                    run(row, {"-" + std::string(1, static_cast<char>(option->value)), std::string(word), "-Z"}).text;
                EXPECT_EQ(text.find("nvalid"), std::string::npos) << word << ": " << text;
            }
        }
    });
}

// Most help texts are made of the rows; these few stand as they are, with words that no row has and without some that
// a row has.
const std::set<std::string> knownGaps = {
    "error --controller", "error --help",      "event --sequence", "event --seqno", "rescan --force",
    "tandem --adress",    "tandem --Tandemix", "tandem --length",  "tandem --help",
};

// The words of a help text that name options.
std::set<std::string> namedIn(const std::string& help) {
    std::set<std::string> named;
    for (size_t from = help.find("--"), end; from != std::string::npos; from = help.find("--", end)) {
        for (end = from + 2; isalnum(static_cast<unsigned char>(help[end])) != 0;)
            ++end;
        named.insert(help.substr(from, end - from));
    }
    return named;
}

TEST(Sweep, HelpNamesEveryOptionAndNoOther) {
    eachRow([](_cmd_struct& row, const OptionSet& set) {
        const std::set<std::string> named = namedIn(row.cmdHelp);
        std::set<std::string> known = {"--"};
        const auto isGap = [&](const std::string& option) { return knownGaps.contains(row.cmd + (" " + option)); };
        for (const LongOption* option = set.longOptions; option->value != 0; ++option) {
            if (option->name[0] == '\0') continue;
            const std::string word = std::string("--") + option->name;
            EXPECT_TRUE(option->value == OPT_OUTPUT || isGap(word) || named.contains(word))
                << word << " is not explained";
            known.insert(word);
        }
        for (const std::string& word : named)
            EXPECT_TRUE(isGap(word) || known.contains(word)) << word << " is explained and not taken";
    });
}

} // namespace
