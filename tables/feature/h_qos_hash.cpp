// Hierarchical-QoS hash, table 3. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 34;
constexpr std::size_t physical_size = 32;

constexpr unsigned ip_protocol_tcp = 6;
constexpr unsigned ip_protocol_udp = 17;

constexpr Layout key{
    copied(P(0), L(0), 2),
    copied(P(2), L(2), 2),
    copied(P(4), L(4), 2),
    copied(P(6), L(6)),
    bits(P(7, 7, 6), L(7, 1, 0)),
    bits(P(7, 5, 4), L(7, 3, 2)),
    bit(P(7, 3), L(7, 4)),
    bit(P(7, 2), L(7, 5)),
    bits(P(7, 1, 0), L(7, 7, 6)),
};

constexpr Layout common{
    bit(P(0, 7), L(0, 4)),
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    bits(P(3, 7, 1), L(26, 7, 1)),
    run(P(8, 0), L(1, 0), 20),
    run(P(10, 4), L(25, 0), 8),
    also(run(P(10, 6), L(12, 0), 2)),
    copied(P(12), L(27)),
    copied(P(13), L(29)),
    copied(P(14), L(31)),
    copied(P(15), L(33)),
    copied(P(16), L(9), 3),
    bit(P(19, 7), L(20, 0)),
    bit(P(19, 6), L(20, 1)),
    bit(P(19, 5), L(20, 2)),
    bit(P(19, 4), L(20, 3)),
    bit(P(19, 2), L(20, 5)),
    bit(P(19, 1), L(20, 6)),
    bit(P(19, 0), L(20, 7)),
    copied(P(20), L(13), 3),
    copied(P(23), L(16)),
    copied(P(24), L(17), 3),
    bits(P(27, 5, 0), L(12, 7, 2)),
    copied(P(28), L(21), 3),
};

constexpr Layout protocols{
    "IP protocol numbers",
    constant(P(1), ip_protocol_tcp),
    constant(P(2), ip_protocol_udp),
};

}  // namespace

std::int32_t h_qos_ez_xlate_hash_key(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<key, 8, 8>(logical, physical, physical_length);
}

std::int32_t h_qos_ez_xlate_hash_result(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(20, 0))) {
        place<protocols>(out, in);
    }
    return finish(out, physical, physical_length);
}
