// IP subscriber session leaves, table 107.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator leaf_key = FORWARD(ipsub_sid_leaf_st_xlate_key, 21, 19);
const Translator leaf_result = FORWARD(ipsub_sid_leaf_st_xlate_result, 9, 8);

// ---- Models ----

// One of the four words of the address is shifted right, in the logical key itself, before the address is copied.
Reply key_model(Bytes& in, Bytes& out) {
    static const Rows before{"P2 = L2", "P0-1 = L0-1"};
    static const Rows after{"P3-18 = L3-18"};
    out.assign(19, 0);
    before.apply(in, out);
    if (in[2] == 2) {
        const std::size_t word = 3 + 4 * std::size_t{bits(in, 20, 7, 6)};
        const unsigned shift = bits(in, 20, 4, 0);
        put_big(in, word, 4, big(in, word, 4) >> shift);
    }
    after.apply(in, out);
    return {.length = 19};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0 = 0x11", "P0.6 = L0.1", "P0.5 = L0.2", "P1-2 = L1-2", "P3-4 = L3-4"};
    out.assign(8, 0);
    rows.apply(in, out);
    // Bits 24 to 1 of the value, low-order byte first.
    put_little(out, 5, 3, little(in, 5, 4) >> 1);
    return {.length = 8};
}

// ---- Key ----

// Kind 2 with a control byte, over an address whose bytes all differ.
Bytes shifted_key(unsigned control) {
    Bytes logical = bytes("aa bb 02 81 92 a3 b4 c5 d6 e7 f8 89 9a ab bc cd de ef f0 77 00");
    logical[20] = static_cast<std::uint8_t>(control);
    return logical;
}

const support::Models models{{leaf_key, key_model}, {leaf_result, result_model}};

TEST(IpsubLeafKey, EveryBitGoesWhereItBelongs) {
    for (unsigned control = 0; control < 256; ++control) {
        walk(leaf_key, key_model, shifted_key(control));
    }
    for (const unsigned kind : {0U, 1U, 3U, 0x12U, 0x82U, 0xffU}) {
        for (Bytes base : {Bytes(21), Bytes(21, 0xff), counting(21, 0x81)}) {
            base[2] = static_cast<std::uint8_t>(kind);
            walk(leaf_key, key_model, base);
        }
    }
}

TEST(IpsubLeafKey, RandomRecordsAreTranslatedAsDocumented) {
    check_random(leaf_key, key_model);
    check_random(leaf_key, key_model, 2000, [](Bytes& in) { in[2] = 2; });
}

