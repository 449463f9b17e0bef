// The main cross-connect entry: its key, its result of eleven types and the way back.
#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

// The key translator clears one byte more than the key has.
const Translator key = FORWARD(xid_type_xlate_key, 4, 4);
const Translator result = FORWARD(xid_type_xlate_result, 92, 32);
const Translator reverse_result = REVERSE(xid_type_logical_xlate_result, 32, 92);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = 0",
        "P0 = L0",
        "P1 = L1",
        "P2.2-0 = L2.2-0",
    };
    rows.apply(in, out);
    return {.length = 3};
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

const Rows flags{
    "P0-31 = 0",   "P0 = 0x11",   "P0.5 = L0.6",  // the header byte is shared with fields
    "P1.2 = L4.4", "P1.3 = L3.3", "P1.4 = L0.2", "P1.5 = L0.7", "P1.6 = L1.0", "P2.1 = any L3.6-3",
    "P2.2 = L0.5", "P2.3 = L2.6", "P2.4 = 0",    "P2.7 = L3.1", "P3.0 = L1.2", "P3.1 = L1.3",
    "P3.2 = L1.4", "P3.3 = L0.0", "P3.4 = L0.1", "P3.5 = L1.7", "P3.6 = L1.6", "P3.7 = L3.7",
};

// What tells the types apart in the physical record.
struct Discriminant {
    std::array<unsigned, 8> bits;  // P0.7, P0.6, P1.7, P1.1, P2.6, P2.5, P2.4, P26.3
    bool carries_l1_1;             // in P1.0, inverted
};
constexpr std::array<std::pair<std::size_t, unsigned>, 8> discriminant_places{
    {{0, 7}, {0, 6}, {1, 7}, {1, 1}, {2, 6}, {2, 5}, {2, 4}, {26, 3}}};
constexpr std::array<Discriminant, 12> discriminants{{
    {{0, 0, 0, 0, 0, 0, 0, 0}, false},  // no type 0
    {{0, 0, 1, 0, 0, 0, 0, 0}, true},
    {{0, 1, 0, 0, 0, 0, 0, 0}, true},
    {{1, 0, 0, 0, 0, 0, 0, 0}, true},
    {{1, 0, 0, 0, 0, 1, 0, 0}, true},
    {{0, 0, 0, 0, 0, 0, 1, 0}, false},
    {{1, 0, 0, 0, 0, 1, 1, 0}, false},
    {{1, 0, 0, 0, 0, 0, 1, 0}, false},
    {{0, 0, 0, 0, 0, 0, 0, 0}, false},
    {{0, 0, 0, 1, 1, 0, 0, 0}, true},
    {{0, 0, 0, 1, 1, 1, 0, 0}, true},
    {{0, 0, 0, 0, 0, 0, 0, 1}, false},
}};

void put_discriminant(std::size_t type, Bytes& physical) {
    for (std::size_t i = 0; i < discriminant_places.size(); ++i) {
        const auto [byte, bit_number] = discriminant_places[i];
        set_bit(physical, byte, bit_number, discriminants[type].bits[i] != 0);
    }
}

const Rows summary_bits{"P30.7 = L3.4", "P30.6 = L3.5", "P30.5 = L3.6"};
const Rows types_1_2{"P4-5 = L56-57", "P6-7 = L60-61", "P8-11 = L48-51", "P13 = 0"};
const Rows type_2{"P12 = L64", "P15 = L68"};
const Rows types_3_4{"P4-6 = L76-78", "P13 = L56", "P12 = L57", "P14 = L58", "P15 = L59"};
const Rows types_3_4_label{"P7-9 = label L60-63 flag 1", "P10-11 = L72-73"};
const Rows types_3_4_value{"P7 = L64", "P8 = L65", "P9.3-0 = L66.3-0", "P9.7-4 = 0"};
const Rows types_5_6_7{"P4-6 = L56-58"};
const Rows types_9_10{
    "P4-5 = L60-61",
    "P6-8 = label L62-65 flag 1",
    "P9-11 = label L67-70 flag 0",
    "P12 = L57",
    "P13 = L56",
    "P14 = L58",
    "P15 = L59",
    "P30 = L72",
};
const Rows type_11{
    "P26.3 = 1", "P30.7 = L3.4", "P30.6 = L3.5", "P4-6 = L56-58", "P11-14 = L64-67", "P8-10 = L68-70",
};
const Rows tail_long{
    "P26.4 = L1.5",      "P16-17 = L44-45", "P18 = 0",   "P19-21 = L28-30",
    "P22.1-0 = L32.1-0", "P23-25 = L36-38", "P31 = L24",
};
const Rows tail_short{"P16-19 = L40-43"};
const Rows tail{
    "P26.6 = L2.4",      "P26.5 = L3.0",      "P26.2 = L2.0",      "P26.1-0 = L2.2-1",
    "P27.7-4 = L53.3-0",  // bits 27..8 of L52-55, the least significant nibble first
    "P28.3-0 = L53.7-4", "P28.7-4 = L54.3-0", "P29.3-0 = L54.7-4", "P29.7-4 = L55.3-0",
    "P27.3 = L4.0",      "P27.2-0 = L4.3-1",
};

