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

const Translator key = FORWARD(ip_leaf_st_xlate_key, 3, 3);
const Translator result = FORWARD(ip_leaf_st_xlate_result, 64, 32);
const Translator back = REVERSE(ip_leaf_st_logical_xlate_result, 32, 64);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0 = L0", "P1 = L1", "P2 = L2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

// The engine's codes for an SRv6 function.
unsigned sid_behaviour(std::uint64_t function) {
    switch (function) {
        case 1:
        case 2:
        case 3:
        case 4:
            return 2;
        case 5:
        case 6:
        case 7:
        case 8:
            return 4;
        case 9:
        case 10:
        case 11:
        case 12:
            return 8;
        case 16:
            return 16;
        case 17:
            return 64;
        case 18:
        case 36:
            return 32;
        case 19:
        case 37:
            return 0x80;
        default:
            return 0;
    }
}

unsigned sid_action(std::uint64_t function) {
    return function >= 1 && function <= 12 ? static_cast<unsigned>((function - 1) % 4) : 0;
}

const Rows header{"P0-31 = 0", "P0 = 0x11"};
const Rows carries_l18{"P1.4 = 0", "P1.2 = 1", "P24 = L18"};
const Rows carries_no_l18{"P1.4 = L0.0", "P1.2 = L0.0"};
const Rows variant_b{
    "P12.7 = L2.3", "P12.0 = 1", "P12.5 = L54.0", "P9 = L56", "P10 = L57", "P11 = L58",
};
const Rows not_variant_b{"P0.6 = L0.4", "P1.0 = not L0.4"};
const Rows flags{
    "P1.3 = L1.3", "P1.5 = L0.3", "P1.6 = L0.1", "P1.7 = L0.2", "P0.6 = L0.4",
    "P2.4 = L1.3", "P2.5 = L0.6", "P2.3 = 0",    "P2.7 = L2.0", "P2.0 = L2.1",
};
const Rows tail{
    "P25 = L51", "P26 = L48", "P27.3-0 = L49.3-0", "P27.4 = L49.5", "P27.5 = L49.4", "P27.7-6 = 0",
};

const Rows label_stack{
    "P16 = L28",
    "P17 = L29",
    "P18 = L30",
};
const Rows second_triple{"P19-21 = L36-38"};
const Rows first_triple{"P19-21 = L32-34"};
const Rows label_stack_rest{
    "P4-6 = label L8-11 flag L12.0",
    "P7-9 = label L13-16 flag L17.0",
    "P10-12 = label L18-21 flag L22.0",
    "P13-15 = label L23-26 flag L27.0",
    "P29-31 = L40-42",
    "P22-24 = label L44-47 flag 0",
    "P24.3 = L49.7",
    "P24.2-0 = L50.2-0",
};

void apply_label_stack(const Bytes& in, Bytes& out) {
    label_stack.apply(in, out);
    (bit(in, 2, 5) ? second_triple : first_triple).apply(in, out);
    label_stack_rest.apply(in, out);
    tail.apply(in, out);
    out[28] = in[6];
    const bool any_flag = bit(in, 12, 0) || bit(in, 17, 0) || bit(in, 22, 0) || bit(in, 27, 0);
    set_bit(out, 2, 6, any_flag || big(out, 19, 3) != 0);
    set_bit(out, 0, 5, little(in, 4, 2) == 1);
}

const Rows next_hop{"P29-31 = L40-42", "P4-6 = L8-10", "P7 = L16", "P8 = L17"};

void apply_next_hop(const Bytes& in, Bytes& out) {
    next_hop.apply(in, out);
    tail.apply(in, out);
    const bool other_slot = bit(in, 1, 3);
    const std::uint64_t value = little(in, other_slot ? 28 : 12, 4);
    const std::size_t flag_byte = other_slot ? 33 : 19;
    if (value != 0) {
        if (bit(in, flag_byte, 3)) {
            set_bit(out, 28, 0);
            put_big(out, 20, 4, value);
        } else {
            put_little(out, 20, 4, (value & 0x7ffff) | 0x80000);
        }
        set_bit(out, 28, 1);
        set_bit(out, 28, 3, bit(in, flag_byte, 1));
        set_bit(out, 28, 2, bit(in, flag_byte, 2));
        set_bit(out, 2, 1);
    } else {
        fill(out, 20, 23);
        set_bit(out, 28, 1, false);
        set_bit(out, 2, 1, false);
    }
}

