// Layer-3 multicast node: flags, six values, and the type-and-index word, the one field that is not big-endian.
#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using support::bit;
using support::bytes;
using support::Bytes;
using support::changes;
using support::check_random;
using support::counting;
using support::fill;
using support::hex;
using support::little;
using support::Outcome;
using support::put_little;
using support::Reply;
using support::Rows;
using support::set_bit;
using support::translate;
using support::Translator;
using support::walk;

const Translator key = FORWARD(ipmc_node_key_xlate, 3, 3);
const Translator result = FORWARD(ipmc_node_res_xlate, 48, 32);
const Translator readback = REVERSE(ipmc_node_logical_res_xlate, 32, 48);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return {.length = 3};
}

// Types 3 and 4 share a code; every other type gives its low four bits, and lets the bits above the index through.
std::uint64_t type_and_index(const Bytes& in) {
    const std::uint64_t type = little(in, 36, 4);
    const std::uint64_t above_flags = little(in, 40, 4) >> 8;
    return type == 3 || type == 4 ? above_flags | 0x300000 : type << 20 | above_flags;
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P0.7 = L0.7",
        "P0.6 = L40.3",
        "P0.5 = L1.3",
        "P1.7 = L0.0",
        "P1.6 = L29.0",
        "P1.5 = L40.2",
        "P1.4 = L28.0",
        "P1.3 = L0.4",
        "P1.2 = L0.6",
        "P1.1 = L40.0",
        "P2.7 = L1.2",
        "P2.6 = L40.1",
        "P2.5 = not L1.0",
        "P2.3 = L0.3",
        "P2.2 = L0.1",
        "P2.1 = L0.5",
        "P2.0 = L0.2",
        "P3 = L20",
        "P4 = L21",
        "P5 = L22",
        "P9-12 = swap L4-7",
        "P13-15 = swap L8-10",
        "P16-18 = swap L12-14",
        "P19-21 = swap L24-26",
        "P22-25 = swap L16-19",
        "P26-27 = swap L30-31",
        "P28-31 = 0",
    };
    fill(out, 0, 31);
    rows.apply(in, out);
    put_little(out, 6, 3, type_and_index(in));
    if (bit(in, 1, 2)) {
        set_bit(out, 1, 6, false);
    }
    return {.length = 32};
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0.7 = P0.7",
        "L40.3 = P0.6",
        "L1.3 = P0.5",
        "L0.0 = P1.7",
        "L29.0 = P1.6",
        "L40.2 = P1.5",
        "L0.4 = P1.3",
        "L0.6 = P1.2",
        "L40.0 = P1.1",
        "L1.2 = P2.7",
        "L40.1 = P2.6",
        "L1.0 = not P2.5",
        "L0.3 = P2.3",
        "L0.1 = P2.2",
        "L0.5 = P2.1",
        "L0.2 = P2.0",
        "L20 = P3",
        "L21 = P4",
        "L22 = P5",
        "L41 = P6",
        "L42 = P7",
        "L43.3-0 = P8.3-0",
        "L4-7 = swap P9-12",
        "L8-10 = swap P13-15",
        "L12-14 = swap P16-18",
        "L24-26 = swap P19-21",
        "L16-19 = swap P22-25",
        "L30-31 = swap P26-27",
    };
    fill(out, 0, 47);
    rows.apply(in, out);
    return {};
}

Bytes with_type(Bytes record, std::uint32_t type) {
    put_little(record, 36, 4, type);
    return record;
}

// A node with the bit-field word L40-43 (index from bit 8 on) and nothing else; gives P6-8 of its result.
std::string word_of(std::uint32_t type, std::uint32_t flags_and_index) {
    Bytes record = with_type(Bytes(48), type);
    put_little(record, 40, 4, flags_and_index);
    const Bytes out = translate(result, record).out;
    return hex({out.begin() + 6, out.begin() + 9});
}

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(IpmcNode, KeyKeepsItsByteOrder) {
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x81)});
    check_random(key, key_model);
    const Outcome outcome = translate(key, bytes("01 02 03"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "01 02 03");
}

