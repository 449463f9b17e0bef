// Encapsulation outgoing-list entry: four types, of which some are swapped on the way out but not on the way back.
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
using support::set_bits;
using support::translate;
using support::translate_with_length;
using support::Translator;
using support::walk;

const Translator key = FORWARD(encap_ole_key_xlate, 7, 6);
const Translator result = FORWARD(encap_ole_res_xlate, 32, 20);
const Translator readback = REVERSE(encap_ole_logical_res_xlate, 20, 32);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = L2", "P1-2 = L0-1", "P3 = L4", "P4 = L5", "P5 = L6",
    };
    fill(out, 0, 5);
    rows.apply(in, out);
    return {.length = 6};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows head{
        "P0 = 0x11",
        "P1.4 = L4.0",
    };
    static const Rows types_1_and_2{"P1.5 = not L4.1"};
    static const Rows type_1{
        "P0.6 = 1",
        "P2-5 = swap L8-11",
        "P6-9 = swap L12-15",
        "P10-11 = L16-17",
    };
    static const Rows type_2{
        "P0.7 = 1",
        "P5-7 = label L8-11 flag L12.0",
    };
    static const Rows type_3{
        "P0.5 = 1", "P2 = L12", "P3 = L13", "P4 = L14", "P5-7 = swap L16-18", "P8-10 = swap L20-22",
    };
    static const Rows type_4{
        "P1.6 = 1", "P1.0 = 1", "P1.7 = L4.3", "P2-5 = swap L8-11", "P6-9 = swap L12-15",
    };
    static const Rows tail{
        "P12-13 = swap L24-25",
        "P14-15 = swap L26-27",
        "P16-19 = swap L28-31",
    };
    const std::uint64_t type = little(in, 0, 4);
    fill(out, 0, 19);
    head.apply(in, out);
    if (type == 1 || type == 2) {
        types_1_and_2.apply(in, out);
    }
    switch (type) {
        case 1:
            type_1.apply(in, out);
            break;
        case 2:
            type_2.apply(in, out);
            put_little(out, 2, 3, little(in, 12, 4) << 20 | little(in, 8, 4));
            break;
        case 3:
            type_3.apply(in, out);
            break;
        case 4:
            type_4.apply(in, out);
            break;
        default:
            return {.status = NPXLATE_INVALID, .length = std::nullopt};
    }
    tail.apply(in, out);
    return {.length = 20};
}

Reply readback_model(const Bytes& in, Bytes& out) {
    static const Rows head{"L4.0 = P1.4"};
    static const Rows when_above_63{"L4.1 = not P1.5"};
    static const Rows type_1{
        "L8-11 = P2-5",
        "L12-15 = P6-9",
        "L16-17 = swap P10-11",
    };
    static const Rows type_2{"L8-11 = label P5-7"};
    static const Rows type_3{
        "L12 = P2", "L13 = P3", "L14 = P4", "L8 = 0", "L16-18 = swap P5-7", "L20-22 = swap P8-10",
    };
    static const Rows type_4{
        "L4.3 = P1.7",
        "L8-11 = P2-5",
        "L12-15 = P6-9",
    };
    static const Rows tail{
        "L24-25 = swap P12-13",
        "L26-27 = swap P14-15",
        "L28-31 = swap P16-19",
    };
    fill(out, 0, 31);
    head.apply(in, out);
    if (in[0] > 63) {
        when_above_63.apply(in, out);
    }
    if (bit(in, 0, 6)) {
        out[0] = 1;
        type_1.apply(in, out);
    } else if (bit(in, 0, 7)) {
        out[0] = 2;
        type_2.apply(in, out);
    } else if (bit(in, 0, 5)) {
        out[0] = 3;
        type_3.apply(in, out);
    } else if (bit(in, 1, 6)) {
        out[0] = 4;
        type_4.apply(in, out);
    } else {
        return {.status = NPXLATE_INVALID, .length = std::nullopt};
    }
    tail.apply(in, out);
    return {};
}

