// Records as hex text.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace io {

using Bytes = std::vector<std::uint8_t>;

// Groups of digits, two a byte, each group with or without 0x before it; between the groups white space, colons and
// commas. Throws WrongInput, saying where, for anything else.
Bytes parse_hex(std::string_view text);
// The same, in place of what the bytes were.
void parse_hex(std::string_view text, Bytes& bytes);

// The value of a digit; nothing if it is none.
std::optional<std::uint8_t> hex_digit(char c);

// For messages: where a character stands, as a person counts, and which it is.
std::string place_in(std::string_view text, std::size_t at);
std::string shown_character(char c);

// Two lower-case digits a byte, nothing between them.
std::string to_hex(std::span<const std::uint8_t> bytes);
void append_hex(std::string& text, std::span<const std::uint8_t> bytes);

}  // namespace io
