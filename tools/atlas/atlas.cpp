#include "atlas/atlas.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "atlas/page.h"
#include "explain/explain.h"
#include "explain/positions.h"
#include "forms/exact.h"

namespace atlas {
namespace {

using catalogue::Lengths;
using catalogue::Trait;
using catalogue::Translator;
using explain::Field;
using explain::FormLayout;
using explain::Kind;
using explain::LayoutTable;
using explain::Link;
using forms::Form;
using forms::Forms;
using nlohmann::json;
using npxlate::Span;

// Texts and fields recur from form to form: each is written once and then named by its number.
class Pool {
public:
    std::size_t number_of(const json& item) {
        const auto [place, is_new] = numbers_.try_emplace(item.dump(), items_.size());
        if (is_new) {
            items_.push_back(item);
        }
        return place->second;
    }
    const json& items() const { return items_; }

private:
    std::map<std::string, std::size_t> numbers_;
    json items_ = json::array();
};

// First bit and width of each, one after the other.
json spans_to_json(std::span<const Span> spans) {
    json list = json::array();
    for (const Span& span : spans) {
        list.push_back(span.first_bit);
        list.push_back(span.width);
    }
    return list;
}

// Runs of bits that keep their order: to, from, how many, whether inverted; one after the other.
json links_to_json(const std::vector<Link>& links) {
    json list = json::array();
    for (std::size_t i = 0; i < links.size();) {
        std::size_t end = i + 1;
        while (end < links.size() && links[end].to == links[end - 1].to + 1 &&
               links[end].from == links[end - 1].from + 1 && links[end].inverted == links[i].inverted) {
            ++end;
        }
        list.insert(list.end(), {links[i].to, links[i].from, end - i, links[i].inverted ? 1 : 0});
        i = end;
    }
    return list;
}

// The bits of a field that are 1 although it only moves bits: beside a label.
std::vector<Span> ones_beside(const Field& field, const Form& form) {
    std::set<std::uint16_t> ones;
    for (const Span& span : field.to) {
        for (unsigned k = 0; k < span.width; ++k) {
            const auto bit = static_cast<std::uint16_t>(span.first_bit + k);
            if (!field.links.empty() && form.out[bit] == npxlate::trace::bit_of(true)) {
                ones.insert(bit);
            }
        }
    }
    return explain::spans_of(ones);
}

// [kind, text, title, name, to, from, links, combines, ones], without what is empty at the end.
json field_to_json(const Field& field, Pool& texts, const Form* form) {
    json list{static_cast<unsigned>(field.kind), texts.number_of(field.text), texts.number_of(field.title),
              texts.number_of(field.name), spans_to_json(field.to),
              // What moves comes from where the links say.
              field.kind == Kind::computed ? spans_to_json(field.from) : json::array(), links_to_json(field.links),
              field.combines ? 1 : 0, form == nullptr ? json::array() : spans_to_json(ones_beside(field, *form))};
    while (list.back() == 0 || list.back() == json::array()) {
        list.erase(list.size() - 1);
    }
    return list;
}

// Those of a form, or rows by themselves.
json fields_to_json(const std::vector<Field>& fields, Pool& pool, Pool& texts, const Form* form = nullptr) {
    json list = json::array();
    for (const Field& field : fields) {
        list.push_back(pool.number_of(field_to_json(field, texts, form)));
    }
    return list;
}

// [bits, text] of each.
json changes_to_json(const std::vector<explain::InputChange>& changes, Pool& texts) {
    json list = json::array();
    for (const explain::InputChange& change : changes) {
        list.push_back({spans_to_json(change.bits), texts.number_of(change.text)});
    }
    return list;
}

// The bits of the record that goes in by which the form is chosen.
std::vector<Span> looked_at(const Forms& forms, const Form& form) {
    std::set<std::uint16_t> bits;
    for (const forms::Answer& answer : form.answers) {
        for (const forms::BitId id : forms.diagrams().depends_on(forms.questions()[answer.question].node)) {
            if (npxlate::trace::space_of(id) == forms::Space::in) {
                bits.insert(static_cast<std::uint16_t>(npxlate::trace::index_of(id)));
            }
        }
    }
    return explain::spans_of(bits);
}

// The nodes of the bits that fields do not give: those that are computed, each field's in the order of its places.
std::vector<json> functions_of(const FormLayout& layout, forms::ExactNodes& exact) {
    std::vector<json> all;
    for (const Field& field : layout.fields) {
        if (field.kind != Kind::computed) {
            continue;
        }
        json nodes = json::array();
        for (const Span& span : field.to) {
            for (unsigned k = 0; k < span.width; ++k) {
                nodes.push_back(exact.number(layout.form->out[span.first_bit + k]));
            }
        }
        all.push_back(std::move(nodes));
    }
    return all;
}

// As many bytes as the translator writes or says it wrote.
std::size_t bytes_out(const Translator& translator, const Form& form) {
    if (translator.out().fixed()) {
        return translator.out().most;
    }
    std::size_t bytes = form.status == NPXLATE_OK ? form.length.value_or(0) : 0;
    for (std::size_t bit = 0; bit < form.writers.size(); ++bit) {
        bytes = form.writers[bit].empty() ? bytes : std::max(bytes, bit / 8 + 1);
    }
    return bytes;
}

// The numbers of sections as the page has them: what code puts one after the other for the same records is one there.
std::vector<std::size_t> groups_of(const LayoutTable& table) {
    std::vector<std::size_t> groups;
    for (std::size_t i = 0; i < table.sections.size(); ++i) {
        const bool goes_on = i > 0 && table.sections[i].by_code && table.sections[i - 1].by_code &&
                             table.sections[i].condition == table.sections[i - 1].condition;
        groups.push_back(i == 0 ? 0 : groups.back() + (goes_on ? 0 : 1));
    }
    return groups;
}

void append(json& list, const json& more) { list.insert(list.end(), more.begin(), more.end()); }

// [title, when, fields, changes] of each layout, and of what code puts.
json sections_to_json(const LayoutTable& table, Pool& fields, Pool& texts) {
    const std::vector<std::size_t> groups = groups_of(table);
    json list = json::array();
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const explain::Section& section = table.sections[i];
        if (groups[i] == list.size()) {
            list.push_back(
                {texts.number_of(section.title), texts.number_of(section.when), json::array(), json::array()});
        }
        append(list.back()[2], fields_to_json(section.fields, fields, texts));
        append(list.back()[3], changes_to_json(section.input_changes, texts));
    }
    return list;
}

json form_to_json(const LayoutTable& table, const FormLayout& layout, forms::ExactNodes& exact, Pool& functions,
                  Pool& fields, Pool& texts) {
    const Form& form = *layout.form;
    const std::vector<std::size_t> groups = groups_of(table);
    std::set<std::size_t> sections;
    for (const std::size_t section : layout.sections) {
        sections.insert(groups[section]);
    }
    json computed = json::array();
    for (const json& nodes : functions_of(layout, exact)) {
        computed.push_back(functions.number_of(nodes));
    }
    // The bit and its node, one after the other.
    json after = json::array();
    for (const auto& [bit, value] : form.in_after) {
        after.insert(after.end(), {bit, exact.number(value)});
    }
    json result{{"name", form.name},
                {"condition", exact.number(form.condition)},
                {"fields", fields_to_json(layout.fields, fields, texts, &form)},
                {"sections", sections},
                {"bytes", bytes_out(table.forms->translator(), form)}};
    const auto add = [&](const char* member, json value) {
        if (!value.empty()) {
            result[member] = std::move(value);
        }
    };
    if (!layout.when.empty()) {
        result["when"] = texts.number_of(layout.when);
    }
    if (form.status != NPXLATE_OK) {
        result["status"] = form.status;
    }
    if (form.length) {
        result["length"] = *form.length;
    }
    add("computed", std::move(computed));
    add("changes", changes_to_json(layout.input_changes, texts));
    add("after", std::move(after));
    add("looks", spans_to_json(looked_at(*table.forms, form)));
    return result;
}

// The forms for a length of the record that goes in.
json forms_to_json(const LayoutTable& table, Pool& fields, Pool& texts) {
    forms::ExactNodes exact{*table.forms};
    Pool functions;
    json all = json::array();
    for (const FormLayout& layout : table.all) {
        all.push_back(form_to_json(table, layout, exact, functions, fields, texts));
    }
    // Three numbers a node: the bit, and where to go on when it is clear and when it is set.
    json nodes = json::array();
    for (const auto& [bit, if_clear, if_set] : exact.all()) {
        nodes.insert(nodes.end(), {bit, if_clear, if_set});
    }
    return {{"nodes", std::move(nodes)}, {"functions", functions.items()}, {"forms", std::move(all)}};
}

// [least, most, forms] of lengths for which the forms are the same.
json lengths_to_json(const Translator& translator, Pool& fields, Pool& texts) {
    json list = json::array();
    for (std::size_t length = translator.in().least; length <= translator.in().most; ++length) {
        json all = forms_to_json(explain::layout_of(translator, static_cast<std::int32_t>(length)), fields, texts);
        if (!list.empty() && list.back()[2] == all) {
            list.back()[1] = length;
        } else {
            list.push_back({length, length, std::move(all)});
        }
    }
    return list;
}

json notes_on(const Translator& translator) {
    json list = json::array();
    for (const Trait trait : catalogue::all_traits) {
        if (translator.has(trait)) {
            list.push_back(catalogue::words(trait));
        }
    }
    return list;
}

// [name, bits with the lowest of the value first, style, words, when], without what is empty at the end: words with
// their numbers, and alternatives of what has to hold together, each bits and their values. Numbers are text, since
// they may have 64 bits.
json name_to_json(const names::Field& field, const std::string& name) {
    json words = json::array();
    for (const names::Word& word : field.words) {
        words.push_back({word.word, std::to_string(word.value)});
    }
    json when = json::array();
    for (const std::vector<names::Requirement>& together : field.when) {
        json all = json::array();
        for (const names::Requirement& requirement : together) {
            json bits = json::array();
            for (std::size_t bit = 0; const std::uint16_t at : names::bits_in_order(requirement.bits)) {
                bits.insert(bits.end(), {at, requirement.value.at(bit / 8) >> bit % 8 & 1});
                ++bit;
            }
            all.push_back(std::move(bits));
        }
        when.push_back(std::move(all));
    }
    json list{name, spans_to_json(field.bits), names::to_string(field.style), std::move(words), std::move(when)};
    while (list.back() == json::array()) {
        list.erase(list.size() - 1);
    }
    return list;
}

json names_to_json(const Translator& translator, const names::Names& names) {
    const std::vector<const names::Record*> records = names.all_of(translator);
    json list = json::array();
    for (const names::Record* const record : records) {
        for (const names::Field& field : record->fields) {
            // Of several tables, whose it is.
            const bool of_table = record->table && catalogue::tables_of(translator).size() > 1;
            list.push_back(
                name_to_json(field, field.name + (of_table ? " (table " + std::to_string(*record->table) + ")" : "")));
        }
    }
    return list;
}

json range_to_json(const Lengths& lengths) { return {lengths.least, lengths.most}; }

json translator_to_json(const Translator& translator, const names::Names* names, Pool& texts) {
    Pool fields;
    json sections = sections_to_json(explain::layout_of(translator), fields, texts);
    json lengths = lengths_to_json(translator, fields, texts);
    json result{{"name", translator.name},
                {"title", catalogue::title(translator)},
                {"role", to_string(translator.role)},
                {"family", translator.family},
                {"tables", tables_of(translator)},
                {"logical", range_to_json(translator.logical)},
                {"physical", range_to_json(translator.physical)},
                {"argument", translator.has(Trait::takes_type)  ? json("T")
                             : translator.has(Trait::takes_key) ? json("K")
                                                                : json(nullptr)},
                {"hidesFailures", translator.has(Trait::hides_failures)},
                {"notes", notes_on(translator)},
                {"fields", fields.items()},
                {"sections", std::move(sections)},
                {"lengths", std::move(lengths)}};
    if (names != nullptr) {
        if (json named = names_to_json(translator, *names); !named.empty()) {
            result["names"] = std::move(named);
        }
    }
    return result;
}

json titles_to_json() {
    json list = json::array();
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        list.push_back(catalogue::title_of_table(table));
    }
    return list;
}

