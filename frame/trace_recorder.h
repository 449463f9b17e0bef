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

// The rows of a layout, and what becomes of so many bits; what does not depend on the layout's type, so that it is
// compiled once and not for every layout.
template <Side side>
std::vector<RowView> view_of(std::span<const Row<side>> rows) {
    std::vector<RowView> result;
    for (const Row<side>& row : rows) {
        result.push_back({row.kind,
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
    return result;
}
std::vector<Cell> first_of(const Cells& cells, std::size_t bits);

template <const auto& layout>
const LayoutView& view() {
    static const LayoutView instance{layout.title, layout.side, view_of<layout.side>(layout.rows),
                                     first_of(layout.cells(), 8 * layout.bytes_written()),
                                     first_of(layout.cells(true), 8 * layout.bytes_written())};
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

void placed(const LayoutView& layout);
template <const auto& layout>
void placed() {
    placed(view<layout>());
}
void put(Side side, unsigned first_bit, unsigned width, const char* sentence);
// Bytes that are copied by hand, with their positions in bits.
void copied(unsigned to, unsigned from, unsigned width, bool reversed);
void looked_at(Side side, unsigned first_bit, unsigned width);
void changed_input(unsigned first_bit, unsigned width, const char* sentence);

}  // namespace npxlate::trace
