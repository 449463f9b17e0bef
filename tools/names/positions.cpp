#include <algorithm>
#include <charconv>

#include <fmt/format.h>

#include "explain/positions.h"
#include "names/names.h"

namespace names {
namespace {

constexpr unsigned most_bytes = NPXLATE_MAX_LOGICAL_LENGTH;

// A number at the front of the text, taken away from it.
std::optional<unsigned> number(std::string_view& text) {
    unsigned value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{}) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return value;
}

bool take(std::string_view& text, char c) {
    if (!text.starts_with(c)) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

std::optional<Span> piece(std::string_view text) {
    if (!take(text, 'L')) {
        return std::nullopt;
    }
    const std::optional<unsigned> byte = number(text);
    if (!byte || *byte >= most_bytes) {
        return std::nullopt;
    }
    unsigned first_bit = *byte * 8;
    unsigned width = 8;
    if (take(text, '.')) {
        const std::optional<unsigned> high = number(text);
        const std::optional<unsigned> low = take(text, '-') ? number(text) : high;
        if (!high || !low || *high > 7 || *low > *high) {
            return std::nullopt;
        }
        first_bit += *low;
        width = *high - *low + 1;
    } else if (take(text, '-')) {
        const std::optional<unsigned> last = number(text);
        if (!last || *last < *byte || *last >= most_bytes) {
            return std::nullopt;
        }
        width = (*last - *byte + 1) * 8;
    }
    if (!text.empty()) {
        return std::nullopt;
    }
    return Span{static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(width)};
}

std::optional<std::vector<Span>> pieces(std::string_view text) {
    constexpr std::string_view spaces = " \t";
    std::vector<Span> result;
    for (std::size_t at = text.find_first_not_of(spaces); at != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(spaces, at), text.size());
        const std::optional<Span> one = piece(text.substr(at, end - at));
        if (!one) {
            return std::nullopt;
        }
        result.push_back(*one);
        at = text.find_first_not_of(spaces, end);
    }
    return result.empty() ? std::nullopt : std::optional{result};
}

}  // namespace

std::vector<Span> parse_positions(std::string_view text) {
    if (const auto spans = pieces(text)) {
        return *spans;
    }
    throw Error{
        fmt::format("\"{}\" is no position: expected logical bits such as L3.4, L3.4-2, L12 or L12-15 (bytes 0 to {})",
                    text, most_bytes - 1)};
}

bool is_position(std::string_view text) { return pieces(text).has_value(); }

std::string positions_text(std::span<const Span> bits) {
    return explain::position_list('L', {bits.begin(), bits.end()});
}

std::vector<std::uint16_t> bits_in_order(std::span<const Span> pieces) {
    std::vector<std::uint16_t> bits;
    for (const Span piece : pieces) {
        for (unsigned k = 0; k < piece.width; ++k) {
            bits.push_back(static_cast<std::uint16_t>(piece.first_bit + k));
        }
    }
    return bits;
}

Bytes extract(std::span<const std::uint8_t> record, std::span<const Span> bits) {
    Bytes value;
    unsigned at = 0;
    for (const Span span : bits) {
        for (unsigned bit = span.first_bit; bit < span.first_bit + span.width; ++bit, ++at) {
            if (at % 8 == 0) {
                value.push_back(0);
            }
            if (bit / 8 < record.size() && (record[bit / 8] >> bit % 8 & 1) != 0) {
                value.back() = static_cast<std::uint8_t>(value.back() | 1U << at % 8);
            }
        }
    }
    return value;
}

void insert(Bytes& record, std::span<const Span> bits, std::span<const std::uint8_t> value) {
    unsigned at = 0;
    for (const Span span : bits) {
        for (unsigned bit = span.first_bit; bit < span.first_bit + span.width; ++bit, ++at) {
            const unsigned mask = 1U << bit % 8;
            std::uint8_t& byte = record.at(bit / 8);
            const bool set = at / 8 < value.size() && (value[at / 8] >> at % 8 & 1) != 0;
            byte = static_cast<std::uint8_t>(set ? byte | mask : byte & ~mask);
        }
    }
}

}  // namespace names
