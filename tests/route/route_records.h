// What the tests of the route and label tables share: records stated by their interesting bytes, the arithmetic that
// recurs from table to table, and two questions that every table is asked.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "support/harness.h"
#include "support/record.h"
#include "support/rows.h"

namespace route {

using support::Bytes;

// Bytes in hex that stand from position `first` on.
struct Run {
    std::size_t first;
    std::string_view hex;
};

// `base` with the given runs put over it.
inline Bytes record(Bytes base, std::initializer_list<Run> runs) {
    for (const Run& run : runs) {
        for (std::size_t at = run.first; const std::uint8_t byte : support::bytes(run.hex)) {
            base.at(at++) = byte;
        }
    }
    return base;
}

// A record of zeros but for the given runs: record(64, {{4, "05"}, {12, "56 34 12 00"}}).
inline Bytes record(std::size_t size, std::initializer_list<Run> runs) { return record(Bytes(size), runs); }

// A hop count above 64 counts as 1; the hop byte is the count doubled with the lowest bit set.
inline unsigned clamped_hops(unsigned count) { return count > 64 ? 1 : count; }
inline std::uint8_t hop_byte(unsigned count) { return static_cast<std::uint8_t>(2 * clamped_hops(count) + 1); }

// A virtual queue index marked with its range.
inline std::uint64_t ranged_queue(std::uint64_t index, unsigned range) {
    return range == 4 ? index | 0x0800 : range == 8 ? index | 0x0c00 : index;
}

// The lowest bit goes to bit 20, all others one down.
inline std::uint64_t lowest_bit_to_bit_20(std::uint64_t value) { return value >> 1 | (value & 1) << 20; }

// The bits of the given input positions that reach the output when they change in `base`, each by itself; empty when
// none does: carried(result, base, {"L0.5", "L2.7-6", "L59-63"}).
inline std::string carried(const support::Translator& translator, const Bytes& base,
                           std::initializer_list<const char*> positions) {
    std::string found;
    for (const char* text : positions) {
        const support::Position where = support::position(text);
        for (std::size_t byte = where.first; byte <= where.last; ++byte) {
            for (unsigned bit = where.low; bit <= where.high; ++bit) {
                const std::string name = where.record + std::to_string(byte) + "." + std::to_string(bit);
                if (!support::changes(translator, base, name).empty()) {
                    found += name + " ";
                }
            }
        }
    }
    return found;
}

// The length argument has no say in what the translator does.
inline void expect_length_ignored(const support::Translator& translator, const Bytes& in) {
    const support::Outcome expected = support::translate(translator, in);
    const auto size = static_cast<std::int32_t>(in.size());
    for (const std::int32_t length : {0, 1, size - 1, size + 1, 4096, -1}) {
        EXPECT_TRUE(support::translate_with_length(translator, in, length) == expected)
            << translator.name << " minds the length " << length;
    }
}

}  // namespace route
