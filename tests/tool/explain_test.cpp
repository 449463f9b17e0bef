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
              "record    VRRP virtual MAC address\n"
              "status    NPXLATE_OK, length 8\n"
              "form      every record\n"
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
              "P0-5              060504030201        L0-5, bytes reversed (MAC address)\n"
              "P6-7              0708                L6-7 (qualifier)\n");
}

TEST(Explain, SaysTheSameAsJson) {
    // Variant A with L2.0: P8-11 is L24-27 turned round, P13-15 is L12-14.
    const json explained = json::parse(expect_done({"explain", "4", "--json", bytes(30, "200001")}).out);
    EXPECT_EQ(explained["translator"], "rx_adjacency_type_xlate_result");
    EXPECT_EQ(explained["role"], "result");
    EXPECT_EQ(explained["tables"], json::parse("[4]"));
    EXPECT_EQ(explained["form"], "variant A, 24 bits");
    EXPECT_EQ(explained["when"], "L0.5 and L2.0 set");
    EXPECT_EQ(explained["status_name"], "NPXLATE_OK");
    EXPECT_EQ(explained["length"], 16);
    EXPECT_EQ(explained["decides"], json::parse(R"(["L0.5", "L2.0"])"));
    EXPECT_EQ(explained["steered"], json::array());
    const auto field = std::ranges::find_if(explained["fields"],
                                            [](const json& one) { return one["to"] == json::parse(R"(["P8-11"])"); });
    ASSERT_NE(field, explained["fields"].end());
    EXPECT_EQ((*field)["from"], json::parse(R"(["L24-27"])"));
    EXPECT_EQ((*field)["kind"], "reversed");
    EXPECT_EQ((*field)["layout"], nullptr);
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
    EXPECT_EQ(explained["when"], "the entry type is 3");
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
              "L24-27 byte-reversed\n"
              "\n"
              "0 before and after, not carried: L0.7-6 L1.5 L1.7 L2.7-1 L3-11 L18-20 L23 L28-29\n");
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
              "both: NPXLATE_OK, every record\n"
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
              "both: NPXLATE_OK, every record\n"
              "The records are the same.\n");
}

TEST(Diff, SaysTheSameAsJson) {
    const json difference =
        json::parse(expect_different({"diff", "4", "--json", bytes(30, "20"), bytes(30, "40")}).out);
    EXPECT_EQ(difference["same_way"], false);
    EXPECT_EQ(difference["first"]["form"], "variant A, 32 bits");
    EXPECT_EQ(difference["second"]["form"], "variant B");
    EXPECT_EQ(difference["differences_in"][0], json::parse(R"({"at": ["L0.5"], "first": "1", "second": "0",
        "fate": "carried", "decides": true, "shows_at": ["P3.7"]})"));
    EXPECT_EQ(difference["differences_out"],
              json::parse(R"([{"at": ["P3.7"], "first": "1", "second": "0", "from": ["L0.5"]}])"));
}

TEST(Layout, ListsEveryLayoutOnceWithItsCondition) {
    EXPECT_EQ(expect_done({"layout", "17", "--role", "key"}).out,
              "vrrp_vmac_entry_st_xlate_key, key of table 17\n"
              "VRRP virtual MAC address\n"
              "in L (8 bytes), out P (8 bytes)\n"
              "NPXLATE_OK, length 8\n"
              "\n"
              "every record\n"
              "  P0-5             L0-5                bytes reversed (MAC address)\n"
              "  P6-7             L6-7                copied (qualifier)\n");
    // Copies that are written by hand have one, too.
    EXPECT_EQ(expect_done({"layout", "generic_xlate_result"}).out,
              "generic_xlate_result, result of 52 tables\n"
              "generic record\n"
              "in L (0 to 64 bytes), out P (0 to 64 bytes)\n"
              "NPXLATE_OK, length 64\n"
              "\n"
              "every record\n"
              "  P0-63            L0-63               copied\n"
              "  P0.0                                 constant 1\n"
              "  P0.4                                 constant 1\n");
    const std::string leaf = expect_done({"layout", "11"}).out;
    EXPECT_NE(leaf.find("\nL0.0 clear\n  P1.0             L0.4                inverted\n"), std::string::npos) << leaf;
    const std::string connect = expect_done({"layout", "23"}).out;
    EXPECT_NE(connect.find("NPXLATE_INVALID, no length stored: "), std::string::npos) << connect;
}

