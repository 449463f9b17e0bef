#include <tuple>
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

const Translator key = FORWARD(r_ldi_key_st_xlate_key, 3, 3);
const Translator result = FORWARD(r_ldi_entry_st_result, 36, 16);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

const Rows flags{
    "P0-15 = 0",   "P0 = 0x11",   "P0.6 = L0.3", "P0.7 = L0.4", "P0.5 = L0.5", "P1.1 = L0.2",
    "P1.0 = L0.1", "P1.3 = L0.0", "P1.4 = L1.3", "P2.6 = L0.5", "P2.7 = L0.6",
};
const Rows alternatives{"P12 = L22", "P1.2 = L1.4"};
const Rows second_alternative{"P12 = L23"};
const Rows value{"P8-11 = L9-12"};
const Rows label{"P13-15 = label L32-35 flag 1"};

Reply result_model(Bytes& in, Bytes& out) {
    flags.apply(in, out);
    if (in[2] > 3) {
        in[2] = 0;
    }
    out[3] = static_cast<std::uint8_t>(3 * in[2] + 4);
    alternatives.apply(in, out);
    if (bit(in, 1, 4)) {
        if (bit(in, 0, 0)) {
            return Reply{.status = 95, .length = {}};
        }
        out[3] = static_cast<std::uint8_t>(6 * in[3] + 2);
        second_alternative.apply(in, out);
    }
    out[7] = route::hop_byte(in[8]);
    value.apply(in, out);
    if (bit(in, 1, 3)) {
        label.apply(in, out);
    }
    const std::uint64_t index = little(in, 4, 4);
    put_little(out, 4, 3, bit(in, 0, 1) ? route::lowest_bit_to_bit_20(index) : index);
    return Reply{.status = 0, .length = 16};
}

Bytes entry(Bytes base, bool second_count, bool shifted, bool labelled) {
    set_bit(base, 1, 4, second_count);
    set_bit(base, 0, 1, shifted);
    set_bit(base, 1, 3, labelled);
    return base;
}

std::vector<Bytes> all_entries(const Bytes& pattern) {
    std::vector<Bytes> entries;
    for (unsigned choice = 0; choice < 8; ++choice) {
        entries.push_back(entry(pattern, (choice & 1) != 0, (choice & 2) != 0, (choice & 4) != 0));
    }
    return entries;
}

const support::Models models{{key, key_model}, {result, result_model}};

// ---- Key ----

TEST(RecursiveLdiKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

// ---- Result ----

TEST(RecursiveLdi, EveryBitOfEveryFormLandsWhereItBelongs) {
    for (const Bytes& pattern : {Bytes(36), Bytes(36, 0xff), with(counting(36), {{2, "02"}})}) {
        walk(result, result_model, all_entries(pattern));
    }
}

TEST(RecursiveLdi, RandomRecordsOfEveryFormAgree) {
    check_random(result, result_model, 3000);
    for (const Bytes& choice : all_entries(Bytes(36))) {
        check_random(result, result_model, 500, [&choice](Bytes& in) {
            in = entry(in, bit(choice, 1, 4), bit(choice, 0, 1), bit(choice, 1, 3));
            set_bit(in, 0, 0, false);
            in[2] &= 7;
        });
    }
}

TEST(RecursiveLdi, OfZerosHoldsTheHeaderAndTheSmallestCounts) {
    const Outcome outcome = translate(result, Bytes(36));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 04 00 00 00 01 00 00 00 00 00 00 00 00");
}

TEST(RecursiveLdi, HoldsCountsValuesAndLabel) {
    const Bytes in =
        with(Bytes(36), {{0, "38 08 02 07 56 34 12 00 05"}, {9, "a1 a2 a3 a4"}, {22, "c1 c2"}, {32, "45 23 f1 ff"}});
    EXPECT_EQ(hex(translate(result, in).out), "f1 10 40 0a 56 34 12 0b a1 a2 a3 a4 c1 12 34 51");
}

TEST(RecursiveLdi, PathCountAboveThreeBecomesZeroInTheInputToo) {
    for (const auto& [count, path_byte, left] : std::vector<std::tuple<const char*, int, int>>{
             {"00", 4, 0}, {"01", 7, 1}, {"02", 10, 2}, {"03", 13, 3}, {"04", 4, 0}, {"05", 4, 0}, {"ff", 4, 0}}) {
        const Outcome outcome = translate(result, with(Bytes(36), {{2, count}}));
        EXPECT_EQ(outcome.status, 0) << count;
        EXPECT_EQ(outcome.out[3], path_byte) << count;
        EXPECT_EQ(outcome.in[2], left) << count;
    }
}

TEST(RecursiveLdi, NothingElseOfTheInputChanges) {
    const Bytes in = with(Bytes(36, 0xff), {{0, "fe"}});
    EXPECT_EQ(hex(translate(result, in).in), hex(with(in, {{2, "00"}})));
}

TEST(RecursiveLdi, SecondCountReplacesThePathCount) {
    const Bytes in = with(Bytes(36), {{1, "10 03 02"}, {22, "c1 c2"}});
    EXPECT_EQ(hex(translate(result, in).out), "11 04 00 0e 00 00 00 01 00 00 00 00 c2 00 00 00");
}

TEST(RecursiveLdi, SecondCountWrapsAround) {
    for (const auto& [count, path_byte] :
         std::vector<std::pair<const char*, int>>{{"00", 2}, {"2a", 254}, {"2b", 4}, {"ff", 252}}) {
        EXPECT_EQ(translate(result, with(Bytes(36), {{1, "10 00"}, {3, count}})).out[3], path_byte) << count;
    }
}

TEST(RecursiveLdi, SecondCountWithTheFirstFlagIsNotSupported) {
    Bytes in = with(Bytes(36, 0xff), {{0, "01 10 05"}});
    in[22] = 0xc1;
    const Outcome outcome = translate(result, in, Bytes(16, 0xa5));
    EXPECT_EQ(outcome.status, 95);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "11 0c 00 04 00 00 00 00 00 00 00 00 c1 00 00 00");
    EXPECT_EQ(outcome.in[2], 0);
}

