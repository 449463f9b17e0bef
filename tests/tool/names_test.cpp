// Names in the commands: the built tool, run as its users run it. The record is a receive adjacency (table 4) whose
// positions are those of the header.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tool/program.h"

namespace {

using nlohmann::json;
using program::File;
using program::Outcome;
using program::run;

using Words = std::vector<std::string>;

constexpr const char* names = R"(
[[record]]
table = 4
fields = [
    { name = "labelled", at = "L0.5" },
    { name = "queue", at = "L4-5", as = "hex" },
    { name = "next.mtu", at = "L12-13", union = "next" },
    { name = "next.context", at = "L12-15", union = "next" },
    { name = "nexthop", at = "L24-27", as = "ipv4" },
]
when = { "next.mtu" = "labelled=0", "next.context" = "labelled=1" }
)";

constexpr const char* record =
    "000000002301000008000000420000000000000000000000"
    "0100000a0000";

Outcome with_names(Words arguments, const std::string& content = names) {
    const File file{content};
    arguments.insert(arguments.end(), {"--names", file.path()});
    return run(arguments);
}

bool shows(const Outcome& outcome, const std::string& text) { return outcome.out.find(text) != std::string::npos; }

TEST(Names, StandBesideThePositions) {
    const Outcome explained = with_names({"explain", "4", record});
    EXPECT_EQ(explained.status, 0) << explained.err;
    EXPECT_TRUE(shows(explained, "L24-27, bytes reversed [nexthop]")) << explained.out;
    EXPECT_TRUE(shows(explained, "L12-13 [next.mtu]")) << explained.out;
    EXPECT_FALSE(shows(explained, "next.context")) << explained.out;
    EXPECT_TRUE(
        shows(with_names({"roundtrip", "4", record}), "L24-27 byte-reversed (0100000a became 0a000001) [nexthop]"));
    EXPECT_TRUE(shows(with_names({"diff", "4", record, std::string(60, '0')}), "[nexthop:"));
    EXPECT_TRUE(shows(with_names({"decode", "4", "9100000000000d230a00000142000000"}), "bytes reversed [nexthop]"));
}

TEST(Names, ChangeNothingElse) {
    for (const Words& arguments :
         {Words{"explain", "4", record}, Words{"roundtrip", "4", record}, Words{"layout", "4"}}) {
        EXPECT_EQ(with_names(arguments, "").out, run(arguments).out) << arguments.front();
    }
}

TEST(Names, OfALayoutAreThoseThatItsRecordsHave) {
    const Outcome layout = with_names({"layout", "4"});
    EXPECT_TRUE(shows(layout, "bytes reversed [next.context[23:0]]")) << layout.out;
    EXPECT_FALSE(shows(layout, "[next.mtu, next.context")) << layout.out;
}

TEST(Names, AreInTheJson) {
    const json explained = json::parse(with_names({"explain", "4", "--json", record}).out);
    const json expected{{"name", "nexthop"}, {"at", "L24-27"}, {"as", "ipv4"}, {"value", "10.0.0.1"}};
    EXPECT_EQ(explained["names"].back(), expected);
    EXPECT_FALSE(json::parse(run({"explain", "4", "--json", record}).out).contains("names"));
}

TEST(Names, AreFound) {
    const Outcome found = with_names({"find", "NextHop"});
    EXPECT_EQ(found.status, 0) << found.err;
    EXPECT_TRUE(shows(found, "rx_adjacency_type_xlate_result, result of table 4")) << found.out;
    EXPECT_TRUE(shows(found, "L24-27, bytes reversed [nexthop]")) << found.out;
    EXPECT_TRUE(shows(found, "L24-27           P8-11 [nexthop]")) << found.out;
    EXPECT_EQ(run({"find", "nexthop"}).status, 1);
    const json rows = json::parse(with_names({"find", "queue", "rx_adjacency_type_xlate_result", "--json"}).out);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0]["fields"][0]["names"], json::array({"queue"}));
    // A name of bits that never leave the record is found, too.
    const Outcome spare = with_names({"find", "spare", "result"},
                                     "[[record]]\ntable = 4\nfields = [{ name = \"spare\", "
                                     "at = \"L3\" }]\n");
    EXPECT_EQ(spare.out,
              "rx_adjacency_type_xlate_result, result of table 4: receive adjacency\n"
              "  L3               not carried [spare]\n"
              "rx_adjacency_type_logical_xlate_result, reverse of table 4: receive adjacency\n"
              "  L3               not written [spare]\n");
}

