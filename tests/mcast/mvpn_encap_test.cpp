// Table 52: multicast encapsulation entries (types 2, 3 and 4) and MLC entries (types 1 and 5), by their own names and
// through the table's dispatchers, and the reverse translator that is told the type.
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

using support::bytes;
using support::Bytes;
using support::changes;
using support::check_random;
using support::counting;
using support::fill;
using support::hex;
using support::little;
using support::Model;
using support::Outcome;
using support::put_little;
using support::Reply;
using support::Rows;
using support::translate;
using support::translate_with_length;
using support::Translator;
using support::walk;

const Translator table_key = FORWARD(ipmc_mofrr_mvpn_key_xlate, 8, 3);
const Translator encap_key = FORWARD(ipmc_encap_info_key_xlate, 8, 3);
const Translator mlc_key = FORWARD(ipmc_mlc_key_xlate, 8, 3);
const Translator table_result = FORWARD(ipmc_mofrr_mvpn_res_xlate, 42, 32);
const Translator encap_result = FORWARD(mvpn_encap_info_res_xlate, 42, 32);
const Translator mlc_result = FORWARD(ipmc_mlc_res_xlate, 42, 32);

Translator readback(std::uint32_t type) {
    return support::reverse_by_type("ipmc_encap_logical_res_xlate", ipmc_encap_logical_res_xlate, 32, 48, type);
}

std::uint64_t type_of(const Bytes& logical) { return little(logical, 0, 4); }

Reply encap_key_model(const Bytes& in, Bytes& out) {
    switch (type_of(in)) {
        case 2:
            put_little(out, 0, 3, little(in, 4, 4) | 0x200000);
            break;
        case 3:
        case 4:
            put_little(out, 0, 3, little(in, 4, 4) | 0x300000);
            break;
        default:
            break;  // the three bytes stay as they were
    }
    return {.length = 3};
}

Reply mlc_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-1 = L4-5",
        "P2.7-4 = L0.3-0",
        "P2.3-0 = 0",
    };
    rows.apply(in, out);
    return {.length = 3};
}

Reply mlc_result_model(const Bytes&, Bytes& out) {
    fill(out, 0, 31);
    out[0] = 0x11;
    return {.length = 32};
}

Reply encap_result_model(const Bytes& in, Bytes& out) {
    static const Rows type_2{
        "P1.7 = 1",        "P4-5 = L24-25",        "P6 = L8",         "P7 = L9", "P8 = L10", "P10-13 = swap L12-15",
        "P14-15 = L16-17", "P16-18 = swap L20-22", "P19-20 = L26-27",
    };
    static const Rows type_3{
        "P1.6 = 1",
        "P1.5 = L4.0",
        "P1.4 = L4.1",
        "P2.1 = L4.2",
        "P2.0 = L4.3",
        "P4-6 = swap L8-10",
        "P7-9 = swap L12-14",
        "P10-12 = L16-18",
        "P13-15 = L20-22",
        "P16-18 = swap L32-34",
        "P19-21 = swap L36-38",
        "P27-29 = swap L24-26",
        "P30-31 = swap L28-29",
    };
    static const Rows type_4{
        "P0.7 = 1",
        "P0.6 = L4.1",
        "P4-6 = swap L8-10",
        "P7-9 = swap L12-14",
        "P10-12 = swap L16-18",
        "P13-15 = swap L20-22",
        "P16 = L24",
        "P17 = L25",
        "P18 = L26",
        "P19 = L28",
        "P20 = L29",
        "P21 = L30",
        "P22-24 = label L32-35 flag L36.0",
        "P27-29 = swap L37-39",
        "P30-31 = swap L40-41",
    };
    fill(out, 0, 31);
    out[0] = 0x11;
    switch (type_of(in)) {
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
            break;
    }
    return {.length = 32};
}

// What the two dispatchers have in common.
Reply dispatched(const Bytes& in, Bytes& out, Reply (*encap)(const Bytes&, Bytes&),
                 Reply (*mlc)(const Bytes&, Bytes&)) {
    switch (type_of(in)) {
        case 1:
        case 5:
            return mlc(in, out);
        case 2:
        case 3:
        case 4:
            return encap(in, out);
        default:
            return {.status = NPXLATE_INVALID, .length = std::nullopt};
    }
}

