// Decision diagrams and the numbers made of them, against plain arithmetic on every value of small fields.

#include "trace/diagram.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "trace/recorder.h"

namespace {

namespace trace = npxlate::trace;

using npxlate::Number;
using npxlate::Truth;

// Two numbers of undetermined bits, six each, the record's first.
class Numbers : public testing::Test {
protected:
    static constexpr unsigned width = 6;

    static Number number(unsigned first) {
        std::vector<trace::Bit> bits;
        for (unsigned i = 0; i < width; ++i) {
            bits.push_back(trace::bit_of(trace::bit_id(trace::Space::in, first + i)));
        }
        return {std::move(bits), first == 0 ? "a" : "b"};
    }

    bool holds(const trace::Bit& bit, std::uint32_t a, std::uint32_t b) {
        return diagrams_.holds(trace::node_of(diagrams_, bit), [&](trace::BitId id) {
            const unsigned index = trace::index_of(id);
            return (index < width ? a >> index & 1 : b >> (index - width) & 1) != 0;
        });
    }

    template <typename Expected>
    void expect_number(const Number& result, Expected expected) {
        for (std::uint32_t a = 0; a < 1U << width; ++a) {
            for (std::uint32_t b = 0; b < 1U << width; ++b) {
                std::uint32_t value = 0;
                for (unsigned i = 0; i < 32; ++i) {
                    value |= std::uint32_t{holds(result.bit(i), a, b)} << i;
                }
                ASSERT_EQ(value, expected(a, b)) << result.words() << " of " << a << " and " << b;
            }
        }
    }

    template <typename Expected>
    void expect_truth(const Truth& result, Expected expected) {
        expect_number(Number{result}, [&](std::uint32_t a, std::uint32_t b) { return expected(a, b) ? 1U : 0U; });
    }

