#include "npxlate/subject.h"

#include <cctype>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "explain/positions.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/translation.h"

namespace tool {

using catalogue::Role;
using catalogue::Translator;
using explain::Field;
using explain::Kind;

void SubjectOptions::add_to(Command command, bool required) {
    command.add_option("TABLE_OR_NAME", table_or_name_, table_or_name_help).required(required);
    command.add_option("--role", role_, "key, result or reverse; result if only a table id is given")
        .one_of({"key", "result", "reverse"});
    names_.add_to(command);
}

const Translator& SubjectOptions::find() const {
    if (!given()) {
        throw WrongInput{"TABLE_OR_NAME is missing: expected a table id (0 to 127) or a translator's name"};
    }
    for (const Role role : {Role::key, Role::result, Role::reverse}) {
        if (role_ == catalogue::to_string(role)) {
            return find_translator(table_or_name_, role);
        }
    }
    if (!table_or_name_.empty() && std::isdigit(static_cast<unsigned char>(table_or_name_.front())) != 0) {
        return find_translator(table_or_name_, Role::result);
    }
    return find_translator(table_or_name_);
}

std::uint32_t engine_argument(const FourthArgument& argument) {
    constexpr std::size_t deciding_byte_of_key = 7;
    return argument.type ? *argument.type : argument.key ? argument.key->at(deciding_byte_of_key) : 0;
}

void check_accepted(const explain::Account& account) {
    const bool hidden = account.translator->has(catalogue::Trait::hides_failures) && !account.length;
    if (account.status != NPXLATE_OK || hidden) {
        throw NotDone{rejection(*account.translator, {account.status, account.length, 0, false})};
    }
}

std::string describe(const Translator& translator) {
    const std::vector<unsigned> tables = catalogue::tables_of(translator);
    std::string text = fmt::format("{}, {}", translator.name, catalogue::to_string(translator.role));
    // The generic translators stand in more tables than anyone wants to read.
    constexpr std::size_t most_tables = 4;
    if (!tables.empty() && tables.size() <= most_tables) {
        text += fmt::format(" of table{} {}", tables.size() == 1 ? "" : "s", fmt::join(tables, ", "));
    } else if (!tables.empty()) {
        text += fmt::format(" of {} tables", tables.size());
    }
    return text;
}

Json translator_json(const Translator& translator) {
    return {{"translator", translator.name},
            {"role", catalogue::to_string(translator.role)},
            {"tables", catalogue::tables_of(translator)}};
}

Json positions_json(char letter, const std::vector<explain::Span>& spans) { return explain::positions(letter, spans); }

Json field_json(const Translator& translator, const Field& field) {
    Json json{{"to", positions_json(explain::out_letter(translator), field.to)},
              {"kind", explain::to_string(field.kind)},
              {"from", positions_json(explain::in_letter(translator), field.from)},
              {"text", field.text}};
    if (field.combines) {
        json["ored"] = true;
    }
    json["name"] = field.name.empty() ? Json(nullptr) : Json(field.name);
    json["layout"] = field.title.empty() ? Json(nullptr) : Json(field.title);
    return json;
}

std::string describe(const Translator& translator, const Field& field) {
    const std::string from = explain::position_list(explain::in_letter(translator), field.from);
    std::string text = field.text;
    switch (field.kind) {
        case Kind::constant:
            text = "constant " + field.text;
            break;
        case Kind::computed:
            text += from.empty() ? "" : " (from " + from + ")";
            break;
        case Kind::cleared:
        case Kind::left_alone:
            break;
        case Kind::copied:
            text = from + (field.text == "copied" ? "" : ", " + field.text);
            break;
        default:
            text = from + ", " + field.text;
            break;
    }
    return text + (field.combines ? ", ORed in" : "") + (field.name.empty() ? "" : " (" + field.name + ")");
}

}  // namespace tool
