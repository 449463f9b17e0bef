#include "docs/claims.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "docs/journey.h"
#include "explain/positions.h"

namespace docs {
namespace {

namespace trace = npxlate::trace;
using catalogue::Role;
using trace::Space;

[[noreturn]] void fail(const std::string& what, const std::string& text) {
    throw std::runtime_error{what + ": " + text};
}

// What a claim speaks of: one translator, and the way back behind it where there is one.
class World {
public:
    World(const Subject& subject, const Translator& translator, std::optional<std::int32_t> length)
        : passage_{translator, length} {
        // Another record's reverse is no way back.
        if (&translator == subject.result && subject.reverse != nullptr && !length &&
            subject.reverse->physical == subject.result->physical) {
            journey_ = std::make_unique<Journey>(translator, *subject.reverse);
        }
    }

    Diagrams& diagrams() const { return passage_.diagrams(); }
    const Passage& passage() const { return passage_; }
    bool is_reverse() const { return passage_.translator().role == Role::reverse; }
    const Journey& journey() const {
        if (journey_ == nullptr) {
            throw std::runtime_error{"no way back"};
        }
        return *journey_;
    }

    // A length argument may promise more than the records have.
    std::size_t bits_in() const {
        return 8 * std::max(passage_.translator().in().most,
                            static_cast<std::size_t>(std::max(passage_.forms().length(), 0)));
    }
    std::size_t bits_out() const { return std::max(8 * passage_.translator().out().most, passage_.bits_out()); }

    Node bit(char letter, std::size_t at) const {
        const auto check = [&](std::size_t bits) {
            if (at >= bits) {
                fail("outside of the record", letter + std::to_string(at / 8));
            }
        };
        switch (letter) {
            case 'L':
                check(is_reverse() ? 0 : bits_in());
                return passage_.in(at);
            case 'P':
                check(is_reverse() ? bits_in() : bits_out());
                return is_reverse() ? passage_.in(at) : passage_.out(at);
            case 'B':
                check(is_reverse() ? bits_out() : journey().bits());
                return is_reverse() ? passage_.out(at) : journey().returned(at);
            case 'A':
                check(bits_in());
                return passage_.in_after(at);
            case 'K':
            case 'T':
                return passage_.argument(at);
            case 'M':
                return diagrams().bit(trace::bit_id(Space::setting, at));
            default:
                fail("no record has the letter", std::string{letter});
        }
    }

    // All that comes of the translator's work.
    Bits results() const {
        Bits all;
        for (std::size_t at = 0; at < bits_out(); ++at) {
            all.push_back(passage_.out(at));
        }
        for (std::size_t at = 0; at < bits_in(); ++at) {
            if (passage_.in_after(at) != passage_.in(at)) {
                all.push_back(passage_.in_after(at));
            }
        }
        for (const Form& form : passage_.forms().all()) {
            all.push_back(passage_.has_status(form.status));
            all.push_back(passage_.has_length(form.length));
        }
        return all;
    }

private:
    Passage passage_;
    std::unique_ptr<Journey> journey_{};
};

struct Place {
    char letter;
    std::size_t first;
    std::size_t width;
};

// Reads a condition or a fact.
class Reader {
public:
    // Of the records that fulfil `within` only; which keeps the functions small.
    Reader(const World& world, std::string text, Node within = trace::always)
        : world_{world}, text_{std::move(text)}, within_{within}, all_{within} {}

    // "A B or C": until the end of the text.
    Node condition() {
        Node any = trace::never;
        while (skip_spaces(), at_ < text_.size()) {
            if (take_word("or ")) {
                any = diagrams().either(any, all_);
                all_ = within_;
            } else {
                all_ = diagrams().both(all_, atom());
            }
        }
        return diagrams().either(any, all_);
    }

    // Something that holds for all these records exactly if the fact does: the first bit that is wrong says it all.
    Node fact() {
        one_difference_is_enough_ = true;
        return condition();
    }

    bool take_word(const std::string& word) {
        skip_spaces();
        if (text_.compare(at_, word.size(), word) != 0) {
            return false;
        }
        at_ += word.size();
        return true;
    }

