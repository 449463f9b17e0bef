// Records as translators put them together: values put by code, and records that start as the caller had them.

#include <gtest/gtest.h>

#include "frame/place.h"
#include "support/record.h"

namespace {

using namespace npxlate;
using support::Bytes;

TEST(Record, PutReplacesItsBitsAndDropsWhatDoesNotFit) {
    PhysicalRecord<12> out;
    put(out, P(9, 6, 4), 0xff, "three bits");
    put(out, P(9, 5), 0, "one of them");
    put(out, P(0), 0x1ff, "a byte");
    put_big<3>(out, P(2), 0xaa112233, "three bytes, the highest first");
    put_little<3>(out, P(6), 0xaa112233, "three bytes, the lowest first");
    Bytes stored(12);
    out.store(stored.data());
    EXPECT_EQ(support::hex(stored), "ff 00 11 22 33 00 33 22 11 50 00 00");
    EXPECT_EQ(out.bits(P(9, 6, 4)), 5U);
    EXPECT_TRUE(out.bit(P(9, 6)));
    EXPECT_FALSE(out.bit(P(9, 5)));
}

TEST(Record, PutReachesFromOneWordIntoTheNext) {
    PhysicalRecord<12> out;
    put_big<4>(out, P(6), 0x11223344, "two bytes in each word");
    Bytes stored(12);
    out.store(stored.data());
    EXPECT_EQ(support::hex(stored), "00 00 00 00 00 00 11 22 33 44 00 00");
}

TEST(Record, ARecordKeepsTheCallersBytesFromTheByteThatItIsTold) {
    Bytes caller = support::counting(20, 0x40);
    const auto kept_from = [&]<unsigned first>() {
        Bytes result(20);
        LogicalRecord<20>::kept_from(L(first), caller.data()).store(result.data());
        return result;
    };
    const auto expected = [&](unsigned first) {
        Bytes result = caller;
        std::fill_n(result.begin(), first, std::uint8_t{0});
        return result;
    };
    EXPECT_EQ(kept_from.operator()<0>(), expected(0));
    EXPECT_EQ(kept_from.operator()<3>(), expected(3));
    EXPECT_EQ(kept_from.operator()<8>(), expected(8));
    EXPECT_EQ(kept_from.operator()<11>(), expected(11));
    EXPECT_EQ(kept_from.operator()<16>(), expected(16));
    EXPECT_EQ(kept_from.operator()<19>(), expected(19));
}

}  // namespace
