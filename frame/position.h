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

// No record is longer, in bytes.
constexpr std::size_t max_record_bytes = 168;

constexpr Side opposite(Side side) { return side == Side::logical ? Side::physical : Side::logical; }

// A layout that is wrong calls one of these while it is compiled. None is constexpr: the call is what the compiler
// reports, and its name is the reason.
namespace layout_error {
inline void there_is_no_such_byte() {}
inline void there_is_no_such_bit() {}
inline void outside_of_the_record() {}
inline void high_bit_below_low_bit() {}
inline void expected_a_single_bit() {}
inline void expected_a_whole_byte() {}
inline void the_widths_differ() {}
inline void a_row_needs_at_least_one_bit() {}
inline void longer_than_any_record() {}
inline void a_row_is_there_at_least_once() {}
inline void a_function_takes_and_gives_up_to_32_bits() {}
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

    explicit NPXLATE_CONSTEVAL Position(unsigned at_byte) : Position{at_byte, 7, 0} {}
    NPXLATE_CONSTEVAL Position(unsigned at_byte, unsigned bit) : Position{at_byte, bit, bit} {}
    NPXLATE_CONSTEVAL Position(unsigned at_byte, unsigned high_bit, unsigned low_bit)
        : byte{static_cast<std::uint16_t>(at_byte)},
          high{static_cast<std::uint8_t>(high_bit)},
          low{static_cast<std::uint8_t>(low_bit)} {
        if (at_byte >= max_record_bytes) {
            layout_error::there_is_no_such_byte();
        }
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

// What code reads and writes, it names by positions too, and they are checked against the record that they are in: bits
// of one byte, a single bit, and `count` whole bytes. A position turns into one of these where it is used.
template <Side side, std::size_t size>
struct BitsIn : Position<side> {
    NPXLATE_CONSTEVAL BitsIn(Position<side> at) : Position<side>{at} {  // NOLINT(google-explicit-constructor)
        if (at.byte >= size) {
            layout_error::outside_of_the_record();
        }
    }
};

template <Side side, std::size_t size>
struct BitIn : BitsIn<side, size> {
    NPXLATE_CONSTEVAL BitIn(Position<side> at) : BitsIn<side, size>{at} {  // NOLINT(google-explicit-constructor)
        if (!at.is_bit()) {
            layout_error::expected_a_single_bit();
        }
    }
};

template <Side side, std::size_t size, std::size_t count>
struct BytesIn : Position<side> {
    NPXLATE_CONSTEVAL BytesIn(Position<side> at) : Position<side>{at} {  // NOLINT(google-explicit-constructor)
        if (!at.is_byte()) {
            layout_error::expected_a_whole_byte();
        }
        if (at.byte + count > size) {
            layout_error::outside_of_the_record();
        }
    }

    // Of `times` values from here on, one behind the other, the one with this number: known only at run time.
    template <std::size_t times>
    static constexpr BytesIn one_of(BytesIn<side, size, times * count> first, unsigned number) {
        return BytesIn{first.after(static_cast<unsigned>(count) * number), nullptr};
    }

private:
    constexpr BytesIn(Position<side> at, std::nullptr_t) : Position<side>{at} {}
};

template <std::size_t size, std::size_t count>
using LogicalBytes = BytesIn<Side::logical, size, count>;
template <std::size_t size, std::size_t count>
using PhysicalBytes = BytesIn<Side::physical, size, count>;

}  // namespace npxlate
