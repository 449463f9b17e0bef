// Virtual queue indices: 16 bits, adjusted by their range.
#pragma once

#include "frame/row.h"

namespace npxlate {

inline constexpr FunctionOfTwo queue_index{
    "queue index, ORed with 0x800 for range 4 and with 0xc00 for range 8",
    // NOLINTNEXTLINE(performance-unnecessary-value-param): plain integers in the library
    [](Number index, Number range) -> Number {
        const Number low_byte = range & 0xff;  // of the range nothing else counts
        if (low_byte == 4) {
            return index | 0x0800;
        }
        if (low_byte == 8) {
            return index | 0x0c00;
        }
        return index;
    },
};

// A row: the index adjusted by its range, big-endian.
constexpr Row<Side::physical> virtual_queue_index(P to, L index, L range) {
    return mapped(bytes(to, 2), bytes(index, 2), range, queue_index);
}

}  // namespace npxlate
