// Table 44, the source ports.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(icu_src_port_st_xlate_key, 1, 1);
const Translator result = FORWARD(icu_src_port_st_xlate_result, 2, 8);
const Translator read_back = REVERSE(icu_src_port_logical_res_xlate, 8, 2);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0 = L0"};
    rows.apply(in, out);
    return {.length = 1};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-7 = 0",
        "P0 = 0x11",
        "P1-2 = L0-1",
    };
    rows.apply(in, out);
    return {.length = 8};
}

Reply read_back_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-1 = 0",
        "L0-1 = P1-2",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {read_back, read_back_model}};

TEST(IcuSrcPort, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(1), Bytes(1, 0xff), Bytes(1, 0xa6)});
    check_random(key, key_model, 500);
    walk(result, result_model, {Bytes(2), Bytes(2, 0xff), counting(2, 0x91)});
    check_random(result, result_model);
    walk(read_back, read_back_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x91)});
    check_random(read_back, read_back_model);
}

TEST(IcuSrcPort, CopiesTheKey) {
    const Outcome outcome = translate(key, bytes("a5"), bytes("ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 1U);
    EXPECT_EQ(hex(outcome.out), "a5");
}

TEST(IcuSrcPort, PutsTheResultBehindTheHeaderInItsOwnByteOrder) {
    const Outcome outcome = translate(result, bytes("34 12"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 34 12 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, bytes("00 00")).out), "11 00 00 00 00 00 00 00");
}

TEST(IcuSrcPort, ReadsBackWhatItWrote) {
    const Outcome back = translate(read_back, translate(result, bytes("34 12")).out, Bytes(2, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out), "34 12");
}

TEST(IcuSrcPort, ReadsNothingButItsValueBack) {
    EXPECT_EQ(hex(translate(read_back, bytes("ff 00 00 ff ff ff ff ff")).out), "00 00");
    EXPECT_EQ(changes(read_back, counting(8), "P1.0"), "L0.0");
    EXPECT_EQ(changes(read_back, counting(8), "P2.7"), "L1.7");
    EXPECT_EQ(changes(read_back, counting(8), "P0.0"), "");
    EXPECT_EQ(changes(read_back, counting(8), "P3.0"), "");
}

TEST(IcuSrcPort, ReadsBackOnlyRecordsOfEightBytes) { expect_exact_length(read_back); }

TEST(IcuSrcPort, IgnoresTheLengthOnTheWayOut) {
    expect_length_ignored(key, bytes("5a"));
    expect_length_ignored(result, bytes("5a a6"));
}

TEST(IcuSrcPort, IsTable44) {
    EXPECT_EQ(l2p_ucode_func_table[44].key, &icu_src_port_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[44].result, &icu_src_port_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[44], &icu_src_port_logical_res_xlate);
}

}  // namespace
