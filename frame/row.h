// The rows of which layouts are made. A row says which bits of the record being written come from which bits of the
// record being read; the record written stands first.
//
//     constant(P(0), 0x91)                    these bits have this value
//     cleared(P(8), 3)                        these bytes are zero
//     bit(P(0, 5), L(0, 4))                   one bit
//     bits(P(8, 5, 4), L(7, 1, 0))            bits of a byte
//     inverted(P(1, 0), L(1, 1))              one bit or bits of a byte, each inverted
//     copied(P(12), L(12), 4)                 bytes, order kept
//     swapped(P(8), L(24), 4)                 bytes, order reversed: a value made big-endian, an address turned round
//     run(P(27, 4), L(53, 0), 20)             as many bits upwards from each side's bit, through the bytes: a value
//                                             stored least significant byte first, at any bit
//     label(P(20), L(32), L(36, 0))           a label field: 20 bits of a little-endian value, most significant first,
//                                             three zero bits, a flag (a bit of the other record, or 0 or 1)
//     label_bits(P(13), L(12))                the 20 bits of a label field alone
//     label(L(8), P(16))                      and back: the label as a little-endian 32-bit value
//     label(L(8), P(16), L(12, 0))            and back, with its flag
//     any(P(2, 1), L(3, 6, 3), L(5))          1 if any of these bits is 1 (up to six places)
//     none(P(11, 1), L(41))                   1 if none of them is
//     mapped(P(3), L(4), hop_byte)            a value of up to 8 bits through a small pure function
//     mapped(P(9), bytes(L(52), 2), function) a little-endian value of so many bytes through a small pure function
//     mapped(bytes(P(6), 2), bytes(L(4), 2), L(8), function)
//                                             two fields through one; a value of several bytes stands big-endian
//     also(row)                               the row's bits are ORed into what other rows give
//     row.repeated(4, P(3), L(5))             four times, 3 physical and 5 logical bytes apart
//     row.named("source address")             what the field is called; only where that is settled
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/number.h"
#include "frame/position.h"

namespace npxlate {

enum class RowKind : std::uint8_t {
    nothing,
    constant,
    straight,  // bits keep their order: bit, bits, copied, run
    inverted,
    swapped,
    label,
    any,
    none,
    mapped,
};

// Bits of a record, counted from bit 0 of byte 0 upwards.
struct Span {
    std::uint16_t first_bit = 0;
    std::uint16_t width = 0;  // 0: not there

    bool operator==(const Span&) const = default;
};

constexpr unsigned label_width = 20;

namespace row_detail {

template <Side side>
constexpr Span span(Position<side> at, unsigned width) {
    if (width == 0) {
        layout_error::a_row_needs_at_least_one_bit();
    }
    if (width > 8 * max_record_bytes) {
        layout_error::longer_than_any_record();
    }
    return {static_cast<std::uint16_t>(at.first_bit()), static_cast<std::uint16_t>(width)};
}

template <Side side>
constexpr void expect_byte(Position<side> at) {
    if (!at.is_byte()) {
        layout_error::expected_a_whole_byte();
    }
}

template <Side side>
constexpr void expect_bit(Position<side> at) {
    if (!at.is_bit()) {
        layout_error::expected_a_single_bit();
    }
}

}  // namespace row_detail

// A place that any(), none() and mapped() look at, of one byte or of several.
template <Side side>
struct Place : Span {
    constexpr Place() = default;
    constexpr Place(Position<side> at)  // NOLINT(google-explicit-constructor): any(P(2, 0), L(3), L(4, 7))
        : Span{row_detail::span(at, at.width())} {}
    constexpr Place(Position<side> at, unsigned byte_count) : Span{row_detail::span(at, 8 * byte_count)} {
        row_detail::expect_byte(at);
    }
};

// bytes(L(53), 3) in any(), none() and mapped().
template <Side side>
constexpr Place<side> bytes(Position<side> at, unsigned count) {
    return {at, count};
}

template <Side to_side>
struct Row {
    using To = Position<to_side>;
    using From = Position<opposite(to_side)>;

