// Transmit adjacency, table 5: what the network processor needs to build the outgoing encapsulation.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 90;
constexpr std::size_t physical_size = 32;

// L35 is dropped on purpose: its reversed place is the header byte.
constexpr Layout address_pair{
    "mode X, address pair",
    header_byte(P(0)),
    swapped(P(1), L(20), 15).named("address"),
    swapped(P(16), L(36), 16).named("address"),
};

constexpr Layout common{
    bit(P(0, 6), L(0, 5)),
    bit(P(0, 5), L(0, 6)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(0, 0)),
    bit(P(1, 6), L(2, 1)),
    inverted(P(1, 5), L(0, 4)),
    also(bit(P(1, 5), L(0, 1))),
    bit(P(1, 4), L(0, 2)),
    bit(P(1, 3), L(1, 2)),
    constant(P(1, 2), 1),
    bit(P(2, 4), L(72, 1)),
    bit(P(2, 2), L(2, 2)),
    bit(P(2, 1), L(1, 6)),
    bit(P(2, 0), L(1, 2)),
    bit(P(3, 7), L(0, 7)),
    bit(P(3, 6), L(1, 1)),
    bit(P(3, 4), L(1, 4)),
    copied(P(4), L(4), 4),
    copied(P(8), L(8), 3),
};

constexpr Layout t1{
    "variant T1",
    constant(P(11, 0), 1),
    none(P(11, 1), L(41)),
    bit(P(11, 3), L(12, 0)),
    bit(P(11, 4), L(12, 1)),
    label(P(17), L(37), L(41, 0)).named("label"),
    label(P(20), L(32), L(36, 0)).named("label"),
    swapped(P(23), L(24), 4),
};

constexpr Layout t1_value{
    "variant T1, 16-bit value",
    copied(P(4), L(16), 2),
    bit(P(11, 2), L(12, 2)),
    copied(P(12), L(16), 2),
};

constexpr Layout t1_queue{
    "variant T1, queue",
    virtual_queue_index(P(12), L(16), L(20)).named("virtual queue index"),
};

constexpr Layout t1_triple{
    "triple",
    copied(P(14), L(28), 3),
};

constexpr Layout t2{
    "variant T2",
    bit(P(3, 3), L(73, 2)),
    bit(P(3, 1), L(73, 0)),
    bit(P(3, 0), L(73, 1)),
    bit(P(11, 0), L(72, 0)),
    copied(P(12), L(60), 4),
    copied(P(16), L(57), 2),
    copied(P(18), L(65)),
    swapped(P(19), L(54), 2),
    copied(P(21), L(64)),
    copied(P(30), L(52), 2),
};

constexpr Layout t2_24_bits{
    "variant T2, 24 bits",
    copied(P(22), L(35)),
    swapped(P(23), L(68), 3),
};

constexpr Layout t2_two_words{
    "variant T2, two words",
    copied(P(22), L(12), 8),
};

constexpr Layout t3{
    "variant T3",
    bit(P(2, 4), L(36, 1)),  // in place of the common L72.1
    bit(P(3, 1), L(84, 0)),
    bit(P(3, 0), L(84, 1)),
    bit(P(11, 7), L(12, 0)),
    bit(P(11, 6), L(12, 1)),
    bit(P(11, 5), L(12, 2)),
    bit(P(11, 4), L(12, 3)),
    bit(P(11, 3), L(12, 4)),
    bits(P(11, 2, 0), L(12, 7, 5)),
    copied(P(12), L(16), 3),
    copied(P(15), L(24), 4),
    swapped(P(19), L(20), 2),
    copied(P(21), L(22)),
    copied(P(22), L(40), 8),
    copied(P(30), L(80), 2),
};

constexpr Layout t4{
    "variant T4",
    bit(P(2, 7), L(2, 4)),
    bit(P(2, 3), L(1, 5)),
    bit(P(3, 5), L(1, 3)),
    bit(P(3, 2), L(2, 3)),
    copied(P(16), L(12), 6),
    label(P(22), L(18), L(22, 0)).named("label"),
    label(P(25), L(23), L(27, 0)).named("label"),
    copied(P(28), L(28), 4),
};

constexpr Layout t5{
    "variant T5",
    copied(P(11), L(12)),
    swapped(P(12), L(14), 2),
    copied(P(14), L(16), 16),
};

constexpr Layout t6{
    "variant T6",
    copied(P(16), L(12), 6),
};

