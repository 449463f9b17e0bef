// GRE encapsulations. Reached by name only.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator encap_key = FORWARD(gre_encap_type_xlate_key, 3, 3);
const Translator encap_result = FORWARD(gre_encap_type_xlate_result, 32, 32);

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-2 = swap L0-2"};
    out.assign(3, 0);
    rows.apply(in, out);
    return {.length = 3};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0 = 0x11", "P1-31 = L1-31"};
    out.assign(32, 0);
    rows.apply(in, out);
    return {.length = 32};
}

const support::Models models{{encap_key, key_model}, {encap_result, result_model}};

TEST(GreEncap, EveryBitGoesWhereItBelongs) {
    walk(encap_key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x81)});
    walk(encap_result, result_model, {Bytes(32), Bytes(32, 0xff), counting(32, 0x81)});
    check_random(encap_key, key_model);
    check_random(encap_result, result_model);
}

TEST(GreEncap, NoTranslatorLooksAtTheLengthItIsGiven) {
    for (const Translator* translator : {&encap_key, &encap_result}) {
        const Bytes record = counting(translator->in_size, 1);
        expect_length_ignored(*translator, record);
    }
}

TEST(GreEncap, KeyIsTurnedAround) {
    const Outcome outcome = translate(encap_key, bytes("01 02 03"), Bytes(3, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "03 02 01");
}

TEST(GreEncap, ResultIsCopiedBehindTheHeader) {
    Bytes logical = counting(32);
    logical[0] = 0xff;
    const Outcome outcome = translate(encap_result, logical, Bytes(32, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f "
              "10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f");
    EXPECT_EQ(translate(encap_result, Bytes(32)).out[0], 0x11);
}

TEST(GreEncap, ResultDoesNotCarryL0) {
    for (const char* position : {"L0.7", "L0.6", "L0.5", "L0.4", "L0.3", "L0.2", "L0.1", "L0.0"}) {
        EXPECT_EQ(changes(encap_result, Bytes(32), position), "") << position;
    }
    EXPECT_EQ(changes(encap_result, Bytes(32), "L31.0"), "P31.0");
}

TEST(GreEncap, IsReachedByNameOnly) {
    for (const npxlate_l2p_entry& entry : l2p_ucode_func_table) {
        EXPECT_NE(entry.key, &gre_encap_type_xlate_key);
        EXPECT_NE(entry.result, &gre_encap_type_xlate_result);
    }
}

}  // namespace
