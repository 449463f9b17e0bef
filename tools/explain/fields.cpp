#include "explain/fields.h"

#include <algorithm>
#include <map>
#include <tuple>

#include <fmt/core.h>

#include "explain/positions.h"

namespace explain {
namespace {

namespace trace = npxlate::trace;

using forms::Bit;
using forms::Form;
using forms::Forms;
using forms::Step;
using forms::Writer;
using npxlate::Cell;
using npxlate::RowKind;
using trace::RowBit;
using trace::RowView;

bool is_move(const Cell& cell) { return cell.kind == Cell::moved || cell.kind == Cell::inverted; }

bool is_of_input(const Bit& bit) {
    return (bit.kind == Bit::moved || bit.kind == Bit::inverted) &&
           trace::space_of(static_cast<trace::BitId>(bit.value)) == trace::Space::in;
}

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
        case RowKind::any:
        case RowKind::none:
        case RowKind::mapped:
            break;
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
            return std::string{row.function != nullptr ? row.function->description : row.function_of_two->description} +
                   (row.to.width > 8 ? ", bytes reversed" : "");
        default:
            return text_of(kind_of(row.kind));
    }
}

// "1", "0x11"; the lowest bit first.
std::string constant_text(const std::vector<bool>& value) {
    if (std::ranges::find(value, true) == value.end()) {
        return "0";
    }
    std::string digits;
    for (std::size_t first = (value.size() + 3) / 4 * 4; first != 0; first -= 4) {
        unsigned digit = 0;
        for (std::size_t i = first - 4; i < std::min(first, value.size()); ++i) {
            digit |= unsigned{value[i]} << (i - (first - 4));
        }
        if (digit != 0 || !digits.empty()) {
            digits += fmt::format("{:x}", digit);
        }
    }
    return digits.size() == 1 && digits < "a" ? digits : "0x" + digits;
}

// How often a row is repeated, and which of these a bit is written by: each is a field of its own.
unsigned repetition(const RowView& row, std::uint16_t to) {
    if (row.count == 1 || row.to_step == 0) {
        return 0;
    }
    // The flag of a label read back stands apart, in steps of the same size.
    const unsigned first = row.flag.width != 0 && to < row.to.first_bit ? row.flag.first_bit : row.to.first_bit;
    return std::min((to - first) / row.to_step, row.count - 1);
}

std::vector<Span> sources_of(const RowView& row) {
    std::vector<Span> sources;
    std::ranges::copy_if(row.from, std::back_inserter(sources), [](Span span) { return span.width != 0; });
    return sources;
}

using Repetition = std::pair<unsigned, unsigned>;  // of a row, by number

// The rows of a layout by itself.
std::map<Repetition, Field> fields_of_layout(const trace::LayoutView& layout) {
    std::map<Repetition, Field> fields;
    std::map<Repetition, std::vector<bool>> constants;
    std::map<Repetition, std::pair<std::set<std::uint16_t>, std::set<std::uint16_t>>> bits;
    for (const RowBit& bit : layout.bits) {
        const RowView& row = layout.rows[bit.row];
        const Repetition key{bit.row, repetition(row, bit.to)};
        Field& field = fields[key];
        field.kind = kind_of(row.kind);
        field.text = text_of(row);
        field.name = row.name == nullptr ? "" : row.name;
        field.title = layout.title;
        field.combines = row.combines;
        bits[key].first.insert(bit.to);
        if (is_move(bit.cell)) {
            bits[key].second.insert(bit.cell.from);
            field.links.push_back({bit.to, bit.cell.from, bit.cell.kind == Cell::inverted});
        }
        constants[key].push_back(bit.cell.kind == Cell::one);
    }
    for (auto& [key, field] : fields) {
        field.to = spans_of(bits[key].first);
        field.from = field.kind == Kind::computed ? sources_of(layout.rows[key.first]) : spans_of(bits[key].second);
        if (field.kind == Kind::constant) {
            field.text = constant_text(constants[key]);
        }
    }
    return fields;
}

class Fields {
public:
    Fields(const Form& form, const std::vector<OutBit>& bits) : form_{form}, bits_{bits} {
        for (std::size_t bit = 0; bit < bits.size(); ++bit) {
            if (bit < form.writers.size() && form.writers[bit].size() == 1) {
                ++standing_[key(bit)];
            }
        }
    }

