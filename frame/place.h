// What translators do with records: place a layout, put a computed value, finish.
#pragma once

#include "frame/record.h"

#ifndef NPXLATE_TRACED  // which has all of this on its own records

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include <npxlate/npxlate.h>

#include "frame/plan.h"

namespace npxlate {

namespace place_detail {

// In 32 bits where those are enough: a constant of 64 bits costs an instruction of its own.
template <plan::Term term>
NPXLATE_INLINE std::uint64_t move(const std::uint8_t* from) {
    using Loaded = std::conditional_t<(term.load_bytes <= 4), std::uint32_t, std::uint64_t>;
    const auto loaded = static_cast<Loaded>(load_little<term.load_bytes>(from + term.offset));
    if constexpr (term.multiplier != 1) {
        using Product = std::conditional_t<(term.mask << -term.shift <= 0xffffffff), std::uint32_t, std::uint64_t>;
        const auto taken = static_cast<Product>(loaded & static_cast<Loaded>(term.taken));
        return taken * static_cast<Product>(term.multiplier) >> -term.shift & static_cast<Product>(term.mask);
    } else if constexpr (term.shift <= 0) {
        return loaded >> -term.shift & static_cast<Loaded>(term.mask);
    } else if constexpr (term.mask <= 0xffffffff) {
        return static_cast<std::uint32_t>(loaded) << term.shift & static_cast<std::uint32_t>(term.mask);
    } else {
        return std::uint64_t{loaded & static_cast<Loaded>(term.mask >> term.shift)} << term.shift;
    }
}

// All terms of one kind of a word, ORed together.
template <const plan::Word& word, bool reversed, std::size_t... i>
NPXLATE_INLINE std::uint64_t gather(const std::uint8_t* from, std::index_sequence<i...>) {
    std::uint64_t result = 0;
    const auto add = [&]<std::size_t index>() __attribute__((always_inline)) {
        if constexpr (word.terms[index].reversed == reversed) {
            result |= move<word.terms[index]>(from);
        }
    };
    (add.template operator()<i>(), ...);
    static_cast<void>(add);
    return result;
}

template <const plan::Word& word>
NPXLATE_INLINE std::uint64_t moved_bits(const std::uint8_t* from) {
    constexpr std::make_index_sequence<word.term_count> terms;
    return gather<word, false>(from, terms) | bytes_detail::swap(gather<word, true>(from, terms));
}

template <const auto& layout, std::size_t index, Side side, std::size_t to_size, std::size_t from_size>
NPXLATE_INLINE void place_word(Record<side, to_size>& out, const std::uint8_t* from) {
    static constexpr const plan::Word& word = plan::word_of<layout, index, from_size, false>;
    static constexpr const plan::Word& combined = plan::word_of<layout, index, from_size, true>;
    if constexpr (word.written != 0) {
        out.write(index, word.written, (moved_bits<word>(from) ^ word.inverted) | word.ones);
    }
    if constexpr (combined.written != 0) {
        out.write(index, 0, (moved_bits<combined>(from) ^ combined.inverted) | combined.ones);
    }
}

// A field of up to 32 bits anywhere in the record read.
template <Span span, std::size_t from_size>
NPXLATE_INLINE std::uint32_t field(const std::uint8_t* from) {
    constexpr plan::Term load = plan::load_for(span.first_bit / 8U, (span.first_bit + span.width - 1U) / 8, from_size);
    return static_cast<std::uint32_t>(load_little<load.load_bytes>(from + load.offset) >>
                                          (span.first_bit - 8 * load.offset) &
                                      ((std::uint64_t{1} << span.width) - 1));
}

// Not zero if any bit of the span is 1.
template <Span span, std::size_t from_size>
NPXLATE_INLINE std::uint32_t any_bit(const std::uint8_t* from) {
    if constexpr (span.width == 0) {
        return 0;
    } else if constexpr (span.width > 32) {
        return field<Span{span.first_bit, 32}, from_size>(from) |
               any_bit<Span{span.first_bit + 32, span.width - 32}, from_size>(from);
    } else {
        return field<span, from_size>(from);
    }
}

// The value of a row that is a function of one field or of two, which are constants here, so that the calls can be
// inlined.
template <const auto& layout, std::size_t index, std::size_t from_size>
NPXLATE_INLINE std::uint32_t mapped_value(const std::uint8_t* from) {
    static constexpr const auto& row = layout.rows[index];
    constexpr std::uint64_t mask = (std::uint64_t{1} << row.to.width) - 1;
    const std::uint32_t first = field<row.from[0], from_size>(from);
    if constexpr (row.function_of_two != nullptr) {
        constexpr auto* apply = row.function_of_two->apply;
        return apply(first, field<row.from[1], from_size>(from)) & mask;
    } else {
        constexpr auto* apply = row.function->apply;
        return apply(first) & mask;
    }
}

// A value as it stands in the record: several bytes are big-endian, the highest of them perhaps in one word and the
// rest in the next.
template <Span to, Side side, std::size_t to_size>
NPXLATE_INLINE void write_mapped(Record<side, to_size>& out, std::uint32_t value) {
    constexpr std::size_t word = to.first_bit / 64;
    constexpr unsigned shift = to.first_bit % 64;
    if constexpr (to.width <= 8) {
        out.write(word, 0, std::uint64_t{value} << shift);
    } else if constexpr (shift + to.width <= 64) {
        out.write(word, 0, std::uint64_t{reversed_bytes(value, to.width / 8)} << shift);
    } else {
        constexpr unsigned behind = shift + to.width - 64;
        out.write(word, 0, std::uint64_t{reversed_bytes(value >> behind, (to.width - behind) / 8)} << shift);
        out.write(word + 1, 0, reversed_bytes(value & ((1U << behind) - 1), behind / 8));
    }
}

// The rows that are functions of whole fields. Their bits were cleared when the words were placed.
template <const auto& layout, std::size_t index, Side side, std::size_t to_size, std::size_t from_size>
NPXLATE_INLINE void place_computed(Record<side, to_size>& out, const std::uint8_t* from) {
    static constexpr const Row<side>& row = layout.rows[index];
    if constexpr (!row.reads_whole_fields()) {
        return;
    } else {
        constexpr std::size_t word = row.to.first_bit / 64;
        constexpr unsigned shift = row.to.first_bit % 64;
        if constexpr (row.kind == RowKind::mapped) {
            write_mapped<row.to>(out, mapped_value<layout, index, from_size>(from));
        } else {
            const std::uint32_t found = any_bit<row.from[0], from_size>(from) | any_bit<row.from[1], from_size>(from) |
                                        any_bit<row.from[2], from_size>(from) | any_bit<row.from[3], from_size>(from) |
                                        any_bit<row.from[4], from_size>(from) | any_bit<row.from[5], from_size>(from);
            out.write(word, 0, std::uint64_t{(found != 0) == (row.kind == RowKind::any)} << shift);
        }
    }
}

template <const auto& layout, Side side, std::size_t to_size, std::size_t from_size, std::size_t... word,
          std::size_t... row>
NPXLATE_INLINE void place_all(Record<side, to_size>& out, const std::uint8_t* from, std::index_sequence<word...>,
                              std::index_sequence<row...>) {
    (place_word<layout, word, side, to_size, from_size>(out, from), ...);
    (place_computed<layout, row, side, to_size, from_size>(out, from), ...);
}

}  // namespace place_detail

// Fills the bits that the layout writes from the record read; all other bits stay as they are.
template <const auto& layout, Side side, std::size_t to_size, std::size_t from_size>
NPXLATE_INLINE void place(Record<side, to_size>& out, const Source<opposite(side), from_size>& in) {
    static_assert(layout.side == side, "the layout writes the other record");
    static_assert(layout.bytes_written() <= to_size, "a row writes outside its record");
    static_assert(layout.bytes_read() <= from_size, "a row reads outside its record");
    place_detail::place_all<layout, side, to_size, from_size>(
        out, in.bytes(), std::make_index_sequence<Record<side, to_size>::word_count>{},
        std::make_index_sequence<layout.rows.size()>{});
}

// What only code can say: a value that is no row, of a field that may have a name. Bits of the value that do not fit
// are dropped.
template <Side side, std::size_t size>
NPXLATE_INLINE void put(Record<side, size>& out, std::type_identity_t<BitsIn<side, size>> to, Number value,
                        const char* = nullptr) {
    const unsigned shift = to.first_bit() % 64;
    const std::uint64_t mask = (std::uint64_t{1} << to.width()) - 1;
    out.write(to.byte / 8, mask << shift, (value & mask) << shift);
}

// A value of `count` bytes, least significant byte first.
template <std::size_t count, Side side, std::size_t size>
NPXLATE_INLINE void put_little(Record<side, size>& out, std::type_identity_t<BytesIn<side, size, count>> to,
                               Number value, const char* = nullptr) {
    const unsigned in_first_word = 8 - to.byte % 8;
    const unsigned shift = 8 * (to.byte % 8);
    constexpr std::uint64_t mask = (std::uint64_t{1} << 8 * count) - 1;
    const std::uint64_t bits = value & mask;
    out.write(to.byte / 8, mask << shift, bits << shift);
    if (in_first_word < count) {
        out.write(to.byte / 8 + 1, mask >> 8 * in_first_word, bits >> 8 * in_first_word);
    }
}

// A value of `count` bytes, most significant byte first.
template <std::size_t count, Side side, std::size_t size>
NPXLATE_INLINE void put_big(Record<side, size>& out, std::type_identity_t<BytesIn<side, size, count>> to, Number value,
                            const char* = nullptr) {
    put_little<count>(out, to, reversed_bytes(value, count));
}

// Writes into the record that was handed in to be read, least significant byte first: a few tables ask for that, and
// their callers know.
template <std::size_t count, Side side, std::size_t size>
NPXLATE_INLINE void change_input(const Source<side, size>& in, std::type_identity_t<BytesIn<side, size, count>> at,
                                 Number value) {
    store_little<count>(const_cast<std::uint8_t*>(in.bytes()) + at.byte, value);
}

// Writes into a record that is stored already, least significant byte first: for a position known only at run time.
template <std::size_t count, Side side, std::size_t size>
NPXLATE_INLINE void store_into(void* record, BytesIn<side, size, count> at, Number value) {
    store_little<count>(static_cast<std::uint8_t*>(record) + at.byte, value);
}

// What a few translators do to as many bytes of a record as the caller says. A negative count is the caller's error.
NPXLATE_INLINE void copy_bytes(void* to_record, const void* from_record, std::int32_t count) {
    std::memcpy(to_record, from_record, static_cast<std::size_t>(count));
}
NPXLATE_INLINE void clear_bytes(void* record, std::int32_t count) {
    std::memset(record, 0, static_cast<std::size_t>(count));
}
NPXLATE_INLINE void set_header_bits(void* physical, std::uint8_t header) {
    *static_cast<std::uint8_t*>(physical) |= header;
}

// Bytes of a record to the front of the other, in reverse order; nothing for a count of 0 or less.
inline void reverse_byte_copy(void* to_record, const void* from_record, std::int32_t first, std::int32_t count) {
    auto* to = static_cast<std::uint8_t*>(to_record);
    const auto* from = static_cast<const std::uint8_t*>(from_record) + first;
    for (std::int32_t i = 0; i < count; ++i) {
        to[count - 1 - i] = from[i];
    }
}

}  // namespace npxlate

#endif

namespace npxlate {

// Stores the physical record and its length.
template <std::size_t size>
NPXLATE_INLINE std::int32_t finish(const PhysicalRecord<size>& out, void* physical, std::uint32_t* physical_length) {
    out.store(physical);
    *physical_length = size;
    return NPXLATE_OK;
}

// Stores the logical record.
template <std::size_t size>
NPXLATE_INLINE std::int32_t finish(const LogicalRecord<size>& out, void* logical) {
    out.store(logical);
    return NPXLATE_OK;
}

}  // namespace npxlate
