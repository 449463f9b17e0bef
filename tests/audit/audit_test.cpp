// npxlate audit: cards whose differences are known.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tool/program.h"

namespace {

using nlohmann::json;
using program::File;
using program::Outcome;
using program::run;
using Lines = std::vector<std::string>;
using Words = std::vector<std::string>;

std::string hex(std::uint64_t number, unsigned digits) {
    std::ostringstream text;
    text << std::hex;
    text.width(digits);
    text.fill('0');
    text << number;
    return text.str();
}

// Entries of table 17: a key of six bytes that are reversed and two that are kept, a result of four bytes that are not
// carried (but for flags that are 0 here) and four that are.
std::string programmed_entry(std::uint64_t number, std::uint64_t value) {
    std::string key;
    for (unsigned i = 0; i < 6; ++i) {
        key += hex(number >> 8 * i & 0xff, 2);
    }
    return R"({"table":17,"key":")" + key + R"(0708","result":"00000000)" + hex(value, 8) + "\"}";
}

std::string held_key(std::uint64_t number) { return hex(number, 12) + "0708"; }

std::string held_record(std::uint64_t number, const std::string& record) {
    return R"({"table":17,"physical_key":")" + held_key(number) + R"(","physical_result":")" + record + "\"}";
}

std::string held_entry(std::uint64_t number, std::uint64_t value) {
    return held_record(number, "11000100" + hex(value, 8));
}

std::uint64_t value_of(std::uint64_t number) { return 0x01020304 + 0x10000 * (number % 251) + number % 13; }

Lines all_programmed(std::uint64_t count) {
    Lines lines;
    for (std::uint64_t i = 0; i < count; ++i) {
        lines.push_back(programmed_entry(i, value_of(i)));
    }
    return lines;
}

Lines all_held(std::uint64_t count) {
    Lines lines;
    for (std::uint64_t i = count; i-- > 0;) {
        lines.push_back(held_entry(i, value_of(i)));
    }
    return lines;
}

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

struct Told {
    Outcome outcome;
    std::vector<json> findings;
    json summary;

    std::uint64_t count(const char* what) const { return summary["all"][what]; }
    std::vector<json> of_kind(const std::string& kind) const {
        std::vector<json> some;
        std::ranges::copy_if(findings, std::back_inserter(some),
                             [&](const json& finding) { return finding["finding"] == kind; });
        return some;
    }
    std::string first_pattern() const { return summary["patterns"].at(0)["text"]; }
};

Told audit_files(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "audit");
    arguments.emplace_back("--json");
    Told told{run(arguments), {}, {}};
    EXPECT_EQ(told.outcome.err, "");
    std::istringstream lines{told.outcome.out};
    for (std::string line; std::getline(lines, line);) {
        json one = json::parse(line);
        if (one.contains("summary")) {
            EXPECT_TRUE(told.summary.is_null());
            told.summary = one["summary"];
        } else {
            EXPECT_TRUE(told.summary.is_null());
            told.findings.push_back(one);
        }
    }
    EXPECT_FALSE(told.summary.is_null());
    EXPECT_EQ(told.outcome.status, told.summary["clean"] ? 0 : 1);
    return told;
}

Told audit(const Lines& programmed, const std::vector<Lines>& dumps, const std::vector<std::string>& options = {}) {
    const File programmed_file{joined(programmed)};
    std::vector<std::unique_ptr<File>> files;
    std::vector<std::string> arguments{programmed_file.path()};
    for (const Lines& dump : dumps) {
        files.push_back(std::make_unique<File>(joined(dump)));
        arguments.push_back(files.back()->path());
    }
    arguments.insert(arguments.end(), options.begin(), options.end());
    return audit_files(arguments);
}

void replace(Lines& lines, const std::string& old, const std::string& by) {
    const auto found = std::ranges::find(lines, old);
    ASSERT_NE(found, lines.end());
    *found = by;
}

