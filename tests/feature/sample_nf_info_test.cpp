// Table 69, the sampling rates. Their reverse translator is the one of table 67, not of table 69.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <array>
#include <string>
#include <tuple>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(sample_nf_info_st_xlate_key, 4, 3);
const Translator result = FORWARD(sample_nf_info_st_xlate_result, 9, 16);
const Translator read_back = REVERSE(sample_nf_info_logical_res_xlate, 16, 9);

// The rates that the card takes as a mask.
constexpr std::array<std::uint16_t, 6> mask_rates{2048, 4096, 8192, 16384, 32768, 65535};

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-2 = 0",
        "P0-1 = L0-1",
        "P2.2 = L2.0",
        "P2.1-0 = L3.1-0",
    };
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows header{"P0-15 = 0", "P0 = 0x11"};
    static const Rows as_mask{"P0.6 = 1"};
    static const Rows above_255{"P0.5 = 1"};
    static const Rows as_rate{
        "P4-5 = swap L0-1",
        "P6-7 = swap L2-3",
        "P8-10 = L5-7",
    };
    static const Rows flags{
        "P0.7 = L8.5",
        "P1.7 = L8.6",
        "P1.6 = L8.7",
        "P1.5 = L8.4",
    };
    const std::uint64_t rate = little(in, 0, 2);
    header.apply(in, out);
    switch (rate) {
        case 2048:
        case 4096:
        case 8192:
        case 16384:
        case 32768:
            as_mask.apply(in, out);
            put_big(out, 4, 2, rate / 1024 - 1);
            break;
        case 65535:
            as_mask.apply(in, out);
            put_big(out, 4, 2, (rate + 1) / 1024 - 1);
            break;
        default:
            if (rate > 255) {
                above_255.apply(in, out);
            }
            as_rate.apply(in, out);
    }
    flags.apply(in, out);
    return {.length = 16};
}

Reply read_back_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-8 = 0",      //
        "L0-1 = P4-5",   //
        "L2-3 = P6-7",   //
        "L5-7 = P8-10",  //
        "L8.5 = P0.7",   //
        "L8.6 = P1.7",   //
        "L8.7 = P1.6",   //
        "L8.4 = P1.5",   //
    };
    rows.apply(in, out);
    return {};
}

Bytes with_rate(Bytes in, std::uint16_t rate) {
    put_little(in, 0, 2, rate);
    return in;
}

const support::Models models{{key, key_model}, {result, result_model}, {read_back, read_back_model}};

TEST(SampleNfInfo, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x91)});
    check_random(key, key_model);
    walk(result, result_model, {Bytes(9), Bytes(9, 0xff), counting(9), counting(9, 0x91)});
    check_random(result, result_model);
    walk(read_back, read_back_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x91)});
    check_random(read_back, read_back_model);
}

TEST(SampleNfInfo, CarriesNothingButFlagsBesideAMaskRate) {
    for (const std::uint16_t rate : mask_rates) {
        for (const Bytes& base : {Bytes(9), Bytes(9, 0xff), counting(9, 0x91)}) {
            walk(result, result_model, with_rate(base, rate));
        }
        check_random(result, result_model, 200, [rate](Bytes& in) { put_little(in, 0, 2, rate); });
    }
}

TEST(SampleNfInfo, TranslatesEveryRate) {
    for (unsigned rate = 0; rate < 0x10000; ++rate) {
        check(result, result_model, with_rate(counting(9, 0x31), static_cast<std::uint16_t>(rate)));
    }
}

