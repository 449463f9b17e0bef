// Recursive load-distribution entry, table 12: points at further entries and carries a path count. Read back by the
// generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 36;
constexpr std::size_t physical_size = 16;

constexpr std::uint32_t most_paths = 3;

constexpr Layout flags{
    bit(P(0, 7), L(0, 4)),
    bit(P(0, 6), L(0, 3)),
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 4), L(1, 3)),
    bit(P(1, 3), L(0, 0)),
    bit(P(1, 2), L(1, 4)),
    bit(P(1, 1), L(0, 2)),
    bit(P(1, 0), L(0, 1)),
    bit(P(2, 7), L(0, 6)),
    bit(P(2, 6), L(0, 5)),
    copied(P(12), L(22)),
};

constexpr Layout l1_4_set{
    copied(P(12), L(23)),  // in place of L22
};

constexpr Layout values{
    mapped(P(7), L(8), hop_byte).named("hop count"),
    copied(P(8), L(9), 4),
};

constexpr Layout l1_3_set{
    "label",
    label(P(13), L(32), 1).named("label"),
};

constexpr Layout l0_1_set{
    run(P(4, 0), L(4, 1), 24),
    also(bit(P(6, 4), L(4, 0))),
};

constexpr Layout l0_1_clear{
    copied(P(4), L(4), 3),
};

}  // namespace

std::int32_t r_ldi_key_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t r_ldi_entry_st_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<flags>(out, in);
    Number paths = in.byte(L(2));
    if (paths > most_paths) {
        paths = 0;
        change_input<1>(in, L(2), 0);
    }
    put(out, P(3), 3 * paths + 4, "path count");
    if (in.bit(L(1, 4))) {
        if (in.bit(L(0, 0))) {
            out.store(physical);
            return NPXLATE_NOT_SUPPORTED;
        }
        put(out, P(3), 6U * in.byte(L(3)) + 2);
        place<l1_4_set>(out, in);
    }
    place<values>(out, in);
    if (in.bit(L(1, 3))) {
        place<l1_3_set>(out, in);
    }
    if (in.bit(L(0, 1))) {
        place<l0_1_set>(out, in);
    } else {
        place<l0_1_clear>(out, in);
    }
    return finish(out, physical, physical_length);
}
