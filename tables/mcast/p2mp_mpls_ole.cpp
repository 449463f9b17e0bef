// Point-to-multipoint MPLS outgoing-list entry, table 64. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 9;
constexpr std::size_t key_physical_size = 6;
constexpr std::size_t logical_size = 32;
constexpr std::size_t physical_size = 16;

constexpr Layout key{
    copied(P(0), L(0), 2),
    copied(P(2), L(4), 3),
    copied(P(5), L(8)),
};

constexpr Layout common{
    bit(P(0, 7), L(0, 1)),
    bit(P(0, 6), L(0, 0)),
    none(P(0, 5), L(0, 1, 0)),  // part of this table's header 0x31, where neither variant bit is set
    header_byte(P(0, 4, 0)),
    bit(P(1, 0), L(1, 0)),
};

constexpr Layout l0_0{
    "L0.0 variant",
    swapped(P(3), L(12), 3),
    swapped(P(6), L(16), 3),
    copied(P(9), L(20), 3),
};

constexpr Layout l0_1{
    "L0.1 variant",
    copied(P(4), L(8), 3),
    copied(P(7), L(28), 4),
    copied(P(11), L(24), 3),
};

constexpr Layout no_variant_bit{
    "variant with neither bit",
    copied(P(4), L(4), 3),
    copied(P(7), L(28), 4),
};

}  // namespace

std::int32_t p2mp_mpls_ole_key_xlate(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t p2mp_mpls_ole_res_xlate(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 0))) {
        place<l0_0>(out, in);
    } else if (in.bit(L(0, 1))) {
        place<l0_1>(out, in);
    } else {
        place<no_variant_bit>(out, in);
    }
    return finish(out, physical, physical_length);
}
