#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "route/route_records.h"
#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(lag_type_xlate_key, 7, 3);
const Translator result = FORWARD(lag_type_xlate_result, 14, 16);
const Translator back = REVERSE(lag_type_logical_xlate_result, 16, 14);

Reply key_model(Bytes& in, Bytes& out) {
    fill(out, 0, 2);
    const std::uint64_t kind = little(in, 0, 4);
    const std::uint64_t code = kind == 1 || kind == 2 ? kind : 0;
    put_little(out, 0, 2, little(in, 4, 2) & 0xfff);
    out[2] = static_cast<std::uint8_t>(code * 64 + in[6]);
    return Reply{.status = 0, .length = 3};
}

const Rows rows{
    "P0-15 = 0", "P0 = 0x11", "P0.7 = L0.0", "P0.6 = L0.1", "P0.5 = L0.2", "P1 = L12", "P6 = L2", "P7 = L3",
};
const Rows member{"P8 = L4"};

Reply result_model(Bytes& in, Bytes& out) {
    rows.apply(in, out);
    put_big(out, 4, 2, route::ranged_queue(little(in, 5, 2), in[7]));
    if (bit(in, 0, 3)) {
        member.apply(in, out);
    }
    return Reply{.status = 0, .length = 16};
}

const Rows restored{"L0.0 = P0.7", "L0.1 = P0.6", "L2 = P6", "L3 = P7", "L4 = P8", "L0.3 = any P8"};

Reply back_model(Bytes& in, Bytes& out) {
    fill(out, 0, 13);
    restored.apply(in, out);
    const std::uint64_t queue = big(in, 4, 2);
    put_little(out, 5, 2, queue & 0x3ff);
    if ((queue & 0x800) != 0) {
        out[7] = (queue & 0x400) != 0 ? 8 : 4;
    }
    return Reply{};
}

const support::Models models{{key, key_model}, {result, result_model}, {back, back_model}};

// ---- Key ----

TEST(LagKey, HoldsTheBundleIdAndTheKindPlusItsByte) {
    for (const auto& [in, out] :
         std::vector<std::pair<const char*, const char*>>{{"02 00 00 00 23 01 45", "23 01 c5"},
                                                          {"01 00 00 00 23 01 45", "23 01 85"},
                                                          {"03 00 00 00 23 01 45", "23 01 45"},
                                                          {"00 00 00 00 23 01 45", "23 01 45"},
                                                          {"ff ff ff ff 23 01 45", "23 01 45"},
                                                          {"02 01 00 00 23 01 45", "23 01 45"},
                                                          {"01 00 00 80 23 01 45", "23 01 45"},
                                                          {"02 00 00 00 ff ff 00", "ff 0f 80"},
                                                          {"01 00 00 00 00 f0 3f", "00 00 7f"},
                                                          {"01 00 00 00 00 00 40", "00 00 80"},
                                                          {"01 00 00 00 00 00 c0", "00 00 00"},
                                                          {"02 00 00 00 00 00 ff", "00 00 7f"}}) {
        const Outcome outcome = translate(key, bytes(in), Bytes(3, 0xff));
        EXPECT_EQ(outcome.status, 0) << in;
        EXPECT_EQ(outcome.length, 3U) << in;
        EXPECT_EQ(hex(outcome.out), out) << in;
    }
}

TEST(LagKey, EveryBitOfEveryKindLandsWhereItBelongs) {
    for (unsigned kind = 0; kind < 4; ++kind) {
        for (Bytes base : {Bytes(7), Bytes(7, 0xff), counting(7, 0x71)}) {
            put_little(base, 0, 4, kind);
            walk(key, key_model, base);
        }
        check_random(key, key_model, 500, [kind](Bytes& in) { put_little(in, 0, 4, kind); });
    }
    check_random(key, key_model);
}

TEST(LagKey, DropsTheHighNibbleOfTheId) {
    expect_not_carried(key, Bytes(7), {"L5.7-4", "L1-3", "L0.7-2"});
    expect_length_ignored(key, bytes("02 00 00 00 23 01 45"));
}

// ---- Result ----

TEST(Lag, EveryBitLandsWhereItBelongs) {
    for (Bytes base : {Bytes(14), Bytes(14, 0xff), counting(14, 0x71)}) {
        for (const bool has_member : {false, true}) {
            for (const std::uint8_t range : bytes("00 04 08")) {
                set_bit(base, 0, 3, has_member);
                base[7] = range;
                walk(result, result_model, base);
            }
        }
    }
    check_random(result, result_model);
    check_random(result, result_model, 1000, [](Bytes& in) { in[7] &= 0x0c; });
}