Bytes with_type(Bytes record, std::uint32_t type) {
    put_little(record, 0, 4, type);
    return record;
}

// L4.0 and L4.3 set, L4.1 (which is stored inverted) clear, and every other byte telling its position.
Bytes sample(std::uint32_t type) {
    Bytes record = with_type(counting(32), type);
    record[4] = 0x09;
    return record;
}

// A physical record of the given type bits in P0 and P1; every other byte tells its position.
Bytes physical_sample(std::uint8_t p0, std::uint8_t p1) {
    Bytes record = counting(20);
    record[0] = p0;
    record[1] = p1;
    return record;
}

Bytes round_trip(const Bytes& logical) { return translate(readback, translate(result, logical).out).out; }

const support::Models models{{key, key_model}, {result, result_model}, {readback, readback_model}};

TEST(EncapOle, KeyCarriesItsRowsAndNothingElse) {
    walk(key, key_model, {Bytes(7), Bytes(7, 0xff), counting(7, 0x81)});
    check_random(key, key_model);
}

TEST(EncapOle, KeyRegroupsItsBytesAndSwapsNothing) {
    const Outcome outcome = translate(key, bytes("01 02 03 ee 05 06 07"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "03 01 02 05 06 07");
    EXPECT_EQ(changes(key, Bytes(7), "L3.0"), "");
    EXPECT_EQ(changes(key, Bytes(7), "L3.7"), "");
}

TEST(EncapOle, ResultOfEveryTypeCarriesItsRowsAndNothingElse) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U, 4U, 5U, 0x102U, 0x10001U, 0x80000003U, 0xffffffffU}) {
        for (const Bytes& base : {Bytes(32), Bytes(32, 0xff), counting(32, 0x80)}) {
            walk(result, result_model, with_type(base, type));
        }
        check_random(result, result_model, 500, [type](Bytes& in) { put_little(in, 0, 4, type); });
    }
    check_random(result, result_model);
}

TEST(EncapOle, ReadbackOfEveryCombinationOfTypeBitsRestoresItsRowsAndNothingElse) {
    for (unsigned combination = 0; combination < 16; ++combination) {
        const auto shape = [combination](Bytes& in) {
            set_bits(in, 0, 7, 5, combination >> 1);
            set_bit(in, 1, 6, (combination & 1) != 0);
        };
        for (Bytes base : {Bytes(20), Bytes(20, 0xff), counting(20, 0x80)}) {
            shape(base);
            walk(readback, readback_model, base);
        }
        check_random(readback, readback_model, 500, shape);
    }
    check_random(readback, readback_model);
}

TEST(EncapOle, ResultOfEachTypePutsEveryValueInItsPlace) {
    const struct {
        std::uint32_t type;
        const char* physical;
    } cases[] = {
        {1, "51 30 0b 0a 09 08 0f 0e 0d 0c 10 11 19 18 1b 1a 1f 1e 1d 1c"},
        {2, "91 30 08 09 ca a0 90 80 00 00 00 00 19 18 1b 1a 1f 1e 1d 1c"},
        {3, "31 10 0c 0d 0e 12 11 10 16 15 14 00 19 18 1b 1a 1f 1e 1d 1c"},
        {4, "11 d1 0b 0a 09 08 0f 0e 0d 0c 00 00 19 18 1b 1a 1f 1e 1d 1c"},
    };
    for (const auto& [type, physical] : cases) {
        const Outcome outcome = translate(result, sample(type), Bytes(20, 0xff));
        EXPECT_EQ(outcome.status, NPXLATE_OK) << type;
        EXPECT_EQ(outcome.length, 20U) << type;
        EXPECT_EQ(hex(outcome.out), physical) << type;
    }
}

