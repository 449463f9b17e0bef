// npxlate batch: any number of records.

#include "npxlate/batch.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <fmt/core.h>

#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/input.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/options.h"
#include "npxlate/taken.h"
#include "npxlate/terminal.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;

struct Options {
    std::string file = "-";
    std::string out = "-";
    std::vector<std::string> raw;
    std::string length;
    std::string rejected;
    ArgumentOptions argument;
    ThreadsOption threads;
    TxAdjKeyMaxOption tx_adj_key_max;
    NamesOption names;
    bool decode = false;
    bool quiet = false;
};

std::size_t raw_length(const Translator& translator, const std::string& given) {
    std::size_t length = translator.in().most;
    if (!given.empty()) {
        length = parse_length(translator, given);
    } else if (!translator.in().fixed()) {
        throw WrongInput{
            fmt::format("{} takes records of {}: expected --length N", translator.name, describe(translator.in()))};
    }
    if (length == 0) {
        throw WrongInput{fmt::format("{} would take records of no bytes: expected at least 1", translator.name)};
    }
    return length;
}

// ROLE:TABLE_OR_NAME, perhaps with :LENGTH
RawRecord find_raw(const std::string& raw, const std::string& length) {
    const std::size_t colon = raw.find(':');
    for (const Role role : {Role::key, Role::result, Role::reverse}) {
        if (colon == std::string::npos || raw.substr(0, colon) != catalogue::to_string(role)) {
            continue;
        }
        const std::size_t second = std::min(raw.find(':', colon + 1), raw.size());
        const Translator& translator =
            find_translator(std::string_view{raw}.substr(colon + 1, second - colon - 1), role);
        return {&translator, raw_length(translator, second < raw.size() ? raw.substr(second + 1) : length)};
    }
    throw WrongInput{
        fmt::format("bad --raw {}: expected key, result or reverse, a colon and a table id or name, such "
                    "as result:13, perhaps with a colon and a number of bytes",
                    printable(raw))};
}

Rejected find_rejected(const std::string& name) {
    if (name == "omit") {
        return Rejected::omitted;
    }
    if (name.empty() || name == "zeros") {
        return Rejected::zeros;
    }
    throw WrongInput{fmt::format("bad --rejected {}: expected zeros or omit", printable(name))};
}

// Each of the arguments must be one that a record of the entry takes.
void check_arguments(const std::vector<RawRecord>& entry, const FourthArgument& argument) {
    for (const RawRecord& record : entry) {
        FourthArgument own;
        if (record.translator->has(Trait::takes_type)) {
            own.type = argument.type;
        }
        if (record.translator->has(Trait::takes_key)) {
            own.key = argument.key;
        }
        check_argument(*record.translator, entry.size() == 1 ? argument : own, "--type", "--key");
    }
}

void run(const Options& options) {
    const FourthArgument argument = options.argument.read();
    std::vector<RawRecord> entry;
    std::vector<const Translator*> translators;
    for (const std::string& raw : options.raw) {
        entry.push_back(find_raw(raw, options.length));
        translators.push_back(entry.back().translator);
    }
    check_arguments(entry, argument);
    if (entry.empty() && (!options.length.empty() || !options.rejected.empty() || argument.type || argument.key)) {
        throw WrongInput{"--length, --rejected, --type and --key go with --raw: in JSON Lines each entry says its own"};
    }
    const Rejected rejected = find_rejected(options.rejected);
    const unsigned threads = options.threads.read();
    options.tx_adj_key_max.apply(translators);

    const bool to_file = options.out != "-";
    if (!entry.empty() && !to_file && is_terminal(STDOUT_FILENO)) {
        throw WrongInput{"standard output is a terminal, and the records are binary: expected -o FILE or a pipe"};
    }
    InputStream input{options.file};
    if (to_file && input.is(options.out)) {
        throw WrongInput{fmt::format("cannot write {}: it is the input", options.out)};
    }
    note_waiting(input, entry.empty() ? "entries, one a line," : "binary records");
    Output output{options.out};
    Progress progress{!options.quiet && progress_can_show(to_file), input.size()};
    if (entry.empty()) {
        const std::optional<names::Names> names = options.names.read();
        translate_json_lines({.names = names ? &*names : nullptr, .decode = options.decode}, input, output, threads,
                             progress);
    } else {
        translate_raw(entry, rejected, argument, input, output, threads, progress);
    }
}

}  // namespace

void add_batch(Command app) {
    const Command command = app.add_subcommand("batch", "Translate many entries");
    command.footer(
        "JSON Lines, an entry a line; other members pass through as they are:\n"
        "  {\"table\": 17, \"key\": \"HEX\", \"result\": \"HEX\"}   to \"physical_key\" and \"physical_result\"\n"
        "  {\"table\": 17, \"physical_result\": \"HEX\"}         to \"logical_result\"; with \"type\" (table 52)\n"
        "                                                or \"logical_key\" (table 92)\n"
        "  {\"table\": 4, \"fields\": {\"nexthop\": \"192.0.2.1\"}}  to \"physical_result\" beside it; \"key_fields\" "
        "likewise\n"
        "  {\"table\": 4, \"physical_result\": \"HEX\"}          with --decode: to \"result\", which gives these "
        "bytes, and\n"
        "                                                \"result_others\", how many other forms do, too\n"
        "In place of an id, \"table\" may be a translator's name, for the record of its role. Entries that cannot be\n"
        "translated are reported by line number and left out. Binary records that are rejected are reported, too; "
        "zeros\n"
        "stand in their place.\n"
        "Example: npxlate batch entries.jsonl -o physical.jsonl\n"
        "         npxlate batch --raw result:17 < logical.bin > physical.bin\n"
        "         npxlate batch --raw key:17 --raw result:17 < entries.bin > physical.bin");
    const auto options = std::make_shared<Options>();
    command.add_option("FILE", options->file, "What to translate; - or nothing: standard input");
    command.add_option("-o,--output", options->out, "Where to write it; without: standard output");
    command
        .add_option("--raw", options->raw,
                    "Binary records instead of JSON Lines: ROLE:TABLE_OR_NAME or ROLE:TABLE_OR_NAME:LENGTH; given\n"
                    "several times, an entry is a record of each, in this order")
        .one_value_a_time();
    command.add_option("--length", options->length, "With --raw: the bytes of a record, where the table takes several");
    command.add_option("--rejected", options->rejected,
                       "With --raw: zeros in the place of a record that is rejected, or omit: nothing");
    options->argument.add_to(command);
    options->tx_adj_key_max.add_to(command);
    options->threads.add_to(command);
    options->names.add_to(command);
    command.add_flag("--decode", options->decode,
                     R"(From physical records to what would have to be programmed: "key" and "result")");
    command.add_flag("-q,--quiet", options->quiet, "No progress bar");
    command.callback([options] { run(*options); });
}

}  // namespace tool
