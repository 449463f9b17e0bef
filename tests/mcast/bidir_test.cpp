// Bidirectional PIM: sixteen bytes carried as they are, behind a key of which one value is masked.
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

const Translator key = FORWARD(ipmc_bidir_key_xlate, 6, 5);
const Translator result = FORWARD(ipmc_bidir_res_xlate, 16, 20);
const Translator readback = REVERSE(ipmc_bidir_logical_res_xlate, 20, 48);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-2 = swap L0-2",
        "P3.7 = L4.7",
        "P3.6-0 = 0",
        "P4 = L5",
    };
    rows.apply(in, out);
    return {.length = 5};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P4-19 = L0-15",
    };
    fill(out, 0, 19);
    rows.apply(in, out);
    return {.length = 20};
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"L0-15 = P4-19"};
    fill(out, 0, 47);
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(Bidir, EveryTranslatorCarriesItsRowsAndNothingElse) {
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

TEST(Bidir, KeySwapsTheFirstValueAndMasksTheSecond) {
    const Outcome outcome = translate(key, bytes("01 02 03 ee ff 01"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 5U);
    EXPECT_EQ(hex(outcome.out), "03 02 01 80 01");
    EXPECT_EQ(hex(translate(key, bytes("00 00 00 00 7f 00")).out), "00 00 00 00 00");
    EXPECT_EQ(hex(translate(key, bytes("00 00 00 00 80 ff"), Bytes(5, 0xff)).out), "00 00 00 80 ff");
    for (const char* unused : {"L3.0", "L3.7", "L4.0", "L4.6"}) {
        EXPECT_EQ(changes(key, Bytes(6), unused), "") << unused;
    }
    EXPECT_EQ(changes(key, Bytes(6), "L4.7"), "P3.7");
    EXPECT_EQ(changes(key, Bytes(6), "L5.0"), "P4.0");
}

TEST(Bidir, ResultKeepsTheByteOrder) {
    const Outcome outcome = translate(result, counting(16, 1));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 20U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10");
    EXPECT_EQ(hex(translate(result, Bytes(16)).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(Bidir, ReadbackReturnsSixteenBytesAndNoHeader) {
    EXPECT_EQ(hex(translate(readback, counting(20), Bytes(48, 0xff)).out),
              hex(bytes("04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
    for (const char* unused : {"P0.0", "P0.4", "P0.7", "P1.0", "P2.0", "P3.7"}) {
        EXPECT_EQ(changes(readback, Bytes(20), unused), "") << unused;
    }
}

TEST(Bidir, RoundTripRestoresTheRecord) {
    EXPECT_EQ(
        hex(translate(readback, translate(result, bytes("f0 e1 d2 c3 b4 a5 96 87 78 69 5a 4b 3c 2d 1e 0f")).out).out),
        hex(bytes("f0 e1 d2 c3 b4 a5 96 87 78 69 5a 4b 3c 2d 1e 0f"
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
}

TEST(Bidir, ReadbackTakesItsExactLengthAndElseWritesNothing) { expect_exact_length(readback); }

TEST(Bidir, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(Bidir, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[113].key, ipmc_bidir_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[113].result, ipmc_bidir_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[113], ipmc_bidir_logical_res_xlate);
}

}  // namespace
