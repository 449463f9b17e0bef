// VRRP virtual MAC addresses, table 17.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t record_size = 8;

constexpr Layout key{
    swapped(P(0), L(0), 6).named("MAC address"),
    copied(P(6), L(6), 2).named("qualifier"),
};

constexpr Layout result{
    header_byte(P(0)),
    constant(P(2), 1),
    copied(P(4), L(4), 4),
};

constexpr Layout restored = mirrored(result);

}  // namespace

std::int32_t vrrp_vmac_entry_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    return place_only<key, record_size, record_size>(logical, physical, physical_length);
}

std::int32_t vrrp_vmac_entry_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                             std::uint32_t* physical_length) {
    return place_only<result, record_size, record_size>(logical, physical, physical_length);
}

std::int32_t vrrp_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, record_size, record_size>(physical, logical);
}
