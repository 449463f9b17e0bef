// Extended LSP attribute, table 37: a stack of four labels. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    header_byte(P(0)),
    label(P(4), L(0), L(4, 0)).repeated(4, P(3), L(5)).named("label"),
};

}  // namespace

std::int32_t ext_lspa_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t ext_lspa_st_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return place_only<result, 20, 16>(logical, physical, physical_length);
}
