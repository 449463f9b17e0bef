// The arithmetic that recurs in the route and label tables.
#pragma once

#include <cstdint>

namespace route {

// A hop count above 64 counts as 1; the hop byte is the count doubled with the lowest bit set.
inline unsigned clamped_hops(unsigned count) { return count > 64 ? 1 : count; }
inline std::uint8_t hop_byte(unsigned count) { return static_cast<std::uint8_t>(2 * clamped_hops(count) + 1); }

// A virtual queue index marked with its range.
inline std::uint64_t ranged_queue(std::uint64_t index, unsigned range) {
    return range == 4 ? index | 0x0800 : range == 8 ? index | 0x0c00 : index;
}

// The lowest bit goes to bit 20, all others one down.
inline std::uint64_t lowest_bit_to_bit_20(std::uint64_t value) { return value >> 1 | (value & 1) << 20; }

}  // namespace route
