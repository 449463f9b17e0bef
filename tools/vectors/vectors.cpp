#include "vectors/vectors.h"

#include <algorithm>
#include <set>

#include "forms/forms.h"
#include "vectors/choose.h"

namespace vectors {
namespace {

using catalogue::Role;
using catalogue::Trait;
using forms::Form;
using forms::Forms;

// Bits as bytes.
template <typename BitAt>
Bytes bytes_of(std::size_t count, BitAt&& bit_at) {
    Bytes bytes(count);
    for (std::size_t bit = 0; bit < 8 * count; ++bit) {
        bytes[bit / 8] |= static_cast<std::uint8_t>(std::uint32_t{bit_at(bit)} << bit % 8);
    }
    return bytes;
}

Vector vector_of(const Forms& forms, const Sample& sample) {
    const Translator& translator = forms.translator();
    const forms::Given given = sample.given();
    const Form& form = forms.of(given);
    Vector vector{.translator = &translator, .form = form.name};
    vector.call = {.in = sample.in, .length = forms.length(), .out_before = sample.out};
    if (translator.has(Trait::takes_type)) {
        vector.call.type = sample.argument;
    }
    if (translator.has(Trait::takes_key)) {
        // Of the key, one byte is looked at.
        vector.call.key.assign(catalogue::of_table(catalogue::tables_of(translator).front(), Role::key).logical.most,
                               0xa5);
        vector.call.key.back() = static_cast<std::uint8_t>(sample.argument);
    }
    if (sample.tx_adj_key_max != TX_ADJ_KEY_MAX) {
        vector.call.tx_adj_key_max = sample.tx_adj_key_max;
    }
    vector.outcome.status = form.status;
    if (form.status == NPXLATE_OK) {
        vector.outcome.length = form.length;
    }
    if (accepted(translator, form.status, form.length)) {
        vector.outcome.out =
            bytes_of(sample.out.size(), [&](std::size_t bit) { return forms.value(form.out[bit], given); });
    }
    vector.outcome.in = bytes_of(sample.in.size(), [&](std::size_t bit) {
        const auto changed = form.in_after.find(static_cast<std::uint16_t>(bit));
        return changed != form.in_after.end() ? forms.value(changed->second, given)
                                              : given.bit(npxlate::trace::bit_id(forms::Space::in, bit));
    });
    return vector;
}

bool same(const Forms& a, const Forms& b) {
    return std::ranges::equal(a.all(), b.all(), [](const Form& x, const Form& y) {
        return x.condition == y.condition && x.status == y.status && x.length == y.length && x.out == y.out &&
               x.in_after == y.in_after;
    });
}

// The length arguments to try besides that of the longest record: all that the translator takes, and those just beside
// them where it checks.
std::set<std::int32_t> other_lengths(const Translator& translator) {
    const auto least = static_cast<std::int32_t>(translator.in().least);
    const auto most = static_cast<std::int32_t>(translator.in().most);
    std::set<std::int32_t> lengths;
    if (least == most) {
        lengths.insert(0);
        if (translator.has(Trait::checks_length)) {
            lengths.insert(std::max(0, least - 1));
        }
    }
    for (std::int32_t length = least; length < most; ++length) {
        lengths.insert(length);
    }
    if (translator.has(Trait::checks_length)) {
        lengths.insert(most + 1);
    }
    lengths.erase(most);
    return lengths;
}

}  // namespace

bool accepted(const Translator& translator, std::int32_t status, const std::optional<std::uint32_t>& length) {
    return status == NPXLATE_OK && (length || translator.role == Role::reverse || translator.has(Trait::keeps_length));
}

std::vector<Vector> vectors_of(const Translator& translator) {
    std::vector<Vector> vectors;
    const Forms& longest = forms::forms_of(translator);
    const auto add = [&](const Forms& forms, const std::vector<Sample>& samples) {
        for (const Sample& sample : samples) {
            vectors.push_back(vector_of(forms, sample));
        }
    };
    const auto out_bytes = [](const Forms& forms) { return forms.all().front().out.size() / 8; };
    const std::vector<Sample> samples = choose(longest, translator.in().most, out_bytes(longest));
    add(longest, samples);
    for (const std::int32_t length : other_lengths(translator)) {
        const Forms forms{translator, length};
        if (same(forms, longest)) {
            // The translator does not look at the length.
            if (translator.in().fixed()) {
                add(forms, {samples.front()});
            }
        } else if (translator.in().allows(static_cast<std::size_t>(length))) {
            add(forms, choose(forms, static_cast<std::size_t>(length), out_bytes(forms)));
        } else {
            add(forms,
                {choose(forms, std::max(translator.in().most, static_cast<std::size_t>(length)), out_bytes(forms))
                     .front()});
        }
    }
    return vectors;
}

}  // namespace vectors
