// From what the user types to a translator of the catalogue.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/catalogue.h"

namespace tool {

// What TABLE_OR_NAME means, for the help of the commands that take one.
inline constexpr const char* table_or_name_help = "A table id (0 to 127, or 0x0 to 0x7f) or a translator's name";

// A number, decimal or after 0x hexadecimal; nothing if the text is anything else or above most.
std::optional<unsigned long> parse_number(std::string_view text, unsigned long most);

// The translator of that role in the table of that id, or of that name. Throws WrongInput for an id that is none, for a
// name that is none (suggesting the nearest) and for a translator of another role.
const catalogue::Translator& find_translator(std::string_view table_or_name, catalogue::Role role);

// By name, whatever its role.
const catalogue::Translator& find_translator(std::string_view name);

// "3 bytes", "0 to 47 bytes"
std::string describe(const catalogue::Lengths& lengths);

}  // namespace tool
