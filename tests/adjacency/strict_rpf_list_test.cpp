// Strict RPF interface list, table 16: eight 32-bit entries behind a flag byte, of which the low halves are carried.
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

const Translator key = FORWARD(strict_rpf_uidb_list_type_xlate_key, 3, 3);
const Translator result = FORWARD(strict_rpf_uidb_list_type_xlate_result, 33, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    fill(out, 0, 2);
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",       "P1.4 = L0.0",     "P4-5 = L1-2",     "P6-7 = L5-6",     "P8-9 = L9-10",
        "P10-11 = L13-14", "P12-13 = L17-18", "P14-15 = L21-22", "P16-17 = L25-26", "P18-19 = L29-30",
    };
    fill(out, 0, 31);
    rows.apply(in, out);
    return {.length = 32};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(StrictRpfList, IsTable16AndReadsBackGenerically) {
    EXPECT_EQ(l2p_ucode_func_table[16].key, strict_rpf_uidb_list_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[16].result, strict_rpf_uidb_list_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[16], generic_xlate_logical_result);
}

TEST(StrictRpfList, LengthsAreIgnored) {
    expect_length_ignored(key, bytes("12 34 56"));
    expect_length_ignored(result, counting(33));
    EXPECT_EQ(translate(result, counting(33)).status, 0);
    EXPECT_EQ(translate(result, counting(33)).length, 32U);
}

TEST(StrictRpfListKey, IsCopiedInItsByteOrder) {
    const Outcome outcome = translate(key, bytes("12 34 56"), bytes("ff ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), bytes("12 34 56")});
    check_random(key, key_model, 200);
}

TEST(StrictRpfListResult, CarriesEveryBit) {
    walk(result, result_model, {Bytes(33), Bytes(33, 0xff), counting(33), counting(33, 0xc5)});
    check_random(result, result_model);
}

TEST(StrictRpfListResult, OfZerosIsTheHeader) {
    const Outcome outcome = translate(result, Bytes(33), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(StrictRpfListResult, HoldsTheFirstTwoBytesOfEachEntry) {
    Bytes logical = counting(33);
    logical[0] = 0xff;
    EXPECT_EQ(hex(translate(result, logical).out),
              "11 10 00 00 01 02 05 06 09 0a 0d 0e 11 12 15 16 19 1a 1d 1e 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, logical, "L0.0"), "P1.4");
    EXPECT_EQ(changes(result, logical, "L30.7"), "P19.7");
}

TEST(StrictRpfListResult, DropsTheUpperHalvesOfTheEntriesAndTheOtherFlags) {
    for (unsigned i = 1; i < 8; ++i) {
        EXPECT_EQ(changes(result, counting(33), "L0." + std::to_string(i)), "");
    }
    for (const unsigned entry : {1U, 5U, 9U, 13U, 17U, 21U, 25U, 29U}) {
        for (unsigned i = 0; i < 8; ++i) {
            EXPECT_EQ(changes(result, counting(33), "L" + std::to_string(entry + 2) + "." + std::to_string(i)), "");
            EXPECT_EQ(changes(result, counting(33), "L" + std::to_string(entry + 3) + "." + std::to_string(i)), "");
        }
    }
}

}  // namespace
