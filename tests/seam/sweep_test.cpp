// What holds for every row of the four command tables, so that a new command is held to it without a test of its own:
// help works, an unknown option fails, required options and options given twice are refused, and the library is called
// by none of it.
#include <algorithm>

#include "Public/start.h"
#include "ktsetup/commandTables.h"
#include "tests/seam/seam.h"
#include "tests/support/printed.h"

using namespace std::string_literals;

namespace {

using Sweep = SeamTest;

// Checks each row of all tables with its options.
template <class Check>
void eachRow(Check check) {
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    opterr = 0;
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
    EXPECT_EQ(Calls{}, seam.calls);
}

// A value that the option takes: what the letter stands for differs from command to command, so several are tried.
Outcome givenTwice(_cmd_struct& row, char letter) {
    static const char* const values[] = {"1",      "vd",     "pd",   "enc",   "on",      "read",      "enable",
                                         "hba",    "0",      "64",   "0x5A",  "start",   "changePwd", "getinfo",
                                         "getCfg", "bios",   "none", "quick", "mailbox", "phy",       "wb",
                                         "sync",   "update", "dev",  "spare", "100",     "short",     "now"};
    const std::string option = std::string(" -") + letter;
    const char* argument = strchr(optionsOf(row.cmdHandler)->letters, letter);
    if (argument == nullptr || argument[1] != ':') return run(row.cmd + option + option);
    for (const std::string value : values) {
        Outcome outcome = run(row.cmd + option + " " + value + option + " " + value);
        if (outcome.printed.ends_with(ErrorDuplicate)) return outcome;
    }
    return run(row.cmd + option + " 1" + option + " 1");
}

TEST_F(Sweep, RowsAreWellFormedWithHelpAndUnknownOptionsFail) {
    eachRow([](_cmd_struct& row, const OptionSet& set) {
        EXPECT_EQ(static_cast<size_t>(row.cmdLen), strlen(row.cmd) + 1);
        EXPECT_EQ(strchr(row.cmdHelp, '%'), nullptr);
        EXPECT_EQ(strchr(row.cmdShortHelp, '%'), nullptr);
        if (*set.letters == '\0') return;
        const Outcome help = run(row.cmd + " -h"s);
        EXPECT_EQ(help.result, 0);
        EXPECT_TRUE(has(help.printed, "long help\n")); // which stands for the row's own
        EXPECT_GT(strlen(row.cmdHelp), 10U);
        EXPECT_EQ(run(row.cmd + " -Z"s).result, set.helpOnUnknown ? 0 : 1);
        EXPECT_EQ(run(row.cmd + " --no-such-option"s).result, set.helpOnUnknown ? 0 : 1);
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

TEST_F(Sweep, RequiredOptionsAreAskedForAndSecondOnesRefused) {
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
            const Outcome outcome = run(row.cmd);
            EXPECT_EQ(outcome.result, 1);
            EXPECT_TRUE(outcome.printed.starts_with(expected)) << outcome.printed;
        }
        for (const char* letter = set.once; *letter != '\0'; ++letter) {
            const Outcome outcome = givenTwice(row, *letter);
            EXPECT_EQ(outcome.result, 1) << *letter;
            EXPECT_TRUE(outcome.printed.ends_with(ErrorDuplicate)) << *letter << ": " << outcome.printed;
        }
    });
}

// Digests of what the commands say to values of their options before they look at what else is given; some have one for
// each set. Where a command is to say anything else, the digest that the test prints takes its place.
const std::string valueDigests =
    " devmap c77a; adapter 438a; assign 656b; flash 89a7; rescan 4830; cc f0cc; create 179c; delete 46f0;"
    " event 841d; get ccfa; info 6ce2; init 5133; migrate c8b1; rebuild 82d6; set 8101; enc ce50; import 5136;"
    " locate 4e6a; mp a6d4; report b208; aesop bb2c; aesentry 1d8f; aesport 90c0; forceonline e29c; smart 07f5;"
    " ssd f3bf; ssdop a05f; register 7e30; nvsram f240; maxcreatesize 66ad; wipe 4847; status 27b9; error 58ec;"
    " tandem 6e8e; pause 3efd; assign 67af; create 7cd3; delete 6e14; get 8f3e; info 29f2; set 90ee; rebuild e013;"
    " copyback e681;";

TEST_F(Sweep, ValuesAreTakenOrRefused) {
    const std::string values =
        "|0|1|7|24|48|64|255|256|65535|65536|65552|4294967295|4294967296|18446744073709551615|18446744073709551616|"
        "x|1x|-1|0x|0x1F|5A|0x100|0x10000|1,2|1,x|1,,2|,1|1,65536|,|1,|vd|p|vx|ARRAY|on|auto|AUTO|Stop|a.b|"
        "12345678901|\"123 5678901\"|12345678901234567|\"1234 678901234567\"";
    eachRow([&](_cmd_struct& row, const OptionSet& set) {
        std::string texts;
        for (const LongOption* option = set.longOptions; option->value != 0; ++option) {
            if (option->argument == no_argument || option->value == OPT_OUTPUT) continue;
            const std::string letter = {'-', static_cast<char>(option->value)};
            const std::string word = option->value < OPT_WAIVE ? letter : std::string("--") + option->name;
            std::istringstream each(values);
            for (std::string value; std::getline(each, value, '|');) {
                const Outcome outcome = run(row.cmd + (" " + word) + " " + value + (value.empty() ? "\t-Z" : " -Z"));
                texts += outcome.line + "\n" + outcome.printed + std::to_string(outcome.result) + "\n";
            }
        }
        char digest[32];
        snprintf(digest, sizeof digest, " %s %04x;", row.cmd, sumOf(texts) & 0xFFFF);
        EXPECT_TRUE(texts.empty() || has(valueDigests, digest)) << digest << "\n" << texts;
    });
}

TEST_F(Sweep, CompletionWordsAreTaken) {
    eachRow([](_cmd_struct& row, const OptionSet& set) {
        for (const LongOption* option = set.longOptions; option->value != 0; ++option) {
            const char* at = shownArgument(set, *option);
            std::string_view word;
            while (option->takes == Takes::Words && option->value < OPT_WAIVE && nextWord(at, word)) {
                const std::string letter(1, static_cast<char>(option->value));
                const std::string text = printed(row.cmd + (" -" + letter) + " " + std::string(word) + " -Z");
                EXPECT_FALSE(has(text, "nvalid")) << word << ": " << text;
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

TEST_F(Sweep, HelpNamesEveryOptionAndNoOther) {
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

// Starting and rescanning on a library that reports more adapters than are supported.
TEST_F(Sweep, StartsWithTheFirstSixteenAdaptersAndCapsNoCountLater) {
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    seam.statuses["KT_Adapter_GetCount"] = 255;
    EXPECT_EQ(printedBy([] { EXPECT_TRUE(startLibrary()); }), "SG driver version 3.5.36.\nCLI supports 16 adapters!\n");
    EXPECT_EQ(gNumAdaptersFound, 16);
    expectSteps(R"(
adapter -i 16 ! KT_Adapter_GetCount=255 =1> Adapter 16 does not exist.
adapter ! KT_Adapter_GetCount=255 => Total number of adapters: 255\nCurrent default adapter ID for CLI commands: 0
adapter -i 254 ! KT_Adapter_GetCount=255 => 
)");
    EXPECT_EQ(gCurrentAdapter, 254);
    EXPECT_EQ(0, run("rescan -a scan").result);
    EXPECT_EQ(gCurrentAdapter, 0);
    EXPECT_EQ(gNumAdaptersFound, 255);
}

} // namespace
