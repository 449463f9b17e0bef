// PPPoE session leaves, table 67, which reads back with the sampling table's reverse translator.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator leaf_key = FORWARD(pppoe_sid_leaf_st_xlate_key, 4, 4);
const Translator leaf_result = FORWARD(pppoe_sid_leaf_st_xlate_result, 18, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-3 = L0-3"};
    rows.apply(in, out);
    return {.length = 4};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",   "P1 = L1",          "P2.7-4 = L2.3-0", "P2.3-0 = L2.7-4",
        "P3-9 = L3-9", "P13.7-5 = L0.2-0", "P13.4 = L0.3",    "P16-19 = L14-17",
    };
    out.assign(32, 0);
    rows.apply(in, out);
    // Bits 24 to 1 of the value, low-order byte first.
    put_little(out, 10, 3, little(in, 10, 4) >> 1);
    return {.length = 32};
}

const support::Models models{{leaf_key, key_model}, {leaf_result, result_model}};

TEST(PppoeLeaf, EveryBitGoesWhereItBelongs) {
    walk(leaf_key, key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x81)});
    walk(leaf_result, result_model, {Bytes(18), Bytes(18, 0xff), counting(18, 0x81)});
    check_random(leaf_key, key_model);
    check_random(leaf_result, result_model);
}

TEST(PppoeLeaf, NoTranslatorLooksAtTheLengthItIsGiven) {
    const Bytes key_record = counting(4, 1);
    const Bytes result_record = counting(18, 1);
    expect_length_ignored(leaf_key, key_record);
    expect_length_ignored(leaf_result, result_record);
}

TEST(PppoeLeafKey, KeepsTheOrderOfItsBytes) {
    const Outcome outcome = translate(leaf_key, bytes("12 34 56 78"), Bytes(4, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "12 34 56 78");
}

TEST(PppoeLeafResult, PutsEachByteInItsPlace) {
    const Outcome outcome = translate(leaf_result, counting(18), Bytes(32, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    // The 32-bit value 0x0d0c0b0a leaves as 0x06860585, without its top byte.
    EXPECT_EQ(hex(outcome.out),
              "11 01 20 03 04 05 06 07 08 09 85 05 86 00 00 00 "
              "0e 0f 10 11 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(PppoeLeafResult, OfZerosHoldsOnlyTheHeaderAndOfOnesLeavesTheGaps) {
    EXPECT_EQ(hex(translate(leaf_result, Bytes(18)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(leaf_result, Bytes(18, 0xff)).out),
              "11 ff ff ff ff ff ff ff ff ff ff ff ff f0 00 00 "
              "ff ff ff ff 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(PppoeLeafResult, ExchangesTheNibblesOfL2) {
    Bytes logical(18);
    logical[2] = 0x12;
    EXPECT_EQ(translate(leaf_result, logical).out[2], 0x21);
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L2.0"), "P2.4");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L2.7"), "P2.3");
}

TEST(PppoeLeafResult, CarriesTheseBits) {
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L0.0"), "P13.5");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L0.1"), "P13.6");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L0.2"), "P13.7");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L0.3"), "P13.4");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L10.1"), "P10.0");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L11.0"), "P10.7");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L12.0"), "P11.7");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L13.0"), "P12.7");
    EXPECT_EQ(changes(leaf_result, Bytes(18), "L14.0"), "P16.0");
}

TEST(PppoeLeafResult, DoesNotCarryTheseBits) {
    for (const char* position : {"L0.4", "L0.5", "L0.6", "L0.7", "L10.0", "L13.1", "L13.7"}) {
        EXPECT_EQ(changes(leaf_result, Bytes(18), position), "") << position;
    }
}

TEST(PppoeLeafDispatch, IsTable67AndReversesAsASamplingRecord) {
    EXPECT_EQ(l2p_ucode_func_table[67].key, &pppoe_sid_leaf_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[67].result, &pppoe_sid_leaf_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[67], &sample_nf_info_logical_res_xlate);
}

TEST(PppoeLeafDispatch, ReadsTheFirst16BytesBackAsASamplingRecord) {
    Bytes logical = counting(18);
    logical[1] = 0xe0;
    Bytes physical = translate(leaf_result, logical).out;
    physical.resize(16);
    EXPECT_EQ(hex(physical), "11 e0 20 03 04 05 06 07 08 09 85 05 86 00 00 00");
    const Translator back = reverse("reverse translator of table 67", p2l_ucode_func_table[67], 16, 9);
    const Outcome outcome = translate(back, physical, Bytes(9, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(hex(outcome.out), "04 05 06 07 00 08 09 85 d0");
}

TEST(PppoeLeafDispatch, RefusesToReadBackAllOf32Bytes) {
    const Translator back = reverse("reverse translator of table 67", p2l_ucode_func_table[67], 32, 9);
    const Outcome outcome = translate(back, translate(leaf_result, counting(18)).out, Bytes(9, 0xee));
    EXPECT_EQ(outcome.status, 22);
    EXPECT_EQ(hex(outcome.out), "ee ee ee ee ee ee ee ee ee");
}

}  // namespace
