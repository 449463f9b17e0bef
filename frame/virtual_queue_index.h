// The adjustment of a virtual queue index by its range.
#pragma once

#include <cstdint>

namespace npxlate {

// Only the low 8 bits of the range count.
constexpr std::uint32_t adjusted_virtual_queue_index(std::uint32_t vqi, std::uint32_t range) {
    switch (range & 0xff) {
        case 4:
            return vqi | 0x0800;
        case 8:
            return vqi | 0x0c00;
        default:
            return vqi;
    }
}

}  // namespace npxlate
