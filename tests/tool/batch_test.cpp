// npxlate batch: JSON Lines and raw records.

#include <fmt/core.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include <npxlate/npxlate.h>

#include "catalogue/catalogue.h"
#include "catalogue/example.h"
#include "tool/program.h"

namespace {

using catalogue::Role;
using catalogue::Trait;
using nlohmann::json;
using program::File;
using program::Outcome;
using program::run;

using Bytes = std::vector<std::uint8_t>;

Outcome batch(const std::string& lines) { return run({"batch"}, {.input = lines}); }

std::string zeros(std::size_t bytes) {
    std::string text(2 * bytes, '0');
    return text;
}

std::string hex(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789abcdef"[byte / 16];
        text += "0123456789abcdef"[byte % 16];
    }
    return text;
}

TEST(JsonLines, AreTranslatedInOrder) {
    const Outcome outcome = batch(
        "{\"table\":17,\"key\":\"0102030405060708\",\"result\":\"0000000001020304\"}\n"
        "{\"table\":17,\"physical_result\":\"1100010001020304\"}\n"
        "{\"table\":\"mpls_leaf_st_xlate_key\",\"key\":\"01 02 03 04 01\"}\n"
        "{\"result\":\"0xaa:0xbb:0xcc\",\"table\":121}\n");
    EXPECT_EQ(outcome.out,
              "{\"table\":17,\"physical_key\":\"0605040302010708\",\"physical_result\":\"1100010001020304\"}\n"
              "{\"table\":17,\"logical_result\":\"0000000001020304\"}\n"
              "{\"table\":\"mpls_leaf_st_xlate_key\",\"physical_key\":\"010213\"}\n"
              "{\"physical_result\":\"11aabbcc\",\"table\":121}\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(JsonLines, KeepOtherMembersToTheLetter) {
    const Outcome outcome = batch(
        "{ \"id\" : 1.10 , \"a\\\"b\": \"\xc3\xa9\\u0041\", \"table\": 17,\"key\":\"0102030405060708\", "
        "\"x\":{\"key\": "
        "[1, 2e3]}, \"x\":null,\"type\":\"any\" }\n");
    EXPECT_EQ(outcome.out,
              "{\"id\":1.10,\"a\\\"b\":\"\xc3\xa9\\u0041\",\"table\":17,\"physical_key\":\"0605040302010708\",\"x\":{"
              "\"key\": "
              "[1, "
              "2e3]},\"x\":null,\"type\":\"any\"}\n");
    EXPECT_EQ(outcome.err, "");
}

// What was translated is read back as it is, and then there is nothing more to do.
TEST(JsonLines, OfABatchAreInputOfTheNext) {
    const Outcome there = batch("{\"table\":17,\"key\":\"0102030405060708\",\"result\":\"0000000001020304\"}\n");
    const Outcome back = batch(there.out);
    EXPECT_EQ(back.out,
              "{\"table\":17,\"physical_key\":\"0605040302010708\",\"logical_result\":\"0000000001020304\"}\n");
    EXPECT_EQ(back.status, 0);
    const Outcome again = batch(back.out);
    EXPECT_EQ(again.out, "");
    EXPECT_EQ(again.status, 1);
    // A logical record is translated, whatever physical one stands beside it.
    EXPECT_EQ(batch("{\"table\":17,\"physical_result\":\"00\",\"key\":\"0102030405060708\"}\n").out,
              "{\"table\":17,\"physical_result\":\"00\",\"physical_key\":\"0605040302010708\"}\n");
}

TEST(JsonLines, MayHaveEscapesAndNumbersOfAnySizeAndAByteOrderMark) {
    const Outcome outcome = batch(
        "\xef\xbb\xbf{\"\\u0074able\":\"\\u00317\",\"r\\u0065sult\":\"000000\\u0030001020304\",\"n\":1e400}\n"
        "{\"table\":17,\"result\":\"0000000001020304\",\"n\":18446744073709551616}\n");
    EXPECT_EQ(outcome.out,
              "{\"\\u0074able\":\"\\u00317\",\"physical_result\":\"1100010001020304\",\"n\":1e400}\n"
              "{\"table\":17,\"physical_result\":\"1100010001020304\",\"n\":18446744073709551616}\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(JsonLines, SayTheSameWithAnyNumberOfThreads) {
    std::string lines;
    for (unsigned i = 0; i < 40000; ++i) {  // several of the pieces that are worked on at a time
        lines += i % 1000 == 7   ? R"({"table":)"
                                   "\n"
                 : i % 1000 == 8 ? "17}\n"
                 : i % 997 == 0  ? "nonsense\n"
                 : i % 991 == 0  ? R"({"table":17,"result":"00"})"
                                   "\n"
                                 : fmt::format(R"({{"table":17,"result":"0000000001{0}", "id": {0}}})"
                                                "\n",
                                               100000 + i);
    }
    const Outcome one = run({"batch", "--threads", "1"}, {.input = lines});
    EXPECT_EQ(one.status, 1);
    EXPECT_GT(one.out.size(), 2000000U);
    EXPECT_NE(one.err.find("lines 1008 to 1009: JSON that goes over several lines"), std::string::npos) << one.err;
    for (const char* threads : {"2", "3", "7"}) {
        const Outcome several = run({"batch", "--threads", threads}, {.input = lines});
        EXPECT_EQ(several.out, one.out);
        EXPECT_EQ(several.err, one.err);
    }
    EXPECT_EQ(run({"batch", "--threads", "0"}).err,
              "npxlate: error: bad --threads 0: expected a number from 1 to 1024\n");
}

TEST(JsonLines, MayBeEmptyOrEndInAnyWay) {
    EXPECT_EQ(batch("").out, "");
    EXPECT_EQ(batch("").status, 0);
    const Outcome outcome = batch(
        "\n{\"table\":17,\"result\":\"0000000001020304\"}\r\n \t\r\n\r\n{\"table\":17,\"result\":\"00\\n00\\r\\n0000 "
        "05060708\"}");
    EXPECT_EQ(outcome.out,
              "{\"table\":17,\"physical_result\":\"1100010001020304\"}\n"
              "{\"table\":17,\"physical_result\":\"1100010005060708\"}\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(JsonLines, TakeTheFourthArgumentFromTheEntry) {
    const Outcome outcome =
        batch(R"({"table":52,"physical_result":")" + zeros(32) + "\",\"type\":1}\n" +
              R"({"table":92,"logical_key":"00 00 00 00 00 00 00 ff","physical_result":"01)" + zeros(7) + "\"}\n");
    EXPECT_EQ(outcome.out, "{\"table\":52,\"logical_result\":\"01" + zeros(47) + "\",\"type\":1}\n" +
                               "{\"table\":92,\"logical_key\":\"00 00 00 00 00 00 00 ff\",\"logical_result\":\"0001" +
                               zeros(6) + "\"}\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(JsonLines, ThatAreWrongAreReportedAndTheRestGoesOn) {
    const Outcome outcome = batch(R"({"table":17,"result":")" + zeros(8) +
                                  "\"}\n\nnonsense\n{\"table\":17,\"result\":\"" + zeros(8) + "\"}\n");
    EXPECT_EQ(outcome.out,
              "{\"table\":17,\"physical_result\":\"1100010000000000\"}\n"
              "{\"table\":17,\"physical_result\":\"1100010000000000\"}\n");
    EXPECT_TRUE(outcome.err.starts_with("npxlate: error: line 3: bad JSON: ")) << outcome.err;
    EXPECT_TRUE(outcome.err.ends_with("\nnpxlate: error: not translated: 1 of 3 entries\n")) << outcome.err;
    EXPECT_EQ(outcome.status, 1);
}

struct WrongLine {
    std::string line;
    std::string reason;
};

TEST(JsonLines, SayWhatIsWrong) {
    const std::vector<WrongLine> wrong{
        {"[1]",
         R"(expected an entry, {"table": ..., "key": ..., "result": ...}, found an array (jq -c '.[]' writes its )"
         "entries one a line)"},
        {"3", R"(expected an entry, {"table": ..., "key": ..., "result": ...})"},
        {R"({"key":"00"})", "expected \"table\", a table id or a translator's name"},
        {R"({"table":1})", R"(expected "key", "result", "key_fields", "fields" or "physical_result")"},
        {R"({"table":128,"key":"00"})",
         "\"table\": expected a table id from 0 to 127 or a translator's name, found 128"},
        {R"({"table":-1,"key":"00"})", "\"table\": expected a table id from 0 to 127 or a translator's name, found -1"},
        {R"({"table":null,"key":"00"})",
         "\"table\": expected a table id from 0 to 127 or a translator's name, found null"},
        {R"({"table":"modulo_xlate_kee","key":"00"})",
         "there is no table or translator \"modulo_xlate_kee\": expected a table id (0 to 127) or a name that npxlate "
         "tables lists; did you mean modulo_xlate_key?"},
        {R"({"table":"modulo_xlate_key","result":"00"})",
         "modulo_xlate_key is a key translator: expected a result translator"},
        {R"({"table":1,"key":5})", "\"key\": expected a string of hex"},
        {R"({"table":1,"key":["00"]})", "\"key\": expected a string of hex"},
        {R"({"table":1,"result":"0"})",
         "\"result\": bad hex: expected two digits for each byte, found 1 digit at position 1"},
        {R"({"table":17,"key":"00"})",
         "vrrp_vmac_entry_st_xlate_key takes a logical record of 8 bytes, but 1 byte came"},
        {R"({"table":1,"key":"00","key":"00"})", "expected one \"key\", found another"},
        {R"({"table":1,"table":2,"key":"00"})", "expected one \"table\", found another"},
        {R"({"table":1,"key":"00","physical_key":"00"})",
         R"("physical_key" is there already, and "key" would be translated to it: expected one of them)"},
        {R"({"table":1,"physical_result":"00","logical_result":"00"})",
         R"("logical_result" is there already, and "physical_result" would be translated to it: expected one of them)"},
        {R"({"table":1,"physical_key":"00"})",
         R"(expected "key", "result", "key_fields", "fields" or "physical_result")"},
        {R"({"table":52,"physical_result":")" + zeros(32) + "\"}",
         "ipmc_encap_logical_res_xlate needs the type of the entry: expected \"type\": N"},
        {R"({"table":52,"type":"x","physical_result":")" + zeros(32) + "\"}",
         R"("type": expected a number of 32 bits, found "x")"},
        {R"({"table":52,"type":6,"physical_result":")" + zeros(32) + "\"}",
         "ipmc_encap_logical_res_xlate returned 22 (NPXLATE_INVALID): expected a physical record of 32 bytes with an "
         "entry "
         "type of 1 to 5"},
        {R"({"table":92,"physical_result":")" + zeros(8) + "\"}",
         "esi_info_logical_res_xlate needs the logical key of the entry: expected \"logical_key\": HEX"},
        {std::string(1100000, ' ') + R"({"table":1,"key":"00"})", "expected a line of less than 1048576 bytes"},
    };
    std::string lines;
    std::string expected;
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        lines += wrong[i].line + "\n";
        expected += "npxlate: error: line " + std::to_string(i + 1) + ": " + wrong[i].reason + "\n";
    }
    const std::string count = std::to_string(wrong.size());
    expected += "npxlate: error: not translated: " + count + " of " + count + " entries\n";
    const Outcome outcome = batch(lines);
    EXPECT_EQ(outcome.err, expected);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, 1);
}

