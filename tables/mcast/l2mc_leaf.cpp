// Layer-2 multicast leaves: IPv4, table 54; IPv6 (S,G), table 85; IPv6 (*,G), table 86. One logical key serves all
// three; in the result only table 85 is longer.

#include "frame/node_reference.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 37;
constexpr std::size_t ipv4_key_physical_size = 11;
constexpr std::size_t ipv6_sg_key_physical_size = 35;
constexpr std::size_t ipv6_g_key_physical_size = 19;
constexpr std::size_t result_size = 4;
constexpr std::size_t ipv6_sg_result_size = 16;

constexpr Layout ipv4_key{
    swapped(P(0), L(5), 4).named("source address"),
    swapped(P(4), L(21), 4).named("group address"),
    copied(P(8), L(0), 2),
};

constexpr Layout ipv6_sg_key{
    swapped(P(0), L(5), 16).named("source address"),
    swapped(P(16), L(21), 16).named("group address"),
    copied(P(32), L(0), 2),
};

constexpr Layout ipv6_g_key{
    swapped(P(0), L(21), 16).named("group address"),
    copied(P(16), L(0), 2),
};

}  // namespace

std::int32_t l2mc_ipv4_leaf_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    PhysicalRecord<ipv4_key_physical_size> out;
    if (in.byte(L(4)) != 0) {
        place<ipv4_key>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t l2mc_ipv4_leaf_res_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return leaf_result<result_size>(logical, physical, physical_length);
}

std::int32_t l2mc_ipv4_leaf_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    return leaf_result_restored<result_size>(physical, physical_length, logical);
}

std::int32_t l2v6mc_sg_leaf_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<ipv6_sg_key, key_logical_size, ipv6_sg_key_physical_size>(logical, physical, physical_length);
}

std::int32_t l2v6mc_sg_leaf_res_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return leaf_result<ipv6_sg_result_size>(logical, physical, physical_length);
}

std::int32_t l2v6mc_sg_leaf_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    return leaf_result_restored<ipv6_sg_result_size>(physical, physical_length, logical);
}

std::int32_t l2v6mc_g_leaf_key_xlate(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<ipv6_g_key, key_logical_size, ipv6_g_key_physical_size>(logical, physical, physical_length);
}
