// Table 76, the racks.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <string>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(quill_rack_table_xlate_key, 2, 2);
const Translator result = FORWARD(quill_rack_table_xlate_result, 20, 32);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = L0-1"};
    rows.apply(in, out);
    return {.length = 2};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",      //
        "P0 = 0x11",      //
        "P1.7 = 1",       //
        "P4-5 = L10-11",  //
        "P2-3 = L12-13",  //
        "P6-11 = L14-19",
        "P16-17 = L0-1",  //
        "P13 = L6",       //
        "P14 = L7",       //
        "P15 = 0",        //
        "P12 = L8",       //
    };
    // The virtual queue index is stored least significant byte first: its bits 11 and 10 are P17.3 and P17.2.
    static const Rows range4{"P17.3 = 1"};
    static const Rows range8{"P17.3-2 = 3"};
    rows.apply(in, out);
    if (in.at(2) == 4) {
        range4.apply(in, out);
    } else if (in.at(2) == 8) {
        range8.apply(in, out);
    }
    return {.length = 32};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(RackTable, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(2), Bytes(2, 0xff), counting(2, 0x91)});
    check_random(key, key_model);

    for (Bytes base : {Bytes(20), Bytes(20, 0xff), counting(20), counting(20, 0x81)}) {
        for (const std::uint8_t range : bytes("00 02 04 08 84 88")) {
            base.at(2) = range;
            walk(result, result_model, base);
        }
    }
    check_random(result, result_model);
    for (const std::uint8_t range : bytes("04 08 0c")) {
        check_random(result, result_model, 500, [range](Bytes& in) { in.at(2) = range; });
    }
}

TEST(RackTable, TriesEveryRange) {
    for (unsigned range = 0; range < 256; ++range) {
        Bytes in = counting(20, 0x21);
        in.at(2) = static_cast<std::uint8_t>(range);
        check(result, result_model, in);
    }
}

TEST(RackTable, CopiesTheKeyInItsOwnByteOrder) {
    for (const char* each : {"a5 3c", "00 00", "ff ff", "01 00", "00 80", "80 00"}) {
        const Outcome outcome = translate(key, bytes(each), Bytes(2, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 2U);
        EXPECT_EQ(hex(outcome.out), each);
    }
}

TEST(RackTable, HasTwoHeaderBytes) {
    const Outcome outcome = translate(result, Bytes(20), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(RackTable, TranslatesARecordWhoseBytesCount) {
    EXPECT_EQ(hex(translate(result, counting(20, 0x10)).out),
              "11 80 1c 1d 1a 1b 1e 1f 20 21 22 23 18 16 17 00 10 11 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(20, 0xff)).out),
              "11 80 ff ff ff ff ff ff ff ff ff ff ff ff ff 00 ff ff 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(RackTable, AdjustsTheVirtualQueueIndexByItsRange) {
    struct {
        const char* index_and_range;
        const char* expected;
    } const cases[] = {
        {"23 01 04", "23 09"}, {"23 01 08", "23 0d"}, {"23 01 00", "23 01"}, {"23 01 02", "23 01"},
        {"23 01 05", "23 01"}, {"23 01 0c", "23 01"}, {"23 01 84", "23 01"}, {"34 12 04", "34 1a"},
        {"34 12 08", "34 1e"}, {"ff ff 04", "ff ff"}, {"00 f0 08", "00 fc"}, {"00 08 04", "00 08"},
    };
    for (const auto& [index_and_range, expected] : cases) {
        Bytes in = bytes(index_and_range);
        in.resize(20);
        EXPECT_EQ(hex(translate(result, in).out), std::string{"11 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "} +
                                                      expected + " 00 00 00 00 00 00 00 00 00 00 00 00 00 00")
            << index_and_range;
    }
}

TEST(RackTable, DropsWhatItDoesNotCarry) {
    EXPECT_EQ(hex(translate(result, bytes("00 00 00 ff ff ff 00 00 00 ff 00 00 00 00 00 00 00 00 00 00")).out),
              "11 80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    for (const char* dropped : {"L2.0", "L2.7", "L3.0", "L3.7", "L4.0", "L5.7", "L9.0", "L9.7"}) {
        EXPECT_EQ(changes(result, counting(20, 0x30), dropped), "") << dropped;
    }
}

TEST(RackTable, PutsItsBitsWhereTheCardLooks) {
    for (const auto& [from, to] : {std::pair{"L0.0", "P16.0"}, std::pair{"L1.7", "P17.7"}, std::pair{"L6.0", "P13.0"},
                                   std::pair{"L7.7", "P14.7"}, std::pair{"L8.3", "P12.3"}, std::pair{"L10.0", "P4.0"},
                                   std::pair{"L11.7", "P5.7"}, std::pair{"L12.0", "P2.0"}, std::pair{"L13.7", "P3.7"},
                                   std::pair{"L14.0", "P6.0"}, std::pair{"L19.7", "P11.7"}}) {
        EXPECT_EQ(changes(result, counting(20, 0x30), from), to) << from;
    }
}

TEST(RackTable, IgnoresTheLength) {
    expect_length_ignored(key, counting(2, 7));
    expect_length_ignored(result, counting(20));
}

TEST(RackTable, IsTable76) {
    EXPECT_EQ(l2p_ucode_func_table[76].key, &quill_rack_table_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[76].result, &quill_rack_table_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[76], &generic_xlate_logical_result);
}

}  // namespace
