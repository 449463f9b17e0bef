// Table 41, the ACL statistics hash.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(acl_ez_stats_hash_key_xlate, 8, 8);
const Translator result = FORWARD(acl_ez_stats_hash_result_st_xlate, 4, 16);
const Translator read_back = REVERSE(acl_ez_stats_hash_logical_res_xlate, 16, 5);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-1 = L0-1",
        "P2-3 = L2-3",
        "P4-7 = L4-7",
    };
    rows.apply(in, out);
    return {.length = 8};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = 0",
        "P0 = 0x11",
        "P3-6 = L0-3",
    };
    rows.apply(in, out);
    return {.length = 16};
}

// L0 is not restored.
Reply read_back_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-4 = 0",
        "L1 = P4",
        "L2 = P5",
        "L3 = P6",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {read_back, read_back_model}};

TEST(AclStatsHash, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x91)});
    check_random(key, key_model);
    walk(result, result_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x91)});
    check_random(result, result_model);
    walk(read_back, read_back_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x91)});
    check_random(read_back, read_back_model);
}

TEST(AclStatsHash, CopiesTheKeyInItsOwnByteOrder) {
    const Outcome outcome = translate(key, bytes("11 22 33 44 55 66 77 88"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 22 33 44 55 66 77 88");
}

TEST(AclStatsHash, PutsTheResultBehindTheHeader) {
    const Outcome outcome = translate(result, bytes("01 02 03 04"), Bytes(16, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 01 02 03 04 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(4)).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(AclStatsHash, LosesItsFirstByteOnTheWayBack) {
    const Bytes there = translate(result, bytes("01 02 03 04")).out;
    const Outcome back = translate(read_back, there, Bytes(5, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out), "00 02 03 04 00");
}

TEST(AclStatsHash, ReadsNothingButThreeBytesBack) {
    EXPECT_EQ(hex(translate(read_back, bytes("ff ff ff ff 00 00 00 ff ff ff ff ff ff ff ff ff")).out),
              "00 00 00 00 00");
    for (const auto& [from, to] : {std::pair{"P3.0", ""}, std::pair{"P3.7", ""}, std::pair{"P4.0", "L1.0"},
                                   std::pair{"P5.4", "L2.4"}, std::pair{"P6.7", "L3.7"}, std::pair{"P7.0", ""}}) {
        EXPECT_EQ(changes(read_back, counting(16), from), to) << from;
    }
}

TEST(AclStatsHash, IgnoresEveryLength) {
    expect_length_ignored(key, counting(8));
    expect_length_ignored(result, counting(4));
    expect_length_ignored(read_back, counting(16));
}

TEST(AclStatsHash, IsTable41) {
    EXPECT_EQ(l2p_ucode_func_table[41].key, &acl_ez_stats_hash_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[41].result, &acl_ez_stats_hash_result_st_xlate);
    EXPECT_EQ(p2l_ucode_func_table[41], &acl_ez_stats_hash_logical_res_xlate);
}

}  // namespace
