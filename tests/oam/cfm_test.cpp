// CFM offload entries: the transmit, the second transmit and the receive record. Reached by name only.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator tx_key = FORWARD(cfm_hwo_xlate_tx_key, 4, 4);
const Translator rx_key = FORWARD(cfm_hwo_xlate_rx_key, 5, 5);
const Translator tx_result = FORWARD(cfm_hwo_xlate_tx_result, 96, 96);
const Translator tx2_result = FORWARD(cfm_hwo_xlate_tx2_result, 64, 64);
const Translator rx_result = FORWARD(cfm_hwo_xlate_rx_result, 24, 24);
const Translator tx_back = REVERSE(cfm_logical_hwo_xlate_tx_result, 96, 96);
const Translator tx2_back = REVERSE(cfm_logical_hwo_xlate_tx2_result, 64, 64);
const Translator rx_back = REVERSE(cfm_logical_hwo_xlate_rx_result, 24, 24);

// ---- Models ----

Reply tx_key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-3 = L0-3"};
    out.assign(4, 0);
    rows.apply(in, out);
    return {.length = 4};
}

Reply rx_key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-1 = L0-1", "P2 = L2", "P3.4-0 = L3.4-0", "P3.7-5 = L3.7-5", "P4 = L4",
    };
    out.assign(5, 0);
    rows.apply(in, out);
    return {.length = 5};
}

Reply tx_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P0.5 = L0.5",
        "P1 = L1",
        "P2-5 = swap L2-5",
        "P6-9 = swap L6-9",
        "P10 = L10",
        "P11 = L11",
        "P12-17 = L12-17",
        "P18-23 = L18-23",
        "P24-31 = L24-31",
        "P32.7-4 = L32.7-4",
        "P32.3-0 = 0x1",
        "P33-34 = swap L33-34",
        "P35-37 = swap L35-37",
        "P38-40 = swap L38-40",
        "P41-43 = swap L41-43",
        "P44-46 = swap L44-46",
        "P51-52 = swap L51-52",
        "P47.7-5 = L47.2-0",
        "P47.4-0 = 0",
        "P48 = L48",
        "P49.7 = L49.0",
        "P49.2-0 = L49.7-5",
        "P49.6-3 = 0",
        "P50 = 0x46",
        "P53-63 = L53-63",
        "P64.7-4 = L64.7-4",
        "P64.3-0 = 0x1",
        "P65-95 = L65-95",
    };
    out.assign(96, 0);
    rows.apply(in, out);
    return {.length = 96};
}

Reply tx_back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0 = 0x11",         "L1 = P1",         "L10 = P10",         "L11 = P11",         "L2-5 = P2-5",
        "L6-9 = P6-9",       "L33-34 = P33-34", "L51-52 = P51-52",   "L35-46 = P35-46",   "L12-31 = P12-31",
        "L32.7-4 = P32.7-4", "L32.3-0 = 0x1",   "L47.2-0 = P47.7-5", "L48 = P48",         "L49.0 = P49.7",
        "L49.7-5 = P49.2-0", "L50 = P50",       "L53-63 = P53-63",   "L64.7-4 = P64.7-4", "L64.3-0 = 0x1",
        "L65-95 = P65-95",
    };
    out.assign(96, 0);
    rows.apply(in, out);
    return {};
}

Reply tx2_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",   "P1 = L1",       "P2.7-4 = L2.3-0", "P2.3-0 = 0",
        "P3-8 = L3-8", "P9-31 = L9-31", "P32 = 0x01",      "P33-63 = L33-63",
    };
    out.assign(64, 0);
    rows.apply(in, out);
    return {.length = 64};
}

Reply tx2_back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0 = 0x11", "L1 = P1", "L2.3-0 = P2.7-4", "L2.7-4 = 0", "L3-31 = P3-31", "L32 = 0x01", "L33-63 = P33-63",
    };
    out.assign(64, 0);
    rows.apply(in, out);
    return {};
}

Reply rx_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.7-6 = L0.7-6",  "P0.5 = 0", "P0.4 = 1",           "P0.3-1 = L0.3-1",      "P0.0 = 1",        "P1-2 = L1-2",
        "P4-6 = swap L4-6", "P7 = L7",  "P8-10 = swap L8-10", "P12-14 = swap L12-14", "P16-19 = L16-19",
    };
    out.assign(24, 0);
    rows.apply(in, out);
    return {.length = 24};
}