TEST(Layout, SaysTheSameAsJson) {
    const json layout = json::parse(expect_done({"layout", "4", "--json"}).out);
    EXPECT_EQ(layout["forms"].size(), 9U);
    const json& first = layout["forms"][0];
    EXPECT_EQ(first["form"], "variant A, 24 bits");
    EXPECT_EQ(first["when"], "L0.5 and L2.0 set");
    ASSERT_EQ(first["layouts"].size(), 3U);
    const json& last = layout["layouts"][first["layouts"][2].get<std::size_t>()];
    EXPECT_EQ(last["layout"], "variant A, 24 bits");
    EXPECT_EQ(last["when"], "L0.5 and L2.0 set");
    EXPECT_EQ(last["rows"], json::parse(R"([{"to": ["P13-15"], "kind": "reversed", "from": ["L12-14"],
        "text": "bytes reversed", "name": null, "layout": "variant A, 24 bits"}])"));
    // Node 2 and those above are forks: a bit, and where to go on.
    EXPECT_EQ(first["out"].size(), 8U * 16U);
    EXPECT_EQ(first["out"][7], 1);
    EXPECT_EQ(layout["exact"]["nodes"][first["out"][31].get<std::size_t>() - 2], json::parse(R"(["L0.5", 0, 1])"));
}

TEST(Layout, OfAllRecordsIsAText) {
    const std::string out = expect_done({"layout", "--all"}).out;
    for (const char* const heading :
         {"rx_adjacency_type_xlate_key, key of table 4\n", "\nvidmon_rtp_pt_xlate_result, "}) {
        EXPECT_NE(out.find(heading), std::string::npos) << heading;
    }
    EXPECT_LE(widest_line(out), 80U);
    for (const Words& arguments : {Words{"layout", "4", "--all"}, Words{"layout", "--all", "--length-argument", "3"}}) {
        expect_error(arguments, 2,
                     "--all lists every record as text: expected no table or name, --length, --length-argument or "
                     "--json beside it");
    }
    expect_error({"layout"}, 2, "TABLE_OR_NAME is missing: expected a table id (0 to 127) or a translator's name");
}

TEST(Layout, TellsWhatBecomesOfAnyLengthArgument) {
    EXPECT_EQ(expect_done({"layout", "generic_xlate_key", "--length-argument", "3"}).out,
              "generic_xlate_key, key of 52 tables\n"
              "generic record\n"
              "in L (0 to 47 bytes), out P (0 to 47 bytes)\n"
              "NPXLATE_OK, length 3\n"
              "\n"
              "every record\n"
              "  P0-2             L0-2                copied\n");
    EXPECT_EQ(expect_done({"layout", "generic_xlate_key", "--length-argument", "48"}).out,
              "generic_xlate_key, key of 52 tables\n"
              "generic record\n"
              "in L (0 to 47 bytes), out P (0 to 47 bytes)\n"
              "NPXLATE_INVALID, no length stored\n"
              "\n"
              "writes nothing\n");
    // Most do not look at it, whatever it is.
    const std::string any = expect_done({"layout", "4"}).out;
    EXPECT_EQ(expect_done({"layout", "4", "--length-argument=-1"}).out, any);
    EXPECT_EQ(expect_done({"layout", "4", "--length-argument", "2147483647"}).out, any);

    const json refused =
        json::parse(expect_done({"layout", "11", "--role", "reverse", "--length-argument", "1", "--json"}).out);
    const json taken =
        json::parse(expect_done({"layout", "icu_src_port_logical_res_xlate", "--length-argument", "8", "--json"}).out);
    const json one_more =
        json::parse(expect_done({"layout", "icu_src_port_logical_res_xlate", "--length-argument", "9", "--json"}).out);
    EXPECT_EQ(refused["forms"][0]["status"], 0);
    EXPECT_EQ(taken["forms"][0]["status"], 0);
    EXPECT_EQ(one_more["forms"][0]["status"], 22);

    EXPECT_EQ(expect_done({"layout", "4", "--length-argument=-2147483648"}).out, any);
    for (const std::string wrong : {"x", "2147483648", "-2147483649", "1.5", "--1", "-"}) {
        expect_error({"layout", "4", "--length-argument=" + wrong}, 2,
                     "bad --length-argument " + wrong + ": expected a number from -2147483648 to 2147483647");
    }
    for (const std::string wrong : {"x", "-1", "4294967296"}) {
        expect_error({"layout", "4", "--length=" + wrong}, 2, "bad --length " + wrong + ": expected a number of bytes");
    }
    EXPECT_EQ(run({"layout", "4", "--length", "30", "--length-argument", "30"}).status, 2);
}

