// Multicast encapsulation, types 2, 3 and 4 of table 52; and table 52 itself, which hands its types 1 and 5 on to MLC.

#include "frame/helpers.h"
#include "frame/within.h"

using namespace npxlate;

NPXLATE_CALLS_WITHIN(ipmc_mlc_key_xlate)
NPXLATE_CALLS_WITHIN(ipmc_mlc_res_xlate)

namespace {

constexpr std::size_t key_logical_size = 8;
constexpr std::size_t key_physical_size = 3;
constexpr std::size_t logical_size = 42;
constexpr std::size_t restored_size = 48;
constexpr std::size_t physical_size = 32;

// The word of P6-8 of the IP multicast node: a type code in bits 23-20, an index in bits 19-0. An index of more than 20
// bits is ORed into the code.
constexpr Layout type_2_key{
    "type 2",
    copied(P(0), L(4), 3).named("index"),
    also(constant(P(2, 7, 4), 2)),
};

constexpr Layout types_3_and_4_key{
    "types 3 and 4",
    copied(P(0), L(4), 3).named("index"),
    also(constant(P(2, 7, 4), 3)),
};

constexpr Layout header{
    header_byte(P(0)),
};

constexpr Layout type_2{
    "type 2",
    constant(P(1, 7), 1),
    copied(P(4), L(24), 2),
    copied(P(6), L(8), 3),
    swapped(P(10), L(12), 4),
    copied(P(14), L(16), 2),
    swapped(P(16), L(20), 3),
    copied(P(19), L(26), 2),
};

constexpr Layout type_3{
    "type 3",
    constant(P(1, 6), 1),
    bit(P(1, 5), L(4, 0)),
    bit(P(1, 4), L(4, 1)),
    bit(P(2, 1), L(4, 2)),
    bit(P(2, 0), L(4, 3)),
    swapped(P(4), L(8), 3),
    swapped(P(7), L(12), 3),
    copied(P(10), L(16), 3),
    copied(P(13), L(20), 3),
    swapped(P(16), L(32), 3),
    swapped(P(19), L(36), 3),
    swapped(P(27), L(24), 3),
    swapped(P(30), L(28), 2),
};

constexpr Layout type_4{
    "type 4",
    constant(P(0, 7), 1),
    bit(P(0, 6), L(4, 1)),
    swapped(P(4), L(8), 3),
    swapped(P(7), L(12), 3),
    swapped(P(10), L(16), 3),
    swapped(P(13), L(20), 3),
    copied(P(16), L(24), 3),
    copied(P(19), L(28), 2),
    copied(P(21), L(30)),
    label_bits(P(22), L(32)).named("label"),
    swapped(P(27), L(37), 3),
    swapped(P(30), L(40), 2),
};

// Not restored; intended.
constexpr Layout type_4_label_flag{
    bit(P(24, 0), L(36, 0)),
};

constexpr Layout restored_type_2 = mirrored(type_2);
constexpr Layout restored_type_3 = mirrored(type_3);
constexpr Layout restored_type_4 = mirrored(type_4);

NPXLATE_INLINE Number type_of(const void* logical) { return LogicalSource<4>{logical}.little32(L(0)); }

}  // namespace

std::int32_t ipmc_mofrr_mvpn_key_xlate(const void* logical, std::int32_t logical_length, void* physical,
                                       std::uint32_t* physical_length) {
    const Number type = type_of(logical);
    if (type == 1 || type == 5) {
        return NPXLATE_WITHIN(ipmc_mlc_key_xlate)(logical, logical_length, physical, physical_length);
    }
    if (type >= 2 && type <= 4) {
        return ipmc_encap_info_key_xlate(logical, logical_length, physical, physical_length);
    }
    return NPXLATE_INVALID;
}

std::int32_t ipmc_mofrr_mvpn_res_xlate(const void* logical, std::int32_t logical_length, void* physical,
                                       std::uint32_t* physical_length) {
    const Number type = type_of(logical);
    if (type == 1 || type == 5) {
        return NPXLATE_WITHIN(ipmc_mlc_res_xlate)(logical, logical_length, physical, physical_length);
    }
    if (type >= 2 && type <= 4) {
        return mvpn_encap_info_res_xlate(logical, logical_length, physical, physical_length);
    }
    return NPXLATE_INVALID;
}

std::int32_t ipmc_encap_info_key_xlate(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    const Number type = type_of(logical);
    if (type == 2) {
        return place_only<type_2_key, key_logical_size, key_physical_size>(logical, physical, physical_length);
    }
    if (type == 3 || type == 4) {
        return place_only<types_3_and_4_key, key_logical_size, key_physical_size>(logical, physical, physical_length);
    }
    // The caller's bytes stay, under the length of a key.
    *physical_length = key_physical_size;
    return NPXLATE_OK;
}

std::int32_t mvpn_encap_info_res_xlate(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<header>(out, in);
    switch (each_from<2, 4>(in.little32(L(0)))) {
        case 2:
            place<type_2>(out, in);
            break;
        case 3:
            place<type_3>(out, in);
            break;
        case 4:
            place<type_4>(out, in);
            place<type_4_label_flag>(out, in);
            break;
        default:
            break;
    }
    return finish(out, physical, physical_length);
}

std::int32_t ipmc_encap_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical,
                                          const std::uint32_t* entry_type) {
    const Number type = given(entry_type);
    if (type < 1 || type > 5 || !has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    const PhysicalSource<physical_size> in{physical};
    LogicalRecord<restored_size> out;
    put_little<4>(out, L(0), type);
    switch (each_from<2, 4>(type)) {
        case 2:
            place<restored_type_2>(out, in);
            break;
        case 3:
            place<restored_type_3>(out, in);
            break;
        case 4:
            place<restored_type_4>(out, in);
            break;
        default:
            break;
    }
    return finish(out, logical);
}
