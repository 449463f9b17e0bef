// From what the traced build recorded to fields.
#pragma once

#include <deque>
#include <map>

#include "explain/positions.h"
#include "explain/run.h"

namespace explain {

// What one row of a layout, or one value that code puts, does: to which bits, and what becomes of each.
struct Part {
    Kind kind{};
    std::string text{};
    std::string title{};       // of the layout
    std::vector<Span> from{};  // computed: what the row or the code looks at
    bool combines = false;
    std::map<std::uint16_t, npxlate::Cell> bits{};  // by the bit written
    std::vector<Link> ored{};                       // further sources of some of them
};

// In the order in which they are written; none for a change of the record that went in.
std::vector<Part> parts_of(const Act& act);

// What stands in a bit of the record written after everything was placed.
struct Label {
    const Part* part = nullptr;           // null: nothing was written there
    std::vector<const Part*> combined{};  // parts ORed in
    bool operator==(const Label&) const = default;
};

// All that a translator did for one record.
class Labels {
public:
    Labels(const std::vector<Act>& acts, std::size_t out_bytes);
    Labels(const Labels&) = delete;
    Labels& operator=(const Labels&) = delete;

    // Bits that nothing wrote are called cleared here, though some translators leave them alone.
    const std::vector<OutBit>& bits() const { return bits_; }
    const std::vector<Label>& labels() const { return labels_; }

private:
    void write(const Part& part);

    std::deque<Part> parts_;  // keeps its elements where they are: labels point to them
    std::vector<Label> labels_{};
    std::vector<OutBit> bits_{};
};

// Neighbouring bits with the same label as one field. A field that is whole is described as its row; of one that is
// partly overwritten the rest is described bit by bit.
std::vector<Field> fields_of(const std::vector<Label>& labels, const std::vector<OutBit>& bits);
Field field_of(const Part& part);

// Changes of the record that goes in.
std::vector<InputChange> input_changes(const std::vector<Act>& acts);

}  // namespace explain
