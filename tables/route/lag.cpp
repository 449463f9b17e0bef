// Link aggregation bundle, table 8.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 7;
constexpr std::size_t key_physical_size = 3;
constexpr std::size_t logical_size = 14;
constexpr std::size_t physical_size = 16;

constexpr Layout key{
    run(P(0, 0), L(4, 0), 12).named("bundle id"),
};

constexpr Layout result{
    bit(P(0, 7), L(0, 0)),
    bit(P(0, 6), L(0, 1)),
    bit(P(0, 5), L(0, 2)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(12)),
    virtual_queue_index(P(4), L(5), L(7)).named("virtual queue index"),
    copied(P(6), L(2), 2),
};

constexpr Layout member{
    "member",
    copied(P(8), L(4)).named("member"),
};

constexpr Function range_of_queue_bits{
    "8 for 3 (both bits set), 4 for 2 (the upper bit alone), 0 for any other",
    [](Number bits_11_and_10) -> Number { return choose(bits_11_and_10 == 3, 8, choose(bits_11_and_10 == 2, 4, 0)); },
};

// L0.2 and L12 do not come back, and of the queue index only the ten bits below its range; intended.
constexpr Layout restored{
    bit(L(0, 0), P(0, 7)),
    bit(L(0, 1), P(0, 6)),
    any(L(0, 3), P(8)),
    copied(L(2), P(6), 2),
    copied(L(4), P(8)).named("member"),
    copied(L(5), P(5)).named("virtual queue index"),
    bits(L(6, 1, 0), P(4, 1, 0)).named("virtual queue index"),
    mapped(L(7), P(4, 3, 2), range_of_queue_bits).named("virtual queue index range"),
};

}  // namespace

std::int32_t lag_type_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    PhysicalRecord<key_physical_size> out;
    place<key>(out, in);
    // Added, not ORed: from 64 on L6 carries into the code.
    put(out, P(2), 64 * apply(two_value_code, in.little32(L(0))) + in.byte(L(6)));
    return finish(out, physical, physical_length);
}

std::int32_t lag_type_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<result>(out, in);
    if (in.bit(L(0, 3))) {
        place<member>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t lag_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
