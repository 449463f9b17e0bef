// Writing a names file.

#include <algorithm>

#include <fmt/core.h>

#include "names/names.h"

namespace names {
namespace {

// TOML's basic string.
std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

// How the position is written: in the order of the record, with the order of its bytes where the style does not say it.
struct Place {
    std::string at;
    std::string order;
};

Place place_of(const Field& field) {
    const auto whole_byte = [](const Span& span) { return span.width == 8 && span.first_bit % 8 == 0; };
    const bool highest_first = field.width() > 8 && std::ranges::all_of(field.bits, whole_byte) &&
                               std::ranges::is_sorted(field.bits, std::ranges::greater{}, &Span::first_bit);
    std::vector<Span> bits = field.bits;
    if (highest_first || (field.width() == 8 && keeps_byte_order(field.style))) {
        std::ranges::reverse(bits);
    }
    // Neighbours are one piece.
    std::vector<Span> joined;
    for (const Span span : bits) {
        if (!joined.empty() && joined.back().first_bit + joined.back().width == span.first_bit) {
            joined.back().width = static_cast<std::uint16_t>(joined.back().width + span.width);
        } else {
            joined.push_back(span);
        }
    }
    const bool expected = field.width() == 8 || highest_first == keeps_byte_order(field.style);
    return {positions_text(joined), expected ? "" : highest_first ? "big" : "little"};
}

std::string list_name(const Record& record, const Field& field) {
    // A list is named after the first field that has it.
    const auto same = [&](const Field& other) {
        return std::ranges::equal(other.words, field.words,
                                  [](const Word& a, const Word& b) { return a.word == b.word && a.value == b.value; });
    };
    return std::ranges::find_if(record.fields, same)->name;
}

std::string condition_text(const Condition& condition) {
    std::string text;
    for (const std::vector<Requirement>& together : condition) {
        text += text.empty() ? "" : ", ";
        text += quoted(to_string(Condition{together}));
    }
    return condition.size() == 1 ? text : "[" + text + "]";
}

}  // namespace

std::string write(const Record& names) {
    std::string text = "[[record]]\n";
    if (names.table) {
        text += fmt::format("table = {}\nrole = \"{}\"\n", *names.table, catalogue::to_string(names.translator->role));
    } else {
        text += fmt::format("translator = \"{}\"\n", names.translator->name);
    }
    text += fmt::format("bytes = {}\nfields = [\n", names.size);
    std::size_t widest_name = 0;
    std::size_t widest_at = 0;
    for (const Field& field : names.fields) {
        widest_name = std::max(widest_name, quoted(field.name).size());
        widest_at = std::max(widest_at, quoted(place_of(field).at).size());
    }
    for (const Field& field : names.fields) {
        const Place place = place_of(field);
        text += fmt::format("    {{ name = {:<{}} at = {:<{}} as = \"{}\"", quoted(field.name) + ",", widest_name + 1,
                            quoted(place.at) + ",", widest_at + 1, to_string(field.style));
        text += place.order.empty() ? "" : fmt::format(", order = \"{}\"", place.order);
        text += field.words.empty() ? "" : fmt::format(", words = {}", quoted(list_name(names, field)));
        text += field.in_union.empty() ? "" : fmt::format(", union = {}", quoted(field.in_union));
        text += " },\n";
    }
    text += "]\n";
    std::string conditions;
    for (const Field& field : names.fields) {
        if (!field.when.empty()) {
            conditions += fmt::format("{} = {}\n", quoted(field.name), condition_text(field.when));
        }
    }
    text += conditions.empty() ? "" : "\n[record.when]\n" + conditions;
    for (const Field& field : names.fields) {
        if (field.words.empty() || list_name(names, field) != field.name) {
            continue;
        }
        text += fmt::format("\n[record.words.{}]\n", quoted(field.name));
        for (const Word& word : field.words) {
            // TOML has no greater numbers.
            text += fmt::format("{} = {}\n", quoted(word.word), static_cast<std::int64_t>(word.value));
        }
    }
    return text;
}

}  // namespace names
