#include "io/hex.h"

#include <algorithm>
#include <array>

#include <fmt/core.h>

#include "io/error.h"

namespace io {
namespace {

constexpr std::uint8_t no_digit = 0xff;

constexpr std::array<std::uint8_t, 256> digit_values = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(no_digit);
    for (std::size_t i = 0; i < 10; ++i) {
        values['0' + i] = static_cast<std::uint8_t>(i);
    }
    for (std::size_t i = 0; i < 6; ++i) {
        values['a' + i] = values['A' + i] = static_cast<std::uint8_t>(10 + i);
    }
    return values;
}();

std::uint8_t digit(char c) { return digit_values[static_cast<unsigned char>(c)]; }

bool separates(char c) { return std::string_view{" \t\r\n\v\f:,"}.find(c) != std::string_view::npos; }

}  // namespace

std::optional<std::uint8_t> hex_digit(char c) {
    const std::uint8_t value = digit(c);
    return value == no_digit ? std::nullopt : std::optional{value};
}

std::string place_in(std::string_view text, std::size_t at) {
    const std::string_view before = text.substr(0, at);
    const auto lines = std::ranges::count(before, '\n');
    if (lines == 0) {
        return fmt::format("position {}", at + 1);
    }
    return fmt::format("line {}, position {}", lines + 1, at - before.rfind('\n'));
}

std::string shown_character(char c) {
    const auto value = static_cast<unsigned char>(c);
    return value > 0x20 && value < 0x7f ? fmt::format("'{}'", c) : fmt::format("the byte 0x{:02x}", value);
}

Bytes parse_hex(std::string_view text) {
    Bytes bytes;
    parse_hex(text, bytes);
    return bytes;
}

void parse_hex(std::string_view text, Bytes& bytes) {
    bytes.clear();
    bytes.reserve(text.size() / 2);
    std::size_t at = 0;
    while (at < text.size()) {
        if (separates(text[at])) {
            ++at;
            continue;
        }
        const std::size_t group = at;
        if (text.substr(at).starts_with("0x") || text.substr(at).starts_with("0X")) {
            at += 2;
        }
        const std::size_t first = at;
        while (at < text.size() && digit(text[at]) != no_digit) {
            ++at;
        }
        if (at < text.size() && !separates(text[at])) {
            throw WrongInput{fmt::format("bad hex: expected a hex digit, found {} at {}", shown_character(text[at]),
                                         place_in(text, at))};
        }
        if (at == first) {
            throw WrongInput{fmt::format("bad hex: expected digits after the 0x at {}", place_in(text, group))};
        }
        if ((at - first) % 2 != 0) {
            throw WrongInput{fmt::format("bad hex: expected two digits for each byte, found {} digit{} at {}",
                                         at - first, at - first == 1 ? "" : "s", place_in(text, group))};
        }
        for (std::size_t i = first; i < at; i += 2) {
            bytes.push_back(static_cast<std::uint8_t>(digit(text[i]) << 4 | digit(text[i + 1])));
        }
    }
}

void append_hex(std::string& text, std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0xf];
    }
}

std::string to_hex(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    append_hex(text, bytes);
    return text;
}

}  // namespace io
