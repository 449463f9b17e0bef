// The names file: what it says of records, what is refused and where, values as they are written and read, and entries.
#include "names/names.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <string>

#include "names/import.h"

namespace {

using names::Bytes;
using names::Error;
using names::Field;
using names::Names;
using names::Record;
using names::Span;
using names::Style;

constexpr const char* sample = R"(
[[record]]
table = 4
role = "result"
bytes = 30
fields = [
    { name = "labelled",  at = "L0.5" },
    { name = "range",     at = "L8", words = "range" },
    { name = "queue",     at = "L4-5", as = "hex" },
    { name = "next.mtu",  at = "L12-13", as = "number", union = "next" },
    { name = "next.mac",  at = "L12-17", as = "mac", union = "next" },
    { name = "nexthop",   at = "L24-27", as = "ipv4" },
    { name = "source",    at = "L20-23", as = "ipv4", order = "big" },
    { name = "split",     at = "L1.7-4 L2.3-0", as = "number" },
]
when = { "next.mtu" = "labelled=0", "next.mac" = ["labelled=1 range=four", "labelled=1 L9=0x12"] }

[record.words.range]
none = 0
four = 4
eight = 8
)";

const catalogue::Translator& translator(const char* name) { return *catalogue::find(name); }

std::string refusal(const std::string& text) {
    try {
        Names::parse(text, "n.toml");
    } catch (const Error& error) {
        return error.what();
    }
    return "not refused";
}

std::string with_fields(const std::string& fields) {
    return "[[record]]\ntable = 4\nbytes = 30\nfields = [\n" + fields + "\n]\n";
}

TEST(NamesFile, SaysWhichBitsANameStandsFor) {
    const Names names = Names::parse(sample, "n.toml");
    const Record* const record = names.of(translator("rx_adjacency_type_xlate_result"));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->size, 30U);
    const Field* const queue = record->find("queue");
    ASSERT_NE(queue, nullptr);
    ASSERT_EQ(queue->bits.size(), 1U);
    EXPECT_EQ(queue->bits[0].first_bit, 32);
    EXPECT_EQ(queue->bits[0].width, 16);
    EXPECT_EQ(record->find("labelled")->style, Style::flag);
    EXPECT_EQ(record->find("range")->style, Style::words);
    EXPECT_EQ(record->find("nobody"), nullptr);
}

TEST(NamesFile, IsFoundForTheResultAndItsReverse) {
    const Names names = Names::parse(sample, "n.toml");
    const Record* const record = &names.records().front();
    EXPECT_EQ(names.of(translator("rx_adjacency_type_xlate_result")), record);
    EXPECT_EQ(names.of(translator("rx_adjacency_type_xlate_result"), 4), record);
    EXPECT_EQ(names.of(translator("rx_adjacency_type_logical_xlate_result")), record);
    EXPECT_EQ(names.of(translator("rx_adjacency_type_xlate_key")), nullptr);
    EXPECT_EQ(names.of(translator("vrrp_vmac_entry_st_xlate_result")), nullptr);
}

TEST(NamesFile, OfAGenericTableIsOfThatTableOnly) {
    const Names names =
        Names::parse("[[record]]\ntable = 6\nbytes = 4\nfields = [{ name = \"index\", at = \"L0-3\" }]\n", "n.toml");
    const catalogue::Translator& result = catalogue::of_table(6, catalogue::Role::result);
    const catalogue::Translator& reverse = catalogue::of_table(6, catalogue::Role::reverse);
    EXPECT_NE(names.of(result, 6), nullptr);
    EXPECT_NE(names.of(reverse, 6), nullptr);
    EXPECT_EQ(names.of(result, 9), nullptr);
    EXPECT_EQ(names.of(result), nullptr);
}

TEST(NamesFile, DoesNotNameWhatReadsBackAsPhysicalBytes) {
    const Names names = Names::parse("[[record]]\ntable = 3\nfields = [{ name = \"index\", at = \"L0\" }]\n", "n.toml");
    EXPECT_NE(names.of(catalogue::of_table(3, catalogue::Role::result), 3), nullptr);
    EXPECT_EQ(names.of(catalogue::of_table(3, catalogue::Role::reverse), 3), nullptr);
}