    // All that is left.
    std::vector<Place> places() {
        std::vector<Place> all;
        while (skip_spaces(), at_ < text_.size()) {
            const std::optional<Place> found = place();
            if (!found) {
                fail("not a position", text_.substr(at_));
            }
            all.push_back(*found);
        }
        return all;
    }

    Bits bits_of(const Place& place) const {
        Bits bits;
        for (std::size_t k = 0; k < place.width; ++k) {
            bits.push_back(world_.bit(place.letter, place.first + k));
        }
        return bits;
    }

private:
    Diagrams& diagrams() const { return world_.diagrams(); }
    char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void skip_spaces() {
        while (next() == ' ') {
            ++at_;
        }
    }
    bool take(const std::string& sign) {
        if (text_.compare(at_, sign.size(), sign) != 0) {
            return false;
        }
        at_ += sign.size();
        return true;
    }

    std::uint64_t number() {
        std::size_t used = 0;
        if (std::isdigit(static_cast<unsigned char>(next())) == 0) {
            fail("a number is missing", text_.substr(at_));
        }
        const std::uint64_t value = std::stoull(text_.substr(at_), &used, 0);
        at_ += used;
        return value;
    }

    static Bits constant(std::uint64_t value) {
        Bits bits;
        for (; value != 0; value >>= 1) {
            bits.push_back((value & 1) != 0 ? trace::always : trace::never);
        }
        return bits;
    }

    std::string quoted() {
        const std::size_t end = text_.find('"', at_);
        if (end == std::string::npos) {
            fail("a quotation mark is missing", text_);
        }
        std::string title = text_.substr(at_, end - at_);
        at_ = end + 1;
        return title;
    }

    Node atom() {
        if (take("\"")) {
            return gets(world_.passage(), quoted());
        }
        if (take("back\"")) {
            return world_.journey().through(gets(world_.journey().back(), quoted()));
        }
        if (take("status=")) {
            return world_.passage().has_status(static_cast<std::int32_t>(number()));
        }
        if (take("back_status=")) {
            const Journey& journey = world_.journey();
            return diagrams().both(journey.there().has_status(NPXLATE_OK),
                                   journey.through(journey.back().has_status(static_cast<std::int32_t>(number()))));
        }
        if (take("length=none")) {
            return world_.passage().has_length({});
        }
        if (take("length=")) {
            return world_.passage().has_length(static_cast<std::uint32_t>(number()));
        }
        const Bits left = expression();
        for (const char* const sign : {"!=", "<=", ">=", "=", "<", ">"}) {
            if (take(sign)) {
                return compared(left, sign);
            }
        }
        fail("a comparison is missing", text_.substr(at_));
    }

    static Node gets(const Passage& passage, const std::string& title) {
        const Node condition = passage.gets(title);
        if (condition == trace::never) {
            fail("no record gets this layout", title);
        }
        return condition;
    }

    Node compared(const Bits& left, const std::string& sign) {
        const Bits right = expression();
        if (take("..")) {
            const Bits last = expression();
            return diagrams().both(at_most(right, left), at_most(left, last));
        }
        if (sign == "=") {
            return equal(left, right);
        }
        if (sign == "!=") {
            one_difference_is_enough_ = false;
            return diagrams().negation(equal(left, right));
        }
        return sign == "<="   ? at_most(left, right)
               : sign == ">=" ? at_most(right, left)
               : sign == "<"  ? diagrams().negation(at_most(right, left))
                              : diagrams().negation(at_most(left, right));
    }

    static Node at(const Bits& bits, std::size_t k) { return k < bits.size() ? bits[k] : trace::never; }

    Node equal(const Bits& a, const Bits& b) const {
        Node all = all_;
        for (std::size_t k = 0; k < std::max(a.size(), b.size()); ++k) {
            const Node differs = diagrams().both(all_, diagrams().differ(at(a, k), at(b, k)));
            if (one_difference_is_enough_ && differs != trace::never) {
                return diagrams().negation(differs);
            }
            all = diagrams().both(all, diagrams().negation(differs));
        }
        return all;
    }

    Node at_most(const Bits& a, const Bits& b) const {
        Node result = trace::always;
        for (std::size_t k = 0; k < std::max(a.size(), b.size()); ++k) {
            const Node x = diagrams().both(all_, at(a, k));
            const Node y = diagrams().both(all_, at(b, k));
            result = diagrams().if_then_else(diagrams().differ(x, y), y, result);
        }
        return result;
    }

