// TE next hop, table 7: one layout with L0.5 set, one with it clear. TX_ADJ_KEY_MAX takes part in the latter.
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(te_nh_adjacency_type_xlate_key, 2, 2);
const Translator result = FORWARD(te_nh_adjacency_type_xlate_result, 61, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = L0-1"};
    fill(out, 0, 1);
    rows.apply(in, out);
    return {.length = 2};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows common{
        "P0 = 0x31",
        "P0.6 = L0.6",
        "P1.3 = L0.0",
        "P2.6 = L0.0",
        "P1.2 = L0.1",
        "P2.5 = L0.4",
        "P2.4 = L1.0",
        "P3-5 = label L20-23 flag L29.0",
        "P6-8 = label L25-28 flag L29.0",
        "P12-14 = label L30-33 flag L34.0",
        "P20-21 = L57-58",
        "P28 = L56",
        "P9-11 = L40-42",
        "P1.1 = L0.2",
    };
    static const Rows with_l0_2{"P15-17 = L12-14"};
    static const Rows with_l0_5{
        "P0.6 = 1",
        "P21 = L60",
        "P22-24 = L44-46",
        "P29-31 = L48-50",
    };
    static const Rows without_l0_5{
        "P25-27 = L4-6",
        "P22-24 = L8-10",
        "P29-31 = L48-50",
        "P18-19 = L16-17",
    };
    fill(out, 0, 31);
    common.apply(in, out);
    if (bit(in, 0, 2)) {
        with_l0_2.apply(in, out);
    }
    if (bit(in, 0, 5)) {
        with_l0_5.apply(in, out);
        set_bit(out, 1, 0, in[56] > 31);
    } else {
        without_l0_5.apply(in, out);
        set_bit(out, 0, 7, little(in, 8, 3) <= TX_ADJ_KEY_MAX);
    }
    return {.length = 32};
}

// TX_ADJ_KEY_MAX at another value for the length of a scope.
class KeyMax {
public:
    explicit KeyMax(std::uint16_t value) { TX_ADJ_KEY_MAX = value; }
    ~KeyMax() { TX_ADJ_KEY_MAX = before_; }
    KeyMax(const KeyMax&) = delete;
    KeyMax& operator=(const KeyMax&) = delete;

private:
    std::uint16_t before_ = TX_ADJ_KEY_MAX;
};

Bytes with_l0_5(Bytes logical, bool value) {
    set_bit(logical, 0, 5, value);
    return logical;
}

// Recognisable values in all fields, all flags set but L0.6 and L0.5.
Bytes example() {
    Bytes logical(61);
    logical[0] = 0x17;
    logical[1] = 0x01;
    put_big(logical, 4, 3, 0xa1a2a3);
    put_big(logical, 8, 3, 0xb1b2b3);
    put_big(logical, 12, 3, 0x919293);
    put_big(logical, 16, 2, 0xd1d2);
    put_little(logical, 20, 4, 0xff012345);
    put_little(logical, 25, 4, 0x000abcde);
    logical[29] = 0x01;
    put_little(logical, 30, 4, 0xfff54321);
    logical[34] = 0x01;
    put_big(logical, 40, 3, 0x818283);
    put_big(logical, 44, 3, 0xe1e2e3);
    put_big(logical, 48, 3, 0xc1c2c3);
    logical[56] = 0x20;
    put_big(logical, 57, 2, 0x7172);
    logical[60] = 0xf1;
    return logical;
}

