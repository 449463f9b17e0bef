// MPLS leaf, table 28: what the forwarding engine does with a packet by its incoming label, in one of twelve variants.
// Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 5;
constexpr std::size_t key_physical_size = 3;
constexpr std::size_t logical_size = 90;
constexpr std::size_t physical_size = 32;

constexpr Layout key{
    copied(P(0), L(0), 3).named("incoming label"),
    also(bit(P(2, 4), L(4, 0))).named("qualifier"),
};

constexpr Layout common{
    bit(P(0, 7), L(0, 3)),
    any(P(0, 6), L(0, 4), L(0, 7, 6)),
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(4, 4)),
    bit(P(1, 6), L(0, 4)),
    any(P(1, 5), L(0, 0), L(1, 2), L(5, 2)),
    bit(P(1, 4), L(0, 2)),
    bit(P(1, 3), L(2, 4)),
    bit(P(1, 2), L(5, 0)),
    bit(P(1, 1), L(1, 6)),
    bit(P(1, 0), L(1, 7)),
    bit(P(2, 7), L(2, 6)),
    bit(P(2, 5), L(2, 0)),
    bit(P(2, 4), L(0, 7)),
    bit(P(2, 3), L(1, 0)),
    bit(P(2, 2), L(1, 1)),
    bit(P(2, 1), L(1, 2)),
    bit(P(2, 0), L(1, 6)),
    mapped(P(3), L(6), hop_byte).named("hop count"),
    copied(P(27), L(76)),
    bits(P(28, 5, 0), L(77, 5, 0)),
    copied(P(29), L(78), 3),
};

constexpr Layout variant_1{
    "variant 1",
    copied(P(4), L(8), 6),
    bit(P(11, 7), L(16, 1)),
    any(P(11, 6), L(16, 2, 1)),
    bit(P(11, 5), L(16, 0)),
    bit(P(11, 4), L(16, 4)),
};

constexpr Layout variant_2{
    "variant 2",
    copied(P(4), L(8), 6),
    bit(P(11, 7), L(16, 1)),
    any(P(11, 6), L(16, 2, 1)),
};

constexpr Layout variant_3{
    "variant 3",
    copied(P(4), L(8), 4),
    copied(P(8), L(16), 2),
    bit(P(11, 7), L(2, 3)),
    bit(P(11, 6), L(18, 0)),
    bit(P(11, 5), L(18, 1)),
    bit(P(11, 4), L(2, 5)),
    copied(P(12), L(12), 4),
};

constexpr Layout variant_4{
    "variant 4",
    copied(P(8), L(78), 3),
    run(P(11, 0), L(16, 1), 24),
    also(bit(P(13, 4), L(16, 0))),
    copied(P(16), L(8), 4),
};

constexpr Layout variant_4_l5_3_set{
    "variant 4",
    constant(P(1, 2), 0),
    constant(P(15, 2, 0), 5),
    copied(P(16), L(86), 4),  // in place of L8-11
};

constexpr Layout variant_5{
    "variant 5",
    constant(P(1, 3), 1),
    constant(P(15, 1, 0), 3),
    cleared(P(16), 4),
};

constexpr Layout variant_6{
    "variant 6",
    constant(P(1, 2), 0),
    bits(P(3, 7, 4), L(21, 3, 0)),  // with the next row in place of the hop byte
    bits(P(3, 3, 0), L(17, 3, 0)),
    copied(P(4), L(8), 3),
    copied(P(7), L(20)),
    bit(P(8, 7), L(3, 1)),
    bit(P(8, 6), L(3, 0)),
    bit(P(8, 5), L(3, 2)),
    bit(P(8, 4), L(3, 3)),
    bit(P(8, 3), L(2, 7)),
    bit(P(8, 2), L(1, 4)),
    bit(P(8, 1), L(1, 3)),
    any(P(8, 0), L(24)),
    bit(P(9, 0), L(5, 1)),
    swapped(P(10), L(28), 3),
    swapped(P(13), L(32), 3),
    swapped(P(16), L(40), 3),
    swapped(P(19), L(44), 3),
    label(P(22), L(56), L(60, 0)).named("label"),
    copied(P(25), L(16)),
};

constexpr Layout variant_7{
    "variant 7",
    constant(P(0, 6), 1),
    constant(P(1, 4), 0),
    copied(P(4), L(64), 6),
    bit(P(11, 3), L(1, 4)),
    bit(P(11, 2), L(1, 3)),
    any(P(11, 1), L(24)),
    bit(P(11, 0), L(1, 5)),
    swapped(P(12), L(28), 3),
    swapped(P(15), L(40), 3),
    swapped(P(18), L(44), 3),
    label(P(21), L(56), L(60, 0)).named("label"),
    copied(P(24), L(16)),
    copied(P(25), L(20)),
};

