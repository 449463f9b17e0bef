// Hex as other tools print it. The samples were printed by these tools.

#include "io/pasted.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/error.h"
#include "tool/program.h"

namespace {

using io::Bytes;
using io::parse_pasted;
using io::Words;

std::string error_of(std::string_view text, const std::optional<Words>& words = {}) {
    try {
        return "taken as " + io::to_hex(parse_pasted(text, words));
    } catch (const io::WrongInput& error) {
        return error.what();
    }
}

// 20 bytes: some that are text, some that look like hex as text, some that are none.
const Bytes record{0x00, 0x01, 0x61, 0x62, 0x20, 0x20, 0x63, 0x64, 0xff, 0x7f,
                   0x23, 0x7c, 0x3a, 0x30, 0x31, 0x0a, 0x20, 0x65, 0x66, 0x20};

struct Sample {
    const char* tool;
    const char* text;
};

TEST(Pasted, IsTakenAsToolsPrintIt) {
    const std::vector<Sample> samples{
        {"xxd",
         "00000000: 0001 6162 2020 6364 ff7f 237c 3a30 310a  ..ab  cd..#|:01.\n"
         "00000010: 2065 6620                                 ef \n"},
        {"xxd, without blanks at the ends of lines",
         "00000000: 0001 6162 2020 6364 ff7f 237c 3a30 310a  ..ab  cd..#|:01.\r\n"
         "00000010: 2065 6620                                 ef"},
        {"xxd -g1",
         "00000000: 00 01 61 62 20 20 63 64 ff 7f 23 7c 3a 30 31 0a  ..ab  cd..#|:01.\n"
         "00000010: 20 65 66 20                                       ef \n"},
        {"xxd -d",
         "00000000: 0001 6162 2020 6364 ff7f 237c 3a30 310a  ..ab  cd..#|:01.\n"
         "00000016: 2065 6620                                 ef \n"},
        {"xxd -p", "0001616220206364ff7f237c3a30310a20656620\n"},
        {"xxd -i",
         "unsigned char record_bin[] = {\n"
         "  0x00, 0x01, 0x61, 0x62, 0x20, 0x20, 0x63, 0x64, 0xff, 0x7f, 0x23, 0x7c,\n"
         "  0x3a, 0x30, 0x31, 0x0a, 0x20, 0x65, 0x66, 0x20\n"
         "};\n"
         "unsigned int record_bin_len = 20;\n"},
        {"hexdump -C",
         "00000000  00 01 61 62 20 20 63 64  ff 7f 23 7c 3a 30 31 0a  |..ab  cd..#|:01.|\n"
         "00000010  20 65 66 20                                       | ef |\n"
         "00000014\n"},
        {"hexdump -C without its last line",
         "00000000  00 01 61 62 20 20 63 64  ff 7f 23 7c 3a 30 31 0a  |..ab  cd..#|:01.|\n"
         "00000010  20 65 66 20                                       | ef |\n"},
        {"od -A x -t x1",
         "000000 00 01 61 62 20 20 63 64 ff 7f 23 7c 3a 30 31 0a\n"
         "000010 20 65 66 20\n"
         "000014\n"},
        {"od -t x1",
         "0000000 00 01 61 62 20 20 63 64 ff 7f 23 7c 3a 30 31 0a\n"
         "0000020 20 65 66 20\n"
         "0000024\n"},
        {"od -A d -t x1z",
         "0000000 00 01 61 62 20 20 63 64 ff 7f 23 7c 3a 30 31 0a  >..ab  cd..#|:01.<\n"
         "0000016 20 65 66 20                                      > ef <\n"
         "0000020\n"},
        {"od -A n -t x1", " 00 01 61 62 20 20 63 64 ff 7f 23 7c 3a 30 31 0a\n 20 65 66 20\n"},
        {"gdb x/20xb",
         "0x7fffffffe4a0:\t0x00\t0x01\t0x61\t0x62\t0x20\t0x20\t0x63\t0x64\n"
         "0x7fffffffe4a8:\t0xff\t0x7f\t0x23\t0x7c\t0x3a\t0x30\t0x31\t0x0a\n"
         "0x7fffffffe4b0:\t0x20\t0x65\t0x66\t0x20\n"},
        {"gdb x/20xb of what has a name",
         "0x4010 <entry>:\t0x00\t0x01\t0x61\t0x62\t0x20\t0x20\t0x63\t0x64\n"
         "0x4018 <entry+8>:\t0xff\t0x7f\t0x23\t0x7c\t0x3a\t0x30\t0x31\t0x0a\n"
         "0x4020 <entry+16>:\t0x20\t0x65\t0x66\t0x20\n"},
        {"gdb p/x",
         "$1 = {0x0, 0x1, 0x61, 0x62, 0x20 <repeats 2 times>, 0x63, 0x64, 0xff, 0x7f, 0x23, 0x7c, 0x3a, 0x30,\n"
         "  0x31, 0xa, 0x20, 0x65, 0x66, 0x20}\n"},
        {"C",
         "static const uint8_t entry[2][10] = {  /* as {sent} */\n"
         "    {0x00, 0x01, 0x61, 0x62, 0x20, 0x20, 0x63, 0x64, 0xff, 0x7f}, // 0x12\n"
         "    {0x23, 0x7c, 0x3a, 0x30, 0x31, 0x0a, 0x20, 0x65, 0x66, 0x20},\n"
         "};\n"},
        {"quotes and comments",
         "# an entry\n'00:01:61:62:20:20' \"63-64-ff-7f-23-7c\"  # two addresses\n3a30.310a.2065;6620\n"},
        {"a list",
         "[0x00, 0x01, 0x61, 0x62, 0x20, 0x20, 0x63, 0x64, 0xff, 0x7f, 0x23, 0x7c, 0x3a, 0x30, 0x31, 0x0a, 0x20, "
         "0x65, 0x66, 0x20]"},
        {"a byte-order mark", "\xef\xbb\xbf 0001616220206364ff7f237c3a30310a20656620"},
    };
    for (const auto& [tool, text] : samples) {
        EXPECT_EQ(error_of(text), "taken as " + io::to_hex(record)) << tool;
    }
}

TEST(Pasted, TakesLinesThatWereLeftOut) {
    const std::string zeros(80, '0');
    EXPECT_EQ(error_of("00000000  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n*\n"
                       "00000020  00 00 00 00 00 00 00 00                           |........|\n00000028\n"),
              "taken as " + zeros);
    EXPECT_EQ(
        error_of("000000 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n*\n000020 00 00 00 00 00 00 00 00\n000028\n"),
        "taken as " + zeros);
    // 0100 is 64 or 256.
    EXPECT_EQ(error_of("0000000 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n*\n0000100\n"),
              "the lines that * stands for may be more or fewer: expected a dump of all lines (od -v, hexdump -v)");
}

const std::string four_words = "0000000001020304fffefdfc00000080";

TEST(Pasted, TakesWordsIfTheirOrderIsSaid) {
    const std::vector<Sample> little{
        {"gdb x/4xw", "0x7fffffffe4a0:\t0x00000000\t0x04030201\t0xfcfdfeff\t0x80000000\n"},
        {"gdb x/4xw of what has a name", "0x4010 <entry>:\t0x00000000\t0x04030201\t0xfcfdfeff\t0x80000000\n"},
        {"words alone", "0x00000000 0x04030201 0xfcfdfeff 0x80000000"},
        {"C", "uint32_t entry[] = {0x0, 0x4030201, 0xfcfdfeff, 0x80000000};"},
        {"od -t x4", "0000000 00000000 04030201 fcfdfeff 80000000\n0000020\n"},
        {"xxd -e", "00000000: 00000000 04030201 fcfdfeff 80000000  ................\n"},
    };
    for (const auto& [tool, text] : little) {
        EXPECT_EQ(error_of(text, Words{4}), "taken as " + four_words) << tool;
        const std::string without = error_of(text);
        EXPECT_NE(
            without.find("expected --words 4 if they are words in host order, --words 4be if they are big-endian"),
            std::string::npos)
            << tool << ": " << without;
    }
    EXPECT_EQ(error_of("0x00000000 0x01020304 0xfffefdfc 0x00000080", Words{4, true}), "taken as " + four_words);
    EXPECT_EQ(error_of("0x7fffffffe4a0:\t0x0403020100000000\t0x80000000fcfdfeff\n", Words{8}),
              "taken as " + four_words);
    EXPECT_NE(error_of("0x7fffffffe4a0:\t0x0403020100000000\t0x80000000fcfdfeff\n").find("--words 8 "),
              std::string::npos);
    // The last word of od has a byte more than there is.
    const std::string od = "0000000 0000 0000 0201 0403 00ff\n0000011\n";
    EXPECT_EQ(error_of(od, Words{2}), "taken as 0000000001020304ff");
    EXPECT_NE(error_of(od).find("expected --words 2 if"), std::string::npos) << error_of(od);
    EXPECT_EQ(error_of("01 02", Words{2}),
              "bad hex: expected words of 2 bytes, 4 digits each, found 2 digits at position 1");
}

TEST(Pasted, IsRefusedIfItCanBeReadInTwoWays) {
    EXPECT_EQ(
        error_of("000000 00 01 61 62"),
        "000000 at position 1 may be an address or bytes: expected a colon behind an address, all lines of the dump, "
        "or bytes alone");
    // A line is missing.
    EXPECT_NE(error_of("000000 00 01 61 62\n000010 20 65 66 20\n000014\n").find("may be an address or bytes"),
              std::string::npos);
    EXPECT_EQ(
        error_of("00000000: 0001 6162\n00000010: 2065 6620\n"),
        "the addresses do not follow each other: expected all lines of one dump, in their order, from the first byte "
        "of the record to its last");
    EXPECT_EQ(error_of("00000000: 0001\n6162\n"), "expected an address as on the lines before at line 2, position 1");
    EXPECT_EQ(error_of("10.20.30.40"),
              "bad hex: expected four digits before and behind a dot, as in a MAC address, at position 3");
    EXPECT_EQ(error_of("fe80::0001"), "bad hex: expected every byte, found the short form of an address at position 5");
    EXPECT_EQ(error_of("{10, 20}"), "bad hex: expected 0x before each byte of an array, found 10 at position 2");
    EXPECT_EQ(error_of("{0x01}; {0x02}"), "expected one array, found another at position 9");
    EXPECT_EQ(error_of("{0x01"), "expected the closing brace of the array at position 1");
    EXPECT_EQ(error_of("01 /* 02"), "expected the end of the comment at position 4");
    EXPECT_EQ(error_of("01-"), "bad hex: expected a hex digit, found '-' at position 3");
    // Text beside the bytes that is not theirs.
    EXPECT_NE(error_of("00000000: 0001 6162  ..ax\n").find("found '.'"), std::string::npos);
}

TEST(Pasted, TakesPlainBytesAsEver) {
    const Bytes expected{0x01, 0xab, 0xff, 0x00};
    for (const char* text :
         {"01abff00", "01 ab ff 00", "01:AB:FF:00", "0x01 0xab 0xff 0x00", "0x01abff00", "0X01AB ff00", "01ab\nff00\n",
          "01ab\r\nff00\r\n", "\t01 ab\vff\f00 ", "0x01, 0xab, 0xff, 0x00,", "01abff 00"}) {
        EXPECT_EQ(error_of(text), "taken as " + io::to_hex(expected)) << text;
    }
    EXPECT_EQ(parse_pasted(""), Bytes{});
    EXPECT_EQ(parse_pasted(" \r\n:"), Bytes{});
    EXPECT_EQ(parse_pasted("# nothing"), Bytes{});
}

TEST(Pasted, SaysWhereACharacterIsNone) {
    EXPECT_EQ(error_of("01 0g"), "bad hex: expected a hex digit, found 'g' at position 5");
    EXPECT_EQ(error_of("01\n02\n0-"), "bad hex: expected a hex digit, found '-' at line 3, position 2");
    EXPECT_EQ(error_of("\xc3\xa9"), "bad hex: expected a hex digit, found the byte 0xc3 at position 1");
    EXPECT_EQ(error_of(std::string_view{"00\0", 3}),
              "bad hex: expected a hex digit, found the byte 0x00 at position 3");
    EXPECT_EQ(error_of("000x01"), "bad hex: expected a hex digit, found 'x' at position 4");
    EXPECT_EQ(error_of("0"), "bad hex: expected two digits for each byte, found 1 digit at position 1");
    EXPECT_EQ(error_of("01 0x123"), "bad hex: expected two digits for each byte, found 3 digits at position 4");
    EXPECT_EQ(error_of("01 0x"), "bad hex: expected digits after the 0x at position 4");
}

TEST(Pasted, HasNoSizeThatCannotBeHeld) {
    std::string many;
    for (int i = 0; i < 100; ++i) {
        many += "0x00 <repeats 1000000 times>, ";
    }
    EXPECT_EQ(error_of(many), "too many bytes: expected those of one record");
    EXPECT_NE(error_of("00000000 00\n*\nffffffff\n").find("bad hex"), std::string::npos);
}

TEST(ParseWords, TakesSizesAndOrders) {
    EXPECT_EQ(io::parse_words("4")->size, 4U);
    EXPECT_FALSE(io::parse_words("4")->big_endian);
    EXPECT_TRUE(io::parse_words("8be")->big_endian);
    for (const char* text : {"", "1", "3", "16", "be", "4le", "4 "}) {
        EXPECT_FALSE(io::parse_words(text).has_value()) << text;
    }
}

TEST(IsBinary, TellsRecordsFromText) {
    EXPECT_FALSE(io::is_binary("01 02\r\n\t03"));
    EXPECT_TRUE(io::is_binary(std::string_view{"01\0", 3}));
    EXPECT_TRUE(io::is_binary("\x7f"));
    EXPECT_TRUE(io::is_binary("\xff\xfe"));
    EXPECT_TRUE(io::is_binary("\xff\xfe\x01\x02"));
    EXPECT_THROW(io::is_binary(std::string_view{"\xff\xfe\x30\x00\x31\x00", 6}), io::WrongInput);
    EXPECT_THROW(io::is_binary(std::string_view{"\xfe\xff\x00\x30", 4}), io::WrongInput);
}

// ---- Where the tool takes them ----

using program::File;
using program::Outcome;
using program::run;

TEST(Record, MayBeBinaryInAFile) {
    const std::string binary{"\x01\x02\x03\x04\x05\x06\x07\x08", 8};
    const File file{binary};
    EXPECT_EQ(run({"key", "17", "-f", file.path()}).out, "0605040302010708\n");
    EXPECT_EQ(run({"key", "17", "-f", "-"}, {.input = binary}).out, "0605040302010708\n");
    EXPECT_EQ(run({"key", "17", "-f", file.path(), "--words", "4"}).err,
              "npxlate: error: " + file.path() + " is binary: expected hex, or no --words\n");
}

TEST(Record, MayBeWords) {
    EXPECT_EQ(run({"key", "17", "--words", "4", "0x04030201 0x08070605"}).out, "0605040302010708\n");
    EXPECT_EQ(run({"key", "17", "--words", "3", "00"}).err,
              "npxlate: error: bad --words 3: expected 2, 4 or 8, for words in host order, or 2be, 4be or 8be\n");
    EXPECT_EQ(run({"key", "17", "--words", "", "00"}).status, 2);
}

TEST(Record, HasOneFileWhoseNameIsNotEmpty) {
    EXPECT_EQ(run({"key", "17", "-f", ""}, {.input = "0102030405060708"}).err,
              "npxlate: error: --file: expected a value, found an empty one (see npxlate key --help)\n");
    EXPECT_EQ(run({"key", "17", "-f", "/dev/null", "-f", "/dev/null"}).err,
              "npxlate: error: expected one record, found a second --file\n");
}

TEST(Record, ThatIsWaitedForIsAskedFor) {
    const Outcome outcome = run({"key", "generic_xlate_key"}, {.in_is_terminal = true});
    EXPECT_EQ(outcome.err,
              "npxlate: note: reading the record, as hex from standard input; Ctrl-D on a line of its own ends it\n");
    EXPECT_EQ(outcome.out, "\n");
}

TEST(RecordPair, ComesFromArgumentsFilesAndStandardInputInOrder) {
    const File first{"01 02 03 04 05 06 07 08"};
    const File second{std::string{"\x01\x02\x03\x04\x05\x06\x07\x09", 8}};
    const std::vector<std::string> diff{"diff", "17", "--role", "key"};
    const auto run_diff = [&](std::vector<std::string> records, const std::string& input = "") {
        records.insert(records.begin(), diff.begin(), diff.end());
        return run(records, {.input = input});
    };
    const std::string forth = run_diff({"0102030405060708", "0102030405060709"}).out;
    const std::string back = run_diff({"0102030405060709", "0102030405060708"}).out;
    EXPECT_NE(forth.find("0708 -> 0709"), std::string::npos) << forth;
    EXPECT_EQ(run_diff({"-f", first.path(), "-f", second.path()}).out, forth);
    EXPECT_EQ(run_diff({"-f", second.path(), "-f", first.path()}).out, back);
    EXPECT_EQ(run_diff({"-f", second.path(), "0102030405060708"}).out, back);
    EXPECT_EQ(run_diff({"0102030405060708", "-f", second.path()}).out, forth);
    EXPECT_EQ(run_diff({"-", "-f", second.path()}, "0102030405060708").out, forth);
    EXPECT_EQ(run_diff({"-f", second.path(), "-f", "-"}, "0102030405060708").out, back);
    EXPECT_EQ(run_diff({"-", "-"}).err, "npxlate: error: standard input holds one record: expected - once\n");
    EXPECT_EQ(run_diff({"00"}).err, "npxlate: error: expected two records, as hex or by --file, found 1\n");
}

}  // namespace
