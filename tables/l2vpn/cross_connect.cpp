// Cross-connect, table 23. Its type, 1 to 11, is a number in the logical record and a set of marks in the physical one.

#include "frame/layer2_keys.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 92;
constexpr std::size_t physical_size = 32;

constexpr Function minus_one{
    "- 1, 0 gives 255",
    [](Number counter) -> Number { return counter - 1; },
};

constexpr Function three_or_four{
    "1 for 3 and 4, 0 for any other value",
    [](Number code) -> Number { return code == 3 || code == 4; },
};

constexpr Function selector_of_bits{
    "0 if bit 0 is set, else 2 if bit 2 is, else 1 if bit 1 is, else 0",
    [](Number bits) -> Number {
        return choose((bits & 1) != 0, 0, choose((bits & 4) != 0, 2, bits >> 1 & 1));
    },
};

constexpr Layout flags{
    bit(P(0, 5), L(0, 6)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 2), L(4, 4)),
    bit(P(1, 3), L(3, 3)),
    bit(P(1, 4), L(0, 2)),
    bit(P(1, 5), L(0, 7)),
    bit(P(1, 6), L(1, 0)),
    any(P(2, 0), L(2, 7), bytes(L(53), 3), L(3, 0)),
    any(P(2, 1), L(3, 6, 3)),
    bit(P(2, 2), L(0, 5)),
    bit(P(2, 3), L(2, 6)),
    bit(P(2, 7), L(3, 1)),
    bit(P(3, 0), L(1, 2)),
    bit(P(3, 1), L(1, 3)),
    bit(P(3, 2), L(1, 4)),
    bit(P(3, 3), L(0, 0)),
    bit(P(3, 4), L(0, 1)),
    bit(P(3, 5), L(1, 7)),
    bit(P(3, 6), L(1, 6)),
    bit(P(3, 7), L(3, 7)),
};

constexpr Layout types_1_2{
    inverted(P(1, 0), L(1, 1)),
    copied(P(4), L(56), 2),
    copied(P(6), L(60), 2),
    copied(P(8), L(48), 4),
    constant(P(13), 0),
    mapped(P(14), L(52), plus_one).named("counter"),
    bit(P(30, 7), L(3, 4)),
    bit(P(30, 6), L(3, 5)),
    bit(P(30, 5), L(3, 6)),
};

constexpr Layout type_1{
    "type 1",
    constant(P(1, 7), 1),
};

constexpr Layout type_2{
    "type 2",
    constant(P(0, 6), 1),
    copied(P(12), L(64)),
    copied(P(15), L(68)),
};

constexpr Layout types_3_4{
    "types 3 and 4",
    constant(P(0, 7), 1),
    inverted(P(1, 0), L(1, 1)),
    copied(P(4), L(76), 3),
    copied(P(12), L(57)),
    copied(P(13), L(56)),
    copied(P(14), L(58)),
    copied(P(15), L(59)),
    bit(P(30, 7), L(3, 4)),
    bit(P(30, 6), L(3, 5)),
    bit(P(30, 5), L(3, 6)),
};

constexpr Layout types_3_4_label{
    "types 3 and 4, label",
    label(P(7), L(60), 1).named("label"),
    copied(P(10), L(72), 2),
};

constexpr Layout types_3_4_value{
    "types 3 and 4, 20-bit value",
    run(P(7, 0), L(64, 0), 20),
};

constexpr Layout type_4{
    "type 4",
    constant(P(2, 5), 1),
};

constexpr Layout types_5_6_7{
    "types 5, 6 and 7",
    constant(P(2, 4), 1),
    copied(P(4), L(56), 3),
};

constexpr Layout type_6{
    "type 6",
    constant(P(0, 7), 1),
    constant(P(2, 5), 1),
};

constexpr Layout type_7{
    "type 7",
    constant(P(0, 7), 1),
};

// Only the first of the two labels carries a marker.
constexpr Layout types_9_10{
    "types 9 and 10",
    inverted(P(1, 0), L(1, 1)),
    constant(P(1, 1), 1),
    constant(P(2, 6), 1),
    copied(P(4), L(60), 2),
    label(P(6), L(62), 1).named("label"),
    label(P(9), L(67), 0).named("label"),
    copied(P(12), L(57)),
    copied(P(13), L(56)),
    copied(P(14), L(58)),
    copied(P(15), L(59)),
    copied(P(30), L(72)),
};

constexpr Layout types_9_10_summary{
    any(P(22, 7), L(3, 5, 4)),
};

constexpr Layout type_10{
    "type 10",
    constant(P(2, 5), 1),
};

