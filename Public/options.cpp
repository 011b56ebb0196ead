#include "Public/options.h"

void printHelp(const _cmd_struct* row, HelpStyle style) {
    if (style == HelpStyle::LongOnly) {
        out("%s", row->cmdHelp);
        return;
    }
    out("%s%s%s", style == HelpStyle::OwnLine ? "Description:\n" : "Description", row->cmdShortHelp, row->cmdHelp);
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
