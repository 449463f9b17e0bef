// The second reading, walked over what the computed forms say there is to walk: every model that a test of the records
// holds is compared with the library on records chosen from the forms of its translator, and it is shown that nothing
// of the forms was left out.
//
// For each form, on records that fulfil its condition:
//   - each bit of the records, and of what else the translator looks at, is changed by itself;
//   - each byte of the record that goes in takes all values, and so does each group of bits on which an output bit, the
//     condition or what becomes of the input depends, up to 12 bits; groups of up to 16 bits take them over all forms
//     that make the same of them;
//   - larger functions are walked through every branch of their diagrams, both ways, where the branch decides.
// "All" means what the condition leaves possible. What is changed may lead to another form, and is compared there.
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "forms/forms.h"
#include "support/harness.h"
#include "support/models.h"
#include "vectors/choose.h"

namespace {

using forms::Bit;
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
using support::Bytes;
using vectors::Sample;

constexpr std::size_t walked_in_each_form = 12;  // bits of a group
constexpr std::size_t walked_at_all = 16;

// What was walked.
struct Count {
    std::size_t forms = 0;
    std::size_t bits = 0;      // changed by themselves, in each form
    std::size_t groups = 0;    // of bits that took all values, in each form
    std::size_t values = 0;    // that they took
    std::size_t branches = 0;  // of diagrams, of all functions that are larger, in each form
    std::size_t records = 0;

    void add(const Count& other) {
        forms += other.forms;
        bits += other.bits;
        groups += other.groups;
        values += other.values;
        branches += other.branches;
        records += other.records;
    }
};

Count total;

bool get(const Sample& sample, BitId id) { return sample.given().bit(id); }

void set(Sample& sample, BitId id, bool value) {
    if (get(sample, id) == value) {
        return;
    }
    const unsigned index = index_of(id);
    switch (space_of(id)) {
        case Space::in:
            sample.in.at(index / 8) ^= static_cast<std::uint8_t>(1U << index % 8);
            return;
        case Space::out:
            sample.out.at(index / 8) ^= static_cast<std::uint8_t>(1U << index % 8);
            return;
        case Space::argument: {
            constexpr unsigned first_bit_of_key_byte = 56;
            sample.argument ^= std::uint32_t{1}
                               << (index >= first_bit_of_key_byte ? index - first_bit_of_key_byte : index);
            return;
        }
        case Space::setting:
            sample.tx_adj_key_max = static_cast<std::uint16_t>(sample.tx_adj_key_max ^ 1U << index);
            return;
    }
}

// Bits that matter together, or a byte.
struct Group {
    std::vector<BitId> bits;   // sorted
    bool matters;              // something depends on them
    std::vector<bool> seen{};  // by value: the first bit is the lowest

    Group(std::vector<BitId> of, bool matter)
        : bits{std::move(of)}, matters{matter}, seen(std::size_t{1} << bits.size()) {}

    std::size_t value_in(const Sample& sample) const {
        const forms::Given given = sample.given();
        std::size_t value = 0;
        for (std::size_t i = 0; i < bits.size(); ++i) {
            value |= std::size_t{given.bit(bits[i])} << i;
        }
        return value;
    }
};

// A branch of a diagram: the records that come to it, and for which the way on matters.
struct Fork {
    BitId bit = 0;
    Node decides = never;
};

class Walk {
public:
    Walk(const Forms& forms, const support::ModelOf& model_of);
    Count run();
    // A record that fulfils the condition; what that leaves open is by chance.
    Sample by_chance(Node condition);

private:
    struct OfForm {
        std::vector<Group> groups{};
        std::set<BitId> changed{};  // bits that were changed by themselves
    };
    // A group too large for each form, and the forms that make the same of it.
    struct Large {
        Group group;
        std::vector<const Form*> forms{};
    };