Reply rx_back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0.7-6 = P0.7-6", "L0.5 = 0", "L0.4 = 1",      "L0.3-1 = P0.3-1", "L0.0 = 1",        "L1-2 = P1-2",
        "L4-6 = P4-6",     "L7 = P7",  "L8-10 = P8-10", "L12-14 = P12-14", "L16-19 = P16-19",
    };
    out.assign(24, 0);
    rows.apply(in, out);
    return {};
}

// ---- Every bit ----

struct Reading {
    const Translator& translator;
    Model model;
};

const std::vector<Reading> readings{
    {tx_key, tx_key_model},         {rx_key, rx_key_model},     {tx_result, tx_result_model}, {tx_back, tx_back_model},
    {tx2_result, tx2_result_model}, {tx2_back, tx2_back_model}, {rx_result, rx_result_model}, {rx_back, rx_back_model},
};

const support::Models models{{tx_key, tx_key_model},         {rx_key, rx_key_model},       {tx_result, tx_result_model},
                             {tx2_result, tx2_result_model}, {rx_result, rx_result_model}, {tx_back, tx_back_model},
                             {tx2_back, tx2_back_model},     {rx_back, rx_back_model}};

TEST(Cfm, EveryBitGoesWhereItBelongs) {
    for (const auto& [translator, model] : readings) {
        const std::size_t size = translator.in_size;
        walk(translator, model, {Bytes(size), Bytes(size, 0xff), counting(size, 0x81)});
    }
}

TEST(Cfm, RandomRecordsAreTranslatedAsDocumented) {
    for (const auto& [translator, model] : readings) {
        check_random(translator, model);
    }
}

TEST(Cfm, NoTranslatorLooksAtTheLengthItIsGiven) {
    const std::vector<std::pair<Translator, std::optional<std::uint32_t>>> reported{
        {tx_key, 4},      {rx_key, 5},
        {tx_result, 96},  {tx_back, std::nullopt},
        {tx2_result, 64}, {tx2_back, std::nullopt},
        {rx_result, 24},  {rx_back, std::nullopt},
    };
    for (const auto& [translator, reported_length] : reported) {
        const Bytes record = counting(translator.in_size, 1);
        const Bytes expected = translate(translator, record).out;
        for (const std::int32_t length : {-1, 0, 1, 0x7fffffff}) {
            const Outcome outcome = translate_with_length(translator, record, length);
            EXPECT_EQ(outcome.status, 0) << translator.name;
            EXPECT_EQ(outcome.length, reported_length) << translator.name;
            EXPECT_EQ(hex(outcome.out), hex(expected)) << translator.name;
        }
    }
}

TEST(Cfm, IsReachedByNameOnly) {
    for (const npxlate_l2p_entry& entry : l2p_ucode_func_table) {
        for (npxlate_key_fn* key : {&cfm_hwo_xlate_tx_key, &cfm_hwo_xlate_rx_key}) {
            EXPECT_NE(entry.key, key);
        }
        for (npxlate_result_fn* result :
             {&cfm_hwo_xlate_tx_result, &cfm_hwo_xlate_tx2_result, &cfm_hwo_xlate_rx_result}) {
            EXPECT_NE(entry.result, result);
        }
    }
    for (npxlate_reverse_fn* const entry : p2l_ucode_func_table) {
        for (npxlate_reverse_fn* back :
             {&cfm_logical_hwo_xlate_tx_result, &cfm_logical_hwo_xlate_tx2_result, &cfm_logical_hwo_xlate_rx_result}) {
            EXPECT_NE(entry, back);
        }
    }
}

// ---- Keys ----

TEST(CfmKeys, AreCopiedUnchanged) {
    EXPECT_EQ(hex(translate(tx_key, bytes("12 34 56 78")).out), "12 34 56 78");
    EXPECT_EQ(hex(translate(rx_key, bytes("12 34 56 78 9a")).out), "12 34 56 78 9a");
    EXPECT_EQ(hex(translate(rx_key, bytes("00 00 00 e0 00")).out), "00 00 00 e0 00");
    EXPECT_EQ(hex(translate(rx_key, bytes("00 00 ff 1f 00")).out), "00 00 ff 1f 00");
}

// ---- Transmit result ----

