// npxlate vectors: calls of the translators and what must come of them, for others to hold themselves to.

#include <memory>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"
#include "npxlate/lookup.h"
#include "npxlate/output.h"
#include "vectors/vectors.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;
using vectors::Vector;

std::string to_line(const Vector& vector) {
    const Translator& translator = *vector.translator;
    Json json{{"translator", translator.name},
              {"form", vector.form},
              {"in", to_hex(vector.call.in)},
              {"length_in", vector.call.length}};
    if (translator.has(Trait::takes_type)) {
        json["argument"] = vector.call.type;
    }
    if (translator.has(Trait::takes_key)) {
        json["argument"] = to_hex(vector.call.key);
    }
    if (vector.call.tx_adj_key_max) {
        json["tx_adj_key_max"] = *vector.call.tx_adj_key_max;
    }
    json["out_before"] = to_hex(vector.call.out_before);
    if (vector.outcome.out) {
        json["out"] = to_hex(*vector.outcome.out);
    }
    json["status"] = vector.outcome.status;
    if (vector.outcome.length) {
        json["length"] = *vector.outcome.length;
    }
    if (vector.outcome.in != vector.call.in) {
        json["in_after"] = to_hex(vector.outcome.in);
    }
    return json.dump() + "\n";
}

// The translators of the tables and of the names; of all, if none is named.
std::vector<const Translator*> named(const std::vector<std::string>& tables_or_names) {
    std::vector<const Translator*> wanted;
    for (const std::string& name : tables_or_names) {
        if (const auto table = parse_number(name, NPXLATE_TABLE_COUNT - 1)) {
            for (const Role role : {Role::key, Role::result, Role::reverse}) {
                wanted.push_back(&catalogue::of_table(static_cast<unsigned>(*table), role));
            }
        } else {
            wanted.push_back(&find_translator(name));
        }
    }
    if (tables_or_names.empty()) {
        for (const Translator& translator : catalogue::translators()) {
            wanted.push_back(&translator);
        }
    }
    return wanted;
}

}  // namespace

void add_vectors(Command app) {
    struct Options {
        std::vector<std::string> tables;
        std::string out = "-";
    };
    const Command command = app.add_subcommand("vectors", "Write test vectors that decide every bit of every form");
    command.footer(
        "JSON Lines, a call a line: translator, form, in, length_in, argument (where there is a fourth), "
        "tx_adj_key_max\n"
        "(where it is not the initial value), out_before, out (absent after a failure), status, length (absent where\n"
        "none is stored), in_after (where it changes).\n"
        "Example: npxlate vectors 4 tx_adjacency_type_xlate_result -o vectors.jsonl");
    const auto options = std::make_shared<Options>();
    command.add_option("TABLE_OR_NAME", options->tables, "Tables or translators; without: all of them");
    command.add_option("-o,--output", options->out, "Where to write it; without: standard output");
    command.callback([options] {
        const std::vector<const Translator*> wanted = named(options->tables);
        Output output{options->out};
        for (const Translator* translator : wanted) {
            for (const Vector& vector : vectors::vectors_of(*translator)) {
                output.write(to_line(vector));
            }
        }
        output.close();
    });
}

}  // namespace tool
