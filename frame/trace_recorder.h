// The recorder behind the traced build of the translators; see trace.h.
#pragma once

#include <span>
#include <vector>

#include "frame/layout.h"

namespace npxlate::trace {

// A row as data, whichever record it writes.
struct RowView {
    RowKind kind;
    bool combines;
    bool has_label_tail;
    Span to;
    std::vector<Span> from;
    Span flag;
    std::uint32_t value;
    const char* function;  // null unless the row is a function of a field
    unsigned count;
    unsigned to_step;
    unsigned from_step;
};

// A layout as data. Layouts are told apart by the address of their view.
struct LayoutView {
    const char* title;
    Side side;
    std::vector<RowView> rows;
    std::vector<Cell> cells;     // what becomes of each bit of the record written
    std::vector<Cell> combined;  // what is ORed in besides
};

template <const auto& layout>
const LayoutView& view() {
    static const LayoutView instance = [] {
        LayoutView result{layout.title, layout.side, {}, {}, {}};
        for (const auto& row : layout.rows) {
            result.rows.push_back({row.kind,
                                   row.combines,
                                   row.has_label_tail,
                                   row.to,
                                   {std::begin(row.from), std::end(row.from)},
                                   row.flag,
                                   row.value,
                                   row.function == nullptr ? nullptr : row.function->description,
                                   row.count,
                                   row.to_step,
                                   row.from_step});
        }
        const auto bits = static_cast<std::ptrdiff_t>(8 * layout.bytes_written());
        const Cells cells = layout.cells();
        const Cells combined = layout.cells(true);
        result.cells.assign(cells.begin(), cells.begin() + bits);
        result.combined.assign(combined.begin(), combined.begin() + bits);
        return result;
    }();
    return instance;
}

// One thing that a translator did, in the order in which it did it.
struct Event {
    enum Kind : std::uint8_t { placed, put, copied, looked_at, changed_input };
    Kind kind;
    const LayoutView* layout = nullptr;  // placed
    Span bits{};                     // put, copied: of the record written; looked_at, changed_input: of the record read
    const char* sentence = nullptr;  // put, changed_input
    std::uint16_t from = 0;          // copied: the first bit of the record read
    bool reversed = false;           // copied: the order of the bytes is
    Side side{};                     // looked_at: of which record; a logical key may be looked at on the way back
};

// What the translators of this thread did since it was last cleared.
std::vector<Event>& events();

template <const auto& layout>
inline void placed() {
    events().push_back({.kind = Event::placed, .layout = &view<layout>()});
}

inline void put(Side, unsigned first_bit, unsigned width, const char* sentence) {
    events().push_back({.kind = Event::put,
                        .bits = {static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(width)},
                        .sentence = sentence});
}

// Bytes that are copied by hand, with their positions in bits.
inline void copied(unsigned to, unsigned from, unsigned width, bool reversed) {
    events().push_back({.kind = Event::copied,
                        .bits = {static_cast<std::uint16_t>(to), static_cast<std::uint16_t>(width)},
                        .from = static_cast<std::uint16_t>(from),
                        .reversed = reversed});
}

inline void looked_at(Side side, unsigned first_bit, unsigned width) {
    events().push_back({.kind = Event::looked_at,
                        .bits = {static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(width)},
                        .side = side});
}

inline void changed_input(unsigned first_bit, unsigned width, const char* sentence) {
    events().push_back({.kind = Event::changed_input,
                        .bits = {static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(width)},
                        .sentence = sentence});
}

}  // namespace npxlate::trace
