// The words of a program: its commands, and options whose values are read into variables. The library that reads them
// takes seconds to compile, so it is known to commandLine.cpp alone; messages and help are that library's.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
class Validator;
} // namespace CLI

// What a value has to be; tells it in the help, too.
struct WordCheck {
    std::shared_ptr<const CLI::Validator> validator;
};
// The type is the variable's, and is named in the help.
WordCheck inRange(int least, int most);
WordCheck inRange(unsigned least, unsigned most);
WordCheck inRange(uint64_t least, uint64_t most);
WordCheck oneOf(const std::vector<std::string>& words);
WordCheck oneNumberOf(const std::vector<unsigned>& numbers);
// wrong: what is wrong with the value, "" = nothing; name: stands behind the option in the help.
WordCheck checkedBy(const std::function<std::string(const std::string&)>& wrong, const std::string& name = "");

// An option of a command. Made by Command, and good for as long as its Program.
struct Option {
    CLI::Option* option;

    const Option& required() const;
    const Option& check(const WordCheck& check) const;
    const Option& each(const std::function<void(const std::string&)>& look) const; // at each value, when it is read
    const Option& showDefault() const; // the value that the variable has now, in the help
    const Option& needs(const Option& other) const;
    const Option& excludes(const Option& other) const;
    const Option& expects(int least, int most) const; // so many values
    const Option& oneEachTime() const;                // of a list: words behind the value are not of this option
    bool isGiven() const;
};

// The program itself, or a command of it, or a command of a command.
struct Command {
    CLI::App* app;

    Command addCommand(const std::string& word, const std::string& help) const;
    // names: "-a,--adapter", or a word without dashes for a value that stands by its place. Values are std::string,
    // int, unsigned, uint64_t, double, lists of std::string and unsigned, and std::optional<unsigned>; others do not
    // link.
    template <class Value>
    Option addOption(const std::string& names, Value& into, const std::string& help = "") const;
    Option addFlag(const std::string& names, bool& into, const std::string& help) const;
    // Options of which one at most is given.
    Command addChoice(const std::string& name) const;

    void requireCommand(int least, int most) const;
    // Done when the command was given, while the words are read: what it throws ends that. The program's own is done
    // last, whether or not a command was given.
    void onGiven(const std::function<void()>& work) const;
    bool hasGivenCommand() const;
};

// Words that are not understood. Thrown by what onGiven() does, too, for a word that is missing after all.
struct WordsFailure {
    std::string message;
    std::string stranger; // the word that stands where a command should; "" = none
};
[[noreturn]] void failMissing(const std::string& word);

struct Program : Command {
    Program(const std::string& name, const std::string& about);

    void addVersion(const std::string& line) const; // --version
    void addHelpAll() const;                        // --help-all: of every command

  private:
    std::shared_ptr<CLI::App> words;
};
// Reads the words and does what they ask for. Answers the text that they asked for instead, help or version, or "".
// Throws WordsFailure, and whatever a command throws.
std::string readWords(const Program& program, int argc, const char* const* argv);
