// The extension of a cross-connect entry: three fields in three byte orders at the end of the shared logical record.
#include <cstdint>
#include <utility>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

// The key translator clears one byte more than the key has.
const Translator key = FORWARD(xid_ext_type_xlate_key, 4, 4);
const Translator result = FORWARD(xid_ext_type_xlate_result, 92, 8);
const Translator reverse_result = REVERSE(xid_ext_type_logical_xlate_result, 8, 92);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = 0",
        "P0 = L0",
        "P1 = L1",
        "P2.2-0 = L2.2-0",
    };
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-7 = 0",           "P0 = 0x11",
        "P1.7-4 = L80.3-0",  // the first value: least significant nibble first
        "P2.3-0 = L80.7-4",   "P2.7-4 = L81.3-0", "P3.3-0 = L81.7-4", "P3.7-4 = L82.3-0",
        "P1.3-0 = L86.3-0",  // the second: most significant byte first
        "P4-5 = swap L84-85",
        "P6-7 = L88-89",  // the third: least significant byte first
    };
    rows.apply(in, out);
    return {.length = 8};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    std::swap(in[4], in[5]);
    static const Rows rows{
        "L0-91 = 0",        "L80.3-0 = P1.7-4", "L80.7-4 = P2.3-0", "L81.3-0 = P2.7-4",
        "L81.7-4 = P3.3-0", "L82.3-0 = P3.7-4", "L86.3-0 = P1.3-0",
        "L84-85 = P4-5",  // swapped already
        "L88-89 = P6-7",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

TEST(CrossConnectExtKey, CarriesNineteenBitsLowOrderByteFirst) {
    walk(key, key_model, patterns(4));
    check_random(key, key_model);

    const Outcome largest = translate(key, bytes("ff ff 07 00"));
    EXPECT_EQ(largest.status, 0);
    EXPECT_EQ(largest.length, 3U);
    EXPECT_EQ(hex(largest.out), "ff ff 07 00");
    EXPECT_EQ(hex(translate(key, bytes("45 23 01 00")).out), "45 23 01 00");
}

TEST(CrossConnectExtKey, DropsTheBitsAboveBit18AndClearsOneByteBeyondTheKey) {
    const Outcome outcome = translate(key, bytes("ff ff ff ff"), Bytes(4, 0xff));
    EXPECT_EQ(hex(outcome.out), "ff ff 07 00");
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(translate(key, bytes("00 00 f8 ff")).out), "00 00 00 00");
}

TEST(CrossConnectExtResult, CarriesItsThreeFieldsAndNothingElse) {
    walk(result, result_model, patterns(92));
    check_random(result, result_model);
}

TEST(CrossConnectExtResult, HasThreeByteOrders) {
    Bytes in(92);
    put_little(in, 80, 4, 0xfffabcde);
    put_little(in, 84, 4, 0xfff12345);
    put_little(in, 88, 2, 0x6789);
    const Outcome outcome = translate(result, in);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 e1 cd ab 23 45 89 67");
    EXPECT_EQ(hex(translate(result, Bytes(92)).out), "11 00 00 00 00 00 00 00");
}

TEST(CrossConnectExtResult, DoesNotCarryTheMainEntryNorTheTopsOfItsFields) {
    for (const Bytes& base : {Bytes(92), Bytes(92, 0xff)}) {
        expect_not_carried(result, base, {"L0-79", "L82.7-4", "L83", "L86.7-4", "L87", "L90-91"});
    }
    EXPECT_EQ(changes(result, Bytes(92), "L80.0"), "P1.4");
    EXPECT_EQ(changes(result, Bytes(92), "L82.3"), "P3.7");
    EXPECT_EQ(changes(result, Bytes(92), "L84.0"), "P5.0");
    EXPECT_EQ(changes(result, Bytes(92), "L86.3"), "P1.3");
    EXPECT_EQ(changes(result, Bytes(92), "L88.0"), "P6.0");
}

TEST(CrossConnectExtReverse, RestoresItsThreeFieldsAndNothingElse) {
    walk(reverse_result, reverse_model, patterns(8));
    check_random(reverse_result, reverse_model);
}

TEST(CrossConnectExtReverse, LeavesBytes4And5OfItsInputSwapped) {
    const Outcome outcome = translate(reverse_result, bytes("11 e1 cd ab 23 45 89 67"), Bytes(92, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.in), "11 e1 cd ab 45 23 89 67");

    Bytes expected(92);
    put_little(expected, 80, 4, 0xabcde);
    put_little(expected, 84, 4, 0x12345);
    put_little(expected, 88, 2, 0x6789);
    EXPECT_EQ(hex(outcome.out), hex(expected));
}

TEST(CrossConnectExtReverse, ReadsOtherBytesWhenGivenTheSameInputTwice) {
    const Outcome first = translate(reverse_result, bytes("11 00 00 00 12 34 00 00"));
    const Outcome second = translate(reverse_result, first.in);
    EXPECT_EQ(little(first.out, 84, 4), 0x1234U);
    EXPECT_EQ(little(second.out, 84, 4), 0x3412U);
    EXPECT_EQ(hex(second.in), "11 00 00 00 12 34 00 00");
}

TEST(CrossConnectExtReverse, DoesNotReadTheHeader) { expect_not_carried(reverse_result, Bytes(8), {"P0"}); }

TEST(CrossConnectExt, ComesBackWithoutTheMainEntry) {
    const Bytes in = counting(92);
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex(out), "11 06 15 25 55 54 58 59");
    Bytes expected(92);
    put_little(expected, 80, 4, 0x25150);
    put_little(expected, 84, 4, 0x65554);
    put_little(expected, 88, 2, 0x5958);
    EXPECT_EQ(hex(translate(reverse_result, out).out), hex(expected));
}

TEST(CrossConnectExt, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(CrossConnectExt, IsTable74) {
    EXPECT_EQ(l2p_ucode_func_table[74].key, &xid_ext_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[74].result, &xid_ext_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[74], &xid_ext_type_logical_xlate_result);
}

}  // namespace
