// The lines of JSON Lines.

#include "io/entry.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

namespace {

using io::BadJson;
using io::Entry;
using nlohmann::json;

std::string error_of(std::string_view line) {
    Entry entry;
    try {
        entry.parse(line);
    } catch (const BadJson& error) {
        return error.what();
    }
    return "no error";
}

TEST(Entry, KeepsItsMembersToTheLetter) {
    const std::string line =
        "\t{ \"a\" : 1.10 , \"b\\u0062\":[1 , {\"c\":\"]}\"}],\"\":null,\"a\":-0e+10, \"\xc3\xa9\":\"\\\"\\\\\"}  \r";
    Entry entry;
    entry.parse(line);
    ASSERT_EQ(entry.members().size(), 5U);
    const std::vector<Entry::Member> expected{{"a", "a", "1.10"},
                                              {"bb", "b\\u0062", R"([1 , {"c":"]}"}])"},
                                              {"", "", "null"},
                                              {"a", "a", "-0e+10"},
                                              {"\xc3\xa9", "\xc3\xa9", R"("\"\\")"}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(entry.members()[i].name, expected[i].name);
        EXPECT_EQ(entry.members()[i].written, expected[i].written);
        EXPECT_EQ(entry.members()[i].value, expected[i].value);
    }
    entry.parse("{}");
    EXPECT_TRUE(entry.members().empty());
}

TEST(Entry, TakesNumbersOfAnySize) {
    for (const char* number :
         {"18446744073709551616", "12345678901234567890123", "1e400", "-1e-400", "0.1e9999999999"}) {
        Entry entry;
        const std::string line = std::string{"{\"n\":"} + number + "}";
        entry.parse(line);
        EXPECT_EQ(entry.members().front().value, number);
    }
}

TEST(Entry, SaysInWhichColumnWhatIsMissing) {
    EXPECT_EQ(error_of(R"({"a":1)"), "bad JSON: expected ',' or '}', but the line ends at column 7");
    EXPECT_EQ(error_of(R"({"a" 1})"), "bad JSON: expected ':', found '1' at column 6");
    EXPECT_EQ(error_of(R"({"a":1,})"), "bad JSON: expected a member's name, in quotes, found '}' at column 8");
    EXPECT_EQ(error_of(R"({a:1})"), "bad JSON: expected a member's name, in quotes, found 'a' at column 2");
    EXPECT_EQ(error_of(R"({'a':1})"), "bad JSON: expected a member's name, in quotes, found ''' at column 2");
    EXPECT_EQ(error_of(R"({"a":tru})"), "bad JSON: expected true, found '}' at column 9");
    EXPECT_EQ(error_of(R"({"a":01})"), "bad JSON: expected ',' or '}', found '1' at column 7");
    EXPECT_EQ(error_of(R"({"a":-})"), "bad JSON: expected a digit, found '}' at column 7");
    EXPECT_EQ(error_of(R"({"a":[1;2]})"), "bad JSON: expected ',' or ']', found ';' at column 8");
    EXPECT_EQ(error_of(R"({"a":"\x"})"), "bad JSON: expected an escape that JSON has, found 'x' at column 8");
    EXPECT_EQ(error_of(R"({"a":"\u00g0"})"), "bad JSON: expected four hex digits, found 'g' at column 11");
    EXPECT_EQ(error_of(R"({} {})"), "bad JSON: expected nothing more behind the entry, found '{' at column 4");
    EXPECT_EQ(error_of("nonsense"), "bad JSON: expected null, found 'o' at column 2");
    EXPECT_EQ(error_of("\x7f"), "bad JSON: expected a value, found the byte 0x7f at column 1");
    // Characters are counted, not bytes.
    EXPECT_EQ(error_of("{\"\xc3\xa9\xe2\x82\xac\":}"), "bad JSON: expected a value, found '}' at column 7");
    EXPECT_EQ(error_of("{\"a\":\"\xff\"}"), "bad JSON: expected text in UTF-8, found the byte 0xff at column 7");
    EXPECT_EQ(error_of("{\"a\":\"\t\"}"),
              "bad JSON: expected the end of a string, '\"', found the byte 0x09 at column 7");
}

