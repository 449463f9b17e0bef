#include "decode/decode.h"

#include <algorithm>
#include <bit>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>

#include "catalogue/call.h"

namespace decode {
namespace {

namespace trace = npxlate::trace;

using forms::Bit;
using forms::BitId;
using forms::Diagrams;
using forms::Node;
using forms::Space;

bool bit_at(std::span<const std::uint8_t> bytes, std::size_t bit) {
    return bit / 8 < bytes.size() && (bytes[bit / 8] >> bit % 8 & 1) != 0;
}

void set_bit(Bytes& bytes, std::size_t bit) { bytes.at(bit / 8) |= static_cast<std::uint8_t>(1U << bit % 8); }

std::size_t count_bits(const Bytes& bytes) {
    std::size_t count = 0;
    for (const std::uint8_t byte : bytes) {
        count += static_cast<std::size_t>(std::popcount(byte));
    }
    return count;
}

// What is known of bits, by their ids.
class Known {
public:
    std::optional<bool> operator()(BitId id) const {
        const auto found = values_.find(id);
        return found == values_.end() ? std::nullopt : std::optional{found->second};
    }
    // False if the opposite is known already.
    bool learn(BitId id, bool value) { return values_.emplace(id, value).first->second == value; }
    const std::unordered_map<BitId, bool>& all() const { return values_; }

private:
    std::unordered_map<BitId, bool> values_{};
};

bool same(const std::vector<Alternatives>& one, const std::vector<Alternatives>& other) {
    return std::ranges::equal(one, other, [](const Alternatives& a, const Alternatives& b) {
        return std::ranges::equal(a, b, [](const Alternative& first, const Alternative& second) {
            return first.field.at == second.field.at && first.field.values == second.field.values &&
                   same(first.then, second.then);
        });
    });
}

// Whether the bytes show nothing in which the two differ.
bool are_alike(const Candidate& one, const Candidate& other) {
    if (one.of != other.of || one.determined != other.determined || !same(one.groups, other.groups)) {
        return false;
    }
    for (std::size_t i = 0; i < one.record.size(); ++i) {
        if (((one.record[i] ^ other.record[i]) & one.determined[i]) != 0) {
            return false;
        }
    }
    return true;
}

// Those that are alike one after the other, where the first of them stands.
void bring_together(std::vector<Candidate>& candidates) {
    std::size_t number = 0;
    for (auto first = candidates.begin(); first != candidates.end(); ++number) {
        const auto end = std::stable_partition(
            first, candidates.end(), [&, like = *first](const Candidate& next) { return are_alike(like, next); });
        for (; first != end; ++first) {
            first->alike = number;
        }
    }
}

Span span(unsigned first, unsigned width) {
    return {static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(width)};
}

// Neighbouring bits in one span: those of a field that the code reads as one, else at most a byte.
std::vector<Span> fields_of(std::vector<BitId> bits, const std::vector<Span>& read_as_one) {
    std::ranges::sort(bits);
    const auto field_with = [&](unsigned bit) {
        return std::ranges::find_if(read_as_one, [&](const Span& field) {
            return bit >= field.first_bit && bit < unsigned{field.first_bit} + field.width;
        });
    };
    std::vector<Span> fields;
    for (const BitId id : bits) {
        const unsigned bit = trace::index_of(id);
        const bool follows = !fields.empty() && fields.back().first_bit + fields.back().width == bit;
        const auto field = field_with(bit);
        const bool joins = follows && field == field_with(bit - 1) && (field != read_as_one.end() || bit % 8 != 0);
        if (joins) {
            ++fields.back().width;
        } else {
            fields.push_back(span(bit, 1));
        }
    }
    return fields;
}

// The fields of up to 32 bits that rows compute from or that questions ask for.
std::vector<Span> read_as_one(const Forms& forms, const Form& form) {
    constexpr unsigned widest = 32;
    std::vector<Span> fields;
    const auto add = [&](const Span& field) {
        const bool overlaps = std::ranges::any_of(fields, [&](const Span& other) {
            return field.first_bit < other.first_bit + other.width && other.first_bit < field.first_bit + field.width;
        });
        if (field.width > 1 && field.width <= widest && !overlaps) {
            fields.push_back(field);
        }
    };
    for (const forms::Step& step : form.steps) {
        if (step.kind == forms::Step::placed) {
            for (const trace::RowView& row : step.layout->rows) {
                if (row.kind == npxlate::RowKind::mapped) {
                    std::ranges::for_each(row.from, add);
                }
            }
        }
    }
    for (const forms::Answer& answer : form.answers) {
        std::vector<BitId> bits = forms.diagrams().depends_on(forms.questions()[answer.question].node);
        std::ranges::sort(bits);
        if (!bits.empty() && trace::space_of(bits.back()) == Space::in &&
            static_cast<std::size_t>(bits.back() - bits.front()) + 1 == bits.size()) {
            add(span(trace::index_of(bits.front()), static_cast<unsigned>(bits.size())));
        }
    }
    return fields;
}

}  // namespace

// The forms for one length of the record that comes out, made ready to be solved.
class Decoder::Solver {
public:
    Solver(const Translator& translator, std::int32_t in_length) : forms_{translator, in_length} {
        for (const Form& form : forms_.all()) {
            // A record that was refused is on no card.
            const bool hides = translator.has(catalogue::Trait::hides_failures) && !form.length;
            if (form.status == NPXLATE_OK && !hides) {
                plans_.push_back(plan_of(form));
            }
        }
    }

