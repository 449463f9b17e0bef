#include <string>
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

const Translator key = FORWARD(srv6_sida_key_xlate, 3, 3);
const Translator either = FORWARD(srv6_sida_res_xlate, 80, 32);
const Translator list = FORWARD(srv6_array_res_xlate, 80, 32);
const Translator information = FORWARD(srv6_info_res_xlate, 80, 32);
const Translator encapsulation_back = REVERSE(ipv6_srh_encap_logical_res_xlate, 32, 80);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

const Rows list_head{
    "P0-31 = 0", "P0 = 0x91", "P1.0 = L1.0", "P1.1 = L1.1", "P1.2 = L1.2", "P1.3 = L1.3",
};
const Rows information_head{"P0-31 = 0", "P0 = 0x11", "P0.7 = 0", "P0.6 = L1.0", "P1.2-0 = L2.2-0"};
// Bytes 1 to 6 of each segment identifier.
const Rows segments[] = {{"P2-7 = L17-22"}, {"P8-13 = L33-38"}, {"P14-19 = L49-54"}, {"P20-25 = L65-70"}};

Reply list_model(Bytes& in, Bytes& out) {
    if (!bit(in, 0, 0)) {
        return Reply{.status = 22, .length = {}};
    }
    list_head.apply(in, out);
    for (const Rows& segment : segments) {
        segment.apply(in, out);
    }
    return Reply{.status = 0, .length = 32};
}

unsigned function_code(std::uint64_t function) {
    switch (function) {
        case 30:
            return 4;
        case 31:
            return 3;
        case 32:
            return 2;
        case 33:
            return 1;
        default:
            return 0;
    }
}

Reply information_model(Bytes& in, Bytes& out) {
    if (bit(in, 0, 0)) {
        return Reply{.status = 22, .length = {}};
    }
    information_head.apply(in, out);
    set_bits(out, 1, 7, 3, function_code(little(in, 4, 4)));
    if (in[2] > 4) {
        return Reply{.status = 34, .length = {}};
    }
    for (std::size_t k = 0; k < in[2]; ++k) {
        segments[k].apply(in, out);
    }
    return Reply{.status = 0, .length = 32};
}

Reply either_model(Bytes& in, Bytes& out) {
    Reply reply = bit(in, 0, 0) ? list_model(in, out) : information_model(in, out);
    reply.status = 0;  // not passed on
    return reply;
}

Bytes of_kind(Bytes in, bool is_list) {
    set_bit(in, 0, 0, is_list);
    return in;
}

// An information record of `pattern` with a count and a function.
Bytes information_record(Bytes pattern, unsigned count, unsigned function) {
    pattern[2] = static_cast<std::uint8_t>(count);
    put_little(pattern, 4, 4, function);
    return of_kind(std::move(pattern), false);
}

// Both kinds over several patterns, the information records of every count and function.
std::vector<Bytes> bases() {
    std::vector<Bytes> all;
    for (const Bytes& pattern : {Bytes(80), Bytes(80, 0xff), counting(80)}) {
        all.push_back(of_kind(pattern, true));
        for (unsigned count = 0; count <= 5; ++count) {
            all.push_back(information_record(pattern, count, 29 + count));
        }
    }
    return all;
}

const support::Models models{
    {key, key_model}, {either, either_model}, {list, list_model}, {information, information_model}};
const support::Models encapsulation_models{"ipv6_srh_encap_logical_res_xlate", [](std::size_t length, std::uint32_t) {
                                               return support::Modelled{
                                                   REVERSE(ipv6_srh_encap_logical_res_xlate, length, 0),
                                                   [](Bytes&, Bytes&) { return Reply{}; }};
                                           }};

// ---- Key ----

