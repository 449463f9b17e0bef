// The numbers and truth values of the traced build: every bit is known by where it comes from. A decision that depends
// on such bits is taken both ways, one after the other; see recorder.h.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "frame/position.h"
#include "trace/node.h"

namespace npxlate {
namespace trace {

// One bit: a constant, a bit that a record held before the call, the inverse of one, or a function of several.
struct Bit {
    enum Kind : std::uint8_t { constant, moved, inverted, function };
    Kind kind = constant;
    std::uint32_t value = 0;  // 0 or 1; the bit; the node

    bool operator==(const Bit&) const = default;
};

constexpr Bit bit_of(bool value) { return {Bit::constant, value}; }
constexpr Bit bit_of(BitId id) { return {Bit::moved, id}; }

// A function, as the simplest kind of bit that it is.
Bit bit_of(Diagrams& diagrams, Node node);
Node node_of(Diagrams& diagrams, const Bit& bit);

}  // namespace trace

class Number;

// A condition.
class Truth {
public:
    Truth(bool value);  // NOLINT(google-explicit-constructor): conditions that are known mix with those that are not
    Truth(const trace::Bit& bit, std::string words, std::string opposite);

    // Takes the decision: the way through the translator goes on as the answer says.
    explicit operator bool() const;

    friend Truth operator!(const Truth& a);
    friend Truth operator&&(const Truth& a, const Truth& b);  // both are looked at, in whatever order
    friend Truth operator||(const Truth& a, const Truth& b);
    // Those that need no decision stay as they are known.
    friend Truth operator&&(const Truth& a, bool b) { return a && Truth{b}; }
    friend Truth operator&&(bool a, const Truth& b) { return Truth{a} && b; }
    friend Truth operator||(const Truth& a, bool b) { return a || Truth{b}; }
    friend Truth operator||(bool a, const Truth& b) { return Truth{a} || b; }

    const trace::Bit& bit() const { return bit_; }
    const std::string& words() const { return words_; }
    const std::string& opposite() const { return opposite_; }

private:
    trace::Bit bit_;
    std::string words_;
    std::string opposite_;
};

// A number of 32 bits that wraps around.
class Number {
public:
    template <std::integral Integer>
    Number(Integer value)
        : Number{constant(static_cast<std::uint32_t>(value))} {}  // NOLINT(google-explicit-constructor)
    Number(const Truth& truth);                                   // NOLINT(google-explicit-constructor): 1 or 0
    Number(std::vector<trace::Bit> bits, std::string words);

    const std::vector<trace::Bit>& bits() const { return bits_; }  // from the lowest; those above are 0
    trace::Bit bit(std::size_t i) const { return i < bits_.size() ? bits_[i] : trace::Bit{}; }
    const std::string& words() const { return words_; }
    Number named(std::string words) &&;

    friend Number operator+(const Number& a, const Number& b);
    friend Number operator-(const Number& a, const Number& b);
    friend Number operator*(const Number& a, const Number& b);
    friend Number operator/(const Number& a, const Number& b);  // by powers of two
    friend Number operator%(const Number& a, const Number& b);
    friend Number operator&(const Number& a, const Number& b);
    friend Number operator|(const Number& a, const Number& b);
    friend Number operator^(const Number& a, const Number& b);
    friend Number operator~(const Number& a);
    friend Number operator<<(const Number& a, const Number& b);
    friend Number operator>>(const Number& a, const Number& b);
    friend Truth operator==(const Number& a, const Number& b);
    friend Truth operator!=(const Number& a, const Number& b) { return !(a == b); }
    friend Truth operator<(const Number& a, const Number& b);
    friend Truth operator>(const Number& a, const Number& b);
    friend Truth operator<=(const Number& a, const Number& b);
    friend Truth operator>=(const Number& a, const Number& b);

private:
    static Number constant(std::uint32_t value);

    std::vector<trace::Bit> bits_;
    std::string words_;
};

Number choose(const Truth& condition, const Number& if_true, const Number& if_false);
Number reversed_bytes(const Number& value, unsigned count);

namespace number_detail {
Number element(const std::uint32_t* table, std::size_t count, const Number& index);
unsigned each_below(unsigned count, const Number& number);
unsigned each_from(unsigned first, unsigned last, const Number& number);
}  // namespace number_detail

template <typename Element, std::size_t count, typename Member>
Number entry_of(const Element (&table)[count], const Number& index, Member Element::*which) {
    std::array<std::uint32_t, count> values{};
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = table[i].*which;
    }
    return number_detail::element(values.data(), count, index);
}

inline Number described(Number value, const char* words) { return std::move(value).named(words); }

template <unsigned count>
unsigned each_below(const Number& number) {
    return number_detail::each_below(count, number);
}

template <unsigned first, unsigned last>
unsigned each_from(const Number& number) {
    return number_detail::each_from(first, last, number);
}

// The entry type, whatever it is.
Number given(const std::uint32_t* value);
Number setting(std::uint16_t value);

struct Function {
    const char* description;
    Number (*apply)(Number);
};
struct FunctionOfTwo {
    const char* description;
    Number (*apply)(Number, Number);
};

// The ways through the function become one value by conditions.
Number apply(const Function& function, const Number& field);
Number apply(const FunctionOfTwo& function, const Number& first, const Number& second);

}  // namespace npxlate
