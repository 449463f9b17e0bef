// IP multicast leaves: IPv4, table 24; IPv6 (S,G), table 61; IPv6 (*,G), table 62. The tables differ in their keys; in
// the result only table 61 is longer.

#include "frame/node_reference.h"

using namespace npxlate;

namespace {

constexpr std::size_t ipv4_key_size = 10;
constexpr std::size_t ipv6_key_logical_size = 34;
constexpr std::size_t ipv6_sg_key_physical_size = 34;
constexpr std::size_t ipv6_g_key_physical_size = 18;
constexpr std::size_t result_size = 4;
constexpr std::size_t ipv6_sg_result_size = 16;

// The source stands before the group, the other way round than in the logical keys.
constexpr Layout ipv4_key{
    swapped(P(0), L(4), 4).named("source address"),
    swapped(P(4), L(0), 4).named("group address"),
    copied(P(8), L(8), 2),
};

constexpr Layout ipv6_sg_key{
    swapped(P(0), L(16), 16).named("source address"),
    swapped(P(16), L(0), 16).named("group address"),
    copied(P(32), L(32), 2),
};

constexpr Layout ipv6_g_key{
    swapped(P(0), L(0), 16).named("group address"),
    copied(P(16), L(32), 2),
};

}  // namespace

std::int32_t ipv4mc_leaf_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<ipv4_key, ipv4_key_size, ipv4_key_size>(logical, physical, physical_length);
}

std::int32_t ipmc_leaf_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return leaf_result<result_size>(logical, physical, physical_length);
}

std::int32_t ipmc_leaf_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    return leaf_result_restored<result_size>(physical, physical_length, logical);
}

std::int32_t ipv6mc_sg_leaf_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<ipv6_sg_key, ipv6_key_logical_size, ipv6_sg_key_physical_size>(logical, physical,
                                                                                     physical_length);
}

std::int32_t ipv6mc_sg_leaf_res_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return leaf_result<ipv6_sg_result_size>(logical, physical, physical_length);
}

std::int32_t ipv6mc_sg_leaf_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    return leaf_result_restored<ipv6_sg_result_size>(physical, physical_length, logical);
}

std::int32_t ipv6mc_g_leaf_key_xlate(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<ipv6_g_key, ipv6_key_logical_size, ipv6_g_key_physical_size>(logical, physical, physical_length);
}