TEST(Find, GivesRecordsByPositionNameValueAndWords) {
    EXPECT_EQ(expect_done({"find", "mirroring", "key"}).out,
              "span_fwd_st_xlate_key, key of table 22: SPAN forwarding (mirroring)\n");
    const std::string queue = expect_done({"find", "queue index", "table", "4"}).out;
    EXPECT_NE(queue.find("rx_adjacency_type_xlate_result, result of table 4"), std::string::npos) << queue;
    const json position = json::parse(expect_done({"find", "--json", "L88", "tx_adjacency_type_xlate_result"}).out);
    ASSERT_EQ(position.size(), 1U);
    EXPECT_EQ(position[0]["fields"][0]["to"], json::parse(R"(["P14-15"])"));
    EXPECT_EQ(position[0]["fields"][0]["when"].get<std::string>().find("L72.2"), 0U) << position;
    const std::string header = expect_done({"find", "0x11", "rx_adjacency"}).out;
    EXPECT_NE(header.find("P0.4-0"), std::string::npos) << header;
    expect_error({"find", "L15-12"}, 2, "\"L15-12\" is no position: expected L12-15, the lowest byte first");
    const Outcome nothing = run({"find", "no such thing"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(nothing.err, "npxlate: error: no record has all of: no such thing\n");
}

TEST(Decode, GivesWhatWouldHaveToBeProgrammed) {
    const std::string physical = "9100000000000d230a00000142000000";
    const std::string out = expect_done({"decode", "4", physical}).out;
    EXPECT_NE(out.find("logical  4000000000000000000000004200000000000000230d00000100000a0000\n"), std::string::npos);
    EXPECT_NE(out.find("1 other form can have made these bytes, too (--all shows it):\n  variant E\n"),
              std::string::npos);
    const json decoded = json::parse(expect_done({"decode", "4", "--json", physical}).out);
    ASSERT_EQ(decoded["candidates"].size(), 2U);
    const json& queue = decoded["candidates"][1];
    EXPECT_EQ(queue["form"], "variant E");
    // Without a range the index is as it stands; with range 4 or 8 the bits that it sets may have been clear.
    ASSERT_EQ(queue["alternatives"].size(), 1U);
    for (const json& candidate : decoded["candidates"]) {
        EXPECT_EQ(run({"result", "4", candidate["logical"].get<std::string>()}).out, physical + "\n");
    }
    const Outcome damaged = run({"decode", "4", "9900000000000d230a00000142000000"});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_NE(damaged.err.find("variant B needs P0.3 = 0"), std::string::npos) << damaged.err;
    expect_error({"decode", "4", "91"}, 2,
                 "1 bytes: rx_adjacency_type_xlate_result makes records of other lengths: expected 16");
    expect_error({"decode", "4", "--role", "reverse", physical}, 2,
                 "rx_adjacency_type_logical_xlate_result reads records back: expected a key or a result translator, "
                 "whose records are on the card");
}

TEST(Decode, OfABatchCanBeProgrammedAgain) {
    const std::string physical = R"({"table":4,"physical_result":"9100000000000d230a00000142000000"})"
                                 "\n";
    const Outcome decoded = run({"batch", "--decode"}, {.input = physical});
    EXPECT_EQ(decoded.out,
              R"({"table":4,"result":"4000000000000000000000004200000000000000230d00000100000a0000","result_others":1})"
              "\n");
    const Outcome nothing = run({"batch", "--decode"}, {.input = R"({"table":4,"physical_result":"00"})"
                                                                 "\n"});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_NE(nothing.err.find("line 1: rx_adjacency_type_xlate_result makes no records of 1 bytes"),
              std::string::npos);
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
