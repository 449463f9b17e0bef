// VRRP virtual MAC entries, table 17.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator vmac_key = FORWARD(vrrp_vmac_entry_st_xlate_key, 8, 8);
const Translator vmac_result = FORWARD(vrrp_vmac_entry_st_xlate_result, 8, 8);
const Translator vmac_back = REVERSE(vrrp_logical_xlate_result, 8, 8);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-5 = swap L0-5", "P6-7 = L6-7"};
    out.assign(8, 0);
    rows.apply(in, out);
    return {.length = 8};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0 = 0x11", "P2 = 0x01", "P4-7 = L4-7"};
    out.assign(8, 0);
    rows.apply(in, out);
    return {.length = 8};
}

Reply back_model(Bytes& in, Bytes& out) {
    static const Rows rows{"L4-7 = P4-7"};
    out.assign(8, 0);
    rows.apply(in, out);
    return {};
}

const support::Models models{{vmac_key, key_model}, {vmac_result, result_model}, {vmac_back, back_model}};

TEST(Vrrp, EveryBitGoesWhereItBelongs) {
    const std::vector<Bytes> bases{Bytes(8), Bytes(8, 0xff), counting(8, 0x81)};
    walk(vmac_key, key_model, bases);
    walk(vmac_result, result_model, bases);
    walk(vmac_back, back_model, bases);
}

TEST(Vrrp, RandomRecordsAreTranslatedAsDocumented) {
    check_random(vmac_key, key_model);
    check_random(vmac_result, result_model);
    check_random(vmac_back, back_model);
}

TEST(Vrrp, NoTranslatorLooksAtTheLengthItIsGiven) {
    const Bytes record = bytes("01 02 03 04 05 06 07 08");
    expect_length_ignored(vmac_key, record);
    expect_length_ignored(vmac_result, record);
    expect_length_ignored(vmac_back, record);
}

TEST(VrrpKey, TurnsTheMacAddressAroundAndKeepsTheQualifier) {
    const Outcome outcome = translate(vmac_key, bytes("01 02 03 04 05 06 07 08"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "06 05 04 03 02 01 07 08");
}

TEST(VrrpResult, OfZerosHoldsTheTwoConstants) {
    const Outcome outcome = translate(vmac_result, Bytes(8), Bytes(8, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 00 01 00 00 00 00 00");
}

TEST(VrrpResult, DoesNotReadTheFirstFourBytes) {
    EXPECT_EQ(hex(translate(vmac_result, bytes("ff ff ff ff 04 05 06 07")).out), "11 00 01 00 04 05 06 07");
    for (const char* position : {"L0.0", "L0.7", "L1.3", "L2.0", "L2.1", "L3.7"}) {
        EXPECT_EQ(changes(vmac_result, Bytes(8), position), "") << position;
    }
    EXPECT_EQ(changes(vmac_result, Bytes(8), "L4.7"), "P4.7");
}

TEST(VrrpReverse, DoesNotRestoreTheFirstFourBytes) {
    const Outcome outcome = translate(vmac_back, bytes("ff ff ff ff 04 05 06 07"), Bytes(8, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "00 00 00 00 04 05 06 07");
    const Bytes physical = translate(vmac_result, bytes("01 02 03 04 05 06 07 08")).out;
    EXPECT_EQ(hex(translate(vmac_back, physical).out), "00 00 00 00 05 06 07 08");
}

TEST(VrrpDispatch, IsTable17) {
    EXPECT_EQ(l2p_ucode_func_table[17].key, &vrrp_vmac_entry_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[17].result, &vrrp_vmac_entry_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[17], &vrrp_logical_xlate_result);
}

}  // namespace
