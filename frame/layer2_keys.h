// The keys under which a layer-2 entry stands in two tables: its own and that of its extension.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/helpers.h"

namespace npxlate {

inline constexpr Layout cross_connect_key{
    run(P(0, 0), L(0, 0), 19).named("cross-connect identifier"),
    constant(P(2, 7, 3), 0),
    cleared(P(3), 1),
};

// Clears one byte more than the key has.
NPXLATE_INLINE std::int32_t place_cross_connect_key(const void* logical, void* physical,
                                                    std::uint32_t* physical_length) {
    constexpr std::uint32_t key_length = 3;
    const LogicalSource<4> in{logical};
    PhysicalRecord<key_length + 1> out;
    place<cross_connect_key>(out, in);
    out.store(physical);
    *physical_length = key_length;
    return NPXLATE_OK;
}

inline constexpr Layout bridge_domain_key{
    copied(P(0), L(0), 2).named("bridge-domain number"),
    constant(P(2), 0),
};

NPXLATE_INLINE std::int32_t place_bridge_domain_key(const void* logical, void* physical,
                                                    std::uint32_t* physical_length) {
    return place_only<bridge_domain_key, 2, 3>(logical, physical, physical_length);
}

}  // namespace npxlate
