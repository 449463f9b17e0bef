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
#include "npxlate/names_option.h"
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
    NamesOption names;
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

bool touch(const std::vector<Span>& spans, const std::vector<Span>& others) {
    return std::ranges::any_of(spans, [&](const Span& span) {
        return std::ranges::any_of(others, [&](const Span& other) {
            return span.first_bit < other.first_bit + other.width && other.first_bit < span.first_bit + span.width;
        });
    });
}

const std::vector<Span>& logical_side(const Translator& translator, const Field& field) {
    return explain::in_letter(translator) == 'L' ? field.from : field.to;
}

// The user's names of a translator's logical record: of all tables' in which it stands.
class NamesOfRecord {
public:
    NamesOfRecord(const std::optional<names::Names>& names, const Translator& translator) {
        if (names) {
            records_ = names->all_of(translator);
        }
    }

    bool any() const { return !records_.empty(); }
    // What the names say of bits of the logical record, each once.
    std::vector<std::string> at(const std::vector<Span>& bits) const {
        std::vector<std::string> texts;
        for (const names::Record* const record : records_) {
            for (const names::Mention& mention : names::mentions(*record, bits)) {
                if (std::string text = names::to_string(mention); std::ranges::find(texts, text) == texts.end()) {
                    texts.push_back(std::move(text));
                }
            }
        }
        return texts;
    }
    template <typename Visit>
    void for_each(Visit visit) const {
        for (const names::Record* const record : records_) {
            std::ranges::for_each(record->fields, visit);
        }
    }

private:
    std::vector<const names::Record*> records_{};
};

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
        return !position_ && (is_in(catalogue::title(translator)) || is_in(translator.name) ||
                              text_ == catalogue::to_string(translator.role));
    }

    bool is_of(const Translator& translator, const NamesOfRecord& names, const Section& section,
               const Field& field) const {
        if (position_) {
            const bool goes_in = position_->letter == explain::in_letter(translator);
            return touch(goes_in ? field.from : field.to, {position_->bits});
        }
        if (value_ && field.kind == explain::Kind::constant) {
            return parse_number(field.text, 0xffffffff) == value_;
        }
        const auto says = [&](const std::string& said) { return is_in(said); };
        return std::ranges::any_of(std::vector{field.name, field.text, section.title, section.when}, says) ||
               std::ranges::any_of(names.at(logical_side(translator, field)), says);
    }

    // Said of a name and its bits.
    bool is_of(const names::Field& name) const {
        return position_ ? position_->letter == 'L' && touch(name.bits, {position_->bits}) : is_in(name.name);
    }

private:
    bool is_in(std::string_view said) const { return lower(said).find(text_) != std::string::npos; }

    std::string text_;
    std::optional<Position> position_;
    std::optional<unsigned long> value_{};  // 0x91
    std::optional<unsigned long> table_{};  // 4
};

struct Found {
    const Translator* translator;
    NamesOfRecord names;
    std::vector<std::pair<const Section*, const Field*>> fields{};
    std::vector<const names::Field*> not_carried{};  // names of which this is all that there is to say
};

void search(const std::vector<Wanted>& wanted, const std::vector<Section>& sections, Found& found) {
    const Translator& translator = *found.translator;
    for (const Section& section : sections) {
        for (const Field& field : section.fields) {
            if (std::ranges::all_of(
                    wanted, [&](const Wanted& one) { return one.is_of(translator, found.names, section, field); })) {
                found.fields.emplace_back(&section, &field);
            }
        }
    }
    found.names.for_each([&](const names::Field& name) {
        const bool carried = std::ranges::any_of(sections, [&](const Section& section) {
            return std::ranges::any_of(
                section.fields, [&](const Field& field) { return touch(logical_side(translator, field), name.bits); });
        });
        if (!carried && std::ranges::all_of(wanted, [&](const Wanted& one) { return one.is_of(name); })) {
            found.not_carried.push_back(&name);
        }
    });
}

// A record is found if every word is said of it, or of one of its fields or names; then those are shown.
std::vector<Found> search(const std::vector<Wanted>& wanted, const std::optional<names::Names>& names,
                          std::vector<std::vector<Section>>& sections) {
    std::vector<Found> all;
    for (const Translator& translator : catalogue::translators()) {
        Found found{.translator = &translator, .names = {names, translator}};
        std::vector<Wanted> of_fields;
        std::ranges::copy_if(wanted, std::back_inserter(of_fields),
                             [&](const Wanted& one) { return !one.is_of(translator); });
        if (!of_fields.empty()) {
            sections.push_back(explain::sections_of(forms::forms_of(translator)));
            search(of_fields, sections.back(), found);
        }
        if (of_fields.empty() || !found.fields.empty() || !found.not_carried.empty()) {
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
            if (found.names.any()) {
                row["names"] = found.names.at(logical_side(*found.translator, *field));
            }
            fields.push_back(std::move(row));
        }
        one["fields"] = std::move(fields);
        if (found.names.any()) {
            Json names = Json::array();
            for (const names::Field* const name : found.not_carried) {
                names.push_back({{"name", name->name}, {"at", names::positions_text(name->bits)}});
            }
            one["names_not_carried"] = std::move(names);
        }
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
            const std::vector<std::string> names = found.names.at(logical_side(*found.translator, *field));
            text += line(columns, {"", explain::position_list(explain::out_letter(*found.translator), field->to),
                                   describe(*found.translator, *field) +
                                       (names.empty() ? "" : fmt::format(" [{}]", fmt::join(names, ", "))) +
                                       (section->when.empty() ? "" : "; when " + section->when)});
        }
        const bool goes_in = explain::in_letter(*found.translator) == 'L';
        for (const names::Field* const name : found.not_carried) {
            text += line(columns, {"", names::positions_text(name->bits),
                                   fmt::format("not {} [{}]", goes_in ? "carried" : "written", name->name)});
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
    const std::optional<names::Names> names = options.names.read();
    const std::vector<Found> found = search(wanted, names, sections);
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
        "With a names file, its names are words, too.\n"
        "Examples: npxlate find L12-15\n"
        "          npxlate find \"queue index\" result");
    const auto options = std::make_shared<Options>();
    command.add_option("WORDS", options->words, "Positions, values and words").required();
    options->names.add_to(command);
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
