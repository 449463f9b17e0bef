// The commands that explain: the built tool, run as its users run it, and what draws for them.

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "npxlate/drawing.h"
#include "tool/program.h"

namespace {

using nlohmann::json;
using program::Outcome;
using program::run;

using Words = std::vector<std::string>;

Outcome expect_done(const Words& arguments) {
    Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return outcome;
}

// Two records that differ.
Outcome expect_different(const Words& arguments) {
    Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 1);
    return outcome;
}

void expect_error(const Words& arguments, int status, const std::string& message) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.err, "npxlate: error: " + message + "\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, status);
}

// Displayed columns: a continuation byte of UTF-8 takes none.
std::size_t widest_line(const std::string& text) {
    std::istringstream lines{text};
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line);) {
        const auto columns =
            std::ranges::count_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; });
        widest = std::max(widest, static_cast<std::size_t>(columns));
    }
    return widest;
}

std::string bytes(std::size_t count, const std::string& front) {
    std::string text = front;
    text.resize(2 * count, '0');
    return text;
}

TEST(Explain, DrawsARecord) {
    // Table 17's key: L0-5 turned round, then L6-7.
    EXPECT_EQ(expect_done({"explain", "17", "--role", "key", "0102030405060708"}).out,
              "vrrp_vmac_entry_st_xlate_key, key of table 17\n"
              "status    NPXLATE_OK, length 8\n"
              "variant   every record\n"
              "layouts   every key\n"
              "\n"
              "The record that goes in, 8 bytes\n"
              "     +--------+--------+--------+--------+--------+--------+--------+--------+\n"
              "L0   |00000001|00000010|00000011|00000100|00000101|00000110|00000111|00001000|\n"
              "     |++++++++|++++++++|++++++++|++++++++|++++++++|++++++++|++++++++|++++++++|\n"
              "     +--------+--------+--------+--------+--------+--------+--------+--------+\n"
              "     + carried\n"
              "carried   L0-7\n"
              "\n"
              "The record that comes out, 8 bytes\n"
              "     +--------+--------+--------+--------+--------+--------+--------+--------+\n"
              "P0   |00000110|00000101|00000100|00000011|00000010|00000001|00000111|00001000|\n"
              "     |mmmmmmmm|mmmmmmmm|mmmmmmmm|mmmmmmmm|mmmmmmmm|mmmmmmmm|mmmmmmmm|mmmmmmmm|\n"
              "     +--------+--------+--------+--------+--------+--------+--------+--------+\n"
              "     m moved\n"
              "P0-5              060504030201        L0-5, bytes reversed\n"
              "P6-7              0708                L6-7\n");
}

TEST(Explain, SaysTheSameAsJson) {
    // Variant A with L2.0: P8-11 is L24-27 turned round, P13-15 is L12-14.
    const json explained = json::parse(expect_done({"explain", "4", "--json", bytes(30, "200001")}).out);
    EXPECT_EQ(explained["translator"], "rx_adjacency_type_xlate_result");
    EXPECT_EQ(explained["role"], "result");
    EXPECT_EQ(explained["tables"], json::parse("[4]"));
    EXPECT_EQ(explained["variant"], "A, 24 bits");
    EXPECT_EQ(explained["status_name"], "NPXLATE_OK");
    EXPECT_EQ(explained["length"], 16);
    EXPECT_EQ(explained["decides"], json::parse(R"(["L0.5", "L2.0"])"));
    EXPECT_EQ(explained["steered"], json::array());
    const auto field = std::ranges::find_if(explained["fields"],
                                            [](const json& one) { return one["to"] == json::parse(R"(["P8-11"])"); });
    ASSERT_NE(field, explained["fields"].end());
    EXPECT_EQ((*field)["from"], json::parse(R"(["L24-27"])"));
    EXPECT_EQ((*field)["kind"], "reversed");
    EXPECT_EQ((*field)["layout"], "every record");
    EXPECT_EQ(explained["bits"]["P3.7"], json::parse(R"({"value": 1, "kind": "copied", "from": ["L0.5"]})"));
    EXPECT_EQ(explained["bits"]["P12.0"], json::parse(R"({"value": 0, "kind": "cleared", "from": []})"));
    EXPECT_EQ(explained["bits"].size(), 8U * 16U);
}

