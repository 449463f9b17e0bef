#include "docs/fates.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "docs/journey.h"
#include "explain/positions.h"
#include "forms/conditions.h"

namespace docs {
namespace {

namespace trace = npxlate::trace;
using catalogue::Role;
using trace::Space;

using Positions = std::set<std::uint16_t>;

bool is_generic(const Translator& translator) { return translator.family == "frame"; }

std::uint16_t number(std::size_t bit) { return static_cast<std::uint16_t>(bit); }

std::string list(const Positions& bits) {
    std::string text;
    for (const std::string& position : explain::positions('L', explain::spans_of(bits))) {
        text += (text.empty() ? "" : ", ") + position;
    }
    return text;
}

Positions depends_on(const Diagrams& diagrams, Node node) {
    Positions bits;
    for (const BitId id : diagrams.depends_on(node)) {
        if (trace::space_of(id) == Space::in) {
            bits.insert(number(trace::index_of(id)));
        }
    }
    return bits;
}

// The bits on which the function depends under the condition, and which the condition leaves open.
Positions moved_by(Diagrams& diagrams, Node node, Node condition) {
    Positions bits;
    for (const std::uint16_t bit : depends_on(diagrams, diagrams.both(node, condition))) {
        const BitId id = trace::bit_id(Space::in, bit);
        const Node open = diagrams.both(diagrams.where(condition, id, false), diagrams.where(condition, id, true));
        const Node changes = diagrams.differ(diagrams.where(node, id, false), diagrams.where(node, id, true));
        if (diagrams.both(open, changes) != trace::never) {
            bits.insert(bit);
        }
    }
    return bits;
}

// A condition on the records of `all`, if it is a choice between some forms that can be said in few words.
std::optional<std::string> words_of(const Forms& forms, Node condition, Node all) {
    constexpr std::size_t few = 60;
    Diagrams& diagrams = forms.diagrams();
    const Node wanted = diagrams.either(condition, diagrams.negation(all));
    forms::Cover cover;
    Node covered = trace::never;
    for (const Form& form : forms.all()) {
        if (diagrams.both(form.condition, all) != trace::never && diagrams.implies(form.condition, wanted)) {
            covered = diagrams.either(covered, form.condition);
            forms::Answers& answers = cover.emplace_back();
            for (const forms::Answer& answer : form.answers) {
                answers.emplace_back(answer.question, answer.yes);
            }
        }
    }
    if (diagrams.both(covered, all) != diagrams.both(condition, all)) {
        return std::nullopt;
    }
    const std::string words = forms::in_words(forms, forms::simplest(forms, cover, wanted));
    return words.size() <= few ? std::optional{words} : std::nullopt;
}

// What becomes of the bits on the way to the card.
struct There {
    explicit There(const Passage& passage);

    std::size_t bits;
    Positions not_carried{};
    Positions only_steers{};
    std::map<std::uint16_t, Node> carried{};  // under which condition
    Node accepted;
};

There::There(const Passage& passage)
    : bits{8 * passage.translator().logical.most}, accepted{passage.has_status(NPXLATE_OK)} {
    Diagrams& diagrams = passage.diagrams();
    Positions matter = depends_on(diagrams, accepted);
    for (std::size_t bit = 0; bit < 8 * passage.translator().physical.most; ++bit) {
        matter.merge(depends_on(diagrams, diagrams.both(accepted, passage.out(bit))));
    }
    for (const Form& form : passage.forms().all()) {
        Positions moved;
        for (const trace::Bit& bit : form.out) {
            if (bit.kind == trace::Bit::moved || bit.kind == trace::Bit::inverted) {
                // Also where the condition leaves the bit but one value.
                moved.merge(depends_on(diagrams, trace::node_of(diagrams, bit)));
            } else {
                moved.merge(moved_by(diagrams, trace::node_of(diagrams, bit), form.condition));
            }
        }
        for (const std::uint16_t bit : form.status == NPXLATE_OK ? moved : Positions{}) {
            Node& condition = carried.try_emplace(bit, trace::never).first->second;
            condition = diagrams.either(condition, form.condition);
        }
    }
    for (std::uint16_t bit = 0; bit < number(bits); ++bit) {
        if (!matter.contains(bit)) {
            not_carried.insert(bit);
            carried.erase(bit);
        } else if (!carried.contains(bit)) {
            only_steers.insert(bit);
        }
    }
}

class Lines {
public:
    void add(const std::string& head, const std::string& text) {
        if (!text.empty()) {
            lines_.push_back("**" + head + ":** " + text + ".");
        }
    }
    void add(const std::string& head, const Positions& bits) { add(head, list(bits)); }

