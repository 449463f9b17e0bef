// GRE interface to protocol index. Reached by name only.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator proto_key = FORWARD(gre_ifh_2_proto_index_xlate, 6, 6);
const Translator proto_result = FORWARD(gre_ifh_2_proto_result_xlate, 4, 8);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = L0-1", "P2-5 = L2-5"};
    rows.apply(in, out);
    return {.length = 6};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0 = 0x11", "P1-3 = swap L1-3"};
    out.assign(8, 0);
    rows.apply(in, out);
    return {.length = 8};
}

const support::Models models{{proto_key, key_model}, {proto_result, result_model}};

TEST(GreIfhProto, EveryBitGoesWhereItBelongs) {
    walk(proto_key, key_model, {Bytes(6), Bytes(6, 0xff), counting(6, 0x81)});
    walk(proto_result, result_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x81)});
    check_random(proto_key, key_model);
    check_random(proto_result, result_model);
}

TEST(GreIfhProto, NoTranslatorLooksAtTheLengthItIsGiven) {
    for (const Translator* translator : {&proto_key, &proto_result}) {
        const Bytes record = counting(translator->in_size, 1);
        expect_length_ignored(*translator, record);
    }
}

TEST(GreIfhProto, KeyIsCopiedUnchanged) {
    const Outcome outcome = translate(proto_key, bytes("01 02 03 04 05 06"), Bytes(6, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "01 02 03 04 05 06");
}

TEST(GreIfhProto, ResultIsOneValueTurnedAround) {
    const Outcome outcome = translate(proto_result, bytes("ff 01 02 03"), Bytes(8, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 03 02 01 00 00 00 00");
    EXPECT_EQ(hex(translate(proto_result, Bytes(4)).out), "11 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(proto_result, Bytes(4), "L1.0"), "P3.0");
    EXPECT_EQ(changes(proto_result, Bytes(4), "L3.7"), "P1.7");
    EXPECT_EQ(changes(proto_result, Bytes(4), "L0.7"), "");
    EXPECT_EQ(changes(proto_result, Bytes(4), "L0.0"), "");
}

TEST(GreIfhProto, IsReachedByNameOnly) {
    for (const npxlate_l2p_entry& entry : l2p_ucode_func_table) {
        EXPECT_NE(entry.key, &gre_ifh_2_proto_index_xlate);
        EXPECT_NE(entry.result, &gre_ifh_2_proto_result_xlate);
    }
}

}  // namespace
