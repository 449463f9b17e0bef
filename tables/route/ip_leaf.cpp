// IP leaf, table 11: what the forwarding engine does with a packet whose destination matched a prefix.

#include "frame/helpers.h"
#include "frame/srv6_codes.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 64;
constexpr std::size_t logical_bytes_read = 59;  // the rest of the logical record only comes back cleared
constexpr std::size_t physical_size = 32;

constexpr Layout common{
    any(P(0, 7), L(49, 7), L(2, 0)),
    bit(P(0, 6), L(0, 4)),
    header_byte(P(0, 5, 0)),
    bit(P(1, 7), L(0, 2)),
    bit(P(1, 6), L(0, 1)),
    bit(P(1, 5), L(0, 3)),
    bit(P(1, 4), L(0, 0)),
    bit(P(1, 3), L(1, 3)),
    bit(P(1, 2), L(0, 0)),
    bit(P(2, 7), L(2, 0)),
    bit(P(2, 5), L(0, 6)),
    bit(P(2, 4), L(1, 3)),
    bit(P(2, 0), L(2, 1)),
    mapped(P(3), L(4), hop_byte).named("hop count"),
};

constexpr Layout l1_4_set{
    constant(P(1, 4), 0),
    constant(P(1, 2), 1),
    copied(P(24), L(18)),
};

constexpr Layout l0_0_set{
    copied(P(9), L(56), 3),
    bit(P(12, 7), L(2, 3)),
    bit(P(12, 5), L(54, 0)),
    constant(P(12, 0), 1),
};

constexpr Layout l0_0_clear{
    inverted(P(1, 0), L(0, 4)),
};

constexpr Layout variant_a{
    "variant A",
    label(P(4), L(8), L(12, 0)).repeated(4, P(3), L(5)).named("label"),
    copied(P(16), L(28), 3),
    label_bits(P(22), L(44)).named("label"),
    bit(P(24, 3), L(49, 7)),
    bits(P(24, 2, 0), L(50, 2, 0)),  // in place of L18
    copied(P(28), L(6)),
};

constexpr Layout variant_a_l36{
    "variant A, second triple",
    any(P(2, 6), L(12, 0), L(17, 0), L(22, 0), L(27, 0), bytes(L(36), 3)),
    copied(P(19), L(36), 3),
};

constexpr Layout variant_a_l32{
    "variant A, first triple",
    any(P(2, 6), L(12, 0), L(17, 0), L(22, 0), L(27, 0), bytes(L(32), 3)),
    copied(P(19), L(32), 3),
};

constexpr Layout variant_c{
    "variant C",
    copied(P(4), L(8), 3),
    copied(P(7), L(16), 2),
};

template <unsigned value, unsigned flags>
constexpr Layout next_hop{
    constant(P(2, 1), 1),
    bit(P(28, 3), L(flags, 1)).named("next-hop flag"),
    bit(P(28, 2), L(flags, 2)).named("next-hop flag"),
    constant(P(28, 1), 1),
    bit(P(28, 0), L(flags, 3)).named("next-hop flag"),
};

template <unsigned value>
constexpr Layout next_hop_32_bits{
    "variant C, 32-bit next hop",
    swapped(P(20), L(value), 4).named("next-hop value"),
};

// Least significant byte first, unlike the longer value.
template <unsigned value>
constexpr Layout next_hop_19_bits{
    "variant C, 19-bit next hop",
    run(P(20, 0), L(value, 0), 19).named("next-hop value"),
    constant(P(22, 3), 1),
};

constexpr Layout shared_tail{
    copied(P(25), L(51)),
    copied(P(26), L(48)),
    bit(P(27, 5), L(49, 4)),
    bit(P(27, 4), L(49, 5)),
    bits(P(27, 3, 0), L(49, 3, 0)),
    copied(P(29), L(40), 3),
};

constexpr Layout queue_overlay{
    "queue overlay",
    any(P(2, 2), L(0, 7), L(1, 2, 0)),
    copied(P(4), L(8), 3),
    virtual_queue_index(P(7), L(12), L(16)).named("virtual queue index"),
    swapped(P(9), L(20), 4),
    copied(P(13), L(32)),
    cleared(P(14), 3),
    bit(P(28, 7), L(1, 0)),
    bit(P(28, 6), L(0, 7)),
    bit(P(28, 5), L(1, 1)),
    bit(P(28, 4), L(1, 2)),
};

