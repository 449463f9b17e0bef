#include "catalogue/example.h"

#include <algorithm>
#include <charconv>
#include <random>
#include <stdexcept>
#include <string>

namespace catalogue {
namespace {

[[noreturn]] void refuse(std::string_view text, const char* why) {
    throw std::invalid_argument{"sample holds \"" + std::string{text} + "\": " + why};
}

// Takes a number from the front of the text: decimal, or hexadecimal after 0x.
std::uint64_t take_number(std::string_view& text, std::string_view whole) {
    const bool hexadecimal = text.starts_with("0x");
    if (hexadecimal) {
        text.remove_prefix(2);
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, hexadecimal ? 16 : 10);
    if (error != std::errc{}) {
        refuse(whole, "a number is missing");
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return value;
}

bool take(std::string_view& text, char c) {
    if (!text.starts_with(c)) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

// One assignment: L0.5=1, L3.6-3=2, L8=4 or L8-11=0x1000.
void assign(std::vector<std::uint8_t>& record, char side, std::string_view assignment) {
    std::string_view text = assignment;
    if (!take(text, side)) {
        refuse(assignment, "it names the other record");
    }
    const std::size_t first = take_number(text, assignment);
    std::size_t last = first;
    unsigned high = 7;
    unsigned low = 0;
    if (take(text, '.')) {
        high = low = static_cast<unsigned>(take_number(text, assignment));
        if (take(text, '-')) {
            low = static_cast<unsigned>(take_number(text, assignment));
        }
    } else if (take(text, '-')) {
        last = take_number(text, assignment);
    }
    if (!take(text, '=')) {
        refuse(assignment, "= is missing");
    }
    std::uint64_t value = take_number(text, assignment);
    if (!text.empty() || last < first || last >= record.size() || high > 7 || high < low) {
        refuse(assignment, "no such position");
    }
    for (std::size_t i = first; i <= last; ++i) {
        const unsigned mask = ((1U << (high - low + 1)) - 1) << low;
        record[i] = static_cast<std::uint8_t>((record[i] & ~mask) | ((static_cast<unsigned>(value) << low) & mask));
        value >>= high - low + 1;
    }
    if (value != 0) {
        refuse(assignment, "the value does not fit");
    }
}

// Everything that the sample holds.
void hold(std::vector<std::uint8_t>& record, const Translator& translator, const Sample& sample) {
    const char side = translator.role == Role::reverse ? 'P' : 'L';
    std::string_view rest = sample.holds;
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        if (!word.empty()) {
            assign(record, side, word);
        }
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    }
}

}  // namespace

std::vector<std::uint8_t> example(const Translator& translator, const Sample& sample, std::uint64_t seed) {
    std::mt19937_64 random{seed};
    std::vector<std::uint8_t> record(translator.in().most);
    for (std::uint8_t& byte : record) {
        byte = static_cast<std::uint8_t>(random());
    }
    hold(record, translator, sample);
    return record;
}

}  // namespace catalogue
