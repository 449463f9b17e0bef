// The EVPN MAC entry.
#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(evpn_mac_mb_type_xlate_key, 10, 9);
const Translator result = FORWARD(evpn_mac_mb_type_xlate_result, 22, 32);
const Translator reverse_result = REVERSE(evpn_mac_mb_type_logical_xlate_result, 32, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-8 = 0", "P0-5 = L4-9", "P6 = L0", "P7 = L1", "P8 = 0"};
    rows.apply(in, out);
    return {.length = 9};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",   "P0 = 0x11",     "P0.5 = L0.0",     "P0.7 = L0.1", "P1-2 = 0",  "P5 = 0",
        "P3-4 = L4-5", "P6-11 = L8-13", "P12-15 = L16-19", "P16-21 = 0",  "P23 = L20", "P24 = L21",
    };
    rows.apply(in, out);
    return {.length = 32};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-31 = 0",     "L0.0 = P0.5",     "L0.1 = P0.7", "L4-6 = P3-5",
        "L8-13 = P6-11", "L16-19 = P12-15", "L20 = P23",   "L21 = P24",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

TEST(EvpnMacKey, IsTheMacAddressAndASixteenBitValue) {
    walk(key, key_model, patterns(10));
    check_random(key, key_model);
    const Outcome outcome = translate(key, bytes("34 12 99 99 00 11 22 33 44 55"), Bytes(9, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 9U);
    EXPECT_EQ(hex(outcome.out), "00 11 22 33 44 55 34 12 00");
    expect_not_carried(key, Bytes(10), {"L2-3"});
}

TEST(EvpnMacResult, CarriesItsFieldsAndNothingElse) {
    walk(result, result_model, patterns(22));
    check_random(result, result_model);
}

TEST(EvpnMacResult, OfACountingRecordIsThis) {
    const Outcome outcome = translate(result, with(counting(22), {{0, "03"}}), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "b1 00 00 04 05 00 08 09 0a 0b 0c 0d 10 11 12 13 00 00 00 00 00 00 00 14 15 00 00 00 00 00 00 00");
}

TEST(EvpnMacResult, PutsItsTwoFlagsIntoTheHeader) {
    EXPECT_EQ(translate(result, Bytes(22)).out[0], 0x11);
    EXPECT_EQ(changes(result, Bytes(22), "L0.0"), "P0.5");
    EXPECT_EQ(changes(result, Bytes(22), "L0.1"), "P0.7");
    EXPECT_EQ(translate(result, with(Bytes(22), {{0, "fc ff ff ff"}})).out[0], 0x11);
}

TEST(EvpnMacResult, DoesNotCarryWhatLiesBetweenItsFields) {
    expect_not_carried(result, Bytes(22), {"L0.7-2", "L1-3", "L6-7", "L14-15"});
}

TEST(EvpnMacReverse, RestoresItsFieldsAndNothingElse) {
    walk(reverse_result, reverse_model, patterns(32));
    check_random(reverse_result, reverse_model);
}

TEST(EvpnMacReverse, OfACountingRecordIsThis) {
    const Outcome outcome = translate(reverse_result, counting(32), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out),
              hex(with(Bytes(32), {{4, "03 04 05 00"}, {8, "06 07 08 09 0a 0b"}, {16, "0c 0d 0e 0f 17 18"}})));
}

TEST(EvpnMacReverse, DoesNotReadConstantBytes) {
    expect_not_carried(reverse_result, Bytes(32), {"P0.4-0", "P0.6", "P1-2", "P16-22", "P25-31"});
    EXPECT_EQ(changes(reverse_result, Bytes(32), "P5.0"), "L6.0");
}

TEST(EvpnMac, ComesBackWithoutTheTopOfTheValueAtL4) {
    const Bytes in = with(counting(22), {{0, "03"}});
    EXPECT_EQ(
        hex(translate(reverse_result, translate(result, in).out).out),
        hex(with(Bytes(32), {{0, "03"}, {4, "04 05 00 00"}, {8, "08 09 0a 0b 0c 0d"}, {16, "10 11 12 13 14 15"}})));
}

TEST(EvpnMac, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(EvpnMac, IsTable70) {
    EXPECT_EQ(l2p_ucode_func_table[70].key, &evpn_mac_mb_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[70].result, &evpn_mac_mb_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[70], &evpn_mac_mb_type_logical_xlate_result);
}

}  // namespace
