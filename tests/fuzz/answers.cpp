// Commands on a library whose answers are not what they should be: in every answer a few bytes, counts or indexes are
// others. Whatever it says, a command ends, reads nothing beyond its buffers, and prints nothing but text.
//     fuzz_answers ANSWERS SEED TRANSCRIPT...
// takes its commands from transcripts and goes on until that many answers were mutated.
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <regex>
#include <unistd.h>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Public/start.h"
#include "ktsetup/commandTables.h"
#include "lab/lab.h"
#include "state/storeFile.h"
#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/passing/calls.h"

void (*beforeCall)(const std::string& call);
KT_U8 (*afterCall)(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status);

namespace {
std::minstd_rand chance;
unsigned long mutated = 0;
unsigned long inThisRun = 0;
constexpr unsigned long MOST_IN_A_RUN = 100; // behind them, long lists go on as they are

size_t below(size_t limit) {
    return chance() / 7 % limit;
}

std::vector<std::string> commandsOf(const std::vector<std::string>& transcripts) {
    std::vector<std::string> commands;
    const std::regex command(R"re(\bkt(?:setup|cfg)? ((?:[01] )?[a-z_0-9]+(?: [^|;<>$`(){}&']*)?))re");
    for (const std::string& name : transcripts) {
        std::ifstream in(name);
        for (std::string line; std::getline(in, line);) {
            if (line.compare(0, 4, "  $ ") != 0 && line.compare(0, 4, "  > ") != 0) continue;
            for (std::sregex_iterator it(line.begin(), line.end(), command), end; it != end; ++it) {
                commands.push_back((*it)[1]);
            }
        }
    }
    return commands;
}

// Something else in the answer: a byte, a number of two bytes at its bounds, or all of it.
void mutate(const AnswerBytes& answer) {
    auto* bytes = static_cast<KT_U8*>(answer.at);
    // Lists answer with a count and an index first, and are the longest answers.
    const size_t reach = below(3) == 0 ? std::min<size_t>(answer.size, sizeof(_RequestHeader)) : answer.size;
    static const KT_U16 bounds[] = {0, 1, 0x7F, 0xFF, 0x100, 0x7FFF, 0xFFFE, 0xFFFF};
    const KT_U16 bound = bounds[below(std::size(bounds))];
    const size_t at = below(reach);
    switch (below(10)) {
    case 0:
        memset(bytes, static_cast<int>(below(256)), answer.size);
        break;
    case 1:
        for (size_t i = 0; i < answer.size; ++i) {
            bytes[i] = static_cast<KT_U8>(chance());
        }
        break;
    case 2:
    case 3:
    case 4:
        if (at + sizeof bound <= answer.size) memcpy(bytes + (at & ~size_t{1}), &bound, sizeof bound);
        break;
    default:
        bytes[at] = static_cast<KT_U8>(chance());
    }
}

KT_U8 answerWrongly(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status) {
    // Without a library or adapters there is nothing to be tried.
    if (strncmp(name, "KT_API_", 7) == 0 || strcmp(name, "KT_Adapter_GetCount") == 0) return status;
    for (const AnswerBytes& answer : answers) {
        if (answer.size == 0 || ++inThisRun > MOST_IN_A_RUN) continue;
        ++mutated;
        for (size_t times = below(4); times > 0; --times) {
            mutate(answer);
        }
    }
    return below(20) == 0 ? static_cast<KT_U8>(chance()) : status;
}

void startOver(const std::string& state) {
    static const char* const labs[] = {"default", "full", "troubled"};
    sim::replaceStore(state, sim::fillFromLab, sim::labNamed(labs[below(std::size(labs))]));
}

// Numbers of a command are others now and then.
std::string varied(std::string command) {
    for (char& c : command) {
        if (c >= '0' && c <= '9' && below(4) == 0) c = static_cast<char>('0' + below(10));
    }
    return command;
}

// Ends the program, and says nothing of answers, when the adapters have gone.
bool endsTheProgram(const std::string& command) {
    return command.find("scan") != std::string::npos || command.find("-output") != std::string::npos;
}

_cmd_struct backupRow = {"backup_cfg", 11, doBackUp_CFG, backup_cfg_help, backup_cfg_sh};
_cmd_struct restoreRow = {"restore_cfg", 12, doRestore_CFG, restore_cfg_help, restore_cfg_sh};

int dispatch(int argc, char** argv) {
    if (strcmp(argv[0], backupRow.cmd) == 0) return doBackUp_CFG(argc, argv, &backupRow);
    if (strcmp(argv[0], restoreRow.cmd) == 0) return doRestore_CFG(argc, argv, &restoreRow);
    return cmdDispatcher(argc, argv);
}

void requireText(const char* text, size_t size) {
    for (size_t i = 0; i < size; ++i) {
        const bool fits = (text[i] >= ' ' && text[i] < 0x7F) || text[i] == '\n' || text[i] == '\t';
        if (!fits) fprintf(stderr, "byte %02x is printed at %zu of:\n%.*s", text[i], i, static_cast<int>(size), text);
        require(fits);
    }
}

void runOne(std::string line) {
    gCurrentAdapter = 0;
    if (line[0] <= '1' && line[1] == ' ') {
        gCurrentAdapter = static_cast<KT_U8>(line[0] - '0');
        line.erase(0, 2);
    }
    std::vector<char*> words(line.size() + 2);
    int count = 0;
    if (parse(&count, words.data(), line.data()) == 0 || count == 0) return;
    char* text = nullptr;
    size_t size = 0;
    stream = open_memstream(&text, &size);
    alarm(60); // not to be waited for: SIGALRM is the failure
    if (startLibrary()) dispatch(count, words.data());
    KT_API_Finalize();
    alarm(0);
    fclose(stream);
    requireText(text, size);
    free(text);
}
} // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    const unsigned long wanted = strtoul(argv[1], nullptr, 10);
    chance.seed(static_cast<unsigned>(strtoul(argv[2], nullptr, 10)));
    const std::vector<std::string> commands = commandsOf({argv + 3, argv + argc});
    if (commands.size() < 100) return 2;
    char folder[] = "/tmp/ktanswersXXXXXX";
    if (mkdtemp(folder) == nullptr || chdir(folder) != 0) return 2;
    const std::string state = std::string(folder) + "/state.db";
    setenv("KTRAID_SIM", state.c_str(), 1);
    std::ofstream yes("yes");
    for (int i = 0; i < 5000; ++i) {
        yes << "y\n";
    }
    yes.close();
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    opterr = 0;
    unsigned runs = 0;
    for (; mutated < wanted; ++runs) {
        if (runs % 40 == 0) startOver(state);
        std::string line = varied(commands[below(commands.size())]);
        if (endsTheProgram(line)) continue;
        if (freopen("yes", "r", stdin) == nullptr) return 2;
        printf("%u %lu %s\n", runs, mutated, line.c_str()); // on failure the last line tells which it was
        fflush(stdout);
        afterCall = answerWrongly;
        inThisRun = 0;
        runOne(line);
    }
    std::filesystem::remove_all(folder);
    printf("%lu answers in %u runs\n", mutated, runs);
}
