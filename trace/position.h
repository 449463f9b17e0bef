// Positions of bits in words, as they are written and read everywhere: L3.4, L3.4-2, L12, L12-15.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "frame/row.h"

namespace npxlate::trace {

// The name of bits within a byte or of whole bytes.
std::string position(char letter, unsigned first_bit, unsigned width);

struct Position {
    char letter = 'L';  // or P
    Span bits{};

    bool operator==(const Position&) const = default;
};

// Says of a text why it is no position, and what would be one.
struct NoPosition : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

// Throws NoPosition for anything but one position: of a record of that letter, if one is given.
Position parse_position(std::string_view text, std::optional<char> letter = {});

// Whether the text looks like a position, right or wrong: L or P and then nothing but digits, dots and dashes.
bool is_like_position(std::string_view text);

}  // namespace npxlate::trace
