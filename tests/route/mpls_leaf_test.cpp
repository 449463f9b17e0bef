#include <array>
#include <string>
#include <string_view>
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

const Translator key = FORWARD(mpls_leaf_st_xlate_key, 5, 3);
const Translator result = FORWARD(mpls_leaf_st_result, 90, 32);

Reply key_model(Bytes& in, Bytes& out) {
    fill(out, 0, 2);
    const std::uint64_t qualifier = bit(in, 4, 0) ? 0x100000 : 0;
    put_little(out, 0, 3, qualifier | little(in, 0, 4));
    return Reply{.status = 0, .length = 3};
}

const Rows common{
    "P0-31 = 0",   "P0 = 0x11",                                                                               //
    "P0.7 = L0.3", "P0.5 = L0.5",                                                                             //
    "P1.5 = L0.0", "P1.4 = L0.2", "P1.1 = L1.6", "P1.0 = L1.7", "P1.3 = L2.4", "P1.7 = L4.4", "P1.6 = L0.4",  //
    "P2.5 = L2.0", "P2.4 = L0.7", "P2.3 = L1.0", "P2.2 = L1.1", "P2.1 = L1.2", "P2.0 = L1.6", "P2.7 = L2.6",  //
    "P1.2 = L5.0",
};
const Rows index{"P27 = L76", "P28.5-0 = L77.5-0", "P28.7-6 = 0"};
const Rows last{"P29 = L78", "P30 = L79", "P31 = L80"};

void apply_common(const Bytes& in, Bytes& out) {
    common.apply(in, out);
    set_bit(out, 0, 6, bit(in, 0, 4) || bit(in, 0, 6) || bit(in, 0, 7));
    if (bit(in, 5, 2) || bit(in, 1, 2)) {
        set_bit(out, 1, 5);
    }
    if (bit(in, 1, 7) && route::clamped_hops(in[6]) == 1 && !bit(in, 0, 3)) {
        set_bit(out, 1, 2);
    }
    out[3] = route::hop_byte(in[6]);
    index.apply(in, out);
}

// The slot of five bytes that L3.4 chooses.
void apply_slot(const Bytes& in, Bytes& out, std::size_t to) {
    const std::size_t from = bit(in, 3, 4) ? 13 : 8;
    for (std::size_t i = 0; i < 3; ++i) {
        out[to + i] = in[from + i];
    }
}

const Rows variant_1{"P4-7 = L8-11", "P8 = L12", "P9 = L13", "P10 = 0", "P11.5 = L16.0", "P11.4 = L16.4"};
const Rows variant_2{"P4-7 = L8-11", "P8 = L12", "P9 = L13", "P10 = 0", "P11.7 = L16.1", "P11.6 = any L16.2-1"};
const Rows variant_3{
    "P4-7 = L8-11",  "P12-15 = L12-15", "P8 = L16",     "P9 = L17",
    "P11.6 = L18.0", "P11.5 = L18.1",   "P11.7 = L2.3", "P11.4 = L2.5",
};
const Rows variant_4{"P16-19 = L8-11", "P8 = L78", "P9 = L79", "P10 = L80"};
const Rows variant_4_extended{"P15.2 = 1", "P15.0 = 1", "P1.2 = 0", "P16-19 = L86-89"};
const Rows variant_5{"P16-19 = 0", "P15.1 = 1", "P15.0 = 1", "P1.3 = 1"};
const Rows variant_6{
    "P9.0 = L5.1",
    "P8.7 = L3.1",
    "P8.6 = L3.0",
    "P8.5 = L3.2",
    "P8.4 = L3.3",
    "P8.3 = L2.7",
    "P8.2 = L1.4",
    "P8.1 = L1.3",
    "P8.0 = any L24",
    "P4-6 = L8-10",
    "P25 = L16",
    "P7 = L20",
    "P3.3-0 = L17.3-0",
    "P3.7-4 = L21.3-0",
    "P10-12 = swap L28-30",
    "P13-15 = swap L32-34",
    "P16-18 = swap L40-42",
    "P19-21 = swap L44-46",
    "P22-24 = label L56-59 flag L60.0",
    "P1.2 = 0",
};
const Rows variant_7{
    "P0.6 = 1",
    "P1.4 = 0",
    "P11.0 = L1.5",
    "P11.3 = L1.4",
    "P11.2 = L1.3",
    "P11.1 = any L24",
    "P4-7 = L64-67",
    "P8 = L68",
    "P9 = L69",
    "P10 = 0",
    "P12-14 = swap L28-30",
    "P15-17 = swap L40-42",
    "P18-20 = swap L44-46",
    "P21-23 = label L56-59 flag L60.0",
    "P24 = L16",
    "P25 = L20",
};
const Rows variant_8{"P0.6 = 1", "P4-7 = L12-15", "P11.0 = L16.0", "P2.2 = L16.0", "P11.7-4 = 0"};
const Rows variant_9{
    "P4-6 = label L18-21 flag L22.0",
    "P7-9 = label L23-26 flag L27.0",
    "P10-12 = label L28-31 flag L32.0",
    "P13-15 = label L33-36 flag L37.0",
    "P19 = L40",
    "P20 = L41",
    "P21 = L42",
    "P22 = L44",
    "P23 = L45",
};
const Rows variant_10{"P22 = L44", "P23 = L45"};
const Rows variant_11_by_bytes{"P11 = 0x11", "P11.2 = L4.1", "P12 = L20", "P13 = L21"};
const Rows variant_11{"P23 = L56", "P24 = L57", "P25 = L58"};
const Rows variant_12{"P22 = L18", "P23 = L19"};
const Rows variant_12_extended{"P1.3 = 1", "P15.3 = 1", "P15.0 = 1", "P25 = L72", "P26 = L73"};

