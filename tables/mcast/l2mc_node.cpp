// Layer-2 multicast node, table 56: the state of a route.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 56;
constexpr std::size_t physical_size = 32;

constexpr Layout result{
    bit(P(0, 7), L(16, 0)),
    header_byte(P(0, 6, 0)),
    bit(P(1, 7), L(21, 0)),
    bit(P(1, 6), L(16, 1)),
    any(P(1, 5), bytes(L(28), 2)),
    bit(P(1, 4), L(20, 0)),
    swapped(P(2), L(12), 4),
    copied(P(6), L(24), 4),
    copied(P(10), L(8), 3),
    swapped(P(14), L(52), 3),
    swapped(P(17), L(48), 3),
    swapped(P(20), L(44), 3),
    swapped(P(23), L(0), 3),
    swapped(P(26), L(28), 2),
    swapped(P(28), L(30), 2),
    swapped(P(30), L(32), 2),
};

constexpr Layout restored = mirrored(result);

}  // namespace

std::int32_t l2mc_ipv4_node_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t l2mc_ipv4_node_res_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t l2mc_ipv4_node_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
