// npxlate tables: what there is, with the sizes of the records.

#include <memory>
#include <string>
#include <string_view>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "catalogue/catalogue.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/output.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using catalogue::Lengths;
using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;

constexpr Role roles[] = {Role::key, Role::result, Role::reverse};

std::string numbers(const Lengths& lengths) {
    return lengths.fixed() ? fmt::format("{}", lengths.most) : fmt::format("{}-{}", lengths.least, lengths.most);
}

// How the function is to be called.
std::string_view call_of(const Translator& translator) {
    if (translator.forward != nullptr) {
        return "forward";
    }
    if (translator.reverse_by_type != nullptr) {
        return "reverse_by_type";
    }
    return translator.reverse_by_key != nullptr ? "reverse_by_key" : "reverse";
}

Json to_json(const Lengths& lengths) { return {{"least", lengths.least}, {"most", lengths.most}}; }

Json to_json(const Translator& translator) {
    Json traits = Json::array();
    for (const Trait trait : catalogue::all_traits) {
        if (translator.has(trait)) {
            traits.push_back(catalogue::to_string(trait));
        }
    }
    Json takes = Json::array();
    for (const Lengths& lengths : accepted_lengths(translator)) {
        takes.push_back(to_json(lengths));
    }
    return {{"name", translator.name},
            {"title", catalogue::title(translator)},
            {"role", catalogue::to_string(translator.role)},
            {"call", call_of(translator)},
            {"family", translator.family},
            {"logical", to_json(translator.logical)},
            {"physical", to_json(translator.physical)},
            {"takes", std::move(takes)},
            {"traits", std::move(traits)}};
}

Json as_json() {
    Json tables = Json::array();
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        Json entry{{"table", table}, {"title", catalogue::title_of_table(table)}};
        for (const Role role : roles) {
            entry[std::string{catalogue::to_string(role)}] = to_json(catalogue::of_table(table, role));
        }
        tables.push_back(std::move(entry));
    }
    Json named = Json::array();
    for (const Translator& translator : catalogue::translators()) {
        if (catalogue::tables_of(translator).empty()) {
            named.push_back(to_json(translator));
        }
    }
    Json statuses = Json::array();
    for (const std::int32_t status : {NPXLATE_OK, NPXLATE_INVALID, NPXLATE_OUT_OF_RANGE, NPXLATE_NOT_SUPPORTED}) {
        statuses.push_back(
            {{"status", status}, {"name", status_name(status)}, {"meaning", catalogue::status_words(status)}});
    }
    Json traits = Json::array();
    for (const Trait trait : catalogue::all_traits) {
        traits.push_back({{"trait", catalogue::to_string(trait)}, {"meaning", catalogue::words(trait)}});
    }
    return {{"tables", std::move(tables)},
            {"by_name", std::move(named)},
            {"statuses", std::move(statuses)},
            {"traits", std::move(traits)}};
}

std::string row(std::string_view table, const Translator& translator) {
    return fmt::format("{:>5}  {:<8}{:<46}{:>7} {:>8}\n", table, catalogue::to_string(translator.role), translator.name,
                       numbers(translator.logical), numbers(translator.physical));
}

std::string as_text() {
    const Style style = style_of_stdout();
    std::string text = heading(
        fmt::format("{:>5}  {:<8}{:<46}{:>7} {:>8}", "table", "role", "translator", "logical", "physical"), style);
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        text += heading(fmt::format("{:>5}  {}", table, catalogue::title_of_table(table)), style);
        for (const Role role : roles) {
            text += row(std::to_string(table), catalogue::of_table(table, role));
        }
    }
    text += "\n" + heading("Reached by name only", style);
    std::string last_title;
    for (const Translator& translator : catalogue::translators()) {
        if (!catalogue::tables_of(translator).empty()) {
            continue;
        }
        const std::string title = catalogue::title(translator);
        if (title != last_title) {
            text += heading(fmt::format("{:>5}  {}", "-", title), style);
            last_title = title;
        }
        text += row("-", translator);
    }
    return text;
}

}  // namespace

void add_tables(Command app) {
    const Command command = app.add_subcommand("tables", "List the tables: titles, translators, record sizes");
    command.footer("Sizes are in bytes.\nExample: npxlate tables | grep -i span");
    const auto json = std::make_shared<bool>(false);
    command.add_flag("--json", *json, "As JSON");
    command.callback([json] {
        if (*json) {
            print_json(as_json());
        } else {
            print(as_text());
        }
    });
}

}  // namespace tool
