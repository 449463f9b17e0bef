// Layer-2 unicast forwarding, table 31: where frames to a MAC address go, in one of several forms.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 72;
constexpr std::size_t physical_size = 32;

constexpr Layout key{
    copied(P(0), L(8), 6).named("MAC address"),
    copied(P(6), L(4), 2).named("qualifier"),
    bits(P(8, 7, 6), L(6, 7, 6)).named("qualifier"),
    constant(P(8, 5, 0), 0),
};

constexpr Function l0_1_or_l0_0_without_l0_2{
    "1 if L0.1 is set, or L0.0 is set and L0.2 is clear",
    [](Number flags) -> Number { return (flags >> 1 | (flags & ~(flags >> 2))) & 1; },
};

constexpr Layout common{
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    constant(P(1, 7), 0),
    bit(P(1, 6), L(0, 3)),
    bit(P(1, 5), L(0, 6)),
    bit(P(1, 4), L(0, 4)),
    bit(P(1, 3), L(0, 0)),
    bit(P(1, 2), L(3, 1)),
    bit(P(1, 1), L(2, 7)),
    bit(P(2, 7), L(2, 4)),
    bit(P(2, 6), L(3, 1)),
    bit(P(2, 5), L(2, 5)),
    bit(P(2, 4), L(0, 1)),
    bit(P(2, 3), L(0, 2)),
    mapped(P(2, 2), L(0, 2, 0), l0_1_or_l0_0_without_l0_2),
    bit(P(2, 1), L(0, 7)),
    bit(P(2, 0), L(1, 0)),
    bit(P(3, 7), L(1, 1)),
    bit(P(3, 5), L(3, 4)),
    bit(P(3, 4), L(2, 0)),
    bit(P(3, 3), L(2, 3)),
    bit(P(3, 2), L(1, 5)),
    bits(P(3, 1, 0), L(1, 7, 6)),
    copied(P(4), L(28), 3),
    copied(P(7), L(20)),
    copied(P(8), L(32), 3),
    copied(P(11), L(16)),
    bits(P(23, 7, 1), L(71, 6, 0)),
    copied(P(24), L(60)),
    bit(P(26, 4), L(2, 2)),
    bit(P(26, 3), L(2, 1)),
    bits(P(26, 2, 0), L(3, 7, 5)),
};

constexpr Layout destination{
    bit(P(0, 7), L(7, 5)),
    bit(P(0, 6), L(7, 6)),
    copied(P(12), L(4), 4).named("destination"),
};

constexpr Layout halved_destination{
    "halved destination",
    run(P(12, 0), L(8, 1), 31).named("destination"),
};

constexpr Layout variant_1{
    "variant 1",
    bit(P(3, 6), L(1, 2)),
    copied(P(20), L(68), 2),
};

constexpr Layout variant_1_20_bits{
    "variant 1, 20 bits",
    constant(P(0, 6), 0),  // in place of L7.6
    run(P(16, 0), L(52, 0), 20),
    constant(P(18, 4), 1),
};

constexpr Layout variant_1_32_bits{
    "variant 1, 32 bits",
    copied(P(16), L(64), 4),
};

constexpr Layout variant_2{
    "variant 2",
    copied(P(16), L(36), 6),
    copied(P(25), L(42)),
};

constexpr Layout variant_3{
    "variant 3",
    cleared(P(12), 4),  // in place of the destination
};

constexpr Layout variant_3_value{
    "variant 3, value",
    run(P(16, 0), L(44, 0), 20),
};

constexpr Layout variant_4{
    "variant 4",
    copied(P(16), L(48), 2),
};

constexpr Layout variant_4_marked{
    "variant 4",
    constant(P(0, 7), 1),
    constant(P(1, 0), 1),
};

constexpr Layout variant_4_byte{
    copied(P(25), L(42)),
};

constexpr Layout variant_4_value{
    "variant 4, value",
    run(P(18, 0), L(52, 0), 20),
    constant(P(21, 0), 1),
};

constexpr Layout variant_4_label{
    "variant 4, label",
    label(P(18), L(52), 1).named("label"),
};

