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

struct Setting {
    std::string input{};                     // on standard input
    std::string out{};                       // standard output goes to this file; to Outcome::out if empty
    bool out_closed = false;                 // standard output is a pipe that nobody reads any more
    bool out_is_terminal = false;            // what appears on it is Outcome::out
    bool err_is_terminal = false;            // likewise, Outcome::err
    std::vector<std::string> environment{};  // NAME=VALUE
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