TEST(Audit, FindsNothingWhereThereIsNothing) {
    const File programmed{joined(all_programmed(300))};
    const File held{joined(all_held(300))};
    const Outcome outcome = run({"audit", programmed.path(), held.path()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.starts_with("nothing found: 300 entries are held as they were programmed\n"))
        << outcome.out;
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(audit({}, {{}}).findings.empty());
}

TEST(Audit, FindsEveryKindAndTheNumbersAddUp) {
    Lines programmed = all_programmed(100);
    Lines held = all_held(100);
    replace(held, held_entry(3, value_of(3)), held_entry(3, value_of(3) ^ 0x80));  // different
    std::erase(held, held_entry(4, value_of(4)));                                  // missing
    std::erase(held, held_entry(5, value_of(5)));
    held.push_back(held_entry(1000, 1));  // unexpected
    held.push_back(held_entry(1001, 1));
    held.push_back(held_entry(1002, 1));
    programmed.push_back(R"({"table":53,"key":"00000000000000","result":"09)" + std::string(62, '0') +
                         "\"}");  // refused
    programmed.push_back(R"({"table":17,"key":"0102","result":"0000000000000000"})");
    programmed.push_back(programmed_entry(7, value_of(7)));  // duplicate
    held.push_back(held_entry(8, value_of(8)));
    held.push_back(held_entry(9, 9));
    programmed.emplace_back("nonsense");  // unreadable
    held.emplace_back(R"({"table":17,"physical_key":"00")");
    held.emplace_back(R"({"table":17,"key":"0000000000000000","result":"0000000000000000"})");
    const Told told = audit(programmed, {held});
    EXPECT_EQ(told.count("programmed"), 103);
    EXPECT_EQ(told.count("held"), 103);
    EXPECT_EQ(told.count("same"), 97);
    EXPECT_EQ(told.count("different"), 1);
    EXPECT_EQ(told.count("missing"), 2);
    EXPECT_EQ(told.count("unexpected"), 3);
    EXPECT_EQ(told.count("refused"), 2);
    EXPECT_EQ(told.count("duplicate_programmed"), 1);
    EXPECT_EQ(told.count("duplicate_held"), 2);
    EXPECT_EQ(told.of_kind("different").size(), 1);
    EXPECT_EQ(told.of_kind("missing").size(), 2);
    EXPECT_EQ(told.of_kind("unexpected").size(), 3);
    EXPECT_EQ(told.of_kind("refused").size(), 2);
    EXPECT_EQ(told.of_kind("duplicate").size(), 3);
    EXPECT_EQ(told.of_kind("unreadable").size(), 3);
    EXPECT_EQ(told.findings.size(), 14);

    const json different = told.of_kind("different").front();
    EXPECT_EQ(different["physical_key"], held_key(3));
    EXPECT_EQ(different["programmed_line"], 4);
    EXPECT_EQ(different["held_line"], 95);
    EXPECT_EQ(different["programmed"], "11000100" + hex(value_of(3), 8));
    EXPECT_EQ(different["held"], "11000100" + hex(value_of(3) ^ 0x80, 8));
    EXPECT_EQ(different["differs_at"], json::parse(R"(["P7.7"])"));
    EXPECT_EQ(different["fields"].size(), 1);
    EXPECT_EQ(different["fields"][0]["from"], json::parse(R"(["L4-7"])"));
    EXPECT_EQ(told.of_kind("missing").front()["physical_key"], held_key(4));
    EXPECT_EQ(told.of_kind("unexpected").back()["held_line"], 101);
    EXPECT_EQ(told.summary["sums"].size(), 2);
    EXPECT_NE(std::string(told.summary["sums"][0])
                  .find(": 104 entries = 97 same + 1 different + 2 missing + 1 duplicate + "
                        "1 unreadable + 2 refused"),
              std::string::npos)
        << told.summary["sums"];
    EXPECT_NE(std::string(told.summary["sums"][1])
                  .find(": 105 entries = 97 same + 1 different + 3 unexpected + 2 duplicate + 2 unreadable"),
              std::string::npos)
        << told.summary["sums"];
}