TEST(EncapOle, ResultOfAnEmptyRecordOfEachTypeHoldsTheHeaderAndTheTypeBits) {
    EXPECT_EQ(hex(translate(result, with_type(Bytes(32), 1)).out).substr(0, 8), "51 20 00");
    EXPECT_EQ(hex(translate(result, with_type(Bytes(32), 2)).out).substr(0, 8), "91 20 00");
    EXPECT_EQ(hex(translate(result, with_type(Bytes(32), 3)).out).substr(0, 8), "31 00 00");
    EXPECT_EQ(hex(translate(result, with_type(Bytes(32), 4)).out).substr(0, 8), "11 41 00");
}

TEST(EncapOle, ResultRefusesOtherTypesAfterItsFirstTwoFields) {
    for (const std::uint32_t type : {0U, 5U, 6U, 0x101U, 0x10002U, 0x80000003U, 0xffffffffU}) {
        const Bytes record = sample(type);
        const Bytes flagged = bytes("11 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
        EXPECT_EQ(translate(result, record, Bytes(20, 0xff)), (Outcome{NPXLATE_INVALID, std::nullopt, flagged, record}))
            << type;
        Bytes other = with_type(Bytes(32, 0xff), type);
        other[4] = 0xfe;
        const Bytes unflagged = bytes("11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
        EXPECT_EQ(translate(result, other, Bytes(20, 0xff)), (Outcome{NPXLATE_INVALID, std::nullopt, unflagged, other}))
            << type;
    }
}

TEST(EncapOle, TheInvertedFlagBelongsToTheFirstTwoTypes) {
    for (const std::uint32_t type : {1U, 2U}) {
        Bytes record = with_type(Bytes(32), type);
        EXPECT_EQ(translate(result, record).out.at(1), 0x20) << type;
        record[4] = 0x02;
        EXPECT_EQ(translate(result, record).out.at(1), 0x00) << type;
    }
    for (const std::uint32_t type : {3U, 4U}) {
        EXPECT_EQ(changes(result, with_type(Bytes(32), type), "L4.1"), "") << type;
        EXPECT_EQ(changes(result, with_type(Bytes(32, 0xff), type), "L4.1"), "") << type;
    }
    EXPECT_EQ(translate(result, with_type(Bytes(32), 3)).out.at(1), 0x00);
}

TEST(EncapOle, EachFlagBelongsToItsTypes) {
    for (const std::uint32_t type : {1U, 2U, 3U, 4U}) {
        EXPECT_EQ(changes(result, sample(type), "L4.0"), "P1.4") << type;
        EXPECT_EQ(changes(result, sample(type), "L4.2"), "") << type;
        EXPECT_EQ(changes(result, sample(type), "L4.3"), type == 4 ? "P1.7" : "") << type;
        EXPECT_EQ(changes(result, sample(type), "L4.4"), "") << type;
    }
}

TEST(EncapOle, EachTypeIgnoresWhatItDoesNotUse) {
    const struct {
        std::uint32_t type;
        std::vector<const char*> unused;
    } cases[] = {
        {1, {"L5.0", "L7.7", "L18.0", "L19.7", "L20.0", "L23.7"}},
        {2, {"L5.0", "L7.7", "L11.0", "L11.7", "L12.4", "L13.0", "L15.7", "L16.0", "L20.0"}},
        {3, {"L5.0", "L8.0", "L11.7", "L15.0", "L15.7", "L19.0", "L23.0"}},
        {4, {"L5.0", "L7.7", "L16.0", "L17.7", "L20.0", "L23.7"}},
    };
    for (const auto& [type, unused] : cases) {
        for (const char* position : unused) {
            EXPECT_EQ(changes(result, sample(type), position), "") << "type " << type << " " << position;
        }
    }
}

TEST(EncapOle, TypeTwoWritesItsLabelTwice) {
    Bytes record = with_type(Bytes(32), 2);
    put_little(record, 8, 4, 0x000abcde);
    record[12] = 0x01;
    EXPECT_EQ(hex(translate(result, record).out), "91 20 de bc 1a ab cd e1 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, record, "L8.0"), "P2.0 P7.4");
    EXPECT_EQ(changes(result, record, "L10.3"), "P4.3 P5.7");
    EXPECT_EQ(changes(result, record, "L12.0"), "P4.4 P7.0");
    EXPECT_EQ(changes(result, record, "L12.3"), "P4.7");
}

TEST(EncapOle, TypeTwoOrsTheNibbleAboveTheLabelIntoTheFirstCopyOnly) {
    Bytes record = with_type(Bytes(32), 2);
    put_little(record, 8, 4, 0xff400000);
    record[12] = 0x02;
    EXPECT_EQ(hex(translate(result, record).out), "91 20 00 00 60 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(result, record, "L10.4"), "P4.4");
    EXPECT_EQ(changes(result, record, "L10.5"), "") << "that bit is already set by the other half";
}

TEST(EncapOle, ReadbackOfEachTypePutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(readback, physical_sample(0x51, 0x10)).out),
              hex(bytes("01 00 00 00 03 00 00 00 02 03 04 05 06 07 08 09"      // L0-15
                        "0b 0a 00 00 00 00 00 00 0d 0c 0f 0e 13 12 11 10")));  // L16-31
    Bytes type_2 = physical_sample(0x91, 0x10);
    type_2[7] = 0xef;
    EXPECT_EQ(hex(translate(readback, type_2).out), hex(bytes("02 00 00 00 03 00 00 00 6e 50 00 00 00 00 00 00"
                                                              "00 00 00 00 00 00 00 00 0d 0c 0f 0e 13 12 11 10")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x31, 0x10)).out),
              hex(bytes("03 00 00 00 01 00 00 00 00 00 00 00 02 03 04 00"
                        "07 06 05 00 0a 09 08 00 0d 0c 0f 0e 13 12 11 10")));
    EXPECT_EQ(hex(translate(readback, physical_sample(0x11, 0xd1)).out),
              hex(bytes("04 00 00 00 09 00 00 00 02 03 04 05 06 07 08 09"
                        "00 00 00 00 00 00 00 00 0d 0c 0f 0e 13 12 11 10")));
}

