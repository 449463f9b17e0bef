// LI-MD, table 66.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 30;
constexpr std::size_t physical_size = 32;

constexpr std::uint32_t flagged_index_offset = 512;

constexpr Layout key{
    run(P(0, 0), L(0, 1), 15).named("index"),
};

constexpr Layout result{
    constant(P(0, 4), 1),
    bit(P(0, 3), L(1, 0)),
    constant(P(0, 0), 1),  // with P0.4 the header 0x11
    copied(P(1), L(0)),
    inverted(P(2), L(3)),
    inverted(P(3), L(2)),
    swapped(P(4), L(4), 4).repeated(4, P(4), L(4)),
    swapped(P(20), L(20), 2),
    copied(P(24), L(22), 3),
    swapped(P(28), L(26), 4),
};

// Nothing is swapped back and L22-29 stay zero; both are intended.
constexpr Layout restored{
    copied(L(0), P(1)),
    bit(L(1, 0), P(0, 3)),
    inverted(L(2), P(2)),
    inverted(L(3), P(3)),
    copied(L(4), P(4), 4).repeated(4, L(4), P(4)),
    copied(L(20), P(20), 2),
};

}  // namespace

std::int32_t li_md_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<2> in{logical};
    PhysicalRecord<2> out;
    if (in.bit(L(0, 0))) {
        const Number index = ((in.little16(L(0)) >> 1) + flagged_index_offset) & 0x7fff;
        change_input<2>(in, L(0), index << 1 | 1);
        put_little<2>(out, P(0), index, "index");
    } else {
        place<key>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t li_md_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                   std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t li_md_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
