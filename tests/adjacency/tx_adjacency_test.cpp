// Transmit adjacency, table 5: seven layouts, chosen by the first discriminant that is set.
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(tx_adjacency_type_xlate_key, 3, 3);
const Translator result = FORWARD(tx_adjacency_type_xlate_result, 90, 32);
const Translator reverse = REVERSE(tx_adjacency_type_logical_xlate_result, 32, 90);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    fill(out, 0, 2);
    rows.apply(in, out);
    return {.length = 3};
}

void apply_address_pair(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P1-15 = swap L20-34",
        "P16-31 = swap L36-51",
    };
    rows.apply(in, out);
}

void apply_common(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",   "P0.5 = L0.6", "P0.6 = L0.5", "P1.7 = L0.0", "P1.4 = L0.2", "P1.3 = L1.2",
        "P1.2 = 1",    "P1.6 = L2.1", "P2.0 = L1.2", "P2.1 = L1.6", "P2.2 = L2.2", "P2.4 = L72.1",
        "P3.7 = L0.7", "P3.6 = L1.1", "P3.4 = L1.4", "P4-5 = L4-5", "P6-7 = L6-7", "P8-10 = L8-10",
    };
    rows.apply(in, out);
    set_bit(out, 1, 5, !bit(in, 0, 4) || bit(in, 0, 1));
}

void apply_t1(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P11.0 = 1",
        "P11.3 = L12.0",
        "P11.4 = L12.1",
        "P23-26 = swap L24-27",
        "P20-22 = label L32-35 flag L36.0",
        "P17-19 = label L37-40 flag L41.0",
        "P11.1 = none L41",
    };
    static const Rows index_kept{
        "P12-13 = L16-17",
        "P4-5 = L16-17",
    };
    static const Rows three_bytes{"P14-16 = L28-30"};
    rows.apply(in, out);
    if (bit(in, 12, 1)) {
        set_bit(out, 11, 2, bit(in, 12, 2));
        index_kept.apply(in, out);
    } else {
        set_bit(out, 11, 2, bit(in, 12, 3) && bit(in, 12, 2));
        std::uint64_t index = little(in, 16, 2);
        if (in[20] == 4) {
            index |= 0x0800;
        } else if (in[20] == 8) {
            index |= 0x0c00;
        }
        put_big(out, 12, 2, index);
    }
    if (bit(out, 11, 2)) {
        three_bytes.apply(in, out);
    }
}

void apply_t2(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P3.1 = L73.0", "P3.3 = L73.2",    "P3.0 = L73.1", "P30-31 = L52-53", "P19-20 = swap L54-55", "P16 = L57",
        "P17 = L58",    "P12-15 = L60-63", "P21 = L64",    "P18 = L65",       "P11.0 = L72.0",
    };
    static const Rows with_l72_1{
        "P23-25 = swap L68-70",
        "P22 = L35",
    };
    static const Rows without_l72_1{
        "P22-25 = L12-15",
        "P26-29 = L16-19",
    };
    rows.apply(in, out);
    (bit(in, 72, 1) ? with_l72_1 : without_l72_1).apply(in, out);
}

void apply_t3(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P12-14 = L16-18",      "P11.2-0 = L12.7-5", "P11.3 = L12.4", "P11.4 = L12.3",
        "P11.5 = L12.2",        "P11.6 = L12.1",     "P11.7 = L12.0", "P15-18 = L24-27",
        "P19-20 = swap L20-21", "P21 = L22",         "P2.4 = L36.1",  "P22-25 = L40-43",
        "P26-29 = L44-47",      "P30-31 = L80-81",   "P3.1 = L84.0",  "P3.0 = L84.1",
    };
    rows.apply(in, out);
}

void apply_t4(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P22-24 = label L18-21 flag L22.0",
        "P25-27 = label L23-26 flag L27.0",
        "P28-31 = L28-31",
        "P3.5 = L1.3",
        "P2.3 = L1.5",
        "P3.2 = L2.3",
        "P2.7 = L2.4",
        "P16-21 = L12-17",
    };
    static const Rows with_l0_5{"P14-15 = swap L88-89"};
    rows.apply(in, out);
    if (bit(in, 0, 5)) {
        with_l0_5.apply(in, out);
    }
}

void apply_t5(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P11 = L12",
        "P12-13 = swap L14-15",
        "P14-29 = L16-31",
    };
    rows.apply(in, out);
}

void apply_t6(const Bytes& in, Bytes& out) {
    static const Rows rows{"P16-21 = L12-17"};
    static const Rows with_l0_5{"P14-15 = swap L88-89"};
    static const Rows with_l2_1{"P22-24 = L20-22"};
    rows.apply(in, out);
    if (bit(in, 0, 5)) {
        with_l0_5.apply(in, out);
    }
    if (bit(in, 2, 1)) {
        with_l2_1.apply(in, out);
    }
}