const Rows queue_flags{"P28.7 = L1.0", "P28.6 = L0.7", "P28.5 = L1.1", "P28.4 = L1.2"};
const Rows queue_overlay{"P13 = L32", "P4-6 = L8-10", "P9-12 = swap L20-23", "P29-31 = L40-42"};
const Rows extension_triple{"P14-16 = L24-26"};

void apply_queue_overlay(const Bytes& in, Bytes& out) {
    queue_flags.apply(in, out);
    if (bits(out, 28, 7, 4) != 0) {
        set_bit(out, 2, 2);
    }
    put_big(out, 7, 2, route::ranged_queue(little(in, 12, 2), in[16]));
    queue_overlay.apply(in, out);
    tail.apply(in, out);
    fill(out, 14, 16);
    if (bits(in, 1, 7, 6) == 3) {
        set_bit(out, 2, 3);
        extension_triple.apply(in, out);
    }
}

const Rows srv6_overlay{"P7-8 = L54-55", "P13-15 = L56-58"};

Reply result_model(Bytes& in, Bytes& out) {
    const bool is_label_stack = bit(in, 0, 4);
    const bool is_variant_b = bit(in, 0, 0);

    header.apply(in, out);
    (bit(in, 1, 4) ? carries_l18 : carries_no_l18).apply(in, out);
    (is_variant_b ? variant_b : not_variant_b).apply(in, out);
    flags.apply(in, out);
    if (bit(in, 49, 7) || bit(in, 2, 0)) {
        set_bit(out, 0, 7);
    }

    const unsigned hops = route::clamped_hops(in[4]);
    set_bit(out, 1, 1, (!is_label_stack && hops == 1) || bit(in, 2, 2));
    out[3] = route::hop_byte(in[4]);

    if (is_label_stack) {
        apply_label_stack(in, out);
    } else if (!is_variant_b) {
        apply_next_hop(in, out);
    }
    if (bit(in, 1, 3)) {
        apply_queue_overlay(in, out);
    }
    if (bit(in, 2, 3)) {
        srv6_overlay.apply(in, out);
        out[9] = static_cast<std::uint8_t>(sid_behaviour(little(in, 52, 2)));
        out[10] = static_cast<std::uint8_t>(sid_action(little(in, 52, 2)));
    }
    return Reply{.status = 0, .length = 32};
}

const Rows restored{
    "L0.0 = P1.4", "L0.1 = P1.6", "L0.2 = P1.7", "L0.3 = P1.5", "L0.4 = P0.6",
    "L0.6 = P2.5", "L2.0 = P2.7", "L2.1 = P2.0", "L4 = P3",
};
const Rows label_stack_restored{
    "L8-11 = label P4-6",
    "L12.0 = P6.0",
    "L13-16 = label P7-9",
    "L17.0 = P9.0",
    "L18-21 = label P10-12",
    "L22.0 = P12.0",
    "L23-26 = label P13-15",
    "L27.0 = P15.0",
    "L28 = P16",
    "L29 = P17",
    "L30 = P18",
    "L31 = 0",
    "L32 = P19",
    "L33 = P20",
    "L34 = P21",
    "L35 = 0",
    "L44-47 = label P22-24",
    "L49.7 = P24.3",
    "L50.2-0 = P24.2-0",
    "L51 = P25",
    "L40 = P29",
    "L41 = P30",
    "L42 = P31",
    "L43 = 0",
    "L6 = P28",
};
const Rows others_restored{
    "L8 = P4", "L9 = P5", "L10 = P6", "L11 = 0", "L16 = P7", "L17 = P8", "L51 = P25", "L40-42 = P29-31",
};