TEST(Audit, NamesThePatternFirst) {
    Lines held = all_held(400);
    for (std::uint64_t i = 0; i < 120; ++i) {
        replace(held, held_entry(i, value_of(i)), held_record(i, "19000100" + hex(value_of(i), 8)));
    }
    for (std::uint64_t i = 200; i < 230; ++i) {
        replace(held, held_entry(i, value_of(i)), held_entry(i, value_of(i) ^ (0x10001 + i * 0x351)));
    }
    for (std::uint64_t i = 300; i < 310; ++i) {
        replace(held, held_entry(i, value_of(i)), held_record(i, "19000100" + hex(value_of(i) ^ 0xff, 8)));
    }
    std::erase_if(held,
                  [](const std::string& line) { return line.find(R"("0000000001700708")") != std::string::npos; });
    const File programmed{joined(all_programmed(400))};
    const File card{joined(held)};
    const Outcome outcome = run({"audit", programmed.path(), card.path()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(
        outcome.out.starts_with("table 17: 120 entries differ in P0.3 only\n"
                                "    programmed 0, held 1; 10 more in this and other bits\n"))
        << outcome.out;
    EXPECT_NE(outcome.out.find("\ntable 17: 30 entries differ within P4-7 only\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("\ntable 17: 10 entries differ in P0.3, P7 only\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("\ntable 17: 1 entry is missing, key 0000000001700708\n"), std::string::npos)
        << outcome.out;
}

TEST(Audit, ExplainsBytesInReverseOrderAndReadBacks) {
    Lines held = all_held(60);
    for (std::uint64_t i = 10; i < 30; ++i) {
        const std::string value = hex(value_of(i), 8);
        replace(held, held_entry(i, value_of(i)),
                held_record(
                    i, "11000100" + value.substr(6, 2) + value.substr(4, 2) + value.substr(2, 2) + value.substr(0, 2)));
    }
    Told told = audit(all_programmed(60), {held});
    EXPECT_EQ(told.first_pattern(), "table 17: 20 entries differ within P4-7 only");
    EXPECT_EQ(told.summary["patterns"][0]["explained"], "bytes reversed");

    // The logical record as it is read back.
    replace(held, held_entry(40, value_of(40)), held_record(40, "00000000" + hex(value_of(40), 8)));
    told = audit(all_programmed(60), {held});
    EXPECT_EQ(told.summary["patterns"][1]["explained"], "the logical record");

    replace(held, held_entry(41, value_of(41)), held_record(41, "0000000000000000"));
    told = audit(all_programmed(60), {held});
    EXPECT_EQ(told.of_kind("different").back()["explained"], "all zeros");

    // A read-back of table 4 reverses the bytes of its queue index and of L24-27, and translating it again keeps that.
    const std::string logical = "0000000023010000080000004200000000000000000000000100000a0000";
    told = audit({R"({"table":4,"key":"010000","result":")" + logical + "\"}"},
                 {{R"({"table":4,"physical_key":"010000","physical_result":"910000000000230d0100000a42000000"})"}});
    EXPECT_EQ(told.summary["patterns"][0]["explained"], "read back and translated again");
}

TEST(Audit, TellsRecordsOfAnotherSize) {
    Lines held = all_held(20);
    replace(held, held_entry(5, value_of(5)), held_record(5, "110001"));
    const Told told = audit(all_programmed(20), {held});
    EXPECT_EQ(told.first_pattern(), "table 17: 1 entry differs in size: 8 bytes were programmed, 3 are held");
}

TEST(Audit, TakesARepeatedKeyForTheSameIfOneOfItsRecordsIs) {
    Lines programmed = all_programmed(10);
    programmed.insert(programmed.begin(), programmed_entry(3, 77));
    Told told = audit(programmed, {all_held(10)});
    EXPECT_EQ(told.count("same"), 10);
    EXPECT_EQ(told.count("different"), 0);
    EXPECT_EQ(told.count("duplicate_programmed"), 1);
    EXPECT_EQ(told.findings.front()["first"], 1);
    EXPECT_EQ(told.findings.front()["programmed_line"], 5);
    EXPECT_EQ(told.findings.front()["same_record"], false);

    Lines held = all_held(10);
    held.insert(held.begin(), held_entry(3, 77));
    told = audit(all_programmed(10), {held});
    EXPECT_EQ(told.count("same"), 10);
    EXPECT_EQ(told.count("duplicate_held"), 1);

    // Neither is.
    programmed.push_back(programmed_entry(3, 78));
    held = all_held(10);
    replace(held, held_entry(3, value_of(3)), held_entry(3, 99));
    told = audit(programmed, {held});
    EXPECT_EQ(told.count("different"), 1);
    EXPECT_EQ(told.count("duplicate_programmed"), 2);

    // Not held at all.
    std::erase(held, held_entry(3, 99));
    told = audit(programmed, {held});
    EXPECT_EQ(told.count("missing"), 1);
    EXPECT_EQ(told.count("duplicate_programmed"), 2);
}

TEST(Audit, KeepsManyRecordsOfOneKeyApart) {
    Lines held;
    for (std::uint64_t i = 0; i < 200; ++i) {
        held.push_back(held_entry(1, i));
    }
    const Told told = audit({programmed_entry(1, 3)}, {held});
    EXPECT_EQ(told.count("same"), 1);
    EXPECT_EQ(told.count("duplicate_held"), 199);
}

TEST(Audit, CallsMovingWhatIsRightInOneOfTheDumps) {
    const Lines programmed = all_programmed(50);
    Lines older = all_held(50);
    Lines newer = all_held(50);
    replace(older, held_entry(1, value_of(1)), held_entry(1, 1));  // right later
    replace(newer, held_entry(2, value_of(2)), held_entry(2, 2));  // right before
    std::erase(older, held_entry(3, value_of(3)));                 // came
    std::erase(newer, held_entry(4, value_of(4)));                 // went
    older.push_back(held_entry(1000, 1));                          // went, and was never programmed
    newer.push_back(held_entry(1001, 1));
    older.push_back(held_entry(1002, 1));  // there in both
    newer.push_back(held_entry(1002, 2));
    for (Lines* dump : {&older, &newer}) {  // wrong in both
        replace(*dump, held_entry(5, value_of(5)), held_entry(5, value_of(5) ^ (dump == &older ? 0x81 : 0x82)));
        replace(*dump, held_entry(6, value_of(6)), held_entry(6, value_of(6) ^ (dump == &older ? 0x81 : 0x80)));
        std::erase(*dump, held_entry(7, value_of(7)));
    }
    std::erase(older, held_entry(8, value_of(8)));  // missing, then different
    replace(newer, held_entry(8, value_of(8)), held_entry(8, 8));
    replace(older, held_entry(9, value_of(9)), held_entry(9, 9));  // different, then missing
    std::erase(newer, held_entry(9, value_of(9)));
    newer.push_back(held_entry(10, value_of(10)));  // twice in one of them
    Told told = audit(programmed, {older, newer});
    EXPECT_EQ(told.count("same"), 41);
    EXPECT_EQ(told.count("different"), 3);
    EXPECT_EQ(told.count("missing"), 2);
    EXPECT_EQ(told.count("unexpected"), 1);
    EXPECT_EQ(told.count("moving"), 6);
    EXPECT_EQ(told.count("duplicate_held"), 0);
    EXPECT_TRUE(told.of_kind("moving").empty());
    for (const json& finding : told.of_kind("different")) {
        if (finding["physical_key"] == held_key(5) || finding["physical_key"] == held_key(6)) {
            EXPECT_EQ(finding["differs_at"], json::parse(R"(["P7.7"])"));
        }
    }
    told = audit(programmed, {older, newer}, {"--moving"});
    EXPECT_EQ(told.of_kind("moving").size(), 6);

    // All that is left moves: nothing is found.
    Lines clean = all_held(50);
    told = audit(programmed, {older, newer, clean});
    EXPECT_TRUE(told.summary["clean"]);
    EXPECT_EQ(told.outcome.status, 0);
    EXPECT_EQ(told.count("same"), 41);
    EXPECT_EQ(told.count("moving"), 12);
}

TEST(Audit, LeavesOutWhatIsIgnored) {
    Lines held = all_held(40);
    for (std::uint64_t i = 0; i < 10; ++i) {
        replace(held, held_entry(i, value_of(i)), held_record(i, "190001" + hex(i, 2) + hex(value_of(i), 8)));
    }
    replace(held, held_entry(20, value_of(20)), held_record(20, "19000100" + hex(5, 8)));
    const std::vector<std::string> option{"--ignore", "17:P0.3,P3"};
    const Told told = audit(all_programmed(40), {held}, option);
    EXPECT_EQ(told.count("same"), 39);
    EXPECT_EQ(told.count("same_but_for_ignored"), 10);
    EXPECT_EQ(told.count("different"), 1);
    EXPECT_EQ(told.first_pattern().find("P0.3"), std::string::npos);
    const File file{"# what ages\n17:P0.3   # here\n\n 17:P3\n"};
    EXPECT_EQ(audit(all_programmed(40), {held}, {"--ignore-file", file.path()}).count("same"), 39);
    EXPECT_EQ(audit(all_programmed(40), {held}, {"--ignore", "18:P0", "--ignore", "17:P3.7-0"}).count("same"), 29);
}

TEST(Audit, TakesTheTablesThatWereAskedFor) {
    Lines programmed = all_programmed(30);
    Lines held = all_held(29);
    programmed.push_back(R"({"table":121,"key":"000200c0","result":"200100"})");
    held.push_back(R"({"table":121,"physical_key":"c0000200","physical_result":"11200101"})");
    EXPECT_EQ(audit(programmed, {held}).findings.size(), 2);
    Told told = audit(programmed, {held}, {"--table", "121"});
    EXPECT_EQ(told.findings.size(), 1);
    EXPECT_EQ(told.count("programmed"), 1);
    EXPECT_NE(std::string(told.summary["sums"][0]).find("30 of other tables"), std::string::npos);
    told = audit(programmed, {held}, {"--table", "17", "--table", "0x79"});
    EXPECT_EQ(told.findings.size(), 2);
}

TEST(Audit, ReadsRawDumpsByNumber) {
    // Table 121 keys the records of a raw dump by their number, which is an address of four bytes.
    Lines programmed;
    std::string raw;
    for (std::uint64_t i = 0; i < 1000; ++i) {
        if (i % 10 == 9) {
            raw += std::string(4, '\0');
            continue;
        }
        programmed.push_back(R"({"table":121,"key":")" + hex(i & 0xff, 2) + hex(i >> 8, 2) + R"(0000","result":")" +
                             hex(i % 200, 2) + "0100\"}");
        raw += {'\x11', static_cast<char>(i % 200), '\x01', static_cast<char>(i == 500)};
    }
    const File programmed_file{joined(programmed)};
    const File dump{raw};
    Told told = audit_files({programmed_file.path(), "--raw", "121:4,4=" + dump.path()});
    EXPECT_EQ(told.count("same"), 899);
    EXPECT_EQ(told.count("different"), 1);
    EXPECT_EQ(told.findings.front()["held_record"], 500);
    EXPECT_EQ(told.findings.front()["held"], "11640101");
    EXPECT_NE(
        std::string(told.summary["sums"][1]).find(": 1,000 entries = 899 same + 1 different + 100 in empty slots"),
        std::string::npos)
        << told.summary["sums"];

    const File cut{raw.substr(0, raw.size() - 5)};
    told = audit_files({programmed_file.path(), "--raw", "121:4,4=" + cut.path()});
    EXPECT_EQ(told.of_kind("unreadable").size(), 1);
    EXPECT_EQ(told.of_kind("unreadable").front()["reason"], "the file ends within a record: expected 4 bytes, found 3");

    // A key of one byte has no number above 255.
    const File long_dump{raw};
    told = audit_files({programmed_file.path(), "--raw", "119:1,4=" + long_dump.path()});
    EXPECT_NE(std::string(told.summary["sums"][1]).find("in slots whose key the table does not take"),
              std::string::npos);

    // Beside lines, and several.
    const File lines{joined(all_held(5))};
    const File more{joined(all_programmed(5)) + joined(programmed)};
    told = audit_files({more.path(), lines.path(), lines.path(), "--raw", "121:4,4=" + dump.path(), "--raw",
                        "121:4,4=" + dump.path()});
    EXPECT_EQ(told.count("same"), 904);
    EXPECT_EQ(told.count("different"), 1);
}

TEST(Audit, ListsNoMoreThanTheLimit) {
    const Lines held = {held_entry(1, value_of(1) ^ 1), held_entry(2, value_of(2) ^ 1), held_entry(1000, 1)};
    const Lines programmed = all_programmed(50);
    EXPECT_EQ(audit(programmed, {held}).findings.size(), 51);
    const Told told = audit(programmed, {held}, {"--limit", "3"});
    EXPECT_EQ(told.findings.size(), 3);
    EXPECT_EQ(told.of_kind("different").size(), 1);
    EXPECT_EQ(told.of_kind("missing").size(), 1);
    EXPECT_EQ(told.of_kind("unexpected").size(), 1);
    EXPECT_EQ(told.count("missing"), 48);
    EXPECT_TRUE(audit(programmed, {held}, {"--limit", "0"}).findings.empty());
}

TEST(Audit, SaysTheSameWithAnyNumberOfThreadsAndInAnyOrder) {
    constexpr std::uint64_t count = 30000;  // several blocks
    Lines programmed = all_programmed(count);
    Lines held = all_held(count);
    for (std::uint64_t i = 0; i < count; i += 17) {
        held[i] = i % 2 == 0 ? held_entry(count - 1 - i, i) : held[i].substr(0, 60);
        programmed[i] = i % 3 == 0 ? programmed[i].substr(1) : programmed[i];
        held.push_back(held[i + 1]);
        programmed.push_back(programmed[i + 3]);
    }
    const File programmed_file{joined(programmed)};
    const File held_file{joined(held)};
    const std::vector<std::string> files{"audit", programmed_file.path(), held_file.path(), "--json", "--threads"};
    std::vector<std::string> arguments = files;
    arguments.emplace_back("1");
    const Outcome one = run(arguments);
    EXPECT_EQ(one.status, 1);
    for (const char* threads : {"2", "3", "8"}) {
        arguments.back() = threads;
        EXPECT_EQ(run(arguments).out, one.out) << threads;
    }

    std::mt19937 random{1};
    const Told told = audit(programmed, {held});
    std::ranges::shuffle(programmed, random);
    std::ranges::shuffle(held, random);
    const Told shuffled = audit(programmed, {held});
    EXPECT_EQ(shuffled.summary["all"], told.summary["all"]);
    EXPECT_EQ(shuffled.findings.size(), told.findings.size());
}

TEST(Audit, TakesLinesOfAnyKind) {
    std::string held = "\xef\xbb\xbf" + held_entry(0, value_of(0)) + "\r\n\n  \n";
    held += R"({"note": {"table": 3}, "physical_result" : "0x11 00 01 00:)" + hex(value_of(1), 8) +
            R"(", "x":1e400, )" + R"("physical_\u006bey": ")" + held_key(1) +
            R"(", "table" : "vrrp_logical_xlate_result", "key": 5})";
    held += "\n" + std::string(1100000, ' ') + held_entry(2, value_of(2)) + "\n" + held_entry(2, value_of(2));
    const File programmed{joined(all_programmed(3))};
    const File card{held};
    const Told told = audit_files({programmed.path(), card.path()});
    EXPECT_EQ(told.count("same"), 3);
    ASSERT_EQ(told.findings.size(), 1);
    EXPECT_EQ(told.findings.front()["finding"], "unreadable");
    EXPECT_EQ(told.findings.front()["line"], 5);
    EXPECT_EQ(told.findings.front()["reason"], "expected a line of less than 1048576 bytes");
}

