// Protected link aggregation bundle, table 102.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 16;
constexpr std::size_t physical_size = 16;

constexpr Layout result{
    header_byte(P(0)),
    constant(P(4, 7, 4), 9),
    bits(P(4, 3, 0), L(3, 3, 0)).named("identifier"),
    copied(P(5), L(2)).named("identifier"),
    bits(P(6, 6, 0), L(7, 6, 0)),
    bit(P(7, 7), L(8, 0)),
    bits(P(7, 6, 0), L(6, 6, 0)),
    copied(P(8), L(10), 4),
    copied(P(13), L(4)),
    bits(P(14, 7, 6), L(3, 7, 6)),
    bits(P(14, 3, 2), L(3, 5, 4)),
    bits(P(15, 7, 6), L(8, 2, 1)),
    bit(P(15, 4), L(7, 7)),
};

// The reverse reads the 16-bit fields of P4-5, P6-7 and P13-14 with their lower byte first, against the order in which
// they were written; intended.
constexpr Layout restored{
    bits(L(0, 2, 0), P(5, 7, 5)),
    bit(L(1, 0), P(5, 4)),
    copied(L(2), P(4)),
    bits(L(3, 3, 0), P(5, 3, 0)),
    bits(L(3, 5, 4), P(13, 3, 2)),
    bits(L(3, 7, 6), P(13, 7, 6)),
    copied(L(4), P(14)),
    copied(L(6), P(6)),
    bits(L(7, 6, 0), P(7, 6, 0)),
    bit(L(7, 7), P(15, 4)),
    bit(L(8, 0), P(7, 7)),
    bits(L(8, 2, 1), P(15, 7, 6)),
    copied(L(10), P(8), 4),
};

}  // namespace

std::int32_t prot_lag_st_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<3>(logical, physical, physical_length);
}

std::int32_t prot_lag_st_xlate_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<result, logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t prot_lag_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, logical_size>(physical, logical);
}