TEST(RecursiveLdi, EitherOfTheTwoFlagsAloneIsSupported) {
    EXPECT_EQ(translate(result, with(Bytes(36), {{0, "01 00"}})).status, 0);
    EXPECT_EQ(translate(result, with(Bytes(36), {{0, "00 10"}})).status, 0);
    EXPECT_EQ(translate(result, with(Bytes(36), {{0, "fe ff"}})).status, 0);
    EXPECT_EQ(translate(result, with(Bytes(36), {{0, "ff ef"}})).status, 0);
}

TEST(RecursiveLdi, HopCountIsDoubledWithTheLowestBitSetAndTooLargeOnesCountAsOne) {
    for (const auto& [count, hops] :
         std::vector<std::pair<const char*, int>>{{"00", 1}, {"01", 3}, {"40", 129}, {"41", 3}, {"ff", 3}}) {
        EXPECT_EQ(translate(result, with(Bytes(36), {{8, count}})).out[7], hops) << count;
    }
}

TEST(RecursiveLdi, LowestBitOfTheIndexMovesToBit20WhenAsked) {
    const auto index = [](const char* flags_byte, const char* value_bytes) {
        const Bytes out = translate(result, with(Bytes(36), {{0, flags_byte}, {4, value_bytes}})).out;
        return hex({out.begin() + 4, out.begin() + 7});
    };
    EXPECT_EQ(index("02", "01 00 00 00"), "00 00 10");
    EXPECT_EQ(index("00", "01 00 00 00"), "01 00 00");
    EXPECT_EQ(index("02", "54 76 18 00"), "2a 3b 0c");
    // Bits above the index take part as they are.
    EXPECT_EQ(index("02", "00 00 00 01"), "00 00 80");
    EXPECT_EQ(index("02", "01 00 20 00"), "00 00 10");
    EXPECT_EQ(index("00", "00 00 e0 ff"), "00 00 e0");
}

TEST(RecursiveLdi, LabelIsThereOnlyWhenFlagged) {
    expect_not_carried(result, counting(36, 0x80), {"L32-35"});
    const Bytes labelled = entry(Bytes(36), false, false, true);
    EXPECT_EQ(changes(result, labelled, "L32.0"), "P15.4");
    EXPECT_EQ(changes(result, labelled, "L34.3"), "P13.7");
    EXPECT_EQ(translate(result, labelled).out[15], 0x01);
}

TEST(RecursiveLdi, FlagsGoToTheirPlaces) {
    const Bytes base(36);
    EXPECT_EQ(changes(result, base, "L0.0"), "P1.3");
    EXPECT_EQ(changes(result, base, "L0.1"), "P1.0");
    EXPECT_EQ(changes(result, base, "L0.2"), "P1.1");
    EXPECT_EQ(changes(result, base, "L0.3"), "P0.6");
    EXPECT_EQ(changes(result, base, "L0.4"), "P0.7");
    EXPECT_EQ(changes(result, base, "L0.5"), "P0.5 P2.6");
    EXPECT_EQ(changes(result, base, "L0.6"), "P2.7");
    EXPECT_EQ(changes(result, base, "L1.3"), "P1.4 P15.0");
}

TEST(RecursiveLdi, DropsWhatNoFormUses) {
    for (const Bytes& base : all_entries(Bytes(36))) {
        expect_not_carried(result, base, {"L0.7", "L1.7-5", "L1.2-0", "L13-21", "L24-31", "L34.7-4", "L35"});
    }
    expect_not_carried(result, entry(Bytes(36), true, false, false), {"L2", "L22"});
    expect_not_carried(result, entry(Bytes(36), false, false, false), {"L3", "L23"});
}

TEST(RecursiveLdi, MindsNoLength) { expect_length_ignored(result, counting(36, 0x80)); }

TEST(RecursiveLdi, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[12].key, r_ldi_key_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[12].result, r_ldi_entry_st_result);
    EXPECT_EQ(p2l_ucode_func_table[12], generic_xlate_logical_result);
}

}  // namespace
