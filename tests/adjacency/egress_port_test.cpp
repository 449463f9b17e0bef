// Egress port, table 19: a key of its own, results as they are.
#include <cstdint>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(egr_port_xlate_key, 2, 2);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = L0-1"};
    rows.apply(in, out);
    return {.length = 2};
}

const support::Models models{{key, key_model}};

TEST(EgressPort, IsTable19WithGenericResults) {
    EXPECT_EQ(l2p_ucode_func_table[19].key, egr_port_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[19].result, generic_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[19], generic_xlate_logical_result);
}

TEST(EgressPortKey, IsCopiedInItsByteOrder) {
    const Outcome outcome = translate(key, bytes("12 34"), bytes("ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 2U);
    EXPECT_EQ(hex(outcome.out), "12 34");
}

TEST(EgressPortKey, CarriesEveryBit) {
    walk(key, key_model, {Bytes(2), Bytes(2, 0xff), bytes("12 34")});
    check_random(key, key_model, 200);
}

TEST(EgressPortKey, WritesTwoBytesWhateverTheLength) {
    // Beside the generic key, which would copy as many bytes as the length says.
    expect_length_ignored(key, bytes("12 34"));
    const Outcome outcome = translate(key, bytes("12 34"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 2U);
    EXPECT_EQ(hex(outcome.out), "12 34");
}

}  // namespace
