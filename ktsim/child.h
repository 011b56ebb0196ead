// Running the other programs.
#pragma once

#include <string>
#include <vector>

// Which library a program meets.
struct Surroundings {
    std::string state; // of the simulated adapters; empty: the caller's own environment
};

enum class Streams {
    Own,   // the caller's: questions are answered as usual
    Caught // what it prints on both streams is kept; with the caller's standard input
};

struct ChildResult {
    int status = 0;     // its exit status; 128 and the number of the signal that ended it; 127 when it is not there
    std::string output; // of both streams, when caught
    std::string errors; // of the error stream alone, when `apart`
};

struct ChildOptions {
    Surroundings surroundings;
    Streams streams = Streams::Own;
    bool apart = false;      // the error stream is caught by itself
    bool emptyInput = false; // nothing to read
};

// Runs the program, which is looked for beside this one first and in PATH then, and waits for it. A signal that would
// end this process meanwhile (SIGINT, SIGTERM, SIGHUP) goes to the child and is kept for endBySignal().
ChildResult runChild(const std::vector<std::string>& words, const ChildOptions& options);
// From here on SIGPIPE ends nothing, and signals are kept as above.
void keepSignals();
// The signal that came, 0 = none.
int keptSignal();

// The folder of the simulated library beside this program: bin/ and lib/ktraid-sim/; empty when there is none.
std::string libraryFolder();