Reply table_key_model(const Bytes& in, Bytes& out) { return dispatched(in, out, encap_key_model, mlc_key_model); }

Reply table_result_model(const Bytes& in, Bytes& out) {
    return dispatched(in, out, encap_result_model, mlc_result_model);
}

Model readback_model(std::uint32_t type) {
    return [type](const Bytes& in, Bytes& out) -> Reply {
        static const Rows type_2{
            "L24-25 = P4-5",        "L8 = P6",         "L9 = P7", "L10 = P8", "L12-15 = swap P10-13", "L16-17 = P14-15",
            "L20-22 = swap P16-18", "L26-27 = P19-20",
        };
        static const Rows type_3{
            "L4.0 = P1.5",          "L4.1 = P1.4",          "L4.2 = P2.1",          "L4.3 = P2.0",
            "L8-10 = swap P4-6",    "L12-14 = swap P7-9",   "L16-18 = P10-12",      "L20-22 = P13-15",
            "L28-29 = swap P30-31", "L24-26 = swap P27-29", "L32-34 = swap P16-18", "L36-38 = swap P19-21",
        };
        static const Rows type_4{
            "L4.1 = P0.6",
            "L8-10 = swap P4-6",
            "L12-14 = swap P7-9",
            "L16-18 = swap P10-12",
            "L20-22 = swap P13-15",
            "L24 = P16",
            "L25 = P17",
            "L26 = P18",
            "L28 = P19",
            "L29 = P20",
            "L30 = P21",
            "L32-35 = label P22-24",
            "L40-41 = swap P30-31",
            "L37 = P29",
            "L38 = P28",
            "L39 = P27",
        };
        if (type == 0 || type > 5) {
            return {.status = NPXLATE_INVALID, .length = std::nullopt};
        }
        fill(out, 0, 47);
        put_little(out, 0, 4, type);
        if (type == 2) {
            type_2.apply(in, out);
        } else if (type == 3) {
            type_3.apply(in, out);
        } else if (type == 4) {
            type_4.apply(in, out);
        }
        return {};
    };
}

constexpr std::uint32_t forward_types[] = {0, 1, 2, 3, 4, 5, 6, 7, 0x12, 0x102, 0x80000003, 0xffffffff};

Bytes with_type(Bytes record, std::uint32_t type) {
    put_little(record, 0, 4, type);
    return record;
}

Bytes key_of(std::uint32_t type, std::uint32_t index) {
    Bytes record = with_type(Bytes(8), type);
    put_little(record, 4, 4, index);
    return record;
}

// All flags set, and every other byte telling its position.
Bytes sample(std::uint32_t type) {
    Bytes record = with_type(counting(42), type);
    record[4] = 0x0f;
    return record;
}

const support::Models models{{table_key, table_key_model},       {encap_key, encap_key_model},
                             {mlc_key, mlc_key_model},           {table_result, table_result_model},
                             {encap_result, encap_result_model}, {mlc_result, mlc_result_model}};
const support::Models readback_models{"ipmc_encap_logical_res_xlate", [](std::size_t, std::uint32_t type) {
                                          return support::Modelled{readback(type), readback_model(type)};
                                      }};

TEST(MvpnEncap, EveryForwardTranslatorCarriesItsRowsAndNothingElse) {
    const struct {
        const Translator& translator;
        Reply (*model)(const Bytes&, Bytes&);
    } readings[] = {
        {table_key, table_key_model},       {encap_key, encap_key_model},       {mlc_key, mlc_key_model},
        {table_result, table_result_model}, {encap_result, encap_result_model}, {mlc_result, mlc_result_model},
    };
    for (const auto& [translator, model] : readings) {
        const std::size_t size = translator.in_size;
        for (const std::uint32_t type : forward_types) {
            for (const Bytes& base : {Bytes(size), Bytes(size, 0xff), counting(size, 0x81)}) {
                walk(translator, model, with_type(base, type));
            }
            check_random(translator, model, 300, [type](Bytes& in) { put_little(in, 0, 4, type); });
        }
        check_random(translator, model);
    }
}

