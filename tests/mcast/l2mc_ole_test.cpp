// Layer-2 multicast outgoing-list entry: three variant bits, of which the first that is set decides.
#include <cstdint>
#include <optional>
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

const Translator key = FORWARD(l2mc_ole_key_xlate, 8, 6);
const Translator result = FORWARD(l2mc_ole_res_xlate, 40, 16);
const Translator readback = REVERSE(l2mc_ipv4_ole_logical_res_xlate, 16, 40);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = L2", "P1.4 = L0.0", "P1.3-0 = L3.3-0", "P2 = 0", "P3 = L4", "P4 = L5", "P5 = L6",
    };
    fill(out, 0, 5);
    rows.apply(in, out);
    return {.length = 6};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "P0 = 0x11",     "P0.5 = L0.0", "P0.7 = L0.1", "P0.6 = L0.2", "P1.7 = L5.0",
        "P2.2 = any L4", "P4 = L20",    "P5 = L21",    "P6 = L22",
    };
    static const Rows variant_2{
        "P7-10 = L8-11",
        "P11-13 = swap L36-38",
    };
    static const Rows variant_1{
        "P7-10 = L16-19",
        "P11-12 = L12-13",
    };
    static const Rows variant_0{
        "P7-9 = swap L32-34",
        "P10-12 = swap L28-30",
        "P13-15 = swap L24-26",
    };
    static const Rows no_variant{"P7-10 = L8-11"};
    fill(out, 0, 15);
    common.apply(in, out);
    (bit(in, 0, 2) ? variant_2 : bit(in, 0, 1) ? variant_1 : bit(in, 0, 0) ? variant_0 : no_variant).apply(in, out);
    return {.length = 16};
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "L4.0 = P2.2", "L0.0 = P0.5", "L0.1 = P0.7", "L0.2 = P0.6", "L5.0 = P1.7", "L20 = P4", "L21 = P5", "L22 = P6",
    };
    static const Rows variant_2{
        "L8-11 = P7-10",
        "L36-38 = swap P11-13",
    };
    static const Rows variant_1{
        "L16-19 = P7-10",
        "L12-13 = P11-12",
    };
    static const Rows variant_0{
        "L32-34 = swap P7-9",
        "L28-30 = swap P10-12",
        "L24-26 = swap P13-15",
    };
    static const Rows no_variant{"L8-11 = P7-10"};
    fill(out, 0, 39);
    common.apply(in, out);
    (bit(in, 0, 6) ? variant_2 : bit(in, 0, 7) ? variant_1 : bit(in, 0, 5) ? variant_0 : no_variant).apply(in, out);
    return {};
}

// All flags set, L4 by a bit of its own, and every other byte telling its position.
Bytes sample(std::uint8_t variant_bits) {
    Bytes record = counting(40);
    record[0] = variant_bits;
    record[4] = 0x80;
    record[5] = 0x01;
    return record;
}

Bytes physical_sample(std::uint8_t p0) {
    Bytes record = counting(16);
    record[0] = p0;
    record[1] = 0x80;
    record[2] = 0x04;
    return record;
}

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(L2mcOle, KeyCarriesItsRowsAndNothingElse) {
    walk(key, key_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x81)});
    check_random(key, key_model);
}

