#include "io/input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include <fmt/format.h>

#include "io/error.h"

namespace io {
namespace {

// Some editors put it before text in UTF-8.
constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";

}  // namespace

InputStream::InputStream(const std::string& path)
    : name_{path == "-"    ? "standard input"
            : path.empty() ? "\"\""
                           : path},
      descriptor_{path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)} {
    if (descriptor_ < 0) {
        throw WrongInput{fmt::format("cannot read {}: {}", name_, std::generic_category().message(errno))};
    }
}

InputStream::~InputStream() {
    if (descriptor_ != STDIN_FILENO) {
        ::close(descriptor_);
    }
}

std::size_t InputStream::read(char* to, std::size_t room) {
    while (true) {
        const ssize_t count = ::read(descriptor_, to, room);
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno == EAGAIN) {
            pollfd ready{descriptor_, POLLIN, 0};
            static_cast<void>(::poll(&ready, 1, -1));
        } else if (errno != EINTR) {
            throw WrongInput{fmt::format("cannot read {}: {}", name_, std::generic_category().message(errno))};
        }
    }
}

std::string InputStream::read_all(std::size_t most) {
    std::string text(most + 1, '\0');
    text.resize(fill(text.data(), text.size()));
    return text;
}

std::size_t InputStream::fill(char* to, std::size_t room) {
    std::size_t filled = 0;
    while (filled < room) {
        const std::size_t count = read(to + filled, room - filled);
        if (count == 0) {
            break;
        }
        filled += count;
    }
    return filled;
}

std::optional<std::uint64_t> InputStream::size() const {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

bool InputStream::is_terminal() const { return ::isatty(descriptor_) == 1; }

bool InputStream::is(const std::string& path) const {
    struct stat mine {};
    struct stat other {};
    return ::fstat(descriptor_, &mine) == 0 && ::stat(path.c_str(), &other) == 0 && S_ISREG(mine.st_mode) &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

LineReader::LineReader(InputStream& input) : input_{input}, buffer_(longest_line) {}

bool LineReader::read_more() {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    const std::size_t count = input_.read(buffer_.data() + end_, longest_line - end_);
    end_ += count;
    return count > 0;
}

LineReader::Got LineReader::next(std::string_view& line) {
    if (at_start_) {
        at_start_ = false;
        while (end_ < byte_order_mark.size() && read_more()) {
        }
        begin_ = std::string_view{buffer_.data(), end_}.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
    }
    bool too_long = false;
    while (true) {
        const std::string_view rest{buffer_.data() + begin_, end_ - begin_};
        if (const std::size_t length = rest.find('\n'); length != std::string_view::npos) {
            line = rest.substr(0, length);
            begin_ += length + 1;
            return too_long ? Got::too_long : Got::line;
        }
        if (rest.size() == longest_line) {
            too_long = true;
            begin_ = end_;
        }
        if (!read_more()) {
            line = {buffer_.data() + begin_, end_ - begin_};
            begin_ = end_;
            return too_long ? Got::too_long : line.empty() ? Got::end : Got::line;
        }
    }
}

}  // namespace io
