// Table 3, the hierarchical-QoS hash.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(h_qos_ez_xlate_hash_key, 8, 8);
const Translator result = FORWARD(h_qos_ez_xlate_hash_result, 34, 32);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-7 = 0",         //
        "P0-1 = L0-1",      //
        "P2-3 = L2-3",      //
        "P4-5 = L4-5",      //
        "P6 = L6",          //
        "P7.7-6 = L7.1-0",  //
        "P7.5-4 = L7.3-2",  //
        "P7.3 = L7.4",      //
        "P7.2 = L7.5",      //
        "P7.1-0 = L7.7-6",  //
    };
    rows.apply(in, out);
    return {.length = 8};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",         //
        "P0 = 0x11",         //
        "P0.7 = L0.4",       //
        "P0.5 = L0.5",       //
        "P3.7-4 = L26.7-4",  //
        "P3.3-1 = L26.3-1",  //
        "P12 = L27",         //
        "P13 = L29",         //
        "P14 = L31",         //
        "P15 = L33",         //
        "P16-18 = L9-11",    //
        "P19.7 = L20.0",     //
        "P19.6 = L20.1",     //
        "P19.5 = L20.2",     //
        "P19.4 = L20.3",     //
        "P19.3 = 0",         //
        "P19.2 = L20.5",     //
        "P19.1 = L20.6",     //
        "P19.0 = L20.7",     //
        "P20-22 = L13-15",   //
        "P23 = L16",         //
        "P24-26 = L17-19",   //
        "P28-30 = L21-23",   //
        "P31 = 0",           //
    };
    static const Rows tcp_and_udp{"P1 = 6", "P2 = 17"};
    rows.apply(in, out);
    if (bit(in, 20, 0)) {
        tcp_and_udp.apply(in, out);
    }
    put_little(out, 8, 4,
               (little(in, 1, 4) & 0xfffff) | little(in, 25, 1) << 20 | std::uint64_t{bits(in, 12, 1, 0)} << 22);
    out.at(27) = static_cast<std::uint8_t>(bits(in, 12, 7, 2));
    return {.length = 32};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(HQosHash, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x93)});
    check_random(key, key_model);
    walk(result, result_model, {Bytes(34), Bytes(34, 0xff), counting(34), counting(34, 0x75)});
    check_random(result, result_model);
}

TEST(HQosHash, TurnsEveryLastKeyByteField) {
    for (unsigned last = 0; last < 256; ++last) {
        Bytes in = counting(8, 0x10);
        in.at(7) = static_cast<std::uint8_t>(last);
        check(key, key_model, in);
    }
}

TEST(HQosHash, KeepsTheBitOrderWithinEachKeyField) {
    for (const auto& [from, to] : {
             std::pair{"00 01 02 03 04 05 06 01", "00 01 02 03 04 05 06 40"},
             std::pair{"00 01 02 03 04 05 06 02", "00 01 02 03 04 05 06 80"},
             std::pair{"00 01 02 03 04 05 06 04", "00 01 02 03 04 05 06 10"},
             std::pair{"00 01 02 03 04 05 06 08", "00 01 02 03 04 05 06 20"},
             std::pair{"00 01 02 03 04 05 06 10", "00 01 02 03 04 05 06 08"},
             std::pair{"00 01 02 03 04 05 06 20", "00 01 02 03 04 05 06 04"},
             std::pair{"00 01 02 03 04 05 06 40", "00 01 02 03 04 05 06 01"},
             std::pair{"00 01 02 03 04 05 06 80", "00 01 02 03 04 05 06 02"},
         }) {
        const Outcome outcome = translate(key, bytes(from));
        EXPECT_EQ(hex(outcome.out), to);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 8U);
    }
}

TEST(HQosHash, TranslatesARecordWhoseBytesCount) {
    const Outcome outcome = translate(result, counting(34));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 1a 00 00 00 00 01 02 93 01 1b 1d 1f 21 09 0a 0b 20 "
              "0d 0e 0f 10 11 12 13 03 15 16 17 00");
}