// The reverse restores fewer flags than the result carries, some of them only in the variant that uses them; intended.
constexpr Layout restored{
    bit(L(0, 0), P(1, 3)),
    bit(L(0, 1), P(2, 4)),
    bit(L(0, 3), P(1, 6)),
    bit(L(0, 4), P(1, 4)),
    bit(L(0, 5), P(0, 5)),
    bit(L(0, 6), P(1, 5)),
    bit(L(0, 7), P(2, 1)),
    bit(L(1, 1), P(3, 7)),
    bit(L(2, 5), P(2, 5)),
    bit(L(2, 7), P(1, 1)),
    bit(L(3, 4), P(3, 5)),
    copied(L(16), P(11)),
    copied(L(20), P(7)),
    copied(L(28), P(4), 3),
    copied(L(32), P(8), 3),
    copied(L(60), P(24)),
};

constexpr Layout restored_destination{
    copied(L(4), P(12), 4).named("destination"),
};

constexpr Layout restored_halved_destination = mirrored(halved_destination);

constexpr Layout restored_3_4{
    "variants 3 and 4",
    constant(L(0, 2), 1),
    bit(L(2, 2), P(26, 4)),
};

constexpr Layout restored_3_value{
    "variant 3, value",
    copied(L(44), P(16), 3),
};

constexpr Layout restored_4{
    "variant 4",
    bit(L(2, 4), P(2, 7)),
    bit(L(2, 6), P(1, 0)),
    copied(L(42), P(25)),
    copied(L(48), P(16), 2),
};

constexpr Layout restored_4_value{
    "variant 4, value",
    constant(L(2, 7), 1),
    run(L(52, 0), P(18, 0), 20),
};

constexpr Layout restored_4_label{
    "variant 4, label",
    label(L(52), P(18)).named("label"),
};

constexpr Layout restored_2 = mirrored(variant_2);

constexpr Layout restored_1{
    "variant 1",
    constant(L(1, 0), 1),
    bit(L(1, 2), P(3, 6)),
    copied(L(68), P(20), 2),
};

constexpr Layout restored_1_20_bits{
    "variant 1, 20 bits",
    constant(L(3, 1), 1),
    run(L(52, 0), P(16, 0), 20),
};

constexpr Layout restored_1_32_bits = mirrored(variant_1_32_bits);

}  // namespace

std::int32_t l2_ufib_type_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, 14, 9>(logical, physical, physical_length);
}

std::int32_t l2_ufib_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 7))) {
        place<halved_destination>(out, in);
    } else {
        place<destination>(out, in);
    }
    if (in.bit(L(1, 0))) {
        place<variant_1>(out, in);
        if (in.bit(L(3, 1))) {
            place<variant_1_20_bits>(out, in);
        } else {
            place<variant_1_32_bits>(out, in);
        }
    } else if (in.bit(L(0, 0))) {
        place<variant_2>(out, in);
    } else if (in.bit(L(0, 1)) && in.bit(L(0, 2))) {
        place<variant_3>(out, in);
        if (in.bit(L(0, 6))) {
            place<variant_3_value>(out, in);
        }
    } else if (in.bit(L(0, 2))) {
        place<variant_4>(out, in);
        if (in.bit(L(2, 6))) {
            place<variant_4_marked>(out, in);
        } else {
            place<variant_4_byte>(out, in);
        }
        if (in.bit(L(2, 7))) {
            place<variant_4_value>(out, in);
        } else {
            place<variant_4_label>(out, in);
        }
    }
    return finish(out, physical, physical_length);
}

// The variants are not exclusive on the way back: the later ones overwrite.
std::int32_t l2_ufib_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(2, 1))) {
        place<restored_halved_destination>(out, in);
    } else {
        place<restored_destination>(out, in);
    }
    if (in.bit(P(2, 3))) {
        place<restored_3_4>(out, in);
        if (in.bit(P(2, 4)) && in.bit(P(1, 5))) {
            place<restored_3_value>(out, in);
        } else {
            place<restored_4>(out, in);
            if (in.bit(P(21, 0))) {
                place<restored_4_value>(out, in);
            } else {
                place<restored_4_label>(out, in);
            }
        }
    }
    if (in.bit(P(1, 3))) {
        place<restored_2>(out, in);
    }
    if (in.bit(P(2, 0))) {
        place<restored_1>(out, in);
        if (in.bit(P(1, 2))) {
            place<restored_1_20_bits>(out, in);
        } else {
            place<restored_1_32_bits>(out, in);
        }
    }
    return finish(out, logical);
}
