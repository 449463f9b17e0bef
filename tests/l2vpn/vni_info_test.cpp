// The VNI information entry, whose key translator writes into its input.
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

using namespace support;

const Translator key = FORWARD(vni_info_st_xlate_key, 8, 4);
const Translator result = FORWARD(vni_info_st_xlate_result, 36, 32);
const Translator reverse_result = REVERSE(vni_info_logical_res_xlate, 32, 36);

Reply key_model(Bytes& in, Bytes& out) {
    if (in[0] == 0) {
        put_little(in, 4, 4, little(in, 4, 4) << 8);
    }
    static const Rows rows{"P0 = L0", "P1-3 = L4-6"};
    rows.apply(in, out);
    return {.length = 4};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",       "P0 = 0x11",     "P0.7 = L0.2", "P0.6 = L0.1",     "P0.5 = L0.3",       "P1-3 = L4-6",
        "P4-7 = L8-11",    "P8-9 = L12-13", "P10 = 0",     "P12-15 = L20-23", "P16-19 = L24-27",   "P20-23 = L28-31",
        "P24-25 = L18-19", "P26 = L16",     "P27 = L17",   "P28-29 = L32-33", "P30.3-0 = L34.3-0",
    };
    rows.apply(in, out);
    out[11] = bit(in, 0, 0) ? 4 : 2;
    return {.length = 32};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-35 = 0",       "L0.1 = P0.6",     "L0.2 = P0.7",     "L0.3 = P0.5", "L4-6 = P1-3",
        "L8-11 = P4-7",    "L12-14 = P8-10",  "L16 = P26",       "L17 = P27",   "L18-19 = P24-25",
        "L20-23 = P12-15", "L24-27 = P16-19", "L28-31 = P20-23",
        "L32-34 = P28-30",  // all 24 bits of it
    };
    rows.apply(in, out);
    set_bit(out, 0, 0, in[11] == 4);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

// ---------------------------------------------------------------------------------------------------------------------
// Key

TEST(VniInfoKey, CarriesItsFieldsAndNothingElse) {
    for (const std::uint8_t kind : Bytes{0, 1, 2, 128, 255}) {
        for (Bytes base : patterns(8)) {
            base[0] = kind;
            walk(key, key_model, base);
        }
    }
    check_random(key, key_model);
    check_random(key, key_model, 1000, [](Bytes& in) { in[0] = 0; });
}

