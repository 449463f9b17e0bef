// ICU source port, table 44.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::int32_t physical_size = 8;

constexpr Layout result{
    header_byte(P(0)),
    copied(P(1), L(0), 2),
};

constexpr Layout restored = mirrored(result);

}  // namespace

std::int32_t icu_src_port_st_xlate_key(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return copy_key<1>(logical, physical, physical_length);
}

std::int32_t icu_src_port_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    return place_only<result, 2, physical_size>(logical, physical, physical_length);
}

std::int32_t icu_src_port_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, 2>(physical, logical);
}
