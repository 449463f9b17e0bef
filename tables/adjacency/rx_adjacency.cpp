// Receive adjacency, table 4.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 30;
constexpr std::size_t physical_size = 16;

constexpr Layout common{
    constant(P(0, 7), 1),
    bit(P(0, 6), L(1, 5)),
    bit(P(0, 5), L(0, 4)),
    header_byte(P(0, 4, 0)),  // with P0.7 this table's header 0x91
    bit(P(1, 0), L(1, 0)),
    bit(P(1, 1), L(1, 1)),
    bit(P(1, 2), L(1, 2)),
    bit(P(1, 3), L(1, 4)),
    bit(P(1, 4), L(1, 6)),
    bit(P(1, 5), L(1, 3)),
    bit(P(1, 6), L(2, 2)),
    bit(P(2, 0), L(0, 2)),
    bit(P(2, 1), L(0, 1)),
    bit(P(2, 2), L(0, 3)),
    bit(P(2, 3), L(0, 0)),
    bit(P(2, 6), L(1, 7)),
    bit(P(3, 7), L(0, 5)),
    swapped(P(8), L(24), 4),
};

constexpr Layout variant_a{
    "variant A",
    bit(P(3, 5), L(2, 0)),
    copied(P(4), L(21)),
    copied(P(5), L(22)),
    swapped(P(6), L(16), 2),
};

constexpr Layout variant_a_24_bits{
    "variant A, 24 bits",
    swapped(P(13), L(12), 3),
};

constexpr Layout variant_a_32_bits{
    "variant A, 32 bits",
    copied(P(12), L(12), 4),
};

constexpr Layout variant_b{
    "variant B",
    bit(P(3, 5), L(2, 1)),
    swapped(P(6), L(20), 2),
    copied(P(12), L(12), 4),
};

constexpr Layout variant_c{
    "variant C",
    copied(P(6), L(4), 2),
};

constexpr Layout variant_d{
    "variant D",
    bit(P(0, 5), L(1, 3)),
    bit(P(3, 6), L(1, 3)),
    bit(P(3, 4), L(2, 3)),
    run(P(5, 0), L(12, 1), 24),
    also(bit(P(7, 4), L(12, 0))),
    copied(P(12), L(16), 4),
};

constexpr Layout variant_e{
    "variant E",
    virtual_queue_index(P(6), L(4), L(8)).named("virtual queue index"),
    copied(P(12), L(12), 2),
};

// The reverse restores less than the result carries, and swaps nothing back; both are intended.
constexpr Layout restored{
    bit(L(0, 0), P(2, 3)),
    bit(L(0, 1), P(2, 1)),
    bit(L(0, 2), P(2, 0)),
    bit(L(0, 3), P(2, 2)),
    bit(L(0, 4), P(0, 5)),
    bit(L(0, 5), P(3, 7)),
    bit(L(1, 1), P(1, 1)),
    bit(L(1, 2), P(1, 2)),
    bit(L(1, 4), P(1, 3)),
    bit(L(1, 6), P(1, 4)),
    bit(L(2, 0), P(3, 5)),
    any(L(1, 0), P(1, 0), P(2, 5)),
    copied(L(24), P(8), 4),
};

constexpr Layout restored_a{
    "variant A",
    copied(L(16), P(6), 2),
    constant(L(20), 0),
    copied(L(21), P(4)),
    copied(L(22), P(5)),
    constant(L(23), 0),
};

constexpr Layout restored_a_24_bits{
    "variant A, 24 bits",
    copied(L(12), P(13), 3),
    constant(L(15), 0),
};

constexpr Layout restored_a_32_bits{
    "variant A, 32 bits",
    copied(L(12), P(12), 4),
};

constexpr Layout restored_c{
    "variant C",
    copied(L(4), P(6), 2),
};

constexpr Layout restored_c_l29{
    "variant C, L29",
    copied(L(29), P(4)),
};

constexpr Layout restored_others{
    "variants B, D and E",
    copied(L(4), P(6), 2),
    copied(L(12), P(12), 2),
};

}  // namespace

std::int32_t rx_adjacency_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t rx_adjacency_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 5))) {
        place<variant_a>(out, in);
        if (in.bit(L(2, 0))) {
            place<variant_a_24_bits>(out, in);
        } else {
            place<variant_a_32_bits>(out, in);
        }
    } else if (in.bit(L(0, 6))) {
        place<variant_b>(out, in);
    } else if (in.bit(L(1, 0))) {
        place<variant_c>(out, in);
        if (in.bit(L(1, 2))) {
            put(out, P(4), in.byte(L(28)) + 7U);
        }
        if (in.bit(L(1, 1))) {
            put(out, P(4), in.byte(L(29)));
        }
    } else if (in.bit(L(1, 3))) {
        place<variant_d>(out, in);
    } else {
        place<variant_e>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t rx_adjacency_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    auto out = LogicalRecord<logical_size>::kept_from(L(16), logical);
    place<restored>(out, in);
    if (out.bit(L(0, 5))) {
        place<restored_a>(out, in);
        if (in.bit(P(3, 5))) {
            place<restored_a_24_bits>(out, in);
        } else {
            place<restored_a_32_bits>(out, in);
        }
    } else if (out.bit(L(1, 0))) {
        place<restored_c>(out, in);
        if (in.bit(P(1, 2))) {
            put(out, L(28), in.byte(P(4)) - 7U);
        }
        if (in.bit(P(1, 1))) {
            place<restored_c_l29>(out, in);
        }
    } else {
        place<restored_others>(out, in);
    }
    return finish(out, logical);
}
