// Multicast-only fast reroute: the information entry and the watchdog counter entry.
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using support::bit;
using support::bytes;
using support::Bytes;
using support::changes;
using support::check_random;
using support::counting;
using support::fill;
using support::hex;
using support::Outcome;
using support::Reply;
using support::Rows;
using support::set_bits;
using support::translate;
using support::Translator;
using support::walk;

const Translator info_key = FORWARD(ipmc_mofrr_info_key_xlate, 8, 4);
const Translator info_result = FORWARD(ipmc_mofrr_info_res_xlate, 40, 32);
const Translator watchdog_key = FORWARD(ipmc_mofrr_wdcnt_key_xlate, 3, 3);
const Translator watchdog_result = FORWARD(ipmc_mofrr_wdcnt_res_xlate, 16, 16);

Reply info_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-3 = swap L4-7"};
    rows.apply(in, out);
    return {.length = 4};
}

Reply watchdog_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return {.length = 3};
}

Reply info_result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P0.7 = L4.0",
        "P0.6 = L4.1",
        "P0.5 = L4.2",
        "P2.0 = 1",
        "P3 = L8",
        "P4 = L9",
        "P5 = L10",
        "P6-9 = swap L12-15",
        "P10 = L32",
        "P11 = L33",
        "P12 = L34",
        "P13-16 = swap L20-23",
        "P17 = L16",
        "P18 = L17",
        "P19 = L18",
        "P24-27 = swap L24-27",
        "P28-30 = swap L28-30",
    };
    static const Rows with_second_flag{"P20-23 = swap L36-39"};
    fill(out, 0, 31);
    rows.apply(in, out);
    if (bit(in, 4, 1)) {
        with_second_flag.apply(in, out);
    }
    return {.length = 32};
}

Reply watchdog_result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P0.6 = L0.0",
        "P0.5 = L0.1",
        "P2.0 = 1",
    };
    static const Rows with_third_flag{
        "P6-7 = L12-13",
        "P8-11 = swap L8-11",
        "P12-15 = swap L4-7",
    };
    fill(out, 0, 15);
    rows.apply(in, out);
    if (bit(in, 0, 2)) {
        with_third_flag.apply(in, out);
    }
    return {.length = 16};
}

std::vector<Bytes> bases(std::size_t size) { return {Bytes(size), Bytes(size, 0xff), counting(size, 0x81)}; }

Bytes info(std::uint8_t flags) {
    Bytes record = counting(40);
    record[4] = flags;
    return record;
}

Bytes watchdog(std::uint8_t flags) {
    Bytes record = counting(16);
    record[0] = flags;
    return record;
}

const support::Models models{{info_key, info_key_model},
                             {watchdog_key, watchdog_key_model},
                             {info_result, info_result_model},
                             {watchdog_result, watchdog_result_model}};

TEST(Mofrr, KeysCarryTheirRowsAndNothingElse) {
    walk(info_key, info_key_model, bases(8));
    check_random(info_key, info_key_model);
    walk(watchdog_key, watchdog_key_model, bases(3));
    check_random(watchdog_key, watchdog_key_model);
}

TEST(Mofrr, ResultsCarryTheirRowsAndNothingElseUnderEveryCombinationOfFlags) {
    const struct {
        const Translator& translator;
        Reply (*model)(const Bytes&, Bytes&);
        std::size_t flags;  // the byte that holds the flags
    } readings[] = {
        {info_result, info_result_model, 4},
        {watchdog_result, watchdog_result_model, 0},
    };
    for (const auto& reading : readings) {
        for (unsigned flags = 0; flags < 8; ++flags) {
            const auto shape = [&reading, flags](Bytes& in) { set_bits(in, reading.flags, 2, 0, flags); };
            for (Bytes base : bases(reading.translator.in_size)) {
                shape(base);
                walk(reading.translator, reading.model, base);
            }
            check_random(reading.translator, reading.model, 500, shape);
        }
    }
}