    void walk(const Form& form);
    void change_every_bit(const Form& form);
    void take_all_bytes(const Form& form);
    void take_all_values(const Form& form, Group& group);
    void take_every_branch(const Form& form, Node function);
    void take_all_values_at_all();
    void expect_complete(const Form& form);
    void expect_large_complete();

    struct Different {};  // thrown

    void compare(const Sample& sample);
    void note(const Sample& sample, Group& group, const Form& form);
    void change(const Sample& sample, BitId id);

    Sample plain(Node condition, bool value = false);
    Sample fulfilling(Node condition, Sample sample) const;

    std::set<Node> functions_of(const Form& form) const;
    std::vector<Fork> forks(Node function, Node condition);
    bool possible(const Form& form, const Group& group, std::size_t value) {
        return where(form, group, value) != never;
    }
    Node where(const Form& form, const Group& group, std::size_t value);

    const Forms& forms_;
    const support::ModelOf& model_of_;
    Diagrams& diagrams_;
    std::size_t in_bytes_;
    std::size_t out_bytes_;
    std::vector<BitId> all_bits_{};
    Sample asked_{};  // with the bits of the argument and the setting that are among them set
    std::vector<OfForm> of_forms_;
    std::map<std::pair<std::vector<BitId>, std::set<Node>>, Large> large_{};  // by what is made of the bits
    std::map<std::uint32_t, support::Modelled> models_{};                     // by argument
    support::Random random_{0x77616c6b};
    Count count_{};
};

Walk::Walk(const Forms& forms, const support::ModelOf& model_of)
    : forms_{forms},
      model_of_{model_of},
      diagrams_{forms.diagrams()},
      in_bytes_{static_cast<std::size_t>(forms.length())},
      out_bytes_{forms.all().front().out.size() / 8},
      of_forms_(forms.all().size()) {
    std::set<BitId> bits;
    for (std::size_t bit = 0; bit < 8 * in_bytes_; ++bit) {
        bits.insert(bit_id(Space::in, bit));
    }
    for (std::size_t bit = 0; bit < 8 * out_bytes_; ++bit) {
        bits.insert(bit_id(Space::out, bit));
    }
    // Of the argument and the setting, those that some form looks at.
    std::set<BitId> matters;  // bits that decide, or that are made into something together with others
    for (const Form& form : forms.all()) {
        for (const Node function : functions_of(form)) {
            const std::vector<BitId> asked = diagrams_.depends_on(function);
            bits.insert(asked.begin(), asked.end());
            if (function == form.condition || asked.size() > 1) {
                matters.insert(asked.begin(), asked.end());
            }
        }
    }
    all_bits_.assign(bits.begin(), bits.end());
    for (const BitId id : all_bits_) {
        if (space_of(id) == Space::argument || space_of(id) == Space::setting) {
            set(asked_, id, true);
        }
    }
    for (const Form& form : forms.all()) {
        std::set<std::vector<BitId>> groups;
        std::map<std::vector<BitId>, std::set<Node>> large;
        for (const Node function : functions_of(form)) {
            std::vector<BitId> asked = diagrams_.depends_on(function);
            std::ranges::sort(asked);
            if (asked.size() > walked_at_all) {
                continue;
            }
            if (asked.size() > walked_in_each_form) {
                large[std::move(asked)].insert(function);
            } else {
                groups.insert(std::move(asked));
            }
        }
        for (std::size_t byte = 0; byte < in_bytes_; ++byte) {
            std::vector<BitId> group;
            for (std::size_t bit = 8 * byte; bit < 8 * byte + 8; ++bit) {
                group.push_back(bit_id(Space::in, bit));
            }
            groups.insert(std::move(group));
        }
        const auto is_needed = [&](const std::vector<BitId>& group) {
            return !group.empty() && std::ranges::none_of(groups, [&](const std::vector<BitId>& other) {
                return other.size() > group.size() && std::ranges::includes(other, group);
            });
        };
        for (const std::vector<BitId>& group : groups) {
            if (is_needed(group)) {
                const bool of_matter = std::ranges::any_of(group, [&](BitId id) { return matters.contains(id); });
                of_forms_[forms.number_of(form)].groups.emplace_back(group, of_matter);
            }
        }
        for (const auto& [asked, functions] : large) {
            large_.try_emplace({asked, functions}, Large{Group{asked, true}}).first->second.forms.push_back(&form);
        }
    }
}

Count Walk::run() {
    try {
        for (const Sample& chosen : vectors::choose(forms_, in_bytes_, out_bytes_)) {
            compare(chosen);
        }
        for (const Form& form : forms_.all()) {
            walk(form);
        }
        take_all_values_at_all();
    } catch (const Different&) {
        return {};  // a test has failed
    }
    for (const Form& form : forms_.all()) {
        expect_complete(form);
    }
    expect_large_complete();
    count_.forms = forms_.all().size();
    return count_;
}

// Its condition, and what becomes of every bit of both records.
std::set<Node> Walk::functions_of(const Form& form) const {
    std::set<Node> functions{form.condition};
    for (const Bit& bit : form.out) {
        functions.insert(node_of(diagrams_, bit));
    }
    for (const auto& [bit, after] : form.in_after) {
        functions.insert(node_of(diagrams_, after));
    }
    return functions;
}

Sample Walk::by_chance(Node condition) {
    const auto chance = random_.next();
    return fulfilling(condition,
                      {.in = random_.record(in_bytes_),
                       .out = random_.record(out_bytes_),
                       .argument = static_cast<std::uint32_t>(chance) & asked_.argument,
                       .tx_adj_key_max = static_cast<std::uint16_t>((chance >> 32 & asked_.tx_adj_key_max) |
                                                                    (TX_ADJ_KEY_MAX & ~asked_.tx_adj_key_max))});
}

// What the condition leaves open is this.
Sample Walk::plain(Node condition, bool value) {
    const std::uint8_t byte = value ? 0xff : 0;
    return fulfilling(condition, {.in = Bytes(in_bytes_, byte),
                                  .out = Bytes(out_bytes_, byte),
                                  .argument = value ? asked_.argument : 0,
                                  .tx_adj_key_max = TX_ADJ_KEY_MAX});
}

// The sample, changed where the condition demands it.
Sample Walk::fulfilling(Node condition, Sample sample) const {
    while (condition > always) {
        const BitId id = diagrams_.asks(condition);
        bool value = get(sample, id);
        if ((value ? diagrams_.if_set(condition) : diagrams_.if_clear(condition)) == never) {
            value = !value;
            set(sample, id, value);
        }
        condition = value ? diagrams_.if_set(condition) : diagrams_.if_clear(condition);
    }
    return sample;
}

// The form's condition where the group has the value.
Node Walk::where(const Form& form, const Group& group, std::size_t value) {
    return diagrams_.where(form.condition, [&](BitId id) -> std::optional<bool> {
        const auto found = std::ranges::lower_bound(group.bits, id);
        if (found == group.bits.end() || *found != id) {
            return std::nullopt;
        }
        return (value >> (found - group.bits.begin()) & 1) != 0;
    });
}

// Of all branches at which the function asks for a bit: the records of the condition that come there and for which the
// answer decides. Where there are none, the form never gets there.
std::vector<Fork> Walk::forks(Node function, Node condition) {
    std::map<Node, Node> reached{{function, condition}};
    std::vector<Node> order{function};  // each after all that lead to it
    {
        order.clear();
        std::set<Node> known;
        const auto visit = [&](const auto& self, Node node) -> void {
            if (node > always && known.insert(node).second) {
                self(self, diagrams_.if_clear(node));
                self(self, diagrams_.if_set(node));
                order.push_back(node);
            }
        };
        visit(visit, function);
        std::ranges::reverse(order);
    }
    std::vector<Fork> result;
    for (const Node node : order) {
        const Node here = reached[node];
        const BitId id = diagrams_.asks(node);
        const Node set = diagrams_.bit(id);
        const auto lead = [&](Node to, Node how) {
            Node& known = reached.try_emplace(to, never).first->second;
            known = diagrams_.either(known, diagrams_.both(here, how));
        };
        lead(diagrams_.if_set(node), set);
        lead(diagrams_.if_clear(node), diagrams_.negation(set));
        result.push_back(
            {id, diagrams_.both(here, diagrams_.differ(diagrams_.if_set(node), diagrams_.if_clear(node)))});
    }
    return result;
}

// The library does to the sample what the model says; where it does not, that is all there is to know.
void Walk::compare(const Sample& sample) {
    ++count_.records;
    auto found = models_.find(sample.argument);
    if (found == models_.end()) {
        constexpr std::size_t most_models = 1000;
        if (models_.size() == most_models) {
            models_.clear();
        }
        found = models_.emplace(sample.argument, model_of_(in_bytes_, sample.argument)).first;
    }
    const std::uint16_t key_max = TX_ADJ_KEY_MAX;
    TX_ADJ_KEY_MAX = sample.tx_adj_key_max;
    const bool same = support::check_over(found->second.translator, found->second.model, sample.in, sample.out);
    TX_ADJ_KEY_MAX = key_max;
    if (!same) {
        throw Different{};
    }
}

// The sample has been compared: what it shows of the group, if it is of the form.
void Walk::note(const Sample& sample, Group& group, const Form& form) {
    const forms::Given given = sample.given();
    if (diagrams_.holds(form.condition, [&](BitId id) { return given.bit(id); })) {
        group.seen[group.value_in(sample)] = true;
    }
}

// The sample with the bit changed, beside the sample itself, which has been compared.
void Walk::change(const Sample& sample, BitId id) {
    Sample changed = sample;
    set(changed, id, !get(sample, id));
    compare(changed);
    const Form& form = forms_.of(sample.given());
    if (&forms_.of(changed.given()) == &form) {
        of_forms_[forms_.number_of(form)].changed.insert(id);
    }
}

void Walk::walk(const Form& form) {
    change_every_bit(form);
    take_all_bytes(form);
    for (Group& group : of_forms_[forms_.number_of(form)].groups) {
        take_all_values(form, group);
    }
    for (const Node function : functions_of(form)) {
        if (function == form.condition || diagrams_.depends_on(function).size() > walked_in_each_form) {
            take_every_branch(form, function);
        }
    }
}

void Walk::change_every_bit(const Form& form) {
    std::vector<Sample> backgrounds{plain(form.condition), plain(form.condition, true)};
    constexpr std::size_t of_chance = 4;
    for (std::size_t i = 0; i < of_chance; ++i) {
        backgrounds.push_back(by_chance(form.condition));
    }
    for (const Sample& background : backgrounds) {
        compare(background);
        for (const BitId id : all_bits_) {
            change(background, id);
        }
    }
    // What always led to another form, but need not.
    for (const BitId id : all_bits_) {
        if (!of_forms_[forms_.number_of(form)].changed.contains(id)) {
            const Node either_way =
                diagrams_.both(diagrams_.where(form.condition, id, false), diagrams_.where(form.condition, id, true));
            if (either_way != never) {
                const Sample background = by_chance(either_way);
                compare(background);
                change(background, id);
            }
        }
    }
}

// Each byte takes all values in another order than the others, so that these many records are enough for all of them.
void Walk::take_all_bytes(const Form& form) {
    constexpr std::size_t rounds = 2;
    constexpr std::size_t values = 256;
    for (std::size_t round = 0; round < rounds; ++round) {
        const Bytes factors = random_.record(in_bytes_);
        const Bytes offsets = random_.record(in_bytes_);
        for (std::size_t value = 0; value < values; ++value) {
            Sample start = by_chance(form.condition);
            for (std::size_t byte = 0; byte < in_bytes_; ++byte) {
                start.in[byte] = static_cast<std::uint8_t>(value * (factors[byte] | 1U) + offsets[byte]);
            }
            const Sample tried = fulfilling(form.condition, std::move(start));
            compare(tried);
            for (Group& group : of_forms_[forms_.number_of(form)].groups) {
                note(tried, group, form);
            }
        }
    }
}

// Over a record that is as plain as can be, and over one of chance.
void Walk::take_all_values(const Form& form, Group& group) {
    for (std::size_t value = 0; value < group.seen.size(); ++value) {
        const Node left = where(form, group, value);
        if (left == never || (group.seen[value] && !group.matters)) {
            continue;
        }
        for (Sample sample : {plain(left), by_chance(left)}) {
            for (std::size_t i = 0; i < group.bits.size(); ++i) {
                set(sample, group.bits[i], (value >> i & 1) != 0);
            }
            compare(sample);
            note(sample, group, form);
        }
    }
}

void Walk::take_every_branch(const Form& form, Node function) {
    for (const Fork& fork : forks(function, form.condition)) {
        for (const bool value : {false, true}) {
            const Node bit = diagrams_.bit(fork.bit);
            const Node there = diagrams_.both(fork.decides, value ? bit : diagrams_.negation(bit));
            if (there != never) {
                for (const Sample& sample : {plain(there), by_chance(there)}) {
                    compare(sample);
                    change(sample, fork.bit);
                }
                ++count_.branches;
            }
        }
    }
}

// Each value in one of the forms that make the same of these bits.
void Walk::take_all_values_at_all() {
    for (auto& [made, large] : large_) {
        Group& group = large.group;
        for (std::size_t value = 0; value < group.seen.size(); ++value) {
            for (std::size_t i = 0; i < large.forms.size() && !group.seen[value]; ++i) {
                const Form& form = *large.forms[(value + i) % large.forms.size()];
                if (const Node left = where(form, group, value); left != never) {
                    Sample sample = by_chance(left);
                    for (std::size_t bit = 0; bit < group.bits.size(); ++bit) {
                        set(sample, group.bits[bit], (value >> bit & 1) != 0);
                    }
                    compare(sample);
                    note(sample, group, form);
                }
            }
        }
    }
}

// Counted again, on what was compared: nothing that the condition leaves possible is missing.
void Walk::expect_complete(const Form& form) {
    const OfForm& walked = of_forms_[forms_.number_of(form)];
    for (const Group& group : walked.groups) {
        ++count_.groups;
        for (std::size_t value = 0; value < group.seen.size(); ++value) {
            EXPECT_EQ(group.seen[value], possible(form, group, value))
                << form.name << ": value " << value << " of the bits from " << group.bits.front() << " on";
            count_.values += group.seen[value] ? 1U : 0U;
        }
    }
    for (const BitId id : all_bits_) {
        const Node either_way =
            diagrams_.both(diagrams_.where(form.condition, id, false), diagrams_.where(form.condition, id, true));
        EXPECT_EQ(walked.changed.contains(id), either_way != never) << form.name << ": bit " << id;
        ++count_.bits;
    }
}

void Walk::expect_large_complete() {
    for (const auto& entry : large_) {
        const Large& large = entry.second;
        ++count_.groups;
        for (std::size_t value = 0; value < large.group.seen.size(); ++value) {
            EXPECT_EQ(
                large.group.seen[value],
                std::ranges::any_of(large.forms, [&](const Form* form) { return possible(*form, large.group, value); }))
                << "value " << value << " of the bits from " << large.group.bits.front() << " on";
            count_.values += large.group.seen[value] ? 1U : 0U;
        }
    }
}

class Walks : public testing::TestWithParam<const catalogue::Translator*> {};

TEST_P(Walks, FollowTheForms) {
    const catalogue::Translator& translator = *GetParam();
    ASSERT_TRUE(support::models().contains(std::string{translator.name})) << "there is no model of it";
    const support::ModelOf& model_of = support::models().at(std::string{translator.name});
    for (std::size_t length = translator.in().least; length <= translator.in().most && !HasFailure(); ++length) {
        SCOPED_TRACE("length " + std::to_string(length));
        ASSERT_EQ(model_of(length, 0).translator.in_size, length);
        const Forms forms{translator, static_cast<std::int32_t>(length)};
        total.add(Walk{forms, model_of}.run());
    }
}

// The model, but that it inverts one bit of the output for one value of these bits in one form.
support::ModelOf wrong_model(const support::ModelOf& right, const Forms& forms, const Form& form, const Group& group,
                             std::size_t value, std::size_t inverted) {
    return [=, &forms, &form](std::size_t length, std::uint32_t argument) {
        support::Modelled modelled = right(length, argument);
        modelled.model = [=, &forms, &form, model = modelled.model](Bytes& in, Bytes& out) {
            const Sample sample{in, out, argument, TX_ADJ_KEY_MAX};
            const support::Reply reply = model(in, out);
            if (&forms.of(sample.given()) == &form && group.value_in(sample) == value) {
                out.at(inverted / 8) ^= static_cast<std::uint8_t>(1U << inverted % 8);
            }
            return reply;
        };
        return modelled;
    };
}

TEST_P(Walks, FindOutAModelThatIsWrongForOneValue) {
    const catalogue::Translator& translator = *GetParam();
    const Forms& forms = forms::forms_of(translator);
    const support::ModelOf& right = support::models().at(std::string{translator.name});
    support::Random random{0x77726f6e67};
    Walk any{forms, right};
    constexpr unsigned wrong_models = 2;
    for (unsigned number = 0; number < wrong_models; ++number) {
        const Form& form = forms.all()[random.next() % forms.all().size()];
        if (form.out.empty()) {
            continue;
        }
        // Of a byte, or of all bits that some output bit depends on.
        std::vector<BitId> bits;
        if (number % 2 == 0 && translator.in().most > 0) {
            const std::size_t byte = random.next() % translator.in().most;
            for (std::size_t bit = 8 * byte; bit < 8 * byte + 8; ++bit) {
                bits.push_back(bit_id(Space::in, bit));
            }
        } else {
            const Node made = node_of(forms.diagrams(), form.out[random.next() % form.out.size()]);
            bits = forms.diagrams().depends_on(made);
            if (bits.size() > walked_in_each_form) {
                continue;
            }
        }
        const Group group{bits, true};
        const std::size_t value = group.value_in(any.by_chance(form.condition));
        const std::size_t inverted = random.next() % form.out.size();

        const support::ModelOf wrong = wrong_model(right, forms, form, group, value, inverted);
        testing::TestPartResultArray failures;
        {
            const testing::ScopedFakeTestPartResultReporter reporter{&failures};
            Walk{forms, wrong}.run();
        }
        EXPECT_EQ(failures.size(), 1) << form.name << ", value " << value << " of " << bits.size() << " bits";
    }
}

INSTANTIATE_TEST_SUITE_P(All, Walks, testing::ValuesIn([] {
                             std::vector<const catalogue::Translator*> all;
                             for (const catalogue::Translator& translator : catalogue::translators()) {
                                 all.push_back(&translator);
                             }
                             return all;
                         }()),
                         [](const auto& test) { return std::string{test.param->name}; });

}  // namespace

int main(int argc, char** argv) {
    // The program holds the tests of the records as well, whose models these are.
    testing::GTEST_FLAG(filter) = "All/Walks.*";
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    if (total.forms > 0) {
        std::cout << total.forms << " forms: " << total.bits << " bits changed by themselves, " << total.groups
                  << " groups of bits taken through " << total.values << " values, " << total.branches << " branches; "
                  << total.records << " records\n";
    }
    return result;
}
