// LISP instance to VRF, table 79. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 20;
constexpr std::size_t key_physical_size = 6;
constexpr std::size_t logical_size = 7;
constexpr std::size_t physical_size = 8;

constexpr Function code_of{
    "12 for 12, 13 for 19, 0 for any other value",
    [](Number value) -> Number { return choose(value == 12, 12, 0) | choose(value == 19, 13, 0); },
};

constexpr Layout key_with_code{
    "code",
    constant(P(0), 0),
    mapped(P(1), bytes(L(16), 4), code_of).named("code"),
    swapped(P(2), L(12), 4),
};

constexpr Layout key_with_flags{
    "flags",
    bit(P(0, 3), L(0, 0)),
    bits(P(0, 1, 0), L(2, 1, 0)),
    swapped(P(1), L(4), 3),
    copied(P(4), L(8), 2),
};

constexpr Layout header{
    header_byte(P(0)),
};

constexpr Layout result_triple{
    copied(P(1), L(4), 3),
};

constexpr Layout result_pair{
    copied(P(4), L(2), 2),
};

}  // namespace

std::int32_t lisp_instance_to_vrf_xlate_key(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    PhysicalRecord<key_physical_size> out;
    if (in.byte(L(10)) != 0) {
        place<key_with_code>(out, in);
    } else {
        place<key_with_flags>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t lisp_instance_to_vrf_xlate_result(const void* logical, std::int32_t, void* physical,
                                               std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<header>(out, in);
    if (in.byte(L(0)) != 0) {
        place<result_triple>(out, in);
    } else {
        place<result_pair>(out, in);
    }
    return finish(out, physical, physical_length);
}