void apply_variant_1(const Bytes& in, Bytes& out) {
    variant_1.apply(in, out);
    if (bits(in, 16, 2, 1) != 0) {
        set_bit(out, 11, 6);
        set_bit(out, 11, 7, bit(in, 16, 1));
    }
}

void apply_variant_4(const Bytes& in, Bytes& out) {
    variant_4.apply(in, out);
    put_little(out, 11, 3, route::lowest_bit_to_bit_20(little(in, 16, 4)));
    if (bit(in, 5, 3)) {
        variant_4_extended.apply(in, out);
        apply_slot(in, out, 4);
    }
}

void apply_variant_8(const Bytes& in, Bytes& out) {
    variant_8.apply(in, out);
    put_little(out, 8, 3, little(in, 8, 3) >> 1);
    switch (bits(in, 16, 2, 1)) {
        case 2:
            set_bits(out, 11, 3, 1, 0b100);
            break;
        case 1:
            set_bits(out, 11, 3, 1, 0b001);
            break;
        default:
            set_bits(out, 11, 3, 1, 0b010);
            break;
    }
}

void apply_variant_9(const Bytes& in, Bytes& out) {
    variant_9.apply(in, out);
    apply_slot(in, out, 16);
    const bool any_flag = bit(in, 22, 0) || bit(in, 27, 0) || bit(in, 32, 0) || bit(in, 37, 0);
    set_bit(out, 2, 6, any_flag || little(in, 40, 3) != 0);
}

void apply_variant_11(const Bytes& in, Bytes& out) {
    apply_slot(in, out, 4);
    if (bit(in, 4, 0)) {
        variant_11_by_bytes.apply(in, out);
    } else {
        out[11] = 1;
        put_big(out, 12, 2, route::ranged_queue(little(in, 20, 2), in[24]));
    }
    variant_11.apply(in, out);
}

void apply_variant_12(const Bytes& in, Bytes& out) {
    apply_slot(in, out, 4);
    variant_12.apply(in, out);
    if (bit(in, 5, 6)) {
        variant_12_extended.apply(in, out);
    }
}

// The bits that choose the variant, in the order in which they are tested.
constexpr std::array<std::pair<std::size_t, unsigned>, 12> tests{
    {{0, 4}, {0, 6}, {0, 7}, {2, 4}, {4, 5}, {0, 2}, {4, 6}, {4, 4}, {1, 6}, {0, 3}, {0, 5}, {1, 7}}};

// Counted from 1; 13 when no test holds.
std::size_t variant_of(const Bytes& in) {
    std::size_t variant = 1;
    for (const auto& [byte, which] : tests) {
        if (bit(in, byte, which)) {
            break;
        }
        ++variant;
    }
    return variant;
}

