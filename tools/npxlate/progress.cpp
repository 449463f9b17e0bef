#include "npxlate/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include <fmt/format.h>

namespace tool {
namespace {

// Often enough for the eye; the clock is asked only now and then.
constexpr std::chrono::milliseconds interval{100};
constexpr std::uint64_t entries_between_looks = 4096;

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
    constexpr std::size_t width = 40;
    if (size_ && *size_ > 0) {
        const std::uint64_t done = std::min(bytes_, *size_);
        const auto filled = static_cast<std::size_t>(done * width / *size_);
        fmt::print(stderr, "\r[{:<{}}] {:3}%  {} entries\x1b[K", std::string(filled, '#'), width, done * 100 / *size_,
                   entries_);
    } else {
        fmt::print(stderr, "\r{} entries\x1b[K", entries_);
    }
    visible_ = true;
}

void Progress::clear() {
    if (visible_) {
        fmt::print(stderr, "\r\x1b[K");
        visible_ = false;
    }
}

bool progress_can_show(bool output_is_file) {
    return ::isatty(STDERR_FILENO) == 1 && (output_is_file || ::isatty(STDOUT_FILENO) != 1);
}

}  // namespace tool
