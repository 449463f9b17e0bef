// Next-hop index, table 98. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    header_byte(P(0)),
    any(P(1, 7), L(0, 2, 0)),  // with the next row: P1.4, L0.0 or L0.2
    also(inverted(P(1, 7), L(0, 3))),
    bit(P(1, 6), L(0, 2)),
    bit(P(1, 5), L(0, 0)),
    inverted(P(1, 4), L(0, 3)),
    also(bit(P(1, 4), L(0, 1))),
    constant(P(1, 3), 1),
    bit(P(2, 2), L(0, 4)),
    copied(P(4), L(1), 2),
    copied(P(6), L(3), 2),
    copied(P(8), L(5), 3),
    copied(P(16), L(9), 6),
    swapped(P(22), L(17), 4),
};

}  // namespace

std::int32_t nhindex_type_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t nhindex_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return place_only<result, 21, 32>(logical, physical, physical_length);
}
