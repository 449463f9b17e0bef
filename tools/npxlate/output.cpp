#include "npxlate/output.h"

#include <cstdlib>

#include <fmt/color.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "io/standard.h"
#include "npxlate/drawing.h"
#include "npxlate/terminal.h"

namespace tool {
namespace {

void say(fmt::color colour, std::string_view kind, std::string_view message) {
    const std::string head =
        painted(fmt::format("{}:", kind), fmt::emphasis::bold | fmt::fg(colour), {.colour = colours(stderr)});
    io::to_standard_error(fmt::format("npxlate: {} {}\n", head, message));
}

}  // namespace

void print_json(const Json& json) { print(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n"); }

void report(std::string_view message) { say(fmt::color::red, "error", message); }

void note(std::string_view message) { say(fmt::color::dark_cyan, "note", message); }

std::string printable(std::string_view text) {
    constexpr std::size_t most = 60;
    std::string result;
    for (const char c : text.substr(0, most)) {
        const auto value = static_cast<unsigned char>(c);
        result += value < 0x20 || value == 0x7f ? fmt::format("\\x{:02x}", value) : std::string(1, c);
    }
    return result + (text.size() > most ? "..." : "");
}

bool colours(std::FILE* stream) {
    const char* const no_colour = std::getenv("NO_COLOR");
    return (no_colour == nullptr || *no_colour == '\0') && moves_and_colours(::fileno(stream));
}

}  // namespace tool
