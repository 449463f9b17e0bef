#include "trace/number.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <utility>

#include "trace/recorder.h"

namespace npxlate {
namespace trace {

Bit bit_of(Diagrams& diagrams, Node node) {
    if (node <= always) {
        return bit_of(node == always);
    }
    if (diagrams.if_clear(node) <= always && diagrams.if_set(node) <= always) {
        return {diagrams.if_set(node) == always ? Bit::moved : Bit::inverted, diagrams.asks(node)};
    }
    return {Bit::function, node};
}

Node node_of(Diagrams& diagrams, const Bit& bit) {
    switch (bit.kind) {
        case Bit::constant:
            return bit.value != 0 ? always : never;
        case Bit::moved:
            return diagrams.bit(static_cast<BitId>(bit.value));
        case Bit::inverted:
            return diagrams.negation(diagrams.bit(static_cast<BitId>(bit.value)));
        case Bit::function:
            break;
    }
    return bit.value;
}

}  // namespace trace

namespace {

using trace::Bit;
using trace::Diagrams;
using trace::Node;

constexpr std::size_t number_bits = 32;

Diagrams& diagrams() { return trace::Recorder::current().diagrams(); }

Bit invert(const Bit& a) {
    switch (a.kind) {
        case Bit::constant:
            return trace::bit_of(a.value == 0);
        case Bit::moved:
            return {Bit::inverted, a.value};
        case Bit::inverted:
            return {Bit::moved, a.value};
        case Bit::function:
            break;
    }
    return trace::bit_of(diagrams(), diagrams().negation(a.value));
}

// What is known needs no diagram, so that bits that are only moved never enter one.
Bit select(const Bit& condition, const Bit& if_true, const Bit& if_false) {
    if (condition.kind == Bit::constant) {
        return condition.value != 0 ? if_true : if_false;
    }
    if (if_true == if_false) {
        return if_true;
    }
    const Node asked = node_of(diagrams(), condition);
    const Node a = node_of(diagrams(), if_true);
    const Node b = node_of(diagrams(), if_false);
    return trace::bit_of(diagrams(), diagrams().if_then_else(asked, a, b));
}

Bit both(const Bit& a, const Bit& b) {
    return b.kind == Bit::constant ? select(b, a, trace::bit_of(false)) : select(a, b, trace::bit_of(false));
}
Bit either(const Bit& a, const Bit& b) {
    return b.kind == Bit::constant ? select(b, trace::bit_of(true), a) : select(a, trace::bit_of(true), b);
}
Bit differ(const Bit& a, const Bit& b) {
    return b.kind == Bit::constant ? select(b, invert(a), a) : select(a, invert(b), b);
}

bool is_constant(const Number& number) {
    return std::ranges::all_of(number.bits(), [](const Bit& bit) { return bit.kind == Bit::constant; });
}

std::uint32_t value_of(const Number& number) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < number.bits().size(); ++i) {
        value |= number.bits()[i].value << i;
    }
    return value;
}

std::uint32_t power_of_two(const Number& number) {
    if (!is_constant(number) || !std::has_single_bit(value_of(number))) {
        throw std::logic_error{"only division by a power of two is traced"};
    }
    return static_cast<std::uint32_t>(std::countr_zero(value_of(number)));
}

template <typename Combine>
std::vector<Bit> bitwise(const Number& a, const Number& b, Combine combine) {
    std::vector<Bit> bits(std::max(a.bits().size(), b.bits().size()));
    for (std::size_t i = 0; i < bits.size(); ++i) {
        bits[i] = combine(a.bit(i), b.bit(i));
    }
    return bits;
}

std::vector<Bit> sum(const Number& a, const Number& b, bool carry_in) {
    std::vector<Bit> bits(number_bits);
    Bit carry = trace::bit_of(carry_in);
    for (std::size_t i = 0; i < number_bits; ++i) {
        const Bit half = differ(a.bit(i), b.bit(i));
        bits[i] = differ(half, carry);
        carry = either(both(a.bit(i), b.bit(i)), both(half, carry));
    }
    return bits;
}

std::vector<Bit> shifted_left(const Number& a, std::size_t by) {
    std::vector<Bit> bits(number_bits);
    for (std::size_t i = by; i < number_bits; ++i) {
        bits[i] = a.bit(i - by);
    }
    return bits;
}

std::vector<Bit> shifted_right(const Number& a, std::size_t by) {
    std::vector<Bit> bits;
    for (std::size_t i = by; i < a.bits().size(); ++i) {
        bits.push_back(a.bit(i));
    }
    return bits;
}

