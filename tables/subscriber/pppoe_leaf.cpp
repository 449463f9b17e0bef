// PPPoE session leaf, table 67. Its reverse slot holds sample_nf_info_logical_res_xlate on purpose: what that makes of
// a PPPoE record is not the record that was written.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    header_byte(P(0)),
    copied(P(1), L(1)),
    bits(P(2, 7, 4), L(2, 3, 0)),
    bits(P(2, 3, 0), L(2, 7, 4)),
    copied(P(3), L(3), 7),
    run(P(10, 0), L(10, 1), 24),
    bits(P(13, 7, 5), L(0, 2, 0)),
    bit(P(13, 4), L(0, 3)),
    copied(P(16), L(14), 4),
};

}  // namespace

std::int32_t pppoe_sid_leaf_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<4>(logical, physical, physical_length);
}

std::int32_t pppoe_sid_leaf_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return place_only<result, 18, 32>(logical, physical, physical_length);
}