Reply result_model(Bytes& in, Bytes& out) {
    fill(out, 0, 31);
    if (bit(in, 72, 2)) {
        apply_address_pair(in, out);
        return {.length = 32};
    }
    apply_common(in, out);
    if (bit(in, 2, 0)) {
        apply_t1(in, out);
    } else if (bit(in, 0, 7) || bit(in, 1, 4)) {
        apply_t2(in, out);
    } else if (bit(in, 1, 1)) {
        apply_t3(in, out);
    } else if (bit(in, 1, 2)) {
        apply_t4(in, out);
    } else if (bit(in, 1, 6)) {
        apply_t5(in, out);
    } else {
        apply_t6(in, out);
    }
    return {.length = 32};
}

// The way back of a label field: its first two bytes as a little-endian value, then the four bits of the third.
void put_reversed_label(Bytes& out, std::size_t to, const Bytes& in, std::size_t from) {
    put_little(out, to, 4, (in[from] + 256U * in[from + 1]) * 16 + (in[from + 2] >> 4U));
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows common{
        "L0.0 = P1.7", "L0.1 = P1.5", "L0.2 = P1.4", "L0.4 = not P1.5", "L0.5 = P0.6",  "L4-5 = P4-5",   "L6-7 = P6-7",
        "L0.6 = P0.5", "L1.2 = P1.3", "L2.1 = P1.6", "L0.7 = P3.7",     "L72.1 = P2.4", "L8-10 = P8-10", "L11 = 0",
    };
    static const Rows with_l0_5{"L88-89 = P14-15"};
    static const Rows t2{
        "L73.0 = P3.1",    "L73.1 = P3.0", "L52-53 = P30-31", "L64 = P21", "L65 = P18",
        "L54-55 = P19-20", "L56 = 0",      "L57 = P16",       "L58 = P17", "L59 = 0",
    };
    static const Rows t2_with_p2_4{
        "L68-70 = P23-25",
        "L71 = 0",
    };
    static const Rows t2_without_p2_4{
        "L12-15 = P22-25",
        "L16-19 = P26-29",
    };
    static const Rows t4{
        "L28-31 = P28-31",
        "L1.3 = P3.5",
        "L1.5 = P2.3",
        "L12-17 = P16-21",
    };
    static const Rows others{
        "L12-17 = P16-21",
        "L20-23 = 0",
    };
    static const Rows others_with_l2_1{"L20-22 = P22-24"};

    fill(out, 0, 89);
    common.apply(in, out);
    if (bit(out, 0, 5)) {
        with_l0_5.apply(in, out);
    }
    if (bit(out, 0, 7)) {
        t2.apply(in, out);
        (bit(in, 2, 4) ? t2_with_p2_4 : t2_without_p2_4).apply(in, out);
    } else if (bit(out, 1, 2)) {
        t4.apply(in, out);
        put_reversed_label(out, 18, in, 22);
        put_reversed_label(out, 23, in, 25);
    } else {
        others.apply(in, out);
        if (bit(out, 2, 1)) {
            others_with_l2_1.apply(in, out);
        }
    }
    return {};
}

// T2 has two discriminants.
enum Layout : std::size_t { address_pair, t1, t2, t2_by_l1_4, t3, t4, t5, t6 };
constexpr std::array layouts{address_pair, t1, t2, t2_by_l1_4, t3, t4, t5, t6};

// The discriminants before the layout's own are cleared, those after it stay as they are: they must not matter.
Bytes pinned(Bytes logical, Layout layout) {
    constexpr std::array<std::pair<std::size_t, unsigned>, 7> discriminants{
        {{72, 2}, {2, 0}, {0, 7}, {1, 4}, {1, 1}, {1, 2}, {1, 6}}};
    for (std::size_t i = 0; i <= layout && i < discriminants.size(); ++i) {
        set_bit(logical, discriminants[i].first, discriminants[i].second, i == layout);
    }
    return logical;
}

Bytes zeros_but(Layout layout) { return pinned(Bytes(90), layout); }

// A record of the layout with the values that all layouts but the address pair carry in P4-10.
Bytes with_common_values(Layout layout) {
    Bytes logical = zeros_but(layout);
    put_big(logical, 4, 7, 0x41424344454647);
    return logical;
}

Bytes example(Layout layout) {
    Bytes logical = with_common_values(layout);
    switch (layout) {
        case address_pair:
            for (std::size_t i = 0; i < 32; ++i) {
                logical[20 + i] = static_cast<std::uint8_t>(i);
            }
            break;
        case t1:
            logical[12] = 0x0c;
            put_little(logical, 16, 2, 0x1234);
            logical[20] = 4;
            put_big(logical, 24, 4, 0x51525354);
            put_big(logical, 28, 3, 0x616263);
            put_little(logical, 32, 4, 0x12345);
            logical[36] = 0x01;
            put_little(logical, 37, 4, 0xfabcde);
            break;
        case t2:
        case t2_by_l1_4:
            put_big(logical, 12, 8, 0x7172737475767778);
            logical[35] = 0x99;
            put_big(logical, 52, 4, 0xa1a2b1b2);
            put_big(logical, 56, 4, 0xcfc1c2cf);
            put_big(logical, 60, 6, 0xd1d2d3d4e1e2);
            put_big(logical, 68, 4, 0xf1f2f3f4);
            break;
        case t3:
            logical[12] = 0xb5;
            put_big(logical, 16, 3, 0x212223);
            put_big(logical, 20, 3, 0x252627);
            put_big(logical, 24, 4, 0x31323334);
            logical[36] = 0x02;
            put_big(logical, 40, 8, 0x5152535455565758);
            put_big(logical, 80, 2, 0x6162);
            logical[84] = 0x01;
            break;
        case t4:
            logical[0] |= 0x20;
            logical[1] |= 0x28;
            logical[2] |= 0x18;
            put_big(logical, 12, 6, 0x818283848586);
            put_little(logical, 18, 4, 0x12345);
            logical[22] = 0x01;
            put_little(logical, 23, 4, 0xabcde);
            logical[27] = 0x01;
            put_big(logical, 28, 4, 0x91929394);
            put_big(logical, 88, 2, 0xb1b2);
            break;
        case t5:
            logical[12] = 0x9a;
            put_big(logical, 14, 2, 0xb1b2);
            for (std::size_t i = 0; i < 16; ++i) {
                logical[16 + i] = static_cast<std::uint8_t>(i + 1);
            }
            break;
        case t6:
            logical[0] |= 0x20;
            logical[2] |= 0x02;
            put_big(logical, 12, 6, 0x818283848586);
            put_big(logical, 20, 3, 0xc1c2c3);
            put_big(logical, 88, 2, 0xb1b2);
            break;
    }
    return logical;
}

