// Layer-3 multicast outgoing-list entry: four types, each with a bit of its own in the physical record, and a default
// variant without one.
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
using support::little;
using support::Outcome;
using support::put_little;
using support::Reply;
using support::Rows;
using support::set_bit;
using support::translate;
using support::Translator;
using support::walk;

const Translator key = FORWARD(ipmc_ole_key_xlate, 8, 6);
const Translator result = FORWARD(ipmc_ole_res_xlate, 60, 24);
const Translator readback = REVERSE(ipmc_ole_logical_res_xlate, 24, 60);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = L2",
        "P1.4 = L0.0",
        "P1.3-0 = L3.3-0",
        "P2-5 = swap L4-7",
    };
    fill(out, 0, 5);
    rows.apply(in, out);
    return {.length = 6};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "P0 = 0x11",       "P2.1 = L4.0", "P2.0 = L4.1", "P2.3 = L4.4", "P3.5 = L4.3",
        "P18-19 = L16-17", "P20 = L8",    "P21 = L9",    "P22 = L10",
    };
    static const Rows type_1_bit{"P0.5 = 1"};
    static const Rows type_2{
        "P0.6 = 1",
        "P4-6 = swap L28-30",
        "P7-9 = swap L32-34",
        "P12-15 = L56-59",
    };
    static const Rows type_3{
        "P0.7 = 1",
        "P4-7 = swap L20-23",
        "P8 = L24",
        "P12-15 = L56-59",
    };
    static const Rows type_4{
        "P1.1 = 1",        "P4-5 = L12-13", "P6-8 = label L42-45 flag L46.0", "P9-11 = label L47-50 flag L51.0",
        "P12-15 = L52-55", "P16 = L40",
    };
    static const Rows type_1_and_unknown{
        "P4-5 = L12-13",
        "P6-7 = L36-37",
        "P8 = 0",
        "P12-15 = L56-59",
    };
    fill(out, 0, 23);
    common.apply(in, out);
    switch (little(in, 0, 4)) {
        case 1:
            type_1_bit.apply(in, out);
            type_1_and_unknown.apply(in, out);
            break;
        case 2:
            type_2.apply(in, out);
            break;
        case 3:
            type_3.apply(in, out);
            break;
        case 4:
            type_4.apply(in, out);
            break;
        default:
            type_1_and_unknown.apply(in, out);
    }
    return {.length = 24};
}

std::uint32_t type_of(const Bytes& physical) {
    return bit(physical, 0, 6) ? 2 : bit(physical, 0, 5) ? 1 : bit(physical, 0, 7) ? 3 : bit(physical, 1, 1) ? 4 : 0;
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "L4.0 = P2.1",     "L4.1 = P2.0", "L4.2 = P1.1", "L4.3 = P3.5", "L4.4 = P2.3",
        "L16-17 = P18-19", "L8 = P20",    "L9 = P21",    "L10 = P22",
    };
    static const Rows type_2{
        "L28-30 = swap P4-6",
        "L56-59 = P12-15",
    };
    static const Rows type_3{
        "L20-23 = swap P4-7",
        "L24 = P8",
        "L56-59 = P12-15",
    };
    static const Rows type_4{
        "L12-13 = P4-5", "L40 = P16", "L42-45 = label P6-8", "L47-50 = label P9-11", "L52-55 = P12-15",
    };
    static const Rows types_0_and_1{
        "L12-13 = P4-5", "L36 = P6", "L37 = P7", "L38 = P8", "L56-59 = P12-15",
    };
    const std::uint32_t type = type_of(in);
    fill(out, 0, 59);
    put_little(out, 0, 4, type);
    common.apply(in, out);
    (type == 2 ? type_2 : type == 3 ? type_3 : type == 4 ? type_4 : types_0_and_1).apply(in, out);
    return {};
}

Bytes with_type(Bytes record, std::uint32_t type) {
    put_little(record, 0, 4, type);
    return record;
}

// Every flag that the entry carries is set, and every other byte tells its position.
Bytes sample(std::uint32_t type) {
    Bytes record = with_type(counting(60), type);
    record[4] = 0x1b;
    return record;
}

