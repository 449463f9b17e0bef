#include "io/standard.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace io {

void prepare_standard_streams() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
            // The lowest number that is free is this one. Opened the wrong way round, every use is an error.
            static_cast<void>(::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

int write_all(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd ready{descriptor, POLLOUT, 0};
            static_cast<void>(::poll(&ready, 1, -1));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void to_standard_error(std::string_view text) noexcept { static_cast<void>(write_all(STDERR_FILENO, text)); }

}  // namespace io
