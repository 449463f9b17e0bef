#include "npxlate/app.h"

#include <npxlate/npxlate.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <clocale>
#include <exception>
#include <sstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "io/standard.h"
#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/output.h"
#include "npxlate/suggest.h"

namespace tool {
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
    return fmt::format("{}{} (see {} --help)\n", error.what(),
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

int run_command(int argc, const char* const* argv) {
    CLI::App app{"Translates forwarding-table entries between logical and physical records.", "npxlate"};
    app.set_version_flag("-V,--version", fmt::format("npxlate {}.{}.{}", NPXLATE_VERSION_MAJOR, NPXLATE_VERSION_MINOR,
                                                     NPXLATE_VERSION_PATCH));
    app.require_subcommand(1);
    app.failure_message(one_line);
    app.footer("Example: npxlate tables\nFor more about a command: npxlate COMMAND --help");
    add_commands(app);
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
    return 0;
}

}  // namespace

int run(int argc, const char* const* argv) {
    io::prepare_standard_streams();
    // For the one question of whether the terminal takes UTF-8. A locale that there is not leaves plain ASCII.
    static_cast<void>(std::setlocale(LC_CTYPE, ""));
    try {
        return run_command(argc, argv);
    } catch (const io::NobodyReads& failure) {
        return failure.exit_status;
    } catch (const RecordsDiffer& difference) {
        return difference.exit_status;
    } catch (const Failure& failure) {
        report(failure.what());
        return failure.exit_status;
    } catch (const std::exception& error) {
        report(error.what());
        return 2;
    }
}

}  // namespace tool