TEST(L2mcOle, KeyShiftsTheWordByAByteAndDropsItsTop) {
    const Outcome outcome = translate(key, bytes("01 ff a2 fb 11 22 33 44"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "a2 1b 00 11 22 33");
    for (const char* unused : {"L0.1", "L0.7", "L1.0", "L1.7", "L3.4", "L3.7", "L7.0", "L7.7"}) {
        EXPECT_EQ(changes(key, Bytes(8), unused), "") << unused;
    }
    EXPECT_EQ(changes(key, Bytes(8), "L4.0"), "P3.0");
    EXPECT_EQ(changes(key, Bytes(8), "L6.7"), "P5.7");
}

TEST(L2mcOle, ResultOfEveryVariantCarriesItsRowsAndNothingElse) {
    for (unsigned variant = 0; variant < 8; ++variant) {
        const auto shape = [variant](Bytes& in) { set_bits(in, 0, 2, 0, variant); };
        for (Bytes base : {Bytes(40), Bytes(40, 0xff), counting(40, 0x40)}) {
            shape(base);
            walk(result, result_model, base);
            base[4] = 0;
            walk(result, result_model, base);
        }
        check_random(result, result_model, 500, shape);
    }
    check_random(result, result_model);
}

TEST(L2mcOle, ReadbackOfEveryVariantRestoresItsRowsAndNothingElse) {
    for (unsigned variant = 0; variant < 8; ++variant) {
        const auto shape = [variant](Bytes& in) { set_bits(in, 0, 7, 5, variant); };
        for (Bytes base : {Bytes(16), Bytes(16, 0xff), counting(16, 0x40)}) {
            shape(base);
            walk(readback, readback_model, base);
        }
        check_random(readback, readback_model, 500, shape);
    }
    check_random(readback, readback_model);
}

TEST(L2mcOle, ResultOfZerosHoldsTheHeaderAlone) {
    const Outcome outcome = translate(result, Bytes(40));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(L2mcOle, ResultOfEachVariantPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(result, sample(4)).out), "51 80 04 00 14 15 16 08 09 0a 0b 26 25 24 00 00");
    EXPECT_EQ(hex(translate(result, sample(2)).out), "91 80 04 00 14 15 16 10 11 12 13 0c 0d 00 00 00");
    EXPECT_EQ(hex(translate(result, sample(1)).out), "31 80 04 00 14 15 16 22 21 20 1e 1d 1c 1a 19 18");
    EXPECT_EQ(hex(translate(result, sample(0)).out), "11 80 04 00 14 15 16 08 09 0a 0b 00 00 00 00 00");
}

TEST(L2mcOle, TheHighestVariantBitDecidesButAllAreCarried) {
    EXPECT_EQ(hex(translate(result, sample(7)).out), "f1 80 04 00 14 15 16 08 09 0a 0b 26 25 24 00 00");
    EXPECT_EQ(hex(translate(result, sample(6)).out), "d1 80 04 00 14 15 16 08 09 0a 0b 26 25 24 00 00");
    EXPECT_EQ(hex(translate(result, sample(5)).out), "71 80 04 00 14 15 16 08 09 0a 0b 26 25 24 00 00");
    EXPECT_EQ(hex(translate(result, sample(3)).out), "b1 80 04 00 14 15 16 10 11 12 13 0c 0d 00 00 00");
}

TEST(L2mcOle, EachVariantIgnoresTheFieldsOfTheOthers) {
    const struct {
        std::uint8_t variant;
        std::vector<const char*> unused;
    } cases[] = {
        {4, {"L12.0", "L16.0", "L24.0", "L28.0", "L32.0", "L39.0"}},
        {2, {"L8.0", "L14.0", "L24.0", "L28.0", "L32.0", "L36.0"}},
        {1, {"L8.0", "L12.0", "L16.0", "L27.0", "L31.0", "L35.0", "L36.0"}},
        {0, {"L12.0", "L16.0", "L24.0", "L28.0", "L32.0", "L36.0"}},
    };
    for (const auto& [variant, unused] : cases) {
        for (const char* position : unused) {
            EXPECT_EQ(changes(result, sample(variant), position), "") << +variant << " " << position;
        }
        for (const char* position : {"L0.3", "L0.7", "L1.0", "L3.7", "L4.0", "L5.1", "L6.0", "L7.7", "L23.0"}) {
            EXPECT_EQ(changes(result, sample(variant), position), "") << +variant << " " << position;
        }
    }
}

TEST(L2mcOle, AnyBitOfTheFlagByteSetsTheFlag) {
    for (const char* position : {"L4.0", "L4.1", "L4.2", "L4.3", "L4.4", "L4.5", "L4.6", "L4.7"}) {
        EXPECT_EQ(changes(result, Bytes(40), position), "P2.2") << position;
    }
    EXPECT_EQ(changes(result, Bytes(40), "L5.0"), "P1.7");
}

