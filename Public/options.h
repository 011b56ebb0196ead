// The one pattern by which every handler reads its options. What may be given once, what is required and how help is
// printed is data; the handler only says what one option means.
#pragma once

#include <getopt.h>
#include <string_view>

#include "Public/common.h"

// Option values beyond the letters, for long options without one.
enum { OPT_OUTPUT = 1, OPT_WAIVE = 256, OPT_FIRST_OWN = 257, OPT_LIMIT = 288 };

// What an option's value is, for completion.
enum class Takes : unsigned char {
    Nothing,   // the option has no value
    Text,      // anything: a name, a size, a number
    Secret,    // a password or a key
    Words,     // one of the words between the strokes of "<on|off>"
    File,      // the name of a file
    Adapter,   // an adapter's index
    Disk,      // a physical disk's id
    Disks,     // physical disks' ids, separated by commas
    Vd,        // a virtual disk's id
    Array,     // an array's id
    Enclosure, // an enclosure's id
    ObjectId,  // the id of what -o names
};

// One long option, or an option without a long name (an empty one). The name lies in the row itself: a table of
// pointers would be patched at every start of the program.
struct LongOption {
    char name[18];
    unsigned char argument; // no_argument or required_argument
    short value;            // what the scanner returns for it; 0 behind the last row
    Takes takes = Takes::Text;
};

// Rows of one command at most, the end not counted.
inline constexpr int MAX_LONG_OPTIONS = 32;

// Rows that stand in nearly every table. "output" is the shell's: accepted here, used at start-up.
#define OUTPUT_OPTION                                                                                                  \
    { "output", required_argument, OPT_OUTPUT, Takes::File }
#define END_OF_OPTIONS                                                                                                 \
    { "", 0, 0 }

enum class HelpStyle {
    Described, // "Description", short help, long help
    OwnLine,   // the same with a line break behind "Description:"
    LongOnly   // the long help alone
};

struct OptionSet {
    const char* letters;             // getopt_long's option string; holds "\1:" for the swallowed "-output" word
    const LongOption* longOptions;   // MAX_LONG_OPTIONS at most, ends with END_OF_OPTIONS
    const char* once = "";           // letters refused when given twice
    const char* required = "";       // letters that must be given, in the order in which they are reported
    const char* arguments = nullptr; // what each long option shows as its value, one string behind the other; for
                                     // completion
    HelpStyle helpStyle = HelpStyle::Described;
    bool oneMissing = false;    // of several missing options only the first is reported
    bool helpOnUnknown = false; // an unknown option prints the help with result 0 instead of failing with 1
    bool secrets = false;       // words may hold a password or a key: one that is not understood is not repeated
};

// What a row of set.longOptions shows as its value: "<on|off>", "<PD id>"; "" where it shows none.
const char* shownArgument(const OptionSet& set, const LongOption& row);

// Goes through the words of "<on|off>": puts the next one into word and moves `at` behind it. False behind the last.
bool nextWord(const char*& at, std::string_view& word);

// How often each option was given, by its value.
struct OptionCounts {
    unsigned times[OPT_LIMIT] = {};
    unsigned& operator[](int value) { return times[value]; }
    unsigned operator[](int value) const { return times[value]; }
};

enum class Take {
    Yes,   // understood
    Help,  // not this command's: print the help, result 0
    Failed // refused with a message: result 1
};

void printHelp(const _cmd_struct* row, HelpStyle style = HelpStyle::Described);

// Goes through the options of one command line. One scan at a time: the scanner underneath is the process's.
struct OptionScan {
    const OptionSet& set;
    option rows[MAX_LONG_OPTIONS + 1] = {};

    explicit OptionScan(const OptionSet& options);
    // The next option's value, '?' for one that is refused with a message, -1 behind the last one.
    int next(int argc, char** argv) const;
};

// What a handler is called with.
struct CommandCall {
    int argc;
    char** argv;
    const _cmd_struct* row;
};

// Resets the scanner and hands each option to take(value, argument) -> Take. True when all were understood; otherwise
// the command is over and `result` is what its handler returns.
template <class TakeOption>
bool scanOptions(const CommandCall& call, const OptionSet& set, OptionCounts& given, int& result, TakeOption take) {
    const OptionScan scan(set);
    int value;
    while ((value = scan.next(call.argc, call.argv)) != -1) {
        if (value == OPT_OUTPUT) continue;
        if (value == '?' && !set.helpOnUnknown) {
            result = 1;
            return false;
        }
        Take taken = value == '?' ? Take::Help : take(value, optarg);
        if (taken == Take::Help) printHelp(call.row, set.helpStyle);
        if (taken != Take::Yes) {
            result = taken == Take::Help ? 0 : 1;
            return false;
        }
        ++given[value];
    }
    return true;
}

// Refuses, with ErrorDuplicate, a second use of any option in set.once. True when there is none.
bool givenOnce(const OptionSet& set, const OptionCounts& given);

// One OptionRequired line per missing option of set.required (set.oneMissing: for the first). True when none is
// missing.
bool givenRequired(const OptionSet& set, const OptionCounts& given, const char* command);
