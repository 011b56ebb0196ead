// Commands on a library whose answers are not what they should be: in every answer a few bytes, counts or indexes are
// others. Whatever it says, a command ends, reads nothing beyond its buffers, and prints nothing but text.
//     fuzz_answers ANSWERS SEED FOLDER
// takes its commands from the files of a folder, each behind the digit of its adapter, and goes on until that many
// answers were mutated.
#include <csignal>
#include <set>
#include <unistd.h>

#include "Public/start.h"
#include "lab/lab.h"
#include "state/storeFile.h"
#include "tests/fuzz/passing/commands.h"
#include "tests/fuzz/wrongAnswers.h"
#include "tests/support/printed.h"
#include "tests/support/scratch.h"

void (*beforeCall)(const std::string& call);
KT_U8 (*afterCall)(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status);

namespace {
void startOver(const std::string& state) {
    static const char* const labs[] = {"default", "full", "troubled"};
    sim::replaceStore(state, sim::fillFromLab, sim::labNamed(labs[below(std::size(labs))]));
}

// Numbers of a command behind its adapter are others now and then.
std::string varied(std::string command) {
    for (size_t at = 1; at < command.size(); ++at) {
        if (isdigit(command[at]) != 0 && below(4) == 0) command[at] = static_cast<char>('0' + below(10));
    }
    return command;
}

// Ends the program, and says nothing of answers, when the adapters have gone.
bool endsTheProgram(const std::string& command) {
    return command.find("scan") != std::string::npos || command.find("-output") != std::string::npos;
}

void requireText(const std::string& text) {
    for (size_t i = 0; i < text.size(); ++i) {
        const bool fits = (text[i] >= ' ' && text[i] < 0x7F) || text[i] == '\n' || text[i] == '\t';
        if (!fits) fprintf(stderr, "byte %02x is printed at %zu of:\n%s", text[i], i, text.c_str());
        require(fits);
    }
}

void runOne(std::string line) {
    gCurrentAdapter = static_cast<KT_U8>(line[0] - '0');
    line.erase(0, 1);
    std::vector<char*> words(line.size() + 2);
    int count = 0;
    if (parse(&count, words.data(), line.data()) == 0 || count == 0) return;
    chooseCommandsFor(words[0]);
    requireText(printedBy([&] {
        alarm(60); // not to be waited for: SIGALRM is the failure
        if (startLibrary()) cmdDispatcher(count, words.data());
        KT_API_Finalize();
        alarm(0);
    }));
}
} // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    const unsigned long wanted = strtoul(argv[1], nullptr, 10);
    chance.seed(static_cast<unsigned>(strtoul(argv[2], nullptr, 10)));
    std::set<std::string> spoken;
    for (const auto& entry : std::filesystem::directory_iterator(argv[3]))
        spoken.insert(fileText(entry.path()));
    const std::vector<std::string> commands(spoken.begin(), spoken.end());
    if (commands.size() < 100) return 2;
    const ScratchFolder folder;
    std::filesystem::current_path(folder.path);
    const std::string state = folder.path + "/state.db";
    setenv("KTRAID_SIM", state.c_str(), 1);
    std::string yes;
    for (int i = 0; i < 5000; ++i)
        yes += "y\n";
    writeText("yes", yes);
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
    printf("%lu answers in %u runs\n", mutated, runs);
}
