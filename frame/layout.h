// A layout: rows, under a title that says in words what they hold where there are such words. Which records it applies
// to is decided, and said, by the code that places it.
//
//     constexpr Layout variant_b{
//         "variant B",
//         bit(P(3, 5), L(2, 1)),
//         swapped(P(6), L(20), 2),
//         copied(P(12), L(12), 4),
//     };
//
// Checked while it is compiled: a layout in which two rows write the same bit does not compile. What is meant to
// overwrite belongs into a layout of its own, placed after the first.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>

#include "frame/row.h"

namespace npxlate {

// What becomes of one bit of the record written.
struct Cell {
    enum Kind : std::uint8_t {
        untouched,
        zero,
        one,
        moved,     // comes from the bit `from`
        inverted,  // is the inverse of the bit `from`
        computed,  // comes out of a function of a field
    };
    Kind kind = untouched;
    std::uint16_t from = 0;
};

using Cells = std::array<Cell, 8 * max_record_bytes>;

namespace layout_detail {

// As std::max, whose header would be most of what there is to read for a source of the library.
constexpr unsigned larger(unsigned a, unsigned b) { return a < b ? b : a; }

// The bit that stands where bit `bit` of a value of so many bytes stands after the value's bytes are reversed.
constexpr unsigned reversed_bit(unsigned bit, unsigned byte_count) { return 8 * (byte_count - 1 - bit / 8) + bit % 8; }

// What surrounds the 20 bits of the i-th label: zero bits, and the flag if there is one.
template <Side side, typename Move, typename Set>
constexpr void label_tail(const Row<side>& row, unsigned i, Move move, Set set) {
    const unsigned to = row.to.first_bit + i * row.to_step;
    const unsigned from = row.from[0].first_bit + i * row.from_step;
    const unsigned flag_in_field = reversed_bit(0, 3);
    if (side == Side::physical) {
        for (unsigned k = 1; k < 4; ++k) {
            set(to + reversed_bit(k, 3), false);
        }
        if (row.flag.width != 0) {
            move(to + flag_in_field, row.flag.first_bit + i * row.from_step);
        } else {
            set(to + flag_in_field, row.value != 0);
        }
    } else {
        for (unsigned k = label_width; k < 32; ++k) {
            set(to + k, false);
        }
        if (row.flag.width != 0) {
            move(row.flag.first_bit + i * row.to_step, from + flag_in_field);
        }
    }
}

// Two rows meet: which bit it is, stands in what the compiler says. Clang shows the call with its arguments, GCC shows
// what the subscript would be, 43 for bit 3 of byte 4.
constexpr bool two_rows_write_the_same_bit_here_ten_times_its_byte_plus_bit[1] = {};
constexpr void expect_free(unsigned byte, unsigned bit, bool is_free) {
    if (!is_free && !two_rows_write_the_same_bit_here_ten_times_its_byte_plus_bit[10 * byte + bit]) {
        layout_error::two_rows_write_the_same_bit();
    }
}

// Calls write(to, cell, combines) for every bit that the row writes.
template <Side side, typename Write>
constexpr void for_each_bit(const Row<side>& row, Write write) {
    const auto move = [&](unsigned to, unsigned from, Cell::Kind kind = Cell::moved) {
        write(to, Cell{kind, static_cast<std::uint16_t>(from)}, row.combines);
    };
    const auto set = [&](unsigned to, bool value) { write(to, Cell{value ? Cell::one : Cell::zero}, row.combines); };
    for (unsigned i = 0; i < row.count; ++i) {
        const unsigned to = row.to.first_bit + i * row.to_step;
        const unsigned from = row.from[0].first_bit + i * row.from_step;
        const unsigned width = row.to.width;
        switch (row.kind) {
            case RowKind::nothing:
                break;
            case RowKind::constant:
                for (unsigned k = 0; k < width; ++k) {
                    set(to + k, k < 32 && ((row.value >> k) & 1) != 0);
                }
                break;
            case RowKind::straight:
            case RowKind::inverted:
                for (unsigned k = 0; k < width; ++k) {
                    move(to + k, from + k, row.kind == RowKind::inverted ? Cell::inverted : Cell::moved);
                }
                break;
            case RowKind::swapped:
                for (unsigned k = 0; k < width; ++k) {
                    move(to + reversed_bit(k, width / 8), from + k);
                }
                break;
            case RowKind::label:
                // The physical field is the big-endian 24-bit value label * 16 + flag.
                for (unsigned k = 0; k < label_width; ++k) {
                    const unsigned in_field = reversed_bit(k + 4, 3);
                    if (side == Side::physical) {
                        move(to + in_field, from + k);
                    } else {
                        move(to + k, from + in_field);
                    }
                }
                if (row.has_label_tail) {
                    label_tail(row, i, move, set);
                }
                break;
            case RowKind::any:
            case RowKind::none:
            case RowKind::mapped:
                for (unsigned k = 0; k < width; ++k) {
                    write(to + k, Cell{Cell::computed}, false);
                }
                break;
        }
    }
}

}  // namespace layout_detail

template <Side to_side, std::size_t row_count>
struct Layout {
    static constexpr Side side = to_side;

