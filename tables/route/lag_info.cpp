// Link aggregation member information, table 60.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 12;
constexpr std::size_t physical_size = 8;

constexpr Layout key{
    run(P(0, 0), L(4, 0), 12).named("bundle id"),
    mapped(P(1, 5, 4), bytes(L(0), 4), two_value_code).named("bundle kind"),
};

// A count of 0 counts down to all ones.
constexpr Function full_eights{
    "bits 6-3 of count - 1",
    [](Number count) -> Number { return (count - 1) >> 3; },
};

constexpr Function last_eight{
    "bits 2-0 of count - 1",
    [](Number count) -> Number { return count - 1; },
};

constexpr Layout result{
    header_byte(P(0)),
    none(P(1, 0), L(4, 7, 5)),  // fewer than 32 members
    mapped(P(3, 7, 4), L(4), full_eights).named("member count"),
    constant(P(4, 3), 1),
    mapped(P(4, 2, 0), L(4), last_eight).named("member count"),
    bits(P(5, 7, 6), L(0, 1, 0)),
    copied(P(7), L(4)).named("member count"),
};

// Only the member count comes back; intended.
constexpr Layout restored{
    copied(L(4), P(7)).named("member count"),
};

}  // namespace

std::int32_t lag_info_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<key, 8, 2>(logical, physical, physical_length);
}

std::int32_t lag_info_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t lag_info_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
