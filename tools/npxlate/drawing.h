// Records drawn for people: a grid of bytes and bits, and lines under it, as wide as the terminal, at most 80 columns.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/color.h>

namespace tool {

// How standard output wants it: box drawing on a terminal that can, colours unless NO_COLOR is set.
struct Style {
    bool box = false;
    bool colour = false;
};
Style style_of_stdout();

// In that colour, if the style has colours.
std::string painted(std::string_view text, const fmt::text_style& colour, Style style);

// A kind of bit: its letter under the bit, its colour and what it means.
struct Mark {
    char letter;
    fmt::text_style colour;
    const char* meaning;
};

// The bytes, at most eight a row, each with its bits from 7 down to 0 and a mark under every bit. `marks` holds one
// index into `kinds` for each bit of the record, counted from bit 0 of byte 0 upwards. Rows are left out in which all
// bits are of the kind that says nothing, if there is one.
std::string grid(char letter, std::span<const std::uint8_t> bytes, std::span<const std::size_t> marks,
                 std::span<const Mark> kinds, Style style, std::optional<std::size_t> says_nothing = {});

// The marks that occur, with their meanings.
std::string legend(std::span<const std::size_t> marks, std::span<const Mark> kinds, Style style);

// The cells in columns of these widths, the last cell broken between words at the end of the line. A cell that is too
// long moves what follows it to the next line.
std::string line(std::span<const std::size_t> widths, const std::vector<std::string>& cells);

std::string heading(std::string_view text, Style style);

}  // namespace tool
