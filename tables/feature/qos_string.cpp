// QoS string, by name: twelve marking values in two groups, each with a code for the kind of marking it sets.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 36;
constexpr std::size_t physical_size = 32;

constexpr Layout result{
    bit(P(0, 7), L(0, 4)),
    bit(P(0, 6), L(0, 5)),
    bit(P(0, 5), L(0, 0)),
    header_byte(P(0, 4, 0)),
    bit(P(1, 7), L(1, 4)),
    bit(P(1, 6), L(1, 5)),
    bit(P(1, 5), L(1, 6)),
    bit(P(1, 4), L(1, 7)),
    bit(P(1, 3), L(1, 3)),
    bit(P(1, 2), L(0, 3)),
    bit(P(1, 1), L(0, 2)),
    bit(P(1, 0), L(0, 1)),
    bits(P(2, 7, 3), L(2, 4, 0)),
    bit(P(2, 2), L(31, 2)),
    bit(P(2, 1), L(31, 0)),
    constant(P(2, 0), 1),
    copied(P(3), L(6)),
    copied(P(4), L(4), 2),
    copied(P(6), L(28), 2),
    bit(P(8, 6), L(7, 7)).repeated(2, P(12), L(10)),  // group 1 and group 2
    bits(P(8, 5, 4), L(7, 1, 0)).repeated(2, P(12), L(10)),
    bits(P(8, 3, 2), L(7, 3, 2)).repeated(2, P(12), L(10)),
    bits(P(8, 1, 0), L(7, 5, 4)).repeated(2, P(12), L(10)),
    bits(P(9, 7, 4), L(32, 7, 4)).repeated(2, P(12), L(2)),
    bit(P(9, 3), L(32, 0)).repeated(2, P(12), L(2)),
    bits(P(9, 2, 0), L(32, 3, 1)).repeated(2, P(12), L(2)),
    copied(P(10), L(33)).repeated(2, P(12), L(2)),
    copied(P(11), L(30)),
    copied(P(23), L(27)),
};

// What a code says of its value: the bit of the kind mask, whose first byte is the low one, and a shift to the right.
struct Kind {
    std::uint16_t mask;
    std::uint8_t shift;
};

constexpr unsigned no_value = 15;

constexpr Kind kinds[16] = {
    {0x0080, 5},
    {0x0100, 2},
    {0x0200, 0},
    {0x0400, 0},
    {0x1000, 0},
    {0x2000, 0},
    {0x4000, 0},
    {0x8000, 0},
    {0x0040, 5},
    {0x0020, 2},
    {0, 0},
    {0x1000, 0},  // as code 4, on purpose
    {0, 0},
    {0, 0},
    {0x0800, 0},
    {0, 0},  // no value
};

struct Group {
    L pairs;  // three times a byte of two codes and two values
    P mask;   // two bytes, then six values
    const char* mask_words;
    const char* pair_1_words;
    const char* pairs_2_and_3_words;
};

constexpr Group group_1{
    L(8),
    P(12),
    "the kinds of the codes L8.7-4 and L8.3-0",
    "L9 and L10, shifted by their kinds in L8, in the order of the kinds, with bit 6 set; 0 for code 15",
    "L12, L13, L15 or L16, shifted by the kind in L8, with bit 6 set; 0 for code 15 in L11 or L14",
};

constexpr Group group_2{
    L(18),
    P(24),
    "the kinds of the codes L18.7-4 and L18.3-0",
    "L19 and L20, shifted by their kinds in L18, in the order of the kinds, with bit 6 set; 0 for code 15",
    "L22, L23, L25 or L26, shifted by the kind in L18, with bit 6 set; 0 for code 15 in L21 or L24",
};

NPXLATE_INLINE Number marking(Number code, Number shifted_value) {
    constexpr unsigned present = 0x40;
    return choose(code == no_value, 0, present | (shifted_value & 0x3f));
}

template <L pair>
NPXLATE_INLINE Number high_code(const LogicalSource<logical_size>& in) {
    return in.byte(pair) >> 4;
}
template <L pair>
NPXLATE_INLINE Number low_code(const LogicalSource<logical_size>& in) {
    return in.byte(pair) & 15;
}

// Pair 2 or 3, each value shifted as its place in pair 1 says.
template <L pair, P values>
NPXLATE_INLINE void put_pair(PhysicalRecord<physical_size>& out, const LogicalSource<logical_size>& in,
                             const Number& high_shift, const Number& low_shift, const char* words) {
    put(out, values, described(marking(high_code<pair>(in), in.byte(pair.after(1)) >> high_shift), words), "marking value");
    put(out, values.after(1), described(marking(low_code<pair>(in), in.byte(pair.after(2)) >> low_shift), words), "marking value");
}

template <const Group& group>
NPXLATE_INLINE void put_markings(PhysicalRecord<physical_size>& out, const LogicalSource<logical_size>& in) {
    constexpr L pair_1 = group.pairs;
    constexpr P values = group.mask.after(2);

    // Only the codes of pair 1 enter the mask, and their shifts serve all three pairs.
    const Number high_mask = entry_of(kinds, high_code<pair_1>(in), &Kind::mask);
    const Number high_shift = entry_of(kinds, high_code<pair_1>(in), &Kind::shift);
    const Number low_mask = entry_of(kinds, low_code<pair_1>(in), &Kind::mask);
    const Number low_shift = entry_of(kinds, low_code<pair_1>(in), &Kind::shift);
    const Number added = low_mask & ~high_mask;
    put_little<2>(out, group.mask, described(high_mask | added, group.mask_words), "kind mask");

    const Number high = in.byte(pair_1.after(1)) >> high_shift;
    const Number low = in.byte(pair_1.after(2)) >> low_shift;
    const Truth low_first = high_mask < added;
    put(out, values,
        described(marking(high_code<pair_1>(in), choose(low_first, low, high)), group.pair_1_words), "marking value");
    put(out, values.after(1),
        described(marking(low_code<pair_1>(in), choose(low_first, high, low)), group.pair_1_words), "marking value");

    put_pair<pair_1.after(3), values.after(2)>(out, in, high_shift, low_shift, group.pairs_2_and_3_words);
    put_pair<pair_1.after(6), values.after(4)>(out, in, high_shift, low_shift, group.pairs_2_and_3_words);
}

}  // namespace

std::int32_t qos_str_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<result>(out, in);
    put_markings<group_1>(out, in);
    put_markings<group_2>(out, in);
    return finish(out, physical, physical_length);
}
