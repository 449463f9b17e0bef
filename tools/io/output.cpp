#include "io/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <fmt/core.h>

#include "io/error.h"
#include "io/standard.h"

namespace io {
namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 18;
constexpr mode_t new_file_mode = 0666;  // less what the user's mask takes away

// Another way to write a descriptor that is open already, and so to be written where that stands.
bool names_a_descriptor(std::string_view path) {
    return path == "/dev/stdout" || path == "/dev/stderr" || path.starts_with("/dev/fd/") ||
           path.starts_with("/proc/self/fd/");
}

// The file that a path means: what its last links lead to, whether that is there yet or not.
std::string behind_links(std::filesystem::path path) {
    constexpr int most_links = 40;
    std::error_code none;
    for (int i = 0; i < most_links && std::filesystem::is_symlink(path, none); ++i) {
        path = path.parent_path() / std::filesystem::read_symlink(path, none);
    }
    return path.string();
}

std::string folder_of(const std::string& file) {
    const std::filesystem::path folder = std::filesystem::path{file}.parent_path();
    return folder.empty() ? "." : folder.string();
}

// A name beside the file's, to be completed by mkostemp().
std::string temporary_pattern(const std::string& file) {
    const std::filesystem::path path{file};
    return (path.parent_path() / fmt::format(".{}.XXXXXX", path.filename().string().substr(0, 200))).string();
}

}  // namespace

Output::Output(const std::string& path, Holding holding)
    : name_{path == "-"    ? "standard output"
            : path.empty() ? "\"\""
                           : path} {
    if (path == "-") {
        descriptor_ = STDOUT_FILENO;
    } else {
        open(path, holding);
    }
    buffer_.reserve(buffer_size);
}

void Output::open(const std::string& path, Holding holding) {
    if (path.empty() || path.ends_with('/')) {
        fail(path.empty() ? ENOENT : EISDIR);
    }
    struct stat status {};
    const bool is_there = ::stat(path.c_str(), &status) == 0;
    if (names_a_descriptor(path) || (is_there && !S_ISREG(status.st_mode))) {
        descriptor_ = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
        if (descriptor_ < 0) {
            fail(errno);
        }
        return;
    }
    target_ = behind_links(path);
    if (is_there && ::access(target_.c_str(), W_OK) != 0) {
        fail(errno);
    }
    if (holding == Holding::nameless_if_possible) {
        descriptor_ = ::open(folder_of(target_).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, new_file_mode);
    }
    if (descriptor_ < 0) {
        temporary_ = temporary_pattern(target_);
        descriptor_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
        if (descriptor_ < 0) {
            const int error = errno;
            temporary_.clear();
            fail(error);
        }
        const mode_t mask = ::umask(0);
        ::umask(mask);
        static_cast<void>(::fchmod(descriptor_, new_file_mode & ~mask));
    }
    if (is_there) {
        // The owner first, since changing it takes rights away. Not everybody may do it.
        static_cast<void>(::fchown(descriptor_, status.st_uid, status.st_gid));
        static_cast<void>(::fchmod(descriptor_, status.st_mode & 07777));
    }
}

Output::~Output() {
    if (descriptor_ > STDERR_FILENO) {
        ::close(descriptor_);
    }
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

void Output::fail(int error) const {
    const std::string message = fmt::format("cannot write {}: {}", name_, std::generic_category().message(error));
    if (error == EPIPE) {
        throw NobodyReads{message};
    }
    throw NotDone{message};
}

void Output::write(std::string_view text) {
    if (buffer_.size() + text.size() > buffer_size) {
        flush();
    }
    buffer_ += text;
}

void Output::flush() {
    if (const int error = write_all(descriptor_, buffer_)) {
        fail(error);
    }
    buffer_.clear();
}

void Output::close() {
    flush();
    // Standard output stays open for whoever writes next.
    if (descriptor_ <= STDERR_FILENO) {
        return;
    }
    if (!target_.empty()) {
        put_in_place();
    }
    // Some file systems say only now that the disk is full.
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (::close(descriptor) != 0) {
        fail(errno);
    }
}

void Output::put_in_place() {
    if (::fsync(descriptor_) != 0) {
        fail(errno);
    }
    if (temporary_.empty()) {
        // A file without a name can be given one, but not that of another file.
        std::string name = temporary_pattern(target_);
        const int placeholder = ::mkostemp(name.data(), O_CLOEXEC);
        if (placeholder < 0) {
            fail(errno);
        }
        ::close(placeholder);
        ::unlink(name.c_str());
        const std::string source = fmt::format("/proc/self/fd/{}", descriptor_);
        if (::linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
            fail(errno);
        }
        temporary_ = name;
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        fail(errno);
    }
    temporary_.clear();
}

void print(std::string_view text) {
    Output out;
    out.write(text);
    out.close();
}

}  // namespace io
