// Tables 94 and 96, the keys and the leaves of the scaled ACL.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key_key = FORWARD(scale_acl_key_xlate_key, 18, 18);
const Translator key_result = FORWARD(scale_acl_key_xlate_result, 3, 4);
const Translator leaf_key = FORWARD(scale_acl_leaf_xlate_key, 4, 3);
const Translator leaf_result = FORWARD(scale_acl_leaf_xlate_result, 32, 32);

Reply key_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-17 = 0",
        "P0-15 = swap L2-17",
        "P16.5-0 = L1.5-0",
        "P17 = L0",
    };
    rows.apply(in, out);
    return {.length = 18};
}

Reply key_result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P1-3 = L0-2",
    };
    rows.apply(in, out);
    return {.length = 4};
}

Reply leaf_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return {.length = 3};
}

Reply leaf_result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",        //
        "P0 = 0x11",        //
        "P0.7-5 = L0.7-5",  //
        "P1.7-4 = L1.7-4",  //
        "P1.3 = L1.2",      //
        "P1.2 = L1.3",      //
        "P1.1-0 = L1.1-0",  //
        "P2-31 = L2-31",    //
    };
    rows.apply(in, out);
    return {.length = 32};
}

const support::Models models{{key_key, key_key_model},
                             {key_result, key_result_model},
                             {leaf_key, leaf_key_model},
                             {leaf_result, leaf_result_model}};

TEST(ScaleAcl, CarriesWhatItsPositionsSay) {
    walk(key_key, key_key_model, {Bytes(18), Bytes(18, 0xff), counting(18, 0x91)});
    check_random(key_key, key_key_model);
    walk(key_result, key_result_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x91)});
    check_random(key_result, key_result_model);
    walk(leaf_key, leaf_key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x91)});
    check_random(leaf_key, leaf_key_model);
    walk(leaf_result, leaf_result_model, {Bytes(32), Bytes(32, 0xff), counting(32, 0x91)});
    check_random(leaf_result, leaf_result_model);
}

TEST(ScaleAcl, ReversesTheKeyAndPutsItsFirstValueLast) {
    const Outcome outcome = translate(key_key, counting(18, 0x01));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 18U);
    EXPECT_EQ(hex(outcome.out), "12 11 10 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01");
}

TEST(ScaleAcl, KeepsFourteenBitsOfTheFirstKeyValue) {
    Bytes in(18);
    in.at(0) = 0xff;
    in.at(1) = 0xff;
    EXPECT_EQ(hex(translate(key_key, in).out), "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 3f ff");
    for (const auto& [from, to] : {std::pair{"L1.6", ""}, std::pair{"L1.7", ""}, std::pair{"L1.5", "P16.5"},
                                   std::pair{"L1.0", "P16.0"}, std::pair{"L0.0", "P17.0"}, std::pair{"L0.7", "P17.7"},
                                   std::pair{"L2.0", "P15.0"}, std::pair{"L17.7", "P0.7"}}) {
        EXPECT_EQ(changes(key_key, counting(18), from), to) << from;
    }
}

TEST(ScaleAcl, MirrorsTheEndsOfTheKey) {
    Bytes in(18);
    in.at(2) = 0xaa;
    in.at(17) = 0xbb;
    EXPECT_EQ(hex(translate(key_key, in).out), "bb 00 00 00 00 00 00 00 00 00 00 00 00 00 00 aa 00 00");
}

TEST(ScaleAcl, WritesAllFourBytesOfTheKeyResultAndNoMore) {
    for (const std::uint8_t before : bytes("00 ff 6c")) {
        const Outcome outcome = translate(key_result, bytes("81 42 24"), Bytes(4, before));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 4U);
        EXPECT_EQ(hex(outcome.out), "11 81 42 24");
    }
    // A longer buffer keeps what follows.
    EXPECT_EQ(hex(translate(key_result, bytes("81 42 24"), Bytes(8, 0x5a)).out), "11 81 42 24 5a 5a 5a 5a");
}

TEST(ScaleAcl, KeepsTwentyFourBitsOfTheLeafKey) {
    const Outcome outcome = translate(leaf_key, bytes("12 34 56 78"), Bytes(3, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    for (const char* dropped : {"L3.0", "L3.3", "L3.7"}) {
        EXPECT_EQ(changes(leaf_key, counting(4), dropped), "") << dropped;
    }
}

TEST(ScaleAcl, ExchangesTwoBitsOfTheLeaf) {
    for (const auto& [from, to] :
         {std::pair{0x01, "01"}, std::pair{0x02, "02"}, std::pair{0x04, "08"}, std::pair{0x08, "04"},
          std::pair{0x10, "10"}, std::pair{0x20, "20"}, std::pair{0x40, "40"}, std::pair{0x80, "80"}}) {
        Bytes in(32);
        in.at(1) = static_cast<std::uint8_t>(from);
        const Outcome outcome = translate(leaf_result, in);
        EXPECT_EQ(hex({outcome.out.at(1)}), to);
        EXPECT_EQ(outcome.out.at(0), 0x11);
    }
}

TEST(ScaleAcl, KeepsTheUpperThreeBitsOfTheFirstLeafByte) {
    Bytes in(32);
    in.at(0) = 0xff;
    const Outcome outcome = translate(leaf_result, in);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "f1 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    for (const char* dropped : {"L0.0", "L0.1", "L0.2", "L0.3", "L0.4"}) {
        EXPECT_EQ(changes(leaf_result, counting(32), dropped), "") << dropped;
    }
}

TEST(ScaleAcl, CopiesTheRestOfTheLeaf) {
    EXPECT_EQ(hex(translate(leaf_result, counting(32, 0x40)).out),
              "51 41 42 43 44 45 46 47 48 49 4a 4b 4c 4d 4e 4f 50 51 52 53 "
              "54 55 56 57 58 59 5a 5b 5c 5d 5e 5f");
    EXPECT_EQ(hex(translate(leaf_result, Bytes(32)).out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(ScaleAcl, IgnoresTheLength) {
    for (const Translator* translator : {&key_key, &key_result, &leaf_key, &leaf_result}) {
        const Bytes in = counting(translator->in_size, 0x33);
        expect_length_ignored(*translator, in);
    }
}

TEST(ScaleAcl, IsTables94And96) {
    EXPECT_EQ(l2p_ucode_func_table[94].key, &scale_acl_key_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[94].result, &scale_acl_key_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[94], &generic_xlate_logical_result);
    EXPECT_EQ(l2p_ucode_func_table[96].key, &scale_acl_leaf_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[96].result, &scale_acl_leaf_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[96], &generic_xlate_logical_result);
}

}  // namespace
