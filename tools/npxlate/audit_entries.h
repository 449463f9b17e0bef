// Entries for an audit, of JSON Lines and of raw dumps. Each kind takes the tables that were asked for.
#pragma once

#include <bitset>

#include "audit/reading.h"
#include "catalogue/catalogue.h"
#include "names/names.h"

namespace tool {

using Tables = std::bitset<NPXLATE_TABLE_COUNT>;

// {"table": 17, "key": "HEX", "result": "HEX"}, which are translated; or "key_fields" and "fields", by the names that
// there are, if any.
audit::MakeReader programmed_entries(const Tables& tables, const names::Names* names);

// {"table": 17, "physical_key": "HEX", "physical_result": "HEX"}.
audit::MakeReader held_entries(const Tables& tables);

// Results of one table by the number that is their logical key, of so many bytes.
audit::MakeReader raw_entries(unsigned table, std::size_t key_bytes);

}  // namespace tool
