// Encapsulation outgoing-list entry, table 53: one copy of a packet and what it is wrapped into.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 7;
constexpr std::size_t key_physical_size = 6;
constexpr std::size_t logical_size = 32;
constexpr std::size_t physical_size = 20;

constexpr Layout key{
    copied(P(0), L(2)),
    copied(P(1), L(0), 2),
    copied(P(3), L(4), 3),
};

constexpr Layout common{
    header_byte(P(0)),
    bit(P(1, 4), L(4, 0)),
};

constexpr Layout type_1{
    "type 1",
    constant(P(0, 6), 1),
    inverted(P(1, 5), L(4, 1)),
    swapped(P(2), L(8), 4),
    swapped(P(6), L(12), 4),
    copied(P(10), L(16), 2),
};

// The label stands twice: least significant byte first, with a nibble above it, and as a label field.
constexpr Layout type_2{
    "type 2",
    constant(P(0, 7), 1),
    inverted(P(1, 5), L(4, 1)),
    copied(P(2), L(8), 3).named("label"),
    also(bits(P(4, 7, 4), L(12, 3, 0))),
    label(P(5), L(8), L(12, 0)).named("label"),
};

constexpr Layout type_3{
    "type 3",
    constant(P(0, 5), 1),
    copied(P(2), L(12), 3),
    swapped(P(5), L(16), 3),
    swapped(P(8), L(20), 3),
};

constexpr Layout type_4{
    "type 4",
    bit(P(1, 7), L(4, 3)),
    constant(P(1, 6), 1),
    constant(P(1, 0), 1),
    swapped(P(2), L(8), 4),
    swapped(P(6), L(12), 4),
};

constexpr Layout all_types{
    swapped(P(12), L(24), 2),
    swapped(P(14), L(26), 2),
    swapped(P(16), L(28), 4),
};

// The reverse does not swap back what types 1 and 4 swap, swaps what type 1 does not, and takes only the label field of
// type 2, without its flag; all of it intended.
constexpr Layout restored_common = mirrored(common);

constexpr Layout restored_type_1{
    "type 1",
    constant(L(0), 1),
    inverted(L(4, 1), P(1, 5)),
    copied(L(8), P(2), 8),
    swapped(L(16), P(10), 2),
};

constexpr Layout restored_type_2{
    "type 2",
    constant(L(0), 2),
    inverted(L(4, 1), P(1, 5)),
    label(L(8), P(5)).named("label"),
};

constexpr Layout restored_type_3{
    "type 3",
    constant(L(0), 3),
    copied(L(12), P(2), 3),
    swapped(L(16), P(5), 3),
    swapped(L(20), P(8), 3),
};

constexpr Layout restored_type_4{
    "type 4",
    constant(L(0), 4),
    bit(L(4, 3), P(1, 7)),
    copied(L(8), P(2), 8),
};

constexpr Layout restored_all_types = mirrored(all_types);

}  // namespace

std::int32_t encap_ole_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t encap_ole_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    switch (each_from<1, 4>(in.little32(L(0)))) {
        case 1:
            place<type_1>(out, in);
            break;
        case 2:
            place<type_2>(out, in);
            break;
        case 3:
            place<type_3>(out, in);
            break;
        case 4:
            place<type_4>(out, in);
            break;
        default:
            out.store(physical);
            return NPXLATE_INVALID;
    }
    place<all_types>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t encap_ole_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored_common>(out, in);
    if (in.bit(P(0, 6))) {
        place<restored_type_1>(out, in);
    } else if (in.bit(P(0, 7))) {
        place<restored_type_2>(out, in);
    } else if (in.bit(P(0, 5))) {
        place<restored_type_3>(out, in);
    } else if (in.bit(P(1, 6))) {
        place<restored_type_4>(out, in);
    } else {
        out.store(logical);
        return NPXLATE_INVALID;
    }
    place<restored_all_types>(out, in);
    return finish(out, logical);
}
