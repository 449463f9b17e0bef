// What several records share.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/place.h"

namespace npxlate {

constexpr std::uint8_t result_header = 0x11;

// Translators that place one layout, whatever is in the record.
template <const auto& layout, std::size_t logical_size, std::size_t physical_size>
NPXLATE_INLINE std::int32_t place_only(const void* logical, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<layout>(out, in);
    return finish(out, physical, physical_length);
}

template <const auto& layout, std::size_t physical_size, std::size_t logical_size>
NPXLATE_INLINE std::int32_t place_only(const void* physical, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<layout>(out, in);
    return finish(out, logical);
}

// Keys that are the same bytes on both sides.
template <std::size_t size>
inline constexpr Layout same_key{
    copied(P(0), L(0), size),
};

template <std::size_t size>
NPXLATE_INLINE std::int32_t copy_key(const void* logical, void* physical, std::uint32_t* physical_length) {
    return place_only<same_key<size>, size, size>(logical, physical, physical_length);
}

// A physical hop byte: twice the count and one; counts above 64 stand as 1.
inline constexpr Function hop_byte{
    "2 x hops + 1, more than 64 hops taken as 1",
    [](std::uint32_t hops) { return 2 * (hops > 64 ? 1 : hops) + 1; },
};

inline constexpr Function plus_one{
    "plus 1, modulo 256",
    [](std::uint32_t value) { return value + 1; },
};

// Of the values of a kind only 1 and 2 survive.
inline constexpr Function two_value_code{
    "1 for 1, 2 for 2, 0 for any other value",
    [](std::uint32_t kind) { return kind == 1 || kind == 2 ? kind : 0U; },
};

// Writes into the record that was handed in to be read, least significant byte first: a few tables ask for that, and
// their callers know.
template <std::size_t count, Side side>
NPXLATE_INLINE void change_input(const void* record, Position<side> at, std::uint32_t value, const char* sentence) {
    trace::changed_input(at.first_bit(), 8 * count, sentence);
    store_little<count>(static_cast<std::uint8_t*>(const_cast<void*>(record)) + at.byte, value);
}

// Writes into a record that is stored already, least significant byte first: for a position known only at run time.
template <std::size_t count, Side side>
NPXLATE_INLINE void store_into(void* record, Position<side> at, std::uint32_t value, const char* sentence) {
    trace::put(side, at.first_bit(), 8 * count, sentence);
    store_little<count>(static_cast<std::uint8_t*>(record) + at.byte, value);
}

// Bytes of a record to the front of the other, in reverse order; nothing for a count of 0 or less.
inline void reverse_byte_copy(void* to_record, const void* from_record, std::int32_t first, std::int32_t count) {
    auto* to = static_cast<std::uint8_t*>(to_record);
    const auto* from = static_cast<const std::uint8_t*>(from_record) + first;
    trace::copied(0, 8 * static_cast<unsigned>(first), 8 * static_cast<unsigned>(count > 0 ? count : 0), true);
    for (std::int32_t i = 0; i < count; ++i) {
        to[count - 1 - i] = from[i];
    }
}

}  // namespace npxlate
