// The language of claims can say no.
#include "docs/claims.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(Claims, AreRefutedWhereTheyAreWrong) {
    const docs::Subject table_4 = docs::subject_of_table(4);
    EXPECT_EQ(docs::refuted(table_4, "\"variant D\": P0.5=1"), "");
    EXPECT_NE(docs::refuted(table_4, "\"variant D\": P0.5=0"), "");
    EXPECT_NE(docs::refuted(table_4, "\"variant E\": P0.5=1"), "");
    EXPECT_EQ(docs::refuted(table_4, ": B24-27=rev(L24-27)"), "");
    EXPECT_NE(docs::refuted(table_4, ": B24-27=L24-27"), "");
    EXPECT_EQ(docs::refuted(table_4, ": dropped L3, carried L24"), "");
    EXPECT_NE(docs::refuted(table_4, ": dropped L24"), "");
    EXPECT_NE(docs::refuted(table_4, ": carried L3"), "");
    EXPECT_NE(docs::refuted(table_4, ": same L3"), "");
    EXPECT_NE(docs::refuted(table_4, ": gone L1.3"), "") << "it decides";
    EXPECT_EQ(docs::refuted(table_4, ": can L1.3=1 B1.3=0"), "");
    EXPECT_EQ(docs::refuted(table_4, "L1.0=1: gone L1.7"), "");
    EXPECT_NE(docs::refuted(table_4, ": gone L24"), "");
    EXPECT_NE(docs::refuted(table_4, ": can B1.3=1"), "");
    EXPECT_NE(docs::refuted(table_4, ": kept B24"), "");
    EXPECT_NE(docs::refuted(table_4, ": reads L0-3"), "");
    EXPECT_NE(docs::refuted(table_4, ": status=22"), "");
    EXPECT_NE(docs::refuted(table_4, ": length=none"), "");
    EXPECT_NE(docs::refuted(table_4, "L0.5=1 L0.5=0: status=0"), "") << "a condition that no record fulfils";
    EXPECT_THROW(docs::refuted(table_4, ": L99=0"), std::runtime_error);
    EXPECT_THROW(docs::refuted(table_4, "\"variant F\": status=0"), std::runtime_error);
    EXPECT_THROW(docs::refuted(table_4, "P0=0"), std::runtime_error);
    EXPECT_THROW(docs::refuted(table_4, ": P0"), std::runtime_error);
}

}  // namespace
