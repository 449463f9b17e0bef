// Layer-2 multicast node: flags and nine values, one of them kept in host byte order and one also flagged when
// non-zero.
#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using support::bytes;
using support::Bytes;
using support::changes;
using support::check_random;
using support::counting;
using support::fill;
using support::hex;
using support::Outcome;
using support::Reply;
using support::Rows;
using support::translate;
using support::Translator;
using support::walk;

const Translator key = FORWARD(l2mc_ipv4_node_key_xlate, 3, 3);
const Translator result = FORWARD(l2mc_ipv4_node_res_xlate, 56, 32);
const Translator readback = REVERSE(l2mc_ipv4_node_logical_res_xlate, 32, 56);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P0.7 = L16.0",
        "P1.7 = L21.0",
        "P1.6 = L16.1",
        "P1.5 = any L28-29",
        "P1.4 = L20.0",
        "P2-5 = swap L12-15",
        "P6-9 = L24-27",
        "P10 = L8",
        "P11 = L9",
        "P12 = L10",
        "P13 = 0",
        "P14-16 = swap L52-54",
        "P17-19 = swap L48-50",
        "P20-22 = swap L44-46",
        "P23-25 = swap L0-2",
        "P26-27 = swap L28-29",
        "P28-29 = swap L30-31",
        "P30-31 = swap L32-33",
    };
    fill(out, 0, 31);
    rows.apply(in, out);
    return {.length = 32};
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L16.0 = P0.7",
        "L16.1 = P1.6",
        "L20.0 = P1.4",
        "L21.0 = P1.7",
        "L12-15 = swap P2-5",
        "L24-27 = P6-9",
        "L8 = P10",
        "L9 = P11",
        "L10 = P12",
        "L52-54 = swap P14-16",
        "L48-50 = swap P17-19",
        "L44-46 = swap P20-22",
        "L0-2 = swap P23-25",
        "L28-29 = swap P26-27",
        "L30-31 = swap P28-29",
        "L32-33 = swap P30-31",
    };
    fill(out, 0, 55);
    rows.apply(in, out);
    return {};
}

// All flags set, and every other byte telling its position.
Bytes sample() {
    Bytes record = counting(56);
    record[16] = 0x03;
    record[20] = 0x01;
    record[21] = 0x01;
    return record;
}

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(L2mcNode, EveryTranslatorCarriesItsRowsAndNothingElse) {
    const struct {
        const Translator& translator;
        Reply (*model)(const Bytes&, Bytes&);
    } readings[] = {
        {key, key_model},
        {result, result_model},
        {readback, readback_model},
    };
    for (const auto& [translator, model] : readings) {
        const std::size_t size = translator.in_size;
        walk(translator, model, {Bytes(size), Bytes(size, 0xff), counting(size, 0x81)});
        check_random(translator, model);
    }
}

TEST(L2mcNode, ResultWithoutTheFlaggedValueCarriesItsRowsAndNothingElse) {
    const auto shape = [](Bytes& in) { fill(in, 28, 29); };
    for (Bytes base : {Bytes(56, 0xff), counting(56, 0x81), sample()}) {
        shape(base);
        walk(result, result_model, base);
    }
    check_random(result, result_model, 500, shape);
}

TEST(L2mcNode, KeyKeepsItsByteOrder) {
    const Outcome outcome = translate(key, bytes("01 02 03"), Bytes(3, 0xff));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "01 02 03");
}

TEST(L2mcNode, ResultOfZerosHoldsTheHeaderAlone) {
    const Outcome outcome = translate(result, Bytes(56));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2mcNode, ResultPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(result, sample()).out),
              "91 f0 0f 0e 0d 0c 18 19 1a 1b 08 09 0a 00 36 35 34 32 31 30 2e 2d 2c 02 01 00 1d 1c 1f 1e 21 20");
}

TEST(L2mcNode, EachFlagHasItsBit) {
    const struct {
        const char* logical;
        const char* physical;
    } flags[] = {
        {"L16.0", "P0.7"},
        {"L16.1", "P1.6"},
        {"L20.0", "P1.4"},
        {"L21.0", "P1.7"},
    };
    for (const auto& [logical, physical] : flags) {
        EXPECT_EQ(changes(result, Bytes(56), logical), physical);
        EXPECT_EQ(changes(readback, Bytes(32), physical), logical);
    }
}

TEST(L2mcNode, ANonZeroValueIsAlsoFlagged) {
    Bytes record(56);
    record[29] = 0x01;
    EXPECT_EQ(hex(translate(result, record).out),
              "11 20 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 00 00");
    EXPECT_EQ(changes(result, Bytes(56), "L28.0"), "P1.5 P27.0");
    EXPECT_EQ(changes(result, Bytes(56), "L29.7"), "P1.5 P26.7");
    EXPECT_EQ(changes(result, record, "L28.0"), "P27.0");
}

TEST(L2mcNode, ResultDropsTheBytesBetweenItsFields) {
    for (const char* unused : {"L3.0", "L4.0", "L7.7", "L11.0", "L16.2", "L16.7", "L17.0", "L19.7", "L20.1", "L21.1",
                               "L22.0", "L23.7", "L34.0", "L39.0", "L43.7", "L47.0", "L51.0", "L55.7"}) {
        EXPECT_EQ(changes(result, sample(), unused), "") << unused;
    }
}

TEST(L2mcNode, ReadbackPutsEveryValueInItsPlace) {
    Bytes physical = counting(32);
    physical[0] = 0x91;
    physical[1] = 0xf0;
    EXPECT_EQ(hex(translate(readback, physical).out), hex(bytes("19 18 17 00 00 00 00 00"      // L0-7
                                                                "0a 0b 0c 00 05 04 03 02"      // L8-15
                                                                "03 00 00 00 01 01 00 00"      // L16-23
                                                                "06 07 08 09 1b 1a 1d 1c"      // L24-31
                                                                "1f 1e 00 00 00 00 00 00"      // L32-39
                                                                "00 00 00 00 16 15 14 00"      // L40-47
                                                                "13 12 11 00 10 0f 0e 00")));  // L48-55
}

TEST(L2mcNode, ReadbackIgnoresHeaderDerivedFlagAndPadding) {
    for (const char* unused : {"P0.6", "P0.4", "P0.0", "P1.5", "P1.3", "P1.0", "P13.0", "P13.7"}) {
        EXPECT_EQ(changes(readback, Bytes(32), unused), "") << unused;
        EXPECT_EQ(changes(readback, Bytes(32, 0xff), unused), "") << unused;
    }
}

TEST(L2mcNode, RoundTripRestoresEveryField) {
    EXPECT_EQ(hex(translate(readback, translate(result, sample()).out).out), hex(bytes("00 01 02 00 00 00 00 00"
                                                                                       "08 09 0a 00 0c 0d 0e 0f"
                                                                                       "03 00 00 00 01 01 00 00"
                                                                                       "18 19 1a 1b 1c 1d 1e 1f"
                                                                                       "20 21 00 00 00 00 00 00"
                                                                                       "00 00 00 00 2c 2d 2e 00"
                                                                                       "30 31 32 00 34 35 36 00")));
}

TEST(L2mcNode, ReadbackTakesItsExactLengthAndElseWritesNothing) { expect_exact_length(readback); }

TEST(L2mcNode, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(L2mcNode, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[56].key, l2mc_ipv4_node_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[56].result, l2mc_ipv4_node_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[56], l2mc_ipv4_node_logical_res_xlate);
}

}  // namespace
