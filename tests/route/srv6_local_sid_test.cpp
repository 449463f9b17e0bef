#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(srv6_local_sid_key_xlate, 2, 2);
const Translator entry = FORWARD(srv6_local_sid_entry_xlate, 3, 8);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0 = L0", "P1 = L1"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 2};
}

Reply entry_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-7 = 0", "P0 = 0x11", "P1 = L0", "P2 = L1", "P3 = L2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 8};
}

const support::Models models{{key, key_model}, {entry, entry_model}};

TEST(Srv6LocalSidKey, KeepsItsTwoBytes) {
    const Outcome outcome = translate(key, bytes("34 12"), Bytes(2, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 2U);
    EXPECT_EQ(hex(outcome.out), "34 12");
    walk(key, key_model, {Bytes(2), Bytes(2, 0xff), counting(2, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("34 12"));
}

TEST(Srv6LocalSid, ThreeBytesFollowTheHeader) {
    const Outcome outcome = translate(entry, bytes("aa bb cc"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 aa bb cc 00 00 00 00");
    EXPECT_EQ(hex(translate(entry, Bytes(3)).out), "11 00 00 00 00 00 00 00");
    walk(entry, entry_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(entry, entry_model, 200);
    expect_length_ignored(entry, bytes("aa bb cc"));
}

TEST(Srv6LocalSid, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[116].key, srv6_local_sid_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[116].result, srv6_local_sid_entry_xlate);
    EXPECT_EQ(p2l_ucode_func_table[116], generic_xlate_logical_result);
}

}  // namespace
