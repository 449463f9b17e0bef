// L2TP session leaf, table 68.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t read_size = 58;      // no byte above L57 has a place in the physical record
constexpr std::size_t restored_size = 76;  // but the logical record goes on
constexpr std::size_t physical_size = 64;

constexpr Layout key{
    copied(P(0), L(0), 2),
    copied(P(2), L(4), 2),
};

constexpr Layout result{
    constant(P(0, 7), 0),
    bit(P(0, 6), L(0, 1)),
    header_byte(P(0, 5, 0)),
    bit(P(1, 7), L(36, 0)),
    bit(P(1, 6), L(36, 1)),
    bit(P(1, 5), L(36, 2)),
    bit(P(1, 4), L(36, 3)),
    bit(P(2, 0), L(37, 0)),
    bit(P(2, 1), L(37, 1)),
    bit(P(2, 2), L(37, 2)),
    bit(P(2, 3), L(37, 3)),
    bit(P(2, 7), L(37, 7)),
    copied(P(3), L(10)),
    copied(P(4), L(6), 2),
    copied(P(8), L(42)),
    copied(P(9), L(12), 3),
    copied(P(12), L(18), 2),
    copied(P(14), L(4), 2),
    copied(P(16), L(28), 4),
    copied(P(20), L(32), 4),
    swapped(P(24), L(20), 2),
    swapped(P(26), L(22), 2),
    swapped(P(28), L(38), 2),
    swapped(P(30), L(40), 2),
    bit(P(32, 0), L(37, 2)),
    copied(P(36), L(44), 4),
    label(P(40), L(48), L(52, 0)).named("label"),
    label(P(43), L(53), L(57, 0)).named("label"),
};

constexpr Layout l8_kept{
    copied(P(6), L(8), 2),
};

constexpr Layout l8_swapped{
    swapped(P(6), L(8), 2),
};

// The reverse swaps nothing back and does not look at P32.0; both are intended.
constexpr Layout restored{
    bit(L(0, 1), P(0, 6)),
    bit(L(36, 0), P(1, 7)),
    bit(L(36, 1), P(1, 6)),
    bit(L(36, 2), P(1, 5)),
    bit(L(36, 3), P(1, 4)),
    bit(L(37, 0), P(2, 0)),
    bit(L(37, 1), P(2, 1)),
    bit(L(37, 2), P(2, 2)),
    bit(L(37, 3), P(2, 3)),
    bit(L(37, 7), P(2, 7)),
    copied(L(4), P(14), 2),
    copied(L(6), P(4), 2),
    copied(L(8), P(6), 2),
    copied(L(10), P(3)),
    copied(L(12), P(9), 3),
    copied(L(18), P(12), 2),
    copied(L(20), P(24), 2),
    copied(L(22), P(26), 2),
    copied(L(28), P(16), 4),
    copied(L(32), P(20), 4),
    copied(L(38), P(28), 2),
    copied(L(40), P(30), 2),
    copied(L(42), P(8)),
    copied(L(44), P(36), 4),
    label(L(48), P(40), L(52, 0)).named("label"),
    label(L(53), P(43), L(57, 0)).named("label"),
};

}  // namespace

std::int32_t l2tp_sid_leaf_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<key, 6, 4>(logical, physical, physical_length);
}

std::int32_t l2tp_sid_leaf_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                           std::uint32_t* physical_length) {
    const LogicalSource<read_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<result>(out, in);
    if (in.bit(L(0, 1)) && !in.bit(L(37, 2))) {
        place<l8_kept>(out, in);
    } else {
        place<l8_swapped>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t l2tp_xlate_logical_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, restored_size>(physical, logical);
}