Reply back_model(Bytes& in, Bytes& out) {
    fill(out, 0, 63);
    restored.apply(in, out);
    (bit(in, 0, 6) ? label_stack_restored : others_restored).apply(in, out);
    return Reply{};
}

// The record with the bits that choose variant and overlays.
Bytes leaf(Bytes base, bool label_stack_bit, bool variant_b_bit, bool queue_bit, bool srv6_bit) {
    set_bit(base, 0, 4, label_stack_bit);
    set_bit(base, 0, 0, variant_b_bit);
    set_bit(base, 1, 3, queue_bit);
    set_bit(base, 2, 3, srv6_bit);
    return base;
}

// All combinations of variants and overlays over one pattern.
std::vector<Bytes> all_leaves(const Bytes& pattern) {
    std::vector<Bytes> leaves;
    for (unsigned choice = 0; choice < 16; ++choice) {
        leaves.push_back(leaf(pattern, (choice & 1) != 0, (choice & 2) != 0, (choice & 4) != 0, (choice & 8) != 0));
    }
    return leaves;
}

// A label-stack leaf in which every field differs from the others.
const Bytes label_stack_leaf = with(Bytes(64), {{0, "10"},
                                                {4, "02 00 77 66"},
                                                {8, "45 23 01 00 01"},
                                                {13, "de bc 0a 00 00"},
                                                {18, "01 00 00 00 01"},
                                                {23, "ff ff ff ff fe"},
                                                {28, "28 29 2a 2b"},
                                                {32, "32 33 34 35"},
                                                {36, "36 37 38 39"},
                                                {40, "40 41 42 43"},
                                                {44, "21 43 05 00"},
                                                {48, "48 9a 05 51"}});

// A next-hop leaf likewise.
const Bytes next_hop_leaf = with(Bytes(64), {{0, "02"},
                                             {4, "01 00 77 66"},
                                             {8, "08 09 0a 0b"},
                                             {12, "78 56 34 12"},
                                             {16, "16 17 18 0e"},
                                             {40, "40 41 42 43"},
                                             {48, "48 20 00 51"}});

Bytes there_and_back(const Bytes& in) { return translate(back, translate(result, in).out).out; }

const support::Models models{{key, key_model}, {result, result_model}, {back, back_model}};

// ---- Key ----

TEST(IpLeafKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

// ---- Result ----

TEST(IpLeaf, EveryBitOfEveryVariantAndOverlayLandsWhereItBelongs) {
    for (const Bytes& pattern : {Bytes(64), Bytes(64, 0xff), counting(64, 0x40)}) {
        walk(result, result_model, all_leaves(pattern));
    }
}

TEST(IpLeaf, RandomRecordsOfEveryVariantAndOverlayAgree) {
    check_random(result, result_model, 4000);
    for (const Bytes& choice : all_leaves(Bytes(64))) {
        check_random(result, result_model, 300, [&choice](Bytes& in) {
            in = leaf(in, bit(choice, 0, 4), bit(choice, 0, 0), bit(choice, 1, 3), bit(choice, 2, 3));
        });
    }
}

TEST(IpLeaf, RandomRecordsWithKnownSrv6FunctionsAgree) {
    unsigned function = 0;
    check_random(result, result_model, 2000, [&function](Bytes& in) {
        set_bit(in, 2, 3);
        put_little(in, 52, 2, function++ % 40);
    });
}

TEST(IpLeaf, SmallCountsAgreeInEveryVariant) {
    unsigned count = 0;
    check_random(result, result_model, 2000, [&count](Bytes& in) { put_little(in, 4, 2, count++ % 70); });
}

TEST(IpLeaf, OfZerosIsANextHopLeafWithoutANextHop) {
    const Outcome outcome = translate(result, Bytes(64));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(32), {{0, "11 01 00 01"}})));
}

TEST(IpLeaf, LabelStackLeafHoldsFourLabelsTriplesAndTheSecondLabel) {
    EXPECT_EQ(hex(translate(result, label_stack_leaf).out),
              "d1 00 40 05 12 34 51 ab cd e0 00 00 11 ff ff f0 28 29 2a 32 33 34 54 32 1d 51 48 2a 77 40 41 42");
}

