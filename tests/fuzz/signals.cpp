// Signals at every call of every command that changes an adapter in several steps: whichever call it comes before,
// either nothing has been changed or all of it, the library is finalised in the second case, and the status tells the
// signal.
//     fuzz_signals STRIDE
// tries every STRIDE-th of all places.
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Public/start.h"
#include "devices/solidState.h"
#include "ktsetup/commandTables.h"
#include "lab/lab.h"
#include "state/simClock.h"
#include "state/storeFile.h"
#include "tests/fuzz/passing/calls.h"

void (*beforeCall)(const std::string& call);
KT_U8 (*afterCall)(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status);

namespace {
std::string answers; // a file that says yes to every question
int calls;           // a pipe that the calls are written to
unsigned signalAt;   // the call before which the signal comes, from 1; 0 = never
int signalSent;
unsigned made = 0;

void logAndSignal(const std::string& call) {
    const std::string line = call + "\n";
    if (write(calls, line.data(), line.size()) < 0) _exit(99);
    if (++made == signalAt) kill(getpid(), signalSent);
}

// What a run of a command came to.
struct Run {
    int status;
    std::vector<std::string> calls;
};

_cmd_struct configCommands[] = {{"backup_cfg", 11, doBackUp_CFG, backup_cfg_help, backup_cfg_sh},
                                {"restore_cfg", 12, doRestore_CFG, restore_cfg_help, restore_cfg_sh}};

// The child: the program, with its own end.
[[noreturn]] void runProgram(const std::string& line) {
    std::string text = "ktsetup " + line;
    std::vector<char*> words(text.size() + 2);
    int count = 0;
    parse(&count, words.data(), text.data());
    const CommandSet config = {configCommands, std::size(configCommands), nullptr, 0};
    const bool configures = line.find("_cfg") != std::string::npos;
    setCommandSets(configures ? config : ldBasedCommands, configures ? config : arrayBasedCommands);
    if (freopen(answers.c_str(), "r", stdin) == nullptr) _exit(97);
    if (freopen("/dev/null", "w", stdout) == nullptr || freopen("/dev/null", "w", stderr) == nullptr) _exit(98);
    exit(runOneShot(takeCommandLine(count, words.data())));
}

Run run(const std::string& line, unsigned at, int number) {
    int ends[2];
    if (pipe(ends) != 0) abort();
    std::cout.flush(); // or the child would write it once more
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        alarm(60);
        calls = ends[1];
        signalAt = at;
        signalSent = number;
        beforeCall = logAndSignal;
        runProgram(line);
    }
    close(ends[1]);
    Run result = {};
    std::string all;
    char buffer[4096];
    for (ssize_t got; (got = read(ends[0], buffer, sizeof buffer)) > 0;) {
        all.append(buffer, static_cast<size_t>(got));
    }
    close(ends[0]);
    for (size_t from = 0, to; (to = all.find('\n', from)) != std::string::npos; from = to + 1) {
        result.calls.push_back(all.substr(from, to - from));
    }
    waitpid(child, &result.status, 0);
    return result;
}

bool changes(const std::string& call) {
    for (const char* reads : {"Get", "KT_API_", "KT_DiskHasOS", "KT_Flash_Bin 0 240", "KT_Flash_Bin 1 240"}) {
        if (call.find(reads) != std::string::npos) return false;
    }
    return true;
}
std::vector<std::string> changesOf(const Run& run) {
    std::vector<std::string> changing;
    for (const std::string& call : run.calls) {
        if (changes(call)) changing.push_back(call);
    }
    return changing;
}

struct Case {
    std::vector<std::string> before; // what makes the state
    std::string line;
    unsigned changes; // calls of it that change something
    const char* lab = "empty";
};

// Each on a copy of the state that the lines before made.
struct Place {
    std::string folder;
    std::string state() const { return folder + "/state.db"; }
    void save() const { std::filesystem::copy(folder, folder + ".saved", std::filesystem::copy_options::recursive); }
    void restore() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::filesystem::remove_all(entry.path());
        }
        std::filesystem::copy(folder + ".saved", folder, std::filesystem::copy_options::recursive);
    }
    void forget() const { std::filesystem::remove_all(folder + ".saved"); }
};

