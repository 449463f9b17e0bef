// The fast-path IP pair: the generic key under its own name, and a 3-byte result behind the header.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

Translator key(std::size_t length) { return FORWARD(generic_fast_ip_xlate_key, length, length); }
const Translator result = FORWARD(generic_fast_ip_xlate_result, 3, 4);

Reply key_model(Bytes& in, Bytes& out) {
    std::copy(in.begin(), in.end(), out.begin());
    return {.length = static_cast<std::uint32_t>(in.size())};
}

Reply result_model(Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = 0x11",
        "P1 = L0",
        "P2 = L1",
        "P3 = L2",
    };
    rows.apply(in, out);
    return {.length = 4};
}

// The length that it reports follows its argument, whatever the record.
const support::Models result_models{
    "generic_fast_ip_xlate_result", [](std::size_t length, std::uint32_t) {
        return support::Modelled{FORWARD(generic_fast_ip_xlate_result, length, 4), [length](Bytes& in, Bytes& out) {
                                     Reply reply = result_model(in, out);
                                     reply.length = static_cast<std::uint32_t>(length + 1);
                                     return reply;
                                 }};
    }};
const support::Models key_models{"generic_fast_ip_xlate_key", [](std::size_t length, std::uint32_t) {
                                     return support::Modelled{key(length), key_model};
                                 }};

TEST(FastIpKey, CopiesUpTo47Bytes) {
    for (std::size_t length = 0; length <= 47; ++length) {
        check(key(length), key_model, Bytes(length));
        check(key(length), key_model, counting(length, 0xa6));
    }
    walk(key(47), key_model, {Bytes(47), Bytes(47, 0xff), counting(47)});
    const Outcome outcome = translate(key(4), bytes("12 34 56 78"), bytes("a5 a5 a5 a5 a5"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "12 34 56 78 a5");
}

TEST(FastIpKey, RefusesMoreThan47Bytes) {
    for (const std::int32_t length : {48, 49, 64, 0xff, 0x100, 0x10000, std::numeric_limits<std::int32_t>::max()}) {
        const Outcome outcome = translate_with_length(key(64), counting(64), length, Bytes(64, 0xa5));
        EXPECT_EQ(outcome.status, 22) << length;
        EXPECT_EQ(outcome.length, std::nullopt) << length;
        EXPECT_EQ(outcome.out, Bytes(64, 0xa5)) << length;
    }
}

TEST(FastIpResult, CarriesEveryBitBehindTheHeader) {
    walk(result, result_model, {Bytes(3), Bytes(3, 0xff), bytes("12 34 56")});
    check_random(result, result_model, 500);
    const Outcome outcome = translate(result, bytes("12 34 56"), bytes("ff ff ff ff"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "11 12 34 56");
}

TEST(FastIpResult, WritesFourBytesAndReportsTheLengthPlusOne) {
    constexpr std::pair<std::int32_t, std::uint32_t> accepted[] = {
        {0, 1},
        {1, 2},
        {2, 3},
        {3, 4},
        {4, 5},
        {47, 48},
        {48, 49},
        {63, 64},
        {64, 65},
        // The bound is signed, and no length reaches the bytes moved.
        {-1, 0},
        {-2, 0xffffffff},
        {std::numeric_limits<std::int32_t>::min(), 0x80000001},
    };
    for (const auto& [length, reported] : accepted) {
        const Outcome outcome = translate_with_length(result, bytes("12 34 56"), length, Bytes(80, 0xa5));
        EXPECT_EQ(outcome.status, 0) << length;
        EXPECT_EQ(outcome.length, reported) << length;
        Bytes expected(80, 0xa5);
        put_big(expected, 0, 4, 0x11123456);
        EXPECT_EQ(hex(outcome.out), hex(expected)) << length;
    }
}

TEST(FastIpResult, RefusesMoreThan64Bytes) {
    for (const std::int32_t length : {65, 66, 0xff, 0x100, 0x10000, std::numeric_limits<std::int32_t>::max()}) {
        const Outcome outcome = translate_with_length(result, bytes("12 34 56"), length, Bytes(4, 0xa5));
        EXPECT_EQ(outcome.status, 22) << length;
        EXPECT_EQ(outcome.length, std::nullopt) << length;
        EXPECT_EQ(hex(outcome.out), "a5 a5 a5 a5") << length;
    }
}

}  // namespace
