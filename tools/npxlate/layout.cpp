// npxlate layout: the layouts of a translator, variant by variant.

#include <memory>
#include <set>

#include <fmt/format.h>
#include <CLI/App.hpp>

#include "explain/explain.h"
#include "explain/positions.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/lookup.h"
#include "npxlate/subject.h"

namespace tool {
namespace {

using catalogue::Translator;
using explain::Field;
using explain::LayoutTable;
using explain::Section;
using explain::VariantLayout;

struct Options {
    SubjectOptions subject;
    bool json = false;
};

Json rows_json(const Translator& translator, const std::vector<Field>& fields) {
    Json json = Json::array();
    for (const Field& field : fields) {
        json.push_back(field_json(translator, field));
    }
    return json;
}

Json to_json(const LayoutTable& table) {
    const Translator& translator = *table.translator;
    Json variants = Json::array();
    for (const VariantLayout& variant : table.variants) {
        Json sections = Json::array();
        for (const Section& section : variant.sections) {
            sections.push_back({{"layout", section.title.empty() ? Json(nullptr) : Json(section.title)},
                                {"always", section.always},
                                {"rows", rows_json(translator, section.fields)}});
        }
        Json changes = Json::array();
        for (const explain::InputChange& change : variant.input_changes) {
            changes.push_back(
                {{"at", positions_json(explain::in_letter(translator), change.bits)}, {"text", change.text}});
        }
        variants.push_back({{"variant", variant.name},
                            {"holds", variant.holds},
                            {"argument", variant.argument},
                            {"sections", std::move(sections)},
                            {"in_the_end", rows_json(translator, variant.fields)},
                            {"in_changes", std::move(changes)}});
    }
    Json json = translator_json(translator);
    json["variants"] = std::move(variants);
    return json;
}

// What distinguishes the variant, as far as the catalogue says.
std::string condition(const Translator& translator, const VariantLayout& variant) {
    std::string text = variant.holds;
    if (translator.has(catalogue::Trait::takes_type)) {
        text += fmt::format("{}type {}", text.empty() ? "" : ", ", variant.argument);
    } else if (translator.has(catalogue::Trait::takes_key)) {
        text += fmt::format("{}byte 7 of the key is {:#x}", text.empty() ? "" : ", ", variant.argument);
    }
    return text.empty() ? "" : " (" + text + ")";
}

constexpr std::size_t columns[] = {2, 17, 20};

std::string what_happens(const Field& field) {
    return (field.kind == explain::Kind::constant ? "constant " : "") + field.text +
           (field.combines ? ", ORed in" : "");
}

std::string row(const Translator& translator, const Field& field) {
    const std::string to = explain::position_list(explain::out_letter(translator), field.to);
    const std::string from = explain::position_list(explain::in_letter(translator), field.from);
    // A long list of places goes to the last column, where it can be broken.
    constexpr std::size_t longest_from = 30;
    return from.size() <= longest_from ? line(columns, {"", to, from, what_happens(field)})
                                       : line(columns, {"", to, "", what_happens(field) + ": " + from});
}

std::string to_text(const LayoutTable& table, Style style) {
    const Translator& translator = *table.translator;
    const char in = explain::in_letter(translator);
    std::string text = heading(describe(translator), style);
    text += fmt::format("in {} ({}), out {} ({})\n", in, describe(translator.in()), explain::out_letter(translator),
                        describe(translator.out()));
    constexpr std::size_t hanging[] = {0};
    // A layout that several variants have in common is written out once.
    std::set<std::string> written_out;
    for (const VariantLayout& variant : table.variants) {
        std::string title_of_variant = line(hanging, {"", "Variant " + variant.name + condition(translator, variant)});
        title_of_variant.pop_back();
        text += "\n" + heading(title_of_variant, style);
        for (std::size_t i = 0; i < variant.sections.size();) {
            // What code puts one after the other is one group.
            const Section& section = variant.sections[i];
            std::string rows;
            do {
                for (const Field& field : variant.sections[i].fields) {
                    rows += row(translator, field);
                }
                ++i;
            } while (i < variant.sections.size() && section.title.empty() && variant.sections[i].title.empty() &&
                     variant.sections[i].always == section.always);
            std::string title = section.title.empty() ? "put by code" : section.title;
            const bool repeated = !written_out.insert(title + rows).second;
            title += section.always ? "" : section.title.empty() ? ", for some records" : " (where that holds)";
            text += line(hanging, {"", title + (repeated ? ": as above" : "")}) + (repeated ? "" : rows);
        }
        if (variant.sections.empty()) {
            text += "writes nothing\n";
        }
        for (const explain::InputChange& change : variant.input_changes) {
            text += "changed in the record that went in\n";
            text += line(columns, {"", explain::position_list(in, change.bits), "", change.text});
        }
    }
    return text;
}

}  // namespace

void add_layout(CLI::App& app) {
    CLI::App* const command = app.add_subcommand("layout", "List which bits go where in a translator's records");
    command->footer("A later group of rows overwrites an earlier one.\nExample: npxlate layout 4 --role reverse");
    const auto options = std::make_shared<Options>();
    options->subject.add_to(*command);
    command->add_flag("--json", options->json, "The same as JSON");
    command->callback([options] {
        const LayoutTable table = explain::layout_of(options->subject.find());
        if (options->json) {
            print_json(to_json(table));
        } else {
            print(to_text(table, style_of_stdout()));
        }
    });
}

}  // namespace tool