    // Several operators only if they are the same.
    Bits expression() {
        Bits value = operand();
        std::string used;
        for (;;) {
            std::string found;
            for (const char* const sign : {"<<", ">>", "&", "|", "^", "+", "-"}) {
                if (found.empty() && take(sign)) {
                    found = sign;
                }
            }
            if (found.empty()) {
                return value;
            }
            if (!used.empty() && used != found) {
                fail("brackets are missing", text_);
            }
            used = found;
            value = found == "<<" || found == ">>" ? shifted(value, found == "<<") : combined(value, operand(), found);
        }
    }

    Bits shifted(const Bits& value, bool left) {
        const std::uint64_t by = number();
        Bits result(left ? value.size() + by : value.size(), trace::never);
        for (std::size_t k = 0; k < result.size(); ++k) {
            result[k] = !left ? at(value, k + by) : k < by ? trace::never : value[k - by];
        }
        return result;
    }

    // As wide as the wider one: sums and differences wrap around.
    Bits combined(const Bits& a, const Bits& b, const std::string& sign) const {
        Bits result(std::max(a.size(), b.size()));
        Node carry = sign == "-" ? trace::always : trace::never;
        for (std::size_t k = 0; k < result.size(); ++k) {
            const Node x = at(a, k);
            Node y = at(b, k);
            if (sign == "&" || sign == "|" || sign == "^") {
                result[k] = sign == "&"   ? diagrams().both(x, y)
                            : sign == "|" ? diagrams().either(x, y)
                                          : diagrams().differ(x, y);
                continue;
            }
            y = sign == "-" ? diagrams().negation(y) : y;
            const Node half = diagrams().differ(x, y);
            result[k] = diagrams().differ(half, carry);
            carry = diagrams().either(diagrams().both(x, y), diagrams().both(half, carry));
        }
        return result;
    }

    Bits operand() {
        if (take("~")) {
            Bits value = operand();
            std::ranges::transform(value, value.begin(), [&](Node bit) { return diagrams().negation(bit); });
            return value;
        }
        const bool reversed = take("rev");
        const bool any = !reversed && take("any");
        if (take("(")) {
            Bits value = expression();
            if (!take(")")) {
                fail("a bracket is missing", text_.substr(at_));
            }
            return reversed ? turned_round(value) : any ? Bits{any_of(value)} : value;
        }
        if (const std::optional<Place> found = place()) {
            return bits_of(*found);
        }
        return constant(number());
    }

    static Bits turned_round(const Bits& value) {
        if (value.size() % 8 != 0) {
            throw std::runtime_error{"only whole bytes can be turned round"};
        }
        Bits result;
        for (std::size_t byte = value.size() / 8; byte-- > 0;) {
            result.insert(result.end(), value.begin() + static_cast<std::ptrdiff_t>(8 * byte),
                          value.begin() + static_cast<std::ptrdiff_t>(8 * byte + 8));
        }
        return result;
    }

    Node any_of(const Bits& value) const {
        Node any = trace::never;
        for (const Node bit : value) {
            any = diagrams().either(any, bit);
        }
        return any;
    }

    // "L0.7-4", "L3", "L8-11", "T", "M"
    std::optional<Place> place() {
        static const std::regex position{R"(^(?:([LPBAK])(\d+)(?:\.(\d)(?:-(\d))?|-(\d+))?|([TM])(?![a-z])))"};
        std::smatch match;
        const std::string rest = text_.substr(at_);
        if (!std::regex_search(rest, match, position)) {
            return std::nullopt;
        }
        at_ += static_cast<std::size_t>(match.length());
        if (match[6].matched) {
            const char letter = match[6].str().front();
            return Place{letter, 0, letter == 'T' ? 32U : 16U};
        }
        const char letter = match[1].str().front();
        const std::size_t byte = std::stoul(match[2]);
        if (match[3].matched) {
            const std::size_t high = std::stoul(match[3]);
            const std::size_t low = match[4].matched ? std::stoul(match[4]) : high;
            return Place{letter, 8 * byte + low, high - low + 1};
        }
        const std::size_t last = match[5].matched ? std::stoul(match[5]) : byte;
        if (last < byte) {
            fail("no such bytes", rest);
        }
        return Place{letter, 8 * byte, 8 * (last - byte + 1)};
    }

