// The vectors are complete: every translator that is wrong in one place fails one of them. The wrong ones are made of
// the forms, one change each; those that no vector tells apart must do for every record what the right one does.
#include <gtest/gtest.h>

#include <cstdint>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "forms/forms.h"
#include "vectors/library.h"
#include "vectors/vectors.h"

namespace {

using catalogue::Translator;
using forms::BitId;
using forms::Diagrams;
using forms::Form;
using forms::Forms;
using forms::Node;
using npxlate::trace::always;
using npxlate::trace::bit_id;
using npxlate::trace::never;
using npxlate::trace::node_of;
using npxlate::trace::Space;
using vectors::Bytes;
using vectors::Vector;

bool bit_of(const Bytes& bytes, std::size_t bit) { return (bytes[bit / 8] >> bit % 8 & 1) != 0; }

struct Count {
    std::uint64_t mutants = 0;
    std::uint64_t detected = 0;
    std::uint64_t equal = 0;  // change nothing
    std::uint64_t missed = 0;
    std::string first_missed{};
};

Count total;

// The vectors of one length argument, and the wrong translators for it.
class Trial {
public:
    Trial(const Forms& forms, std::vector<const Vector*> vectors)
        : forms_{forms}, diagrams_{forms.diagrams()}, vectors_{std::move(vectors)} {
        for (const Vector* vector : vectors_) {
            const vectors::Call& call = vector->call;
            given_.push_back({call.in, call.out_before, call.key.empty() ? call.type : call.key.back(),
                              call.tx_adj_key_max.value_or(TX_ADJ_KEY_MAX)});
            of_form_[&forms_.of(given_.back())].push_back(given_.size() - 1);
        }
        for (std::size_t bit = 0; bit < 8 * vectors_.front()->call.in.size(); ++bit) {
            in_bits_.push_back(bit_id(Space::in, bit));
        }
    }

    Count run() {
        for (const Form& form : forms_.all()) {
            EXPECT_FALSE(of_form_[&form].empty()) << forms_.translator().name << ": no vector of " << form.name;
            change_outputs(form);
        }
        change_functions();
        change_questions();
        return std::move(count_);
    }

private:
    bool holds(Node node, std::size_t vector) const {
        return diagrams_.holds(node, [&](BitId id) { return given_[vector].bit(id); });
    }

    template <typename What>
    void record(bool detected, bool equal, What&& what) {
        ++count_.mutants;
        if (detected) {
            ++count_.detected;
        } else if (equal) {
            ++count_.equal;
        } else if (++count_.missed == 1) {
            count_.first_missed = std::string{forms_.translator().name} + ": " + what();
        }
    }

    // What is seen of a bit of the outcome; nothing where it is not to be looked at.
    using Seen = std::optional<bool>;
    Seen out_bit(std::size_t vector, std::size_t bit) const {
        const auto& out = vectors_[vector]->outcome.out;
        return out ? Seen{bit_of(*out, bit)} : std::nullopt;
    }

    // For each vector of a form whether something holds of it, 64 to a word.
    using Column = std::vector<std::uint64_t>;
    template <typename Holds>
    static Column column(const std::vector<std::size_t>& of, Holds&& holds_of) {
        constexpr std::size_t bits = 64;
        Column column((of.size() + bits - 1) / bits);
        for (std::size_t i = 0; i < of.size(); ++i) {
            column[i / bits] |= std::uint64_t{holds_of(of[i])} << i % bits;
        }
        return column;
    }

    // One bit of one form becomes a constant, inverted, another bit of the record, or is left as it was.
    void change_outputs(const Form& form) {
        const std::vector<std::size_t>& of = of_form_[&form];
        std::vector<Column> in;
        for (const BitId id : in_bits_) {
            in.push_back(column(of, [&](std::size_t vector) { return given_[vector].bit(id); }));
        }
        const bool accepted = vectors::accepted(forms_.translator(), form.status, form.length);
        for (std::size_t bit = 0; accepted && bit < form.out.size(); ++bit) {
            const Column seen =
                column(of, [&](std::size_t vector) { return bit_of(*vectors_[vector]->outcome.out, bit); });
            change_output(form, in, form.out[bit], bit_id(Space::out, bit), seen, "output bit " + std::to_string(bit));
        }
        for (const auto& [bit, after] : form.in_after) {
            const Column seen =
                column(of, [&, at = bit](std::size_t vector) { return bit_of(vectors_[vector]->outcome.in, at); });
            change_output(form, in, after, bit_id(Space::in, bit), seen, "input bit " + std::to_string(bit));
        }
    }

