// Layer-2 multicast outgoing-list entry, table 45: one copy of a packet and where it goes.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 8;
constexpr std::size_t key_physical_size = 6;
constexpr std::size_t logical_size = 40;
constexpr std::size_t physical_size = 16;

// The key of the IP outgoing list but for the last value, which loses L7 and is not swapped; intended.
constexpr Layout key{
    copied(P(0), L(2)),
    bit(P(1, 4), L(0, 0)),
    bits(P(1, 3, 0), L(3, 3, 0)),
    copied(P(3), L(4), 3),
};

constexpr Layout common{
    bit(P(0, 7), L(0, 1)),
    bit(P(0, 6), L(0, 2)),
    bit(P(0, 5), L(0, 0)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(5, 0)),
    any(P(2, 2), L(4)),
    copied(P(4), L(20), 3),
};

constexpr Layout l0_2{
    "L0.2 variant",
    copied(P(7), L(8), 4),
    swapped(P(11), L(36), 3),
};

constexpr Layout l0_1{
    "L0.1 variant",
    copied(P(7), L(16), 4),
    copied(P(11), L(12), 2),
};

constexpr Layout l0_0{
    "L0.0 variant",
    swapped(P(7), L(32), 3),
    swapped(P(10), L(28), 3),
    swapped(P(13), L(24), 3),
};

constexpr Layout no_variant_bit{
    "default variant",
    copied(P(7), L(8), 4),
};

constexpr Layout restored_common = mirrored(common);
constexpr Layout restored_l0_2 = mirrored(l0_2);
constexpr Layout restored_l0_1 = mirrored(l0_1);
constexpr Layout restored_l0_0 = mirrored(l0_0);
constexpr Layout restored_no_variant_bit = mirrored(no_variant_bit);

// Whatever L4 was, it comes back as 0 or 1.
constexpr Layout restored_l4{
    bit(L(4, 0), P(2, 2)),
};

}  // namespace

std::int32_t l2mc_ole_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t l2mc_ole_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 2))) {
        place<l0_2>(out, in);
    } else if (in.bit(L(0, 1))) {
        place<l0_1>(out, in);
    } else if (in.bit(L(0, 0))) {
        place<l0_0>(out, in);
    } else {
        place<no_variant_bit>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t l2mc_ipv4_ole_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored_common>(out, in);
    place<restored_l4>(out, in);
    if (in.bit(P(0, 6))) {
        place<restored_l0_2>(out, in);
    } else if (in.bit(P(0, 7))) {
        place<restored_l0_1>(out, in);
    } else if (in.bit(P(0, 5))) {
        place<restored_l0_0>(out, in);
    } else {
        place<restored_no_variant_bit>(out, in);
    }
    return finish(out, logical);
}
