#include <string>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(ipv6_ll_xlate_hash_key, 20, 20);
const Translator result = FORWARD(ipv6_ll_xlate_hash_result, 3, 8);

// The key takes the number of address bytes from its length: four less than that.
Translator key_of(std::size_t size) { return forward("ipv6_ll_xlate_hash_key", ipv6_ll_xlate_hash_key, size, 20); }

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-19 = 0", "P16-19 = swap L0-3"};
    rows.apply(in, out);
    for (std::size_t i = 4; i < in.size(); ++i) {
        out[in.size() - 1 - i] = in[i];
    }
    return Reply{.status = 0, .length = 20};
}

Reply result_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-7 = 0", "P0 = 0x11", "P5 = L0", "P6 = L1", "P7 = L2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 8};
}

// The key translator called with one of its three pointers null: 0 the logical record, 1 the physical one, 2 the
// length.
Translator key_with_null(int argument) {
    return {"ipv6_ll_xlate_hash_key with null argument " + std::to_string(argument),
            [argument](const void* in, std::int32_t length, void* out, std::uint32_t* out_length) {
                return ipv6_ll_xlate_hash_key(argument == 0 ? nullptr : in, length, argument == 1 ? nullptr : out,
                                              argument == 2 ? nullptr : out_length);
            },
            20, 20};
}

const support::Models models{{result, result_model}};
const support::Models key_models{"ipv6_ll_xlate_hash_key", [](std::size_t length, std::uint32_t) {
                                     return support::Modelled{key_of(length), key_model};
                                 }};

// ---- Key ----

TEST(Ipv6LinkLocalKey, EveryBitLandsWhereItBelongs) {
    walk(key, key_model, {Bytes(20), Bytes(20, 0xff), counting(20, 0x71)});
    check_random(key, key_model);
}

TEST(Ipv6LinkLocalKey, ReversesTheAddressAndPutsTheQualifierBehindIt) {
    const Bytes in = bytes("a4 a3 a2 a1 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10");
    const Outcome outcome = translate(key, in, Bytes(20, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 20U);
    EXPECT_EQ(hex(outcome.out), "10 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 03 02 01 a1 a2 a3 a4");
}

TEST(Ipv6LinkLocalKey, ShorterLengthsCarryFewerAddressBytes) {
    EXPECT_EQ(hex(translate(key_of(4), counting(4)).out), hex(with(Bytes(20), {{16, "03 02 01 00"}})));
    EXPECT_EQ(hex(translate(key_of(5), counting(5)).out), hex(with(Bytes(20), {{0, "04"}, {16, "03 02 01 00"}})));
    EXPECT_EQ(hex(translate(key_of(12), counting(12)).out),
              hex(with(Bytes(20), {{0, "0b 0a 09 08 07 06 05 04"}, {16, "03 02 01 00"}})));
    for (std::size_t size = 4; size <= 20; ++size) {
        EXPECT_EQ(translate(key_of(size), counting(size)).length, 20U) << size;
        walk(key_of(size), key_model, {Bytes(size), counting(size, 0x71)});
    }
}

TEST(Ipv6LinkLocalKey, LengthAndNotTheRecordDecidesHowMuchIsCarried) {
    const Outcome outcome = translate_with_length(key, counting(20), 12, Bytes(20, 0xff));
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(20), {{0, "0b 0a 09 08 07 06 05 04"}, {16, "03 02 01 00"}})));
    EXPECT_EQ(hex(translate_with_length(key, counting(20), 4, Bytes(20, 0xff)).out),
              hex(with(Bytes(20), {{16, "03 02 01 00"}})));
}

TEST(Ipv6LinkLocalKey, LongerLengthsPutTheAddressOverTheQualifier) {
    EXPECT_EQ(hex(translate(key_of(21), counting(21)).out),
              "14 13 12 11 10 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04 02 01 00");
    EXPECT_EQ(hex(translate(key_of(24), counting(24)).out),
              "17 16 15 14 13 12 11 10 0f 0e 0d 0c 0b 0a 09 08 07 06 05 04");
}

TEST(Ipv6LinkLocalKey, LengthsBeyondTheRecordStayInsideIt) {
    // The harness ends the test when a byte outside the records is touched.
    for (const std::size_t size : {25U, 47U, 64U, 200U}) {
        const Outcome outcome = translate(key_of(size), counting(size));
        EXPECT_EQ(outcome.status, 0) << size;
        EXPECT_EQ(outcome.length, 20U) << size;
    }
}

TEST(Ipv6LinkLocalKey, LengthsBelowTheQualifierStayInsideTheRecord) {
    // What comes out is left open; only the memory around the records is not.
    for (const std::int32_t length : {-0x7fffffff - 1, -1, 0, 1, 2, 3}) {
        const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
        const Outcome outcome = translate_with_length(key_of(size), Bytes(size, 0xff), length);
        EXPECT_TRUE(outcome.status == 0 || outcome.status == 22) << length;
    }
}

TEST(Ipv6LinkLocalKey, NullArgumentsAreNothingToDo) {
    const Bytes before = counting(20, 0x80);
    for (int argument = 0; argument < 3; ++argument) {
        const Outcome outcome = translate(key_with_null(argument), Bytes(20, 0xff), before);
        EXPECT_EQ(outcome.status, 0) << argument;
        EXPECT_EQ(outcome.length, std::nullopt) << argument;
        EXPECT_EQ(hex(outcome.out), hex(before)) << argument;
    }
}

// ---- Result ----

TEST(Ipv6LinkLocal, ThreeBytesEndTheResult) {
    const Outcome outcome = translate(result, bytes("aa bb cc"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 00 aa bb cc");
    EXPECT_EQ(hex(translate(result, Bytes(3)).out), "11 00 00 00 00 00 00 00");
    walk(result, result_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(result, result_model, 200);
    expect_length_ignored(result, bytes("aa bb cc"));
}

TEST(Ipv6LinkLocal, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[90].key, ipv6_ll_xlate_hash_key);
    EXPECT_EQ(l2p_ucode_func_table[90].result, ipv6_ll_xlate_hash_result);
    EXPECT_EQ(p2l_ucode_func_table[90], generic_xlate_logical_result);
}

}  // namespace
