// MPLS reverse-path-forwarding list, table 97: which incoming interfaces are accepted for a label. Read back by the
// generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout key{
    run(P(0, 0), L(2, 5), 11),
    copied(P(2), L(0), 2).named("list identifier"),
};

constexpr Layout result{
    header_byte(P(0)),
    copied(P(4), L(0), 4),
};

}  // namespace

std::int32_t mpls_rpf_list_xlate_key(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<key, 4, 4>(logical, physical, physical_length);
}

std::int32_t mpls_rpf_list_xlate_result(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<result, 4, 8>(logical, physical, physical_length);
}