TEST(NamesFile, IsRefusedWithLineAndColumn) {
    EXPECT_EQ(refusal("[[record]\n").substr(0, 9), "n.toml:1:");
    EXPECT_EQ(refusal("records = 1\n"), "n.toml:1:1: a names file has no \"records\": expected record");
    EXPECT_EQ(refusal("[[record]]\ntable = 128\nfields = []\n"),
              "n.toml:2:9: \"table\": expected a number from 0 to 127");
    EXPECT_EQ(refusal("[[record]]\nfields = []\n"),
              "n.toml:1:1: expected \"table\" or \"translator\", and not both: whose record is it?");
    EXPECT_EQ(refusal("[[record]]\ntable = 4\nbytes = 31\nfields = []\n"),
              "n.toml:3:9: the result of table 4 has 30 bytes, not 31");
    EXPECT_EQ(refusal("[[record]]\ntranslator = \"nobody\"\nfields = []\n"),
              "n.toml:2:14: \"nobody\" is no key or result translator: expected a name that npxlate tables lists");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L30" })")),
              "n.toml:5:1: a at L30 lies outside the result of table 4, which has 30 bytes");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "P3" })")),
              "n.toml:5:20: \"P3\" is no position: expected logical bits such as L3.4, L3.4-2, L12 or L12-15");
    EXPECT_EQ(refusal(with_fields("{ name = \"a\", at = \"L3\" },\n  { name = \"b\", at = \"L3.2\" }")),
              "n.toml:6:3: a and b both have L3.2: expected that only of names of the same \"union\"");
    EXPECT_EQ(refusal(with_fields("{ name = \"a\", at = \"L3\" },\n  { name = \"a\", at = \"L4\" }")),
              "n.toml:6:3: there is another \"a\": expected each name once");
    EXPECT_EQ(refusal(with_fields(R"({ name = "L3", at = "L3" })")),
              "n.toml:5:10: \"L3\" is a position: expected another name");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L3-5", as = "ipv4" })")),
              "n.toml:5:1: 24 bits cannot be written as ipv4: expected 32 bits");
    EXPECT_EQ(
        refusal(with_fields(R"({ name = "a", at = "L3", as = "octal" })")),
        "n.toml:5:31: there is no \"octal\": expected number, signed, hex, flag, label, ipv4, ipv6, mac, bytes or "
        "words");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L3", words = "w" })")),
              "n.toml:5:34: there is no [record.words.w] in this record");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L3.1-0", words = "w" })") + "[record.words.w]\nbig = 4\n"),
              "n.toml:5:1: a has 2 bits: its word big = 4 does not fit");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L3" })") + "when = { b = \"a=1\" }\n"),
              "n.toml:7:10: there is no name \"b\", and none that begins with \"b.\"");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L3" })") + "when = { a = \"a=256\" }\n"),
              "n.toml:7:14: a: 256 does not fit: it has 8 bits, at most 255");
    EXPECT_EQ(refusal(with_fields(R"({ name = "a", at = "L3" })") + with_fields(R"({ name = "a", at = "L3" })")),
              "n.toml:7:1: the result of table 4 is named twice: expected one [[record]] for it");
    EXPECT_EQ(refusal("[[record]]\ntable = 4\n"),
              "n.toml:1:1: expected \"fields\", a list such as [{ name = \"vqi\", at = \"L4-5\" }]");
}

TEST(NamesFile, IsWrittenAsItIsRead) {
    const Names first = Names::parse(sample, "n.toml");
    const std::string written = names::write(first.records().front());
    const Names again = Names::parse(written, "again");
    EXPECT_EQ(names::write(again.records().front()), written);
    const Bytes record{0x20, 0, 0, 0, 0x23, 1, 0, 0, 4};
    for (const Field& field : again.records().front().fields) {
        const Field* const before = first.records().front().find(field.name);
        EXPECT_EQ(names::value_in(field, record), names::value_in(*before, record)) << field.name;
        EXPECT_EQ(names::to_string(field.when), names::to_string(before->when)) << field.name;
    }
}

struct Written {
    Style style;
    std::vector<Span> bits;
    std::string text;
    Bytes value;
};

TEST(Value, IsWrittenAndReadInItsStyle) {
    const std::vector<Span> word{{0, 32}};
    for (const Written& one : {
             Written{Style::number, {{0, 12}}, "291", {0x23, 0x01}},
             Written{Style::number, {{0, 64}}, "18446744073709551615", Bytes(8, 0xff)},
             Written{Style::signed_number, {{0, 12}}, "-2", {0xfe, 0x0f}},
             Written{Style::signed_number, {{0, 64}}, "-9223372036854775808", {0, 0, 0, 0, 0, 0, 0, 0x80}},
             Written{Style::signed_number, {{0, 1}}, "-1", {1}},
             Written{Style::hex, {{0, 12}}, "0x123", {0x23, 0x01}},
             Written{Style::hex, {{0, 12}}, "0x0", {0, 0}},
             Written{Style::hex, {{0, 72}}, "0x10000000000000000", {0, 0, 0, 0, 0, 0, 0, 0, 1}},
             Written{Style::flag, {{0, 1}}, "1", {1}},
             Written{Style::label, {{0, 20}}, "1048575", {0xff, 0xff, 0x0f}},
             Written{Style::ipv4, word, "192.0.2.1", {1, 2, 0, 192}},
             Written{Style::ipv6, {{0, 128}}, "2001:db8::1", {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xb8, 0x0d, 1, 0x20}},
             Written{Style::mac, {{0, 48}}, "02:00:5e:10:00:01", {1, 0, 0x10, 0x5e, 0, 2}},
             Written{Style::bytes, {{0, 24}}, "010203", {3, 2, 1}},
         }) {
        const Field field{"it", one.bits, one.style};
        EXPECT_EQ(names::format_value(field, one.value), one.text);
        EXPECT_EQ(names::parse_value(field, one.text), one.value) << one.text;
    }
}

