#include <array>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator ipv4_key = FORWARD(ipv4_leaf_fastip_xlate_key, 4, 4);
const Translator ipv6_key = FORWARD(ipv6_leaf_fastip_xlate_key, 16, 16);
const Translator result = FORWARD(ip_leaf_fastip_xlate_result, 3, 4);

Reply ipv4_key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-3 = swap L0-3"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 4};
}

Reply ipv6_key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-15 = swap L0-15"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 16};
}

Reply result_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0 = 0x11", "P1 = L0", "P2 = L1", "P3 = L2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 4};
}

// The two keys write as many bytes as their length says.
Translator ipv4_key_of(std::size_t in, std::size_t out) {
    return forward("ipv4_leaf_fastip_xlate_key", ipv4_leaf_fastip_xlate_key, in, out);
}
Translator ipv6_key_of(std::size_t size) {
    return forward("ipv6_leaf_fastip_xlate_key", ipv6_leaf_fastip_xlate_key, size, size);
}

// The translator called with one of its three pointers null: 0 the logical record, 1 the physical one, 2 the length.
Translator with_null(npxlate_key_fn* translate, int argument, std::size_t size) {
    return {"fast IP key with null argument " + std::to_string(argument),
            [translate, argument](const void* in, std::int32_t length, void* out, std::uint32_t* out_length) {
                return translate(argument == 0 ? nullptr : in, length, argument == 1 ? nullptr : out,
                                 argument == 2 ? nullptr : out_length);
            },
            size, size};
}

const support::Models models{{ipv4_key, ipv4_key_model}, {ipv6_key, ipv6_key_model}, {result, result_model}};

// ---- Keys ----

TEST(FastIpLeafKey, Ipv4AddressIsReversed) {
    const Outcome outcome = translate(ipv4_key, bytes("04 03 02 01"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "01 02 03 04");
    walk(ipv4_key, ipv4_key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x31)});
    check_random(ipv4_key, ipv4_key_model, 200);
}

TEST(FastIpLeafKey, Ipv4KeyIsFilledWithZerosBeyondTheAddress) {
    for (const std::int32_t size : {5, 8, 16, 47}) {
        const auto count = static_cast<std::size_t>(size);
        const Outcome outcome = translate(ipv4_key_of(count, count), counting(count, 0x10), Bytes(count, 0xa5));
        Bytes expected(count);
        expected[0] = 0x13;
        expected[1] = 0x12;
        expected[2] = 0x11;
        expected[3] = 0x10;
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, static_cast<std::uint32_t>(size));
        EXPECT_EQ(hex(outcome.out), hex(expected));
    }
}

TEST(FastIpLeafKey, Ipv4KeyOfAShortLengthHoldsTheFirstBytesOfTheAddress) {
    const std::array<const char*, 4> expected{"", "01", "01 02", "01 02 03"};
    for (std::size_t size = 0; size < expected.size(); ++size) {
        const Outcome outcome = translate_with_length(ipv4_key_of(4, size), bytes("04 03 02 01"),
                                                      static_cast<std::int32_t>(size), Bytes(size, 0xa5));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, size);
        EXPECT_EQ(hex(outcome.out), expected[size]);
    }
}

TEST(FastIpLeafKey, Ipv6AddressIsReversed) {
    const Outcome outcome = translate(ipv6_key, bytes("01 00 00 00 00 00 00 00 00 00 34 12 b8 0d 01 20"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "20 01 0d b8 12 34 00 00 00 00 00 00 00 00 00 01");
    walk(ipv6_key, ipv6_key_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x31)});
    check_random(ipv6_key, ipv6_key_model, 200);
}

TEST(FastIpLeafKey, Ipv6KeyReversesAsManyBytesAsItIsGiven) {
    for (const std::size_t size : {1U, 2U, 3U, 15U, 17U, 33U}) {
        const Outcome outcome = translate(ipv6_key_of(size), counting(size), Bytes(size, 0xa5));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, size);
        for (std::size_t i = 0; i < size; ++i) {
            EXPECT_EQ(outcome.out[i], size - 1 - i) << "byte " << i << " of " << size;
        }
    }
}

TEST(FastIpLeafKey, KeysOfNoLengthOrANegativeOneWriteNothingButTheLength) {
    const Bytes before = counting(16, 0x80);
    for (const std::int32_t length : {0, -1, -16, INT32_MIN}) {
        for (const Translator& translator : {ipv4_key_of(4, before.size()), ipv6_key}) {
            const Outcome outcome = translate_with_length(translator, counting(translator.in_size), length, before);
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.length, static_cast<std::uint32_t>(length));
            EXPECT_EQ(hex(outcome.out), hex(before));
        }
    }
}

TEST(FastIpLeafKey, NullArgumentsAreNothingToDo) {
    for (int argument = 0; argument < 3; ++argument) {
        const Bytes before4 = counting(4, 0x80);
        const Outcome ipv4 = translate(with_null(ipv4_leaf_fastip_xlate_key, argument, 4), Bytes(4, 0xff), before4);
        EXPECT_EQ(ipv4.status, 0);
        EXPECT_EQ(ipv4.length, std::nullopt);
        EXPECT_EQ(hex(ipv4.out), hex(before4));

        const Bytes before16 = counting(16, 0x80);
        const Outcome ipv6 = translate(with_null(ipv6_leaf_fastip_xlate_key, argument, 16), Bytes(16, 0xff), before16);
        EXPECT_EQ(ipv6.status, 0);
        EXPECT_EQ(ipv6.length, std::nullopt);
        EXPECT_EQ(hex(ipv6.out), hex(before16));
    }
}

// ---- Result ----

TEST(FastIpLeaf, ThreeBytesFollowTheHeader) {
    const Outcome outcome = translate(result, bytes("aa bb cc"), Bytes(4, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "11 aa bb cc");
    walk(result, result_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x31)});
    check_random(result, result_model, 200);
    expect_length_ignored(result, bytes("aa bb cc"));
}

TEST(FastIpLeaf, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[121].key, ipv4_leaf_fastip_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[121].result, ip_leaf_fastip_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[121], generic_xlate_logical_result);
    EXPECT_EQ(l2p_ucode_func_table[42].key, ipv6_leaf_fastip_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[42].result, ip_leaf_fastip_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[42], generic_xlate_logical_result);
}

}  // namespace