// Text that is JSON, and mutations of it, mostly not: the same is taken that another reader takes. That one refuses
// numbers that it cannot hold and halves of pairs of UTF-16, of which there are none here.
TEST(Entry, TakesWhatJsonIs) {
    const std::string seed =
        "{\"table\":17,\"k\\u00e9y\":\"01 "
        "02\\n\",\"x\":[1,-2.5e+1,true,false,null,{\"y\":[[],{}]}],\"\xe2\x82\xac\":\"\xf0\x9f\x98\x80\"}";
    const std::string characters = "{}[]\",:\\ue0129.-+tfnr\x80\xe2\xf0 ";
    std::mt19937 random{1};
    std::size_t taken = 0;
    for (int i = 0; i < 200000; ++i) {
        std::string line = seed;
        for (auto change = random() % 3; change-- > 0;) {
            const std::size_t at = random() % line.size();
            switch (random() % 3) {
                case 0:
                    line[at] = characters[random() % characters.size()];
                    break;
                case 1:
                    line.erase(at, 1 + random() % 3);
                    break;
                default:
                    line.insert(at, 1, characters[random() % characters.size()]);
            }
        }
        const bool expected = json::accept(line) && json::parse(line).is_object();
        EXPECT_EQ(error_of(line) == "no error", expected) << line << "\n" << error_of(line);
        taken += expected ? 1 : 0;
    }
    EXPECT_GT(taken, 10000U);
}

TEST(TextOf, ReplacesEscapes) {
    std::string storage;
    EXPECT_EQ(io::text_of(R"("plain")", storage), "plain");
    EXPECT_EQ(storage, "");
    for (const char* text : {R"("\"\\\/\b\f\n\r\t")", R"("a\u00e9\u20ac\ud83d\ude00z")", R"("\u0000")"}) {
        EXPECT_EQ(io::text_of(text, storage), json::parse(text).get<std::string>());
    }
    EXPECT_EQ(io::text_of(R"("\ud83dx\ude00")", storage), "\xef\xbf\xbdx\xef\xbf\xbd");
}

std::vector<std::string> reports(const std::vector<std::string>& lines) {
    std::vector<std::string> messages;
    io::BadLines bad_lines{[&](const std::string& message) { messages.push_back(message); }};
    Entry entry;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        try {
            entry.parse(lines[i]);
            bad_lines.done();
        } catch (const BadJson& error) {
            bad_lines.bad(i + 1, lines[i], error);
        }
    }
    bad_lines.done();
    EXPECT_EQ(bad_lines.count(), messages.size());
    return messages;
}

using Lines = std::vector<std::string>;

TEST(BadLines, AreOneMistakeIfTheyAreOneText) {
    const std::string hint = ": JSON that goes over several lines: expected an entry a line (jq -c . writes it so)";
    EXPECT_EQ(reports({"{", "  \"table\": 17,", "  \"key\": \"00\"", "}"}), Lines{"lines 1 to 4" + hint});
    EXPECT_EQ(reports({"[", "  {", "    \"a\": 1", "  },", "  2", "]"}), Lines{"lines 1 to 6" + hint});
    EXPECT_EQ(reports({"{}", "{", "\"a\":1}", "{}", "x"}),
              (Lines{"lines 2 to 3" + hint, "line 5: bad JSON: expected a value, found 'x' at column 1"}));
}

TEST(BadLines, AreReportedEachIfTheyAreNot) {
    EXPECT_EQ(
        reports({"{\"a\":1", "{}", "{\"b\":", "nonsense", "{\"c\":", "{"}),
        (Lines{"line 1: bad JSON: expected ',' or '}', but the line ends at column 7",
               "line 3: bad JSON: expected a value, but the line ends at column 6",
               "line 4: bad JSON: expected null, found 'o' at column 2",
               "lines 5 to 6: JSON that goes over several lines: expected an entry a line (jq -c . writes it so)"}));
}

}  // namespace
