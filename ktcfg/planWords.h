// ktcfg plan and ktcfg apply: their words, options and help.
#pragma once

#include "Public/optionRows.h"

// Plans what leads from the adapters to what a file wants, and shows it. 0: shown, or nothing to do; 1: it cannot be
// had, or with --check something would change; 2: words that are not understood.
int doPlan(int argc, char** argv, _cmd_struct* row);
// The same, and carries it out. 0: as wanted; 1: not; 2: words that are not understood; 3: as wanted, but not yet idle.
int doApply(int argc, char** argv, _cmd_struct* row);

// The adapter whose index was typed, for a file with one adapter; -1: none was.
extern int typedAdapter;

enum { OPT_FROM = OPT_FIRST_OWN, OPT_DELETE, OPT_CHECK_ONLY, OPT_YES, OPT_WAIT };

inline constexpr char plan_sh[] = ":Tell which commands lead to what a file wants, rehearsed on a twin.";
inline constexpr OptionRow planRows[] = {
    {'f', "filename", "<filename>", Takes::File, ONCE | REQUIRED,
     "What is wanted: a lab, or a report of a machine that is as it should\n"
     "be; - is standard input."},
    {OPT_FROM, "from", "<report>", Takes::File, 0, "A report instead of the adapters of this machine."},
    {OPT_DELETE, "delete", "", Takes::Nothing, 0,
     "What stands in the way may be deleted, with what is on it. The plan\n"
     "names it."},
    {OPT_CHECK_ONLY, "check", "", Takes::Nothing, 0, "Show nothing but whether anything would change."},
    HELP_ROW,
};
inline constexpr CommandWords planWords = {
    .usage = "\n\nplan -f <filename> [--from <report>][--delete][--check][-h]\n\n"
             "Nothing is changed. The exit status is 0 when the file can be reached,\n"
             "and with --check when nothing would change; 1 when not.\n",
    .rows = planRows,
    .examples = "plan -f wanted.json\n\n"
                "Show the commands that lead from what is there to what wanted.json says.\n"};
inline constexpr const char* plan_help = helpOf<planWords>;
inline constexpr const OptionSet& planOptions = optionSet<planWords>;

inline constexpr char apply_sh[] = ":Bring the adapters to what a file wants.";
inline constexpr OptionRow applyRows[] = {
    {'f', "filename", "<filename>", Takes::File, ONCE | REQUIRED,
     "What is wanted: a lab, or a report of a machine that is as it should\n"
     "be; - is standard input."},
    {OPT_DELETE, "delete", "", Takes::Nothing, 0,
     "What stands in the way may be deleted, with what is on it. The plan\n"
     "names it before it asks."},
    {OPT_YES, "yes", "", Takes::Nothing, 0, "Do not ask."},
    {OPT_WAIT, "wait", "", Takes::Nothing, 0, "Wait for activities that later commands need to have ended."},
    HELP_ROW,
};
inline constexpr CommandWords applyWords = {
    .usage = "\n\napply -f <filename> [--delete][--yes][--wait][-h]\n\n"
             "Shows the plan, asks, and carries it out command by command; stops at the\n"
             "first one that fails. The exit status is 0 when the adapters are as wanted,\n"
             "3 when they are but something still goes on, 1 when they are not.\n",
    .rows = applyRows,
    .examples = "apply -f wanted.json --wait\n\n"
                "Bring the adapters to what wanted.json says.\n"};
inline constexpr const char* apply_help = helpOf<applyWords>;
inline constexpr const OptionSet& applyOptions = optionSet<applyWords>;
