#include "explain/parts.h"

#include <algorithm>

#include <fmt/format.h>

#include "frame/layout.h"

namespace explain {
namespace {

using npxlate::Cell;
using npxlate::Row;
using npxlate::RowKind;
using npxlate::Side;
using npxlate::trace::Event;
using npxlate::trace::RowView;

bool is_moved(const Cell& cell) { return cell.kind == Cell::moved || cell.kind == Cell::inverted; }

bool is_constant(const Cell& cell) { return cell.kind == Cell::zero || cell.kind == Cell::one; }

Kind kind_of(RowKind kind) {
    switch (kind) {
        case RowKind::nothing:
        case RowKind::constant:
            return Kind::constant;
        case RowKind::straight:
            return Kind::copied;
        case RowKind::inverted:
            return Kind::inverted;
        case RowKind::swapped:
            return Kind::reversed;
        case RowKind::label:
            return Kind::label;
        case RowKind::low_bit_to_bit_20:
            return Kind::shifted;
        case RowKind::any:
        case RowKind::none:
        case RowKind::mapped:
        case RowKind::virtual_queue_index:
            return Kind::computed;
    }
    return Kind::computed;
}

// What moves bits has its words, and so has what computes them; those of constants are their values.
std::string text_of(Kind kind) {
    switch (kind) {
        case Kind::copied:
            return "copied";
        case Kind::reversed:
            return "bytes reversed";
        case Kind::inverted:
            return "inverted";
        case Kind::label:
            return "20 bits of a label, high bits first in P";
        case Kind::shifted:
            return "shifted right by one, the lowest bit ORed into bit 20";
        case Kind::cleared:
            return "0, nothing is written here";
        case Kind::left_alone:
            return "left as the caller had it";
        case Kind::constant:
        case Kind::computed:
            break;
    }
    return "";
}

std::string text_of(const RowView& row) {
    switch (row.kind) {
        case RowKind::any:
            return "1 if any of these bits is 1";
        case RowKind::none:
            return "1 if none of these bits is 1";
        case RowKind::mapped:
            return row.function;
        case RowKind::virtual_queue_index:
            return "queue index, ORed with 0x800 for range 4 and with 0xc00 for range 8, bytes reversed";
        default:
            return text_of(kind_of(row.kind));
    }
}

// "1", "0x11"; the lowest bit first.
std::string constant_text(const std::vector<bool>& value) {
    if (std::ranges::find(value, true) == value.end()) {
        return "0";
    }
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        number |= std::uint64_t{value[i]} << i;
    }
    return number < 10 ? fmt::format("{}", number) : fmt::format("{:#x}", number);
}

template <Side side>
void add_row(std::vector<Part>& parts, const RowView& view, const char* title) {
    for (unsigned i = 0; i < view.count; ++i) {
        const auto moved = [i](Span span, unsigned step) {
            return Span{static_cast<std::uint16_t>(span.first_bit + i * step), span.width};
        };
        Row<side> row{.kind = view.kind,
                      .combines = view.combines,
                      .to = moved(view.to, view.to_step),
                      .from = {moved(view.from[0], view.from_step)},
                      .flag = moved(view.flag, side == Side::physical ? view.from_step : view.to_step),
                      .value = view.value};
        Part part{.kind = kind_of(view.kind), .text = text_of(view), .title = title, .combines = view.combines};
        if (row.reads_whole_fields()) {
            std::ranges::copy_if(view.from, std::back_inserter(part.from), [](Span span) { return span.width != 0; });
        }
        const auto add_bits = [&row](Part& to_part, const Part* besides = nullptr) {
            npxlate::layout_detail::for_each_bit(row, [&](unsigned to, Cell cell, bool) {
                const auto bit = static_cast<std::uint16_t>(to);
                if (besides == nullptr || !besides->bits.contains(bit)) {
                    // Two sources of one bit: only the lowest bit of a shifted value, ORed in.
                    if (!to_part.bits.try_emplace(bit, cell).second) {
                        to_part.ored.push_back({bit, cell.from});
                    }
                }
            });
        };
        add_bits(part);
        if (view.has_label_tail) {
            // What follows the label are fields of their own: zero bits, and the flag.
            row.has_label_tail = true;
            Part tail{.kind = Kind::constant, .text = "", .title = title};
            add_bits(tail, &part);
            Part flag{.kind = Kind::copied, .text = text_of(Kind::copied), .title = title};
            for (const auto& [bit, cell] : tail.bits) {
                if (is_moved(cell)) {
                    flag.bits.emplace(bit, cell);
                }
            }
            std::erase_if(tail.bits, [](const auto& bit) { return is_moved(bit.second); });
            parts.push_back(std::move(part));
            parts.push_back(std::move(tail));
            parts.push_back(std::move(flag));
        } else {
            parts.push_back(std::move(part));
        }
    }
}

Part copied_by_hand(const Event& event) {
    const Kind kind = event.reversed ? Kind::reversed : Kind::copied;
    Part part{.kind = kind, .text = text_of(kind)};
    for (unsigned k = 0; k < event.bits.width; ++k) {
        const unsigned to = event.reversed ? npxlate::layout_detail::reversed_bit(k, event.bits.width / 8U) : k;
        part.bits.emplace(static_cast<std::uint16_t>(event.bits.first_bit + to),
                          Cell{Cell::moved, static_cast<std::uint16_t>(event.from + k)});
    }
    return part;
}

Part put_by_code(const Act& act) {
    const Event& event = act.event;
    Part part{.kind = Kind::computed, .text = event.sentence, .from = act.looked_at};
    for (unsigned k = 0; k < event.bits.width; ++k) {
        part.bits.emplace(static_cast<std::uint16_t>(event.bits.first_bit + k), Cell{Cell::computed});
    }
    return part;
}

bool contains(Span span, std::uint16_t bit) {
    return bit >= span.first_bit && bit < unsigned{span.first_bit} + span.width;
}

// The part's bits that come from a place that code changed beforehand: what they are, the sentence of the change says.
Part take_changed(Part& part, const Event& change) {
    Part changed{.kind = Kind::computed, .text = change.sentence, .title = part.title, .combines = part.combines};
    for (const auto& [bit, cell] : part.bits) {
        if (is_moved(cell) && contains(change.bits, cell.from)) {
            changed.bits.emplace(bit, Cell{Cell::computed});
        }
    }
    std::erase_if(part.bits, [&](const auto& bit) { return changed.bits.contains(bit.first); });
    return changed;
}

void add_links(OutBit& bit, std::uint16_t to, const Part& part) {
    const Cell& cell = part.bits.at(to);
    if (is_moved(cell)) {
        bit.links.push_back({to, cell.from, cell.kind == Cell::inverted});
    }
    for (const Link& link : part.ored) {
        if (link.to == to) {
            bit.links.push_back(link);
        }
    }
}

// The next bit of a straight run: one further on both sides.
bool follows(const OutBit& bit, const OutBit& before) {
    return std::ranges::equal(bit.links, before.links, [](const Link& link, const Link& earlier) {
        return link.from == earlier.from + 1 && link.inverted == earlier.inverted;
    });
}

Field piece(const std::vector<std::uint16_t>& to, const Label& label, const std::vector<OutBit>& bits) {
    const OutBit& first = bits[to.front()];
    Field field{.kind = first.kind, .to = {}, .from = {}, .text = text_of(first.kind), .title = {}};
    if (label.part != nullptr || !label.combined.empty()) {
        const Part& part = label.part != nullptr ? *label.part : *label.combined.front();
        field.title = part.title;
        if (first.kind == Kind::computed) {
            field.text = part.text;
        }
    }
    std::set<std::uint16_t> from;
    std::vector<bool> value;
    for (const std::uint16_t bit : to) {
        value.push_back(bits[bit].value);
        from.insert(bits[bit].from.begin(), bits[bit].from.end());
        for (const Link& link : bits[bit].links) {
            from.insert(link.from);
            field.links.push_back(link);
        }
    }
    if (first.kind == Kind::constant) {
        field.text = constant_text(value);
    } else if (!first.links.empty() && first.kind != Kind::computed) {
        field.kind = first.links.front().inverted ? Kind::inverted : Kind::copied;
        field.text = text_of(field.kind);
        if (first.links.size() > 1) {
            field.text = "ORed together";
        }
    }
    field.to = spans_of({to.begin(), to.end()});
    field.from = spans_of(from);
    return field;
}

}  // namespace