TEST(IpsubLeafKey, ShiftsTheSecondWordBy8InTheLogicalKeyToo) {
    const Outcome outcome =
        translate(leaf_key, bytes("aa bb 02 81 92 a3 b4 c5 d6 e7 f8 89 9a ab bc cd de ef f0 77 48"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 19U);
    EXPECT_EQ(hex(outcome.out), "aa bb 02 81 92 a3 b4 00 c5 d6 e7 89 9a ab bc cd de ef f0");
    EXPECT_EQ(hex(outcome.in), "aa bb 02 81 92 a3 b4 00 c5 d6 e7 89 9a ab bc cd de ef f0 77 48");
}

TEST(IpsubLeafKey, WithControl0RewritesTheFirstWordUnchanged) {
    const Outcome outcome = translate(leaf_key, shifted_key(0));
    EXPECT_EQ(hex(outcome.out), "aa bb 02 81 92 a3 b4 c5 d6 e7 f8 89 9a ab bc cd de ef f0");
    EXPECT_EQ(outcome.in, shifted_key(0));
}

TEST(IpsubLeafKey, ShiftsAcrossBytesInNetworkOrder) {
    // 0x8192a3b4 >> 4, >> 1 and >> 31.
    EXPECT_EQ(hex(translate(leaf_key, shifted_key(0x04)).out),
              "aa bb 02 08 19 2a 3b c5 d6 e7 f8 89 9a ab bc cd de ef f0");
    EXPECT_EQ(hex(translate(leaf_key, shifted_key(0x01)).out),
              "aa bb 02 40 c9 51 da c5 d6 e7 f8 89 9a ab bc cd de ef f0");
    EXPECT_EQ(hex(translate(leaf_key, shifted_key(0x1f)).out),
              "aa bb 02 00 00 00 01 c5 d6 e7 f8 89 9a ab bc cd de ef f0");
}

TEST(IpsubLeafKey, ReachesEachOfTheFourWords) {
    EXPECT_EQ(hex(translate(leaf_key, shifted_key(0x90)).out),
              "aa bb 02 81 92 a3 b4 c5 d6 e7 f8 00 00 89 9a cd de ef f0");
    EXPECT_EQ(hex(translate(leaf_key, shifted_key(0xd0)).out),
              "aa bb 02 81 92 a3 b4 c5 d6 e7 f8 89 9a ab bc 00 00 cd de");
}

TEST(IpsubLeafKey, DoesNotUseBit5OfTheControlByteNorL19) {
    EXPECT_EQ(changes(leaf_key, shifted_key(0x48), "L20.5"), "");
    for (const char* position : {"L19.7", "L19.6", "L19.5", "L19.4", "L19.3", "L19.2", "L19.1", "L19.0"}) {
        EXPECT_EQ(changes(leaf_key, shifted_key(0x48), position), "") << position;
    }
}

TEST(IpsubLeafKey, ShiftsAgainWhenTheSameKeyIsTranslatedAgain) {
    const Outcome first = translate(leaf_key, shifted_key(0x48));
    EXPECT_EQ(hex(translate(leaf_key, first.in).out), "aa bb 02 81 92 a3 b4 00 00 c5 d6 89 9a ab bc cd de ef f0");
}

TEST(IpsubLeafKey, OfAnotherKindIsLeftAlone) {
    for (const int kind : {0x00, 0x01, 0x03, 0x12, 0x82, 0xfd}) {
        Bytes logical = shifted_key(0x48);
        logical[2] = static_cast<std::uint8_t>(kind);
        const Outcome outcome = translate(leaf_key, logical);
        EXPECT_EQ(outcome.in, logical) << kind;
        EXPECT_EQ(outcome.out, Bytes(logical.begin(), logical.begin() + 19)) << kind;
    }
}

// ---- Result ----

TEST(IpsubLeafResult, EveryBitGoesWhereItBelongs) {
    walk(leaf_result, result_model, {Bytes(9), Bytes(9, 0xff), counting(9, 0x81)});
    check_random(leaf_result, result_model);
}

TEST(IpsubLeafResult, ShiftsTheValueRightBy1) {
    const Outcome outcome = translate(leaf_result, bytes("06 01 02 03 04 56 34 12 01"), Bytes(8, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "71 01 02 03 04 2b 1a 89");
    EXPECT_EQ(hex(translate(leaf_result, bytes("00 00 00 00 00 01 00 00 fe")).out), "11 00 00 00 00 00 00 00");
}

TEST(IpsubLeafResult, OfZerosHoldsOnlyTheHeader) {
    EXPECT_EQ(hex(translate(leaf_result, Bytes(9)).out), "11 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(leaf_result, Bytes(9, 0xff)).out), "71 ff ff ff ff ff ff ff");
}

TEST(IpsubLeafResult, CarriesTheseBits) {
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L0.1"), "P0.6");
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L0.2"), "P0.5");
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L1.7"), "P1.7");
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L5.1"), "P5.0");
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L6.0"), "P5.7");
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L7.0"), "P6.7");
    EXPECT_EQ(changes(leaf_result, Bytes(9), "L8.0"), "P7.7");
}

TEST(IpsubLeafResult, DoesNotCarryTheseBits) {
    for (const char* position : {"L0.0", "L0.3", "L0.4", "L0.5", "L0.6", "L0.7", "L5.0", "L8.1", "L8.7"}) {
        EXPECT_EQ(changes(leaf_result, Bytes(9), position), "") << position;
    }
}

TEST(IpsubLeaf, NoTranslatorLooksAtTheLengthItIsGiven) {
    const Bytes result_record = counting(9, 1);
    expect_length_ignored(leaf_key, shifted_key(0x48));
    expect_length_ignored(leaf_result, result_record);
}

TEST(IpsubLeafDispatch, IsTable107AndReadsBackUnchanged) {
    EXPECT_EQ(l2p_ucode_func_table[107].key, &ipsub_sid_leaf_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[107].result, &ipsub_sid_leaf_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[107], &generic_xlate_logical_result);
    const Translator back = reverse("reverse translator of table 107", p2l_ucode_func_table[107], 8, 8);
    EXPECT_EQ(hex(translate(back, bytes("71 01 02 03 04 2b 1a 89")).out), "71 01 02 03 04 2b 1a 89");
}

}  // namespace
