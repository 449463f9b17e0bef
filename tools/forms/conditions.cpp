#include "forms/conditions.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace forms {
namespace {

namespace trace = npxlate::trace;

Node node_of(const Forms& forms, const Answers& answers) {
    Node all = trace::always;
    for (const auto& [question, yes] : answers) {
        const Node node = forms.questions()[question].node;
        all = forms.diagrams().both(all, yes ? node : forms.diagrams().negation(node));
    }
    return all;
}

// Without the answers that are not needed for `enough` to say that what is left is within the wanted.
template <typename Enough>
Answers without_needless(const Answers& answers, Enough enough) {
    Answers left = answers;
    for (std::size_t i = 0; i < left.size();) {
        Answers fewer = left;
        fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
        if (enough(fewer)) {
            left = std::move(fewer);
        } else {
            ++i;
        }
    }
    return left;
}

// A part of a condition: a bit, a field with a value, or whatever the code asks for.
struct Part {
    enum Kind { bit, field, other } kind;
    std::string name{};  // bit, field
    std::string rest{};  // "set", "is 3 or 4"; the whole of another
};

// Whether the bits follow each other, so that they have a name together.
bool is_field(const std::vector<BitId>& sorted) {
    constexpr std::size_t widest = 32;
    return sorted.size() <= widest && trace::space_of(sorted.front()) == trace::space_of(sorted.back()) &&
           static_cast<std::size_t>(sorted.back() - sorted.front()) + 1 == sorted.size();
}

bool is_about_a_number(const Question& question) {
    return question.words.find_first_of("=<>") != std::string::npos || question.words.find(" is ") != std::string::npos;
}

std::string field_name(const Translator& translator, const std::vector<BitId>& sorted) {
    const unsigned first = trace::index_of(sorted.front());
    const auto width = static_cast<unsigned>(sorted.size());
    switch (trace::space_of(sorted.front())) {
        case Space::in:
            return trace::position(in_letter(translator), first, width);
        case Space::out:
            return trace::position(out_letter(translator), first, width);
        case Space::argument:
            return translator.reverse_by_key != nullptr ? trace::position('K', first, width) : "the entry type";
        case Space::setting:
            break;
    }
    return "TX_ADJ_KEY_MAX";
}

// Bits with what is said of each, if the function says no more than that they all have these values.
std::optional<std::vector<std::pair<BitId, bool>>> as_bits(const Diagrams& diagrams, Node node) {
    std::vector<std::pair<BitId, bool>> bits;
    while (node > trace::always) {
        const bool set = diagrams.if_clear(node) == trace::never;
        if (!set && diagrams.if_set(node) != trace::never) {
            return std::nullopt;
        }
        bits.emplace_back(diagrams.asks(node), set);
        node = set ? diagrams.if_set(node) : diagrams.if_clear(node);
    }
    std::ranges::sort(bits);
    return bits;
}

// "L0.1 or L0.7 set", if that is all that the function says; else as the code has it.
std::string words_of_choice(const Forms& forms, Node node, const std::string& as_asked) {
    auto none_of = as_bits(forms.diagrams(), forms.diagrams().negation(node));
    if (!none_of) {
        return as_asked;
    }
    // Those that would be set first.
    std::ranges::stable_sort(*none_of, {}, &std::pair<BitId, bool>::second);
    std::string text;
    for (std::size_t i = 0; i < none_of->size(); ++i) {
        const auto& [bit, clear] = (*none_of)[i];
        const bool last_of_kind = i + 1 == none_of->size() || (*none_of)[i + 1].second != clear;
        const bool first_of_kind = i == 0 || (*none_of)[i - 1].second != clear;
        text += (i == 0 ? "" : first_of_kind ? ", or " : " or ") + bit_name(forms.translator(), bit);
        text += !last_of_kind ? "" : clear ? " clear" : " set";
    }
    return text;
}

std::vector<Part> parts_of(const Forms& forms, const Answers& answers) {
    Diagrams& diagrams = forms.diagrams();
    const Node condition = node_of(forms, answers);
    std::vector<Part> parts;
    std::vector<bool> told(answers.size());
    std::map<BitId, bool> known;
    const auto know = [&](BitId bit, bool value) {
        if (known.emplace(bit, value).second) {
            parts.push_back({Part::bit, field_name(forms.translator(), {bit}), value ? "set" : "clear"});
        }
    };
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (told[i]) {
            continue;
        }
        const auto& [number, yes] = answers[i];
        const Question& question = forms.questions()[number];
        std::vector<BitId> bits = diagrams.depends_on(question.node);
        std::ranges::sort(bits);
        if (is_about_a_number(question) && is_field(bits)) {
            // All that is asked of the field at once.
            Node allowed = trace::always;
            for (std::size_t k = i; k < answers.size(); ++k) {
                const Question& other = forms.questions()[answers[k].first];
                std::vector<BitId> others = diagrams.depends_on(other.node);
                std::ranges::sort(others);
                if (is_about_a_number(other) && std::ranges::includes(bits, others)) {
                    told[k] = true;
                    allowed = diagrams.both(allowed, answers[k].second ? other.node : diagrams.negation(other.node));
                }
            }
            parts.push_back({Part::field, field_name(forms.translator(), bits),
                             in_words(values(forms, allowed, bits), static_cast<unsigned>(bits.size()))});
            continue;
        }
        for (const BitId bit : bits) {
            const Node set = diagrams.bit(bit);
            if (diagrams.implies(condition, set)) {
                know(bit, true);
            } else if (diagrams.both(condition, set) == trace::never) {
                know(bit, false);
            }
        }
    }
    // What is not said by single bits.
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const auto& [number, yes] = answers[i];
        const Question& question = forms.questions()[number];
        const Node left = diagrams.where(yes ? question.node : diagrams.negation(question.node), [&](BitId bit) {
            const auto found = known.find(bit);
            return found == known.end() ? std::nullopt : std::optional{found->second};
        });
        if (!told[i] && left != trace::always) {
            parts.push_back({Part::other, "", words_of_choice(forms, left, yes ? question.words : question.opposite)});
        }
    }
    return parts;
}

