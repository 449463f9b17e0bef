#include "forms/forms.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "catalogue/call.h"
#include "forms/conditions.h"
#include "trace/traced.h"

namespace forms {
namespace {

namespace trace = npxlate::trace;

catalogue::Function traced_namesake(const Translator& translator) {
    const catalogue::Function function = traced::find(translator.name);
    if (function == nullptr) {
        throw std::logic_error{std::string{translator.name} + " is not among the traced translators"};
    }
    return function;
}

// As many bits as the record may have, or more if more are written.
std::size_t out_bits(const Translator& translator, const trace::Content& out) {
    std::size_t bits = 8 * translator.out().most;
    for (std::size_t bit = bits; bit < out.bits.size(); ++bit) {
        if (out.bits[bit] != trace::bit_of(trace::bit_id(Space::out, bit))) {
            bits = 8 * (bit / 8 + 1);
        }
    }
    return bits;
}

}  // namespace

char in_letter(const Translator& translator) { return translator.role == catalogue::Role::reverse ? 'P' : 'L'; }
char out_letter(const Translator& translator) { return translator.role == catalogue::Role::reverse ? 'L' : 'P'; }

bool Given::bit(BitId id) const {
    const unsigned index = trace::index_of(id);
    const auto bit_in = [&](std::span<const std::uint8_t> record) {
        return index / 8 < record.size() && (record[index / 8] >> index % 8 & 1) != 0;
    };
    switch (trace::space_of(id)) {
        case Space::in:
            return bit_in(in);
        case Space::out:
            return bit_in(out);
        case Space::argument: {
            // A key is given by the one byte of it that is looked at.
            constexpr unsigned first_bit_of_key_byte = 56;
            const unsigned shift = index >= first_bit_of_key_byte ? index - first_bit_of_key_byte : index;
            return (argument >> shift & 1) != 0;
        }
        case Space::setting:
            break;
    }
    return (tx_adj_key_max >> index & 1) != 0;
}

Forms::Forms(const Translator& translator, std::int32_t length)
    : translator_{&translator}, length_{length}, diagrams_{std::make_unique<Diagrams>()} {
    const catalogue::Function traced = traced_namesake(translator);
    const bool is_reverse = translator.role == catalogue::Role::reverse;
    // Their addresses alone matter.
    std::uint8_t in = 0;
    std::uint8_t out = 0;
    const catalogue::Argument argument{0};
    const catalogue::FourthArgument fourth = argument;
    const void* const argument_address = translator.reverse_by_key != nullptr ? fourth.key : fourth.type;
    trace::Recorder recorder{*diagrams_, is_reverse ? npxlate::Side::physical : npxlate::Side::logical, &in, &out,
                             argument_address};
    // Neither a size nor a length argument, nor next to one.
    const std::uint32_t not_stored = static_cast<std::uint32_t>(length) ^ 0x55555555U;
    std::int32_t status = 0;
    std::uint32_t stored = not_stored;
    trace::each_way(
        [&] {
            recorder.reset();
            stored = not_stored;
            status = catalogue::call(translator, traced, &in, length, &out, &stored, argument);
        },
        [&](const trace::Way& way) {
            Form form{.condition = way.condition, .status = status, .steps = recorder.steps()};
            if (stored != not_stored) {
                form.length = stored;
            }
            for (const trace::Decision& decision : way.decisions) {
                form.answers.push_back({question(decision), decision.taken, decision.steps_before});
            }
            const std::size_t bits = out_bits(translator, recorder.out());
            form.out.assign(recorder.out().bits.begin(),
                            recorder.out().bits.begin() + static_cast<std::ptrdiff_t>(bits));
            form.writers.assign(recorder.out().writers.begin(),
                                recorder.out().writers.begin() + static_cast<std::ptrdiff_t>(bits));
            for (std::size_t bit = 0; bit < recorder.in().bits.size(); ++bit) {
                if (recorder.in().bits[bit] != trace::bit_of(trace::bit_id(Space::in, bit))) {
                    form.in_after.emplace(bit, recorder.in().bits[bit]);
                }
            }
            forms_.push_back(std::move(form));
        });
    name_forms();
}

std::size_t Forms::question(const trace::Decision& decision) {
    const auto found = std::ranges::find(questions_, decision.node, &Question::node);
    if (found != questions_.end()) {
        return static_cast<std::size_t>(found - questions_.begin());
    }
    questions_.push_back({decision.node, decision.truth.words(), decision.truth.opposite()});
    return questions_.size() - 1;
}

// A form is called after the layouts that not every record gets, and by its condition where that does not tell it
// apart.
void Forms::name_forms() {
    if (forms_.size() == 1) {
        forms_.front().name = "every record";
        return;
    }
    const auto placed_by_all = [&](const Step& step) {
        return std::ranges::all_of(
            forms_, [&](const Form& form) { return std::ranges::find(form.steps, step) != form.steps.end(); });
    };
    std::map<std::string, unsigned> uses;
    for (Form& form : forms_) {
        std::vector<std::string> titles;
        for (const Step& step : form.steps) {
            if (step.kind != Step::placed || placed_by_all(step)) {
                continue;
            }
            const std::string title = step.layout->title;
            // "variant A" goes without saying beside "variant A, 24 bits".
            std::erase_if(titles, [&](const std::string& before) { return title.starts_with(before); });
            if (!title.empty()) {
                titles.push_back(title);
            }
        }
        for (const std::string& title : titles) {
            form.name += (form.name.empty() ? "" : ", ") + title;
        }
        ++uses[form.name];
    }
    for (Form& form : forms_) {
        if (form.name.empty()) {
            form.name = when(*this, form);
        } else if (uses[form.name] > 1) {
            form.name += ": " + when(*this, form);
        }
    }
}

const Form& Forms::of(const Given& given) const {
    for (const Form& form : forms_) {
        if (diagrams_->holds(form.condition, [&](BitId id) { return given.bit(id); })) {
            return form;
        }
    }
    throw std::logic_error{std::string{translator_->name} + " has no form for a record"};
}

bool Forms::value(const Bit& bit, const Given& given) const {
    switch (bit.kind) {
        case Bit::constant:
            return bit.value != 0;
        case Bit::moved:
            return given.bit(static_cast<BitId>(bit.value));
        case Bit::inverted:
            return !given.bit(static_cast<BitId>(bit.value));
        case Bit::function:
            break;
    }
    return diagrams_->holds(bit.value, [&](BitId id) { return given.bit(id); });
}

const Forms& forms_of(const Translator& translator, std::int32_t length) {
    thread_local std::map<std::pair<const Translator*, std::int32_t>, std::unique_ptr<Forms>> known;
    std::unique_ptr<Forms>& forms = known[{&translator, length}];
    if (!forms) {
        forms = std::make_unique<Forms>(translator, length);
    }
    return *forms;
}

const Forms& forms_of(const Translator& translator) {
    return forms_of(translator, static_cast<std::int32_t>(translator.in().most));
}

}  // namespace forms
