// Positions in records, in the notation of the layout tables: P(5, 7) is bit 7 of physical byte 5, P(5, 7, 4) its bits
// 7 to 4, P(5) the byte, or the first byte of a longer value; L(...) likewise in the logical record. The two are
// different types, so that the sides of a row cannot be exchanged unnoticed.
#pragma once

#include <cstddef>
#include <cstdint>

// Positions are known when a translator is compiled. Clang before 15 does not take this of positions that depend on a
// template's parameters; there, GCC's build is the check.
#if defined(__clang__) && __clang_major__ < 15
#define NPXLATE_CONSTEVAL constexpr
#else
#define NPXLATE_CONSTEVAL consteval
#endif

namespace npxlate {

enum class Side : std::uint8_t { logical, physical };

constexpr Side opposite(Side side) { return side == Side::logical ? Side::physical : Side::logical; }

// A layout that is wrong calls one of these while it is compiled. None is constexpr: the call is what the compiler
// reports, and its name is the reason.
namespace layout_error {
inline void there_is_no_such_bit() {}
inline void high_bit_below_low_bit() {}
inline void expected_a_single_bit() {}
inline void expected_a_whole_byte() {}
inline void the_widths_differ() {}
inline void a_row_needs_at_least_one_byte() {}
inline void the_constant_does_not_fit() {}
inline void two_rows_write_the_same_bit() {}
inline void such_a_row_cannot_be_repeated() {}
inline void also_takes_rows_that_move_bits() {}
}  // namespace layout_error

template <Side side>
struct Position {
    std::uint16_t byte;
    std::uint8_t high = 7;
    std::uint8_t low = 0;

    explicit NPXLATE_CONSTEVAL Position(unsigned at_byte) : byte{static_cast<std::uint16_t>(at_byte)} {}
    NPXLATE_CONSTEVAL Position(unsigned at_byte, unsigned bit) : Position{at_byte, bit, bit} {}
    NPXLATE_CONSTEVAL Position(unsigned at_byte, unsigned high_bit, unsigned low_bit)
        : byte{static_cast<std::uint16_t>(at_byte)},
          high{static_cast<std::uint8_t>(high_bit)},
          low{static_cast<std::uint8_t>(low_bit)} {
        if (high_bit > 7) {
            layout_error::there_is_no_such_bit();
        }
        if (high_bit < low_bit) {
            layout_error::high_bit_below_low_bit();
        }
    }

    // The byte that so many bytes follow.
    constexpr Position after(unsigned bytes) const {
        Position result = *this;
        result.byte = static_cast<std::uint16_t>(byte + bytes);
        return result;
    }

    // Bits are counted through the record from bit 0 of byte 0 upwards.
    constexpr unsigned first_bit() const { return byte * 8U + low; }
    constexpr unsigned width() const { return high - low + 1U; }
    constexpr bool is_bit() const { return high == low; }
    constexpr bool is_byte() const { return high == 7 && low == 0; }
};

using L = Position<Side::logical>;
using P = Position<Side::physical>;

}  // namespace npxlate
