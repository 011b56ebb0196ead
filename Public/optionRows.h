// A command's options as rows, one an option, and what is made of them while the program is compiled: the scanner's
// string, the table of long names, the checks, the words for completion and the help text, of which the manual page is
// made in turn.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "Public/options.h"

// What may be said of an option.
enum : unsigned {
    ONCE = 1,     // given twice, it is refused
    REQUIRED = 2, // missing options are reported in the order of their rows
    UNNAMED = 4,  // the help text does not name it
    LONG = 8,     // the row stands for the long name alone: its letter differs, or is not said
    REFUSED = 16  // the help text names an option that there is not
};

struct OptionRow {
    short value;                  // its letter, or an OPT_ value for an option without one
    std::string_view name;        // its long name, if it has one
    std::string_view argument;    // its value as the help text shows it, "<on|off>"; empty for an option without one
    Takes takes = Takes::Nothing; // what the value is
    unsigned rules = 0;
    std::string_view help = {}; // lines that are indented behind it in the help text
};

// Behind the other options of nearly every command.
inline constexpr OptionRow HELP_ROW = {'h', "help", ""};

struct CommandWords {
    std::string_view usage = {}; // what stands in front of the options in the help text
    bool settledUsage = false;   // the usage is printed as it is and not broken, however long its lines are
    std::span<const OptionRow> rows = {};
    std::string_view examples = {};
    std::string_view scanned = {}; // the letters in the order that the scanner is given; empty: that of the rows
    HelpStyle helpStyle = HelpStyle::Described;
    bool oneMissing = false;
    bool helpOnUnknown = false;
    bool secrets = false;
};

namespace made {

inline constexpr size_t LONGEST_LINE = 80;

// Defined nowhere: rows that lead here do not compile, and the compiler shows the reason.
void refuse(const char* reason);

constexpr bool hasLetter(const OptionRow& row) {
    return row.value < OPT_WAIVE && (row.rules & LONG) == 0;
}

constexpr bool isTaken(const OptionRow& row) {
    return (row.rules & REFUSED) == 0;
}

// Collects characters: the first time to count them (at is null), the second to keep them.
struct Text {
    char* at = nullptr;
    size_t length = 0;
    constexpr void add(char c) {
        if (at != nullptr) at[length] = c;
        ++length;
    }
    constexpr void add(std::string_view text) {
        for (char c : text)
            add(c);
    }
};

// Adds the lines of text, each behind blanks.
constexpr void addLines(Text& to, std::string_view text, size_t indent, size_t longest = LONGEST_LINE) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (indent + line.size() > longest) refuse("a line of the help text does not fit 80 columns");
        for (size_t i = 0; i < indent && !line.empty(); ++i)
            to.add(' ');
        to.add(line);
        to.add('\n');
        text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    }
}

// "-a, --action <on|off>", and the help behind it.
constexpr void addOption(Text& to, const OptionRow& row) {
    const size_t start = to.length;
    to.add("    ");
    if (hasLetter(row)) {
        to.add('-');
        to.add(static_cast<char>(row.value));
        if (!row.name.empty()) to.add(", ");
    }
    if (!row.name.empty()) to.add("--");
    to.add(row.name);
    if (!row.argument.empty()) to.add(' ');
    to.add(row.argument);
    if (to.length - start > LONGEST_LINE) refuse("the line of an option does not fit 80 columns");
    to.add('\n');
    addLines(to, row.help, 8);
}

constexpr void addHelp(Text& to, const CommandWords& words) {
    addLines(to, words.usage, 0, words.settledUsage ? SIZE_MAX : LONGEST_LINE);
    to.add("\nOptions:\n");
    for (const OptionRow& row : words.rows) {
        if ((row.rules & UNNAMED) == 0) addOption(to, row);
    }
    to.add("\nExamples:\n");
    addLines(to, words.examples, 4);
    to.add('\n');
}

constexpr void addLetter(Text& to, const OptionRow& row) {
    to.add(static_cast<char>(row.value));
    if (row.takes != Takes::Nothing) to.add(':');
}

