// Sampling information, table 69, which reads back through the generic reverse. The reverse translator here serves
// table 67; that crossing is intended.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 9;
constexpr std::int32_t physical_size = 16;

constexpr Layout key{
    copied(P(0), L(0), 2),
    bit(P(2, 2), L(2, 0)),
    bits(P(2, 1, 0), L(3, 1, 0)),
};

constexpr Layout common{
    bit(P(0, 7), L(8, 5)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(8, 6)),
    bit(P(1, 6), L(8, 7)),
    bit(P(1, 5), L(8, 4)),
};

constexpr Layout rate_as_mask{
    "rate as a mask code",
    constant(P(0, 6), 1),
};

constexpr Layout rate_as_it_is{
    "rate as it is",
    any(P(0, 5), L(1)),  // a rate above 255
    swapped(P(4), L(0), 2).named("sampling rate"),
    swapped(P(6), L(2), 2),
    copied(P(8), L(5), 3),
};

// Neither P0.5 nor P0.6 is looked at, and nothing is swapped back; both are intended.
constexpr Layout restored{
    copied(L(0), P(4), 2).named("sampling rate"),
    copied(L(2), P(6), 2),
    copied(L(5), P(8), 3),
    bit(L(8, 7), P(1, 6)),
    bit(L(8, 6), P(1, 7)),
    bit(L(8, 5), P(0, 7)),
    bit(L(8, 4), P(1, 5)),
};

constexpr std::uint32_t lowest_mask_rate = 2048;
constexpr std::uint32_t mask_unit = 1024;

}  // namespace

std::int32_t sample_nf_info_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return place_only<key, 4, 3>(logical, physical, physical_length);
}

std::int32_t sample_nf_info_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    // 65536 does not fit into the 16 bits of the rate; 65535 stands for it.
    const Number stored = in.little16(L(0));
    const Number rate = choose(stored == 0xffff, 0x10000, stored);
    if (rate >= lowest_mask_rate && (rate & (rate - 1)) == 0) {
        place<rate_as_mask>(out, in);
        put_big<2>(out, P(4), rate / mask_unit - 1);
    } else {
        place<rate_as_it_is>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t sample_nf_info_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
