// What several records share.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/place.h"
#include "frame/virtual_queue_index.h"

namespace npxlate {

// The header byte of a result, or those of its bits that are not fields: a few tables have a header of their own, and
// in some a field stands between the header's bits.
constexpr std::uint8_t result_header = 0x11;
constexpr Row<Side::physical> header_byte(P at, unsigned value = result_header) { return constant(at, value); }

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

// Results of a header and three bytes.
inline constexpr Layout short_result{
    header_byte(P(0)),
    copied(P(1), L(0), 3),
};

// For the reverse translators that take records of one length alone.
template <std::size_t size>
NPXLATE_INLINE bool has_length(std::int32_t length) {
    return length == static_cast<std::int32_t>(size);
}

// A physical hop byte: twice the count and one; counts above 64 stand as 1.
inline constexpr Function hop_byte{
    "2 x hops + 1, more than 64 hops taken as 1",
    [](Number hops) -> Number { return 2 * choose(hops > 64, 1, hops) + 1; },
};

inline constexpr std::uint32_t hop_byte_of_one_hop = 3;

inline constexpr Function plus_one{
    "plus 1, modulo 256",
    [](Number value) -> Number { return value + 1; },
};

// Of the values of a kind only 1 and 2 survive.
inline constexpr Function two_value_code{
    "1 for 1, 2 for 2, 0 for any other value",
    [](Number kind) -> Number { return choose(kind == 1 || kind == 2, kind, 0); },
};

}  // namespace npxlate
