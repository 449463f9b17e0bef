#include "tool/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace program {

namespace {

// A terminal, and what appears on it.
class Terminal {
public:
    Terminal() {
        if (::openpty(&screen_, &line_, nullptr, nullptr, nullptr) != 0) {
            throw std::runtime_error{"no terminal"};
        }
        ::fcntl(screen_, F_SETFD, FD_CLOEXEC);
        ::fcntl(line_, F_SETFD, FD_CLOEXEC);
        reader_ = std::thread{[this] {
            std::array<char, 4096> block{};
            for (ssize_t count = 0; (count = ::read(screen_, block.data(), block.size())) > 0;) {
                shown_.append(block.data(), static_cast<std::size_t>(count));
            }
        }};
    }
    ~Terminal() {
        shown();
        ::close(screen_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    int line() const { return line_; }

    // All of it, once the program has ended.
    const std::string& shown() {
        if (reader_.joinable()) {
            ::close(line_);
            reader_.join();
        }
        return shown_;
    }

private:
    int screen_ = -1;
    int line_ = -1;
    std::string shown_;
    std::thread reader_;
};

}  // namespace

Outcome run(const std::vector<std::string>& arguments, const Setting& setting) {
    const File in{setting.input};
    const File out;
    const File err;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, in.path().c_str(), O_RDONLY, 0);
    const std::string& out_path = setting.out.empty() ? out.path() : setting.out;
    std::array<int, 2> pipe_ends{};
    std::optional<Terminal> out_terminal;
    if (setting.out_is_terminal) {
        out_terminal.emplace();
        posix_spawn_file_actions_adddup2(&actions, out_terminal->line(), STDOUT_FILENO);
    } else if (setting.out_closed) {
        if (::pipe2(pipe_ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error{"no pipe"};
        }
        ::close(pipe_ends[0]);
        posix_spawn_file_actions_adddup2(&actions, pipe_ends[1], STDOUT_FILENO);
    } else {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out_path.c_str(), O_WRONLY, 0);
    }
    std::optional<Terminal> err_terminal;
    if (setting.err_is_terminal) {
        err_terminal.emplace();
        posix_spawn_file_actions_adddup2(&actions, err_terminal->line(), STDERR_FILENO);
    } else {
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.path().c_str(), O_WRONLY, 0);
    }

    std::vector<std::string> words{NPXLATE_TOOL_PATH};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = setting.environment;
    const auto pointers = [](std::vector<std::string>& strings) {
        std::vector<char*> result;
        result.reserve(strings.size() + 1);
        for (std::string& string : strings) {
            result.push_back(string.data());
        }
        result.push_back(nullptr);
        return result;
    };
    pid_t child = 0;
    const int error = ::posix_spawn(&child, NPXLATE_TOOL_PATH, &actions, nullptr, pointers(words).data(),
                                    pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (setting.out_closed) {
        ::close(pipe_ends[1]);
    }
    if (error != 0) {
        throw std::runtime_error{"cannot start the tool"};
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            out_terminal ? out_terminal->shown() : out.content(), err_terminal ? err_terminal->shown() : err.content()};
}

File::File(const std::string& content) : path_{testing::TempDir() + "npxlate_XXXXXX"} {
    const int descriptor = ::mkstemp(path_.data());
    if (descriptor < 0) {
        throw std::runtime_error{"no temporary file"};
    }
    ::close(descriptor);
    std::ofstream{path_, std::ios::binary} << content;
}

File::~File() { ::unlink(path_.c_str()); }

std::string File::content() const {
    std::ostringstream text;
    text << std::ifstream{path_, std::ios::binary}.rdbuf();
    return text.str();
}

}  // namespace program
