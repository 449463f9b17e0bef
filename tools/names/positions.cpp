#include <algorithm>

#include "explain/positions.h"
#include "names/names.h"
#include "trace/position.h"

namespace names {
namespace {

// The pieces of the text, between spaces.
std::vector<std::string_view> pieces(std::string_view text) {
    constexpr std::string_view spaces = " \t";
    std::vector<std::string_view> result;
    for (std::size_t at = text.find_first_not_of(spaces); at != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(spaces, at), text.size());
        result.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(spaces, end);
    }
    return result;
}

}  // namespace

std::vector<Span> parse_positions(std::string_view text) {
    try {
        std::vector<Span> result;
        for (const std::string_view piece : pieces(text)) {
            result.push_back(npxlate::trace::parse_position(piece, 'L').bits);
        }
        // Nothing at all is told as what is no position.
        return result.empty() ? std::vector{npxlate::trace::parse_position(text, 'L').bits} : result;
    } catch (const npxlate::trace::NoPosition& error) {
        throw Error{error.what()};
    }
}

bool is_position(std::string_view text) {
    try {
        parse_positions(text);
        return true;
    } catch (const Error&) {
        return false;
    }
}

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
