// Records that entries give by names and positions: {"nexthop": "192.0.2.1", "L0.3": 1}.
#pragma once

#include <optional>
#include <string_view>

#include "names/names.h"

namespace tool {

// The translator's logical record with these values, and 0 where nothing is said. The names are those of the table's
// record, if a table is given. Throws WrongInput.
names::Bytes record_of_fields(std::string_view json, const catalogue::Translator& translator,
                              std::optional<unsigned> table, const names::Names* names);

}  // namespace tool