    std::uint8_t in_ = 0;
    std::uint8_t out_ = 0;
    trace::Diagrams diagrams_{};
    trace::Recorder recorder_{diagrams_, npxlate::Side::logical, &in_, &out_, nullptr};
    Number a_ = number(0);
    Number b_ = number(width);
};

TEST_F(Numbers, AreAddedSubtractedAndMultiplied) {
    expect_number(a_ + b_, [](std::uint32_t a, std::uint32_t b) { return a + b; });
    expect_number(a_ - b_, [](std::uint32_t a, std::uint32_t b) { return a - b; });
    expect_number(3 * a_ + 4, [](std::uint32_t a, std::uint32_t) { return 3 * a + 4; });
    expect_number(a_ * 64 - 7, [](std::uint32_t a, std::uint32_t) { return a * 64 - 7; });
    EXPECT_EQ((3 * a_ + 4).words(), "(3 x a) + 4");
    EXPECT_THROW(static_cast<void>(a_ * b_), std::logic_error);
}

TEST_F(Numbers, AreDividedByPowersOfTwo) {
    expect_number(a_ / 4 - 1, [](std::uint32_t a, std::uint32_t) { return a / 4 - 1; });
    expect_number(a_ % 4, [](std::uint32_t a, std::uint32_t) { return a % 4; });
    EXPECT_THROW(static_cast<void>(a_ / 3), std::logic_error);
    EXPECT_THROW(static_cast<void>(a_ % b_), std::logic_error);
}

TEST_F(Numbers, AreCombinedBitByBit) {
    expect_number(a_ & b_, [](std::uint32_t a, std::uint32_t b) { return a & b; });
    expect_number(a_ | b_, [](std::uint32_t a, std::uint32_t b) { return a | b; });
    expect_number(a_ ^ b_, [](std::uint32_t a, std::uint32_t b) { return a ^ b; });
    expect_number(~a_ & b_, [](std::uint32_t a, std::uint32_t b) { return ~a & b; });
    expect_number(~a_, [](std::uint32_t a, std::uint32_t) { return ~a; });
}

TEST_F(Numbers, AreShifted) {
    expect_number(a_ << 3, [](std::uint32_t a, std::uint32_t) { return a << 3; });
    expect_number(a_ >> 2, [](std::uint32_t a, std::uint32_t) { return a >> 2; });
    expect_number(a_ >> (b_ & 7), [](std::uint32_t a, std::uint32_t b) { return a >> (b & 7); });
    expect_number(Number{2} << (b_ & 7), [](std::uint32_t, std::uint32_t b) { return 2U << (b & 7); });
    expect_number(npxlate::reversed_bytes(a_, 2), [](std::uint32_t a, std::uint32_t) { return a << 8; });
}

TEST_F(Numbers, AreCompared) {
    expect_truth(a_ == b_, [](std::uint32_t a, std::uint32_t b) { return a == b; });
    expect_truth(a_ != 5, [](std::uint32_t a, std::uint32_t) { return a != 5; });
    expect_truth(a_ < b_, [](std::uint32_t a, std::uint32_t b) { return a < b; });
    expect_truth(a_ > 40, [](std::uint32_t a, std::uint32_t) { return a > 40; });
    expect_truth(a_ <= 40, [](std::uint32_t a, std::uint32_t) { return a <= 40; });
    expect_truth(a_ >= b_, [](std::uint32_t a, std::uint32_t b) { return a >= b; });
    expect_truth(a_ >= 8 && (a_ & (a_ - 1)) == 0,
                 [](std::uint32_t a, std::uint32_t) { return a >= 8 && (a & (a - 1)) == 0; });
    expect_truth(!(a_ == 1) || b_ == 2, [](std::uint32_t a, std::uint32_t b) { return a != 1 || b == 2; });
    EXPECT_EQ((!(a_ > 40 && b_ == 2)).words(), "a <= 40 or b is not 2");
}

TEST_F(Numbers, AreChosenAndLookedUp) {
    expect_number(npxlate::choose(a_ > b_, a_, b_), [](std::uint32_t a, std::uint32_t b) { return std::max(a, b); });
    struct Element {
        std::uint8_t value;
    };
    static constexpr Element table[] = {{7}, {1}, {9}, {200}};
    expect_number(npxlate::entry_of(table, a_ & 3, &Element::value),
                  [](std::uint32_t a, std::uint32_t) { return std::uint32_t{table[a & 3].value}; });
}

TEST_F(Numbers, AreFunctionsOfEveryWayThroughThem) {
    // NOLINTNEXTLINE(performance-unnecessary-value-param): functions of rows take values
    static constexpr npxlate::Function steps{"steps", [](Number value) -> Number {
                                                 if (value == 3) {
                                                     return 30;
                                                 }
                                                 if (value > 60) {
                                                     return value + 1;
                                                 }
                                                 return 0;
                                             }};
    expect_number(npxlate::apply(steps, a_), [](std::uint32_t a, std::uint32_t) {
        return a == 3 ? 30U : a > 60 ? a + 1 : 0U;
    });
}

TEST_F(Numbers, TakeEveryDecisionBothWaysAndNoneThatFollows) {
    std::vector<std::pair<std::string, trace::Node>> ways;
    std::string way;
    trace::each_way(
        [&] {
            way = a_ > 40 ? "above" : "below";
            way += a_ > 20 ? ", above 20" : "";
            if (a_ == 7) {
                way += ", 7";
            }
        },
        [&](const trace::Way& taken) { ways.emplace_back(way, taken.condition); });
    ASSERT_EQ(ways.size(), 4U);
    EXPECT_EQ(ways[0].first, "above, above 20");
    EXPECT_EQ(ways[1].first, "below, above 20");
    EXPECT_EQ(ways[2].first, "below, 7");
    EXPECT_EQ(ways[3].first, "below");
    EXPECT_EQ(ways[0].second, trace::node_of(diagrams_, (a_ > 40).bit()));
    EXPECT_THROW(static_cast<void>(static_cast<bool>(a_ == 1)), std::logic_error);
}

TEST(Diagrams, AnswerWhatDependsAndWhatFollows) {
    trace::Diagrams diagrams;
    const trace::Node a = diagrams.bit(10);
    const trace::Node b = diagrams.bit(3);
    const trace::Node c = diagrams.bit(7);
    const trace::Node f = diagrams.either(diagrams.both(a, b), diagrams.both(diagrams.negation(a), c));
    EXPECT_EQ(diagrams.depends_on(f), (std::vector<trace::BitId>{10, 3, 7}));
    EXPECT_EQ(diagrams.where(f, 10, true), b);
    EXPECT_EQ(diagrams.for_some(f, [](trace::BitId id) { return id == 10; }), diagrams.either(b, c));
    EXPECT_TRUE(diagrams.implies(diagrams.both(b, c), f));
    EXPECT_FALSE(diagrams.implies(b, f));
    EXPECT_EQ(diagrams.differ(f, f), trace::never);
    EXPECT_EQ(diagrams.differ(a, diagrams.negation(a)), trace::always);
    const auto way = diagrams.one_way(f);
    EXPECT_TRUE(diagrams.holds(f, [&](trace::BitId id) {
        const auto found = std::ranges::find(way, id, &std::pair<trace::BitId, bool>::first);
        return found != way.end() && found->second;
    }));
}

}  // namespace
