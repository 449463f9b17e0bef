#include <algorithm>
#include <stdexcept>

#include "explain/fields.h"
#include "explain/positions.h"
#include "explain/run.h"
#include "forms/conditions.h"

namespace explain {
namespace {

namespace trace = npxlate::trace;

// As many bytes as the translator writes or says it wrote.
std::size_t out_bytes(const Translator& translator, const forms::Form& form) {
    std::size_t bytes = form.status == NPXLATE_OK ? form.length.value_or(0) : 0;
    if (translator.out().fixed()) {
        bytes = translator.out().most;
    }
    for (std::size_t bit = 0; bit < form.writers.size(); ++bit) {
        const bool kept = form.out[bit] == trace::bit_of(trace::bit_id(trace::Space::out, bit));
        bytes = kept ? bytes : std::max(bytes, bit / 8 + 1);
    }
    return bytes;
}

// What every bit of the record does: which bits of the other change with it, or whether it makes it another form.
void follow(Account& account, const forms::Given& given) {
    const forms::Forms& forms = *account.forms;
    std::vector<std::vector<std::uint16_t>> shows_in(account.in_bits.size());
    std::set<std::uint16_t> looked_at;
    for (std::size_t i = 0; i < account.out_bits.size(); ++i) {
        const auto to = static_cast<std::uint16_t>(i);
        const auto take = [&](std::uint16_t from) {
            looked_at.insert(from);
            if (from < shows_in.size()) {
                shows_in[from].push_back(to);
            }
        };
        for (const Link& link : account.out_bits[i].links) {
            take(link.from);
        }
        std::ranges::for_each(account.out_bits[i].from, take);
    }
    for (const forms::Answer& answer : account.form->answers) {
        for (const trace::BitId id : forms.diagrams().depends_on(forms.questions()[answer.question].node)) {
            if (trace::space_of(id) == trace::Space::in) {
                looked_at.insert(static_cast<std::uint16_t>(trace::index_of(id)));
            }
        }
    }
    for (const auto& [bit, after] : account.form->in_after) {
        for (const trace::BitId id : forms.diagrams().depends_on(trace::node_of(forms.diagrams(), after))) {
            looked_at.insert(static_cast<std::uint16_t>(trace::index_of(id)));
        }
    }

    Bytes record = account.in;
    forms::Given flipped = given;
    flipped.in = record;
    for (std::size_t i = 0; i < account.in_bits.size(); ++i) {
        InBit& bit = account.in_bits[i];
        bit.value = bit_of(account.in, i);
        const auto number = static_cast<std::uint16_t>(i);
        if (!looked_at.contains(number)) {
            continue;
        }
        const auto flip = static_cast<std::uint8_t>(1U << i % 8);
        record[i / 8] ^= flip;
        bit.decides = &forms.of(flipped) != account.form;
        for (const std::uint16_t to : shows_in[i]) {
            const bool is_moved = !account.out_bits[to].links.empty();
            const forms::Bit& out = account.form->out[to];
            if (bit.decides ? is_moved : forms.value(out, flipped) != account.out_bits[to].value) {
                bit.to.push_back(to);
            }
        }
        record[i / 8] ^= flip;
        bit.fate = bit.to.empty() ? Fate::steered : Fate::carried;
    }
}

}  // namespace

std::string_view to_string(Kind kind) {
    switch (kind) {
        case Kind::copied:
            return "copied";
        case Kind::reversed:
            return "reversed";
        case Kind::inverted:
            return "inverted";
        case Kind::label:
            return "label";
        case Kind::constant:
            return "constant";
        case Kind::computed:
            return "computed";
        case Kind::cleared:
            return "cleared";
        case Kind::left_alone:
            return "left_alone";
    }
    return "";
}

std::string_view to_string(Fate fate) {
    switch (fate) {
        case Fate::carried:
            return "carried";
        case Fate::steered:
            return "steered";
        case Fate::dropped:
            return "dropped";
    }
    return "";
}

Account account(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument) {
    if (record.size() < translator.in().least) {
        throw std::invalid_argument{std::string{translator.name} + " takes longer records"};
    }
    const Run run = run_translator(translator, record, argument, 0);
    const forms::Forms& forms = forms::forms_of(translator, static_cast<std::int32_t>(record.size()));
    const forms::Given given{.in = record, .out = {}, .argument = argument};
    const forms::Form& form = forms.of(given);
    const std::size_t bytes = out_bytes(translator, form);

    Account result{.translator = &translator, .argument = argument, .forms = &forms, .form = &form};
    result.when = forms::when(forms, form);
    result.in = {record.begin(), record.end()};
    result.in_after = run.in;
    result.out = {run.out.begin(), run.out.begin() + static_cast<std::ptrdiff_t>(bytes)};
    result.status = run.status;
    result.length = run.length;
    result.out_bits = out_bits(forms, form, 8 * bytes);
    result.in_bits.resize(8 * record.size());
    for (const forms::Step& step : form.steps) {
        const std::string title = step.layout == nullptr ? "" : step.layout->title;
        if (!title.empty() && std::ranges::find(result.titles, title) == result.titles.end()) {
            result.titles.push_back(title);
        }
    }
    for (std::size_t i = 0; i < result.out_bits.size(); ++i) {
        result.out_bits[i].value = bit_of(result.out, i);
    }
    follow(result, given);
    result.fields = fields_of(form, result.out_bits);
    result.input_changes = input_changes(form);
    return result;
}

}  // namespace explain
