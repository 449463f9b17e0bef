#include "npxlate/entry_fields.h"

#include <algorithm>
#include <string>
#include <vector>

#include <fmt/core.h>

#include "io/entry.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"

namespace tool {
namespace {

bool is_whole_number(std::string_view value) {
    value.remove_prefix(value.starts_with('-') ? 1 : 0);
    return !value.empty() && std::ranges::all_of(value, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

names::Bytes record_of_fields(std::string_view json, const catalogue::Translator& translator,
                              std::optional<unsigned> table, const names::Names* names) {
    if (!json.starts_with('{')) {
        throw WrongInput{R"(expected names and positions with their values, such as {"nexthop": "192.0.2.1"})"};
    }
    io::Entry fields;
    fields.parse(json);
    std::vector<names::Assignment> assignments;
    for (const auto& [name, written, value] : fields.members()) {
        if (!io::is_string(value) && !is_whole_number(value) && value != "true" && value != "false") {
            throw WrongInput{fmt::format("{}: expected a string, a whole number, true or false", name)};
        }
        std::string storage;
        assignments.push_back(
            {std::string{name}, std::string{io::is_string(value) ? io::text_of(value, storage) : value}});
    }
    const names::Record* const record = names == nullptr ? nullptr : names->of(translator, table);
    if (record == nullptr && !translator.in().fixed()) {
        throw WrongInput{fmt::format("{} takes records of {}: expected names that say the size", translator.name,
                                     describe(translator.in()))};
    }
    return names::entry_from_fields(names::Bytes(record == nullptr ? translator.in().most : record->size), record,
                                    assignments);
}

}  // namespace tool
