// Layer-2 multicast leaves: the keys of the IPv4, IPv6 (S,G) and IPv6 (*,G) tables, all built from one logical key, and
// the node reference they yield.
#include <cstdint>
#include <optional>
#include <vector>

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

const Translator ipv4_key = FORWARD(l2mc_ipv4_leaf_key_xlate, 37, 11);
const Translator sg_key = FORWARD(l2v6mc_sg_leaf_key_xlate, 37, 35);
const Translator g_key = FORWARD(l2v6mc_g_leaf_key_xlate, 37, 19);
const Translator result = FORWARD(l2mc_ipv4_leaf_res_xlate, 4, 4);
const Translator sg_result = FORWARD(l2v6mc_sg_leaf_res_xlate, 4, 16);
const Translator readback = REVERSE(l2mc_ipv4_leaf_logical_res_xlate, 4, 4);
const Translator sg_readback = REVERSE(l2v6mc_sg_leaf_logical_res_xlate, 16, 4);

Reply ipv4_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = swap L5-8", "P4-7 = swap L21-24", "P8 = L0", "P9 = L1", "P10 = 0",
    };
    fill(out, 0, 10);
    if (in[4] != 0) {
        rows.apply(in, out);
    }
    return {.length = 11};
}

Reply sg_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = swap L5-20", "P16-31 = swap L21-36", "P32 = L0", "P33 = L1", "P34 = 0",
    };
    fill(out, 0, 34);
    rows.apply(in, out);
    return {.length = 35};
}

Reply g_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = swap L21-36",
        "P16 = L0",
        "P17 = L1",
        "P18 = 0",
    };
    fill(out, 0, 18);
    rows.apply(in, out);
    return {.length = 19};
}

const Rows result_rows{
    "P0 = 0x11",
    "P1 = L0",
    "P2 = L1",
    "P3 = L2",
};

Reply result_model(const Bytes& in, Bytes& out) {
    fill(out, 0, 3);
    result_rows.apply(in, out);
    return {.length = 4};
}

Reply sg_result_model(const Bytes& in, Bytes& out) {
    fill(out, 0, 15);
    result_rows.apply(in, out);
    return {.length = 16};
}

// Both reverse translators fill the same four bytes.
Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0 = P1",
        "L1 = P2",
        "L2 = P3",
        "L3 = 0",
    };
    rows.apply(in, out);
    return {};
}

std::vector<Bytes> bases(std::size_t size) { return {Bytes(size), Bytes(size, 0xff), counting(size, 0x81)}; }

const support::Models models{{ipv4_key, ipv4_key_model},   {sg_key, sg_key_model},       {g_key, g_key_model},
                             {result, result_model},       {sg_result, sg_result_model}, {readback, readback_model},
                             {sg_readback, readback_model}};

TEST(L2mcLeaf, EveryTranslatorCarriesItsRowsAndNothingElse) {
    const struct {
        const Translator& translator;
        Reply (*model)(const Bytes&, Bytes&);
    } readings[] = {
        {ipv4_key, ipv4_key_model},   {sg_key, sg_key_model},     {g_key, g_key_model},          {result, result_model},
        {sg_result, sg_result_model}, {readback, readback_model}, {sg_readback, readback_model},
    };
    for (const auto& [translator, model] : readings) {
        walk(translator, model, bases(translator.in_size));
        check_random(translator, model);
    }
}

TEST(L2mcLeaf, KeysOfBothKindsCarryTheirRowsAndNothingElse) {
    for (const std::uint8_t kind : {std::uint8_t{0x00}, std::uint8_t{0x01}, std::uint8_t{0x80}}) {
        const auto shape = [kind](Bytes& in) { in[4] = kind; };
        for (Bytes base : bases(37)) {
            shape(base);
            walk(ipv4_key, ipv4_key_model, base);
            walk(sg_key, sg_key_model, base);
            walk(g_key, g_key_model, base);
        }
        check_random(ipv4_key, ipv4_key_model, 500, shape);
        check_random(sg_key, sg_key_model, 500, shape);
        check_random(g_key, g_key_model, 500, shape);
    }
}

TEST(L2mcLeaf, Ipv4KeyPutsTheSourceBeforeTheGroupBothBigEndian) {
    const Outcome outcome = translate(ipv4_key, counting(37));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 11U);
    EXPECT_EQ(hex(outcome.out), "08 07 06 05 18 17 16 15 00 01 00");
    for (const char* unused : {"L2.0", "L3.7", "L9.0", "L20.7", "L25.0", "L36.7"}) {
        EXPECT_EQ(changes(ipv4_key, counting(37), unused), "") << unused;
    }
}

TEST(L2mcLeaf, Ipv4KeyStaysZeroWithoutItsMark) {
    for (Bytes record : {counting(37), Bytes(37, 0xff)}) {
        record[4] = 0;
        const Outcome outcome = translate(ipv4_key, record, Bytes(11, 0xff));
        EXPECT_EQ(outcome.status, NPXLATE_OK);
        EXPECT_EQ(outcome.length, 11U);
        EXPECT_EQ(hex(outcome.out), "00 00 00 00 00 00 00 00 00 00 00");
    }
}

TEST(L2mcLeaf, AnyBitOfTheMarkFillsTheIpv4Key) {
    for (unsigned bit = 0; bit < 8; ++bit) {
        Bytes record = counting(37);
        record[4] = static_cast<std::uint8_t>(1U << bit);
        EXPECT_EQ(hex(translate(ipv4_key, record).out), "08 07 06 05 18 17 16 15 00 01 00") << bit;
    }
}

