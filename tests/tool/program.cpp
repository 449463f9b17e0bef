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
    explicit Terminal(unsigned short columns) {
        winsize size{};
        size.ws_col = columns;
        if (::openpty(&screen_, &line_, nullptr, nullptr, &size) != 0) {
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

    // As if its user typed Ctrl-D.
    void end_input() const { static_cast<void>(::write(screen_, "\x04", 1)); }

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

// What one of the program's streams leads to, and what came there.
class Sink {
public:
    Sink(posix_spawn_file_actions_t& actions, int stream, Stream kind, unsigned short columns) {
        switch (kind) {
            case Stream::file:
                posix_spawn_file_actions_addopen(&actions, stream, file_.path().c_str(), O_WRONLY, 0);
                break;
            case Stream::terminal:
                terminal_.emplace(columns);
                posix_spawn_file_actions_adddup2(&actions, terminal_->line(), stream);
                break;
            case Stream::full:
                posix_spawn_file_actions_addopen(&actions, stream, "/dev/full", O_WRONLY, 0);
                break;
            case Stream::broken: {
                std::array<int, 2> ends{};
                if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
                    throw std::runtime_error{"no pipe"};
                }
                ::close(ends[0]);
                pipe_ = ends[1];
                posix_spawn_file_actions_adddup2(&actions, pipe_, stream);
                break;
            }
            case Stream::closed:
                posix_spawn_file_actions_addclose(&actions, stream);
                break;
        }
    }
    ~Sink() {
        if (pipe_ >= 0) {
            ::close(pipe_);
        }
    }
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    // Once the program has ended.
    std::string content() { return terminal_ ? terminal_->shown() : file_.content(); }

private:
    File file_;
    std::optional<Terminal> terminal_;
    int pipe_ = -1;
};

}  // namespace

Outcome run(const std::vector<std::string>& arguments, const Setting& setting) {
    const File in{setting.input};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    std::optional<Terminal> in_terminal;
    if (setting.in_is_terminal) {
        in_terminal.emplace(setting.columns);
        in_terminal->end_input();
        posix_spawn_file_actions_adddup2(&actions, in_terminal->line(), STDIN_FILENO);
    } else if (setting.in_is_closed) {
        posix_spawn_file_actions_addclose(&actions, STDIN_FILENO);
    } else {
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, in.path().c_str(), O_RDONLY, 0);
    }
    Sink out{actions, STDOUT_FILENO, setting.out, setting.columns};
    Sink err{actions, STDERR_FILENO, setting.err, setting.columns};
    if (!setting.folder.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, setting.folder.c_str());
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
    if (error != 0) {
        throw std::runtime_error{"cannot start the tool"};
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.content(), err.content()};
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
