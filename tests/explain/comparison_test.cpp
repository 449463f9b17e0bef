// What comes back of records, and what two records differ in, against what the records' documentation says.

#include "explain/comparison.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "explain/positions.h"

namespace {

using catalogue::Role;
using explain::Bytes;
using explain::Comparison;
using explain::Difference;
using explain::Returned;
using explain::RoundTrip;

std::vector<std::string> there_and_back(unsigned table, const Bytes& record) {
    const RoundTrip trip = explain::round_trip(catalogue::of_table(table, Role::result),
                                               catalogue::of_table(table, Role::reverse), record);
    std::vector<std::string> lines;
    for (const Returned& returned : trip.returned) {
        if (returned.kind == Returned::zero) {
            continue;
        }
        const std::string from = explain::position_list('L', returned.from);
        lines.push_back(explain::position_list('L', returned.at) + " " + std::string{to_string(returned.kind)} +
                        (from.empty() || returned.kind == Returned::byte_reversed ? "" : " " + from) +
                        (returned.reversed ? " reversed" : ""));
    }
    return lines;
}

TEST(RoundTrip, OfAReceiveAdjacencySwapsNothingBack) {
    Bytes record(30);
    record[0] = 0x20;   // variant A
    record[1] = 0x08;   // L1.3 goes to P1.5 and does not come back
    record[2] = 0x01;   // 24 bits
    record[15] = 0xaa;  // is not carried
    EXPECT_EQ(there_and_back(4, record),
              (std::vector<std::string>{"L0.5-0 restored", "L1.2-0 restored", "L1.3 lost", "L1.4 restored",
                                        "L1.6 restored", "L2.0 restored", "L12-14 byte-reversed", "L15 lost",
                                        "L16-17 byte-reversed", "L21-22 restored", "L24-27 byte-reversed"}));
}

TEST(RoundTrip, ThroughTheGenericReverseGivesThePhysicalBytes) {
    // Table 121: the header, then L0-2.
    EXPECT_EQ(there_and_back(121, {0, 2, 3}),
              (std::vector<std::string>{"L0.0 invented", "L0.4 invented", "L1-3 moved L0-2"}));
    // A bit that the header sets anyway stands as it was.
    EXPECT_EQ(there_and_back(121, {0x01, 0, 0}),
              (std::vector<std::string>{"L0.0 constant", "L0.4 invented", "L1-3 moved L0-2"}));
}

TEST(RoundTrip, OfARejectedRecordEndsThere) {
    Bytes record(36);
    record[0] = 0x01;
    record[1] = 0x10;  // L1.4 and L0.0: not supported
    const RoundTrip trip =
        explain::round_trip(catalogue::of_table(12, Role::result), catalogue::of_table(12, Role::reverse), record);
    EXPECT_EQ(trip.forward.status, NPXLATE_NOT_SUPPORTED);
    EXPECT_FALSE(trip.reverse.has_value());
    EXPECT_TRUE(trip.returned.empty());
}

TEST(RoundTrip, IsTakenByEveryTable) {
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const catalogue::Translator& result = catalogue::of_table(table, Role::result);
        const catalogue::Translator& reverse = catalogue::of_table(table, Role::reverse);
        SCOPED_TRACE(result.name);
        const RoundTrip trip = explain::round_trip(result, reverse, Bytes(result.in().most, 0x5a), 2);
        if (!trip.reverse || trip.reverse->status != NPXLATE_OK) {
            continue;
        }
        // Every bit of either record is told of, and those that are no longer what they were by what became of them.
        std::set<std::uint16_t> told;
        std::set<std::uint16_t> moved;
        for (const Returned& returned : trip.returned) {
            const std::set<std::uint16_t> at = explain::bits_of(returned.at);
            told.insert(at.begin(), at.end());
            if (returned.kind == Returned::moved || returned.kind == Returned::inverted) {
                moved.merge(explain::bits_of(returned.from));
            }
            for (const std::uint16_t bit : at) {
                const bool was = bit < 8 * trip.forward.in.size() && explain::bit_of(trip.forward.in, bit);
                const bool is = bit < 8 * trip.reverse->out.size() && explain::bit_of(trip.reverse->out, bit);
                switch (returned.kind) {
                    case Returned::restored:
                        ASSERT_EQ(was, is) << "bit " << bit;
                        break;
                    case Returned::zero:
                        ASSERT_FALSE(was || is) << "bit " << bit;
                        break;
                    case Returned::invented:
                        ASSERT_TRUE(!was && is) << "bit " << bit;
                        break;
                    case Returned::constant:
                        ASSERT_TRUE(was && is) << "bit " << bit;
                        break;
                    default:
                        break;
                }
            }
        }
        for (std::size_t bit = 0; bit < 8 * std::max(trip.forward.in.size(), trip.reverse->out.size()); ++bit) {
            const auto number = static_cast<std::uint16_t>(bit);
            ASSERT_TRUE(told.contains(number) || moved.contains(number)) << "bit " << bit;
        }
    }
}

std::vector<std::string> lines(const std::vector<Difference>& differences, char at, char other_side) {
    std::vector<std::string> result;
    result.reserve(differences.size());
    for (const Difference& one : differences) {
        result.push_back(explain::position_list(at, one.at) + " / " +
                         explain::position_list(other_side, one.other_side) + (one.decides ? " decides" : ""));
    }
    return result;
}

TEST(Compare, NamesValuesOnBothSides) {
    Bytes first(30);
    first[0] = 0x20;  // variant A
    Bytes second = first;
    second[24] = 0x01;  // to P11
    second[5] = 0x01;   // not carried
    const Comparison comparison = explain::compare(catalogue::of_table(4, Role::result), first, second);
    EXPECT_TRUE(comparison.same_way);
    EXPECT_EQ(lines(comparison.in, 'L', 'P'), (std::vector<std::string>{"L5.0 / ", "L24-27 / P8-11"}));
    EXPECT_EQ(comparison.in[0].fate, explain::Fate::dropped);
    EXPECT_EQ(lines(comparison.out, 'P', 'L'), (std::vector<std::string>{"P8-11 / L24-27"}));
}

TEST(Compare, TellsWhatTakesRecordsDifferentWays) {
    Bytes first(30);
    first[0] = 0x20;  // variant A
    Bytes second(30);
    second[0] = 0x40;  // variant B
    const Comparison comparison = explain::compare(catalogue::of_table(4, Role::result), first, second);
    EXPECT_FALSE(comparison.same_way);
    EXPECT_EQ(lines(comparison.in, 'L', 'P'), (std::vector<std::string>{"L0.5 / P3.7 decides", "L0.6 /  decides"}));
    EXPECT_EQ(lines(comparison.out, 'P', 'L'), (std::vector<std::string>{"P3.7 / L0.5"}));
}

TEST(Compare, TakesRecordsOfOneLengthOnly) {
    EXPECT_THROW(explain::compare(*catalogue::find("generic_xlate_key"), Bytes(3), Bytes(4)), std::invalid_argument);
    const Comparison same = explain::compare(*catalogue::find("generic_xlate_key"), Bytes(3), Bytes(3));
    EXPECT_TRUE(same.in.empty());
    EXPECT_TRUE(same.out.empty());
}

}  // namespace