TEST(Audit, ReadsEitherSideFromStandardInput) {
    const File programmed{joined(all_programmed(10))};
    const File held{joined(all_held(10))};
    EXPECT_EQ(run({"audit", "-", held.path()}, {.input = joined(all_programmed(10))}).status, 0);
    EXPECT_EQ(run({"audit", programmed.path(), "-"}, {.input = joined(all_held(10))}).status, 0);
    EXPECT_EQ(run({"audit", programmed.path(), "-"}, {.input = joined(all_held(9))}).status, 1);
}

TEST(Audit, WritesAPage) {
    Lines held = all_held(10);
    replace(held, held_entry(3, value_of(3)), held_entry(3, 3));
    held.emplace_back("</script><b>");
    const File programmed{joined(all_programmed(10))};
    const File card{joined(held)};
    const File page;
    EXPECT_EQ(run({"audit", programmed.path(), card.path(), "--html", page.path()}).status, 1);
    const std::string text = page.content();
    EXPECT_TRUE(text.starts_with("<!doctype html>"));
    EXPECT_EQ(text.find("://"), std::string::npos);
    const std::string begin = R"(<script type="application/json" id="data">)";
    const std::size_t at = text.find(begin) + begin.size();
    const json data = json::parse(text.substr(at, text.find("</script>", at) - at));
    EXPECT_EQ(data["all"]["different"], 1);
    EXPECT_EQ(data["patterns"][0]["findings"].size(), 1);
}