    RowKind kind = RowKind::nothing;
    bool combines = false;        // ORed into what other rows give
    bool has_label_tail = false;  // label fields: the three zero bits and the flag
    Span to{};
    Span from[6] = {};                               // any and none look at up to six, mapped at one or two
    Span flag{};                                     // label fields: where the flag stands in the logical record
    std::uint32_t value = 0;                         // constants; a label field's flag when it is not a bit
    const Function* function = nullptr;              // mapped, of one field
    const FunctionOfTwo* function_of_two = nullptr;  // or of two
    std::uint16_t count = 1;
    std::uint16_t to_step = 0;  // in bits
    std::uint16_t from_step = 0;
    const char* name = nullptr;  // of the field that the row moves; null: it has none

    // Rows whose result depends on all bits of their fields, not bit by bit.
    constexpr bool reads_whole_fields() const {
        return kind == RowKind::any || kind == RowKind::none || kind == RowKind::mapped;
    }

    // The row that takes the field back; a row that does nothing where there is no way back.
    constexpr Row<opposite(to_side)> mirrored() const {
        if (kind != RowKind::straight && kind != RowKind::inverted && kind != RowKind::swapped &&
            kind != RowKind::label) {
            return {};
        }
        return {.kind = kind,
                .has_label_tail = has_label_tail,
                .to = from[0],
                .from = {to},
                .flag = flag,
                .count = count,
                .to_step = from_step,
                .from_step = to_step,
                .name = name};
    }

    constexpr Row named(const char* field) const {
        Row row = *this;
        row.name = field;
        return row;
    }

