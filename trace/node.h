// What names a function of the bits of records, for those who need no more of them; see diagram.h.
#pragma once

#include <cstdint>

namespace npxlate::trace {

using Node = std::uint32_t;
constexpr Node never = 0;
constexpr Node always = 1;

// A bit on which functions depend, whichever its owner says it is.
using BitId = std::uint16_t;

class Diagrams;

}  // namespace npxlate::trace
