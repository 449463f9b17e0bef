// The layout vocabulary by itself: each kind of row, at many positions and in both directions, does what the position
// tables say it does, inside records of exactly the size it needs.

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "frame/helpers.h"
#include "support/harness.h"
#include "support/record.h"
#include "support/rows.h"

using namespace npxlate;
using support::Bytes;
using support::Rows;
using support::Translator;

namespace {

template <const auto& layout>
std::int32_t place_over(const void* in, std::int32_t, void* out, std::uint32_t*) {
    constexpr Side to = layout.side;
    auto record = Record<to, layout.bytes_written()>::kept_from(Position<to>{0}, out);
    place<layout>(record, Source < opposite(to), layout.bytes_read() == 0 ? 1 : layout.bytes_read() > {in});
    record.store(out);
    return NPXLATE_OK;
}

// A translator that places one layout over what its output holds, between records that end where the layout ends.
template <const auto& layout>
Translator placing(const std::string& name) {
    return {name, place_over<layout>, layout.bytes_read() == 0 ? 1 : layout.bytes_read(), layout.bytes_written()};
}

void expect_rows(const Translator& translator, const std::vector<std::string>& rows) {
    const Rows expected{rows};
    const support::Model model = [&expected](Bytes& in, Bytes& out) {
        expected.apply(in, out);
        return support::Reply{};
    };
    support::walk(
        translator, model,
        {Bytes(translator.in_size), Bytes(translator.in_size, 0xff), support::counting(translator.in_size, 1)});
    support::check_random(translator, model, 50);
}

template <const auto& layout>
void expect_rows(const std::vector<std::string>& rows) {
    expect_rows(placing<layout>(rows.front()), rows);
}

// Positions that differ from test to test but are the same in every run; known to the compiler.
constexpr unsigned scattered(unsigned test, unsigned which, unsigned below) {
    std::uint64_t z = (std::uint64_t{test} << 8 | which) * 0x9e3779b97f4a7c15 + 0x6a09e667f3bcc909;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return static_cast<unsigned>((z ^ (z >> 31)) % below);
}

std::string byte(char side, unsigned at) { return side + std::to_string(at); }
std::string bit(char side, unsigned at, unsigned bit) { return byte(side, at) + "." + std::to_string(bit); }
std::string bytes(char side, unsigned at, unsigned count) {
    return byte(side, at) + "-" + std::to_string(at + count - 1);
}

constexpr char letter(Side side) { return side == Side::logical ? 'L' : 'P'; }

// One kind of row at a scattered place, written to the given side.
template <Side to, unsigned test>
struct At {
    static constexpr unsigned to_byte = scattered(test, 0, 40);
    static constexpr unsigned from_byte = scattered(test, 1, 40);
    static constexpr unsigned count = 1 + scattered(test, 2, 20);
    static constexpr unsigned to_bit = scattered(test, 3, 8);
    static constexpr unsigned from_bit = scattered(test, 4, 8);
    static constexpr unsigned field_width = 1 + scattered(test, 5, 8);
    static constexpr unsigned to_low = scattered(test, 6, 9 - field_width);
    static constexpr unsigned from_low = scattered(test, 7, 9 - field_width);
    static constexpr unsigned run_width = 1 + scattered(test, 8, 70);

    using To = Position<to>;
    using From = Position<opposite(to)>;

    static constexpr Layout copied_row{"copied", copied(To{to_byte}, From{from_byte}, count)};
    static constexpr Layout swapped_row{"swapped", swapped(To{to_byte}, From{from_byte}, count)};
    static constexpr Layout bit_row{"bit", npxlate::bit(To{to_byte, to_bit}, From{from_byte, from_bit})};
    static constexpr Layout inverted_row{"inverted", inverted(To{to_byte, to_bit}, From{from_byte, from_bit})};
    static constexpr Layout inverted_bits_row{
        "inverted",
        inverted(To{to_byte, to_low + field_width - 1, to_low}, From{from_byte, from_low + field_width - 1, from_low})};
    static constexpr Layout bits_row{"bits", bits(To{to_byte, to_low + field_width - 1, to_low},
                                                  From{from_byte, from_low + field_width - 1, from_low})};
    static constexpr Layout constant_row{
        "constant", constant(To{to_byte, to_low + field_width - 1, to_low}, scattered(test, 9, 1U << field_width))};
    static constexpr Layout cleared_row{"cleared", cleared(To{to_byte}, count)};
    static constexpr Layout run_row{"run", run(To{to_byte, to_bit}, From{from_byte, from_bit}, run_width)};
    static constexpr Layout any_row{"any", any(To{to_byte, to_bit}, npxlate::bytes(From{from_byte}, count))};
    static constexpr Layout none_row{"none",
                                     none(To{to_byte, to_bit}, From{from_byte, from_low + field_width - 1, from_low})};

