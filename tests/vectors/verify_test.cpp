// npxlate vectors and npxlate verify, as their users run them.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tool/program.h"

namespace {

using nlohmann::json;
using program::Outcome;

const std::string translator = "vrrp_vmac_entry_st_xlate_result";

Outcome vectors_of(const std::vector<std::string>& names) {
    std::vector<std::string> arguments{"vectors"};
    arguments.insert(arguments.end(), names.begin(), names.end());
    return program::run(arguments);
}

Outcome verify(const std::string& lines, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{"verify"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return program::run(arguments, {.input = lines});
}

Outcome verify_with(const std::string& wrong_library, const std::string& lines) {
    return verify(lines, {"--library", std::string{NPXLATE_WRONG_LIBRARIES} + "/libvectors_" + wrong_library + ".so"});
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(VectorsCommand, WritesACallALine) {
    const Outcome outcome = vectors_of({translator});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    std::istringstream lines{outcome.out};
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const json vector = json::parse(line);
        EXPECT_EQ(vector["translator"], translator);
        EXPECT_EQ(vector["in"].get<std::string>().size(), 16U);
        EXPECT_EQ(vector["out_before"].get<std::string>().size(), 16U);
        EXPECT_EQ(vector["out"].get<std::string>().size(), 16U);
        EXPECT_EQ(vector["status"], 0);
        EXPECT_EQ(vector["length"], 8);
        EXPECT_TRUE(vector.contains("form") && vector.contains("length_in"));
        EXPECT_FALSE(vector.contains("argument") || vector.contains("in_after") || vector.contains("tx_adj_key_max"));
    }
    EXPECT_GT(count, 4U);
    EXPECT_LT(count, 20U);
}

TEST(VectorsCommand, IsRepeatable) { EXPECT_EQ(vectors_of({"4", "12"}).out, vectors_of({"4", "12"}).out); }

TEST(VectorsCommand, TakesTablesAndNames) {
    const std::string out = vectors_of({"17", "modulo_xlate_key"}).out;
    for (const char* name : {"vrrp_vmac_entry_st_xlate_key", "vrrp_vmac_entry_st_xlate_result",
                             "vrrp_logical_xlate_result", "modulo_xlate_key"}) {
        EXPECT_TRUE(has(out, std::string{"\""} + name)) << name;
    }
    const Outcome outcome = vectors_of({"128"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(has(outcome.err, "128")) << outcome.err;
}

TEST(VectorsCommand, SaysWhatTheLibraryReadsBesides) {
    EXPECT_TRUE(has(vectors_of({"te_nh_adjacency_type_xlate_result"}).out, "\"tx_adj_key_max\":"));
    EXPECT_TRUE(has(vectors_of({"esi_info_logical_res_xlate"}).out, "\"argument\":\""));
    EXPECT_TRUE(has(vectors_of({"ipmc_encap_logical_res_xlate"}).out, "\"argument\":5"));
    EXPECT_TRUE(has(vectors_of({"span_fwd_st_xlate_result"}).out, "\"in_after\":"));
    EXPECT_TRUE(has(vectors_of({"srv6_info_res_xlate"}).out, "\"status\":34"));
}

TEST(VerifyCommand, FindsTheLibraryAsTheVectorsSay) {
    const program::File file{vectors_of({}).out};
    for (const std::vector<std::string>& library :
         {std::vector<std::string>{}, std::vector<std::string>{"--library", NPXLATE_LIBRARY_PATH}}) {
        std::vector<std::string> arguments{"verify", file.path()};
        arguments.insert(arguments.end(), library.begin(), library.end());
        const Outcome outcome = program::run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_TRUE(has(outcome.out, " same + 0 different")) << outcome.out;
    }
}

TEST(VerifyCommand, TellsWhatDiffersInFields) {
    const std::string lines = vectors_of({translator}).out;
    const Outcome outcome = verify_with("moves_a_bit", lines);
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_TRUE(has(outcome.out, translator + " (result of table 17): differs in P6.3\n")) << outcome.out;
    EXPECT_TRUE(has(outcome.out, "  P6.3 is 1, expected 0; from L4-7\n")) << outcome.out;
    EXPECT_TRUE(has(outcome.err, "different: ")) << outcome.err;
}

TEST(VerifyCommand, TellsStatusesLengthsAndWhatIsMissing) {
    const std::string lines = vectors_of({translator}).out;
    EXPECT_TRUE(has(verify_with("returns_another_status", lines).out, "returns 22 in place of 0"));
    const Outcome missing = verify_with("moves_a_bit", vectors_of({"modulo_xlate_key"}).out);
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(has(missing.out, "modulo_xlate_key: is not exported")) << missing.out;
    std::string other_length = lines;
    other_length.replace(other_length.find("\"length\":8"), 10, "\"length\":9");
    EXPECT_TRUE(has(verify(other_length).out, "stores the length 8 in place of the length 9"));
}

TEST(VerifyCommand, SurvivesALibraryThatMisbehaves) {
    const std::string lines = vectors_of({translator}).out;
    const Outcome crashed = verify_with("crashes", lines);
    EXPECT_EQ(crashed.status, 2);
    EXPECT_TRUE(has(crashed.err, "crashed (Segmentation fault): line 1, " + translator)) << crashed.err;
    const Outcome outside = verify_with("writes_outside", lines);
    EXPECT_EQ(outside.status, 1);
    EXPECT_TRUE(has(outside.out, "writes outside of its records")) << outside.out;
    const Outcome none = verify(lines, {"--library", "/nonexistent.so"});
    EXPECT_EQ(none.status, 2);
    EXPECT_TRUE(has(none.err, "cannot load /nonexistent.so")) << none.err;
}

TEST(VerifyCommand, ChecksEntriesWithBothRecords) {
    // What the batch says of the sample entries, put beside the records that it says it of.
    const Outcome batch = program::run({"batch", "--quiet", NPXLATE_ENTRIES});
    std::ifstream entries{NPXLATE_ENTRIES};
    std::istringstream translated{batch.out};
    std::string both;
    for (std::string before, after; std::getline(entries, before) && std::getline(translated, after);) {
        json entry = json::parse(before);
        entry.update(json::parse(after));
        both += entry.dump() + "\n";
    }
    const Outcome outcome = verify(both);
    EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    EXPECT_TRUE(has(outcome.out, "200 checked = 200 same + 0 different")) << outcome.out;

    const Outcome wrong =
        verify(R"({"table": 17, "result": "0000000001020304", "physical_result": "1100010001020344"})");
    EXPECT_EQ(wrong.status, 1);
    EXPECT_TRUE(has(wrong.out, "P7.6 is 0, expected 1; from L4-7")) << wrong.out;
    EXPECT_EQ(
        verify(R"({"table": 17, "physical_result": "1100010001020304", "logical_result": "0000000001020304"})").status,
        0);
    // The bits that this reverse leaves as they were may be anything.
    EXPECT_EQ(verify(R"({"table": 4, "physical_result": "91000000000000000000000000000000",
                         "logical_result": "00000000000000000000000000000000aaaaaaaaaaaaaaaa00000000aaaa"})")
                  .status,
              2)
        << "an entry is one line";
    EXPECT_EQ(verify(R"({"table": 4, "physical_result": "91000000000000000000000000000000", )"
                     R"("logical_result": "00000000000000000000000000000000aaaaaaaaaaaaaaaa00000000aaaa"})")
                  .status,
              0);
}

TEST(VerifyCommand, TellsWhatItCannotRead) {
    const std::string good = vectors_of({translator}).out;
    const std::vector<std::pair<std::string, std::string>> bad{
        {"{", "line 1"},
        {"{}", "expected a vector (\"translator\") or an entry with both records"},
        {R"({"translator": 5})", "\"translator\": expected a string, found 5"},
        {R"({"translator": "nothing"})", "there is no table or translator \"nothing\""},
        {R"({"translator": "modulo_xlate_key", "in": "00"})", "expected \"length_in\""},
        {R"({"translator": "modulo_xlate_key", "in": "00", "length_in": 4, "out_before": "0000", "status": 0})",
         "\"in\": modulo_xlate_key reads 4 bytes, but 1 came"},
        {R"({"translator": "modulo_xlate_key", "in": "00000000", "length_in": 4, "out_before": "00", "status": 0})",
         "\"out_before\": modulo_xlate_key may write 2 bytes, but 1 came"},
        {R"({"translator": "ipv6_ll_xlate_hash_key", "in": "00000000", "length_in": 400, "out_before": "00"})",
         "\"length_in\": ipv6_ll_xlate_hash_key takes 4 to 20 bytes, found 400"},
        {R"({"table": 200, "result": "00", "physical_result": "00"})", "there is no table 200"},
        {R"({"table": 17, "result": "00", "physical_result": "00"})", "takes a logical record of 8 bytes"},
        {R"({"table": 17, "result": "0000000001020304"})", "expected a vector"},
        {R"({"table": 52, "physical_result": "00", "logical_result": "00"})",
         "physical record of 32 bytes, but 1 byte came"}};
    for (const auto& [line, message] : bad) {
        const Outcome outcome = verify(std::string{line}.append("\n").append(good));
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_TRUE(has(outcome.err, message)) << line << "\n" << outcome.err;
        EXPECT_TRUE(has(outcome.out, "; 1 unreadable")) << outcome.out;
    }
    EXPECT_EQ(verify("").status, 2);
    EXPECT_EQ(verify("", {"--limit", "x"}).status, 2);
}

TEST(VerifyCommand, ListsNoMoreThanAsked) {
    const std::string lines = vectors_of({translator}).out;
    const std::string library = std::string{NPXLATE_WRONG_LIBRARIES} + "/libvectors_returns_another_status.so";
    const Outcome outcome = verify(lines, {"--library", library, "--limit", "1"});
    EXPECT_TRUE(has(outcome.out, "more differences")) << outcome.out;

    const Outcome as_json = verify(lines, {"--library", library, "--limit", "2", "--json"});
    std::istringstream printed{as_json.out};
    std::vector<json> parsed;
    for (std::string line; std::getline(printed, line);) {
        parsed.push_back(json::parse(line));
    }
    ASSERT_EQ(parsed.size(), 3U);
    EXPECT_EQ(parsed[0]["finding"], "different");
    EXPECT_EQ(parsed[0]["line"], 1);
    EXPECT_EQ(parsed[2]["summary"]["checked"], parsed[2]["summary"]["different"]);
}

}  // namespace
