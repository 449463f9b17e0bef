// Cross-connect extension, table 74: the end of the cross-connect's logical record, under the same key.

#include "frame/layer2_keys.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 92;
constexpr std::size_t physical_size = 8;

// Three values in three byte orders, as the network processor reads them.
constexpr Layout result{
    header_byte(P(0)),
    bits(P(1, 3, 0), L(86, 3, 0)),
    run(P(1, 4), L(80, 0), 20),
    swapped(P(4), L(84), 2),
    copied(P(6), L(88), 2),
};

constexpr Layout restored = mirrored(result);

}  // namespace

std::int32_t xid_ext_type_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_cross_connect_key(logical, physical, physical_length);
}

std::int32_t xid_ext_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

// Leaves P4 and P5 of the physical record exchanged.
std::int32_t xid_ext_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    change_input<2>(in, P(4), reversed_bytes(in.little16(P(4)), 2));
    return finish(out, logical);
}