TEST(SampleNfInfo, SendsTheMaskRatesAsMasks) {
    const Bytes base = bytes("00 00 a2 a3 a4 a5 a6 a7 00");
    for (const auto& [rate, code] : {std::pair{2048, "01"}, std::pair{4096, "03"}, std::pair{8192, "07"},
                                     std::pair{16384, "0f"}, std::pair{32768, "1f"}, std::pair{65535, "3f"}}) {
        const Outcome outcome = translate(result, with_rate(base, static_cast<std::uint16_t>(rate)), Bytes(16, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 16U);
        EXPECT_EQ(hex(outcome.out), std::string{"51 00 00 00 00 "} + code + " 00 00 00 00 00 00 00 00 00 00");
    }
}

TEST(SampleNfInfo, SendsEveryOtherRateAsItself) {
    const Bytes base = bytes("00 00 a2 a3 a4 a5 a6 a7 00");
    for (const auto& [rate, header, value] : {
             std::tuple{0, "11", "00 00"},
             std::tuple{1, "11", "00 01"},
             std::tuple{255, "11", "00 ff"},
             std::tuple{256, "31", "01 00"},
             std::tuple{512, "31", "02 00"},
             std::tuple{1024, "31", "04 00"},
             std::tuple{2047, "31", "07 ff"},
             std::tuple{2049, "31", "08 01"},
             std::tuple{2056, "31", "08 08"},
             std::tuple{16383, "31", "3f ff"},
             std::tuple{32767, "31", "7f ff"},
             std::tuple{32769, "31", "80 01"},
             std::tuple{49152, "31", "c0 00"},
             std::tuple{65534, "31", "ff fe"},
         }) {
        const Outcome outcome = translate(result, with_rate(base, static_cast<std::uint16_t>(rate)), Bytes(16, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 16U);
        EXPECT_EQ(hex(outcome.out), std::string{header} + " 00 00 00 " + value + " a3 a2 a5 a6 a7 00 00 00 00 00");
    }
}

TEST(SampleNfInfo, CarriesItsFlagsWithEveryRate) {
    for (const unsigned value : {0U, 255U, 1024U, 2048U, 32768U, 65535U}) {
        const auto rate = static_cast<std::uint16_t>(value);
        const Bytes base = with_rate(Bytes(9), rate);
        for (const auto& [from, to] :
             {std::pair{"L8.5", "P0.7"}, std::pair{"L8.6", "P1.7"}, std::pair{"L8.7", "P1.6"},
              std::pair{"L8.4", "P1.5"}, std::pair{"L8.3", ""}, std::pair{"L8.2", ""}, std::pair{"L8.1", ""},
              std::pair{"L8.0", ""}, std::pair{"L4.0", ""}, std::pair{"L4.7", ""}}) {
            EXPECT_EQ(changes(result, base, from), to) << from << " of rate " << rate;
        }
    }
}

TEST(SampleNfInfo, DropsTheOtherValuesOfAMaskRate) {
    for (const std::uint16_t rate : mask_rates) {
        for (const char* dropped : {"L2.0", "L3.7", "L5.0", "L6.3", "L7.7"}) {
            EXPECT_EQ(changes(result, with_rate(Bytes(9), rate), dropped), "") << dropped << " of rate " << rate;
        }
    }
}

TEST(SampleNfInfo, RegroupsTheKey) {
    const Outcome outcome = translate(key, bytes("12 34 01 02"), Bytes(3, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 06");
    EXPECT_EQ(hex(translate(key, bytes("00 00 fe fc")).out), "00 00 00");
    EXPECT_EQ(hex(translate(key, bytes("ff ff ff ff")).out), "ff ff 07");
    for (const auto& [from, to] :
         {std::pair{"L2.0", "P2.2"}, std::pair{"L2.1", ""}, std::pair{"L2.7", ""}, std::pair{"L3.0", "P2.0"},
          std::pair{"L3.1", "P2.1"}, std::pair{"L3.2", ""}, std::pair{"L3.7", ""}}) {
        EXPECT_EQ(changes(key, counting(4, 0x40), from), to) << from;
    }
}

TEST(SampleNfInfo, ReadsItsValuesBackByteReversed) {
    const Outcome there = translate(result, bytes("2c 01 34 12 99 a5 a6 a7 ff"));
    EXPECT_EQ(hex(there.out), "b1 e0 00 00 01 2c 12 34 a5 a6 a7 00 00 00 00 00");
    const Outcome back = translate(read_back, there.out, Bytes(9, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out), "01 2c 12 34 00 a5 a6 a7 f0");
}

TEST(SampleNfInfo, ReadsAMaskRateBackAsItsMask) {
    const Outcome there = translate(result, bytes("00 80 34 12 99 a5 a6 a7 50"));
    EXPECT_EQ(hex(there.out), "51 a0 00 00 00 1f 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(read_back, there.out).out), "00 1f 00 00 00 00 00 00 50");
}

TEST(SampleNfInfo, ReadsNothingElseBack) {
    EXPECT_EQ(hex(translate(read_back, bytes("7f 1f ff ff 00 00 00 00 00 00 00 ff ff ff ff ff")).out),
              "00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(read_back, Bytes(16, 0xff)).out), "ff ff ff ff 00 ff ff ff f0");
    for (const auto& [from, to] :
         {std::pair{"P0.7", "L8.5"}, std::pair{"P1.7", "L8.6"}, std::pair{"P1.6", "L8.7"}, std::pair{"P1.5", "L8.4"},
          std::pair{"P4.0", "L0.0"}, std::pair{"P7.7", "L3.7"}, std::pair{"P8.0", "L5.0"}, std::pair{"P10.7", "L7.7"},
          std::pair{"P0.6", ""}, std::pair{"P0.5", ""}, std::pair{"P1.4", ""}, std::pair{"P2.0", ""},
          std::pair{"P3.7", ""}, std::pair{"P11.0", ""}, std::pair{"P15.7", ""}}) {
        EXPECT_EQ(changes(read_back, counting(16), from), to) << from;
    }
}

TEST(SampleNfInfo, ReadsBackOnlyRecordsOfSixteenBytes) { expect_exact_length(read_back); }

TEST(SampleNfInfo, IgnoresTheLengthOnTheWayOut) {
    expect_length_ignored(key, counting(4));
    expect_length_ignored(result, counting(9));
}

TEST(SampleNfInfo, IsTable69ButReadsBackTable67) {
    EXPECT_EQ(l2p_ucode_func_table[69].key, &sample_nf_info_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[69].result, &sample_nf_info_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[69], &generic_xlate_logical_result);
    for (std::size_t id = 0; id < NPXLATE_TABLE_COUNT; ++id) {
        EXPECT_EQ(p2l_ucode_func_table[id] == &sample_nf_info_logical_res_xlate, id == 67) << id;
    }
}

}  // namespace
