// npxlate layout: the layouts of a translator, each with the condition under which a record gets it.

#include <algorithm>
#include <memory>

#include <fmt/format.h>
#include <CLI/App.hpp>

#include "explain/explain.h"
#include "explain/positions.h"
#include "forms/conditions.h"
#include "forms/exact.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/subject.h"

namespace tool {
namespace {

using catalogue::Translator;
using explain::Field;
using explain::FormLayout;
using explain::InputChange;
using explain::LayoutTable;
using explain::Section;

struct Options {
    SubjectOptions subject;
    std::optional<std::size_t> length;
    std::optional<std::int32_t> length_argument;
    bool forms = false;
    bool json = false;
};

Json rows_json(const Translator& translator, const std::vector<Field>& fields) {
    Json json = Json::array();
    for (const Field& field : fields) {
        json.push_back(field_json(translator, field));
    }
    return json;
}

Json changes_json(const Translator& translator, const std::vector<InputChange>& changes) {
    Json json = Json::array();
    for (const InputChange& change : changes) {
        json.push_back({{"at", positions_json(explain::in_letter(translator), change.bits)}, {"text", change.text}});
    }
    return json;
}

Json lengths_json(const catalogue::Lengths& lengths) { return {{"least", lengths.least}, {"most", lengths.most}}; }

Json to_json(const LayoutTable& table) {
    const forms::Forms& forms = *table.forms;
    const Translator& translator = forms.translator();
    forms::ExactNodes exact{forms};
    Json json = translator_json(translator);
    json["in"] = lengths_json(translator.in());
    json["out"] = lengths_json(translator.out());
    json["length_in"] = forms.length();
    Json layouts = Json::array();
    for (const Section& section : table.sections) {
        layouts.push_back({{"layout", section.title.empty() ? Json(nullptr) : Json(section.title)},
                           {"by_code", section.by_code},
                           {"when", section.when},
                           {"condition", exact.number(section.condition)},
                           {"rows", rows_json(translator, section.fields)},
                           {"in_changes", changes_json(translator, section.input_changes)}});
    }
    json["layouts"] = std::move(layouts);
    Json all = Json::array();
    for (const FormLayout& layout : table.all) {
        const forms::Form& form = *layout.form;
        Json one{{"form", form.name},
                 {"when", layout.when},
                 {"condition", exact.number(form.condition)},
                 {"status", form.status},
                 {"status_name", status_name(form.status)},
                 {"length", form.length ? Json(*form.length) : Json(nullptr)},
                 {"layouts", layout.sections},
                 {"rows", rows_json(translator, layout.fields)},
                 {"in_changes", changes_json(translator, layout.input_changes)}};
        Json out = Json::array();
        for (const forms::Bit& bit : form.out) {
            out.push_back(exact.number(bit));
        }
        one["out"] = std::move(out);
        Json in_after = Json::object();
        for (const auto& [bit, value] : form.in_after) {
            in_after[forms::bit_name(translator, bit)] = exact.number(value);
        }
        one["in_after"] = std::move(in_after);
        all.push_back(std::move(one));
    }
    json["forms"] = std::move(all);
    Json nodes = Json::array();
    for (const auto& [bit, if_clear, if_set] : exact.all()) {
        nodes.push_back({forms::bit_name(translator, bit), if_clear, if_set});
    }
    json["exact"] = {{"nodes", std::move(nodes)}};
    return json;
}

constexpr std::size_t columns[] = {2, 17, 20};

std::string what_happens(const Field& field) {
    return (field.kind == explain::Kind::constant ? "constant " : "") + field.text +
           (field.combines ? ", ORed in" : "") + (field.name.empty() ? "" : " (" + field.name + ")");
}

std::string row(const Translator& translator, const Field& field) {
    const std::string to = explain::position_list(explain::out_letter(translator), field.to);
    const std::string from = explain::position_list(explain::in_letter(translator), field.from);
    // A long list of places goes to the last column, where it can be broken.
    constexpr std::size_t longest_from = 30;
    return from.size() <= longest_from ? line(columns, {"", to, from, what_happens(field)})
                                       : line(columns, {"", to, "", what_happens(field) + ": " + from});
}

std::string rows(const Translator& translator, const std::vector<Field>& fields,
                 const std::vector<InputChange>& changes) {
    std::string text;
    for (const Field& field : fields) {
        text += row(translator, field);
    }
    for (const InputChange& change : changes) {
        text += line(columns, {"", explain::position_list(explain::in_letter(translator), change.bits), "",
                               "in the record that went in: " + change.text});
    }
    return text;
}

constexpr std::size_t hanging[] = {0};

// A heading that may take several lines.
std::string long_heading(const std::string& words, Style style) {
    std::string text = line(hanging, {"", words});
    text.pop_back();
    return heading(text, style);
}

// What the translator returns, and which length it stores, where that is not the same for all records.
std::string outcomes(const LayoutTable& table) {
    const forms::Forms& forms = *table.forms;
    std::map<std::pair<std::int32_t, std::optional<std::uint32_t>>, std::pair<forms::Cover, forms::Node>> all;
    for (const FormLayout& layout : table.all) {
        auto& [cover, condition] = all[{layout.form->status, layout.form->length}];
        forms::Answers answers;
        for (const forms::Answer& answer : layout.form->answers) {
            answers.emplace_back(answer.question, answer.yes);
        }
        cover.push_back(std::move(answers));
        condition = forms.diagrams().either(condition, layout.form->condition);
    }
    std::string text;
    for (const auto& [outcome, which] : all) {
        const auto& [status, length] = outcome;
        const bool stores = forms.translator().role != catalogue::Role::reverse;
        text += line(
            hanging,
            {"", fmt::format("{}{}{}", status_name(status),
                             length    ? fmt::format(", length {}", *length)
                             : !stores ? ""
                                       : ", no length stored",
                             all.size() == 1
                                 ? ""
                                 : ": " + forms::in_words(forms, forms::simplest(forms, which.first, which.second)))});
    }
    return text;
}

std::string to_text(const LayoutTable& table, bool by_form, Style style) {
    const Translator& translator = table.forms->translator();
    std::string text = heading(describe(translator), style);
    text += fmt::format("in {} ({}), out {} ({})\n", explain::in_letter(translator), describe(translator.in()),
                        explain::out_letter(translator), describe(translator.out()));
    text += outcomes(table);
    if (by_form) {
        for (const FormLayout& layout : table.all) {
            text += "\n" + long_heading(layout.form->name, style);
            text += layout.when.empty() ? "" : line(hanging, {"", "when " + layout.when});
            text += rows(translator, layout.fields, layout.input_changes);
        }
        return text;
    }
    for (std::size_t i = 0; i < table.sections.size();) {
        // What code puts one after the other for the same records is one group.
        const Section& section = table.sections[i];
        const std::string which = section.when.empty() ? "every record" : section.when;
        text += "\n" + long_heading(section.title.empty() ? which : section.title + ": " + which, style);
        do {
            text += rows(translator, table.sections[i].fields, table.sections[i].input_changes);
            ++i;
        } while (i < table.sections.size() && section.by_code && table.sections[i].by_code &&
                 table.sections[i].condition == section.condition);
    }
    if (table.sections.empty()) {
        text += "\nwrites nothing\n";
    }
    return text;
}

void run(const Options& options) {
    const Translator& translator = options.subject.find();
    if (options.length && !translator.in().allows(*options.length)) {
        check_length(translator, *options.length);
    }
    const LayoutTable table =
        explain::layout_of(translator, options.length ? std::optional{static_cast<std::int32_t>(*options.length)}
                                                      : options.length_argument);
    if (options.json) {
        print_json(to_json(table));
    } else {
        print(to_text(table, options.forms, style_of_stdout()));
    }
}

}  // namespace

void add_layout(CLI::App& app) {
    CLI::App* const command = app.add_subcommand("layout", "List which bits go where in a translator's records");
    command->footer(
        "Every layout is listed once, with its condition; a later one overwrites an earlier one.\n"
        "Example: npxlate layout 4 --role reverse");
    const auto options = std::make_shared<Options>();
    options->subject.add_to(*command);
    CLI::Option* const length = command->add_option("--length", options->length,
                                                    "For records of so many bytes, where a translator takes several");
    command
        ->add_option("--length-argument", options->length_argument, "For any length argument, also one that is refused")
        ->excludes(length);
    command->add_flag("--forms", options->forms, "Every form by itself: what a record gets in the end");
    command->add_flag("--json", options->json, "The same as JSON");
    command->callback([options] { run(*options); });
}

}  // namespace tool