    static std::string to_field() {
        return bit(letter(to), to_byte, to_low + field_width - 1) + "-" + std::to_string(to_low);
    }
    static std::string from_field() {
        return bit(letter(opposite(to)), from_byte, from_low + field_width - 1) + "-" + std::to_string(from_low);
    }
    static std::string to_bit_text() { return bit(letter(to), to_byte, to_bit); }
    static std::string from_bit_text() { return bit(letter(opposite(to)), from_byte, from_bit); }
    static std::string to_bytes() { return bytes(letter(to), to_byte, count); }
    static std::string from_bytes() { return bytes(letter(opposite(to)), from_byte, count); }

    static void check() {
        expect_rows<copied_row>({(to_bytes() + " = " + from_bytes())});
        expect_rows<swapped_row>({(to_bytes() + " = swap " + from_bytes())});
        expect_rows<bit_row>({(to_bit_text() + " = " + from_bit_text())});
        expect_rows<inverted_row>({(to_bit_text() + " = not " + from_bit_text())});
        expect_rows<inverted_bits_row>({to_field() + " = not " + from_field()});
        expect_rows<bits_row>({(to_field() + " = " + from_field())});
        expect_rows<constant_row>({(to_field() + " = " + std::to_string(scattered(test, 9, 1U << field_width)))});
        expect_rows<cleared_row>({(to_bytes() + " = 0")});
        expect_rows<any_row>({(to_bit_text() + " = any " + from_bytes())});
        expect_rows<none_row>({(to_bit_text() + " = none " + from_field())});
        check_run();
    }

    // A run is as many single bits, each one position further up.
    static void check_run() {
        std::vector<std::string> rows;
        for (unsigned i = 0; i < run_width; ++i) {
            rows.push_back(bit(letter(to), to_byte + (to_bit + i) / 8, (to_bit + i) % 8) + " = " +
                           bit(letter(opposite(to)), from_byte + (from_bit + i) / 8, (from_bit + i) % 8));
        }
        expect_rows<run_row>(rows);
    }
};

template <Side to, unsigned... test>
void check_scattered(std::integer_sequence<unsigned, test...>) {
    (At<to, test>::check(), ...);
}

TEST(Vocabulary, EveryKindOfRowWritesItsPhysicalPositionsAndNoOthers) {
    check_scattered<Side::physical>(std::make_integer_sequence<unsigned, 12>{});
}

TEST(Vocabulary, EveryKindOfRowWritesItsLogicalPositionsAndNoOthers) {
    check_scattered<Side::logical>(std::make_integer_sequence<unsigned, 12>{});
}

// Single bits of a few bytes, each with a way of its own, as the flags of a record are: what multiplications gather.
constexpr std::size_t flag_bytes = 5;
constexpr unsigned flag_count = 18;

struct Flags {
    std::array<std::uint8_t, flag_count> to{};
    std::array<std::uint8_t, flag_count> from{};
};

constexpr Flags scattered_flags(unsigned test) {
    const auto choose = [test](std::array<std::uint8_t, flag_count>& chosen, unsigned which, unsigned bytes) {
        const unsigned count = 8 * bytes;
        std::array<std::uint8_t, 8 * flag_bytes> bits{};
        for (unsigned i = 0; i < count; ++i) {
            bits[i] = static_cast<std::uint8_t>(i);
        }
        for (unsigned i = 0; i < flag_count && i < count; ++i) {
            std::swap(bits[i], bits[i + scattered(test, which + i, count - i)]);
            chosen[i] = bits[i];
        }
    };
    Flags flags;
    choose(flags.to, 0, 3 + test % 3);
    choose(flags.from, 100, 3 + test / 3 % 3);
    return flags;
}

template <Side to, unsigned test>
struct FlagsOf {
    static constexpr Flags flags = scattered_flags(test);