    void change_output(const Form& form, const std::vector<Column>& in, const forms::Bit& bit, BitId before,
                       const Column& seen, const std::string& what) {
        const std::vector<std::size_t>& of = of_form_[&form];
        const Node made = node_of(diagrams_, bit);
        const auto change = [&](const Column& wrong, auto&& node, auto&& name) {
            const bool detected = wrong != seen;
            record(detected, !detected && diagrams_.both(form.condition, diagrams_.differ(made, node())) == never,
                   [&] { return form.name + ": " + what + " becomes " + name(); });
        };
        for (const Node constant : {never, always}) {
            change(
                column(of, [&](std::size_t) { return constant == always; }), [&] { return constant; },
                [&] { return std::to_string(constant); });
        }
        const Node inverse = diagrams_.negation(made);
        change(
            column(of, [&](std::size_t vector) { return holds(inverse, vector); }), [&] { return inverse; },
            [] { return "inverted"; });
        change(
            column(of, [&](std::size_t vector) { return given_[vector].bit(before); }),
            [&] { return diagrams_.bit(before); }, [] { return "left alone"; });
        for (std::size_t i = 0; i < in_bits_.size(); ++i) {
            change(
                in[i], [&] { return diagrams_.bit(in_bits_[i]); }, [&] { return "input bit " + std::to_string(i); });
        }
    }

    // A function loses one of its bits, or has it inverted, wherever it makes that bit of the output.
    void change_functions() {
        std::map<std::pair<std::size_t, Node>, Node> used;
        for (const Form& form : forms_.all()) {
            for (std::size_t bit = 0;
                 vectors::accepted(forms_.translator(), form.status, form.length) && bit < form.out.size(); ++bit) {
                if (form.out[bit].kind == forms::Bit::function) {
                    Node& condition = used[{bit, form.out[bit].value}];
                    condition = diagrams_.either(condition, form.condition);
                }
            }
        }
        for (const auto& [place, condition] : used) {
            const auto [bit, made] = place;
            for (const auto& [wrong, name] : wrong_functions(made)) {
                bool detected = false;
                for (std::size_t vector = 0; !detected && vector < vectors_.size(); ++vector) {
                    const Seen seen = out_bit(vector, bit);
                    detected = seen && holds(condition, vector) && *seen != holds(wrong, vector);
                }
                record(
                    detected, !detected && diagrams_.both(condition, diagrams_.differ(made, wrong)) == never,
                    [&, at = bit, &how = name] { return "output bit " + std::to_string(at) + ", a function, " + how; });
            }
        }
    }

    std::vector<std::pair<Node, std::string>> wrong_functions(Node made) {
        std::vector<std::pair<Node, std::string>> wrong;
        for (const BitId id : diagrams_.depends_on(made)) {
            const Node clear = diagrams_.where(made, id, false);
            const Node set = diagrams_.where(made, id, true);
            const std::string name = " bit " + std::to_string(id);
            wrong.emplace_back(clear, "with" + name + " taken as 0");
            wrong.emplace_back(set, "with" + name + " taken as 1");
            wrong.emplace_back(diagrams_.if_then_else(diagrams_.bit(id), clear, set), "with" + name + " inverted");
        }
        return wrong;
    }

