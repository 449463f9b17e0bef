// L2TP session leaves, table 68.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator leaf_key = FORWARD(l2tp_sid_leaf_st_xlate_key, 6, 4);
// The reverse fills 76 bytes, of which the forward translator reads none behind L57.
const Translator leaf_result = FORWARD(l2tp_sid_leaf_st_xlate_result, 58, 64);
const Translator leaf_back = REVERSE(l2tp_xlate_logical_result, 64, 76);

// ---- Models ----

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = L0-1", "P2-3 = L4-5"};
    rows.apply(in, out);
    return {.length = 4};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P0.6 = L0.1",
        "P1.7 = L36.0",
        "P1.6 = L36.1",
        "P1.5 = L36.2",
        "P1.4 = L36.3",
        "P2.0 = L37.0",
        "P2.1 = L37.1",
        "P2.2 = L37.2",
        "P2.3 = L37.3",
        "P2.7 = L37.7",
        "P3 = L10",
        "P4-5 = L6-7",
        "P8 = L42",
        "P9-11 = L12-14",
        "P12-13 = L18-19",
        "P14-15 = L4-5",
        "P16-19 = L28-31",
        "P20-23 = L32-35",
        "P24-25 = swap L20-21",
        "P26-27 = swap L22-23",
        "P28-29 = swap L38-39",
        "P30-31 = swap L40-41",
        "P32.0 = L37.2",
        "P36-39 = L44-47",
        "P40-42 = label L48-51 flag L52.0",
        "P43-45 = label L53-56 flag L57.0",
    };
    static const Rows kept{"P6-7 = L8-9"};
    static const Rows swapped{"P6-7 = swap L8-9"};
    out.assign(64, 0);
    rows.apply(in, out);
    (!bit(in, 37, 2) && bit(in, 0, 1) ? kept : swapped).apply(in, out);
    return {.length = 64};
}

Reply back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0.1 = P0.6",     "L36.0 = P1.7",
        "L36.1 = P1.6",    "L36.2 = P1.5",
        "L36.3 = P1.4",    "L37.0 = P2.0",
        "L37.1 = P2.1",    "L37.2 = P2.2",
        "L37.3 = P2.3",    "L37.7 = P2.7",
        "L4-5 = P14-15",   "L6-7 = P4-5",
        "L8-9 = P6-7",     "L10 = P3",
        "L12-14 = P9-11",  "L15 = 0",
        "L18-19 = P12-13", "L28-31 = P16-19",
        "L32-35 = P20-23", "L42 = P8",
        "L44-47 = P36-39", "L48-51 = label P40-42",
        "L52.0 = P42.0",   "L53-56 = label P43-45",
        "L57.0 = P45.0",   "L20-21 = P24-25",
        "L22-23 = P26-27", "L38-39 = P28-29",
        "L40-41 = P30-31",
    };
    out.assign(76, 0);
    rows.apply(in, out);
    return {};
}

const support::Models models{{leaf_key, key_model}, {leaf_result, result_model}, {leaf_back, back_model}};

// ---- Every bit ----

TEST(L2tpLeaf, EveryBitGoesWhereItBelongs) {
    walk(leaf_key, key_model, {Bytes(6), Bytes(6, 0xff), counting(6, 0x81)});
    walk(leaf_back, back_model, {Bytes(64), Bytes(64, 0xff), counting(64, 0x81)});
    for (const bool l37_2 : {false, true}) {
        for (const bool l0_1 : {false, true}) {
            const auto shape = [=](Bytes& logical) {
                set_bit(logical, 37, 2, l37_2);
                set_bit(logical, 0, 1, l0_1);
            };
            for (Bytes base : {Bytes(58), Bytes(58, 0xff), counting(58, 0x81)}) {
                shape(base);
                walk(leaf_result, result_model, base);
            }
            check_random(leaf_result, result_model, 500, shape);
        }
    }
}

TEST(L2tpLeaf, RandomRecordsAreTranslatedAsDocumented) {
    check_random(leaf_key, key_model);
    check_random(leaf_back, back_model);
}

TEST(L2tpLeaf, NoTranslatorLooksAtTheLengthItIsGiven) {
    for (const Translator* translator : {&leaf_key, &leaf_result, &leaf_back}) {
        const Bytes record = counting(translator->in_size, 1);
        expect_length_ignored(*translator, record);
    }
}

// ---- Key ----

