#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(prot_lag_st_xlate_key, 3, 3);
const Translator result = FORWARD(prot_lag_st_xlate_result, 16, 16);
const Translator back = REVERSE(prot_lag_logical_res_xlate, 16, 16);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0 = L0", "P1 = L1", "P2 = L2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

const Rows rows{
    "P0-15 = 0",
    "P0 = 0x11",
    // The word of L2-5: identifier, two bits, ten bits.
    "P4.7-4 = 9",
    "P4.3-0 = L3.3-0",
    "P5 = L2",
    "P13 = L4",
    "P14.7-6 = L3.7-6",
    "P14.3-2 = L3.5-4",
    // The word of L6-9: fifteen bits less one, a bit, a bit, two bits.
    "P6.6-0 = L7.6-0",
    "P7.6-0 = L6.6-0",
    "P7.7 = L8.0",
    "P15.7-6 = L8.2-1",
    "P15.4 = L7.7",
    "P8 = L10",
    "P9 = L11",
    "P10 = L12",
    "P11 = L13",
};

Reply result_model(Bytes& in, Bytes& out) {
    rows.apply(in, out);
    return Reply{.status = 0, .length = 16};
}

const Rows restored{
    "L0-15 = 0",
    "L0.2-0 = P5.7-5",
    "L1.0 = P5.4",
    // The word of L2-5.
    "L2 = P4",
    "L3.3-0 = P5.3-0",
    "L3.5-4 = P13.3-2",
    "L3.7-6 = P13.7-6",
    "L4 = P14",
    // The word of L6-9.
    "L6 = P6",
    "L7.6-0 = P7.6-0",
    "L7.7 = P15.4",
    "L8.0 = P7.7",
    "L8.2-1 = P15.7-6",
    "L10 = P8",
    "L11 = P9",
    "L12 = P10",
    "L13 = P11",
};

Reply back_model(Bytes& in, Bytes& out) {
    restored.apply(in, out);
    return Reply{};
}

const Bytes bundle = bytes("07 01 34 5a c7 ff 5a b3 fd ff 8a 8b 8c 8d 8e 8f");

const support::Models models{{key, key_model}, {result, result_model}, {back, back_model}};

// ---- Key ----

TEST(ProtectedLagKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

// ---- Result ----

TEST(ProtectedLag, EveryBitLandsWhereItBelongs) {
    walk(result, result_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x71), bundle});
    check_random(result, result_model);
}

TEST(ProtectedLag, OfZerosHoldsTheHeaderAndTwoMarks) {
    const Outcome outcome = translate(result, Bytes(16), Bytes(16, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 90 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(ProtectedLag, SpreadsItsTwoWords) {
    EXPECT_EQ(hex(translate(result, bundle).out), "11 00 00 00 9a 34 33 da 8a 8b 8c 8d 00 c7 44 90");
    EXPECT_EQ(hex(translate(result, Bytes(16, 0xff)).out), "11 00 00 00 9f ff 7f ff ff ff ff ff 00 ff cc d0");
}

TEST(ProtectedLag, Bit7OfTheSecondWordIsLost) {
    EXPECT_EQ(hex(translate(result, with(Bytes(16), {{6, "ff 00"}})).out),
              "11 00 00 00 90 00 00 7f 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, Bytes(16), "L6.7"), "");
    EXPECT_EQ(changes(result, Bytes(16), "L8.0"), "P7.7");
    EXPECT_EQ(changes(result, Bytes(16), "L7.7"), "P15.4");
}

TEST(ProtectedLag, DropsWhatItDoesNotUse) {
    expect_not_carried(result, bundle, {"L0-1", "L5", "L6.7", "L8.7-3", "L9", "L14-15"});
    EXPECT_EQ(changes(result, Bytes(16), "L3.4"), "P14.2");
    EXPECT_EQ(changes(result, Bytes(16), "L3.6"), "P14.6");
    EXPECT_EQ(changes(result, Bytes(16), "L4.7"), "P13.7");
    expect_length_ignored(result, bundle);
}

// ---- And back ----

TEST(ProtectedLagBack, EveryBitLandsWhereItBelongs) {
    walk(back, back_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x71)});
    check_random(back, back_model);
}

TEST(ProtectedLagBack, ReadsTheFieldsWithTheirBytesExchanged) {
    const Outcome outcome = translate(back, bytes("11 00 00 00 12 f4 81 d5 8a 8b 8c 8d 00 48 3f 90"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "07 01 12 64 3f 00 81 d5 05 00 8a 8b 8c 8d 00 00");
    EXPECT_EQ(hex(translate(back, Bytes(16, 0xff)).out), "07 01 ff ff ff 00 ff ff 07 00 ff ff ff ff 00 00");
}

TEST(ProtectedLagBack, DoesNotGiveBackTheRecordThatWentOut) {
    EXPECT_EQ(hex(translate(back, translate(result, bundle).out).out),
              "01 01 9a d4 44 00 33 da 05 00 8a 8b 8c 8d 00 00");
}

TEST(ProtectedLagBack, DoesNotRestoreWhatItDoesNotRead) {
    expect_not_carried(back, Bytes(16), {"P0-3", "P12", "P13.5-4", "P13.1-0", "P15.5", "P15.3-0"});
    EXPECT_EQ(changes(back, Bytes(16), "P5.4"), "L1.0");
    EXPECT_EQ(changes(back, Bytes(16), "P5.5"), "L0.0");
    EXPECT_EQ(changes(back, Bytes(16), "P5.7"), "L0.2");
    EXPECT_EQ(changes(back, Bytes(16), "P6.7"), "L6.7");
}

TEST(ProtectedLagBack, TakesSixteenBytesOnly) {
    const Bytes in = translate(result, bundle).out;
    const Bytes before = counting(16, 0x80);
    for (const std::int32_t length : {-1, -16, 0, 1, 15, 17, 32, 0x10010}) {
        const Outcome outcome = translate_with_length(back, in, length, before);
        EXPECT_EQ(outcome.status, 22) << length;
        EXPECT_EQ(outcome.length, std::nullopt) << length;
        EXPECT_EQ(hex(outcome.out), hex(before)) << length;
    }
    EXPECT_EQ(translate_with_length(back, in, 16, before).status, 0);
}

TEST(ProtectedLag, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[102].key, prot_lag_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[102].result, prot_lag_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[102], prot_lag_logical_res_xlate);
}

}  // namespace
