// Multicast-only fast reroute: information, table 50, and watchdog counter, table 51. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t info_key_logical_size = 8;
constexpr std::size_t info_key_physical_size = 4;
constexpr std::size_t info_logical_size = 40;
constexpr std::size_t info_physical_size = 32;
constexpr std::size_t counter_size = 16;

constexpr Layout info_key{
    swapped(P(0), L(4), 4),
};

constexpr Layout info{
    bit(P(0, 7), L(4, 0)),
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 2)),
    header_byte(P(0, 4, 0)),
    constant(P(2, 0), 1),
    copied(P(3), L(8), 3),
    swapped(P(6), L(12), 4),
    copied(P(10), L(32), 3),
    swapped(P(13), L(20), 4),
    copied(P(17), L(16), 3),
    swapped(P(24), L(24), 4),
    swapped(P(28), L(28), 3),
};

constexpr Layout info_value{
    swapped(P(20), L(36), 4),
};

constexpr Layout counter{
    bit(P(0, 6), L(0, 0)),
    bit(P(0, 5), L(0, 1)),
    header_byte(P(0, 4, 0)),
    constant(P(2, 0), 1),
};

constexpr Layout counter_values{
    copied(P(6), L(12), 2),
    swapped(P(8), L(8), 4),
    swapped(P(12), L(4), 4),
};

}  // namespace

std::int32_t ipmc_mofrr_info_key_xlate(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return place_only<info_key, info_key_logical_size, info_key_physical_size>(logical, physical, physical_length);
}

std::int32_t ipmc_mofrr_info_res_xlate(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    const LogicalSource<info_logical_size> in{logical};
    PhysicalRecord<info_physical_size> out;
    place<info>(out, in);
    if (in.bit(L(4, 1))) {
        place<info_value>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t ipmc_mofrr_wdcnt_key_xlate(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t ipmc_mofrr_wdcnt_res_xlate(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    const LogicalSource<counter_size> in{logical};
    PhysicalRecord<counter_size> out;
    place<counter>(out, in);
    if (in.bit(L(0, 2))) {
        place<counter_values>(out, in);
    }
    return finish(out, physical, physical_length);
}
