// Reading streams of any size in constant memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace io {

class InputStream {
public:
    // A file; standard input for "-". Throws WrongInput if it cannot be opened.
    explicit InputStream(const std::string& path);
    ~InputStream();
    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

    // As many bytes as there are, at most room; 0 at the end. Throws WrongInput if it cannot be read.
    std::size_t read(char* to, std::size_t room);
    // The same, but fewer bytes than room only at the end.
    std::size_t fill(char* to, std::size_t room);

    // All there is; if that is more than most, the first of it, which is longer than most.
    std::string read_all(std::size_t most);

    // Of a file; nothing for pipes and terminals.
    std::optional<std::uint64_t> size() const;
    // Whether somebody has to type it.
    bool is_terminal() const;
    // Whether the path names this very file.
    bool is(const std::string& path) const;
    // For messages.
    const std::string& name() const { return name_; }

private:
    std::string name_;
    int descriptor_;
    bool ended_ = false;
};

}  // namespace io
