// BFD offload entries, tables 108 to 110, which they share with CFM entries, and the discriminator receive record.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator tx_key = FORWARD(bfd_hw_offload_xlate_tx_key, 4, 4);
const Translator rx_key = FORWARD(bfd_hw_offload_xlate_rx_key, 5, 5);
const Translator disc_key = FORWARD(bfd_disc_xlate_rx_key, 5, 5);
const Translator encap_result = FORWARD(bfd_hw_offload_xlate_encap_result, 96, 96);
const Translator payload_result = FORWARD(bfd_hw_offload_xlate_payload_result, 64, 64);
const Translator rx_result = FORWARD(bfd_hw_offload_xlate_rx_result, 24, 24);
const Translator disc_result = FORWARD(bfd_disc_xlate_rx_result, 24, 24);
const Translator encap_back = REVERSE(bfd_logical_hw_offload_xlate_encp_result, 96, 96);
const Translator payload_back = REVERSE(bfd_logical_hw_offload_xlate_payload_result, 64, 64);
const Translator rx_back = REVERSE(bfd_logical_hw_offload_xlate_rx_result, 24, 24);

// What records of type 1 are handed to.
const Translator cfm_tx_result = FORWARD(cfm_hwo_xlate_tx_result, 96, 96);
const Translator cfm_tx2_result = FORWARD(cfm_hwo_xlate_tx2_result, 64, 64);
const Translator cfm_rx_result = FORWARD(cfm_hwo_xlate_rx_result, 24, 24);
const Translator cfm_tx_back = REVERSE(cfm_logical_hwo_xlate_tx_result, 96, 96);
const Translator cfm_tx2_back = REVERSE(cfm_logical_hwo_xlate_tx2_result, 64, 64);
const Translator cfm_rx_back = REVERSE(cfm_logical_hwo_xlate_rx_result, 24, 24);

// ---- Models ----

// A record handed to another translator, whose own tests prove what it does with it.
Reply handed_to(const Translator& translator, const Bytes& in, Bytes& out) {
    const Outcome outcome = translate(translator, in, out);
    out = outcome.out;
    return {.status = outcome.status, .length = outcome.length};
}

Reply tx_key_model(Bytes& in, Bytes& out) {
    static const Rows common{"P3 = L0", "P2 = L1"};
    static const Rows kept{"P0-1 = L2-3"};
    static const Rows swapped{"P0-1 = swap L2-3"};
    out.assign(4, 0);
    common.apply(in, out);
    (in[1] == 4 || in[1] == 2 ? swapped : kept).apply(in, out);
    return {.length = 4};
}

// All three kinds of receive key, the discriminator's among them, are copies.
Reply rx_key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-3 = L0-3", "P4 = L4"};
    out.assign(5, 0);
    rows.apply(in, out);
    return {.length = 5};
}

Reply encap_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.7-5 = L0.7-5", "P0.4 = 1",         "P0.3-1 = L0.3-1", "P0.0 = 1",
        "P1 = L1",         "P2-5 = swap L2-5", "P6-15 = L6-15",   "P16-19 = swap L16-19",
        "P20-31 = L20-31", "P33-63 = L33-63",  "P65-95 = L65-95",
    };
    if (bits(in, 32, 7, 4) == 1) {
        return handed_to(cfm_tx_result, in, out);
    }
    out.assign(96, 0);
    rows.apply(in, out);
    return {.length = 96};
}

Reply encap_back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0.7-4 = P0.7-4", "L0.0 = P0.0",     "L1 = P1",         "L2-5 = P2-5",     "L16-19 = P16-19",
        "L6-15 = P6-15",   "L20-31 = P20-31", "L33-63 = P33-63", "L65-95 = P65-95",
    };
    if (bits(in, 32, 7, 4) == 1) {
        return handed_to(cfm_tx_back, in, out);
    }
    out.assign(96, 0);
    rows.apply(in, out);
    return {};
}

