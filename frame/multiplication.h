// Terms joined by multiplication. The product of two numbers is the sum of the one shifted to every bit that the other
// has. So bits that each need a shift of their own can move in one multiplication by a number with a bit for every
// shift, as long as what reaches the place of a wanted bit is this bit alone: no other bit and no carry.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "frame/position.h"
#include "frame/term.h"

namespace npxlate::plan {

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

// Whether the wanted bits arrive undisturbed. The more bits are 1, the more is carried; so what does not happen when
// all bits taken are 1 never happens.
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
    Term result = load_for(first_bit / 8, last_bit / 8, record_size);
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

}  // namespace npxlate::plan
