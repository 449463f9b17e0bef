// The unit of which plans are made: what one load moves into one word.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace npxlate::plan {

// ((loaded & taken) * multiplier, shifted) & mask; `taken` matters only to terms that multiply.
struct Term {
    std::uint16_t offset = 0;  // first byte loaded
    std::uint8_t load_bytes = 0;
    bool reversed = false;         // goes into the byte-reversed word
    int shift = 0;                 // to the left; to the right if negative
    std::uint64_t mask = 0;        // of the result
    std::uint64_t taken = 0;       // the bits loaded that are wanted
    std::uint64_t multiplier = 1;  // a bit for each way that bits go
};

struct Word {
    std::uint64_t written = 0;   // every bit that the layout writes, computed fields included
    std::uint64_t ones = 0;      // constant 1
    std::uint64_t inverted = 0;  // inverted after they were gathered
    std::size_t term_count = 0;
    std::array<Term, 64> terms{};
};

// The shortest load of 1, 2, 4 or 8 bytes that covers these bytes without leaving the record; a record of fewer than
// eight bytes may be loaded whole.
constexpr Term load_for(unsigned first_byte, unsigned last_byte, std::size_t record_size) {
    Term term;
    const unsigned needed = last_byte - first_byte + 1;
    unsigned load = std::bit_ceil(needed);
    if (load > record_size) {
        load = static_cast<unsigned>(record_size);
    }
    const unsigned last_start = static_cast<unsigned>(record_size) - load;
    term.offset = static_cast<std::uint16_t>(first_byte < last_start ? first_byte : last_start);
    term.load_bytes = static_cast<std::uint8_t>(load);
    return term;
}

}  // namespace npxlate::plan
