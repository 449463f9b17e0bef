#include "atlas/atlas.h"

#include <map>
#include <set>
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
using explain::Kind;
using explain::Link;
using nlohmann::json;
using npxlate::Span;

// Texts and fields recur from variant to variant: each is written once and then named by its number.
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
json spans_to_json(const std::vector<Span>& spans) {
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

// [kind, text, title, to, from, links, combines], without what is empty at the end.
json field_to_json(const Field& field, Pool& texts) {
    json list{static_cast<unsigned>(field.kind), texts.number_of(field.text), texts.number_of(field.title),
              spans_to_json(field.to),
              // What moves comes from where the links say.
              field.kind == Kind::computed ? spans_to_json(field.from) : json::array(), links_to_json(field.links),
              field.combines ? 1 : 0};
    while (list.back() == 0 || list.back() == json::array()) {
        list.erase(list.size() - 1);
    }
    return list;
}

json fields_to_json(const std::vector<Field>& fields, Pool& pool, Pool& texts) {
    json list = json::array();
    for (const Field& field : fields) {
        list.push_back(pool.number_of(field_to_json(field, texts)));
    }
    return list;
}

// The bits of the record that goes in by which the form is chosen.
std::vector<Span> looked_at(const forms::Forms& forms, const forms::Form& form) {
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

json form_to_json(const explain::LayoutTable& table, const explain::FormLayout& layout, forms::ExactNodes& exact,
                  Pool& fields, Pool& texts) {
    json changes = json::array();
    for (const explain::InputChange& change : layout.input_changes) {
        changes.push_back({spans_to_json(change.bits), texts.number_of(change.text)});
    }
    return {{"name", layout.form->name},
            {"when", layout.when},
            {"condition", exact.number(layout.form->condition)},
            {"status", layout.form->status},
            {"fields", fields_to_json(layout.fields, fields, texts)},
            {"changes", std::move(changes)},
            {"looks", spans_to_json(looked_at(*table.forms, *layout.form))}};
}

json notes_on(const Translator& translator) {
    static constexpr std::pair<Trait, const char*> notes[] = {
        {Trait::changes_input, "Writes into the record that goes in."},
        {Trait::keeps_length, "Does not store the length of the record that comes out."},
        {Trait::keeps_buffer, "Does not clear the whole of the record that comes out before it writes."},
        {Trait::takes_type, "Takes the entry type as its fourth argument."},
        {Trait::takes_key, "Takes the logical key as its fourth argument."},
        {Trait::checks_length, "Returns 22 for a length that it does not take."},
        {Trait::rejects_records, "Returns a status other than 0 for some records."},
        {Trait::hides_failures, "Returns 0 even for a record that it rejects: only the length is not stored."},
    };
    json list = json::array();
    for (const auto& [trait, text] : notes) {
        if (translator.has(trait)) {
            list.push_back(text);
        }
    }
    return list;
}

json lengths_to_json(const Lengths& lengths) { return {lengths.least, lengths.most}; }

json translator_to_json(const Translator& translator, Pool& texts) {
    const explain::LayoutTable table = explain::layout_of(translator);
    forms::ExactNodes exact{*table.forms};
    Pool fields;
    json all = json::array();
    for (const explain::FormLayout& layout : table.all) {
        all.push_back(form_to_json(table, layout, exact, fields, texts));
    }
    // Three numbers a node: the bit, and where to go on when it is clear and when it is set.
    json nodes = json::array();
    for (const auto& [bit, if_clear, if_set] : exact.all()) {
        nodes.insert(nodes.end(), {bit, if_clear, if_set});
    }
    return {{"name", translator.name},
            {"role", to_string(translator.role)},
            {"family", translator.family},
            {"tables", tables_of(translator)},
            {"logical", lengths_to_json(translator.logical)},
            {"physical", lengths_to_json(translator.physical)},
            {"notes", notes_on(translator)},
            {"fields", fields.items()},
            {"nodes", std::move(nodes)},
            {"forms", std::move(all)}};
}

json kinds_to_json() {
    json list = json::array();
    for (unsigned kind = 0; kind <= static_cast<unsigned>(Kind::left_alone); ++kind) {
        list.push_back(explain::to_string(static_cast<Kind>(kind)));
    }
    return list;
}

// As it may stand between script tags.
std::string data() {
    Pool texts;
    json translators = json::array();
    for (const Translator& translator : catalogue::translators()) {
        translators.push_back(translator_to_json(translator, texts));
    }
    const std::string text =
        json{{"kinds", kinds_to_json()}, {"texts", texts.items()}, {"translators", std::move(translators)}}.dump();
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

std::string page() {
    std::string text{page_html};
    fill_in(text, "{css}", page_css);
    fill_in(text, "{data}", data());
    fill_in(text, "{js}", page_js);
    return text;
}

}  // namespace atlas
