// The parts of the tool that are easier to test without running it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "io/chunks.h"
#include "io/input.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/output.h"
#include "npxlate/taken.h"
#include "npxlate/translation.h"
#include "tool/program.h"

namespace {

using io::ChunkReader;

TEST(ParseNumber, TakesDecimalAndHexadecimalUpToTheMost) {
    EXPECT_EQ(tool::parse_number("0", 127), 0U);
    EXPECT_EQ(tool::parse_number("127", 127), 127U);
    EXPECT_EQ(tool::parse_number("0x7F", 127), 127U);
    for (const char* text : {"", "128", "0x80", "0x", "-1", "+1", "1 ", " 1", "1.0", "7f", "99999999999999999999999"}) {
        EXPECT_EQ(tool::parse_number(text, 127), std::nullopt) << text;
    }
}

TEST(Printable, KeepsMessagesToOneShortLine) {
    EXPECT_EQ(tool::printable("a\nb\x1b[31m"), "a\\x0ab\\x1b[31m");
    EXPECT_EQ(tool::printable(std::string(61, 'x')), std::string(60, 'x') + "...");
}

TEST(Records, FitTheBuffers) {
    for (const catalogue::Translator& translator : catalogue::translators()) {
        EXPECT_LE(translator.in().most, tool::most_record_bytes) << translator.name;
        EXPECT_LE(translator.out().most, tool::most_record_bytes) << translator.name;
    }
}

// The records that come back longer than they went in, by their documented sizes.
TEST(AcceptedLengths, IncludeTheRecordThatWasReadBack) {
    const auto longest = [](std::string_view name) {
        return tool::accepted_lengths(tool::find_translator(name)).back().most;
    };
    EXPECT_EQ(longest("ipmc_mofrr_mvpn_res_xlate"), 48U);
    EXPECT_EQ(longest("bridge_domain_type_xlate_result"), 120U);
    EXPECT_EQ(longest("velox_msti_info_type_xlate_result"), 12U);  // by name only
    EXPECT_EQ(longest("pppoe_sid_leaf_st_xlate_result"), 18U);     // comes back shorter
    EXPECT_EQ(longest("mpls_leaf_st_result"), 90U);                // read back by the generic reverse
    EXPECT_EQ(longest("mpls_leaf_st_xlate_key"), 5U);
}

std::vector<std::string> lines_of(const std::string& text) {
    const program::File file{text};
    io::InputStream input{file.path()};
    ChunkReader reader{[&input](char* to, std::size_t room) { return input.read(to, room); }};
    std::vector<std::string> lines;
    while (const auto chunk = reader.next()) {
        if (chunk->too_long) {
            EXPECT_EQ(chunk->first, lines.size() + 1);
            lines.emplace_back("too long");
        }
        io::for_each_line(*chunk, [&lines](std::uint64_t number, std::string_view line) {
            lines.emplace_back(line);
            EXPECT_EQ(number, lines.size());
        });
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ChunkReader, ReadsLines) {
    EXPECT_EQ(lines_of(""), Lines{});
    EXPECT_EQ(lines_of("a"), Lines{"a"});
    EXPECT_EQ(lines_of("a\n\nb\r\nc"), (Lines{"a", "", "b\r", "c"}));
    EXPECT_EQ(lines_of("\xef\xbb\xbf"
                       "a\n\xef\xbb\xbf"),
              (Lines{"a", "\xef\xbb\xbf"}));
}

TEST(ChunkReader, ReadsLinesAcrossItsBuffer) {
    std::string text;
    Lines expected;
    for (std::size_t i = 0; i < 3000; ++i) {
        expected.emplace_back(i, static_cast<char>('a' + i % 26));
        text += expected.back() + "\n";
    }
    ASSERT_GT(text.size(), 2 * ChunkReader::longest_line);
    EXPECT_EQ(lines_of(text), expected);
}

TEST(ChunkReader, PassesOverLinesThatAreTooLong) {
    const std::string longest(ChunkReader::longest_line - 1, 'x');
    EXPECT_EQ(lines_of(longest + "\nb"), (Lines{longest, "b"}));
    EXPECT_EQ(lines_of("a\n" + longest + "xx\nb"), (Lines{"a", "too long", "b"}));
    EXPECT_EQ(lines_of(longest + longest + longest), Lines{"too long"});
}

TEST(ChunkReader, KeepsRecordsWhole) {
    std::string text;
    while (text.size() < 3 * ChunkReader::longest_line) {
        text += "abcdefg";
    }
    text += "ab";
    std::size_t at = 0;
    // However little a read gives.
    ChunkReader reader{[&](char* to, std::size_t room) {
                           const auto count = std::min<std::size_t>({room, 1000, text.size() - at});
                           text.copy(to, count, at);
                           at += count;
                           return count;
                       },
                       7};
    std::string all;
    while (const auto chunk = reader.next()) {
        EXPECT_EQ(chunk->first, all.size() / 7);
        EXPECT_EQ(chunk->read, chunk->bytes.size());
        EXPECT_TRUE(chunk->bytes.size() % 7 == 0 || at == text.size());
        all += chunk->text();
    }
    EXPECT_EQ(all, text);
}

}  // namespace