    // A question is answered wrongly, wherever it is asked; or at one place always in the same way.
    void change_questions() {
        for (std::size_t question = 0; question < forms_.questions().size(); ++question) {
            const Node asked = forms_.questions()[question].node;
            std::vector<std::pair<Node, std::string>> wrong = wrong_functions(asked);
            wrong.emplace_back(never, "always no");
            wrong.emplace_back(always, "always yes");
            wrong.emplace_back(diagrams_.negation(asked), "inverted");
            if (diagrams_.depends_on(asked).size() == 1) {
                for (const BitId id : in_bits_) {
                    wrong.emplace_back(diagrams_.bit(id), "asking for input bit " + std::to_string(id));
                }
            }
            for (const auto& [node, name] : wrong) {
                const auto answer = [&, changed = node](const Form&, std::size_t asked_question, std::size_t) {
                    return asked_question == question ? changed : forms_.questions()[asked_question].node;
                };
                // All others go the same way as before.
                std::vector<std::size_t> concerned;
                for (std::size_t vector = 0; vector < vectors_.size(); ++vector) {
                    if (holds(node, vector) != holds(asked, vector)) {
                        concerned.push_back(vector);
                    }
                }
                change_ways(answer, concerned, "question \"" + forms_.questions()[question].words + "\", " + name);
            }
        }
        for (const Form& form : forms_.all()) {
            for (std::size_t at = 0; at < form.answers.size(); ++at) {
                // Here and only here: where all answers before are those of this form.
                const auto comes_here = [&](const Form& other) {
                    const auto same = [](const auto& a, const auto& b) {
                        return a.question == b.question && a.yes == b.yes;
                    };
                    return other.answers.size() > at &&
                           std::equal(form.answers.begin(), form.answers.begin() + static_cast<std::ptrdiff_t>(at),
                                      other.answers.begin(), same);
                };
                const auto answer = [&](const Form& other, std::size_t asked_question, std::size_t depth) {
                    return depth != at || !comes_here(other) ? forms_.questions()[asked_question].node
                           : form.answers[at].yes            ? never
                                                             : always;
                };
                std::vector<std::size_t> concerned;
                for (const auto& [other, of] : of_form_) {
                    if (comes_here(*other) && other->answers[at].yes == form.answers[at].yes) {
                        concerned.insert(concerned.end(), of.begin(), of.end());
                    }
                }
                change_ways(answer, concerned,
                            form.name + " without \"" + forms_.questions()[form.answers[at].question].words + "\"");
            }
        }
    }

    template <typename Answer>
    void change_ways(Answer&& answer, const std::vector<std::size_t>& concerned, const std::string& what) {
        // Under what condition a record now gets which form.
        const auto follows = [&](const Form& form, auto&& check) {
            for (std::size_t depth = 0; depth < form.answers.size(); ++depth) {
                if (!check(answer(form, form.answers[depth].question, depth), form.answers[depth].yes)) {
                    return false;
                }
            }
            return true;
        };
        bool detected = false;
        for (std::size_t i = 0; !detected && i < concerned.size(); ++i) {
            const std::size_t vector = concerned[i];
            for (const Form& form : forms_.all()) {
                if (follows(form, [&](Node node, bool yes) { return holds(node, vector) == yes; })) {
                    detected = !gives(form, vector);
                    break;
                }
            }
        }
        record(detected, !detected && changes_nothing(follows), [&] { return what; });
    }

    // Whether the form gives what the vector says.
    bool gives(const Form& form, std::size_t vector) const {
        const vectors::Outcome& outcome = vectors_[vector]->outcome;
        if (form.status != outcome.status || (form.status == NPXLATE_OK && form.length != outcome.length)) {
            return false;
        }
        for (std::size_t bit = 0; outcome.out && bit < form.out.size(); ++bit) {
            if (forms_.value(form.out[bit], given_[vector]) != bit_of(*outcome.out, bit)) {
                return false;
            }
        }
        for (std::size_t bit = 0; bit < 8 * outcome.in.size(); ++bit) {
            const auto changed = form.in_after.find(static_cast<std::uint16_t>(bit));
            const bool value = changed != form.in_after.end() ? forms_.value(changed->second, given_[vector])
                                                              : given_[vector].bit(bit_id(Space::in, bit));
            if (value != bit_of(outcome.in, bit)) {
                return false;
            }
        }
        return true;
    }

    template <typename Follows>
    bool changes_nothing(Follows&& follows) {
        for (const Form& to : forms_.all()) {
            Node now = always;
            follows(to, [&](Node node, bool yes) {
                now = diagrams_.both(now, yes ? node : diagrams_.negation(node));
                return true;
            });
            for (const Form& from : forms_.all()) {
                const Node moved = &from == &to ? never : diagrams_.both(now, from.condition);
                if (moved != never && !alike(from, to, moved)) {
                    return false;
                }
            }
        }
        return true;
    }

