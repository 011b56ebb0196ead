// Starting and stopping the library and the output, the same for every program of this kind.
#pragma once

// What is left of the command line once the adapter index and "-output" have been taken from it.
struct CommandLine {
    int argc;      // words, the program's name included
    char** argv;   // argv[1] is the command word
    bool toOutput; // "-output" was found; its word stays in place, made unreadable to option scanners
};

// Sets the output stream and the current adapter from the program's arguments.
CommandLine takeCommandLine(int argc, char** argv);

// Opens the library, counts the adapters, checks the SCSI generic driver, reads every adapter's record and chooses the
// command set. False when the program cannot run; the reason has been printed.
bool startLibrary();

// Finalises the library and closes the output. Returns `result`, or 1 when `result` is 0 but output was lost.
int stopLibrary(int result);

// Starts, runs the command that argv names and stops; returns the exit status.
int runOneShot(const CommandLine& line);

// The version of the SCSI generic driver, or of the library's own driver when it brings one; -1 without a usable one.
int sg_version();
