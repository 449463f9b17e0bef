// Positions in words: what is written is read again, and what is none is told why.
#include "trace/position.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using npxlate::trace::NoPosition;
using npxlate::trace::parse_position;
using npxlate::trace::Position;
using npxlate::trace::position;

std::string refusal(const char* text, std::optional<char> letter = {}) {
    try {
        parse_position(text, letter);
    } catch (const NoPosition& error) {
        return error.what();
    }
    return "not refused";
}

TEST(Position, IsABitOrBitsOfAByteOrBytes) {
    EXPECT_EQ(parse_position("L3.4"), (Position{'L', {28, 1}}));
    EXPECT_EQ(parse_position("P3.4-2"), (Position{'P', {26, 3}}));
    EXPECT_EQ(parse_position("P3.4-4"), (Position{'P', {28, 1}}));
    EXPECT_EQ(parse_position("L12"), (Position{'L', {96, 8}}));
    EXPECT_EQ(parse_position("L12-15"), (Position{'L', {96, 32}}));
    EXPECT_EQ(parse_position("L167"), (Position{'L', {1336, 8}}));
    EXPECT_EQ(parse_position("P95.7"), (Position{'P', {767, 1}}));
}

TEST(Position, IsReadAsItIsWritten) {
    for (const char letter : {'L', 'P'}) {
        for (unsigned byte = 0; byte < 96; ++byte) {
            for (unsigned low = 0; low < 8; ++low) {
                for (unsigned width = 1; low + width <= 8; ++width) {
                    const auto first = static_cast<std::uint16_t>(8 * byte + low);
                    const Position bits{letter, {first, static_cast<std::uint16_t>(width)}};
                    EXPECT_EQ(parse_position(position(letter, first, width), letter), bits);
                }
            }
            for (unsigned last = byte; last < 96; ++last) {
                const auto first = static_cast<std::uint16_t>(8 * byte);
                const Position bytes{letter, {first, static_cast<std::uint16_t>(8 * (last - byte + 1))}};
                EXPECT_EQ(parse_position(position(letter, first, bytes.bits.width)), bytes);
            }
        }
    }
}

TEST(Position, IsRefusedWithWhatWouldBeRight) {
    const std::string any = " is no position: expected bits such as L3.4, L3.4-2, L12 or L12-15";
    for (const char* const text : {"", "L", "P", "X3", "l3", "3", "L3.", "L3.4-", "L12-", "L3.4.2", "L3 ", " L3", "L-3",
                                   "L3-4-5", "L3.x", "L12-L15", "L99999999999"}) {
        EXPECT_EQ(refusal(text), '"' + std::string{text} + '"' + any);
    }
    EXPECT_EQ(refusal("P3", 'L'), "\"P3\" is no position: expected logical bits such as L3.4, L3.4-2, L12 or L12-15");
    EXPECT_EQ(refusal("L3", 'P'), "\"L3\" is no position: expected physical bits such as P3.4, P3.4-2, P12 or P12-15");
    EXPECT_EQ(refusal("L168"), "\"L168\" is no position: expected bytes from 0 to 167");
    EXPECT_EQ(refusal("P90-96"), "\"P90-96\" is no position: expected bytes from 0 to 95");
    EXPECT_EQ(refusal("L15-12"), "\"L15-12\" is no position: expected L12-15, the lowest byte first");
    EXPECT_EQ(refusal("L3.8"), "\"L3.8\" is no position: expected bits from 7 to 0");
    EXPECT_EQ(refusal("L3.2-4"), "\"L3.2-4\" is no position: expected L3.4-2, the highest bit first");
}

TEST(Position, LooksLikeOne) {
    for (const char* const text : {"L3", "P3.9", "L15-12", "L3.4-"}) {
        EXPECT_TRUE(npxlate::trace::is_like_position(text)) << text;
    }
    for (const char* const text : {"", "L", "L2vpn", "P-3", "label", "3"}) {
        EXPECT_FALSE(npxlate::trace::is_like_position(text)) << text;
    }
}

}  // namespace
