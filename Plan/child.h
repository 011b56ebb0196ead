// Running another program and reading what it says.
#pragma once

#include <string>
#include <vector>

struct ChildEnd {
    int status = 127; // its exit status; 128 and the signal's number when a signal ended it
    std::string output;
    std::string errors;
};

// Files that only this process and its children know, by the name under which a child opens them. Closed at the end.
struct HiddenFile {
    int file;
    explicit HiddenFile(const std::string& content);
    ~HiddenFile();
    HiddenFile(const HiddenFile&) = delete;
    HiddenFile& operator=(const HiddenFile&) = delete;
    bool good() const { return file >= 0; }
    std::string name() const;
};

// The program beside this one, else the one that PATH leads to; "" without either.
std::string findProgram(const std::string& name);

// Runs the program with the words behind its name, `input` on its standard input, and waits for its end.
ChildEnd runChild(const std::string& program, const std::vector<std::string>& words, const HiddenFile& input);