Reply result_model(Bytes& in, Bytes& out) {
    apply_common(in, out);
    switch (variant_of(in)) {
        case 1:
            apply_variant_1(in, out);
            break;
        case 2:
            variant_2.apply(in, out);
            break;
        case 3:
            variant_3.apply(in, out);
            break;
        case 4:
            apply_variant_4(in, out);
            break;
        case 5:
            variant_5.apply(in, out);
            break;
        case 6:
            variant_6.apply(in, out);
            break;
        case 7:
            variant_7.apply(in, out);
            break;
        case 8:
            apply_variant_8(in, out);
            break;
        case 9:
            apply_variant_9(in, out);
            break;
        case 10:
            variant_10.apply(in, out);
            break;
        case 11:
            apply_variant_11(in, out);
            break;
        case 12:
            apply_variant_12(in, out);
            break;
        default:
            break;
    }
    last.apply(in, out);
    return Reply{.status = 0, .length = 32};
}

// Makes the record one of the given variant (1 to 13); the bits of later tests stay as they are.
void shape(Bytes& in, std::size_t variant) {
    for (std::size_t i = 0; i < tests.size() && i < variant; ++i) {
        set_bit(in, tests[i].first, tests[i].second, i + 1 == variant);
    }
}

// Without the bits of later tests too.
void shape_only(Bytes& in, std::size_t variant) {
    for (std::size_t i = 0; i < tests.size(); ++i) {
        set_bit(in, tests[i].first, tests[i].second, i + 1 == variant);
    }
}

// Every byte tells its position, except for the six bytes of flags.
Bytes leaf(std::string_view flags) { return with(counting(90), {{0, flags}}); }

std::string translated(const Bytes& in) { return hex(translate(result, in).out); }

const support::Models models{{key, key_model}, {result, result_model}};

// ---- Key ----

TEST(MplsLeafKey, HoldsTheLabelLeastSignificantByteFirstAndTheQualifierAboveIt) {
    for (const auto& [in, out] : std::vector<std::pair<const char*, const char*>>{{"45 23 01 00 00", "45 23 01"},
                                                                                  {"45 23 01 00 01", "45 23 11"},
                                                                                  {"45 23 01 00 fe", "45 23 01"},
                                                                                  {"ff ff ff ff ff", "ff ff ff"},
                                                                                  {"00 00 f0 ff 00", "00 00 f0"}}) {
        const Outcome outcome = translate(key, bytes(in));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 3U);
        EXPECT_EQ(hex(outcome.out), out);
    }
}

TEST(MplsLeafKey, EveryBitLandsWhereItBelongs) {
    walk(key, key_model, {Bytes(5), Bytes(5, 0xff), counting(5, 0x71)});
    check_random(key, key_model);
    EXPECT_EQ(changes(key, Bytes(5), "L4.0"), "P2.4");
    expect_not_carried(key, Bytes(5), {"L3", "L4.7-1"});
    expect_length_ignored(key, bytes("45 23 01 00 01"));
}

// ---- Result ----

TEST(MplsLeaf, EveryBitOfEveryVariantLandsWhereItBelongs) {
    for (std::size_t variant = 1; variant <= 13; ++variant) {
        for (Bytes base : {Bytes(90), Bytes(90, 0xff), counting(90)}) {
            shape_only(base, variant);
            walk(result, result_model, base);
        }
    }
}

TEST(MplsLeaf, EveryBitOfEveryExtendedVariantLandsWhereItBelongs) {
    for (std::size_t variant = 1; variant <= 13; ++variant) {
        for (const char* flags : {"00 00 00 10 00 48", "00 00 00 00 01 4d", "00 18 80 0f 03 02"}) {
            Bytes base = leaf(flags);
            shape_only(base, variant);
            walk(result, result_model, base);
        }
    }
}

TEST(MplsLeaf, RandomRecordsOfEveryVariantAgree) {
    check_random(result, result_model, 2000);
    for (std::size_t variant = 1; variant <= 13; ++variant) {
        check_random(result, result_model, 500, [variant](Bytes& in) { shape(in, variant); });
        check_random(result, result_model, 500, [variant](Bytes& in) {
            shape_only(in, variant);
            in[6] &= 1;
            in[24] &= 0x0c;
        });
    }
}

TEST(MplsLeaf, OfZerosHoldsTheHeaderAndTheHopByte) {
    const Outcome outcome = translate(result, Bytes(90));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(32), {{0, "11 00 00 01"}})));
}