TEST(MvpnEncap, ReadbackOfEveryTypeRestoresItsRowsAndNothingElse) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 0x102U, 0x80000002U, 0xffffffffU}) {
        walk(readback(type), readback_model(type), {Bytes(32), Bytes(32, 0xff), counting(32, 0x80)});
        check_random(readback(type), readback_model(type), 500);
    }
}

TEST(MvpnEncap, KeysOfTheEncapsulationTypesHoldCodeAndIndexLeastSignificantByteFirst) {
    for (const Translator& translator : {table_key, encap_key}) {
        EXPECT_EQ(translate(translator, key_of(4, 0x12345)).length, 3U);
        EXPECT_EQ(hex(translate(translator, key_of(4, 0x12345)).out), "45 23 31");
        EXPECT_EQ(hex(translate(translator, key_of(3, 0x12345)).out), "45 23 31");
        EXPECT_EQ(hex(translate(translator, key_of(2, 0x12345)).out), "45 23 21");
    }
}

TEST(MvpnEncap, IndexBitsAboveTheTwentiethAreOredIntoTheCode) {
    EXPECT_EQ(hex(translate(encap_key, key_of(2, 0xff500000)).out), "00 00 70");
    EXPECT_EQ(hex(translate(encap_key, key_of(3, 0xff400000)).out), "00 00 70");
    EXPECT_EQ(changes(encap_key, key_of(2, 0), "L6.5"), "") << "already set by the code";
    EXPECT_EQ(changes(encap_key, key_of(2, 0), "L6.4"), "P2.4");
    EXPECT_EQ(changes(encap_key, key_of(4, 0), "L6.4"), "");
    EXPECT_EQ(changes(encap_key, key_of(4, 0), "L6.7"), "P2.7");
    EXPECT_EQ(changes(encap_key, key_of(4, 0), "L7.0"), "");
}

TEST(MvpnEncap, KeysOfTheMlcTypesHoldSixteenBitsOfTheIndexAndTheType) {
    for (const Translator& translator : {table_key, mlc_key}) {
        EXPECT_EQ(translate(translator, key_of(5, 0x1234)).length, 3U);
        EXPECT_EQ(hex(translate(translator, key_of(5, 0x1234)).out), "34 12 50");
        EXPECT_EQ(hex(translate(translator, key_of(1, 0x1234)).out), "34 12 10");
        EXPECT_EQ(hex(translate(translator, key_of(1, 0xffff1234)).out), "34 12 10");
    }
}

TEST(MvpnEncap, MlcKeyCalledByNameTakesTheLowFourBitsOfAnyType) {
    EXPECT_EQ(hex(translate(mlc_key, key_of(0, 0x1234)).out), "34 12 00");
    EXPECT_EQ(hex(translate(mlc_key, key_of(4, 0x1234)).out), "34 12 40");
    EXPECT_EQ(hex(translate(mlc_key, key_of(0xffffff13, 0x1234), bytes("aa aa aa")).out), "34 12 30");
}

TEST(MvpnEncap, EncapKeyCalledByNameLeavesTheBytesOfOtherTypesAlone) {
    for (const std::uint32_t type : {0U, 1U, 5U, 6U, 0x102U, 0x80000003U}) {
        const Bytes before = bytes("de ad bf");
        const Outcome outcome = translate(encap_key, key_of(type, 0x12345), before);
        EXPECT_EQ(outcome.status, NPXLATE_OK) << type;
        EXPECT_EQ(outcome.length, 3U) << type;
        EXPECT_EQ(outcome.out, before) << type;
    }
}

TEST(MvpnEncap, DispatchersRefuseOtherTypesAndWriteNothing) {
    for (const std::uint32_t type : {0U, 6U, 7U, 0x11U, 0x102U, 0x10003U, 0x80000004U, 0xffffffffU}) {
        const Bytes key = key_of(type, 0x12345);
        const Bytes key_before = bytes("de ad bf");
        EXPECT_EQ(translate(table_key, key, key_before), (Outcome{NPXLATE_INVALID, std::nullopt, key_before, key}))
            << type;
        const Bytes record = sample(type);
        const Bytes before = counting(32, 0x80);
        EXPECT_EQ(translate(table_result, record, before), (Outcome{NPXLATE_INVALID, std::nullopt, before, record}))
            << type;
    }
}

