// Video monitoring: flows, table 48, whose key is the generic one, interfaces, table 49, and RTP payload types,
// table 84. All read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t flow_logical_size = 24;
constexpr std::size_t flow_physical_size = 32;

constexpr Layout flow{
    constant(P(0, 7), 1),
    bit(P(0, 6), L(0, 6)),
    bit(P(0, 5), L(0, 7)),
    header_byte(P(0, 4, 0)),  // with P0.7 this table's header 0x91
    bit(P(1, 5), L(0, 5)),
    copied(P(4), L(3), 2),
    copied(P(6), L(5), 2),
    copied(P(8), L(15), 3),
};

constexpr Layout flow_l0_7_set{
    "optional group",
    copied(P(11), L(11), 4),
};

constexpr Layout flow_l0_6_set{
    "optional group",
    copied(P(11), L(19), 2),
    copied(P(13), L(21), 2),
    copied(P(15), L(18)),
    copied(P(16), L(23)),
};

constexpr Layout interface_key{
    copied(P(0), L(0), 2),
    copied(P(2), L(2), 2),
    copied(P(4), L(4), 2),
    constant(P(6), 4),
};

constexpr Layout interface_result{
    header_byte(P(0), 0x31),  // this table's header
    copied(P(3), L(0)),
    copied(P(4), L(7), 3),
    copied(P(7), L(15)),
    copied(P(10), L(5), 2),
    copied(P(12), L(11), 3),
};

constexpr Layout payload_type_key{
    swapped(P(0), L(0), 2),
};

constexpr Layout payload_type_result{
    header_byte(P(0)),
    copied(P(4), L(0), 4),
};

}  // namespace

std::int32_t vidmon_str_xlate_result(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    const LogicalSource<flow_logical_size> in{logical};
    PhysicalRecord<flow_physical_size> out;
    place<flow>(out, in);
    if (in.bit(L(0, 7))) {
        place<flow_l0_7_set>(out, in);
    }
    if (in.bit(L(0, 6))) {
        place<flow_l0_6_set>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t vidmon_intf_hash_key_xlate_key(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return place_only<interface_key, 6, 7>(logical, physical, physical_length);
}

std::int32_t vidmon_intf_str_xlate_result(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    return place_only<interface_result, 16, 16>(logical, physical, physical_length);
}

std::int32_t vidmon_rtp_pt_xlate_key(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<payload_type_key, 2, 2>(logical, physical, physical_length);
}

std::int32_t vidmon_rtp_pt_xlate_result(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<payload_type_result, 4, 8>(logical, physical, physical_length);
}
