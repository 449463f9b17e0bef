// The parts of the audit that have no command of their own.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "audit/ignore.h"
#include "audit/patterns.h"
#include "audit/store.h"

namespace {

using audit::Bits;
using audit::Bytes;
using audit::Ignored;
using audit::Store;

TEST(AuditStore, TakesNoKeyForAnotherWhoseHashIsTheSame) {
    Store store;
    constexpr std::uint32_t hash = 42;
    std::vector<Store::Ref> refs;
    for (std::uint8_t i = 0; i < 100; ++i) {
        const Bytes key{1, 2, i};
        EXPECT_EQ(store.find({7, key, hash}), 0);
        refs.push_back(store.insert({7, key, hash}, Bytes{i}));
    }
    for (std::uint8_t i = 0; i < 100; ++i) {
        const Bytes key{1, 2, i};
        EXPECT_EQ(store.find({7, key, hash}), refs[i]);
        EXPECT_EQ(store.result(refs[i]).front(), i);
    }
    EXPECT_EQ(store.find({8, Bytes{1, 2, 3}, hash}), 0);
    EXPECT_EQ(store.find({7, Bytes{1, 2}, hash}), 0);
    EXPECT_EQ(store.find({7, Bytes{1, 2, 3, 0}, hash}), 0);
    EXPECT_EQ(store.size(), 100);
}

TEST(AuditStore, VisitsKeysInTheirOrderAcrossBlocks) {
    Store store;
    constexpr std::uint32_t count = 50000;
    for (std::uint32_t i = 0; i < count; ++i) {
        const Bytes key{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8),
                        static_cast<std::uint8_t>(i >> 16)};
        const Store::Ref ref = store.insert({1, key, audit::hash_of(1, key)}, Bytes(i % 60));
        if (i % 3 == 0) {
            store.add_further(ref, Bytes(5));
        }
    }
    std::uint32_t next = 0;
    store.for_each([&](Store::Ref ref, const Store::Head& head) {
        const audit::ByteSpan key = store.key(ref);
        EXPECT_EQ(key[0] | key[1] << 8 | key[2] << 16, static_cast<int>(next));
        EXPECT_EQ(head.result_size, next % 60);
        ++next;
    });
    EXPECT_EQ(next, count);
}

TEST(AuditIgnored, ReadsPositions) {
    Ignored ignored;
    ignored.add("13:P0.3,P12-13, P1.7-6");
    Bits expected;
    expected.bytes[0] = 8;
    expected.bytes[1] = 0xc0;
    expected.bytes[12] = expected.bytes[13] = 0xff;
    EXPECT_EQ(ignored.of_table(13), expected);
    EXPECT_EQ(ignored.of_table(12), Bits{});
    EXPECT_EQ(audit::position_text(expected), "P0.3, P1.7-6, P12-13");
}

TEST(AuditIgnored, RefusesWhatIsNoPosition) {
    for (const char* wrong : {"", "13", "13:", "13:P", "13:Q0", "13:P0.8", "13:P0.3.2", "13:P3-2", "13:P0,", "13:P0 P1",
                              "13:P96", "128:P0", "-1:P0", "13:P32", "13:P0.3-", "13:P99999999999999999999"}) {
        Ignored ignored;
        EXPECT_THROW(ignored.add(wrong), std::invalid_argument) << wrong;
    }
    Ignored ignored;
    try {
        ignored.add_lines("13:P0\n\n13:X\n");
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_TRUE(
            std::string(error.what()).starts_with("line 3: \"X\" is no position: expected physical bits such as P3.4"))
            << error.what();
    }
}

TEST(AuditNumbers, AreGrouped) {
    EXPECT_EQ(audit::grouped(0), "0");
    EXPECT_EQ(audit::grouped(999), "999");
    EXPECT_EQ(audit::grouped(1000), "1,000");
    EXPECT_EQ(audit::grouped(1234567), "1,234,567");
}

}  // namespace