// Whatever stands on a line that is no JSON, it is one reported entry.
TEST(JsonLines, ThatAreNoJsonAreReported) {
    const std::vector<std::string> garbage{
        R"({"table":1,"key":"00")",
        R"({"table":1,"key":"00"}})",
        R"({"table":1,"key":"00"} {})",
        R"({"table":1 "key":""})",
        R"({"table":1,"key":"00",})",
        R"({"table":01,"key":"00"})",
        R"({"table":1,"key":"00","x":tru})",
        R"({"table":1,"key":"00","x":"\q"})",
        "{\"table\":1,\"key\":\"00\",\"x\":\"\xff\"}",
        "{",
        "\"",
        "\\",
        std::string("\0\0", 2),
        "\177ELF\x02\x01",
        R"({"table":1,"key":"00)",
        std::string(2000, '['),
    };
    for (const std::string& line : garbage) {
        const Outcome outcome = batch(line + "\n{\"table\":1,\"key\":\"0a\"}\n");
        EXPECT_EQ(outcome.out, "{\"table\":1,\"physical_key\":\"0a\"}\n") << line;
        EXPECT_TRUE(outcome.err.starts_with("npxlate: error: line 1: bad JSON: ")) << line << "\n" << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 2) << outcome.err;
        EXPECT_EQ(outcome.status, 1);
    }
}

