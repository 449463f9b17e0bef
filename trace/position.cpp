#include "trace/position.h"

#include <charconv>

#include "npxlate/npxlate.h"

namespace npxlate::trace {
namespace {

std::optional<unsigned> take_number(std::string_view& text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

bool take(std::string_view& text, char c) {
    if (!text.starts_with(c)) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

// "logical bits such as L3.4, L3.4-2, L12 or L12-15"
std::string examples(std::optional<char> letter) {
    std::string text = !letter ? "bits such as " : *letter == 'L' ? "logical bits such as " : "physical bits such as ";
    const std::string name(1, letter.value_or('L'));
    for (const char* const rest : {"3.4", ", 3.4-2", ", 12", " or 12-15"}) {
        const std::string_view example{rest};
        const std::size_t number = example.find_first_of("0123456789");
        text.append(example.substr(0, number)).append(name).append(example.substr(number));
    }
    return text;
}

unsigned bytes_of(char letter) { return letter == 'L' ? NPXLATE_MAX_LOGICAL_LENGTH : NPXLATE_MAX_PHYSICAL_LENGTH; }

}  // namespace

std::string position(char letter, unsigned first_bit, unsigned width) {
    const unsigned last_bit = first_bit + width - 1;
    std::string text(1, letter);
    text.append(std::to_string(first_bit / 8));
    const auto add = [&](char sign, unsigned number) { text.append(1, sign).append(std::to_string(number)); };
    if (first_bit % 8 == 0 && width % 8 == 0) {
        if (width != 8) {
            add('-', last_bit / 8);
        }
        return text;
    }
    if (first_bit / 8 == last_bit / 8) {
        add('.', last_bit % 8);
        if (width != 1) {
            add('-', first_bit % 8);
        }
        return text;
    }
    add('.', first_bit % 8);
    text.append(" to ");
    text.append(1, letter).append(std::to_string(last_bit / 8));
    add('.', last_bit % 8);
    return text;
}

Position parse_position(std::string_view text, std::optional<char> letter) {
    const auto wrong = [&, whole = text](const std::string& expected) {
        return NoPosition{'"' + std::string{whole} + "\" is no position: expected " + expected};
    };
    const char first = text.empty() ? '\0' : text.front();
    if ((first != 'L' && first != 'P') || (letter && first != *letter)) {
        throw wrong(examples(letter));
    }
    text.remove_prefix(1);
    const unsigned bytes = bytes_of(first);
    const auto byte = take_number(text);
    unsigned low = 0;
    unsigned high = 7;
    unsigned last = byte.value_or(0);
    bool is_whole = byte.has_value();
    if (take(text, '.')) {
        const auto bit = take_number(text);
        const auto other = take(text, '-') ? take_number(text) : bit;
        is_whole = is_whole && bit && other;
        high = bit.value_or(0);
        low = other.value_or(0);
    } else if (take(text, '-')) {
        const auto other = take_number(text);
        is_whole = is_whole && other;
        last = other.value_or(0);
    }
    if (!is_whole || !text.empty()) {
        throw wrong(examples(letter));
    }
    if (*byte >= bytes || last >= bytes) {
        throw wrong("bytes from 0 to " + std::to_string(bytes - 1));
    }
    if (last < *byte) {
        throw wrong(position(first, 8 * last, 8 * (*byte - last + 1)) + ", the lowest byte first");
    }
    if (high > 7 || low > 7) {
        throw wrong("bits from 7 to 0");
    }
    if (high < low) {
        throw wrong(position(first, 8 * *byte + high, low - high + 1) + ", the highest bit first");
    }
    const unsigned first_bit = 8 * *byte + low;
    return {first,
            {static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(8 * last + high + 1 - first_bit)}};
}

bool is_like_position(std::string_view text) {
    return text.size() > 1 && (text.front() == 'L' || text.front() == 'P') && text[1] >= '0' && text[1] <= '9' &&
           text.find_first_not_of("0123456789.-", 1) == std::string_view::npos;
}

}  // namespace npxlate::trace