// A physical record of the given type bits in P0 and P1; every byte from P4 on tells its position.
Bytes physical_sample(std::uint8_t p0, std::uint8_t p1) {
    Bytes record = counting(24);
    record[0] = p0;
    record[1] = p1;
    record[2] = 0x0b;
    record[3] = 0x20;
    return record;
}

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(IpmcOle, KeyCarriesItsRowsAndNothingElse) {
    walk(key, key_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x81)});
    check_random(key, key_model);
}

TEST(IpmcOle, KeySwapsTheWholeWord) {
    const Outcome outcome = translate(key, bytes("01 ff a2 fb 11 22 33 44"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "a2 1b 44 33 22 11");
    for (const char* unused : {"L0.1", "L0.7", "L1.0", "L1.7", "L3.4", "L3.7"}) {
        EXPECT_EQ(changes(key, Bytes(8), unused), "") << unused;
    }
}

TEST(IpmcOle, ResultOfEveryTypeCarriesItsRowsAndNothingElse) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 0x100U, 0x80000002U, 0xffffffffU}) {
        for (const Bytes& base : {Bytes(60), Bytes(60, 0xff), counting(60, 0x40)}) {
            walk(result, result_model, with_type(base, type));
        }
        check_random(result, result_model, 500, [type](Bytes& in) { put_little(in, 0, 4, type); });
    }
    check_random(result, result_model);
}

TEST(IpmcOle, ReadbackOfEveryCombinationOfTypeBitsRestoresItsRowsAndNothingElse) {
    for (unsigned combination = 0; combination < 16; ++combination) {
        const auto shape = [combination](Bytes& in) {
            support::set_bits(in, 0, 7, 5, combination >> 1);
            set_bit(in, 1, 1, (combination & 1) != 0);
        };
        for (Bytes base : {Bytes(24), Bytes(24, 0xff), counting(24, 0x60)}) {
            shape(base);
            walk(readback, readback_model, base);
        }
        check_random(readback, readback_model, 500, shape);
    }
    check_random(readback, readback_model);
}

TEST(IpmcOle, ResultOfZerosHoldsTheHeaderAlone) {
    const Outcome outcome = translate(result, Bytes(60));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 24U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(IpmcOle, ResultOfEachTypePutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(result, sample(1)).out),
              "31 00 0b 20 0c 0d 24 25 00 00 00 00 38 39 3a 3b 00 00 10 11 08 09 0a 00");
    EXPECT_EQ(hex(translate(result, sample(2)).out),
              "51 00 0b 20 1e 1d 1c 22 21 20 00 00 38 39 3a 3b 00 00 10 11 08 09 0a 00");
    EXPECT_EQ(hex(translate(result, sample(3)).out),
              "91 00 0b 20 17 16 15 14 18 00 00 00 38 39 3a 3b 00 00 10 11 08 09 0a 00");
    EXPECT_EQ(hex(translate(result, sample(4)).out),
              "11 02 0b 20 0c 0d c2 b2 a0 13 02 f1 34 35 36 37 28 00 10 11 08 09 0a 00");
}

TEST(IpmcOle, UnknownTypesAreWrittenLikeTypeOneButWithoutItsBit) {
    for (const std::uint32_t type : {0U, 5U, 7U, 0x101U, 0x01000000U, 0x80000004U}) {
        EXPECT_EQ(hex(translate(result, sample(type)).out),
                  "11 00 0b 20 0c 0d 24 25 00 00 00 00 38 39 3a 3b 00 00 10 11 08 09 0a 00")
            << type;
    }
}

TEST(IpmcOle, EachFlagHasItsBit) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U, 4U}) {
        const Bytes base = sample(type);
        EXPECT_EQ(changes(result, base, "L4.0"), "P2.1");
        EXPECT_EQ(changes(result, base, "L4.1"), "P2.0");
        EXPECT_EQ(changes(result, base, "L4.2"), "");
        EXPECT_EQ(changes(result, base, "L4.3"), "P3.5");
        EXPECT_EQ(changes(result, base, "L4.4"), "P2.3");
        EXPECT_EQ(changes(result, base, "L4.5"), "");
    }
}

