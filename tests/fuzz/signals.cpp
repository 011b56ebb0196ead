// Signals at every call of every command that changes an adapter in several steps: whichever call it comes before,
// either nothing has been changed or all of it, the library is finalised in the second case, and the status tells the
// signal.
//     fuzz_signals STRIDE
// tries every STRIDE-th of all places.
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <regex>
#include <sys/wait.h>
#include <unistd.h>

#include "Public/start.h"
#include "devices/solidState.h"
#include "lab/lab.h"
#include "state/simClock.h"
#include "state/storeFile.h"
#include "tests/fuzz/passing/calls.h"
#include "tests/fuzz/passing/commands.h"
#include "tests/support/scratch.h"

void (*beforeCall)(const std::string& call);
KT_U8 (*afterCall)(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status);

namespace {
std::string beside; // the folder of what belongs to no state: the answers to questions, and the calls
int calls;          // the file that the calls are written to
unsigned signalAt;  // the call before which the signal comes, from 1; 0 = never
int signalSent;
unsigned made = 0;

void logAndSignal(const std::string& call) {
    const std::string line = call + "\n";
    if (write(calls, line.data(), line.size()) < 0) _exit(99);
    if (++made == signalAt) kill(getpid(), signalSent);
}

// What a run of a command came to.
struct Run {
    int status = 0;
    std::vector<std::string> calls = {};
    std::vector<std::string> changes = {}; // those of them that change something
};

// The child: the program, with its own end.
[[noreturn]] void runProgram(const std::string& line) {
    std::string text = "ktsetup " + line;
    std::vector<char*> words(text.size() + 2);
    int count = 0;
    parse(&count, words.data(), text.data());
    chooseCommandsFor(line);
    if (freopen((beside + "/yes").c_str(), "r", stdin) == nullptr) _exit(97);
    if (freopen("/dev/null", "w", stdout) == nullptr || freopen("/dev/null", "w", stderr) == nullptr) _exit(98);
    exit(runOneShot(takeCommandLine(count, words.data())));
}

Run run(const std::string& line, unsigned at, int number) {
    const std::string log = beside + "/calls";
    std::cout.flush(); // or the child would write it once more
    const pid_t child = fork();
    if (child == 0) {
        for (int each : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
            signal(each, SIG_DFL); // whatever the caller of the tests ignores
        alarm(60);
        calls = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        signalAt = at;
        signalSent = number;
        beforeCall = logAndSignal;
        runProgram(line);
    }
    Run result;
    waitpid(child, &result.status, 0);
    std::ifstream logged(log);
    for (std::string call; std::getline(logged, call);) {
        result.calls.push_back(call);
        static const std::regex reads("Get|KT_API_|KT_DiskHasOS|KT_Flash_Bin [01] 240");
        if (!std::regex_search(call, reads)) result.changes.push_back(call);
    }
    return result;
}

struct Case {
    std::vector<std::string> before; // what makes the state
    std::string line;
    unsigned changes; // calls of it that change something
    const char* lab = "empty";
};

unsigned failures = 0;

void fail(const std::string& line, unsigned at, int number, const std::string& what) {
    ++failures;
    std::cout << line << ", signal " << number << " before call " << at << ": " << what << "\n";
}

void check(const Case& tried, const Run& whole, unsigned at, int number) {
    const Run hit = run(tried.line, at, number);
    if (!WIFSIGNALED(hit.status) || WTERMSIG(hit.status) != number)
        return fail(tried.line, at, number, "the status is " + std::to_string(hit.status));
    // The call before which the signal came is in the list, and was not made when it ended the run.
    if (hit.calls.size() == at && hit.changes.size() <= 1) return;
    if (hit.changes != whole.changes) return fail(tried.line, at, number, "the change ends half-way");
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

// Answers how many places there are. Each is tried on a copy of the state that the lines before made.
unsigned tryCase(const Case& tried, unsigned stride, unsigned from) {
    namespace fs = std::filesystem;
    const ScratchFolder place;
    fs::current_path(place.path);
    setenv("KTRAID_SIM", (place.path + "/state.db").c_str(), 1);
    sim::replaceStore(place.path + "/state.db", sim::fillFromLab, sim::labNamed(tried.lab));
    for (const std::string& line : tried.before) {
        if (!WIFEXITED(run(line, 0, 0).status)) fail(line, 0, 0, "does not run");
    }
    writeText("microcode", sim::makeMicrocode("Petrel PS480G SSD", "PS50A", std::string(300 * 1024, '.')));
    const ScratchFolder saved;
    fs::copy(place.path, saved.path, fs::copy_options::recursive);
    const Run whole = run(tried.line, 0, 0);
    const size_t changing = whole.changes.size();
    std::cout << tried.line << ": " << whole.calls.size() << " calls, " << changing << " of them change something\n";
    if (changing < std::max(tried.changes, 1U)) fail(tried.line, 0, 0, "changes less than it should");
    unsigned places = 0;
    // Behind the last call, the run is over.
    for (unsigned at = 1; at <= whole.calls.size(); ++at) {
        for (int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
            if ((from + places++) % stride != 0) continue;
            for (const auto& entry : fs::directory_iterator(place.path))
                fs::remove_all(entry.path());
            fs::copy(saved.path, place.path, fs::copy_options::recursive);
            check(tried, whole, at, number);
        }
    }
    fs::current_path("/");
    return places;
}
} // namespace

int main(int argc, char** argv) {
    const unsigned stride = argc > 1 ? std::max(1U, static_cast<unsigned>(strtoul(argv[1], nullptr, 10))) : 1;
    const ScratchFolder folder; // not a global: the children end as programs do
    beside = folder.path;
    writeText(beside + "/yes", "y\ny\ny\ny\ny\ny\n");
    unsigned places = 0;
    for (const Case& tried : cases)
        places += tryCase(tried, stride, places);
    std::cout << places << " places, every " << stride << ". tried, " << failures << " failures\n";
    return failures == 0 ? 0 : 1;
}
