#include "frame/trace_recorder.h"

namespace npxlate::trace {
namespace {

Span span(unsigned first_bit, unsigned width) {
    return {static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(width)};
}

}  // namespace

std::vector<Event>& events() {
    static thread_local std::vector<Event> instance;
    return instance;
}

std::vector<Cell> first_of(const Cells& cells, std::size_t bits) {
    return {cells.begin(), cells.begin() + static_cast<std::ptrdiff_t>(bits)};
}

void placed(const LayoutView& layout) { events().push_back({.kind = Event::placed, .layout = &layout}); }

void put(Side, unsigned first_bit, unsigned width, const char* sentence) {
    events().push_back({.kind = Event::put, .bits = span(first_bit, width), .sentence = sentence});
}

void copied(unsigned to, unsigned from, unsigned width, bool reversed) {
    events().push_back({.kind = Event::copied,
                        .bits = span(to, width),
                        .from = static_cast<std::uint16_t>(from),
                        .reversed = reversed});
}

void looked_at(Side side, unsigned first_bit, unsigned width) {
    events().push_back({.kind = Event::looked_at, .bits = span(first_bit, width), .side = side});
}

void changed_input(unsigned first_bit, unsigned width, const char* sentence) {
    events().push_back({.kind = Event::changed_input, .bits = span(first_bit, width), .sentence = sentence});
}

}  // namespace npxlate::trace
