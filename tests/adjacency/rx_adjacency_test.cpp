// Receive adjacency, table 4. The first of L0.5, L0.6, L1.0 and L1.3 that is set chooses the variant.
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
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

const Translator key = FORWARD(rx_adjacency_type_xlate_key, 3, 3);
const Translator result = FORWARD(rx_adjacency_type_xlate_result, 30, 16);
const Translator reverse = REVERSE(rx_adjacency_type_logical_xlate_result, 16, 30);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    fill(out, 0, 2);
    rows.apply(in, out);
    return {.length = 3};
}

void apply_variant_a(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P6-7 = swap L16-17",
        "P3.5 = L2.0",
        "P4 = L21",
        "P5 = L22",
    };
    static const Rows three_bytes{"P13-15 = swap L12-14"};
    static const Rows four_bytes{"P12-15 = L12-15"};
    rows.apply(in, out);
    (bit(in, 2, 0) ? three_bytes : four_bytes).apply(in, out);
}

void apply_variant_b(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P3.5 = L2.1",
        "P6-7 = swap L20-21",
        "P12-15 = L12-15",
    };
    rows.apply(in, out);
}

void apply_variant_c(const Bytes& in, Bytes& out) {
    static const Rows rows{"P6-7 = L4-5"};
    rows.apply(in, out);
    if (bit(in, 1, 2)) {
        out[4] = static_cast<std::uint8_t>(in[28] + 7);
    }
    if (bit(in, 1, 1)) {
        out[4] = in[29];
    }
}

void apply_variant_d(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.5 = L1.3",
        "P3.6 = L1.3",
        "P3.4 = L2.3",
        "P12-15 = L16-19",
    };
    rows.apply(in, out);
    const std::uint64_t value = little(in, 12, 4);
    put_little(out, 5, 3, (value >> 1) | ((value & 1) << 20));
}

void apply_variant_e(const Bytes& in, Bytes& out) {
    static const Rows rows{"P12-13 = L12-13"};
    std::uint64_t index = little(in, 4, 2);
    if (in[8] == 4) {
        index |= 0x0800;
    } else if (in[8] == 8) {
        index |= 0x0c00;
    }
    put_big(out, 6, 2, index);
    rows.apply(in, out);
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows common{
        "P0 = 0x91",   "P0.5 = L0.4", "P0.6 = L1.5", "P1.0 = L1.0", "P1.1 = L1.1",         "P1.2 = L1.2",
        "P1.3 = L1.4", "P1.4 = L1.6", "P1.5 = L1.3", "P1.6 = L2.2", "P2.0 = L0.2",         "P2.1 = L0.1",
        "P2.2 = L0.3", "P2.3 = L0.0", "P2.6 = L1.7", "P3.7 = L0.5", "P8-11 = swap L24-27",
    };
    fill(out, 0, 15);
    common.apply(in, out);
    if (bit(in, 0, 5)) {
        apply_variant_a(in, out);
    } else if (bit(in, 0, 6)) {
        apply_variant_b(in, out);
    } else if (bit(in, 1, 0)) {
        apply_variant_c(in, out);
    } else if (bit(in, 1, 3)) {
        apply_variant_d(in, out);
    } else {
        apply_variant_e(in, out);
    }
    return {.length = 16};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows common{
        "L0.0 = P2.3", "L0.1 = P2.1", "L0.2 = P2.0", "L0.3 = P2.2", "L0.4 = P0.5", "L0.5 = P3.7",
        "L1.1 = P1.1", "L1.2 = P1.2", "L1.4 = P1.3", "L1.6 = P1.4", "L2.0 = P3.5", "L24-27 = P8-11",
    };
    static const Rows variant_a{
        "L16-17 = P6-7", "L20 = 0", "L21 = P4", "L22 = P5", "L23 = 0",
    };
    static const Rows three_bytes{"L12-14 = P13-15", "L15 = 0"};
    static const Rows four_bytes{"L12-15 = P12-15"};
    static const Rows variant_c{"L4-5 = P6-7"};
    static const Rows variant_e{"L4-5 = P6-7", "L12-13 = P12-13"};

    fill(out, 0, 15);
    common.apply(in, out);
    set_bit(out, 1, 0, bit(in, 1, 0) || bit(in, 2, 5));
    if (bit(out, 0, 5)) {
        variant_a.apply(in, out);
        (bit(in, 3, 5) ? three_bytes : four_bytes).apply(in, out);
    } else if (bit(out, 1, 0)) {
        variant_c.apply(in, out);
        if (bit(out, 1, 2)) {
            out[28] = static_cast<std::uint8_t>(in[4] - 7);
        }
        if (bit(out, 1, 1)) {
            out[29] = in[4];
        }
    } else {
        variant_e.apply(in, out);
    }
    return {};
}

