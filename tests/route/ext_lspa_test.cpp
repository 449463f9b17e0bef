#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(ext_lspa_st_xlate_key, 3, 3);
const Translator result = FORWARD(ext_lspa_st_result, 20, 16);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

const Rows labels{
    "P0-15 = 0",
    "P0 = 0x11",
    "P4-6 = label L0-3 flag L4.0",
    "P7-9 = label L5-8 flag L9.0",
    "P10-12 = label L10-13 flag L14.0",
    "P13-15 = label L15-18 flag L19.0",
};

Reply result_model(Bytes& in, Bytes& out) {
    labels.apply(in, out);
    return Reply{.status = 0, .length = 16};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(ExtendedLspAttributeKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

TEST(ExtendedLspAttribute, EveryBitLandsWhereItBelongs) {
    walk(result, result_model, {Bytes(20), Bytes(20, 0xff), counting(20, 0x51)});
    check_random(result, result_model);
}

TEST(ExtendedLspAttribute, HoldsFourLabelsWithTheirFlags) {
    const Bytes in = bytes("45 23 01 00 01  de bc 0a 00 00  01 00 f0 ff ff  ff ff 0f 00 fe");
    const Outcome outcome = translate(result, in);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 12 34 51 ab cd e0 00 00 11 ff ff f0");
}

TEST(ExtendedLspAttribute, WritesLabelsOfZeroToo) {
    const Outcome outcome = translate(result, Bytes(20), Bytes(16, 0xff));
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(16), {{0, "11"}})));
    const Bytes last_only = with(Bytes(20), {{15, "45 23 01 00 01"}});
    EXPECT_EQ(hex(translate(result, last_only).out), hex(with(Bytes(16), {{0, "11"}, {13, "12 34 51"}})));
}

TEST(ExtendedLspAttribute, DropsWhatIsNeitherLabelNorFlag) {
    for (const Bytes& base : {Bytes(20), Bytes(20, 0xff)}) {
        expect_not_carried(result, base,
                           {"L2.7-4", "L3", "L4.7-1", "L7.7-4", "L8", "L9.7-1", "L12.7-4", "L13", "L14.7-1", "L17.7-4",
                            "L18", "L19.7-1"});
    }
    EXPECT_EQ(changes(result, Bytes(20), "L2.3"), "P4.7");
    EXPECT_EQ(changes(result, Bytes(20), "L4.0"), "P6.0");
    EXPECT_EQ(changes(result, Bytes(20), "L15.0"), "P15.4");
    EXPECT_EQ(changes(result, Bytes(20), "L19.0"), "P15.0");
}

TEST(ExtendedLspAttribute, MindsNoLength) { expect_length_ignored(result, counting(20, 0x51)); }

TEST(ExtendedLspAttribute, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[37].key, ext_lspa_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[37].result, ext_lspa_st_result);
    EXPECT_EQ(p2l_ucode_func_table[37], generic_xlate_logical_result);
}

}  // namespace
