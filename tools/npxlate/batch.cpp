// npxlate batch: any number of records.

#include "npxlate/batch.h"

#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <fmt/format.h>
#include <CLI/App.hpp>

#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/options.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Translator;

struct Options {
    std::string file = "-";
    std::string out = "-";
    std::string raw;
    std::string length;
    ArgumentOptions argument;
    TxAdjKeyMaxOption tx_adj_key_max;
    NamesOption names;
    bool quiet = false;
};

// ROLE:TABLE_OR_NAME
const Translator& find_raw(const std::string& raw) {
    const std::size_t colon = raw.find(':');
    for (const Role role : {Role::key, Role::result, Role::reverse}) {
        if (colon != std::string::npos && raw.substr(0, colon) == catalogue::to_string(role)) {
            return find_translator(std::string_view{raw}.substr(colon + 1), role);
        }
    }
    throw WrongInput{
        fmt::format("bad --raw {}: expected key, result or reverse, a colon and a table id or name, such "
                    "as result:13",
                    printable(raw))};
}

std::size_t raw_length(const Translator& translator, const std::string& given) {
    std::size_t length = translator.in().most;
    if (!given.empty()) {
        const auto number = parse_number(given, std::numeric_limits<std::uint32_t>::max());
        if (!number) {
            throw WrongInput{fmt::format("bad --length {}: expected a number of bytes", printable(given))};
        }
        length = *number;
        check_length(translator, length);
    } else if (!translator.in().fixed()) {
        throw WrongInput{
            fmt::format("{} takes records of {}: expected --length N", translator.name, describe(translator.in()))};
    }
    if (length == 0) {
        throw WrongInput{fmt::format("{} would take records of no bytes: expected at least 1", translator.name)};
    }
    return length;
}

void run(const Options& options) {
    const FourthArgument argument = options.argument.read();
    const Translator* raw = nullptr;
    std::size_t length = 0;
    if (!options.raw.empty()) {
        raw = &find_raw(options.raw);
        check_argument(*raw, argument, "--type", "--logical-key");
        length = raw_length(*raw, options.length);
    } else if (!options.length.empty() || argument.type || argument.key) {
        throw WrongInput{"--length, --type and --logical-key go with --raw: in JSON Lines each entry says its own"};
    }
    options.tx_adj_key_max.apply();

    InputStream input{options.file};
    const bool to_file = options.out != "-";
    if (to_file && input.is(options.out)) {
        throw WrongInput{fmt::format("cannot write {}: it is the input", options.out)};
    }
    Output output{options.out};
    Progress progress{!options.quiet && progress_can_show(to_file), input.size()};
    if (raw != nullptr) {
        translate_raw(*raw, length, argument, input, output, progress);
    } else {
        const std::optional<names::Names> names = options.names.read();
        translate_json_lines(names ? &*names : nullptr, input, output, progress);
    }
}

}  // namespace

void add_batch(CLI::App& app) {
    CLI::App* const command = app.add_subcommand("batch", "Translate many entries");
    command->footer(
        "JSON Lines, an entry a line; other members pass through as they are:\n"
        "  {\"table\": 17, \"key\": \"HEX\", \"result\": \"HEX\"}   to the same with physical records\n"
        "  {\"table\": 17, \"physical_result\": \"HEX\"}         to \"logical_result\"; with \"type\" (table 52)\n"
        "                                                or \"logical_key\" (table 92)\n"
        "  {\"table\": 4, \"fields\": {\"nexthop\": \"192.0.2.1\"}}  to \"physical_result\" beside it; \"key_fields\" likewise\n"
        "In place of an id, \"table\" may be a translator's name, for the record of its role. Entries that cannot be\n"
        "translated are reported by line number and left out.\n"
        "Example: npxlate batch entries.jsonl -o physical.jsonl\n"
        "         npxlate batch --raw result:17 < logical.bin > physical.bin");
    const auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "What to translate; - or nothing: standard input");
    command->add_option("-o,--output", options->out, "Where to write it; without: standard output");
    command->add_option("--raw", options->raw,
                        "Binary records of one translator instead of JSON Lines: ROLE:TABLE_OR_NAME");
    command->add_option("--length", options->length,
                        "With --raw: the bytes of a record, where the table takes several");
    options->argument.add_to(*command, "--logical-key");
    options->tx_adj_key_max.add_to(*command);
    options->names.add_to(*command);
    command->add_flag("-q,--quiet", options->quiet, "No progress bar");
    command->callback([options] { run(*options); });
}

}  // namespace tool
