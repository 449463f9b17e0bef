// Bridge domain, table 75.

#include "frame/layer2_keys.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 101;           // as far as it is read
constexpr std::size_t restored_logical_size = 120;  // as far as it is cleared
constexpr std::size_t physical_size = 32;

constexpr Function both_bits{
    "1 if both bits are set",
    [](Number code) -> Number { return code == 3; },
};

constexpr Function lower_bit_alone{
    "1 if only the lower bit is set",
    [](Number code) -> Number { return code == 1; },
};

constexpr Layout common{
    bit(P(0, 7), L(0, 4)),
    bit(P(0, 6), L(2, 0)),
    bit(P(0, 5), L(0, 2)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(2, 6)),
    bit(P(1, 6), L(0, 5)),
    bit(P(1, 5), L(3, 1)),
    bit(P(1, 4), L(0, 6)),
    bit(P(1, 3), L(4, 3)),
    bit(P(1, 2), L(4, 0)),
    bit(P(1, 1), L(3, 0)),
    bit(P(1, 0), L(2, 7)),
    bit(P(2, 7), L(0, 0)),
    bit(P(2, 6), L(2, 2)),
    bit(P(2, 5), L(2, 3)),
    bit(P(2, 4), L(1, 1)),
    bit(P(2, 3), L(4, 1)),
    bit(P(2, 2), L(4, 6)),
    bit(P(2, 1), L(2, 5)),
    bit(P(2, 0), L(4, 2)),
    bits(P(3, 7, 1), L(48, 6, 0)),
    copied(P(4), L(32), 3),
    copied(P(7), L(8)),
    copied(P(8), L(36), 2),
    bit(P(10, 7), L(3, 4)),
    bit(P(10, 6), L(3, 5)),
    bit(P(10, 5), L(3, 6)),
    bit(P(10, 4), L(1, 2)),
    bit(P(10, 3), L(1, 0)),
    bits(P(10, 2, 0), L(38, 2, 0)),
    copied(P(20), L(20), 3),
    copied(P(23), L(24), 3),
    copied(P(26), L(28), 3),
    copied(P(29), L(100)),
};

constexpr Layout from_l68{
    copied(P(11), L(68), 3),
};

constexpr Layout from_l56{
    copied(P(11), L(56), 3),
};

constexpr Layout from_l83{
    "32-bit and 4-bit value",
    copied(P(11), L(83), 3),
    also(bits(P(13, 7, 4), L(87, 3, 0))),
};

constexpr Layout l2_1_set{
    copied(P(14), L(52), 2),
    constant(P(16), 0),
};

constexpr Layout two_nine_bit_values{
    "two 9-bit values",
    run(P(17, 0), L(76, 0), 9),
    run(P(18, 1), L(78, 0), 9),
    bit(P(19, 7), L(3, 2)),
};

constexpr Layout from_l72{
    copied(P(17), L(72), 3),
};

// The reverse is not the way back, on purpose: it reads P0.6-5 as a code of two bits, never restores L0.3, clears L3.2,
// and splits the value of P11-13 below its lowest bit where it was put together above the twentieth.
constexpr Layout restored{
    bit(L(0, 0), P(2, 7)),
    bit(L(0, 1), P(0, 6)),
    bit(L(0, 2), P(0, 5)),
    bit(L(0, 4), P(0, 7)),
    bit(L(0, 5), P(1, 6)),
    bit(L(0, 6), P(1, 4)),
    bit(L(1, 0), P(10, 3)),
    bit(L(1, 1), P(2, 4)),
    bit(L(1, 2), P(10, 4)),
    mapped(L(2, 0), P(0, 6, 5), both_bits),
    mapped(L(2, 1), P(0, 6, 5), lower_bit_alone),
    bit(L(2, 2), P(2, 6)),
    bit(L(2, 3), P(2, 5)),
    bit(L(2, 5), P(2, 1)),
    bit(L(2, 6), P(1, 7)),
    bit(L(2, 7), P(1, 0)),
    bit(L(3, 0), P(1, 1)),
    bit(L(3, 1), P(1, 5)),
    bit(L(3, 4), P(10, 7)),
    bit(L(3, 5), P(10, 6)),
    bit(L(3, 6), P(10, 5)),
    bit(L(4, 0), P(1, 2)),
    bit(L(4, 1), P(2, 3)),
    bit(L(4, 2), P(2, 0)),
    bit(L(4, 3), P(1, 3)),
    bit(L(4, 6), P(2, 2)),
    copied(L(8), P(7)),
    copied(L(20), P(20), 3),
    copied(L(24), P(23), 3),
    copied(L(28), P(26), 3),
    copied(L(32), P(4), 3),
    copied(L(36), P(8), 2),
    bits(L(38, 2, 0), P(10, 2, 0)),
    bits(L(48, 6, 0), P(3, 7, 1)),
    copied(L(100), P(29)),
};

constexpr Layout restored_to_l68{
    copied(L(68), P(11), 3),
};

constexpr Layout restored_to_l56{
    copied(L(52), P(14), 3),
    copied(L(56), P(11), 3),
};

constexpr Layout restored_to_l83{
    "32-bit and 4-bit value",
    run(L(83, 0), P(11, 1), 19),
    bit(L(87, 0), P(11, 0)),
};

constexpr Layout restored_two_nine_bit_values{
    "two 9-bit values",
    constant(L(3, 2), 0),
    run(L(76, 0), P(17, 0), 9),
    run(L(78, 0), P(18, 1), 9),
};

constexpr Layout restored_to_l72{
    copied(L(72), P(17), 3),
};

}  // namespace

std::int32_t bridge_domain_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    return place_bridge_domain_key(logical, physical, physical_length);
}

std::int32_t bridge_domain_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                             std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 3))) {
        place<from_l68>(out, in);
    } else if (in.bit(L(2, 1))) {
        place<from_l56>(out, in);
    } else if (in.bit(L(4, 0))) {
        place<from_l83>(out, in);
    }
    if (in.bit(L(2, 1))) {
        place<l2_1_set>(out, in);
    }
    if (in.bit(L(3, 1))) {
        place<two_nine_bit_values>(out, in);
    } else if (out.bit(P(1, 1)) || out.bit(P(1, 0))) {
        place<from_l72>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t bridge_domain_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<restored_logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(0, 5))) {
        if (in.bit(P(0, 6))) {
            place<restored_to_l68>(out, in);
        } else {
            place<restored_to_l56>(out, in);
        }
    }
    if (in.bit(P(1, 2))) {
        place<restored_to_l83>(out, in);
    }
    if (in.bit(P(1, 5))) {
        place<restored_two_nine_bit_values>(out, in);
    } else if (in.bit(P(1, 1)) || in.bit(P(1, 0))) {
        place<restored_to_l72>(out, in);
    }
    return finish(out, logical);
}
