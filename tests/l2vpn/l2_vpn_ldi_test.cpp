// The L2VPN load-distribution entry: up to four labelled paths or a plain one.
#include <cstdint>
#include <utility>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(l2_vpn_ldi_type_xlate_key, 4, 2);
const Translator result = FORWARD(l2_vpn_ldi_type_xlate_result, 36, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = 0", "P0-1 = L0-1"};
    rows.apply(in, out);
    return {.length = 2};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows flags{
        "P0-31 = 0", "P0 = 0x11", "P1.1 = L0.4", "P1.0 = not L0.4", "P2.3 = L0.2", "P2.0 = L0.4",
    };
    static const Rows plain{"P4-6 = L8-10"};
    static const Rows labelled{
        "P4-6 = label L8-11 flag L12.0",
        "P7-9 = label L13-16 flag L17.0",
        "P10-12 = label L18-21 flag L22.0",
        "P13-15 = label L23-26 flag L27.0",
        "P16-18 = L28-30",
        "P19-21 = L32-34",
    };

    flags.apply(in, out);
    const unsigned paths = in[4] > 64 ? 1 : in[4];
    out[3] = static_cast<std::uint8_t>(paths * 2 + 1);
    if (bit(in, 0, 4)) {
        labelled.apply(in, out);
        const bool marked = bit(in, 12, 0) || bit(in, 17, 0) || bit(in, 22, 0) || bit(in, 27, 0);
        set_bit(out, 2, 6, marked || little(in, 32, 3) != 0);
    } else {
        set_bit(out, 1, 2, paths == 1);
        plain.apply(in, out);
    }
    return {.length = 32};
}

Bytes labelled_zeros() {
    Bytes in(36);
    in[0] = 0x10;
    return in;
}

const support::Models models{{key, key_model}, {result, result_model}};

// ---------------------------------------------------------------------------------------------------------------------
// Key

