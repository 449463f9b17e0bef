#include <cstdint>
#include <ios>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

namespace {

TEST(VirtualQueueIndex, IsAdjustedByItsRange) {
    struct Row {
        std::uint32_t index;
        std::uint32_t range;
        std::uint32_t adjusted;
    };
    constexpr Row rows[] = {
        {0x1234, 4, 0x1a34},         {0x1234, 8, 0x1e34},         {0x1234, 2, 0x1234},
        {0x0000, 4, 0x0800},         {0x0000, 8, 0x0c00},         {0x0800, 4, 0x0800},  // set, not toggled or added
        {0x0c00, 8, 0x0c00},         {0xffffffff, 8, 0xffffffff}, {0xffff0000, 4, 0xffff0800},  // 32 bits go through
        {0x80010000, 8, 0x80010c00}, {0xabcdef01, 0, 0xabcdef01},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(new_vqi_based_on_vqi_range(row.index, row.range), row.adjusted)
            << std::hex << row.index << " by range " << row.range;
    }
}

TEST(VirtualQueueIndex, IsUnchangedForAnyOtherRange) {
    for (std::uint32_t range = 0; range < 0x100; ++range) {
        const std::uint32_t adjusted = range == 4 ? 0x800U : range == 8 ? 0xc00U : 0U;
        EXPECT_EQ(new_vqi_based_on_vqi_range(0, range), adjusted) << range;
        EXPECT_EQ(new_vqi_based_on_vqi_range(0x51234, range), 0x51234U | adjusted) << range;
    }
}

TEST(VirtualQueueIndex, LooksAtTheLowByteOfTheRangeOnly) {
    for (const std::uint32_t above : {0x100U, 0x8000U, 0x10000U, 0xffffff00U}) {
        EXPECT_EQ(new_vqi_based_on_vqi_range(0x1234, above | 4), 0x1a34U) << above;
        EXPECT_EQ(new_vqi_based_on_vqi_range(0x1234, above | 8), 0x1e34U) << above;
        EXPECT_EQ(new_vqi_based_on_vqi_range(0x1234, above | 2), 0x1234U) << above;
        EXPECT_EQ(new_vqi_based_on_vqi_range(0x1234, above), 0x1234U) << above;
    }
}

}  // namespace