TEST(CfmTxResult, OfZerosHoldsOnlyTheConstants) {
    const Outcome outcome = translate(tx_result, Bytes(96), Bytes(96, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 96U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 46 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(CfmTxResult, OfOnesLeavesOutTheBitsThatAreNotCarried) {
    EXPECT_EQ(hex(translate(tx_result, Bytes(96, 0xff)).out),
              "31 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "f1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff e0 "
              "ff 87 46 ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "f1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff");
}

// Each logical byte holds its own number.
constexpr const char* counted_tx_result =
    "11 01 05 04 03 02 09 08 07 06 0a 0b 0c 0d 0e 0f "
    "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
    "21 22 21 25 24 23 28 27 26 2b 2a 29 2e 2d 2c e0 "
    "30 81 46 34 33 35 36 37 38 39 3a 3b 3c 3d 3e 3f "
    "41 41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f "
    "50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f";

TEST(CfmTxResult, SwapsTheValuesAndKeepsTheRest) {
    EXPECT_EQ(hex(translate(tx_result, counting(96)).out), counted_tx_result);
}

TEST(CfmTxResult, HasTheConstant46InP50WhateverL50Holds) {
    for (const int value : {0x00, 0x46, 0xb9, 0xff}) {
        Bytes logical(96);
        logical[50] = static_cast<std::uint8_t>(value);
        EXPECT_EQ(translate(tx_result, logical).out[50], 0x46);
    }
}

TEST(CfmTxResult, MovesTheEndsOfL49) {
    Bytes logical(96);
    logical[49] = 0xe1;
    EXPECT_EQ(translate(tx_result, logical).out[49], 0x87);
    Bytes physical(96);
    physical[49] = 0x87;
    EXPECT_EQ(translate(tx_back, physical).out[49], 0xe1);
}

TEST(CfmTxResult, CarriesTheseBits) {
    EXPECT_EQ(changes(tx_result, Bytes(96), "L0.5"), "P0.5");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L2.0"), "P5.0");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L9.7"), "P6.7");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L32.4"), "P32.4");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L44.3"), "P46.3");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L47.2"), "P47.7");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L47.0"), "P47.5");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L49.0"), "P49.7");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L49.5"), "P49.0");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L49.7"), "P49.2");
    EXPECT_EQ(changes(tx_result, Bytes(96), "L52.1"), "P51.1");
}

TEST(CfmTxResult, DoesNotCarryTheseBits) {
    for (const char* position :
         {"L0.7",  "L0.6",  "L0.4",  "L0.3",  "L0.2",  "L0.1",  "L0.0",  "L32.3", "L32.2", "L32.1", "L32.0",
          "L47.7", "L47.6", "L47.5", "L47.4", "L47.3", "L49.4", "L49.3", "L49.2", "L49.1", "L64.3", "L64.2",
          "L64.1", "L64.0", "L50.7", "L50.6", "L50.5", "L50.4", "L50.3", "L50.2", "L50.1", "L50.0"}) {
        EXPECT_EQ(changes(tx_result, Bytes(96), position), "") << position;
    }
}

TEST(CfmTxReverse, SwapsNothingBackAndKeepsTheConstants) {
    EXPECT_EQ(hex(translate(tx_back, bytes(counted_tx_result)).out),
              "11 01 05 04 03 02 09 08 07 06 0a 0b 0c 0d 0e 0f "
              "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
              "21 22 21 25 24 23 28 27 26 2b 2a 29 2e 2d 2c 07 "
              "30 21 46 34 33 35 36 37 38 39 3a 3b 3c 3d 3e 3f "
              "41 41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f "
              "50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f");
}

