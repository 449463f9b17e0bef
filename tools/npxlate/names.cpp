// npxlate names: a names file from a program's debug information.

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "names/import.h"
#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/output.h"

namespace tool {
namespace {

using catalogue::Role;

// ---- import

constexpr const char* elf_help = "A program, library, archive, object or debug file with debug information (-g)";
constexpr const char* debug_folder_help = "A folder of separate debug files, as debuggers have one";

struct ImportOptions {
    names::ElfFile elf;
    std::string structure;
    std::string unit;
    std::string table_or_name;
    std::string role;
    std::string bytes;
    std::vector<std::string> as;
    std::string output = "-";
};

// A translator's name says its role.
const catalogue::Translator& find_subject(const ImportOptions& options) {
    if (options.role.empty() && !table_id(options.table_or_name)) {
        const catalogue::Translator& translator = find_translator(options.table_or_name);
        if (translator.role == Role::reverse) {
            throw WrongInput{
                fmt::format("{} is a reverse translator: expected the key or result translator of a "
                            "logical record",
                            translator.name)};
        }
        return translator;
    }
    return find_translator(options.table_or_name, options.role == "key" ? Role::key : Role::result);
}

names::ImportRequest request_of(const ImportOptions& options) {
    names::ImportRequest request;
    request.elf = options.elf;
    request.structure = options.structure;
    request.unit = options.unit;
    request.translator = &find_subject(options);
    request.table = table_id(options.table_or_name);
    if (!options.bytes.empty()) {
        const auto size = parse_number(options.bytes, NPXLATE_MAX_LOGICAL_LENGTH);
        if (!size || *size == 0) {
            throw WrongInput{fmt::format("bad --bytes {}: expected a number from 1 to {}", printable(options.bytes),
                                         NPXLATE_MAX_LOGICAL_LENGTH)};
        }
        request.size = *size;
    }
    for (const std::string& as : options.as) {
        const auto equals = as.rfind('=');
        if (equals == std::string::npos) {
            throw WrongInput{fmt::format("bad --as {}: expected NAME=STYLE, such as nexthop=ipv4", printable(as))};
        }
        request.as.emplace_back(as.substr(0, equals), as.substr(equals + 1));
    }
    return request;
}

void run_import(const ImportOptions& options) {
    const names::ImportRequest request = request_of(options);
    std::string text;
    std::vector<std::string> left_out;
    try {
        const names::Imported imported = names::import(request);
        left_out = imported.structure.left_out;
        text = names::write(imported);
    } catch (const names::Error& error) {
        throw WrongInput{error.what()};
    }
    Output out{options.output};
    out.write(text);
    out.close();
    for (const std::string& one : left_out) {
        note("left out: " + one);
    }
}

void add_import(Command command) {
    const Command import_command =
        command.add_subcommand("import", "Write the names of a record from the structure that a program has for it");
    import_command.footer("Example: npxlate names import --elf card --struct rx_adjacency --table 4 >> names.toml");
    const auto options = std::make_shared<ImportOptions>();
    import_command.add_option("--elf", options->elf.path, elf_help).required();
    import_command.add_option("--debug-dir", options->elf.debug_folder, debug_folder_help);
    import_command.add_option("--struct", options->structure, "The structure, by its name or that of a typedef")
        .required();
    import_command.add_option("--table", options->table_or_name, table_or_name_help).required();
    import_command.add_option("--role", options->role, "key or result; result if only a table id is given")
        .one_of({"key", "result"});
    import_command.add_option("--unit", options->unit, "The source file, where several have such a structure");
    import_command.add_option("--bytes", options->bytes, "The size of the record, where the table takes several");
    import_command.add_option("--as", options->as, "NAME=STYLE: how to write the value (see npxlate names --help)");
    import_command.add_option("-o,--output", options->output, "Write this file instead of standard output");
    import_command.callback([options] { run_import(*options); });
}

// ---- list

struct ListOptions {
    names::ElfFile elf;
    std::string table_or_name;
    std::string role;
    bool json = false;
};

struct Listed {
    names::Structure structure;
    std::vector<names::Fit> fits;
};

std::vector<Listed> list(const ListOptions& options) {
    std::optional<unsigned> table;
    if (!options.table_or_name.empty()) {
        table = table_id(options.table_or_name);
        if (!table) {
            throw WrongInput{fmt::format("bad --table {}: expected a table id from 0 to {}",
                                         printable(options.table_or_name), NPXLATE_TABLE_COUNT - 1)};
        }
    }
    std::vector<Listed> result;
    for (names::Structure& structure : names::list_structures(options.elf)) {
        std::vector<names::Fit> fits = names::tables_for(structure.size);
        std::erase_if(fits, [&](const names::Fit& fit) {
            return (table && fit.table != *table) ||
                   (!options.role.empty() && options.role != catalogue::to_string(fit.role));
        });
        if (!fits.empty()) {
            result.push_back({std::move(structure), std::move(fits)});
        }
    }
    std::ranges::stable_sort(result, {}, [](const Listed& one) { return one.structure.name; });
    return result;
}

std::string to_text(const std::vector<Listed>& all) {
    std::string text = fmt::format("{:>5}  {:<32} {:<24} fits\n", "bytes", "structure", "declared at");
    for (const Listed& one : all) {
        std::vector<std::string> fits;
        for (const Role role : {Role::key, Role::result}) {
            std::vector<std::string> tables;
            for (const names::Fit& fit : one.fits) {
                if (fit.role == role) {
                    tables.push_back(fmt::format("{}{}", fit.table, fit.padding == 0 ? "" : "*"));
                }
            }
            if (!tables.empty()) {
                fits.push_back(fmt::format("{} of {}", catalogue::to_string(role), fmt::join(tables, " ")));
            }
        }
        text += fmt::format("{:>5}  {:<32} {:<24} {}\n", one.structure.size, one.structure.name,
                            one.structure.declared_at, fmt::join(fits, ", "));
    }
    return text + "* the record ends before the structure, whose alignment makes it longer\n";
}

Json to_json(const std::vector<Listed>& all) {
    Json json = Json::array();
    for (const Listed& one : all) {
        Json fits = Json::array();
        for (const names::Fit& fit : one.fits) {
            fits.push_back({{"table", fit.table},
                            {"role", catalogue::to_string(fit.role)},
                            {"bytes", fit.bytes},
                            {"padding", fit.padding}});
        }
        json.push_back({{"structure", one.structure.name},
                        {"kind", one.structure.kind},
                        {"bytes", one.structure.size},
                        {"declared_at", one.structure.declared_at},
                        {"unit", one.structure.unit},
                        {"fits", std::move(fits)}});
    }
    return json;
}

void run_list(const ListOptions& options) {
    const std::vector<Listed> all = list(options);
    if (options.json) {
        print_json(to_json(all));
    } else if (all.empty()) {
        note(fmt::format("{} has no structure as long as a record{}", options.elf.path,
                         options.table_or_name.empty() ? "" : " of table " + options.table_or_name));
    } else {
        print(to_text(all));
    }
}

void add_list(Command command) {
    const Command list_command =
        command.add_subcommand("list", "List a program's structures that are as long as a table's record");
    list_command.footer("Example: npxlate names list --elf card --table 4");
    const auto options = std::make_shared<ListOptions>();
    list_command.add_option("--elf", options->elf.path, elf_help).required();
    list_command.add_option("--debug-dir", options->elf.debug_folder, debug_folder_help);
    list_command.add_option("--table", options->table_or_name, "Only those that fit this table id");
    list_command.add_option("--role", options->role, "Only those that fit a key, or a result")
        .one_of({"key", "result"});
    list_command.add_flag("--json", options->json, "The same as JSON");
    list_command.callback([options] { run_list(*options); });
}

}  // namespace

void add_names(Command app) {
    const Command command = app.add_subcommand("names", "Take the names of records from a program's debug information");
    command.footer(
        "Values are written as number, signed, hex, flag, label, ipv4, ipv6, mac, bytes or words.\n"
        "Example: npxlate names list --elf card");
    command.require_subcommand();
    add_import(command);
    add_list(command);
}

}  // namespace tool
