#include "vectors/choose.h"

#include <algorithm>
#include <bit>
#include <map>
#include <set>
#include <stdexcept>
#include <unordered_map>

#include "vectors/tree.h"

namespace vectors {
namespace {

using forms::BitId;
using forms::Diagrams;
using forms::Form;
using forms::Forms;
using forms::Node;
using npxlate::trace::always;
using npxlate::trace::bit_id;
using npxlate::trace::index_of;
using npxlate::trace::never;
using npxlate::trace::node_of;
using npxlate::trace::Space;
using npxlate::trace::space_of;

// For each sample whether something holds of it.
class Column {
public:
    void append(bool value) {
        if (size_ % bits == 0) {
            words_.push_back(0);
        }
        words_.back() |= std::uint64_t{value} << size_ % bits;
        ++size_;
    }
    std::size_t size() const { return size_; }
    std::uint64_t word(std::size_t i) const { return words_[i]; }
    std::size_t words() const { return words_.size(); }

private:
    static constexpr std::size_t bits = 64;
    std::vector<std::uint64_t> words_{};
    std::size_t size_ = 0;
};

class Chooser {
public:
    Chooser(const Forms& forms, std::size_t in_bytes, std::size_t out_bytes);
    std::vector<Sample> run();

private:
    void decide_output(const Form& form, std::size_t output);
    void decide_function(std::size_t output, const forms::Bit& made);
    void decide_question(Node question, const std::vector<std::size_t>& branches);
    void show(const std::vector<std::size_t>& branches, Node condition);

    const Column& column(BitId id) const { return of_bit_[id]; }
    const Column& holding(Node node);
    bool is_shown(std::size_t branch, const Sample& sample, const Form& form) const;
    Node output_from(std::size_t branch, std::size_t output);
    const std::vector<Node>& differences(std::size_t branch);
    std::vector<Node> neighbours(Node function);

    void add(Node condition, std::size_t number);
    bool code(BitId id, std::size_t number) const;

