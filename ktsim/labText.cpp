#include "commands.h"
#include "lab/lab.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace sim;

static const size_t LARGEST_LAB = size_t{256} << 20;

static std::string readAll(int file, const std::string& name) {
    std::string text;
    char buffer[65536];
    for (;;) {
        const ssize_t got = read(file, buffer, sizeof buffer);
        if (got < 0) throw CommandFailure{name + ": cannot be read"};
        if (got == 0) return text;
        if (text.size() + static_cast<size_t>(got) > LARGEST_LAB)
            throw CommandFailure{name + ": is larger than 256 MB"};
        text.append(buffer, static_cast<size_t>(got));
    }
}

std::string labText(const std::string& name) {
    if (name == "-") return readAll(STDIN_FILENO, "standard input");
    const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info = {};
    if (file >= 0 && fstat(file, &info) == 0 && !S_ISDIR(info.st_mode)) {
        std::string text = readAll(file, name);
        close(file);
        return text;
    }
    if (file >= 0) close(file);
    if (const BuiltInLab* lab = labNamed(name)) return lab->text;
    std::string known;
    for (const std::string& lab : labNames())
        known += " " + lab;
    throw CommandFailure{name + " is neither a file nor one of the labs:" + known};
}
