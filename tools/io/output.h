// Where results go: standard output, or a file that appears whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace io {

// A buffered output that says so when it cannot write. What was not closed did not happen: a file is then as it was
// before, or is not there.
class Output {
public:
    // How the new content of a file is held until it is whole: without a name, where the file system can do that, so
    // that nothing is left behind whatever happens; or under a name beside the file's.
    enum class Holding { nameless_if_possible, named };

    // The file of that path; standard output for "-". What is no regular file (a device, a pipe) is written as it is,
    // and so is what a path such as /dev/stdout leads to. Throws NotDone if it cannot be written.
    explicit Output(const std::string& path = "-", Holding holding = Holding::nameless_if_possible);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Throw NotDone if the output cannot be written, NobodyReads if nobody reads it.
    void write(std::string_view text);
    // Writes what is buffered, and puts the file in its place.
    void close();

private:
    void open(const std::string& path, Holding holding);
    void flush();
    void put_in_place();
    [[noreturn]] void fail(int error) const;

    std::string name_;       // as the user says it
    std::string target_;     // the file to replace; empty for what is written as it is
    std::string temporary_;  // the name under which the new content is held, if it has one
    int descriptor_ = -1;
    std::string buffer_;
};

// The text, wholly, on standard output.
void print(std::string_view text);

}  // namespace io
