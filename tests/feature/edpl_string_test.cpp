// The EDPL string: a header stamped on a record that the caller has prepared. By name only.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

// Not one byte of the logical record is readable here: the translator must not look at it.
const Translator result = FORWARD(edpl_str_xlate_result, 0, 32);

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.4 = 1",
        "P0.0 = 1",
    };
    rows.apply(in, out);
    return {.length = 32};
}

const support::Models models{{result, result_model}};

TEST(EdplString, StampsTheHeaderAndReadsNothing) { check(result, result_model, {}); }

TEST(EdplString, LeavesABufferOfOnesAsItIs) {
    const Outcome outcome = translate(result, {}, Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff ff ff ff ff ff ff ff ff ff ff");
}

TEST(EdplString, TurnsABufferOfZerosIntoABareHeader) {
    const Outcome outcome = translate(result, {});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(EdplString, ChangesNothingButTheHeaderBits) {
    EXPECT_EQ(hex(translate(result, {}, counting(32, 0x80)).out),
              "91 81 82 83 84 85 86 87 88 89 8a 8b 8c 8d 8e 8f 90 91 92 93 "
              "94 95 96 97 98 99 9a 9b 9c 9d 9e 9f");
    for (unsigned first = 0; first < 256; ++first) {
        const Bytes before = counting(32, static_cast<std::uint8_t>(first));
        Bytes expected = before;
        expected.at(0) |= 0x11;
        EXPECT_EQ(hex(translate(result, {}, before).out), hex(expected));
    }
}

TEST(EdplString, IgnoresTheLength) { expect_length_ignored(result, {}); }

}  // namespace
