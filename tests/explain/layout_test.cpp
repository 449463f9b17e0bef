// The layouts of a translator: all of them are found, and what the fields say is what the record documentation says.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "explain/explain.h"

namespace {

using explain::LayoutTable;

// The titles of layouts in the tables' sources: the first string after the name of a layout or of a mirrored one.
std::set<std::string> titles_in_sources() {
    const std::regex layout{R"re((?:constexpr Layout \w+\s*\{|mirrored\()\s*"([^"]*)")re"};
    std::set<std::string> titles;
    for (const char* const folder : {NPXLATE_SOURCES "/tables", NPXLATE_SOURCES "/frame"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator{folder}) {
            if (!entry.is_regular_file() || entry.path().filename() == "layout.h" ||
                entry.path().filename() == "row.h") {
                continue;
            }
            std::ostringstream text;
            text << std::ifstream{entry.path()}.rdbuf();
            const std::string source = text.str();
            for (std::sregex_iterator match{source.begin(), source.end(), layout}, end; match != end; ++match) {
                titles.insert((*match)[1]);
            }
        }
    }
    return titles;
}

TEST(LayoutOf, FindsEveryLayoutOfTheTables) {
    std::set<std::string> titles;
    for (const catalogue::Translator& translator : catalogue::translators()) {
        const LayoutTable table = explain::layout_of(translator);
        for (const explain::Section& section : table.sections) {
            titles.insert(section.title);
        }
    }
    const std::set<std::string> in_sources = titles_in_sources();
    EXPECT_GT(in_sources.size(), 140U);
    std::vector<std::string> missing;
    std::ranges::set_difference(in_sources, titles, std::back_inserter(missing));
    EXPECT_EQ(missing, std::vector<std::string>{});
}

}  // namespace
