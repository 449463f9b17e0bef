#include "explain/positions.h"

#include <algorithm>

#include <fmt/format.h>

namespace explain {

bool bit_of(const Bytes& record, std::size_t bit) { return (record.at(bit / 8) >> (bit % 8) & 1) != 0; }

std::vector<Span> spans_of(const std::set<std::uint16_t>& bits) {
    std::vector<Span> spans;
    for (const std::uint16_t bit : bits) {
        if (!spans.empty() && spans.back().first_bit + spans.back().width == bit) {
            ++spans.back().width;
        } else {
            spans.push_back({bit, 1});
        }
    }
    return spans;
}

std::set<std::uint16_t> bits_of(const std::vector<Span>& spans) {
    std::set<std::uint16_t> bits;
    for (const Span span : spans) {
        for (unsigned k = 0; k < span.width; ++k) {
            bits.insert(static_cast<std::uint16_t>(span.first_bit + k));
        }
    }
    return bits;
}

std::vector<Span> nameable(Span span) {
    std::vector<Span> pieces;
    unsigned at = span.first_bit;
    const unsigned end = at + span.width;
    while (at < end) {
        const unsigned whole_bytes = at % 8 == 0 ? (end - at) / 8 : 0;
        const unsigned width = whole_bytes != 0 ? 8 * whole_bytes : std::min(end - at, 8 - at % 8);
        pieces.push_back({static_cast<std::uint16_t>(at), static_cast<std::uint16_t>(width)});
        at += width;
    }
    return pieces;
}

std::string position(char letter, Span nameable_span) {
    return npxlate::trace::position(letter, nameable_span.first_bit, nameable_span.width);
}

std::vector<std::string> positions(char letter, const std::vector<Span>& spans) {
    std::vector<std::string> result;
    for (const Span span : spans) {
        for (const Span piece : nameable(span)) {
            result.push_back(position(letter, piece));
        }
    }
    return result;
}

std::string position_list(char letter, const std::vector<Span>& spans) {
    return fmt::format("{}", fmt::join(positions(letter, spans), " "));
}

std::string value_at(const Bytes& record, const std::vector<Span>& spans) {
    const auto byte_at = [&](std::size_t byte) { return byte < record.size() ? record[byte] : 0U; };
    std::string text;
    for (const Span span : spans) {
        for (const Span piece : nameable(span)) {
            text += text.empty() ? "" : " ";
            if (piece.width % 8 == 0) {
                for (unsigned i = 0; i < piece.width / 8U; ++i) {
                    text += fmt::format("{:02x}", byte_at(piece.first_bit / 8U + i));
                }
            } else {
                text += piece.width == 1 ? "" : "0b";
                for (unsigned k = piece.width; k-- > 0;) {
                    const unsigned bit = piece.first_bit + k;
                    text += (byte_at(bit / 8) >> bit % 8 & 1) != 0 ? '1' : '0';
                }
            }
        }
    }
    return text;
}

}  // namespace explain
