// The bridge-domain member: one attachment of a bridge domain, in one of three forms.
#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(bridge_domain_member_type_xlate_key, 12, 5);
const Translator result = FORWARD(bridge_domain_member_type_xlate_result, 64, 24);
const Translator reverse_result = REVERSE(bridge_domain_member_type_logical_xlate_result, 24, 64);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = L4",     "P1 = L5",     "P2 = 0",      "P3 = L8",  "P4.3-0 = L9.3-0",
        "P4.4 = L1.0", "P4.5 = L0.0", "P4.6 = L2.0", "P4.7 = 0",
    };
    rows.apply(in, out);
    return {.length = 5};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows common{
        "P0-23 = 0",   "P0 = 0x11",   "P0.5 = L1.1", "P0.6 = L0.3",
        "P1.0 = L1.2", "P1.4 = L0.0", "P1.7 = L0.1", "P4-7 = L4-7",
    };
    static const Rows variant_a{"P8-11 = L56-59", "P12-13 = L60-61"};
    static const Rows variant_b{
        "P0.7 = L0.6",
        "P1.1 = L0.5",
        "P3.3 = L1.4",
        "P3.2-0 = L1.7-5",
        "P8-10 = label L32-35 flag 1",
        "P11-12 = L44-45",
        "P17-20 = L52-55",
        "P21-23 = label L37-40 flag 1",
    };
    static const Rows variant_b_with_l0_5{"P13-16 = L48-51"};
    static const Rows variant_c{"P8-10 = L16-18", "P11-13 = L12-14", "P14-16 = L8-10", "P4-6 = 0xff", "P7 = 0x9f"};

    common.apply(in, out);
    if (bit(in, 0, 1)) {
        variant_a.apply(in, out);
    } else if (bit(in, 0, 3)) {
        variant_b.apply(in, out);
        if (bit(in, 0, 5)) {
            variant_b_with_l0_5.apply(in, out);
        }
    } else if (bit(in, 1, 1)) {
        variant_c.apply(in, out);
    }
    return {.length = 24};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows flags{
        "L0-63 = 0", "L0.0 = P1.4", "L0.2 = P0.5", "L0.3 = P0.6", "L1.2 = P1.0", "L0.1 = P1.7",
    };
    static const Rows variant_a{"L56-59 = P8-11", "L60-61 = P12-13"};
    static const Rows variant_b{
        "L0.5 = P1.1",     "L0.6 = P0.7",          "L1.4 = P3.3",           "L1.7-5 = P3.2-0", "L48-51 = P13-16",
        "L44-45 = P11-12", "L32-35 = label P8-10", "L37-40 = label P21-23", "L52-55 = P17-20",
    };
    static const Rows variant_c{"L16-18 = P8-10", "L12-14 = P11-13", "L8-10 = P14-16"};
    static const Rows last{"L4-7 = P4-7"};

    flags.apply(in, out);
    if (bit(in, 1, 7)) {
        variant_a.apply(in, out);
    } else if (bit(in, 0, 6)) {
        variant_b.apply(in, out);
    } else if (bit(in, 0, 5)) {
        variant_c.apply(in, out);
    }
    last.apply(in, out);
    return {};
}

// The flags that choose the layout: L0.1, L0.3, L1.1 and, within the second variant, L0.5.
void choose(Bytes& in, unsigned choice) {
    set_bit(in, 0, 1, (choice & 1) != 0);
    set_bit(in, 0, 3, (choice & 2) != 0);
    set_bit(in, 1, 1, (choice & 4) != 0);
    set_bit(in, 0, 5, (choice & 8) != 0);
}

// The same of the physical record: P1.7, P0.6, P0.5, P1.1.
void choose_back(Bytes& in, unsigned choice) {
    set_bit(in, 1, 7, (choice & 1) != 0);
    set_bit(in, 0, 6, (choice & 2) != 0);
    set_bit(in, 0, 5, (choice & 4) != 0);
    set_bit(in, 1, 1, (choice & 8) != 0);
}

// A counting record with flags of its own in its first two bytes.
Bytes member(const char* flags) { return with(counting(64), {{0, flags}}); }

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

// ---------------------------------------------------------------------------------------------------------------------
// Key

TEST(BridgeDomainMemberKey, CarriesItsFieldsAndNothingElse) {
    walk(key, key_model, patterns(12));
    check_random(key, key_model);
}