// Every table, both ways, against the functions in the dispatch tables.
TEST(JsonLines, ReachTheTranslatorsOfEveryTable) {
    std::string lines;
    std::vector<json> expected;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const auto logical = [table](Role role) {
            const catalogue::Translator& translator = catalogue::of_table(table, role);
            return catalogue::example(translator, translator.samples.front(), table);
        };
        std::uint32_t length = 0;
        Bytes key = logical(Role::key);
        Bytes physical_key(NPXLATE_MAX_PHYSICAL_LENGTH);
        json before{{"table", table}, {"key", hex(key)}};
        ASSERT_EQ(
            l2p_ucode_func_table[table].key(key.data(), static_cast<int>(key.size()), physical_key.data(), &length), 0);
        physical_key.resize(length);
        Bytes result = logical(Role::result);
        Bytes physical_result(NPXLATE_MAX_PHYSICAL_LENGTH);
        before["result"] = hex(result);
        lines += before.dump() + "\n";
        ASSERT_EQ(l2p_ucode_func_table[table].result(result.data(), static_cast<int>(result.size()),
                                                     physical_result.data(), &length),
                  0);
        physical_result.resize(length);
        expected.push_back(
            {{"table", table}, {"physical_key", hex(physical_key)}, {"physical_result", hex(physical_result)}});

        const catalogue::Translator& reverse = catalogue::of_table(table, Role::reverse);
        if (reverse.has(Trait::takes_type) || reverse.has(Trait::takes_key)) {
            continue;
        }
        const Bytes physical = logical(Role::reverse);
        Bytes read_back(reverse.out().fixed() ? reverse.out().most : physical.size());
        lines += json{{"table", table}, {"physical_result", hex(physical)}}.dump() + "\n";
        Bytes writable = physical;
        ASSERT_EQ(p2l_ucode_func_table[table](writable.data(), static_cast<int>(physical.size()), read_back.data()), 0)
            << table;
        expected.push_back({{"table", table}, {"logical_result", hex(read_back)}});
    }
    const Outcome outcome = batch(lines);
    EXPECT_EQ(outcome.err, "");
    std::istringstream out{outcome.out};
    std::string line;
    for (const json& entry : expected) {
        ASSERT_TRUE(std::getline(out, line));
        EXPECT_EQ(json::parse(line), entry);
    }
    EXPECT_FALSE(std::getline(out, line));
}

