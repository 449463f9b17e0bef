// The names file that a command shows names from.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <CLI/App.hpp>

#include "names/names.h"
#include "npxlate/output.h"

namespace tool {

class NamesOption {
public:
    // --names FILE.
    void add_to(CLI::App& command);

    // The file of the option, else that of the environment's NPXLATE_NAMES, else npxlate/names.toml in the user's
    // configuration folder, if it is there. Throws WrongInput for a file that cannot be used.
    const names::Names* read();

    // The names of the translator's logical record, null if there are none; of the record of that table, if the user
    // named the translator by a table.
    const names::Record* of(const catalogue::Translator& translator, std::string_view table_or_name);

private:
    std::string path_;
    bool has_read_ = false;
    std::optional<names::Names> names_;
};

// The id, if the user named the translator by a table.
std::optional<unsigned> table_id(std::string_view table_or_name);

// A name beside its position, and its value in the record if there is one at hand.
Json field_json(const names::Field& field);
Json field_json(const names::Field& field, std::span<const std::uint8_t> record);

}  // namespace tool
