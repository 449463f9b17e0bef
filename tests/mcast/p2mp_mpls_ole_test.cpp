// Point-to-multipoint MPLS outgoing-list entry: two variant bits, and a header bit that marks the variant with neither.
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
using support::set_bit;
using support::set_bits;
using support::translate;
using support::Translator;
using support::walk;

const Translator key = FORWARD(p2mp_mpls_ole_key_xlate, 9, 6);
const Translator result = FORWARD(p2mp_mpls_ole_res_xlate, 32, 16);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-1 = L0-1", "P2 = L4", "P3 = L5", "P4 = L6", "P5 = L8",
    };
    fill(out, 0, 5);
    rows.apply(in, out);
    return {.length = 6};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "P0 = 0x31",
        "P0.6 = L0.0",
        "P0.7 = L0.1",
        "P1.0 = L1.0",
    };
    static const Rows variant_0{
        "P3-5 = swap L12-14", "P6-8 = swap L16-18", "P9 = L20", "P10 = L21", "P11 = L22",
    };
    static const Rows variant_1{
        "P4 = L8", "P5 = L9", "P6 = L10", "P7-10 = L28-31", "P11 = L24", "P12 = L25", "P13 = L26",
    };
    static const Rows neither{
        "P4 = L4",
        "P5 = L5",
        "P6 = L6",
        "P7-10 = L28-31",
    };
    fill(out, 0, 15);
    common.apply(in, out);
    if (bit(in, 0, 0) || bit(in, 0, 1)) {
        set_bit(out, 0, 5, false);
    }
    (bit(in, 0, 0) ? variant_0 : bit(in, 0, 1) ? variant_1 : neither).apply(in, out);
    return {.length = 16};
}

// The flag set, and every byte but the first two telling its position.
Bytes sample(std::uint8_t variant_bits) {
    Bytes record = counting(32);
    record[0] = variant_bits;
    record[1] = 0x01;
    return record;
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(P2mpMplsOle, KeyCarriesItsRowsAndNothingElse) {
    walk(key, key_model, {Bytes(9), Bytes(9, 0xff), counting(9, 0x81)});
    check_random(key, key_model);
}

TEST(P2mpMplsOle, KeyRegroupsItsBytesAndSwapsNothing) {
    const Outcome outcome = translate(key, bytes("01 02 ee ee 05 06 07 ee 09"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "01 02 05 06 07 09");
    for (const char* unused : {"L2.0", "L3.7", "L7.0", "L7.7"}) {
        EXPECT_EQ(changes(key, Bytes(9), unused), "") << unused;
    }
}

TEST(P2mpMplsOle, ResultOfEveryVariantCarriesItsRowsAndNothingElse) {
    for (unsigned variant = 0; variant < 4; ++variant) {
        const auto shape = [variant](Bytes& in) { set_bits(in, 0, 1, 0, variant); };
        for (Bytes base : {Bytes(32), Bytes(32, 0xff), counting(32, 0x80)}) {
            shape(base);
            walk(result, result_model, base);
        }
        check_random(result, result_model, 500, shape);
    }
    check_random(result, result_model);
}

TEST(P2mpMplsOle, ResultOfZerosHoldsTheHeaderAlone) {
    const Outcome outcome = translate(result, Bytes(32));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "31 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(P2mpMplsOle, ResultOfEachVariantPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(result, sample(0)).out), "31 01 00 00 04 05 06 1c 1d 1e 1f 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, sample(1)).out), "51 01 00 0e 0d 0c 12 11 10 14 15 16 00 00 00 00");
    EXPECT_EQ(hex(translate(result, sample(2)).out), "91 01 00 00 08 09 0a 1c 1d 1e 1f 18 19 1a 00 00");
}

TEST(P2mpMplsOle, TheLowerVariantBitDecidesButBothAreCarried) {
    EXPECT_EQ(hex(translate(result, sample(3)).out), "d1 01 00 0e 0d 0c 12 11 10 14 15 16 00 00 00 00");
}

TEST(P2mpMplsOle, AVariantBitClearsTheHeaderBitOfNeither) {
    Bytes record(32);
    EXPECT_EQ(changes(result, record, "L0.0"), "P0.6 P0.5");
    EXPECT_EQ(changes(result, record, "L0.1"), "P0.7 P0.5");
    record[0] = 0x01;
    EXPECT_EQ(changes(result, record, "L0.1"), "P0.7");
    EXPECT_EQ(changes(result, record, "L1.0"), "P1.0");
}

TEST(P2mpMplsOle, EachVariantIgnoresTheFieldsOfTheOthers) {
    const struct {
        std::uint8_t variant;
        std::vector<const char*> unused;
    } cases[] = {
        {0, {"L8.0", "L10.7", "L12.0", "L16.0", "L20.0", "L24.0", "L26.7"}},
        {1, {"L4.0", "L6.7", "L8.0", "L15.0", "L19.0", "L24.0", "L28.0", "L31.7"}},
        {2, {"L4.0", "L6.7", "L12.0", "L16.0", "L20.0", "L22.7"}},
        {3, {"L4.0", "L8.0", "L15.0", "L19.0", "L24.0", "L28.0"}},
    };
    for (const auto& [variant, unused] : cases) {
        for (const char* position : unused) {
            EXPECT_EQ(changes(result, sample(variant), position), "") << +variant << " " << position;
        }
        for (const char* position :
             {"L0.2", "L0.7", "L1.1", "L1.7", "L2.0", "L3.0", "L7.0", "L11.0", "L23.0", "L27.0"}) {
            EXPECT_EQ(changes(result, sample(variant), position), "") << +variant << " " << position;
        }
    }
}

TEST(P2mpMplsOle, TranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(P2mpMplsOle, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[64].key, p2mp_mpls_ole_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[64].result, p2mp_mpls_ole_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[64], generic_xlate_logical_result);
}

}  // namespace
