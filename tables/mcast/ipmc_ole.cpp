// IP multicast outgoing-list entry, table 40: one copy of a packet and where it goes.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 8;
constexpr std::size_t key_physical_size = 6;
constexpr std::size_t logical_size = 60;
constexpr std::size_t physical_size = 24;

constexpr Layout key{
    copied(P(0), L(2)),
    bit(P(1, 4), L(0, 0)),
    bits(P(1, 3, 0), L(3, 3, 0)),
    swapped(P(2), L(4), 4),
};

constexpr Layout common{
    header_byte(P(0)),
    bit(P(2, 3), L(4, 4)),
    bit(P(2, 1), L(4, 0)),
    bit(P(2, 0), L(4, 1)),
    bit(P(3, 5), L(4, 3)),
    copied(P(18), L(16), 2),
    copied(P(20), L(8), 3),
};

constexpr Layout type_1_bit{
    "type 1",
    constant(P(0, 5), 1),
};

constexpr Layout type_2{
    "type 2",
    constant(P(0, 6), 1),
    swapped(P(4), L(28), 3),
    swapped(P(7), L(32), 3),
    copied(P(12), L(56), 4),
};

constexpr Layout type_3{
    "type 3",
    constant(P(0, 7), 1),
    swapped(P(4), L(20), 4),
    copied(P(8), L(24)),
    copied(P(12), L(56), 4),
};

constexpr Layout type_4{
    "type 4",
    constant(P(1, 1), 1),
    copied(P(4), L(12), 2),
    label(P(6), L(42), L(46, 0)).named("label"),
    label(P(9), L(47), L(51, 0)).named("label"),
    copied(P(12), L(52), 4),
    copied(P(16), L(40)),
};

constexpr Layout other_types{
    "default variant",
    copied(P(4), L(12), 2),
    copied(P(6), L(36), 2),
    copied(P(12), L(56), 4),
};

constexpr Layout restored_common = mirrored(common);

// The reverse shows the type-4 bit among the flags too, reads P8 into L38 in types 0 and 1, and loses the second value
// of type 2 and the flags of type 4's labels; all of it intended.
constexpr Layout restored_type_4_bit{
    "type-4 bit",
    bit(L(4, 2), P(1, 1)),
};

constexpr Layout restored_type_2{
    "type 2",
    constant(L(0), 2),
    swapped(L(28), P(4), 3),
    copied(L(56), P(12), 4),
};

constexpr Layout restored_type_3{
    "type 3",
    constant(L(0), 3),
    swapped(L(20), P(4), 4),
    copied(L(24), P(8)),
    copied(L(56), P(12), 4),
};

constexpr Layout restored_type_4{
    "type 4",
    constant(L(0), 4),
    copied(L(12), P(4), 2),
    copied(L(40), P(16)),
    label(L(42), P(6)).named("label"),
    label(L(47), P(9)).named("label"),
    copied(L(52), P(12), 4),
};

constexpr Layout restored_types_0_and_1{
    "types 0 and 1",
    bit(L(0, 0), P(0, 5)),
    copied(L(12), P(4), 2),
    copied(L(36), P(6), 3),
    copied(L(56), P(12), 4),
};

}  // namespace

std::int32_t ipmc_ole_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t ipmc_ole_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    const Number type = in.little32(L(0));
    if (type == 1) {
        place<type_1_bit>(out, in);
        place<other_types>(out, in);
    } else if (type == 2) {
        place<type_2>(out, in);
    } else if (type == 3) {
        place<type_3>(out, in);
    } else if (type == 4) {
        place<type_4>(out, in);
    } else {
        place<other_types>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t ipmc_ole_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored_common>(out, in);
    place<restored_type_4_bit>(out, in);
    const Truth is_type_1 = in.bit(P(0, 5));
    if (in.bit(P(0, 6))) {
        place<restored_type_2>(out, in);
    } else if (!is_type_1 && in.bit(P(0, 7))) {
        place<restored_type_3>(out, in);
    } else if (!is_type_1 && in.bit(P(1, 1))) {
        place<restored_type_4>(out, in);
    } else {
        place<restored_types_0_and_1>(out, in);
    }
    return finish(out, logical);
}
