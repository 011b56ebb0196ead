#include "Plan/child.h"

#include "Public/writeFully.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

HiddenFile::HiddenFile(const std::string& content) : file(memfd_create("ktcfg", 0)) {
    if (file < 0) return;
    const bool whole = writeFully(file, content.data(), content.size()) == content.size();
    if (whole && lseek(file, 0, SEEK_SET) == 0) return;
    close(file);
    file = -1;
}

HiddenFile::~HiddenFile() {
    if (file >= 0) close(file);
}

std::string HiddenFile::name() const {
    return "/proc/self/fd/" + std::to_string(file);
}

static std::string contentOf(const HiddenFile& from) {
    std::string text;
    char page[65536];
    lseek(from.file, 0, SEEK_SET);
    for (;;) {
        const ssize_t count = read(from.file, page, sizeof page);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return text;
        text.append(page, static_cast<size_t>(count));
    }
}

std::string findProgram(const std::string& name) {
    char self[4096];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self);
    const std::string own = length > 0 ? std::string(self, static_cast<size_t>(length)) : std::string();
    std::string beside = own.substr(0, own.find_last_of('/') + 1) + name;
    if (!own.empty() && access(beside.c_str(), X_OK) == 0) return beside;
    const char* path = getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string program = (folder.empty() ? "." : folder) + "/" + name;
        if (access(program.c_str(), X_OK) == 0) return program;
    }
    return "";
}

ChildEnd runChild(const std::string& program, const std::vector<std::string>& words, const HiddenFile& input) {
    const HiddenFile output("");
    const HiddenFile errors("");
    ChildEnd end;
    if (!input.good() || !output.good() || !errors.good()) return end;
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& word : words)
        argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (dup2(input.file, STDIN_FILENO) >= 0 && dup2(output.file, STDOUT_FILENO) >= 0 &&
            dup2(errors.file, STDERR_FILENO) >= 0) {
            execv(program.c_str(), argv.data());
        }
        _exit(127);
    }
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (child > 0) end.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    end.output = contentOf(output);
    end.errors = contentOf(errors);
    return end;
}
