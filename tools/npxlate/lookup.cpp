#include "npxlate/lookup.h"

#include <cctype>
#include <charconv>
#include <string>
#include <vector>

#include <fmt/core.h>

#include "npxlate/error.h"
#include "npxlate/output.h"
#include "npxlate/suggest.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Translator;

template <typename Wanted>
const Translator& by_name(std::string_view name, Wanted wanted) {
    if (const Translator* found = catalogue::find(name)) {
        return *found;
    }
    std::vector<std::string> candidates;
    for (const Translator& translator : catalogue::translators()) {
        if (wanted(translator)) {
            candidates.emplace_back(translator.name);
        }
    }
    throw WrongInput{
        fmt::format("there is no table or translator \"{}\": expected a table id (0 to {}) or a name that "
                    "npxlate tables lists{}",
                    printable(name), NPXLATE_TABLE_COUNT - 1, did_you_mean(name, candidates))};
}

}  // namespace

std::optional<unsigned long> parse_number(std::string_view text, unsigned long most) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) {
        text.remove_prefix(2);
    }
    unsigned long value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, hexadecimal ? 16 : 10);
    if (error != std::errc{} || stop != end || value > most) {
        return std::nullopt;
    }
    return value;
}

const Translator& find_translator(std::string_view table_or_name, Role role) {
    if (const auto table = parse_number(table_or_name, NPXLATE_TABLE_COUNT - 1)) {
        return catalogue::of_table(static_cast<unsigned>(*table), role);
    }
    if (!table_or_name.empty() && std::isdigit(static_cast<unsigned char>(table_or_name.front())) != 0) {
        throw WrongInput{fmt::format("there is no table {}: expected a table id from 0 to {}", printable(table_or_name),
                                     NPXLATE_TABLE_COUNT - 1)};
    }
    const Translator& translator =
        by_name(table_or_name, [role](const Translator& candidate) { return candidate.role == role; });
    if (translator.role != role) {
        throw WrongInput{fmt::format("{} is a {} translator: expected a {} translator", translator.name,
                                     catalogue::to_string(translator.role), catalogue::to_string(role))};
    }
    return translator;
}

const Translator& find_translator(std::string_view name) {
    return by_name(name, [](const Translator&) { return true; });
}

std::string describe(const catalogue::Lengths& lengths) {
    if (lengths.fixed()) {
        return fmt::format("{} byte{}", lengths.most, lengths.most == 1 ? "" : "s");
    }
    return fmt::format("{} to {} bytes", lengths.least, lengths.most);
}

}  // namespace tool