TEST(JsonLines, MayBeMore) {
    std::string lines;
    std::string expected;
    for (unsigned i = 0; i < 50000; ++i) {
        const Bytes address{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8), 1, 2};
        const Bytes turned{2, 1, address[1], address[0]};
        lines += R"({"table":121,"key":")" + hex(address) + "\"}\n";
        expected += R"({"table":121,"physical_key":")" + hex(turned) + "\"}\n";
    }
    const File out;
    const Outcome outcome = run({"batch", "-", "-o", out.path(), "--quiet"}, {.input = lines});
    EXPECT_EQ(outcome.out + outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(out.content() == expected);
}

// ---- Raw records ----

// Over several blocks; a fast-path IPv4 key is turned round.
TEST(Raw, TranslatesRecords) {
    std::string records;
    std::string expected;
    for (unsigned i = 0; i < 200001; ++i) {
        const std::string record{static_cast<char>(i), static_cast<char>(i >> 8), static_cast<char>(i >> 16), 'x'};
        records += record;
        expected.append(record.rbegin(), record.rend());
    }
    for (const char* raw : {"key:121", "key:ipv4_leaf_fastip_xlate_key"}) {
        const Outcome outcome = run({"batch", "--raw", raw}, {.input = records});
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.out == expected);
    }
}