json statuses_to_json() {
    json list = json::object();
    for (const std::int32_t status : {NPXLATE_OK, NPXLATE_INVALID, NPXLATE_OUT_OF_RANGE, NPXLATE_NOT_SUPPORTED}) {
        list[std::to_string(status)] = {catalogue::status_name(status), catalogue::status_words(status)};
    }
    return list;
}

json kinds_to_json() {
    json list = json::array();
    for (unsigned kind = 0; kind <= static_cast<unsigned>(Kind::left_alone); ++kind) {
        list.push_back(explain::to_string(static_cast<Kind>(kind)));
    }
    return list;
}

// As it may stand between script tags.
std::string data(const names::Names* names) {
    Pool texts;
    json translators = json::array();
    for (const Translator& translator : catalogue::translators()) {
        translators.push_back(translator_to_json(translator, names, texts));
    }
    const std::string text =
        json{{"kinds", kinds_to_json()},      {"statuses", statuses_to_json()}, {"titles", titles_to_json()},
             {"txAdjKeyMax", TX_ADJ_KEY_MAX}, {"texts", texts.items()},         {"translators", std::move(translators)}}
            .dump();
    std::string safe;
    for (const char c : text) {
        if (c == '<') {
            safe += "\\u003c";
        } else {
            safe += c;
        }
    }
    return safe;
}

void fill_in(std::string& text, std::string_view place, std::string_view what) {
    text.replace(text.find(place), place.size(), what);
}

}  // namespace

std::string page(const names::Names* names) {
    std::string text{page_html};
    fill_in(text, "{css}", page_css);
    fill_in(text, "{data}", data(names));
    fill_in(text, "{records}", page_records);
    fill_in(text, "{js}", page_js);
    return text;
}

}  // namespace atlas