std::vector<Part> parts_of(const Act& act) {
    const Event& event = act.event;
    std::vector<Part> parts;
    switch (event.kind) {
        case Event::placed:
            for (const RowView& row : event.layout->rows) {
                if (event.layout->side == Side::physical) {
                    add_row<Side::physical>(parts, row, event.layout->title);
                } else {
                    add_row<Side::logical>(parts, row, event.layout->title);
                }
            }
            break;
        case Event::put:
            parts.push_back(put_by_code(act));
            break;
        case Event::copied:
            parts.push_back(copied_by_hand(event));
            break;
        case Event::looked_at:
        case Event::changed_input:
            break;
    }
    std::erase_if(parts, [](const Part& part) { return part.bits.empty(); });
    // What is ORed in comes last, as it does when a layout is placed.
    std::stable_partition(parts.begin(), parts.end(), [](const Part& part) { return !part.combines; });
    return parts;
}

Labels::Labels(const std::vector<Act>& acts, std::size_t out_bytes) : labels_(8 * out_bytes), bits_(8 * out_bytes) {
    std::vector<const Event*> changes;
    for (const Act& act : acts) {
        if (act.event.kind == Event::changed_input) {
            changes.push_back(&act.event);
        }
        for (Part& part : parts_of(act)) {
            for (const Event* change : changes) {
                Part changed = take_changed(part, *change);
                if (!changed.bits.empty()) {
                    write(parts_.emplace_back(std::move(changed)));
                }
            }
            write(parts_.emplace_back(std::move(part)));
        }
    }
}

