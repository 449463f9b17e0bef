#include <algorithm>

#include "catalogue/example.h"
#include "explain/parts.h"

namespace explain {
namespace {

// An act of some or all records of a variant.
struct Step {
    Act act;
    unsigned records = 0;
};

// Takes a way into the steps: what it has in common with them is found there again, the rest is put between.
void merge(std::vector<Step>& steps, const Trace& way) {
    std::size_t at = 0;
    for (const Act& act : way.acts) {
        const auto rest = steps.begin() + static_cast<std::ptrdiff_t>(at);
        auto found = std::ranges::find_if(rest, steps.end(),
                                          [&](const Step& step) { return same_act(step.act.event, act.event); });
        if (found == steps.end()) {
            found = steps.insert(rest, {act, 0});
        }
        ++found->records;
        at = static_cast<std::size_t>(found - steps.begin()) + 1;
    }
}

VariantLayout layout_of(const Translator& translator, const catalogue::Variant& variant) {
    // Records of the variant, with what it leaves open at random; of the first ones every bit is flipped as well, for
    // what is placed because of a single bit.
    constexpr unsigned samples = 64;
    constexpr unsigned flipped_samples = 3;
    std::vector<Step> steps;
    unsigned records = 0;
    const auto take = [&](const Bytes& record) {
        merge(steps, trace(translator, record, variant.argument));
        ++records;
    };
    for (unsigned seed = 0; seed < samples; ++seed) {
        Bytes record = example(translator, variant, seed);
        take(record);
        for (std::size_t i = 0; seed < flipped_samples && i < 8 * record.size(); ++i) {
            const auto flip = static_cast<std::uint8_t>(1U << i % 8);
            record[i / 8] ^= flip;
            if (satisfies(record, translator, variant)) {
                take(record);
            }
            record[i / 8] ^= flip;
        }
    }

    VariantLayout result{.name = variant.name, .holds = variant.holds, .argument = variant.argument};
    std::vector<Act> always;
    for (const auto& [act, seen] : steps) {
        const bool in_all = seen == records;
        if (in_all) {
            always.push_back(act);
        }
        for (InputChange& change : input_changes({act})) {
            result.input_changes.push_back(std::move(change));
        }
        Section section{.title = act.event.layout == nullptr ? "" : act.event.layout->title, .always = in_all};
        for (const Part& part : parts_of(act)) {
            section.fields.push_back(field_of(part));
        }
        if (!section.fields.empty()) {
            result.sections.push_back(std::move(section));
        }
    }
    const Account example_account = account(translator, example(translator, variant, 0), variant.argument);
    const Labels labels{always, example_account.out.size()};
    std::vector<OutBit> bits = labels.bits();
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (example_account.out_bits[i].kind == Kind::left_alone) {
            bits[i] = {.kind = Kind::left_alone};
        }
    }
    result.fields = fields_of(labels.labels(), bits);
    return result;
}

}  // namespace

LayoutTable layout_of(const Translator& translator) {
    LayoutTable table{.translator = &translator, .variants = {}};
    for (const catalogue::Variant& variant : translator.variants) {
        table.variants.push_back(layout_of(translator, variant));
    }
    return table;
}

}  // namespace explain