TEST(IpLeaf, LabelStackLeafTakesTheOtherTripleWhenAsked) {
    const Bytes in = with(label_stack_leaf, {{2, "20"}});
    EXPECT_EQ(hex(translate(result, in).out),
              "d1 00 40 05 12 34 51 ab cd e0 00 00 11 ff ff f0 28 29 2a 36 37 38 54 32 1d 51 48 2a 77 40 41 42");
}

TEST(IpLeaf, VariantBHoldsItsTripleAndItsMarks) {
    const Bytes in = with(Bytes(64), {{0, "01"},
                                      {4, "03 00"},
                                      {8, "08 09 0a"},
                                      {12, "78 56 34 12 16 17 18 0e"},
                                      {40, "40 41 42"},
                                      {48, "48 0f 07 51"},
                                      {54, "01 00 56 57 58"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "11 14 00 07"}, {9, "56 57 58 21"}})));
}

TEST(IpLeaf, NextHopLeafHoldsTheNextHopBigEndianWhenItsFlagSaysSo) {
    EXPECT_EQ(hex(translate(result, next_hop_leaf).out),
              "11 43 02 03 08 09 0a 16 17 00 00 00 00 00 00 00 00 00 00 00 12 34 56 78 00 51 48 10 0f 40 41 42");
}

TEST(IpLeaf, NextHopLeafWithoutThatFlagKeepsTheLowBytesInTheirOrderAndForcesBit19) {
    const Bytes in = with(Bytes(64), {{12, "56 34 12 00"}, {19, "06"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex(out), hex(with(Bytes(32), {{0, "11 01 02 01"}, {20, "56 34 0a 00"}, {28, "0e"}})));
}

TEST(IpLeaf, NextHopOfHighBitsOnlyStillCountsAsPresent) {
    const Bytes in = with(Bytes(64), {{12, "00 00 00 80"}});
    EXPECT_EQ(hex(translate(result, in).out),
              hex(with(Bytes(32), {{0, "11 01 02 01"}, {20, "00 00 08 00"}, {28, "02"}})));
}

TEST(IpLeaf, NextHopOfZeroIsAbsentWhateverItsFlagsSay) {
    const Bytes in = with(Bytes(64), {{19, "ff"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "11 01 00 01"}})));
}

TEST(IpLeaf, NextHopComesFromTheOtherSlotUnderTheQueueOverlay) {
    const Bytes in = with(Bytes(64), {{1, "08"}, {12, "78 56 34 12"}, {28, "56 34 12 00"}, {32, "32 06"}});
    EXPECT_EQ(hex(translate(result, in).out),
              hex(with(Bytes(32), {{0, "11 09 12 01"}, {7, "56 78"}, {13, "32"}, {20, "56 34 0a 00"}, {28, "0e"}})));
    const Bytes big_endian = with(in, {{33, "0a"}});
    EXPECT_EQ(hex(translate(result, big_endian).out),
              hex(with(Bytes(32), {{0, "11 09 12 01"}, {7, "56 78"}, {13, "32"}, {20, "00 12 34 56"}, {28, "0b"}})));
}

TEST(IpLeaf, QueueOverlayReplacesTheLabels) {
    const Bytes in = with(label_stack_leaf, {{1, "c9"}});
    EXPECT_EQ(hex(translate(result, in).out),
              "d1 08 5c 05 45 23 01 de 01 ff 01 00 00 32 ff ff ff 29 2a 32 33 34 54 32 1d 51 48 2a 87 40 41 42");
}

TEST(IpLeaf, QueueOverlayCarriesTheExtensionTripleForTheValueThreeOnly) {
    for (const auto& [selector, flags_byte, triple] : std::vector<std::tuple<const char*, unsigned, const char*>>{
             {"08", 0x50, "00 00 00"}, {"48", 0x50, "00 00 00"}, {"88", 0x50, "00 00 00"}, {"c8", 0x58, "ff ff ff"}}) {
        const Bytes out = translate(result, with(label_stack_leaf, {{1, selector}})).out;
        EXPECT_EQ(out[2], flags_byte) << selector;
        EXPECT_EQ(hex({out.begin() + 14, out.begin() + 17}), triple) << selector;
    }
}