TEST(Audit, SaysWhatIsWrongWithStatus2) {
    const File programmed{joined(all_programmed(10))};
    const File held{joined(all_held(10))};
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong{
        {{"/nowhere", held.path()}, "cannot read /nowhere: No such file or directory"},
        {{programmed.path(), "/"}, "cannot read /: Is a directory"},
        {{programmed.path()}, "expected HELD, the card's entries, or --raw TABLE=FILE"},
        {{"-", "-"}, "expected - for one of the inputs only: standard input can be read once"},
        {{programmed.path(), held.path(), "--table", "128"}, "bad --table 128: expected a table id from 0 to 127"},
        {{programmed.path(), held.path(), "--limit", "many"}, "bad --limit many: expected a number from 0"},
        {{programmed.path(), held.path(), "--threads", "0"}, "bad --threads 0: expected a number from 1 to 1024"},
        {{programmed.path(), held.path(), "--ignore", "P0.3"},
         "bad --ignore P0.3: there is no table id with a colon behind it: expected a table id, a colon and positions, "
         "such as "
         "13:P0.3,P12-15"},
        {{programmed.path(), held.path(), "--ignore", "17:P8"},
         "bad --ignore 17:P8: P8 lies outside the records of table 17, which have 8 bytes"},
        {{programmed.path(), held.path(), "--ignore", "17:P0,P0.3-4"},
         "bad --ignore 17:P0,P0.3-4: \"P0.3-4\" is no position: expected P0.4-3, the highest bit first"},
        {{programmed.path(), "--raw", "17"}, "bad --raw 17: expected a table id, = and a file, such as 13=table13.bin"},
        {{programmed.path(), "--raw", "1=x"},
         "bad --raw 1=x: expected 1:KEY_BYTES,RECORD_BYTES=FILE, since table 1 takes several lengths"},
        {{programmed.path(), held.path(), held.path(), "--raw", "17=" + held.path()},
         "--raw names 1 file of table 17, but there are 2 dumps: expected one for each dump"},
        {{programmed.path(), held.path(), "--html", "/nowhere/page.html"}, ""},
    };
    for (const auto& [arguments, message] : wrong) {
        std::vector<std::string> words{"audit"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, 2) << message;
        EXPECT_EQ(outcome.out, "");
        if (!message.empty()) {
            EXPECT_EQ(outcome.err, "npxlate: error: " + message + "\n");
        }
    }
    EXPECT_EQ(run({"audit", programmed.path(), held.path()}, {.out = program::Stream::full}).status, 2);
}

