// The bridge-domain entry: its key, its result and a way back that mirrors it only in part.
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(bridge_domain_type_xlate_key, 2, 3);
const Translator result = FORWARD(bridge_domain_type_xlate_result, 101, 32);
const Translator reverse_result = REVERSE(bridge_domain_type_logical_xlate_result, 32, 120);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-2 = 0",
        "P0 = L0",
        "P1 = L1",
        "P2 = 0",
    };
    rows.apply(in, out);
    return {.length = 3};
}

const Rows fields{
    "P0-31 = 0",    "P0 = 0x11",         "P0.7 = L0.4",  "P0.6 = L2.0",      "P0.5 = L0.2",  "P1.7 = L2.6",
    "P1.6 = L0.5",  "P1.5 = L3.1",       "P1.4 = L0.6",  "P1.3 = L4.3",      "P1.2 = L4.0",  "P1.1 = L3.0",
    "P1.0 = L2.7",  "P2.7 = L0.0",       "P2.6 = L2.2",  "P2.5 = L2.3",      "P2.4 = L1.1",  "P2.3 = L4.1",
    "P2.2 = L4.6",  "P2.1 = L2.5",       "P2.0 = L4.2",  "P3.7-1 = L48.6-0", "P3.0 = 0",     "P4-6 = L32-34",
    "P7 = L8",      "P8-9 = L36-37",     "P10.7 = L3.4", "P10.6 = L3.5",     "P10.5 = L3.6", "P10.4 = L1.2",
    "P10.3 = L1.0", "P10.2-0 = L38.2-0",
};
const Rows chosen_by_l0_3{"P11-13 = L68-70"};
const Rows chosen_by_l2_1{"P11-13 = L56-58"};
const Rows together_with_l2_1{"P14 = L52", "P15 = L53", "P16 = 0"};
const Rows two_nine_bit_values{
    "P17 = L76",     "P18.0 = L77.0", "P18.7-1 = L78.6-0",
    "P19.0 = L78.7",  // bits 8..7 of the second value
    "P19.1 = L79.0", "P19.7 = L3.2",
};
const Rows one_value{"P17-19 = L72-74"};
const Rows last_fields{"P20-22 = L20-22", "P23-25 = L24-26", "P26-28 = L28-30", "P29 = L100"};

Reply result_model(Bytes& in, Bytes& out) {
    fields.apply(in, out);
    if (bit(in, 0, 3)) {
        chosen_by_l0_3.apply(in, out);
    } else if (bit(in, 2, 1)) {
        chosen_by_l2_1.apply(in, out);
    } else if (bit(in, 4, 0)) {
        put_little(out, 11, 3, std::uint64_t{in[87]} << 20 | little(in, 83, 4));
    }
    if (bit(in, 2, 1)) {
        together_with_l2_1.apply(in, out);
    }
    if (bit(in, 3, 1)) {
        two_nine_bit_values.apply(in, out);
    } else if (bit(out, 1, 1) || bit(out, 1, 0)) {
        one_value.apply(in, out);
    }
    last_fields.apply(in, out);
    return {.length = 32};
}

const Rows fields_back{
    "L0-119 = 0",
    // flags
    "L0.0 = P2.7",
    "L0.2 = P0.5",
    "L0.4 = P0.7",
    "L0.5 = P1.6",
    "L0.6 = P1.4",
    "L1.0 = P10.3",
    "L1.1 = P2.4",
    "L1.2 = P10.4",
    "L2.2 = P2.6",
    "L2.3 = P2.5",
    "L2.5 = P2.1",
    "L2.6 = P1.7",
    "L2.7 = P1.0",
    "L3.0 = P1.1",
    "L3.1 = P1.5",
    "L3.4 = P10.7",
    "L3.5 = P10.6",
    "L3.6 = P10.5",
    "L4.0 = P1.2",
    "L4.1 = P2.3",
    "L4.2 = P2.0",
    "L4.3 = P1.3",
    "L4.6 = P2.2",
    // values
    "L8 = P7",
    "L32-34 = P4-6",
    "L36-37 = P8-9",
    "L38.2-0 = P10.2-0",
    "L20-22 = P20-22",
    "L24-26 = P23-25",
    "L28-30 = P26-28",
    "L48.6-0 = P3.7-1",
    "L100 = P29",
};
const Rows of_code_3_back{"L68-70 = P11-13"};
const Rows of_code_1_back{"L56-58 = P11-13", "L52-54 = P14-16"};
const Rows one_value_back{"L72-74 = P17-19"};

