// Bridge-domain extension, table 105: more of the bridge domain's logical record, under the same key.

#include "frame/layer2_keys.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 101;           // as far as it is read
constexpr std::size_t restored_logical_size = 120;  // as far as it is cleared
constexpr std::size_t physical_size = 16;

constexpr Layout common{
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(1, 3)),
    bit(P(1, 6), L(1, 4)),
    bit(P(1, 4), L(1, 0)),
    bit(P(2, 5), L(0, 0)),
    copied(P(3), L(8)),
    run(P(8, 0), L(60, 1), 24),
    copied(P(11), L(100)),
};

constexpr Layout one_value{
    "32-bit value",
    copied(P(4), L(44), 4),
};

constexpr Layout two_values{
    "two 16-bit values",
    copied(P(4), L(12), 2),
    copied(P(6), L(40), 2),
};

// The reverse leaves out L0.5, L8 and L100, as intended.
constexpr Layout restored{
    bit(L(0, 0), P(2, 5)),
    bit(L(1, 0), P(1, 4)),
    bit(L(1, 3), P(1, 7)),
    bit(L(1, 4), P(1, 6)),
    run(L(60, 1), P(8, 0), 24),
};

constexpr Layout restored_one_value = mirrored(one_value);
constexpr Layout restored_two_values = mirrored(two_values);

}  // namespace

std::int32_t bridge_domain_ext_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                              std::uint32_t* physical_length) {
    return place_bridge_domain_key(logical, physical, physical_length);
}

std::int32_t bridge_domain_ext_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                                 std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(1, 3))) {
        place<one_value>(out, in);
    } else {
        place<two_values>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t bridge_domain_ext_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<restored_logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(1, 7))) {
        place<restored_one_value>(out, in);
    } else {
        place<restored_two_values>(out, in);
    }
    return finish(out, logical);
}
