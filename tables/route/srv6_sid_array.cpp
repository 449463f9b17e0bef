// SRv6 segment identifiers, table 115: a list of four, or an information record with up to four. Read back by the
// generic reverse. The reverse of the SRH encapsulation, which restores nothing, stands here too.

#include "frame/helpers.h"
#include "frame/srv6_codes.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 80;
constexpr std::size_t physical_size = 32;

constexpr std::uint32_t most_sids = 4;

// Of the 16 bytes of an identifier bytes 1 to 6 are carried.
constexpr Layout list{
    "SID list",
    header_byte(P(0), 0x91),
    bits(P(1, 3, 0), L(1, 3, 0)),
    copied(P(2), L(17), 6).repeated(4, P(6), L(16)).named("SID"),
};

constexpr Layout information{
    "information record",
    bit(P(0, 6), L(1, 0)),
    header_byte(P(0, 5, 0)),
    mapped(P(1, 7, 3), bytes(L(4), 4), srv6_information).named("SRv6 function code"),
    bits(P(1, 2, 0), L(2, 2, 0)).named("number of SIDs"),
};

constexpr Layout sid_0{
    "SID 0",
    copied(P(2), L(17), 6).named("SID"),
};

constexpr Layout sid_1{
    "SID 1",
    copied(P(8), L(33), 6).named("SID"),
};

constexpr Layout sid_2{
    "SID 2",
    copied(P(14), L(49), 6).named("SID"),
};

constexpr Layout sid_3{
    "SID 3",
    copied(P(20), L(65), 6).named("SID"),
};

}  // namespace

std::int32_t srv6_sida_key_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t srv6_array_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    if (!in.bit(L(0, 0))) {
        return NPXLATE_INVALID;
    }
    PhysicalRecord<physical_size> out;
    place<list>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t srv6_info_res_xlate(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    if (in.bit(L(0, 0))) {
        return NPXLATE_INVALID;
    }
    PhysicalRecord<physical_size> out;
    place<information>(out, in);
    const Number sids = in.byte(L(2));
    if (sids > most_sids) {
        out.store(physical);
        return NPXLATE_OUT_OF_RANGE;
    }
    if (sids > 0) {
        place<sid_0>(out, in);
    }
    if (sids > 1) {
        place<sid_1>(out, in);
    }
    if (sids > 2) {
        place<sid_2>(out, in);
    }
    if (sids > 3) {
        place<sid_3>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t srv6_sida_res_xlate(const void* logical, std::int32_t logical_length, void* physical,
                                 std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    // Neither status is passed on: a length that is not stored is the only sign of a failure.
    if (in.bit(L(0, 0))) {
        srv6_array_res_xlate(logical, logical_length, physical, physical_length);
    } else {
        srv6_info_res_xlate(logical, logical_length, physical, physical_length);
    }
    return NPXLATE_OK;
}

std::int32_t ipv6_srh_encap_logical_res_xlate(const void*, std::int32_t, void*) { return NPXLATE_OK; }
