// The modulo pair, which takes any length and reports none.
#include <cstdint>
#include <limits>
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

const Translator key = FORWARD(modulo_xlate_key, 4, 2);
const Translator result = FORWARD(modulo_xlate_result, 8, 16);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = L2",
        "P1.7-4 = L0.3-0",
        "P1.3-0 = L3.3-0",
    };
    rows.apply(in, out);
    return {};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",        "P8.5-0 = L0.5-0",  "P9.5-0 = L1.5-0",  "P10.5-0 = L2.5-0", "P11.5-0 = L3.5-0",
        "P12.5-0 = L4.5-0", "P13.5-0 = L5.5-0", "P14.5-0 = L6.5-0", "P15.5-0 = L7.5-0",
    };
    fill(out, 0, 15);
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(ModuloKey, CarriesEveryBit) {
    walk(key, key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x6a)});
    check_random(key, key_model, 500);
}

TEST(ModuloKey, JoinsTwoNibbles) {
    const Outcome outcome = translate(key, bytes("ab 55 cd ef"), bytes("ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "cd bf");
}

TEST(ModuloKey, DropsL1AndTheUpperNibbles) {
    for (unsigned i = 0; i < 8; ++i) {
        EXPECT_EQ(changes(key, bytes("ab 55 cd ef"), "L1." + std::to_string(i)), "");
    }
    for (unsigned i = 4; i < 8; ++i) {
        EXPECT_EQ(changes(key, bytes("ab 55 cd ef"), "L0." + std::to_string(i)), "");
        EXPECT_EQ(changes(key, bytes("ab 55 cd ef"), "L3." + std::to_string(i)), "");
    }
}

TEST(ModuloResult, CarriesEveryBit) {
    walk(result, result_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x3c)});
    check_random(result, result_model, 500);
}

TEST(ModuloResult, HoldsSixBitsOfEachValue) {
    const Outcome outcome = translate(result, Bytes(8, 0xff), Bytes(16, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 00 00 00 00 3f 3f 3f 3f 3f 3f 3f 3f");
    EXPECT_EQ(hex(translate(result, bytes("01 02 03 04 45 86 c7 38")).out),
              "11 00 00 00 00 00 00 00 01 02 03 04 05 06 07 38");
    EXPECT_EQ(hex(translate(result, Bytes(8), Bytes(16, 0xff)).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(ModuloResult, DropsTheTwoUpperBitsOfEachValue) {
    for (unsigned byte = 0; byte < 8; ++byte) {
        EXPECT_EQ(changes(result, counting(8), "L" + std::to_string(byte) + ".6"), "");
        EXPECT_EQ(changes(result, counting(8), "L" + std::to_string(byte) + ".7"), "");
    }
}

TEST(Modulo, LengthsAreIgnored) {
    for (const std::int32_t length : {0, 1, 65, 1000, -1, std::numeric_limits<std::int32_t>::max()}) {
        const Outcome of_key = translate_with_length(key, bytes("ab 55 cd ef"), length);
        EXPECT_EQ(of_key.status, 0);
        EXPECT_EQ(of_key.length, std::nullopt);
        EXPECT_EQ(hex(of_key.out), "cd bf");
        const Outcome of_result = translate_with_length(result, counting(8), length);
        EXPECT_EQ(of_result.status, 0);
        EXPECT_EQ(of_result.length, std::nullopt);
        EXPECT_EQ(hex(of_result.out), "11 00 00 00 00 00 00 00 00 01 02 03 04 05 06 07");
    }
}

}  // namespace
