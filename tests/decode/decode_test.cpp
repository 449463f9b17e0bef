// Decoding, against the library: nothing that is found is wrong, and nothing that there is is missing.

#include "decode/decode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "catalogue/call.h"
#include "catalogue/example.h"

namespace {

namespace trace = npxlate::trace;

using catalogue::Role;
using catalogue::Translator;
using decode::Alternative;
using decode::Alternatives;
using decode::Bytes;
using decode::Candidate;
using decode::Decoder;

bool bit_at(const Bytes& bytes, std::size_t bit) { return (bytes.at(bit / 8) >> bit % 8 & 1) != 0; }

struct Reply {
    std::int32_t status = 0;
    std::uint32_t length = 0;
    bool made = false;
    Bytes out{};
};

Reply translate(const Translator& translator, Bytes in, const Bytes& buffer) {
    constexpr std::uint32_t not_stored = 0xffffffff;
    Reply reply{.length = not_stored, .out = buffer};
    reply.out.resize(std::max(buffer.size(), translator.out().most) + 8);
    in.reserve(1);
    reply.status = catalogue::call(translator, in.data(), static_cast<std::int32_t>(in.size()), reply.out.data(),
                                   &reply.length, catalogue::Argument{0});
    if (reply.length == not_stored && translator.has(catalogue::Trait::keeps_length)) {
        reply.length = static_cast<std::uint32_t>(translator.out().most);
    }
    reply.made = reply.status == NPXLATE_OK && reply.length != not_stored;
    reply.out.resize(reply.made ? reply.length : 0);
    return reply;
}

// Whether the record holds one alternative of each group.
bool holds(const std::vector<Alternatives>& groups, const Bytes& record) {
    return std::ranges::all_of(groups, [&](const Alternatives& group) {
        return std::ranges::any_of(group, [&](const Alternative& alternative) {
            const decode::Field& field = alternative.field;
            std::uint32_t value = 0;
            for (unsigned k = 0; k < field.at.width; ++k) {
                value |= std::uint32_t{bit_at(record, field.at.first_bit + k)} << k;
            }
            const bool among = std::ranges::any_of(
                field.values, [&](const auto& range) { return value >= range.first && value <= range.second; });
            return among && holds(alternative.then, record);
        });
    });
}

// One of each group at random, with one of its values.
void fill_in(const std::vector<Alternatives>& groups, Bytes& record, std::mt19937_64& random) {
    for (const Alternatives& group : groups) {
        ASSERT_FALSE(group.empty());
        const auto& [field, then] = group[random() % group.size()];
        const auto [from, to] = field.values[random() % field.values.size()];
        const auto value = static_cast<std::uint32_t>(from + random() % (std::uint64_t{to} - from + 1));
        for (unsigned k = 0; k < field.at.width; ++k) {
            const std::size_t bit = field.at.first_bit + k;
            const auto mask = static_cast<std::uint8_t>(1U << bit % 8);
            record[bit / 8] =
                static_cast<std::uint8_t>((value >> k & 1) != 0 ? record[bit / 8] | mask : record[bit / 8] & ~mask);
        }
        fill_in(then, record, random);
    }
}

// Whether the record is one of those that the candidate stands for.
bool is_among(const Candidate& candidate, const Bytes& record) {
    if (record.size() != candidate.record.size()) {
        return false;
    }
    for (std::size_t bit = 0; bit < 8 * record.size(); ++bit) {
        const bool fixed = bit_at(candidate.determined, bit) || bit_at(candidate.chosen, bit);
        if (fixed && bit_at(record, bit) != bit_at(candidate.record, bit)) {
            return false;
        }
    }
    return holds(candidate.groups, record);
}

// Each bit in one class: determined, chosen, free, or of one of several values; and every way to fill in what is left
// open gives the same bytes.
void expect_true(const Translator& translator, const Candidate& candidate, const Bytes& physical,
                 std::mt19937_64& random) {
    for (std::size_t byte = 0; byte < candidate.record.size(); ++byte) {
        ASSERT_EQ(candidate.determined[byte] & candidate.chosen[byte], 0);
        ASSERT_EQ((candidate.determined[byte] | candidate.chosen[byte]) & candidate.free[byte], 0);
        ASSERT_EQ(candidate.record[byte] & candidate.free[byte], 0);
    }
    for (unsigned trial = 0; trial < 8; ++trial) {
        Bytes record = candidate.record;
        for (std::size_t byte = 0; trial != 0 && byte < record.size(); ++byte) {
            record[byte] = static_cast<std::uint8_t>(record[byte] | (random() & candidate.free[byte]));
        }
        if (trial != 0) {
            fill_in(candidate.groups, record, random);
        }
        const Reply reply = translate(translator, record, physical);
        ASSERT_EQ(reply.status, NPXLATE_OK);
        ASSERT_EQ(reply.out, physical) << candidate.form->name << ", filled in at random";
    }
}

class Decoding : public testing::TestWithParam<const Translator*> {};

TEST_P(Decoding, FindsEveryRecordAgainAndNothingThatIsNone) {
    const Translator& translator = *GetParam();
    const Decoder decoder{translator};
    std::mt19937_64 random{11};
    std::size_t decoded = 0;
    constexpr unsigned records = 300;
    for (unsigned number = 0; number < records; ++number) {
        const catalogue::Sample& sample = translator.samples[number % translator.samples.size()];
        Bytes record = example(translator, sample, number);
        for (std::uint8_t& byte : record) {
            if (number % 5 == 4) {
                byte &= static_cast<std::uint8_t>(random());
                byte &= static_cast<std::uint8_t>(random());
            }
        }
        const catalogue::Lengths& lengths = translator.in();
        record.resize(lengths.least + random() % (lengths.most - lengths.least + 1));
        const Reply reply = translate(translator, record, Bytes(translator.out().most));
        if (!reply.made) {
            continue;
        }
        const decode::Result result = decoder.decode(reply.out);
        const bool found = std::ranges::any_of(result.candidates,
                                               [&](const Candidate& candidate) { return is_among(candidate, record); });
        ASSERT_TRUE(found) << "record " << number;
        for (const Candidate& candidate : result.candidates) {
            ASSERT_NO_FATAL_FAILURE(expect_true(translator, candidate, reply.out, random));
        }
        EXPECT_EQ(decoder.best(reply.out).others + 1, std::max<std::size_t>(result.candidates.size(), 1));
        ++decoded;
    }
    EXPECT_TRUE(decoded > 0 || decoder.lengths().empty());
}

TEST_P(Decoding, OfDamagedRecordsIsNeverFalse) {
    const Translator& translator = *GetParam();
    const Decoder decoder{translator};
    std::mt19937_64 random{13};
    for (const std::size_t length : decoder.lengths()) {
        for (unsigned number = 0; number < (decoder.lengths().size() > 1 ? 5U : 60U); ++number) {
            Bytes physical(length);
            if (number % 3 != 0) {
                Bytes record = example(translator, translator.samples[number % translator.samples.size()], number);
                physical = translate(translator, record, Bytes(translator.out().most)).out;
                physical.resize(length);
                for (unsigned flips = number % 4; flips > 0 && length > 0; --flips) {
                    physical[random() % length] ^= static_cast<std::uint8_t>(1U << random() % 8);
                }
            } else {
                std::ranges::generate(physical, [&] { return static_cast<std::uint8_t>(random()); });
            }
            const decode::Result result = decoder.decode(physical);
            for (const Candidate& candidate : result.candidates) {
                ASSERT_NO_FATAL_FAILURE(expect_true(translator, candidate, physical, random));
            }
            if (result.candidates.empty()) {
                ASSERT_FALSE(result.nearest.empty());
                for (const decode::Refusal& refusal : result.nearest) {
                    EXPECT_FALSE(refusal.contradictions.empty()) << refusal.form->name;
                }
            }
        }
    }
}

std::vector<const Translator*> all() {
    std::vector<const Translator*> list;
    for (const Translator& translator : catalogue::translators()) {
        if (translator.role != Role::reverse) {
            list.push_back(&translator);
        }
    }
    return list;
}

INSTANTIATE_TEST_SUITE_P(Decode, Decoding, testing::ValuesIn(all()),
                         [](const auto& tested) { return std::string{tested.param->name}; });

std::string values(const Candidate& candidate) {
    std::string text;
    for (const Alternatives& group : candidate.groups) {
        for (const auto& [field, then] : group) {
            text += trace::position('L', field.at.first_bit, field.at.width) + " " +
                    forms::in_words(field.values, field.at.width) + "; ";
        }
    }
    return text;
}

TEST(Decode, GivesAllSourcesOfAHopByte) {
    // P3 of an IP leaf: 3 for one hop, and for all counts above 64.
    const Translator& leaf = *catalogue::find("ip_leaf_st_xlate_result");
    Bytes record(64);
    record[0] = 0x01;  // L0.0: variant B
    record[4] = 1;
    const decode::Result result = Decoder{leaf}.decode(translate(leaf, record, Bytes(32)).out);
    ASSERT_FALSE(result.candidates.empty());
    EXPECT_NE(values(result.candidates.front()).find("L4 is 1 or above 64"), std::string::npos)
        << values(result.candidates.front());
}

TEST(Decode, BringsTogetherWhatTheBytesDoNotTellApart) {
    // Whether L0.0 is set shows in a triple of zeros no more than what else steers only.
    const Translator& leaf = *catalogue::find("ip_leaf_st_xlate_result");
    Bytes physical(32);
    std::ranges::copy(Bytes{0x51, 0x0c, 0x18, 0x01}, physical.begin());
    const decode::Result result = Decoder{leaf}.decode(physical);
    ASSERT_EQ(result.candidates.size(), 8U);
    for (std::size_t i = 0; i < result.candidates.size(); i += 2) {
        const Candidate& one = result.candidates[i];
        const Candidate& other = result.candidates[i + 1];
        EXPECT_EQ(one.alike, i / 2);
        EXPECT_EQ(other.alike, i / 2);
        EXPECT_EQ(one.determined, other.determined);
        EXPECT_NE(one.record, other.record);
        EXPECT_NE(one.form, other.form);
    }
}

TEST(Decode, SaysWhichBitsContradict) {
    const Translator& adjacency = *catalogue::find("rx_adjacency_type_xlate_result");
    Bytes physical = translate(adjacency, Bytes(30), Bytes(16)).out;
    physical[0] ^= 0x08;  // of the header
    const decode::Result result = Decoder{adjacency}.decode(physical);
    EXPECT_TRUE(result.candidates.empty());
    ASSERT_FALSE(result.nearest.empty());
    ASSERT_EQ(result.nearest.front().contradictions.size(), 1U);
    EXPECT_EQ(result.nearest.front().contradictions.front().at, (std::vector<npxlate::Span>{{3, 1}}));
    EXPECT_EQ(result.nearest.front().contradictions.front().needs, "0");
}

}  // namespace
