// LISP instance to VRF, table 79.
#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator lisp_key = FORWARD(lisp_instance_to_vrf_xlate_key, 20, 6);
const Translator lisp_result = FORWARD(lisp_instance_to_vrf_xlate_result, 7, 8);

// ---- Models ----

Reply key_model(Bytes& in, Bytes& out) {
    static const Rows coded{"P2-5 = swap L12-15"};
    static const Rows plain{"P0.3 = L0.0", "P0.1-0 = L2.1-0", "P1-3 = swap L4-6", "P4-5 = L8-9"};
    out.assign(6, 0);
    if (in[10] == 0) {
        plain.apply(in, out);
        return {.length = 6};
    }
    coded.apply(in, out);
    const std::uint64_t code = little(in, 16, 4);
    put_big(out, 0, 2, code == 12 ? 12 : code == 19 ? 13 : 0);
    return {.length = 6};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows selected{"P1-3 = L4-6"};
    static const Rows otherwise{"P4-5 = L2-3"};
    out.assign(8, 0);
    out[0] = 0x11;
    (in[0] != 0 ? selected : otherwise).apply(in, out);
    return {.length = 8};
}

const support::Models models{{lisp_key, key_model}, {lisp_result, result_model}};

// ---- Every bit ----

TEST(LispKey, EveryBitGoesWhereItBelongs) {
    for (const std::uint8_t selector : bytes("00 01 02 80 ff")) {
        for (const std::uint32_t code :
             {0U, 12U, 13U, 18U, 19U, 20U, 0x0c000000U, 0x13000000U, 0x1000cU, 0xffffffffU}) {
            const auto shape = [=](Bytes& logical) {
                logical[10] = selector;
                put_little(logical, 16, 4, code);
            };
            for (Bytes base : {Bytes(20), Bytes(20, 0xff), counting(20, 0x81)}) {
                shape(base);
                walk(lisp_key, key_model, base);
            }
            check_random(lisp_key, key_model, 100, shape);
        }
    }
    check_random(lisp_key, key_model);
}

TEST(LispResult, EveryBitGoesWhereItBelongs) {
    for (const std::uint8_t selector : bytes("00 01 02 80 ff")) {
        const auto shape = [selector](Bytes& logical) { logical[0] = selector; };
        for (Bytes base : {Bytes(7), Bytes(7, 0xff), counting(7, 0x81)}) {
            shape(base);
            walk(lisp_result, result_model, base);
        }
        check_random(lisp_result, result_model, 500, shape);
    }
}

TEST(Lisp, NoTranslatorLooksAtTheLengthItIsGiven) {
    for (const Translator* translator : {&lisp_key, &lisp_result}) {
        for (const Bytes& record : {counting(translator->in_size, 1), Bytes(translator->in_size)}) {
            expect_length_ignored(*translator, record);
        }
    }
}

// ---- Key ----

TEST(LispKey, WithL10SetHoldsACodeAndAValue) {
    struct Row {
        const char* code;
        const char* expected;
    };
    for (const auto& [code, expected] : {
             Row{"0c 00 00 00", "00 0c 0f 0e 0d 0c"},
             Row{"13 00 00 00", "00 0d 0f 0e 0d 0c"},
             // Any other code is 0, and no failure.
             Row{"00 00 00 00", "00 00 0f 0e 0d 0c"},
             Row{"0d 00 00 00", "00 00 0f 0e 0d 0c"},
             Row{"14 00 00 00", "00 00 0f 0e 0d 0c"},
             // All four bytes count.
             Row{"0c 01 00 00", "00 00 0f 0e 0d 0c"},
             Row{"13 00 01 00", "00 00 0f 0e 0d 0c"},
             Row{"13 00 00 01", "00 00 0f 0e 0d 0c"},
             Row{"00 00 00 0c", "00 00 0f 0e 0d 0c"},
         }) {
        Bytes logical = bytes("ff 01 ff 03 04 05 06 07 08 09 01 0b 0c 0d 0e 0f");
        const Bytes code_bytes = bytes(code);
        logical.insert(logical.end(), code_bytes.begin(), code_bytes.end());
        const Outcome outcome = translate(lisp_key, logical, Bytes(6, 0xee));
        EXPECT_EQ(outcome.status, 0) << code;
        EXPECT_EQ(outcome.length, 6U) << code;
        EXPECT_EQ(hex(outcome.out), expected) << code;
    }
}