    // A few bytes into the record, and across the end of a word of it.
    template <unsigned i>
    static constexpr Row<to> row() {
        constexpr Position<to> target{6 + flags.to[i] / 8U, flags.to[i] % 8U};
        constexpr Position<opposite(to)> source{3 + flags.from[i] / 8U, flags.from[i] % 8U};
        return i % 5 == 0 ? inverted(target, source) : npxlate::bit(target, source);
    }
    template <unsigned... i>
    static constexpr Layout<to, flag_count> layout_of(std::integer_sequence<unsigned, i...>) {
        return {"flags", std::array<Row<to>, flag_count>{row<i>()...}};
    }
    static constexpr Layout layout = layout_of(std::make_integer_sequence<unsigned, flag_count>{});

    static void check() {
        std::vector<std::string> rows;
        for (unsigned i = 0; i < flag_count; ++i) {
            rows.push_back(bit(letter(to), 6 + flags.to[i] / 8U, flags.to[i] % 8U) + (i % 5 == 0 ? " = not " : " = ") +
                           bit(letter(opposite(to)), 3 + flags.from[i] / 8U, flags.from[i] % 8U));
        }
        expect_rows<layout>(rows);
    }

    // How many multiplications the two words take that the flags stand in.
    static constexpr unsigned multiplications() {
        unsigned result = 0;
        for (const std::size_t index : {0U, 1U}) {
            const plan::Word word = plan::word(layout.cells(), index, layout.bytes_read());
            for (std::size_t i = 0; i < word.term_count; ++i) {
                result += word.terms[i].multiplier != 1 ? 1 : 0;
            }
        }
        return result;
    }
};

template <Side to, unsigned... test>
void check_flags(std::integer_sequence<unsigned, test...>) {
    (FlagsOf<to, test>::check(), ...);
    constexpr unsigned multiplying = (0U + ... + (FlagsOf<to, test>::multiplications() != 0 ? 1 : 0));
    EXPECT_GT(multiplying, sizeof...(test) / 2) << "these layouts are here to be multiplied";
}

TEST(Vocabulary, ScatteredFlagsArriveWhereTheyBelongAndDisturbNothing) {
    check_flags<Side::physical>(std::make_integer_sequence<unsigned, 6>{});
    check_flags<Side::logical>(std::make_integer_sequence<unsigned, 6>{});
}

// Small numbers, so that every choice of the bits taken can be tried.
TEST(Plan, AProductThatKeepsItsBitsDoesSoWhateverTheyAre) {
    unsigned kept = 0;
    unsigned refused = 0;
    for (unsigned test = 0; test < 4000; ++test) {
        const std::uint64_t taken = scattered(test, 1, 1U << 10) & scattered(test, 2, 1U << 10);
        const std::uint64_t multiplier = scattered(test, 3, 1U << 12) & scattered(test, 4, 1U << 12);
        const std::uint64_t wanted = scattered(test, 5, 1U << 20) & scattered(test, 6, 1U << 20);
        // What reaches each place, bit by bit.
        std::array<std::vector<unsigned>, 24> sources;
        for (unsigned shift = 0; shift < 12; ++shift) {
            for (unsigned from = 0; from < 10; ++from) {
                if ((multiplier >> shift & 1) != 0 && (taken >> from & 1) != 0) {
                    sources[from + shift].push_back(from);
                }
            }
        }
        if (!plan::product_keeps(wanted, taken, multiplier)) {
            ++refused;
            continue;
        }
        ++kept;
        for (std::uint64_t value = taken;; value = (value - 1) & taken) {
            for (unsigned at = 0; at < 20; ++at) {
                if ((wanted >> at & 1) != 0) {
                    ASSERT_LE(sources[at].size(), 1U);
                    const std::uint64_t expected = sources[at].empty() ? 0 : value >> sources[at][0] & 1;
                    ASSERT_EQ(value * multiplier >> at & 1, expected) << value << " * " << multiplier << ", bit " << at;
                }
            }
            if (value == 0) {
                break;
            }
        }
    }
    EXPECT_GT(kept, 200U);
    EXPECT_GT(refused, 200U);
}

constexpr Layout label_with_flag_bit{"label", label(P(2), L(5), L(9, 3))};
constexpr Layout label_with_flag_1{"label", label(P(6), L(1), 1)};
constexpr Layout label_with_flag_0{"label", label(P(13), L(0), 0)};
constexpr Layout label_back{"label", label(L(3), P(6))};

TEST(Vocabulary, ALabelFieldHoldsTwentyBitsThreeZeroBitsAndItsFlag) {
    expect_rows<label_with_flag_bit>({"P2-4 = label L5-8 flag L9.3"});
    expect_rows<label_with_flag_0>({"P13-15 = label L0-3 flag 0"});
    expect_rows<label_with_flag_1>({"P6-8 = label L1-4 flag 1"});
}

TEST(Vocabulary, ALabelComesBackAsAThirtyTwoBitValue) { expect_rows<label_back>({"L3-6 = label P6-8"}); }

constexpr Layout label_back_with_flag{"label", label(L(3), P(6), L(7, 2))};

TEST(Vocabulary, ALabelComesBackWithItsFlag) {
    expect_rows<label_back_with_flag>({"L3-6 = label P6-8", "L7.2 = P8.0"});
}

constexpr Layout label_bits_only{"label bits", label_bits(P(2), L(5))};

TEST(Vocabulary, TheBitsOfALabelAloneLeaveTheRestOfTheField) {
    expect_rows<label_bits_only>(
        {"P2.7-4 = L7.3-0", "P2.3-0 = L6.7-4", "P3.7-4 = L6.3-0", "P3.3-0 = L5.7-4", "P4.7-4 = L5.3-0"});
}

constexpr Layout four_labels{"labels", label(P(4), L(8), L(12, 0)).repeated(4, P(3), L(5))};

TEST(Vocabulary, ARowRepeatsAtItsSteps) {
    expect_rows<four_labels>({"P4-6 = label L8-11 flag L12.0", "P7-9 = label L13-16 flag L17.0",
                              "P10-12 = label L18-21 flag L22.0", "P13-15 = label L23-26 flag L27.0"});
}

constexpr Layout labels_back = mirrored("labels back", four_labels);

TEST(Vocabulary, AMirroredLayoutTakesEveryFieldBack) {
    expect_rows<labels_back>({"L8-11 = label P4-6", "L12.0 = P6.0", "L13-16 = label P7-9", "L17.0 = P9.0",
                              "L18-21 = label P10-12", "L22.0 = P12.0", "L23-26 = label P13-15", "L27.0 = P15.0"});
}

constexpr Layout mixed{
    "mixed",
    constant(P(0), 0x91),
    bit(P(1, 3), L(2, 6)),
    inverted(P(1, 4), L(2, 5)),
    any(P(1, 7), L(3)),
    swapped(P(2), L(4), 3),
    copied(P(5), L(9)),
};
constexpr Layout mixed_back = mirrored("mixed back", mixed);

TEST(Vocabulary, ConstantsAndComputedFieldsHaveNoWayBack) {
    expect_rows<mixed_back>({"L2.6 = P1.3", "L2.5 = not P1.4", "L4-6 = swap P2-4", "L9 = P5"});
}

constexpr Layout with_names{
    label(P(4), L(8), L(12, 0)).named("label").repeated(4, P(3), L(5)),
    also(bit(P(1, 3), L(2, 6)).named("flag")),
    copied(P(2), L(1)),
};
constexpr Layout with_names_back = mirrored(with_names);

TEST(Vocabulary, ANameStaysWithItsRowRepeatedCombinedAndMirrored) {
    EXPECT_STREQ(with_names.rows[0].name, "label");
    EXPECT_EQ(with_names.rows[0].count, 4);
    EXPECT_STREQ(with_names.rows[1].name, "flag");
    EXPECT_EQ(with_names.rows[2].name, nullptr);
    EXPECT_STREQ(with_names_back.rows[0].name, "label");
    EXPECT_STREQ(with_names_back.rows[1].name, "flag");
    EXPECT_EQ(with_names_back.rows[2].name, nullptr);
}

TEST(Vocabulary, ALayoutNeedsNoTitle) {
    EXPECT_STREQ(with_names.title, "");
    EXPECT_STREQ(with_names_back.title, "");
}

constexpr Layout titled_back = mirrored(four_labels);

TEST(Vocabulary, AMirroredLayoutHasTheTitleOfItsLayoutUnlessItIsGivenOne) {
    EXPECT_STREQ(titled_back.title, "labels");
    EXPECT_STREQ(labels_back.title, "labels back");
}

// A value least significant byte first; bit 20 of the result has two sources.
constexpr Layout low_bit{"low bit", run(P(3, 0), L(6, 1), 24), also(bit(P(5, 4), L(6, 0)))};

TEST(Vocabulary, TheLowestBitMovesToBitTwenty) {
    const Translator translator = placing<low_bit>("low bit to bit 20");
    const support::Model model = [](Bytes& in, Bytes& out) {
        const std::uint64_t value = support::little(in, 6, 4);
        support::put_little(out, 3, 3, value >> 1 | (value & 1) << 20);
        return support::Reply{};
    };
    support::walk(translator, model, {Bytes(10), Bytes(10, 0xff)});
    support::check_random(translator, model, 200);
}

constexpr Layout combined{
    "combined",
    inverted(P(1, 5), L(0, 4)),
    also(bit(P(1, 5), L(0, 1))),
    any(P(1, 7), L(0, 2, 0)),
    also(inverted(P(1, 7), L(0, 3))),
    copied(P(2), L(1)),
    also(constant(P(2, 4), 1)),
};

TEST(Vocabulary, AlsoRowsAreOredIntoWhatOtherRowsGive) {
    const Translator translator = placing<combined>("combined");
    const support::Model model = [](Bytes& in, Bytes& out) {
        support::set_bit(out, 1, 5, !support::bit(in, 0, 4) || support::bit(in, 0, 1));
        support::set_bit(out, 1, 7, support::bits(in, 0, 2, 0) != 0 || !support::bit(in, 0, 3));
        out[2] = static_cast<std::uint8_t>(in[1] | 0x10);
        return support::Reply{};
    };
    for (unsigned first = 0; first < 256; ++first) {
        support::check(translator, model, {static_cast<std::uint8_t>(first), 0x00});
        support::check(translator, model, {static_cast<std::uint8_t>(first), 0xff});
    }
}

// Fields on both sides of a word of the record, and an index across one.
constexpr Layout computed{
    "computed",
    mapped(P(1, 5, 2), L(3, 7, 4), two_value_code),
    mapped(P(3), L(4), hop_byte),
    mapped(P(9, 7, 6), bytes(L(6), 4), two_value_code),
    virtual_queue_index(P(7), L(11), L(15)),
    virtual_queue_index(P(12), L(11), L(15)),
};

// Values of several bytes, within a word of the record and across two.
constexpr FunctionOfTwo sum{"sum", [](Number a, Number b) -> Number { return a + b; }};
constexpr Layout sums{
    "sums",
    mapped(bytes(P(1), 3), bytes(L(0), 3), L(3, 6, 2), sum),
    mapped(bytes(P(6), 4), bytes(L(4), 4), bytes(L(8), 2), sum),
    mapped(bytes(P(10), 1), L(0), L(1), sum),
};

TEST(Vocabulary, AFunctionOfTwoFieldsGivesBigEndianValues) {
    const Translator translator = placing<sums>("sums");
    const support::Model model = [](Bytes& in, Bytes& out) {
        support::put_big(out, 1, 3, support::little(in, 0, 3) + support::bits(in, 3, 6, 2));
        support::put_big(out, 6, 4, support::little(in, 4, 4) + support::little(in, 8, 2));
        out[10] = static_cast<std::uint8_t>(in[0] + in[1]);
        return support::Reply{};
    };
    support::walk(translator, model, {Bytes(10), Bytes(10, 0xff)});
    support::check_random(translator, model, 500);
}

TEST(Vocabulary, ComputedFieldsTakeTheirFunctionsResult) {
    const Translator translator = placing<computed>("computed");
    const auto code = [](std::uint64_t kind) { return static_cast<unsigned>(kind == 1 || kind == 2 ? kind : 0); };
    const support::Model model = [&](Bytes& in, Bytes& out) {
        support::set_bits(out, 1, 5, 2, code(support::bits(in, 3, 7, 4)));
        out[3] = static_cast<std::uint8_t>(2 * (in[4] > 64 ? 1 : in[4]) + 1);
        support::set_bits(out, 9, 7, 6, code(support::little(in, 6, 4)));
        const std::uint64_t index = support::little(in, 11, 2);
        const std::uint64_t adjusted = in[15] == 4 ? index | 0x800 : in[15] == 8 ? index | 0xc00 : index;
        support::put_big(out, 7, 2, adjusted);
        support::put_big(out, 12, 2, adjusted);
        return support::Reply{};
    };
    for (const unsigned range : {0U, 4U, 8U, 12U, 255U}) {
        support::check_random(translator, model, 100,
                              [range](Bytes& in) { in[15] = static_cast<std::uint8_t>(range); });
    }
    for (const unsigned kind : {0U, 1U, 2U, 3U}) {
        support::check_random(translator, model, 100, [kind](Bytes& in) {
            support::put_little(in, 6, 4, kind);
            support::set_bits(in, 3, 7, 4, kind);
            in[4] = static_cast<std::uint8_t>(63 + kind);
        });
    }
}

TEST(Vocabulary, SourcesReadFieldsInTheirByteOrder) {
    const Bytes record = support::bytes("00 12 34 56 78 9a");
    const LogicalSource<6> in{record.data()};
    EXPECT_EQ(in.byte(L(1)), 0x12);
    EXPECT_EQ(in.little16(L(1)), 0x3412);
    EXPECT_EQ(in.little24(L(1)), 0x563412U);
    EXPECT_EQ(in.little32(L(2)), 0x9a785634U);
    EXPECT_EQ(in.big32(L(2)), 0x3456789aU);
    EXPECT_EQ(in.bits(L(3, 6, 1)), 0x2bU);
    EXPECT_TRUE(in.bit(L(3, 6)));
    EXPECT_FALSE(in.bit(L(3, 7)));
}

TEST(Helpers, TheHopByteIsTwiceTheCountAndOne) {
    EXPECT_EQ(hop_byte.apply(0), 1U);
    EXPECT_EQ(hop_byte.apply(5), 11U);
    EXPECT_EQ(hop_byte.apply(64), 129U);
    EXPECT_EQ(hop_byte.apply(65), 3U);
    EXPECT_EQ(hop_byte.apply(255), 3U);
}

TEST(Helpers, OfAKindOnlyOneAndTwoSurvive) {
    EXPECT_EQ(two_value_code.apply(1), 1U);
    EXPECT_EQ(two_value_code.apply(2), 2U);
    EXPECT_EQ(two_value_code.apply(0), 0U);
    EXPECT_EQ(two_value_code.apply(3), 0U);
    EXPECT_EQ(two_value_code.apply(static_cast<std::uint32_t>(-1)), 0U);
    EXPECT_EQ(two_value_code.apply(0x101), 0U);
}

TEST(Helpers, AReversedCopyTurnsTheBytesRound) {
    const std::array<std::uint8_t, 4> from{1, 2, 3, 4};
    std::array<std::uint8_t, 4> to{};
    reverse_byte_copy(to.data(), from.data(), 0, 3);
    EXPECT_EQ(to, (std::array<std::uint8_t, 4>{3, 2, 1, 0}));
    reverse_byte_copy(to.data(), from.data(), 0, 0);
    reverse_byte_copy(to.data(), from.data(), 0, -4);
    EXPECT_EQ(to, (std::array<std::uint8_t, 4>{3, 2, 1, 0}));
}

}  // namespace
