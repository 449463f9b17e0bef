// The extension of a bridge-domain entry, whose fields lie in the bridge domain's logical record.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(bridge_domain_ext_type_xlate_key, 2, 3);
const Translator result = FORWARD(bridge_domain_ext_type_xlate_result, 101, 16);
const Translator reverse_result = REVERSE(bridge_domain_ext_type_logical_xlate_result, 16, 120);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-2 = 0",
        "P0 = L0",
        "P1 = L1",
        "P2 = 0",
    };
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows fields{
        "P0-15 = 0",   "P0 = 0x11",   "P0.5 = L0.5", "P1.7 = L1.3", "P1.6 = L1.4",
        "P1.4 = L1.0", "P2.5 = L0.0", "P3 = L8",     "P11 = L100",
    };
    static const Rows one_value{"P4-7 = L44-47"};
    static const Rows two_values{"P4-5 = L12-13", "P6-7 = L40-41"};

    fields.apply(in, out);
    (bit(in, 1, 3) ? one_value : two_values).apply(in, out);
    put_little(out, 8, 3, little(in, 60, 4) >> 1);
    return {.length = 16};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    static const Rows fields{"L0-119 = 0", "L0.0 = P2.5", "L1.3 = P1.7", "L1.4 = P1.6", "L1.0 = P1.4"};
    static const Rows one_value{"L44-47 = P4-7"};
    static const Rows two_values{"L12-13 = P4-5", "L40-41 = P6-7"};

    fields.apply(in, out);
    (bit(in, 1, 7) ? one_value : two_values).apply(in, out);
    put_little(out, 60, 4, little(in, 8, 3) << 1);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

TEST(BridgeDomainExtKey, IsTheNumberLowOrderByteFirstAndAZero) {
    walk(key, key_model, patterns(2));
    check_random(key, key_model);
    const Outcome outcome = translate(key, bytes("34 12"), Bytes(3, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "34 12 00");
}

TEST(BridgeDomainExtResult, CarriesTheFieldsOfItsVariantAndNothingElse) {
    for (const bool one_value : {false, true}) {
        for (Bytes base : patterns(101)) {
            set_bit(base, 1, 3, one_value);
            walk(result, result_model, base);
        }
    }
    check_random(result, result_model);
}

TEST(BridgeDomainExtResult, HasTwoValuesWhereL1_3IsClear) {
    const Outcome outcome = translate(result, counting(101), Bytes(16, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 10 00 08 0c 0d 28 29 9e 1e 9f 64 00 00 00 00");
}

TEST(BridgeDomainExtResult, HasOneValueWhereL1_3IsSet) {
    EXPECT_EQ(hex(translate(result, with(counting(101), {{1, "09"}})).out),
              "11 90 00 08 2c 2d 2e 2f 9e 1e 9f 64 00 00 00 00");
}

TEST(BridgeDomainExtResult, PutsEachFlagInItsPlace) {
    const Bytes zeros(101);
    EXPECT_EQ(hex(translate(result, zeros).out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, zeros, "L0.5"), "P0.5");
    EXPECT_EQ(changes(result, zeros, "L1.3"), "P1.7");
    EXPECT_EQ(changes(result, zeros, "L1.4"), "P1.6");
    EXPECT_EQ(changes(result, zeros, "L1.0"), "P1.4");
    EXPECT_EQ(changes(result, zeros, "L0.0"), "P2.5");
}

TEST(BridgeDomainExtResult, DropsTheEndsOfTheValueAtL60) {
    const Bytes zeros(101);
    EXPECT_EQ(changes(result, zeros, "L60.0"), "");
    EXPECT_EQ(changes(result, zeros, "L60.1"), "P8.0");
    EXPECT_EQ(changes(result, zeros, "L61.0"), "P8.7");
    EXPECT_EQ(changes(result, zeros, "L61.1"), "P9.0");
    EXPECT_EQ(changes(result, zeros, "L63.0"), "P10.7");
    expect_not_carried(result, zeros, {"L63.7-1"});
}

TEST(BridgeDomainExtResult, DoesNotCarryTheFieldsOfTheOtherVariantNorOfTheBridgeDomain) {
    const Bytes two_values(101);
    const Bytes one_value = with(Bytes(101), {{1, "08"}});
    const std::vector<std::string> other_fields{"L0.4-1", "L0.7-6", "L1.2-1", "L1.7-5", "L2-4",  "L5-7",
                                                "L9-11",  "L14-39", "L42-43", "L48-59", "L64-99"};
    expect_not_carried(result, two_values, other_fields);
    expect_not_carried(result, one_value, other_fields);
    expect_not_carried(result, two_values, {"L44-47"});
    expect_not_carried(result, one_value, {"L12-13", "L40-41"});
}

TEST(BridgeDomainExtReverse, RestoresTheFieldsOfItsVariantAndNothingElse) {
    for (const bool one_value : {false, true}) {
        for (Bytes base : patterns(16)) {
            set_bit(base, 1, 7, one_value);
            walk(reverse_result, reverse_model, base);
        }
    }
    check_random(reverse_result, reverse_model);
}

TEST(BridgeDomainExtReverse, DoesNotReadTheFieldsThatItDoesNotRestore) {
    for (const Bytes& base : {Bytes(16), Bytes(16, 0xff)}) {
        expect_not_carried(reverse_result, base, {"P0", "P1.5", "P1.3-0", "P2.7-6", "P2.4-0", "P3", "P11", "P12-15"});
    }
}

TEST(BridgeDomainExt, ComesBackWithoutThreeFields) {
    // L0.5, L8 and L100 are sent and not restored.
    const Bytes in = with(counting(101), {{0, "21"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex(out), "31 10 20 08 0c 0d 28 29 9e 1e 9f 64 00 00 00 00");
    const Outcome back = translate(reverse_result, out, Bytes(120, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out),
              hex(with(Bytes(120), {{0, "01 01"}, {12, "0c 0d 00 00"}, {40, "28 29 00 00"}, {60, "3c 3d 3e 01"}})));
}

TEST(BridgeDomainExt, ComesBackWithOneValueWhereL1_3IsSet) {
    const Bytes in = with(counting(101), {{1, "19"}});
    EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out),
              hex(with(Bytes(120), {{1, "19"}, {44, "2c 2d 2e 2f"}, {60, "3c 3d 3e 01"}})));
}

TEST(BridgeDomainExt, LosesTheLowBitOfAnOddValueAtL60) {
    const Bytes in = with(Bytes(101), {{60, "35 02 00 00"}});
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex(out), "11 00 00 00 00 00 00 00 1a 01 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(reverse_result, out).out), hex(with(Bytes(120), {{60, "34 02 00 00"}})));
}

TEST(BridgeDomainExt, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result, reverse_result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(BridgeDomainExt, IsTable105) {
    EXPECT_EQ(l2p_ucode_func_table[105].key, &bridge_domain_ext_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[105].result, &bridge_domain_ext_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[105], &bridge_domain_ext_type_logical_xlate_result);
}

}  // namespace