TEST(Names, OfAGenericTableAreFoundWithItsTranslator) {
    const Outcome found = with_names({"find", "index", "key"},
                                     "[[record]]\ntable = 6\nrole = \"key\"\nbytes = 4\n"
                                     "fields = [{ name = \"slot.index\", at = \"L0-3\" }]\n");
    EXPECT_TRUE(shows(found, "[slot.index[31:0]]") || shows(found, "[slot.index]")) << found.out;
}

TEST(Names, ComeFromTheEnvironment) {
    const File file{names};
    const Outcome outcome = run({"layout", "4"}, {.environment = {"NPXLATE_NAMES=" + file.path()}});
    EXPECT_TRUE(shows(outcome, "[nexthop]")) << outcome.out;
}

TEST(Names, ThatCannotBeUsedAreRefused) {
    const Outcome outcome = with_names({"explain", "4", record}, "[[record]]\ntable = 4\nbytes = 31\nfields = []\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(outcome.err.ends_with(":3:9: the result of table 4 has 30 bytes, not 31\n")) << outcome.err;
    EXPECT_EQ(run({"layout", "4", "--names", "/nowhere"}).err,
              "npxlate: error: cannot read the names file /nowhere: No such file or directory\n");
}

TEST(Build, MakesARecordAndItsTranslation) {
    const Outcome built = with_names({"build", "4", "nexthop=10.0.0.1", "queue=0x123", "L8=8", "next.mtu=66"});
    EXPECT_EQ(built.err, "");
    EXPECT_EQ(built.out, std::string{"logical   "} + record + "\nphysical  9100000000000d230a00000142000000\n");
    const json changed = json::parse(with_names({"build", "4", "--from", record, "nexthop=10.0.0.2", "--json"}).out);
    EXPECT_EQ(changed["physical"], "9100000000000d230a00000242000000");
    EXPECT_EQ(run({"build", "17", "--key", "L0=1", "L7=2"}).out,
              "logical   0100000000000002\nphysical  0000000000010002\n");
}

TEST(Build, RefusesWhatDoesNotFit) {
    const Outcome outcome = with_names({"build", "4", "queue=0x10000"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "npxlate: error: queue: 0x10000 does not fit: it has 16 bits, at most 0xffff\n");
    EXPECT_EQ(run({"build", "4", "queue"}).status, 2);
    EXPECT_EQ(run({"build", "6", "L0=1"}).status, 2);
    EXPECT_EQ(run({"build", "6", "L0=1", "--bytes", "2"}).status, 0);
}

TEST(Build, SaysWhichNamesTheRecordDoesNotUse) {
    EXPECT_EQ(with_names({"build", "4", "next.context=1"}).err,
              "npxlate: note: next.context stands for its bits only when labelled=1\n");
}

TEST(Batch, TakesFieldsByName) {
    const File file{names};
    const Outcome outcome =
        run({"batch", "--names", file.path()},
            {.input = R"({"table":4,"fields":{"nexthop":"10.0.0.1","L8":8,"queue":291,"labelled":false}})"
                      "\n"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, R"({"table":4,"fields":{"nexthop":"10.0.0.1","L8":8,"queue":291,"labelled":false},)"
                           R"("physical_result":"9100000000000d230a00000100000000"})"
                           "\n");
    const Outcome refused = run({"batch"}, {.input = R"({"table":4,"fields":{"nexthop":"10.0.0.1"}})"
                                                     "\n"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("line 1: \"fields\": \"nexthop\" is no position"), std::string::npos) << refused.err;
}

}  // namespace