TEST(Audit, StopsBeforeMemoryIsFull) {
    const File programmed{joined(all_programmed(60000))};
    const File held{joined(all_held(60000))};
    const Outcome outcome = run({"audit", programmed.path(), held.path(), "--memory", "1"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(outcome.err.starts_with("npxlate: error: the entries do not fit into memory: more than "))
        << outcome.err;
    EXPECT_NE(outcome.err.find("--table N"), std::string::npos);
    EXPECT_EQ(run({"audit", programmed.path(), held.path(), "--memory", "1", "--table", "4"}).status, 0);
}

// ---- Names

// Of table 17: a value of the record's last four bytes, and half of a key.
constexpr const char* names = R"(
[[record]]
table = 17
fields = [
    { name = "spare", at = "L1" },
    { name = "group.low", at = "L4-5", as = "number" },
    { name = "group.high", at = "L6-7", as = "hex" },
]
[[record]]
table = 17
role = "key"
fields = [{ name = "mac", at = "L0-5", as = "mac" }, { name = "vlan", at = "L6-7", as = "number" }]
)";

TEST(AuditNames, OfEntriesAreTranslated) {
    const File programmed{
        R"({"table":17,"key_fields":{"mac":"0a:0b:0c:0d:0e:0f","vlan":"0x1234"},"fields":{"group.low":513,"L7":4}})"
        "\n"
        R"({"table":17,"key":"0100000000000708","fields":{"group.high":"0x1ffff"}})"
        "\n"
        R"({"table":17,"key":"0100000000000708","fields":{"group":1}})"
        "\n"
        R"({"table":17,"key":"0100000000000708","key_fields":{},"result":""})"
        "\n"};
    const File held{R"({"table":17,"physical_key":"0f0e0d0c0b0a3412","physical_result":"1100010001020004"})"
                    "\n"};
    const File file{names};
    const json summary =
        json::parse(run({"audit", programmed.path(), held.path(), "--names", file.path(), "--json", "--limit", "0"})
                        .out)["summary"];
    EXPECT_EQ(summary["all"]["same"], 1);
    EXPECT_EQ(summary["all"]["programmed"], 1);
    const std::string text = run({"audit", programmed.path(), held.path(), "--names", file.path()}).out;
    for (const char* const expected : {"\"fields\": group.high: 0x1ffff does not fit: it has 16 bits, at most 0xffff",
                                       "\"fields\": there is no name \"group\": expected one of the names file or a "
                                       "position such as L3.4-2; did you "
                                       "mean group.low?",
                                       R"(expected "key" or "key_fields", found both)"}) {
        EXPECT_NE(text.find(expected), std::string::npos) << text;
    }
    // Positions need no names.
    const File by_position{R"({"table":17,"key":"0f0e0d0c0b0a3412","fields":{"L4":1,"L5":2,"L7":4}})"
                           "\n"};
    EXPECT_EQ(run({"audit", by_position.path(), held.path()}).status, 1);
}

TEST(AuditNames, StandBesideThePositions) {
    const File programmed{programmed_entry(1, 0x01020304) + "\n" + programmed_entry(2, 0x01020304) + "\n"};
    const File held{held_entry(1, 0x01030304) + "\n" + held_entry(2, 0x01020305) + "\n"};
    const File file{names};
    const Words arguments{"audit", programmed.path(), held.path()};
    const auto with = [&](Words words) {
        words.insert(words.end(), {"--names", file.path()});
        return run(words).out;
    };
    const std::string text = with(arguments);
    EXPECT_NE(text.find("L4-7 [group.low, group.high]\n"), std::string::npos) << text;
    EXPECT_NE(text.find("        group.low = 513, held 769\n"), std::string::npos) << text;
    EXPECT_NE(text.find("        group.high = 0x403, held 0x503\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("spare"), std::string::npos) << text;
    const json finding = json::parse(
        with({"audit", programmed.path(), held.path(), "--json", "--limit", "1"})
            .substr(0, with({"audit", programmed.path(), held.path(), "--json", "--limit", "1"}).find('\n')));
    EXPECT_EQ(finding["fields"][0]["names"][0], json({{"name", "group.low"}, {"programmed", "513"}, {"held", "769"}}));
    // Without them, nothing is said of names.
    EXPECT_EQ(run(arguments).out.find("group"), std::string::npos);
    EXPECT_EQ(run({"audit", programmed.path(), held.path(), "--json"}).out.find("names"), std::string::npos);
}

}  // namespace
