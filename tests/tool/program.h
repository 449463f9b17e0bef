// Runs the built tool.
#pragma once

#include <string>
#include <vector>

namespace program {

struct Outcome {
    int status;  // the exit status; 128 and the signal's number if it was killed
    std::string out;
    std::string err;
};

// What a standard stream leads to.
enum class Stream {
    file,      // Outcome::out and Outcome::err
    terminal,  // likewise, what appears on it
    full,      // a disk on which there is no room
    broken,    // a pipe that nobody reads any more
    closed,    // nothing
};

struct Setting {
    std::string input{};          // on standard input
    bool in_is_terminal = false;  // on which nobody types anything
    bool in_is_closed = false;
    Stream out = Stream::file;
    Stream err = Stream::file;
    std::vector<std::string> environment{};  // NAME=VALUE
    unsigned short columns = 0;              // of the terminals; 0 if they do not say
    std::string folder{};                    // to run in
};

Outcome run(const std::vector<std::string>& arguments, const Setting& setting = {});

// A file of that content, which goes away with the object.
class File {
public:
    explicit File(const std::string& content = "");
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const std::string& path() const { return path_; }
    std::string content() const;

private:
    std::string path_;
};

}  // namespace program