// Shifted by a number whose bits stand above those of the value in the diagrams: they are few, and choose.
Number shift(Number a, const Number& by, std::vector<Bit> (*shifted)(const Number&, std::size_t), std::string words) {
    for (const Bit& bit : by.bits()) {
        static_cast<void>(node_of(diagrams(), bit));
    }
    constexpr std::size_t shift_bits = 5;
    for (std::size_t i = 0; i < std::min(by.bits().size(), shift_bits); ++i) {
        const Number moved{shifted(a, std::size_t{1} << i), ""};
        a = Number{bitwise(moved, a, [&](const Bit& x, const Bit& y) { return select(by.bit(i), x, y); }), ""};
    }
    return Number{a.bits(), std::move(words)};
}

bool is_one_word(const std::string& words) { return words.find(' ') == std::string::npos; }
std::string in_brackets(const std::string& words) { return is_one_word(words) ? words : "(" + words + ")"; }
std::string joined(const std::string& a, const char* by, const std::string& b) {
    return in_brackets(a) + " " + by + " " + in_brackets(b);
}

std::string words_of(std::uint32_t value) { return std::to_string(value); }

Truth compared(const Number& a, const Number& b, const Bit& bit, const char* sign, const char* opposite) {
    return {bit, joined(a.words(), sign, b.words()), joined(a.words(), opposite, b.words())};
}

// Conditions joined by the same word need no brackets; the others get them.
std::string both_words(const std::string& a, const char* word, const char* other, const std::string& b) {
    const auto part = [&](const std::string& words) {
        return words.find(other) == std::string::npos ? words : "(" + words + ")";
    };
    return part(a) + word + part(b);
}

Bit less(const Number& a, const Number& b) {
    Bit result = trace::bit_of(false);
    for (std::size_t i = 0; i < std::max(a.bits().size(), b.bits().size()); ++i) {
        result = select(differ(a.bit(i), b.bit(i)), b.bit(i), result);
    }
    return result;
}

// The ways through a function, as one value: what each gives, under the condition of that way.
template <typename Body>
std::vector<Bit> all_ways(Body body) {
    std::vector<std::pair<Node, Number>> ways;
    trace::each_way([&] { ways.emplace_back(trace::never, body()); },
                    [&](const trace::Way& way) { ways.back().first = way.condition; });
    std::vector<Bit> bits(number_bits);
    for (std::size_t i = 0; i < number_bits; ++i) {
        bits[i] = ways.back().second.bit(i);
        for (auto way = ways.rbegin() + 1; way != ways.rend(); ++way) {
            bits[i] = select(trace::bit_of(diagrams(), way->first), way->second.bit(i), bits[i]);
        }
    }
    return bits;
}

}  // namespace

Truth::Truth(bool value)
    : bit_{trace::bit_of(value)}, words_{value ? "always" : "never"}, opposite_{value ? "never" : "always"} {}
Truth::Truth(const Bit& bit, std::string words, std::string opposite)
    : bit_{bit}, words_{std::move(words)}, opposite_{std::move(opposite)} {}

Truth::operator bool() const {
    if (bit_.kind == Bit::constant) {
        return bit_.value != 0;
    }
    return trace::decide(*this);
}

Truth operator!(const Truth& a) { return {invert(a.bit()), a.opposite(), a.words()}; }

Truth operator&&(const Truth& a, const Truth& b) {
    if (a.bit().kind == Bit::constant) {
        return a.bit().value != 0 ? b : a;
    }
    if (b.bit().kind == Bit::constant) {
        return b.bit().value != 0 ? a : b;
    }
    return {both(a.bit(), b.bit()), both_words(a.words(), " and ", " or ", b.words()),
            both_words(a.opposite(), " or ", " and ", b.opposite())};
}

Truth operator||(const Truth& a, const Truth& b) { return !(!a && !b); }

Number::Number(const Truth& truth) : bits_{truth.bit()}, words_{"1 if " + truth.words()} {}

Number::Number(std::vector<Bit> bits, std::string words) : bits_{std::move(bits)}, words_{std::move(words)} {
    while (!bits_.empty() && bits_.back() == Bit{}) {
        bits_.pop_back();
    }
    if (words_.empty() && is_constant(*this)) {
        words_ = words_of(value_of(*this));
    }
}

Number Number::constant(std::uint32_t value) {
    std::vector<Bit> bits;
    for (; value >> bits.size() != 0 && bits.size() < number_bits;) {
        bits.push_back(trace::bit_of((value >> bits.size() & 1) != 0));
        if (bits.size() == number_bits) {
            break;
        }
    }
    return {std::move(bits), words_of(value)};
}

Number Number::named(std::string words) && { return {std::move(bits_), std::move(words)}; }

