// Strict RPF interface list, table 16: eight 32-bit interface entries packed behind a flag byte, of which the network
// processor gets the low 16 bits. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    header_byte(P(0)),
    bit(P(1, 4), L(0, 0)),
    copied(P(4), L(1), 2).repeated(8, P(2), L(4)).named("interface"),
};

}  // namespace

std::int32_t strict_rpf_uidb_list_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                                 std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t strict_rpf_uidb_list_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                                    std::uint32_t* physical_length) {
    return place_only<result, 33, 32>(logical, physical, physical_length);
}