    const Forms& forms_;
    Diagrams& diagrams_;
    Tree tree_;
    Outputs outputs_;
    std::size_t in_bytes_;
    std::size_t out_bytes_;
    std::vector<BitId> others_{};  // the bits with which one may be confused, but for those of the output buffer
    std::vector<Sample> samples_{};
    std::map<const Form*, std::size_t> samples_of_{};
    std::vector<Column> shown_{};  // for each branch
    std::vector<Column> of_bit_;   // by bit, for those of the records and the others
    std::unordered_map<Node, Column> of_node_{};
    std::map<std::pair<std::size_t, std::size_t>, Node> output_from_{};
    std::map<std::size_t, std::vector<Node>> differences_{};  // by branch
};

Chooser::Chooser(const Forms& forms, std::size_t in_bytes, std::size_t out_bytes)
    : forms_{forms},
      diagrams_{forms.diagrams()},
      tree_{forms},
      outputs_{forms},
      in_bytes_{in_bytes},
      out_bytes_{out_bytes},
      shown_(tree_.branches().size()),
      of_bit_(std::size_t{1} << 14) {
    std::set<BitId> others;
    for (std::size_t bit = 0; bit < 8 * in_bytes; ++bit) {
        others.insert(bit_id(Space::in, bit));
    }
    const auto add_argument_bits = [&](Node node) {
        for (const BitId id : diagrams_.depends_on(node)) {
            if (space_of(id) == Space::argument || space_of(id) == Space::setting) {
                others.insert(id);
            }
        }
    };
    for (const Form& form : forms.all()) {
        add_argument_bits(form.condition);
        for (std::size_t output = 0; output < outputs_.count(); ++output) {
            add_argument_bits(node_of(diagrams_, outputs_.of(form, output)));
        }
    }
    others_.assign(others.begin(), others.end());
}

std::vector<Sample> Chooser::run() {
    std::set<std::pair<std::size_t, std::uint32_t>> functions;
    for (const Form& form : forms_.all()) {
        if (samples_of_[&form] == 0) {
            add(form.condition, 0);
        }
        for (std::size_t output = 0; output < outputs_.count(); ++output) {
            decide_output(form, output);
            const forms::Bit made = outputs_.of(form, output);
            if (made.kind == forms::Bit::function && functions.emplace(output, made.value).second) {
                decide_function(output, made);
            }
        }
    }
    std::map<Node, std::vector<std::size_t>> branches_of;
    for (std::size_t branch = 0; branch < tree_.branches().size(); ++branch) {
        const Branch& at = tree_.branches()[branch];
        if (at.form == nullptr) {
            branches_of[at.question].push_back(branch);
            show({branch}, at.question);
            show({branch}, diagrams_.negation(at.question));
        }
    }
    for (const auto& [question, branches] : branches_of) {
        decide_question(question, branches);
    }
    return std::move(samples_);
}

const Column& Chooser::holding(Node node) {
    Column& column = of_node_[node];
    while (column.size() < samples_.size()) {
        const forms::Given given = samples_[column.size()].given();
        column.append(diagrams_.holds(node, [&](BitId id) { return given.bit(id); }));
    }
    return column;
}

// The output of the form is seen to be no constant, unless it is one, and no other bit.
void Chooser::decide_output(const Form& form, std::size_t output) {
    const Node made = node_of(diagrams_, outputs_.of(form, output));
    const Column& among = holding(form.condition);
    const Column& own = holding(made);
    const auto is_not = [&](const Column& other, auto&& node_of_other) {
        for (std::size_t i = 0; i < among.words(); ++i) {
            if ((among.word(i) & (own.word(i) ^ other.word(i))) != 0) {
                return;
            }
        }
        const Node wanted = diagrams_.both(form.condition, diagrams_.differ(made, node_of_other()));
        if (wanted != never) {
            add(wanted, samples_of_[&form]);
            holding(form.condition);
            holding(made);
        }
    };
    is_not(holding(never), [] { return never; });
    is_not(holding(always), [] { return always; });
    for (const BitId other : others_) {
        is_not(column(other), [&] { return diagrams_.bit(other); });
    }
    if (output < 8 * out_bytes_) {
        const BitId before = bit_id(Space::out, output);
        is_not(column(before), [&] { return diagrams_.bit(before); });
    }
}

// What a function may be taken for: itself without one of its bits.
std::vector<Node> Chooser::neighbours(Node function) {
    std::vector<Node> neighbours;
    for (const BitId id : diagrams_.depends_on(function)) {
        neighbours.push_back(diagrams_.where(function, id, false));
        neighbours.push_back(diagrams_.where(function, id, true));
    }
    return neighbours;
}

// A function is seen to be none of its neighbours, in one of the forms that have it there.
void Chooser::decide_function(std::size_t output, const forms::Bit& made) {
    Node used = never;
    for (const Form& form : forms_.all()) {
        if (outputs_.of(form, output) == made) {
            used = diagrams_.either(used, form.condition);
        }
    }
    const Node function = node_of(diagrams_, made);
    for (const Node neighbour : neighbours(function)) {
        const Node wanted = diagrams_.both(used, diagrams_.differ(function, neighbour));
        const Column& seen = holding(wanted);
        bool is_seen = wanted == never;
        for (std::size_t i = 0; i < seen.words(); ++i) {
            is_seen = is_seen || seen.word(i) != 0;
        }
        if (!is_seen) {
            add(wanted, samples_.size());
        }
    }
}

// Under what conditions the outputs show which way the branch went.
const std::vector<Node>& Chooser::differences(std::size_t branch) {
    const auto [known, is_new] = differences_.try_emplace(branch);
    if (is_new) {
        const Branch& at = tree_.branches()[branch];
        std::set<Node> different;
        for (std::size_t output = 0; output < outputs_.count(); ++output) {
            different.insert(diagrams_.both(
                at.reached, diagrams_.differ(output_from(at.if_yes, output), output_from(at.if_no, output))));
        }
        different.erase(never);
        known->second.assign(different.begin(), different.end());
    }
    return known->second;
}

// At one of the branches there is a record for which the condition holds, and which shows which way the branch went.
void Chooser::show(const std::vector<std::size_t>& branches, Node condition) {
    const Column& wanted = holding(condition);
    for (const std::size_t branch : branches) {
        for (std::size_t i = 0; i < wanted.words(); ++i) {
            if ((shown_[branch].word(i) & wanted.word(i)) != 0) {
                return;
            }
        }
    }
    for (const std::size_t branch : branches) {
        for (const Node differs : differences(branch)) {
            if (const Node shown = diagrams_.both(differs, condition); shown != never) {
                add(shown, samples_.size());
                return;
            }
        }
    }
}

// The question is seen to be none of its neighbours and, if it asks for a single bit, not to ask for another.
void Chooser::decide_question(Node question, const std::vector<std::size_t>& branches) {
    for (const Node neighbour : neighbours(question)) {
        show(branches, diagrams_.differ(question, neighbour));
    }
    if (const std::vector<BitId> asked = diagrams_.depends_on(question); asked.size() == 1) {
        for (const BitId other : others_) {
            const Node is_other = diagrams_.bit(other);
            show(branches, diagrams_.differ(diagrams_.bit(asked.front()), is_other));
        }
    }
}

// The output as the branch and those under it make it.
Node Chooser::output_from(std::size_t branch, std::size_t output) {
    const auto known = output_from_.find({branch, output});
    if (known != output_from_.end()) {
        return known->second;
    }
    const Branch& at = tree_.branches()[branch];
    const Node made = at.form != nullptr ? node_of(diagrams_, outputs_.of(*at.form, output))
                                         : diagrams_.if_then_else(at.question, output_from(at.if_yes, output),
                                                                  output_from(at.if_no, output));
    output_from_.emplace(std::pair{branch, output}, made);
    return made;
}

// Whether another answer at the branch would come to another outcome.
bool Chooser::is_shown(std::size_t branch, const Sample& sample, const Form& form) const {
    const forms::Given given = sample.given();
    const auto holds = [&](Node node) { return diagrams_.holds(node, [&](BitId id) { return given.bit(id); }); };
    const Branch& at = tree_.branches()[branch];
    const Form& other = tree_.leaf(holds(at.question) ? at.if_no : at.if_yes, holds);
    for (std::size_t output = 0; output < outputs_.count(); ++output) {
        if (forms_.value(outputs_.of(form, output), given) != forms_.value(outputs_.of(other, output), given)) {
            return true;
        }
    }
    return false;
}

// Bit `number` of a code that no other bit of the records has, nor all bits of which are the same: so few samples with
// these codes tell all bits apart that the conditions leave open.
bool Chooser::code(BitId id, std::size_t number) const {
    const std::size_t own = space_of(id) == Space::out  ? 8 * in_bytes_ + index_of(id)
                            : space_of(id) == Space::in ? index_of(id)
                                                        : 8 * (in_bytes_ + out_bytes_) + index_of(id);
    const auto width = static_cast<unsigned>(std::bit_width(8 * (in_bytes_ + out_bytes_) + 64));
    if (number < width) {
        return ((own + 1) >> number & 1) != 0;
    }
    std::uint64_t mixed = (own + 1) * 0x9e3779b97f4a7c15U + number * 0xbf58476d1ce4e5b9U;
    mixed = (mixed ^ mixed >> 30) * 0x94d049bb133111ebU;
    return (mixed >> 40 & 1) != 0;
}

// A sample that fulfils the condition; what that leaves open has the codes of that number.
void Chooser::add(Node condition, std::size_t number) {
    std::map<BitId, bool> way;
    for (const auto& [id, value] : diagrams_.one_way(condition)) {
        way.emplace(id, value);
    }
    Sample sample{.in = Bytes(in_bytes_), .out = Bytes(out_bytes_), .tx_adj_key_max = TX_ADJ_KEY_MAX};
    const auto value = [&](Space space, std::size_t bit) {
        const BitId id = bit_id(space, bit);
        const auto fixed = way.find(id);
        return fixed != way.end() ? fixed->second : code(id, number);
    };
    for (std::size_t bit = 0; bit < 8 * in_bytes_; ++bit) {
        sample.in[bit / 8] |= static_cast<std::uint8_t>(value(Space::in, bit) << bit % 8);
    }
    for (std::size_t bit = 0; bit < 8 * out_bytes_; ++bit) {
        sample.out[bit / 8] |= static_cast<std::uint8_t>(value(Space::out, bit) << bit % 8);
    }
    for (const BitId id : others_) {
        if (space_of(id) == Space::argument) {
            constexpr unsigned first_bit_of_key_byte = 56;
            const unsigned index = index_of(id);
            const unsigned shift = index >= first_bit_of_key_byte ? index - first_bit_of_key_byte : index;
            sample.argument |= std::uint32_t{value(Space::argument, index)} << shift;
        } else if (space_of(id) == Space::setting) {
            const auto mask = static_cast<std::uint16_t>(1U << index_of(id));
            sample.tx_adj_key_max = static_cast<std::uint16_t>(
                value(Space::setting, index_of(id)) ? sample.tx_adj_key_max | mask : sample.tx_adj_key_max & ~mask);
        }
    }
    const Form& form = forms_.of(sample.given());
    ++samples_of_[&form];
    const forms::Given given = sample.given();
    const auto holds = [&](Node node) { return diagrams_.holds(node, [&](BitId id) { return given.bit(id); }); };
    for (std::size_t branch = 0; branch < tree_.branches().size(); ++branch) {
        const Branch& at = tree_.branches()[branch];
        shown_[branch].append(at.form == nullptr && holds(at.reached) && is_shown(branch, sample, form));
    }
    for (std::size_t bit = 0; bit < 8 * out_bytes_; ++bit) {
        of_bit_[bit_id(Space::out, bit)].append(given.bit(bit_id(Space::out, bit)));
    }
    for (const BitId id : others_) {
        of_bit_[id].append(given.bit(id));
    }
    samples_.push_back(std::move(sample));
}

}  // namespace

std::vector<Sample> choose(const Forms& forms, std::size_t in_bytes, std::size_t out_bytes) {
    return Chooser{forms, in_bytes, out_bytes}.run();
}

}  // namespace vectors
