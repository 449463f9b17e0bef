// npxlate layout: the layouts of a translator, each with the condition under which a record gets it.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

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
    bool all = false;
    std::string length;
    std::string length_argument;
    bool forms = false;
    bool json = false;
};

// The records of which the names speak where their condition and that of the layout can both hold.
class LayoutNaming {
public:
    LayoutNaming(const forms::Forms& forms, const Naming& naming) : forms_{&forms}, naming_{&naming} {}

    // Of the names, those that a record with this condition can have.
    Naming where(forms::Node condition) const {
        std::optional<names::Record> names;
        // What comes out is not what the condition asks for.
        const bool asks = forms_->translator().role != catalogue::Role::reverse;
        if (naming_->record() != nullptr) {
            names = *naming_->record();
            std::erase_if(names->fields, [&](const names::Field& field) {
                return asks && forms_->diagrams().both(condition, node_of(field.when)) == npxlate::trace::never;
            });
        }
        return Naming{std::move(names)};
    }

private:
    forms::Node node_of(const names::Condition& condition) const {
        forms::Diagrams& diagrams = forms_->diagrams();
        forms::Node any = condition.empty() ? npxlate::trace::always : npxlate::trace::never;
        for (const std::vector<names::Requirement>& together : condition) {
            forms::Node all = npxlate::trace::always;
            for (const names::Requirement& requirement : together) {
                unsigned k = 0;
                for (const std::uint16_t bit : names::bits_in_order(requirement.bits)) {
                    const forms::Node is_set = diagrams.bit(npxlate::trace::bit_id(forms::Space::in, bit));
                    const bool set = (requirement.value.at(k / 8) >> k % 8 & 1) != 0;
                    all = diagrams.both(all, set ? is_set : diagrams.negation(is_set));
                    ++k;
                }
            }
            any = diagrams.either(any, all);
        }
        return any;
    }

    const forms::Forms* forms_;
    const Naming* naming_;
};

// The names of the logical side of a row.
std::string suffix(const Translator& translator, const Naming& naming, const Field& field) {
    return naming.suffix(explain::in_letter(translator), field.from) +
           naming.suffix(explain::out_letter(translator), field.to);
}