TEST(IpmcNode, ResultOfEveryTypeCarriesItsRowsAndNothingElse) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U, 4U, 5U, 0x13U, 0x14U, 0x80000003U, 0xffffffffU}) {
        for (const Bytes& base : {Bytes(48), Bytes(48, 0xff), counting(48, 0x80)}) {
            walk(result, result_model, with_type(base, type));
        }
        check_random(result, result_model, 500, [type](Bytes& in) { put_little(in, 36, 4, type); });
    }
    check_random(result, result_model);
}

TEST(IpmcNode, ReadbackRestoresItsRowsAndNothingElse) {
    walk(readback, readback_model, {Bytes(32), Bytes(32, 0xff), counting(32, 0x80)});
    check_random(readback, readback_model);
}

TEST(IpmcNode, ResultOfZerosHoldsTheHeaderAndTheInvertedFlag) {
    const Outcome outcome = translate(result, Bytes(48));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 20 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(IpmcNode, ResultPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(result, with_type(counting(48), 2)).out),
              "51 40 00 14 15 16 29 2a 2b "  // flags, three bytes, type-and-index word
              "07 06 05 04 0a 09 08 0e 0d 0c 1a 19 18 13 12 11 10 1f 1e "
              "00 00 00 00");
}

TEST(IpmcNode, EachFlagHasItsBit) {
    const struct {
        const char* logical;
        const char* physical;
    } flags[] = {
        {"L0.7", "P0.7"},  {"L40.3", "P0.6"}, {"L1.3", "P0.5"}, {"L0.0", "P1.7"},  {"L29.0", "P1.6"}, {"L40.2", "P1.5"},
        {"L28.0", "P1.4"}, {"L0.4", "P1.3"},  {"L0.6", "P1.2"}, {"L40.0", "P1.1"}, {"L1.2", "P2.7"},  {"L40.1", "P2.6"},
        {"L1.0", "P2.5"},  {"L0.3", "P2.3"},  {"L0.1", "P2.2"}, {"L0.5", "P2.1"},  {"L0.2", "P2.0"},
    };
    for (const auto& [logical, physical] : flags) {
        EXPECT_EQ(changes(result, Bytes(48), logical), physical);
        // P1.4 is written but never read back.
        EXPECT_EQ(changes(readback, Bytes(32), physical), std::string{logical} == "L28.0" ? "" : logical);
    }
}

TEST(IpmcNode, ResultDropsTheBytesBetweenItsFields) {
    for (const char* unused : {"L1.1", "L1.4", "L1.7", "L2.0", "L3.7", "L11.0", "L15.0", "L23.0", "L27.7", "L28.1",
                               "L29.1", "L32.0", "L35.7", "L40.4", "L40.7", "L44.0", "L47.7"}) {
        EXPECT_EQ(changes(result, Bytes(48), unused), "") << unused;
        EXPECT_EQ(changes(result, Bytes(48, 0xff), unused), "") << unused;
    }
}

TEST(IpmcNode, TypeAndIndexWordIsLeastSignificantByteFirst) {
    EXPECT_EQ(word_of(2, 0x12345U << 8), "45 23 21");
    EXPECT_EQ(word_of(0, 0x12345U << 8), "45 23 01");
}

TEST(IpmcNode, TypesThreeAndFourShareTheCodeThree) {
    EXPECT_EQ(word_of(3, 0x12345U << 8), "45 23 31");
    EXPECT_EQ(word_of(4, 0x12345U << 8), "45 23 31");
    EXPECT_EQ(translate(result, with_type(counting(48), 3)).out, translate(result, with_type(counting(48), 4)).out);
}

TEST(IpmcNode, OtherTypesGiveTheirLowFourBits) {
    EXPECT_EQ(word_of(2, 0), "00 00 20");
    EXPECT_EQ(word_of(5, 0), "00 00 50");
    EXPECT_EQ(word_of(0x13, 0), "00 00 30");
    EXPECT_EQ(word_of(0xffffffff, 0), "00 00 f0");
    // Not taken for 4 by their low bits: the comparison is of the whole word.
    EXPECT_EQ(word_of(0x14, 0), "00 00 40");
    EXPECT_EQ(word_of(0x104, 0), "00 00 40");
    EXPECT_EQ(word_of(0x80000004, 0), "00 00 40");
}