    std::vector<std::string> all() { return std::move(lines_); }

private:
    std::vector<std::string> lines_{};
};

// "L8-15 (L4.2 set); L3 (L4.2 clear)", and the bits of which it cannot be said in few words.
std::pair<std::string, Positions> by_condition(const Forms& forms, const std::map<std::uint16_t, Node>& conditions,
                                               Node all) {
    constexpr std::size_t few = 4;
    std::map<Node, Positions> grouped;
    for (const auto& [bit, condition] : conditions) {
        grouped[condition].insert(bit);
    }
    std::vector<std::pair<Positions, std::string>> told;
    Positions others;
    for (const auto& [condition, bits] : grouped) {
        const std::optional<std::string> words = grouped.size() <= few ? words_of(forms, condition, all) : std::nullopt;
        if (words) {
            told.emplace_back(bits, *words);
        } else {
            others.insert(bits.begin(), bits.end());
        }
    }
    std::ranges::sort(told);
    std::string text;
    for (const auto& [bits, words] : told) {
        text += (text.empty() ? "" : "; ") + list(bits) + " (" + words + ")";
    }
    return {text, others};
}

void add_there(Lines& lines, const Passage& passage, const There& there, const std::string& of_key) {
    lines.add("Not carried" + of_key, there.not_carried);
    lines.add("Steers only" + of_key, there.only_steers);
    std::map<std::uint16_t, Node> sometimes;
    for (const auto& [bit, condition] : there.carried) {
        if (condition != there.accepted) {
            sometimes.emplace(bit, condition);
        }
    }
    const auto [text, others] = by_condition(passage.forms(), sometimes, there.accepted);
    lines.add("Carried only" + of_key, text);
    lines.add("Carried in some forms only" + of_key, others);
}

// What becomes of the bits on the way back.
class Back {
public:
    Back(const Journey& journey, const There& there)
        : journey_{journey}, there_{there}, diagrams_{journey.diagrams()}, all_{journey.makes_it()} {
        for (std::uint16_t bit = 0; bit < number(journey.bits()); ++bit) {
            constant_or_moved(bit);
        }
        take_reversed();
        for (const Form& form : journey.there().forms().all()) {
            for (const Form& back : journey.back().forms().all()) {
                const Node way = diagrams_.both(form.condition, journey.through(back.condition));
                if (diagrams_.both(all_, way) != trace::never) {
                    ways_.push_back(diagrams_.both(all_, way));
                }
            }
        }
        for (std::uint16_t bit = 0; bit < number(there.bits); ++bit) {
            const bool comes_back = restored_.contains(bit) || reversed_.contains(bit) || elsewhere_.contains(bit);
            if (zero_.contains(bit) && !comes_back && !there.not_carried.contains(bit)) {
                (shows(bit) ? only_elsewhere_ : lost_).insert(bit);
            }
        }
    }

    void add_to(Lines& lines) const {
        lines.add("Lost", lost_);
        lines.add("Byte-reversed", reversed_text_);
        lines.add("Comes back elsewhere", moves());
        lines.add("Comes back elsewhere or not at all", only_elsewhere_);
        lines.add("Comes back as 1", one_);
        auto [text, sometimes] = by_condition(journey_.there().forms(), sometimes_restored_, all_);
        lines.add("Comes back only", text);
        sometimes.insert(varies_.begin(), varies_.end());
        lines.add("Comes back changed", sometimes);
        lines.add("Left as the buffer has it", kept_);
    }

private:
    bool same(Node a, Node b) const { return diagrams_.both(all_, diagrams_.differ(a, b)) == trace::never; }

    void constant_or_moved(std::uint16_t bit) {
        const Node returned = journey_.returned(bit);
        const Node self = bit < there_.bits ? journey_.there().in(bit) : trace::never;
        if (same(returned, trace::never)) {
            zero_.insert(bit);
        } else if (same(returned, self)) {
            restored_.insert(bit);
        } else if (same(returned, trace::always)) {
            one_.insert(bit);
        } else if (same(returned, journey_.there().buffer(bit))) {
            kept_.insert(bit);
        } else if (const std::optional<std::uint16_t> from = source(returned)) {
            sources_.emplace(bit, *from);
            elsewhere_.insert(*from);
        } else if (const std::optional<Node> condition = restored_only(bit, returned, self)) {
            if (!comes_back_when_carried(bit, *condition)) {
                sometimes_restored_.emplace(bit, *condition);
            }
        } else {
            varies_.insert(bit);
        }
    }

    std::optional<std::uint16_t> source(Node returned) const {
        for (const std::uint16_t from : depends_on(diagrams_, diagrams_.both(all_, returned))) {
            if (same(returned, journey_.there().in(from))) {
                return from;
            }
        }
        return std::nullopt;
    }

    // The condition under which the bit comes back, if it is 0 under all others.
    std::optional<Node> restored_only(std::uint16_t bit, Node returned, Node self) const {
        const Node condition = diagrams_.where(returned, trace::bit_id(Space::in, bit), true);
        return same(returned, diagrams_.both(self, condition)) ? std::optional{condition} : std::nullopt;
    }

    bool comes_back_when_carried(std::uint16_t bit, Node condition) const {
        const auto carried = there_.carried.find(bit);
        return carried != there_.carried.end() && same(condition, carried->second);
    }

