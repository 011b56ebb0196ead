#include "commandLine/commandLine.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <sstream>

static WordCheck wrapped(const CLI::Validator& validator) {
    return {std::make_shared<const CLI::Validator>(validator)};
}

WordCheck inRange(int least, int most) {
    return wrapped(CLI::Range(least, most));
}

WordCheck inRange(unsigned least, unsigned most) {
    return wrapped(CLI::Range(least, most));
}

WordCheck inRange(uint64_t least, uint64_t most) {
    return wrapped(CLI::Range(least, most));
}

WordCheck oneOf(const std::vector<std::string>& words) {
    return wrapped(CLI::IsMember(words));
}

WordCheck oneNumberOf(const std::vector<unsigned>& numbers) {
    return wrapped(CLI::IsMember(numbers));
}

WordCheck checkedBy(const std::function<std::string(const std::string&)>& wrong, const std::string& name) {
    return wrapped(CLI::Validator([wrong](std::string& value) { return wrong(value); }, name));
}

const Option& Option::required() const {
    option->required();
    return *this;
}

const Option& Option::check(const WordCheck& check) const {
    option->check(*check.validator);
    return *this;
}

const Option& Option::each(const std::function<void(const std::string&)>& look) const {
    option->each([look](const std::string& value) { look(value); });
    return *this;
}

const Option& Option::showDefault() const {
    option->capture_default_str();
    return *this;
}

const Option& Option::needs(const Option& other) const {
    option->needs(other.option);
    return *this;
}

const Option& Option::excludes(const Option& other) const {
    option->excludes(other.option);
    return *this;
}

const Option& Option::expects(int least, int most) const {
    option->expected(least, most);
    return *this;
}

const Option& Option::oneEachTime() const {
    option->allow_extra_args(false);
    return *this;
}

bool Option::isGiven() const {
    return option->count() > 0;
}

Command Command::addCommand(const std::string& word, const std::string& help) const {
    return {app->add_subcommand(word, help)};
}

template <class Value>
Option Command::addOption(const std::string& names, Value& into, const std::string& help) const {
    return {app->add_option(names, into, help)};
}
template Option Command::addOption(const std::string&, std::string&, const std::string&) const;
template Option Command::addOption(const std::string&, int&, const std::string&) const;
template Option Command::addOption(const std::string&, unsigned&, const std::string&) const;
template Option Command::addOption(const std::string&, uint64_t&, const std::string&) const;
template Option Command::addOption(const std::string&, double&, const std::string&) const;
template Option Command::addOption(const std::string&, std::vector<std::string>&, const std::string&) const;
template Option Command::addOption(const std::string&, std::vector<unsigned>&, const std::string&) const;
template Option Command::addOption(const std::string&, std::optional<unsigned>&, const std::string&) const;

Option Command::addFlag(const std::string& names, bool& into, const std::string& help) const {
    return {app->add_flag(names, into, help)};
}

Command Command::addChoice(const std::string& name) const {
    CLI::Option_group* group = app->add_option_group(name);
    group->require_option(0, 1);
    return {group};
}

void Command::requireCommand(int least, int most) const {
    app->require_subcommand(static_cast<size_t>(least), static_cast<size_t>(most));
}

void Command::onGiven(const std::function<void()>& work) const {
    app->callback(work);
}

bool Command::hasGivenCommand() const {
    return !app->get_subcommands().empty();
}

void failMissing(const std::string& word) {
    throw CLI::RequiredError(word);
}

// The help of all commands goes down to those below them ("disk fail").
namespace {
class WholeHelp : public CLI::Formatter {
  public:
    std::string make_expanded(const CLI::App* command) const override {
        std::string text = Formatter::make_expanded(command);
        for (const CLI::App* each : command->get_subcommands([](const CLI::App*) { return true; })) {
            if (each->get_name().empty()) continue;
            text += "\n" + command->get_name() + " " + each->help(each->get_name(), CLI::AppFormatMode::Sub);
        }
        return text;
    }
};
} // namespace

Program::Program(const std::string& name, const std::string& about)
    : Command{nullptr}, words(std::make_shared<CLI::App>(about, name)) {
    app = words.get();
    app->formatter(std::make_shared<WholeHelp>());
}

void Program::addVersion(const std::string& line) const {
    app->set_version_flag("--version", line, "Print the version and exit");
}

void Program::addHelpAll() const {
    app->set_help_all_flag("--help-all", "Print the help of every command");
}

// A word where a command should stand; "" without one.
static std::string strangerIn(const CLI::App* command) {
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
    }
    const std::vector<std::string> words = command->remaining();
    const bool hasCommands = !command->get_subcommands([](const CLI::App*) { return true; }).empty();
    return hasCommands && !words.empty() ? words[0] : "";
}

std::string readWords(const Program& program, int argc, const char* const* argv) {
    try {
        program.app->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) throw WordsFailure{error.what(), strangerIn(program.app)};
        std::ostringstream text;
        program.app->exit(error, text, text);
        return text.str();
    }
    return "";
}