Reply result_model(Bytes& in, Bytes& out) {
    flags.apply(in, out);
    set_bit(out, 2, 0, bit(in, 2, 7) || little(in, 52, 4) >= 256 || bit(in, 3, 0));

    const std::uint64_t type = little(in, 8, 4);
    if (type == 0 || type > 11) {
        return {.status = NPXLATE_INVALID};
    }
    put_discriminant(type, out);
    if (discriminants[type].carries_l1_1) {
        set_bit(out, 1, 0, !bit(in, 1, 1));
    }

    const bool long_tail = bit(in, 1, 5);
    switch (type) {
        case 1:
        case 2:
            types_1_2.apply(in, out);
            summary_bits.apply(in, out);
            out[14] = static_cast<std::uint8_t>(in[52] + 1);
            if (type == 2) {
                type_2.apply(in, out);
            }
            break;
        case 3:
        case 4:
            types_3_4.apply(in, out);
            summary_bits.apply(in, out);
            (bit(in, 4, 4) ? types_3_4_value : types_3_4_label).apply(in, out);
            break;
        case 5:
        case 6:
        case 7:
            types_5_6_7.apply(in, out);
            break;
        case 9:
        case 10:
            types_9_10.apply(in, out);
            if (long_tail) {
                set_bit(out, 22, 7, bit(in, 3, 5) || bit(in, 3, 4));
            }
            break;
        case 11:
            type_11.apply(in, out);
            if (in[60] > 2) {
                return {.status = NPXLATE_INVALID};
            }
            out[7] = static_cast<std::uint8_t>(1U << in[60]);
            break;
        default:  // type 8 has no fields of its own
            break;
    }

    if (long_tail) {
        tail_long.apply(in, out);
    } else {
        tail_short.apply(in, out);
        const std::uint64_t code = little(in, 12, 4);
        set_bit(out, 20, 7, code == 3 || code == 4);
    }
    tail.apply(in, out);
    return {.length = 32};
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

const Rows flags_back{
    "L0-91 = 0",   "L0.0 = P3.3", "L0.1 = P3.4",     "L0.2 = P1.4",      "L0.5 = P2.2", "L0.6 = P0.5",
    "L0.7 = P1.5", "L1.0 = P1.6", "L1.1 = not P1.0", "L1.2 = P3.0",      "L1.3 = P3.1", "L1.4 = P3.2",
    "L1.6 = P3.6", "L1.7 = P3.5", "L2.0 = P26.2",    "L2.2-1 = P26.1-0", "L2.6 = P2.3", "L3.0 = P26.5",
    "L3.1 = P2.7", "L3.2 = P1.1", "L3.3 = P1.3",     "L3.7 = P3.7",      "L4.4 = P1.2",
};

unsigned type_of(const Bytes& physical) {
    if (bit(physical, 1, 7)) {
        return 1;
    }
    if (bit(physical, 0, 6)) {
        return 2;
    }
    if (bit(physical, 0, 7) && bits(physical, 2, 5, 4) == 0b00) {
        return 3;
    }
    if (bit(physical, 0, 7) && bits(physical, 2, 5, 4) == 0b10) {
        return 4;
    }
    if (bit(physical, 1, 1)) {
        return bit(physical, 2, 5) ? 10 : 9;
    }
    if (bit(physical, 26, 3)) {
        return 11;
    }
    if (bits(physical, 0, 7, 6) == 0b00 && !bit(physical, 2, 5)) {
        return 5;
    }
    if (bit(physical, 0, 7) && bit(physical, 2, 4)) {
        return bit(physical, 2, 5) ? 6 : 7;
    }
    return 0;
}

const Rows summary_bits_back{"L3.4 = P30.7", "L3.5 = P30.6", "L3.6 = P30.5"};
const Rows types_1_2_back{"L56-57 = P4-5", "L60-61 = P6-7", "L48-51 = P8-11"};
const Rows type_2_back{"L64 = P12", "L68 = P15"};
const Rows types_3_4_back{"L76-78 = P4-6", "L56 = P13", "L57 = P12", "L58 = P14", "L59 = P15"};
const Rows types_3_4_label_back{"L60-63 = label P7-9", "L72-73 = P10-11"};
const Rows types_3_4_value_back{"L64-65 = P7-8", "L66.3-0 = P9.3-0"};
const Rows types_5_6_7_back{"L56-58 = P4-6"};
const Rows types_9_10_back{
    "L56 = P13",     "L62-65 = label P6-8", "L66.0 = P8.0",         "L57 = P12",
    "L58 = P14",     "L59 = P15",           "L67-70 = label P9-11", "L71.0 = P11.0",
    "L60-61 = P4-5", "L72 = P30",           "L3.4 = P22.7",         "L3.5 = P22.7",
};
const Rows type_11_back{"L56-58 = P4-6", "L3.4 = P30.7", "L3.5 = P30.6", "L68-70 = P8-10", "L64-67 = P11-14"};
const Rows tail_long_back{"L44-46 = P16-18", "L28-30 = P19-21", "L36-38 = P23-25", "L32.1-0 = P22.1-0", "L24 = P31"};
const Rows tail_short_back{"L40-43 = P16-19"};
const Rows tail_back{
    "L53.3-0 = P27.7-4", "L53.7-4 = P28.3-0", "L54.3-0 = P28.7-4", "L54.7-4 = P29.3-0",
    "L55.3-0 = P29.7-4", "L4.0 = P27.3",      "L4.3-1 = P27.2-0",
};

Reply reverse_model(Bytes& in, Bytes& out) {
    flags_back.apply(in, out);
    const unsigned type = type_of(in);
    put_little(out, 8, 4, type);
    switch (type) {
        case 1:
        case 2:
            types_1_2_back.apply(in, out);
            summary_bits_back.apply(in, out);
            out[52] = static_cast<std::uint8_t>(in[14] - 1);
            if (type == 2) {
                type_2_back.apply(in, out);
            }
            break;
        case 3:
        case 4:
            types_3_4_back.apply(in, out);
            summary_bits_back.apply(in, out);
            (bit(in, 1, 2) ? types_3_4_value_back : types_3_4_label_back).apply(in, out);
            break;
        case 5:
        case 6:
        case 7:
            types_5_6_7_back.apply(in, out);
            break;
        case 9:
        case 10:
            types_9_10_back.apply(in, out);
            break;
        case 11:
            type_11_back.apply(in, out);
            if (!bit(in, 7, 0)) {
                out[60] = bit(in, 7, 2) ? 2 : bit(in, 7, 1) ? 1 : 0;
            }
            break;
        default:
            break;
    }
    set_bit(out, 1, 5, bit(in, 26, 4));
    set_bit(out, 2, 4, bit(in, 26, 6));
    (bit(in, 26, 4) ? tail_long_back : tail_short_back).apply(in, out);
    tail_back.apply(in, out);
    return {};
}

// ---------------------------------------------------------------------------------------------------------------------
// Records

Bytes of_type(std::uint64_t type, Bytes record = Bytes(92)) {
    put_little(record, 8, 4, type);
    if (type == 11) {
        record[60] = 2;
    }
    return record;
}

// Each pattern with the two flags that choose between layouts in all four ways.
std::vector<Bytes> bases_of_type(std::uint64_t type) {
    std::vector<Bytes> bases;
    for (const Bytes& pattern : patterns(92)) {
        for (const bool long_tail : {false, true}) {
            for (const bool value : {false, true}) {
                Bytes base = of_type(type, pattern);
                set_bit(base, 1, 5, long_tail);
                set_bit(base, 4, 4, value);
                bases.push_back(base);
            }
        }
    }
    return bases;
}

const support::Models models{{key, key_model}, {result, result_model}, {reverse_result, reverse_model}};

// ---------------------------------------------------------------------------------------------------------------------
// Key

TEST(CrossConnectKey, CarriesNineteenBitsLowOrderByteFirst) {
    walk(key, key_model, patterns(4));
    check_random(key, key_model);

    const Outcome largest = translate(key, bytes("ff ff 07 00"));
    EXPECT_EQ(largest.status, 0);
    EXPECT_EQ(largest.length, 3U);
    EXPECT_EQ(hex(largest.out), "ff ff 07 00");
    EXPECT_EQ(hex(translate(key, bytes("45 23 01 00")).out), "45 23 01 00");
}

TEST(CrossConnectKey, DropsTheBitsAboveBit18) {
    EXPECT_EQ(hex(translate(key, bytes("ff ff ff ff")).out), "ff ff 07 00");
    EXPECT_EQ(hex(translate(key, bytes("00 00 08 00")).out), "00 00 00 00");
    EXPECT_EQ(changes(key, Bytes(4), "L2.3"), "");
    EXPECT_EQ(changes(key, Bytes(4), "L2.2"), "P2.2");
}

TEST(CrossConnectKey, ClearsOneByteBeyondTheKeyAndDoesNotReportIt) {
    const Outcome outcome = translate(key, bytes("ff ff ff ff"), Bytes(4, 0xff));
    EXPECT_EQ(hex(outcome.out), "ff ff 07 00");
    EXPECT_EQ(outcome.length, 3U);
}

// ---------------------------------------------------------------------------------------------------------------------
// Result

TEST(CrossConnectResult, CarriesWhatItsTypeCarriesAndNothingElse) {
    for (std::uint64_t type = 0; type <= 12; ++type) {
        SCOPED_TRACE("type " + std::to_string(type));
        walk(result, result_model, bases_of_type(type));
    }
}

TEST(CrossConnectResult, CarriesRandomRecordsOfEveryType) {
    for (std::uint64_t type = 1; type <= 11; ++type) {
        SCOPED_TRACE("type " + std::to_string(type));
        check_random(result, result_model, 500, [type](Bytes& in) {
            put_little(in, 8, 4, type);
            in[60] &= 3;  // one selector in four is bad
        });
    }
    check_random(result, result_model, 200);  // hardly ever a type
    check_random(result, result_model, 200, [](Bytes& in) {
        put_little(in, 8, 4, 5);
        set_bit(in, 1, 5, false);
        put_little(in, 12, 4, in[12] & 7);  // so that the code is often 3 or 4
    });
}

TEST(CrossConnectResult, OfACountingRecordIsThisForEachType) {
    struct Case {
        std::uint64_t type;
        const char* head;  // P0-15
        const char* foot;  // P26-31
    };
    // The record of byte i at Li: flags L1.0, L2.1, L3.0, L3.1 and L4.2, everything else from its place.
    for (const Case& c : {
             Case{1, "11 c1 81 00 38 39 3c 3d 30 31 32 33 00 00 35 00", "21 52 63 73 00 00"},
             Case{2, "51 41 81 00 38 39 3c 3d 30 31 32 33 40 00 35 44", "21 52 63 73 00 00"},
             Case{3, "91 41 81 00 4c 4d 4e e3 d3 c1 48 49 39 38 3a 3b", "21 52 63 73 00 00"},
             Case{4, "91 41 a1 00 4c 4d 4e e3 d3 c1 48 49 39 38 3a 3b", "21 52 63 73 00 00"},
             Case{5, "11 40 91 00 38 39 3a 00 00 00 00 00 00 00 00 00", "21 52 63 73 00 00"},
             Case{6, "91 40 b1 00 38 39 3a 00 00 00 00 00 00 00 00 00", "21 52 63 73 00 00"},
             Case{7, "91 40 91 00 38 39 3a 00 00 00 00 00 00 00 00 00", "21 52 63 73 00 00"},
             Case{8, "11 40 81 00 00 00 00 00 00 00 00 00 00 00 00 00", "21 52 63 73 00 00"},
             Case{9, "11 43 c1 00 3c 3d 03 f3 e1 54 44 30 39 38 3a 3b", "21 52 63 73 48 00"},
             Case{10, "11 43 e1 00 3c 3d 03 f3 e1 54 44 30 39 38 3a 3b", "21 52 63 73 48 00"},
             Case{11, "11 40 81 00 38 39 3a 04 44 45 46 40 41 42 43 00", "29 52 63 73 00 00"},
         }) {
        const Outcome outcome = translate(result, of_type(c.type, counting(92)));
        EXPECT_EQ(outcome.status, 0) << "type " << c.type;
        EXPECT_EQ(outcome.length, 32U) << "type " << c.type;
        EXPECT_EQ(hex(outcome.out), c.head + std::string{" 28 29 2a 2b 00 00 00 00 00 00 "} + c.foot)
            << "type " << c.type;
    }
}

TEST(CrossConnectResult, MarksEveryTypeInItsHeaderAndFlagBytes) {
    struct Case {
        std::uint64_t type;
        const char* marks;  // P0-2
        const char* marks_with_l1_1;
        unsigned p26;
    };
    for (const Case& c : {
             Case{1, "11 81 00", "11 80 00", 0x00},
             Case{2, "51 01 00", "51 00 00", 0x00},
             Case{3, "91 01 00", "91 00 00", 0x00},
             Case{4, "91 01 20", "91 00 20", 0x00},
             Case{5, "11 00 10", "11 00 10", 0x00},
             Case{6, "91 00 30", "91 00 30", 0x00},
             Case{7, "91 00 10", "91 00 10", 0x00},
             Case{8, "11 00 00", "11 00 00", 0x00},
             Case{9, "11 03 40", "11 02 40", 0x00},
             Case{10, "11 03 60", "11 02 60", 0x00},
             Case{11, "11 00 00", "11 00 00", 0x08},
         }) {
        Bytes in = of_type(c.type);
        const auto marks = [&in] {
            const Bytes out = translate(result, in).out;
            return hex({out[0], out[1], out[2]});
        };
        EXPECT_EQ(marks(), c.marks) << "type " << c.type;
        EXPECT_EQ(translate(result, in).out[26], c.p26) << "type " << c.type;
        set_bit(in, 1, 1);
        EXPECT_EQ(marks(), c.marks_with_l1_1) << "type " << c.type;
    }
}

TEST(CrossConnectResult, HasAHeaderOfSixValues) {
    constexpr std::array<unsigned, 12> header{0, 0x11, 0x51, 0x91, 0x91, 0x11, 0x91, 0x91, 0x11, 0x11, 0x11, 0x11};
    for (std::uint64_t type = 1; type <= 11; ++type) {
        Bytes in = of_type(type);
        EXPECT_EQ(translate(result, in).out[0], header[type]) << "type " << type;
        set_bit(in, 0, 6);
        EXPECT_EQ(translate(result, in).out[0], header[type] | 0x20U) << "type " << type;
    }
}

TEST(CrossConnectResult, RefusesTypesAfterWritingTheFlagsAndWithoutALength) {
    // The type is looked at as a whole: a low byte of 3 does not make a type.
    for (const std::uint64_t type : {0U, 12U, 13U, 0x100U, 0x103U, 0x10001U, 0x1000001U, 0x80000003U, 0xffffffffU}) {
        const Outcome outcome = translate(result, of_type(type, Bytes(92, 0xff)), Bytes(32, 0xa5));
        EXPECT_EQ(outcome.status, 22) << type;
        EXPECT_EQ(outcome.length, std::nullopt) << type;
        EXPECT_EQ(hex(outcome.out),
                  "31 7c 8f ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")
            << type;
    }
    EXPECT_EQ(hex(translate(result, Bytes(92)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(CrossConnectResult, TurnsTheSelectorOfType11IntoOneBit) {
    Bytes in = of_type(11, counting(92));
    for (const auto& [selector, one_hot] : {std::pair{0, 1}, {1, 2}, {2, 4}}) {
        in[60] = static_cast<std::uint8_t>(selector);
        in[61] = in[62] = in[63] = 0xff;  // the selector is one byte
        const Outcome outcome = translate(result, in);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.out[7], one_hot);
    }
}

TEST(CrossConnectResult, RefusesOtherSelectorsOfType11AfterWritingTheFieldsOfThatType) {
    for (const unsigned selector : {3U, 4U, 0x7fU, 0x80U, 0x82U, 0xffU}) {
        Bytes in = of_type(11, counting(92));
        in[3] = 0x33;
        in[60] = static_cast<std::uint8_t>(selector);
        const Outcome outcome = translate(result, in, Bytes(32, 0xa5));
        EXPECT_EQ(outcome.status, 22) << selector;
        EXPECT_EQ(outcome.length, std::nullopt) << selector;
        EXPECT_EQ(hex(outcome.out),
                  "11 40 83 00 38 39 3a 00 44 45 46 40 41 42 43 00 00 00 00 00 00 00 00 00 00 00 08 00 00 00 c0 00")
            << selector;
    }
}

TEST(CrossConnectResult, AddsOneToTheCounterOfTypes1And2) {
    for (const std::uint64_t type : {1U, 2U}) {
        Bytes in = of_type(type);
        for (const auto& [counter, stored] : {std::pair{0, 1}, {1, 2}, {127, 128}, {254, 255}, {255, 0}}) {
            in[52] = static_cast<std::uint8_t>(counter);
            const Bytes out = translate(result, in).out;
            EXPECT_EQ(out[14], stored);
            EXPECT_EQ(translate(reverse_result, out).out[52], counter);
        }
    }
}

TEST(CrossConnectResult, CarriesTheCounterOfNoOtherType) {
    for (std::uint64_t type = 3; type <= 11; ++type) {
        SCOPED_TRACE("type " + std::to_string(type));
        expect_not_carried(result, of_type(type), {"L52"});
    }
}

TEST(CrossConnectResult, SumsUpL2_7AndL3_0AndAValueOf256OrMoreInP2_0) {
    Bytes in = of_type(8);
    EXPECT_FALSE(bit(translate(result, in).out, 2, 0));
    put_little(in, 52, 4, 255);
    EXPECT_FALSE(bit(translate(result, in).out, 2, 0));
    for (const std::uint32_t value : {0x100U, 0x1ffU, 0x10000U, 0x10000000U, 0x80000000U}) {
        put_little(in, 52, 4, value);
        EXPECT_TRUE(bit(translate(result, in).out, 2, 0)) << value;
    }
    EXPECT_EQ(changes(result, of_type(8), "L2.7"), "P2.0");
    EXPECT_EQ(changes(result, of_type(8), "L3.0"), "P2.0 P26.5");
    // The top nibble is seen by the summary only.
    EXPECT_EQ(changes(result, of_type(8), "L55.4"), "P2.0");
    EXPECT_EQ(changes(result, of_type(8), "L55.3"), "P2.0 P29.7");
}

TEST(CrossConnectResult, SumsUpFourFlagsInP2_1) {
    EXPECT_EQ(changes(result, of_type(8), "L3.3"), "P1.3 P2.1");
    for (const char* flag : {"L3.4", "L3.5", "L3.6"}) {
        EXPECT_EQ(changes(result, of_type(8), flag), "P2.1");
    }
    EXPECT_EQ(changes(result, of_type(8), "L3.7"), "P3.7");
}

TEST(CrossConnectResult, CarriesL3_4To6WhereTheTypeHasAPlaceForThem) {
    for (const std::uint64_t type : {1U, 2U, 3U, 4U}) {
        EXPECT_EQ(changes(result, of_type(type), "L3.4"), "P2.1 P30.7") << "type " << type;
        EXPECT_EQ(changes(result, of_type(type), "L3.5"), "P2.1 P30.6") << "type " << type;
        EXPECT_EQ(changes(result, of_type(type), "L3.6"), "P2.1 P30.5") << "type " << type;
    }
    EXPECT_EQ(changes(result, of_type(11), "L3.4"), "P2.1 P30.7");
    EXPECT_EQ(changes(result, of_type(11), "L3.5"), "P2.1 P30.6");
    EXPECT_EQ(changes(result, of_type(11), "L3.6"), "P2.1");
}

TEST(CrossConnectResult, SumsUpL3_4And5OfTypes9And10OnlyWithTheLongTail) {
    for (const std::uint64_t type : {9U, 10U}) {
        Bytes in = of_type(type);
        EXPECT_EQ(changes(result, in, "L3.4"), "P2.1");
        EXPECT_EQ(changes(result, in, "L3.5"), "P2.1");
        set_bit(in, 1, 5);
        EXPECT_EQ(changes(result, in, "L3.4"), "P2.1 P22.7");
        EXPECT_EQ(changes(result, in, "L3.5"), "P2.1 P22.7");
        EXPECT_EQ(changes(result, in, "L3.6"), "P2.1");
    }
    Bytes other = of_type(3);
    set_bit(other, 1, 5);
    EXPECT_EQ(changes(result, other, "L3.4"), "P2.1 P30.7");
}

TEST(CrossConnectResult, DoesNotCarryTheOtherFlagsNorBytesThatNoTypeUses) {
    for (std::uint64_t type = 1; type <= 11; ++type) {
        SCOPED_TRACE("type " + std::to_string(type));
        expect_not_carried(
            result, of_type(type),
            {"L0.4-3", "L2.3", "L2.5", "L3.2", "L4.7-5", "L5-7", "L16-23", "L46-47", "L74-75", "L79", "L80-91"});
    }
}

TEST(CrossConnectResult, DoesNotCarryL1_1OfTypesWithoutAPlaceForIt) {
    for (const std::uint64_t type : {5U, 6U, 7U, 8U, 11U}) {
        EXPECT_EQ(changes(result, of_type(type), "L1.1"), "") << "type " << type;
    }
    for (const std::uint64_t type : {1U, 2U, 3U, 4U, 9U, 10U}) {
        EXPECT_EQ(changes(result, of_type(type), "L1.1"), "P1.0") << "type " << type;
    }
}

TEST(CrossConnectResult, CarriesTwoMoreBytesInType2ThanInType1) {
    expect_not_carried(result, of_type(1), {"L64", "L68"});
    EXPECT_EQ(changes(result, of_type(2), "L64.0"), "P12.0");
    EXPECT_EQ(changes(result, of_type(2), "L68.7"), "P15.7");
    for (const std::uint64_t type : {1U, 2U}) {
        expect_not_carried(result, of_type(type), {"L58-59", "L62-63", "L65-67", "L69-79"});
    }
}

TEST(CrossConnectResult, WritesALabelOrAValueInTypes3And4) {
    for (const std::uint64_t type : {3U, 4U}) {
        Bytes in = with(of_type(type), {{60, "de bc fa ff"}, {64, "de bc fa ff"}, {72, "48 49"}});
        const auto middle = [&in] {
            const Bytes out = translate(result, in).out;
            return hex(Bytes(out.begin() + 7, out.begin() + 12));
        };
        EXPECT_EQ(middle(), "ab cd e1 48 49");
        set_bit(in, 4, 4);
        EXPECT_EQ(middle(), "de bc 0a 00 00");
    }
}

TEST(CrossConnectResult, MarksTheFirstLabelOfTypes9And10Only) {
    for (const std::uint64_t type : {9U, 10U}) {
        const Bytes in = with(of_type(type), {{62, "de bc fa ff"}, {66, "ff"}, {67, "21 43 f5 ff"}, {71, "ff"}});
        const Bytes out = translate(result, in).out;
        EXPECT_EQ(hex(Bytes(out.begin() + 6, out.begin() + 12)), "ab cd e1 54 32 10");
        expect_not_carried(result, of_type(type), {"L64.7-4", "L65", "L66", "L69.7-4", "L70", "L71", "L73"});
    }
}

TEST(CrossConnectResult, HasTheLongTailWhereL1_5IsSet) {
    Bytes in = of_type(8, counting(92));
    in[1] = 0x21;
    in[32] = 0xff;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 40 81 00 00 00 00 00 00 00 00 00 00 00 00 00 2c 2d 00 1c 1d 1e 03 24 25 26 31 52 63 73 00 18");
    expect_not_carried(result, in, {"L12-15", "L25-27", "L31", "L32.7-2", "L33-35", "L39", "L40-43", "L46-47"});
}

TEST(CrossConnectResult, HasTheShortTailWhereL1_5IsClear) {
    const Bytes in = of_type(8);
    EXPECT_EQ(changes(result, in, "L40.0"), "P16.0");
    EXPECT_EQ(changes(result, in, "L43.7"), "P19.7");
    expect_not_carried(result, in, {"L24-27", "L28-30", "L32-35", "L36-38", "L44-47"});
}

TEST(CrossConnectResult, MarksTheCodes3And4InP20_7WithTheShortTailOnly) {
    for (const std::uint32_t code : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 0x103U, 0x10004U, 0x80000003U, 0xffffffffU}) {
        Bytes in = of_type(8);
        put_little(in, 12, 4, code);
        EXPECT_EQ(translate(result, in).out[20], code == 3 || code == 4 ? 0x80 : 0x00) << code;
        set_bit(in, 1, 5);
        EXPECT_EQ(translate(result, in).out[20], 0x00) << code;
    }
}

TEST(CrossConnectResult, WritesTheTwentyBitValueLeastSignificantNibbleFirst) {
    Bytes in = of_type(8);
    put_little(in, 52, 4, 0xfabcde99);
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex({out[27], out[28], out[29]}), "e0 cd ab");
}

// ---------------------------------------------------------------------------------------------------------------------
// Reverse

// Physical patterns with the bits that choose the layout set in every way that matters for the type.
std::vector<Bytes> physical_bases_of_type(std::size_t type) {
    std::vector<Bytes> bases;
    for (const Bytes& pattern : patterns(32)) {
        for (const bool long_tail : {false, true}) {
            for (const bool value : {false, true}) {
                Bytes base = pattern;
                put_discriminant(type, base);
                set_bit(base, 26, 4, long_tail);
                set_bit(base, 1, 2, value);
                bases.push_back(base);
            }
        }
    }
    return bases;
}

TEST(CrossConnectReverse, RestoresWhatItsTypeRestoresAndNothingElse) {
    walk(reverse_result, reverse_model, patterns(32));
    for (std::size_t type = 1; type <= 11; ++type) {
        SCOPED_TRACE("type " + std::to_string(type));
        walk(reverse_result, reverse_model, physical_bases_of_type(type));
    }
    Bytes no_type(32, 0xff);
    put_discriminant(8, no_type);
    set_bit(no_type, 2, 5);
    walk(reverse_result, reverse_model, no_type);
}

TEST(CrossConnectReverse, RestoresRandomRecordsOfEveryType) {
    check_random(reverse_result, reverse_model);
    for (std::size_t type = 1; type <= 11; ++type) {
        SCOPED_TRACE("type " + std::to_string(type));
        check_random(reverse_result, reverse_model, 500, [type](Bytes& in) { put_discriminant(type, in); });
    }
}

TEST(CrossConnectReverse, DecidesTheTypeByTheFirstTestThatHolds) {
    struct Case {
        const char* marks;  // P0-2
        unsigned p26;
        unsigned type;
    };
    for (const Case& c : {
             Case{"11 80 00", 0x00, 1},  Case{"d1 82 30", 0x08, 1},  // P1.7 before everything
             Case{"51 00 00", 0x00, 2},  Case{"d1 02 30", 0x08, 2},  // P0.6 before P0.7
             Case{"91 00 00", 0x00, 3},  Case{"91 02 00", 0x08, 3},  // P0.7 before P1.1
             Case{"91 00 20", 0x00, 4},  Case{"91 02 20", 0x08, 4},  Case{"11 02 00", 0x00, 9},
             Case{"11 02 10", 0x08, 9},  // P1.1 before P26.3
             Case{"91 02 10", 0x00, 9},  Case{"11 02 20", 0x00, 10}, Case{"91 02 30", 0x08, 10},
             Case{"11 00 00", 0x08, 11}, Case{"11 00 30", 0x08, 11},  // P26.3 before the rest
             Case{"91 00 10", 0x08, 11}, Case{"91 00 30", 0x08, 11}, Case{"11 00 00", 0x00, 5},
             Case{"11 00 10", 0x00, 5},  Case{"91 00 30", 0x00, 6},  Case{"91 00 10", 0x00, 7},
             Case{"11 00 20", 0x00, 0},  Case{"11 00 30", 0x00, 0},  // no test holds
             Case{"11 7d 4f", 0x77, 5},                              // bits without a part in it
         }) {
        Bytes in = with(Bytes(32), {{0, c.marks}});
        in[26] = static_cast<std::uint8_t>(c.p26);
        const Bytes out = translate(reverse_result, in, Bytes(92, 0xff)).out;
        EXPECT_EQ(little(out, 8, 4), c.type) << c.marks << " " << c.p26;
    }
}

TEST(CrossConnectReverse, RestoresNoUnionFieldWithoutAType) {
    Bytes in(32, 0xff);
    in[0] = 0x11;
    in[1] = 0x7d;
    in[2] = 0xef;   // P2.5 without P0.7
    in[26] = 0x67;  // neither the long tail nor type 11
    const Bytes out = translate(reverse_result, in).out;
    EXPECT_EQ(hex(out), hex(with(Bytes(92), {{0, "a7 dd 57 8b 1f"}, {40, "ff ff ff ff"}, {53, "ff ff 0f"}})));
}

TEST(CrossConnectReverse, ReadsTheSelectorOfType11FromItsLowThreeBits) {
    for (const auto& [physical, selector] : {std::pair{0x01, 0},
                                             {0x02, 1},
                                             {0x04, 2},
                                             {0x06, 2},
                                             {0x03, 0},
                                             {0x05, 0},
                                             {0x07, 0},
                                             {0x00, 0},
                                             {0xf8, 0},
                                             {0xfa, 1},
                                             {0xfe, 2}}) {
        Bytes in(32);
        in[26] = 0x08;
        in[7] = static_cast<std::uint8_t>(physical);
        EXPECT_EQ(translate(reverse_result, in, Bytes(92, 0xff)).out[60], selector) << physical;
    }
}

TEST(CrossConnectReverse, TakesOneFromTheCounterWithWrapAround) {
    for (const char* marks : {"11 80 00", "51 00 00"}) {
        Bytes in = with(Bytes(32), {{0, marks}});
        EXPECT_EQ(translate(reverse_result, in).out[52], 255);
        in[14] = 1;
        EXPECT_EQ(translate(reverse_result, in).out[52], 0);
    }
}

TEST(CrossConnectReverse, ReadsTwentyFourBitsOfTheLongTailsFirstValue) {
    Bytes in = with(Bytes(32), {{16, "11 22 33"}});
    in[26] = 0x10;
    EXPECT_EQ(hex(translate(reverse_result, in).out),
              hex(with(Bytes(92), {{1, "22"}, {8, "05"}, {44, "11 22 33 00"}})));
}

TEST(CrossConnectReverse, ReadsP10And11OfTypes3And4OnlyWhereP1_2IsClear) {
    for (const char* p2 : {"00", "20"}) {
        Bytes in = with(Bytes(32), {{0, "91 01"}, {2, p2}, {7, "ab cd ef 48 49"}});
        Bytes out = translate(reverse_result, in).out;
        EXPECT_EQ(hex(Bytes(out.begin() + 60, out.begin() + 76)), "de bc 0a 00 00 00 00 00 00 00 00 00 48 49 00 00");
        set_bit(in, 1, 2);
        out = translate(reverse_result, in).out;
        EXPECT_EQ(hex(Bytes(out.begin() + 60, out.begin() + 76)), "00 00 00 00 ab cd 0f 00 00 00 00 00 00 00 00 00");
    }
}

TEST(CrossConnectReverse, PutsP22_7IntoTwoFlagsOfTypes9And10WhateverTheTail) {
    for (const char* p2 : {"40", "60"}) {
        Bytes in = with(Bytes(32), {{0, "11 03"}, {2, p2}});
        EXPECT_EQ(changes(reverse_result, in, "P22.7"), "L3.5 L3.4");
        in[26] = 0x10;
        EXPECT_EQ(changes(reverse_result, in, "P22.7"), "L3.5 L3.4");
        EXPECT_EQ(changes(reverse_result, in, "P8.0"), "L66.0");
        EXPECT_EQ(changes(reverse_result, in, "P11.0"), "L71.0");
    }
    for (const char* marks : {"11 81 00", "91 01 00", "11 00 10"}) {
        EXPECT_EQ(changes(reverse_result, with(Bytes(32), {{0, marks}}), "P22.7"), "") << marks;
    }
}

TEST(CrossConnectReverse, DoesNotReadTheSummariesAndTheCodeBit) {
    Bytes ones(32, 0xff);
    set_bit(ones, 26, 4, false);  // the long tail has a value at P19-21
    for (const Bytes& base : {Bytes(32), ones}) {
        expect_not_carried(reverse_result, base, {"P2.1-0", "P20-25"});
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

TEST(CrossConnect, ComesBackWithTheFieldsOfItsType) {
    using Parts = std::initializer_list<std::pair<std::size_t, std::string_view>>;
    const auto back = [](std::uint64_t type) {
        return hex(translate(reverse_result, translate(result, of_type(type, counting(92))).out).out);
    };
    const Bytes common = with(Bytes(92), {{0, "00 01 02 03 04"}, {40, "28 29 2a 2b"}, {53, "35 36 07"}});
    const auto expected = [&common](Parts parts) { return hex(with(common, parts)); };

    EXPECT_EQ(back(1), expected({{8, "01"}, {48, "30 31 32 33 34"}, {56, "38 39"}, {60, "3c 3d"}}));
    EXPECT_EQ(back(2),
              expected({{8, "02"}, {48, "30 31 32 33 34"}, {56, "38 39"}, {60, "3c 3d"}, {64, "40"}, {68, "44"}}));
    EXPECT_EQ(back(3), expected({{8, "03"}, {56, "38 39 3a 3b 3c 3d 0e"}, {72, "48 49"}, {76, "4c 4d 4e"}}));
    EXPECT_EQ(back(4), expected({{8, "04"}, {56, "38 39 3a 3b 3c 3d 0e"}, {72, "48 49"}, {76, "4c 4d 4e"}}));
    EXPECT_EQ(back(5), expected({{1, "03"}, {8, "05"}, {56, "38 39 3a"}}));
    EXPECT_EQ(back(6), expected({{1, "03"}, {8, "06"}, {56, "38 39 3a"}}));
    EXPECT_EQ(back(7), expected({{1, "03"}, {8, "07"}, {56, "38 39 3a"}}));
    EXPECT_EQ(back(8), expected({{1, "03"}, {8, "05"}}));
    EXPECT_EQ(back(9), expected({{3, "07"}, {8, "09"}, {56, "38 39 3a 3b 3c 3d 3e 3f 00 00 01 43 44 05 00 00 48"}}));
    EXPECT_EQ(back(10), expected({{3, "07"}, {8, "0a"}, {56, "38 39 3a 3b 3c 3d 3e 3f 00 00 01 43 44 05 00 00 48"}}));
    EXPECT_EQ(back(11), expected({{1, "03"}, {8, "0b"}, {56, "38 39 3a"}, {60, "02"}, {64, "40 41 42 43 44 45 46"}}));
}

TEST(CrossConnect, ComesBackWithTheValueOfTypes3And4WhereL4_4IsSet) {
    for (const std::uint64_t type : {3U, 4U}) {
        Bytes in = of_type(type, counting(92));
        in[4] = 0x14;
        Bytes expected = with(Bytes(92), {{0, "00 01 02 03 14"},
                                          {40, "28 29 2a 2b"},
                                          {53, "35 36 07 38 39 3a 3b"},
                                          {64, "40 41 02"},
                                          {76, "4c 4d 4e"}});
        put_little(expected, 8, 4, type);
        EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out), hex(expected));
    }
}

TEST(CrossConnect, ComesBackWithTheLongTail) {
    Bytes in = of_type(5, counting(92));
    in[1] = 0x21;
    in[32] = 0xff;
    EXPECT_EQ(hex(translate(reverse_result, translate(result, in).out).out),
              hex(with(Bytes(92), {{0, "00 23 02 03 04"},
                                   {8, "05"},
                                   {24, "18"},
                                   {28, "1c 1d 1e"},
                                   {32, "03"},
                                   {36, "24 25 26"},
                                   {44, "2c 2d"},
                                   {53, "35 36 07 38 39 3a"}})));
}

TEST(CrossConnect, OfType8ComesBackAsType5) {
    const Bytes out = translate(result, of_type(8)).out;
    EXPECT_EQ(hex(translate(reverse_result, out).out), hex(with(Bytes(92), {{1, "02"}, {8, "05"}})));
}

TEST(CrossConnect, ComesBackWithL3_2OnlyFromTypes9And10) {
    for (std::uint64_t type = 1; type <= 11; ++type) {
        for (const bool sent : {false, true}) {
            Bytes in = of_type(type);
            set_bit(in, 3, 2, sent);
            const Bytes logical = translate(reverse_result, translate(result, in).out).out;
            EXPECT_EQ(bit(logical, 3, 2), type == 9 || type == 10) << "type " << type;
        }
    }
}

TEST(CrossConnect, ComesBackWithL1_1SetWhereTheTypeDoesNotCarryIt) {
    for (std::uint64_t type = 1; type <= 11; ++type) {
        const bool carried = type <= 4 || type == 9 || type == 10;
        for (const bool sent : {false, true}) {
            Bytes in = of_type(type);
            set_bit(in, 1, 1, sent);
            const Bytes logical = translate(reverse_result, translate(result, in).out).out;
            EXPECT_EQ(bit(logical, 1, 1), !carried || sent) << "type " << type;
        }
    }
}

TEST(CrossConnect, OfTypes9And10ComesBackWithTheMarkersAndTheSummary) {
    for (const std::uint64_t type : {9U, 10U}) {
        Bytes in = of_type(type);
        set_bit(in, 3, 4);
        in[71] = 0xff;
        Bytes logical = translate(reverse_result, translate(result, in).out).out;
        EXPECT_EQ(logical[3], 0x04);
        EXPECT_EQ(logical[66], 0x01);
        EXPECT_EQ(logical[71], 0x00);
        set_bit(in, 1, 5);  // only now the summary is written
        logical = translate(reverse_result, translate(result, in).out).out;
        EXPECT_EQ(logical[3], 0x34);
    }
}

TEST(CrossConnect, DoesNotComeBackWithTheCodeAndTheSummarisedFlags) {
    Bytes in = of_type(5);
    put_little(in, 12, 4, 4);
    set_bit(in, 2, 7);
    in[3] = 0x70;
    in[52] = 0x99;
    const Bytes out = translate(result, in).out;
    EXPECT_EQ(hex({out[0], out[1], out[2], out[20]}), "11 00 13 80");
    EXPECT_EQ(hex(translate(reverse_result, out).out), hex(with(Bytes(92), {{1, "02"}, {8, "05"}})));
}

TEST(CrossConnect, IgnoresTheLengthArgument) {
    for (const auto& [translator, in] :
         {std::pair{key, counting(4)}, {result, of_type(9, counting(92))}, {reverse_result, counting(32)}}) {
        expect_length_ignored(translator, in);
    }
}

TEST(CrossConnect, IsTable23) {
    EXPECT_EQ(l2p_ucode_func_table[23].key, &xid_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[23].result, &xid_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[23], &xid_type_logical_xlate_result);
}

}  // namespace
