#include "Public/options.h"

#include <cstring>

void printHelp(const _cmd_struct* row, HelpStyle style) {
    if (style == HelpStyle::LongOnly) {
        out("%s", row->cmdHelp);
        return;
    }
    out("%s%s%s", style == HelpStyle::OwnLine ? "Description:\n" : "Description", row->cmdShortHelp, row->cmdHelp);
}

const char* shownArgument(const OptionSet& set, const LongOption& row) {
    const char* at = set.arguments;
    if (at == nullptr || row.value == OPT_OUTPUT) return "";
    for (const LongOption* before = set.longOptions; before != &row; ++before)
        at += strlen(at) + 1;
    return at;
}

bool nextWord(const char*& at, std::string_view& word) {
    static constexpr char AROUND[] = "<|>";
    at += strspn(at, AROUND);
    word = {at, strcspn(at, AROUND)};
    at += word.size();
    return !word.empty();
}

OptionScan::OptionScan(const OptionSet& options) : set(options) {
    option* to = rows;
    for (const LongOption* row = set.longOptions; row->value != 0; ++row) {
        if (row->name[0] != '\0') *to++ = {row->name, row->argument, nullptr, row->value};
    }
    // 0 starts at the first argument as 1 does, and also forgets what an abandoned scan left behind.
    optind = 0;
}

int OptionScan::next(int argc, char** argv) const {
    const int speaks = opterr;
    if (set.secrets) opterr = 0;
    const int value = getopt_long(argc, argv, set.letters, rows, nullptr);
    opterr = speaks;
    if (set.secrets && value == '?' && speaks != 0) {
        fprintf(stderr, "%s: unknown option, or an option without its value\n", argv[0]);
    }
    return value;
}

bool givenOnce(const OptionSet& set, const OptionCounts& given) {
    for (const char* letter = set.once; *letter != '\0'; ++letter) {
        if (given[*letter] > 1) {
            out(ErrorDuplicate);
            return false;
        }
    }
    return true;
}

bool givenRequired(const OptionSet& set, const OptionCounts& given, const char* command) {
    bool complete = true;
    for (const char* letter = set.required; *letter != '\0'; ++letter) {
        if (given[*letter] == 0) {
            out(OptionRequired, command, *letter);
            complete = false;
            if (set.oneMissing) break;
        }
    }
    return complete;
}
