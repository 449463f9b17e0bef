// Common flow of the receive services, by name.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout key{
    swapped(P(0), L(0), 4),
    swapped(P(4), L(4), 4),
    copied(P(21), L(21), 2),
    copied(P(23), L(23), 2),
    copied(P(25), L(25)),
    copied(P(26), L(26), 2),
    copied(P(28), L(28), 2),
    copied(P(30), L(30), 2),
};

constexpr Layout result{
    bit(P(0, 7), L(0, 7)),
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 6), L(1, 6)),
    bit(P(1, 4), L(1, 4)),
    copied(P(2), L(2)),
    copied(P(3), L(3), 3),
    copied(P(7), L(7)),
    also(bit(P(7, 7), L(1, 4))),
    copied(P(8), L(8), 24),
};

}  // namespace

std::int32_t rx_common_flow_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, 32, 32>(logical, physical, physical_length);
}

std::int32_t rx_common_flow_xlate_result(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return place_only<result, 32, 32>(logical, physical, physical_length);
}