TEST(Mofrr, InfoKeyIsTheSecondWordBigEndian) {
    const Outcome outcome = translate(info_key, bytes("aa bb cc dd 01 02 03 04"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "04 03 02 01");
    for (const char* unused : {"L0.0", "L1.3", "L2.5", "L3.7"}) {
        EXPECT_EQ(changes(info_key, Bytes(8), unused), "") << unused;
    }
}

TEST(Mofrr, WatchdogKeyKeepsItsByteOrder) {
    const Outcome outcome = translate(watchdog_key, bytes("01 02 03"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "01 02 03");
}

TEST(Mofrr, ResultsOfZerosHoldTheHeaderAndTheConstantBit) {
    const Outcome of_info = translate(info_result, Bytes(40));
    EXPECT_EQ(of_info.status, NPXLATE_OK);
    EXPECT_EQ(of_info.length, 32U);
    EXPECT_EQ(hex(of_info.out),
              "11 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    const Outcome of_watchdog = translate(watchdog_result, Bytes(16));
    EXPECT_EQ(of_watchdog.status, NPXLATE_OK);
    EXPECT_EQ(of_watchdog.length, 16U);
    EXPECT_EQ(hex(of_watchdog.out), "11 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(Mofrr, InfoResultPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(info_result, info(0x07)).out),
              "f1 00 01 08 09 0a 0f 0e 0d 0c 20 21 22 17 16 15 14 10 11 12 27 26 25 24 1b 1a 19 18 1e 1d 1c 00");
}

TEST(Mofrr, InfoResultWritesTheLastValueOnlyUnderItsFlag) {
    EXPECT_EQ(hex(translate(info_result, info(0x01)).out),
              "91 00 01 08 09 0a 0f 0e 0d 0c 20 21 22 17 16 15 14 10 11 12 00 00 00 00 1b 1a 19 18 1e 1d 1c 00");
    EXPECT_EQ(hex(translate(info_result, info(0x02)).out),
              "51 00 01 08 09 0a 0f 0e 0d 0c 20 21 22 17 16 15 14 10 11 12 27 26 25 24 1b 1a 19 18 1e 1d 1c 00");
    EXPECT_EQ(hex(translate(info_result, info(0x04)).out),
              "31 00 01 08 09 0a 0f 0e 0d 0c 20 21 22 17 16 15 14 10 11 12 00 00 00 00 1b 1a 19 18 1e 1d 1c 00");
    EXPECT_EQ(changes(info_result, info(0x05), "L36.0"), "");
    EXPECT_EQ(changes(info_result, info(0x02), "L36.0"), "P23.0");
}

TEST(Mofrr, InfoResultDropsTheBytesBetweenItsFields) {
    for (const char* unused :
         {"L0.0", "L3.7", "L4.3", "L4.7", "L5.0", "L7.7", "L11.0", "L19.0", "L31.0", "L31.7", "L35.0"}) {
        EXPECT_EQ(changes(info_result, info(0x07), unused), "") << unused;
    }
}

TEST(Mofrr, WatchdogResultPutsEveryValueInItsPlaceUnderTheThirdFlag) {
    EXPECT_EQ(hex(translate(watchdog_result, watchdog(0x07)).out), "71 00 01 00 00 00 0c 0d 0b 0a 09 08 07 06 05 04");
    EXPECT_EQ(hex(translate(watchdog_result, watchdog(0x04)).out), "11 00 01 00 00 00 0c 0d 0b 0a 09 08 07 06 05 04");
}

TEST(Mofrr, WatchdogResultWithoutTheThirdFlagHoldsTheOtherTwoAlone) {
    EXPECT_EQ(hex(translate(watchdog_result, watchdog(0x03)).out), "71 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(watchdog_result, watchdog(0x01)).out), "51 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(watchdog_result, watchdog(0x02)).out), "31 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00");
    for (const char* unused : {"L4.0", "L8.0", "L12.0", "L13.7"}) {
        EXPECT_EQ(changes(watchdog_result, watchdog(0x03), unused), "") << unused;
    }
}

TEST(Mofrr, WatchdogResultDoesNotCarryTheThirdFlagItself) {
    EXPECT_EQ(changes(watchdog_result, Bytes(16), "L0.2"), "");
    for (const char* unused : {"L0.3", "L0.7", "L1.0", "L3.7", "L14.0", "L15.7"}) {
        EXPECT_EQ(changes(watchdog_result, watchdog(0x07), unused), "") << unused;
    }
}

TEST(Mofrr, TranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {info_key, info_result, watchdog_key, watchdog_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(Mofrr, TablesDispatchToTheirTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[50].key, ipmc_mofrr_info_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[50].result, ipmc_mofrr_info_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[50], generic_xlate_logical_result);
    EXPECT_EQ(l2p_ucode_func_table[51].key, ipmc_mofrr_wdcnt_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[51].result, ipmc_mofrr_wdcnt_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[51], generic_xlate_logical_result);
}

}  // namespace
