// What the tool writes: results to standard output or a file, notes and errors to standard error.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace tool {

// Members in the order in which they are added.
using Json = nlohmann::ordered_json;

// A buffered output that says so when it cannot write. What was not written when it is destroyed is lost: call close().
class Output {
public:
    // A file, which is made or emptied; standard output for "-".
    explicit Output(const std::string& path = "-");
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Throw NotDone if the output cannot be written.
    void write(std::string_view text);
    void close();

private:
    void flush();

    std::string name_;
    int descriptor_;
    std::string buffer_;
};

// The text, wholly, on standard output.
void print(std::string_view text);

// JSON as people and programs read it: indented, with a line end. Bytes that are no UTF-8 are replaced.
void print_json(const Json& json);

// "npxlate: error: MESSAGE" and "npxlate: note: MESSAGE" on standard error.
void report(std::string_view message);
void note(std::string_view message);

// What the user typed, for a message: cut when it is long, and without control characters.
std::string printable(std::string_view text);

// Whether to colour what goes to that stream: to a terminal, unless NO_COLOR is set.
bool colours(std::FILE* stream);

}  // namespace tool