Reply payload_result_model(Bytes& in, Bytes& out) {
    static const Rows common{"P0.7-5 = L0.7-5", "P0.4 = 1", "P0.3-1 = L0.3-1", "P0.0 = 1", "P1 = L1", "P32 = 0x01"};
    static const Rows whole{"P4-27 = L4-27"};
    static const Rows reduced{"P12-15 = L12-15"};
    if (bits(in, 2, 3, 0) == 1) {
        return handed_to(cfm_tx2_result, in, out);
    }
    out.assign(64, 0);
    common.apply(in, out);
    (bit(in, 0, 5) ? reduced : whole).apply(in, out);
    return {.length = 64};
}

Reply payload_back_model(Bytes& in, Bytes& out) {
    static const Rows common{"L0.7-4 = P0.7-4", "L0.0 = P0.0", "L1 = P1", "L32.0 = P32.0"};
    static const Rows whole{"L4-27 = P4-27"};
    static const Rows reduced{"L12-15 = P12-15"};
    if (bits(in, 2, 3, 0) == 1) {
        return handed_to(cfm_tx2_back, in, out);
    }
    out.assign(64, 0);
    common.apply(in, out);
    (bit(in, 0, 5) ? reduced : whole).apply(in, out);
    return {};
}

Reply disc_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.7-5 = L0.7-5", "P0.4 = 1", "P0.3-1 = L0.3-1", "P0.0 = 1",        "P1-3 = L1-3", "P4 = 0",
        "P5.5-0 = L5.5-0", "P7 = L7",  "P8-10 = L8-10",   "P12-14 = L12-14", "P16 = L16",
    };
    out.assign(24, 0);
    rows.apply(in, out);
    return {.length = 24};
}

Reply rx_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.7-5 = L0.7-5", "P0.4 = 1",        "P0.3-1 = L0.3-1", "P0.0 = 1",      "P1 = L1",
        "P2 = L2",         "P3 = L3",         "P4-6 = L4-6",     "P8-10 = L8-10", "P12-14 = L12-14",
        "P16-18 = L16-18", "P20-22 = L20-22", "P7 = L7",
    };
    if (in[7] == 1) {
        return handed_to(cfm_rx_result, in, out);
    }
    if (in[7] == 2) {
        return disc_result_model(in, out);
    }
    out.assign(24, 0);
    rows.apply(in, out);
    return {.length = 24};
}

Reply rx_back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0.7-4 = P0.7-4", "L0.0 = P0.0",   "L1 = P1",         "L2 = P2",         "L3 = P3",
        "L4-6 = P4-6",     "L8-10 = P8-10", "L12-14 = P12-14", "L16-18 = P16-18", "L20-22 = P20-22",
    };
    if (in[7] == 1) {
        return handed_to(cfm_rx_back, in, out);
    }
    out.assign(24, 0);
    rows.apply(in, out);
    return {};
}

// ---- Every bit ----

// `record` with bits high to low of one byte set to `value`.
Bytes with(Bytes record, std::size_t byte, unsigned high, unsigned low, unsigned value) {
    set_bits(record, byte, high, low, value);
    return record;
}

// Where a record holds its type, and where the flag that chooses between layouts (if it has none, any bit will do).
struct Variants {
    std::size_t type_byte;
    unsigned type_high;
    std::vector<unsigned> types;
    std::size_t flag_byte;
    unsigned flag_bit;
};

// Walks and random records of every type with the flag both ways.
void check_variants(const Translator& translator, const Model& model, const Variants& variants) {
    for (const unsigned type : variants.types) {
        for (const bool flag : {false, true}) {
            const auto shape = [&](Bytes& record) {
                set_bits(record, variants.type_byte, variants.type_high, 0, type);
                set_bit(record, variants.flag_byte, variants.flag_bit, flag);
            };
            for (Bytes base : patterns(translator.in_size)) {
                shape(base);
                walk(translator, model, base);
            }
            check_random(translator, model, 300, shape);
        }
    }
    check_random(translator, model);
}

const support::Models models{{tx_key, tx_key_model},
                             {rx_key, rx_key_model},
                             {disc_key, rx_key_model},
                             {encap_result, encap_result_model},
                             {payload_result, payload_result_model},
                             {rx_result, rx_result_model},
                             {disc_result, disc_result_model},
                             {encap_back, encap_back_model},
                             {payload_back, payload_back_model},
                             {rx_back, rx_back_model}};