Bytes there_and_back(const Bytes& logical) {
    return translate(reverse, translate(result, logical).out, Bytes(90, 0xee)).out;
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse, reverse_model}};

TEST(TxAdjacency, IsTable5) {
    EXPECT_EQ(l2p_ucode_func_table[5].key, tx_adjacency_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[5].result, tx_adjacency_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[5], tx_adjacency_type_logical_xlate_result);
}

TEST(TxAdjacency, LengthsAreIgnored) {
    expect_length_ignored(key, bytes("01 02 03"));
    expect_length_ignored(result, with_common_values(t6));
    expect_length_ignored(reverse, counting(32));
    const Outcome outcome = translate(result, with_common_values(t6));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 24 00 00 41 42 43 44 45 46 47 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(translate(reverse, counting(32)).status, 0);
}

TEST(TxAdjacencyKey, IsCopiedInItsByteOrder) {
    const Outcome outcome = translate(key, bytes("12 34 56"), bytes("ff ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), bytes("12 34 56")});
    check_random(key, key_model, 200);
}

TEST(TxAdjacencyResult, CarriesEveryBitOfEveryLayout) {
    for (const Layout layout : layouts) {
        SCOPED_TRACE("layout " + std::to_string(layout));
        walk(result, result_model,
             {zeros_but(layout), pinned(Bytes(90, 0xff), layout), pinned(counting(90), layout),
              pinned(counting(90, 0x95), layout), example(layout)});
    }
}

TEST(TxAdjacencyResult, CarriesEveryBitWhateverTheSubordinateFlagsSay) {
    for (const unsigned selectors : {0x0U, 0x2U, 0x4U, 0x6U, 0x8U, 0xaU, 0xcU, 0xeU}) {
        for (const std::uint8_t range : std::initializer_list<std::uint8_t>{0, 4, 8, 0x84}) {
            Bytes logical = pinned(counting(90, 0x95), t1);
            set_bits(logical, 12, 3, 0, selectors);
            logical[20] = range;
            walk(result, result_model, logical);
            logical[41] = 0;
            check(result, result_model, logical);
        }
    }
    for (const Layout layout : {t2, t2_by_l1_4, t3, t4, t6}) {
        for (const unsigned selectors : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
            Bytes logical = pinned(counting(90, 0x95), layout);
            set_bit(logical, 0, 5, (selectors & 1) != 0);
            set_bit(logical, 2, 1, (selectors & 2) != 0);
            set_bit(logical, 72, 1, (selectors & 4) != 0);
            walk(result, result_model, logical);
        }
    }
}

TEST(TxAdjacencyResult, AgreesOnRandomRecordsOfEveryLayout) {
    check_random(result, result_model);
    for (const Layout layout : layouts) {
        check_random(result, result_model, 1000, [layout](Bytes& in) { in = pinned(in, layout); });
    }
    for (const std::uint8_t range : std::initializer_list<std::uint8_t>{4, 8}) {
        check_random(result, result_model, 500, [range](Bytes& in) {
            in = pinned(in, t1);
            in[20] = range;
            in[41] = 0;
        });
    }
}

TEST(TxAdjacencyResult, OfZerosIsT6) {
    const Outcome outcome = translate(result, Bytes(90), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 24 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(TxAdjacencyResult, PlacesTheFieldsOfEachLayout) {
    struct Row {
        Layout layout;
        const char* physical;
    };
    constexpr Row rows[] = {
        {address_pair,
         "11 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 00 "
         "1f 1e 1d 1c 1b 1a 19 18 17 16 15 14 13 12 11 10"},
        {t1,
         "11 24 00 00 41 42 43 44 45 46 47 07 1a 34 61 62 "
         "63 ab cd e0 12 34 51 54 53 52 51 00 00 00 00 00"},
        {t2,
         "11 24 00 80 41 42 43 44 45 46 47 00 d1 d2 d3 d4 "
         "c1 c2 e2 b2 b1 e1 71 72 73 74 75 76 77 78 a1 a2"},
        {t2_by_l1_4,
         "11 24 00 10 41 42 43 44 45 46 47 00 d1 d2 d3 d4 "
         "c1 c2 e2 b2 b1 e1 71 72 73 74 75 76 77 78 a1 a2"},
        {t3,
         "11 24 10 42 41 42 43 44 45 46 47 ad 21 22 23 31 "
         "32 33 34 26 25 27 51 52 53 54 55 56 57 58 61 62"},
        {t4,
         "51 2c 89 24 41 42 43 44 45 46 47 00 00 00 b2 b1 "
         "81 82 83 84 85 86 12 34 51 ab cd e1 91 92 93 94"},
        {t5,
         "11 24 02 00 41 42 43 44 45 46 47 9a b2 b1 01 02 "
         "03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 00 00"},
        {t6,
         "51 64 00 00 41 42 43 44 45 46 47 00 00 00 b2 b1 "
         "81 82 83 84 85 86 c1 c2 c3 00 00 00 00 00 00 00"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(hex(translate(result, example(row.layout)).out), row.physical) << "layout " << row.layout;
    }
}

TEST(TxAdjacencyResult, CarriesTheFlagsOfAllLayoutsButTheAddressPair) {
    constexpr std::pair<const char*, const char*> carried[] = {
        {"L0.0", "P1.7"}, {"L0.2", "P1.4"}, {"L0.4", "P1.5"}, {"L0.5", "P0.6"},   {"L0.6", "P0.5"},
        {"L2.1", "P1.6"}, {"L2.2", "P2.2"}, {"L4.0", "P4.0"}, {"L5.7", "P5.7"},   {"L6.1", "P6.1"},
        {"L7.6", "P7.6"}, {"L8.0", "P8.0"}, {"L9.3", "P9.3"}, {"L10.7", "P10.7"},
    };
    for (const Layout layout : {t1, t2, t2_by_l1_4, t3, t4, t5, t6}) {
        for (const auto& [logical, physical] : carried) {
            EXPECT_EQ(changes(result, zeros_but(layout), logical), physical) << logical << ", layout " << layout;
        }
    }
    for (const Layout layout : {t1, t2, t2_by_l1_4, t4, t5, t6}) {
        EXPECT_EQ(changes(result, zeros_but(layout), "L72.1"), "P2.4") << "layout " << layout;
    }
}

TEST(TxAdjacencyResult, CarriesTheDiscriminants) {
    EXPECT_EQ(changes(result, Bytes(90), "L72.2"), "P1.5 P1.2");  // an address pair has none of the common bits
    EXPECT_EQ(changes(result, Bytes(90), "L2.0"), "P11.1 P11.0");
    EXPECT_EQ(changes(result, Bytes(90), "L0.7"), "P3.7");
    EXPECT_EQ(changes(result, Bytes(90), "L1.4"), "P3.4");
    EXPECT_EQ(changes(result, Bytes(90), "L1.1"), "P3.6");
    EXPECT_EQ(changes(result, Bytes(90), "L1.2"), "P1.3 P2.0");
    EXPECT_EQ(changes(result, Bytes(90), "L1.6"), "P2.1");
    // And shows those that come after the one that chooses.
    for (const auto& [logical, physical] :
         {std::pair{"L0.7", "P3.7"}, std::pair{"L1.4", "P3.4"}, std::pair{"L1.1", "P3.6"},
          std::pair{"L1.2", "P1.3 P2.0"}, std::pair{"L1.6", "P2.1"}}) {
        EXPECT_EQ(changes(result, zeros_but(t1), logical), physical) << logical;
    }
}

TEST(TxAdjacencyResult, ClearsP1Bit5OnlyForL0Bit4WithoutL0Bit1) {
    constexpr std::pair<std::uint8_t, std::uint8_t> rows[] = {{0x00, 0x24}, {0x02, 0x24}, {0x10, 0x04}, {0x12, 0x24}};
    for (const Layout layout : {t1, t2_by_l1_4, t3, t5, t6}) {
        for (const auto& [l0, p1] : rows) {
            Bytes logical = zeros_but(layout);
            logical[0] = l0;
            EXPECT_EQ(translate(result, logical).out[1], p1) << "L0 " << int{l0} << ", layout " << layout;
        }
    }
}

TEST(TxAdjacencyResult, EarlierDiscriminantsWin) {
    Bytes logical(90, 0xff);
    for (std::size_t i = 0; i < logical.size(); ++i) {
        logical[i] = i < 20 ? 0xff : static_cast<std::uint8_t>(i);
    }
    logical[72] = 0xff;
    EXPECT_EQ(hex(translate(result, logical).out),
              "11 22 21 20 1f 1e 1d 1c 1b 1a 19 18 17 16 15 14 33 32 31 30 2f 2e 2d 2c 2b 2a 29 28 27 26 25 24");
    logical[72] = 0xf8;  // T1, with every other discriminant set
    EXPECT_EQ(hex(translate(result, logical).out),
              "71 fc 07 d0 ff ff ff ff ff ff ff 1d ff ff 1c 1d 1e 72 62 51 22 12 00 1b 1a 19 18 00 00 00 00 00");
}

TEST(TxAdjacencyAddressPair, ReadsNothingButTheAddresses) {
    expect_not_carried(result, example(address_pair), {"L0-19", "L35", "L52-71", "L72.7-3", "L72.1-0", "L73-89"});
    EXPECT_EQ(changes(result, example(address_pair), "L34.7"), "P1.7");
    EXPECT_EQ(changes(result, example(address_pair), "L20.0"), "P15.0");
    EXPECT_EQ(changes(result, example(address_pair), "L51.0"), "P16.0");
    EXPECT_EQ(changes(result, example(address_pair), "L36.7"), "P31.7");
}

TEST(TxAdjacencyT1, BuildsByte11AndItsThreeBytesFromTheFlagsOfL12) {
    struct Row {
        std::uint8_t l12;
        std::uint8_t p11;
        const char* p14_to_16;
    };
    constexpr Row rows[] = {
        {0x00, 0x03, "00 00 00"}, {0x04, 0x03, "00 00 00"}, {0x08, 0x03, "00 00 00"}, {0x0c, 0x07, "61 62 63"},
        {0x02, 0x13, "00 00 00"}, {0x06, 0x17, "61 62 63"}, {0x0a, 0x13, "00 00 00"}, {0x0e, 0x17, "61 62 63"},
        {0x01, 0x0b, "00 00 00"}, {0x0f, 0x1f, "61 62 63"}, {0xf0, 0x03, "00 00 00"},
    };
    for (const Row& row : rows) {
        Bytes logical = zeros_but(t1);
        logical[12] = row.l12;
        put_big(logical, 28, 3, 0x616263);
        const Bytes physical = translate(result, logical).out;
        EXPECT_EQ(physical[11], row.p11) << "L12 " << int{row.l12};
        EXPECT_EQ(hex({physical.begin() + 14, physical.begin() + 17}), row.p14_to_16) << "L12 " << int{row.l12};
    }
}

TEST(TxAdjacencyT1, KeepsTheIndexInTwoPlacesWhenL12Bit1IsSet) {
    Bytes logical = example(t1);
    logical[12] = 0x02;
    // Neither swapped nor adjusted; P4-5 loses its common value.
    EXPECT_EQ(hex(translate(result, logical).out),
              "11 24 00 00 34 12 43 44 45 46 47 13 34 12 00 00 00 ab cd e0 12 34 51 54 53 52 51 00 00 00 00 00");
    expect_not_carried(result, logical, {"L4-5", "L12.3", "L20"});
    EXPECT_EQ(changes(result, logical, "L16.0"), "P4.0 P12.0");
}

TEST(TxAdjacencyT1, AdjustsTheIndexByItsRangeWhenL12Bit1IsClear) {
    constexpr std::pair<std::uint8_t, const char*> adjusted[] = {
        {0, "12 34"}, {2, "12 34"}, {4, "1a 34"}, {8, "1e 34"}, {12, "12 34"}};
    for (const auto& [range, expected] : adjusted) {
        Bytes logical = example(t1);
        logical[20] = range;
        const Bytes physical = translate(result, logical).out;
        EXPECT_EQ(hex({physical.begin() + 12, physical.begin() + 14}), expected) << "range " << int{range};
        EXPECT_EQ(hex({physical.begin() + 4, physical.begin() + 6}), "41 42");
    }
}

TEST(TxAdjacencyT1, TestsL41WholeAndCarriesItsLowestBit) {
    struct Row {
        std::uint8_t l41;
        unsigned p19_0;
        unsigned p11_1;
    };
    for (const Row& row : {Row{0x00, 0, 1}, Row{0x01, 1, 0}, Row{0x02, 0, 0}, Row{0x03, 1, 0}, Row{0x80, 0, 0}}) {
        Bytes logical = zeros_but(t1);
        logical[41] = row.l41;
        const Bytes physical = translate(result, logical).out;
        EXPECT_EQ(bits(physical, 19, 7, 0), row.p19_0) << "L41 " << int{row.l41};
        EXPECT_EQ(bits(physical, 11, 1, 1), row.p11_1) << "L41 " << int{row.l41};
    }
}

TEST(TxAdjacencyT1, DropsTheRest) {
    expect_not_carried(
        result, example(t1),
        {"L0.3",   "L1.0", "L1.3",    "L1.5", "L1.7",    "L2.7-3",  "L3",  "L11",    "L12.7-4", "L13-15", "L18-19",
         "L21-23", "L31",  "L34.7-4", "L35",  "L36.7-1", "L39.7-4", "L40", "L42-71", "L72.7-3", "L72.0",  "L73-89"});
}

TEST(TxAdjacencyT2, TakesThreeBytesAndL35WhenL72Bit1IsSet) {
    Bytes logical = example(t2);
    logical[72] = 0x03;
    logical[73] = 0x07;
    EXPECT_EQ(hex(translate(result, logical).out),
              "11 24 10 8b 41 42 43 44 45 46 47 01 d1 d2 d3 d4 c1 c2 e2 b2 b1 e1 99 f3 f2 f1 00 00 00 00 a1 a2");
    expect_not_carried(result, logical, {"L12-19"});
}

TEST(TxAdjacencyT2, CarriesItsFlags) {
    for (const Layout layout : {t2, t2_by_l1_4}) {
        EXPECT_EQ(changes(result, example(layout), "L72.0"), "P11.0");
        EXPECT_EQ(changes(result, example(layout), "L73.0"), "P3.1");
        EXPECT_EQ(changes(result, example(layout), "L73.1"), "P3.0");
        EXPECT_EQ(changes(result, example(layout), "L73.2"), "P3.3");
        EXPECT_EQ(changes(result, example(layout), "L54.0"), "P20.0");
    }
    EXPECT_EQ(changes(result, example(t2), "L1.4"), "P3.4");
}

TEST(TxAdjacencyT2, DropsTheRest) {
    for (const Layout layout : {t2, t2_by_l1_4}) {
        expect_not_carried(result, example(layout),
                           {"L0.3", "L1.0", "L1.3", "L1.5", "L1.7", "L2.7-3", "L3", "L11", "L20-51", "L56", "L59",
                            "L66-71", "L72.7-3", "L73.7-3", "L74-89"});
    }
    Bytes three_bytes = example(t2);
    three_bytes[72] = 0x02;
    expect_not_carried(result, three_bytes, {"L12-34", "L36-51", "L56", "L59", "L66-67", "L71"});
}

TEST(TxAdjacencyT3, ReplacesTheCommonL72Bit1) {
    Bytes logical = zeros_but(t3);
    EXPECT_EQ(changes(result, logical, "L72.1"), "");
    EXPECT_EQ(changes(result, logical, "L36.1"), "P2.4");
    logical[72] = 0x02;
    EXPECT_EQ(translate(result, logical).out[2], 0x00);
}

TEST(TxAdjacencyT3, MirrorsTheLowBitsOfL12) {
    constexpr std::pair<const char*, const char*> carried[] = {
        {"L12.7", "P11.2"}, {"L12.6", "P11.1"}, {"L12.5", "P11.0"}, {"L12.4", "P11.3"}, {"L12.3", "P11.4"},
        {"L12.2", "P11.5"}, {"L12.1", "P11.6"}, {"L12.0", "P11.7"}, {"L84.0", "P3.1"},  {"L84.1", "P3.0"},
    };
    for (const auto& [logical, physical] : carried) {
        EXPECT_EQ(changes(result, zeros_but(t3), logical), physical) << logical;
    }
}

TEST(TxAdjacencyT3, DropsTheRest) {
    expect_not_carried(result, example(t3),
                       {"L0.3",    "L1.0",    "L1.3",   "L1.5",   "L1.7",    "L2.7-3", "L3",     "L11",
                        "L13-15",  "L19",     "L23",    "L28-35", "L36.7-2", "L36.0",  "L37-39", "L48-71",
                        "L72.7-3", "L72.1-0", "L73-79", "L82-83", "L84.7-2", "L85-89"});
}

TEST(TxAdjacencyT4, CarriesItsFlags) {
    constexpr std::pair<const char*, const char*> carried[] = {
        {"L1.3", "P3.5"},   {"L1.5", "P2.3"},   {"L2.3", "P3.2"},   {"L2.4", "P2.7"},   {"L22.0", "P24.0"},
        {"L27.0", "P27.0"}, {"L18.0", "P24.4"}, {"L20.3", "P22.7"}, {"L23.0", "P27.4"}, {"L25.3", "P25.7"},
    };
    for (const auto& [logical, physical] : carried) {
        EXPECT_EQ(changes(result, zeros_but(t4), logical), physical) << logical;
    }
}

TEST(TxAdjacencyT4, DropsTheRest) {
    expect_not_carried(result, example(t4),
                       {"L0.3", "L1.0", "L1.7", "L2.7-5", "L3", "L11", "L20.7-4", "L21", "L22.7-1", "L25.7-4", "L26",
                        "L27.7-1", "L32-71", "L72.7-3", "L72.0", "L73-87"});
    Bytes without_l0_5 = example(t4);
    set_bit(without_l0_5, 0, 5, false);
    expect_not_carried(result, without_l0_5, {"L88-89"});
    EXPECT_EQ(translate(result, without_l0_5).out[14], 0);
    EXPECT_EQ(translate(result, without_l0_5).out[15], 0);
}

TEST(TxAdjacencyT5, DropsTheRest) {
    expect_not_carried(
        result, example(t5),
        {"L0.3", "L1.0", "L1.3", "L1.5", "L1.7", "L2.7-3", "L3", "L11", "L13", "L32-71", "L72.7-3", "L72.0", "L73-89"});
}

TEST(TxAdjacencyT6, DropsTheRest) {
    expect_not_carried(result, example(t6),
                       {"L0.3", "L1.0", "L1.3", "L1.5", "L1.7", "L2.7-3", "L3", "L11", "L18-19", "L23-71", "L72.7-3",
                        "L72.0", "L73-87"});
    Bytes without_l0_5 = example(t6);
    set_bit(without_l0_5, 0, 5, false);
    expect_not_carried(result, without_l0_5, {"L88-89"});
    Bytes without_l2_1 = example(t6);
    set_bit(without_l2_1, 2, 1, false);
    expect_not_carried(result, without_l2_1, {"L20-22"});
}

// Physical records of the three ways back, over the bytes of a pattern.
Bytes physical_of(Bytes physical, bool p3_7, bool p1_3) {
    set_bit(physical, 3, 7, p3_7);
    set_bit(physical, 1, 3, p1_3);
    return physical;
}

TEST(TxAdjacencyReverse, CarriesEveryBit) {
    for (const Bytes& pattern : {Bytes(32), Bytes(32, 0xff), counting(32, 0x61), counting(32, 0xb3)}) {
        for (const unsigned selectors : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
            Bytes physical = pattern;
            set_bit(physical, 0, 6, (selectors & 1) != 0);
            set_bit(physical, 1, 6, (selectors & 2) != 0);
            set_bit(physical, 2, 4, (selectors & 4) != 0);
            walk(reverse, reverse_model,
                 {physical_of(physical, true, false), physical_of(physical, true, true),
                  physical_of(physical, false, true), physical_of(physical, false, false)});
        }
    }
    check_random(reverse, reverse_model);
    check_random(reverse, reverse_model, 1000, [](Bytes& in) { in = physical_of(in, false, true); });
    check_random(reverse, reverse_model, 1000, [](Bytes& in) { in = physical_of(in, false, false); });
}

TEST(TxAdjacencyReverse, ClearsAll90Bytes) {
    Bytes expected(90);
    expected[0] = 0x10;  // the inverse of P1.5
    const Outcome outcome = translate(reverse, Bytes(32), Bytes(90, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(hex(outcome.out), hex(expected));
}

TEST(TxAdjacencyReverse, RestoresTheFlags) {
    constexpr std::pair<const char*, const char*> restored[] = {
        {"P0.5", "L0.6"}, {"P0.6", "L0.5"}, {"P1.3", "L1.2"},  {"P1.4", "L0.2"}, {"P1.5", "L0.4 L0.1"},
        {"P1.6", "L2.1"}, {"P1.7", "L0.0"}, {"P2.4", "L72.1"}, {"P3.7", "L0.7"}, {"P10.7", "L10.7"},
    };
    for (const auto& [physical, logical] : restored) {
        EXPECT_EQ(changes(reverse, Bytes(32), physical), logical) << physical;
    }
}

TEST(TxAdjacencyReverse, LeavesOutWhatItDoesNotRestore) {
    // Among them L1.6 at P2.1, L2.2 at P2.2, L1.1 at P3.6 and L1.4 at P3.4; then the fields of each way back.
    const Bytes pattern = counting(32, 0x20);
    Bytes t2_with_p2_4 = physical_of(pattern, true, false);
    set_bit(t2_with_p2_4, 2, 4);
    Bytes t2_without_p2_4 = physical_of(pattern, true, false);
    set_bit(t2_without_p2_4, 2, 4, false);
    const Bytes as_t4 = physical_of(pattern, false, true);
    const Bytes others = physical_of(pattern, false, false);
    for (const Bytes& base : {t2_with_p2_4, t2_without_p2_4, as_t4, others}) {
        expect_not_carried(reverse, base, {"P0.7", "P0.4-0", "P1.2-0", "P2.7-5", "P2.2-0", "P3.6", "P3.4-2", "P11-13"});
        Bytes without_p0_6 = base;
        set_bit(without_p0_6, 0, 6, false);
        expect_not_carried(reverse, without_p0_6, {"P14-15"});
    }
    expect_not_carried(reverse, t2_with_p2_4, {"P2.3", "P3.5", "P22", "P26-29"});
    expect_not_carried(reverse, t2_without_p2_4, {"P2.3", "P3.5"});
    expect_not_carried(reverse, as_t4, {"P3.1-0", "P24.3-0", "P27.3-0"});
    expect_not_carried(reverse, others, {"P2.3", "P3.5", "P3.1-0", "P25-31"});
    Bytes without_p1_6 = others;
    set_bit(without_p1_6, 1, 6, false);
    expect_not_carried(reverse, without_p1_6, {"P22-24"});
}

TEST(TxAdjacencyRoundTrip, T2ComesBackWithL72Bit1) {
    Bytes logical = example(t2);
    logical[72] = 0x03;
    logical[73] = 0x07;
    Bytes expected(90);
    expected[0] = 0x82;  // L0.1 from P1.5, though it was clear
    put_big(expected, 4, 8, 0x4142434445464700);
    put_big(expected, 52, 4, 0xa1a2b2b1);
    put_big(expected, 56, 4, 0x00c1c200);
    put_big(expected, 64, 2, 0xe1e2);
    put_big(expected, 68, 4, 0xf3f2f100);
    expected[72] = 0x02;  // without L72.0
    expected[73] = 0x03;  // without L73.2
    EXPECT_EQ(hex(there_and_back(logical)), hex(expected));
}

TEST(TxAdjacencyRoundTrip, T2ComesBackWithoutL72Bit1) {
    Bytes expected(90);
    expected[0] = 0x82;
    put_big(expected, 4, 8, 0x4142434445464700);
    put_big(expected, 12, 8, 0x7172737475767778);
    put_big(expected, 52, 4, 0xa1a2b2b1);
    put_big(expected, 56, 4, 0x00c1c200);
    put_big(expected, 64, 2, 0xe1e2);
    EXPECT_EQ(hex(there_and_back(example(t2))), hex(expected));
}

TEST(TxAdjacencyRoundTrip, T2ByL1Bit4ComesBackAsT6) {
    Bytes expected(90);
    expected[0] = 0x02;
    put_big(expected, 4, 8, 0x4142434445464700);
    put_big(expected, 12, 6, 0xc1c2e2b2b1e1);
    EXPECT_EQ(hex(there_and_back(example(t2_by_l1_4))), hex(expected));
}

TEST(TxAdjacencyRoundTrip, T4ComesBackWithItsLabelsScrambled) {
    Bytes expected(90);
    expected[0] = 0x22;
    expected[1] = 0x2c;
    expected[2] = 0x00;  // without L2.3 and L2.4
    put_big(expected, 4, 8, 0x4142434445464700);
    put_big(expected, 12, 6, 0x818283848586);
    put_big(expected, 18, 5, 0x2541030000);  // 0x34125 for 0x12345, without the flag
    put_big(expected, 23, 5, 0xbeda0c0000);  // 0xcdabe for 0xabcde, without the flag
    put_big(expected, 28, 4, 0x91929394);
    put_big(expected, 88, 2, 0xb2b1);
    EXPECT_EQ(hex(there_and_back(example(t4))), hex(expected));
}

TEST(TxAdjacencyRoundTrip, T6ComesBackWithL88ReversedToo) {
    Bytes expected(90);
    expected[0] = 0x22;
    expected[2] = 0x02;
    put_big(expected, 4, 8, 0x4142434445464700);
    put_big(expected, 12, 6, 0x818283848586);
    put_big(expected, 20, 4, 0xc1c2c300);
    put_big(expected, 88, 2, 0xb2b1);
    EXPECT_EQ(hex(there_and_back(example(t6))), hex(expected));
}

TEST(TxAdjacencyRoundTrip, T1T3AndT5ComeBackAsT6) {
    Bytes expected(90);
    expected[0] = 0x02;
    put_big(expected, 4, 8, 0x4142434445464700);
    put_big(expected, 12, 6, 0x63abcde01234);
    EXPECT_EQ(hex(there_and_back(example(t1))), hex(expected));
    put_big(expected, 12, 6, 0x030405060708);
    EXPECT_EQ(hex(there_and_back(example(t5))), hex(expected));
    put_big(expected, 12, 6, 0x323334262527);
    expected[72] = 0x02;  // P2.4 held L36.1
    EXPECT_EQ(hex(there_and_back(example(t3))), hex(expected));
}

TEST(TxAdjacencyRoundTrip, T1ComesBackAsT2OrT4WhenTheirBitsAreSet) {
    Bytes logical = example(t1);
    logical[0] = 0x80;
    Bytes as_t2(90);
    as_t2[0] = 0x82;
    put_big(as_t2, 4, 8, 0x4142434445464700);
    put_big(as_t2, 12, 8, 0x5154535251000000);
    put_big(as_t2, 54, 2, 0xe012);
    put_big(as_t2, 56, 4, 0x0063ab00);
    put_big(as_t2, 64, 2, 0x34cd);
    EXPECT_EQ(hex(there_and_back(logical)), hex(as_t2));

    logical[0] = 0x00;
    logical[1] = 0x04;
    Bytes as_t4(90);
    as_t4[0] = 0x02;
    as_t4[1] = 0x04;
    put_big(as_t4, 4, 8, 0x4142434445464700);
    put_big(as_t4, 12, 6, 0x63abcde01234);
    put_big(as_t4, 18, 4, 0x15450500);  // (0x51 + 256 * 0x54) * 16 + 5
    put_big(as_t4, 23, 4, 0x20150500);  // (0x52 + 256 * 0x51) * 16 + 0
    EXPECT_EQ(hex(there_and_back(logical)), hex(as_t4));
}

TEST(TxAdjacencyRoundTrip, AnAddressPairComesBackAsWhatItsBytesLookLike) {
    // P1 is 0x0e, so L1.2 seems to be set, and L0.4, since P1.5 is clear.
    Bytes expected(90);
    expected[0] = 0x10;
    expected[1] = 0x24;
    put_big(expected, 4, 8, 0x0b0a090807060500);
    put_big(expected, 12, 6, 0x1f1e1d1c1b1a);
    put_big(expected, 18, 4, 0x91810100);
    put_big(expected, 23, 4, 0x61510100);
    put_big(expected, 28, 4, 0x13121110);
    EXPECT_EQ(hex(there_and_back(example(address_pair))), hex(expected));
}

TEST(TxAdjacencyRoundTrip, L0Bit4ComesBackAsTheInverseOfP1Bit5) {
    constexpr std::pair<std::uint8_t, std::uint8_t> rows[] = {{0x00, 0x02}, {0x02, 0x02}, {0x10, 0x10}, {0x12, 0x02}};
    for (const auto& [there, back] : rows) {
        Bytes logical(90);
        logical[0] = there;
        EXPECT_EQ(there_and_back(logical)[0], back) << "L0 " << int{there};
    }
}

}  // namespace