TEST(MvpnEncap, DispatchersGiveWhatTheMembersGive) {
    for (const std::uint32_t type : {1U, 5U}) {
        EXPECT_EQ(translate(table_key, key_of(type, 0x54321)), translate(mlc_key, key_of(type, 0x54321))) << type;
        EXPECT_EQ(translate(table_result, sample(type)), translate(mlc_result, sample(type))) << type;
    }
    for (const std::uint32_t type : {2U, 3U, 4U}) {
        EXPECT_EQ(translate(table_key, key_of(type, 0x54321)), translate(encap_key, key_of(type, 0x54321))) << type;
        EXPECT_EQ(translate(table_result, sample(type)), translate(encap_result, sample(type))) << type;
    }
}

constexpr const char* header_alone =
    "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

TEST(MvpnEncap, MlcResultIsTheHeaderWhateverTheRecord) {
    for (const Bytes& record : {Bytes(42), Bytes(42, 0xff), sample(1), sample(5), sample(4)}) {
        const Outcome outcome = translate(mlc_result, record, Bytes(32, 0xff));
        EXPECT_EQ(outcome.status, NPXLATE_OK);
        EXPECT_EQ(outcome.length, 32U);
        EXPECT_EQ(hex(outcome.out), header_alone);
    }
}

TEST(MvpnEncap, EncapResultCalledByNameGivesOtherTypesTheHeaderAlone) {
    for (const std::uint32_t type : {0U, 1U, 5U, 6U, 0x102U, 0x80000004U}) {
        const Outcome outcome = translate(encap_result, sample(type), Bytes(32, 0xff));
        EXPECT_EQ(outcome.status, NPXLATE_OK) << type;
        EXPECT_EQ(outcome.length, 32U) << type;
        EXPECT_EQ(hex(outcome.out), header_alone) << type;
    }
}

TEST(MvpnEncap, ResultOfEachTypePutsEveryValueInItsPlace) {
    for (const Translator& translator : {table_result, encap_result}) {
        EXPECT_EQ(hex(translate(translator, sample(2)).out),
                  "11 80 00 00 18 19 08 09 0a 00 0f 0e 0d 0c 10 11 16 15 14 1a 1b 00 00 00 00 00 00 00 00 00 00 00");
        EXPECT_EQ(hex(translate(translator, sample(3)).out),
                  "11 70 03 00 0a 09 08 0e 0d 0c 10 11 12 14 15 16 22 21 20 26 25 24 00 00 00 00 00 1a 19 18 1d 1c");
        EXPECT_EQ(hex(translate(translator, sample(4)).out),
                  "d1 00 00 00 0a 09 08 0e 0d 0c 12 11 10 16 15 14 18 19 1a 1c 1d 1e 22 12 00 00 00 27 26 25 29 28");
    }
}

TEST(MvpnEncap, EachFlagHasItsBit) {
    EXPECT_EQ(changes(encap_result, sample(3), "L4.0"), "P1.5");
    EXPECT_EQ(changes(encap_result, sample(3), "L4.1"), "P1.4");
    EXPECT_EQ(changes(encap_result, sample(3), "L4.2"), "P2.1");
    EXPECT_EQ(changes(encap_result, sample(3), "L4.3"), "P2.0");
    EXPECT_EQ(changes(encap_result, sample(3), "L4.4"), "");
    EXPECT_EQ(changes(encap_result, sample(4), "L4.1"), "P0.6");
    for (const char* unused : {"L4.0", "L4.2", "L4.3", "L4.7"}) {
        EXPECT_EQ(changes(encap_result, sample(4), unused), "") << unused;
    }
    for (const char* unused : {"L4.0", "L4.1", "L4.2", "L4.3"}) {
        EXPECT_EQ(changes(encap_result, sample(2), unused), "") << unused;
    }
}