TEST(Value, ThatDoesNotFitIsRefused) {
    const auto refused = [](Style style, std::uint16_t width, const char* text) -> std::string {
        try {
            names::parse_value({"it", {{0, width}}, style}, text);
        } catch (const Error& error) {
            return error.what();
        }
        return "not refused";
    };
    EXPECT_EQ(refused(Style::number, 12, "4096"), "it: 4096 does not fit: it has 12 bits, at most 4095");
    EXPECT_EQ(refused(Style::number, 12, "0x1000"), "it: 0x1000 does not fit: it has 12 bits, at most 0xfff");
    EXPECT_EQ(refused(Style::number, 12, "-1"), "it: expected a number, found \"-1\"");
    EXPECT_EQ(refused(Style::number, 12, ""), "it: expected a number, found \"\"");
    EXPECT_EQ(refused(Style::number, 64, "18446744073709551616"),
              "it: 18446744073709551616 does not fit: it has 64 bits, at most 18446744073709551615");
    EXPECT_EQ(refused(Style::signed_number, 8, "128"), "it: 128 does not fit: it has 8 bits, -128 to 127");
    EXPECT_EQ(refused(Style::hex, 12, "0x"), "it: expected hex digits after 0x, found \"0x\"");
    EXPECT_EQ(refused(Style::flag, 1, "2"), "it: expected 0 or 1, found \"2\"");
    EXPECT_EQ(refused(Style::label, 32, "1048576"), "it: 1048576 does not fit: it has 32 bits, at most 1048575");
    EXPECT_EQ(refused(Style::ipv4, 32, "10.0.0"), "it: expected an IPv4 address such as 192.0.2.1, found \"10.0.0\"");
    EXPECT_EQ(refused(Style::ipv6, 128, "10.0.0.1"),
              "it: expected an IPv6 address such as 2001:db8::1, found \"10.0.0.1\"");
    EXPECT_EQ(refused(Style::mac, 48, "02:00:5e"),
              "it: expected a MAC address such as 02:00:5e:10:00:01, found \"02:00:5e\"");
    EXPECT_EQ(refused(Style::bytes, 24, "0102"), "it: expected 3 bytes of hex, found \"0102\"");
}

TEST(Value, OfWordsIsTheirNumberOrOneOfThem) {
    const Field field{"it", {{0, 3}}, Style::words, {{"none", 0}, {"four", 4}, {"also_four", 4}}};
    EXPECT_EQ(names::format_value(field, Bytes{4}), "four");
    EXPECT_EQ(names::format_value(field, Bytes{5}), "5");
    EXPECT_EQ(names::parse_value(field, "also_four"), Bytes{4});
    EXPECT_EQ(names::parse_value(field, "5"), Bytes{5});
    EXPECT_THROW(names::parse_value(field, "five"), Error);
    EXPECT_THROW(names::parse_value(field, "8"), Error);
}

TEST(Value, StandsInTheRecordInItsOrder) {
    const Names names = Names::parse(sample, "n.toml");
    const Record& record = names.records().front();
    Bytes bytes(30);
    bytes[24] = 1;
    bytes[27] = 10;
    bytes[20] = 10;
    bytes[23] = 1;
    bytes[12] = 2;
    bytes[17] = 1;
    bytes[1] = 0x5f;
    bytes[2] = 0xf6;
    EXPECT_EQ(names::value_in(*record.find("nexthop"), bytes), "10.0.0.1");
    EXPECT_EQ(names::value_in(*record.find("source"), bytes), "10.0.0.1");
    EXPECT_EQ(names::value_in(*record.find("next.mac"), bytes), "02:00:00:00:00:01");
    EXPECT_EQ(names::value_in(*record.find("next.mtu"), bytes), "2");
    EXPECT_EQ(names::value_in(*record.find("split"), bytes), std::to_string(0x65));
}