    constexpr Row repeated(unsigned times, To to_bytes, From from_bytes) const {
        if (kind != RowKind::constant && kind != RowKind::straight && kind != RowKind::inverted &&
            kind != RowKind::swapped && kind != RowKind::label) {
            layout_error::such_a_row_cannot_be_repeated();
        }
        if (times == 0) {
            layout_error::a_row_is_there_at_least_once();
        }
        if (times > max_record_bytes) {
            layout_error::longer_than_any_record();
        }
        Row row = *this;
        row.count = static_cast<std::uint16_t>(times);
        row.to_step = static_cast<std::uint16_t>(8 * to_bytes.byte);
        row.from_step = static_cast<std::uint16_t>(8 * from_bytes.byte);
        return row;
    }
};

namespace row_detail {

template <Side side>
constexpr Row<side> bytes_row(RowKind kind, Position<side> to, Position<opposite(side)> from, unsigned count) {
    expect_byte(to);
    expect_byte(from);
    return {.kind = kind, .to = span(to, 8 * count), .from = {span(from, 8 * count)}};
}

template <Side side, typename... Places>
constexpr Row<side> looking_row(RowKind kind, Position<side> to, Places... places) {
    expect_bit(to);
    return {.kind = kind, .to = span(to, 1), .from = {Place<opposite(side)>{places}...}};
}

}  // namespace row_detail

template <Side side>
constexpr Row<side> constant(Position<side> to, unsigned value) {
    if (value >> to.width() != 0) {
        layout_error::the_constant_does_not_fit();
    }
    return {.kind = RowKind::constant, .to = row_detail::span(to, to.width()), .value = value};
}

template <Side side>
constexpr Row<side> cleared(Position<side> to, unsigned count) {
    row_detail::expect_byte(to);
    return {.kind = RowKind::constant, .to = row_detail::span(to, 8 * count)};
}

template <Side side>
constexpr Row<side> bits(Position<side> to, Position<opposite(side)> from) {
    if (to.width() != from.width()) {
        layout_error::the_widths_differ();
    }
    return {.kind = RowKind::straight,
            .to = row_detail::span(to, to.width()),
            .from = {row_detail::span(from, to.width())}};
}

template <Side side>
constexpr Row<side> bit(Position<side> to, Position<opposite(side)> from) {
    row_detail::expect_bit(to);
    row_detail::expect_bit(from);
    return bits(to, from);
}

template <Side side>
constexpr Row<side> inverted(Position<side> to, Position<opposite(side)> from) {
    Row<side> row = bits(to, from);
    row.kind = RowKind::inverted;
    return row;
}

template <Side side>
constexpr Row<side> run(Position<side> to, Position<opposite(side)> from, unsigned width) {
    row_detail::expect_bit(to);
    row_detail::expect_bit(from);
    return {.kind = RowKind::straight, .to = row_detail::span(to, width), .from = {row_detail::span(from, width)}};
}

template <Side side>
constexpr Row<side> copied(Position<side> to, Position<opposite(side)> from, unsigned count = 1) {
    return row_detail::bytes_row(RowKind::straight, to, from, count);
}

template <Side side>
constexpr Row<side> swapped(Position<side> to, Position<opposite(side)> from, unsigned count) {
    return row_detail::bytes_row(RowKind::swapped, to, from, count);
}

// The 20 bits of a label, without what follows them in the physical field or above them in the logical value.
template <Side side>
constexpr Row<side> label_bits(Position<side> to, Position<opposite(side)> from) {
    row_detail::expect_byte(to);
    row_detail::expect_byte(from);
    return {
        .kind = RowKind::label, .to = row_detail::span(to, label_width), .from = {row_detail::span(from, label_width)}};
}

// Out: the label and a flag that is the same in every record.
constexpr Row<Side::physical> label(P to, L from, unsigned flag) {
    Row<Side::physical> row = label_bits(to, from);
    if (flag > 1) {
        layout_error::the_constant_does_not_fit();
    }
    row.has_label_tail = true;
    row.value = flag;
    return row;
}

// Out: the label and a flag from the logical record.
constexpr Row<Side::physical> label(P to, L from, L flag) {
    row_detail::expect_bit(flag);
    Row<Side::physical> row = label(to, from, 0U);
    row.flag = row_detail::span(flag, 1);
    return row;
}

// Back: the whole 32-bit value, its upper bits zero.
constexpr Row<Side::logical> label(L to, P from) {
    Row<Side::logical> row = label_bits(to, from);
    row.has_label_tail = true;
    return row;
}

// Back, and the flag to where it came from.
constexpr Row<Side::logical> label(L to, P from, L flag) {
    row_detail::expect_bit(flag);
    Row<Side::logical> row = label(to, from);
    row.flag = row_detail::span(flag, 1);
    return row;
}

template <Side side, typename... Places>
constexpr Row<side> any(Position<side> to, Places... places) {
    return row_detail::looking_row(RowKind::any, to, places...);
}

template <Side side, typename... Places>
constexpr Row<side> none(Position<side> to, Places... places) {
    return row_detail::looking_row(RowKind::none, to, places...);
}

namespace row_detail {

template <Side side>
constexpr Row<side> mapped_row(Span to, Place<opposite(side)> first, Place<opposite(side)> second) {
    if (to.width > 32 || first.width > 32 || second.width > 32) {
        layout_error::a_function_takes_and_gives_up_to_32_bits();
    }
    return {.kind = RowKind::mapped, .to = to, .from = {first, second}};
}

}  // namespace row_detail

template <Side side>
constexpr Row<side> mapped(Position<side> to, Place<opposite(side)> from, const Function& function) {
    Row<side> row = row_detail::mapped_row<side>(Place<side>{to}, from, {});
    row.function = &function;
    return row;
}

template <Side side>
constexpr Row<side> mapped(Place<side> to, Place<opposite(side)> first, Place<opposite(side)> second,
                           const FunctionOfTwo& function) {
    Row<side> row = row_detail::mapped_row<side>(to, first, second);
    row.function_of_two = &function;
    return row;
}

template <Side side>
constexpr Row<side> also(Row<side> row) {
    if (row.reads_whole_fields() || row.kind == RowKind::label) {
        layout_error::also_takes_rows_that_move_bits();
    }
    row.combines = true;
    return row;
}

}  // namespace npxlate
