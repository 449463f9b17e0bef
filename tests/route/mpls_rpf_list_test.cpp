#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(mpls_rpf_list_xlate_key, 4, 4);
const Translator result = FORWARD(mpls_rpf_list_xlate_result, 4, 8);

Reply key_model(Bytes& in, Bytes& out) {
    // The upper eleven bits of L2-3, least significant byte first.
    const Rows rows{
        "P0-3 = 0", "P2 = L0", "P3 = L1", "P0.2-0 = L2.7-5", "P0.7-3 = L3.4-0", "P1.2-0 = L3.7-5",
    };
    rows.apply(in, out);
    return Reply{.status = 0, .length = 4};
}

Reply result_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-7 = 0", "P4-7 = L0-3", "P0 = 0x11"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 8};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(MplsRpfListKey, EveryBitLandsWhereItBelongs) {
    walk(key, key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x71)});
    check_random(key, key_model);
    expect_length_ignored(key, bytes("34 12 60 a7"));
}

TEST(MplsRpfListKey, MovesElevenBitsInFrontOfTheIdentifier) {
    const Outcome outcome = translate(key, bytes("34 12 60 a7"), Bytes(4, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "3b 05 34 12");
    EXPECT_EQ(hex(translate(key, bytes("00 00 ff ff")).out), "ff 07 00 00");
}

TEST(MplsRpfListKey, DropsTheLowestFiveBits) {
    expect_not_carried(key, counting(4, 0x71), {"L2.4-0"});
    EXPECT_EQ(changes(key, Bytes(4), "L2.5"), "P0.0");
    EXPECT_EQ(changes(key, Bytes(4), "L3.7"), "P1.2");
}

TEST(MplsRpfList, FourBytesFollowInTheirOrder) {
    const Outcome outcome = translate(result, bytes("aa bb cc dd"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 aa bb cc dd");
    EXPECT_EQ(hex(translate(result, Bytes(4)).out), "11 00 00 00 00 00 00 00");
    walk(result, result_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x71)});
    check_random(result, result_model, 500);
    expect_length_ignored(result, bytes("aa bb cc dd"));
}

TEST(MplsRpfList, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[97].key, mpls_rpf_list_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[97].result, mpls_rpf_list_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[97], generic_xlate_logical_result);
}

}  // namespace
