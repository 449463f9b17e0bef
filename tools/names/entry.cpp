#include <algorithm>
#include <set>

#include <fmt/core.h>

#include "names/names.h"

namespace names {
namespace {

// The name that begins alike for longest; empty if none does.
std::string_view nearest(const Record& names, std::string_view name) {
    std::string_view best;
    std::ptrdiff_t most = 1;
    for (const Field& field : names.fields) {
        const auto alike = std::ranges::mismatch(field.name, name).in2 - name.begin();
        if (alike > most) {
            most = alike;
            best = field.name;
        }
    }
    return best;
}

// The field that the assignment means; bits without a name are a number.
Field field_for(const Record* names, const std::string& name) {
    if (names != nullptr) {
        if (const Field* const found = names->find(name)) {
            return *found;
        }
    }
    if (is_position(name)) {
        return {name, parse_positions(name), Style::hex};
    }
    if (names == nullptr) {
        throw Error{
            fmt::format("\"{}\" is no position, and there are no names for this record: expected logical bits "
                        "such as L3.4, L3.4-2, L12 or L12-15, or a names file",
                        name)};
    }
    const std::string_view near = nearest(*names, name);
    throw Error{fmt::format("there is no name \"{}\": expected one of the names file or a position such as L3.4-2{}",
                            name, near.empty() ? "" : fmt::format("; did you mean {}?", near))};
}

}  // namespace

Bytes entry_from_fields(Bytes record, const Record* names, std::span<const Assignment> assignments) {
    std::vector<std::string> owners(8 * record.size());
    for (const Assignment& assignment : assignments) {
        const Field field = field_for(names, assignment.name);
        for (const Span span : field.bits) {
            for (unsigned bit = span.first_bit; bit < span.first_bit + span.width; ++bit) {
                if (bit >= owners.size()) {
                    throw Error{
                        fmt::format("{} lies outside the record, which has {} bytes", assignment.name, record.size())};
                }
                if (!owners[bit].empty()) {
                    throw Error{fmt::format("{} and {} both set L{}.{}: expected one of them", owners[bit],
                                            assignment.name, bit / 8, bit % 8)};
                }
                owners[bit] = assignment.name;
            }
        }
        insert(record, field.bits, parse_value(field, assignment.value));
    }
    return record;
}

std::vector<std::string> unused_names(const Bytes& record, const Record* names,
                                      std::span<const Assignment> assignments) {
    std::vector<std::string> result;
    for (const Assignment& assignment : assignments) {
        const Field* const field = names == nullptr ? nullptr : names->find(assignment.name);
        if (field != nullptr && !holds(field->when, record)) {
            result.push_back(fmt::format("{} stands for its bits only when {}", field->name, to_string(field->when)));
        }
    }
    return result;
}

}  // namespace names