TEST(L2tpLeafKey, LeavesOutTheTwoBytesBetweenItsValues) {
    const Outcome outcome = translate(leaf_key, bytes("12 34 ff ff 56 78"), Bytes(4, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "12 34 56 78");
    for (const char* position : {"L2.0", "L2.7", "L3.0", "L3.7"}) {
        EXPECT_EQ(changes(leaf_key, Bytes(6), position), "") << position;
    }
}

// ---- Result ----

// Each logical byte holds its own number.
constexpr const char* counted_result =
    "11 20 05 0a 06 07 09 08 2a 0c 0d 0e 12 13 04 05 "
    "1c 1d 1e 1f 20 21 22 23 15 14 17 16 27 26 29 28 "
    "01 00 00 00 2c 2d 2e 2f 23 13 00 73 63 51 00 00 "
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

TEST(L2tpLeafResult, PutsEachByteInItsPlace) {
    const Outcome outcome = translate(leaf_result, counting(58), Bytes(64, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 64U);
    EXPECT_EQ(hex(outcome.out), counted_result);
}

TEST(L2tpLeafResult, OfZerosHoldsOnlyTheHeaderAndOfOnesLeavesTheGaps) {
    EXPECT_EQ(hex(translate(leaf_result, Bytes(58)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(leaf_result, Bytes(58, 0xff)).out),
              "51 f0 8f ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "01 00 00 00 ff ff ff ff ff ff f1 ff ff f1 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2tpLeafResult, KeepsTheOrderOfL8To9OnlyWithL372ClearAndL01Set) {
    struct Row {
        bool l37_2;
        bool l0_1;
        const char* expected;
    };
    for (const auto& [l37_2, l0_1, expected] :
         {Row{false, true, "34 12"}, Row{false, false, "12 34"}, Row{true, true, "12 34"}, Row{true, false, "12 34"}}) {
        Bytes logical(58);
        logical[8] = 0x34;
        logical[9] = 0x12;
        set_bit(logical, 37, 2, l37_2);
        set_bit(logical, 0, 1, l0_1);
        const Bytes physical = translate(leaf_result, logical).out;
        EXPECT_EQ(hex(Bytes(physical.begin() + 6, physical.begin() + 8)), expected) << l37_2 << l0_1;
    }
}

TEST(L2tpLeafResult, CarriesTheseBits) {
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L0.1"), "P0.6");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L36.0"), "P1.7");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L36.3"), "P1.4");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L37.0"), "P2.0");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L37.2"), "P2.2 P32.0");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L37.3"), "P2.3");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L37.7"), "P2.7");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L20.0"), "P25.0");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L48.0"), "P42.4");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L48.4"), "P41.0");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L50.3"), "P40.7");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L52.0"), "P42.0");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L53.0"), "P45.4");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L55.3"), "P43.7");
    EXPECT_EQ(changes(leaf_result, Bytes(58), "L57.0"), "P45.0");
}

TEST(L2tpLeafResult, DoesNotCarryTheseBits) {
    for (const char* position :
         {"L0.0",  "L0.2",  "L0.7",  "L1.0",  "L2.0",  "L3.0",  "L11.0", "L15.0", "L16.0", "L17.0",
          "L24.0", "L25.0", "L26.0", "L27.0", "L36.4", "L36.7", "L37.4", "L37.5", "L37.6", "L43.0",
          "L50.4", "L50.7", "L51.0", "L51.7", "L52.1", "L52.7", "L55.4", "L56.0", "L56.7", "L57.1"}) {
        EXPECT_EQ(changes(leaf_result, Bytes(58), position), "") << position;
    }
}

// ---- Reverse ----

TEST(L2tpLeafReverse, SwapsNothing) {
    const Outcome outcome = translate(leaf_back, bytes(counted_result), Bytes(76, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out),
              "00 00 00 00 04 05 06 07 09 08 0a 00 0c 0d 0e 00 "
              "00 00 12 13 15 14 17 16 00 00 00 00 1c 1d 1e 1f "
              "20 21 22 23 04 05 27 26 29 28 2a 00 2c 2d 2e 2f "
              "30 31 02 00 00 35 36 07 00 01 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2tpLeafReverse, OfOnesFillsWhatItRestoresAndNoMore) {
    EXPECT_EQ(hex(translate(leaf_back, Bytes(64, 0xff), Bytes(76, 0xee)).out),
              "02 00 00 00 ff ff ff ff ff ff ff 00 ff ff ff 00 "
              "00 00 ff ff ff ff ff ff 00 00 00 00 ff ff ff ff "
              "ff ff ff ff 0f 8f ff ff ff ff ff 00 ff ff ff ff "
              "ff ff 0f 00 01 ff ff 0f 00 01 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2tpLeafReverse, DoesNotReadTheseBits) {
    for (const char* position :
         {"P0.7",  "P0.5",  "P0.4",  "P0.0",  "P1.3",  "P1.0",  "P2.4",  "P2.5",  "P2.6",  "P32.0", "P32.7",
          "P33.0", "P34.0", "P35.0", "P42.1", "P42.2", "P42.3", "P45.1", "P45.2", "P45.3", "P46.0", "P63.7"}) {
        EXPECT_EQ(changes(leaf_back, Bytes(64), position), "") << position;
    }
}

TEST(L2tpLeafReverse, ReturnsTheSwappedValuesReversed) {
    Bytes logical(58);
    logical[20] = 0x34;
    logical[21] = 0x12;
    logical[8] = 0x78;
    logical[9] = 0x56;
    const Bytes swapped = translate(leaf_back, translate(leaf_result, logical).out).out;
    EXPECT_EQ(swapped[20], 0x12);
    EXPECT_EQ(swapped[21], 0x34);
    EXPECT_EQ(swapped[8], 0x56);
    EXPECT_EQ(swapped[9], 0x78);
    // With this flag, L8-9 is not swapped on the way there.
    set_bit(logical, 0, 1);
    const Bytes kept = translate(leaf_back, translate(leaf_result, logical).out).out;
    EXPECT_EQ(kept[0], 0x02);
    EXPECT_EQ(kept[8], 0x78);
    EXPECT_EQ(kept[9], 0x56);
}

TEST(L2tpLeafDispatch, IsTable68) {
    EXPECT_EQ(l2p_ucode_func_table[68].key, &l2tp_sid_leaf_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[68].result, &l2tp_sid_leaf_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[68], &l2tp_xlate_logical_result);
}

}  // namespace
