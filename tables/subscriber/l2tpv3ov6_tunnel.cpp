// L2TPv3-over-IPv6 tunnel, table 93: five kinds of entry in one table. Its reverse is the generic one, which does not
// take records as long as these.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_size = 5;
constexpr std::size_t logical_size = 56;
constexpr std::size_t physical_size = 64;

constexpr Layout key_swapped{
    "swapped",
    swapped(P(0), L(0), 4),
    copied(P(4), L(4)),
};

constexpr Layout key_kept{
    "byte order kept",
    copied(P(0), L(0), 4),
    copied(P(4), L(4)),
};

constexpr Layout kind_0{
    "kind 0",
    constant(P(0, 7), 0),
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 2)),
    header_byte(P(0, 4, 0)),
    copied(P(2), L(6), 2),
    copied(P(4), L(8), 24),
    copied(P(28), L(32), 4),
    bit(P(32, 7), L(36, 0)),
    bit(P(32, 6), L(36, 1)),
    header_byte(P(32, 5, 0)),
    swapped(P(34), L(38), 2),
    copied(P(36), L(40), 4),
    swapped(P(40), L(44), 4),
    swapped(P(44), L(48), 4),
    swapped(P(48), L(52), 4),
};

constexpr Layout kind_1{
    "kind 1",
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 2)),
    header_byte(P(0, 4, 0)),
    copied(P(4), L(8), 2),
    swapped(P(8), L(12), 4).named("IPv6 address"),
    swapped(P(12), L(16), 4).named("IPv6 address"),
    swapped(P(16), L(20), 4).named("IPv6 address"),
    swapped(P(20), L(24), 4).named("IPv6 address"),
    copied(P(24), L(28), 3),
    copied(P(28), L(36), 4),
};

constexpr Layout kind_2{
    "kind 2",
    constant(P(0, 7), 1),
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 2)),
    header_byte(P(0, 4, 0)),  // with P0.7 the header 0x91
    copied(P(2), L(5)),
    copied(P(3), L(6)),
    copied(P(4), L(8), 4),
    copied(P(20), L(12), 4),
    bit(P(32, 7), L(16, 0)),
    bit(P(32, 6), L(16, 1)),
    header_byte(P(32, 5, 0)),
    swapped(P(34), L(18), 2),
    swapped(P(36), L(20), 2),  // the low half of a 32-bit value
    swapped(P(40), L(24), 4),
    swapped(P(44), L(28), 4),
    swapped(P(48), L(32), 4),
};

constexpr Layout kind_3{
    "kind 3",
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 2)),
    header_byte(P(0, 4, 0)),
    copied(P(4), L(6), 2),
    swapped(P(8), L(8), 4),
    swapped(P(12), L(12), 4),
    copied(P(24), L(16), 3),
};

constexpr Layout kind_4{
    "kind 4",
    bit(P(0, 5), L(4, 2)),  // the only kind without P0.6
    header_byte(P(0, 4, 0)),
    bit(P(1, 3), L(5, 4)),
    bit(P(1, 2), L(5, 5)),
    swapped(P(2), L(6), 2),
    copied(P(4), L(8), 4),
};

}  // namespace

std::int32_t ent_h_l2tpv3ov6_tun_str_xlate_key(const void* logical, std::int32_t, void* physical,
                                               std::uint32_t* physical_length) {
    const LogicalSource<key_size> in{logical};
    PhysicalRecord<key_size> out;
    if (in.byte(L(4)) != 0) {
        place<key_swapped>(out, in);
    } else {
        place<key_kept>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t ent_h_l2tpv3ov6_tun_str_xlate_result(const void* logical, std::int32_t, void* physical,
                                                  std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    switch (each_from<0, 4>(in.little32(L(0)))) {
        case 0:
            place<kind_0>(out, in);
            break;
        case 1:
            place<kind_1>(out, in);
            break;
        case 2:
            place<kind_2>(out, in);
            break;
        case 3:
            place<kind_3>(out, in);
            break;
        case 4:
            place<kind_4>(out, in);
            break;
        default:
            // Any other kind leaves the record all zero, without even the header byte, and is no failure.
            break;
    }
    return finish(out, physical, physical_length);
}
