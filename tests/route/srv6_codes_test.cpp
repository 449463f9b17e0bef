#include <cstdint>
#include <map>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

namespace {

using Codes = std::map<std::uint32_t, int>;

// Every code up to well past the last known one, and codes whose low byte or low half is a known one.
template <typename Mapper>
void expect_codes(Mapper* mapper, const Codes& known) {
    const auto expected = [&known](std::uint32_t code) {
        const auto found = known.find(code);
        return found == known.end() ? 0 : found->second;
    };
    for (std::uint32_t code = 0; code < 0x400; ++code) {
        EXPECT_EQ(mapper(code), expected(code)) << "code " << code;
    }
    for (std::uint32_t low = 0; low < 64; ++low) {
        for (const std::uint32_t high : {0x00010000U, 0x01000000U, 0x7fff0000U, 0x80000000U, 0xffff0000U}) {
            EXPECT_EQ(mapper(high + low), 0) << "code " << high + low;
        }
    }
    EXPECT_EQ(mapper(0xffffffffU), 0);
}

TEST(Srv6Codes, SidFunctionsMapToEngineBehaviours) {
    expect_codes(srv6_sid_func_gdp_xlate, {{1, 2},
                                           {2, 2},
                                           {3, 2},
                                           {4, 2},
                                           {5, 4},
                                           {6, 4},
                                           {7, 4},
                                           {8, 4},
                                           {9, 8},
                                           {10, 8},
                                           {11, 8},
                                           {12, 8},
                                           {16, 16},
                                           {17, 64},
                                           {18, 32},
                                           {36, 32},
                                           {19, 0x80},
                                           {37, 0x80}});
}

TEST(Srv6Codes, SidFunctionsMapToActions) {
    expect_codes(srv6_sid_action_from_func_type_gdp_xlate,
                 {{4, 3}, {8, 3}, {12, 3}, {3, 2}, {7, 2}, {11, 2}, {2, 1}, {6, 1}, {10, 1}});
}

TEST(Srv6Codes, InformationFunctionsMapToFourCodes) {
    expect_codes(srv6i_func_gdp_xlate, {{30, 4}, {31, 3}, {32, 2}, {33, 1}});
}

TEST(Srv6Codes, UnknownNeighboursOfKnownCodesGiveZero) {
    EXPECT_EQ(srv6_sid_func_gdp_xlate(13), 0);
    EXPECT_EQ(srv6_sid_func_gdp_xlate(36), 32);
    EXPECT_EQ(srv6_sid_func_gdp_xlate(37), 0x80);
    EXPECT_EQ(srv6_sid_action_from_func_type_gdp_xlate(13), 0);
}

}  // namespace
