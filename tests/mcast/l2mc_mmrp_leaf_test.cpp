// MMRP leaf: keyed by a MAC address, yields a node reference that reads back one byte higher than it was written.
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

const Translator key = FORWARD(l2mc_mmrp_leaf_key_xlate, 10, 9);
const Translator result = FORWARD(l2mc_mmrp_leaf_res_xlate, 4, 8);
const Translator readback = REVERSE(l2mc_mmrp_leaf_logical_res_xlate, 8, 4);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-5 = L4-9",
        "P6 = L0",
        "P7 = L1",
        "P8 = 0",
    };
    fill(out, 0, 8);
    rows.apply(in, out);
    return {.length = 9};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11", "P1 = L0", "P2 = L1", "P3 = L2", "P4-7 = 0",
    };
    fill(out, 0, 7);
    rows.apply(in, out);
    return {.length = 8};
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0 = 0",
        "L1 = P1",
        "L2 = P2",
        "L3 = P3",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(L2mcMmrpLeaf, EveryTranslatorCarriesItsRowsAndNothingElse) {
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

TEST(L2mcMmrpLeaf, KeyPutsTheAddressBeforeTheValueAndSwapsNothing) {
    const Outcome outcome = translate(key, bytes("01 02 ee ee 0a 0b 0c 0d 0e 0f"), Bytes(9, 0xff));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 9U);
    EXPECT_EQ(hex(outcome.out), "0a 0b 0c 0d 0e 0f 01 02 00");
    EXPECT_EQ(changes(key, Bytes(10), "L2.0"), "");
    EXPECT_EQ(changes(key, Bytes(10), "L3.7"), "");
    EXPECT_EQ(changes(key, Bytes(10), "L4.0"), "P0.0");
    EXPECT_EQ(changes(key, Bytes(10), "L1.7"), "P7.7");
}

TEST(L2mcMmrpLeaf, ResultKeepsTheByteOrderOfTheNodeReference) {
    const Outcome outcome = translate(result, bytes("01 02 03 ff"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 01 02 03 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(4)).out), "11 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, Bytes(4), "L3.0"), "");
    EXPECT_EQ(changes(result, Bytes(4), "L3.7"), "");
}

TEST(L2mcMmrpLeaf, ReadbackShiftsTheReferenceUpByAByte) {
    EXPECT_EQ(hex(translate(readback, bytes("11 01 02 03 a4 a5 a6 a7"), Bytes(4, 0xff)).out), "00 01 02 03");
    for (const char* unused : {"P0.0", "P0.4", "P4.0", "P7.7"}) {
        EXPECT_EQ(changes(readback, Bytes(8), unused), "") << unused;
    }
}

TEST(L2mcMmrpLeaf, RoundTripMovesTheReferenceByAByte) {
    EXPECT_EQ(hex(translate(readback, translate(result, bytes("01 02 03 00")).out).out), "00 01 02 03");
    EXPECT_EQ(hex(translate(readback, translate(result, bytes("01 02 03 ff")).out).out), "00 01 02 03");
}

TEST(L2mcMmrpLeaf, ReadbackTakesItsExactLengthAndElseWritesNothing) { expect_exact_length(readback); }

TEST(L2mcMmrpLeaf, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(L2mcMmrpLeaf, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[112].key, l2mc_mmrp_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[112].result, l2mc_mmrp_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[112], l2mc_mmrp_leaf_logical_res_xlate);
}

}  // namespace
