// What may stand on the command line, as the commands say it. Behind it is CLI11, whose headers take seconds to
// compile: command_line.cpp alone includes them.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tool {

// An option, a flag or a positional argument. A copy is the same option.
class Option {
public:
    Option() = default;
    explicit Option(CLI::Option* option) : option_{option} {}

    Option required(bool value = true) const;
    Option excludes(Option other) const;
    Option one_of(std::initializer_list<const char*> words) const;
    // Other options are refused if their value is empty: a script's unset variable is not an option that was left out.
    Option may_be_empty() const;
    // Each time it is given it takes one value, and what follows is an argument again.
    Option one_value_a_time() const;
    Option type_name(const char* name) const;
    Option show_default() const;

    bool given() const;
    bool operator==(const Option&) const = default;

private:
    CLI::Option* option_ = nullptr;
};

// A command, or the application with its commands. A copy is the same command.
class Command {
public:
    Command() = default;
    explicit Command(CLI::App* command) : command_{command} {}

    Command add_subcommand(const std::string& name, const char* description) const;
    void require_subcommand() const;
    void footer(const char* text) const;
    // A name without dashes is a positional argument. The value has to live as long as the command.
    Option add_option(const char* names, std::string& value, const char* help) const;
    Option add_option(const char* names, std::vector<std::string>& values, const char* help) const;
    Option add_flag(const char* names, bool& value, const char* help) const;
    // What the command does.
    void callback(const std::function<void()>& run) const;

    // The options that were given, each as often as it was, in that order.
    std::vector<Option> parse_order() const;

private:
    CLI::App* command_ = nullptr;
};

// Reads the arguments, and does what the command does that they name; or prints the help or the version. Throws
// WrongInput for arguments that cannot be used.
void run_command_line(int argc, const char* const* argv);

}  // namespace tool
