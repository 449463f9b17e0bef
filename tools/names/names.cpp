#include "names/names.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace names {
namespace {

using catalogue::Role;
using catalogue::Translator;

bool is_generic(const Translator& translator) { return translator.family == "frame"; }

// The reverse that fills the record which the result translator reads; null if there is none.
const Translator* reverse_of(const Translator& forward, std::optional<unsigned> table) {
    if (forward.role != Role::result) {
        return nullptr;
    }
    const std::vector<unsigned> tables = catalogue::tables_of(forward);
    const Translator* reverse = nullptr;
    if (table || !tables.empty()) {
        reverse = &catalogue::of_table(table.value_or(tables.empty() ? 0 : tables.front()), Role::reverse);
    } else {
        // Those that are reached by name only follow one another in the catalogue.
        const auto all = catalogue::translators();
        const auto next = static_cast<std::size_t>(&forward - all.data()) + 1;
        reverse = next < all.size() && all[next].role == Role::reverse ? &all[next] : nullptr;
    }
    // What the generic reverse gives is the physical record of a table that has a result translator of its own.
    return reverse != nullptr && is_generic(*reverse) && !is_generic(forward) ? nullptr : reverse;
}

// The bits of the value that lie in the spans, as runs.
void add_mentions(const Field& field, std::span<const Span> bits, std::vector<Mention>& result) {
    bool open = false;
    unsigned at = 0;
    for (const Span piece : field.bits) {
        for (unsigned bit = piece.first_bit; bit < piece.first_bit + piece.width; ++bit, ++at) {
            const bool inside = std::ranges::any_of(
                bits, [bit](const Span& span) { return bit >= span.first_bit && bit < span.first_bit + span.width; });
            if (inside && open) {
                result.back().high = at;
            } else if (inside) {
                result.push_back({&field, at, at});
            }
            open = inside;
        }
    }
}

}  // namespace

const Field* Record::find(std::string_view name) const {
    const auto found = std::ranges::find(fields, name, &Field::name);
    return found == fields.end() ? nullptr : &*found;
}

const Translator* forward_of(const Translator& translator, std::optional<unsigned> table) {
    if (translator.role != Role::reverse) {
        return &translator;
    }
    const std::vector<unsigned> tables = catalogue::tables_of(translator);
    const Translator* forward = nullptr;
    if (table || (!tables.empty() && !is_generic(translator))) {
        forward = &catalogue::of_table(table.value_or(tables.empty() ? 0 : tables.front()), Role::result);
    } else {
        const auto all = catalogue::translators();
        const auto at = static_cast<std::size_t>(&translator - all.data());
        forward = at > 0 ? &all[at - 1] : nullptr;
    }
    return forward != nullptr && reverse_of(*forward, table) == &translator ? forward : nullptr;
}

std::size_t longest_record(const Translator& forward, std::optional<unsigned> table) {
    const Translator* const reverse = reverse_of(forward, table);
    const std::size_t read_back = reverse != nullptr && reverse->in().fixed() ? reverse->out().most : 0;
    return std::max(forward.in().most, read_back);
}

const Record* Names::of(const Translator& translator, std::optional<unsigned> table) const {
    const Translator* const forward = forward_of(translator, table);
    const Record* found = nullptr;
    for (const Record& record : records_) {
        if (record.translator != forward || (table && record.table && *table != *record.table)) {
            continue;
        }
        if (!table && record.table && is_generic(*forward)) {
            continue;  // any table's
        }
        if (found != nullptr && found->table && record.table) {
            throw Error{fmt::format("{} names the record of {} for tables {} and {}: expected a table id", source_,
                                    translator.name, *found->table, *record.table)};
        }
        // What is said of the table is more than what is said of the translator.
        if (found == nullptr || record.table) {
            found = &record;
        }
    }
    return found;
}

std::vector<const Record*> Names::all_of(const Translator& translator) const {
    std::vector<const Record*> all;
    for (const Record& record : records_) {
        const bool stands_in_table =
            record.table && &catalogue::of_table(*record.table, translator.role) == &translator;
        if (record.translator == (record.table ? forward_of(translator, record.table) : forward_of(translator)) &&
            (!record.table || stands_in_table)) {
            all.push_back(&record);
        }
    }
    return all;
}

std::string to_string(const Mention& mention) {
    if (mention.whole()) {
        return mention.field->name;
    }
    return mention.high == mention.low ? fmt::format("{}[{}]", mention.field->name, mention.low)
                                       : fmt::format("{}[{}:{}]", mention.field->name, mention.high, mention.low);
}

bool holds(const Condition& condition, std::span<const std::uint8_t> record) {
    return condition.empty() || std::ranges::any_of(condition, [&](const std::vector<Requirement>& together) {
               return std::ranges::all_of(together, [&](const Requirement& requirement) {
                   return extract(record, requirement.bits) == requirement.value;
               });
           });
}

std::string to_string(const Condition& condition) {
    std::vector<std::string> alternatives;
    for (const std::vector<Requirement>& together : condition) {
        std::vector<std::string> texts;
        texts.reserve(together.size());
        for (const Requirement& requirement : together) {
            texts.push_back(requirement.text);
        }
        alternatives.push_back(fmt::format("{}", fmt::join(texts, " ")));
    }
    return fmt::format("{}", fmt::join(alternatives, " or "));
}

std::vector<Mention> mentions(const Record& names, std::span<const Span> bits) {
    std::vector<Mention> result;
    for (const Field& field : names.fields) {
        add_mentions(field, bits, result);
    }
    return result;
}

std::vector<Mention> mentions(const Record& names, std::span<const Span> bits, std::span<const std::uint8_t> record) {
    std::vector<Mention> result;
    for (const Field* const field : fields_of(names, record)) {
        add_mentions(*field, bits, result);
    }
    return result;
}

std::string describe(const Record& names, std::span<const Span> bits) {
    std::vector<std::string> texts;
    for (const Mention& mention : mentions(names, bits)) {
        texts.push_back(to_string(mention));
    }
    return fmt::format("{}", fmt::join(texts, ", "));
}

std::string describe(const Record& names, std::span<const Span> bits, std::span<const std::uint8_t> record) {
    std::vector<std::string> texts;
    for (const Mention& mention : mentions(names, bits, record)) {
        // The value is that of the whole name, also where only some of its bits are meant.
        texts.push_back(fmt::format("{} = {}", mention.field->name, value_in(*mention.field, record)));
    }
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    return fmt::format("{}", fmt::join(texts, ", "));
}

std::vector<const Field*> fields_of(const Record& names, std::span<const std::uint8_t> record) {
    std::vector<const Field*> result;
    for (const Field& field : names.fields) {
        if (holds(field.when, record)) {
            result.push_back(&field);
        }
    }
    return result;
}

}  // namespace names