TEST(IpLeaf, ExtensionSelectorMeansNothingWithoutTheQueueOverlay) {
    const Bytes in = with(Bytes(64), {{1, "c0"}, {24, "24 25 26"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "11 01 00 01"}})));
}

TEST(IpLeaf, QueueOverlayMarksTheQueueWithItsRange) {
    for (const auto& [range, queue] : std::vector<std::pair<const char*, const char*>>{
             {"02", "12 34"}, {"04", "1a 34"}, {"08", "1e 34"}, {"0c", "12 34"}}) {
        for (const char* selector : {"00", "01", "10"}) {
            const Bytes in = with(Bytes(64), {{0, selector}, {1, "08"}, {12, "34 12"}, {16, range}});
            const Bytes out = translate(result, in).out;
            EXPECT_EQ(hex({out.begin() + 7, out.begin() + 9}), queue) << range << ' ' << selector;
        }
    }
}

TEST(IpLeaf, QueueOverlayReplacesTheTripleOfVariantB) {
    const Bytes in = with(Bytes(64), {{0, "01 08"}, {8, "08 09 0a"}, {20, "20 21 22 23"}, {54, "01 00 56 57 58"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "11 1c 10 01 08 09 0a 00 00 23 22 21 20"}})));
}

TEST(IpLeaf, QueueFlagsLandInTheHighNibbleAndAreSummedUp) {
    const Bytes base = leaf(Bytes(64), false, false, true, false);
    EXPECT_EQ(changes(result, base, "L1.0"), "P2.2 P28.7");
    EXPECT_EQ(changes(result, base, "L0.7"), "P2.2 P28.6");
    EXPECT_EQ(changes(result, base, "L1.1"), "P2.2 P28.5");
    EXPECT_EQ(changes(result, base, "L1.2"), "P2.2 P28.4");
    const Bytes plain(64);
    expect_not_carried(result, plain, {"L0.7", "L1.2-0"});
}

TEST(IpLeaf, QueueFlagsReplaceTheHighNibbleOfTheLabelStackByteOnly) {
    const Bytes in = with(Bytes(64), {{0, "10 08"}, {6, "ff"}});
    EXPECT_EQ(translate(result, in).out[28], 0x0f);
}

TEST(IpLeaf, Srv6OverlayHoldsInEveryVariant) {
    const Bytes base = with(counting(64), {{52, "04 00 54 55 56 57 58"}});
    for (const Bytes& in : all_leaves(base)) {
        if (!bit(in, 2, 3)) {
            continue;
        }
        const Bytes out = translate(result, in).out;
        EXPECT_EQ(hex({out.begin() + 7, out.begin() + 11}), "54 55 02 03");
        EXPECT_EQ(hex({out.begin() + 13, out.begin() + 16}), "56 57 58");
    }
}

TEST(IpLeaf, Srv6OverlayLeavesTheLabelsAroundItAlone) {
    const Bytes in = with(label_stack_leaf, {{2, "08"}, {52, "25 00 54 55 56 57 58"}});
    EXPECT_EQ(hex(translate(result, in).out),
              "d1 00 40 05 12 34 51 54 55 80 00 00 11 56 57 58 28 29 2a 32 33 34 54 32 1d 51 48 2a 77 40 41 42");
}

