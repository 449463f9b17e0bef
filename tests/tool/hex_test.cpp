// Hex as people paste it.

#include "npxlate/hex.h"

#include <gtest/gtest.h>

#include <string>

#include "npxlate/error.h"

namespace {

using tool::Bytes;
using tool::parse_hex;

std::string error_of(std::string_view text) {
    try {
        parse_hex(text);
    } catch (const tool::WrongInput& error) {
        return error.what();
    }
    return "no error";
}

TEST(ParseHex, TakesBytesHoweverSeparated) {
    const Bytes expected{0x01, 0xab, 0xff, 0x00};
    for (const char* text :
         {"01abff00", "01 ab ff 00", "01:AB:FF:00", "0x01 0xab 0xff 0x00", "0x01abff00", "0X01AB ff00", "01ab\nff00\n",
          "01ab\r\nff00\r\n", "\t01 ab\vff\f00 ", "0x01, 0xab, 0xff, 0x00,"}) {
        EXPECT_EQ(parse_hex(text), expected) << text;
    }
}

TEST(ParseHex, TakesNothingAsNoBytes) {
    EXPECT_EQ(parse_hex(""), Bytes{});
    EXPECT_EQ(parse_hex(" \r\n:"), Bytes{});
}

TEST(ParseHex, TakesEveryByte) {
    std::string text;
    Bytes expected;
    for (unsigned value = 0; value < 256; ++value) {
        text += "0123456789abcdef"[value / 16];
        text += "0123456789ABCDEF"[value % 16];
        expected.push_back(static_cast<std::uint8_t>(value));
    }
    EXPECT_EQ(parse_hex(text), expected);
}

TEST(ParseHex, SaysWhereACharacterIsNone) {
    EXPECT_EQ(error_of("01 0g"), "bad hex: expected a hex digit, found 'g' at position 5");
    EXPECT_EQ(error_of("01\n02\n0-"), "bad hex: expected a hex digit, found '-' at line 3, position 2");
    EXPECT_EQ(error_of("\xc3\xa9"), "bad hex: expected a hex digit, found the byte 0xc3 at position 1");
    EXPECT_EQ(error_of(std::string_view{"00\0", 3}),
              "bad hex: expected a hex digit, found the byte 0x00 at position 3");
    EXPECT_EQ(error_of("000x01"), "bad hex: expected a hex digit, found 'x' at position 4");
}

TEST(ParseHex, SaysWhereADigitIsMissing) {
    EXPECT_EQ(error_of("0"), "bad hex: expected two digits for each byte, found 1 digit at position 1");
    EXPECT_EQ(error_of("01 0x123"), "bad hex: expected two digits for each byte, found 3 digits at position 4");
    EXPECT_EQ(error_of("01 0x"), "bad hex: expected digits after the 0x at position 4");
}

TEST(ParseHex, ReplacesTheBytesThatWere) {
    Bytes bytes{1, 2, 3};
    parse_hex("04", bytes);
    EXPECT_EQ(bytes, Bytes{4});
}

TEST(ToHex, WritesTwoLowerCaseDigitsAByte) {
    EXPECT_EQ(tool::to_hex(Bytes{0x00, 0x0a, 0xf0, 0xff}), "000af0ff");
    EXPECT_EQ(tool::to_hex(Bytes{}), "");
}

}  // namespace
