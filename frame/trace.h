// What the tools learn from a translator while it works: which layouts it placed, what it put or copied by code, and
// what it looked at to decide or to compute. The library is built without any of this; the tools build the same sources
// a second time, with NPXLATE_TRACE.
#pragma once

#include "frame/position.h"

#ifdef NPXLATE_TRACE
#include "frame/trace_recorder.h"
#else

namespace npxlate::trace {

template <const auto& layout>
constexpr void placed() {}
constexpr void put(Side, unsigned, unsigned, const char*) {}
constexpr void copied(unsigned, unsigned, unsigned, bool) {}
constexpr void looked_at(Side, unsigned, unsigned) {}
constexpr void changed_input(unsigned, unsigned, const char*) {}

}  // namespace npxlate::trace

#endif
