// ACL statistics hash, table 41.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t physical_size = 16;

constexpr Layout result{
    header_byte(P(0)),
    copied(P(3), L(0), 4),
};

// L0 is not restored, and one byte more is cleared than the result carries; both are intended.
constexpr Layout restored{
    copied(L(1), P(4), 3),
};

}  // namespace

std::int32_t acl_ez_stats_hash_key_xlate(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<8>(logical, physical, physical_length);
}

std::int32_t acl_ez_stats_hash_result_st_xlate(const void* logical, std::int32_t, void* physical,
                                               std::uint32_t* physical_length) {
    return place_only<result, 4, physical_size>(logical, physical, physical_length);
}

std::int32_t acl_ez_stats_hash_logical_res_xlate(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, 5>(physical, logical);
}
