// EVPN MAC, table 70.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 22;           // as far as it is read
constexpr std::size_t restored_logical_size = 32;  // as far as it is cleared
constexpr std::size_t physical_size = 32;

constexpr Layout key{
    copied(P(0), L(4), 6).named("MAC address"),
    copied(P(6), L(0), 2),
    constant(P(8), 0),
};

constexpr Layout result{
    bit(P(0, 7), L(0, 1)),
    bit(P(0, 5), L(0, 0)),
    header_byte(P(0, 4, 0)),
    cleared(P(1), 2),
    copied(P(3), L(4), 2),
    constant(P(5), 0),
    copied(P(6), L(8), 6),
    copied(P(12), L(16), 4),
    cleared(P(16), 6),
    copied(P(23), L(20)),
    copied(P(24), L(21)),
};

// P5 is read along with P3-4, as intended.
constexpr Layout restored{
    bit(L(0, 0), P(0, 5)),
    bit(L(0, 1), P(0, 7)),
    copied(L(4), P(3), 3),
    copied(L(8), P(6), 6),
    copied(L(16), P(12), 4),
    copied(L(20), P(23)),
    copied(L(21), P(24)),
};

}  // namespace

std::int32_t evpn_mac_mb_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<key, 10, 9>(logical, physical, physical_length);
}

std::int32_t evpn_mac_mb_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                           std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t evpn_mac_mb_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, restored_logical_size>(physical, logical);
}
