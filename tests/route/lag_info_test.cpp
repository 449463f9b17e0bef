#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(lag_info_type_xlate_key, 8, 2);
const Translator result = FORWARD(lag_info_type_xlate_result, 12, 8);
const Translator back = REVERSE(lag_info_type_logical_xlate_result, 8, 12);

Reply key_model(Bytes& in, Bytes& out) {
    fill(out, 0, 1);
    const std::uint64_t kind = little(in, 0, 4);
    const std::uint64_t code = kind == 1 || kind == 2 ? kind : 0;
    put_little(out, 0, 2, code * 4096 + (little(in, 4, 4) & 0xfff));
    return Reply{.status = 0, .length = 2};
}

const Rows rows{"P0-7 = 0", "P7 = L4", "P0 = 0x11", "P5.7-6 = L0.1-0"};

Reply result_model(Bytes& in, Bytes& out) {
    rows.apply(in, out);
    const std::uint32_t highest = std::uint32_t{in[4]} - 1;
    set_bit(out, 1, 0, in[4] < 32);
    put_little(out, 2, 2, (highest & 0xffff) >> 3 << 12);
    out[4] = static_cast<std::uint8_t>((highest & 7) + 8);
    return Reply{.status = 0, .length = 8};
}

Reply back_model(Bytes& in, Bytes& out) {
    const Rows restored{"L0-11 = 0", "L4 = P7"};
    restored.apply(in, out);
    return Reply{};
}

const support::Models models{{key, key_model}, {result, result_model}, {back, back_model}};

// ---- Key ----

TEST(LagInfoKey, HoldsTheBundleIdAndTheKindAboveIt) {
    for (const auto& [in, out] :
         std::vector<std::pair<const char*, const char*>>{{"01 00 00 00 23 01 00 00", "23 11"},
                                                          {"02 00 00 00 23 01 00 00", "23 21"},
                                                          {"00 00 00 00 23 01 00 00", "23 01"},
                                                          {"03 00 00 00 23 01 00 00", "23 01"},
                                                          {"ff ff ff ff 23 01 00 00", "23 01"},
                                                          {"02 00 01 00 23 01 00 00", "23 01"},
                                                          {"02 00 00 00 ff ff ff ff", "ff 2f"}}) {
        const Outcome outcome = translate(key, bytes(in), Bytes(2, 0xff));
        EXPECT_EQ(outcome.status, 0) << in;
        EXPECT_EQ(outcome.length, 2U) << in;
        EXPECT_EQ(hex(outcome.out), out) << in;
    }
}

TEST(LagInfoKey, EveryBitOfEveryKindLandsWhereItBelongs) {
    for (unsigned kind = 0; kind < 4; ++kind) {
        for (Bytes base : {Bytes(8), Bytes(8, 0xff), counting(8, 0x71)}) {
            put_little(base, 0, 4, kind);
            walk(key, key_model, base);
        }
        check_random(key, key_model, 500, [kind](Bytes& in) { put_little(in, 0, 4, kind); });
    }
    check_random(key, key_model);
}

TEST(LagInfoKey, DropsWhatLiesAboveTheId) {
    expect_not_carried(key, Bytes(8), {"L5.7-4", "L6-7", "L1-3", "L0.7-2"});
    expect_length_ignored(key, bytes("02 00 00 00 23 01 00 00"));
}

// ---- Result ----

TEST(LagInfo, EveryBitLandsWhereItBelongs) {
    walk(result, result_model, {Bytes(12), Bytes(12, 0xff), counting(12, 0x71)});
    check_random(result, result_model);
}

TEST(LagInfo, EveryMemberCountAgrees) {
    for (unsigned count = 0; count < 256; ++count) {
        Bytes in(12);
        in[4] = static_cast<std::uint8_t>(count);
        check(result, result_model, in);
    }
}

TEST(LagInfo, SplitsTheMemberCountLessOne) {
    for (const auto& [count, expected] :
         std::vector<std::pair<const char*, const char*>>{{"00", "11 01 00 f0 0f 00 00 00"},
                                                          {"01", "11 01 00 00 08 00 00 01"},
                                                          {"08", "11 01 00 00 0f 00 00 08"},
                                                          {"09", "11 01 00 10 08 00 00 09"},
                                                          {"1f", "11 01 00 30 0e 00 00 1f"},
                                                          {"20", "11 00 00 30 0f 00 00 20"},
                                                          {"21", "11 00 00 40 08 00 00 21"},
                                                          {"80", "11 00 00 f0 0f 00 00 80"},
                                                          {"81", "11 00 00 00 08 00 00 81"},
                                                          {"ff", "11 00 00 f0 0e 00 00 ff"}}) {
        const Outcome outcome = translate(result, with(Bytes(12), {{4, count}}), Bytes(8, 0xff));
        EXPECT_EQ(outcome.status, 0) << count;
        EXPECT_EQ(outcome.length, 8U) << count;
        EXPECT_EQ(hex(outcome.out), expected) << count;
    }
}

TEST(LagInfo, CodeStandsAboveInItsByte) {
    EXPECT_EQ(changes(result, Bytes(12), "L0.0"), "P5.6");
    EXPECT_EQ(changes(result, Bytes(12), "L0.1"), "P5.7");
    expect_not_carried(result, Bytes(12), {"L0.7-2", "L1-3", "L5-11"});
    expect_length_ignored(result, counting(12, 0x71));
}

// ---- And back ----

TEST(LagInfoBack, OnlyTheMemberCountComesBack) {
    const Outcome outcome = translate(back, Bytes(8, 0xff), Bytes(12, 0xa5));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "00 00 00 00 ff 00 00 00 00 00 00 00");
    expect_not_carried(back, Bytes(8), {"P0-6"});
    walk(back, back_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x71)});
    check_random(back, back_model, 500);
    expect_length_ignored(back, counting(8, 0x71));

    const Bytes there = translate(result, with(Bytes(12), {{0, "03"}, {4, "09"}})).out;
    EXPECT_EQ(hex(translate(back, there).out), "00 00 00 00 09 00 00 00 00 00 00 00");
}

TEST(LagInfo, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[60].key, lag_info_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[60].result, lag_info_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[60], lag_info_type_logical_xlate_result);
}

}  // namespace