TEST(IpmcNode, BitsAboveTheIndexAreOredIntoTheTypeCode) {
    EXPECT_EQ(word_of(2, 0x40000000), "00 00 60");
    EXPECT_EQ(word_of(3, 0x40000000), "00 00 70");
    EXPECT_EQ(word_of(4, 0x40000000), "00 00 70");
    EXPECT_EQ(word_of(0, 0xf0000000), "00 00 f0");
    EXPECT_EQ(word_of(0, 0x000000ff), "00 00 00") << "the flags and the four bits above them stay out";
}

TEST(IpmcNode, OneFlagSuppressesAnother) {
    Bytes record(48);
    set_bit(record, 29, 0);
    EXPECT_EQ(hex(translate(result, record).out).substr(0, 8), "11 40 20");
    set_bit(record, 1, 2);
    EXPECT_EQ(hex(translate(result, record).out).substr(0, 8), "11 00 a0");
    EXPECT_EQ(changes(result, record, "L29.0"), "");
    EXPECT_EQ(changes(result, record, "L1.2"), "P1.6 P2.7");
}

TEST(IpmcNode, ReadbackPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(readback, counting(32)).out), hex(bytes("20 01 00 00 0c 0b 0a 09"      // L0-7
                                                                    "0f 0e 0d 00 12 11 10 00"      // L8-15
                                                                    "19 18 17 16 03 04 05 00"      // L16-23
                                                                    "15 14 13 00 00 00 1b 1a"      // L24-31
                                                                    "00 00 00 00 00 00 00 00"      // L32-39
                                                                    "00 06 07 08 00 00 00 00")));  // L40-47
}

TEST(IpmcNode, ReadbackDropsHeaderTypeCodeAndTail) {
    for (const char* unused :
         {"P0.4", "P0.0", "P0.1", "P1.4", "P1.0", "P2.4", "P8.4", "P8.5", "P8.6", "P8.7", "P28.0", "P31.7"}) {
        EXPECT_EQ(changes(readback, Bytes(32), unused), "") << unused;
        EXPECT_EQ(changes(readback, Bytes(32, 0xff), unused), "") << unused;
    }
}

TEST(IpmcNode, RoundTripLosesTheTypeAndTheUnrestoredFlag) {
    const Bytes logical = bytes(
        "fb 09 00 00 04 05 06 07"  // L1.2 clear
        "08 09 0a 00 0c 0d 0e 00"
        "10 11 12 13 14 15 16 00"
        "18 19 1a 00 01 01 1e 1f"  // L28.0 and L29.0
        "00 00 00 00 02 00 00 00"  // type 2
        "0f 29 2a 0b 00 00 00 00");
    EXPECT_EQ(hex(translate(readback, translate(result, logical).out).out), hex(bytes("fb 09 00 00 04 05 06 07"
                                                                                      "08 09 0a 00 0c 0d 0e 00"
                                                                                      "10 11 12 13 14 15 16 00"
                                                                                      "18 19 1a 00 00 01 1e 1f"
                                                                                      "00 00 00 00 00 00 00 00"
                                                                                      "0f 29 2a 0b 00 00 00 00")));
}

TEST(IpmcNode, RoundTripLosesTheSuppressedFlag) {
    Bytes logical(48);
    logical[1] = 0x05;
    logical[29] = 0x01;
    Bytes expected(48);
    expected[1] = 0x05;
    EXPECT_EQ(hex(translate(readback, translate(result, logical).out).out), hex(expected));
}

TEST(IpmcNode, ReadbackTakesItsExactLengthAndElseWritesNothing) { expect_exact_length(readback); }

TEST(IpmcNode, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(IpmcNode, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[26].key, ipmc_node_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[26].result, ipmc_node_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[26], ipmc_node_logical_res_xlate);
}

}  // namespace
