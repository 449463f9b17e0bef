// Policy-based-routing string, by name, written over a record that the caller has prepared.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 34;
constexpr std::size_t physical_size = 32;

// The other bits of P0, P1.7 and P6 stay as the caller prepared them.
constexpr Layout common{
    constant(P(0, 4), 1),
    constant(P(0, 0), 1),
    bit(P(1, 6), L(1, 5)),
    bit(P(1, 5), L(1, 6)),
    bit(P(1, 4), L(1, 1)),
    bit(P(1, 3), L(1, 7)),
    bit(P(1, 2), L(1, 2)),
    bit(P(1, 1), L(1, 0)),
    bit(P(1, 0), L(1, 3)),
    copied(P(2), L(8)),
    copied(P(7), L(9)),
    copied(P(8), L(10), 4).repeated(6, P(4), L(4)),
};

constexpr Layout two_bytes{
    "16-bit value",
    constant(P(3), 0),
    copied(P(4), L(2), 2),
};

constexpr Layout three_bytes{
    "three bytes",
    copied(P(3), L(4), 3),
};

}  // namespace

std::int32_t pbr_str_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    auto out = PhysicalRecord<physical_size>::kept_from(P(0), physical);
    place<common>(out, in);
    if (in.bit(L(1, 0))) {
        place<two_bytes>(out, in);
    } else {
        place<three_bytes>(out, in);
    }
    return finish(out, physical, physical_length);
}