constexpr Layout type_11{
    "type 11",
    copied(P(4), L(56), 3),
    copied(P(8), L(68), 3),
    copied(P(11), L(64), 4),
    constant(P(26, 3), 1),
    bit(P(30, 7), L(3, 4)),
    bit(P(30, 6), L(3, 5)),
};

constexpr Layout tail_l1_5_set{
    copied(P(16), L(44), 2),
    constant(P(18), 0),
    copied(P(19), L(28), 3),
    bits(P(22, 1, 0), L(32, 1, 0)),
    copied(P(23), L(36), 3),
    bit(P(26, 4), L(1, 5)),
    copied(P(31), L(24)),
};

constexpr Layout tail_l1_5_clear{
    copied(P(16), L(40), 4),
    mapped(P(20, 7), bytes(L(12), 4), three_or_four),
};

constexpr Layout tail{
    bit(P(26, 6), L(2, 4)),
    bit(P(26, 5), L(3, 0)),
    bit(P(26, 2), L(2, 0)),
    bits(P(26, 1, 0), L(2, 2, 1)),
    run(P(27, 4), L(53, 0), 20),
    bit(P(27, 3), L(4, 0)),
    bits(P(27, 2, 0), L(4, 3, 1)),
};

// The reverse goes by the marks, takes L3.2 from one of them, and leaves out L2.7, L12-15 and what P2.0 and P2.1 sum
// up; all of it intended.
constexpr Layout restored_flags{
    bit(L(0, 0), P(3, 3)),
    bit(L(0, 1), P(3, 4)),
    bit(L(0, 2), P(1, 4)),
    bit(L(0, 5), P(2, 2)),
    bit(L(0, 6), P(0, 5)),
    bit(L(0, 7), P(1, 5)),
    bit(L(1, 0), P(1, 6)),
    inverted(L(1, 1), P(1, 0)),
    bit(L(1, 2), P(3, 0)),
    bit(L(1, 3), P(3, 1)),
    bit(L(1, 4), P(3, 2)),
    bit(L(1, 5), P(26, 4)),
    bit(L(1, 6), P(3, 6)),
    bit(L(1, 7), P(3, 5)),
    bit(L(2, 0), P(26, 2)),
    bits(L(2, 2, 1), P(26, 1, 0)),
    bit(L(2, 4), P(26, 6)),
    bit(L(2, 6), P(2, 3)),
    bit(L(3, 0), P(26, 5)),
    bit(L(3, 1), P(2, 7)),
    bit(L(3, 2), P(1, 1)),
    bit(L(3, 3), P(1, 3)),
    bit(L(3, 7), P(3, 7)),
    bit(L(4, 0), P(27, 3)),
    bits(L(4, 3, 1), P(27, 2, 0)),
    bit(L(4, 4), P(1, 2)),
    run(L(53, 0), P(27, 4), 20),
};

constexpr Layout restored_1_2{
    bit(L(3, 4), P(30, 7)),
    bit(L(3, 5), P(30, 6)),
    bit(L(3, 6), P(30, 5)),
    copied(L(48), P(8), 4),
    mapped(L(52), P(14), minus_one).named("counter"),
    copied(L(56), P(4), 2),
    copied(L(60), P(6), 2),
};

constexpr Layout restored_1{
    "type 1",
    constant(L(8), 1),
};

constexpr Layout restored_2{
    "type 2",
    constant(L(8), 2),
    copied(L(64), P(12)),
    copied(L(68), P(15)),
};

constexpr Layout restored_3_4{
    bit(L(3, 4), P(30, 7)),
    bit(L(3, 5), P(30, 6)),
    bit(L(3, 6), P(30, 5)),
    copied(L(56), P(13)),
    copied(L(57), P(12)),
    copied(L(58), P(14)),
    copied(L(59), P(15)),
    copied(L(76), P(4), 3),
};

constexpr Layout restored_3_4_label{
    "label",
    label(L(60), P(7)).named("label"),
    copied(L(72), P(10), 2),
};

constexpr Layout restored_3_4_value{
    "20-bit value",
    run(L(64, 0), P(7, 0), 20),
};

constexpr Layout restored_3{
    "type 3",
    constant(L(8), 3),
};

constexpr Layout restored_4{
    "type 4",
    constant(L(8), 4),
};

constexpr Layout restored_9_10{
    bit(L(3, 4), P(22, 7)),
    bit(L(3, 5), P(22, 7)),
    copied(L(56), P(13)),
    copied(L(57), P(12)),
    copied(L(58), P(14)),
    copied(L(59), P(15)),
    copied(L(60), P(4), 2),
    label(L(62), P(6), L(66, 0)).named("label"),
    label(L(67), P(9), L(71, 0)).named("label"),
    copied(L(72), P(30)),
};

constexpr Layout restored_9{
    "type 9",
    constant(L(8), 9),
};

