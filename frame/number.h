// What translators decide by and compute with. In the library these are plain integers and truth values. The tools
// build the same sources a second time, with NPXLATE_TRACED: there, a number is one of whose bits nothing is known but
// which bits of the records they come from, and a decision is taken both ways.
#pragma once

#include <cstddef>
#include <cstdint>

#define NPXLATE_INLINE inline __attribute__((always_inline))

#ifdef NPXLATE_TRACED
#include "trace/number.h"
#else

namespace npxlate {

using Number = std::uint32_t;
using Truth = bool;

// A value by a condition, where that is a value and not two ways through the translator.
NPXLATE_INLINE constexpr Number choose(Truth condition, Number if_true, Number if_false) {
    return condition ? if_true : if_false;
}

// A member of an element of a table.
template <typename Element, std::size_t count, typename Member>
NPXLATE_INLINE constexpr Number entry_of(const Element (&table)[count], Number index, Member Element::*which) {
    return table[index].*which;
}

// A value with the words in which the tools describe it, where what is computed would not tell a reader much.
NPXLATE_INLINE constexpr Number described(Number value, const char*) { return value; }

// A number below `count` on which a position depends: each of its values is a way of its own.
template <unsigned count>
NPXLATE_INLINE unsigned each_below(Number number) {
    return number;
}

// A number to switch on: each from the first to the last is a way of its own, and all others are one, the default.
template <unsigned first, unsigned last>
NPXLATE_INLINE unsigned each_from(Number number) {
    return number;
}

// The lowest `count` bytes in reverse order.
NPXLATE_INLINE constexpr Number reversed_bytes(Number value, unsigned count) {
    return __builtin_bswap32(value) >> (32 - 8 * count);
}

// A value that the caller gives beside the record.
NPXLATE_INLINE Number given(const std::uint32_t* value) { return *value; }
NPXLATE_INLINE Number setting(std::uint16_t value) { return value; }

// A pure function of a field, with the words in which the tools describe it.
struct Function {
    const char* description;
    Number (*apply)(Number);
};
struct FunctionOfTwo {
    const char* description;
    Number (*apply)(Number, Number);
};

NPXLATE_INLINE constexpr Number apply(const Function& function, Number field) { return function.apply(field); }
NPXLATE_INLINE constexpr Number apply(const FunctionOfTwo& function, Number first, Number second) {
    return function.apply(first, second);
}

}  // namespace npxlate

#endif
