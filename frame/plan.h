// How a layout becomes code. While a translator is compiled, the bits that a layout moves into one 64-bit word of the
// record written are gathered into terms: a term is a load of up to eight bytes, one shift and one mask, and moves at
// once all bits that go the same way. Bits whose bytes are reversed on the way are gathered in a second, byte-reversed
// word, so that a word costs one byte swap however many values in it are swapped. Scattered bits, each with a way of
// its own, are gathered several at once by a multiplication. Nothing of this is left at run time but the loads, shifts,
// masks and multiplications.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "frame/layout.h"
#include "frame/multiplication.h"
#include "frame/term.h"

namespace npxlate::plan {

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
        Term term = load_for(best.first_byte, best.last_byte, record_size);
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