TEST(IpmcOle, EachTypeIgnoresTheFieldsOfTheOthers) {
    const struct {
        std::uint32_t type;
        std::vector<const char*> unused;
    } cases[] = {
        {1, {"L20.0", "L24.0", "L28.0", "L32.0", "L38.0", "L40.0", "L42.0", "L46.0", "L52.0"}},
        {2, {"L12.0", "L20.0", "L24.0", "L31.0", "L35.0", "L36.0", "L40.0", "L42.0", "L52.0"}},
        {3, {"L12.0", "L28.0", "L32.0", "L36.0", "L40.0", "L42.0", "L46.0", "L47.0", "L52.0"}},
        {4,
         {"L20.0", "L24.0", "L28.0", "L36.0", "L41.0", "L44.4", "L45.0", "L46.1", "L49.4", "L50.0", "L51.1", "L56.0"}},
    };
    for (const auto& [type, unused] : cases) {
        for (const char* position : unused) {
            EXPECT_EQ(changes(result, sample(type), position), "") << "type " << type << " " << position;
        }
    }
}

TEST(IpmcOle, TypeFourPacksALabelAndItsFlag) {
    Bytes record = with_type(Bytes(60), 4);
    put_little(record, 42, 4, 0x12345);
    record[46] = 1;
    EXPECT_EQ(hex(translate(result, record).out),
              "11 02 00 00 00 00 12 34 51 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, record, "L42.0"), "P8.4");
    EXPECT_EQ(changes(result, record, "L44.3"), "P6.7");
    EXPECT_EQ(changes(result, record, "L46.0"), "P8.0");
    EXPECT_EQ(changes(result, record, "L47.3"), "P11.7");
    EXPECT_EQ(changes(result, record, "L51.0"), "P11.0");
}

TEST(IpmcOle, ReadbackOfEachTypePutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(readback, physical_sample(0x31, 0)).out),
              hex(bytes("01 00 00 00 1b 00 00 00 14 15 16 00 04 05 00 00 12 13 00 00"      // L0-19
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 06 07 08 00"      // L20-39
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0c 0d 0e 0f")));  // L40-59
    EXPECT_EQ(hex(translate(readback, physical_sample(0x51, 0)).out),
              hex(bytes("02 00 00 00 1b 00 00 00 14 15 16 00 00 00 00 00 12 13 00 00"
                        "00 00 00 00 00 00 00 00 06 05 04 00 00 00 00 00 00 00 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0c 0d 0e 0f")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x91, 0)).out),
              hex(bytes("03 00 00 00 1b 00 00 00 14 15 16 00 00 00 00 00 12 13 00 00"
                        "07 06 05 04 08 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0c 0d 0e 0f")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x11, 0x02)).out),
              hex(bytes("04 00 00 00 1f 00 00 00 14 15 16 00 04 05 00 00 12 13 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "10 00 70 60 00 00 00 a0 90 00 00 00 0c 0d 0e 0f 00 00 00 00")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x11, 0)).out),
              hex(bytes("00 00 00 00 1b 00 00 00 14 15 16 00 04 05 00 00 12 13 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 06 07 08 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0c 0d 0e 0f")));
}

TEST(IpmcOle, ReadbackTestsTheTypeBitsInOrder) {
    const auto type_read = [](std::uint8_t p0, std::uint8_t p1) {
        return little(translate(readback, physical_sample(p0, p1)).out, 0, 4);
    };
    EXPECT_EQ(type_read(0x71, 0x00), 2U) << "P0.6 goes before P0.5";
    EXPECT_EQ(type_read(0xf1, 0x02), 2U) << "and before all others";
    EXPECT_EQ(type_read(0xb1, 0x02), 1U) << "P0.5 goes before P0.7 and P1.1";
    EXPECT_EQ(type_read(0x91, 0x02), 3U) << "P0.7 goes before P1.1";
    EXPECT_EQ(type_read(0x11, 0x02), 4U);
    EXPECT_EQ(type_read(0x1f, 0xfd), 0U);
}