TEST(Srv6SidArrayKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

// ---- Results ----

TEST(Srv6SidArray, EveryBitOfBothKindsLandsWhereItBelongs) {
    walk(either, either_model, bases());
    walk(list, list_model, bases());
    walk(information, information_model, bases());
}

TEST(Srv6SidArray, RandomRecordsOfBothKindsAgree) {
    for (const auto& [translator, model] : std::vector<std::pair<Translator, Model>>{
             {either, either_model}, {list, list_model}, {information, information_model}}) {
        check_random(translator, model);
        check_random(translator, model, 500, [](Bytes& in) { in = of_kind(in, true); });
        check_random(translator, model, 1000,
                     [](Bytes& in) { in = information_record(in, in[2] % 6U, 28 + in[4] % 8U); });
    }
}

TEST(Srv6SidArray, ListHoldsBytesOneToSixOfFourSegments) {
    const Bytes in = with(counting(80), {{0, "01 ff"}});
    for (const Translator& translator : {either, list}) {
        const Outcome outcome = translate(translator, in, Bytes(32, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 32U);
        EXPECT_EQ(hex(outcome.out),
                  "91 0f 11 12 13 14 15 16 21 22 23 24 25 26 31 32 33 34 35 36 41 42 43 44 45 46 00 00 00 00 00 00");
    }
}

TEST(Srv6SidArray, InformationHoldsAsManySegmentsAsItCounts) {
    const std::vector<std::string> expected{
        "11 20 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
        "11 21 11 12 13 14 15 16 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
        "11 22 11 12 13 14 15 16 21 22 23 24 25 26 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
        "11 23 11 12 13 14 15 16 21 22 23 24 25 26 31 32 33 34 35 36 00 00 00 00 00 00 00 00 00 00 00 00",
        "11 24 11 12 13 14 15 16 21 22 23 24 25 26 31 32 33 34 35 36 41 42 43 44 45 46 00 00 00 00 00 00",
    };
    for (unsigned count = 0; count <= 4; ++count) {
        const Bytes in = information_record(with(counting(80), {{0, "00 00"}}), count, 30);
        for (const Translator& translator : {either, information}) {
            const Outcome outcome = translate(translator, in, Bytes(32, 0xff));
            EXPECT_EQ(outcome.status, 0) << count;
            EXPECT_EQ(outcome.length, 32U) << count;
            EXPECT_EQ(hex(outcome.out), expected[count]);
        }
    }
}

TEST(Srv6SidArray, InformationHoldsItsFlagAndItsFunctionCode) {
    for (const auto& [function, second] : std::vector<std::pair<const char*, int>>{{"1e 00 00 00", 0x20},
                                                                                   {"1f 00 00 00", 0x18},
                                                                                   {"20 00 00 00", 0x10},
                                                                                   {"21 00 00 00", 0x08},
                                                                                   {"22 00 00 00", 0x00},
                                                                                   {"1d 00 00 00", 0x00},
                                                                                   {"1e 01 00 00", 0x00},
                                                                                   {"1e 00 01 00", 0x00},
                                                                                   {"1e 00 00 01", 0x00}}) {
        const Bytes out = translate(information, with(Bytes(80), {{1, "ff"}, {4, function}})).out;
        EXPECT_EQ(out[0], 0x51) << function;
        EXPECT_EQ(out[1], second) << function;
    }
    EXPECT_EQ(translate(information, with(Bytes(80), {{1, "fe"}})).out[0], 0x11);
}

TEST(Srv6SidArray, MoreThanFourSegmentsAreOutOfRange) {
    for (const auto& [count, second] :
         std::vector<std::pair<unsigned, const char*>>{{5, "25"}, {6, "26"}, {8, "20"}, {0x84, "24"}, {255, "27"}}) {
        const Bytes in = information_record(with(counting(80), {{0, "00 01"}}), count, 30);
        const std::string expected = hex(with(Bytes(32), {{0, "51"}, {1, second}}));

        const Outcome outcome = translate(information, in, Bytes(32, 0xa5));
        EXPECT_EQ(outcome.status, 34) << count;
        EXPECT_EQ(outcome.length, std::nullopt) << count;
        EXPECT_EQ(hex(outcome.out), expected);

        const Outcome through = translate(either, in, Bytes(32, 0xa5));
        EXPECT_EQ(through.status, 0) << count;
        EXPECT_EQ(through.length, std::nullopt) << count;
        EXPECT_EQ(hex(through.out), expected);
    }
}

TEST(Srv6SidArray, EachKindRefusesTheOther) {
    const Bytes before = counting(32, 0x80);
    for (const auto& [translator, kind] :
         std::vector<std::pair<Translator, const char*>>{{list, "fe"}, {information, "01"}}) {
        const Outcome outcome = translate(translator, with(Bytes(80), {{0, kind}}), before);
        EXPECT_EQ(outcome.status, 22) << translator.name;
        EXPECT_EQ(outcome.length, std::nullopt) << translator.name;
        EXPECT_EQ(hex(outcome.out), hex(before)) << translator.name;
    }
}

TEST(Srv6SidArray, DropsWhatNeitherKindUses) {
    for (const Bytes& base : {with(Bytes(80), {{0, "01"}}), with(Bytes(80), {{2, "04"}})}) {
        EXPECT_EQ(carried(either, base, {"L0.7-1", "L1.7-4", "L3", "L8-16", "L23-32", "L39-48", "L55-64", "L71-79"}),
                  "");
    }
    expect_not_carried(list, with(Bytes(80), {{0, "01"}}), {"L2", "L4-7"});
    expect_not_carried(information, with(Bytes(80), {{2, "02"}}), {"L1.7-1", "L48-79"});
}

TEST(Srv6SidArray, MindsNoLength) {
    expect_length_ignored(either, with(counting(80), {{0, "01"}}));
    expect_length_ignored(list, with(counting(80), {{0, "01"}}));
    expect_length_ignored(information, information_record(counting(80), 4, 30));
}

TEST(Srv6SidArray, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[115].key, srv6_sida_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[115].result, srv6_sida_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[115], generic_xlate_logical_result);
}

// ---- Encapsulation, back ----

TEST(Srv6EncapsulationBack, LeavesTheLogicalRecordUntouched) {
    walk(encapsulation_back, [](Bytes&, Bytes&) { return Reply{}; }, {Bytes(32), Bytes(32, 0xff)});
    // Not a byte of either record is looked at.
    const Translator of_nothing = REVERSE(ipv6_srh_encap_logical_res_xlate, 0, 0);
    for (const std::int32_t length : {-1, 0, 1, 32, 4096}) {
        const Outcome outcome = translate_with_length(of_nothing, {}, length);
        EXPECT_EQ(outcome.status, 0) << length;
        const Outcome over_pattern = translate_with_length(encapsulation_back, Bytes(32, 0xff), length, counting(80));
        EXPECT_EQ(over_pattern.status, 0) << length;
        EXPECT_EQ(hex(over_pattern.out), hex(counting(80))) << length;
    }
}

}  // namespace
