// Table 71: programmed with plain copies, read back in the layout of the remote punt results.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator read_back = REVERSE(remote_slot_idx_logical_res_xlate, 8, 5);
const Translator punt_result = FORWARD(remote_punt_xlate_result, 5, 8);
const Translator plain_result = FORWARD(generic_xlate_result, 8, 8);

Reply read_back_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-4 = 0",
        "L0-1 = P1-2",
        "L4.7 = P3.0",
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{read_back, read_back_model}};

TEST(RemoteSlotIdx, CarriesWhatItsPositionsSay) {
    walk(read_back, read_back_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x91)});
    check_random(read_back, read_back_model);
}

TEST(RemoteSlotIdx, ReadsARemotePuntResultBackWithoutItsSecondValue) {
    const Outcome back = translate(read_back, translate(punt_result, bytes("12 34 56 78 80")).out, Bytes(5, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out), "12 34 00 00 80");
    EXPECT_EQ(hex(translate(read_back, translate(punt_result, bytes("12 34 56 78 7f")).out).out), "12 34 00 00 00");
}

// Its own plain copy does not come back as it was.
TEST(RemoteSlotIdx, ReadsItsOwnEntriesBackInAnotherLayout) {
    const Bytes there = translate(plain_result, bytes("20 a1 a2 01 a4 a5 a6 a7")).out;
    EXPECT_EQ(hex(there), "31 a1 a2 01 a4 a5 a6 a7");
    EXPECT_EQ(hex(translate(read_back, there).out), "a1 a2 00 00 80");
}

TEST(RemoteSlotIdx, ReadsNothingElseBack) {
    EXPECT_EQ(hex(translate(read_back, bytes("ff 00 00 fe ff ff ff ff")).out), "00 00 00 00 00");
    EXPECT_EQ(hex(translate(read_back, Bytes(8, 0xff)).out), "ff ff 00 00 80");
    for (const auto& [from, to] :
         {std::pair{"P0.7", ""}, std::pair{"P1.0", "L0.0"}, std::pair{"P2.7", "L1.7"}, std::pair{"P3.0", "L4.7"},
          std::pair{"P3.1", ""}, std::pair{"P3.7", ""}, std::pair{"P4.0", ""}, std::pair{"P5.7", ""},
          std::pair{"P6.0", ""}, std::pair{"P7.0", ""}}) {
        EXPECT_EQ(changes(read_back, counting(8), from), to) << from;
    }
}

TEST(RemoteSlotIdx, ReadsBackOnlyRecordsOfEightBytes) { expect_exact_length(read_back); }

TEST(RemoteSlotIdx, IsTheReverseOfTable71AndOfNoOther) {
    EXPECT_EQ(l2p_ucode_func_table[71].key, &generic_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[71].result, &generic_xlate_result);
    for (std::size_t id = 0; id < NPXLATE_TABLE_COUNT; ++id) {
        EXPECT_EQ(p2l_ucode_func_table[id] == &remote_slot_idx_logical_res_xlate, id == 71) << id;
    }
}

}  // namespace
