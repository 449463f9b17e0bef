// Layer-3 multicast leaves: the keys of the IPv4, IPv6 (S,G) and IPv6 (*,G) tables and the node reference they yield.
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

const Translator ipv4_key = FORWARD(ipv4mc_leaf_key_xlate, 10, 10);
const Translator sg_key = FORWARD(ipv6mc_sg_leaf_key_xlate, 34, 34);
const Translator g_key = FORWARD(ipv6mc_g_leaf_key_xlate, 34, 18);
const Translator result = FORWARD(ipmc_leaf_res_xlate, 4, 4);
const Translator sg_result = FORWARD(ipv6mc_sg_leaf_res_xlate, 4, 16);
const Translator readback = REVERSE(ipmc_leaf_logical_res_xlate, 4, 4);
const Translator sg_readback = REVERSE(ipv6mc_sg_leaf_logical_res_xlate, 16, 4);

Reply ipv4_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = swap L4-7",
        "P4-7 = swap L0-3",
        "P8-9 = L8-9",
    };
    fill(out, 0, 9);
    rows.apply(in, out);
    return {.length = 10};
}

Reply sg_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = swap L16-31",
        "P16-31 = swap L0-15",
        "P32-33 = L32-33",
    };
    fill(out, 0, 33);
    rows.apply(in, out);
    return {.length = 34};
}

Reply g_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = swap L0-15",
        "P16-17 = L32-33",
    };
    fill(out, 0, 17);
    rows.apply(in, out);
    return {.length = 18};
}

const Rows result_rows{
    "P0 = 0x11",
    "P1-3 = L0-2",
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
        "L0-2 = P1-3",
        "L3 = 0",
    };
    rows.apply(in, out);
    return {};
}

std::vector<Bytes> bases(std::size_t size) { return {Bytes(size), Bytes(size, 0xff), counting(size, 0x81)}; }

const support::Models models{{ipv4_key, ipv4_key_model},   {sg_key, sg_key_model},       {g_key, g_key_model},
                             {result, result_model},       {sg_result, sg_result_model}, {readback, readback_model},
                             {sg_readback, readback_model}};

TEST(IpmcLeaf, EveryTranslatorCarriesItsRowsAndNothingElse) {
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

TEST(IpmcLeaf, Ipv4KeyPutsTheSourceBeforeTheGroupBothBigEndian) {
    const Outcome outcome = translate(ipv4_key, bytes("01 02 03 04 05 06 07 08 09 0a"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 10U);
    EXPECT_EQ(hex(outcome.out), "08 07 06 05 04 03 02 01 09 0a");
}

TEST(IpmcLeaf, SgKeyPutsTheReversedSourceBeforeTheReversedGroup) {
    const Outcome outcome = translate(sg_key, counting(34));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 34U);
    EXPECT_EQ(hex(outcome.out),
              "1f 1e 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10 "
              "0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 00 20 21");
}

TEST(IpmcLeaf, GKeyIsTheReversedGroupAndTheTrailingValue) {
    const Outcome outcome = translate(g_key, counting(34));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 18U);
    EXPECT_EQ(hex(outcome.out), "0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 00 20 21");
}

TEST(IpmcLeaf, GKeyIgnoresTheSource) {
    Bytes other = counting(34);
    fill(other, 16, 31, 0xee);
    EXPECT_EQ(translate(g_key, other).out, translate(g_key, counting(34)).out);
    EXPECT_EQ(changes(g_key, Bytes(34), "L16.0"), "");
    EXPECT_EQ(changes(g_key, Bytes(34), "L31.7"), "");
    EXPECT_EQ(changes(g_key, Bytes(34), "L15.7"), "P0.7");
    EXPECT_EQ(changes(g_key, Bytes(34), "L32.0"), "P16.0");
}

TEST(IpmcLeaf, ResultKeepsTheByteOrderOfTheNodeReference) {
    const Outcome outcome = translate(result, bytes("01 02 03 00"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "11 01 02 03");
}

TEST(IpmcLeaf, SgResultIsTheSameReferenceInSixteenBytes) {
    const Outcome outcome = translate(sg_result, bytes("01 02 03 00"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 01 02 03 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(IpmcLeaf, ResultsOfZerosHoldTheHeaderAlone) {
    EXPECT_EQ(hex(translate(result, Bytes(4)).out), "11 00 00 00");
    EXPECT_EQ(hex(translate(sg_result, Bytes(4)).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(IpmcLeaf, ResultsDoNotCarryTheFourthByte) {
    for (const Translator& translator : {result, sg_result}) {
        for (const char* bit : {"L3.0", "L3.2", "L3.7"}) {
            EXPECT_EQ(changes(translator, Bytes(4), bit), "") << translator.name << " " << bit;
        }
        EXPECT_EQ(changes(translator, Bytes(4), "L0.0"), "P1.0");
        EXPECT_EQ(changes(translator, Bytes(4), "L2.7"), "P3.7");
    }
}

TEST(IpmcLeaf, ReadbackReturnsTheReferenceWithoutTheHeader) {
    EXPECT_EQ(hex(translate(readback, bytes("11 01 02 03")).out), "01 02 03 00");
    EXPECT_EQ(hex(translate(sg_readback, bytes("11 01 02 03 a4 a5 a6 a7 a8 a9 aa ab ac ad ae af")).out), "01 02 03 00");
    EXPECT_EQ(changes(readback, Bytes(4), "P0.4"), "");
    EXPECT_EQ(changes(sg_readback, Bytes(16), "P0.0"), "");
    EXPECT_EQ(changes(sg_readback, Bytes(16), "P4.0"), "");
    EXPECT_EQ(changes(sg_readback, Bytes(16), "P15.7"), "");
}

TEST(IpmcLeaf, RoundTripLosesOnlyTheFourthByte) {
    const Bytes logical = bytes("01 02 03 ff");
    EXPECT_EQ(hex(translate(readback, translate(result, logical).out).out), "01 02 03 00");
    EXPECT_EQ(hex(translate(sg_readback, translate(sg_result, logical).out).out), "01 02 03 00");
}

TEST(IpmcLeaf, ReadbacksTakeTheirExactLengthAndElseWriteNothing) {
    expect_exact_length(readback);
    expect_exact_length(sg_readback);
}

TEST(IpmcLeaf, TheTwoReadbacksRefuseEachOthersRecords) {
    EXPECT_EQ(translate(sg_readback, bytes("11 01 02 03")).status, NPXLATE_INVALID);
    EXPECT_EQ(translate(readback, counting(16)).status, NPXLATE_INVALID);
}

TEST(IpmcLeaf, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {ipv4_key, sg_key, g_key, result, sg_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(IpmcLeaf, TablesDispatchToTheirTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[24].key, ipv4mc_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[24].result, ipmc_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[24], ipmc_leaf_logical_res_xlate);
    EXPECT_EQ(l2p_ucode_func_table[61].key, ipv6mc_sg_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[61].result, ipv6mc_sg_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[61], ipv6mc_sg_leaf_logical_res_xlate);
    EXPECT_EQ(l2p_ucode_func_table[62].key, ipv6mc_g_leaf_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[62].result, ipmc_leaf_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[62], ipmc_leaf_logical_res_xlate);
}

}  // namespace
