// The header of sizes: made of the catalogue and not changed by hand, and right by what the translators do.

#include <gtest/gtest.h>

#include <npxlate/sizes.h>

#include <fstream>
#include <iterator>
#include <string>

#include "catalogue/call.h"
#include "catalogue/catalogue.h"
#include "catalogue/example.h"
#include "catalogue/sizes_header.h"
#include "support/record.h"

namespace {

using catalogue::Role;
using catalogue::Trait;

TEST(Sizes, AreThoseOfTheCatalogue) {
    std::ifstream file{NPXLATE_SIZES_HEADER};
    ASSERT_TRUE(file);
    const std::string text{std::istreambuf_iterator<char>{file}, {}};
    EXPECT_EQ(text, catalogue::sizes_header()) << "run scripts/sizes";
}

TEST(Sizes, KnowsNoTableAboveTheLast) {
    EXPECT_NE(npxlate_sizes_of_table(NPXLATE_TABLE_COUNT - 1), nullptr);
    EXPECT_EQ(npxlate_sizes_of_table(NPXLATE_TABLE_COUNT), nullptr);
    EXPECT_EQ(npxlate_sizes_of_table(static_cast<unsigned>(-1)), nullptr);
}

// A buffer of the greatest logical size makes a record whose reported length lies between the two physical ones.
TEST(Sizes, HoldWhatTheTranslatorsReport) {
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const npxlate_table_sizes& sizes = *npxlate_sizes_of_table(table);
        for (const Role role : {Role::key, Role::result}) {
            const catalogue::Translator& translator = catalogue::of_table(table, role);
            if (translator.has(Trait::keeps_length)) {
                continue;
            }
            const npxlate_record_sizes& of = role == Role::key ? sizes.key : sizes.result;
            for (const catalogue::Sample& sample : translator.samples) {
                support::Bytes logical = catalogue::example(translator, sample, 1);
                EXPECT_GE(logical.size(), of.logical_least) << translator.name;
                EXPECT_LE(logical.size(), of.logical_most) << translator.name;
                support::Bytes physical(NPXLATE_MAX_PHYSICAL_LENGTH);
                std::uint32_t length = 0;
                if (catalogue::call(translator, logical.data(), static_cast<std::int32_t>(logical.size()),
                                    physical.data(), &length, catalogue::Argument{sample.argument}) == NPXLATE_OK &&
                    !translator.has(Trait::hides_failures)) {
                    EXPECT_GE(length, of.physical_least) << translator.name;
                    EXPECT_LE(length, of.physical_most) << translator.name;
                }
            }
        }
    }
}

TEST(Sizes, StatusesHaveWords) {
    EXPECT_STREQ(npxlate_status_text(NPXLATE_OK), "translated");
    EXPECT_STREQ(npxlate_status_text(34), "more than 4 segment identifiers");
    EXPECT_STREQ(npxlate_status_text(1), npxlate_status_text(-1));
    EXPECT_STRNE(npxlate_status_text(1), npxlate_status_text(NPXLATE_INVALID));
}

}  // namespace