TEST(Explain, ShowsWhatARejectedRecordLeft) {
    // L1.4 with L0.0: not supported.
    const std::string out = run({"explain", "12", bytes(36, "0110")}).out;
    EXPECT_NE(out.find("NPXLATE_NOT_SUPPORTED: the record is rejected; what was written before"), std::string::npos);
    EXPECT_NE(out.find("P1.3"), std::string::npos);
    const json explained = json::parse(run({"explain", "12", "--json", bytes(36, "0110")}).out);
    EXPECT_EQ(explained["status"], 95);
    EXPECT_EQ(explained["length"], nullptr);
}

TEST(Explain, TakesTheFourthArgument) {
    const json explained =
        json::parse(expect_done({"explain", "52", "--role", "reverse", "--type", "3", "--json", bytes(32, "")}).out);
    EXPECT_EQ(explained["variant"], "type 3");
    EXPECT_EQ(explained["out"], bytes(48, "03000000"));
    expect_error({"explain", "52", "--role", "reverse", bytes(32, "")}, 2,
                 "ipmc_encap_logical_res_xlate needs the type of the entry: expected --type N");
}

TEST(Explain, FitsIntoEightyColumns) {
    for (const char* const table : {"4", "5", "12", "28", "52"}) {
        const std::string out = run({"layout", table}).out;
        EXPECT_LE(widest_line(out), 80U) << table;
    }
    EXPECT_LE(widest_line(expect_done({"explain", "5", bytes(90, "ffff")}).out), 80U);
}

TEST(Explain, DrawsBoxesOnATerminalAndColoursUnlessAskedNotTo) {
    const Words arguments{"explain", "121", "000203"};
    const std::string plain = run(arguments, {.out = program::Stream::terminal,
                                              .environment = {"TERM=xterm", "LC_ALL=C.UTF-8", "NO_COLOR=1"}})
                                  .out;
    EXPECT_NE(plain.find("L0   \u250200000000\u250200000010\u250200000011\u2502\r\n"), std::string::npos) << plain;
    EXPECT_EQ(plain.find('\x1b'), std::string::npos);

    const std::string coloured =
        run(arguments, {.out = program::Stream::terminal, .environment = {"TERM=xterm", "LC_ALL=C.UTF-8"}}).out;
    EXPECT_NE(coloured.find("\x1b[1mThe record that goes in, 3 bytes\x1b[0m"), std::string::npos) << coloured;
    EXPECT_EQ(std::regex_replace(coloured, std::regex{"\x1b\\[[0-9;]*m"}, ""), plain);
}

TEST(Explain, SaysWhatItExpects) {
    expect_error({"explain", "4", "0102"}, 2,
                 "rx_adjacency_type_xlate_result takes a logical record of 30 bytes, but 2 bytes came");
    expect_error({"explain", "rx_adjacency_type_xlate_key", "--role", "result", "010203"}, 2,
                 "rx_adjacency_type_xlate_key is a key translator: expected a result translator");
    expect_error({"layout", "128"}, 2, "there is no table 128: expected a table id from 0 to 127");
    expect_error({"diff", "generic_xlate_key", "01", "0102"}, 2,
                 "the records have 1 and 2 bytes: expected two of the same length");
    expect_error({"diff", "generic_xlate_key", "01", "0x"}, 2, "bad hex: expected digits after the 0x at position 1");
}

TEST(Roundtrip, ListsWhatCameBack) {
    // Variant A, 24 bits; L1.3 and L15 have no way back, and nothing is swapped back.
    EXPECT_EQ(expect_done({"roundtrip", "4", "200801000000000000000000010203aa0405000000060700000000000000"}).out,
              "rx_adjacency_type_xlate_result, back through rx_adjacency_type_logical_xlate_result\n"
              "logical   20080100 00000000 00000000 010203aa 04050000 00060700 00000000 0000\n"
              "physical  912000a0 06070504 00000000 00030201\n"
              "and back  20000100 00000000 00000000 03020100 05040000 00060700 00000000 0000\n"
              "\n"
              "L0.5-0 restored\n"
              "L1.2-0 restored\n"
              "L1.3 lost (was 1)\n"
              "L1.4 restored\n"
              "L1.6 restored\n"
              "L2.0 restored\n"
              "L12-14 byte-reversed (010203 became 030201)\n"
              "L15 lost (was aa)\n"
              "L16-17 byte-reversed (0405 became 0504)\n"
              "L21-22 restored\n"
              "L24-27 byte-reversed\n");
}

