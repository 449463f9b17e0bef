// Flow-QoS hash, by name.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout key{
    copied(P(0), L(0), 22),
    bits(P(23, 7, 5), L(23, 7, 5)),
};

// No header: what the caller prepared in P3, P7 and the other bits of P0 stays.
constexpr Layout result{
    bit(P(0, 7), L(0, 7)),
    bit(P(0, 6), L(0, 6)),
    bit(P(0, 4), L(0, 4)),
    copied(P(1), L(1)),
    copied(P(2), L(2)),
    copied(P(4), L(4), 3),
    copied(P(8), L(8), 4),
    copied(P(12), L(12), 4),
};

}  // namespace

std::int32_t flow_qos_hash_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<key, 24, 24>(logical, physical, physical_length);
}

std::int32_t flow_qos_hash_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                           std::uint32_t* physical_length) {
    const LogicalSource<16> in{logical};
    auto out = PhysicalRecord<16>::kept_from(P(0), physical);
    place<result>(out, in);
    return finish(out, physical, physical_length);
}
