// Multicast interface punt, table 21: an entry that says no more than that it is there. Read back by the generic
// reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_size = 8;
constexpr std::size_t logical_size = 0;
constexpr std::size_t physical_size = 16;

constexpr Layout key{
    swapped(P(0), L(0), 4),
    swapped(P(4), L(4), 4),
};

constexpr Layout result{
    header_byte(P(0)),
};

}  // namespace

std::int32_t ipmc_intf_punt_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<key, key_size, key_size>(logical, physical, physical_length);
}

std::int32_t ipmc_intf_punt_res_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}