    const Forms& forms() const { return forms_; }

    // The length of the records that the forms make, if they make any.
    std::optional<std::size_t> out_length() const {
        for (const Plan& plan : plans_) {
            if (plan.form->length) {
                return *plan.form->length;
            }
            if (forms_.translator().has(catalogue::Trait::keeps_length)) {
                return forms_.translator().out().most;
            }
        }
        return std::nullopt;
    }

    // Without alternatives, of what is left open one value is given and not the others.
    void decode(std::span<const std::uint8_t> record, bool with_alternatives, std::vector<Candidate>& candidates) {
        for (const Plan& plan : plans_) {
            if (!plan.fits(record)) {
                continue;
            }
            if (std::optional<Candidate> candidate = solve(plan, record, with_alternatives)) {
                candidates.push_back(std::move(*candidate));
            }
        }
    }

    void nearest(std::span<const std::uint8_t> record, std::vector<Refusal>& refusals) {
        for (const Plan& plan : plans_) {
            refusals.push_back(contradictions(plan, record));
        }
    }

    // Fewest bits left open first.
    static std::pair<std::size_t, std::size_t> rank(const Candidate& candidate) {
        const std::size_t total = 8 * candidate.free.size();
        return {count_bits(candidate.free), total - count_bits(candidate.determined)};
    }

private:
    struct Move {
        std::uint16_t to;
        BitId from;
        bool inverted;
    };
    struct Function {
        std::uint16_t to;
        Node node;
    };
    struct Plan {
        const Form* form = nullptr;
        Bytes fixed{};   // the bits that have one value whatever went in
        Bytes values{};  // and these values
        std::vector<Move> moves{};
        std::vector<Function> functions{};

        bool fits(std::span<const std::uint8_t> record) const {
            for (std::size_t i = 0; i < record.size(); ++i) {
                if ((record[i] & fixed[i]) != values[i]) {
                    return false;
                }
            }
            return true;
        }
    };

