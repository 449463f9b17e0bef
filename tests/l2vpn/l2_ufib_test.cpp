// The layer-2 unicast forwarding entry: a MAC address and where its frames go, in one of several forms.
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(l2_ufib_type_xlate_key, 14, 9);
const Translator result = FORWARD(l2_ufib_type_xlate_result, 72, 32);
const Translator reverse_result = REVERSE(l2_ufib_type_logical_xlate_result, 32, 72);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-8 = 0", "P0-5 = L8-13", "P6-7 = L4-5", "P8.7-6 = L6.7-6",  // the mask 0xC0FFFF
    };
    rows.apply(in, out);
    return {.length = 9};
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

const Rows destination{"P12-15 = L4-7", "P0.7 = L7.5", "P0.6 = L7.6"};
const Rows header{"P0.4 = 1", "P0.0 = 1", "P0.5 = L0.5"};
const Rows flags{
    "P1.7 = 0",    "P1.6 = L0.3", "P1.5 = L0.6", "P1.4 = L0.4",   "P1.3 = L0.0",    "P1.2 = L3.1",       "P1.1 = L2.7",
    "P2.7 = L2.4", "P2.6 = L3.1", "P2.5 = L2.5", "P2.4 = L0.1",   "P2.3 = L0.2",    "P2.1 = L0.7",       "P2.0 = L1.0",
    "P3.3 = L2.3", "P11 = L16",   "P7 = L20",    "P4-6 = L28-30", "P8-10 = L32-34", "P23.7-1 = L71.6-0", "P24 = L60",
};
const Rows variant_1{"P3.6 = L1.2", "P20-21 = L68-69"};
const Rows variant_1_value{"P16-19 = L64-67"};
const Rows variant_1_marked{"P0.6 = 0", "P16-17 = L52-53", "P18.3-0 = L54.3-0", "P18.4 = 1"};
const Rows variant_2{"P16-21 = L36-41", "P25 = L42"};
const Rows variant_3{"P12-15 = 0"};
const Rows variant_3_value{"P16-17 = L44-45", "P18.3-0 = L46.3-0"};
const Rows variant_4{"P16-17 = L48-49"};
const Rows variant_4_with_l2_6{"P1.0 = 1", "P0.7 = 1"};
const Rows variant_4_without_l2_6{"P25 = L42"};
const Rows variant_4_value{"P18-19 = L52-53", "P20.3-0 = L54.3-0", "P21.0 = 1"};
const Rows variant_4_label{"P18-20 = label L52-55 flag 1"};
const Rows tail_flags{
    "P3.7 = L1.1",     "P3.5 = L3.4",  "P3.4 = L2.0",  "P3.2 = L1.5",
    "P3.1-0 = L1.7-6", "P26.4 = L2.2", "P26.3 = L2.1", "P26.2-0 = L3.7-5",
};