TEST(Roundtrip, SaysTheSameAsJson) {
    const json trip = json::parse(expect_done({"roundtrip", "121", "--json", "000203"}).out);
    EXPECT_EQ(trip["forward"]["out"], "11000203");
    EXPECT_EQ(trip["reverse"]["out"], "11000203");
    EXPECT_EQ(trip["fields"][0],
              json::parse(R"({"at": ["L0.0"], "kind": "invented", "from": [], "was": "0", "is": "1"})"));
    EXPECT_EQ(trip["fields"][2]["kind"], "moved");
    EXPECT_EQ(trip["fields"][2]["from"], json::parse(R"(["L0-2"])"));
}

TEST(Roundtrip, TakesTheLogicalKey) {
    const Words without{"roundtrip", "92", bytes(9, "010203040506")};
    const auto with = [&](const std::string& key) {
        Words words = without;
        words.insert(words.end(), {"--key", key});
        return words;
    };
    // An ESI's entry comes back as one only by the key that says so, in its last byte.
    const std::string esi = expect_done(with("00000000000000ff")).out;
    EXPECT_NE(esi.find("L4-7 restored"), std::string::npos) << esi;
    EXPECT_EQ(expect_done(with("ffffffffffffffff")).out, esi);
    EXPECT_EQ(expect_done(with("ffffffffffffff00")).out.find("L4-7 restored"), std::string::npos);
    // Without it, the record says itself which it is.
    EXPECT_EQ(expect_done(without).out, esi);
    EXPECT_EQ(expect_done({"roundtrip", "92", bytes(9, "000203040506")}).out.find("L4-7 restored"), std::string::npos);
}

TEST(Roundtrip, TakesTheTypeFromTheRecordOrTheKey) {
    const auto reverse_out = [](const Words& more) {
        Words words{"roundtrip", "52", "--json", bytes(42, "04000000")};
        words.insert(words.end(), more.begin(), more.end());
        return json::parse(expect_done(words).out)["reverse"]["out"].get<std::string>().substr(0, 8);
    };
    EXPECT_EQ(reverse_out({}), "04000000");
    EXPECT_EQ(reverse_out({"--type", "3"}), "03000000");
    EXPECT_EQ(reverse_out({"--key", "0200000001000000"}), "02000000");
    expect_error({"roundtrip", "52", "--key", "02", bytes(42, "04")}, 2,
                 "the logical key of the entry has 8 bytes, but 1 byte came");
}