    Plan plan_of(const Form& form) {
        Diagrams& diagrams = forms_.diagrams();
        const std::size_t bits = std::max(form.out.size(), 8 * std::size_t{form.length.value_or(0)});
        Plan plan{.form = &form, .fixed = Bytes((bits + 7) / 8), .values = Bytes((bits + 7) / 8)};
        const auto fix = [&](std::size_t bit, bool value) {
            set_bit(plan.fixed, bit);
            if (value) {
                set_bit(plan.values, bit);
            }
        };
        for (std::size_t i = 0; i < form.out.size(); ++i) {
            const Bit& bit = form.out[i];
            const auto to = static_cast<std::uint16_t>(i);
            switch (bit.kind) {
                case Bit::constant:
                    fix(i, bit.value != 0);
                    break;
                case Bit::moved:
                case Bit::inverted: {
                    const auto from = static_cast<BitId>(bit.value);
                    if (trace::space_of(from) == Space::out) {
                        break;  // as the caller had it
                    }
                    const bool inverted = bit.kind == Bit::inverted;
                    plan.moves.push_back({to, from, inverted});
                    // What the condition says of the bit is said of this one.
                    const Node source = diagrams.bit(from);
                    if (diagrams.implies(form.condition, source)) {
                        fix(i, !inverted);
                    } else if (diagrams.both(form.condition, source) == trace::never) {
                        fix(i, inverted);
                    }
                    break;
                }
                case Bit::function:
                    plan.functions.push_back({to, bit.value});
                    break;
            }
        }
        return plan;
    }

    // The setting is what it is.
    static void learn_setting(Known& known) {
        for (unsigned bit = 0; bit < 16; ++bit) {
            known.learn(trace::bit_id(Space::setting, bit), (TX_ADJ_KEY_MAX >> bit & 1) != 0);
        }
    }

    std::optional<Candidate> solve(const Plan& plan, std::span<const std::uint8_t> record, bool with_alternatives) {
        Diagrams& diagrams = forms_.diagrams();
        Known known;
        learn_setting(known);
        for (const auto& [to, from, inverted] : plan.moves) {
            if (!known.learn(from, bit_at(record, to) != inverted)) {
                return std::nullopt;
            }
        }
        // What the values of functions leave, then what the condition leaves of that.
        const auto look_up = [&](BitId id) { return known(id); };
        Node by_bytes = trace::always;
        for (const auto& [to, node] : plan.functions) {
            const Node value = diagrams.where(node, look_up);
            by_bytes = diagrams.both(by_bytes, bit_at(record, to) ? value : diagrams.negation(value));
            if (by_bytes == trace::never) {
                return std::nullopt;
            }
        }
        const Node left = diagrams.both(by_bytes, diagrams.where(plan.form->condition, look_up));
        if (left == trace::never) {
            return std::nullopt;
        }

        const std::size_t in_bytes = static_cast<std::size_t>(std::max(forms_.length(), 0));
        Candidate candidate{.form = plan.form, .of = &forms_};
        candidate.record.resize(in_bytes);
        candidate.determined.resize(in_bytes);
        candidate.chosen.resize(in_bytes);
        candidate.free.assign(in_bytes, 0xff);
        const auto take = [&](BitId id, bool value, Bytes* mask) {
            const std::size_t bit = trace::index_of(id);
            if (trace::space_of(id) != Space::in || bit >= 8 * in_bytes) {
                return;
            }
            candidate.free[bit / 8] &= static_cast<std::uint8_t>(~(1U << bit % 8));
            if (mask != nullptr) {
                set_bit(*mask, bit);
            }
            if (value) {
                set_bit(candidate.record, bit);
            }
        };
        for (const auto& [id, value] : known.all()) {
            take(id, value, &candidate.determined);
        }
        std::map<BitId, bool> way;
        for (const auto& [id, value] : diagrams.one_way(left)) {
            way.emplace(id, value);
        }
        std::vector<BitId> open;
        for (const BitId id : diagrams.depends_on(left)) {
            const bool value = way.contains(id) && way.at(id);
            const Node same = value ? diagrams.bit(id) : diagrams.negation(diagrams.bit(id));
            if (diagrams.implies(by_bytes, same)) {
                take(id, value, &candidate.determined);
            } else if (diagrams.implies(left, same)) {
                take(id, value, &candidate.chosen);
            } else {
                take(id, value, nullptr);
                open.push_back(id);
            }
        }
        if (with_alternatives && !open.empty()) {
            candidate.groups = alternatives(left, open, candidate);
        }
        return gives(candidate, *plan.form, record) ? std::optional{std::move(candidate)} : std::nullopt;
    }

