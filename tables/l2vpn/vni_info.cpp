// VNI information, table 111.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 8;
constexpr std::size_t key_physical_size = 4;
constexpr std::size_t logical_size = 36;
constexpr std::size_t physical_size = 32;

constexpr Layout key_of_kind_0{
    "kind 0",
    copied(P(0), L(0)).named("kind"),
    constant(P(1), 0),
    copied(P(2), L(4), 2),
};

constexpr Layout key_of_other_kinds{
    "other kinds",
    copied(P(0), L(0)).named("kind"),
    copied(P(1), L(4), 3),
};

constexpr Function is_four{
    "1 for 4, 0 for any other value",
    [](Number code) -> Number { return code == 4; },
};

constexpr Layout result{
    bit(P(0, 7), L(0, 2)),
    bit(P(0, 6), L(0, 1)),
    bit(P(0, 5), L(0, 3)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(4), 3),
    copied(P(4), L(8), 4),
    copied(P(8), L(12), 2),
    constant(P(10), 0),
    bit(P(11, 2), L(0, 0)),  // with the next row: P11 is 4 if L0.0 is set, 2 if it is clear
    inverted(P(11, 1), L(0, 0)),
    copied(P(12), L(20), 4),
    copied(P(16), L(24), 4),
    copied(P(20), L(28), 4),
    copied(P(24), L(18), 2),
    copied(P(26), L(16)),
    copied(P(27), L(17)),
    run(P(28, 0), L(32, 0), 20),
};

// P10 is read along with P8-9, and of P30 all bits; both are intended.
constexpr Layout restored{
    mapped(L(0, 0), P(11), is_four),
    bit(L(0, 1), P(0, 6)),
    bit(L(0, 2), P(0, 7)),
    bit(L(0, 3), P(0, 5)),
    copied(L(4), P(1), 3),
    copied(L(8), P(4), 4),
    copied(L(12), P(8), 3),
    copied(L(16), P(26)),
    copied(L(17), P(27)),
    copied(L(18), P(24), 2),
    copied(L(20), P(12), 4),
    copied(L(24), P(16), 4),
    copied(L(28), P(20), 4),
    copied(L(32), P(28), 3),
};

}  // namespace

// A key of kind 0 is left with L4-7 shifted up by one byte.
std::int32_t vni_info_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    PhysicalRecord<key_physical_size> out;
    if (in.byte(L(0)) == 0) {
        place<key_of_kind_0>(out, in);
        change_input<4>(in, L(4), in.little32(L(4)) << 8);
    } else {
        place<key_of_other_kinds>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t vni_info_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t vni_info_logical_res_xlate(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
