#include "trace/recorder.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace npxlate::trace {
namespace {

thread_local Recorder* current_recorder = nullptr;
thread_local Way* current_way = nullptr;

Content undetermined(Space space) {
    Content content{max_record_bytes};
    for (std::size_t i = 0; i < content.bits.size(); ++i) {
        content.bits[i] = bit_of(bit_id(space, i));
    }
    return content;
}

using Read = std::function<Bit(unsigned)>;

Number field(const Span& span, const Read& read, char letter) {
    std::vector<Bit> bits;
    for (unsigned k = 0; k < span.width; ++k) {
        bits.push_back(read(span.first_bit + k));
    }
    return {std::move(bits), position(letter, span.first_bit, span.width)};
}

Number mapped_value(const RowView& row, const Read& read, char letter) {
    const Number first = field(row.from[0], read, letter);
    const Number value = row.function != nullptr ? apply(*row.function, first)
                                                 : apply(*row.function_of_two, first, field(row.from[1], read, letter));
    return row.to.width > 8 ? reversed_bytes(value, row.to.width / 8) : value;
}

// The value of a row that is a function of whole fields.
Number value_of(const RowView& row, const Read& read, char letter) {
    switch (row.kind) {
        case RowKind::mapped:
            return mapped_value(row, read, letter);
        default:
            break;
    }
    Truth any{false};
    for (const Span& span : row.from) {
        for (unsigned k = 0; k < span.width; ++k) {
            any = any || Truth{read(span.first_bit + k), "", ""};
        }
    }
    return row.kind == RowKind::any ? any : !any;
}

bool reads_whole_fields(RowKind kind) {
    return kind == RowKind::any || kind == RowKind::none || kind == RowKind::mapped;
}

}  // namespace

template <Side side>
const LayoutView& make_view(const char* title, const Row<side>* rows, std::size_t count) {
    auto& view = *new LayoutView{title, side, {}, {}};  // for as long as the program runs
    for (std::size_t i = 0; i < count; ++i) {
        const Row<side>& row = rows[i];
        view.rows.push_back({row.kind,
                             row.combines,
                             row.has_label_tail,
                             row.to,
                             {std::begin(row.from), std::end(row.from)},
                             row.flag,
                             row.value,
                             row.function,
                             row.function_of_two,
                             row.count,
                             row.to_step,
                             row.from_step,
                             row.name});
        layout_detail::for_each_bit(row, [&](unsigned to, Cell cell, bool combines) {
            view.bits.push_back({static_cast<std::uint16_t>(i), static_cast<std::uint16_t>(to), cell, combines});
        });
    }
    std::ranges::stable_sort(view.bits, {}, &RowBit::combines);
    return view;
}
template const LayoutView& make_view(const char*, const Row<Side::logical>*, std::size_t);
template const LayoutView& make_view(const char*, const Row<Side::physical>*, std::size_t);

void each_way(const std::function<void()>& body, const std::function<void(const Way&)>& after) {
    Way* const outer = current_way;
    std::vector<bool> choices;
    do {
        Way way{.choices = choices};
        current_way = &way;
        body();
        current_way = outer;
        after(way);
        // The last decision that was taken one way alone is taken the other way.
        choices = std::move(way.choices);
        while (!choices.empty() && !choices.back()) {
            choices.pop_back();
        }
        if (!choices.empty()) {
            choices.back() = false;
        }
    } while (!choices.empty());
}

bool decide(const Truth& truth) {
    if (current_way == nullptr) {
        throw std::logic_error{"a decision outside of any way"};
    }
    Recorder& recorder = Recorder::current();
    Diagrams& diagrams = recorder.diagrams();
    Way& way = *current_way;
    const Node node = node_of(diagrams, truth.bit());
    const Node if_true = diagrams.both(way.condition, node);
    if (if_true == never || if_true == way.condition) {
        return if_true != never;  // it follows from what was decided before
    }
    const std::size_t number = way.decisions.size();
    if (number == way.choices.size()) {
        way.choices.push_back(true);
    }
    const bool taken = way.choices[number];
    way.decisions.push_back({truth, node, taken, recorder.steps().size()});
    way.condition = taken ? if_true : diagrams.both(way.condition, diagrams.negation(node));
    return taken;
}

