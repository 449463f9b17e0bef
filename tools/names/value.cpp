#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "names/names.h"

namespace names {
namespace {

struct StyleName {
    Style style;
    std::string_view name;
};
constexpr std::array<StyleName, 10> style_names{{
    {Style::number, "number"},
    {Style::signed_number, "signed"},
    {Style::hex, "hex"},
    {Style::flag, "flag"},
    {Style::label, "label"},
    {Style::ipv4, "ipv4"},
    {Style::ipv6, "ipv6"},
    {Style::mac, "mac"},
    {Style::bytes, "bytes"},
    {Style::words, "words"},
}};

constexpr unsigned number_bits = 64;
constexpr unsigned label_bits = 20;
constexpr unsigned ipv4_bits = 32;
constexpr unsigned ipv6_bits = 128;
constexpr unsigned mac_bits = 48;

unsigned width_of(std::span<const Span> bits) {
    unsigned width = 0;
    for (const Span span : bits) {
        width += span.width;
    }
    return width;
}

std::uint64_t greatest(unsigned width) {
    return width >= number_bits ? ~std::uint64_t{0} : (std::uint64_t{1} << width) - 1;
}

std::uint64_t to_number(std::span<const std::uint8_t> value) {
    std::uint64_t number = 0;
    for (std::size_t i = std::min<std::size_t>(value.size(), 8); i-- > 0;) {
        number = number << 8 | value[i];
    }
    return number;
}

Bytes to_bytes(std::uint64_t number, unsigned width) {
    Bytes value((width + 7) / 8);
    for (std::size_t i = 0; i < std::min<std::size_t>(value.size(), 8); ++i) {
        value[i] = static_cast<std::uint8_t>(number >> 8 * i);
    }
    return value;
}

// From the least significant byte first to the order in which addresses are written, and back.
Bytes turned(std::span<const std::uint8_t> value) { return {value.rbegin(), value.rend()}; }

std::string hex_digits(std::span<const std::uint8_t> value) {
    std::string text;
    for (const std::uint8_t byte : turned(value)) {
        text += fmt::format("{:02x}", byte);
    }
    return text;
}

std::string address(int family, std::span<const std::uint8_t> value) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    ::inet_ntop(family, turned(value).data(), text.data(), text.size());
    return text.data();
}

[[noreturn]] void refuse(const Field& field, std::string_view expected, std::string_view text) {
    throw Error{fmt::format("{}: expected {}, found \"{}\"", field.name, expected, text)};
}

[[noreturn]] void does_not_fit(const Field& field, std::string_view text, const std::string& limits) {
    throw Error{fmt::format("{}: {} does not fit: it has {} bit{}, {}", field.name, text, field.width(),
                            field.width() == 1 ? "" : "s", limits)};
}

// Digits of a hexadecimal number of any length.
std::optional<Bytes> parse_digits(std::string_view text, unsigned width) {
    if (text.empty()) {
        return std::nullopt;
    }
    Bytes value((std::max<std::size_t>(4 * text.size(), width) + 7) / 8);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* const digit = &text[text.size() - 1 - i];
        unsigned nibble = 0;
        if (std::from_chars(digit, digit + 1, nibble, 16).ec != std::errc{}) {
            return std::nullopt;
        }
        value[i / 2] = static_cast<std::uint8_t>(value[i / 2] | nibble << 4 * (i % 2));
    }
    return value;
}

Bytes parse_hexadecimal(const Field& field, std::string_view text, std::string_view digits) {
    const std::optional<Bytes> value = parse_digits(digits, field.width());
    if (!value) {
        refuse(field, "hex digits after 0x", text);
    }
    const unsigned width = field.width();
    for (std::size_t bit = width; bit < 8 * value->size(); ++bit) {
        if (((*value)[bit / 8] >> bit % 8 & 1) != 0) {
            does_not_fit(field, text,
                         width <= number_bits ? fmt::format("at most {:#x}", greatest(width))
                                              : fmt::format("at most {} hex digits", (width + 3) / 4));
        }
    }
    return {value->begin(), value->begin() + static_cast<std::ptrdiff_t>((width + 7) / 8)};
}

bool is_hexadecimal(std::string_view text) { return text.starts_with("0x") || text.starts_with("0X"); }

Bytes parse_number(const Field& field, std::string_view text, std::string_view expected, std::uint64_t most) {
    if (is_hexadecimal(text)) {
        Bytes value = parse_hexadecimal(field, text, text.substr(2));
        if (to_number(value) > most) {
            does_not_fit(field, text, fmt::format("and takes at most {:#x}", most));
        }
        return value;
    }
    const bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    if (!digits) {
        refuse(field, expected, text);
    }
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || number > most) {
        does_not_fit(field, text, fmt::format("at most {}", most));
    }
    return to_bytes(number, field.width());
}

Bytes parse_signed(const Field& field, std::string_view text) {
    const auto most = static_cast<std::int64_t>(greatest(field.width()) >> 1U);
    const std::int64_t least = -most - 1;
    if (is_hexadecimal(text)) {
        return parse_hexadecimal(field, text, text.substr(2));
    }
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument || stop != text.data() + text.size()) {
        refuse(field, "a number", text);
    }
    if (error != std::errc{} || number > most || number < least) {
        does_not_fit(field, text, fmt::format("{} to {}", least, most));
    }
    Bytes value = to_bytes(static_cast<std::uint64_t>(number) & greatest(field.width()), field.width());
    return value;
}