TEST(Roundtrip, EndsWithARejectedRecord) {
    const Outcome outcome = run({"roundtrip", "12", bytes(36, "0110")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("NPXLATE_NOT_SUPPORTED"), std::string::npos);
    expect_error({"roundtrip", "qos_str_xlate_result", bytes(36, "")}, 2,
                 "qos_str_xlate_result stands in no table, so that nothing leads back: expected a table id or a "
                 "translator that stands in a table");
}

TEST(Diff, NamesBothSides) {
    EXPECT_EQ(expect_different({"diff", "17", "--role", "key", "0102030405060708", "0102030405ff0709"}).out,
              "vrrp_vmac_entry_st_xlate_key, key of table 17\n"
              "both: NPXLATE_OK, variant every record\n"
              "\n"
              "Differences of the records that go in\n"
              "L0-5              010203040506 -> 0102030405ff\n"
              "                                              shows at P0-5\n"
              "L6-7              0708 -> 0709                shows at P6-7\n"
              "\n"
              "Differences of the records that come out\n"
              "P0-5              060504030201 -> ff0504030201\n"
              "                                              from L0-5\n"
              "P6-7              0708 -> 0709                from L6-7\n");
    EXPECT_EQ(expect_done({"diff", "17", "--role", "key", "0102030405060708", "0102030405060708"}).out,
              "vrrp_vmac_entry_st_xlate_key, key of table 17\n"
              "both: NPXLATE_OK, variant every record\n"
              "The records are the same.\n");
}

TEST(Diff, SaysTheSameAsJson) {
    const json difference =
        json::parse(expect_different({"diff", "4", "--json", bytes(30, "20"), bytes(30, "40")}).out);
    EXPECT_EQ(difference["same_way"], false);
    EXPECT_EQ(difference["first"]["variant"], "A, 32 bits");
    EXPECT_EQ(difference["second"]["variant"], "B");
    EXPECT_EQ(difference["differences_in"][0], json::parse(R"({"at": ["L0.5"], "first": "1", "second": "0",
        "fate": "carried", "decides": true, "shows_at": ["P3.7"]})"));
    EXPECT_EQ(difference["differences_out"],
              json::parse(R"([{"at": ["P3.7"], "first": "1", "second": "0", "from": ["L0.5"]}])"));
}

TEST(Layout, ListsRowsVariantByVariant) {
    EXPECT_EQ(expect_done({"layout", "17", "--role", "key"}).out,
              "vrrp_vmac_entry_st_xlate_key, key of table 17\n"
              "in L (8 bytes), out P (8 bytes)\n"
              "\n"
              "Variant every record\n"
              "every key\n"
              "  P0-5             L0-5                bytes reversed\n"
              "  P6-7             L6-7                copied\n");
    // Copies that are written by hand have one, too.
    EXPECT_EQ(expect_done({"layout", "generic_xlate_result"}).out,
              "generic_xlate_result, result of 52 tables\n"
              "in L (0 to 64 bytes), out P (0 to 64 bytes)\n"
              "\n"
              "Variant every record\n"
              "put by code\n"
              "  P0-63            L0-63               copied\n"
              "  P0.4                                 1, of the header 0x11 that is ORed into\n"
              "                                       P0\n"
              "  P0.0                                 1, of the header 0x11 that is ORed into\n"
              "                                       P0\n");
}

TEST(Layout, SaysTheSameAsJson) {
    const json layout = json::parse(expect_done({"layout", "4", "--json"}).out);
    EXPECT_EQ(layout["variants"].size(), 10U);
    const json& first = layout["variants"][0];
    EXPECT_EQ(first["variant"], "A, 24 bits");
    EXPECT_EQ(first["holds"], "L0.5=1 L2.0=1");
    ASSERT_EQ(first["sections"].size(), 3U);
    EXPECT_EQ(first["sections"][2]["layout"], "variant A with L2.0 set");
    EXPECT_EQ(first["sections"][2]["rows"], json::parse(R"([{"to": ["P13-15"], "kind": "reversed",
        "from": ["L12-14"], "text": "bytes reversed", "layout": "variant A with L2.0 set"}])"));
}

constexpr fmt::terminal_color green = fmt::terminal_color::green;

TEST(Drawing, OfATerminalHasBoxesAndColours) {
    const tool::Mark kinds[] = {{'a', fmt::fg(green), "one kind"}, {'b', {}, "another"}};
    const std::uint8_t record[] = {0x81};
    const std::size_t marks[] = {0, 1, 1, 1, 1, 1, 1, 1};
    const std::string plain = tool::grid('P', record, marks, kinds, {});
    EXPECT_EQ(plain,
              "     +--------+\n"
              "P0   |10000001|\n"
              "     |bbbbbbba|\n"
              "     +--------+\n");
    const std::string boxed = tool::grid('P', record, marks, kinds, {.box = true, .colour = false});
    EXPECT_NE(boxed.find("\u2502bbbbbbba\u2502"), std::string::npos);
    EXPECT_EQ(boxed.find('\x1b'), std::string::npos);
    const std::string coloured = tool::grid('P', record, marks, kinds, {.box = true, .colour = true});
    EXPECT_NE(coloured.find("\x1b[32ma"), std::string::npos);
    EXPECT_EQ(tool::legend(marks, kinds, {}), "     a one kind  b another\n");
    const std::vector<std::uint8_t> longest(168);
    EXPECT_EQ(widest_line(tool::grid('L', longest, std::vector<std::size_t>(8 * longest.size()), kinds,
                                     {.box = true, .colour = false})),
              78U);
}

TEST(Drawing, BreaksLinesBetweenWords) {
    constexpr std::size_t columns[] = {4, 70};
    EXPECT_EQ(tool::line(columns, {"ab", "cd", "some words"}),
              "ab  cd" + std::string(68, ' ') + "some\n" + std::string(74, ' ') + "words\n");
    EXPECT_EQ(tool::line(columns, {"abcdef", "cd", "w"}), "abcdef\n    cd" + std::string(68, ' ') + "w\n");
}

}  // namespace
