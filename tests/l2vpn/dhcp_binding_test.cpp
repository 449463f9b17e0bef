// The DHCP binding: a key of its own, a result that is a constant.
#include <cstdint>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(dhcp_binding_type_xlate_key, 18, 16);
const Translator result = FORWARD(dhcp_binding_type_xlate_result, 0, 8);  // not a byte of it is read

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = 0",       "P0-2 = L3-5",       "P3-5 = L0-2",     "P6-9 = L8-11",
        "P10-11 = L12-13", "P12.2-0 = L14.2-0", "P13-14 = L16-17", "P15 = 0",
    };
    rows.apply(in, out);
    return {.length = 16};
}

Reply result_model(Bytes&, Bytes& out) {
    fill(out, 0, 7);
    out[0] = 0x11;
    return {.length = 8};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(DhcpBindingKey, CarriesItsFieldsAndNothingElse) {
    walk(key, key_model, patterns(18));
    check_random(key, key_model);
}

TEST(DhcpBindingKey, ExchangesTheHalvesOfTheMacAddress) {
    const Outcome outcome = translate(key, bytes("00 11 22 33 44 55 00 00 00 00 00 00 00 00 00 00 00 00"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "33 44 55 00 11 22 00 00 00 00 00 00 00 00 00 00");
}

TEST(DhcpBindingKey, OfACountingRecordIsThis) {
    const Outcome outcome = translate(key, counting(18), Bytes(16, 0xff));
    EXPECT_EQ(hex(outcome.out), "03 04 05 00 01 02 08 09 0a 0b 0c 0d 06 10 11 00");
}

TEST(DhcpBindingKey, KeepsNineteenBitsOfTheValueAtL12) {
    EXPECT_EQ(hex(translate(key, Bytes(18, 0xff)).out), "ff ff ff ff ff ff ff ff ff ff ff ff 07 ff ff 00");
    EXPECT_EQ(changes(key, Bytes(18), "L14.2"), "P12.2");
    expect_not_carried(key, Bytes(18), {"L6-7", "L14.7-3", "L15"});
}

TEST(DhcpBindingResult, IsTheHeaderAndReadsNothing) {
    check(result, result_model, {});
    const Outcome outcome = translate(result, {}, Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 00 00 00 00");
}

TEST(DhcpBindingResult, IsTheSameOfEveryRecord) {
    for (const Bytes& in : patterns(16)) {
        EXPECT_EQ(hex(translate(result, in, Bytes(8, 0xa5)).out), "11 00 00 00 00 00 00 00");
    }
}

TEST(DhcpBinding, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size);
        expect_length_ignored(translator, in);
    }
}

TEST(DhcpBinding, IsTable65AndReadsBackAsItLies) {
    EXPECT_EQ(l2p_ucode_func_table[65].key, &dhcp_binding_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[65].result, &dhcp_binding_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[65], &generic_xlate_logical_result);
}

}  // namespace
