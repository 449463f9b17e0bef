// SPAN forwarding, table 22: where a mirrored packet goes.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 28;
constexpr std::size_t physical_size = 32;

constexpr unsigned highest_l18 = 128;

constexpr Layout key{
    copied(P(0), L(0)),
    copied(P(1), L(2), 2),
};

constexpr Layout common{
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 0)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(4, 2)),
    copied(P(3), L(20)),
    copied(P(4), L(0), 4),
    copied(P(8), L(24), 3),
};

constexpr Layout address{
    "address and 16-bit value",
    copied(P(12), L(8), 6).named("address"),
    copied(P(18), L(14), 2),
};

constexpr Layout within_limit{
    copied(P(28), L(18), 2),
};

constexpr Layout above_limit{
    constant(P(28), highest_l18),
};

constexpr Layout restored = mirrored(common);
constexpr Layout restored_address = mirrored(address);
constexpr Layout restored_limited = mirrored(within_limit);

}  // namespace

std::int32_t span_fwd_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, 4, 3>(logical, physical, physical_length);
}

std::int32_t span_fwd_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(4, 2))) {
        place<address>(out, in);
    }
    if (in.little16(L(18)) > highest_l18) {
        change_input<2>(in, L(18), highest_l18);
        place<above_limit>(out, in);
    } else {
        place<within_limit>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t span_fwd_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(1, 7))) {
        place<restored_address>(out, in);
    }
    place<restored_limited>(out, in);
    return finish(out, logical);
}