Json rows_json(const Translator& translator, const std::vector<Field>& fields, const Naming& naming) {
    Json json = Json::array();
    for (const Field& field : fields) {
        Json one = field_json(translator, field);
        naming.add_to(one, explain::in_letter(translator), field.from);
        naming.add_to(one, explain::out_letter(translator), field.to);
        json.push_back(std::move(one));
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

Json to_json(const LayoutTable& table, const Naming& all_names) {
    const forms::Forms& forms = *table.forms;
    const LayoutNaming naming{forms, all_names};
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
                           {"rows", rows_json(translator, section.fields, naming.where(section.condition))},
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
                 {"rows", rows_json(translator, layout.fields, naming.where(form.condition))},
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

std::string row(const Translator& translator, const Field& field, const Naming& naming) {
    const std::string to = explain::position_list(explain::out_letter(translator), field.to);
    const std::string from = explain::position_list(explain::in_letter(translator), field.from);
    const std::string names = suffix(translator, naming, field);
    // A long list of places goes to the last column, where it can be broken.
    constexpr std::size_t longest_from = 30;
    return from.size() <= longest_from ? line(columns, {"", to, from, what_happens(field) + names})
                                       : line(columns, {"", to, "", what_happens(field) + ": " + from + names});
}

std::string rows(const Translator& translator, const std::vector<Field>& fields,
                 const std::vector<InputChange>& changes, const Naming& naming) {
    std::string text;
    for (const Field& field : fields) {
        text += row(translator, field, naming);
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

std::string to_text(const LayoutTable& table, const Naming& all_names, bool by_form, Style style) {
    const Translator& translator = table.forms->translator();
    const LayoutNaming naming{*table.forms, all_names};
    std::string text = heading(describe(translator), style);
    text += line(hanging, {"", catalogue::title(translator)});
    text += fmt::format("in {} ({}), out {} ({})\n", explain::in_letter(translator), describe(translator.in()),
                        explain::out_letter(translator), describe(translator.out()));
    text += outcomes(table);
    if (by_form) {
        for (const FormLayout& layout : table.all) {
            text += "\n" + long_heading(layout.form->name, style);
            text += layout.when.empty() ? "" : line(hanging, {"", "when " + layout.when});
            text += rows(translator, layout.fields, layout.input_changes, naming.where(layout.form->condition));
        }
        return text;
    }
    for (std::size_t i = 0; i < table.sections.size();) {
        // What code puts one after the other for the same records is one group.
        const Section& section = table.sections[i];
        const std::string which = section.when.empty() ? "every record" : section.when;
        text += "\n" + long_heading(section.title.empty() ? which : section.title + ": " + which, style);
        do {
            text += rows(translator, table.sections[i].fields, table.sections[i].input_changes,
                         naming.where(section.condition));
            ++i;
        } while (i < table.sections.size() && section.by_code && table.sections[i].by_code &&
                 table.sections[i].condition == section.condition);
    }
    if (table.sections.empty()) {
        text += "\nwrites nothing\n";
    }
    return text;
}

// Every record, as a text to read and to search.
void run_all(const Options& options) {
    if (options.subject.given() || options.json || !options.length.empty() || !options.length_argument.empty()) {
        throw WrongInput{
            "--all lists every record as text: expected no table or name, --length, --length-argument or --json beside "
            "it"};
    }
    bool first = true;
    for (const Translator& translator : catalogue::translators()) {
        print((first ? "" : "\n\n") +
              to_text(explain::layout_of(translator), Naming{std::nullopt}, options.forms, style_of_stdout()));
        first = false;
    }
}

// What the options say of the length argument; nothing: records of any length that the translator takes.
std::optional<std::int32_t> length_argument_of(const Options& options, const Translator& translator) {
    if (!options.length.empty()) {
        return static_cast<std::int32_t>(parse_length(translator, options.length));
    }
    if (!options.length_argument.empty()) {
        constexpr unsigned long most = std::numeric_limits<std::int32_t>::max();
        const std::string_view text = options.length_argument;
        const bool negative = text.starts_with('-');
        const auto number = parse_number(text.substr(negative ? 1 : 0), negative ? most + 1 : most);
        if (!number) {
            throw WrongInput{fmt::format("bad --length-argument {}: expected a number from {} to {}", printable(text),
                                         std::numeric_limits<std::int32_t>::min(), most)};
        }
        const auto argument = static_cast<std::int64_t>(*number);
        return static_cast<std::int32_t>(negative ? -argument : argument);
    }
    return std::nullopt;
}

void run(const Options& options) {
    if (options.all) {
        run_all(options);
        return;
    }
    const Translator& translator = options.subject.find();
    const Naming naming = options.subject.names();
    const LayoutTable table = explain::layout_of(translator, length_argument_of(options, translator));
    if (options.json) {
        print_json(to_json(table, naming));
    } else {
        print(to_text(table, naming, options.forms, style_of_stdout()));
    }
}

}  // namespace

void add_layout(Command app) {
    const Command command = app.add_subcommand("layout", "List which bits go where in a translator's records");
    command.footer(
        "Every layout is listed once, with its condition; a later one overwrites an earlier one.\n"
        "Example: npxlate layout 4 --role reverse");
    const auto options = std::make_shared<Options>();
    options->subject.add_to(command, false);
    const Option length = command.add_option("--length", options->length,
                                             "For records of so many bytes, where a translator takes several");
    command
        .add_option("--length-argument", options->length_argument, "For any length argument, also one that is refused")
        .excludes(length);
    command.add_flag("--all", options->all, "Every record of every table");
    command.add_flag("--forms", options->forms, "Every form by itself: what a record gets in the end");
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
