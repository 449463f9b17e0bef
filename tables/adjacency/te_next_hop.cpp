// TE next hop, table 7. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 61;
constexpr std::size_t physical_size = 32;

constexpr Layout common{
    bit(P(0, 6), L(0, 6)),
    header_byte(P(0, 5, 0), 0x31),  // this table's header, with P0.7 and P0.6 as fields
    bit(P(1, 3), L(0, 0)),
    bit(P(1, 2), L(0, 1)),
    bit(P(1, 1), L(0, 2)),
    bit(P(2, 6), L(0, 0)),
    bit(P(2, 5), L(0, 4)),
    bit(P(2, 4), L(1, 0)),
    label(P(3), L(20), L(29, 0)).named("label"),
    label(P(6), L(25), L(29, 0)).named("label"),  // the flag of the first label once more
    copied(P(9), L(40), 3),
    label(P(12), L(30), L(34, 0)).named("label"),
    copied(P(20), L(57), 2),
    copied(P(28), L(56)),
    copied(P(29), L(48), 3),
};

constexpr Layout triple{
    "triple",
    copied(P(15), L(12), 3),
};

constexpr Layout l0_5_set{
    constant(P(0, 6), 1),
    copied(P(21), L(60)),  // in place of L58
    copied(P(22), L(44), 3),
};

constexpr Layout l0_5_clear{
    copied(P(18), L(16), 2),
    copied(P(22), L(8), 3),
    copied(P(25), L(4), 3),
};

constexpr std::uint8_t highest_unmarked_l56 = 31;

}  // namespace

std::int32_t te_nh_adjacency_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return copy_key<2>(logical, physical, physical_length);
}

std::int32_t te_nh_adjacency_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                               std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 2))) {
        place<triple>(out, in);
    }
    if (in.bit(L(0, 5))) {
        place<l0_5_set>(out, in);
        put(out, P(1, 0), in.byte(L(56)) > highest_unmarked_l56);
    } else {
        place<l0_5_clear>(out, in);
        put(out, P(0, 7), in.little24(L(8)) <= setting(TX_ADJ_KEY_MAX));
    }
    return finish(out, physical, physical_length);
}
