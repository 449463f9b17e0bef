// IP subscriber session leaf, table 107. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 21;
constexpr std::size_t key_physical_size = 19;

constexpr std::uint8_t kind_with_shift = 2;

constexpr Layout key{
    copied(P(0), L(0), 2),
    copied(P(2), L(2)).named("kind"),
    copied(P(3), L(3), 16).named("address"),
};

constexpr Layout result{
    constant(P(0, 7), 0),
    bit(P(0, 6), L(0, 1)),
    bit(P(0, 5), L(0, 2)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(1), 2),
    copied(P(3), L(3), 2),
    run(P(5, 0), L(5, 1), 24),
};

}  // namespace

std::int32_t ipsub_sid_leaf_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    PhysicalRecord<key_physical_size> out;
    place<key>(out, in);
    const std::int32_t status = finish(out, physical, physical_length);
    if (in.byte(L(2)) == kind_with_shift) {
        // A word of the address, which is in network order, is shifted in the logical key too: callers expect to see it
        // there. It goes into either record by itself, since to store it and then to load the key would take three
        // times as long.
        const unsigned number = each_below<4>(in.bits(L(20, 7, 6)));
        const auto logical_word = LogicalBytes<key_logical_size, 4>::one_of<4>(L(3), number);
        const auto physical_word = PhysicalBytes<key_physical_size, 4>::one_of<4>(P(3), number);
        const Number word = reversed_bytes(in.big32(logical_word) >> in.bits(L(20, 4, 0)), 4);
        change_input<4>(in, logical_word, word);
        store_into(physical, physical_word, word);
    }
    return status;
}

std::int32_t ipsub_sid_leaf_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return place_only<result, 9, 8>(logical, physical, physical_length);
}
