// GRE interface to protocol index, by name only. There is no way back.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    header_byte(P(0)),
    swapped(P(1), L(1), 3),
};

}  // namespace

std::int32_t gre_ifh_2_proto_index_xlate(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<6>(logical, physical, physical_length);
}

std::int32_t gre_ifh_2_proto_result_xlate(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    return place_only<result, 4, 8>(logical, physical, physical_length);
}
