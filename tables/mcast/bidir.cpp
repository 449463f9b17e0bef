// Bidirectional PIM, table 113.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 6;
constexpr std::size_t key_physical_size = 5;
constexpr std::size_t logical_size = 16;
constexpr std::size_t restored_size = 48;
constexpr std::size_t physical_size = 20;

constexpr Layout key{
    swapped(P(0), L(0), 3),
    bit(P(3, 7), L(4, 7)),
    copied(P(4), L(5)),
};

constexpr Layout result{
    header_byte(P(0)),
    copied(P(4), L(0), 16),
};

constexpr Layout restored = mirrored(result);

}  // namespace

std::int32_t ipmc_bidir_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t ipmc_bidir_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t ipmc_bidir_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, restored_size>(physical, logical);
}
