// How a layout becomes code. While a translator is compiled, the bits that a layout moves into one 64-bit word of the
// record written are gathered into terms: a term is a load of up to eight bytes, one shift and one mask, and moves at
// once all bits that go the same way. Bits whose bytes are reversed on the way are gathered in a second, byte-reversed
// word, so that a word costs one byte swap however many values in it are swapped. Scattered bits, each with a way of
// its own, are gathered several at once by a multiplication. Nothing of this is left at run time but the loads, shifts,
// masks and multiplications.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "frame/layout.h"

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

// A run of bits that stays within one byte of the word and keeps its order.
struct Atom {
    unsigned to = 0;    // bit in the word
    unsigned from = 0;  // bit in the record read
    unsigned width = 0;
    bool placed = false;

    // Atoms with equal distances can share a term.
    constexpr int distance(bool reversed) const {
        const unsigned target = reversed ? layout_detail::reversed_bit(to, 8) : to;
        return static_cast<int>(from) - static_cast<int>(target);
    }
};

// Which atoms a term with this distance could move with one load of eight bytes, from the lowest of them upwards.
struct Group {
    unsigned first_byte = 0;
    unsigned last_byte = 0;
    unsigned width = 0;
};

template <std::size_t capacity>
constexpr Group group(const std::array<Atom, capacity>& atoms, std::size_t count, int distance, bool reversed) {
    Group result;
    unsigned lowest = ~0U;
    for (std::size_t i = 0; i < count; ++i) {
        if (!atoms[i].placed && atoms[i].distance(reversed) == distance && atoms[i].from < lowest) {
            lowest = atoms[i].from;
        }
    }
    result.first_byte = result.last_byte = lowest / 8;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned last_byte = (atoms[i].from + atoms[i].width - 1) / 8;
        if (!atoms[i].placed && atoms[i].distance(reversed) == distance && last_byte < result.first_byte + 8) {
            result.width += atoms[i].width;
            result.last_byte = last_byte > result.last_byte ? last_byte : result.last_byte;
        }
    }
    return result;
}

// The shortest load of 1, 2, 4 or 8 bytes that covers the group without leaving the record; a record of fewer than
// eight bytes may be loaded whole.
constexpr Term load_for(const Group& group, std::size_t record_size) {
    Term term;
    const unsigned needed = group.last_byte - group.first_byte + 1;
    unsigned load = std::bit_ceil(needed);
    if (load > record_size) {
        load = static_cast<unsigned>(record_size);
    }
    const unsigned last_start = static_cast<unsigned>(record_size) - load;
    term.offset = static_cast<std::uint16_t>(group.first_byte < last_start ? group.first_byte : last_start);
    term.load_bytes = static_cast<std::uint8_t>(load);
    return term;
}

constexpr std::uint64_t shifted(std::uint64_t value, int left) { return left < 0 ? value >> -left : value << left; }

// How many instructions it takes to keep these of the bits that may be 1: a constant of 64 bits needs one of its own.
constexpr unsigned mask_cost(std::uint64_t kept, std::uint64_t possible) {
    return kept == possible ? 0 : kept > 0xffffffff ? 2 : 1;
}

// The instructions of a term: load, mask, multiplication, shift, mask and combination with the others. A factor of two
// bits becomes a copy, a shift and an addition.
constexpr unsigned cost(const Term& term) {
    const std::uint64_t loaded = ~std::uint64_t{0} >> (64 - 8 * term.load_bytes);
    const unsigned shift = term.shift != 0 ? 1 : 0;
    if (term.multiplier == 1) {
        return 2 + shift + mask_cost(term.mask, shifted(loaded, term.shift));
    }
    const unsigned product = std::popcount(term.multiplier) == 2 ? 3 : term.multiplier > 0x7fffffff ? 2 : 1;
    return 2 + mask_cost(term.taken, loaded) + product + shift + mask_cost(term.mask, ~std::uint64_t{0});
}

// How much further up its source a bit stands than in the word.
constexpr int distance(const Term& term) { return 8 * static_cast<int>(term.offset) - term.shift; }

// The product of two numbers is the sum of the one shifted to every bit that the other has. So bits that each need a
// shift of their own can move in one multiplication by a number with a bit for every shift, as long as what reaches the
// place of a wanted bit is this bit alone: no other bit and no carry. The more bits are 1, the more is carried; so what
// does not happen when all bits taken are 1 never happens.
constexpr bool product_keeps(std::uint64_t wanted, std::uint64_t taken, std::uint64_t multiplier) {
    std::uint64_t sum = 0;
    std::uint64_t reached = 0;
    std::uint64_t disturbed = 0;  // reached twice or by a carry
    for (; multiplier != 0; multiplier &= multiplier - 1) {
        const std::uint64_t addend = taken << std::countr_zero(multiplier);
        const std::uint64_t next = sum + addend;
        disturbed |= (reached & addend) | (next ^ sum ^ addend);
        reached |= addend;
        sum = next;
    }
    return (wanted & disturbed) == 0;
}