    std::vector<Field> all() {
        for (std::size_t bit = 0; bit < bits_.size();) {
            if (const Field* whole = whole_row(bit)) {
                if (described_.insert(key(bit)).second) {
                    result_.push_back(*whole);
                }
                ++bit;
                continue;
            }
            const std::size_t first = bit;
            do {
                ++bit;
            } while (bit < bits_.size() && whole_row(bit) == nullptr && joins(bit));
            result_.push_back(piece(first, bit));
        }
        return std::move(result_);
    }

private:
    using Key = std::tuple<unsigned, unsigned, unsigned>;  // step, row, repetition

    const std::vector<Writer>& writers(std::size_t bit) const {
        static const std::vector<Writer> none;
        return bit < form_.writers.size() ? form_.writers[bit] : none;
    }

    Key key(std::size_t bit) const {
        const Writer& writer = writers(bit).front();
        const Step& step = form_.steps[writer.step];
        const unsigned which =
            step.kind == Step::placed ? repetition(step.layout->rows[writer.row], static_cast<std::uint16_t>(bit)) : 0;
        return {writer.step, writer.row, which};
    }

    // The field of the row that wrote the bit, if all of it stands and is what the row says.
    const Field* whole_row(std::size_t bit) {
        if (writers(bit).size() != 1) {
            return nullptr;
        }
        const Key at = key(bit);
        const auto [place, is_new] = rows_.try_emplace(at);
        if (is_new) {
            place->second = row_field(at);
        }
        return place->second ? &*place->second : nullptr;
    }

    std::optional<Field> row_field(const Key& at) {
        const auto& [step_number, row, which] = at;
        const Step& step = form_.steps[step_number];
        Field field;
        if (step.kind == Step::placed) {
            const auto [layout, is_new] = layouts_.try_emplace(step.layout);
            if (is_new) {
                layout->second = fields_of_layout(*step.layout);
            }
            field = layout->second.at({row, which});
        } else {
            field = put_field(step);
        }
        std::set<std::uint16_t> from;
        std::size_t width = 0;
        for (const Span span : field.to) {
            for (unsigned k = 0; k < span.width; ++k) {
                const std::size_t bit = span.first_bit + k;
                ++width;
                if (bit >= bits_.size() || !stands(bit, field)) {
                    return std::nullopt;
                }
                from.insert(bits_[bit].from.begin(), bits_[bit].from.end());
            }
        }
        if (standing_.at(at) != width) {
            return std::nullopt;
        }
        if (field.kind == Kind::computed) {
            field.from = spans_of(from);
        }
        field.combines = false;
        return field;
    }

    // Whether the bit is what its row, by itself, makes of it: not when the record that was read had been changed.
    bool stands(std::size_t bit, const Field& field) const {
        if (writers(bit).size() != 1) {
            return false;
        }
        if (field.kind == Kind::computed || field.kind == Kind::constant) {
            return bits_[bit].kind == field.kind;
        }
        const auto link = std::ranges::find(field.links, bit, &Link::to);
        if (link == field.links.end()) {
            return bits_[bit].kind == Kind::constant;  // beside a label
        }
        return bits_[bit].links.size() == 1 && bits_[bit].links.front().from == link->from &&
               bits_[bit].links.front().inverted == link->inverted;
    }

    // A value that is moved as it is, or with its bytes reversed, is no computation.
    Field put_field(const Step& step) const {
        Field field{.kind = Kind::computed, .to = {step.bits}, .text = step.words};
        field.name = step.name == nullptr ? "" : step.name;
        const std::size_t first = step.bits.first_bit;
        if (first + step.bits.width > bits_.size() || bits_[first].links.size() != 1) {
            if (first < bits_.size() && bits_[first].kind == Kind::constant) {
                field.kind = Kind::constant;
                std::vector<bool> value;
                for (std::size_t bit = first; bit < std::min(first + step.bits.width, bits_.size()); ++bit) {
                    value.push_back(bits_[bit].value);
                }
                field.text = constant_text(value);
            }
            return field;
        }
        std::set<std::uint16_t> from;
        for (std::size_t bit = first; bit < first + step.bits.width; ++bit) {
            field.links.insert(field.links.end(), bits_[bit].links.begin(), bits_[bit].links.end());
            from.insert(field.links.back().from);
        }
        const bool keeps_order = field.links.front().from == *from.begin();
        field.kind = field.links.front().inverted ? Kind::inverted : keeps_order ? Kind::copied : Kind::reversed;
        field.text = text_of(field.kind);
        field.from = spans_of(from);
        return field;
    }