Reply reverse_model(Bytes& in, Bytes& out) {
    fields_back.apply(in, out);
    const unsigned code = bits(in, 0, 6, 5);
    set_bit(out, 0, 1, bit(in, 0, 6));
    set_bit(out, 2, 0, code == 0b11);
    set_bit(out, 2, 1, code == 0b01);
    if (code == 0b11) {
        of_code_3_back.apply(in, out);
    } else if (code == 0b01) {
        of_code_1_back.apply(in, out);
    }
    if (bit(in, 1, 2)) {
        const std::uint64_t value = little(in, 11, 3) & 0xfffff;
        put_little(out, 83, 4, value >> 1);
        out[87] = static_cast<std::uint8_t>(value & 1);
    }
    if (bit(in, 1, 5)) {
        const std::uint64_t values = little(in, 17, 3);
        put_little(out, 76, 2, values & 0x1ff);
        put_little(out, 78, 2, values >> 9 & 0x1ff);
        set_bit(out, 3, 2, false);
    } else if (bit(in, 1, 1) || bit(in, 1, 0)) {
        one_value_back.apply(in, out);
    }
    return {};
}

// The flags that choose what stands in P11-19: L0.3, L2.1, L4.0, L3.1, L3.0, L2.7.
void choose(Bytes& in, unsigned choice) {
    set_bit(in, 0, 3, (choice & 1) != 0);
    set_bit(in, 2, 1, (choice & 2) != 0);
    set_bit(in, 4, 0, (choice & 4) != 0);
    set_bit(in, 3, 1, (choice & 8) != 0);
    set_bit(in, 3, 0, (choice & 16) != 0);
    set_bit(in, 2, 7, (choice & 32) != 0);
}

