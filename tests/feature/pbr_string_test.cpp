// The policy-based-routing string. By name only; written over a buffer that the caller has prepared.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <tuple>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator result = FORWARD(pbr_str_xlate_result, 34, 32);

// Not cleared: the rest of P0, P1.7 and P6 stay.
Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "P0.4 = 1",        //
        "P0.0 = 1",        //
        "P1.6 = L1.5",     //
        "P1.5 = L1.6",     //
        "P1.4 = L1.1",     //
        "P1.3 = L1.7",     //
        "P1.2 = L1.2",     //
        "P1.1 = L1.0",     //
        "P1.0 = L1.3",     //
        "P2 = L8",         //
        "P7 = L9",         //
        "P8-31 = L10-33",  //
    };
    static const Rows short_value{
        "P3 = 0",
        "P4-5 = L2-3",
    };
    static const Rows long_value{"P3-5 = L4-6"};
    common.apply(in, out);
    (bit(in, 1, 0) ? short_value : long_value).apply(in, out);
    return {.length = 32};
}

Bytes with_flags(Bytes in, std::uint8_t flags) {
    in.at(1) = flags;
    return in;
}

const support::Models models{{result, result_model}};

TEST(PbrString, CarriesWhatItsPositionsSay) {
    for (const Bytes& base : {Bytes(34), Bytes(34, 0xff), counting(34), counting(34, 0x91)}) {
        walk(result, result_model, {with_flags(base, 0x00), with_flags(base, 0x01), with_flags(base, 0xfe)});
    }
    check_random(result, result_model);
}

TEST(PbrString, TriesEveryCombinationOfFlags) {
    for (unsigned flags = 0; flags < 256; ++flags) {
        check(result, result_model, with_flags(counting(34, 0x20), static_cast<std::uint8_t>(flags)));
    }
}

TEST(PbrString, TranslatesARecordOfTheLongValue) {
    const Outcome outcome = translate(result, counting(34, 0x43));  // L1 is 0x44
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 24 4b 47 48 49 00 4c 4d 4e 4f 50 51 52 53 54 55 56 57 58 "
              "59 5a 5b 5c 5d 5e 5f 60 61 62 63 64");
}

TEST(PbrString, TranslatesARecordOfTheShortValue) {
    EXPECT_EQ(hex(translate(result, counting(34, 0x42)).out),  // L1 is 0x43
              "11 32 4a 00 44 45 00 4b 4c 4d 4e 4f 50 51 52 53 54 55 56 57 "
              "58 59 5a 5b 5c 5d 5e 5f 60 61 62 63");
    EXPECT_EQ(hex(translate(result, Bytes(34, 0xff)).out),
              "11 7f ff 00 ff ff 00 ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff");
}

TEST(PbrString, KeepsTheByteOrderOfTheShortValue) {
    Bytes in(34);
    in.at(1) = 0x01;
    in.at(2) = 0x34;
    in.at(3) = 0x12;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 02 00 00 34 12 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(PbrString, CarriesOnlyTheChosenValue) {
    const Bytes long_value = with_flags(counting(34, 0x40), 0x00);
    const Bytes short_value = with_flags(counting(34, 0x40), 0x01);
    for (const auto& [from, of_long, of_short] :
         {std::tuple{"L2.0", "", "P4.0"}, std::tuple{"L3.7", "", "P5.7"}, std::tuple{"L4.0", "P3.0", ""},
          std::tuple{"L5.4", "P4.4", ""}, std::tuple{"L6.7", "P5.7", ""}}) {
        EXPECT_EQ(changes(result, long_value, from), of_long) << from;
        EXPECT_EQ(changes(result, short_value, from), of_short) << from;
    }
}

TEST(PbrString, PutsItsFlagsWhereTheCardLooks) {
    for (const auto& [from, to] :
         {std::pair{"L1.0", "P1.1"}, std::pair{"L1.1", "P1.4"}, std::pair{"L1.2", "P1.2"}, std::pair{"L1.3", "P1.0"},
          std::pair{"L1.4", ""}, std::pair{"L1.5", "P1.6"}, std::pair{"L1.6", "P1.5"}, std::pair{"L1.7", "P1.3"},
          std::pair{"L8.0", "P2.0"}, std::pair{"L9.7", "P7.7"}, std::pair{"L10.0", "P8.0"},
          std::pair{"L33.7", "P31.7"}}) {
        EXPECT_EQ(changes(result, Bytes(34), from), to) << from;
    }
}

TEST(PbrString, DropsWhatItDoesNotCarry) {
    for (const Bytes& base : {with_flags(counting(34), 0x00), with_flags(counting(34), 0x01)}) {
        for (const char* dropped : {"L0.0", "L0.4", "L0.7", "L1.4", "L7.0", "L7.7"}) {
            EXPECT_EQ(changes(result, base, dropped), "") << dropped;
        }
    }
}

TEST(PbrString, LeavesTheRestOfAPreparedBuffer) {
    EXPECT_EQ(hex(translate(result, Bytes(34), Bytes(32, 0xff)).out),
              "ff 80 00 00 00 00 ff 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");

    // Each bit alone, and all but each bit alone.
    for (unsigned bit = 0; bit < 8; ++bit) {
        for (const unsigned pattern : {1U << bit, ~(1U << bit)}) {
            const Bytes before(32, static_cast<std::uint8_t>(pattern));
            Bytes expected(32);
            expected.at(0) = static_cast<std::uint8_t>(pattern | 0x11);
            expected.at(1) = pattern & 0x80;
            expected.at(6) = static_cast<std::uint8_t>(pattern);
            EXPECT_EQ(hex(translate(result, Bytes(34), before).out), hex(expected));
        }
    }
}

TEST(PbrString, IgnoresTheLength) { expect_length_ignored(result, counting(34)); }

}  // namespace
