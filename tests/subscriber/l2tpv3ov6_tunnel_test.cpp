// L2TPv3-over-IPv6 tunnels, table 93: five kinds of entry in one 64-byte result.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include <algorithm>
#include <array>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator tunnel_key = FORWARD(ent_h_l2tpv3ov6_tun_str_xlate_key, 5, 5);
// The longest kind, kind 0, ends with L55.
const Translator tunnel_result = FORWARD(ent_h_l2tpv3ov6_tun_str_xlate_result, 56, 64);

// ---- Models ----

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows swapped{"P0-3 = swap L0-3"};
    static const Rows kept{"P0-3 = L0-3"};
    static const Rows both{"P4 = L4"};
    out.assign(5, 0);
    (in[4] != 0 ? swapped : kept).apply(in, out);
    both.apply(in, out);
    return {.length = 5};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const std::array<Rows, 5> kinds{
        Rows{
            "P0 = 0x11",
            "P0.6 = L4.1",
            "P0.5 = L4.2",
            "P2-3 = L6-7",
            "P4-27 = L8-31",
            "P28-31 = L32-35",
            "P32 = 0x11",
            "P32.7 = L36.0",
            "P32.6 = L36.1",
            "P34-35 = swap L38-39",
            "P36-39 = L40-43",
            "P40-43 = swap L44-47",
            "P44-47 = swap L48-51",
            "P48-51 = swap L52-55",
        },
        Rows{
            "P0 = 0x11",
            "P0.6 = L4.1",
            "P0.5 = L4.2",
            "P4-5 = L8-9",
            "P8-11 = swap L12-15",
            "P12-15 = swap L16-19",
            "P16-19 = swap L20-23",
            "P20-23 = swap L24-27",
            "P24-26 = L28-30",
            "P28-31 = L36-39",
        },
        Rows{
            "P0 = 0x91",
            "P0.6 = L4.1",
            "P0.5 = L4.2",
            "P2 = L5",
            "P3 = L6",
            "P4-7 = L8-11",
            "P20-23 = L12-15",
            "P32 = 0x11",
            "P32.7 = L16.0",
            "P32.6 = L16.1",
            "P34-35 = swap L18-19",
            "P36-37 = swap L20-21",
            "P40-43 = swap L24-27",
            "P44-47 = swap L28-31",
            "P48-51 = swap L32-35",
        },
        Rows{
            "P0 = 0x11",
            "P0.6 = L4.1",
            "P0.5 = L4.2",
            "P4-5 = L6-7",
            "P8-11 = swap L8-11",
            "P12-15 = swap L12-15",
            "P24 = L16",
            "P25 = L17",
            "P26 = L18",
        },
        Rows{
            "P0 = 0x11",
            "P0.5 = L4.2",
            "P1.3 = L5.4",
            "P1.2 = L5.5",
            "P2-3 = swap L6-7",
            "P4-7 = L8-11",
        },
    };
    out.assign(64, 0);
    const std::uint64_t kind = little(in, 0, 4);
    if (kind < kinds.size()) {
        kinds[kind].apply(in, out);
    }
    return {.length = 64};
}

// ---- Every bit ----

// `record` as an entry of that kind.
Bytes of_kind(std::uint32_t kind, Bytes record) {
    put_little(record, 0, 4, kind);
    return record;
}

const support::Models models{{tunnel_key, key_model}, {tunnel_result, result_model}};

TEST(L2tpv3ov6TunnelKey, EveryBitGoesWhereItBelongs) {
    for (const std::uint8_t swap : bytes("00 01 02 80 ff")) {
        for (Bytes base : {Bytes(5), Bytes(5, 0xff), counting(5, 0x81)}) {
            base[4] = swap;
            walk(tunnel_key, key_model, base);
        }
    }
    check_random(tunnel_key, key_model);
    check_random(tunnel_key, key_model, 500, [](Bytes& in) { in[4] = 0; });
}

TEST(L2tpv3ov6TunnelResult, EveryBitGoesWhereItBelongs) {
    // Kinds whose low byte or low half alone would be a valid kind are not valid.
    for (const std::uint32_t kind : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 0x100U, 0x104U, 0x10002U, 0x01000000U, 0x80000000U,
                                     0x80000001U, 0xfffffffeU, 0xffffffffU}) {
        for (const Bytes& pattern : {Bytes(56), Bytes(56, 0xff), counting(56), counting(56, 0x81)}) {
            walk(tunnel_result, result_model, of_kind(kind, pattern));
        }
        check_random(tunnel_result, result_model, 300, [kind](Bytes& in) { put_little(in, 0, 4, kind); });
    }
    check_random(tunnel_result, result_model, 300);
}