// The bits that choose what is read from P11-19: P0.6, P0.5, P1.2, P1.5, P1.1, P1.0.
void choose_back(Bytes& in, unsigned choice) {
    set_bits(in, 0, 6, 5, choice & 3);
    set_bit(in, 1, 2, (choice & 4) != 0);
    set_bit(in, 1, 5, (choice & 8) != 0);
    set_bits(in, 1, 1, 0, choice >> 4 & 3);
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

// ---------------------------------------------------------------------------------------------------------------------
// Key

TEST(BridgeDomainKey, IsTheNumberLowOrderByteFirstAndAZero) {
    walk(key, key_model, patterns(2));
    check_random(key, key_model);
    const Outcome outcome = translate(key, bytes("34 12"), Bytes(3, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "34 12 00");
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

TEST(BridgeDomainResult, CarriesWhatItsFlagsChooseAndNothingElse) {
    walk(result, result_model, patterns(101));
    for (unsigned choice = 0; choice < 64; ++choice) {
        Bytes base = counting(101, 0x81);
        choose(base, choice);
        walk(result, result_model, base);
    }
}

TEST(BridgeDomainResult, CarriesRandomRecords) { check_random(result, result_model, 4000); }

TEST(BridgeDomainResult, OfZerosIsTheHeader) {
    const Outcome outcome = translate(result, Bytes(101), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(BridgeDomainResult, OfACountingRecordIsThis) {
    // Flags L1.0, L2.1, L3.0, L3.1 and L4.2.
    EXPECT_EQ(hex(translate(result, counting(101)).out),
              "11 22 01 60 20 21 22 08 24 25 0e 38 39 3a 34 35 00 4c 9d 02 14 15 16 18 19 1a 1c 1d 1e 64 00 00");
}

TEST(BridgeDomainResult, PutsEachFlagInItsPlace) {
    for (const auto& [flag, place] : std::initializer_list<std::pair<const char*, const char*>>{
             {"L0.4", "P0.7"},  {"L2.0", "P0.6"},  {"L0.2", "P0.5"},  {"L2.6", "P1.7"},  {"L0.5", "P1.6"},
             {"L3.1", "P1.5"},  {"L0.6", "P1.4"},  {"L4.3", "P1.3"},  {"L4.0", "P1.2"},  {"L3.0", "P1.1"},
             {"L2.7", "P1.0"},  {"L0.0", "P2.7"},  {"L2.2", "P2.6"},  {"L2.3", "P2.5"},  {"L1.1", "P2.4"},
             {"L4.1", "P2.3"},  {"L4.6", "P2.2"},  {"L2.5", "P2.1"},  {"L4.2", "P2.0"},  {"L3.4", "P10.7"},
             {"L3.5", "P10.6"}, {"L3.6", "P10.5"}, {"L1.2", "P10.4"}, {"L1.0", "P10.3"},
         }) {
        EXPECT_EQ(changes(result, Bytes(101), flag), place) << flag;
    }
}

TEST(BridgeDomainResult, DoesNotCarryTheOtherFlagsNorTheTopsOfItsFields) {
    // Without a choice nothing is read from L52-79 and L83-87 either.
    expect_not_carried(result, Bytes(101),
                       {"L0.1", "L0.3",  "L0.7", "L1.7-3", "L2.1", "L2.4", "L3.3-2",  "L3.7",   "L4.5-4", "L4.7",
                        "L5-7", "L9-19", "L23",  "L27",    "L31",  "L35",  "L38.7-3", "L39-47", "L48.7",  "L49-99"});
}

TEST(BridgeDomainResult, TakesP11To13FromTheFirstChoiceThatHolds) {
    struct Case {
        unsigned choice;  // L0.3, L2.1, L4.0
        const char* p11_to_16;
    };
    for (const Case& c : {
             Case{0, "00 00 00 00 00 00"},
             Case{1, "44 45 46 00 00 00"},
             Case{2, "38 39 3a 34 35 00"},
             Case{3, "44 45 46 34 35 00"},
             Case{4, "53 54 75 00 00 00"},
             Case{5, "44 45 46 00 00 00"},
             Case{6, "38 39 3a 34 35 00"},
             Case{7, "44 45 46 34 35 00"},
         }) {
        Bytes in = counting(101);
        in[87] = 0x02;
        in[85] = 0x55;
        choose(in, c.choice);
        EXPECT_EQ(hex(slice(translate(result, in).out, 11, 16)), c.p11_to_16) << c.choice;
    }
}

TEST(BridgeDomainResult, PutsL87AtBit20OfTheValueOfL4_0) {
    Bytes in = with(Bytes(101), {{83, "11 22 33 44 0f"}});
    set_bit(in, 4, 0);
    EXPECT_EQ(hex(slice(translate(result, in).out, 11, 13)), "11 22 f3");
    expect_not_carried(result, in, {"L86", "L87.7-4"});
    EXPECT_EQ(changes(result, in, "L85.7"), "");  // ORed: L87 has set this bit already
    in[87] = 0;
    EXPECT_EQ(changes(result, in, "L85.7"), "P13.7");
    EXPECT_EQ(changes(result, in, "L87.0"), "");  // ORed: so has L85 this one
    EXPECT_EQ(changes(result, in, "L87.3"), "P13.7");
}

TEST(BridgeDomainResult, TakesP17To19FromTheFirstChoiceThatHolds) {
    struct Case {
        const char* flags;  // L2-3
        const char* p17_to_19;
    };
    for (const Case& c : {
             Case{"00 00", "00 00 00"},
             Case{"00 01", "48 49 4a"},
             Case{"80 00", "48 49 4a"},
             Case{"80 01", "48 49 4a"},
             Case{"00 02", "4c 9d 02"},
             Case{"80 03", "4c 9d 02"},
             Case{"00 06", "4c 9d 82"},
             Case{"00 05", "48 49 4a"},
         }) {
        EXPECT_EQ(hex(slice(translate(result, with(counting(101), {{2, c.flags}})).out, 17, 19)), c.p17_to_19)
            << c.flags;
    }
}

TEST(BridgeDomainResult, PacksTwoNineBitValuesLeastSignificantFirst) {
    Bytes in(101);
    set_bit(in, 3, 1);
    for (const auto& [bit_in, bit_out] : std::initializer_list<std::pair<const char*, const char*>>{
             {"L76.0", "P17.0"},
             {"L76.7", "P17.7"},
             {"L77.0", "P18.0"},
             {"L77.1", ""},
             {"L77.7", ""},
             {"L78.0", "P18.1"},
             {"L78.6", "P18.7"},
             {"L78.7", "P19.0"},
             {"L79.0", "P19.1"},
             {"L79.1", ""},
             {"L79.7", ""},
             {"L3.2", "P19.7"},
             {"L72.0", ""},
             {"L3.0", "P1.1"},
         }) {
        EXPECT_EQ(changes(result, in, bit_in), bit_out) << bit_in;
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

TEST(BridgeDomainReverse, RestoresWhatItsBitsChooseAndNothingElse) {
    walk(reverse_result, reverse_model, patterns(32));
    for (unsigned choice = 0; choice < 64; ++choice) {
        for (Bytes base : {counting(32, 0x91), Bytes(32, 0xff), Bytes(32)}) {
            choose_back(base, choice);
            walk(reverse_result, reverse_model, base);
        }
    }
}

TEST(BridgeDomainReverse, RestoresRandomRecords) { check_random(reverse_result, reverse_model, 4000); }

TEST(BridgeDomainReverse, ReadsP0_6To5AsACode) {
    struct Case {
        const char* header;
        Bytes expected;
    };
    for (const Case& c : {
             Case{"11", Bytes(120)},
             Case{"31", with(Bytes(120), {{0, "04"}, {2, "02"}, {52, "11 22 33 00"}, {56, "aa bb cc 00"}})},
             Case{"51", with(Bytes(120), {{0, "02"}})},
             Case{"71", with(Bytes(120), {{0, "06"}, {2, "01"}, {68, "aa bb cc 00"}})},
         }) {
        const Bytes in = with(Bytes(32), {{0, c.header}, {11, "aa bb cc 11 22 33"}});
        const Outcome outcome = translate(reverse_result, in, Bytes(120, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, std::nullopt);
        EXPECT_EQ(hex(outcome.out), hex(c.expected)) << c.header;
    }
}

TEST(BridgeDomainReverse, SplitsTheValueOfP1_2AtItsLowestBit) {
    const Bytes in = with(Bytes(32), {{0, "11 04"}, {11, "11 22 f3"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out), hex(with(Bytes(120), {{4, "01"}, {83, "08 91 01 00 01"}})));
    const Bytes ones = with(Bytes(32), {{0, "11 04"}, {11, "fe ff ff"}});
    EXPECT_EQ(hex(translate(reverse_result, ones).out), hex(with(Bytes(120), {{4, "01"}, {83, "ff ff 07 00 00"}})));
}

TEST(BridgeDomainReverse, ReadsP11To13BothWaysWhereBothAreChosen) {
    const Bytes in = with(Bytes(32), {{0, "71 04"}, {11, "11 22 33"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out),
              hex(with(Bytes(120), {{0, "06"}, {2, "01"}, {4, "01"}, {68, "11 22 33"}, {83, "08 91 01 00 01"}})));
}

TEST(BridgeDomainReverse, ReadsP17To19FromTheFirstChoiceThatHolds) {
    const auto flags_and_values = [](const char* p1) {
        const Bytes in = with(Bytes(32), {{0, "11"}, {1, p1}, {17, "4c 9d fe"}});
        return hex(translate(reverse_result, in).out);
    };
    EXPECT_EQ(flags_and_values("00"), hex(Bytes(120)));
    EXPECT_EQ(flags_and_values("20"), hex(with(Bytes(120), {{3, "02"}, {76, "4c 01 4e 01"}})));
    EXPECT_EQ(flags_and_values("23"), hex(with(Bytes(120), {{2, "80 03"}, {76, "4c 01 4e 01"}})));
    EXPECT_EQ(flags_and_values("02"), hex(with(Bytes(120), {{3, "01"}, {72, "4c 9d fe 00"}})));
    EXPECT_EQ(flags_and_values("01"), hex(with(Bytes(120), {{2, "80"}, {72, "4c 9d fe 00"}})));
}

TEST(BridgeDomainReverse, RestoresTheValuesThatEveryEntryHas) {
    const Bytes in =
        with(Bytes(32), {{0, "11 00 00 ff 20 21 22 08 24 25 07"}, {20, "14 15 16 18 19 1a 1c 1d 1e 64 ff ff"}});
    EXPECT_EQ(hex(translate(reverse_result, in, Bytes(120, 0xff)).out), hex(with(Bytes(120), {{8, "08"},
                                                                                              {20, "14 15 16"},
                                                                                              {24, "18 19 1a"},
                                                                                              {28, "1c 1d 1e"},
                                                                                              {32, "20 21 22"},
                                                                                              {36, "24 25 07"},
                                                                                              {48, "7f"},
                                                                                              {100, "64"}})));
}

TEST(BridgeDomainReverse, DoesNotReadWhatNoFieldComesFrom) {
    expect_not_carried(reverse_result, with(Bytes(32), {{0, "11"}}),
                       {"P0.4-0", "P3.0", "P11-13", "P14-16", "P17-19", "P30-31"});
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

Bytes there_and_back(const Bytes& in) { return translate(reverse_result, translate(result, in).out).out; }

TEST(BridgeDomain, OfACountingRecordComesBackWithoutTheFieldsOfL2_1) {
    EXPECT_EQ(hex(there_and_back(counting(101))), hex(with(Bytes(120), {{0, "00 01 00 03 04"},
                                                                        {8, "08"},
                                                                        {20, "14 15 16"},
                                                                        {24, "18 19 1a"},
                                                                        {28, "1c 1d 1e"},
                                                                        {32, "20 21 22"},
                                                                        {36, "24 25 06"},
                                                                        {48, "30"},
                                                                        {76, "4c 01 4e 01"},
                                                                        {100, "64"}})));
}

TEST(BridgeDomain, ComesBackWithoutL0_3) {
    Bytes in = with(Bytes(101), {{0, "08"}, {68, "44 45 46"}});
    EXPECT_EQ(hex(there_and_back(in)), hex(Bytes(120)));
    in[0] = 0x0c;  // with L0.2 the value comes back, in the place of L2.1
    EXPECT_EQ(hex(there_and_back(in)), hex(with(Bytes(120), {{0, "04"}, {2, "02"}, {56, "44 45 46"}})));
}

TEST(BridgeDomain, ComesBackWithL2_0InL0_1) {
    EXPECT_EQ(hex(there_and_back(with(Bytes(101), {{2, "01"}}))), hex(with(Bytes(120), {{0, "02"}})));
    EXPECT_EQ(hex(there_and_back(with(Bytes(101), {{0, "02"}}))), hex(Bytes(120)));
}

TEST(BridgeDomain, ComesBackWithL2_0AndL2_1AsTheCodeSays) {
    // Both flags that the code is made of: L2.0 comes back.
    EXPECT_EQ(hex(there_and_back(with(Bytes(101), {{0, "04"}, {2, "01"}}))),
              hex(with(Bytes(120), {{0, "06"}, {2, "01"}})));
    // L0.2 alone: L2.1 comes back though it was not sent.
    EXPECT_EQ(hex(there_and_back(with(Bytes(101), {{0, "04"}}))), hex(with(Bytes(120), {{0, "04"}, {2, "02"}})));
    // L2.1 alone: it is lost, and its fields with it.
    EXPECT_EQ(hex(there_and_back(with(Bytes(101), {{2, "02"}, {52, "34 35"}, {56, "38 39 3a"}}))), hex(Bytes(120)));
}

TEST(BridgeDomain, ComesBackWithL52To55OnlyWhereTheCodeIs1) {
    const Bytes sent = with(Bytes(101), {{2, "02"}, {52, "34 35 36 37"}, {56, "38 39 3a"}});
    Bytes in = sent;
    in[0] = 0x04;
    EXPECT_EQ(hex(there_and_back(in)),
              hex(with(Bytes(120), {{0, "04"}, {2, "02"}, {52, "34 35 00 00"}, {56, "38 39 3a"}})));
    in[2] = 0x03;
    EXPECT_EQ(hex(there_and_back(in)), hex(with(Bytes(120), {{0, "06"}, {2, "01"}, {68, "38 39 3a"}})));
}

TEST(BridgeDomain, ComesBackWithTheValueOfL4_0Shifted) {
    const Bytes in = with(Bytes(101), {{4, "01"}, {83, "11 22 33 44 0f"}});
    EXPECT_EQ(hex(there_and_back(in)), hex(with(Bytes(120), {{4, "01"}, {83, "08 91 01 00 01"}})));
}

TEST(BridgeDomain, ComesBackWithoutL3_2) {
    const Bytes in = with(Bytes(101), {{3, "06"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(out[19], 0x80);
    EXPECT_EQ(hex(translate(reverse_result, out, Bytes(120, 0xff)).out), hex(with(Bytes(120), {{3, "02"}})));
}

TEST(BridgeDomain, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(BridgeDomain, IsTable75) {
    EXPECT_EQ(l2p_ucode_func_table[75].key, &bridge_domain_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[75].result, &bridge_domain_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[75], &bridge_domain_type_logical_xlate_result);
}

}  // namespace