constexpr Layout restored_10{
    "type 10",
    constant(L(8), 10),
};

constexpr Layout restored_11{
    "type 11",
    bit(L(3, 4), P(30, 7)),
    bit(L(3, 5), P(30, 6)),
    constant(L(8), 11),
    copied(L(56), P(4), 3),
    mapped(L(60), P(7), selector_of_bits).named("selector"),
    copied(L(64), P(11), 4),
    copied(L(68), P(8), 3),
};

constexpr Layout restored_5_6_7{
    copied(L(56), P(4), 3),
};

constexpr Layout restored_5{
    "type 5, and what was type 8",
    constant(L(8), 5),
};

constexpr Layout restored_6{
    "type 6",
    constant(L(8), 6),
};

constexpr Layout restored_7{
    "type 7",
    constant(L(8), 7),
};

constexpr Layout restored_p26_4_set{
    copied(L(24), P(31)),
    copied(L(28), P(19), 3),
    bits(L(32, 1, 0), P(22, 1, 0)),
    copied(L(36), P(23), 3),
    copied(L(44), P(16), 3),
};

constexpr Layout restored_p26_4_clear{
    copied(L(40), P(16), 4),
};

constexpr std::uint8_t highest_selector = 2;

}  // namespace

std::int32_t xid_type_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_cross_connect_key(logical, physical, physical_length);
}

std::int32_t xid_type_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<flags>(out, in);
    switch (each_from<1, 11>(in.little32(L(8)))) {
        case 1:
            place<types_1_2>(out, in);
            place<type_1>(out, in);
            break;
        case 2:
            place<types_1_2>(out, in);
            place<type_2>(out, in);
            break;
        case 3:
        case 4:
            place<types_3_4>(out, in);
            if (in.bit(L(4, 4))) {
                place<types_3_4_value>(out, in);
            } else {
                place<types_3_4_label>(out, in);
            }
            if (in.byte(L(8)) == 4) {
                place<type_4>(out, in);
            }
            break;
        case 5:
            place<types_5_6_7>(out, in);
            break;
        case 6:
            place<types_5_6_7>(out, in);
            place<type_6>(out, in);
            break;
        case 7:
            place<types_5_6_7>(out, in);
            place<type_7>(out, in);
            break;
        case 8:
            break;
        case 9:
        case 10:
            place<types_9_10>(out, in);
            if (in.bit(L(1, 5))) {
                place<types_9_10_summary>(out, in);
            }
            if (in.byte(L(8)) == 10) {
                place<type_10>(out, in);
            }
            break;
        case 11: {
            place<type_11>(out, in);
            const Number selector = in.byte(L(60));
            if (selector > highest_selector) {
                out.store(physical);
                return NPXLATE_INVALID;
            }
            put(out, P(7), Number{1} << selector);
            break;
        }
        default:
            out.store(physical);
            return NPXLATE_INVALID;
    }
    if (in.bit(L(1, 5))) {
        place<tail_l1_5_set>(out, in);
    } else {
        place<tail_l1_5_clear>(out, in);
    }
    place<tail>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t xid_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored_flags>(out, in);
    if (in.bit(P(1, 7))) {
        place<restored_1_2>(out, in);
        place<restored_1>(out, in);
    } else if (in.bit(P(0, 6))) {
        place<restored_1_2>(out, in);
        place<restored_2>(out, in);
    } else if (in.bit(P(0, 7)) && !in.bit(P(2, 4))) {
        place<restored_3_4>(out, in);
        if (in.bit(P(1, 2))) {
            place<restored_3_4_value>(out, in);
        } else {
            place<restored_3_4_label>(out, in);
        }
        if (in.bit(P(2, 5))) {
            place<restored_4>(out, in);
        } else {
            place<restored_3>(out, in);
        }
    } else if (in.bit(P(1, 1))) {
        place<restored_9_10>(out, in);
        if (in.bit(P(2, 5))) {
            place<restored_10>(out, in);
        } else {
            place<restored_9>(out, in);
        }
    } else if (in.bit(P(26, 3))) {
        place<restored_11>(out, in);
    } else if (!in.bit(P(0, 7))) {
        if (!in.bit(P(2, 5))) {
            place<restored_5_6_7>(out, in);
            place<restored_5>(out, in);
        }
    } else {
        // P2.4 is set, or the entry would be of type 3 or 4.
        place<restored_5_6_7>(out, in);
        if (in.bit(P(2, 5))) {
            place<restored_6>(out, in);
        } else {
            place<restored_7>(out, in);
        }
    }
    if (in.bit(P(26, 4))) {
        place<restored_p26_4_set>(out, in);
    } else {
        place<restored_p26_4_clear>(out, in);
    }
    return finish(out, logical);
}