    const char* title;
    std::array<Row<to_side>, row_count> rows;

    template <std::same_as<Row<to_side>>... Rows>
    constexpr Layout(const char* layout_title, Row<to_side> first, Rows... others)
        : title{layout_title}, rows{first, others...} {
        static_cast<void>(cells());
    }

    template <std::same_as<Row<to_side>>... Rows>
    constexpr explicit Layout(Row<to_side> first, Rows... others) : Layout{"", first, others...} {}

    constexpr Layout(const char* layout_title, const std::array<Row<to_side>, row_count>& layout_rows)
        : title{layout_title}, rows{layout_rows} {
        static_cast<void>(cells());
    }

    // What becomes of each bit; the bits that are ORed in are not among them, or are alone in them.
    constexpr Cells cells(bool combined = false) const {
        Cells result{};
        for (const Row<to_side>& row : rows) {
            layout_detail::for_each_bit(row, [&](unsigned to, Cell cell, bool combines) {
                if (combines != combined) {
                    return;
                }
                layout_detail::expect_free(to / 8, to % 8, result[to].kind == Cell::untouched);
                result[to] = cell;
            });
        }
        return result;
    }

    // How many bytes the record written and the record read must have at least.
    constexpr std::size_t bytes_written() const {
        unsigned end = 0;
        for (const Row<to_side>& row : rows) {
            layout_detail::for_each_bit(row,
                                        [&](unsigned to, Cell, bool) { end = layout_detail::larger(end, to + 1); });
        }
        return (end + 7) / 8;
    }
    constexpr std::size_t bytes_read() const {
        unsigned end = 0;
        for (const Row<to_side>& row : rows) {
            layout_detail::for_each_bit(row, [&](unsigned, Cell cell, bool) {
                if (cell.kind == Cell::moved || cell.kind == Cell::inverted) {
                    end = layout_detail::larger(end, cell.from + 1U);
                }
            });
            if (row.reads_whole_fields()) {
                for (const Span& span : row.from) {
                    end = layout_detail::larger(end, unsigned{span.first_bit} + span.width);
                }
            }
        }
        return (end + 7) / 8;
    }
};

template <Side side, typename... Rows>
Layout(const char*, Row<side>, Rows...) -> Layout<side, 1 + sizeof...(Rows)>;
template <Side side, typename... Rows>
Layout(Row<side>, Rows...) -> Layout<side, 1 + sizeof...(Rows)>;

// The layout that takes every moved field back to where it came from. Constants and computed fields have no way back
// and leave no row that does anything.
template <Side side, std::size_t row_count>
constexpr Layout<opposite(side), row_count> mirrored(const char* title, const Layout<side, row_count>& layout) {
    std::array<Row<opposite(side)>, row_count> rows{};
    for (std::size_t i = 0; i < row_count; ++i) {
        rows[i] = layout.rows[i].mirrored();
    }
    return {title, rows};
}

template <Side side, std::size_t row_count>
constexpr Layout<opposite(side), row_count> mirrored(const Layout<side, row_count>& layout) {
    return mirrored(layout.title, layout);
}

}  // namespace npxlate
