// What the traced records hold. Every source of the translators includes this, and is compiled for longer than it runs:
// what can stand in a source of the recorder's stands there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "frame/layout.h"
#include "trace/number.h"

namespace npxlate::trace {

// A layout as data; see recorder.h. Layouts are told apart by the address of their view.
struct LayoutView;

// The one view of the layout whose rows these are.
template <Side side>
const LayoutView& make_view(const char* title, const Row<side>* rows, std::size_t count);

template <const auto& layout>
const LayoutView& view() {
    static const LayoutView& instance = make_view<layout.side>(layout.title, layout.rows.data(), layout.rows.size());
    return instance;
}

// Who wrote a bit: which step, and which row of its layout.
struct Writer {
    std::uint16_t step;
    std::uint16_t row;
    bool operator==(const Writer&) const = default;
};

// A record as it is at the moment.
struct Content {
    explicit Content(std::size_t bytes);
    Content(const Content&);
    Content& operator=(const Content&);
    ~Content();

    // The letter is that of the record's positions: L or P.
    Truth bit(char letter, unsigned at) const;
    Number number(char letter, unsigned first_bit, unsigned width) const;
    // From the record at that address, from this byte on; and to it, the first bytes.
    void keep(const void* record, std::size_t first_byte);
    void store(void* record, std::size_t count) const;

    std::vector<Bit> bits;
    std::vector<std::vector<Writer>> writers;  // the one that wrote last, and those that ORed in after it
};

// Of the record at that address.
Truth read_bit(const void* record, unsigned at);
Number read_number(const void* record, unsigned first_bit, unsigned width);

void place(const LayoutView& layout, Content& content, const void* from_record);

// The bits of a value to the record at the position, for one step.
void put_bits(Content& content, unsigned first_bit, unsigned width, const Number& value, const char* name);
void change(const void* record, unsigned first_bit, unsigned width, const Number& value);
void store(const void* record, unsigned first_bit, unsigned width, const Number& value);

}  // namespace npxlate::trace