TEST(MvpnEncap, EachTypeIgnoresWhatItDoesNotUse) {
    const struct {
        std::uint32_t type;
        std::vector<const char*> unused;
    } cases[] = {
        {2, {"L5.0", "L11.0", "L18.0", "L19.7", "L23.0", "L28.0", "L32.0", "L36.0", "L40.0", "L41.7"}},
        {3, {"L5.0", "L11.0", "L15.0", "L19.0", "L23.0", "L27.0", "L30.0", "L35.0", "L39.0", "L40.0"}},
        {4, {"L5.0", "L11.0", "L15.0", "L19.0", "L23.0", "L27.0", "L31.0", "L34.4", "L35.0", "L36.1", "L36.7"}},
    };
    for (const auto& [type, unused] : cases) {
        for (const char* position : unused) {
            EXPECT_EQ(changes(encap_result, sample(type), position), "") << "type " << type << " " << position;
        }
    }
}

TEST(MvpnEncap, TypeFourPacksItsLabelAndTheFlagAfterIt) {
    Bytes record = with_type(Bytes(42), 4);
    put_little(record, 32, 4, 0x12345);
    record[36] = 0x01;
    EXPECT_EQ(hex(translate(encap_result, record).out),
              "91 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 12 34 51 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(encap_result, record, "L36.0"), "P24.0");
    EXPECT_EQ(changes(encap_result, record, "L37.0"), "P29.0");
    EXPECT_EQ(changes(encap_result, record, "L39.7"), "P27.7");
}

TEST(MvpnEncap, ReadbackOfTheMlcTypesIsTheTypeAlone) {
    for (const Bytes& physical : {Bytes(32), Bytes(32, 0xff), counting(32)}) {
        EXPECT_EQ(hex(translate(readback(1), physical).out),
                  "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
        EXPECT_EQ(hex(translate(readback(5), physical, Bytes(48, 0xff)).out),
                  "05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    }
}

TEST(MvpnEncap, ReadbackOfEachTypePutsEveryValueInItsPlace) {
    EXPECT_EQ(hex(translate(readback(2), counting(32)).out),
              hex(bytes("02 00 00 00 00 00 00 00 06 07 08 00 0d 0c 0b 0a"      // L0-15
                        "0e 0f 00 00 12 11 10 00 04 05 13 14 00 00 00 00"      // L16-31
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));  // L32-47
    EXPECT_EQ(hex(translate(readback(3), counting(32)).out),
              hex(bytes("03 00 00 00 04 00 00 00 06 05 04 00 09 08 07 00"
                        "0a 0b 0c 00 0d 0e 0f 00 1d 1c 1b 00 1f 1e 00 00"
                        "12 11 10 00 15 14 13 00 00 00 00 00 00 00 00 00")));
    EXPECT_EQ(hex(translate(readback(4), counting(32)).out),
              hex(bytes("04 00 00 00 00 00 00 00 06 05 04 00 09 08 07 00"
                        "0c 0b 0a 00 0f 0e 0d 00 10 11 12 00 13 14 15 00"
                        "71 61 01 00 00 1d 1c 1b 1f 1e 00 00 00 00 00 00")));
}

TEST(MvpnEncap, ReadbackTakesTheTypeFromTheCallerAndNotFromTheRecord) {
    // The type bits of all variants, P0.7, P1.7 and P1.6, change nothing.
    for (const std::uint32_t type : {1U, 2U, 3U, 4U, 5U}) {
        for (const char* position : {"P0.7", "P0.4", "P0.0", "P1.7", "P1.6"}) {
            EXPECT_EQ(changes(readback(type), counting(32), position), "") << type << " " << position;
        }
    }
    EXPECT_EQ(changes(readback(3), Bytes(32), "P1.5"), "L4.0");
    EXPECT_EQ(changes(readback(3), Bytes(32), "P1.4"), "L4.1");
    EXPECT_EQ(changes(readback(3), Bytes(32), "P2.1"), "L4.2");
    EXPECT_EQ(changes(readback(3), Bytes(32), "P2.0"), "L4.3");
    EXPECT_EQ(changes(readback(4), Bytes(32), "P0.6"), "L4.1");
    EXPECT_EQ(changes(readback(3), Bytes(32), "P0.6"), "");
    EXPECT_EQ(changes(readback(4), Bytes(32), "P1.4"), "");
}

TEST(MvpnEncap, TypeFourReadsBackWithoutTheFlagOfItsLabel) {
    for (const char* position : {"P24.0", "P24.3", "P25.0", "P26.7"}) {
        EXPECT_EQ(changes(readback(4), Bytes(32), position), "") << position;
    }
    Bytes record = with_type(Bytes(42), 4);
    put_little(record, 32, 4, 0x12345);
    put_little(record, 36, 4, 0xabcdef01);
    EXPECT_EQ(hex(translate(readback(4), translate(table_result, record).out).out),
              hex(bytes("04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                        "45 23 01 00 00 ef cd ab 00 00 00 00 00 00 00 00")));
}

TEST(MvpnEncap, EachTypeComesBackButForWhatItDoesNotUse) {
    const auto round_trip = [](std::uint32_t type) {
        return hex(translate(readback(type), translate(table_result, sample(type)).out).out);
    };
    EXPECT_EQ(round_trip(2), hex(bytes("02 00 00 00 00 00 00 00 08 09 0a 00 0c 0d 0e 0f"
                                       "10 11 00 00 14 15 16 00 18 19 1a 1b 00 00 00 00"
                                       "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00")));
    EXPECT_EQ(round_trip(3), hex(bytes("03 00 00 00 0f 00 00 00 08 09 0a 00 0c 0d 0e 00"
                                       "10 11 12 00 14 15 16 00 18 19 1a 00 1c 1d 00 00"
                                       "20 21 22 00 24 25 26 00 00 00 00 00 00 00 00 00")));
    EXPECT_EQ(round_trip(4), hex(bytes("04 00 00 00 02 00 00 00 08 09 0a 00 0c 0d 0e 00"
                                       "10 11 12 00 14 15 16 00 18 19 1a 00 1c 1d 1e 00"
                                       "20 21 02 00 00 25 26 27 28 29 00 00 00 00 00 00")));
}

TEST(MvpnEncap, ReadbackRefusesTypesOutsideOneToFiveAndWritesNothing) {
    const Bytes in = counting(32);
    const Bytes before = counting(48, 0x80);
    for (const std::uint32_t type : {0U, 6U, 7U, 0x100U, 0x102U, 0x80000001U, 0xffffffffU}) {
        for (const std::int32_t length : {32, 31, 0}) {
            EXPECT_EQ(translate_with_length(readback(type), in, length, before),
                      (Outcome{NPXLATE_INVALID, std::nullopt, before, in}))
                << type << " " << length;
        }
    }
}

TEST(MvpnEncap, ReadbackTakesItsExactLengthAndElseWritesNothing) {
    const Bytes in = counting(32);
    const Bytes before = counting(48, 0x80);
    for (const std::uint32_t type : {1U, 2U, 3U, 4U, 5U}) {
        for (const std::int32_t length : {INT32_MIN, -32, -1, 0, 31, 33, 48, 0x120, INT32_MAX}) {
            EXPECT_EQ(translate_with_length(readback(type), in, length, before),
                      (Outcome{NPXLATE_INVALID, std::nullopt, before, in}))
                << type << " " << length;
        }
        EXPECT_EQ(translate_with_length(readback(type), in, 32, before).status, NPXLATE_OK) << type;
    }
}

TEST(MvpnEncap, ForwardTranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {table_key, encap_key, mlc_key, table_result, encap_result, mlc_result}) {
        const Bytes in = with_type(counting(translator.in_size), 3);
        expect_length_ignored(translator, in);
    }
}

TEST(MvpnEncap, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[52].key, ipmc_mofrr_mvpn_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[52].result, ipmc_mofrr_mvpn_res_xlate);
    // The slot's type lacks the fourth argument; the address is what counts.
    const auto address = [](auto* function) { return reinterpret_cast<void (*)()>(function); };
    EXPECT_EQ(address(p2l_ucode_func_table[52]), address(ipmc_encap_logical_res_xlate));
}

}  // namespace
