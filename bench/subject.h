// What is measured: every translator of the catalogue with records of one of its samples or of all, and the
// library's own generic copy of as many bytes, to which translators are compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"

namespace bench {

struct Subject {
    std::string name;
    std::size_t size;                                   // of the physical record
    const catalogue::Translator* translator = nullptr;  // null: the generic copy
    std::vector<catalogue::Sample> samples{};           // of which the records are; several: mixed
};

// All translators' subjects, then the copies of the sizes that they have.
std::vector<Subject> subjects();

std::string copy_name(std::size_t size);

// Records for a subject, and the calls that translate them.
class Records {
public:
    // Enough records that no branch is learnt from one of them, few enough for the nearest cache.
    static constexpr std::size_t count = 64;

    explicit Records(const Subject& subject);

    // Hands `run` a function of the index of a record, which translates this record and returns the status.
    template <typename Run>
    void with_call(Run run) {
        const auto in = [this](std::size_t i) { return &in_[i * stride]; };
        const auto out = [this](std::size_t i) { return &out_[i * stride]; };
        const std::int32_t length = length_;
        if (translator_ == nullptr && rest_ != 0) {
            run([&](std::size_t i) {
                return generic_xlate_result(in(i), length, out(i), &out_length_) |
                       generic_xlate_result(in(i) + length, rest_, out(i) + length, &out_length_);
            });
        } else if (translator_ == nullptr) {
            run([&](std::size_t i) { return generic_xlate_result(in(i), length, out(i), &out_length_); });
        } else if (auto* forward = translator_->forward) {
            run([&](std::size_t i) { return forward(in(i), length, out(i), &out_length_); });
        } else if (auto* reverse = translator_->reverse) {
            run([&](std::size_t i) { return reverse(in(i), length, out(i)); });
        } else if (auto* by_type = translator_->reverse_by_type) {
            run([&](std::size_t i) { return by_type(in(i), length, out(i), &type_); });
        } else {
            auto* by_key = translator_->reverse_by_key;
            run([&](std::size_t i) { return by_key(in(i), length, out(i), key_.data()); });
        }
    }

private:
    // One record's place; the greatest record of the library fits.
    static constexpr std::size_t stride = 192;

    const catalogue::Translator* translator_;
    std::int32_t length_;
    std::int32_t rest_ = 0;  // what is left for a second copy: one takes up to 64 bytes
    std::vector<std::uint8_t> in_ = std::vector<std::uint8_t>(count * stride);
    std::vector<std::uint8_t> out_ = std::vector<std::uint8_t>(count * stride);
    std::uint32_t out_length_ = 0;
    // The fourth argument, for those that take one: a logical key, or the entry type.
    std::vector<std::uint8_t> key_;
    std::uint32_t type_ = 0;
};

}  // namespace bench
