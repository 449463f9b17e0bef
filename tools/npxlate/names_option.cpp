#include "npxlate/names_option.h"

#include <cstdlib>
#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

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

void NamesOption::add_to(Command command) {
    command.add_option("--names", path_, "Show the names of this file beside the positions");
}

std::optional<names::Names> NamesOption::read() const {
    std::string path = path_.empty() ? variable("NPXLATE_NAMES") : path_;
    path = path.empty() ? configured_file() : path;
    return path.empty() ? std::nullopt : std::optional{names::Names::read(path)};
}

std::optional<names::Record> NamesOption::of(const catalogue::Translator& translator,
                                             std::string_view table_or_name) const {
    const std::optional<names::Names> all = read();
    const names::Record* const record = all ? all->of(translator, table_id(table_or_name)) : nullptr;
    return record == nullptr ? std::nullopt : std::optional{*record};
}

std::optional<unsigned> table_id(std::string_view table_or_name) {
    const auto id = parse_number(table_or_name, NPXLATE_TABLE_COUNT - 1);
    return id ? std::optional{static_cast<unsigned>(*id)} : std::nullopt;
}

Json names_json(const names::Record& names, std::span<const std::uint8_t> record) {
    Json json = Json::array();
    for (const names::Field* const field : names::fields_of(names, record)) {
        json.push_back({{"name", field->name},
                        {"at", names::positions_text(field->bits)},
                        {"as", names::to_string(field->style)},
                        {"value", names::value_in(*field, record)}});
    }
    return json;
}

std::vector<std::string> Naming::at(char letter, std::span<const names::Span> bits,
                                    std::optional<std::span<const std::uint8_t>> logical) const {
    std::vector<std::string> texts;
    if (!names_ || letter != 'L') {
        return texts;
    }
    for (const names::Mention& mention :
         logical ? names::mentions(*names_, bits, *logical) : names::mentions(*names_, bits)) {
        texts.push_back(names::to_string(mention));
    }
    return texts;
}

std::string Naming::suffix(char letter, std::span<const names::Span> bits,
                           std::optional<std::span<const std::uint8_t>> logical) const {
    const std::vector<std::string> texts = at(letter, bits, logical);
    return texts.empty() ? "" : fmt::format(" [{}]", fmt::join(texts, ", "));
}

void Naming::add_to(Json& json, char letter, std::span<const names::Span> bits,
                    std::optional<std::span<const std::uint8_t>> logical) const {
    if (names_ && letter == 'L') {
        json["names"] = at(letter, bits, logical);
    }
}

}  // namespace tool
