// GRE qualifiers, table 59: a tunnel found by its IPv4 or IPv6 endpoints.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator qualifier_key = FORWARD(gre_qual_st_xlate_key, 40, 39);
const Translator qualifier_result = FORWARD(gre_qual_st_xlate_result, 17, 16);
const Translator qualifier_back = REVERSE(gre_qual_logical_res_xlate, 16, 17);

// ---- Models ----

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows ipv6{"P0-15 = swap L1-16", "P16-31 = swap L17-32", "P34 = 1"};
    static const Rows ipv4{"P0-3 = swap L1-4", "P4-7 = swap L17-20", "P8-31 = 0", "P34 = 0"};
    static const Rows both{"P32-33 = L33-34", "P35-38 = swap L36-39"};
    out.assign(39, 0);
    (bit(in, 0, 0) ? ipv6 : ipv4).apply(in, out);
    both.apply(in, out);
    return {.length = 39};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11", "P0.7 = L0.2", "P0.6 = L0.0", "P0.5 = L0.1", "P3.1 = any L16.1-0", "P3.0 = L16.1", "P8-11 = L1-4",
    };
    out.assign(16, 0);
    rows.apply(in, out);
    put_little(out, 4, 3, little(in, 13, 3) >> 1);
    return {.length = 16};
}

Reply back_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0.0 = P0.6", "L0.1 = P0.5", "L16.0 = P3.1", "L16.1 = P3.0", "L13-15 = P4-6", "L1 = P8",
    };
    out.assign(17, 0);
    rows.apply(in, out);
    return {};
}

const support::Models models{
    {qualifier_key, key_model}, {qualifier_result, result_model}, {qualifier_back, back_model}};

// ---- Every bit ----

TEST(GreQualifierKey, EveryBitGoesWhereItBelongs) {
    for (const bool ipv6 : {false, true}) {
        const auto shape = [ipv6](Bytes& logical) { set_bit(logical, 0, 0, ipv6); };
        for (Bytes base : {Bytes(40), Bytes(40, 0xff), counting(40, 0x81)}) {
            shape(base);
            walk(qualifier_key, key_model, base);
        }
        check_random(qualifier_key, key_model, 1000, shape);
    }
}

TEST(GreQualifierResult, EveryBitGoesWhereItBelongs) {
    for (unsigned flags = 0; flags < 4; ++flags) {
        const auto shape = [flags](Bytes& logical) { set_bits(logical, 16, 1, 0, flags); };
        for (Bytes base : {Bytes(17), Bytes(17, 0xff), counting(17, 0x81)}) {
            shape(base);
            walk(qualifier_result, result_model, base);
        }
        check_random(qualifier_result, result_model, 500, shape);
    }
}

TEST(GreQualifierReverse, EveryBitGoesWhereItBelongs) {
    walk(qualifier_back, back_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x81)});
    check_random(qualifier_back, back_model);
}

TEST(GreQualifier, ForwardTranslatorsDoNotLookAtTheLengthTheyAreGiven) {
    for (const Translator* translator : {&qualifier_key, &qualifier_result}) {
        const Bytes record = counting(translator->in_size, 1);
        expect_length_ignored(*translator, record);
    }
}

// ---- Key ----

TEST(GreQualifierKey, TurnsIpv6AddressesAround) {
    Bytes logical = counting(40);
    logical[0] = 1;
    const Outcome outcome = translate(qualifier_key, logical, Bytes(39, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 39U);
    EXPECT_EQ(hex(outcome.out),
              "10 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 "
              "20 1f 1e 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 "
              "21 22 01 27 26 25 24");
}

TEST(GreQualifierKey, OfIpv4LeavesTheRestOfTheAddressesZero) {
    const Outcome outcome = translate(qualifier_key, counting(40), Bytes(39, 0xee));
    EXPECT_EQ(outcome.length, 39U);
    EXPECT_EQ(hex(outcome.out),
              "04 03 02 01 14 13 12 11 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "21 22 00 27 26 25 24");
    for (const char* position : {"L5.0", "L16.7", "L21.0", "L32.7"}) {
        EXPECT_EQ(changes(qualifier_key, counting(40), position), "") << position;
    }
}

TEST(GreQualifierKey, TakesOnlyOneBitForTheAddressFamily) {
    Bytes logical = counting(40);
    logical[0] = 0xfe;
    EXPECT_EQ(translate(qualifier_key, logical).out[34], 0);
    EXPECT_EQ(translate(qualifier_key, logical).out[31], 0);
    logical[0] = 0xff;
    EXPECT_EQ(translate(qualifier_key, logical).out[34], 1);
    EXPECT_EQ(translate(qualifier_key, logical).out[31], 0x11);
    for (const char* position : {"L0.1", "L0.2", "L0.3", "L0.4", "L0.5", "L0.6", "L0.7", "L35.0", "L35.7"}) {
        EXPECT_EQ(changes(qualifier_key, logical, position), "") << position;
    }
    EXPECT_EQ(changes(qualifier_key, Bytes(40), "L0.0"), "P34.0");
}

// ---- Result ----

TEST(GreQualifierResult, ShiftsTheMiddleValueRightBy1) {
    const Outcome outcome = translate(qualifier_result, counting(17), Bytes(16, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 06 87 07 00 01 02 03 04 00 00 00 00");
}

TEST(GreQualifierResult, OfZerosHoldsOnlyTheHeaderAndOfOnesLeavesTheGaps) {
    EXPECT_EQ(hex(translate(qualifier_result, Bytes(17)).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(qualifier_result, Bytes(17, 0xff)).out), "f1 00 00 03 ff ff 7f 00 ff ff ff ff 00 00 00 00");
}

TEST(GreQualifierResult, CarriesTheseBits) {
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L0.0"), "P0.6");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L0.1"), "P0.5");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L0.2"), "P0.7");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L13.1"), "P4.0");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L14.0"), "P4.7");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L15.0"), "P5.7");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L15.7"), "P6.6");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L16.0"), "P3.1");
    EXPECT_EQ(changes(qualifier_result, Bytes(17), "L16.1"), "P3.1 P3.0");
    EXPECT_EQ(changes(qualifier_result, Bytes(17, 0xff), "L16.0"), "");
    EXPECT_EQ(changes(qualifier_result, Bytes(17, 0xff), "L16.1"), "P3.0");
}

