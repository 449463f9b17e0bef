// The I-SID entry of provider-backbone bridging.
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(isid_type_xlate_key, 6, 6);
const Translator result = FORWARD(isid_type_xlate_result, 43, 32);
const Translator reverse_result = REVERSE(isid_type_logical_xlate_result, 32, 44);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-5 = 0", "P0-2 = L0-2", "P3 = L4", "P4 = L5", "P5 = 0"};
    rows.apply(in, out);
    return {.length = 6};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",       "P0 = 0x11",
        "P0.7 = L0.0",     "P0.6 = L0.1",
        "P0.5 = L0.2",     "P1.7 = L0.6",
        "P1.6-1 = 0",      "P1.0 = L0.7",
        "P2-3 = 0",        "P4-5 = L4-5",
        "P6-7 = 0",        "P8-11 = L8-11",
        "P12-13 = 0",      "P14-15 = swap L24-25",
        "P16-18 = L40-42", "P19 = 0",
        "P20-31 = L28-39",
    };
    rows.apply(in, out);
    return {.length = 32};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-43 = 0",       "L0.0 = P0.7",     "L0.1 = P0.6", "L0.2 = P0.5",
        "L0.6 = P1.7",     "L0.7 = P1.0",     "L4-6 = P4-6", "L8-11 = P8-11",
        "L24-25 = P14-15",  // not swapped back
        "L28-39 = P20-31", "L40-42 = P16-18",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

TEST(IsidKey, IsTheIsidAndASixteenBitValue) {
    walk(key, key_model, patterns(6));
    check_random(key, key_model);
    const Outcome outcome = translate(key, bytes("01 02 03 99 34 12"), Bytes(6, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "01 02 03 34 12 00");
    expect_not_carried(key, Bytes(6), {"L3"});
}

TEST(IsidResult, CarriesItsFieldsAndNothingElse) {
    walk(result, result_model, patterns(43));
    check_random(result, result_model);
}

TEST(IsidResult, OfACountingRecordIsThis) {
    const Outcome outcome = translate(result, counting(43), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 04 05 00 00 08 09 0a 0b 00 00 19 18 28 29 2a 00 1c 1d 1e 1f 20 21 22 23 24 25 26 27");
}

TEST(IsidResult, PutsEachFlagInItsPlace) {
    for (const auto& [flag, place] : std::initializer_list<std::pair<const char*, const char*>>{
             {"L0.0", "P0.7"},
             {"L0.1", "P0.6"},
             {"L0.2", "P0.5"},
             {"L0.3", ""},
             {"L0.4", ""},
             {"L0.5", ""},
             {"L0.6", "P1.7"},
             {"L0.7", "P1.0"},
             {"L1.0", ""},
         }) {
        EXPECT_EQ(changes(result, Bytes(43), flag), place) << flag;
    }
    const Bytes ones = translate(result, with(Bytes(43), {{0, "ff ff ff ff"}})).out;
    EXPECT_EQ(hex(ones), hex(with(Bytes(32), {{0, "f1 81"}})));
}

TEST(IsidResult, DoesNotCarryWhatLiesBetweenItsFields) {
    expect_not_carried(result, Bytes(43), {"L1-3", "L6-7", "L12-23", "L26-27"});
}

TEST(IsidReverse, RestoresItsFieldsAndNothingElse) {
    walk(reverse_result, reverse_model, patterns(32));
    check_random(reverse_result, reverse_model);
}

TEST(IsidReverse, OfACountingRecordIsThis) {
    const Outcome outcome = translate(reverse_result, counting(32), Bytes(44, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(44), {{0, "80"},
                                                     {4, "04 05 06 00"},
                                                     {8, "08 09 0a 0b"},
                                                     {24, "0e 0f 00 00"},
                                                     {28, "14 15 16 17 18 19 1a 1b 1c 1d 1e 1f"},
                                                     {40, "10 11 12 00"}})));
}

TEST(IsidReverse, DoesNotReadConstantBytes) {
    expect_not_carried(reverse_result, Bytes(32), {"P0.4-0", "P1.6-1", "P2-3", "P7", "P12-13", "P19"});
}

TEST(Isid, ComesBackWithTheValueAtL24Swapped) {
    Bytes in(43);
    put_little(in, 24, 2, 0x1234);
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(out[14], 0x12);
    EXPECT_EQ(out[15], 0x34);
    EXPECT_EQ(little(translate(reverse_result, out).out, 24, 4), 0x3412U);
}

TEST(Isid, ComesBackWithEverythingElse) {
    const Bytes in = with(counting(43), {{0, "c7"}});
    EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out),
              hex(with(Bytes(44), {{0, "c7"},
                                   {4, "04 05"},
                                   {8, "08 09 0a 0b"},
                                   {24, "19 18"},
                                   {28, "1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29 2a"}})));
}

TEST(Isid, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(Isid, IsTable58) {
    EXPECT_EQ(l2p_ucode_func_table[58].key, &isid_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[58].result, &isid_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[58], &isid_type_logical_xlate_result);
}

}  // namespace
