// L2VPN load distribution, table 27: up to four labelled paths, or one plain path. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 36;
constexpr std::size_t physical_size = 32;

// Counts above 64 are taken as 1 here too.
constexpr Function one_path{
    "1 for a count of 1 or of more than 64",
    [](Number count) -> Number { return count == 1 || count > 64; },
};

constexpr Layout common{
    header_byte(P(0)),
    bit(P(1, 1), L(0, 4)),
    inverted(P(1, 0), L(0, 4)),
    bit(P(2, 3), L(0, 2)),
    bit(P(2, 0), L(0, 4)),
    mapped(P(3), L(4), hop_byte).named("path count"),
};

constexpr Layout plain{
    "plain path",
    mapped(P(1, 2), L(4), one_path).named("path count"),
    copied(P(4), L(8), 3),
};

constexpr Layout labelled{
    "labelled paths",
    any(P(2, 6), L(12, 0), L(17, 0), L(22, 0), L(27, 0), bytes(L(32), 3)),
    label(P(4), L(8), L(12, 0)).repeated(4, P(3), L(5)).named("label"),
    copied(P(16), L(28), 3),
    copied(P(19), L(32), 3),
};

}  // namespace

std::int32_t l2_vpn_ldi_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return copy_key<2>(logical, physical, physical_length);
}

std::int32_t l2_vpn_ldi_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<common>(out, in);
    if (in.bit(L(0, 4))) {
        place<labelled>(out, in);
    } else {
        place<plain>(out, in);
    }
    return finish(out, physical, physical_length);
}
