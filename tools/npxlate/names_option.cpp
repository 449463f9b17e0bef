#include "npxlate/names_option.h"

#include <cstdlib>
#include <filesystem>

#include "npxlate/lookup.h"

namespace tool {
namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// npxlate/names.toml in the user's configuration folder; empty if it is not there.
std::string configured_file() {
    std::filesystem::path folder = variable("XDG_CONFIG_HOME");
    if (folder.empty() && !variable("HOME").empty()) {
        folder = std::filesystem::path{variable("HOME")} / ".config";
    }
    const std::filesystem::path file = folder / "npxlate" / "names.toml";
    std::error_code ignored;
    return !folder.empty() && std::filesystem::exists(file, ignored) ? file.string() : "";
}

}  // namespace

void NamesOption::add_to(CLI::App& command) {
    command.add_option("--names", path_, "Show the names of this file beside the positions");
}

const names::Names* NamesOption::read() {
    if (!has_read_) {
        has_read_ = true;
        std::string path = path_.empty() ? variable("NPXLATE_NAMES") : path_;
        path = path.empty() ? configured_file() : path;
        if (!path.empty()) {
            names_ = names::Names::read(path);
        }
    }
    return names_ ? &*names_ : nullptr;
}

const names::Record* NamesOption::of(const catalogue::Translator& translator, std::string_view table_or_name) {
    const names::Names* const all = read();
    return all == nullptr ? nullptr : all->of(translator, table_id(table_or_name));
}

std::optional<unsigned> table_id(std::string_view table_or_name) {
    const auto id = parse_number(table_or_name, NPXLATE_TABLE_COUNT - 1);
    return id ? std::optional{static_cast<unsigned>(*id)} : std::nullopt;
}

Json field_json(const names::Field& field) {
    Json json{{"name", field.name}, {"at", names::positions_text(field.bits)}, {"as", names::to_string(field.style)}};
    if (!field.when.empty()) {
        json["when"] = names::to_string(field.when);
    }
    return json;
}

Json field_json(const names::Field& field, std::span<const std::uint8_t> record) {
    Json json = field_json(field);
    json["value"] = names::value_in(field, record);
    return json;
}

}  // namespace tool
