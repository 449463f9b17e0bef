#include "npxlate/command_line.h"

#include <npxlate/npxlate.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/output.h"
#include "npxlate/suggest.h"

namespace tool {
namespace {

constexpr const char* not_empty = "not empty";

// What starts with a dash takes a value that is not empty.
Option with_a_value(CLI::Option* option) {
    if (!option->get_positional()) {
        const auto check = [](const std::string& value) {
            return value.empty() ? "expected a value, found an empty one" : std::string{};
        };
        option->check(CLI::Validator{check, "", not_empty});
    }
    return Option{option};
}

}  // namespace

Option Option::required(bool value) const { return Option{option_->required(value)}; }
Option Option::excludes(Option other) const { return Option{option_->excludes(other.option_)}; }
Option Option::one_of(std::initializer_list<const char*> words) const {
    return Option{option_->check(CLI::IsMember(std::vector<std::string>(words.begin(), words.end())))};
}
Option Option::may_be_empty() const {
    option_->get_validator(not_empty)->active(false);
    return *this;
}
Option Option::one_value_a_time() const { return Option{option_->allow_extra_args(false)}; }
Option Option::type_name(const char* name) const { return Option{option_->type_name(name)}; }
Option Option::show_default() const { return Option{option_->capture_default_str()}; }
bool Option::given() const { return option_ != nullptr && option_->count() > 0; }

Command Command::add_subcommand(const std::string& name, const char* description) const {
    return Command{command_->add_subcommand(name, description)};
}
void Command::require_subcommand() const { command_->require_subcommand(1); }
void Command::footer(const char* text) const { command_->footer(text); }
Option Command::add_option(const char* names, std::string& value, const char* help) const {
    return with_a_value(command_->add_option(names, value, help));
}
Option Command::add_option(const char* names, std::vector<std::string>& values, const char* help) const {
    return with_a_value(command_->add_option(names, values, help));
}
Option Command::add_flag(const char* names, bool& value, const char* help) const {
    return Option{command_->add_flag(names, value, help)};
}
void Command::callback(const std::function<void()>& run) const { command_->callback(run); }

std::vector<Option> Command::parse_order() const {
    std::vector<Option> options;
    for (CLI::Option* const option : command_->parse_order()) {
        options.emplace_back(option);
    }
    return options;
}

namespace {

// The first argument that looks like an option and is none of the command's.
std::string unknown_option(const CLI::App& command, const CLI::App& app) {
    for (const std::string& rest : app.remaining(true)) {
        if (rest.size() > 1 && rest.starts_with('-') && command.get_option_no_throw(rest) == nullptr) {
            return rest.substr(0, rest.find('='));
        }
    }
    return "";
}

std::vector<std::string> options_of(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

// One line, as for every other error.
std::string one_line(const CLI::App* app, const CLI::Error& error) {
    const CLI::App* command = app;
    std::string name = app->get_name();
    for (const CLI::App* chosen : app->get_subcommands()) {
        name += " " + chosen->get_name();
        command = chosen;
    }
    const std::string option = unknown_option(*command, *app);
    std::string message = error.what();
    // CLI11 says "--limit: 1 required TEXT missing".
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr && message.ends_with(" missing")) {
        message = message.substr(0, message.find(':')) + ": expected a value";
    }
    return fmt::format("{}{} (see {} --help)\n", message,
                       option.empty() ? "" : did_you_mean(option, options_of(*command)), name);
}

// CLI11 would only say that a command is required.
void check_command(const CLI::App& app, int argc, const char* const* argv) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    if (argc < 2 || *argv[1] == '-' || std::ranges::count(names, argv[1]) > 0) {
        return;
    }
    throw WrongInput{fmt::format("there is no command \"{}\": expected one of {}{}", printable(argv[1]),
                                 fmt::join(names, ", "), did_you_mean(argv[1], names))};
}

}  // namespace

void run_command_line(int argc, const char* const* argv) {
    CLI::App app{"Translates forwarding-table entries between logical and physical records.", "npxlate"};
    app.set_version_flag("-V,--version", fmt::format("npxlate {}.{}.{}", NPXLATE_VERSION_MAJOR, NPXLATE_VERSION_MINOR,
                                                     NPXLATE_VERSION_PATCH));
    app.require_subcommand(1);
    app.failure_message(one_line);
    app.footer("Example: npxlate tables\nFor more about a command: npxlate COMMAND --help");
    add_commands(Command{&app});
    check_command(app, argc, argv);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        std::ostringstream err;
        if (app.exit(error, out, err) != 0) {
            std::string message = err.str();
            message.erase(message.find_last_not_of('\n') + 1);
            throw WrongInput{message};
        }
        print(out.str());
    }
}

}  // namespace tool
