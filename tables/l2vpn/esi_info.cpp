// ESI and MSTI information, table 92: the entry of an Ethernet segment or of a spanning-tree instance; the latter has
// names of its own too. Key, result and reverse each go by a byte of their own to tell the two.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 8;
constexpr std::size_t key_physical_size = 7;
constexpr std::size_t msti_key_logical_size = 5;
constexpr std::size_t msti_logical_size = 9;
constexpr std::size_t restored_msti_logical_size = 12;  // as far as it is cleared
constexpr std::size_t esi_logical_size = 8;
constexpr std::size_t physical_size = 8;

constexpr std::uint8_t esi_key_mark = 0xff;  // in L7 of the key

constexpr Layout msti_key{
    "spanning-tree instance",
    copied(P(0), L(0), 4),
    cleared(P(4), 2),
    mapped(P(6), L(4), plus_one),
};

constexpr Layout msti_result{
    "spanning-tree instance",
    bit(P(0, 7), L(4, 0)),
    bit(P(0, 6), L(4, 1)),
    bit(P(0, 5), L(4, 2)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(8)),
};

constexpr Layout restored_msti = mirrored(msti_result);

constexpr Layout esi_key{
    "Ethernet segment",
    copied(P(0), L(0), 3),
    run(P(3, 0), L(4, 0), 20),
    constant(P(6), 0),
};

constexpr Layout esi_result{
    "Ethernet segment",
    header_byte(P(0)),
    constant(P(1), 0),
    copied(P(2), L(4), 4),
};

// L1.0 comes from the header, and L0 is not restored; both are intended.
constexpr Layout restored_esi{
    "Ethernet segment",
    bit(L(1, 0), P(0, 0)),
    copied(L(4), P(2), 4),
};

NPXLATE_INLINE Truth is_esi_key(const void* logical_key) {
    return LogicalSource<key_logical_size>{logical_key}.byte(L(7)) == esi_key_mark;
}

}  // namespace

std::int32_t velox_msti_info_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return place_only<msti_key, msti_key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t velox_msti_info_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                               std::uint32_t* physical_length) {
    return place_only<msti_result, msti_logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t msti_info_logical_res_xlate(const void* physical, std::int32_t, void* logical) {
    return place_only<restored_msti, physical_size, restored_msti_logical_size>(physical, logical);
}

std::int32_t velox_esi_info_type_xlate_key(const void* logical, std::int32_t logical_length, void* physical,
                                           std::uint32_t* physical_length) {
    if (!is_esi_key(logical)) {
        return velox_msti_info_type_xlate_key(logical, logical_length, physical, physical_length);
    }
    return place_only<esi_key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t velox_esi_info_type_xlate_result(const void* logical, std::int32_t logical_length, void* physical,
                                              std::uint32_t* physical_length) {
    const LogicalSource<esi_logical_size> in{logical};
    if (in.byte(L(0)) == 0) {
        return velox_msti_info_type_xlate_result(logical, logical_length, physical, physical_length);
    }
    return place_only<esi_result, esi_logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t esi_info_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical,
                                        const void* logical_key) {
    if (!is_esi_key(logical_key)) {
        return msti_info_logical_res_xlate(physical, physical_length, logical);
    }
    return place_only<restored_esi, physical_size, esi_logical_size>(physical, logical);
}
