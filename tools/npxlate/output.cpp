#include "npxlate/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fmt/color.h>
#include <fmt/format.h>

#include "npxlate/error.h"

namespace tool {
namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 18;

void say(fmt::color colour, std::string_view kind, std::string_view message) {
    const std::string head =
        colours(stderr) ? fmt::format(fmt::emphasis::bold | fmt::fg(colour), "{}:", kind) : fmt::format("{}:", kind);
    fmt::print(stderr, "npxlate: {} {}\n", head, message);
}

}  // namespace

Output::Output(const std::string& path)
    : name_{path == "-" ? "standard output" : path},
      descriptor_{path == "-" ? STDOUT_FILENO : ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)} {
    if (descriptor_ < 0) {
        throw WrongInput{fmt::format("cannot write {}: {}", name_, std::generic_category().message(errno))};
    }
    buffer_.reserve(buffer_size);
}

Output::~Output() {
    if (descriptor_ > STDERR_FILENO) {
        ::close(descriptor_);
    }
}

void Output::write(std::string_view text) {
    if (buffer_.size() + text.size() > buffer_size) {
        flush();
    }
    buffer_ += text;
}

void Output::flush() {
    std::string_view rest = buffer_;
    while (!rest.empty()) {
        const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            throw NotDone{fmt::format("cannot write {}: {}", name_, std::generic_category().message(errno))};
        }
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
    buffer_.clear();
}

void Output::close() {
    flush();
    // Some file systems say only now that the disk is full. Standard output stays open for whoever writes next.
    if (descriptor_ > STDERR_FILENO) {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        if (::close(descriptor) != 0) {
            throw NotDone{fmt::format("cannot write {}: {}", name_, std::generic_category().message(errno))};
        }
    }
}

void print(std::string_view text) {
    Output out;
    out.write(text);
    out.close();
}

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
    return (no_colour == nullptr || *no_colour == '\0') && ::isatty(::fileno(stream)) == 1;
}

}  // namespace tool