TEST(EncapOle, ReadbackTestsTheTypeBitsInOrder) {
    const auto type_read = [](std::uint8_t p0, std::uint8_t p1) {
        return little(translate(readback, physical_sample(p0, p1)).out, 0, 4);
    };
    EXPECT_EQ(type_read(0xf1, 0x40), 1U) << "P0.6 goes before all others";
    EXPECT_EQ(type_read(0xb1, 0x40), 2U) << "P0.7 goes before P0.5 and P1.6";
    EXPECT_EQ(type_read(0x31, 0x40), 3U) << "P0.5 goes before P1.6";
    EXPECT_EQ(type_read(0x11, 0x40), 4U);
}

TEST(EncapOle, ReadbackTakesTheInvertedFlagOnlyUnderTheTwoHighBitsOfTheHeader) {
    const auto flags_read = [](std::uint8_t p0, std::uint8_t p1) {
        return translate(readback, physical_sample(p0, p1)).out.at(4);
    };
    for (const unsigned p0 : {0x40U, 0x51U, 0x80U, 0x91U, 0xc0U, 0xf1U}) {
        EXPECT_EQ(flags_read(static_cast<std::uint8_t>(p0), 0x00), 0x02) << p0;
        EXPECT_EQ(flags_read(static_cast<std::uint8_t>(p0), 0x20), 0x00) << p0;
    }
    EXPECT_EQ(flags_read(0x3f, 0x00), 0x00);
    EXPECT_EQ(flags_read(0x11, 0x40), 0x00);
    EXPECT_EQ(changes(readback, physical_sample(0x51, 0), "P1.5"), "L4.1");
    EXPECT_EQ(changes(readback, physical_sample(0x31, 0), "P1.5"), "");
    EXPECT_EQ(changes(readback, physical_sample(0x51, 0), "P1.7"), "");
    EXPECT_EQ(changes(readback, physical_sample(0x11, 0x40), "P1.7"), "L4.3");
}

