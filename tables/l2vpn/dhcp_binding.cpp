// DHCP binding, table 65: all there is to know is in the key. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

// The halves of the MAC address change places, as the network processor looks them up.
constexpr Layout key{
    copied(P(0), L(3), 3).named("MAC address"),
    copied(P(3), L(0), 3).named("MAC address"),
    copied(P(6), L(8), 4),
    run(P(10, 0), L(12, 0), 19),
    copied(P(13), L(16), 2),
    constant(P(15), 0),
};

constexpr Layout result{
    header_byte(P(0)),
    cleared(P(1), 7),
};

}  // namespace

std::int32_t dhcp_binding_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return place_only<key, 18, 16>(logical, physical, physical_length);
}

std::int32_t dhcp_binding_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return place_only<result, 0, 8>(logical, physical, physical_length);
}