std::string listed(const std::vector<std::string>& names, const char* last) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "" : i + 1 == names.size() ? last : ", ";
        text += names[i];
    }
    return text;
}

std::string in_words(const Forms& forms, const Answers& answers) {
    const std::vector<Part> parts = parts_of(forms, answers);
    std::vector<std::string> all;
    std::set<std::string> told;
    for (const Part& part : parts) {
        if (part.kind == Part::bit) {
            // Bits that are all set, or all clear, together.
            if (told.insert(part.rest).second) {
                std::vector<std::string> names;
                for (const Part& other : parts) {
                    if (other.kind == Part::bit && other.rest == part.rest) {
                        names.push_back(other.name);
                    }
                }
                all.push_back(listed(names, " and ") + " " + part.rest);
            }
        } else {
            all.push_back(part.kind == Part::field ? part.name + " " + part.rest : part.rest);
        }
    }
    return listed(all, ", ");
}

// A choice that can be said at once: of single bits, or of the values of one field.
std::string words_of_all(const Forms& forms, const Cover& cover) {
    Node any = trace::never;
    bool about_numbers = true;
    for (const Answers& answers : cover) {
        any = forms.diagrams().either(any, node_of(forms, answers));
        for (const auto& [question, yes] : answers) {
            about_numbers = about_numbers && is_about_a_number(forms.questions()[question]);
        }
    }
    std::vector<BitId> bits = forms.diagrams().depends_on(any);
    std::ranges::sort(bits);
    if (about_numbers && !bits.empty() && is_field(bits)) {
        return field_name(forms.translator(), bits) + " " +
               ::forms::in_words(values(forms, any, bits), static_cast<unsigned>(bits.size()));
    }
    constexpr std::size_t few = 4;
    return bits.size() <= few ? words_of_choice(forms, any, "") : "";
}

}  // namespace

