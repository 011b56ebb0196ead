// A folder for a state that must not outlive the command, whatever ends it.
#pragma once

#include <string>

struct Scratch {
    std::string folder; // empty: there is none
    int keeper = -1;    // while it is open the folder is kept
    int keeperPid = -1;
    std::string path(const char* name) const { return folder + "/" + name; }
    Scratch() = default;
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch();
};

// Makes the folder, which only its owner can read, in TMPDIR or /tmp. A process of its own removes it with all files in
// it when the Scratch ends, or this process does in any way. Throws CommandFailure.
void makeScratch(Scratch& scratch);