    // The bits that are left open, as fields: whole ones, with the bits of theirs that are determined.
    std::vector<Alternatives> alternatives(Node left, const std::vector<BitId>& open, const Candidate& candidate) {
        Diagrams& diagrams = forms_.diagrams();
        std::vector<Span> fields = fields_of(with_neighbours(open, candidate), read_as_one(forms_, *candidate.form));
        std::erase_if(fields, [&](const Span& field) {
            return std::ranges::none_of(open, [&](BitId id) { return is_in(field, id); });
        });
        for (const Span& field : fields) {
            for (unsigned bit = field.first_bit; bit < unsigned{field.first_bit} + field.width; ++bit) {
                if (bit_at(candidate.determined, bit) || bit_at(candidate.chosen, bit)) {
                    const Node set = diagrams.bit(trace::bit_id(Space::in, bit));
                    left = diagrams.both(left, bit_at(candidate.record, bit) ? set : diagrams.negation(set));
                }
            }
        }
        return independent(left, fields);
    }

    // The fields in groups: those are together between which the function does not fall apart.
    std::vector<Alternatives> independent(Node function, std::vector<Span> fields) {
        Diagrams& diagrams = forms_.diagrams();
        std::erase_if(fields, [&](const Span& field) {
            return only(function, {field}) == trace::always && !asks(function, field);
        });
        std::vector<Alternatives> groups;
        while (!fields.empty()) {
            std::vector<Span> group{fields.front()};
            fields.erase(fields.begin());
            for (std::size_t i = 0; i < fields.size();) {
                std::vector<Span> wider = group;
                wider.push_back(fields[i]);
                if (only(function, wider) == diagrams.both(only(function, group), only(function, {fields[i]}))) {
                    ++i;
                } else {
                    group = std::move(wider);
                    fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(i));
                    i = 0;
                }
            }
            groups.push_back(by_first_field(only(function, group), group));
        }
        return groups;
    }

    static bool is_in(const Span& field, BitId id) {
        const unsigned bit = trace::index_of(id);
        return trace::space_of(id) == Space::in && bit >= field.first_bit &&
               bit < unsigned{field.first_bit} + field.width;
    }

    bool asks(Node function, const Span& field) const {
        return std::ranges::any_of(forms_.diagrams().depends_on(function), [&](BitId id) { return is_in(field, id); });
    }

    // What the function says of these fields alone.
    Node only(Node function, const std::vector<Span>& fields) {
        return forms_.diagrams().for_some(function, [&](BitId id) {
            return std::ranges::none_of(fields, [&](const Span& field) { return is_in(field, id); });
        });
    }

    // For each value of the first field what is left for the others; values that leave the same stand together. A field
    // whose values do not fall into a few ranges is told in parts.
    Alternatives by_first_field(Node function, std::vector<Span> fields) {
        const Span field = fields.front();
        std::vector<std::pair<Node, std::vector<Range>>> left;
        constexpr unsigned most_steps = 4096;
        unsigned steps = 0;
        const auto visit = [&](const auto& self, Node node, unsigned bits, std::uint32_t from) -> void {
            if (node == trace::never || ++steps > most_steps) {
                return;
            }
            if (bits == 0 || !asks(node, span(field.first_bit, bits))) {
                auto values = std::ranges::find(left, node, &std::pair<Node, std::vector<Range>>::first);
                if (values == left.end()) {
                    values = left.insert(left.end(), {node, {}});
                }
                const auto to = static_cast<std::uint32_t>(from + ((std::uint64_t{1} << bits) - 1));
                if (!values->second.empty() && values->second.back().second + 1 == from) {
                    values->second.back().second = to;
                } else {
                    values->second.emplace_back(from, to);
                }
                return;
            }
            const BitId highest = trace::bit_id(Space::in, field.first_bit + bits - 1);
            self(self, forms_.diagrams().where(node, highest, false), bits - 1, from);
            self(self, forms_.diagrams().where(node, highest, true), bits - 1, from | std::uint32_t{1} << (bits - 1));
        };
        visit(visit, function, field.width, 0);
        if (steps > most_steps) {
            const unsigned lower = field.width > 8 ? 8 : field.width / 2U;
            fields.front() = span(field.first_bit + lower, field.width - lower);
            fields.insert(fields.begin(), span(field.first_bit, lower));
            return by_first_field(function, std::move(fields));
        }
        Alternatives alternatives;
        for (auto& [rest, values] : left) {
            alternatives.push_back(
                {.field = {field, std::move(values)}, .then = independent(rest, {fields.begin() + 1, fields.end()})});
        }
        return alternatives;
    }