TEST(IpmcOle, ReadbackSetsAFlagFromTheTypeFourBitWhateverTheType) {
    for (const unsigned p0 : {0x11U, 0x31U, 0x51U, 0x91U}) {
        EXPECT_EQ(translate(readback, physical_sample(static_cast<std::uint8_t>(p0), 0x00)).out.at(4), 0x1b);
        EXPECT_EQ(translate(readback, physical_sample(static_cast<std::uint8_t>(p0), 0x02)).out.at(4), 0x1f);
    }
}

TEST(IpmcOle, ReadbackIgnoresHeaderAndPadding) {
    for (const unsigned p0 : {0x11U, 0x31U, 0x51U, 0x91U}) {
        const Bytes base = physical_sample(static_cast<std::uint8_t>(p0), 0);
        for (const char* unused :
             {"P0.4", "P0.0", "P1.0", "P1.2", "P2.2", "P2.4", "P3.4", "P10.0", "P16.0", "P17.0", "P23.0"}) {
            EXPECT_EQ(changes(readback, base, unused), "") << unused;
        }
    }
    const Bytes type_4 = physical_sample(0x11, 0x02);
    for (const char* unused : {"P8.0", "P8.3", "P11.0", "P11.3", "P17.0"}) {
        EXPECT_EQ(changes(readback, type_4, unused), "") << unused;
    }
}

// Forward and back again.
Bytes round_trip(const Bytes& logical) { return translate(readback, translate(result, logical).out).out; }

TEST(IpmcOle, UnknownTypeReadsBackAsTypeZero) {
    const Outcome outcome = translate(result, sample(7));
    EXPECT_EQ(outcome.out.at(0), 0x11);
    EXPECT_EQ(outcome.out.at(1), 0x00);
    EXPECT_EQ(hex(round_trip(sample(7))), hex(bytes("00 00 00 00 1b 00 00 00 08 09 0a 00 0c 0d 00 00 10 11 00 00"
                                                    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 24 25 00 00"
                                                    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 38 39 3a 3b")));
}

TEST(IpmcOle, TypeTwoLosesItsSecondValueOnTheWayBack) {
    EXPECT_EQ(hex(round_trip(sample(2))), hex(bytes("02 00 00 00 1b 00 00 00 08 09 0a 00 00 00 00 00 10 11 00 00"
                                                    "00 00 00 00 00 00 00 00 1c 1d 1e 00 00 00 00 00 00 00 00 00"
                                                    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 38 39 3a 3b")));
}

TEST(IpmcOle, TypeThreeComesBackWhole) {
    EXPECT_EQ(hex(round_trip(sample(3))), hex(bytes("03 00 00 00 1b 00 00 00 08 09 0a 00 00 00 00 00 10 11 00 00"
                                                    "14 15 16 17 18 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                                                    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 38 39 3a 3b")));
}

TEST(IpmcOle, TypeFourLosesItsLabelFlagsOnTheWayBackAndGainsItsTypeBitAsAFlag) {
    Bytes logical = sample(4);
    logical[46] = 0x01;
    logical[51] = 0x01;
    // The labels are 20 bits: of L42-45 = 2a 2b 2c 2d and L47-50 = 2f 30 31 32 the high twelve stay behind.
    EXPECT_EQ(hex(round_trip(logical)), hex(bytes("04 00 00 00 1f 00 00 00 08 09 0a 00 0c 0d 00 00 10 11 00 00"
                                                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                                                  "28 00 2a 2b 0c 00 00 2f 30 01 00 00 34 35 36 37 00 00 00 00")));
}

TEST(IpmcOle, ReadbackTakesItsExactLengthAndElseWritesNothing) { expect_exact_length(readback); }

TEST(IpmcOle, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(IpmcOle, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[40].key, ipmc_ole_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[40].result, ipmc_ole_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[40], ipmc_ole_logical_res_xlate);
}

}  // namespace
