// Table 77, the remote punt entries.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(remote_punt_xlate_key, 1, 1);
const Translator result = FORWARD(remote_punt_xlate_result, 5, 8);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0 = L0"};
    rows.apply(in, out);
    return {.length = 1};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-7 = 0",     //
        "P0 = 0x11",    //
        "P1-2 = L0-1",  //
        "P4-5 = L2-3",  //
        "P3.0 = L4.7",  //
    };
    rows.apply(in, out);
    return {.length = 8};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(RemotePunt, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(1), Bytes(1, 0xff), Bytes(1, 0xa6)});
    check_random(key, key_model, 500);
    walk(result, result_model, {Bytes(5), Bytes(5, 0xff), counting(5, 0x91)});
    check_random(result, result_model);
}

TEST(RemotePunt, CopiesTheKey) {
    const Outcome outcome = translate(key, bytes("a5"), bytes("ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 1U);
    EXPECT_EQ(hex(outcome.out), "a5");
}

TEST(RemotePunt, KeepsTheByteOrderOfBothValues) {
    const Outcome outcome = translate(result, bytes("12 34 56 78 80"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 12 34 01 56 78 00 00");
}

TEST(RemotePunt, CarriesOnlyTheTopBitOfItsFlags) {
    EXPECT_EQ(hex(translate(result, bytes("00 00 00 00 00")).out), "11 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, bytes("00 00 00 00 80")).out), "11 00 00 01 00 00 00 00");
    EXPECT_EQ(hex(translate(result, bytes("00 00 00 00 7f")).out), "11 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, bytes("ff ff ff ff ff")).out), "11 ff ff 01 ff ff 00 00");
    for (const auto& [from, to] :
         {std::pair{"L4.0", ""}, std::pair{"L4.1", ""}, std::pair{"L4.2", ""}, std::pair{"L4.3", ""},
          std::pair{"L4.4", ""}, std::pair{"L4.5", ""}, std::pair{"L4.6", ""}, std::pair{"L4.7", "P3.0"},
          std::pair{"L0.0", "P1.0"}, std::pair{"L1.7", "P2.7"}, std::pair{"L2.0", "P4.0"}, std::pair{"L3.7", "P5.7"}}) {
        EXPECT_EQ(changes(result, counting(5), from), to) << from;
    }
}

TEST(RemotePunt, IgnoresTheLength) {
    expect_length_ignored(key, bytes("5a"));
    expect_length_ignored(result, counting(5));
}

TEST(RemotePunt, IsTable77) {
    EXPECT_EQ(l2p_ucode_func_table[77].key, &remote_punt_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[77].result, &remote_punt_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[77], &generic_xlate_logical_result);
}

}  // namespace
