// I-SID, table 58: a service instance of provider backbone bridging.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 43;           // as far as it is read
constexpr std::size_t restored_logical_size = 44;  // as far as it is cleared
constexpr std::size_t physical_size = 32;

constexpr Layout key{
    copied(P(0), L(0), 3).named("I-SID"),
    copied(P(3), L(4), 2),
    constant(P(5), 0),
};

constexpr Layout result{
    bit(P(0, 7), L(0, 0)),
    bit(P(0, 6), L(0, 1)),
    bit(P(0, 5), L(0, 2)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(0, 6)),
    constant(P(1, 6, 1), 0),
    bit(P(1, 0), L(0, 7)),
    cleared(P(2), 2),
    copied(P(4), L(4), 2),
    cleared(P(6), 2),
    copied(P(8), L(8), 4),
    cleared(P(12), 2),
    swapped(P(14), L(24), 2),
    copied(P(16), L(40), 3),
    constant(P(19), 0),
    copied(P(20), L(28), 12),
};

// P14-15 are not swapped back, and P6 is read along with P4-5; both are intended.
constexpr Layout restored{
    bit(L(0, 0), P(0, 7)),
    bit(L(0, 1), P(0, 6)),
    bit(L(0, 2), P(0, 5)),
    bit(L(0, 6), P(1, 7)),
    bit(L(0, 7), P(1, 0)),
    copied(L(4), P(4), 3),
    copied(L(8), P(8), 4),
    copied(L(24), P(14), 2),
    copied(L(28), P(20), 12),
    copied(L(40), P(16), 3),
};

}  // namespace

std::int32_t isid_type_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, 6, 6>(logical, physical, physical_length);
}

std::int32_t isid_type_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t isid_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, restored_logical_size>(physical, logical);
}