TEST(Names, OfAUnionAreThoseOfItsForm) {
    const Names names = Names::parse(sample, "n.toml");
    const Record& record = names.records().front();
    const std::vector<Span> bits{{8 * 12, 16}};
    Bytes bytes(30);
    EXPECT_EQ(names::describe(record, bits), "next.mtu, next.mac[47:32]");
    EXPECT_EQ(names::describe(record, bits, bytes), "next.mtu = 0");
    bytes[0] = 0x20;
    EXPECT_EQ(names::describe(record, bits, bytes), "");
    bytes[8] = 4;
    EXPECT_EQ(names::describe(record, bits, bytes), "next.mac = 00:00:00:00:00:00");
    bytes[8] = 0;
    bytes[9] = 0x12;
    EXPECT_EQ(names::describe(record, bits, bytes), "next.mac = 00:00:00:00:00:00");
}

TEST(Names, OfPartsSayWhichBits) {
    const Names names = Names::parse(sample, "n.toml");
    const Record& record = names.records().front();
    EXPECT_EQ(names::describe(record, std::vector<Span>{{8 * 4, 8}}), "queue[7:0]");
    EXPECT_EQ(names::describe(record, std::vector<Span>{{8 * 4 + 3, 1}, {5, 1}}), "labelled, queue[3]");
    EXPECT_EQ(names::describe(record, std::vector<Span>{{8 * 2, 2}}), "split[5:4]");
    EXPECT_EQ(names::describe(record, std::vector<Span>{{8 * 9, 8}}), "");
}

TEST(Entry, IsMadeOfNamesAndPositions) {
    const Names names = Names::parse(sample, "n.toml");
    const Record& record = names.records().front();
    const std::vector<names::Assignment> assignments{
        {"nexthop", "10.0.0.1"}, {"queue", "0x123"}, {"L0.1", "1"}, {"range", "eight"}, {"L9-10", "0x0201"}};
    const Bytes bytes = names::entry_from_fields(Bytes(30), &record, assignments);
    Bytes expected(30);
    expected[0] = 2;
    expected[4] = 0x23;
    expected[5] = 1;
    expected[8] = 8;
    expected[9] = 1;
    expected[10] = 2;
    expected[24] = 1;
    expected[27] = 10;
    EXPECT_EQ(bytes, expected);
    EXPECT_TRUE(names::unused_names(bytes, &record, assignments).empty());
}

TEST(Entry, ChangesOnlyWhatIsSaid) {
    const Bytes bytes =
        names::entry_from_fields(Bytes(4, 0xff), nullptr, std::vector<names::Assignment>{{"L1.3-2", "0"}});
    EXPECT_EQ(bytes, (Bytes{0xff, 0xf3, 0xff, 0xff}));
}

TEST(Entry, RefusesWhatItCannotSet) {
    const Names names = Names::parse(sample, "n.toml");
    const Record& record = names.records().front();
    const auto refused = [&](const std::vector<names::Assignment>& assignments) -> std::string {
        try {
            names::entry_from_fields(Bytes(30), &record, assignments);
        } catch (const Error& error) {
            return error.what();
        }
        return "not refused";
    };
    EXPECT_EQ(refused({{"nexthob", "10.0.0.1"}}),
              "there is no name \"nexthob\": expected one of the names file or a position such as L3.4-2; did you mean "
              "nexthop?");
    EXPECT_EQ(refused({{"L30", "1"}}), "L30 lies outside the record, which has 30 bytes");
    EXPECT_EQ(refused({{"queue", "1"}, {"L5", "1"}}), "queue and L5 both set L5.0: expected one of them");
    EXPECT_EQ(refused({{"queue", "0x10000"}}), "queue: 0x10000 does not fit: it has 16 bits, at most 0xffff");
    EXPECT_THROW(names::entry_from_fields(Bytes(4), nullptr, std::vector<names::Assignment>{{"queue", "1"}}), Error);
}

TEST(Entry, SaysWhichNamesDoNotHold) {
    const Names names = Names::parse(sample, "n.toml");
    const Record& record = names.records().front();
    const std::vector<names::Assignment> assignments{{"next.mac", "02:00:00:00:00:01"}};
    const Bytes bytes = names::entry_from_fields(Bytes(30), &record, assignments);
    EXPECT_EQ(
        names::unused_names(bytes, &record, assignments),
        std::vector<std::string>{"next.mac stands for its bits only when labelled=1 range=four or labelled=1 L9=0x12"});
}

TEST(Structures, FitTablesWhoseRecordsAreAsLong) {
    const auto fits = [](std::size_t size, unsigned table, std::size_t padding) {
        const std::vector<names::Fit> all = names::tables_for(size);
        return std::ranges::any_of(all, [&](const names::Fit& fit) {
            return fit.table == table && fit.role == catalogue::Role::result && fit.padding == padding;
        });
    };
    EXPECT_TRUE(fits(30, 4, 0));
    EXPECT_TRUE(fits(32, 4, 2));
    EXPECT_FALSE(fits(31, 4, 1));
    EXPECT_FALSE(fits(40, 4, 10));
}

}  // namespace
