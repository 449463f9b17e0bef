// What the labels say about the bits of a record against what the library does with them, for every translator.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "catalogue/example.h"
#include "explain/explain.h"
#include "explain/run.h"

namespace {

using catalogue::Sample;
using catalogue::Translator;
using explain::Account;
using explain::Bytes;
using explain::Fate;
using explain::Kind;
using explain::OutBit;
using explain::Run;

bool bit_of(const Bytes& bytes, std::size_t bit) { return (bytes.at(bit / 8) >> (bit % 8) & 1) != 0; }

std::string position(std::size_t bit) { return std::to_string(bit / 8) + "." + std::to_string(bit % 8); }

// The value that the label of a bit promises; none for those that it leaves to a function or to the caller.
std::optional<bool> promised(const OutBit& bit, const Bytes& record) {
    switch (bit.kind) {
        case Kind::computed:
        case Kind::left_alone:
            return std::nullopt;
        case Kind::cleared:
            return false;
        case Kind::constant:
            return bit.value;
        default:
            return std::ranges::any_of(
                bit.links, [&](const explain::Link& link) { return bit_of(record, link.from) != link.inverted; });
    }
}

std::set<std::size_t> differences(const Account& account, const Run& run) {
    std::set<std::size_t> bits;
    for (std::size_t i = 0; i < account.out_bits.size(); ++i) {
        if (bit_of(run.out, i) != bit_of(account.out, i)) {
            bits.insert(i);
        }
    }
    return bits;
}

void expect_consistent(const Translator& translator, const Bytes& record, std::uint32_t argument) {
    const Account account = explain::account(translator, record, argument);
    for (std::size_t i = 0; i < account.out_bits.size(); ++i) {
        const OutBit& bit = account.out_bits[i];
        ASSERT_EQ(bit.value, bit_of(account.out, i)) << "output bit " << position(i);
        if (const auto value = promised(bit, record)) {
            ASSERT_EQ(*value, bit.value) << "output bit " << position(i) << " is labelled " << to_string(bit.kind);
        }
        // The fields say of every bit what the bit says of itself, each bit in one field.
        std::size_t fields = 0;
        for (const explain::Field& field : account.fields) {
            for (const explain::Span span : field.to) {
                fields += i >= span.first_bit && i < unsigned{span.first_bit} + span.width ? 1 : 0;
            }
        }
        ASSERT_EQ(fields, 1U) << "output bit " << position(i);
    }

    Bytes flipped = record;
    for (std::size_t i = 0; i < account.in_bits.size(); ++i) {
        const explain::InBit& bit = account.in_bits[i];
        ASSERT_EQ(bit.value, bit_of(record, i));
        const auto flip = static_cast<std::uint8_t>(1U << i % 8);
        flipped[i / 8] ^= flip;
        const Run run = explain::run_translator(translator, flipped, argument, 0);
        const std::set<std::size_t> changed = differences(account, run);
        SCOPED_TRACE("input bit " + position(i) + ", " + std::string{to_string(bit.fate)});

        if (bit.fate == Fate::dropped || (bit.fate == Fate::steered && !bit.decides)) {
            ASSERT_TRUE(changed.empty());
        }
        if (bit.fate == Fate::carried && !bit.decides) {
            ASSERT_FALSE(changed.empty());
        }
        if (!bit.decides) {
            ASSERT_EQ(run.status, account.status);
            ASSERT_EQ(run.length, account.length);
            // The same labels hold for the other value, and only what depends on the bit has changed.
            for (std::size_t k = 0; k < account.out_bits.size(); ++k) {
                const OutBit& out = account.out_bits[k];
                if (const auto value = promised(out, flipped)) {
                    ASSERT_EQ(*value, bit_of(run.out, k)) << "output bit " << position(k);
                }
                if (changed.contains(k)) {
                    const bool linked = std::ranges::find(out.links, i, &explain::Link::from) != out.links.end();
                    const bool looked_at = std::ranges::find(out.from, i) != out.from.end();
                    ASSERT_TRUE(linked || looked_at) << "output bit " << position(k);
                }
            }
        }
        flipped[i / 8] ^= flip;
    }
}

class Consistency : public testing::TestWithParam<const Translator*> {};

TEST_P(Consistency, LabelsSayWhatTheLibraryDoes) {
    const Translator& translator = *GetParam();
    for (const Sample& sample : translator.samples) {
        for (const unsigned seed : {1U, 2U}) {
            SCOPED_TRACE(std::string{sample.name} + ", seed " + std::to_string(seed));
            ASSERT_NO_FATAL_FAILURE(expect_consistent(translator, example(translator, sample, seed), sample.argument));
        }
    }
    // Records that belong to no sample in particular: shorter ones too, where the translator takes them.
    const std::uint32_t argument = translator.samples.front().argument;
    std::mt19937 random{7};
    const catalogue::Lengths& lengths = translator.in();
    for (const std::size_t length : std::set{lengths.least, (lengths.least + lengths.most) / 2, lengths.most}) {
        for (const int fill : {0, 0xff, 0x55}) {
            SCOPED_TRACE("length " + std::to_string(length) + " of " + std::to_string(fill));
            ASSERT_NO_FATAL_FAILURE(
                expect_consistent(translator, Bytes(length, static_cast<std::uint8_t>(fill)), argument));
        }
        Bytes record(length);
        std::ranges::generate(record, [&] { return static_cast<std::uint8_t>(random()); });
        ASSERT_NO_FATAL_FAILURE(expect_consistent(translator, record, argument));
    }
}

std::vector<const Translator*> all() {
    std::vector<const Translator*> result;
    for (const Translator& translator : catalogue::translators()) {
        result.push_back(&translator);
    }
    return result;
}

INSTANTIATE_TEST_SUITE_P(Catalogue, Consistency, testing::ValuesIn(all()),
                         [](const auto& one) { return std::string{one.param->name}; });

}  // namespace