TEST(MplsLeaf, EachVariantWritesItsOwnBytes) {
    struct Case {
        const char* name;
        const char* flags;
        const char* expected;  // P0-26
    };
    for (const auto& [name, flags, expected] : std::vector<Case>{
             {"L0.4", "10 00 00 00 00 00",
              "51 40 00 0d 08 09 0a 0b 0c 0d 00 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
             {"L0.6", "40 00 00 00 00 00",
              "51 00 00 0d 08 09 0a 0b 0c 0d 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
             {"L0.7", "80 00 28 00 00 00",
              "51 00 10 0d 08 09 0a 0b 10 11 00 b0 0c 0d 0e 0f 00 00 00 00 00 00 00 00 00 00 00"},
             {"L2.4", "00 00 10 00 00 00",
              "11 08 00 0d 00 00 00 00 4e 4f 50 88 08 89 00 00 08 09 0a 0b 00 00 00 00 00 00 00"},
             {"L2.4 with L5.3", "00 00 10 00 00 09",
              "11 08 00 0d 08 09 0a 00 4e 4f 50 88 08 89 00 05 56 57 58 59 00 00 00 00 00 00 00"},
             {"L2.4 with L5.3 and L3.4", "00 00 10 10 00 08",
              "11 08 00 0d 0d 0e 0f 00 4e 4f 50 88 08 89 00 05 56 57 58 59 00 00 00 00 00 00 00"},
             {"L4.5", "00 00 00 00 20 00",
              "11 08 00 0d 00 00 00 00 00 00 00 00 00 00 00 03 00 00 00 00 00 00 00 00 00 00 00"},
             {"L0.2", "04 00 00 00 00 01",
              "11 10 00 51 08 09 0a 14 01 00 1e 1d 1c 22 21 20 2a 29 28 2e 2d 2c a3 93 80 10 00"},
             {"L4.6", "00 00 00 00 40 00",
              "51 00 00 0d 40 41 42 43 44 45 00 02 1e 1d 1c 2a 29 28 2e 2d 2c a3 93 80 10 14 00"},
             {"L4.4", "00 02 00 00 10 00",
              "51 80 00 0d 0c 0d 0e 0f 84 04 05 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
             {"L1.6", "00 40 00 00 00 00",
              "11 02 41 0d 41 31 20 91 81 71 e1 d1 c0 32 22 11 08 09 0a 28 29 2a 2c 2d 00 00 00"},
             {"L1.6 with L3.4", "00 40 00 10 00 00",
              "11 02 41 0d 41 31 20 91 81 71 e1 d1 c0 32 22 11 0d 0e 0f 28 29 2a 2c 2d 00 00 00"},
             {"L0.3", "08 00 00 00 00 00",
              "91 00 00 0d 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 2c 2d 00 00 00"},
             {"L0.5", "20 00 00 00 00 00",
              "31 00 00 0d 08 09 0a 00 00 00 00 01 15 14 00 00 00 00 00 00 00 00 00 38 39 3a 00"},
             {"L0.5 with L3.4, L4.0 and L4.1", "20 00 00 10 03 00",
              "31 00 00 0d 0d 0e 0f 00 00 00 00 15 14 15 00 00 00 00 00 00 00 00 00 38 39 3a 00"},
             {"L0.5 with L4.0", "20 00 00 00 01 00",
              "31 00 00 0d 08 09 0a 00 00 00 00 11 14 15 00 00 00 00 00 00 00 00 00 38 39 3a 00"},
             {"L1.7", "00 80 00 00 00 00",
              "11 01 00 0d 08 09 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 12 13 00 00 00"},
             {"L1.7 with L3.4 and L5.6", "00 80 00 10 00 40",
              "11 09 00 0d 0d 0e 0f 00 00 00 00 00 00 00 00 09 00 00 00 00 00 00 12 13 00 48 49"},
             {"none", "00 00 00 00 00 00",
              "11 00 00 0d 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
         }) {
        const Outcome outcome = translate(result, leaf(flags));
        EXPECT_EQ(outcome.status, 0) << name;
        EXPECT_EQ(outcome.length, 32U) << name;
        EXPECT_EQ(hex(outcome.out), std::string{expected} + " 4c 0d 4e 4f 50") << name;
    }
}

TEST(MplsLeaf, OnlyTheFirstVariantApplies) {
    EXPECT_EQ(translated(leaf("90 00 00 00 00 00")),
              hex(with(Bytes(32), {{0, "51 40 10 0d 08 09 0a 0b 0c 0d 00 10"}, {27, "4c 0d 4e 4f 50"}})));
    // From each variant on, the bits of all later ones set: only the common part sees those.
    for (std::size_t variant = 1; variant <= 12; ++variant) {
        Bytes in = counting(90);
        fill(in, 0, 5);
        for (std::size_t i = variant - 1; i < tests.size(); ++i) {
            set_bit(in, tests[i].first, tests[i].second);
        }
        check(result, result_model, in);
    }
}

TEST(MplsLeaf, HopCountIsDoubledWithTheLowestBitSetAndTooLargeOnesCountAsOne) {
    for (const auto& [count, hops] : std::vector<std::pair<const char*, int>>{
             {"00 00", 1}, {"01 00", 3}, {"40 00", 129}, {"41 00", 3}, {"c8 00", 3}, {"ff ff", 3}, {"05 01", 11}}) {
        EXPECT_EQ(translate(result, with(Bytes(90), {{6, count}})).out[3], hops) << count;
    }
}

TEST(MplsLeaf, OneHopIsMarkedForTheLastVariantUnlessL03IsSet) {
    const auto marked = [](const char* flags, const char* count) {
        return bit(translate(result, with(Bytes(90), {{0, flags}, {6, count}})).out, 1, 2);
    };
    EXPECT_TRUE(marked("00 80", "01"));
    EXPECT_TRUE(marked("00 80", "c8"));
    EXPECT_FALSE(marked("00 80", "00"));
    EXPECT_FALSE(marked("00 80", "02"));
    EXPECT_FALSE(marked("00 80", "40"));
    EXPECT_FALSE(marked("08 80", "01"));
    EXPECT_FALSE(marked("00 00", "01"));
    EXPECT_TRUE(marked("10 80", "01"));
    EXPECT_TRUE(marked("08 80 00 00 00 01", "02"));
}

TEST(MplsLeaf, OneHopMarkIsClearedByTheVariantsThatSaySo) {
    const auto marked = [](const char* flags) {
        return bit(translate(result, with(Bytes(90), {{0, flags}, {6, "01"}})).out, 1, 2);
    };
    EXPECT_TRUE(marked("00 80 10 00 00 01"));
    EXPECT_FALSE(marked("00 80 10 00 00 09"));
    EXPECT_FALSE(marked("04 80 00 00 00 01"));
}

TEST(MplsLeaf, CommonFlagsGoToTheirPlaces) {
    const Bytes base(90);
    EXPECT_EQ(changes(result, base, "L0.0"), "P1.5");
    EXPECT_EQ(changes(result, base, "L1.0"), "P2.3");
    EXPECT_EQ(changes(result, base, "L1.1"), "P2.2");
    EXPECT_EQ(changes(result, base, "L1.2"), "P1.5 P2.1");
    EXPECT_EQ(changes(result, base, "L2.0"), "P2.5");
    EXPECT_EQ(changes(result, base, "L2.6"), "P2.7");
    EXPECT_EQ(changes(result, base, "L5.0"), "P1.2");
    EXPECT_EQ(changes(result, base, "L5.2"), "P1.5");
    EXPECT_EQ(changes(result, base, "L0.3"), "P0.7");
    EXPECT_EQ(changes(result, base, "L0.4"), "P0.6 P1.6");
    EXPECT_EQ(changes(result, base, "L0.5"), "P0.5 P11.0");
    EXPECT_EQ(changes(result, base, "L0.6"), "P0.6");
    EXPECT_EQ(changes(result, base, "L0.7"), "P0.6 P2.4");
    EXPECT_EQ(changes(result, base, "L1.6"), "P1.1 P2.0");
    EXPECT_EQ(changes(result, base, "L1.7"), "P1.0");
}

TEST(MplsLeaf, IndexKeepsItsOrderAndFourteenBits) {
    const Bytes out = translate(result, with(Bytes(90), {{76, "ff ff"}})).out;
    EXPECT_EQ(out[27], 0xff);
    EXPECT_EQ(out[28], 0x3f);
}

TEST(MplsLeaf, Bytes78To80EndEveryVariant) {
    for (std::size_t variant = 1; variant <= 13; ++variant) {
        Bytes in = counting(90);
        shape_only(in, variant);
        const Bytes out = translate(result, in).out;
        EXPECT_EQ(hex({out.begin() + 29, out.end()}), "4e 4f 50") << variant;
        EXPECT_EQ(hex({out.begin() + 8, out.begin() + 11}) == "4e 4f 50", variant == 4) << variant;
    }
}

TEST(MplsLeaf, FirstAndSecondVariantSpreadTheBitsOfByte16) {
    for (const auto& [byte16, first, second] : std::vector<std::tuple<const char*, int, int>>{{"00", 0x00, 0x00},
                                                                                              {"01", 0x20, 0x00},
                                                                                              {"02", 0xc0, 0xc0},
                                                                                              {"04", 0x40, 0x40},
                                                                                              {"06", 0xc0, 0xc0},
                                                                                              {"08", 0x00, 0x00},
                                                                                              {"10", 0x10, 0x00},
                                                                                              {"ff", 0xf0, 0xc0}}) {
        EXPECT_EQ(translate(result, with(Bytes(90), {{0, "10"}, {16, byte16}})).out[11], first) << byte16;
        EXPECT_EQ(translate(result, with(Bytes(90), {{0, "40"}, {16, byte16}})).out[11], second) << byte16;
    }
}

TEST(MplsLeaf, FourthVariantMovesTheLowestBitToBit20) {
    const auto moved = [](const char* value) {
        const Bytes out = translate(result, with(Bytes(90), {{2, "10"}, {16, value}})).out;
        return hex({out.begin() + 11, out.begin() + 14});
    };
    EXPECT_EQ(moved("01 00 00 00"), "00 00 10");
    EXPECT_EQ(moved("02 00 00 00"), "01 00 00");
    EXPECT_EQ(moved("ff ff 1f 00"), "ff ff 1f");
    EXPECT_EQ(moved("00 00 00 01"), "00 00 80");
}

TEST(MplsLeaf, SixthVariantReplacesTheHopByte) {
    for (const char* count : {"00", "01", "05", "c8"}) {
        const Bytes in = with(Bytes(90), {{0, "04"}, {6, count}, {17, "05"}, {21, "0a"}});
        EXPECT_EQ(translate(result, in).out[3], 0xa5) << count;
    }
    EXPECT_EQ(translate(result, with(Bytes(90), {{0, "04"}, {17, "f5"}, {21, "fa"}})).out[3], 0xa5);
}

TEST(MplsLeaf, SixthAndSeventhVariantGatherFlags) {
    const Bytes sixth = with(Bytes(90), {{0, "04"}});
    EXPECT_EQ(changes(result, sixth, "L3.1"), "P8.7");
    EXPECT_EQ(changes(result, sixth, "L3.0"), "P8.6");
    EXPECT_EQ(changes(result, sixth, "L3.2"), "P8.5");
    EXPECT_EQ(changes(result, sixth, "L3.3"), "P8.4");
    EXPECT_EQ(changes(result, sixth, "L2.7"), "P8.3");
    EXPECT_EQ(changes(result, sixth, "L1.4"), "P8.2");
    EXPECT_EQ(changes(result, sixth, "L1.3"), "P8.1");
    EXPECT_EQ(changes(result, sixth, "L24.6"), "P8.0");
    EXPECT_EQ(changes(result, sixth, "L5.1"), "P9.0");
    EXPECT_EQ(changes(result, sixth, "L60.0"), "P24.0");
    expect_not_carried(result, sixth, {"L1.5", "L3.4", "L25-27", "L5.3", "L5.0", "L60.7-1"});

    const Bytes seventh = with(Bytes(90), {{4, "40"}});
    EXPECT_EQ(changes(result, seventh, "L1.5"), "P11.0");
    EXPECT_EQ(changes(result, seventh, "L24.0"), "P11.1");
    EXPECT_EQ(changes(result, seventh, "L1.3"), "P11.2");
    EXPECT_EQ(changes(result, seventh, "L1.4"), "P11.3");
    EXPECT_EQ(changes(result, seventh, "L60.0"), "P23.0");
    expect_not_carried(result, seventh, {"L2.7", "L3", "L8-15", "L17-19", "L21-23", "L32-39", "L60.7-1"});
}

TEST(MplsLeaf, EighthVariantTurnsTwoBitsIntoThree) {
    for (const auto& [byte16, marks, flag] : std::vector<std::tuple<const char*, int, int>>{{"00", 0x04, 0},
                                                                                            {"02", 0x02, 0},
                                                                                            {"04", 0x08, 0},
                                                                                            {"06", 0x04, 0},
                                                                                            {"01", 0x05, 4},
                                                                                            {"03", 0x03, 4},
                                                                                            {"05", 0x09, 4},
                                                                                            {"07", 0x05, 4},
                                                                                            {"f8", 0x04, 0}}) {
        const Bytes out = translate(result, with(Bytes(90), {{4, "10"}, {16, byte16}})).out;
        EXPECT_EQ(out[11], marks) << byte16;
        EXPECT_EQ(out[2], flag) << byte16;
    }
}

TEST(MplsLeaf, NinthVariantIsMarkedByAnyFlagOrByteOfItsTriple) {
    const Bytes base = with(Bytes(90), {{1, "40"}});
    EXPECT_EQ(translated(base), hex(with(Bytes(32), {{0, "11 02 01 01"}})));
    EXPECT_EQ(changes(result, base, "L22.0"), "P2.6 P6.0");
    EXPECT_EQ(changes(result, base, "L27.0"), "P2.6 P9.0");
    EXPECT_EQ(changes(result, base, "L32.0"), "P2.6 P12.0");
    EXPECT_EQ(changes(result, base, "L37.0"), "P2.6 P15.0");
    EXPECT_EQ(changes(result, base, "L40.0"), "P2.6 P19.0");
    EXPECT_EQ(changes(result, base, "L41.5"), "P2.6 P20.5");
    EXPECT_EQ(changes(result, base, "L42.7"), "P2.6 P21.7");
    EXPECT_EQ(changes(result, base, "L44.7"), "P22.7");
    EXPECT_EQ(changes(result, base, "L8.0"), "P16.0");
    EXPECT_EQ(changes(result, base, "L18.0"), "P6.4");
}

TEST(MplsLeaf, EleventhVariantMarksTheQueueWithItsRange) {
    for (const auto& [range, queue] : std::vector<std::pair<const char*, const char*>>{
             {"00", "12 34"}, {"02", "12 34"}, {"04", "1a 34"}, {"08", "1e 34"}, {"84", "12 34"}}) {
        const Bytes in = with(Bytes(90), {{0, "20"}, {20, "34 12"}, {24, range}});
        Bytes out = translate(result, in).out;
        EXPECT_EQ(hex({out.begin() + 11, out.begin() + 14}), std::string{"01 "} + queue) << range;
        out = translate(result, with(in, {{4, "01"}})).out;
        EXPECT_EQ(hex({out.begin() + 11, out.begin() + 14}), "11 34 12") << range;
    }
}

TEST(MplsLeaf, DropsWhatNoVariantUses) {
    for (std::size_t variant = 1; variant <= 13; ++variant) {
        for (const char* flags : {"00 00 00 00 00 00", "00 00 00 10 01 48"}) {
            Bytes base = leaf(flags);
            shape_only(base, variant);
            EXPECT_EQ(carried(result, base,
                              {"L0.1", "L2.2-1", "L3.7-5", "L4.7", "L4.3-2", "L5.7", "L5.5-4", "L7", "L38-39", "L43",
                               "L47-55", "L59", "L60.7-1", "L61-63", "L70-71", "L74-75", "L77.7-6", "L81-85"}),
                      "")
                << "variant " << variant;
        }
    }
}

TEST(MplsLeaf, ExtensionsAreReadOnlyWhenFlagged) {
    expect_not_carried(result, with(Bytes(90), {{2, "10"}}), {"L3.4", "L86-89", "L12-15"});
    expect_not_carried(result, with(Bytes(90), {{1, "80"}}), {"L72-73", "L11-17", "L20-69"});
    expect_not_carried(result, with(Bytes(90), {{0, "20"}}), {"L4.1", "L22-23", "L25-55", "L72-73"});
}

TEST(MplsLeaf, MindsNoLength) { expect_length_ignored(result, leaf("00 40 00 00 00 00")); }

TEST(MplsLeaf, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[28].key, mpls_leaf_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[28].result, mpls_leaf_st_result);
    EXPECT_EQ(p2l_ucode_func_table[28], generic_xlate_logical_result);
}

}  // namespace