TEST(GreQualifierResult, DoesNotCarryTheseBits) {
    for (const char* position : {"L0.3", "L0.4", "L0.7", "L5.0", "L12.7", "L13.0", "L16.2", "L16.7"}) {
        EXPECT_EQ(changes(qualifier_result, Bytes(17), position), "") << position;
    }
}

// ---- Reverse ----

TEST(GreQualifierReverse, RestoresOnlyTheFirstByteOfL1To4) {
    const Outcome outcome = translate(qualifier_back, counting(16), Bytes(17, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "00 08 00 00 00 00 00 00 00 00 00 00 00 04 05 06 03");
    for (const char* position :
         {"P0.7", "P0.4", "P0.0", "P1.0", "P2.0", "P3.2", "P7.0", "P9.0", "P10.0", "P11.7", "P12.0", "P15.7"}) {
        EXPECT_EQ(changes(qualifier_back, Bytes(16), position), "") << position;
    }
}

TEST(GreQualifierReverse, ReturnsTheMiddleValueHalved) {
    Bytes logical(17);
    logical[13] = 0x01;
    const Bytes lost = translate(qualifier_result, logical).out;
    EXPECT_EQ(hex(lost), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(qualifier_back, lost).out), "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    logical[13] = 0x06;
    logical[14] = 0x02;
    logical[15] = 0x82;
    const Bytes halved = translate(qualifier_back, translate(qualifier_result, logical).out).out;
    EXPECT_EQ(hex(halved), "00 00 00 00 00 00 00 00 00 00 00 00 00 03 01 41 00");
}

TEST(GreQualifierReverse, TakesL160FromTheSummaryAndLosesL02) {
    struct Row {
        std::uint8_t l0;
        std::uint8_t l16;
        std::uint8_t p0;
        std::uint8_t p3;
        std::uint8_t l0_back;
        std::uint8_t l16_back;
    };
    for (const Row& row :
         {Row{0, 1, 0x11, 2, 0, 1}, Row{0, 2, 0x11, 3, 0, 3}, Row{0, 3, 0x11, 3, 0, 3}, Row{0, 0, 0x11, 0, 0, 0},
          Row{7, 0, 0xf1, 0, 3, 0}, Row{4, 0, 0x91, 0, 0, 0}, Row{2, 0, 0x31, 0, 2, 0}, Row{1, 0, 0x51, 0, 1, 0}}) {
        Bytes logical(17);
        logical[0] = row.l0;
        logical[16] = row.l16;
        const Bytes physical = translate(qualifier_result, logical).out;
        EXPECT_EQ(physical[0], row.p0);
        EXPECT_EQ(physical[3], row.p3);
        const Bytes read_back = translate(qualifier_back, physical).out;
        EXPECT_EQ(read_back[0], row.l0_back);
        EXPECT_EQ(read_back[16], row.l16_back);
    }
}

TEST(GreQualifierReverse, RefusesEveryLengthBut16AndWritesNothing) {
    for (const std::int32_t length : {15, 17, 0, -1, -16, 32, 0x110, 0x10010, 0x7fffffff}) {
        for (const int pattern : {0x00, 0xff, 0xa5}) {
            const Bytes before(17, static_cast<std::uint8_t>(pattern));
            const Outcome outcome = translate_with_length(qualifier_back, Bytes(16, 0x5a), length, before);
            EXPECT_EQ(outcome.status, 22) << length;
            EXPECT_EQ(outcome.out, before) << length;
        }
    }
    EXPECT_EQ(translate_with_length(qualifier_back, Bytes(16, 0x5a), 16).status, 0);
}

TEST(GreQualifierDispatch, IsTable59) {
    EXPECT_EQ(l2p_ucode_func_table[59].key, &gre_qual_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[59].result, &gre_qual_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[59], &gre_qual_logical_res_xlate);
}

}  // namespace