TEST(BridgeDomainMemberKey, IsLowOrderByteFirst) {
    const Outcome outcome = translate(key, bytes("00 00 00 00 34 12 ff ff bc fa ff ff"), Bytes(5, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 5U);
    EXPECT_EQ(hex(outcome.out), "34 12 00 bc 0a");
    EXPECT_EQ(hex(translate(key, Bytes(12, 0xff)).out), "ff ff 00 ff 7f");
}

TEST(BridgeDomainMemberKey, HasThreeFlagsAboveTheSecondValue) {
    const Bytes zeros(12);
    EXPECT_EQ(changes(key, zeros, "L1.0"), "P4.4");
    EXPECT_EQ(changes(key, zeros, "L0.0"), "P4.5");
    EXPECT_EQ(changes(key, zeros, "L2.0"), "P4.6");
    expect_not_carried(key, zeros, {"L0.7-1", "L1.7-1", "L2.7-1", "L3", "L6-7", "L9.7-4", "L10-11"});
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

TEST(BridgeDomainMemberResult, CarriesTheFieldsOfItsVariantAndNothingElse) {
    for (unsigned choice = 0; choice < 16; ++choice) {
        for (Bytes base : patterns(64)) {
            choose(base, choice);
            walk(result, result_model, base);
        }
    }
}

TEST(BridgeDomainMemberResult, CarriesRandomRecordsOfEveryVariant) {
    check_random(result, result_model);
    for (unsigned choice = 0; choice < 16; ++choice) {
        check_random(result, result_model, 200, [choice](Bytes& in) { choose(in, choice); });
    }
}

TEST(BridgeDomainMemberResult, WithoutAVariantIsTheCommonPart) {
    const Outcome outcome = translate(result, member("01 00"), Bytes(24, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 24U);
    EXPECT_EQ(hex(outcome.out), "11 10 00 00 04 05 06 07 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(64)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(BridgeDomainMemberResult, OfVariantAIsThis) {
    EXPECT_EQ(hex(translate(result, member("02 01")).out),
              "11 80 00 00 04 05 06 07 38 39 3a 3b 3c 3d 00 00 00 00 00 00 00 00 00 00");
}

TEST(BridgeDomainMemberResult, OfVariantBIsThis) {
    EXPECT_EQ(hex(translate(result, member("08 00")).out),
              "51 00 00 00 04 05 06 07 22 12 01 2c 2d 00 00 00 00 34 35 36 37 72 62 51");
    // With all its flags; L0.5 brings one more value.
    EXPECT_EQ(hex(translate(result, member("68 d0")).out),
              "d1 02 00 0e 04 05 06 07 22 12 01 2c 2d 30 31 32 33 34 35 36 37 72 62 51");
}

TEST(BridgeDomainMemberResult, OfVariantCHasAConstantInBytes4To7) {
    EXPECT_EQ(hex(translate(result, member("00 06")).out),
              "31 01 00 00 ff ff ff 9f 10 11 12 0c 0d 0e 08 09 0a 00 00 00 00 00 00 00");
    expect_not_carried(result, member("00 06"), {"L4-7"});
}

TEST(BridgeDomainMemberResult, TakesTheFirstVariantThatIsSet) {
    EXPECT_EQ(hex(translate(result, member("0a 02")).out),
              "71 80 00 00 04 05 06 07 38 39 3a 3b 3c 3d 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, member("0a 00")).out),
              "51 80 00 00 04 05 06 07 38 39 3a 3b 3c 3d 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, member("02 02")).out),
              "31 80 00 00 04 05 06 07 38 39 3a 3b 3c 3d 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, member("08 02")).out),
              "71 00 00 00 04 05 06 07 22 12 01 2c 2d 00 00 00 00 34 35 36 37 72 62 51");
}

TEST(BridgeDomainMemberResult, CarriesFourFlagsInVariantBOnly) {
    const Bytes variant_b = member("08 00");
    EXPECT_EQ(changes(result, variant_b, "L0.6"), "P0.7");
    EXPECT_EQ(changes(result, variant_b, "L1.4"), "P3.3");
    EXPECT_EQ(changes(result, variant_b, "L1.7"), "P3.2");
    EXPECT_EQ(changes(result, variant_b, "L1.5"), "P3.0");
    EXPECT_EQ(changes(result, with(Bytes(64), {{0, "08"}}), "L0.5"), "P1.1");
    for (const char* other : {"00 00", "02 00", "00 02"}) {
        expect_not_carried(result, member(other), {"L0.6-5", "L1.7-4"});
    }
}

TEST(BridgeDomainMemberResult, DoesNotCarryTheOtherBits) {
    for (const char* flags : {"00 00", "02 00", "08 00", "28 00", "00 02"}) {
        expect_not_carried(result, member(flags),
                           {"L0.2", "L0.4", "L0.7", "L1.0", "L1.3", "L2-3", "L11", "L15", "L19-31", "L34.7-4", "L35-36",
                            "L39.7-4", "L40-43", "L46-47", "L62-63"});
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

TEST(BridgeDomainMemberReverse, RestoresTheFieldsOfItsVariantAndNothingElse) {
    for (unsigned choice = 0; choice < 16; ++choice) {
        for (Bytes base : patterns(24)) {
            choose_back(base, choice);
            walk(reverse_result, reverse_model, base);
        }
    }
}

TEST(BridgeDomainMemberReverse, RestoresRandomRecordsOfEveryVariant) {
    check_random(reverse_result, reverse_model);
    for (unsigned choice = 0; choice < 16; ++choice) {
        check_random(reverse_result, reverse_model, 200, [choice](Bytes& in) { choose_back(in, choice); });
    }
}

TEST(BridgeDomainMemberReverse, ReadsP13To16OfVariantBWithoutTheFlagToo) {
    const Bytes in = with(Bytes(24), {{0, "51 00"}, {13, "30 31 32 33"}});
    EXPECT_EQ(hex(translate(reverse_result, in).out), hex(with(Bytes(64), {{0, "08"}, {48, "30 31 32 33"}})));
}

TEST(BridgeDomainMemberReverse, TakesTheFirstVariantThatIsSet) {
    const auto back = [](const char* flags) {
        return hex(translate(reverse_result, with(counting(24), {{0, flags}})).out);
    };
    EXPECT_EQ(back("71 80"), hex(with(Bytes(64), {{0, "0e"}, {4, "04 05 06 07"}, {56, "08 09 0a 0b 0c 0d"}})));
    EXPECT_EQ(back("f1 02"), hex(with(Bytes(64), {{0, "6c 60"},
                                                  {4, "04 05 06 07"},
                                                  {32, "90 80 00 00"},
                                                  {37, "61 51 01 00"},
                                                  {44, "0b 0c 00 00"},
                                                  {48, "0d 0e 0f 10"},
                                                  {52, "11 12 13 14"}})));
    EXPECT_EQ(
        back("b1 02"),
        hex(with(Bytes(64), {{0, "04"}, {4, "04 05 06 07"}, {8, "0e 0f 10"}, {12, "0b 0c 0d"}, {16, "08 09 0a"}})));
    EXPECT_EQ(back("91 12"), hex(with(Bytes(64), {{0, "01"}, {4, "04 05 06 07"}})));
}

TEST(BridgeDomainMemberReverse, DoesNotReadTheMarkersOfTheLabels) {
    const Bytes variant_b = with(Bytes(24), {{0, "51"}});
    expect_not_carried(reverse_result, variant_b, {"P10.3-0", "P23.3-0", "P0.4-0", "P1.6-5", "P1.3-2", "P2", "P3.7-4"});
    EXPECT_EQ(changes(reverse_result, variant_b, "P10.4"), "L32.0");
    EXPECT_EQ(changes(reverse_result, variant_b, "P21.7"), "L39.3");
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

Bytes there_and_back(const Bytes& in) {
    const Outcome outcome = translate(reverse_result, translate(result, in).out, Bytes(64, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    return outcome.out;
}

TEST(BridgeDomainMember, OfVariantAComesBackAsItWas) {
    EXPECT_EQ(hex(there_and_back(member("03 04"))),
              hex(with(Bytes(64), {{0, "03 04"}, {4, "04 05 06 07"}, {56, "38 39 3a 3b 3c 3d"}})));
}

TEST(BridgeDomainMember, OfVariantBComesBackWithItsLabelsAndWithoutTheirMarkers) {
    EXPECT_EQ(hex(there_and_back(member("68 d0"))), hex(with(Bytes(64), {{0, "68 d0"},
                                                                         {4, "04 05 06 07"},
                                                                         {32, "20 21 02 00"},
                                                                         {37, "25 26 07 00"},
                                                                         {44, "2c 2d 00 00"},
                                                                         {48, "30 31 32 33"},
                                                                         {52, "34 35 36 37"}})));
}

TEST(BridgeDomainMember, OfVariantBWithoutL0_5ComesBackWithoutItsValue) {
    EXPECT_EQ(hex(there_and_back(member("08 00"))), hex(with(Bytes(64), {{0, "08"},
                                                                         {4, "04 05 06 07"},
                                                                         {32, "20 21 02 00"},
                                                                         {37, "25 26 07 00"},
                                                                         {44, "2c 2d 00 00"},
                                                                         {52, "34 35 36 37"}})));
}

TEST(BridgeDomainMember, OfVariantCComesBackWithItsSelectorInL0_2AndTheConstant) {
    EXPECT_EQ(
        hex(there_and_back(member("00 02"))),
        hex(with(Bytes(64), {{0, "04 00"}, {4, "ff ff ff 9f"}, {8, "08 09 0a"}, {12, "0c 0d 0e"}, {16, "10 11 12"}})));
    EXPECT_EQ(little(there_and_back(with(Bytes(64), {{1, "02"}})), 4, 4), 0x9fffffffU);
}

TEST(BridgeDomainMember, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 2);
        expect_length_ignored(translator, in);
    }
}

TEST(BridgeDomainMember, IsTable35) {
    EXPECT_EQ(l2p_ucode_func_table[35].key, &bridge_domain_member_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[35].result, &bridge_domain_member_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[35], &bridge_domain_member_type_logical_xlate_result);
}

}  // namespace