TEST(IpLeaf, Srv6FunctionIsSixteenBitsWide) {
    const Bytes in = with(Bytes(64), {{2, "08"}, {52, "04 01"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(out[9], 0);
    EXPECT_EQ(out[10], 0);
}

TEST(IpLeaf, Srv6FunctionsAreMappedToBehaviourAndAction) {
    for (unsigned function = 0; function < 0x140; ++function) {
        Bytes in(64);
        set_bit(in, 2, 3);
        put_little(in, 52, 2, function);
        check(result, result_model, in);
    }
}

TEST(IpLeaf, Srv6OverlayIsMarkedInVariantBOnly) {
    EXPECT_EQ(bits(translate(result, with(Bytes(64), {{0, "01"}, {2, "08"}})).out, 12, 7, 0), 0x81U);
    EXPECT_EQ(bits(translate(result, with(Bytes(64), {{0, "00"}, {2, "08"}})).out, 12, 7, 0), 0x00U);
}

TEST(IpLeaf, HopCountIsDoubledWithTheLowestBitSetAndTooLargeOnesCountAsOne) {
    for (const auto& [count, hops] : std::vector<std::pair<const char*, int>>{{"00 00", 1},
                                                                              {"01 00", 3},
                                                                              {"05 00", 11},
                                                                              {"40 00", 129},
                                                                              {"41 00", 3},
                                                                              {"c8 00", 3},
                                                                              {"ff 00", 3},
                                                                              {"05 ff", 11}}) {
        for (const char* selector : {"00", "01", "10", "11"}) {
            const Bytes in = with(Bytes(64), {{0, selector}, {4, count}});
            EXPECT_EQ(translate(result, in).out[3], hops) << count << " in variant " << selector;
        }
    }
}

TEST(IpLeaf, OneHopIsMarkedOutsideLabelStacks) {
    for (const auto& [count, one] : std::vector<std::pair<const char*, bool>>{
             {"00", false}, {"01", true}, {"02", false}, {"40", false}, {"41", true}, {"c8", true}}) {
        for (const char* selector : {"00", "01"}) {
            const Bytes in = with(Bytes(64), {{0, selector}, {4, count}});
            EXPECT_EQ(bit(translate(result, in).out, 1, 1), one) << count << " in variant " << selector;
        }
        for (const char* selector : {"10", "11"}) {
            const Bytes in = with(Bytes(64), {{0, selector}, {4, count}});
            EXPECT_FALSE(bit(translate(result, in).out, 1, 1)) << count << " in variant " << selector;
        }
    }
}

TEST(IpLeaf, OneHopCanBeForcedInEveryVariant) {
    for (const char* selector : {"00", "01", "10", "11"}) {
        const Bytes base = with(Bytes(64), {{0, selector}});
        EXPECT_EQ(changes(result, base, "L2.2"), "P1.1") << selector;
    }
}

TEST(IpLeaf, CountOfOneIsMarkedInLabelStacksOnAllSixteenBits) {
    const auto mark = [](const char* selector, const char* count) {
        return bit(translate(result, with(Bytes(64), {{0, selector}, {4, count}})).out, 0, 5);
    };
    EXPECT_TRUE(mark("10", "01 00"));
    EXPECT_FALSE(mark("10", "01 01"));
    EXPECT_FALSE(mark("10", "00 00"));
    EXPECT_FALSE(mark("10", "41 00"));
    EXPECT_FALSE(mark("00", "01 00"));
    EXPECT_FALSE(mark("01", "01 00"));
    EXPECT_EQ(translate(result, with(Bytes(64), {{0, "10"}, {4, "01 01"}})).out[3], 3);
}

TEST(IpLeaf, LabelStackIsMarkedByAnyEntryFlagOrByteOfTheTriple) {
    const Bytes base = with(Bytes(64), {{0, "10"}});
    EXPECT_FALSE(bit(translate(result, base).out, 2, 6));
    EXPECT_EQ(changes(result, base, "L12.0"), "P2.6 P6.0");
    EXPECT_EQ(changes(result, base, "L17.0"), "P2.6 P9.0");
    EXPECT_EQ(changes(result, base, "L22.0"), "P2.6 P12.0");
    EXPECT_EQ(changes(result, base, "L27.0"), "P2.6 P15.0");
    EXPECT_EQ(changes(result, base, "L32.0"), "P2.6 P19.0");
    EXPECT_EQ(changes(result, base, "L33.7"), "P2.6 P20.7");
    EXPECT_EQ(changes(result, base, "L34.3"), "P2.6 P21.3");
    EXPECT_EQ(changes(result, base, "L36.0"), "");
    EXPECT_EQ(changes(result, base, "L28.0"), "P16.0");
    const Bytes other = with(base, {{2, "20"}});
    EXPECT_EQ(changes(result, other, "L38.3"), "P2.6 P21.3");
    EXPECT_EQ(changes(result, other, "L34.3"), "");
}

TEST(IpLeaf, Byte18IsCarriedWhenFlaggedUnlessTheSecondLabelTakesItsPlace) {
    const Bytes flagged = with(Bytes(64), {{1, "10"}, {18, "18"}});
    EXPECT_EQ(hex(translate(result, flagged).out), hex(with(Bytes(32), {{0, "11 05 00 01"}, {24, "18"}})));
    EXPECT_EQ(changes(result, Bytes(64), "L18.3"), "");
    const Bytes in_b = with(flagged, {{0, "01"}});
    EXPECT_EQ(hex(translate(result, in_b).out), hex(with(Bytes(32), {{0, "11 04 00 01"}, {12, "01"}, {24, "18"}})));
    const Bytes in_stack = with(flagged, {{0, "10"}});
    // There the byte is part of the third entry's label instead.
    EXPECT_EQ(hex(translate(result, in_stack).out), hex(with(Bytes(32), {{0, "51 04 00 01"}, {10, "00 01 80"}})));
}

TEST(IpLeaf, FlagsGoToTheirPlaces) {
    const Bytes base(64);
    EXPECT_EQ(changes(result, base, "L0.1"), "P1.6");
    EXPECT_EQ(changes(result, base, "L0.2"), "P1.7");
    EXPECT_EQ(changes(result, base, "L0.3"), "P1.5");
    EXPECT_EQ(changes(result, base, "L0.4"), "P0.6 P1.0");
    EXPECT_EQ(changes(result, base, "L0.6"), "P2.5");
    EXPECT_EQ(changes(result, base, "L0.0"), "P1.4 P1.2 P1.0 P12.0");
    EXPECT_EQ(changes(result, base, "L1.3"), "P1.3 P2.4");
    EXPECT_EQ(changes(result, base, "L1.4"), "P1.2");
    EXPECT_EQ(changes(result, base, "L2.0"), "P0.7 P2.7");
    EXPECT_EQ(changes(result, base, "L2.1"), "P2.0");
    EXPECT_EQ(changes(result, base, "L49.7"), "P0.7");
}

TEST(IpLeaf, TheFlagsOfByte49CrossOver) {
    for (const Bytes& base :
         {Bytes(64), leaf(Bytes(64), true, false, false, false), leaf(Bytes(64), false, true, true, false)}) {
        EXPECT_EQ(changes(result, base, "L49.4"), "P27.5");
        EXPECT_EQ(changes(result, base, "L49.5"), "P27.4");
        EXPECT_EQ(changes(result, base, "L49.3"), "P27.3");
    }
    EXPECT_EQ(changes(result, leaf(Bytes(64), true, false, false, false), "L49.7"), "P0.7 P24.3");
}

TEST(IpLeaf, DropsWhatNoVariantUses) {
    for (const Bytes& base : all_leaves(counting(64, 0x40))) {
        expect_not_carried(result, base,
                           {"L0.5", "L1.5", "L2.4", "L2.7-6", "L3", "L7", "L11", "L27.7-1", "L35", "L39", "L43",
                            "L46.7-4", "L47", "L49.6", "L50.7-3", "L59-63"});
    }
}

TEST(IpLeaf, VariantBDropsTheTailOfAllOthers) {
    const Bytes base = leaf(counting(64, 0x40), false, true, false, false);
    EXPECT_EQ(carried(result, base, {"L5-53", "L54.7-1", "L55", "L59-63"}), "L49.7 ");
}

TEST(IpLeaf, MindsNoLength) {
    expect_length_ignored(result, label_stack_leaf);
    expect_length_ignored(back, translate(result, label_stack_leaf).out);
}

// ---- And back ----

TEST(IpLeafBack, EveryBitLandsWhereItBelongs) {
    for (Bytes base : {Bytes(32), Bytes(32, 0xff), counting(32, 0xa0)}) {
        for (const bool label_stack_bit : {false, true}) {
            set_bit(base, 0, 6, label_stack_bit);
            walk(back, back_model, base);
        }
    }
    check_random(back, back_model, 3000);
}

TEST(IpLeafBack, LabelStackOfOnesRestoresWhatItCan) {
    const Outcome outcome = translate(back, Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(64), {{0, "5f 00 03 00 ff 00 ff 00"},
                                                     {8, "ff ff 0f 00 01"},
                                                     {13, "ff ff 0f 00 01"},
                                                     {18, "ff ff 0f 00 01"},
                                                     {23, "ff ff 0f 00 01"},
                                                     {28, "ff ff ff 00 ff ff ff 00"},
                                                     {40, "ff ff ff 00 ff ff 0f 00"},
                                                     {48, "00 80 07 ff"}})));
}

TEST(IpLeafBack, AllOtherLeavesOfOnesRestoreWhatTheyCan) {
    const Outcome outcome = translate(back, with(Bytes(32, 0xff), {{0, "bf"}}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(
        hex(outcome.out),
        hex(with(
            Bytes(64),
            {{0, "4f 00 03 00 ff 00 00 00"}, {8, "ff ff ff 00"}, {16, "ff ff"}, {40, "ff ff ff 00"}, {51, "ff"}})));
}

TEST(IpLeafBack, DoesNotRestoreWhatItDoesNotRead) {
    const Bytes stack = with(Bytes(32), {{0, "40"}});
    expect_not_carried(
        back, stack,
        {"P0.7", "P0.5-0", "P1.3-0", "P2.6", "P2.4-1", "P6.3-1", "P9.3-1", "P12.3-1", "P15.3-1", "P26-27"});
    expect_not_carried(back, Bytes(32), {"P0.7", "P0.5-0", "P1.3-0", "P2.6", "P2.4-1", "P9-24", "P26-28"});
}

TEST(IpLeafBack, LabelStackLeafLosesTheTailBytes) {
    EXPECT_EQ(hex(there_and_back(label_stack_leaf)), hex(with(Bytes(64), {{0, "10"},
                                                                          {4, "05 00 77 00"},
                                                                          {8, "45 23 01 00 01"},
                                                                          {13, "de bc 0a 00 00"},
                                                                          {18, "01 00 00 00 01"},
                                                                          {23, "ff ff 0f 00 00"},
                                                                          {28, "28 29 2a 00"},
                                                                          {32, "32 33 34 00"},
                                                                          {40, "40 41 42 00"},
                                                                          {44, "21 43 05 00"},
                                                                          {48, "00 80 05 51"}})));
}

TEST(IpLeafBack, TheOtherTripleReturnsToTheFirst) {
    const Bytes out = there_and_back(with(label_stack_leaf, {{2, "20"}}));
    EXPECT_EQ(hex({out.begin() + 32, out.begin() + 40}), "36 37 38 00 00 00 00 00");
    EXPECT_EQ(out[2], 0);
}

TEST(IpLeafBack, NextHopLeafLosesItsNextHop) {
    EXPECT_EQ(
        hex(there_and_back(next_hop_leaf)),
        hex(with(Bytes(64), {{0, "02"}, {4, "03"}, {8, "08 09 0a"}, {16, "16 17"}, {40, "40 41 42"}, {51, "51"}})));
}

TEST(IpLeafBack, HopCountComesBackAsTheStoredByte) {
    const Bytes out = there_and_back(with(Bytes(64), {{4, "05 00"}}));
    EXPECT_EQ(hex({out.begin() + 4, out.begin() + 6}), "0b 00");
}

TEST(IpLeafBack, TheVariantBitIsLostWhereByte18WasCarried) {
    EXPECT_EQ(there_and_back(with(Bytes(64), {{0, "01"}}))[0], 0x01);
    EXPECT_EQ(there_and_back(with(Bytes(64), {{0, "01 10"}}))[0], 0x00);
}

TEST(IpLeaf, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[11].key, ip_leaf_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[11].result, ip_leaf_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[11], ip_leaf_st_logical_xlate_result);
}

}  // namespace