    // The open bits and those between them that belong to the same field of the code.
    std::vector<BitId> with_neighbours(const std::vector<BitId>& open, const Candidate& candidate) {
        std::set<BitId> bits{open.begin(), open.end()};
        const auto add = [&](Node node) {
            std::vector<BitId> depends = forms_.diagrams().depends_on(node);
            if (std::ranges::any_of(depends, [&](BitId id) { return std::ranges::find(open, id) != open.end(); })) {
                std::ranges::copy_if(depends, std::inserter(bits, bits.end()),
                                     [](BitId id) { return trace::space_of(id) == Space::in; });
            }
        };
        for (const Bit& bit : candidate.form->out) {
            if (bit.kind == Bit::function) {
                add(bit.value);
            }
        }
        for (const forms::Answer& answer : candidate.form->answers) {
            add(forms_.questions()[answer.question].node);
        }
        return {bits.begin(), bits.end()};
    }

    // Translated again by the library, it gives these bytes.
    bool gives(const Candidate& candidate, const Form& form, std::span<const std::uint8_t> record) const {
        const Translator& translator = forms_.translator();
        Bytes in = candidate.record;
        in.reserve(1);
        Bytes out{record.begin(), record.end()};
        out.resize(std::max(record.size(), translator.out().most) + 8);
        constexpr std::uint32_t not_stored = 0xffffffff;
        std::uint32_t length = not_stored;
        const std::int32_t status =
            catalogue::call(translator, in.data(), forms_.length(), out.data(), &length, catalogue::Argument{0});
        return status == NPXLATE_OK && length == form.length.value_or(not_stored) &&
               std::equal(record.begin(), record.end(), out.begin());
    }

    Refusal contradictions(const Plan& plan, std::span<const std::uint8_t> record) {
        Diagrams& diagrams = forms_.diagrams();
        const char letter = forms::out_letter(forms_.translator());
        Refusal refusal{.form = plan.form};
        std::map<bool, std::vector<std::uint16_t>> fixed;
        for (std::size_t bit = 0; bit < 8 * record.size(); ++bit) {
            if (bit_at(plan.fixed, bit) && bit_at(record, bit) != bit_at(plan.values, bit)) {
                refusal.contradictions.push_back(
                    {{span(static_cast<unsigned>(bit), 1)}, bit_at(plan.values, bit) ? "1" : "0"});
                ++refusal.bits;
            }
        }
        Known known;
        learn_setting(known);
        std::map<BitId, std::uint16_t> first_seen;
        for (const auto& [to, from, inverted] : plan.moves) {
            if (bit_at(plan.fixed, to)) {
                known.learn(from, bit_at(plan.values, to) != inverted);
            } else if (!known.learn(from, bit_at(record, to) != inverted)) {
                const std::uint16_t other = first_seen.contains(from) ? first_seen[from] : to;
                refusal.contradictions.push_back(
                    {{span(to, 1)}, "the same source as " + trace::position(letter, other, 1)});
                ++refusal.bits;
            }
            first_seen.emplace(from, to);
        }
        // Values of functions, as far as they stand in one place.
        const auto look_up = [&](BitId id) { return known(id); };
        Node left = diagrams.where(plan.form->condition, look_up);
        for (std::size_t i = 0; i < plan.functions.size();) {
            std::size_t end = i;
            Node value = trace::always;
            do {
                const Node one = diagrams.where(plan.functions[end].node, look_up);
                value = diagrams.both(value, bit_at(record, plan.functions[end].to) ? one : diagrams.negation(one));
                ++end;
            } while (end < plan.functions.size() &&
                     same_place(plan, plan.functions[end].to, plan.functions[end - 1].to));
            const Node with = diagrams.both(left, value);
            if (with == trace::never) {
                const unsigned first = plan.functions[i].to;
                const unsigned width = plan.functions[end - 1].to - first + 1U;
                refusal.contradictions.push_back({{span(first, width)}, "another value: no record gives this one"});
                refusal.bits += width;
            } else {
                left = with;
            }
            i = end;
        }
        if (left == trace::never && refusal.contradictions.empty()) {
            refusal.contradictions.push_back({{}, "a record for which " + forms::when(forms_, *plan.form)});
            refusal.bits = 1;
        }
        return refusal;
    }