Reply result_model(Bytes& in, Bytes& out) {
    fill(out, 0, 31);
    if (bit(in, 0, 7)) {
        put_little(out, 12, 4, little(in, 8, 4) >> 1);
    } else {
        destination.apply(in, out);
    }
    header.apply(in, out);
    flags.apply(in, out);
    set_bit(out, 2, 2, bit(in, 0, 1) || (bit(in, 0, 0) && !bit(in, 0, 2)));

    if (bit(in, 1, 0)) {
        variant_1.apply(in, out);
        (bit(in, 3, 1) ? variant_1_marked : variant_1_value).apply(in, out);
    } else if (bit(in, 0, 0)) {
        variant_2.apply(in, out);
    } else if (bit(in, 0, 1) && bit(in, 0, 2)) {
        variant_3.apply(in, out);
        if (bit(in, 0, 6)) {
            variant_3_value.apply(in, out);
        }
    } else if (bit(in, 0, 2)) {
        variant_4.apply(in, out);
        (bit(in, 2, 6) ? variant_4_with_l2_6 : variant_4_without_l2_6).apply(in, out);
        (bit(in, 2, 7) ? variant_4_value : variant_4_label).apply(in, out);
    }
    tail_flags.apply(in, out);
    return {.length = 32};
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

const Rows destination_back{"L4-7 = P12-15"};
const Rows flags_back{
    "L0.0 = P1.3", "L0.1 = P2.4", "L0.3 = P1.6", "L0.4 = P1.4", "L0.5 = P0.5", "L0.6 = P1.5",
    "L0.7 = P2.1", "L2.5 = P2.5", "L2.7 = P1.1", "L1.1 = P3.7", "L3.4 = P3.5",
};
const Rows l0_2_back{"L0.2 = P2.3", "L2.2 = P26.4"};
const Rows variant_3_back{"L44-46 = P16-18"};
const Rows variant_4_back{"L2.4 = P2.7", "L2.6 = P1.0", "L42 = P25", "L48-49 = P16-17"};
const Rows variant_4_value_back{"L52-53 = P18-19", "L54.3-0 = P20.3-0", "L2.7 = 1"};
const Rows variant_4_label_back{"L52-55 = label P18-20"};
const Rows values_back{"L16 = P11", "L20 = P7", "L28-30 = P4-6", "L32-34 = P8-10", "L60 = P24"};
const Rows variant_2_back{"L36-41 = P16-21", "L42 = P25"};
const Rows variant_1_back{"L1.0 = P2.0", "L1.2 = P3.6", "L68-69 = P20-21"};
const Rows variant_1_value_back{"L64-67 = P16-19"};

Reply reverse_model(Bytes& in, Bytes& out) {
    fill(out, 0, 71);
    if (bit(in, 2, 1)) {
        put_little(out, 8, 4, little(in, 12, 4) << 1);
    } else {
        destination_back.apply(in, out);
    }
    flags_back.apply(in, out);
    if (bit(in, 2, 3)) {
        l0_2_back.apply(in, out);
        if (bit(in, 2, 4) && bit(in, 1, 5)) {
            variant_3_back.apply(in, out);
        } else {
            variant_4_back.apply(in, out);
            (bit(in, 21, 0) ? variant_4_value_back : variant_4_label_back).apply(in, out);
        }
    }
    values_back.apply(in, out);
    if (bit(in, 1, 3)) {
        variant_2_back.apply(in, out);
    }
    if (bit(in, 2, 0)) {
        variant_1_back.apply(in, out);
        if (bit(in, 1, 2)) {
            set_bit(out, 3, 1);
            put_little(out, 52, 4, little(in, 16, 3) & 0xfffff);
        } else {
            variant_1_value_back.apply(in, out);
        }
    }
    return {};
}

// ---------------------------------------------------------------------------------------------------------------------
// Records

// The flags that choose the layout: L0.7, L1.0, L0.2-0, L3.1, L0.6, L2.7-6.
constexpr unsigned choices = 512;
void choose(Bytes& in, unsigned choice) {
    set_bits(in, 0, 2, 0, choice & 7);
    set_bit(in, 1, 0, (choice & 8) != 0);
    set_bit(in, 3, 1, (choice & 16) != 0);
    set_bit(in, 0, 6, (choice & 32) != 0);
    set_bits(in, 2, 7, 6, choice >> 6 & 3);
    set_bit(in, 0, 7, (choice & 256) != 0);
}

// The bits that choose what is read back: P2.4-3, P1.5, P1.3-2, P2.1-0, P21.0.
constexpr unsigned choices_back = 256;
void choose_back(Bytes& in, unsigned choice) {
    set_bits(in, 2, 4, 3, choice & 3);
    set_bit(in, 1, 5, (choice & 4) != 0);
    set_bits(in, 1, 3, 2, choice >> 3 & 3);
    set_bits(in, 2, 1, 0, choice >> 5 & 3);
    set_bit(in, 21, 0, (choice & 128) != 0);
}

// A counting record with flags of its own in L0-3.
Bytes entry(const char* flags_in_hex) { return with(counting(72), {{0, flags_in_hex}}); }

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

// ---------------------------------------------------------------------------------------------------------------------
// Key

TEST(L2UfibKey, CarriesItsFieldsAndNothingElse) {
    walk(key, key_model, patterns(14));
    check_random(key, key_model);
}

TEST(L2UfibKey, IsTheMacAddressAndTheMaskedQualifier) {
    const Outcome outcome = translate(key, bytes("00 01 02 03 34 12 80 7f 00 11 22 33 44 55"), Bytes(9, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 9U);
    EXPECT_EQ(hex(outcome.out), "00 11 22 33 44 55 34 12 80");
}

TEST(L2UfibKey, KeepsTheBitsOfTheMaskOnly) {
    EXPECT_EQ(hex(translate(key, with(Bytes(14), {{4, "ff ff ff ff"}})).out), "00 00 00 00 00 00 ff ff c0");
    expect_not_carried(key, Bytes(14), {"L0-3", "L6.5-0", "L7"});
    EXPECT_EQ(changes(key, Bytes(14), "L6.6"), "P8.6");
    EXPECT_EQ(changes(key, Bytes(14), "L6.7"), "P8.7");
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

TEST(L2UfibResult, CarriesTheFieldsOfItsVariantAndNothingElse) {
    walk(result, result_model, patterns(72));
    // Every combination of the flags that choose; the bits of every layout are walked over in 128 of them.
    for (unsigned choice = 0; choice < choices; ++choice) {
        for (Bytes base : patterns(72)) {
            choose(base, choice);
            check(result, result_model, base);
        }
    }
    for (unsigned choice = 0; choice < choices; choice += 4) {
        Bytes base = counting(72, 0x95);
        choose(base, choice + choice / 4 % 4);
        walk(result, result_model, base);
    }
}

TEST(L2UfibResult, CarriesRandomRecordsOfEveryVariant) {
    check_random(result, result_model, 5000);
    for (unsigned choice = 0; choice < choices; ++choice) {
        check_random(result, result_model, 20, [choice](Bytes& in) { choose(in, choice); });
    }
}

TEST(L2UfibResult, OfZerosIsTheHeader) {
    const Outcome outcome = translate(result, Bytes(72), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2UfibResult, OfACountingRecordIsThisForEachVariant) {
    struct Case {
        const char* flags;
        const char* head;    // P0-3
        const char* middle;  // P12-21
        const char* p25;
    };
    for (const Case& c : {
             Case{"00 00 00 00", "11 00 00 00", "04 05 06 07 00 00 00 00 00 00", "00"},
             // The other destination, halved.
             Case{"80 00 00 00", "11 00 02 00", "84 04 85 05 00 00 00 00 00 00", "00"},
             // Variant 1, without and with the marker bit.
             Case{"00 05 00 00", "11 00 01 40", "04 05 06 07 40 41 42 43 44 45", "00"},
             Case{"00 05 00 02", "11 04 41 40", "04 05 06 07 34 35 16 00 44 45", "00"},
             // Variant 2.
             Case{"01 00 00 00", "11 08 04 00", "04 05 06 07 24 25 26 27 28 29", "2a"},
             // Variant 3, without and with its value.
             Case{"06 00 00 00", "11 00 1c 00", "00 00 00 00 00 00 00 00 00 00", "00"},
             Case{"46 00 00 00", "11 20 1c 00", "00 00 00 00 2c 2d 0e 00 00 00", "00"},
             // Variant 4 with a label and with a value.
             Case{"04 00 00 00", "11 00 08 00", "04 05 06 07 30 31 63 53 41 00", "2a"},
             Case{"04 00 80 00", "11 02 08 00", "04 05 06 07 30 31 34 35 06 01", "2a"},
             Case{"04 00 40 00", "91 01 08 00", "04 05 06 07 30 31 63 53 41 00", "00"},
             Case{"04 00 c0 00", "91 03 08 00", "04 05 06 07 30 31 34 35 06 01", "00"},
             // L0.1 alone is no variant.
             Case{"02 00 00 00", "11 00 14 00", "04 05 06 07 00 00 00 00 00 00", "00"},
         }) {
        const Outcome outcome = translate(result, entry(c.flags));
        EXPECT_EQ(outcome.status, 0) << c.flags;
        EXPECT_EQ(outcome.length, 32U) << c.flags;
        EXPECT_EQ(hex(outcome.out),
                  hex(with(Bytes(32),
                           {{0, c.head}, {4, "1c 1d 1e 14 20 21 22 10"}, {12, c.middle}, {23, "8e 3c"}, {25, c.p25}})))
            << c.flags;
    }
}

TEST(L2UfibResult, TakesTheFirstVariantThatHolds) {
    struct Case {
        const char* flags;
        const char* middle;  // P12-21
        unsigned p25;
    };
    for (const Case& c : {
             Case{"07 01 00 00", "04 05 06 07 40 41 42 43 44 45", 0x00},  // 1 before 2, 3 and 4
             Case{"06 01 00 00", "04 05 06 07 40 41 42 43 44 45", 0x00},  // 1 before 3
             Case{"04 01 00 00", "04 05 06 07 40 41 42 43 44 45", 0x00},  // 1 before 4
             Case{"07 00 00 00", "04 05 06 07 24 25 26 27 28 29", 0x2a},  // 2 before 3
             Case{"05 00 00 00", "04 05 06 07 24 25 26 27 28 29", 0x2a},  // 2 before 4
             Case{"47 00 c0 00", "04 05 06 07 24 25 26 27 28 29", 0x2a},
             Case{"06 00 00 00", "00 00 00 00 00 00 00 00 00 00", 0x00},  // 3 before 4
         }) {
        const Bytes out = translate(result, entry(c.flags)).out;
        EXPECT_EQ(hex(slice(out, 12, 21)), c.middle) << c.flags;
        EXPECT_EQ(out[25], c.p25) << c.flags;
    }
}

TEST(L2UfibResult, MarksTwoBitsOfTheDestinationInItsHeader) {
    const Bytes out = translate(result, with(Bytes(72), {{4, "00 00 00 60"}})).out;
    EXPECT_EQ(out[0], 0xd1);
    EXPECT_EQ(hex(slice(out, 12, 15)), "00 00 00 60");
    EXPECT_EQ(changes(result, Bytes(72), "L7.5"), "P0.7 P15.5");
    EXPECT_EQ(changes(result, Bytes(72), "L7.6"), "P0.6 P15.6");
    // Not of the other destination, and not where that one is chosen.
    const Bytes halved = with(Bytes(72), {{0, "80"}});
    EXPECT_EQ(changes(result, halved, "L7.5"), "");
    EXPECT_EQ(changes(result, halved, "L11.7"), "P15.6");
    EXPECT_EQ(changes(result, halved, "L11.6"), "P15.5");
    EXPECT_EQ(changes(result, halved, "L8.0"), "");
}

TEST(L2UfibResult, ClearsP0_6InVariant1WhereL3_1IsSet) {
    Bytes in = with(Bytes(72), {{1, "01"}, {4, "00 00 00 60"}});
    EXPECT_EQ(translate(result, in).out[0], 0xd1);
    set_bit(in, 3, 1);
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(out[0], 0x91);
    EXPECT_EQ(hex(slice(out, 12, 18)), "00 00 00 60 00 00 10");
    // L3.1 without variant 1 leaves it.
    in[1] = 0;
    EXPECT_EQ(translate(result, in).out[0], 0xd1);
}

TEST(L2UfibResult, DropsTheDestinationInVariant3ButNotItsMarks) {
    for (const char* l4_to_11 : {"ff ff ff ff 00 00 00 00", "00 00 00 60 ff ff ff ff"}) {
        const Bytes out = translate(result, with(Bytes(72), {{0, "06"}, {4, l4_to_11}})).out;
        EXPECT_EQ(out[0], 0xd1);
        EXPECT_EQ(hex(slice(out, 12, 15)), "00 00 00 00");
    }
    const Bytes halved = translate(result, with(Bytes(72), {{0, "86"}, {4, "ff ff ff ff ff ff ff ff"}})).out;
    EXPECT_EQ(halved[0], 0x11);
    EXPECT_EQ(hex(slice(halved, 12, 15)), "00 00 00 00");
}

TEST(L2UfibResult, SetsTheBitsOfL2_6InVariant4Only) {
    EXPECT_EQ(changes(result, with(Bytes(72), {{0, "04"}}), "L2.6"), "P0.7 P1.0");
    EXPECT_EQ(changes(result, with(Bytes(72), {{0, "04"}, {42, "81"}}), "L2.6"), "P0.7 P1.0 P25.7 P25.0");
    for (const char* flags_in_hex : {"00 00", "00 01", "01 00", "06 00"}) {
        EXPECT_EQ(changes(result, entry(flags_in_hex), "L2.6"), "") << flags_in_hex;
    }
}

TEST(L2UfibResult, SumsUpTheLowFlagsInP2_2) {
    for (const auto& [low_flags, p2] :
         {std::pair{0, 0x00}, {1, 0x04}, {2, 0x14}, {3, 0x14}, {4, 0x08}, {5, 0x08}, {6, 0x1c}, {7, 0x1c}}) {
        Bytes in(72);
        in[0] = static_cast<std::uint8_t>(low_flags);
        EXPECT_EQ(translate(result, in).out[2], p2) << low_flags;
    }
}

TEST(L2UfibResult, PutsEachFlagInItsPlaces) {
    for (const auto& [flag, places] : std::initializer_list<std::pair<const char*, const char*>>{
             {"L0.3", "P1.6"},  {"L0.4", "P1.4"},      {"L0.5", "P0.5"}, {"L0.6", "P1.5"},  {"L0.7", "P2.1"},
             {"L1.1", "P3.7"},  {"L1.5", "P3.2"},      {"L1.6", "P3.0"}, {"L1.7", "P3.1"},  {"L2.0", "P3.4"},
             {"L2.1", "P26.3"}, {"L2.2", "P26.4"},     {"L2.3", "P3.3"}, {"L2.4", "P2.7"},  {"L2.5", "P2.5"},
             {"L2.7", "P1.1"},  {"L3.1", "P1.2 P2.6"}, {"L3.4", "P3.5"}, {"L3.5", "P26.0"}, {"L3.6", "P26.1"},
             {"L3.7", "P26.2"}, {"L1.2", ""},          {"L1.3", ""},     {"L1.4", ""},      {"L3.0", ""},
             {"L3.2", ""},      {"L3.3", ""},          {"L2.6", ""},
         }) {
        EXPECT_EQ(changes(result, Bytes(72), flag), places) << flag;
    }
    EXPECT_EQ(changes(result, with(Bytes(72), {{1, "01"}}), "L1.2"), "P3.6");
}

TEST(L2UfibResult, DoesNotCarryTheTopsOfItsFields) {
    for (const char* flags_in_hex : {"00 00 00 00", "80 00 00 00", "00 01 00 00", "00 01 00 02", "01 00 00 00",
                                     "46 00 00 00", "04 00 00 00", "04 00 80 00"}) {
        expect_not_carried(result, entry(flags_in_hex),
                           {"L12-15", "L17-19", "L21-23", "L31", "L35", "L43", "L46.7-4", "L47", "L50-51", "L54.7-4",
                            "L55-59", "L61-63", "L70", "L71.7"});
    }
    EXPECT_EQ(changes(result, Bytes(72), "L71.6"), "P23.7");
    EXPECT_EQ(changes(result, Bytes(72), "L71.0"), "P23.1");
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

TEST(L2UfibReverse, RestoresWhatItsBitsChooseAndNothingElse) {
    walk(reverse_result, reverse_model, patterns(32));
    for (unsigned choice = 0; choice < choices_back; ++choice) {
        Bytes base = counting(32, 0x8d);
        choose_back(base, choice);
        walk(reverse_result, reverse_model, base);
    }
}

TEST(L2UfibReverse, RestoresRandomRecords) { check_random(reverse_result, reverse_model, 10000); }

TEST(L2UfibReverse, KeepsL2_7OfItsFlagWhereP21_0IsClear) {
    Bytes in = with(Bytes(32), {{0, "11 02 08"}, {18, "ab cd ef"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out),
              hex(with(Bytes(72), {{0, "04"}, {2, "80"}, {52, "de bc 0a 00"}})));
    in[1] = 0;
    EXPECT_EQ(hex(translate(reverse_result, in).out), hex(with(Bytes(72), {{0, "04"}, {52, "de bc 0a 00"}})));
    in[21] = 1;  // sets it whatever the flag
    EXPECT_EQ(hex(translate(reverse_result, in).out),
              hex(with(Bytes(72), {{0, "04"}, {2, "80"}, {52, "ab cd 0f 00"}})));
}

TEST(L2UfibReverse, ReadsTwentyFourBitsInVariant3) {
    const Bytes in = with(Bytes(32), {{0, "11 20 18"}, {16, "2c 2d fe ff"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out), hex(with(Bytes(72), {{0, "46"}, {44, "2c 2d fe 00"}})));
}

TEST(L2UfibReverse, ReadsVariant3AsVariant4WhereP1_5IsClear) {
    const Bytes in = with(Bytes(32), {{0, "11 01 98"}, {16, "30 31 ab cd ef"}, {25, "2a"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out),
              hex(with(Bytes(72), {{0, "06"}, {2, "50"}, {42, "2a"}, {48, "30 31 00 00 de bc 0a 00"}})));
}

TEST(L2UfibReverse, ReadsThePathsOfAllVariantsThatAreSet) {
    // P1.3, P2.3 and P2.0: the label of the second path is overwritten by that of the last.
    const Bytes in = with(Bytes(32), {{0, "11 0c 09"}, {16, "11 22 f3 44 55 66"}, {25, "2a"}});
    EXPECT_EQ(
        hex(translate(reverse_result, in).out),
        hex(with(Bytes(72),
                 {{0, "05 01 00 02"}, {36, "11 22 f3 44 55 66 2a"}, {48, "11 22 00 00 11 22 03 00"}, {68, "55 66"}})));
}

TEST(L2UfibReverse, ReadsTheValueOfP16To19WhereP1_2IsClear) {
    const Bytes in = with(Bytes(32), {{0, "11 00 01 40"}, {16, "40 41 42 43 44 45"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out), hex(with(Bytes(72), {{1, "05"}, {64, "40 41 42 43 44 45"}})));
}

TEST(L2UfibReverse, DoublesTheDestinationWhereP2_1IsSet) {
    EXPECT_EQ(hex(translate(reverse_result, with(Bytes(32), {{0, "11 00 02"}, {12, "84 04 85 85"}})).out),
              hex(with(Bytes(72), {{0, "80"}, {8, "08 09 0a 0b"}})));
}

TEST(L2UfibReverse, DoesNotReadTheSummariesNorTheUnrestoredFlags) {
    for (const Bytes& base : {Bytes(32), Bytes(32, 0xff)}) {
        expect_not_carried(
            reverse_result, base,
            {"P0.7-6", "P0.4-0", "P1.7", "P2.2", "P2.6", "P3.4-0", "P22-23", "P26.7-5", "P26.3-0", "P27-31"});
    }
}

TEST(L2UfibReverse, ReadsFlagsOfAPathOnThatPathOnly) {
    expect_not_carried(reverse_result, Bytes(32), {"P26.4", "P2.7", "P1.0", "P1.2", "P3.6", "P25.0"});
    const Bytes l0_2 = with(Bytes(32), {{2, "08"}});
    EXPECT_EQ(changes(reverse_result, l0_2, "P26.4"), "L2.2");
    EXPECT_EQ(changes(reverse_result, l0_2, "P2.7"), "L2.4");
    EXPECT_EQ(changes(reverse_result, l0_2, "P1.0"), "L2.6");
    const Bytes l1_0 = with(Bytes(32), {{2, "01"}});
    EXPECT_EQ(changes(reverse_result, l1_0, "P1.2"), "L3.1");
    EXPECT_EQ(changes(reverse_result, l1_0, "P3.6"), "L1.2");
    EXPECT_EQ(changes(reverse_result, with(Bytes(32), {{1, "08"}}), "P25.0"), "L42.0");
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

TEST(L2Ufib, ComesBackWithTheFieldsOfItsVariant) {
    const Bytes common = with(Bytes(72), {{16, "10"}, {20, "14"}, {28, "1c 1d 1e"}, {32, "20 21 22"}, {60, "3c"}});
    const auto back = [](const char* flags_in_hex) {
        const Outcome outcome = translate(reverse_result, translate(result, entry(flags_in_hex)).out, Bytes(72, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, std::nullopt);
        return hex(outcome.out);
    };
    const auto expected = [&common](std::initializer_list<std::pair<std::size_t, std::string_view>> parts) {
        return hex(with(common, parts));
    };
    EXPECT_EQ(back("00 00 00 00"), expected({{4, "04 05 06 07"}}));
    EXPECT_EQ(back("80 00 00 00"), expected({{0, "80"}, {8, "08 09 0a 0b"}}));
    EXPECT_EQ(back("00 05 00 00"), expected({{1, "05"}, {4, "04 05 06 07"}, {64, "40 41 42 43 44 45"}}));
    EXPECT_EQ(back("00 05 00 02"),
              expected({{1, "05"}, {3, "02"}, {4, "04 05 06 07"}, {52, "34 35 06 00"}, {68, "44 45"}}));
    EXPECT_EQ(back("01 00 00 00"), expected({{0, "01"}, {4, "04 05 06 07"}, {36, "24 25 26 27 28 29 2a"}}));
    EXPECT_EQ(back("46 00 00 00"), expected({{0, "46"}, {44, "2c 2d 0e 00"}}));
    EXPECT_EQ(back("04 00 00 00"),
              expected({{0, "04"}, {4, "04 05 06 07"}, {42, "2a"}, {48, "30 31 00 00 34 35 06 00"}}));
    EXPECT_EQ(back("04 00 80 00"),
              expected({{0, "04"}, {2, "80"}, {4, "04 05 06 07"}, {42, "2a"}, {48, "30 31 00 00 34 35 06 00"}}));
    EXPECT_EQ(back("04 00 40 00"),
              expected({{0, "04"}, {2, "40"}, {4, "04 05 06 07"}, {48, "30 31 00 00 34 35 06 00"}}));
}

TEST(L2Ufib, LosesTheLowBitOfTheHalvedDestination) {
    const Bytes in = with(Bytes(72), {{0, "80"}, {8, "ff ff ff ff"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex(slice(out, 12, 15)), "ff ff ff 7f");
    EXPECT_EQ(hex(translate(reverse_result, out).out), hex(with(Bytes(72), {{0, "80"}, {8, "fe ff ff ff"}})));
}

TEST(L2Ufib, ComesBackWithoutTheFlagsThatAreNeverReadBack) {
    // L2.0, L2.1, L2.2, L2.3, L1.5-7, L3.1, L3.5-7 and L71; L2.2 and L3.1 for want of their paths.
    const Bytes in = with(Bytes(72), {{1, "e0 0f e2"}, {71, "7f"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex(out), hex(with(Bytes(32), {{0, "11 04 40 1f"}, {23, "fe"}, {26, "1f"}})));
    EXPECT_EQ(hex(translate(reverse_result, out).out), hex(Bytes(72)));
}

TEST(L2Ufib, ComesBackWithL2_2WhereL0_2IsSet) {
    const Bytes in = with(Bytes(72), {{0, "04 00 04"}});
    EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out), hex(with(Bytes(72), {{0, "04 00 04"}})));
}

TEST(L2Ufib, OfVariant3WithoutAValueComesBackAsVariant4) {
    // Its fields are zero: no label, no marker.
    const Bytes in = with(counting(72), {{0, "06 00 10 00"}});
    EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out),
              hex(with(Bytes(72),
                       {{0, "06 00 10 00"}, {16, "10"}, {20, "14"}, {28, "1c 1d 1e"}, {32, "20 21 22"}, {60, "3c"}})));
}

TEST(L2Ufib, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(L2Ufib, IsTable31) {
    EXPECT_EQ(l2p_ucode_func_table[31].key, &l2_ufib_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[31].result, &l2_ufib_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[31], &l2_ufib_type_logical_xlate_result);
}

}  // namespace