TEST(LispKey, TakesTheWholeOfL10ForTheForm) {
    for (const int selector : {0x01, 0x02, 0x10, 0x80, 0xff}) {
        Bytes logical = counting(20);
        logical[10] = static_cast<std::uint8_t>(selector);
        EXPECT_EQ(hex(translate(lisp_key, logical).out), "00 00 0f 0e 0d 0c") << selector;
    }
}

TEST(LispKey, WithL10ClearHoldsFlagsAndTwoValues) {
    Bytes logical = counting(20);
    logical[10] = 0;
    const Outcome outcome = translate(lisp_key, logical, Bytes(6, 0xee));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 6U);
    EXPECT_EQ(hex(outcome.out), "02 06 05 04 08 09");
    logical[0] = 0xff;
    logical[2] = 0xff;
    EXPECT_EQ(hex(translate(lisp_key, logical).out), "0b 06 05 04 08 09");
    EXPECT_EQ(changes(lisp_key, Bytes(20), "L0.0"), "P0.3");
    EXPECT_EQ(changes(lisp_key, Bytes(20), "L2.1"), "P0.1");
    EXPECT_EQ(changes(lisp_key, Bytes(20), "L2.0"), "P0.0");
    EXPECT_EQ(changes(lisp_key, Bytes(20), "L6.7"), "P1.7");
    for (const char* position : {"L0.1", "L0.7", "L1.0", "L2.2", "L2.7", "L3.0", "L7.0", "L7.7", "L11.0", "L12.0",
                                 "L15.7", "L16.0", "L19.7"}) {
        EXPECT_EQ(changes(lisp_key, Bytes(20), position), "") << position;
    }
}

TEST(LispKey, WithL10SetDoesNotCarryTheOtherForm) {
    Bytes logical(20);
    logical[10] = 1;
    for (const char* position : {"L0.0", "L2.0", "L2.1", "L4.0", "L6.7", "L7.0", "L8.0", "L9.7", "L10.1", "L11.0"}) {
        EXPECT_EQ(changes(lisp_key, logical, position), "") << position;
    }
}

// ---- Result ----

TEST(LispResult, HoldsOneOfTwoValues) {
    const Outcome clear = translate(lisp_result, bytes("00 01 02 03 04 05 06"), Bytes(8, 0xee));
    EXPECT_EQ(clear.status, 0);
    EXPECT_EQ(clear.length, 8U);
    EXPECT_EQ(hex(clear.out), "11 00 00 00 02 03 00 00");
    const Outcome set = translate(lisp_result, bytes("01 01 02 03 04 05 06"), Bytes(8, 0xee));
    EXPECT_EQ(set.status, 0);
    EXPECT_EQ(set.length, 8U);
    EXPECT_EQ(hex(set.out), "11 04 05 06 00 00 00 00");
    EXPECT_EQ(hex(translate(lisp_result, bytes("80 01 02 03 04 05 06")).out), "11 04 05 06 00 00 00 00");
    EXPECT_EQ(hex(translate(lisp_result, Bytes(7)).out), "11 00 00 00 00 00 00 00");
    EXPECT_EQ(changes(lisp_result, bytes("01 00 00 00 00 00 00"), "L2.0"), "");
    EXPECT_EQ(changes(lisp_result, Bytes(7), "L4.0"), "");
    EXPECT_EQ(changes(lisp_result, Bytes(7), "L1.0"), "");
}

TEST(LispDispatch, IsTable79AndReadsBackUnchanged) {
    EXPECT_EQ(l2p_ucode_func_table[79].key, &lisp_instance_to_vrf_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[79].result, &lisp_instance_to_vrf_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[79], &generic_xlate_logical_result);
    const Translator back = reverse("reverse translator of table 79", p2l_ucode_func_table[79], 8, 8);
    EXPECT_EQ(hex(translate(back, bytes("11 04 05 06 00 00 00 00")).out), "11 04 05 06 00 00 00 00");
}

}  // namespace
