// Sets of bits of a physical record.
#pragma once

#include <npxlate/npxlate.h>
#include <algorithm>

#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "frame/row.h"

namespace audit {

inline constexpr std::size_t most_physical = NPXLATE_MAX_PHYSICAL_LENGTH;

// A bit for each bit of a record: bit 0 of byte 0 first.
struct Bits {
    std::array<std::uint8_t, most_physical> bytes{};

    bool operator==(const Bits&) const = default;
    bool any() const {
        return std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte != 0; });
    }
    bool has(std::size_t bit) const { return (bytes[bit / 8] >> bit % 8 & 1U) != 0; }
    void set(std::size_t bit) { bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] | 1U << bit % 8); }
    void set(npxlate::Span span) {
        for (std::size_t k = 0; k < span.width; ++k) {
            set(span.first_bit + k);
        }
    }
    std::size_t count() const {
        std::size_t bits = 0;
        for (const std::uint8_t byte : bytes) {
            bits += static_cast<std::size_t>(std::popcount(byte));
        }
        return bits;
    }
    bool touches(npxlate::Span span) const {
        for (std::size_t k = 0; k < span.width; ++k) {
            if (has(span.first_bit + k)) {
                return true;
            }
        }
        return false;
    }
    // Whether all of the others are among these.
    bool covers(const Bits& others) const {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if ((others.bytes[i] & ~bytes[i]) != 0) {
                return false;
            }
        }
        return true;
    }
    Bits& operator|=(const Bits& others) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] |= others.bytes[i];
        }
        return *this;
    }
    Bits& operator&=(const Bits& others) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] &= others.bytes[i];
        }
        return *this;
    }
    Bits operator~() const {
        Bits others;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            others.bytes[i] = static_cast<std::uint8_t>(~bytes[i]);
        }
        return others;
    }

    template <typename State>
    friend State AbslHashValue(State state, const Bits& bits) {
        return State::combine_contiguous(std::move(state), bits.bytes.data(), bits.bytes.size());
    }
};

// Neighbouring bits as spans.
std::vector<npxlate::Span> spans_of(const Bits& bits);

// The record's bytes, the rest zero.
inline Bits bits_of(std::span<const std::uint8_t> record) {
    Bits bits;
    for (std::size_t i = 0; i < record.size() && i < bits.bytes.size(); ++i) {
        bits.bytes[i] = record[i];
    }
    return bits;
}

}  // namespace audit
