// The common flow records of the receive services. By name only.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <string>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(rx_common_flow_key, 32, 32);
const Translator result = FORWARD(rx_common_flow_xlate_result, 32, 32);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",         //
        "P0-3 = swap L0-3",  //
        "P4-7 = swap L4-7",  //
        "P21-22 = L21-22",   //
        "P23-24 = L23-24",   //
        "P25 = L25",         //
        "P26-27 = L26-27",   //
        "P28-29 = L28-29",   //
        "P30-31 = L30-31",   //
    };
    rows.apply(in, out);
    return {.length = 32};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",      //
        "P0 = 0x11",      //
        "P0.7 = L0.7",    //
        "P0.5 = L0.5",    //
        "P1.4 = L1.4",    //
        "P1.6 = L1.6",    //
        "P2 = L2",        //
        "P3-5 = L3-5",    //
        "P6 = 0",         //
        "P7 = L7",        //
        "P8-31 = L8-31",  //
    };
    static const Rows flagged{"P7.7 = 1"};
    rows.apply(in, out);
    if (bit(in, 1, 4)) {
        flagged.apply(in, out);
    }
    return {.length = 32};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(RxCommonFlow, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(32), Bytes(32, 0xff), counting(32), counting(32, 0x91)});
    check_random(key, key_model);
    walk(result, result_model, {Bytes(32), Bytes(32, 0xff), counting(32), counting(32, 0x91)});
    check_random(result, result_model);
}

TEST(RxCommonFlow, SwapsTheFirstTwoKeyValuesAndLeavesAGap) {
    const Outcome outcome = translate(key, counting(32, 0x81), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "84 83 82 81 88 87 86 85 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 96 97 98 99 9a 9b 9c 9d 9e 9f a0");

    Bytes in(32);
    put_little(in, 0, 4, 0x11223344);
    fill(in, 8, 20, 0xff);
    EXPECT_EQ(hex(translate(key, in).out),
              "11 22 33 44 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(RxCommonFlow, DropsTheMiddleOfTheKey) {
    for (std::size_t byte = 8; byte <= 20; ++byte) {
        for (const char* bit : {".0", ".3", ".7"}) {
            const std::string dropped = "L" + std::to_string(byte) + bit;
            EXPECT_EQ(changes(key, counting(32, 0x20), dropped), "") << dropped;
        }
    }
    for (const auto& [from, to] :
         {std::pair{"L0.0", "P3.0"}, std::pair{"L3.7", "P0.7"}, std::pair{"L4.0", "P7.0"}, std::pair{"L7.7", "P4.7"},
          std::pair{"L21.0", "P21.0"}, std::pair{"L25.4", "P25.4"}, std::pair{"L31.7", "P31.7"}}) {
        EXPECT_EQ(changes(key, counting(32, 0x20), from), to) << from;
    }
}

TEST(RxCommonFlow, TranslatesZerosAndOnes) {
    const Outcome ones = translate(result, Bytes(32, 0xff));
    EXPECT_EQ(ones.status, 0);
    EXPECT_EQ(ones.length, 32U);
    EXPECT_EQ(hex(ones.out),
              "b1 50 ff ff ff ff 00 ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff");
    EXPECT_EQ(hex(translate(result, Bytes(32), Bytes(32, 0xff)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(RxCommonFlow, CopiesTheRestInItsOwnByteOrder) {
    EXPECT_EQ(hex(translate(result, counting(32, 0x60)).out),  // L1 is 0x61
              "31 40 62 63 64 65 00 67 68 69 6a 6b 6c 6d 6e 6f 70 71 72 73 "
              "74 75 76 77 78 79 7a 7b 7c 7d 7e 7f");
}

TEST(RxCommonFlow, WritesOneFlagTwice) {
    Bytes in(32);
    in.at(1) = 0x10;
    in.at(7) = 0x01;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 10 00 00 00 00 00 81 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    in.at(1) = 0xef;
    in.at(7) = 0x80;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 40 00 00 00 00 00 80 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, Bytes(32), "L1.4"), "P1.4 P7.7");
    EXPECT_EQ(changes(result, Bytes(32, 0xff), "L1.4"), "P1.4");
    EXPECT_EQ(changes(result, Bytes(32), "L7.7"), "P7.7");
    EXPECT_EQ(changes(result, Bytes(32, 0xff), "L7.7"), "");
}

TEST(RxCommonFlow, DropsWhatItDoesNotCarry) {
    for (const Bytes& base : {Bytes(32), Bytes(32, 0xff)}) {
        for (const char* dropped : {"L0.0", "L0.1", "L0.2", "L0.3", "L0.4", "L0.6", "L1.0", "L1.1", "L1.2", "L1.3",
                                    "L1.5", "L1.7", "L6.0", "L6.4", "L6.7"}) {
            EXPECT_EQ(changes(result, base, dropped), "") << dropped;
        }
        for (const auto& [from, to] : {std::pair{"L0.5", "P0.5"}, std::pair{"L0.7", "P0.7"}, std::pair{"L1.6", "P1.6"},
                                       std::pair{"L2.0", "P2.0"}, std::pair{"L5.7", "P5.7"}, std::pair{"L7.0", "P7.0"},
                                       std::pair{"L8.0", "P8.0"}, std::pair{"L31.7", "P31.7"}}) {
            EXPECT_EQ(changes(result, base, from), to) << from;
        }
    }
}

TEST(RxCommonFlow, IgnoresTheLength) {
    for (const Translator* translator : {&key, &result}) {
        expect_length_ignored(*translator, counting(32));
    }
}

}  // namespace