    const World& world_;
    std::string text_;
    std::size_t at_ = 0;
    Node within_;
    Node all_;
    bool one_difference_is_enough_ = false;
};

// Where no bracket is open and no quotation mark.
std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts{""};
    bool in_quotes = false;
    int open = 0;
    for (const char c : text) {
        in_quotes = in_quotes != (c == '"');
        open += in_quotes ? 0 : c == '(' ? 1 : c == ')' ? -1 : 0;
        if (c == separator && !in_quotes && open == 0) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

class Examiner {
public:
    Examiner(const World& world, Node condition) : world_{world}, diagrams_{world.diagrams()}, condition_{condition} {}

    // A record for which the fact does not hold, in words; empty if there is none.
    std::string refuted(const std::string& fact) const {
        Reader reader{world_, fact, condition_};
        if (reader.take_word("can ")) {
            return diagrams_.both(condition_, reader.condition()) == trace::never ? "it cannot" : "";
        }
        for (const char* const word : {"dropped ", "carried ", "gone ", "kept ", "same "}) {
            if (reader.take_word(word)) {
                for (const Place& place : reader.places()) {
                    for (std::size_t k = 0; k < place.width; ++k) {
                        if (std::string why = of_bit(word, place.letter, place.first + k); !why.empty()) {
                            return why;
                        }
                    }
                }
                return "";
            }
        }
        if (reader.take_word("reads ")) {
            return reads_others(reader.take_word("nothing") ? std::vector<Place>{} : reader.places());
        }
        return counterexample(diagrams_.both(condition_, diagrams_.negation(reader.fact())));
    }

private:
    static std::string name(char letter, std::size_t bit) {
        return letter + std::to_string(bit / 8) + "." + std::to_string(bit % 8);
    }

    std::string counterexample(Node records) const {
        if (records == trace::never) {
            return "";
        }
        std::string text = "not where";
        for (const auto& [id, value] : diagrams_.one_way(records)) {
            const char letter = trace::space_of(id) == Space::in ? (world_.is_reverse() ? 'P' : 'L') : '?';
            text.append(" ").append(name(letter, trace::index_of(id))).append(value ? "=1" : "=0");
        }
        return text;
    }

    // Where the function changes with the bit, within the condition.
    Node changes(Node function, BitId id) const {
        const Node open = diagrams_.both(diagrams_.where(condition_, id, false), diagrams_.where(condition_, id, true));
        const Node if_clear = diagrams_.both(open, diagrams_.where(function, id, false));
        return diagrams_.differ(if_clear, diagrams_.both(open, diagrams_.where(function, id, true)));
    }
    bool changes(const Bits& functions, BitId id) const {
        return std::ranges::any_of(functions, [&](Node function) { return changes(function, id) != trace::never; });
    }

    std::string of_bit(const std::string& word, char letter, std::size_t bit) const {
        const BitId id = trace::bit_id(Space::in, bit);
        const auto not_if = [&](bool wrong) { return wrong ? "not " + name(letter, bit) : ""; };
        if (word == "dropped ") {
            return not_if(changes(world_.results(), id));
        }
        if (word == "carried ") {
            return not_if(!changes(outputs(), id));
        }
        if (word == "gone ") {
            return not_if(changes(returned(), id));
        }
        if (word == "kept ") {
            const Node differs = diagrams_.differ(world_.bit(letter, bit), buffer(letter, bit));
            return not_if(diagrams_.both(condition_, differs) != trace::never);
        }
        const Node differs = diagrams_.differ(world_.bit('B', bit), world_.bit('L', bit));
        return not_if(diagrams_.both(condition_, differs) != trace::never);
    }

    Node buffer(char letter, std::size_t bit) const {
        return letter == 'B' && !world_.is_reverse() ? world_.journey().there().buffer(bit)
                                                     : world_.passage().buffer(bit);
    }

    Bits outputs() const {
        Bits all;
        for (std::size_t bit = 0; bit < world_.bits_out(); ++bit) {
            all.push_back(world_.passage().out(bit));
        }
        return all;
    }

    Bits returned() const {
        Bits all;
        for (std::size_t bit = 0; bit < world_.journey().bits(); ++bit) {
            all.push_back(world_.journey().returned(bit));
        }
        return all;
    }

    std::string reads_others(const std::vector<Place>& places) const {
        std::set<BitId> allowed;
        for (const Place& place : places) {
            const Space space = place.letter == 'K' || place.letter == 'T' ? Space::argument
                                : place.letter == 'M'                      ? Space::setting
                                                                           : Space::in;
            for (std::size_t k = 0; k < place.width; ++k) {
                allowed.insert(trace::bit_id(space, place.first + k));
            }
        }
        for (const Node result : world_.results()) {
            for (const BitId id : diagrams_.depends_on(result)) {
                if (trace::space_of(id) != Space::out && !allowed.contains(id) && changes(result, id) != trace::never) {
                    return "but also bit " + name('.', trace::index_of(id));
                }
            }
        }
        return "";
    }

    const World& world_;
    Diagrams& diagrams_;
    Node condition_;
};

bool speaks_of_return(const std::string& claim) {
    static const std::regex of_return{R"(\bB\d|\bgone |\bsame |\bback")"};
    return std::regex_search(claim, of_return);
}

}  // namespace

std::vector<Statement> statements_in(const std::string& text) {
    std::istringstream lines{text};
    std::vector<Statement> all;
    std::string subject;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("## ")) {
            subject = line.substr(3);
        } else if (line.starts_with("> ")) {
            all.push_back({subject, line.substr(2), {}});
        } else if (!line.empty() && !all.empty()) {
            all.back().claims.push_back(line);
        }
    }
    return all;
}

