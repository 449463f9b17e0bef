// Records as hex text.
#pragma once

#include <cstdint>
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

// Two lower-case digits a byte, nothing between them.
std::string to_hex(std::span<const std::uint8_t> bytes);
void append_hex(std::string& text, std::span<const std::uint8_t> bytes);

}  // namespace io