Cover simplest(const Forms& forms, const Cover& answers, Node wanted) {
    Diagrams& diagrams = forms.diagrams();
    Cover cover;
    for (const Answers& one : answers) {
        Answers fewer =
            without_needless(one, [&](const Answers& left) { return diagrams.implies(node_of(forms, left), wanted); });
        if (std::ranges::find(cover, fewer) == cover.end()) {
            cover.push_back(std::move(fewer));
        }
    }
    for (std::size_t i = 0; i < cover.size();) {
        Node others = trace::never;
        for (std::size_t k = 0; k < cover.size(); ++k) {
            others = k == i ? others : diagrams.either(others, node_of(forms, cover[k]));
        }
        if (others == wanted) {
            cover.erase(cover.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
    return cover;
}

std::string in_words(const Forms& forms, const Cover& cover) {
    if (cover.size() > 1) {
        if (std::string words = words_of_all(forms, cover); !words.empty()) {
            return words;
        }
    }
    std::string text;
    for (std::size_t i = 0; i < cover.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == cover.size() ? "; or " : "; ") + in_words(forms, cover[i]);
    }
    return text;
}

std::string when(const Forms& forms, const Form& form) {
    Answers answers;
    for (const Answer& answer : form.answers) {
        answers.emplace_back(answer.question, answer.yes);
    }
    const Answers needed =
        without_needless(answers, [&](const Answers& left) { return node_of(forms, left) == form.condition; });
    return in_words(forms, needed);
}

std::vector<Range> values(const Forms& forms, Node condition, const std::vector<BitId>& field) {
    Diagrams& diagrams = forms.diagrams();
    std::vector<Range> ranges;
    // From the highest bit down; what needs no more bits is a range.
    const auto visit = [&](const auto& self, Node node, std::size_t bits, std::uint32_t from) -> void {
        if (node == trace::never) {
            return;
        }
        if (node == trace::always || bits == 0) {
            const std::uint32_t to = from + static_cast<std::uint32_t>((std::uint64_t{1} << bits) - 1);
            if (!ranges.empty() && ranges.back().second + 1 == from) {
                ranges.back().second = to;
            } else {
                ranges.emplace_back(from, to);
            }
            return;
        }
        const BitId highest = field[bits - 1];
        self(self, diagrams.where(node, highest, false), bits - 1, from);
        self(self, diagrams.where(node, highest, true), bits - 1, from | std::uint32_t{1} << (bits - 1));
    };
    visit(visit, condition, field.size(), 0);
    return ranges;
}

std::string in_words(const std::vector<Range>& ranges, unsigned width) {
    const auto last = static_cast<std::uint32_t>((std::uint64_t{1} << width) - 1);
    const auto plain = [&](const std::vector<Range>& list) {
        std::vector<std::string> all;
        for (const auto& [from, to] : list) {
            if (from == to) {
                all.push_back(std::to_string(from));
            } else if (to == last && from > 1) {
                all.push_back("above " + std::to_string(from - 1));
            } else if (from + 1 == to) {
                all.push_back(std::to_string(from));
                all.push_back(std::to_string(to));
            } else {
                all.push_back(std::to_string(from) + " to " + std::to_string(to));
            }
        }
        return listed(all, " or ");
    };
    std::vector<Range> others;
    std::uint32_t next = 0;
    for (const auto& [from, to] : ranges) {
        if (from > next) {
            others.emplace_back(next, from - 1);
        }
        next = to + 1;
    }
    if (ranges.empty() || ranges.back().second != last) {
        others.emplace_back(next, last);
    }
    const auto count = [](const std::vector<Range>& list) {
        std::size_t words = 0;
        for (const auto& [from, to] : list) {
            words += from == to ? 1 : 2;
        }
        return words;
    };
    const bool is_above =
        ranges.size() == 1 && ranges.front().second == last && ranges.front().first > 1 && ranges.front().first != last;
    return !is_above && count(others) < count(ranges) ? "is not " + plain(others)
           : is_above                                 ? plain(ranges)
                                                      : "is " + plain(ranges);
}

std::string bit_name(const Translator& translator, BitId id) {
    const unsigned index = trace::index_of(id);
    const auto in_record = [&](char letter) {
        return letter + std::to_string(index / 8) + "." + std::to_string(index % 8);
    };
    switch (trace::space_of(id)) {
        case Space::in:
            return in_record(in_letter(translator));
        case Space::out:
            return in_record(out_letter(translator));
        case Space::argument:
            return translator.reverse_by_key != nullptr ? in_record('K') : "T." + std::to_string(index);
        case Space::setting:
            break;
    }
    return "M." + std::to_string(index);
}

}  // namespace forms