TEST(CfmTxReverse, OfZerosStillSetsTheHeaderBitsAndTheLowNibbles) {
    const Outcome outcome = translate(tx_back, Bytes(96), Bytes(96, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(CfmTxReverse, OfOnesLeavesOutTheBitsThatAreNotRestored) {
    EXPECT_EQ(hex(translate(tx_back, Bytes(96, 0xff)).out),
              "11 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "f1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff 07 "
              "ff e1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "f1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff");
}

TEST(CfmTxReverse, DoesNotRestoreL0) {
    for (const char* position : {"P0.7", "P0.6", "P0.5", "P0.4", "P0.3", "P0.2", "P0.1", "P0.0"}) {
        EXPECT_EQ(changes(tx_back, Bytes(96), position), "") << position;
    }
}

TEST(CfmTxReverse, BringsBackTheConstantOfL50) {
    Bytes logical(96);
    logical[50] = 0xff;
    EXPECT_EQ(translate(tx_back, translate(tx_result, logical).out).out[50], 0x46);
}

// ---- Second transmit result ----

constexpr const char* counted_tx2_result =
    "11 01 20 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f "
    "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
    "01 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f "
    "30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f";

TEST(CfmTx2Result, KeepsTheOrderOfAllBytes) {
    const Outcome outcome = translate(tx2_result, counting(64));
    EXPECT_EQ(hex(outcome.out), counted_tx2_result);
    EXPECT_EQ(outcome.length, 64U);
}

TEST(CfmTx2Result, IgnoresL0TheHighNibbleOfL2AndL32) {
    Bytes logical(64);
    logical[0] = 0xff;
    logical[2] = 0xf0;
    logical[32] = 0xff;
    EXPECT_EQ(hex(translate(tx2_result, logical).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    for (const char* position : {"L0.5", "L2.7", "L2.6", "L2.5", "L2.4", "L32.7", "L32.4", "L32.0"}) {
        EXPECT_EQ(changes(tx2_result, Bytes(64, 0xff), position), "") << position;
    }
}

TEST(CfmTx2Result, CarriesTheLowNibbleOfL2) {
    EXPECT_EQ(changes(tx2_result, Bytes(64), "L2.3"), "P2.7");
    EXPECT_EQ(changes(tx2_result, Bytes(64), "L2.0"), "P2.4");
    EXPECT_EQ(changes(tx2_back, Bytes(64), "P2.4"), "L2.0");
    EXPECT_EQ(changes(tx2_back, Bytes(64), "P2.3"), "");
}

TEST(CfmTx2Reverse, SetsTheHeaderBitsAndTheConstantOfL32) {
    EXPECT_EQ(hex(translate(tx2_back, bytes(counted_tx2_result)).out),
              "11 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f "
              "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
              "01 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f "
              "30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f");
    const Bytes ones = translate(tx2_back, Bytes(64, 0xff)).out;
    EXPECT_EQ(ones[0], 0x11);
    EXPECT_EQ(ones[2], 0x0f);
    EXPECT_EQ(ones[32], 0x01);
    const Bytes zeros = translate(tx2_back, Bytes(64)).out;
    EXPECT_EQ(zeros[0], 0x11);
    EXPECT_EQ(zeros[32], 0x01);
}

// ---- Receive result ----

constexpr const char* counted_rx_result = "11 01 02 00 06 05 04 07 0a 09 08 00 0e 0d 0c 00 10 11 12 13 00 00 00 00";

TEST(CfmRxResult, SwapsTheThree24BitValues) {
    const Outcome outcome = translate(rx_result, counting(24), Bytes(24, 0xee));
    EXPECT_EQ(hex(outcome.out), counted_rx_result);
    EXPECT_EQ(outcome.length, 24U);
}

TEST(CfmRxResult, DropsL05AndSetsTheHeaderBits) {
    EXPECT_EQ(hex(translate(rx_result, Bytes(24, 0xff)).out),
              "df ff ff 00 ff ff ff ff ff ff ff 00 ff ff ff 00 ff ff ff ff 00 00 00 00");
    EXPECT_EQ(translate(rx_result, Bytes(24)).out[0], 0x11);
    EXPECT_EQ(changes(rx_result, Bytes(24), "L0.7"), "P0.7");
    EXPECT_EQ(changes(rx_result, Bytes(24), "L0.6"), "P0.6");
    EXPECT_EQ(changes(rx_result, Bytes(24), "L0.3"), "P0.3");
    EXPECT_EQ(changes(rx_result, Bytes(24), "L0.1"), "P0.1");
    for (const char* position : {"L0.5", "L0.4", "L0.0"}) {
        EXPECT_EQ(changes(rx_result, Bytes(24), position), "") << position;
    }
}

TEST(CfmRxResult, DoesNotCarryTheGaps) {
    EXPECT_EQ(
        hex(translate(rx_result, bytes("31 00 00 ff 00 00 00 00 00 00 00 ff 00 00 00 ff 00 00 00 00 ff ff ff ff")).out),
        "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(CfmRxReverse, SwapsNothingBack) {
    EXPECT_EQ(hex(translate(rx_back, bytes(counted_rx_result)).out),
              "11 01 02 00 06 05 04 07 0a 09 08 00 0e 0d 0c 00 10 11 12 13 00 00 00 00");
}

TEST(CfmRxReverse, SetsTheHeaderBitsAndDropsP05) {
    EXPECT_EQ(hex(translate(rx_back, Bytes(24, 0xff)).out),
              "df ff ff 00 ff ff ff ff ff ff ff 00 ff ff ff 00 ff ff ff ff 00 00 00 00");
    EXPECT_EQ(hex(translate(rx_back, Bytes(24), Bytes(24, 0xee)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

}  // namespace