Recorder::Recorder(Diagrams& diagrams, Side in_side, const void* in, const void* out, const void* argument)
    : diagrams_{diagrams},
      in_side_{in_side},
      in_address_{in},
      out_address_{out},
      argument_address_{argument},
      in_{max_record_bytes},
      out_{max_record_bytes},
      outer_{current_recorder} {
    current_recorder = this;
    reset();
}

Recorder::~Recorder() { current_recorder = outer_; }

Recorder& Recorder::current() {
    if (current_recorder == nullptr) {
        throw std::logic_error{"a traced translator runs without a recorder"};
    }
    return *current_recorder;
}

void Recorder::reset() {
    in_ = undetermined(Space::in);
    out_ = undetermined(Space::out);
    steps_.clear();
}

Bit Recorder::read(const void* record, std::size_t bit) const {
    if (record == in_address_) {
        return in_.bits.at(bit);
    }
    if (record == out_address_) {
        return out_.bits.at(bit);
    }
    if (record == argument_address_) {
        return bit_of(bit_id(Space::argument, bit));
    }
    throw std::logic_error{"a traced translator reads what is no record"};
}

char Recorder::letter(const void* record) const {
    if (record == argument_address_) {
        return 'K';
    }
    return (record == in_address_) == (in_side_ == Side::logical) ? 'L' : 'P';
}

void Recorder::write(const void* record, std::size_t bit, const Bit& value, std::vector<Writer> writers) {
    if (record != in_address_ && record != out_address_) {
        throw std::logic_error{"a traced translator writes what is no record"};
    }
    Content& content = record == in_address_ ? in_ : out_;
    content.bits.at(bit) = value;
    content.writers[bit] = std::move(writers);
}

std::uint16_t Recorder::add(Step step) {
    steps_.push_back(std::move(step));
    return static_cast<std::uint16_t>(steps_.size() - 1);
}

Number Recorder::entry_type() {
    std::vector<Bit> bits;
    for (unsigned i = 0; i < 32; ++i) {
        bits.push_back(bit_of(bit_id(Space::argument, i)));
    }
    return {std::move(bits), "type"};
}

Number Recorder::tx_adj_key_max() {
    std::vector<Bit> bits;
    for (unsigned i = 0; i < 16; ++i) {
        bits.push_back(bit_of(bit_id(Space::setting, i)));
    }
    return {std::move(bits), "TX_ADJ_KEY_MAX"};
}

void place(const LayoutView& layout, Content& content, const void* from_record) {
    Recorder& recorder = Recorder::current();
    const Read read = [&](unsigned bit) { return recorder.read(from_record, bit); };
    const char letter = recorder.letter(from_record);
    const std::uint16_t step = recorder.add({.kind = Step::placed, .layout = &layout});
    std::vector<Number> values(layout.rows.size(), Number{0});
    for (std::size_t i = 0; i < layout.rows.size(); ++i) {
        if (reads_whole_fields(layout.rows[i].kind)) {
            values[i] = value_of(layout.rows[i], read, letter);
        }
    }
    for (const auto& [row, to, cell, combines] : layout.bits) {
        Bit value;
        switch (cell.kind) {
            case Cell::untouched:
                continue;
            case Cell::zero:
            case Cell::one:
                value = bit_of(cell.kind == Cell::one);
                break;
            case Cell::moved:
                value = read(cell.from);
                break;
            case Cell::inverted:
                value = (!Truth{read(cell.from), "", ""}).bit();
                break;
            case Cell::computed:
                value = values[row].bit(to - layout.rows[row].to.first_bit);
                break;
        }
        std::vector<Writer>& writers = content.writers[to];
        if (!combines) {
            content.bits[to] = value;
            writers = {{step, row}};
        } else {
            content.bits[to] = (Truth{content.bits[to], "", ""} || Truth{value, "", ""}).bit();
            writers.push_back({step, row});
        }
    }
}

}  // namespace npxlate::trace
