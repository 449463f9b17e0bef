// npxlate find: which records carry a position, have a field of that name, or say so in words.

#include <algorithm>
#include <cctype>
#include <memory>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "explain/explain.h"
#include "explain/positions.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/subject.h"
#include "trace/position.h"

namespace tool {
namespace {

using catalogue::Translator;
using explain::Field;
using explain::Section;
using explain::Span;
using npxlate::trace::Position;

struct Options {
    std::vector<std::string> words;
    bool json = false;
};

std::string lower(std::string_view text) {
    std::string result{text};
    std::ranges::transform(result, result.begin(),
                           [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return result;
}

// Nothing for what does not look like one.
std::optional<Position> position_in(std::string word) {
    word.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(word.front())));
    if (!npxlate::trace::is_like_position(word)) {
        return std::nullopt;
    }
    try {
        return npxlate::trace::parse_position(word);
    } catch (const npxlate::trace::NoPosition& error) {
        throw WrongInput{error.what()};
    }
}

bool touches(const std::vector<Span>& spans, const Span& bits) {
    return std::ranges::any_of(spans, [&](const Span& span) {
        return span.first_bit < bits.first_bit + bits.width && bits.first_bit < span.first_bit + span.width;
    });
}

// What one of the words asks for.
class Wanted {
public:
    explicit Wanted(const std::string& word) : text_{lower(word)}, position_{position_in(word)} {
        const auto number = parse_number(word, 0xffffffff);
        (word.starts_with("0x") ? value_ : table_) = number;
    }

    // Said of the record as a whole.
    bool is_of(const Translator& translator) const {
        if (table_) {
            return std::ranges::count(catalogue::tables_of(translator), *table_) != 0;
        }
        return !position_ && (lower(catalogue::title(translator)).find(text_) != std::string::npos ||
                              translator.name.find(text_) != std::string_view::npos ||
                              text_ == catalogue::to_string(translator.role));
    }

    bool is_of(const Translator& translator, const Section& section, const Field& field) const {
        if (position_) {
            const bool goes_in = position_->letter == explain::in_letter(translator);
            return touches(goes_in ? field.from : field.to, position_->bits);
        }
        if (value_ && field.kind == explain::Kind::constant) {
            return parse_number(field.text, 0xffffffff) == value_;
        }
        return std::ranges::any_of(
            std::vector{field.name, field.text, section.title, section.when},
            [&](const std::string& said) { return lower(said).find(text_) != std::string::npos; });
    }

private:
    std::string text_;
    std::optional<Position> position_;
    std::optional<unsigned long> value_{};  // 0x91
    std::optional<unsigned long> table_{};  // 4
};

struct Found {
    const Translator* translator;
    std::vector<std::pair<const Section*, const Field*>> fields{};
};

// A record is found if every word is said of it, or of one of its fields; then those fields are shown.
std::vector<Found> search(const std::vector<Wanted>& wanted, std::vector<std::vector<Section>>& sections) {
    std::vector<Found> all;
    for (const Translator& translator : catalogue::translators()) {
        Found found{.translator = &translator};
        std::vector<Wanted> of_fields;
        std::ranges::copy_if(wanted, std::back_inserter(of_fields),
                             [&](const Wanted& one) { return !one.is_of(translator); });
        if (!of_fields.empty()) {
            sections.push_back(explain::sections_of(forms::forms_of(translator)));
            for (const Section& section : sections.back()) {
                for (const Field& field : section.fields) {
                    if (std::ranges::all_of(of_fields,
                                            [&](const Wanted& one) { return one.is_of(translator, section, field); })) {
                        found.fields.emplace_back(&section, &field);
                    }
                }
            }
        }
        if (of_fields.empty() || !found.fields.empty()) {
            all.push_back(std::move(found));
        }
    }
    return all;
}

Json to_json(const std::vector<Found>& all) {
    Json json = Json::array();
    for (const Found& found : all) {
        Json one = translator_json(*found.translator);
        one["title"] = catalogue::title(*found.translator);
        Json fields = Json::array();
        for (const auto& [section, field] : found.fields) {
            Json row = field_json(*found.translator, *field);
            row["when"] = section->when;
            fields.push_back(std::move(row));
        }
        one["fields"] = std::move(fields);
        json.push_back(std::move(one));
    }
    return json;
}

std::string to_text(const std::vector<Found>& all, Style style) {
    constexpr std::size_t hanging[] = {0};
    constexpr std::size_t columns[] = {2, 17};
    std::string text;
    for (const Found& found : all) {
        std::string title = line(
            hanging, {"", fmt::format("{}: {}", describe(*found.translator), catalogue::title(*found.translator))});
        title.pop_back();
        text += heading(title, style);
        for (const auto& [section, field] : found.fields) {
            text += line(columns, {"", explain::position_list(explain::out_letter(*found.translator), field->to),
                                   describe(*found.translator, *field) +
                                       (section->when.empty() ? "" : "; when " + section->when)});
        }
    }
    return text;
}

void run(const Options& options) {
    std::vector<Wanted> wanted;
    for (const std::string& argument : options.words) {
        // A quoted phrase stays together; "table 4" is the same as 4.
        if (!argument.empty() && argument != "table") {
            wanted.emplace_back(argument);
        }
    }
    if (wanted.empty()) {
        throw WrongInput{"nothing to find: expected a position (L12-15), a value (0x91) or words"};
    }
    std::vector<std::vector<Section>> sections;
    sections.reserve(catalogue::translators().size());
    const std::vector<Found> found = search(wanted, sections);
    if (options.json) {
        print_json(to_json(found));
    } else {
        print(to_text(found, style_of_stdout()));
    }
    if (found.empty()) {
        throw NotDone{
            fmt::format("no record has all of: {}", printable(fmt::format("{}", fmt::join(options.words, " "))))};
    }
}

}  // namespace

void add_find(Command app) {
    const Command command = app.add_subcommand("find", "Find records by position, name, value or words");
    command.footer(
        "Records are found of which, or of a field of which, every word is said: its name or title, a field's name or\n"
        "what becomes of it, its condition. A position finds the fields that carry it, a number the table, 0x91 "
        "constants.\n"
        "Examples: npxlate find L12-15\n"
        "          npxlate find \"queue index\" result");
    const auto options = std::make_shared<Options>();
    command.add_option("WORDS", options->words, "Positions, values and words").required();
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
