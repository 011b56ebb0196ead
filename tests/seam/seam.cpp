#include "tests/seam/seam.h"

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Functions/version/version.h"
#include "ktsetup/commandTables.h"
#include "tests/support/printed.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

Seam seam;

// Standard input becomes the text and ends behind it.
static void typeIn(const std::string& answers) {
    int ends[2];
    if (pipe(ends) != 0 || write(ends[1], answers.data(), answers.size()) < 0 || dup2(ends[0], STDIN_FILENO) < 0)
        abort();
    close(ends[0]);
    close(ends[1]);
}

static CommandHandler handlerOf(const std::string& word) {
    static const std::map<std::string, CommandHandler> ofKtcfg = {
        {"backup_cfg", doBackUp_CFG}, {"restore_cfg", doRestore_CFG}, {"check", doCheck_CFG}};
    if (ofKtcfg.contains(word)) return ofKtcfg.at(word);
    for (bool arrays : {arrayBasedRaid, !arrayBasedRaid}) {
        const CommandSet& set = arrays ? arrayBasedCommands : ldBasedCommands;
        for (const auto& [rows, size] : {std::pair{set.general, set.generalSize}, {set.internal, set.internalSize}}) {
            for (int i = 0; i < size; ++i)
                if (word == rows[i].cmd) return rows[i].cmdHandler;
        }
    }
    ADD_FAILURE() << "no command " << word;
    return doVersion;
}

Outcome run(const std::string& line, const std::string& answers) {
    typeIn(answers);
    std::string text = line;
    std::vector<char*> words(line.size() + 2);
    int argc = 0;
    parse(&argc, words.data(), text.data());
    _cmd_struct row = {"word", 5, handlerOf(words[0]), "\nlong help\n", ":short"};
    Outcome outcome = {line, 0, "", ""};
    outcome.printed = printedBy([&] { outcome.result = row.cmdHandler(argc, words.data(), &row); });
    outcome.words = text.substr(text.find('\0') + 1);
    return outcome;
}

void expect(const Outcome& outcome, const std::string& printed, int result, const char* file, int line) {
    testing::ScopedTrace trace(file, line, outcome.line);
    EXPECT_EQ(printed, outcome.printed);
    EXPECT_EQ(result, outcome.result);
}

// What stands behind the mark, which is taken away with it.
static std::string cutBehind(std::string& text, const std::string& mark) {
    const size_t at = text.find(mark);
    std::string behind = at == text.npos ? "" : text.substr(at + mark.size());
    text.resize(std::min(at, text.size()));
    return behind;
}

void expectRows(Calls (*unwanted)(), const std::string& table) {
    for (const TableRow& row : rowsOf(table)) {
        seam.calls.clear();
        expect(row.line, row.message, row.result < 0 ? 1 : row.result);
        EXPECT_EQ(Calls{}, unwanted()) << row.line;
    }
}

void expectSteps(const std::map<std::string, std::string>& texts, const std::string& table) {
    std::string whole = table;
    for (const auto& [name, text] : texts)
        replaceAll(whole, "$" + name, text);
    for (TableRow& row : rowsOf(whole)) {
        SCOPED_TRACE(row.line);
        std::string answers = cutBehind(row.line, " < ");
        replaceAll(answers, ",", "\n");
        if (!answers.empty()) answers += "\n";
        seam.statuses.clear();
        for (std::string call = cutBehind(row.line, " ! "), rest; !call.empty(); call = rest) {
            rest = cutBehind(call, ", ");
            const std::string status = cutBehind(call, "=");
            seam.statuses[call] = static_cast<KT_U8>(std::stoi(status));
        }
        std::string calls = cutBehind(row.message, " | ");
        const bool counted = !calls.empty();
        replaceAll(calls, "\n", "");
        seam.calls.clear();
        seam.sent.clear();
        const Outcome outcome = run(row.line, answers);
        if (counted) row.message += row.message.empty() ? "" : "\n";
        expect(outcome, row.message, std::max(row.result, 0));
        if (!counted) continue;
        std::string made;
        for (const std::string& call : seam.calls)
            made += (made.empty() ? "" : "; ") + call;
        EXPECT_EQ(calls, made);
    }
}

KT_U8 answer(const std::string& call) {
    const bool starts =
        call.starts_with("KT_API_") || call == "KT_Adapter_GetCount" || call.starts_with("KT_Adapter_GetInfo");
    if (!starts) seam.calls.push_back(call);
    for (size_t end = call.size(); end != call.npos; end = call.rfind(' ', end - 1)) {
        const auto status = seam.statuses.find(call.substr(0, end));
        if (status != seam.statuses.end()) return status->second;
    }
    return call == "KT_Adapter_GetCount" ? 1 : KT_OK;
}

extern "C" __attribute__((visibility("default"))) int KT_SIM_SgVersion();
int KT_SIM_SgVersion() {
    return 30536;
}