TEST(EncapOle, ReadbackRefusesARecordWithoutATypeBitAfterClearing) {
    const Bytes before(32, 0xff);
    const Bytes unflagged = physical_sample(0x11, 0xaf);
    EXPECT_EQ(translate(readback, unflagged, before), (Outcome{NPXLATE_INVALID, std::nullopt, Bytes(32), unflagged}));
    const Bytes flagged = physical_sample(0x1f, 0x10);
    EXPECT_EQ(translate(readback, flagged, before), (Outcome{NPXLATE_INVALID, std::nullopt,
                                                             bytes("00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00"
                                                                   "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"),
                                                             flagged}));
}

TEST(EncapOle, ReadbackOfTypeTwoLooksAtTheSecondCopyAlone) {
    for (const char* position : {"P2.0", "P3.0", "P4.0", "P4.7", "P7.0", "P7.3", "P8.0", "P11.7"}) {
        EXPECT_EQ(changes(readback, physical_sample(0x91, 0), position), "") << position;
    }
    EXPECT_EQ(changes(readback, physical_sample(0x91, 0), "P7.4"), "L8.0");
    EXPECT_EQ(changes(readback, physical_sample(0x91, 0), "P5.7"), "L10.3");
}

TEST(EncapOle, TypeOneReadsBackWithItsWordsAndItsValueReversed) {
    Bytes record = sample(1);
    put_little(record, 8, 4, 0x11223344);
    EXPECT_EQ(little(round_trip(record), 8, 4), 0x44332211U);
    EXPECT_EQ(hex(round_trip(sample(1))), hex(bytes("01 00 00 00 01 00 00 00 0b 0a 09 08 0f 0e 0d 0c"
                                                    "11 10 00 00 00 00 00 00 18 19 1a 1b 1c 1d 1e 1f")));
}

TEST(EncapOle, TypeTwoLosesTheFlagOfItsLabelOnTheWayBack) {
    Bytes record = sample(2);
    record[12] = 0x0f;
    EXPECT_EQ(hex(round_trip(record)), hex(bytes("02 00 00 00 01 00 00 00 08 09 0a 00 00 00 00 00"
                                                 "00 00 00 00 00 00 00 00 18 19 1a 1b 1c 1d 1e 1f")));
}

TEST(EncapOle, TypeThreeComesBackWhole) {
    EXPECT_EQ(hex(round_trip(sample(3))), hex(bytes("03 00 00 00 01 00 00 00 00 00 00 00 0c 0d 0e 00"
                                                    "10 11 12 00 14 15 16 00 18 19 1a 1b 1c 1d 1e 1f")));
}

TEST(EncapOle, TypeFourReadsBackWithItsWordsReversed) {
    EXPECT_EQ(hex(round_trip(sample(4))), hex(bytes("04 00 00 00 09 00 00 00 0b 0a 09 08 0f 0e 0d 0c"
                                                    "00 00 00 00 00 00 00 00 18 19 1a 1b 1c 1d 1e 1f")));
}

TEST(EncapOle, ReadbackTakesItsExactLengthAndElseWritesNothing) {
    const Bytes before = counting(32, 0x80);
    for (const Bytes& in : {physical_sample(0x51, 0x10), physical_sample(0x11, 0x00)}) {
        for (const std::int32_t length : {INT32_MIN, -20, -1, 0, 19, 21, 32, 0x114, INT32_MAX}) {
            EXPECT_EQ(translate_with_length(readback, in, length, before),
                      (Outcome{NPXLATE_INVALID, std::nullopt, before, in}))
                << length;
        }
    }
    EXPECT_EQ(translate_with_length(readback, physical_sample(0x51, 0x10), 20, before).status, NPXLATE_OK);
}

TEST(EncapOle, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = with_type(counting(translator.in_size), 1);
        expect_length_ignored(translator, in);
    }
}

TEST(EncapOle, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[53].key, encap_ole_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[53].result, encap_ole_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[53], encap_ole_logical_res_xlate);
}

}  // namespace
