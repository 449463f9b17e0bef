#include "audit/ignore.h"

#include <charconv>
#include <optional>
#include <stdexcept>

#include <fmt/core.h>

#include "catalogue/catalogue.h"
#include "trace/position.h"

namespace audit {
namespace {

std::optional<unsigned> take_number(std::string_view& text) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{}) {
        return std::nullopt;
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

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view space = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(space), text.size()));
    return text.substr(0, text.find_last_not_of(space) + 1);
}

}  // namespace

void Ignored::add(std::string_view text) {
    const auto wrong = [](std::string_view what) {
        return std::invalid_argument{
            fmt::format("{}: expected a table id, a colon and positions, such as 13:P0.3,P12-15", what)};
    };
    const auto table = take_number(text);
    if (!table || !take(text, ':')) {
        throw wrong("there is no table id with a colon behind it");
    }
    if (*table >= NPXLATE_TABLE_COUNT) {
        throw wrong(fmt::format("there is no table {}", *table));
    }
    const std::size_t record = catalogue::of_table(*table, catalogue::Role::result).physical.most;
    Bits bits;
    do {
        const std::size_t end = std::min(text.find(','), text.size());
        const std::string_view one = trimmed(text.substr(0, end));
        text.remove_prefix(end);
        const npxlate::Span span = npxlate::trace::parse_position(one, 'P').bits;
        if (std::size_t{span.first_bit} + span.width > 8 * record) {
            throw std::invalid_argument{
                fmt::format("{} lies outside the records of table {}, which have {} bytes", one, *table, record)};
        }
        bits.set(span);
    } while (take(text, ','));
    bits_[*table] |= bits;
}

void Ignored::add_lines(std::string_view text) {
    unsigned number = 0;
    while (!text.empty()) {
        ++number;
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::string_view said = trimmed(line.substr(0, line.find('#')));
        if (said.empty()) {
            continue;
        }
        try {
            add(said);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument{fmt::format("line {}: {}", number, error.what())};
        }
    }
}

}  // namespace audit
