// MLC, types 1 and 5 of table 52. Read back by table 52's reverse.

#include "frame/helpers.h"
#include "frame/within.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 8;
constexpr std::size_t key_physical_size = 3;
constexpr std::size_t logical_size = 42;
constexpr std::size_t physical_size = 32;

// The word of the multicast encapsulation's key, but with an index of 16 bits and the type as it is for a code.
constexpr Layout key{
    copied(P(0), L(4), 2).named("index"),
    bits(P(2, 7, 4), L(0, 3, 0)).named("type"),
};

constexpr Layout result{
    header_byte(P(0)),
};

}  // namespace

std::int32_t ipmc_mlc_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t ipmc_mlc_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

NPXLATE_CALLED_WITHIN(ipmc_mlc_key_xlate)
NPXLATE_CALLED_WITHIN(ipmc_mlc_res_xlate)