    // Whole bytes that stand in the reverse order.
    void take_reversed() {
        const auto source_byte = [&](std::size_t byte) -> std::optional<std::size_t> {
            for (unsigned k = 0; k < 8; ++k) {
                const auto found = sources_.find(number(8 * byte + k));
                if (found == sources_.end() || found->second % 8 != k ||
                    found->second / 8 != sources_.at(number(8 * byte)) / 8) {
                    return std::nullopt;
                }
            }
            return sources_.at(number(8 * byte)) / 8;
        };
        Positions bytes;
        std::string text;
        for (std::size_t first = 0; first < journey_.bits() / 8; ++first) {
            const std::optional<std::size_t> last = source_byte(first);
            if (!last || *last <= first) {
                continue;
            }
            bool whole = true;
            for (std::size_t byte = first; byte <= *last; ++byte) {
                const bool is_middle = first + *last == 2 * byte && restored_.contains(number(8 * byte));
                whole = whole && (is_middle || source_byte(byte) == first + *last - byte);
            }
            if (whole) {
                for (std::size_t bit = 8 * first; bit < 8 * (*last + 1); ++bit) {
                    reversed_.insert(number(bit));
                    sources_.erase(number(bit));
                }
                text += (text.empty() ? "" : ", ") +
                        explain::position('L', {number(8 * first), number(8 * (*last + 1 - first))});
                first = *last;
            }
        }
        reversed_text_ = text;
    }

    // Whether the value of the bit shows somewhere in what comes back, in records for which it does not decide.
    bool shows(std::uint16_t bit) const {
        const BitId id = trace::bit_id(Space::in, bit);
        Node open = trace::never;
        for (const Node way : ways_) {
            const Node either_value = diagrams_.both(diagrams_.where(way, id, false), diagrams_.where(way, id, true));
            open = diagrams_.either(open, either_value);
        }
        for (std::size_t at = 0; at < journey_.bits(); ++at) {
            const Node returned = journey_.returned(at);
            const Node if_clear = diagrams_.where(returned, id, false);
            const Node if_set = diagrams_.where(returned, id, true);
            if (if_clear != if_set && diagrams_.both(open, diagrams_.differ(if_clear, if_set)) != trace::never) {
                return true;
            }
        }
        return false;
    }

    // "L3.3-0 as L2.3-0"
    std::string moves() const {
        std::string text;
        for (auto at = sources_.begin(); at != sources_.end();) {
            auto end = at;
            std::uint16_t width = 0;
            do {
                ++end;
                ++width;
            } while (end != sources_.end() && end->first == at->first + width && end->second == at->second + width);
            Positions from;
            Positions to;
            for (std::uint16_t k = 0; k < width; ++k) {
                from.insert(number(at->second + k));
                to.insert(number(at->first + k));
            }
            text += (text.empty() ? "" : ", ") + list(from) + " as " + list(to);
            at = end;
        }
        return text;
    }

    const Journey& journey_;
    const There& there_;
    Diagrams& diagrams_;
    Node all_;
    std::vector<Node> ways_{};  // the conditions of the forms there and back that go together
    Positions zero_{}, one_{}, restored_{}, kept_{}, varies_{}, reversed_{}, elsewhere_{}, lost_{}, only_elsewhere_{};
    std::map<std::uint16_t, std::uint16_t> sources_{};  // of bits that always come from another one
    std::map<std::uint16_t, Node> sometimes_restored_{};
    std::string reversed_text_{};
};

// As an entry of a list.
std::string wrapped(const std::string& line) {
    constexpr std::size_t width = 120;
    std::istringstream words{line};
    std::string text = "-";
    std::size_t column = 1;
    for (std::string word; words >> word;) {
        if (column + 1 + word.size() > width) {
            text += "\n ";
            column = 1;
        }
        text += " " + word;
        column += 1 + word.size();
    }
    return text + "\n";
}

}  // namespace

std::vector<std::string> fates_of_table(unsigned table) {
    const Translator& key = catalogue::of_table(table, Role::key);
    const Translator& result = catalogue::of_table(table, Role::result);
    const Translator& reverse = catalogue::of_table(table, Role::reverse);
    Lines lines;
    if (!is_generic(key) && key.in().fixed()) {
        const Passage passage{key};
        add_there(lines, passage, There{passage}, " (key)");
    }
    if (!is_generic(result)) {
        const Passage passage{result};
        const There there{passage};
        add_there(lines, passage, there, "");
        if (!is_generic(reverse) && reverse.physical.most == result.physical.most) {
            const Journey journey{result, reverse};
            Back{journey, there}.add_to(lines);
        }
    }
    return lines.all();
}

std::string with_fates(const std::string& page) {
    const std::string heading = "### Table ";
    const std::string head = "- **";
    std::istringstream lines{page};
    std::string text;
    bool in_entry = false;
    bool skips = false;  // what is computed anew
    for (std::string line; std::getline(lines, line);) {
        in_entry = line.starts_with(heading) || (in_entry && !line.starts_with("#"));
        skips = in_entry && (line.starts_with(head) || (skips && line.starts_with("  ")));
        if (!skips) {
            text += line + "\n";
        }
        if (line.starts_with(heading)) {
            for (const std::string& fate :
                 fates_of_table(static_cast<unsigned>(std::stoul(line.substr(heading.size()))))) {
                text += wrapped(fate);
            }
        }
    }
    return text;
}

}  // namespace docs