TEST(Lag, HoldsFlagsQueueAndMember) {
    const Outcome outcome = translate(result, bytes("0f ee a2 a3 a4 34 12 04 00 00 00 00 ac 00"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "f1 ac 00 00 1a 34 a2 a3 a4 00 00 00 00 00 00 00");
}

TEST(Lag, OfZerosHoldsTheHeaderOnly) {
    EXPECT_EQ(hex(translate(result, Bytes(14), Bytes(16, 0xff)).out), hex(with(Bytes(16), {{0, "11"}})));
}

TEST(Lag, QueueIsMarkedWithItsRange) {
    for (const auto& [range, queue] : std::vector<std::pair<const char*, const char*>>{
             {"00", "12 34"}, {"02", "12 34"}, {"04", "1a 34"}, {"08", "1e 34"}, {"0c", "12 34"}, {"ff", "12 34"}}) {
        const Bytes out = translate(result, with(Bytes(14), {{5, "34 12"}, {7, range}})).out;
        EXPECT_EQ(hex({out.begin() + 4, out.begin() + 6}), queue) << range;
    }
}

TEST(Lag, MemberIsThereOnlyWhenMarkedValid) {
    const Bytes unmarked = with(Bytes(14), {{0, "00"}, {4, "5a"}});
    EXPECT_EQ(translate(result, unmarked).out[8], 0x00);
    EXPECT_EQ(hex(translate(back, translate(result, unmarked).out).out), hex(Bytes(14)));
    const Bytes marked = with(Bytes(14), {{0, "08"}, {4, "5a"}});
    EXPECT_EQ(translate(result, marked).out[8], 0x5a);
    EXPECT_EQ(hex(translate(back, translate(result, marked).out).out), hex(with(Bytes(14), {{0, "08"}, {4, "5a"}})));
}

TEST(Lag, DropsWhatItDoesNotUse) {
    expect_not_carried(result, with(Bytes(14), {{0, "08"}}), {"L0.7-4", "L1", "L8-11", "L13"});
    EXPECT_EQ(changes(result, Bytes(14), "L0.0"), "P0.7");
    EXPECT_EQ(changes(result, Bytes(14), "L0.1"), "P0.6");
    EXPECT_EQ(changes(result, Bytes(14), "L0.2"), "P0.5");
    expect_length_ignored(result, counting(14, 0x71));
}

// ---- And back ----

TEST(LagBack, EveryBitLandsWhereItBelongs) {
    walk(back, back_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x71), with(Bytes(16), {{4, "08"}})});
    check_random(back, back_model);
    expect_length_ignored(back, counting(16, 0x71));
}

TEST(LagBack, RangeComesFromTheTwoMarks) {
    for (const auto& [high, range] : std::vector<std::pair<const char*, int>>{
             {"0c", 8}, {"08", 4}, {"04", 0}, {"00", 0}, {"f3", 0}, {"ff", 8}, {"fb", 4}}) {
        const Bytes out = translate(back, with(Bytes(16), {{4, high}, {5, "a5"}}), Bytes(14, 0xff)).out;
        EXPECT_EQ(out[7], range) << high;
        EXPECT_EQ(out[5], 0xa5) << high;
        EXPECT_EQ(out[6], bytes(high)[0] & 3) << high;
        EXPECT_EQ(hex({out.begin() + 8, out.begin() + 11}), "00 00 00") << high;
    }
}

TEST(LagBack, LosesAFlagAByteAndTheHighBitsOfTheQueue) {
    const Bytes there = translate(result, bytes("0f ee a2 a3 a4 34 12 04 00 00 00 00 ac 00")).out;
    const Outcome outcome = translate(back, there);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "0b 00 a2 a3 a4 34 02 04 00 00 00 00 00 00");
}

TEST(LagBack, MemberOfZeroIsNotMarkedValid) {
    EXPECT_EQ(hex(translate(back, translate(result, with(Bytes(14), {{0, "08"}})).out).out), hex(Bytes(14)));
    EXPECT_EQ(changes(back, Bytes(16), "P8.6"), "L0.3 L4.6");
}

TEST(LagBack, DoesNotRestoreWhatItDoesNotRead) {
    expect_not_carried(back, Bytes(16), {"P0.5-0", "P1-3", "P4.7-4", "P4.2", "P9-15"});
    EXPECT_EQ(changes(back, with(Bytes(16), {{4, "08"}}), "P4.2"), "L7.3 L7.2");
}

TEST(Lag, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[8].key, lag_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[8].result, lag_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[8], lag_type_logical_xlate_result);
}

}  // namespace
