// What the commands that explain are asked about: a translator in whatever role, and its fourth argument.
#pragma once

#include <string>

#include "explain/explain.h"
#include "npxlate/command_line.h"
#include "npxlate/names_option.h"
#include "npxlate/options.h"
#include "npxlate/output.h"

namespace tool {

class SubjectOptions {
public:
    // TABLE_OR_NAME, --role and --names.
    void add_to(Command command, bool required = true);
    bool given() const { return !table_or_name_.empty(); }
    // Throws WrongInput.
    const catalogue::Translator& find() const;
    // The names of its logical record.
    Naming names() const { return Naming{names_.of(find(), table_or_name_)}; }

private:
    NamesOption names_;
    std::string table_or_name_;
    std::string role_;
};

// What the engine takes for the fourth argument: the type, or the byte of the key that decides.
std::uint32_t engine_argument(const FourthArgument& argument);

// Throws NotDone if the record was rejected.
void check_accepted(const explain::Account& account);

// "rx_adjacency_type_xlate_result, the result of table 4"
std::string describe(const catalogue::Translator& translator);

// Name, role and tables.
Json translator_json(const catalogue::Translator& translator);

// What is moved, computed or constant, and where: as the commands' JSON has it, and in words.
Json field_json(const catalogue::Translator& translator, const explain::Field& field);
std::string describe(const catalogue::Translator& translator, const explain::Field& field);

Json positions_json(char letter, const std::vector<explain::Span>& spans);

}  // namespace tool