    static bool same_place(const Plan& plan, std::uint16_t bit, std::uint16_t before) {
        return bit == before + 1 && plan.form->writers[bit] == plan.form->writers[before];
    }

    Forms forms_;
    std::vector<Plan> plans_{};
};

Decoder::Decoder(const Translator& translator) : translator_{&translator} {
    for (std::size_t length = translator.in().least; length <= translator.in().most; ++length) {
        auto solver = std::make_unique<Solver>(translator, static_cast<std::int32_t>(length));
        if (const std::optional<std::size_t> made = solver->out_length()) {
            solvers_.emplace_back(*made, std::move(solver));
        }
    }
}

Decoder::~Decoder() = default;

bool Decoder::makes(std::size_t length) const {
    return std::ranges::any_of(solvers_, [&](const auto& solver) { return solver.first == length; });
}

std::vector<std::size_t> Decoder::lengths() const {
    std::set<std::size_t> all;
    for (const auto& [length, solver] : solvers_) {
        all.insert(length);
    }
    return {all.begin(), all.end()};
}

Result Decoder::decode(std::span<const std::uint8_t> record) const {
    Result result;
    for (const auto& [length, solver] : solvers_) {
        if (length == record.size()) {
            solver->decode(record, true, result.candidates);
        }
    }
    std::ranges::stable_sort(result.candidates, {}, [](const Candidate& one) { return Solver::rank(one); });
    bring_together(result.candidates);
    if (result.candidates.empty()) {
        for (const auto& [length, solver] : solvers_) {
            if (length == record.size()) {
                solver->nearest(record, result.nearest);
            }
        }
        std::ranges::stable_sort(result.nearest, {}, &Refusal::bits);
    }
    return result;
}

Decoder::Best Decoder::best(std::span<const std::uint8_t> record) const {
    std::vector<Candidate> candidates;
    Best best;
    for (auto& [length, solver] : solvers_) {
        if (length != record.size()) {
            continue;
        }
        candidates.clear();
        solver->decode(record, false, candidates);
        if (candidates.empty()) {
            continue;
        }
        best.others += candidates.size() - (best.found ? 0 : 1);
        if (!best.found) {
            best.record = std::ranges::min_element(candidates, {}, [](const Candidate& one) {
                              return Solver::rank(one);
                          })->record;
            best.found = true;
        }
        // Solving makes functions, which are kept in case they are asked for again; after many records that is enough.
        constexpr std::size_t most_functions = 1'000'000;
        if (solver->forms().diagrams().size() > most_functions) {
            solver = std::make_unique<Solver>(*translator_, solver->forms().length());
        }
    }
    return best;
}

}  // namespace decode