TEST(BfdTxKey, EveryBitGoesWhereItBelongs) {
    check_variants(
        tx_key, tx_key_model,
        {.type_byte = 1, .type_high = 7, .types = {0, 1, 2, 3, 4, 5, 6, 0x14, 0x82}, .flag_byte = 0, .flag_bit = 0});
}

TEST(BfdRxKey, EveryBitGoesWhereItBelongs) {
    const Variants variants{
        .type_byte = 4, .type_high = 7, .types = {0, 1, 2, 3, 7, 0x11, 0x12}, .flag_byte = 0, .flag_bit = 0};
    check_variants(rx_key, rx_key_model, variants);
    check_variants(disc_key, rx_key_model, variants);
}

TEST(BfdEncap, EveryBitGoesWhereItBelongs) {
    for (unsigned type = 0; type < 16; ++type) {
        const auto shape = [type](Bytes& record) { set_bits(record, 32, 7, 4, type); };
        check_random(encap_result, encap_result_model, 200, shape);
        check_random(encap_back, encap_back_model, 200, shape);
        if (type > 3 && type != 9) {
            continue;
        }
        for (const Bytes& pattern : patterns(96)) {
            walk(encap_result, encap_result_model, with(pattern, 32, 7, 4, type));
            walk(encap_back, encap_back_model, with(pattern, 32, 7, 4, type));
        }
    }
}

TEST(BfdPayload, EveryBitGoesWhereItBelongs) {
    const Variants variants{
        .type_byte = 2, .type_high = 3, .types = {0, 1, 2, 3, 5, 9, 15}, .flag_byte = 0, .flag_bit = 5};
    check_variants(payload_result, payload_result_model, variants);
    check_variants(payload_back, payload_back_model, variants);
}

TEST(BfdRx, EveryBitGoesWhereItBelongs) {
    const Variants variants{
        .type_byte = 7, .type_high = 7, .types = {0, 1, 2, 3, 0x11, 0x81, 0x82, 0xff}, .flag_byte = 0, .flag_bit = 5};
    check_variants(rx_result, rx_result_model, variants);
    check_variants(disc_result, disc_result_model, variants);
    check_variants(rx_back, rx_back_model, variants);
}

TEST(Bfd, NoTranslatorLooksAtTheLengthItIsGiven) {
    const std::vector<std::pair<Translator, std::optional<std::uint32_t>>> reported{
        {tx_key, 4},
        {rx_key, 5},
        {disc_key, 5},
        {encap_result, 96},
        {payload_result, 64},
        {rx_result, 24},
        {disc_result, 24},
        {encap_back, std::nullopt},
        {rx_back, std::nullopt},
        {payload_back, std::nullopt},
    };
    for (const auto& [translator, reported_length] : reported) {
        // Between them, type 1 in every record that has a type, and type 0.
        for (const int filler : {0x11, 0x01, 0x00}) {
            const Bytes record(translator.in_size, static_cast<std::uint8_t>(filler));
            const Bytes expected = translate(translator, record).out;
            for (const std::int32_t length : {-1, 0, 1, 0x7fffffff}) {
                const Outcome outcome = translate_with_length(translator, record, length);
                EXPECT_EQ(outcome.status, 0) << translator.name;
                EXPECT_EQ(outcome.length, reported_length) << translator.name;
                EXPECT_EQ(hex(outcome.out), hex(expected)) << translator.name;
            }
        }
    }
}

// ---- Keys ----