TEST(L2tpv3ov6Tunnel, NoTranslatorLooksAtTheLengthItIsGiven) {
    for (const std::int32_t length : {-1, 0, 1, 0x7fffffff}) {
        const Bytes key_record = bytes("01 02 03 04 05");
        EXPECT_EQ(translate_with_length(tunnel_key, key_record, length), translate(tunnel_key, key_record));
        for (std::uint32_t kind = 0; kind < 6; ++kind) {
            const Bytes record = of_kind(kind, counting(56));
            EXPECT_EQ(translate_with_length(tunnel_result, record, length), translate(tunnel_result, record)) << kind;
        }
    }
}

// ---- Key ----

TEST(L2tpv3ov6TunnelKey, IsSwappedWhenL4IsNotZero) {
    struct Row {
        const char* logical;
        const char* physical;
    };
    for (const auto& [logical, physical] :
         {Row{"01 02 03 04 00", "01 02 03 04 00"}, Row{"01 02 03 04 01", "04 03 02 01 01"},
          Row{"01 02 03 04 02", "04 03 02 01 02"}, Row{"01 02 03 04 80", "04 03 02 01 80"}}) {
        const Outcome outcome = translate(tunnel_key, bytes(logical), Bytes(5, 0xee));
        EXPECT_EQ(outcome.status, 0) << logical;
        EXPECT_EQ(outcome.length, 5U) << logical;
        EXPECT_EQ(hex(outcome.out), physical) << logical;
    }
}

// ---- Result ----

TEST(L2tpv3ov6TunnelResult, PutsEachByteOfEachKindInItsPlace) {
    // Each logical byte from L4 on holds its own number.
    const std::array<const char*, 5> expected{
        "31 00 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f 20 21 22 23 "
        "11 00 27 26 28 29 2a 2b 2f 2e 2d 2c 33 32 31 30 37 36 35 34 00 00 00 00 00 00 00 00 00 00 00 00",
        "31 00 00 00 08 09 00 00 0f 0e 0d 0c 13 12 11 10 17 16 15 14 1b 1a 19 18 1c 1d 1e 00 24 25 26 27 "
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
        "b1 00 05 06 08 09 0a 0b 00 00 00 00 00 00 00 00 00 00 00 00 0c 0d 0e 0f 00 00 00 00 00 00 00 00 "
        "11 00 13 12 15 14 00 00 1b 1a 19 18 1f 1e 1d 1c 23 22 21 20 00 00 00 00 00 00 00 00 00 00 00 00",
        "31 00 00 00 06 07 00 00 0b 0a 09 08 0f 0e 0d 0c 00 00 00 00 00 00 00 00 10 11 12 00 00 00 00 00 "
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
        "31 00 07 06 08 09 0a 0b 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
    };
    for (std::uint32_t kind = 0; kind < expected.size(); ++kind) {
        const Outcome outcome = translate(tunnel_result, of_kind(kind, counting(56)), Bytes(64, 0xee));
        EXPECT_EQ(outcome.status, 0) << kind;
        EXPECT_EQ(outcome.length, 64U) << kind;
        EXPECT_EQ(hex(outcome.out), expected[kind]) << kind;
    }
}

