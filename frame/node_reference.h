// The results of the multicast leaf tables, IP and layer 2: a reference to an entry of the node table, nothing else.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/helpers.h"

namespace npxlate {

inline constexpr std::size_t leaf_result_logical_size = 4;

// The reference is the node table's key and keeps its byte order.
inline constexpr Layout node_reference{
    header_byte(P(0)),
    copied(P(1), L(0), 3).named("node reference"),
};

inline constexpr Layout node_reference_restored = mirrored(node_reference);

template <std::size_t physical_size>
NPXLATE_INLINE std::int32_t leaf_result(const void* logical, void* physical, std::uint32_t* physical_length) {
    return place_only<node_reference, leaf_result_logical_size, physical_size>(logical, physical, physical_length);
}

template <std::size_t physical_size>
NPXLATE_INLINE std::int32_t leaf_result_restored(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<node_reference_restored, physical_size, leaf_result_logical_size>(physical, logical);
}

}  // namespace npxlate