TEST(L2VpnLdiKey, IsTheLowSixteenBitsLowOrderByteFirst) {
    walk(key, key_model, patterns(4));
    check_random(key, key_model);
    const Outcome outcome = translate(key, bytes("34 12 ff ff"), Bytes(2, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 2U);
    EXPECT_EQ(hex(outcome.out), "34 12");
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

TEST(L2VpnLdiResult, CarriesTheFieldsOfItsFormAndNothingElse) {
    for (const bool labelled : {false, true}) {
        for (const std::uint8_t count : Bytes{0, 1, 2, 64, 65, 255}) {
            for (Bytes base : patterns(36)) {
                set_bit(base, 0, 4, labelled);
                base[4] = count;
                walk(result, result_model, base);
            }
        }
    }
}

TEST(L2VpnLdiResult, CarriesRandomRecordsOfBothForms) {
    check_random(result, result_model);
    check_random(result, result_model, 1000, [](Bytes& in) {
        set_bit(in, 0, 4);
        in[4] &= 0x7f;
        for (const std::size_t marker : {12U, 17U, 22U, 27U}) {
            in[marker] &= 0xfe;
        }
        fill(in, 32, 34);
    });
}

TEST(L2VpnLdiResult, HasOneValueInThePlainForm) {
    const Outcome outcome = translate(result, counting(36), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 01 00 09 08 09 0a 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(36)).out),
              "11 01 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2VpnLdiResult, HasFourPathsInTheLabelledForm) {
    Bytes in = counting(36);
    in[0] = 0x14;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 02 49 09 a0 90 80 f0 e0 d1 41 31 20 91 81 71 1c 1d 1e 20 21 22 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2VpnLdiResult, StoresItsPathCountDoubledAndOddInBothForms) {
    for (const std::uint8_t flags : Bytes{0x00, 0x10}) {
        for (const auto& [count, stored] : {std::pair{0, 1},
                                            {1, 3},
                                            {2, 5},
                                            {3, 7},
                                            {63, 127},
                                            {64, 129},
                                            {65, 3},
                                            {66, 3},
                                            {127, 3},
                                            {128, 3},
                                            {255, 3}}) {
            Bytes in(36);
            in[0] = flags;
            in[4] = static_cast<std::uint8_t>(count);
            in[5] = 0xff;  // the count is one byte
            EXPECT_EQ(translate(result, in).out[3], stored) << count;
        }
    }
}

TEST(L2VpnLdiResult, MarksOnePathInThePlainFormOnly) {
    for (const auto& [count, p1] :
         {std::pair{0, 0x01}, {1, 0x05}, {2, 0x01}, {3, 0x01}, {64, 0x01}, {65, 0x05}, {255, 0x05}}) {
        Bytes in(36);
        in[4] = static_cast<std::uint8_t>(count);
        EXPECT_EQ(translate(result, in).out[1], p1) << count;
        in[0] = 0x10;
        EXPECT_EQ(translate(result, in).out[1], 0x02) << count;
    }
}

TEST(L2VpnLdiResult, PutsEachFlagInItsPlaces) {
    EXPECT_EQ(changes(result, Bytes(36), "L0.2"), "P2.3");
    EXPECT_EQ(changes(result, Bytes(36), "L0.4"), "P1.1 P1.0 P2.0");
    for (const Bytes& base : {Bytes(36), labelled_zeros()}) {
        expect_not_carried(result, base, {"L0.1-0", "L0.3", "L0.7-5", "L1-3", "L5-7"});
    }
}

TEST(L2VpnLdiResult, MarksMarkersAndTheLastValueInP2_6) {
    const Bytes base = labelled_zeros();
    EXPECT_EQ(translate(result, base).out[2], 0x01);
    EXPECT_EQ(changes(result, base, "L12.0"), "P2.6 P6.0");
    EXPECT_EQ(changes(result, base, "L17.0"), "P2.6 P9.0");
    EXPECT_EQ(changes(result, base, "L22.0"), "P2.6 P12.0");
    EXPECT_EQ(changes(result, base, "L27.0"), "P2.6 P15.0");
    EXPECT_EQ(changes(result, base, "L32.0"), "P2.6 P19.0");
    EXPECT_EQ(changes(result, base, "L34.7"), "P2.6 P21.7");
    // Neither what the mask drops nor what the plain form leaves out.
    expect_not_carried(result, base, {"L35"});
    EXPECT_EQ(changes(result, base, "L28.0"), "P16.0");
    expect_not_carried(result, Bytes(36), {"L11-35"});
}

TEST(L2VpnLdiResult, LeavesP2_6ClearWithoutMarkersAndValue) {
    Bytes in(36, 0xff);
    for (const std::size_t marker : {12U, 17U, 22U, 27U}) {
        in[marker] = 0xfe;
    }
    fill(in, 32, 34);
    EXPECT_EQ(hex(translate(result, in).out),
              "11 02 09 03 ff ff f0 ff ff f0 ff ff f0 ff ff f0 ff ff ff 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2VpnLdiResult, DropsTheTopsOfLabelsAndMarkers) {
    expect_not_carried(result, labelled_zeros(),
                       {"L10.7-4", "L11", "L12.7-1", "L15.7-4", "L16", "L17.7-1", "L20.7-4", "L21", "L22.7-1",
                        "L25.7-4", "L26", "L27.7-1", "L31", "L35"});
    EXPECT_EQ(changes(result, labelled_zeros(), "L8.0"), "P6.4");
    EXPECT_EQ(changes(result, labelled_zeros(), "L25.3"), "P13.7");
}

TEST(L2VpnLdi, IgnoresTheLengthArgument) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 0x11);
        expect_length_ignored(translator, in);
    }
}

TEST(L2VpnLdi, IsTable27AndReadsBackAsItLies) {
    EXPECT_EQ(l2p_ucode_func_table[27].key, &l2_vpn_ldi_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[27].result, &l2_vpn_ldi_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[27], &generic_xlate_logical_result);
}

}  // namespace
