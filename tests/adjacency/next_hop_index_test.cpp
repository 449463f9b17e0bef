// Next-hop index, table 98.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(nhindex_type_xlate_key, 3, 3);
const Translator result = FORWARD(nhindex_type_xlate_result, 21, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    fill(out, 0, 2);
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows flags{
        "P0 = 0x11",
        "P1.5 = L0.0",
        "P1.6 = L0.2",
    };
    static const Rows rest{
        "P2.2 = L0.4",  "P1.3 = 1",       "P4-5 = L1-2",          "P6-7 = L3-4",
        "P8-10 = L5-7", "P16-21 = L9-14", "P22-25 = swap L17-20",
    };
    fill(out, 0, 31);
    flags.apply(in, out);
    set_bit(out, 1, 4, !bit(in, 0, 3) || bit(in, 0, 1));
    set_bit(out, 1, 7, bit(out, 1, 4) || bit(in, 0, 0) || bit(in, 0, 2));
    rest.apply(in, out);
    return {.length = 32};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(NextHopIndex, IsTable98AndReadsBackGenerically) {
    EXPECT_EQ(l2p_ucode_func_table[98].key, nhindex_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[98].result, nhindex_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[98], generic_xlate_logical_result);
}

TEST(NextHopIndex, LengthsAreIgnored) {
    expect_length_ignored(key, bytes("12 34 56"));
    expect_length_ignored(result, counting(21));
    EXPECT_EQ(translate(result, counting(21)).status, 0);
    EXPECT_EQ(translate(result, counting(21)).length, 32U);
}

TEST(NextHopIndexKey, IsCopiedInItsByteOrder) {
    const Outcome outcome = translate(key, bytes("12 34 56"), bytes("ff ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), bytes("12 34 56")});
    check_random(key, key_model, 200);
}

TEST(NextHopIndexResult, CarriesEveryBit) {
    for (unsigned flags = 0; flags < 32; ++flags) {
        Bytes logical = counting(21, 0x91);
        logical[0] = static_cast<std::uint8_t>(flags);
        walk(result, result_model, logical);
    }
    walk(result, result_model, {Bytes(21), Bytes(21, 0xff), counting(21)});
    check_random(result, result_model);
}

TEST(NextHopIndexResult, OfZerosHasThreeFlagsSet) {
    const Outcome outcome = translate(result, Bytes(21), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 98 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(NextHopIndexResult, PlacesItsFields) {
    EXPECT_EQ(hex(translate(result, counting(21)).out),
              "11 98 00 00 01 02 03 04 05 06 07 00 00 00 00 00 09 0a 0b 0c 0d 0e 14 13 12 11 00 00 00 00 00 00");
}

TEST(NextHopIndexResult, BuildsItsFlagsFromL0) {
    struct Row {
        std::uint8_t l0;
        std::uint8_t p1;
        std::uint8_t p2;
    };
    constexpr Row rows[] = {
        {0x00, 0x98, 0},
        {0x01, 0xb8, 0},
        {0x02, 0x98, 0},
        {0x03, 0xb8, 0},
        {0x04, 0xd8, 0},
        {0x05, 0xf8, 0},
        {0x06, 0xd8, 0},
        {0x07, 0xf8, 0},
        // L0.3 without L0.1 takes P1.4 away, and P1.7 with it unless L0.0 or L0.2 is set.
        {0x08, 0x08, 0},
        {0x09, 0xa8, 0},
        {0x0c, 0xc8, 0},
        {0x0d, 0xe8, 0},
        // L0.1 gives them back.
        {0x0a, 0x98, 0},
        {0x0b, 0xb8, 0},
        {0x0e, 0xd8, 0},
        {0x0f, 0xf8, 0},
        {0x10, 0x98, 4},
        {0x18, 0x08, 4},
        {0x1f, 0xf8, 4},
        {0xe0, 0x98, 0},
    };
    for (const Row& row : rows) {
        Bytes logical(21);
        logical[0] = row.l0;
        const Bytes physical = translate(result, logical).out;
        EXPECT_EQ(physical[1], row.p1) << "L0 " << int{row.l0};
        EXPECT_EQ(physical[2], row.p2) << "L0 " << int{row.l0};
    }
}

TEST(NextHopIndexResult, DropsTheRest) {
    for (const char* input_bit : {"L0.1", "L0.5", "L0.6", "L0.7"}) {
        EXPECT_EQ(changes(result, counting(21), input_bit), "") << input_bit;
    }
    for (const unsigned byte : {8U, 15U, 16U}) {
        for (unsigned i = 0; i < 8; ++i) {
            EXPECT_EQ(changes(result, counting(21), "L" + std::to_string(byte) + "." + std::to_string(i)), "");
        }
    }
}

}  // namespace