    // Whether the bit has the same to tell as the one before it, one further on both sides.
    bool joins(std::size_t bit) const {
        const OutBit& here = bits_[bit];
        const OutBit& before = bits_[bit - 1];
        return writers(bit) == writers(bit - 1) && here.kind == before.kind &&
               (writers(bit).empty() || key(bit) == key(bit - 1)) &&
               std::ranges::equal(here.links, before.links, [](const Link& link, const Link& earlier) {
                   return link.from == earlier.from + 1 && link.inverted == earlier.inverted;
               });
    }

    Field piece(std::size_t first, std::size_t end) const {
        const OutBit& bit = bits_[first];
        Field field{.kind = bit.kind, .text = text_of(bit.kind)};
        for (const Writer& writer : writers(first)) {
            const Step& step = form_.steps[writer.step];
            const RowView* const row = step.kind == Step::placed ? &step.layout->rows[writer.row] : nullptr;
            field.title = row != nullptr ? step.layout->title : "";
            field.name = row != nullptr && row->name != nullptr ? row->name : step.name != nullptr ? step.name : "";
            if (bit.kind == Kind::computed) {
                field.text = row == nullptr ? step.words : is_computed(*row) ? text_of(*row) : words_of_change();
            }
            if (!field.name.empty()) {
                break;
            }
        }
        std::set<std::uint16_t> from;
        std::vector<bool> value;
        for (std::size_t i = first; i < end; ++i) {
            value.push_back(bits_[i].value);
            from.insert(bits_[i].from.begin(), bits_[i].from.end());
            for (const Link& link : bits_[i].links) {
                from.insert(link.from);
                field.links.push_back(link);
            }
        }
        if (bit.kind == Kind::constant) {
            field.text = constant_text(value);
        } else if (bit.links.size() > 1) {
            field.text = "ORed together";
        }
        field.to = {{static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(end - first)}};
        field.from = spans_of(from);
        return field;
    }

    static bool is_computed(const RowView& row) { return kind_of(row.kind) == Kind::computed; }

    // A row that only moves, of bits that had been changed in the record that went in.
    std::string words_of_change() const {
        const auto change = std::ranges::find(form_.steps, Step::changed_input, &Step::kind);
        return change == form_.steps.end() ? "" : change->words;
    }

    const Form& form_;
    const std::vector<OutBit>& bits_;
    std::map<Key, std::size_t> standing_{};
    std::map<Key, std::optional<Field>> rows_{};
    std::map<const trace::LayoutView*, std::map<Repetition, Field>> layouts_{};
    std::set<Key> described_{};
    std::vector<Field> result_{};
};

// The bits that rows OR together, if that is all that becomes of a bit.
std::vector<Link> ored_links(const Forms& forms, const Form& form, std::uint16_t to) {
    std::vector<Link> links;
    trace::Node ored = trace::never;
    forms::Diagrams& diagrams = forms.diagrams();
    for (const Writer& writer : form.writers[to]) {
        const Step& step = form.steps[writer.step];
        if (step.kind != Step::placed) {
            return {};
        }
        for (const RowBit& bit : step.layout->bits) {
            if (bit.row == writer.row && bit.to == to && is_move(bit.cell)) {
                const bool inverted = bit.cell.kind == Cell::inverted;
                links.push_back({to, bit.cell.from, inverted});
                const trace::Node node = diagrams.bit(trace::bit_id(trace::Space::in, bit.cell.from));
                ored = diagrams.either(ored, inverted ? diagrams.negation(node) : node);
            }
        }
    }
    return form.out[to].kind == Bit::function && form.out[to].value == ored ? links : std::vector<Link>{};
}

