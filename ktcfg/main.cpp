// Saves an adapter's configuration to a text file, restores it, and tells beforehand what that would do; brings
// adapters to what a file wants: the commands that ktsetup does not offer.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <strings.h>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/help/help.h"
#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Public/fileName.h"
#include "Public/hold.h"
#include "Public/start.h"
#include "Public/utility.h"
#include "ktcfg/planWords.h"

#define ROW(word, handler, help, shortHelp)                                                                            \
    { word, static_cast<int>(sizeof(word)), handler, help, shortHelp }

static _cmd_struct commands[] = {
    ROW("help", doHelp, help_help, help_sh),
    ROW("backup_cfg", doBackUp_CFG, backup_cfg_help, backup_cfg_sh),
    ROW("check", doCheck_CFG, check_help, check_sh),
    ROW("restore_cfg", doRestore_CFG, restore_cfg_help, restore_cfg_sh),
    ROW("plan", doPlan, plan_help, plan_sh),
    ROW("apply", doApply, apply_help, apply_sh),
};
static constexpr int RESULT_USAGE = 2; // the words were not understood
static const CommandSet commandSet = {commands, std::size(commands), nullptr, 0};

// A command's word may be shortened, as everywhere; the dispatcher finds its row.
static _cmd_struct* findCommand(const char* word) {
    const auto isPrefix = [&](const _cmd_struct& row) { return strncasecmp(row.cmd, word, strlen(word)) == 0; };
    const auto found = std::find_if(std::begin(commands), std::end(commands), isPrefix);
    return *word == '\0' || found == std::end(commands) ? nullptr : found;
}

// Takes away the two words that say where the output goes: it goes there by now, and plans refuse stray words.
static void forgetOutput(CommandLine& line) {
    char** const end = line.argv + line.argc;
    char** const at = std::find_if(line.argv, end, [](const char* word) { return word[0] == '-' && word[1] == '\1'; });
    std::copy(at + 2, end + 1, at);
    line.argc -= 2;
}

// Plans are made of reports, which open the library by themselves, or need none.
static int runPlanning(CommandLine line, _cmd_struct* row) {
    if (line.toOutput) forgetOutput(line);
    chooseCommandSet();
    const int result = row->cmdHandler(line.argc - 1, line.argv + 1, row);
    const bool written = closeOutput();
    endBySignal();
    return result == 0 && !written ? 1 : result;
}

// The index in front of the command, as it was typed: one that fits no adapter is not another one's.
static bool takeTypedAdapter(const char* word) {
    static constexpr KT_U64 HIGHEST = 254;
    KT_U64 index = 0;
    if (!isTypedNumber(word)) return true;
    if (!parseUpTo(word, HIGHEST, index)) return false;
    typedAdapter = static_cast<int>(index);
    return true;
}

static int showHelp(int result) {
    chooseCommandSet();
    char* help[] = {const_cast<char*>("help"), nullptr};
    doHelp(1, help, &commands[0]);
    return closeOutput() ? result : 1;
}

int main(int argc, char** argv) {
    setCommandSets(commandSet, commandSet);
    const bool fits = argc < 2 || takeTypedAdapter(argv[1]);
    CommandLine line = takeCommandLine(argc, argv);
    if (line.argc < 2) return showHelp(RESULT_USAGE);
    const std::string word = line.argv[1];
    if (word == "-h" || word == "--help") return showHelp(0);
    if (word == "--version") {
        out("ktcfg %s\n", CLI_VERSION);
        return closeOutput() ? 0 : 1;
    }
    _cmd_struct* row = findCommand(line.argv[1]);
    const bool plans = row != nullptr && (row->cmdHandler == doPlan || row->cmdHandler == doApply);
    if (plans && fits) return runPlanning(line, row);
    if (plans) {
        fprintf(stderr, "ktcfg: no adapter has that index (--help tells more)\n");
        return RESULT_USAGE;
    }
    if (row != nullptr || strcasecmp(line.argv[1], "ver") == 0) return runOneShot(line);
    if (line.toOutput && word == "-\1utput") {
        fprintf(stderr, "ktcfg: a command comes first (--help tells more)\n");
    } else {
        fprintf(stderr, "ktcfg: \"%s\" is not a command (--help tells more)\n", shownName(word).c_str());
    }
    return RESULT_USAGE;
}
