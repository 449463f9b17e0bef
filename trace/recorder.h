// What happens while a traced translator runs: the records as they are at the moment, bit by bit, what was done to
// them, and which of the ways through the translator this is.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "frame/layout.h"
#include "trace/content.h"
#include "trace/diagram.h"
#include "trace/number.h"
#include "trace/position.h"

namespace npxlate::trace {

// Which bits diagrams speak of: those of the record that goes in; those that the buffer of the other holds before the
// call; the fourth argument (an entry type or a logical key); and TX_ADJ_KEY_MAX.
enum class Space : std::uint8_t { in, out, argument, setting };
constexpr BitId bit_id(Space space, std::size_t bit) {
    return static_cast<BitId>(static_cast<std::size_t>(space) << 12 | bit);
}
constexpr Space space_of(BitId id) { return static_cast<Space>(id >> 12); }
constexpr unsigned index_of(BitId id) { return id & 0xfffU; }

// A row as data, whichever record it writes.
struct RowView {
    RowKind kind;
    bool combines;
    bool has_label_tail;
    Span to;
    std::vector<Span> from;
    Span flag;
    std::uint32_t value;
    const Function* function;              // null unless the row is a function of a field
    const FunctionOfTwo* function_of_two;  // or of two
    unsigned count;
    unsigned to_step;
    unsigned from_step;
    const char* name;  // of the field; null if it has none
};

// What a row does to one bit of the record written.
struct RowBit {
    std::uint16_t row;
    std::uint16_t to;
    Cell cell;
    bool combines;
};

struct LayoutView {
    const char* title;
    Side side;
    std::vector<RowView> rows;
    std::vector<RowBit> bits;  // in the order in which they are written: what is ORed in comes last
};

// One thing that a translator does.
struct Step {
    enum Kind : std::uint8_t {
        placed,         // a layout
        put,            // a value, by code
        copied,         // bytes, by code
        changed_input,  // a value into the record that was handed in to be read
    };
    Kind kind;
    const LayoutView* layout = nullptr;  // placed
    Span bits{};                         // all others: of the record written
    std::string words{};                 // put, changed_input: the value
    const char* name = nullptr;          // put, copied: of the field, if it has one
    std::uint16_t from = 0;              // copied: the first bit of the record read
    bool reversed = false;               // copied: the order of the bytes is

    bool operator==(const Step&) const = default;
};

struct Decision {
    Truth truth;
    Node node;
    bool taken;
    std::size_t steps_before;  // how many steps were done when it was taken
};

// One way through a translator, or through a function of a field.
struct Way {
    Node condition = always;
    std::vector<Decision> decisions{};
    std::vector<bool> choices{};
};

// Runs the body once for every way through it; `after` is told the way.
void each_way(const std::function<void()>& body, const std::function<void(const Way&)>& after);
bool decide(const Truth& truth);

class Recorder {
public:
    // For a translator that reads from `in` and writes to `out`, records of whatever length; neither is touched.
    Recorder(Diagrams& diagrams, Side in_side, const void* in, const void* out, const void* argument);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    static Recorder& current();

    // Before each way.
    void reset();

    Diagrams& diagrams() { return diagrams_; }
    const Content& in() const { return in_; }
    const Content& out() const { return out_; }
    const std::vector<Step>& steps() const { return steps_; }

    // A bit of whichever record stands at that address.
    Bit read(const void* record, std::size_t bit) const;
    char letter(const void* record) const;
    void write(const void* record, std::size_t bit, const Bit& value, std::vector<Writer> writers);
    std::uint16_t add(Step step);

    static Number entry_type();
    static Number tx_adj_key_max();

private:
    Diagrams& diagrams_;
    Side in_side_;
    const void* in_address_;
    const void* out_address_;
    const void* argument_address_;
    Content in_;
    Content out_;
    std::vector<Step> steps_{};
    Recorder* outer_;
};

}  // namespace npxlate::trace
