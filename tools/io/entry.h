// JSON Lines: an entry a line, an entry being an object whose members are kept to the letter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "io/error.h"

namespace io {

// A line that is no object of JSON. The message says what was expected, and in which column.
struct BadJson : WrongInput {
    BadJson(const std::string& message, bool ends_early) : WrongInput{message}, incomplete{ends_early} {}
    bool incomplete;  // as far as it goes it is JSON
};

class Entry {
public:
    struct Member {
        std::string_view name;     // what it says
        std::string_view written;  // as it stands between its quotes
        std::string_view value;    // as it stands
    };

    // The members are valid as long as the line and until the next call. Throws BadJson. Numbers may have any size,
    // since nobody computes with them here.
    void parse(std::string_view line);

    const std::vector<Member>& members() const { return members_; }

private:
    std::vector<Member> members_;
    std::deque<std::string> names_;  // those that are written with escapes
};

// Whether the value is a string.
bool is_string(std::string_view value);

// What a string says. With escapes in it, it is put together in the storage.
std::string_view text_of(std::string_view value, std::string& storage);

// Tells the lines that are no JSON from JSON that is printed over many lines, which is one mistake and not many. To be
// told of every line in order; a line that is none may be reported only with the one after it.
class BadLines {
public:
    using Report = std::function<void(const std::string& message)>;

    explicit BadLines(Report report) : report_{std::move(report)} {}

    void bad(std::uint64_t number, std::string_view line, const BadJson& error);
    // A line that is JSON, or the end.
    void done();
    // The mistakes so far.
    std::uint64_t count() const { return count_; }

private:
    void report(const std::string& message);

    Report report_;
    std::uint64_t count_ = 0;
    std::uint64_t first_ = 0;  // of the lines that are not reported yet; 0 if there are none
    std::uint64_t last_ = 0;
    std::string text_;     // the only one
    std::string message_;  // and what is wrong with it
};

}  // namespace io
