// Platform table, table 46. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 83;
constexpr std::size_t physical_size = 32;

constexpr Layout key{
    swapped(P(0), L(0), 4),
    copied(P(4), L(4)),
};

constexpr Layout common{
    bit(P(0, 7), L(0, 0)),
    bit(P(0, 6), L(0, 1)),
    bit(P(0, 5), L(0, 2)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(0, 3)),
    bit(P(1, 6), L(0, 4)),
    bit(P(1, 1), L(0, 5)),
    copied(P(10), L(4), 2),
    copied(P(12), L(6), 2),
    copied(P(22), L(39), 4),
};

constexpr Layout layout_1{
    "layout 1",
    bit(P(1, 4), L(3, 0)),
    copied(P(2), L(36), 3),  // L35 is dropped
    copied(P(5), L(8), 2),
    copied(P(7), L(10)),
    copied(P(8), L(11)),
    bit(P(9, 4), L(3, 1)),
    bit(P(9, 3), L(3, 2)),
    bit(P(9, 2), L(2, 0)),
    bit(P(9, 1), L(1, 0)),
    bit(P(9, 0), L(1, 1)),
    copied(P(26), L(53), 4),
    swapped(P(30), L(57), 2),
};

constexpr Layout layout_1_l3_0_set{
    "layout 1",
    copied(P(14), L(49), 4),
    swapped(P(18), L(24), 2),
    copied(P(20), L(26)),
};

constexpr Layout layout_1_l3_0_clear{
    "layout 1",
    copied(P(14), L(12), 4),
    copied(P(18), L(16), 4),
};

constexpr Layout layout_2{
    "layout 2",
    copied(P(14), L(27), 2),
    copied(P(16), L(29), 2),
    copied(P(18), L(31), 2),
    copied(P(20), L(33), 2),
};

constexpr Layout layout_2_neither{
    "layout 2",
    copied(P(26), L(43), 6),
};

constexpr Layout layout_2_either{
    "layout 2",
    copied(P(26), L(61), 6),
};

constexpr Layout layout_2_either_and_l0_5{
    "layout 2",
    constant(P(1, 2), 1),
    constant(P(1, 1), 0),
};

constexpr Layout layout_2_l0_3_set{
    "layout 2",
    constant(P(1, 5), 1),
    copied(P(8), L(59), 2),
};

constexpr Layout layout_3{
    "layout 3",
    bit(P(2, 3), L(0, 7)),
    bit(P(3, 5), L(0, 6)),
    copied(P(4), L(81), 2),
    label(P(16), L(67), L(71, 0)).named("label"),
    label(P(19), L(72), L(76, 0)).named("label"),
    copied(P(22), L(77), 4),  // in place of the common L39-42
};

}  // namespace

std::int32_t platform_xlate_pit_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, 5, 5>(logical, physical, physical_length);
}

std::int32_t platform_xlate_pit_result(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    const Truth l0_3 = in.bit(L(0, 3));
    const Truth l0_4 = in.bit(L(0, 4));
    const Truth l0_5 = in.bit(L(0, 5));
    place<common>(out, in);
    if (in.bit(L(0, 0)) || in.bit(L(3, 1))) {
        place<layout_1>(out, in);
        if (in.bit(L(3, 0))) {
            place<layout_1_l3_0_set>(out, in);
        } else {
            place<layout_1_l3_0_clear>(out, in);
        }
    } else if (l0_5 && !l0_4 && !l0_3) {
        place<layout_3>(out, in);
    } else {
        place<layout_2>(out, in);
        if (l0_3 || l0_4) {
            place<layout_2_either>(out, in);
            if (l0_5) {
                place<layout_2_either_and_l0_5>(out, in);
            }
        } else {
            place<layout_2_neither>(out, in);
        }
        if (l0_3) {
            place<layout_2_l0_3_set>(out, in);
        }
    }
    return finish(out, physical, physical_length);
}
