// GRE encapsulation, by name only. There is no way back.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout key{
    swapped(P(0), L(0), 3),
};

// L0 is dropped: its place is the header byte.
constexpr Layout result{
    header_byte(P(0)),
    copied(P(1), L(1), 31),
};

}  // namespace

std::int32_t gre_encap_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<key, 3, 3>(logical, physical, physical_length);
}

std::int32_t gre_encap_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return place_only<result, 32, 32>(logical, physical, physical_length);
}