// The scanner's string. Its first letter, \1, is an option that nobody can type: start-up writes it over the word
// "-output" once it has read it, so that the scanner passes over that word and its value.
constexpr void addLetters(Text& to, const CommandWords& words) {
    const auto isScanned = [](const OptionRow& row) { return hasLetter(row) && isTaken(row); };
    to.add("\1:");
    for (const char letter : words.scanned) {
        bool found = false;
        for (const OptionRow& row : words.rows) {
            if (!isScanned(row) || row.value != letter) continue;
            addLetter(to, row);
            found = true;
        }
        if (!found) refuse("a letter of the scanned order has no row");
    }
    for (const OptionRow& row : words.rows) {
        const bool there = words.scanned.find(static_cast<char>(row.value)) != std::string_view::npos;
        if (isScanned(row) && !there) addLetter(to, row);
    }
}

template <unsigned rule>
constexpr void addLettersOf(Text& to, const CommandWords& words) {
    for (const OptionRow& row : words.rows) {
        if ((row.rules & rule) == 0) continue;
        if (!hasLetter(row)) refuse("only options with a letter can be counted");
        to.add(static_cast<char>(row.value));
    }
}

// What each row shows as its value, in the order of the long options.
constexpr void addArguments(Text& to, const CommandWords& words) {
    for (const OptionRow& row : words.rows) {
        if (!isTaken(row)) continue;
        to.add(row.argument);
        to.add('\0');
    }
}

template <const CommandWords& words, void (*write)(Text&, const CommandWords&)>
consteval auto charsOf() {
    constexpr size_t length = [] {
        Text counted;
        write(counted, words);
        return counted.length;
    }();
    std::array<char, length + 1> chars = {};
    Text kept{chars.data()};
    write(kept, words);
    return chars;
}

template <const CommandWords& words>
consteval auto longOptionsOf() {
    std::array<LongOption, words.rows.size() + 2> rows = {};
    static_assert(rows.size() <= MAX_LONG_OPTIONS);
    LongOption* to = rows.data();
    for (const OptionRow& row : words.rows) {
        if (!isTaken(row)) continue;
        if (row.name.size() >= sizeof to->name) refuse("the long name of an option has no room");
        if ((row.takes == Takes::Nothing) != row.argument.empty()) refuse("an option shows a value and takes none");
        for (size_t i = 0; i < row.name.size(); ++i)
            to->name[i] = row.name[i];
        to->argument = row.takes == Takes::Nothing ? no_argument : required_argument;
        to->takes = row.takes;
        to->value = row.value;
        ++to;
    }
    *to = OUTPUT_OPTION;
    return rows;
}

template <const CommandWords& words>
inline constexpr auto help = charsOf<words, addHelp>();
template <const CommandWords& words>
inline constexpr auto letters = charsOf<words, addLetters>();
template <const CommandWords& words>
inline constexpr auto once = charsOf<words, addLettersOf<ONCE>>();
template <const CommandWords& words>
inline constexpr auto required = charsOf<words, addLettersOf<REQUIRED>>();
template <const CommandWords& words>
inline constexpr auto arguments = charsOf<words, addArguments>();
template <const CommandWords& words>
inline constexpr auto longOptions = longOptionsOf<words>();

} // namespace made

// The help text of a command: usage, options, examples.
template <const CommandWords& words>
inline constexpr const char* helpOf = made::help<words>.data();

// What the scanner and the checks read of it.
template <const CommandWords& words>
inline constexpr OptionSet optionSet = {.letters = made::letters<words>.data(),
                                        .longOptions = made::longOptions<words>.data(),
                                        .once = made::once<words>.data(),
                                        .required = made::required<words>.data(),
                                        .arguments = made::arguments<words>.data(),
                                        .helpStyle = words.helpStyle,
                                        .oneMissing = words.oneMissing,
                                        .helpOnUnknown = words.helpOnUnknown,
                                        .secrets = words.secrets};
