// Scaled ACL: its keys, table 94, and its leaves, table 96. Both read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout key_key{
    swapped(P(0), L(2), 16),
    bits(P(16, 5, 0), L(1, 5, 0)),
    copied(P(17), L(0)),
};

constexpr Layout key_result{
    header_byte(P(0)),
    copied(P(1), L(0), 3),
};

constexpr Layout leaf_result{
    bits(P(0, 7, 5), L(0, 7, 5)),
    header_byte(P(0, 4, 0)),
    bits(P(1, 7, 4), L(1, 7, 4)),
    bit(P(1, 3), L(1, 2)),
    bit(P(1, 2), L(1, 3)),
    bits(P(1, 1, 0), L(1, 1, 0)),
    copied(P(2), L(2), 30),
};

}  // namespace

std::int32_t scale_acl_key_xlate_key(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<key_key, 18, 18>(logical, physical, physical_length);
}

std::int32_t scale_acl_key_xlate_result(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<key_result, 3, 4>(logical, physical, physical_length);
}

std::int32_t scale_acl_leaf_xlate_key(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    // A 24-bit value in a 32-bit word; the key is its first three bytes.
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t scale_acl_leaf_xlate_result(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return place_only<leaf_result, 32, 32>(logical, physical, physical_length);
}
