// Non-recursive load-distribution entry, table 13: carries the paths' label stacks, next-hop values and backup
// information itself.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 168;
constexpr std::size_t physical_size = 32;

constexpr Layout common{
    bit(P(0, 5), L(2, 3)),
    header_byte(P(0, 4, 0)),
    any(P(1, 6), L(0, 1), L(2, 7)),
    any(P(1, 5), L(2, 4), L(2, 7)),
    bit(P(1, 4), L(0, 0)),
    bit(P(1, 3), L(1, 1)),
    bit(P(1, 2), L(2, 5)),
    constant(P(1, 1), 1),
    any(P(1, 0), L(2, 6), L(1, 3)),
};

constexpr Layout label_array{
    "label array",
    any(P(1, 7), L(106)),
    label(P(2), L(72), L(76, 0)).repeated(10, P(3), L(5)).named("label"),
};

constexpr Layout flags{
    bit(P(0, 6), L(0, 5)),
    bit(P(1, 7), L(0, 7)),
    bit(P(2, 7), L(1, 4)),
    bit(P(2, 6), L(156, 0)),
    bit(P(2, 4), L(3, 0)),
    bit(P(2, 3), L(3, 1)),
    bit(P(2, 2), L(1, 5)),
    bit(P(2, 0), L(0, 5)),
    copied(P(3), L(4)),
};

constexpr Layout l2_3_set{
    "L2.3 form",
    bit(P(0, 7), L(1, 7)),
    mapped(P(3), L(64), hop_byte),  // in place of L4
    copied(P(4), L(56), 3),
    copied(P(7), L(60), 3),
};

constexpr Layout l2_4_set{
    "L2.4 form",
    copied(P(4), L(36), 3).repeated(4, P(3), L(4)),
};

// The forms from here on have L2.7, L2.3 and L2.4 clear.

constexpr Layout recursive{
    "recursive form",
    header_byte(P(0), 0x91),
    swapped(P(3), L(132), 4),
    copied(P(7), L(44), 3),
    copied(P(10), L(136)),
    bit(P(11, 5), L(2, 1)),
    bit(P(11, 3), L(2, 2)),
    inverted(P(11, 1), L(0, 1)),
    constant(P(11, 0), 1),
    label(P(17), L(12), L(0, 1)).named("label"),
    copied(P(20), L(124), 3),
    copied(P(23), L(48), 3),
    label(P(26), L(16), L(0, 2)).named("label"),
    label(P(29), L(8), L(0, 0)).named("label"),
};

constexpr Layout recursive_value{
    "recursive form, 16-bit value",
    constant(P(11, 4), 1),
    bit(P(11, 2), L(1, 5)),
    copied(P(12), L(36), 2),
};

constexpr Layout recursive_queue{
    "recursive form, queue",
    virtual_queue_index(P(12), L(36), L(40)).named("virtual queue index"),
};

constexpr Layout recursive_triple{
    "triple",
    copied(P(14), L(144), 3),
};

constexpr Layout protected_path{
    "protected path",
    bit(P(2, 1), L(40, 2)),
    copied(P(4), L(36), 2),
    bit(P(6, 2), L(40, 1)),
    bit(P(6, 1), L(40, 3)),
    bit(P(6, 0), L(40, 0)),
    label(P(7), L(32), L(1, 0)).named("label"),
    label(P(10), L(28), L(0, 7)).named("label"),
    label(P(25), L(24), L(0, 6)).named("label"),
};

constexpr Layout protected_path_flagged{
    "protected path",
    constant(P(2, 2), 0),
};

constexpr Layout protected_path_triple{
    "protected path, triple",
    copied(P(10), L(144), 3),
};

constexpr Layout l1_3_set{
    "L1.3 form",
    swapped(P(4), L(36), 4),
    swapped(P(8), L(40), 3),
    copied(P(11), L(44), 2),
    copied(P(25), L(46), 4),
    run(P(29, 0), L(52, 0), 20),
    constant(P(31, 5, 4), 3),
    bits(P(31, 7, 6), L(54, 7, 6)),
};

constexpr Layout plain{
    "plain form",
    copied(P(4), L(36), 3),
    copied(P(7), L(40), 3),
};

constexpr Layout plain_two_triples{
    "plain form, two triples",
    copied(P(10), L(152), 3),
    copied(P(13), L(148), 3),
};

constexpr Layout plain_one_triple{
    "plain form, one triple",
    copied(P(10), L(144), 3),
};

constexpr Layout first_label{
    label(P(16), L(8), L(0, 0)).named("label"),
};

// P15.0 stays as the form left it.
constexpr Layout l0_4_set{
    constant(P(1, 6), 1),
    constant(P(2, 5), 1),
    constant(P(2, 2), 0),
    label_bits(P(13), L(12)).named("label"),
    constant(P(15, 3, 1), 2),
    label(P(25), L(16), 1).named("label"),
};