Bytes parse_flag(const Field& field, std::string_view text) {
    for (const std::string_view set : {"1", "true", "set"}) {
        if (text == set) {
            return to_bytes(1, field.width());
        }
    }
    for (const std::string_view clear : {"0", "false", "clear"}) {
        if (text == clear) {
            return to_bytes(0, field.width());
        }
    }
    refuse(field, "0 or 1", text);
}

Bytes parse_address(const Field& field, int family, const char* expected, std::string_view text) {
    Bytes bytes(field.width() / 8);
    if (::inet_pton(family, std::string{text}.c_str(), bytes.data()) != 1) {
        refuse(field, expected, text);
    }
    return turned(bytes);
}

Bytes parse_octets(const Field& field, const std::string& expected, std::string_view text) {
    std::string digits;
    for (const char c : is_hexadecimal(text) ? text.substr(2) : text) {
        if (c != ':' && c != '-' && c != '.' && c != ' ') {
            digits += c;
        }
    }
    const std::optional<Bytes> value = parse_digits(digits, 0);
    if (!value || digits.size() != field.width() / 4) {
        refuse(field, expected, text);
    }
    return *value;
}

Bytes parse_word(const Field& field, std::string_view text) {
    const auto found = std::ranges::find(field.words, text, &Word::word);
    if (found != field.words.end()) {
        return to_bytes(found->value, field.width());
    }
    std::vector<std::string_view> words;
    constexpr std::size_t most_shown = 12;
    for (const Word& word : field.words) {
        if (words.size() == most_shown) {
            words.emplace_back("...");
            break;
        }
        words.push_back(word.word);
    }
    return parse_number(field, text, fmt::format("a number or one of {}", fmt::join(words, ", ")),
                        greatest(field.width()));
}

}  // namespace

std::string_view to_string(Style style) { return std::ranges::find(style_names, style, &StyleName::style)->name; }

std::optional<Style> style_of(std::string_view text) {
    const auto* const found = std::ranges::find(style_names, text, &StyleName::name);
    return found == style_names.end() ? std::nullopt : std::optional{found->style};
}

bool keeps_byte_order(Style style) { return style == Style::ipv6 || style == Style::mac || style == Style::bytes; }

unsigned Field::width() const { return width_of(bits); }

void check_style(Style style, std::span<const Span> bits) {
    const unsigned width = width_of(bits);
    const auto expect = [&](bool fits, std::string_view expected) {
        if (!fits) {
            throw Error{fmt::format("{} bit{} cannot be written as {}: expected {}", width, width == 1 ? "" : "s",
                                    to_string(style), expected)};
        }
    };
    switch (style) {
        case Style::number:
        case Style::signed_number:
        case Style::words:
            expect(width <= number_bits, "at most 64 bits");
            break;
        case Style::flag:
            expect(width <= number_bits, "a bit, or the bytes of a flag");
            break;
        case Style::label:
            expect(width >= label_bits && width <= ipv4_bits, "20 to 32 bits");
            break;
        case Style::ipv4:
            expect(width == ipv4_bits, "32 bits");
            break;
        case Style::ipv6:
            expect(width == ipv6_bits, "128 bits");
            break;
        case Style::mac:
            expect(width == mac_bits, "48 bits");
            break;
        case Style::bytes:
            expect(width % 8 == 0, "whole bytes");
            break;
        case Style::hex:
            break;
    }
}

std::string format_value(const Field& field, std::span<const std::uint8_t> value) {
    const unsigned width = field.width();
    const std::uint64_t number = to_number(value);
    switch (field.style) {
        case Style::number:
        case Style::flag:
        case Style::label:
            return fmt::format("{}", number);
        case Style::signed_number: {
            const bool negative = (number >> (width - 1) & 1) != 0;
            return fmt::format("{}", static_cast<std::int64_t>(negative ? number | ~greatest(width) : number));
        }
        case Style::hex: {
            const std::string digits = hex_digits(value);
            return "0x" + digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
        }
        case Style::ipv4:
            return address(AF_INET, value);
        case Style::ipv6:
            return address(AF_INET6, value);
        case Style::mac:
            return fmt::format("{:02x}", fmt::join(turned(value), ":"));
        case Style::bytes:
            return hex_digits(value);
        case Style::words: {
            const auto found = std::ranges::find(field.words, number, &Word::value);
            return found == field.words.end() ? fmt::format("{}", number) : found->word;
        }
    }
    return {};
}

Bytes parse_value(const Field& field, std::string_view text) {
    const unsigned width = field.width();
    switch (field.style) {
        case Style::number:
            return parse_number(field, text, "a number", greatest(width));
        case Style::signed_number:
            return parse_signed(field, text);
        case Style::hex:
            return is_hexadecimal(text) ? parse_hexadecimal(field, text, text.substr(2))
                                        : parse_number(field, text, "a number", greatest(width));
        case Style::flag:
            return parse_flag(field, text);
        case Style::label:
            return parse_number(field, text, "a label", greatest(label_bits));
        case Style::ipv4:
            return parse_address(field, AF_INET, "an IPv4 address such as 192.0.2.1", text);
        case Style::ipv6:
            return parse_address(field, AF_INET6, "an IPv6 address such as 2001:db8::1", text);
        case Style::mac:
            return parse_octets(field, "a MAC address such as 02:00:5e:10:00:01", text);
        case Style::bytes:
            return parse_octets(field, fmt::format("{} bytes of hex", width / 8), text);
        case Style::words:
            return parse_word(field, text);
    }
    return {};
}

std::string value_in(const Field& field, std::span<const std::uint8_t> record) {
    return format_value(field, extract(record, field.bits));
}

}  // namespace names
