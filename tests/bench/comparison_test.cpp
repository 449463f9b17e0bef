// What the library is compared with does the same work: every way gives the library's bytes, in every sample compared.

#include "comparison/comparison.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/example.h"

namespace {

struct Outcome {
    std::vector<std::uint8_t> bytes;
    std::int32_t status;
    std::uint32_t length;

    bool operator==(const Outcome&) const = default;
};

// Over bytes that are not clear at first: to clear them is part of the work.
Outcome translate(npxlate_result_fn* function, const std::vector<std::uint8_t>& in, std::size_t out_size) {
    Outcome outcome{std::vector<std::uint8_t>(out_size, 0xa5), -1, 0};
    outcome.status = function(in.data(), static_cast<std::int32_t>(in.size()), outcome.bytes.data(), &outcome.length);
    return outcome;
}

TEST(Comparison, EveryWayGivesTheLibrarysBytes) {
    for (const comparison::Record& record : comparison::records) {
        const catalogue::Translator* library = catalogue::find(record.translator);
        ASSERT_NE(library, nullptr) << record.translator;
        unsigned compared = 0;
        for (const catalogue::Sample& sample : library->samples) {
            if (!std::string_view{sample.name}.starts_with(record.samples)) {
                continue;
            }
            ++compared;
            SCOPED_TRACE(std::string{record.translator} + ", " + sample.name);
            for (std::uint64_t seed = 0; seed < 2000; ++seed) {
                const auto in = catalogue::example(*library, sample, seed);
                const Outcome expected = translate(library->forward, in, library->physical.most);
                ASSERT_EQ(translate(record.by_words, in, library->physical.most), expected) << "words, " << seed;
                ASSERT_EQ(translate(record.by_structures, in, library->physical.most), expected)
                    << "structures, " << seed;
                ASSERT_EQ(translate(record.by_table, in, library->physical.most), expected) << "table, " << seed;
            }
        }
        EXPECT_GE(compared, 4U) << record.translator;
    }
}

}  // namespace