void Labels::write(const Part& part) {
    for (const auto& [to, cell] : part.bits) {
        if (to >= bits_.size()) {
            continue;  // a record of variable length that ends before
        }
        OutBit& bit = bits_[to];
        Label& label = labels_[to];
        if (part.combines && is_constant(cell)) {
            if (cell.kind == Cell::zero) {
                continue;
            }
            // ORed with 1: whatever was there does not matter.
            label = {&part};
            bit = {.kind = Kind::constant, .value = true};
        } else if (part.combines && label.part != nullptr && bit.value) {
            continue;  // a constant 1 stays what it is
        } else if (part.combines && bit.kind != Kind::cleared) {
            label.combined.push_back(&part);
            if (bit.kind == Kind::constant) {
                bit.kind = part.kind;
            }
            add_links(bit, to, part);
        } else {
            label = {&part};
            bit = {.kind = is_constant(cell) ? Kind::constant : part.kind, .value = cell.kind == Cell::one};
            add_links(bit, to, part);
            const std::set<std::uint16_t> from = bits_of(part.from);
            bit.from.assign(from.begin(), from.end());
        }
    }
}

Field field_of(const Part& part) {
    Field field{.kind = part.kind, .to = {}, .from = {}, .text = part.text, .title = part.title};
    field.combines = part.combines;
    std::set<std::uint16_t> to;
    std::set<std::uint16_t> from;
    std::vector<bool> value;
    for (const auto& [bit, cell] : part.bits) {
        to.insert(bit);
        value.push_back(cell.kind == Cell::one);
        if (is_moved(cell)) {
            from.insert(cell.from);
            field.links.push_back({bit, cell.from, cell.kind == Cell::inverted});
        }
    }
    for (const Link& link : part.ored) {
        from.insert(link.from);
        field.links.push_back(link);
    }
    if (part.kind == Kind::constant) {
        field.text = constant_text(value);
    }
    field.to = spans_of(to);
    field.from = spans_of(from.empty() ? bits_of(part.from) : from);
    return field;
}

std::vector<Field> fields_of(const std::vector<Label>& labels, const std::vector<OutBit>& bits) {
    std::map<const Part*, std::size_t> standing;
    for (std::size_t bit = 0; bit < labels.size(); ++bit) {
        if (labels[bit].combined.empty() && bits[bit].kind != Kind::left_alone) {
            ++standing[labels[bit].part];
        }
    }
    std::vector<Field> fields;
    std::set<const Part*> described;
    for (std::size_t bit = 0; bit < labels.size();) {
        const Label& label = labels[bit];
        const bool whole = label.part != nullptr && standing[label.part] == label.part->bits.size();
        if (whole) {
            if (described.insert(label.part).second) {
                Field field = field_of(*label.part);
                field.combines = false;
                if (field.kind == Kind::computed) {
                    std::set<std::uint16_t> from;
                    for (const auto& [to, cell] : label.part->bits) {
                        from.insert(bits[to].from.begin(), bits[to].from.end());
                    }
                    field.from = spans_of(from);
                }
                fields.push_back(std::move(field));
            }
            ++bit;
            continue;
        }
        std::vector<std::uint16_t> run;
        do {
            run.push_back(static_cast<std::uint16_t>(bit++));
        } while (bit < labels.size() && labels[bit] == label && bits[bit].kind == bits[bit - 1].kind &&
                 follows(bits[bit], bits[bit - 1]));
        fields.push_back(piece(run, label, bits));
    }
    return fields;
}

std::vector<InputChange> input_changes(const std::vector<Act>& acts) {
    std::vector<InputChange> changes;
    for (const auto& [event, looked_at] : acts) {
        if (event.kind == Event::changed_input) {
            changes.push_back({.bits = {event.bits}, .text = event.sentence});
        }
    }
    return changes;
}

}  // namespace explain