constexpr Function one_of_three_bits{
    "4 for 2, 1 for 1, 2 for 0 and 3",
    [](Number code) -> Number { return choose(code == 2, 4, choose(code == 1, 1, 2)); },
};

constexpr Layout variant_8{
    "variant 8",
    constant(P(0, 6), 1),
    bit(P(2, 2), L(16, 0)),  // in place of L1.1
    copied(P(4), L(12), 4),
    run(P(8, 0), L(8, 1), 23),
    mapped(P(11, 3, 1), L(16, 2, 1), one_of_three_bits),
    bit(P(11, 0), L(16, 0)),
};

constexpr Layout variant_9{
    "variant 9",
    any(P(2, 6), L(22, 0), L(27, 0), L(32, 0), L(37, 0), bytes(L(40), 3)),
    label(P(4), L(18), L(22, 0)).repeated(4, P(3), L(5)).named("label"),
    copied(P(19), L(40), 3),
    copied(P(22), L(44), 2),
};

constexpr Layout variant_10{
    "variant 10",
    copied(P(22), L(44), 2),
};

constexpr Layout variant_11{
    "variant 11",
    constant(P(11, 0), 1),
    copied(P(23), L(56), 3),
};

constexpr Layout variant_11_value{
    "variant 11, 16-bit value",
    constant(P(11, 4), 1),
    bit(P(11, 2), L(4, 1)),
    copied(P(12), L(20), 2),
};

constexpr Layout variant_11_queue{
    "variant 11, queue",
    virtual_queue_index(P(12), L(20), L(24)).named("virtual queue index"),
};

constexpr Layout variant_12{
    "variant 12",
    copied(P(22), L(18), 2),
};

constexpr Layout variant_12_l5_6_set{
    "variant 12",
    constant(P(1, 3), 1),
    constant(P(15, 3, 0), 9),
    copied(P(25), L(72), 2),
};

template <unsigned to, unsigned slot>
constexpr Layout slot_triple{
    "chosen slot",
    copied(P(to), L(slot), 3),
};

// The triple of the first of two slots, or of the second if L3.4 is set.
template <unsigned to>
NPXLATE_INLINE void place_slot(PhysicalRecord<physical_size>& out, const LogicalSource<logical_size>& in) {
    if (in.bit(L(3, 4))) {
        place<slot_triple<to, 13>>(out, in);
    } else {
        place<slot_triple<to, 8>>(out, in);
    }
}

}  // namespace

std::int32_t mpls_leaf_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t mpls_leaf_st_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(1, 7)) && !in.bit(L(0, 3)) && out.bits(P(3)) == hop_byte_of_one_hop) {
        put(out, P(1, 2), 1);
    }

    // The first whose bit is set.
    if (in.bit(L(0, 4))) {
        place<variant_1>(out, in);
    } else if (in.bit(L(0, 6))) {
        place<variant_2>(out, in);
    } else if (in.bit(L(0, 7))) {
        place<variant_3>(out, in);
    } else if (in.bit(L(2, 4))) {
        place<variant_4>(out, in);
        if (in.bit(L(5, 3))) {
            place<variant_4_l5_3_set>(out, in);
            place_slot<4>(out, in);
        }
    } else if (in.bit(L(4, 5))) {
        place<variant_5>(out, in);
    } else if (in.bit(L(0, 2))) {
        place<variant_6>(out, in);
    } else if (in.bit(L(4, 6))) {
        place<variant_7>(out, in);
    } else if (in.bit(L(4, 4))) {
        place<variant_8>(out, in);
    } else if (in.bit(L(1, 6))) {
        place<variant_9>(out, in);
        place_slot<16>(out, in);
    } else if (in.bit(L(0, 3))) {
        place<variant_10>(out, in);
    } else if (in.bit(L(0, 5))) {
        place<variant_11>(out, in);
        place_slot<4>(out, in);
        if (in.bit(L(4, 0))) {
            place<variant_11_value>(out, in);
        } else {
            place<variant_11_queue>(out, in);
        }
    } else if (in.bit(L(1, 7))) {
        place<variant_12>(out, in);
        place_slot<4>(out, in);
        if (in.bit(L(5, 6))) {
            place<variant_12_l5_6_set>(out, in);
        }
    }
    return finish(out, physical, physical_length);
}