Subject subject_of_table(unsigned table) {
    const Translator* const result = &catalogue::of_table(table, Role::result);
    return {&catalogue::of_table(table, Role::key), result, &catalogue::of_table(table, Role::reverse), result};
}

Subject subject_of(const std::vector<const Translator*>& translators) {
    Subject subject;
    const std::vector<unsigned> tables = catalogue::tables_of(*translators.front());
    if (!tables.empty() && translators.front()->family != "frame") {
        subject = subject_of_table(tables.front());
    }
    const auto of_role = [&](Role role) -> const Translator*& {
        return role == Role::key ? subject.key : role == Role::result ? subject.result : subject.reverse;
    };
    for (const Translator* const translator : translators) {
        of_role(translator->role) = translator;
    }
    const bool keys_alone =
        std::ranges::all_of(translators, [](const Translator* one) { return one->role == Role::key; });
    subject.unnamed = keys_alone ? translators.front() : subject.result;
    return subject;
}

std::string refuted(const Subject& subject, const std::string& claim) {
    static const std::regex of_translator{R"(^([a-z]\w*)?(?:@(-?\d+))? *(.*)$)"};
    std::smatch match;
    std::string text = claim;
    const Translator* translator = subject.unnamed;
    std::optional<std::int32_t> length;
    if (const std::size_t colon = claim.find(':'); colon == std::string::npos) {
        fail("a colon is missing", claim);
    }
    if (std::regex_match(claim, match, of_translator)) {
        const std::string word = match[1];
        const bool is_condition = word == "back" || word == "status" || word == "length" || word == "any";
        if (!is_condition) {
            if (!word.empty()) {
                translator = word == "key"       ? subject.key
                             : word == "result"  ? subject.result
                             : word == "reverse" ? subject.reverse
                                                 : catalogue::find(word);
            }
            if (match[2].matched) {
                length = static_cast<std::int32_t>(std::stol(match[2]));
            }
            text = match[3];
        }
    }
    if (translator == nullptr) {
        fail("no such translator", claim);
    }
    const std::vector<std::string> parts = split(text, ':');
    if (parts.size() != 2) {
        fail("not a condition, a colon and facts", claim);
    }
    const World world{subject, *translator, length};
    Node condition = Reader{world, parts[0]}.condition();
    if (!world.is_reverse() && speaks_of_return(text)) {
        condition = world.diagrams().both(condition, world.journey().makes_it());
    }
    if (condition == trace::never) {
        return "no record fulfils the condition";
    }
    const Examiner examiner{world, condition};
    for (const std::string& fact : split(parts[1], ',')) {
        if (const std::string why = examiner.refuted(fact); !why.empty()) {
            return std::string{fact}.append(": ").append(why);
        }
    }
    return "";
}

}  // namespace docs
