// The names file that a command shows names from.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "names/names.h"
#include "npxlate/command_line.h"
#include "npxlate/output.h"

namespace tool {

class NamesOption {
public:
    // --names FILE.
    void add_to(Command command);

    // The file of the option, else that of the environment's NPXLATE_NAMES, else npxlate/names.toml in the user's
    // configuration folder, if it is there. Throws names::Error for a file that cannot be used.
    std::optional<names::Names> read() const;

    // The names of the translator's logical record; of the record of that table, if the user named the translator by a
    // table.
    std::optional<names::Record> of(const catalogue::Translator& translator, std::string_view table_or_name) const;

private:
    std::string path_;
};

// The id, if the user named the translator by a table.
std::optional<unsigned> table_id(std::string_view table_or_name);

// Names with what there is to say of them, and their values in a record.
Json names_json(const names::Record& names, std::span<const std::uint8_t> record);

// What the names say of positions that a command shows: nothing for records without names, and for physical ones.
class Naming {
public:
    explicit Naming(std::optional<names::Record> names) : names_{std::move(names)} {}

    const names::Record* record() const { return names_ ? &*names_ : nullptr; }

    // " [nexthop_ip, vqi[11:8]]". With a record at hand, only names that hold for it.
    std::string suffix(char letter, std::span<const names::Span> bits,
                       std::optional<std::span<const std::uint8_t>> logical = {}) const;
    // Adds "names" to what the JSON says of the positions.
    void add_to(Json& json, char letter, std::span<const names::Span> bits,
                std::optional<std::span<const std::uint8_t>> logical = {}) const;

private:
    std::vector<std::string> at(char letter, std::span<const names::Span> bits,
                                std::optional<std::span<const std::uint8_t>> logical) const;

    std::optional<names::Record> names_;
};

}  // namespace tool