constexpr Layout queue_overlay_triple{
    "queue overlay, extension triple",
    constant(P(2, 3), 1),
    copied(P(14), L(24), 3).named("extension triple"),
};

constexpr Layout srv6_overlay{
    "SRv6 overlay",
    copied(P(7), L(54), 2),
    mapped(P(9), bytes(L(52), 2), srv6_behaviour).named("SRv6 function code"),
    mapped(P(10), bytes(L(52), 2), srv6_action).named("SRv6 function code"),
    copied(P(13), L(56), 3),
};

// The next hop at L(value) with its flags at L(flags). Without one its place stays clear.
template <unsigned value, unsigned flags>
NPXLATE_INLINE void place_next_hop(PhysicalRecord<physical_size>& out, const LogicalSource<logical_bytes_read>& in) {
    if (in.little32(L(value)) == 0) {
        return;
    }
    place<next_hop<value, flags>>(out, in);
    if (in.bit(L(flags, 3))) {
        place<next_hop_32_bits<value>>(out, in);
    } else {
        place<next_hop_19_bits<value>>(out, in);
    }
}

// The hop byte comes back as it stands, the triple of P19-21 always to L32-34, and nothing of the overlays; all of it
// intended.
constexpr Layout restored{
    bit(L(0, 0), P(1, 4)),
    bit(L(0, 1), P(1, 6)),
    bit(L(0, 2), P(1, 7)),
    bit(L(0, 3), P(1, 5)),
    bit(L(0, 4), P(0, 6)),
    bit(L(0, 6), P(2, 5)),
    bit(L(2, 0), P(2, 7)),
    bit(L(2, 1), P(2, 0)),
    copied(L(4), P(3)).named("hop byte"),
    copied(L(40), P(29), 3),
    copied(L(51), P(25)),
};

constexpr Layout restored_a{
    "variant A",
    copied(L(6), P(28)),
    label(L(8), P(4), L(12, 0)).repeated(4, L(5), P(3)).named("label"),
    copied(L(28), P(16), 3),
    copied(L(32), P(19), 3),
    label(L(44), P(22)).named("label"),
    bit(L(49, 7), P(24, 3)),
    bits(L(50, 2, 0), P(24, 2, 0)),
};

constexpr Layout restored_others{
    "variants B and C",
    copied(L(8), P(4), 3),
    copied(L(16), P(7), 2),
};

}  // namespace

std::int32_t ip_leaf_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t ip_leaf_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    const LogicalSource<logical_bytes_read> in{logical};
    PhysicalRecord<physical_size> out;
    const Truth is_a = in.bit(L(0, 4));
    const Truth is_c = !is_a && !in.bit(L(0, 0));
    const Truth has_queue = in.bit(L(1, 3));

    place<common>(out, in);
    if (in.bit(L(1, 4))) {
        place<l1_4_set>(out, in);
    }
    if (in.bit(L(0, 0))) {
        place<l0_0_set>(out, in);
    } else {
        place<l0_0_clear>(out, in);
    }
    put(out, P(1, 1), (!is_a && out.bits(P(3)) == hop_byte_of_one_hop) || in.bit(L(2, 2)));

    if (is_a) {
        place<variant_a>(out, in);
        if (in.bit(L(2, 5))) {
            place<variant_a_l36>(out, in);
        } else {
            place<variant_a_l32>(out, in);
        }
        put(out, P(0, 5), in.little16(L(4)) == 1);
    } else if (is_c) {
        place<variant_c>(out, in);
        if (has_queue) {
            place_next_hop<28, 33>(out, in);
        } else {
            place_next_hop<12, 19>(out, in);
        }
    }
    if (is_a || is_c || has_queue) {
        place<shared_tail>(out, in);
    }

    if (has_queue) {
        place<queue_overlay>(out, in);
        if (in.bits(L(1, 7, 6)) == 3) {
            place<queue_overlay_triple>(out, in);
        }
    }
    if (in.bit(L(2, 3))) {
        place<srv6_overlay>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t ip_leaf_st_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(0, 6))) {
        place<restored_a>(out, in);
    } else {
        place<restored_others>(out, in);
    }
    return finish(out, logical);
}