TEST(BfdTxKey, IsFullyReversedForL1Of4Or2) {
    const Outcome outcome = translate(tx_key, bytes("0a 04 12 34"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "34 12 04 0a");
    EXPECT_EQ(hex(translate(tx_key, bytes("0a 02 12 34")).out), "34 12 02 0a");
}

TEST(BfdTxKey, KeepsTheOrderOfL2To3ForAnyOtherL1) {
    EXPECT_EQ(hex(translate(tx_key, bytes("0a 03 12 34")).out), "12 34 03 0a");
    EXPECT_EQ(hex(translate(tx_key, bytes("0a 00 12 34")).out), "12 34 00 0a");
    EXPECT_EQ(hex(translate(tx_key, bytes("0a 06 12 34")).out), "12 34 06 0a");
    EXPECT_EQ(hex(translate(tx_key, bytes("0a 84 12 34")).out), "12 34 84 0a");
    EXPECT_EQ(hex(translate(tx_key, bytes("0a 12 12 34")).out), "12 34 12 0a");
}

TEST(BfdRxKey, OfEveryTypeIsTheSameCopy) {
    EXPECT_EQ(hex(translate(rx_key, bytes("12 34 56 f8 01")).out), "12 34 56 f8 01");
    EXPECT_EQ(hex(translate(rx_key, bytes("12 34 56 f8 02")).out), "12 34 56 f8 02");
    EXPECT_EQ(hex(translate(rx_key, bytes("12 34 56 f8 07")).out), "12 34 56 f8 07");
    EXPECT_EQ(hex(translate(disc_key, bytes("12 34 56 f8 07")).out), "12 34 56 f8 07");
}

// ---- Encapsulation, table 108 ----

constexpr const char* counted_encap_result =
    "11 01 05 04 03 02 06 07 08 09 0a 0b 0c 0d 0e 0f "
    "13 12 11 10 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
    "00 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f "
    "30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f "
    "00 41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f "
    "50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f";

TEST(BfdEncap, SwapsTwo32BitValues) {
    // Byte 32 of the counting record holds type 2.
    const Outcome outcome = translate(encap_result, counting(96), Bytes(96, 0xee));
    EXPECT_EQ(outcome.length, 96U);
    EXPECT_EQ(hex(outcome.out), counted_encap_result);
}

TEST(BfdEncap, HandsType1ToTheCfmTransmitTranslator) {
    Bytes logical = counting(96);
    logical[32] = 0x1f;
    const Outcome outcome = translate(encap_result, logical);
    EXPECT_EQ(outcome, translate(cfm_tx_result, logical));
    EXPECT_EQ(outcome.out[32], 0x11);
    EXPECT_EQ(outcome.out[50], 0x46);
    EXPECT_EQ(hex(Bytes(outcome.out.begin() + 6, outcome.out.begin() + 10)), "09 08 07 06");
}

TEST(BfdEncap, TakesItsOwnPathForType2AndLosesTheType) {
    Bytes logical = counting(96);
    logical[32] = 0x2f;
    const Bytes physical = translate(encap_result, logical).out;
    EXPECT_EQ(physical[32], 0x00);
    EXPECT_EQ(physical[50], 0x32);
    EXPECT_EQ(hex(physical), counted_encap_result);
}

TEST(BfdEncap, TakesOnlyTheHighNibbleOfL32ForTheType) {
    Bytes logical(96);
    logical[32] = 0x01;
    EXPECT_EQ(translate(encap_result, logical).out[50], 0x00);
    logical[32] = 0x10;
    EXPECT_EQ(translate(encap_result, logical).out[50], 0x46);
    logical[32] = 0x91;
    EXPECT_EQ(translate(encap_result, logical).out[50], 0x00);
}

TEST(BfdEncap, KeepsL0ButForTheHeaderBits) {
    EXPECT_EQ(translate(encap_result, Bytes(96)).out[0], 0x11);
    EXPECT_EQ(translate(encap_result, Bytes(96, 0xff)).out[0], 0xff);
    EXPECT_EQ(changes(encap_result, Bytes(96), "L0.7"), "P0.7");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L0.5"), "P0.5");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L0.1"), "P0.1");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L0.4"), "");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L0.0"), "");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L16.0"), "P19.0");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L32.0"), "");
    EXPECT_EQ(changes(encap_result, Bytes(96), "L64.7"), "");
}

TEST(BfdEncapReverse, SwapsNothingBack) {
    const Outcome outcome = translate(encap_back, bytes(counted_encap_result), Bytes(96, 0xee));
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out),
              "11 01 05 04 03 02 06 07 08 09 0a 0b 0c 0d 0e 0f "
              "13 12 11 10 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
              "00 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f "
              "30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f "
              "00 41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f "
              "50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f");
}

TEST(BfdEncapReverse, DoesNotRestoreL32AndL64) {
    const Bytes logical = translate(encap_back, Bytes(96, 0xff)).out;
    EXPECT_EQ(logical[0], 0xf1);
    EXPECT_EQ(logical[32], 0x00);
    EXPECT_EQ(logical[64], 0x00);
}

