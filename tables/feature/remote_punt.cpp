// Remote punt, table 77. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    header_byte(P(0)),
    copied(P(1), L(0), 2),
    bit(P(3, 0), L(4, 7)),
    copied(P(4), L(2), 2),
};

}  // namespace

std::int32_t remote_punt_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<1>(logical, physical, physical_length);
}

std::int32_t remote_punt_xlate_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<result, 5, 8>(logical, physical, physical_length);
}
