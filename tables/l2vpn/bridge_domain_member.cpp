// Bridge-domain member, table 35: one attachment of a bridge domain, in one of three forms.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 64;
constexpr std::size_t physical_size = 24;

constexpr Layout key{
    copied(P(0), L(4), 2),
    constant(P(2), 0),
    copied(P(3), L(8)),
    bits(P(4, 3, 0), L(9, 3, 0)),
    bit(P(4, 4), L(1, 0)),
    bit(P(4, 5), L(0, 0)),
    bit(P(4, 6), L(2, 0)),
    constant(P(4, 7), 0),
};

constexpr Layout common{
    bit(P(0, 6), L(0, 3)),
    bit(P(0, 5), L(1, 1)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(0, 1)),
    bit(P(1, 4), L(0, 0)),
    bit(P(1, 0), L(1, 2)),
    copied(P(4), L(4), 4),
};

constexpr Layout variant_a{
    "variant A",
    copied(P(8), L(56), 4),
    copied(P(12), L(60), 2),
};

constexpr Layout variant_b{
    "variant B",
    bit(P(0, 7), L(0, 6)),
    bit(P(1, 1), L(0, 5)),
    bit(P(3, 3), L(1, 4)),
    bits(P(3, 2, 0), L(1, 7, 5)),
    label(P(8), L(32), 1).named("label"),
    copied(P(11), L(44), 2),
    copied(P(17), L(52), 4),
    label(P(21), L(37), 1).named("label"),
};

constexpr Layout variant_b_value{
    "variant B, 32-bit value",
    copied(P(13), L(48), 4),
};

constexpr Layout variant_c{
    "variant C",
    constant(P(4), 0xff),  // in place of L4-7
    constant(P(5), 0xff),
    constant(P(6), 0xff),
    constant(P(7), 0x9f),
    copied(P(8), L(16), 3),
    copied(P(11), L(12), 3),
    copied(P(14), L(8), 3),
};

// The selector L1.1 comes back in L0.2, and L48-51 whether or not they were carried; both are intended.
constexpr Layout restored{
    bit(L(0, 0), P(1, 4)),
    bit(L(0, 1), P(1, 7)),
    bit(L(0, 2), P(0, 5)),
    bit(L(0, 3), P(0, 6)),
    bit(L(1, 2), P(1, 0)),
    copied(L(4), P(4), 4),
};

constexpr Layout restored_a = mirrored(variant_a);

constexpr Layout restored_b{
    "variant B",
    bit(L(0, 5), P(1, 1)),
    bit(L(0, 6), P(0, 7)),
    bit(L(1, 4), P(3, 3)),
    bits(L(1, 7, 5), P(3, 2, 0)),
    label(L(32), P(8)).named("label"),
    label(L(37), P(21)).named("label"),
    copied(L(44), P(11), 2),
    copied(L(48), P(13), 4),
    copied(L(52), P(17), 4),
};

constexpr Layout restored_c = mirrored(variant_c);

}  // namespace

std::int32_t bridge_domain_member_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                                 std::uint32_t* physical_length) {
    return place_only<key, 12, 5>(logical, physical, physical_length);
}

std::int32_t bridge_domain_member_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                                    std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 1))) {
        place<variant_a>(out, in);
    } else if (in.bit(L(0, 3))) {
        place<variant_b>(out, in);
        if (in.bit(L(0, 5))) {
            place<variant_b_value>(out, in);
        }
    } else if (in.bit(L(1, 1))) {
        place<variant_c>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t bridge_domain_member_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(1, 7))) {
        place<restored_a>(out, in);
    } else if (in.bit(P(0, 6))) {
        place<restored_b>(out, in);
    } else if (in.bit(P(0, 5))) {
        place<restored_c>(out, in);
    }
    return finish(out, logical);
}