unsigned failures = 0;
void fail(const std::string& line, unsigned at, int number, const std::string& what) {
    ++failures;
    std::cout << line << ", signal " << number << " before call " << at << ": " << what << "\n";
}

void check(const Case& tried, const Run& whole, unsigned at, int number) {
    const Run hit = run(tried.line, at, number);
    if (!WIFSIGNALED(hit.status) || WTERMSIG(hit.status) != number) {
        return fail(tried.line, at, number, "the status is " + std::to_string(hit.status));
    }
    const std::vector<std::string> changed = changesOf(hit);
    // The call before which the signal came is in the list, and was not made when it ended the run.
    const bool first = hit.calls.size() == at && changed.size() <= 1;
    if (first) return;
    if (changed != changesOf(whole)) return fail(tried.line, at, number, "the change ends half-way");
    if (hit.calls.back() != "KT_API_Finalize") fail(tried.line, at, number, "the library is not finalised");
}

const Case cases[] = {
    {{"0 flash -a backup -t firmware -f fw"}, "0 flash -a update -t firmware -f fw", 3},
    {{"1 create -r 1 -d 0,1 -n a -s 1000 --waiveconfirmation", "1 assign -d 3", "1 backup_cfg -f cfg"},
     "1 restore_cfg -f cfg --raid",
     5},
    {{"1 create -r 1 -d 0,1 --waiveconfirmation", "1 init -l 0"}, "1 delete -o vd -i 0 -f --waiveconfirmation", 2},
    {{}, "0 create -o array -r 5 -d 0,1,2 --waiveconfirmation", 2},
    {{}, "0 nvsram -a write -c 1000 -p 0x55", 4},
    {{"0 create -o array -r 5 -d 0,1,2 --waiveconfirmation"},
     "0 set -o pd -i 0 --smart off --status offline --waiveconfirmation",
     2},
    {{}, "1 aesentry -o setCfg -i 1 -p word -k key", 1},
    {{"1 aesentry -o setCfg -i 1 -p old -k key"}, "1 aesop -o changePwd -e 1 -p new -w old", 1},
    {{}, "0 ssdop -d 11 -f microcode", 2, "default"},
};

unsigned tryCase(const Case& tried, unsigned stride, unsigned from, const Place& place) {
    sim::replaceStore(place.state(), sim::fillFromLab, sim::labNamed(tried.lab));
    for (const std::string& line : tried.before) {
        if (!WIFEXITED(run(line, 0, 0).status)) fail(line, 0, 0, "does not run");
    }
    std::ofstream("microcode") << sim::makeMicrocode("Petrel PS480G SSD", "PS50A", std::string(300 * 1024, '.'));
    place.save();
    const Run whole = run(tried.line, 0, 0);
    const size_t changing = changesOf(whole).size();
    std::cout << tried.line << ": " << whole.calls.size() << " calls, " << changing << " of them change something\n";
    if (changing < std::max(tried.changes, 1U)) fail(tried.line, 0, 0, "changes less than it should");
    unsigned places = 0;
    // Behind the last call, the run is over.
    for (unsigned at = 1; at <= whole.calls.size(); ++at) {
        for (int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
            if ((from + places++) % stride != 0) continue;
            place.restore();
            check(tried, whole, at, number);
        }
    }
    place.forget();
    return places;
}
} // namespace

int main(int argc, char** argv) {
    const unsigned stride = argc > 1 ? std::max(1U, static_cast<unsigned>(strtoul(argv[1], nullptr, 10))) : 1;
    char folder[] = "/tmp/ktsignalsXXXXXX";
    if (mkdtemp(folder) == nullptr || chdir(folder) != 0) return 2;
    const Place place = {folder};
    setenv("KTRAID_SIM", place.state().c_str(), 1);
    answers = place.folder + ".yes";
    std::ofstream(answers) << "y\ny\ny\ny\ny\ny\n";
    unsigned places = 0;
    for (const Case& tried : cases) {
        places += tryCase(tried, stride, places, place);
    }
    std::filesystem::remove_all(folder);
    std::filesystem::remove(answers);
    std::cout << places << " places, every " << stride << ". tried, " << failures << " failures\n";
    return failures == 0 ? 0 : 1;
}
