// What becomes of every bit of a table's records, for all records, in the lines that the page of surprises has of it.
#pragma once

#include <string>
#include <vector>

namespace docs {

// "**Not carried:** L0.7-6, L3." and so on; none if the table has neither key nor result translator of its own.
std::vector<std::string> fates_of_table(unsigned table);

// The page with these lines at the head of each table's entry, in place of those that stand there.
std::string with_fates(const std::string& page);

}  // namespace docs