Number operator+(const Number& a, const Number& b) { return {sum(a, b, false), joined(a.words(), "+", b.words())}; }
Number operator-(const Number& a, const Number& b) {
    std::vector<Bit> inverse(number_bits);
    for (std::size_t i = 0; i < number_bits; ++i) {
        inverse[i] = invert(b.bit(i));
    }
    return {sum(a, Number{std::move(inverse), ""}, true), joined(a.words(), "-", b.words())};
}
Number operator*(const Number& a, const Number& b) {
    const bool first_is_constant = is_constant(a);
    if (!first_is_constant && !is_constant(b)) {
        throw std::logic_error{"only multiplication by a constant is traced"};
    }
    const std::uint32_t factor = value_of(first_is_constant ? a : b);
    const Number& other = first_is_constant ? b : a;
    Number result{0};
    for (std::size_t i = 0; i < number_bits; ++i) {
        if ((factor >> i & 1) != 0) {
            result = Number{sum(result, Number{shifted_left(other, i), ""}, false), ""};
        }
    }
    return {result.bits(), joined(a.words(), "x", b.words())};
}
Number operator/(const Number& a, const Number& b) {
    return {shifted_right(a, power_of_two(b)), joined(a.words(), "/", b.words())};
}
Number operator%(const Number& a, const Number& b) {
    const std::uint32_t bits = power_of_two(b);
    return (a & ((std::uint32_t{1} << bits) - 1)).named(joined(a.words(), "modulo", b.words()));
}
Number operator&(const Number& a, const Number& b) { return {bitwise(a, b, both), joined(a.words(), "&", b.words())}; }
Number operator|(const Number& a, const Number& b) {
    return {bitwise(a, b, either), joined(a.words(), "|", b.words())};
}
Number operator^(const Number& a, const Number& b) {
    return {bitwise(a, b, differ), joined(a.words(), "^", b.words())};
}
Number operator~(const Number& a) {
    return {bitwise(a, Number{0xffffffffU}, [](const Bit& x, const Bit&) { return invert(x); }),
            "~" + in_brackets(a.words())};
}
Number operator<<(const Number& a, const Number& b) {
    return shift(a, b, shifted_left, joined(a.words(), "<<", b.words()));
}
Number operator>>(const Number& a, const Number& b) {
    return shift(a, b, shifted_right, joined(a.words(), ">>", b.words()));
}

Truth operator==(const Number& a, const Number& b) {
    Bit equal = trace::bit_of(true);
    for (std::size_t i = 0; i < std::max(a.bits().size(), b.bits().size()); ++i) {
        equal = both(equal, invert(differ(a.bit(i), b.bit(i))));
    }
    return compared(a, b, equal, "=", "is not");
}
Truth operator<(const Number& a, const Number& b) { return compared(a, b, less(a, b), "<", ">="); }
Truth operator>(const Number& a, const Number& b) { return compared(a, b, less(b, a), ">", "<="); }
Truth operator<=(const Number& a, const Number& b) { return !(a > b); }
Truth operator>=(const Number& a, const Number& b) { return !(a < b); }

Number choose(const Truth& condition, const Number& if_true, const Number& if_false) {
    return {bitwise(if_true, if_false, [&](const Bit& a, const Bit& b) { return select(condition.bit(), a, b); }),
            if_true.words() + " if " + condition.words() + ", else " + if_false.words()};
}

Number reversed_bytes(const Number& value, unsigned count) {
    std::vector<Bit> bits(8UL * count);
    for (unsigned i = 0; i < 8 * count; ++i) {
        bits[8 * (count - 1 - i / 8) + i % 8] = value.bit(i);
    }
    return {std::move(bits), value.words()};
}

namespace number_detail {

Number element(const std::uint32_t* table, std::size_t count, const Number& index) {
    Number result{table[0]};
    for (std::size_t i = 1; i < count; ++i) {
        result = choose(index == Number{i}, Number{table[i]}, result);
    }
    return std::move(result).named("the entry of " + in_brackets(index.words()));
}

unsigned each_below(unsigned count, const Number& number) {
    for (unsigned value = 0; value + 1 < count; ++value) {
        if (number == Number{value}) {
            return value;
        }
    }
    return count - 1;
}

unsigned each_from(unsigned first, unsigned last, const Number& number) {
    for (unsigned value = first; value <= last; ++value) {
        if (number == Number{value}) {
            return value;
        }
    }
    return last + 1;
}

}  // namespace number_detail

Number given(const std::uint32_t*) { return trace::Recorder::entry_type(); }
Number setting(std::uint16_t) { return trace::Recorder::tx_adj_key_max(); }

Number apply(const Function& function, const Number& field) {
    return {all_ways([&] { return function.apply(field); }),
            std::string{function.description} + " (" + field.words() + ")"};
}

Number apply(const FunctionOfTwo& function, const Number& first, const Number& second) {
    return {all_ways([&] { return function.apply(first, second); }),
            std::string{function.description} + " (" + first.words() + ", " + second.words() + ")"};
}

}  // namespace npxlate