bool marked(std::uint64_t index) {
    Bytes logical(61);
    put_little(logical, 8, 3, index);
    return bit(translate(result, logical).out, 0, 7);
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(TeNextHop, IsTable7AndReadsBackGenerically) {
    EXPECT_EQ(l2p_ucode_func_table[7].key, te_nh_adjacency_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[7].result, te_nh_adjacency_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[7], generic_xlate_logical_result);
}

TEST(TeNextHop, LengthsAreIgnored) {
    expect_length_ignored(key, bytes("12 34"));
    expect_length_ignored(result, example());
    EXPECT_EQ(translate(result, example()).status, 0);
    EXPECT_EQ(translate(result, example()).length, 32U);
}

TEST(TeNextHopKey, IsCopiedInItsByteOrder) {
    const Outcome outcome = translate(key, bytes("12 34"), bytes("ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 2U);
    EXPECT_EQ(hex(outcome.out), "12 34");
    walk(key, key_model, {Bytes(2), Bytes(2, 0xff), bytes("12 34")});
    check_random(key, key_model, 200);
}

TEST(TeNextHopResult, CarriesEveryBit) {
    for (const Bytes& pattern : {Bytes(61), Bytes(61, 0xff), counting(61), counting(61, 0x97), example()}) {
        for (const unsigned flags : {0U, 1U, 2U, 3U}) {  // with L0.2, without it, and both with L0.6
            for (const bool l0_5 : {false, true}) {
                Bytes logical = with_l0_5(pattern, l0_5);
                set_bit(logical, 0, 2, (flags & 1) != 0);
                set_bit(logical, 0, 6, (flags & 2) != 0);
                walk(result, result_model, logical);
            }
        }
    }
}

TEST(TeNextHopResult, AgreesOnRandomRecords) {
    check_random(result, result_model);
    check_random(result, result_model, 1000, [](Bytes& in) {  // around the highest index that is marked
        in = with_l0_5(in, false);
        in[9] &= 0x1f;
        in[10] = 0;
    });
    check_random(result, result_model, 1000, [](Bytes& in) {  // around the lowest L56 that is marked
        in = with_l0_5(in, true);
        in[56] &= 0x3f;
    });
}

TEST(TeNextHopResult, OfZerosIsMarked) {
    const Outcome outcome = translate(result, Bytes(61), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "b1 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(TeNextHopResult, PlacesItsFieldsWithL0Bit5Clear) {
    EXPECT_EQ(hex(translate(result, example()).out),
              "31 0e 70 12 34 51 ab cd e1 81 82 83 54 32 11 91 92 93 d1 d2 71 72 b1 b2 b3 a1 a2 a3 20 c1 c2 c3");
}

TEST(TeNextHopResult, PlacesItsFieldsWithL0Bit5Set) {
    EXPECT_EQ(hex(translate(result, with_l0_5(example(), true)).out),
              "71 0f 70 12 34 51 ab cd e1 81 82 83 54 32 11 91 92 93 00 00 71 f1 e1 e2 e3 00 00 00 20 c1 c2 c3");
}

TEST(TeNextHopResult, CarriesItsFlags) {
    constexpr std::pair<const char*, const char*> carried[] = {
        {"L0.0", "P1.3 P2.6"}, {"L0.1", "P1.2"},       {"L0.2", "P1.1"},   {"L0.4", "P2.5"},
        {"L1.0", "P2.4"},      {"L29.0", "P5.0 P8.0"}, {"L34.0", "P14.0"},
    };
    for (const bool l0_5 : {false, true}) {
        for (const auto& [logical, physical] : carried) {
            EXPECT_EQ(changes(result, with_l0_5(Bytes(61), l0_5), logical), physical) << logical;
        }
    }
    EXPECT_EQ(changes(result, Bytes(61), "L0.6"), "P0.6");
    EXPECT_EQ(changes(result, with_l0_5(Bytes(61), true), "L0.6"), "");  // forced to 1
    EXPECT_EQ(changes(result, Bytes(61), "L0.5"), "P0.7 P0.6");
}

TEST(TeNextHopResult, OmitsTheBytesOfL0Bit2WhenItIsClear) {
    for (const bool l0_5 : {false, true}) {
        Bytes logical = with_l0_5(example(), l0_5);
        logical[0] &= 0xfb;
        expect_not_carried(result, logical, {"L12-14"});
        const Bytes physical = translate(result, logical).out;
        EXPECT_EQ(hex({physical.begin() + 15, physical.begin() + 18}), "00 00 00");
    }
}

TEST(TeNextHopResult, MarksL56Above31WhenL0Bit5IsSet) {
    constexpr std::pair<std::uint8_t, std::uint8_t> rows[] = {{0, 0},    {31, 0},   {32, 1},
                                                              {0x7f, 1}, {0x80, 1}, {0xff, 1}};
    for (const auto& [l56, p1] : rows) {
        Bytes logical = with_l0_5(Bytes(61), true);
        logical[56] = l56;
        EXPECT_EQ(translate(result, logical).out[1], p1) << "L56 " << int{l56};
        EXPECT_EQ(translate(result, logical).out[28], l56);
        EXPECT_EQ(translate(result, with_l0_5(logical, false)).out[1], 0) << "L56 " << int{l56};
    }
}

TEST(TeNextHopResult, MarksIndexesUpTo0xfffAtFirst) {
    for (const std::uint64_t index : {0x000000U, 0x000001U, 0x000ffeU, 0x000fffU}) {
        EXPECT_TRUE(marked(index)) << index;
    }
    for (const std::uint64_t index : {0x001000U, 0x00ffffU, 0x010000U, 0x010fffU, 0x800000U, 0xffffffU}) {
        EXPECT_FALSE(marked(index)) << index;
    }
}

TEST(TeNextHopResult, ReadsTxAdjKeyMaxAtEveryCall) {
    for (const std::uint16_t highest :
         std::initializer_list<std::uint16_t>{0x0000, 0x0001, 0x00ff, 0x1000, 0x7fff, 0x8000, 0xffff}) {
        const KeyMax scope{highest};
        EXPECT_TRUE(marked(0)) << highest;
        EXPECT_TRUE(marked(highest)) << highest;
        EXPECT_FALSE(marked(highest + 1U)) << highest;
        EXPECT_FALSE(marked(0x010000U)) << highest;
        EXPECT_FALSE(marked(0x800000U)) << highest;
        check_random(result, result_model, 200);
    }
    EXPECT_TRUE(marked(0x000fff));
    EXPECT_FALSE(marked(0x001000));
}

TEST(TeNextHopResult, DoesNotCompareWhenL0Bit5IsSet) {
    const KeyMax scope{0xffff};
    const Bytes logical = with_l0_5(Bytes(61), true);
    EXPECT_EQ(translate(result, logical).out[0], 0x71);
    expect_not_carried(result, logical, {"L8-10"});
}

TEST(TeNextHopResult, ComparesThreeBytesOnly) {
    Bytes logical(61);
    put_little(logical, 8, 3, 0x000fff);
    expect_not_carried(result, logical, {"L11"});
    put_little(logical, 8, 3, 0x001000);
    expect_not_carried(result, logical, {"L11"});
}

TEST(TeNextHopResult, DropsTheRest) {
    for (const bool l0_5 : {false, true}) {
        expect_not_carried(
            result, with_l0_5(example(), l0_5),
            {"L0.3", "L0.7",    "L1.7-1",  "L2-3", "L7",      "L11",    "L15", "L18-19", "L22.7-4", "L23-24", "L27.7-4",
             "L28",  "L29.7-1", "L32.7-4", "L33",  "L34.7-1", "L35-39", "L43", "L47",    "L51-55",  "L59"});
    }
    expect_not_carried(result, with_l0_5(example(), false), {"L44-46", "L60"});
    expect_not_carried(result, with_l0_5(example(), true), {"L4-6", "L8-10", "L16-17", "L58"});
}

}  // namespace