    // Whether the two forms give the same for all records of the condition.
    bool alike(const Form& a, const Form& b, Node condition) {
        if (a.status != b.status || (a.status == NPXLATE_OK && a.length != b.length)) {
            return false;
        }
        const auto same = [&](const forms::Bit& x, const forms::Bit& y) {
            return x == y ||
                   diagrams_.both(condition, diagrams_.differ(node_of(diagrams_, x), node_of(diagrams_, y))) == never;
        };
        const bool accepted = vectors::accepted(forms_.translator(), a.status, a.length);
        for (std::size_t bit = 0; accepted && bit < std::max(a.out.size(), b.out.size()); ++bit) {
            const auto made = [bit](const Form& form) {
                return bit < form.out.size() ? form.out[bit] : npxlate::trace::bit_of(bit_id(Space::out, bit));
            };
            if (!same(made(a), made(b))) {
                return false;
            }
        }
        for (const BitId id : in_bits_) {
            const auto after = [id](const Form& form) {
                const auto changed = form.in_after.find(id);
                return changed != form.in_after.end() ? changed->second : npxlate::trace::bit_of(id);
            };
            if (!same(after(a), after(b))) {
                return false;
            }
        }
        return true;
    }

    const Forms& forms_;
    Diagrams& diagrams_;
    std::vector<const Vector*> vectors_;
    std::vector<forms::Given> given_{};
    std::map<const Form*, std::vector<std::size_t>> of_form_{};
    std::vector<BitId> in_bits_{};
    Count count_{};
};

class Vectors : public testing::TestWithParam<const Translator*> {};

TEST_P(Vectors, AreWhatTheLibraryDoes) {
    const vectors::Library library;
    for (const Vector& vector : vectors::vectors_of(*GetParam())) {
        const vectors::Done done = library.run(*vector.translator, vector.call);
        EXPECT_FALSE(done.wrote_outside) << vector.form;
        EXPECT_EQ(done.outcome.status, vector.outcome.status) << vector.form;
        EXPECT_EQ(done.outcome.in, vector.outcome.in) << vector.form;
        if (vector.outcome.status == NPXLATE_OK) {
            EXPECT_EQ(done.outcome.length, vector.outcome.length) << vector.form;
        }
        if (vector.outcome.out) {
            EXPECT_EQ(done.outcome.out, vector.outcome.out) << vector.form;
        }
    }
}

TEST_P(Vectors, TellEveryWrongTranslatorFromTheRightOne) {
    const Translator& translator = *GetParam();
    const std::vector<Vector> all = vectors::vectors_of(translator);
    std::map<std::int32_t, std::vector<const Vector*>> by_length;
    for (const Vector& vector : all) {
        by_length[vector.call.length].push_back(&vector);
    }
    ASSERT_TRUE(by_length.contains(static_cast<std::int32_t>(translator.in().most)));
    Count count;
    for (const auto& [length, chosen] : by_length) {
        // For other lengths than those of the records one vector tells what the length does.
        if (!translator.in().allows(static_cast<std::size_t>(length))) {
            continue;
        }
        const Forms forms{translator, length};
        const Count of_length = Trial{forms, chosen}.run();
        count.mutants += of_length.mutants;
        count.detected += of_length.detected;
        count.equal += of_length.equal;
        count.missed += of_length.missed;
        if (count.first_missed.empty()) {
            count.first_missed = of_length.first_missed;
        }
    }
    EXPECT_EQ(count.missed, 0U) << count.first_missed;
    EXPECT_EQ(count.mutants, count.detected + count.equal + count.missed);
    total.mutants += count.mutants;
    total.detected += count.detected;
    total.equal += count.equal;
}

INSTANTIATE_TEST_SUITE_P(All, Vectors, testing::ValuesIn([] {
                             std::vector<const Translator*> all;
                             for (const Translator& translator : catalogue::translators()) {
                                 all.push_back(&translator);
                             }
                             return all;
                         }()),
                         [](const auto& test) { return std::string{test.param->name}; });

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    if (total.mutants > 0) {
        std::cout << total.mutants << " wrong translators: " << total.detected << " detected, " << total.equal
                  << " that change nothing\n";
    }
    return result;
}
