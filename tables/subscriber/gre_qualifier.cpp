// GRE qualifier, table 59: finds a tunnel by its two endpoint addresses.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 40;
constexpr std::size_t key_physical_size = 39;
constexpr std::size_t logical_size = 17;
constexpr std::size_t physical_size = 16;

constexpr Layout key_common{
    copied(P(32), L(33), 2),
    swapped(P(35), L(36), 4),
};

constexpr Layout key_ipv6{
    "IPv6",
    swapped(P(0), L(1), 16).named("first address"),
    swapped(P(16), L(17), 16).named("second address"),
    constant(P(34), 1),
};

constexpr Layout key_ipv4{
    "IPv4",
    swapped(P(0), L(1), 4).named("first address"),
    swapped(P(4), L(17), 4).named("second address"),
    cleared(P(8), 24),
    constant(P(34), 0),
};

constexpr Layout result{
    bit(P(0, 7), L(0, 2)),
    bit(P(0, 6), L(0, 0)),
    bit(P(0, 5), L(0, 1)),
    header_byte(P(0, 4, 0)),
    any(P(3, 1), L(16, 1, 0)),
    bit(P(3, 0), L(16, 1)),
    run(P(4, 0), L(13, 1), 23),
    copied(P(8), L(1), 4),
};

// The reverse does not shift the 24-bit value back, takes L16.0 from the bit that stands for either of two, and
// restores neither L0.2 nor L2-4; all of it intended.
constexpr Layout restored{
    bit(L(0, 0), P(0, 6)),
    bit(L(0, 1), P(0, 5)),
    copied(L(1), P(8)),
    copied(L(13), P(4), 3),
    bit(L(16, 0), P(3, 1)),
    bit(L(16, 1), P(3, 0)),
};

}  // namespace

std::int32_t gre_qual_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    PhysicalRecord<key_physical_size> out;
    if (in.bit(L(0, 0))) {
        place<key_ipv6>(out, in);
    } else {
        place<key_ipv4>(out, in);
    }
    place<key_common>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t gre_qual_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t gre_qual_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