TEST(L2mcOle, ReadbackOfEachVariantPutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(readback, physical_sample(0x51)).out),
              hex(bytes("04 00 00 00 01 01 00 00 07 08 09 0a 00 00 00 00 00 00 00 00"      // L0-19
                        "04 05 06 00 00 00 00 00 00 00 00 00 00 00 00 00 0d 0c 0b 00")));  // L20-39
    EXPECT_EQ(hex(translate(readback, physical_sample(0x91)).out),
              hex(bytes("02 00 00 00 01 01 00 00 00 00 00 00 0b 0c 00 00 07 08 09 0a"
                        "04 05 06 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x31)).out),
              hex(bytes("01 00 00 00 01 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "04 05 06 00 0f 0e 0d 00 0c 0b 0a 00 09 08 07 00 00 00 00 00")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x11)).out),
              hex(bytes("00 00 00 00 01 01 00 00 07 08 09 0a 00 00 00 00 00 00 00 00"
                        "04 05 06 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
}

TEST(L2mcOle, ReadbackTestsTheVariantBitsInTheOrderOfTheForwardTranslator) {
    // P0.6 before P0.7 before P0.5.
    EXPECT_EQ(hex(translate(readback, physical_sample(0xf1)).out),
              hex(bytes("07 00 00 00 01 01 00 00 07 08 09 0a 00 00 00 00 00 00 00 00"
                        "04 05 06 00 00 00 00 00 00 00 00 00 00 00 00 00 0d 0c 0b 00")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0xb1)).out),
              hex(bytes("03 00 00 00 01 01 00 00 00 00 00 00 0b 0c 00 00 07 08 09 0a"
                        "04 05 06 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
}

TEST(L2mcOle, ReadbackIgnoresHeaderAndPadding) {
    for (const unsigned p0 : {0x11U, 0x31U, 0x51U, 0x91U}) {
        for (const char* unused : {"P0.4", "P0.3", "P0.0", "P1.6", "P1.0", "P2.3", "P2.0", "P3.0", "P3.7"}) {
            EXPECT_EQ(changes(readback, physical_sample(static_cast<std::uint8_t>(p0)), unused), "") << unused;
        }
    }
    EXPECT_EQ(changes(readback, physical_sample(0x51), "P14.0"), "");
    EXPECT_EQ(changes(readback, physical_sample(0x91), "P13.0"), "");
    EXPECT_EQ(changes(readback, physical_sample(0x11), "P11.0"), "");
}

TEST(L2mcOle, AnyNonZeroFlagByteReadsBackAsOne) {
    Bytes logical(40);
    logical[4] = 0x80;
    const Bytes physical = translate(result, logical).out;
    EXPECT_EQ(hex(physical), "11 00 04 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(readback, physical).out),
              hex(bytes("00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
}

TEST(L2mcOle, EachVariantComesBackButForTheFieldsOfTheOthers) {
    const auto round_trip = [](std::uint8_t variant) {
        return hex(translate(readback, translate(result, sample(variant)).out).out);
    };
    EXPECT_EQ(round_trip(4), hex(bytes("04 00 00 00 01 01 00 00 08 09 0a 0b 00 00 00 00 00 00 00 00"
                                       "14 15 16 00 00 00 00 00 00 00 00 00 00 00 00 00 24 25 26 00")));
    EXPECT_EQ(round_trip(2), hex(bytes("02 00 00 00 01 01 00 00 00 00 00 00 0c 0d 00 00 10 11 12 13"
                                       "14 15 16 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
    EXPECT_EQ(round_trip(1), hex(bytes("01 00 00 00 01 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                                       "14 15 16 00 18 19 1a 00 1c 1d 1e 00 20 21 22 00 00 00 00 00")));
    EXPECT_EQ(round_trip(0), hex(bytes("00 00 00 00 01 01 00 00 08 09 0a 0b 00 00 00 00 00 00 00 00"
                                       "14 15 16 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
}

TEST(L2mcOle, ReadbackTakesItsExactLengthAndElseWritesNothing) { expect_exact_length(readback); }

TEST(L2mcOle, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(L2mcOle, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[45].key, l2mc_ole_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[45].result, l2mc_ole_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[45], l2mc_ipv4_ole_logical_res_xlate);
}

}  // namespace
