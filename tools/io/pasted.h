// Hex as it comes out of the tools that people use: xxd, hexdump, od, a debugger, source code, a switch's console.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "io/hex.h"

namespace io {

// Words in place of bytes.
struct Words {
    std::size_t size;         // bytes of a word: 2, 4 or 8
    bool big_endian = false;  // otherwise in host order, the last byte of a word being printed first
};

// "4": words of four bytes in host order; "4be": big-endian. Nothing for anything else.
std::optional<Words> parse_words(std::string_view text);

// The bytes of a record. Addresses, the text beside the bytes, comments and what stands around an array in C are
// recognised and left out; what may be words is taken only if their order is said. Throws WrongInput, saying where and
// what would be right, for what is no hex and for what could be read in two ways.
Bytes parse_pasted(std::string_view text, const std::optional<Words>& words = {});

// Whether it is a record as such rather than text. Throws WrongInput for text in UTF-16.
bool is_binary(std::string_view content);

}  // namespace io
