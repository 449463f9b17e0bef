// npxlate build: a logical record of names or positions, and its translation.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/options.h"
#include "npxlate/output.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Translator;

struct Options {
    std::string table_or_name;
    std::vector<std::string> assignments;
    bool key = false;
    bool result = false;
    std::string from;
    Option from_option;
    std::string bytes;
    NamesOption names;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool json = false;
};

const Translator& find_subject(const Options& options) {
    if (table_id(options.table_or_name) || options.key || options.result) {
        return find_translator(options.table_or_name, options.key ? Role::key : Role::result);
    }
    const Translator& translator = find_translator(options.table_or_name);
    if (translator.role == Role::reverse) {
        throw WrongInput{
            fmt::format("{} takes a physical record: expected a key or result translator, whose logical "
                        "record is built",
                        translator.name)};
    }
    return translator;
}

std::vector<names::Assignment> assignments_of(const Options& options) {
    std::vector<names::Assignment> assignments;
    for (const std::string& text : options.assignments) {
        const auto equals = text.find('=');
        if (equals == std::string::npos || equals == 0) {
            throw WrongInput{
                fmt::format("\"{}\": expected NAME=VALUE or POSITION=VALUE, such as L4-5=0x123", printable(text))};
        }
        assignments.push_back({text.substr(0, equals), text.substr(equals + 1)});
    }
    return assignments;
}

// What is changed: the record that there is, or zeros.
Bytes start_of(const Options& options, const Translator& translator, const names::Record* names) {
    if (options.from_option.given()) {
        Bytes record = parse_hex(options.from);
        check_length(translator, record.size());
        return record;
    }
    std::size_t size = names == nullptr ? translator.in().most : names->size;
    if (!options.bytes.empty()) {
        const auto number = parse_number(options.bytes, most_record_bytes);
        if (!number) {
            throw WrongInput{fmt::format("bad --bytes {}: expected a number from 0 to {}", printable(options.bytes),
                                         most_record_bytes)};
        }
        size = *number;
    } else if (names == nullptr && !translator.in().fixed()) {
        throw WrongInput{fmt::format("{} takes records of {}: expected --bytes N or --from HEX", translator.name,
                                     describe(translator.in()))};
    }
    check_length(translator, size);
    return Bytes(size);
}

void run(const Options& options) {
    const Translator& translator = find_subject(options);
    options.tx_adj_key_max.apply({&translator});
    const Naming naming{options.names.of(translator, options.table_or_name)};
    const names::Record* const names = naming.record();
    const std::vector<names::Assignment> assignments = assignments_of(options);
    const Bytes logical = names::entry_from_fields(start_of(options, translator, names), names, assignments);

    Bytes in = logical;  // which a few translators change
    in.reserve(1);
    Bytes physical(most_record_bytes);
    const Reply reply = translate(translator, in.data(), in.size(), physical.data(), {});
    physical.resize(reply.size);
    if (options.json) {
        Json json{{"translator", translator.name},
                  {"role", catalogue::to_string(translator.role)},
                  {"status", reply.status},
                  {"status_name", status_name(reply.status)},
                  {"logical", to_hex(logical)}};
        if (names != nullptr) {
            json["names"] = names_json(*names, logical);
        }
        json["physical"] = reply.translated ? Json(to_hex(physical)) : Json(nullptr);
        print_json(json);
    } else {
        print(fmt::format("logical   {}\n{}", to_hex(logical),
                          reply.translated ? fmt::format("physical  {}\n", to_hex(physical)) : ""));
        for (const std::string& unused : names::unused_names(logical, names, assignments)) {
            note(unused);
        }
    }
    if (!reply.translated) {
        throw NotDone{rejection(translator, reply)};
    }
}

}  // namespace

void add_build(Command app) {
    const Command command = app.add_subcommand("build", "Make a record of names or positions, and translate it");
    command.footer("Example: npxlate build 4 nexthop_ip=192.0.2.1 L0.5=1 --names names.toml");
    const auto options = std::make_shared<Options>();
    command.add_option("TABLE_OR_NAME", options->table_or_name, table_or_name_help).required();
    command.add_option(
        "NAME=VALUE", options->assignments,
        "What to set: a name of the names file, or logical bits (L3.4, L3.4-2, L12, L12-15); the rest is 0");
    const Option key = command.add_flag("--key", options->key, "The key of the table");
    command.add_flag("--result", options->result, "The result of the table, as without an option").excludes(key);
    options->from_option =
        command.add_option("--from", options->from, "Change this logical record, given as hex").may_be_empty();
    command.add_option("--bytes", options->bytes, "The size of the record, where the table takes several")
        .excludes(options->from_option);
    options->names.add_to(command);
    options->tx_adj_key_max.add_to(command);
    command.add_flag("--json", options->json, "Both records as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
