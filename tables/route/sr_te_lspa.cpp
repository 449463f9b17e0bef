// Segment-routing traffic-engineering LSP attribute, by name: a chained stack of up to ten labels. There is no reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 52;
constexpr std::size_t physical_size = 32;

constexpr unsigned following_labels = 9;

// Without a result header, unlike the results of the tables. L8 alone among the more-follows bytes L2 to L11 marks the
// record as well.
constexpr Layout first{
    "first label",
    any(P(1, 7), L(8)),
    constant(P(1, 6, 0), 0x20),
    label_bits(P(2), L(12)).named("label"),
    any(P(4, 0), L(2)).named("more follows"),
};

template <unsigned k>
constexpr Layout following{
    "following label",
    label_bits(P(5 + 3 * k), L(16 + 4 * k)).named("label"),
    any(P(7 + 3 * k, 0), L(3 + k)).named("more follows"),
};

// Label after label, until a more-follows byte is 0.
template <unsigned k = 0>
NPXLATE_INLINE void place_following(PhysicalRecord<physical_size>& out, const LogicalSource<logical_size>& in) {
    if constexpr (k < following_labels) {
        if (in.byte(L(2 + k)) != 0) {
            place<following<k>>(out, in);
            place_following<k + 1>(out, in);
        }
    }
}

}  // namespace

std::int32_t sr_te_lspa_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t sr_te_lspa_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<first>(out, in);
    place_following(out, in);
    return finish(out, physical, physical_length);
}
