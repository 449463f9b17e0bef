#include "io/input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include <fmt/core.h>

#include "io/error.h"

namespace io {

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
    while (!ended_) {
        const ssize_t count = ::read(descriptor_, to, room);
        if (count >= 0) {
            // A terminal would be asked again behind its end.
            ended_ = count == 0 && room > 0;
            return static_cast<std::size_t>(count);
        }
        if (errno == EAGAIN) {
            pollfd ready{descriptor_, POLLIN, 0};
            static_cast<void>(::poll(&ready, 1, -1));
        } else if (errno != EINTR) {
            throw WrongInput{fmt::format("cannot read {}: {}", name_, std::generic_category().message(errno))};
        }
    }
    return 0;
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

}  // namespace io