// What a value that code puts is, taken as a whole: a constant, bits that are moved in their order or with their bytes
// reversed, or a computation.
Kind kind_of_value(const Form& form, const Step& step) {
    const auto bit_at = [&](unsigned k) { return form.out[step.bits.first_bit + k]; };
    const unsigned width = step.bits.width;
    bool constant = true;
    bool moved = true;
    bool reversed = width % 8 == 0;
    for (unsigned k = 0; k < width; ++k) {
        const Bit bit = bit_at(k);
        constant = constant && bit.kind == Bit::constant;
        moved = moved && is_of_input(bit) && bit.kind == bit_at(0).kind && bit.value == bit_at(0).value + k;
        if (reversed) {
            const Bit first = bit_at(npxlate::layout_detail::reversed_bit(0, width / 8));
            const Bit other = bit_at(npxlate::layout_detail::reversed_bit(k, width / 8));
            reversed = is_of_input(other) && other.kind == first.kind && other.value == first.value + k;
        }
    }
    return constant ? Kind::constant : moved ? Kind::copied : reversed ? Kind::reversed : Kind::computed;
}

}  // namespace

std::vector<OutBit> out_bits(const Forms& forms, const Form& form, std::size_t bits) {
    std::vector<OutBit> result(bits);
    for (std::size_t i = 0; i < bits; ++i) {
        OutBit& out = result[i];
        if (i >= form.out.size()) {
            out.kind = Kind::left_alone;
            continue;
        }
        const Bit& bit = form.out[i];
        const auto to = static_cast<std::uint16_t>(i);
        if (form.writers[i].empty()) {
            out.kind = bit.kind == Bit::constant ? Kind::cleared : Kind::left_alone;
            continue;
        }
        const Step& step = form.steps[form.writers[i].front().step];
        const bool alone = form.writers[i].size() == 1;
        const bool by_function =
            alone &&
            (step.kind == Step::placed ? kind_of(step.layout->rows[form.writers[i].front().row].kind) == Kind::computed
                                       : step.kind == Step::put && kind_of_value(form, step) == Kind::computed);
        if (bit.kind == Bit::constant && !by_function) {
            out.kind = Kind::constant;
            out.value = bit.value != 0;
        } else if (is_of_input(bit) && !by_function) {
            out.kind = bit.kind == Bit::inverted ? Kind::inverted : Kind::copied;
            out.links = {{to, static_cast<std::uint16_t>(trace::index_of(static_cast<trace::BitId>(bit.value))),
                          bit.kind == Bit::inverted}};
        } else if (std::vector<Link> links = ored_links(forms, form, to); !links.empty()) {
            out.kind = Kind::copied;
            out.links = std::move(links);
        } else {
            out.kind = Kind::computed;
            for (const trace::BitId id : forms.diagrams().depends_on(trace::node_of(forms.diagrams(), bit))) {
                if (trace::space_of(id) == trace::Space::in) {
                    out.from.push_back(static_cast<std::uint16_t>(trace::index_of(id)));
                }
            }
            std::ranges::sort(out.from);
        }
    }
    return result;
}

std::vector<Field> fields_of(const Form& form, const std::vector<OutBit>& bits) { return Fields{form, bits}.all(); }

std::vector<Field> fields_of(const Step& step) {
    if (step.kind == Step::placed) {
        std::vector<Field> fields;
        for (auto& [row, field] : fields_of_layout(*step.layout)) {
            fields.push_back(std::move(field));
        }
        return fields;
    }
    if (step.kind == Step::changed_input) {
        return {};
    }
    Field field{.kind = Kind::computed, .to = {step.bits}, .text = step.words};
    field.name = step.name == nullptr ? "" : step.name;
    if (step.kind == Step::copied) {
        field.kind = step.reversed ? Kind::reversed : Kind::copied;
        field.text = text_of(field.kind);
        field.from = {{step.from, step.bits.width}};
    }
    return {field};
}

std::vector<InputChange> input_changes(const Form& form) {
    std::vector<InputChange> changes;
    for (const Step& step : form.steps) {
        if (step.kind == Step::changed_input) {
            changes.push_back({.bits = {step.bits}, .text = step.words});
        }
    }
    return changes;
}

}  // namespace explain
