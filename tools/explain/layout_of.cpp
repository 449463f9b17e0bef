#include <algorithm>

#include "explain/fields.h"
#include "forms/conditions.h"

namespace explain {
namespace {

using forms::Form;
using forms::Forms;
using forms::Step;

// A step of some or all forms.
struct Place {
    Step step;
    std::vector<const Form*> forms{};
    forms::Cover answers{};  // what each of the forms had been asked before it
};

// Takes a form into the steps: what it has in common with them is found there again; the rest is put before the next
// that they have in common, after what other forms have there.
void merge(std::vector<Place>& places, const Form& form) {
    std::size_t at = 0;
    const auto find = [&](const Step& step) {
        return std::find_if(places.begin() + static_cast<std::ptrdiff_t>(at), places.end(),
                            [&](const Place& place) { return place.step == step; });
    };
    for (std::size_t i = 0; i < form.steps.size(); ++i) {
        auto found = find(form.steps[i]);
        if (found == places.end()) {
            for (std::size_t later = i + 1; later < form.steps.size() && found == places.end(); ++later) {
                found = find(form.steps[later]);
            }
            found = places.insert(found, Place{.step = form.steps[i]});
        }
        forms::Answers answers;
        for (const forms::Answer& answer : form.answers) {
            if (answer.steps_before <= i) {
                answers.emplace_back(answer.question, answer.yes);
            }
        }
        if (std::ranges::find(found->answers, answers) == found->answers.end()) {
            found->answers.push_back(std::move(answers));
        }
        found->forms.push_back(&form);
        at = static_cast<std::size_t>(found - places.begin()) + 1;
    }
}

// A value that code puts, as it stands in a form that writes nothing over it; as it is said if there is none.
std::vector<Field> fields_of_value(const Forms& forms, const Place& place) {
    for (const Form* form : place.forms) {
        const auto number =
            static_cast<std::uint16_t>(std::ranges::find(form->steps, place.step) - form->steps.begin());
        const forms::Writer writer{number, 0};
        const auto first = form->writers.begin() + place.step.bits.first_bit;
        if (std::all_of(first, first + place.step.bits.width,
                        [&](const auto& writers) { return writers == std::vector{writer}; })) {
            std::vector<Field> fields = fields_of(*form, out_bits(forms, *form, form->out.size()));
            std::erase_if(fields, [&](const Field& field) {
                return field.to.front().first_bit < place.step.bits.first_bit ||
                       field.to.front().first_bit >= place.step.bits.first_bit + place.step.bits.width;
            });
            return fields;
        }
    }
    return fields_of(place.step);
}

Section section_of(const Forms& forms, const Place& place) {
    Section section{.title = place.step.layout == nullptr ? "" : place.step.layout->title,
                    .by_code = place.step.layout == nullptr,
                    .condition = npxlate::trace::never};
    for (const Form* form : place.forms) {
        section.condition = forms.diagrams().either(section.condition, form->condition);
    }
    if (section.condition != npxlate::trace::always) {
        section.when = forms::in_words(forms, forms::simplest(forms, place.answers, section.condition));
    }
    section.fields = place.step.kind == Step::put ? fields_of_value(forms, place) : fields_of(place.step);
    if (place.step.kind == Step::changed_input) {
        section.input_changes.push_back({.bits = {place.step.bits}, .text = place.step.words});
    }
    return section;
}

std::vector<Place> places_of(const Forms& forms) {
    std::vector<Place> places;
    for (const Form& form : forms.all()) {
        merge(places, form);
    }
    return places;
}

std::vector<Section> sections_of(const Forms& forms, const std::vector<Place>& places) {
    std::vector<Section> sections;
    sections.reserve(places.size());
    for (const Place& place : places) {
        sections.push_back(section_of(forms, place));
    }
    return sections;
}

}  // namespace

std::vector<Section> sections_of(const Forms& forms) { return sections_of(forms, places_of(forms)); }

LayoutTable layout_of(const Translator& translator, std::optional<std::int32_t> length) {
    const Forms& forms = forms::forms_of(translator, length.value_or(static_cast<std::int32_t>(translator.in().most)));
    const std::vector<Place> places = places_of(forms);
    LayoutTable table{.forms = &forms, .sections = sections_of(forms, places)};
    for (const Form& form : forms.all()) {
        FormLayout layout{.form = &form, .when = forms::when(forms, form)};
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (std::ranges::find(places[i].forms, &form) != places[i].forms.end()) {
                layout.sections.push_back(i);
            }
        }
        layout.fields = fields_of(form, out_bits(forms, form, form.out.size()));
        layout.input_changes = input_changes(form);
        table.all.push_back(std::move(layout));
    }
    return table;
}

}  // namespace explain