// The 24 bits of L20-22, byte-reversed and then moved up by four.
constexpr Layout l0_4_and_l0_3_set{
    bits(P(10, 7, 4), L(22, 3, 0)),
    constant(P(10, 3, 0), 1),
    bits(P(11, 7, 4), L(21, 3, 0)),
    bits(P(11, 3, 0), L(22, 7, 4)),
    bits(P(12, 7, 4), L(20, 3, 0)),
    bits(P(12, 3, 0), L(21, 7, 4)),
    constant(P(15, 3, 0), 1),
};

constexpr Layout l0_4_set_l0_3_clear{
    cleared(P(10), 3),
};

constexpr Layout second_label{
    "second label",
    label(P(13), L(12), L(0, 1)).named("label"),
};

constexpr Layout l156_0_set{
    copied(P(13), L(160), 3),
};

constexpr Layout l156_1_set{
    copied(P(28), L(164), 3),
};

constexpr Layout last_values{
    swapped(P(19), L(133), 3),
    copied(P(22), L(124), 3),
};

constexpr Layout last_byte{
    copied(P(31), L(132)),
};

// The reverse knows neither the label array nor the recursive form, takes flags from more than one place and returns
// P19-21 in their own order; all of it intended.
constexpr Layout restored{
    any(L(0, 0), P(1, 4), P(18, 0)),
    any(L(0, 1), P(1, 6), P(15, 0)),
    bit(L(0, 2), P(1, 5)),
    bit(L(0, 5), P(2, 0)),
    any(L(0, 7), P(1, 7), P(12, 0)),
    bit(L(1, 1), P(1, 3)),
    copied(L(4), P(3)),
    label(L(8), P(16)).named("label"),
    label(L(12), P(13)).named("label"),
    copied(L(124), P(22), 3),
    copied(L(132), P(31)),
    copied(L(133), P(19), 3),
};

constexpr Layout restored_protected_path{
    "protected path",
    label(L(28), P(10)).named("label"),
    label(L(32), P(7)).named("label"),
    copied(L(36), P(4), 2),
    bit(L(40, 0), P(6, 0)),
    bit(L(40, 1), P(6, 2)),
    bit(L(40, 2), P(2, 1)),
    bit(L(40, 3), P(6, 1)),
};

constexpr Layout restored_others{
    "plain form",
    copied(L(36), P(4), 3),
    copied(L(40), P(7), 3),
    copied(L(144), P(10), 3),
};

}  // namespace

std::int32_t nr_ldi_entry_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t nr_ldi_entry_st_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    const Truth ends_early = in.bit(L(2, 7)) || in.bit(L(2, 3)) || in.bit(L(2, 4));

    // The recursive form replaces whatever else the record says, so nothing else is put together for it.
    if (!ends_early && in.bit(L(1, 7))) {
        place<recursive>(out, in);
        if (in.bit(L(2, 0))) {
            place<recursive_value>(out, in);
        } else {
            place<recursive_queue>(out, in);
            put(out, P(11, 2), in.bit(L(1, 6)) && in.bit(L(1, 5)));
        }
        if (out.bit(P(11, 2))) {
            place<recursive_triple>(out, in);
        }
        return finish(out, physical, physical_length);
    }

    place<common>(out, in);
    if (in.bit(L(2, 7))) {
        place<label_array>(out, in);
        return finish(out, physical, physical_length);
    }
    place<flags>(out, in);
    if (in.bit(L(2, 3))) {
        place<l2_3_set>(out, in);
        return finish(out, physical, physical_length);
    }
    if (in.bit(L(2, 4))) {
        place<l2_4_set>(out, in);
        return finish(out, physical, physical_length);
    }

    if (in.bit(L(1, 1))) {
        place<protected_path>(out, in);
        if (in.bits(L(0, 1, 0)) != 0 || in.bit(L(0, 7)) || in.bit(L(1, 0))) {
            place<protected_path_flagged>(out, in);
        } else if (in.bit(L(1, 5))) {
            place<protected_path_triple>(out, in);
        }
    } else if (in.bit(L(1, 3))) {
        place<l1_3_set>(out, in);
    } else {
        place<plain>(out, in);
        if (in.bit(L(2, 5))) {
            place<plain_two_triples>(out, in);
        } else {
            place<plain_one_triple>(out, in);
        }
    }

    place<first_label>(out, in);
    if (in.bit(L(0, 4))) {
        place<l0_4_set>(out, in);
        if (in.bit(L(0, 3))) {
            place<l0_4_and_l0_3_set>(out, in);
        } else {
            place<l0_4_set_l0_3_clear>(out, in);
        }
    } else if (!in.bit(L(2, 5))) {
        place<second_label>(out, in);
    }
    if (in.bit(L(156, 0))) {
        place<l156_0_set>(out, in);
        if (in.bit(L(156, 1))) {
            place<l156_1_set>(out, in);
        }
    }
    place<last_values>(out, in);
    if (!in.bit(L(1, 3))) {
        place<last_byte>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t nr_ldi_entry_st_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored>(out, in);
    if (in.bit(P(1, 3))) {
        place<restored_protected_path>(out, in);
    } else {
        place<restored_others>(out, in);
    }
    return finish(out, logical);
}