TEST(Raw, TranslatesRecordsOfOtherSizes) {
    // 4 bytes to 3, of which the translator clears 4.
    const std::string cross_connects("\x01\x02\x03\xff\x04\x05\x06\xff", 8);
    EXPECT_EQ(run({"batch", "--raw", "key:23"}, {.input = cross_connects}).out, "\x01\x02\x03\x04\x05\x06");
    // 3 bytes to 4.
    EXPECT_EQ(run({"batch", "--raw", "result:121"}, {.input = "abcdef"}).out,
              "\x11"
              "abc\x11"
              "def");
    EXPECT_EQ(run({"batch", "--raw", "reverse:17"}, {.input = "pppp1234pppp5678"}).out, std::string("\0\0\0\0"
                                                                                                    "1234\0\0\0\0"
                                                                                                    "5678",
                                                                                                    16));
    EXPECT_EQ(run({"batch", "--raw", "reverse:52", "--type", "1"}, {.input = std::string(32, 'x')}).out,
              "\x01" + std::string(47, '\0'));
    EXPECT_EQ(run({"batch", "--raw", "key:0", "--length", "5"}, {.input = "abcdefghij"}).out, "abcdefghij");
    EXPECT_EQ(run({"batch", "--raw", "key:17"}).out, "");
}

// What a translator leaves unwritten is 0, whatever stood there in the block before.
TEST(Raw, StartsEveryBlockFromZeros) {
    const catalogue::Translator& translator = *catalogue::find("rx_adjacency_type_logical_xlate_result");
    std::string records;
    for (std::uint64_t seed = 0; seed < 40000; ++seed) {
        const std::size_t sample = seed < 20000 ? 0 : translator.samples.size() - 1;
        const Bytes record = catalogue::example(translator, translator.samples[sample], seed);
        records.append(record.begin(), record.end());
    }
    const std::string raw = "reverse:" + std::string{translator.name};
    const std::string last = records.substr(records.size() - 16);
    const std::string alone = run({"batch", "--raw", raw}, {.input = last}).out;
    const std::string all = run({"batch", "--raw", raw}, {.input = records}).out;
    ASSERT_EQ(all.size(), 40000U * 30);
    EXPECT_EQ(all.substr(all.size() - 30), alone);
}

TEST(Raw, ReportsAPartialRecord) {
    const Outcome outcome = run({"batch", "--raw", "key:121"}, {.input = "abcdefghij"});
    EXPECT_EQ(outcome.out, "dcbahgfe");
    EXPECT_EQ(outcome.err,
              "npxlate: error: record 2 (offset 8): the input ends within a record: expected 4 bytes for "
              "ipv4_leaf_fastip_xlate_key, found 2 bytes\n"
              "npxlate: error: not translated: 1 of 3 records\n");
    EXPECT_EQ(outcome.status, 1);
}

