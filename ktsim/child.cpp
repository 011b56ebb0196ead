#include "child.h"

#include "commands.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

enum { NOT_FOUND = 127, BY_SIGNAL = 128 }; // as shells answer

static volatile sig_atomic_t kept = 0;
static volatile sig_atomic_t running = 0; // the child's id

static void keepSignal(int number) {
    kept = number;
    // Ctrl-C reaches everybody at the terminal by itself.
    if (running > 0 && number != SIGINT) kill(static_cast<pid_t>(running), number);
}

void keepSignals() {
    signal(SIGPIPE, SIG_IGN);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        sigaction(number, nullptr, &before);
        if (before.sa_handler == SIG_IGN) continue;
        struct sigaction action = {};
        action.sa_handler = keepSignal;
        sigaction(number, &action, nullptr);
    }
}

int keptSignal() {
    return kept;
}

static std::string ownFolder() {
    char self[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) return {};
    std::string folder(self, static_cast<size_t>(length));
    folder.erase(folder.rfind('/'));
    return folder;
}

std::string libraryFolder() {
    char whole[PATH_MAX];
    const std::string folder = ownFolder() + "/../lib/ktraid-sim";
    return realpath(folder.c_str(), whole) ? std::string(whole) : std::string();
}

// Beside this program, where packages put it, or anywhere in PATH.
static std::string programNamed(const std::string& name) {
    for (const std::string& folder : {ownFolder(), ownFolder() + "/../sbin"})
        if (access((folder + "/" + name).c_str(), X_OK) == 0) return folder + "/" + name;
    return name;
}

static void surround(const Surroundings& surroundings) {
    if (surroundings.state.empty()) return;
    setenv("KTRAID_SIM", surroundings.state.c_str(), 1);
    // What is logged there is what real adapters are asked.
    unsetenv("KTRAID_SIM_TRACE");
    const std::string folder = libraryFolder();
    const char* path = getenv("LD_LIBRARY_PATH");
    if (!folder.empty()) setenv("LD_LIBRARY_PATH", (path && *path ? folder + ":" + path : folder).c_str(), 1);
}

using Pipe = std::array<int, 2>;

static Pipe makePipe(bool wanted) {
    Pipe ends = {-1, -1};
    if (wanted && pipe2(ends.data(), O_CLOEXEC) != 0) throw CommandFailure{std::string("no pipe: ") + strerror(errno)};
    return ends;
}

[[noreturn]] static void becomeChild(const std::vector<std::string>& words, const ChildOptions& options, int output,
                                     int errors) {
    signal(SIGPIPE, SIG_DFL);
    if (options.emptyInput) {
        const int nothing = open("/dev/null", O_RDONLY);
        if (nothing >= 0) dup2(nothing, STDIN_FILENO);
    }
    if (output >= 0) dup2(output, STDOUT_FILENO);
    if (errors >= 0) dup2(errors, STDERR_FILENO);
    surround(options.surroundings);
    const std::string program = programNamed(words[0]);
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (const std::string& word : words)
        argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    execvp(program.c_str(), argv.data());
    const std::string message = "ktsim: " + words[0] + ": " + strerror(errno) + "\n";
    if (write(STDERR_FILENO, message.data(), message.size()) < 0) _exit(NOT_FOUND);
    _exit(NOT_FOUND);
}

// Reads both until their ends; an end that is -1 is none.
static void readBoth(int output, std::string& text, int errors, std::string& errorText) {
    pollfd ends[] = {{output, POLLIN, 0}, {errors, POLLIN, 0}};
    std::string* texts[] = {&text, &errorText};
    while (ends[0].fd >= 0 || ends[1].fd >= 0) {
        if (poll(ends, 2, -1) < 0 && errno != EINTR) return;
        for (int i = 0; i < 2; ++i) {
            if (ends[i].fd < 0 || (ends[i].revents & (POLLIN | POLLHUP | POLLERR)) == 0) continue;
            char buffer[65536];
            const ssize_t got = read(ends[i].fd, buffer, sizeof buffer);
            if (got > 0) texts[i]->append(buffer, static_cast<size_t>(got));
            if (got == 0 || (got < 0 && errno != EINTR)) ends[i].fd = -1;
        }
    }
}

static void closeAll(const Pipe& pipe) {
    for (const int end : pipe)
        if (end >= 0) close(end);
}

ChildResult runChild(const std::vector<std::string>& words, const ChildOptions& options) {
    const bool caught = options.streams == Streams::Caught;
    Pipe output = makePipe(caught);
    Pipe errors = makePipe(caught && options.apart);
    fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) becomeChild(words, options, output[1], options.apart ? errors[1] : output[1]);
    if (pid < 0) {
        const int reason = errno;
        closeAll(output);
        closeAll(errors);
        throw CommandFailure{std::string("no process: ") + strerror(reason)};
    }
    running = pid;
    for (Pipe* each : {&output, &errors}) {
        if ((*each)[1] >= 0) close((*each)[1]);
        (*each)[1] = -1;
    }
    ChildResult result;
    readBoth(output[0], result.output, errors[0], result.errors);
    closeAll(output);
    closeAll(errors);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    running = 0;
    result.status = WIFSIGNALED(status) ? BY_SIGNAL + WTERMSIG(status) : WEXITSTATUS(status);
    return result;
}