// The one multiplication that does the work of these terms of a word, given as a bit each; a term without a mask if
// there is none.
constexpr Term product_of(const Word& word, std::uint64_t members, std::size_t record_size) {
    unsigned first_bit = ~0U;
    unsigned last_bit = 0;
    int farthest = -8 * static_cast<int>(max_record_bytes);
    std::uint64_t mask = 0;
    for (std::uint64_t left = members; left != 0; left &= left - 1) {
        const Term& term = word.terms[static_cast<unsigned>(std::countr_zero(left))];
        const auto first = static_cast<unsigned>(std::countr_zero(term.mask) + distance(term));
        const auto last = static_cast<unsigned>(63 - std::countl_zero(term.mask) + distance(term));
        first_bit = first < first_bit ? first : first_bit;
        last_bit = last > last_bit ? last : last_bit;
        farthest = distance(term) > farthest ? distance(term) : farthest;
        mask |= term.mask;
    }
    if (last_bit / 8 - first_bit / 8 >= 8) {
        return {};
    }
    Term result = load_for({first_bit / 8, last_bit / 8, 0}, record_size);
    // A multiplication shifts to the left only; what goes to the right makes all go back after it.
    const int loaded_at = 8 * static_cast<int>(result.offset);
    const int back = farthest > loaded_at ? farthest - loaded_at : 0;
    if (std::countl_zero(mask) < back) {
        return {};
    }
    result.shift = -back;
    result.multiplier = 0;
    for (std::uint64_t left = members; left != 0; left &= left - 1) {
        const Term& term = word.terms[static_cast<unsigned>(std::countr_zero(left))];
        result.reversed = term.reversed;
        result.taken |= shifted(term.mask, distance(term) - loaded_at);
        result.multiplier |= std::uint64_t{1} << (loaded_at - distance(term) + back);
    }
    if (product_keeps(mask << back, result.taken, result.multiplier)) {
        result.mask = mask;
    }
    return result;
}

// Replaces terms by a multiplication wherever that takes fewer instructions, the greatest gain first.
constexpr void multiply_where_shorter(Word& word, std::size_t record_size) {
    for (;;) {
        Term best;
        std::uint64_t best_members = 0;
        unsigned best_gain = 0;
        for (std::size_t seed = 0; seed < word.term_count; ++seed) {
            // From this term on, every one that still fits in.
            std::uint64_t members = std::uint64_t{1} << seed;
            unsigned replaced = cost(word.terms[seed]);
            Term product;
            for (std::size_t step = 1; step < word.term_count && word.terms[seed].multiplier == 1; ++step) {
                const std::size_t next = (seed + step) % word.term_count;
                const Term& term = word.terms[next];
                if (term.multiplier != 1 || term.reversed != word.terms[seed].reversed) {
                    continue;
                }
                const Term tried = product_of(word, members | std::uint64_t{1} << next, record_size);
                if (tried.mask != 0) {
                    product = tried;
                    members |= std::uint64_t{1} << next;
                    replaced += cost(term);
                }
            }
            if (product.mask != 0 && replaced > cost(product) + best_gain) {
                best = product;
                best_members = members;
                best_gain = replaced - cost(product);
            }
        }
        if (best_gain == 0) {
            return;
        }
        std::size_t kept = 0;
        for (std::size_t i = 0; i < word.term_count; ++i) {
            if ((best_members >> i & 1) == 0) {
                word.terms[kept++] = word.terms[i];
            }
        }
        word.terms[kept++] = best;
        word.term_count = kept;
    }
}

constexpr Word word(const Cells& cells, std::size_t index, std::size_t record_size) {
    Word result;
    std::array<Atom, 64> atoms{};
    std::size_t atom_count = 0;
    for (unsigned bit = 0; bit < 64 && 64 * index + bit < cells.size(); ++bit) {
        const Cell& cell = cells[64 * index + bit];
        const std::uint64_t here = std::uint64_t{1} << bit;
        if (cell.kind != Cell::untouched) {
            result.written |= here;
        }
        if (cell.kind == Cell::one) {
            result.ones |= here;
        }
        if (cell.kind == Cell::inverted) {
            result.inverted |= here;
        }
        if (cell.kind == Cell::moved || cell.kind == Cell::inverted) {
            Atom& last = atoms[atom_count == 0 ? 0 : atom_count - 1];
            if (atom_count != 0 && bit % 8 != 0 && last.to + last.width == bit && last.from + last.width == cell.from) {
                ++last.width;
            } else {
                atoms[atom_count++] = {bit, cell.from, 1};
            }
        }
    }

    // The term that moves the most bits first; on a tie, one that needs no byte reversal.
    for (;;) {
        Group best;
        int best_distance = 0;
        bool best_reversed = false;
        for (std::size_t i = 0; i < atom_count; ++i) {
            if (atoms[i].placed) {
                continue;
            }
            for (const bool reversed : {false, true}) {
                const Group candidate = group(atoms, atom_count, atoms[i].distance(reversed), reversed);
                if (candidate.width > best.width) {
                    best = candidate;
                    best_distance = atoms[i].distance(reversed);
                    best_reversed = reversed;
                }
            }
        }
        if (best.width == 0) {
            break;
        }
        Term term = load_for(best, record_size);
        term.reversed = best_reversed;
        term.shift = 8 * static_cast<int>(term.offset) - best_distance;
        for (std::size_t i = 0; i < atom_count; ++i) {
            Atom& atom = atoms[i];
            const unsigned last_byte = (atom.from + atom.width - 1) / 8;
            if (atom.placed || atom.distance(best_reversed) != best_distance || last_byte >= best.first_byte + 8) {
                continue;
            }
            const unsigned target = best_reversed ? layout_detail::reversed_bit(atom.to, 8) : atom.to;
            term.mask |= ((std::uint64_t{1} << atom.width) - 1) << target;
            atom.placed = true;
        }
        result.terms[result.term_count++] = term;
    }
    multiply_where_shorter(result, record_size);
    return result;
}

template <const auto& layout>
inline constexpr Cells cells = layout.cells();
template <const auto& layout>
inline constexpr Cells combined_cells = layout.cells(true);

// The words of a layout, for a source record of so many bytes.
template <const auto& layout, std::size_t index, std::size_t record_size, bool combined>
inline constexpr Word word_of = word(combined ? combined_cells<layout> : cells<layout>, index, record_size);

}  // namespace npxlate::plan