// Three records of table 12, the middle one rejected.
TEST(Raw, GoesOnOverRejectedRecords) {
    constexpr std::size_t size = 36;
    std::string records(3 * size, '\0');
    records[size] = '\x01';
    records[size + 1] = '\x10';
    records[2 * size + 2] = '\x01';
    const std::string err =
        "npxlate: error: record 1 (offset 36): r_ldi_entry_st_result returned 95 (NPXLATE_NOT_SUPPORTED): expected a "
        "logical record of 36 bytes with L1.4 or L0.0 clear\n"
        "npxlate: error: not translated: 1 of 3 records\n";
    const std::string first = run({"batch", "--raw", "result:12"}, {.input = records.substr(0, size)}).out;
    const std::string last = run({"batch", "--raw", "result:12"}, {.input = records.substr(2 * size)}).out;
    ASSERT_EQ(first.size(), 16U);
    ASSERT_NE(first, last);
    const std::string with_zeros = first + std::string(16, '\0') + last;
    for (const std::vector<std::string>& option : {std::vector<std::string>{}, {"--rejected", "zeros"}}) {
        std::vector<std::string> arguments{"batch", "--raw", "result:12"};
        arguments.insert(arguments.end(), option.begin(), option.end());
        const Outcome zeros = run(arguments, {.input = records});
        EXPECT_EQ(zeros.out, with_zeros);
        EXPECT_EQ(zeros.err, err);
        EXPECT_EQ(zeros.status, 1);
    }
    const Outcome omitted = run({"batch", "--raw", "result:12", "--rejected", "omit"}, {.input = records});
    EXPECT_EQ(omitted.out, first + last);
    EXPECT_EQ(omitted.err, err);
    EXPECT_EQ(omitted.status, 1);
}

// A dump of outgoing lists with empty slots.
TEST(Raw, ReadsADumpWithEmptySlots) {
    std::string records(std::size_t{20000} * 20, '\0');
    for (std::size_t i = 0; i < 20000; i += 2) {
        records[20 * i] = '\x51';
        records[20 * i + 1] = '\x20';
    }
    const File out;
    const Outcome outcome =
        run({"batch", "--raw", "reverse:53", "-o", out.path()}, {.input = records, .err = program::Stream::full});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(out.content().size(), 20000U * 32);
}

TEST(Raw, TakesSeveralTranslators) {
    const std::string entry = std::string("\1\2\3\4\5\6\7\10", 8) + std::string("\0\0\0\0\1\2\3\4", 8);
    std::string records;
    std::string expected;
    for (int i = 0; i < 30000; ++i) {
        records += entry;
        expected += std::string("\6\5\4\3\2\1\7\10", 8) + std::string("\x11\0\1\0\1\2\3\4", 8);
    }
    const Outcome outcome = run({"batch", "--raw", "key:17", "--raw", "result:17"}, {.input = records});
    EXPECT_TRUE(outcome.out == expected);
    EXPECT_EQ(outcome.err, "");
    const Outcome half = run({"batch", "--raw", "key:17", "--raw", "result:17"}, {.input = entry.substr(0, 8)});
    EXPECT_EQ(half.out, "\6\5\4\3\2\1\7\10");
    EXPECT_EQ(half.err,
              "npxlate: error: record 1 (offset 8): the input ends within an entry: expected 8 bytes for "
              "vrrp_vmac_entry_st_xlate_result, found 0 bytes\n"
              "npxlate: error: not translated: 1 of 2 records\n");
    // Lengths of their own, and a type for that which takes one.
    EXPECT_EQ(run({"batch", "--raw", "key:0:2", "--raw", "key:0:3"}, {.input = "abcdefghij"}).out, "abcdefghij");
    EXPECT_EQ(run({"batch", "--raw", "key:121", "--raw", "reverse:52", "--type", "1"},
                  {.input = "abcd" + std::string(32, 'x')})
                  .out,
              "dcba\x01" + std::string(47, '\0'));
}

// The shorter form of a record has the shorter length, and the other does not.
TEST(Raw, TakesTheShorterForm) {
    const Outcome outcome =
        run({"batch", "--raw", "result:30:4", "--rejected", "omit"}, {.input = std::string("\0\1\2\3\1\1\2\3", 8)});
    EXPECT_EQ(outcome.out, std::string("\x91\0\0\0\1\2\3\0", 8));
    EXPECT_EQ(outcome.status, 1);
}

// ---- Options ----