enum Variant : std::size_t { a, b, c, d, e };
constexpr Variant variants[] = {a, b, c, d, e};

// The discriminants before the variant's own are cleared, those after it stay as they are: they must not matter.
Bytes pinned(Bytes logical, Variant variant) {
    constexpr std::pair<std::size_t, unsigned> discriminants[] = {{0, 5}, {0, 6}, {1, 0}, {1, 3}};
    for (std::size_t i = 0; i <= variant && i < std::size(discriminants); ++i) {
        set_bit(logical, discriminants[i].first, discriminants[i].second, i == variant);
    }
    return logical;
}

Bytes zeros_but(Variant variant) { return pinned(Bytes(30), variant); }

// A record of the variant with recognisable values in all the fields that some variant carries.
Bytes example(Variant variant) {
    Bytes logical = zeros_but(variant);
    put_big(logical, 4, 2, 0x6162);
    put_big(logical, 12, 4, 0xa1a2a3a4);
    put_big(logical, 16, 4, 0x11121314);
    put_big(logical, 20, 4, 0x31323334);
    put_big(logical, 24, 4, 0xb1b2b3b4);
    put_big(logical, 28, 2, 0x5051);
    return logical;
}

// Back over bytes of 0xee, so that what the reverse leaves alone shows.
Bytes there_and_back(const Bytes& logical) {
    return translate(reverse, translate(result, logical).out, Bytes(30, 0xee)).out;
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse, reverse_model}};

TEST(RxAdjacency, IsTable4) {
    EXPECT_EQ(l2p_ucode_func_table[4].key, rx_adjacency_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[4].result, rx_adjacency_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[4], rx_adjacency_type_logical_xlate_result);
}

TEST(RxAdjacency, LengthsAreIgnored) {
    expect_length_ignored(key, bytes("01 02 03"));
    expect_length_ignored(result, example(a));
    expect_length_ignored(reverse, bytes("91 00 00 00 00 00 12 34 00 00 00 00 00 00 00 00"));
    EXPECT_EQ(translate(result, example(a)).status, 0);
    EXPECT_EQ(translate(result, example(a)).length, 16U);
    EXPECT_EQ(hex(translate(result, example(a)).out), "91 00 00 80 32 33 12 11 b4 b3 b2 b1 a1 a2 a3 a4");
}

