// The generic translators: copies of as many bytes as the length says, up to bounds that differ on purpose.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"

namespace {

using namespace support;

constexpr std::size_t longest_key = 47;
constexpr std::size_t longest_result = 64;
constexpr std::size_t longest_read_back = 63;

Translator key(std::size_t length) { return FORWARD(generic_xlate_key, length, length); }
// The header is set even when nothing is copied.
Translator result(std::size_t length) {
    return FORWARD(generic_xlate_result, length, std::max(length, std::size_t{1}));
}
Translator reverse(std::size_t length) { return REVERSE(generic_xlate_logical_result, length, length); }

Reply key_model(Bytes& in, Bytes& out) {
    std::copy(in.begin(), in.end(), out.begin());
    return {.length = static_cast<std::uint32_t>(in.size())};
}

Reply result_model(Bytes& in, Bytes& out) {
    std::copy(in.begin(), in.end(), out.begin());
    out[0] |= 0x11;
    return {.length = static_cast<std::uint32_t>(in.size())};
}

Reply reverse_model(Bytes& in, Bytes& out) {
    std::copy(in.begin(), in.end(), out.begin());
    return {};
}

// The same for every record of up to `longest` bytes.
void expect_copies(Translator (*translator)(std::size_t), const Model& model, std::size_t longest) {
    for (std::size_t length = 0; length <= longest; ++length) {
        check(translator(length), model, Bytes(length));
        check(translator(length), model, Bytes(length, 0xff));
        check(translator(length), model, counting(length, 0xa6));
        check_random(translator(length), model, 10);
    }
    for (const std::size_t length : {std::size_t{1}, std::size_t{2}, std::size_t{16}, longest}) {
        walk(translator(length), model, {Bytes(length), Bytes(length, 0xff), counting(length)});
    }
}

// Lengths above the bound are refused, and nothing is written: neither output nor out-length.
void expect_refusals(Translator (*translator)(std::size_t), std::int32_t longest) {
    const Bytes before = counting(80, 0x77);
    for (const std::int32_t length : {longest + 1, longest + 2, 0x7f, 0x80, 0xff, 0x100, 0x101, 0x10000,
                                      std::numeric_limits<std::int32_t>::max()}) {
        const Outcome outcome = translate_with_length(translator(80), counting(80), length, before);
        EXPECT_EQ(outcome.status, 22) << length;
        EXPECT_EQ(outcome.length, std::nullopt) << length;
        EXPECT_EQ(outcome.out, before) << length;
    }
}

const support::Models key_models{"generic_xlate_key", [](std::size_t length, std::uint32_t) {
                                     return support::Modelled{key(length), key_model};
                                 }};
const support::Models result_models{"generic_xlate_result", [](std::size_t length, std::uint32_t) {
                                        return support::Modelled{result(length), result_model};
                                    }};
const support::Models reverse_models{"generic_xlate_logical_result", [](std::size_t length, std::uint32_t) {
                                         return support::Modelled{reverse(length), reverse_model};
                                     }};

TEST(GenericKey, CopiesUpTo47Bytes) { expect_copies(key, key_model, longest_key); }

TEST(GenericKey, RefusesMoreThan47Bytes) {
    EXPECT_EQ(translate(key(47), counting(47)).status, 0);
    EXPECT_EQ(translate(key(48), counting(48)).status, 22);
    expect_refusals(key, 47);
}

TEST(GenericKey, KeepsTheByteOrder) {
    const Outcome outcome = translate(key(4), bytes("12 34 56 78"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "12 34 56 78");
}

TEST(GenericKey, OfNoBytesSucceeds) {
    const Outcome outcome = translate(key(0), {}, bytes("a5 a5"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 0U);
    EXPECT_EQ(hex(outcome.out), "a5 a5");
}

TEST(GenericKey, LeavesWhatLiesBeyondTheLength) {
    EXPECT_EQ(hex(translate(key(2), bytes("12 34"), bytes("a5 a5 a5 a5")).out), "12 34 a5 a5");
}

TEST(GenericResult, CopiesUpTo64BytesAndSetsTheHeader) { expect_copies(result, result_model, longest_result); }

TEST(GenericResult, RefusesMoreThan64Bytes) {
    EXPECT_EQ(translate(result(64), counting(64)).status, 0);
    EXPECT_EQ(translate(result(65), counting(65)).status, 22);
    expect_refusals(result, 64);
}

TEST(GenericResult, KeepsTheOtherBitsOfTheFirstByte) {
    const Outcome outcome = translate(result(4), bytes("ca 34 56 78"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 4U);
    EXPECT_EQ(hex(outcome.out), "db 34 56 78");
    EXPECT_EQ(hex(translate(result(2), bytes("00 00"), bytes("ff ff")).out), "11 00");
    EXPECT_EQ(hex(translate(result(2), bytes("ff ff")).out), "ff ff");
    EXPECT_EQ(changes(result(2), bytes("00 00"), "L0.0"), "");
    EXPECT_EQ(changes(result(2), bytes("00 00"), "L0.4"), "");
    EXPECT_EQ(changes(result(2), bytes("00 00"), "L0.7"), "P0.7");
}

TEST(GenericResult, OfNoBytesSetsTheHeaderInWhatTheBufferHolds) {
    const Outcome outcome = translate(result(0), {}, bytes("82 a5"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 0U);
    EXPECT_EQ(hex(outcome.out), "93 a5");
}

TEST(GenericReverse, CopiesUpTo63Bytes) { expect_copies(reverse, reverse_model, longest_read_back); }

TEST(GenericReverse, RefusesMoreThan63Bytes) {
    EXPECT_EQ(translate(reverse(63), counting(63)).status, 0);
    EXPECT_EQ(translate(reverse(64), counting(64)).status, 22);
    expect_refusals(reverse, 63);
}

TEST(GenericReverse, KeepsTheHeader) {
    const Outcome outcome = translate(reverse(4), bytes("11 34 56 78"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "11 34 56 78");
    EXPECT_EQ(hex(translate(reverse(1), bytes("00")).out), "00");
}

TEST(GenericReverse, CannotReadBackTheLongestResult) {
    const Outcome there = translate(result(64), counting(64));
    ASSERT_EQ(there.status, 0);
    ASSERT_EQ(there.length, 64U);
    const Outcome back = translate(reverse(64), there.out, Bytes(64, 0xa5));
    EXPECT_EQ(back.status, 22);
    EXPECT_EQ(back.out, Bytes(64, 0xa5));
}

}  // namespace