TEST(Batch, IsRefusedForWrongOptions) {
    const File file{"{}"};
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
        {{"/nonexistent/file"}, "cannot read /nonexistent/file: No such file or directory"},
        {{file.path(), "-o", file.path()}, "cannot write " + file.path() + ": it is the input"},
        {{"--raw", "17"},
         "bad --raw 17: expected key, result or reverse, a colon and a table id or name, such as result:13, "
         "perhaps with a colon and a number of bytes"},
        {{"--raw", "value:17"},
         "bad --raw value:17: expected key, result or reverse, a colon and a table id or name, such as result:13, "
         "perhaps with a colon and a number of bytes"},
        {{"--raw", "key:200"}, "there is no table 200: expected a table id from 0 to 127"},
        {{"--raw", "key:0"}, "generic_xlate_key takes records of 0 to 47 bytes: expected --length N"},
        {{"--raw", "key:0", "--length", "0"}, "generic_xlate_key would take records of no bytes: expected at least 1"},
        {{"--raw", "key:0", "--length", "48"},
         "generic_xlate_key takes a logical record of 0 to 47 bytes, but 48 bytes came"},
        {{"--raw", "key:0", "--length", "many"}, "bad --length many: expected a number of bytes"},
        {{"--raw", "reverse:52"}, "ipmc_encap_logical_res_xlate needs the type of the entry: expected --type N"},
        {{"--raw", "reverse:92"}, "esi_info_logical_res_xlate needs the logical key of the entry: expected --key HEX"},
        {{"--type", "1"},
         "--length, --rejected, --type and --key go with --raw: in JSON Lines each entry says its own"},
        {{"--rejected", "omit"},
         "--length, --rejected, --type and --key go with --raw: in JSON Lines each entry says its own"},
        {{"--raw", "key:17", "--rejected", "keep"}, "bad --rejected keep: expected zeros or omit"},
        {{"--raw", "key:17", "--type", "1"}, "vrrp_vmac_entry_st_xlate_key takes no entry type: expected no --type"},
    };
    for (const auto& [options, message] : wrong) {
        std::vector<std::string> arguments{"batch"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.err, "npxlate: error: " + message + "\n");
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.status, 2);
    }
    EXPECT_EQ(file.content(), "{}");
}

TEST(Batch, SaysThatItWaitsForItsInput) {
    const Outcome outcome = run({"batch"}, {.in_is_terminal = true});
    EXPECT_EQ(outcome.err,
              "npxlate: note: reading entries, one a line, from standard input; Ctrl-D on a line of its own ends it\n");
}

TEST(Batch, ShowsItsProgressInTheWidthOfTheTerminal) {
    std::string lines;
    for (unsigned i = 0; i < 10000; ++i) {
        lines += "{\"table\":121,\"key\":\"01020304\"}\n";
    }
    const File file{lines};
    for (const std::uint16_t columns : {std::uint16_t{20}, std::uint16_t{30}, std::uint16_t{40}, std::uint16_t{80}}) {
        const std::string shown =
            run({"batch", file.path()},
                {.err = program::Stream::terminal, .environment = {"TERM=xterm"}, .columns = columns})
                .err;
        const std::size_t begin = shown.find('\r') + 1;
        EXPECT_LT(shown.find('\x1b', begin) - begin, columns) << shown;
        EXPECT_NE(shown.find(" entries"), std::string::npos) << shown;
    }
    EXPECT_EQ(run({"batch", file.path()}, {.err = program::Stream::terminal, .environment = {"TERM=dumb"}}).err, "");
}

TEST(Batch, ShowsItsProgressOnATerminal) {
    std::string lines;
    for (unsigned i = 0; i < 10000; ++i) {
        lines += "{\"table\":121,\"key\":\"01020304\"}\n";
    }
    const File file{lines};
    const std::string shown =
        run({"batch", file.path()}, {.err = program::Stream::terminal, .environment = {"TERM=xterm"}}).err;
    EXPECT_NE(shown.find("%  "), std::string::npos) << shown;
    EXPECT_NE(shown.find(" entries"), std::string::npos) << shown;
    EXPECT_TRUE(shown.ends_with("\r\x1b[K")) << "the line is not cleared at the end";
    EXPECT_EQ(
        run({"batch", "--quiet", file.path()}, {.err = program::Stream::terminal, .environment = {"TERM=xterm"}}).err,
        "");
    EXPECT_EQ(run({"batch", file.path()}).err, "");
}

}  // namespace