TEST(BfdEncapReverse, FindsCfmEntries) {
    Bytes logical(96);
    logical[32] = 0x10;
    const Bytes physical = translate(encap_result, logical).out;
    EXPECT_EQ(physical[32], 0x11);
    const Bytes read_back = translate(encap_back, physical).out;
    EXPECT_EQ(read_back, translate(cfm_tx_back, physical).out);
    EXPECT_EQ(read_back[0], 0x11);
    EXPECT_EQ(read_back[32], 0x11);
    EXPECT_EQ(read_back[50], 0x46);
    EXPECT_EQ(read_back[64], 0x01);
}

// ---- Payload, table 109 ----

TEST(BfdPayload, CarriesL4To27WhenL05IsClear) {
    // Byte 2 of the counting record holds type 2.
    const Outcome outcome = translate(payload_result, counting(64), Bytes(64, 0xee));
    EXPECT_EQ(outcome.length, 64U);
    EXPECT_EQ(hex(outcome.out),
              "11 01 00 00 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f "
              "10 11 12 13 14 15 16 17 18 19 1a 1b 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(BfdPayload, CarriesOnlyL12To15WhenL05IsSet) {
    Bytes logical = counting(64);
    logical[0] = 0x20;
    EXPECT_EQ(hex(translate(payload_result, logical).out),
              "31 01 00 00 00 00 00 00 00 00 00 00 0c 0d 0e 0f "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    for (const char* position : {"L4.0", "L11.7", "L16.0", "L27.7", "L32.0", "L33.0", "L2.7", "L3.0"}) {
        EXPECT_EQ(changes(payload_result, logical, position), "") << position;
    }
}

TEST(BfdPayload, HandsType1ToTheCfmTranslator) {
    Bytes logical = counting(64);
    logical[2] = 0x21;
    const Outcome outcome = translate(payload_result, logical);
    EXPECT_EQ(outcome, translate(cfm_tx2_result, logical));
    EXPECT_EQ(outcome.length, 64U);
    EXPECT_EQ(outcome.out[2], 0x10);
    EXPECT_EQ(outcome.out[3], 0x03);
    EXPECT_EQ(outcome.out[63], 0x3f);
}

TEST(BfdPayload, TakesOnlyTheLowNibbleOfL2ForTheType) {
    Bytes logical = counting(64);
    logical[2] = 0x12;
    const Bytes physical = translate(payload_result, logical).out;
    EXPECT_EQ(physical[2], 0x00);
    EXPECT_EQ(physical[3], 0x00);
    EXPECT_EQ(physical[63], 0x00);
}

TEST(BfdPayload, ReadsACfmEntryBackOnItsOwnPath) {
    Bytes logical = counting(64);
    logical[2] = 0x21;
    const Bytes physical = translate(payload_result, logical).out;
    EXPECT_EQ(hex(physical),
              "11 01 10 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f "
              "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
              "01 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f "
              "30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f");
    EXPECT_EQ(hex(translate(payload_back, physical).out),
              "11 01 00 00 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f "
              "10 11 12 13 14 15 16 17 18 19 1a 1b 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(BfdPayloadReverse, HandsTypeInTheLowNibbleOfP2ToTheCfmTranslator) {
    Bytes physical = counting(64);
    physical[2] = 0x21;
    const Bytes logical = translate(payload_back, physical).out;
    EXPECT_EQ(logical, translate(cfm_tx2_back, physical).out);
    EXPECT_EQ(logical[0], 0x11);
    EXPECT_EQ(logical[2], 0x02);
    EXPECT_EQ(logical[63], 0x3f);
}

TEST(BfdPayloadReverse, RestoresTheBytesThatP05SaysAndOneBitOfP32) {
    EXPECT_EQ(hex(translate(payload_back, Bytes(64, 0xff), Bytes(64, 0xee)).out),
              "f1 ff 00 00 00 00 00 00 00 00 00 00 ff ff ff ff "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    Bytes whole(64, 0xff);
    whole[0] = 0xdf;
    EXPECT_EQ(hex(translate(payload_back, whole).out),
              "d1 ff 00 00 ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff 00 00 00 00 "
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(translate(payload_back, Bytes(64)).out[32], 0x00);
}

// ---- Receive, table 110 ----

TEST(BfdRx, KeepsTheOrderOfAllBytes) {
    const Outcome outcome = translate(rx_result, counting(24), Bytes(24, 0xee));
    EXPECT_EQ(outcome.length, 24U);
    EXPECT_EQ(hex(outcome.out), "11 01 02 03 04 05 06 07 08 09 0a 00 0c 0d 0e 00 10 11 12 00 14 15 16 00");
}

TEST(BfdRx, OfOnesLeavesOutTheGaps) {
    EXPECT_EQ(hex(translate(rx_result, Bytes(24, 0xff)).out),
              "ff ff ff ff ff ff ff ff ff ff ff 00 ff ff ff 00 ff ff ff 00 ff ff ff 00");
    for (const char* position : {"L0.4", "L0.0", "L11.0", "L15.7", "L19.3", "L23.5"}) {
        EXPECT_EQ(changes(rx_result, Bytes(24), position), "") << position;
    }
}

TEST(BfdRx, HandsType1ToTheCfmTranslator) {
    Bytes logical = counting(24);
    logical[7] = 1;
    const Outcome outcome = translate(rx_result, logical);
    EXPECT_EQ(outcome, translate(cfm_rx_result, logical));
    EXPECT_EQ(hex(outcome.out), "11 01 02 00 06 05 04 01 0a 09 08 00 0e 0d 0c 00 10 11 12 13 00 00 00 00");
}

TEST(BfdRx, HandsType2ToTheDiscriminatorTranslator) {
    Bytes logical = counting(24);
    logical[7] = 2;
    const Outcome outcome = translate(rx_result, logical);
    EXPECT_EQ(outcome, translate(disc_result, logical));
    EXPECT_EQ(hex(outcome.out), "11 01 02 03 00 05 00 02 08 09 0a 00 0c 0d 0e 00 10 00 00 00 00 00 00 00");
}

TEST(BfdRx, TakesTheWholeOfL7ForTheType) {
    Bytes logical = counting(24);
    for (const int type : {0x11, 0x12, 0x81, 0x82, 0x03}) {
        logical[7] = static_cast<std::uint8_t>(type);
        EXPECT_EQ(translate(rx_result, logical).out[22], 0x16) << type;
        EXPECT_EQ(translate(rx_result, logical).out[7], type) << type;
    }
}

TEST(BfdDisc, DropsTheHighBitsOfL5AndAllOfL4AndL6) {
    const Outcome outcome = translate(disc_result, Bytes(24, 0xff), Bytes(24, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 24U);
    EXPECT_EQ(hex(outcome.out), "ff ff ff ff 00 3f 00 ff ff ff ff 00 ff ff ff 00 ff 00 00 00 00 00 00 00");
    for (const int value : {0x00, 0x01, 0x80, 0xff}) {
        Bytes logical(24);
        logical[4] = static_cast<std::uint8_t>(value);
        logical[5] = 0xff;
        EXPECT_EQ(hex(translate(disc_result, logical).out),
                  "11 00 00 00 00 3f 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    }
    EXPECT_EQ(changes(disc_result, Bytes(24), "L5.5"), "P5.5");
    EXPECT_EQ(changes(disc_result, Bytes(24), "L5.6"), "");
    EXPECT_EQ(changes(disc_result, Bytes(24), "L5.7"), "");
}

TEST(BfdDisc, DoesNotLookAtTheTypeWhenCalledByName) {
    EXPECT_EQ(hex(translate(disc_result, counting(24)).out),
              "11 01 02 03 00 05 00 07 08 09 0a 00 0c 0d 0e 00 10 00 00 00 00 00 00 00");
}

TEST(BfdRxReverse, LosesL7) {
    const Outcome outcome =
        translate(rx_back, bytes("11 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "11 01 02 03 04 05 06 00 08 09 0a 00 0c 0d 0e 00 10 11 12 00 14 15 16 00");
}

TEST(BfdRxReverse, ReadsAType2EntryBackWithType0) {
    Bytes logical = counting(24);
    logical[7] = 2;
    const Bytes physical = translate(rx_result, logical).out;
    EXPECT_EQ(physical[7], 0x02);
    EXPECT_EQ(hex(translate(rx_back, physical).out),
              "11 01 02 03 00 05 00 00 08 09 0a 00 0c 0d 0e 00 10 00 00 00 00 00 00 00");
    // A record that differs from the discriminator's says that no such translator is called.
    EXPECT_EQ(
        hex(translate(rx_back, bytes("ff ff ff ff ff ff ff 02 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff")).out),
        "f1 ff ff ff ff ff ff 00 ff ff ff 00 ff ff ff 00 ff ff ff 00 ff ff ff 00");
}

TEST(BfdRxReverse, HandsType1ToTheCfmTranslatorWhichRestoresL7) {
    Bytes physical(24, 0xff);
    physical[7] = 1;
    const Bytes logical = translate(rx_back, physical).out;
    EXPECT_EQ(logical, translate(cfm_rx_back, physical).out);
    EXPECT_EQ(hex(logical), "df ff ff 00 ff ff ff 01 ff ff ff 00 ff ff ff 00 ff ff ff ff 00 00 00 00");
}

// ---- What all three tables share ----

TEST(BfdReverse, LosesL03To1AndReadsTheHeaderBitsBack) {
    struct Table {
        const Translator& there;
        const Translator& back;
    };
    for (const auto& [there, back] :
         {Table{encap_result, encap_back}, Table{payload_result, payload_back}, Table{rx_result, rx_back}}) {
        Bytes logical(there.in_size);
        logical[0] = 0x0e;
        const Bytes physical = translate(there, logical).out;
        EXPECT_EQ(physical[0], 0x1f) << there.name;
        EXPECT_EQ(translate(back, physical).out[0], 0x11) << back.name;
        logical[0] = 0xe0;
        EXPECT_EQ(translate(back, translate(there, logical).out).out[0], 0xf1) << back.name;
        // Nothing is set that the physical record does not hold.
        EXPECT_EQ(translate(back, Bytes(back.in_size)).out[0], 0x00) << back.name;
        EXPECT_EQ(changes(back, Bytes(back.in_size), "P0.7"), "L0.7") << back.name;
        EXPECT_EQ(changes(back, Bytes(back.in_size), "P0.4"), "L0.4") << back.name;
        EXPECT_EQ(changes(back, Bytes(back.in_size), "P0.0"), "L0.0") << back.name;
        for (const char* position : {"P0.3", "P0.2", "P0.1"}) {
            EXPECT_EQ(changes(back, Bytes(back.in_size), position), "") << back.name << " " << position;
        }
    }
}

TEST(BfdDispatch, IsTables108To110) {
    EXPECT_EQ(l2p_ucode_func_table[108].key, &bfd_hw_offload_xlate_tx_key);
    EXPECT_EQ(l2p_ucode_func_table[108].result, &bfd_hw_offload_xlate_encap_result);
    EXPECT_EQ(p2l_ucode_func_table[108], &bfd_logical_hw_offload_xlate_encp_result);
    EXPECT_EQ(l2p_ucode_func_table[109].key, &bfd_hw_offload_xlate_tx_key);
    EXPECT_EQ(l2p_ucode_func_table[109].result, &bfd_hw_offload_xlate_payload_result);
    EXPECT_EQ(p2l_ucode_func_table[109], &bfd_logical_hw_offload_xlate_payload_result);
    EXPECT_EQ(l2p_ucode_func_table[110].key, &bfd_hw_offload_xlate_rx_key);
    EXPECT_EQ(l2p_ucode_func_table[110].result, &bfd_hw_offload_xlate_rx_result);
    EXPECT_EQ(p2l_ucode_func_table[110], &bfd_logical_hw_offload_xlate_rx_result);
}

TEST(BfdDispatch, HoldsNoDiscriminatorTranslator) {
    for (const npxlate_l2p_entry& entry : l2p_ucode_func_table) {
        EXPECT_NE(entry.key, &bfd_disc_xlate_rx_key);
        EXPECT_NE(entry.result, &bfd_disc_xlate_rx_result);
    }
}

}  // namespace
