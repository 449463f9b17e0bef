// IP multicast node, table 26: the state of a route.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 48;
constexpr std::size_t physical_size = 32;

// What the reverse takes back as it stands.
constexpr Layout fields{
    "flags and values",
    bit(P(0, 7), L(0, 7)),
    bit(P(0, 6), L(40, 3)),
    bit(P(0, 5), L(1, 3)),
    bit(P(1, 7), L(0, 0)),
    bit(P(1, 6), L(29, 0)),
    bit(P(1, 5), L(40, 2)),
    bit(P(1, 3), L(0, 4)),
    bit(P(1, 2), L(0, 6)),
    bit(P(1, 1), L(40, 0)),
    bit(P(2, 7), L(1, 2)),
    bit(P(2, 6), L(40, 1)),
    inverted(P(2, 5), L(1, 0)),
    bit(P(2, 3), L(0, 3)),
    bit(P(2, 2), L(0, 1)),
    bit(P(2, 1), L(0, 5)),
    bit(P(2, 0), L(0, 2)),
    copied(P(3), L(20), 3),
    swapped(P(9), L(4), 4),
    swapped(P(13), L(8), 3),
    swapped(P(16), L(12), 3),
    swapped(P(19), L(24), 3),
    swapped(P(22), L(16), 4),
    swapped(P(26), L(30), 2),
};

// P6-8 are a type code in bits 23-20 and an index in bits 19-0, the key of table 52. The bits of L40-43 above the index
// stay in it: the code is ORed to them.
constexpr Layout header_and_index{
    "header and index",
    constant(P(0, 4), 1),
    constant(P(0, 0), 1),
    bit(P(1, 4), L(28, 0)),
    copied(P(6), L(41), 3).named("index"),
};

constexpr Layout own_code{
    "type code",
    also(bits(P(8, 7, 4), L(36, 3, 0))).named("type"),
};

constexpr Layout shared_code{
    "type code of types 3 and 4",
    also(constant(P(8, 7, 4), 3)),
};

constexpr Layout suppressed{
    constant(P(1, 6), 0),
};

constexpr Layout restored_fields = mirrored(fields);

// Neither the type code nor P1.4 is restored; intended.
constexpr Layout restored_index{
    "index",
    run(L(41, 0), P(6, 0), 20).named("index"),
};

}  // namespace

std::int32_t ipmc_node_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t ipmc_node_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<fields>(out, in);
    place<header_and_index>(out, in);
    const Number type = in.little32(L(36));
    if (type == 3 || type == 4) {
        place<shared_code>(out, in);
    } else {
        place<own_code>(out, in);
    }
    if (in.bit(L(1, 2))) {
        place<suppressed>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t ipmc_node_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<logical_size> out;
    place<restored_fields>(out, in);
    place<restored_index>(out, in);
    return finish(out, logical);
}
