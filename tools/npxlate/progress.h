// How far a long run has come, as a line on the terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace tool {

class Progress {
public:
    // Nothing is shown unless it is enabled. The size is what there is to read, if that is known.
    Progress(bool enabled, std::optional<std::uint64_t> size);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // So many bytes and entries more have been dealt with.
    void advance(std::uint64_t bytes, std::uint64_t entries);
    // Clears the line for a message. The next advance() shows it again.
    void clear();

private:
    void show();

    bool enabled_;
    std::optional<std::uint64_t> size_;
    std::uint64_t bytes_ = 0;
    std::uint64_t entries_ = 0;
    std::uint64_t shown_at_ = 0;
    std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
    std::optional<std::chrono::steady_clock::time_point> shown_when_;
    bool visible_ = false;
};

// Whether standard error is a terminal on which nothing else is written.
bool progress_can_show(bool output_is_file);

}  // namespace tool