TEST(VniInfoKey, OfKind0ShiftsTheValueInItsInput) {
    const Outcome outcome = translate(key, bytes("00 aa bb cc 11 22 33 44"), Bytes(4, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "00 00 11 22");
    EXPECT_EQ(hex(outcome.in), "00 aa bb cc 00 11 22 33");
}

TEST(VniInfoKey, OfKind0ShiftsOnceMoreWhenGivenTheSameInputAgain) {
    const Outcome first = translate(key, bytes("00 aa bb cc 11 22 33 44"));
    const Outcome second = translate(key, first.in);
    EXPECT_EQ(hex(second.out), "00 00 00 11");
    EXPECT_EQ(hex(second.in), "00 aa bb cc 00 00 11 22");
}

TEST(VniInfoKey, OfOtherKindsLeavesItsInputAlone) {
    for (const char* kind : {"01", "02", "80", "ff"}) {
        const Bytes in = with(bytes("00 aa bb cc 11 22 33 44"), {{0, kind}});
        const Outcome outcome = translate(key, in, Bytes(4, 0x5a));
        EXPECT_EQ(outcome.length, 4U);
        EXPECT_EQ(hex(outcome.out), kind + std::string{" 11 22 33"});
        EXPECT_EQ(hex(outcome.in), hex(in));
    }
}

TEST(VniInfoKey, CarriesTwoOrThreeBytesOfTheValue) {
    const Bytes kind_0(8);
    EXPECT_EQ(changes(key, kind_0, "L4.0"), "P2.0");
    EXPECT_EQ(changes(key, kind_0, "L5.7"), "P3.7");
    expect_not_carried(key, kind_0, {"L1-3", "L6-7"});
    const Bytes kind_1 = with(Bytes(8), {{0, "01"}});
    EXPECT_EQ(changes(key, kind_1, "L4.0"), "P1.0");
    EXPECT_EQ(changes(key, kind_1, "L6.7"), "P3.7");
    expect_not_carried(key, kind_1, {"L1-3", "L7"});
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

TEST(VniInfoResult, CarriesItsFieldsAndNothingElse) {
    walk(result, result_model, patterns(36));
    check_random(result, result_model);
}

TEST(VniInfoResult, OfACountingRecordIsThis) {
    const Outcome outcome = translate(result, counting(36), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 04 05 06 08 09 0a 0b 0c 0d 00 02 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f 12 13 10 11 20 21 02 00");
}

TEST(VniInfoResult, PutsEachFlagInItsPlace) {
    EXPECT_EQ(hex(translate(result, Bytes(36)).out), hex(with(Bytes(32), {{0, "11"}, {11, "02"}})));
    EXPECT_EQ(hex(translate(result, with(Bytes(36), {{0, "ff"}})).out), hex(with(Bytes(32), {{0, "f1"}, {11, "04"}})));
    EXPECT_EQ(changes(result, Bytes(36), "L0.0"), "P11.2 P11.1");
    EXPECT_EQ(changes(result, Bytes(36), "L0.1"), "P0.6");
    EXPECT_EQ(changes(result, Bytes(36), "L0.2"), "P0.7");
    EXPECT_EQ(changes(result, Bytes(36), "L0.3"), "P0.5");
}

TEST(VniInfoResult, DoesNotCarryTheRest) {
    expect_not_carried(result, Bytes(36), {"L0.7-4", "L1-3", "L7", "L14-15", "L34.7-4", "L35"});
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

TEST(VniInfoReverse, RestoresItsFieldsAndNothingElse) {
    for (const std::uint8_t kind : Bytes{0, 2, 4, 5, 6, 0x84}) {
        for (Bytes base : patterns(32)) {
            base[11] = kind;
            walk(reverse_result, reverse_model, base);
        }
    }
    check_random(reverse_result, reverse_model);
    check_random(reverse_result, reverse_model, 500, [](Bytes& in) { in[11] &= 0x07; });
}

TEST(VniInfoReverse, OfACountingRecordIsThis) {
    const Outcome outcome = translate(reverse_result, counting(32, 0xe0), Bytes(36, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out),
              "0e 00 00 00 e1 e2 e3 00 e4 e5 e6 e7 e8 e9 ea 00 fa fb f8 f9 ec ed ee ef f0 f1 f2 f3 f4 f5 f6 f7 "
              "fc fd fe 00");
}

TEST(VniInfoReverse, RestoresL0_0OnlyOfTheExactValue4) {
    for (unsigned value = 0; value < 256; ++value) {
        Bytes in(32);
        in[11] = static_cast<std::uint8_t>(value);
        EXPECT_EQ(hex(translate(reverse_result, in).out), hex(with(Bytes(36), {{0, value == 4 ? "01" : "00"}})))
            << value;
    }
}

TEST(VniInfoReverse, DoesNotReadTheHeaderNorTheLastByte) {
    expect_not_carried(reverse_result, Bytes(32), {"P0.4-0", "P31"});
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

TEST(VniInfo, ComesBackWithoutTheTopsOfItsFields) {
    const Bytes in = with(counting(36), {{0, "0f"}});
    EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out),
              "0f 00 00 00 04 05 06 00 08 09 0a 0b 0c 0d 00 00 10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f "
              "20 21 02 00");
    EXPECT_EQ(translate(reverse_result, translate(result, counting(36)).out).out[0], 0x00);
}

TEST(VniInfo, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size);
        expect_length_ignored(translator, in);
    }
}

TEST(VniInfo, IsTable111) {
    EXPECT_EQ(l2p_ucode_func_table[111].key, &vni_info_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[111].result, &vni_info_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[111], &vni_info_logical_res_xlate);
}

}  // namespace
