#include "npxlate/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <fmt/core.h>

#include "io/standard.h"
#include "npxlate/terminal.h"

namespace tool {
namespace {

// Often enough for the eye; the clock is asked only now and then.
constexpr std::chrono::milliseconds interval{100};
constexpr std::uint64_t entries_between_looks = 4096;
constexpr std::size_t longest_bar = 40;
constexpr std::size_t shortest_bar = 8;

// Not told of the first moments, which say little of the rest.
constexpr std::chrono::seconds least_told{1};

std::string remaining(std::chrono::steady_clock::duration elapsed, std::uint64_t done, std::uint64_t size) {
    if (elapsed < least_told || done == 0) {
        return "";
    }
    const double left =
        std::chrono::duration<double>{elapsed}.count() * static_cast<double>(size - done) / static_cast<double>(done);
    const long seconds = std::lround(left);
    return seconds < 60 ? fmt::format(", {} s left", seconds)
                        : fmt::format(", {} min {} s left", seconds / 60, seconds % 60);
}

}  // namespace

Progress::Progress(bool enabled, std::optional<std::uint64_t> size) : enabled_{enabled}, size_{size} {}

Progress::~Progress() { clear(); }

void Progress::advance(std::uint64_t bytes, std::uint64_t entries) {
    bytes_ += bytes;
    entries_ += entries;
    if (!enabled_ || entries_ - shown_at_ < entries_between_looks) {
        return;
    }
    shown_at_ = entries_;
    if (const auto now = std::chrono::steady_clock::now(); !shown_when_ || now - *shown_when_ >= interval) {
        shown_when_ = now;
        show();
    }
}

void Progress::show() {
    std::string counted = fmt::format("{} entries", entries_);
    if (size_ && *size_ > 0) {
        const std::uint64_t done = std::min(bytes_, *size_);
        counted = fmt::format("{:3}%  {}{}", done * 100 / *size_, counted,
                              remaining(std::chrono::steady_clock::now() - begun_, done, *size_));
        // The bar has what the numbers leave of the line, whose last column is not used.
        const std::size_t taken = counted.size() + std::string_view{"[] "}.size() + 1;
        const std::size_t width =
            std::min(longest_bar, line_width(STDERR_FILENO) - std::min(line_width(STDERR_FILENO), taken));
        if (width >= shortest_bar) {
            counted = fmt::format("[{:<{}}] {}", std::string(done * width / *size_, '#'), width, counted);
        }
    }
    io::to_standard_error(fmt::format("\r{}\x1b[K", counted));
    visible_ = true;
}

void Progress::clear() {
    if (visible_) {
        io::to_standard_error("\r\x1b[K");
        visible_ = false;
    }
}

bool progress_can_show(bool output_is_file) {
    return moves_and_colours(STDERR_FILENO) && (output_is_file || !is_terminal(STDOUT_FILENO));
}

}  // namespace tool