TEST(RxAdjacencyKey, IsCopiedInItsByteOrder) {
    const Outcome outcome = translate(key, bytes("12 34 56"), bytes("ff ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), bytes("12 34 56")});
    check_random(key, key_model, 200);
}

TEST(RxAdjacencyResult, CarriesEveryBitOfEveryVariant) {
    for (const Variant variant : variants) {
        SCOPED_TRACE("variant " + std::to_string(variant));
        walk(result, result_model,
             {zeros_but(variant), pinned(Bytes(30, 0xff), variant), pinned(counting(30), variant),
              pinned(counting(30, 0xc1), variant)});
    }
}

TEST(RxAdjacencyResult, CarriesEveryBitWhateverTheSubordinateFlagsSay) {
    for (const unsigned selectors : {0U, 1U, 2U, 3U}) {
        Bytes of_a = example(a);
        set_bits(of_a, 2, 1, 0, selectors);
        walk(result, result_model, of_a);
        Bytes of_b = example(b);
        set_bits(of_b, 2, 1, 0, selectors);
        walk(result, result_model, of_b);
        Bytes of_c = example(c);
        set_bits(of_c, 1, 2, 1, selectors);
        walk(result, result_model, of_c);
    }
    for (const std::uint8_t range : std::initializer_list<std::uint8_t>{0, 4, 8, 12, 0x14, 0x84, 0x88}) {
        Bytes of_e = example(e);
        of_e[8] = range;
        walk(result, result_model, of_e);
    }
}

TEST(RxAdjacencyResult, AgreesOnRandomRecordsOfEveryVariant) {
    check_random(result, result_model);
    for (const Variant variant : variants) {
        check_random(result, result_model, 1000, [variant](Bytes& in) { in = pinned(in, variant); });
    }
    for (const std::uint8_t range : std::initializer_list<std::uint8_t>{4, 8}) {
        check_random(result, result_model, 500, [range](Bytes& in) {
            in = pinned(in, e);
            in[8] = range;
        });
    }
}

TEST(RxAdjacencyResult, OfZerosIsVariantEWithTheHeader) {
    const Outcome outcome = translate(result, Bytes(30), Bytes(16, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "91 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(RxAdjacencyResult, CarriesTheFlagsOfAllVariants) {
    constexpr std::pair<const char*, const char*> carried[] = {
        {"L0.0", "P2.3"}, {"L0.1", "P2.1"},   {"L0.2", "P2.0"},   {"L0.3", "P2.2"},  {"L1.1", "P1.1"},
        {"L1.2", "P1.2"}, {"L1.4", "P1.3"},   {"L1.5", "P0.6"},   {"L1.6", "P1.4"},  {"L1.7", "P2.6"},
        {"L2.2", "P1.6"}, {"L24.0", "P11.0"}, {"L24.7", "P11.7"}, {"L27.0", "P8.0"}, {"L27.7", "P8.7"},
    };
    for (const Variant variant : variants) {
        for (const auto& [logical, physical] : carried) {
            // Over zeros the byte that L1.2 of variant C adds would show as the constant 7.
            Bytes base = zeros_but(variant);
            base[28] = 0xf9;
            EXPECT_EQ(changes(result, base, logical), physical) << logical << ", variant " << variant;
        }
    }
    for (const Variant variant : {a, b, c, e}) {
        EXPECT_EQ(changes(result, zeros_but(variant), "L0.4"), "P0.5") << "variant " << variant;
    }
}

TEST(RxAdjacencyResult, CarriesTheDiscriminants) {
    EXPECT_EQ(changes(result, Bytes(30), "L0.5"), "P3.7");
    EXPECT_EQ(changes(result, Bytes(30), "L0.6"), "");
    EXPECT_EQ(changes(result, Bytes(30), "L1.0"), "P1.0");
    EXPECT_EQ(changes(result, Bytes(30), "L1.3"), "P0.5 P1.5 P3.6");
    EXPECT_EQ(changes(result, zeros_but(a), "L1.3"), "P1.5");
    EXPECT_EQ(changes(result, zeros_but(b), "L1.0"), "P1.0");
}

TEST(RxAdjacencyResult, VariantAWinsOverVariantB) {
    Bytes logical = example(a);
    set_bit(logical, 0, 6);
    EXPECT_EQ(hex(translate(result, logical).out), "91 00 00 80 32 33 12 11 b4 b3 b2 b1 a1 a2 a3 a4");
}

TEST(RxAdjacencyResult, VariantAPlacesItsFields) {
    EXPECT_EQ(hex(translate(result, example(a)).out), "91 00 00 80 32 33 12 11 b4 b3 b2 b1 a1 a2 a3 a4");
}

TEST(RxAdjacencyResult, VariantASwapsThreeBytesWhenL2Bit0IsSet) {
    Bytes logical = zeros_but(a);
    logical[2] = 0x01;
    put_big(logical, 12, 4, 0x11223344);
    EXPECT_EQ(hex(translate(result, logical).out), "91 00 00 a0 00 00 00 00 00 00 00 00 00 33 22 11");
    EXPECT_EQ(changes(result, logical, "L12.0"), "P15.0");
    EXPECT_EQ(changes(result, logical, "L14.7"), "P13.7");
}

TEST(RxAdjacencyResult, VariantBPlacesItsFields) {
    Bytes logical = example(b);
    EXPECT_EQ(hex(translate(result, logical).out), "91 00 00 00 00 00 32 31 b4 b3 b2 b1 a1 a2 a3 a4");
    EXPECT_EQ(changes(result, logical, "L2.1"), "P3.5");
}

TEST(RxAdjacencyResult, VariantCKeepsTheByteOrderOfItsIndex) {
    EXPECT_EQ(hex(translate(result, example(c)).out), "91 01 00 00 00 00 61 62 b4 b3 b2 b1 00 00 00 00");
}

TEST(RxAdjacencyResult, VariantCFeedsByte4ByItsFlags) {
    struct Row {
        std::uint8_t flags;  // L1
        std::uint8_t l28;
        std::uint8_t l29;
        std::uint8_t p4;
    };
    constexpr Row rows[] = {
        {0x01, 0xfc, 0x60, 0x00},  // neither
        {0x05, 0xfc, 0x60, 0x03},  // L1.2: wraps around
        {0x05, 0x00, 0x60, 0x07}, {0x05, 0xf8, 0x60, 0xff}, {0x05, 0xf9, 0x60, 0x00}, {0x03, 0xfc, 0x60, 0x60},  // L1.1
        {0x07, 0xfc, 0x60, 0x60},  // both: L29 wins
        {0x07, 0xfc, 0x00, 0x00},
    };
    for (const Row& row : rows) {
        Bytes logical(30);
        logical[1] = row.flags;
        logical[28] = row.l28;
        logical[29] = row.l29;
        EXPECT_EQ(translate(result, logical).out[4], row.p4) << hex(logical);
    }
}

TEST(RxAdjacencyResult, VariantDPlacesItsFields) {
    Bytes logical = example(d);
    put_little(logical, 12, 4, 0x123456);
    EXPECT_EQ(hex(translate(result, logical).out), "b1 20 00 40 00 2b 1a 09 b4 b3 b2 b1 11 12 13 14");
    EXPECT_EQ(changes(result, logical, "L2.3"), "P3.4");
}

TEST(RxAdjacencyResult, VariantDRotatesItsValueWithin21Bits) {
    constexpr std::pair<std::uint32_t, const char*> rotated[] = {
        {0x00000001, "00 00 10"}, {0x00000002, "01 00 00"}, {0x001fffff, "ff ff 1f"}, {0x00100000, "00 00 08"},
        {0x00200000, "00 00 10"},  // bit 21 shifts down onto the place of bit 0
        {0x00200001, "00 00 10"}, {0x01000000, "00 00 80"}, {0x02000000, "00 00 00"}, {0xfe000000, "00 00 00"},
    };
    for (const auto& [value, expected] : rotated) {
        Bytes logical = zeros_but(d);
        put_little(logical, 12, 4, value);
        const Bytes physical = translate(result, logical).out;
        EXPECT_EQ(hex({physical.begin() + 5, physical.begin() + 8}), expected) << value;
    }
}

TEST(RxAdjacencyResult, VariantDReplacesL0Bit4) {
    Bytes logical = zeros_but(d);
    EXPECT_EQ(translate(result, logical).out[0], 0xb1);
    EXPECT_EQ(changes(result, logical, "L0.4"), "");
    logical[0] = 0x10;
    EXPECT_EQ(translate(result, logical).out[0], 0xb1);
}

TEST(RxAdjacencyResult, VariantEAdjustsTheVirtualQueueIndexByItsRange) {
    constexpr std::pair<std::uint8_t, const char*> adjusted[] = {
        {0, "91 00 00 00 00 00 01 23 00 00 00 00 a1 a2 00 00"}, {2, "91 00 00 00 00 00 01 23 00 00 00 00 a1 a2 00 00"},
        {4, "91 00 00 00 00 00 09 23 00 00 00 00 a1 a2 00 00"}, {8, "91 00 00 00 00 00 0d 23 00 00 00 00 a1 a2 00 00"},
        {9, "91 00 00 00 00 00 01 23 00 00 00 00 a1 a2 00 00"},
    };
    for (const auto& [range, expected] : adjusted) {
        Bytes logical(30);
        put_little(logical, 4, 2, 0x0123);
        logical[8] = range;
        logical[9] = 0x01;  // not part of the range
        put_big(logical, 12, 4, 0xa1a2a3a4);
        EXPECT_EQ(hex(translate(result, logical).out), expected) << "range " << int{range};
    }
}

TEST(RxAdjacencyResult, DropsWhatTheVariantHasNoPlaceFor) {
    expect_not_carried(result, example(a), {"L0.7-6", "L2.1", "L2.7-3", "L3-11", "L18-20", "L23", "L28-29"});
    Bytes three_bytes = example(a);
    set_bit(three_bytes, 2, 0);
    expect_not_carried(result, three_bytes, {"L15"});
    expect_not_carried(result, example(b), {"L0.7", "L2.0", "L2.7-3", "L3-11", "L16-19", "L22-23", "L28-29"});
    expect_not_carried(result, example(c), {"L0.7", "L2.1-0", "L2.7-3", "L3", "L6-23", "L28-29"});
    expect_not_carried(result, example(d),
                       {"L0.4", "L0.7", "L2.1-0", "L2.7-4", "L3-11", "L15.7-1", "L20-23", "L28-29"});
    expect_not_carried(result, example(e), {"L0.7", "L2.1-0", "L2.7-3", "L3", "L6-7", "L9-11", "L14-23", "L28-29"});
}

TEST(RxAdjacencyReverse, CarriesEveryBit) {
    std::vector<Bytes> bases{Bytes(16), Bytes(16, 0xff), counting(16), counting(16, 0xb1)};
    for (const unsigned variant : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
        for (const unsigned flags : {0U, 1U, 2U, 3U}) {
            Bytes physical = counting(16, 0x60);
            set_bits(physical, 3, 7, 7, variant);
            set_bits(physical, 1, 0, 0, variant >> 1);
            set_bits(physical, 2, 5, 5, variant >> 2);
            set_bits(physical, 1, 2, 1, flags);
            set_bits(physical, 3, 5, 5, flags);
            bases.push_back(physical);
        }
    }
    walk(reverse, reverse_model, bases);
    check_random(reverse, reverse_model);
}

TEST(RxAdjacencyReverse, ClearsTheFirst16BytesOnly) {
    EXPECT_EQ(hex(translate(reverse, Bytes(16), Bytes(30, 0xee)).out),
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ee ee ee ee ee ee ee ee 00 00 00 00 ee ee");
    for (const std::uint8_t left : std::initializer_list<std::uint8_t>{0x00, 0x5a, 0xff}) {
        const Outcome outcome =
            translate(reverse, bytes("91 00 00 80 44 55 66 77 00 00 00 00 00 00 00 00"), Bytes(30, left));
        EXPECT_EQ(outcome.status, 0);
        for (const std::size_t byte : {18U, 19U, 28U, 29U}) {
            EXPECT_EQ(outcome.out[byte], left) << "L" << byte;
        }
    }
}

TEST(RxAdjacencyReverse, TakesL1Bit0FromTwoPlaces) {
    const Bytes base = bytes("91 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(reverse, base, "P1.0"), "L1.0");
    EXPECT_EQ(changes(reverse, base, "P2.5"), "L1.0");
    Bytes both = base;
    set_bit(both, 1, 0);
    EXPECT_EQ(changes(reverse, both, "P2.5"), "");
    // And chooses variant C by the rebuilt flag.
    EXPECT_EQ(hex(translate(reverse, bytes("91 06 20 00 47 00 61 62 00 00 00 00 a1 a2 a3 a4")).out),
              "00 07 00 00 61 62 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 40 47");
}

TEST(RxAdjacencyReverse, RestoresTheFlags) {
    constexpr std::pair<const char*, const char*> restored[] = {
        {"P0.5", "L0.4"}, {"P1.1", "L1.1"},  {"P1.2", "L1.2"},   {"P1.3", "L1.4"}, {"P1.4", "L1.6"},
        {"P2.0", "L0.2"}, {"P2.1", "L0.1"},  {"P2.2", "L0.3"},   {"P2.3", "L0.0"}, {"P3.5", "L2.0"},
        {"P3.7", "L0.5"}, {"P8.0", "L24.0"}, {"P11.7", "L27.7"},
    };
    for (const auto& [physical, logical] : restored) {
        EXPECT_EQ(changes(reverse, Bytes(16), physical), logical) << physical;
    }
}

TEST(RxAdjacencyReverse, LeavesOutWhatItDoesNotRestore) {
    // L1.5 at P0.6, L1.3 at P1.5 and P3.6, L2.2 at P1.6, L1.7 at P2.6, L2.3 at P3.4; and the header.
    for (const Bytes& base : {Bytes(16), counting(16, 0x10), counting(16, 0xf0)}) {
        expect_not_carried(reverse, base, {"P0.7-6", "P0.4-0", "P1.7-5", "P2.7-6", "P2.4", "P3.6", "P3.4-0"});
    }
    const Bytes variant_e(16);
    expect_not_carried(reverse, variant_e, {"P4-5", "P14-15"});
    Bytes variant_c(16);
    set_bit(variant_c, 1, 0);
    expect_not_carried(reverse, variant_c, {"P4-5", "P12-15"});
    Bytes three_bytes(16);
    set_bits(three_bytes, 3, 7, 5, 5);
    expect_not_carried(reverse, three_bytes, {"P12"});
}

TEST(RxAdjacencyRoundTrip, VariantAComesBackWithItsSwappedValuesReversed) {
    EXPECT_EQ(hex(there_and_back(example(a))),
              "20 00 00 00 00 00 00 00 00 00 00 00 a1 a2 a3 a4 12 11 ee ee 00 32 33 00 b4 b3 b2 b1 ee ee");
}

TEST(RxAdjacencyRoundTrip, VariantAExchangesTheOuterOfThreeBytes) {
    Bytes logical = example(a);
    logical[2] = 0x01;
    EXPECT_EQ(hex(there_and_back(logical)),
              "20 00 01 00 00 00 00 00 00 00 00 00 a3 a2 a1 00 12 11 ee ee 00 32 33 00 b4 b3 b2 b1 ee ee");
}

TEST(RxAdjacencyRoundTrip, VariantBComesBackAsVariantE) {
    Bytes logical = example(b);
    logical[2] = 0x02;  // L2.1 comes back as L2.0: they share P3.5
    EXPECT_EQ(hex(there_and_back(logical)),
              "00 00 01 00 32 31 00 00 00 00 00 00 a1 a2 00 00 ee ee ee ee ee ee ee ee b4 b3 b2 b1 ee ee");
}

TEST(RxAdjacencyRoundTrip, VariantCRebuildsBothBytesFromTheOneKept) {
    Bytes logical = example(c);
    logical[1] = 0x07;
    EXPECT_EQ(hex(there_and_back(logical)),
              "00 07 00 00 61 62 00 00 00 00 00 00 00 00 00 00 ee ee ee ee ee ee ee ee b4 b3 b2 b1 4a 51");
}

TEST(RxAdjacencyRoundTrip, VariantCRestoresTheByteThatItsOneFlagNames) {
    Bytes logical = example(c);
    logical[1] = 0x05;
    logical[28] = 0xfc;
    EXPECT_EQ(hex(there_and_back(logical)),
              "00 05 00 00 61 62 00 00 00 00 00 00 00 00 00 00 ee ee ee ee ee ee ee ee b4 b3 b2 b1 fc ee");
    logical[1] = 0x03;
    EXPECT_EQ(hex(there_and_back(logical)),
              "00 03 00 00 61 62 00 00 00 00 00 00 00 00 00 00 ee ee ee ee ee ee ee ee b4 b3 b2 b1 ee 51");
}

TEST(RxAdjacencyRoundTrip, VariantDComesBackAsVariantEWithItsFieldsMisplaced) {
    Bytes logical = example(d);
    put_little(logical, 12, 4, 0x123456);
    // L0.4 was clear: P0.5 is 1 in this variant.
    EXPECT_EQ(hex(there_and_back(logical)),
              "10 00 00 00 1a 09 00 00 00 00 00 00 11 12 00 00 ee ee ee ee ee ee ee ee b4 b3 b2 b1 ee ee");
}

TEST(RxAdjacencyRoundTrip, VariantEKeepsTheRangeBitsInItsReversedIndex) {
    Bytes logical = example(e);
    put_little(logical, 4, 2, 0x0123);
    logical[8] = 8;
    EXPECT_EQ(hex(there_and_back(logical)),
              "00 00 00 00 0d 23 00 00 00 00 00 00 a1 a2 00 00 ee ee ee ee ee ee ee ee b4 b3 b2 b1 ee ee");
}

TEST(RxAdjacencyRoundTrip, FlagsWithoutAWayBackAreLost) {
    Bytes logical(30);
    logical[0] = 0x1f;
    logical[1] = 0xf6;  // L1.0 and L1.3, which choose variants, clear
    logical[2] = 0x0f;
    const Bytes back = there_and_back(logical);
    EXPECT_EQ(hex({back.begin(), back.begin() + 3}), "1f 56 00");
}

}  // namespace
