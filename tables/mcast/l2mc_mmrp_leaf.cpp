// MMRP leaf, table 112.

#include "frame/node_reference.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 10;
constexpr std::size_t key_physical_size = 9;
constexpr std::size_t physical_size = 8;

constexpr Layout key{
    copied(P(0), L(4), 6).named("MAC address"),
    copied(P(6), L(0), 2),
};

// One byte higher than where the result takes it from; intended.
constexpr Layout restored{
    copied(L(1), P(1), 3).named("node reference"),
};

}  // namespace

std::int32_t l2mc_mmrp_leaf_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t l2mc_mmrp_leaf_res_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return leaf_result<physical_size>(logical, physical, physical_length);
}

std::int32_t l2mc_mmrp_leaf_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, leaf_result_logical_size>(physical, logical);
}
