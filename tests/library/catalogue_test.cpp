// The catalogue tells the truth: it names every translator that is exported, its sizes are the records' own, and what
// it says to be special about a translator is so.

#include "catalogue/catalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <ostream>
#include <regex>
#include <set>
#include <string>

#include "catalogue/example.h"
#include "support/harness.h"

namespace catalogue {

// How GoogleTest names a translator.
static void PrintTo(const Translator& translator, std::ostream* out) { *out << translator.name; }

}  // namespace catalogue

namespace {

using catalogue::Role;
using catalogue::Trait;
using support::Bytes;

// Exported, but no translators.
const std::set<std::string> other_exports{
    "TX_ADJ_KEY_MAX",          "l2p_ucode_func_table",      "new_vqi_based_on_vqi_range",
    "p2l_ucode_func_table",    "quill_to_get_mreg_init",    "quill_to_toplearn_mregs",
    "quill_to_topparse_mregs", "quill_to_topresolve_mregs", "srv6_sid_action_from_func_type_gdp_xlate",
    "srv6_sid_func_gdp_xlate", "srv6i_func_gdp_xlate",
};

support::Translator to_test(const catalogue::Translator& translator, std::uint32_t argument, std::size_t in_size,
                            std::size_t out_size) {
    const std::string name{translator.name};
    if (translator.forward != nullptr) {
        return support::forward(name, translator.forward, in_size, out_size);
    }
    if (translator.reverse_by_type != nullptr) {
        return support::reverse_by_type(name, translator.reverse_by_type, in_size, out_size, argument);
    }
    if (translator.reverse_by_key != nullptr) {
        return support::reverse_by_key(name, translator.reverse_by_key, in_size, out_size,
                                       Bytes(8, static_cast<std::uint8_t>(argument)));
    }
    return support::reverse(name, translator.reverse, in_size, out_size);
}

TEST(Catalogue, NamesEveryTranslatorThatIsExported) {
    std::set<std::string> expected;
    std::ifstream list{NPXLATE_EXPORTS};
    const std::regex exported{"    ([A-Za-z0-9_]+);"};
    std::smatch match;
    for (std::string line; std::getline(list, line);) {
        if (std::regex_match(line, match, exported) && !other_exports.contains(match[1])) {
            expected.insert(match[1]);
        }
    }
    std::set<std::string> named;
    for (const catalogue::Translator& translator : catalogue::translators()) {
        EXPECT_TRUE(named.emplace(translator.name).second) << translator.name << " stands in the catalogue twice";
    }
    EXPECT_EQ(named, expected);
}

TEST(Catalogue, KnowsTheTranslatorsOfEveryTable) {
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        for (const Role role : {Role::key, Role::result, Role::reverse}) {
            const catalogue::Translator& translator = catalogue::of_table(table, role);
            const auto tables = catalogue::tables_of(translator);
            EXPECT_TRUE(std::ranges::count(tables, table) == 1) << translator.name;
        }
    }
}

TEST(Catalogue, FindsByExactName) {
    ASSERT_NE(catalogue::find("generic_xlate_key"), nullptr);
    EXPECT_EQ(catalogue::find("generic_xlate_key")->name, "generic_xlate_key");
    EXPECT_EQ(catalogue::find("generic_xlate"), nullptr);
}

// Every sample of every translator, over two outputs of opposite bits, in records of exactly the stated sizes.
class EverySample : public testing::TestWithParam<catalogue::Translator> {};

TEST_P(EverySample, KeepsToItsSizesAndTraits) {
    const catalogue::Translator& translator = GetParam();
    const std::size_t out_size = std::max<std::size_t>(translator.out().most, 1);
    bool changed_input = false;
    bool kept_buffer = false;
    bool rejected = false;
    bool hid_failure = false;
    for (const catalogue::Sample& sample : translator.samples) {
        SCOPED_TRACE(sample.name);
        for (std::uint64_t seed = 1; seed <= 20; ++seed) {
            const Bytes in = catalogue::example(translator, sample, seed);
            ASSERT_EQ(in.size(), translator.in().most);
            const support::Translator under_test = to_test(translator, sample.argument, in.size(), out_size);
            const support::Outcome zeros = support::translate(under_test, in, Bytes(out_size, 0x00));
            const support::Outcome ones = support::translate(under_test, in, Bytes(out_size, 0xff));
            changed_input = changed_input || zeros.in != in;
            EXPECT_EQ(zeros.status, ones.status);
            if (zeros.status != NPXLATE_OK) {
                rejected = true;
                continue;
            }
            kept_buffer = kept_buffer || zeros.out != ones.out;
            EXPECT_EQ(zeros.length, ones.length);
            if (translator.role == Role::reverse || translator.has(Trait::keeps_length)) {
                EXPECT_EQ(zeros.length, std::nullopt);
            } else if (!zeros.length) {
                hid_failure = true;
            } else if (translator.physical.fixed() && translator.logical.fixed()) {
                EXPECT_EQ(*zeros.length, translator.physical.most);
            }
        }
    }
    EXPECT_EQ(changed_input, translator.has(Trait::changes_input));
    EXPECT_EQ(kept_buffer, translator.has(Trait::keeps_buffer));
    EXPECT_EQ(rejected, translator.has(Trait::rejects_records));
    EXPECT_EQ(hid_failure, translator.has(Trait::hides_failures));
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EverySample,
                         testing::ValuesIn(catalogue::translators().begin(), catalogue::translators().end()),
                         [](const auto& parameter) { return std::string{parameter.param.name}; });

}  // namespace