TEST(HQosHash, TranslatesZerosAndOnes) {
    EXPECT_EQ(hex(translate(result, Bytes(34)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(34, 0xff)).out),
              "b1 06 11 fe 00 00 00 00 ff ff ff 0f ff ff ff ff ff ff ff f7 "
              "ff ff ff ff ff ff ff 3f ff ff ff 00");
}

TEST(HQosHash, NamesTcpAndUdpWhenItsFlagIsSet) {
    Bytes in(34);
    in.at(20) = 0x01;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 06 11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 80 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    in.at(20) = 0xfe;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 77 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(HQosHash, PutsItsBitsWhereTheCardLooks) {
    for (const auto& [from, to] : {
             std::pair{"L0.4", "P0.7"},
             std::pair{"L0.5", "P0.5"},
             std::pair{"L1.0", "P8.0"},
             std::pair{"L3.3", "P10.3"},
             std::pair{"L9.7", "P16.7"},
             std::pair{"L12.0", "P10.6"},
             std::pair{"L12.1", "P10.7"},
             std::pair{"L12.2", "P27.0"},
             std::pair{"L12.7", "P27.5"},
             std::pair{"L13.0", "P20.0"},
             std::pair{"L16.1", "P23.1"},
             std::pair{"L19.2", "P26.2"},
             std::pair{"L20.0", "P1.2 P1.1 P2.4 P2.0 P19.7"},
             std::pair{"L20.3", "P19.4"},
             std::pair{"L20.7", "P19.0"},
             std::pair{"L23.0", "P30.0"},
             std::pair{"L25.0", "P10.4"},
             std::pair{"L25.3", "P10.7"},
             std::pair{"L25.4", "P11.0"},
             std::pair{"L25.7", "P11.3"},
             std::pair{"L26.1", "P3.1"},
             std::pair{"L26.7", "P3.7"},
             std::pair{"L33.0", "P15.0"},
         }) {
        EXPECT_EQ(changes(result, Bytes(34), from), to) << from;
    }
}

// Both values reach bits 22 and 23 of the word in P8-11; they are united, not added.
TEST(HQosHash, UnitesTheTwoValuesThatOverlap) {
    Bytes in(34);
    in.at(12) = 0x03;
    in.at(25) = 0x0c;
    EXPECT_EQ(hex(translate(result, in).out),
              "11 00 00 00 00 00 00 00 00 00 c0 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(HQosHash, DropsWhatItDoesNotCarry) {
    for (const Bytes& base : {Bytes(34), counting(34, 0x81)}) {
        for (const char* dropped : {"L0.0", "L0.1", "L0.2", "L0.3", "L0.6", "L0.7", "L3.4", "L3.5", "L3.6", "L3.7",
                                    "L4.0", "L4.7", "L20.4", "L26.0"}) {
            EXPECT_EQ(changes(result, base, dropped), "") << dropped;
        }
        Bytes other = base;
        for (const std::size_t dropped : {4U, 5U, 6U, 7U, 8U, 24U, 28U, 30U, 32U}) {
            other.at(dropped) ^= 0xff;
        }
        EXPECT_EQ(hex(translate(result, other).out), hex(translate(result, base).out));
    }
}

TEST(HQosHash, IgnoresTheLength) {
    expect_length_ignored(key, counting(8));
    expect_length_ignored(result, counting(34));
}

TEST(HQosHash, IsTable3) {
    EXPECT_EQ(l2p_ucode_func_table[3].key, &h_qos_ez_xlate_hash_key);
    EXPECT_EQ(l2p_ucode_func_table[3].result, &h_qos_ez_xlate_hash_result);
    EXPECT_EQ(p2l_ucode_func_table[3], &generic_xlate_logical_result);
}

}  // namespace