TEST(L2tpv3ov6TunnelResult, OfKind5AndAboveIsAllZeroWithoutAHeader) {
    for (const std::uint32_t kind : {5U, 6U, 0xffU, 0x100U, 0x10000U, 0x01000000U, 0x80000000U, 0xffffffffU}) {
        const Outcome outcome = translate(tunnel_result, of_kind(kind, Bytes(56, 0xff)), Bytes(64, 0xee));
        EXPECT_EQ(outcome.status, 0) << kind;
        EXPECT_EQ(outcome.length, 64U) << kind;
        EXPECT_EQ(hex(outcome.out),
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")
            << kind;
    }
}

TEST(L2tpv3ov6TunnelResult, HasTheHeaderBytesOfItsKind) {
    struct Row {
        std::uint32_t kind;
        std::uint8_t header_of_zeros;
        std::uint8_t second_of_zeros;
        std::uint8_t header_of_ones;
        std::uint8_t second_of_ones;
    };
    for (const Row& row :
         {Row{0, 0x11, 0x11, 0x71, 0xd1}, Row{1, 0x11, 0x00, 0x71, 0x00}, Row{2, 0x91, 0x11, 0xf1, 0xd1},
          Row{3, 0x11, 0x00, 0x71, 0x00}, Row{4, 0x11, 0x00, 0x31, 0x00}}) {
        const Bytes zeros = translate(tunnel_result, of_kind(row.kind, Bytes(56))).out;
        EXPECT_EQ(zeros[0], row.header_of_zeros) << row.kind;
        EXPECT_EQ(zeros[32], row.second_of_zeros) << row.kind;
        const Bytes ones = translate(tunnel_result, of_kind(row.kind, Bytes(56, 0xff))).out;
        EXPECT_EQ(ones[0], row.header_of_ones) << row.kind;
        EXPECT_EQ(ones[32], row.second_of_ones) << row.kind;
    }
}

TEST(L2tpv3ov6TunnelResult, OfKind1KeepsTheOrderOfTheFourWordsOfAnAddress) {
    Bytes logical = of_kind(1, Bytes(56));
    // 2001:db8:1:2:3:4:5:6 as four words in host order.
    const Bytes address = bytes("b8 0d 01 20 02 00 01 00 04 00 03 00 06 00 05 00");
    std::copy(address.begin(), address.end(), logical.begin() + 12);
    const Bytes physical = translate(tunnel_result, logical).out;
    EXPECT_EQ(hex(Bytes(physical.begin() + 8, physical.begin() + 24)),
              "20 01 0d b8 00 01 00 02 00 03 00 04 00 05 00 06");
}

TEST(L2tpv3ov6TunnelResult, CarriesTheFlagsOfItsKind) {
    struct Row {
        std::uint32_t kind;
        const char* logical;
        const char* physical;
    };
    for (const auto& [kind, logical, physical] : {
             Row{0, "L4.1", "P0.6"},   Row{0, "L4.2", "P0.5"}, Row{0, "L36.0", "P32.7"}, Row{0, "L36.1", "P32.6"},
             Row{0, "L52.0", "P51.0"}, Row{1, "L4.1", "P0.6"}, Row{1, "L4.2", "P0.5"},   Row{1, "L12.0", "P11.0"},
             Row{2, "L4.1", "P0.6"},   Row{2, "L4.2", "P0.5"}, Row{2, "L16.0", "P32.7"}, Row{2, "L16.1", "P32.6"},
             Row{2, "L21.7", "P36.7"}, Row{3, "L4.1", "P0.6"}, Row{3, "L4.2", "P0.5"},   Row{3, "L18.7", "P26.7"},
             Row{4, "L4.2", "P0.5"},   Row{4, "L5.4", "P1.3"}, Row{4, "L5.5", "P1.2"},   Row{4, "L7.7", "P2.7"},
         }) {
        EXPECT_EQ(changes(tunnel_result, of_kind(kind, Bytes(56)), logical), physical) << kind << " " << logical;
    }
}

TEST(L2tpv3ov6TunnelResult, DoesNotCarryTheGapsOfItsKind) {
    struct Row {
        std::uint32_t kind;
        std::vector<const char*> positions;
    };
    const std::vector<Row> gaps{
        {0, {"L4.0", "L4.3", "L4.7", "L5.0", "L5.7", "L36.2", "L36.7", "L37.0"}},
        {1, {"L4.0", "L4.3", "L5.0", "L6.0", "L7.0", "L10.0", "L11.7", "L31.0", "L32.0", "L35.7", "L40.0", "L55.7"}},
        {2, {"L4.0", "L4.3", "L4.7", "L7.0", "L16.2", "L17.0", "L22.0", "L23.7", "L36.0", "L55.7"}},
        {3, {"L4.0", "L4.3", "L5.0", "L19.0", "L19.7", "L20.0", "L55.7"}},
        {4, {"L4.0", "L4.1", "L4.3", "L5.0", "L5.3", "L5.6", "L5.7", "L12.0", "L36.0", "L55.7"}},
    };
    for (const auto& [kind, positions] : gaps) {
        for (const char* position : positions) {
            EXPECT_EQ(changes(tunnel_result, of_kind(kind, Bytes(56)), position), "") << kind << " " << position;
        }
    }
}

// ---- Dispatch ----

TEST(L2tpv3ov6TunnelDispatch, IsTable93) {
    EXPECT_EQ(l2p_ucode_func_table[93].key, &ent_h_l2tpv3ov6_tun_str_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[93].result, &ent_h_l2tpv3ov6_tun_str_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[93], &generic_xlate_logical_result);
}

TEST(L2tpv3ov6TunnelDispatch, CannotReadAWholeResultBackButItsFirst63Bytes) {
    Bytes physical = translate(tunnel_result, of_kind(0, counting(56))).out;
    const Translator whole = reverse("reverse translator of table 93", p2l_ucode_func_table[93], 64, 64);
    const Outcome refused = translate(whole, physical, Bytes(64, 0xee));
    EXPECT_EQ(refused.status, 22);
    EXPECT_EQ(refused.out, Bytes(64, 0xee));

    physical.pop_back();
    const Translator most = reverse("reverse translator of table 93", p2l_ucode_func_table[93], 63, 63);
    const Outcome copied = translate(most, physical, Bytes(63, 0xee));
    EXPECT_EQ(copied.status, 0);
    EXPECT_EQ(copied.out, physical);
}

}  // namespace