constexpr Layout t6_triple{
    "triple",
    copied(P(22), L(20), 3),
};

constexpr Layout t4_t6_value{
    "16-bit value",
    swapped(P(14), L(88), 2),
};

// The reverse knows only T2, T4 and T6, takes L0.4 for the inverse of P1.5, swaps nothing back and puts the labels
// together least significant byte first; all of it intended.
constexpr Layout restored{
    bit(L(0, 0), P(1, 7)),
    bit(L(0, 1), P(1, 5)),
    bit(L(0, 2), P(1, 4)),
    inverted(L(0, 4), P(1, 5)),
    bit(L(0, 5), P(0, 6)),
    bit(L(0, 6), P(0, 5)),
    bit(L(0, 7), P(3, 7)),
    bit(L(1, 2), P(1, 3)),
    bit(L(2, 1), P(1, 6)),
    copied(L(4), P(4), 7),
    bit(L(72, 1), P(2, 4)),
};

constexpr Layout restored_value{
    "16-bit value",
    copied(L(88), P(14), 2),
};

constexpr Layout restored_t2{
    "variant T2",
    copied(L(52), P(30), 2),
    copied(L(54), P(19), 2),
    copied(L(57), P(16), 2),
    copied(L(64), P(21)),
    copied(L(65), P(18)),
    bit(L(73, 0), P(3, 1)),
    bit(L(73, 1), P(3, 0)),
};

constexpr Layout restored_t2_24_bits{
    "variant T2, 24 bits",
    copied(L(68), P(23), 3),
};

constexpr Layout restored_t2_two_words{
    "variant T2, two words",
    copied(L(12), P(22), 8),
};

constexpr Layout restored_t4{
    "variant T4",
    bit(L(1, 3), P(3, 5)),
    bit(L(1, 5), P(2, 3)),
    copied(L(12), P(16), 6),
    run(L(18, 0), P(24, 4), 4),
    run(L(18, 4), P(22, 0), 16),
    run(L(23, 0), P(27, 4), 4),
    run(L(23, 4), P(25, 0), 16),
    copied(L(28), P(28), 4),
};

constexpr Layout restored_others{
    "variant T6 and all that do not come back",
    copied(L(12), P(16), 6),
};

constexpr Layout restored_others_triple{
    "triple",
    copied(L(20), P(22), 3),
};

}  // namespace

std::int32_t tx_adjacency_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t tx_adjacency_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    if (in.bit(L(72, 2))) {
        place<address_pair>(out, in);
        return finish(out, physical, physical_length);
    }
    place<common>(out, in);
    if (in.bit(L(2, 0))) {
        place<t1>(out, in);
        if (in.bit(L(12, 1))) {
            place<t1_value>(out, in);
        } else {
            put(out, P(11, 2), in.bit(L(12, 3)) && in.bit(L(12, 2)));
            place<t1_queue>(out, in);
        }
        if (out.bit(P(11, 2))) {
            place<t1_triple>(out, in);
        }
    } else if (in.bit(L(0, 7)) || in.bit(L(1, 4))) {
        place<t2>(out, in);
        if (in.bit(L(72, 1))) {
            place<t2_24_bits>(out, in);
        } else {
            place<t2_two_words>(out, in);
        }
    } else if (in.bit(L(1, 1))) {
        place<t3>(out, in);
    } else if (in.bit(L(1, 2))) {
        place<t4>(out, in);
        if (in.bit(L(0, 5))) {
            place<t4_t6_value>(out, in);
        }
    } else if (in.bit(L(1, 6))) {
        place<t5>(out, in);
    } else {
        place<t6>(out, in);
        if (in.bit(L(0, 5))) {
            place<t4_t6_value>(out, in);
        }
        if (in.bit(L(2, 1))) {
            place<t6_triple>(out, in);
        }
    }
    return finish(out, physical, physical_length);
}

std::int32_t tx_adjacency_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(0, 6))) {
        place<restored_value>(out, in);
    }
    if (in.bit(P(3, 7))) {
        place<restored_t2>(out, in);
        if (in.bit(P(2, 4))) {
            place<restored_t2_24_bits>(out, in);
        } else {
            place<restored_t2_two_words>(out, in);
        }
    } else if (in.bit(P(1, 3))) {
        place<restored_t4>(out, in);
    } else {
        place<restored_others>(out, in);
        if (in.bit(P(1, 6))) {
            place<restored_others_triple>(out, in);
        }
    }
    return finish(out, logical);
}
