// Multicast interface punt: a key of two words and a result that says only that the entry is there.
#include <cstdint>

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
using support::hex;
using support::Outcome;
using support::Reply;
using support::Rows;
using support::translate;
using support::Translator;
using support::walk;

const Translator key = FORWARD(ipmc_intf_punt_key_xlate, 8, 8);
// The result reads nothing, so there is no byte of a record that it may touch.
const Translator result = FORWARD(ipmc_intf_punt_res_xlate, 0, 16);

constexpr const char* header_alone = "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = swap L0-3",
        "P4-7 = swap L4-7",
    };
    rows.apply(in, out);
    return {.length = 8};
}

Reply result_model(const Bytes&, Bytes& out) {
    out = bytes(header_alone);
    return {.length = 16};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(IntfPunt, KeyCarriesItsRowsAndNothingElse) {
    walk(key, key_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x81)});
    check_random(key, key_model);
}

TEST(IntfPunt, KeySwapsEachOfItsWords) {
    const Outcome outcome = translate(key, bytes("01 02 03 04 05 06 07 08"));
    EXPECT_EQ(outcome.status, NPXLATE_OK);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "04 03 02 01 08 07 06 05");
    EXPECT_EQ(changes(key, Bytes(8), "L0.0"), "P3.0");
    EXPECT_EQ(changes(key, Bytes(8), "L7.7"), "P4.7");
}

TEST(IntfPunt, ResultIsTheHeaderForEveryRecord) {
    for (const Bytes& record : {Bytes{}, Bytes(16), Bytes(16, 0xff), counting(64, 0x81)}) {
        support::check(result, result_model, record);
        const Outcome outcome = translate(result, record, Bytes(16, 0xff));
        EXPECT_EQ(outcome.status, NPXLATE_OK);
        EXPECT_EQ(outcome.length, 16U);
        EXPECT_EQ(hex(outcome.out), header_alone);
    }
}

TEST(IntfPunt, TranslatorsDoNotLookAtTheLength) {
    for (const Translator& translator : {key, result}) {
        const Bytes in = counting(translator.in_size, 1);
        expect_length_ignored(translator, in);
    }
}

TEST(IntfPunt, TableDispatchesToItsTranslators) {
    EXPECT_EQ(l2p_ucode_func_table[21].key, ipmc_intf_punt_key_xlate);
    EXPECT_EQ(l2p_ucode_func_table[21].result, ipmc_intf_punt_res_xlate);
    EXPECT_EQ(p2l_ucode_func_table[21], generic_xlate_logical_result);
}

}  // namespace