TEST(L2mcLeaf, SgKeyPutsTheReversedSourceBeforeTheReversedGroup) {
    const Outcome outcome = translate(sg_key, counting(37));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 35U);
    EXPECT_EQ(hex(outcome.out),
              "14 13 12 11 10 0f 0e 0d 0c 0b 0a 09 08 07 06 05 "
              "24 23 22 21 20 1f 1e 1d 1c 1b 1a 19 18 17 16 15 00 01 00");
}

TEST(L2mcLeaf, GKeyIsTheReversedGroupAndTheValue) {
    const Outcome outcome = translate(g_key, counting(37));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 19U);
    EXPECT_EQ(hex(outcome.out), "24 23 22 21 20 1f 1e 1d 1c 1b 1a 19 18 17 16 15 00 01 00");
}

TEST(L2mcLeaf, GKeyIgnoresTheSource) {
    Bytes other = counting(37);
    fill(other, 5, 20, 0xee);
    EXPECT_EQ(translate(g_key, other).out, translate(g_key, counting(37)).out);
    EXPECT_EQ(changes(g_key, Bytes(37), "L5.0"), "");
    EXPECT_EQ(changes(g_key, Bytes(37), "L20.7"), "");
    EXPECT_EQ(changes(g_key, Bytes(37), "L21.0"), "P15.0");
}

TEST(L2mcLeaf, Ipv6KeysDoNotTestTheMark) {
    Bytes unmarked = counting(37);
    unmarked[4] = 0;
    EXPECT_EQ(translate(sg_key, unmarked), (Outcome{NPXLATE_OK, 35U, translate(sg_key, counting(37)).out, unmarked}));
    EXPECT_EQ(translate(g_key, unmarked), (Outcome{NPXLATE_OK, 19U, translate(g_key, counting(37)).out, unmarked}));
    EXPECT_EQ(changes(sg_key, unmarked, "L4.0"), "");
    EXPECT_EQ(changes(g_key, unmarked, "L4.0"), "");
}

TEST(L2mcLeaf, ResultsKeepTheByteOrderOfTheNodeReference) {
    const Outcome short_form = translate(result, bytes("01 02 03 ff"));
    EXPECT_EQ(short_form.status, NPXLATE_OK);
    EXPECT_EQ(short_form.length, 4U);
    EXPECT_EQ(hex(short_form.out), "11 01 02 03");
    const Outcome long_form = translate(sg_result, bytes("01 02 03 ff"));
    EXPECT_EQ(long_form.status, NPXLATE_OK);
    EXPECT_EQ(long_form.length, 16U);
    EXPECT_EQ(hex(long_form.out), "11 01 02 03 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2mcLeaf, ResultsOfZerosHoldTheHeaderAlone) {
    EXPECT_EQ(hex(translate(result, Bytes(4)).out), "11 00 00 00");
    EXPECT_EQ(hex(translate(sg_result, Bytes(4)).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2mcLeaf, ResultsDoNotCarryTheFourthByte) {
    for (const Translator& translator : {result, sg_result}) {
        for (const char* unused : {"L3.0", "L3.2", "L3.7"}) {
            EXPECT_EQ(changes(translator, Bytes(4), unused), "") << translator.name << " " << unused;
        }
        EXPECT_EQ(changes(translator, Bytes(4), "L0.0"), "P1.0");
        EXPECT_EQ(changes(translator, Bytes(4), "L2.7"), "P3.7");
    }
}

TEST(L2mcLeaf, ReadbackReturnsTheReferenceWithoutTheHeader) {
    EXPECT_EQ(hex(translate(readback, bytes("11 01 02 03")).out), "01 02 03 00");
    EXPECT_EQ(hex(translate(sg_readback, bytes("11 01 02 03 a4 a5 a6 a7 a8 a9 aa ab ac ad ae af")).out), "01 02 03 00");
    EXPECT_EQ(changes(readback, Bytes(4), "P0.4"), "");
    EXPECT_EQ(changes(sg_readback, Bytes(16), "P0.0"), "");
    EXPECT_EQ(changes(sg_readback, Bytes(16), "P4.0"), "");
    EXPECT_EQ(changes(sg_readback, Bytes(16), "P15.7"), "");
}

TEST(L2mcLeaf, RoundTripLosesOnlyTheFourthByte) {
    const Bytes logical = bytes("01 02 03 ff");
    EXPECT_EQ(hex(translate(readback, translate(result, logical).out).out), "01 02 03 00");
    EXPECT_EQ(hex(translate(sg_readback, translate(sg_result, logical).out).out), "01 02 03 00");
}

TEST(L2mcLeaf, ReadbacksTakeTheirExactLengthAndElseWriteNothing) {
    expect_exact_length(readback);
    expect_exact_length(sg_readback);
}

TEST(L2mcLeaf, TheTwoReadbacksRefuseEachOthersRecords) {
    EXPECT_EQ(translate(sg_readback, bytes("11 01 02 03")).status, NPXLATE_INVALID);
    EXPECT_EQ(translate(readback, counting(16)).status, NPXLATE_INVALID);
}

TEST(L2mcLeaf, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {ipv4_key, sg_key, g_key, result, sg_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(L2mcLeaf, TablesDispatchToTheirTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[54].key, l2mc_ipv4_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[54].result, l2mc_ipv4_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[54], l2mc_ipv4_leaf_logical_res_xlate);
    EXPECT_EQ(l2p_ucode_func_table[85].key, l2v6mc_sg_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[85].result, l2v6mc_sg_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[85], l2v6mc_sg_leaf_logical_res_xlate);
    EXPECT_EQ(l2p_ucode_func_table[86].key, l2v6mc_g_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[86].result, l2mc_ipv4_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[86], l2mc_ipv4_leaf_logical_res_xlate);
}

}  // namespace
