// npxlate audit: does the card hold what was programmed?

#include "audit/audit.h"

#include <sys/resource.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "audit/report.h"
#include "io/input.h"
#include "npxlate/audit_entries.h"
#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/input.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/options.h"
#include "npxlate/output.h"
#include "npxlate/progress.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Translator;

struct Options {
    std::string programmed;
    std::vector<std::string> held;
    std::vector<std::string> raw;
    std::vector<std::string> tables;
    std::vector<std::string> ignore;
    std::vector<std::string> ignore_files;
    std::string limit;
    std::string memory;
    std::string html;
    NamesOption names;
    ThreadsOption threads;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool json = false;
    bool moving = false;
    bool quiet = false;
};

std::size_t number_option(const char* name, const std::string& given, std::size_t otherwise, std::size_t least) {
    if (given.empty()) {
        return otherwise;
    }
    const auto number = parse_number(given, std::numeric_limits<std::uint32_t>::max());
    if (!number || *number < least) {
        throw WrongInput{fmt::format("bad {} {}: expected a number from {}", name, printable(given), least)};
    }
    return *number;
}

unsigned parse_table(std::string_view option, std::string_view text) {
    const auto table = parse_number(text, NPXLATE_TABLE_COUNT - 1);
    if (!table) {
        throw WrongInput{fmt::format("bad {} {}: expected a table id from 0 to {}", option, printable(text),
                                     NPXLATE_TABLE_COUNT - 1)};
    }
    return static_cast<unsigned>(*table);
}

Tables chosen_tables(const std::vector<std::string>& chosen) {
    Tables tables;
    for (const std::string& text : chosen) {
        tables.set(parse_table("--table", text));
    }
    return chosen.empty() ? tables.set() : tables;
}

std::string whole_file(const std::string& path) {
    io::InputStream stream{path};
    std::string text;
    std::array<char, 4096> block{};
    while (const std::size_t count = stream.read(block.data(), block.size())) {
        text.append(block.data(), count);
    }
    return text;
}

audit::Ignored read_ignored(const Options& options) {
    audit::Ignored ignored;
    for (const std::string& text : options.ignore) {
        try {
            ignored.add(text);
        } catch (const std::invalid_argument& error) {
            throw WrongInput{fmt::format("bad --ignore {}: {}", printable(text), error.what())};
        }
    }
    for (const std::string& path : options.ignore_files) {
        try {
            ignored.add_lines(whole_file(path));
        } catch (const std::invalid_argument& error) {
            throw WrongInput{fmt::format("{}, {}", path, error.what())};
        }
    }
    return ignored;
}

// A number that stands in a file, behind a word if there is one.
std::optional<std::size_t> number_in(const std::string& path, const std::string& word = "") {
    std::ifstream file{path};
    if (!word.empty()) {
        std::string found;
        while (file >> found && found != word) {
        }
    }
    std::size_t number = 0;
    return file >> number ? std::optional{number} : std::nullopt;
}

// What the limits of this control group and of those that it is in leave. What the system only keeps of files counts
// as used there, but it gives way.
std::size_t free_in_groups() {
    std::size_t free = std::numeric_limits<std::size_t>::max();
    std::string group;
    std::ifstream groups{"/proc/self/cgroup"};
    for (std::string line; std::getline(groups, line);) {
        if (line.starts_with("0::/")) {
            group = line.substr(3);
        }
    }
    for (bool outer = !group.empty(); outer;) {
        group.erase(group.find_last_not_of('/') + 1);
        outer = !group.empty();
        const std::string folder = "/sys/fs/cgroup" + group + "/";
        const auto limit = number_in(folder + "memory.max");
        const auto used = number_in(folder + "memory.current");
        if (limit && used) {
            const std::size_t kept = number_in(folder + "memory.stat", "inactive_file").value_or(0) +
                                     number_in(folder + "memory.stat", "active_file").value_or(0);
            free = std::min(free, *limit - std::min(*limit, *used - std::min(*used, kept)));
        }
        group.erase(std::min(group.rfind('/'), group.size()));
    }
    return free;
}

// What a new program may take of the memory without the machine beginning to swap, by the limits that hold for it.
std::size_t free_memory() {
    std::size_t free = free_in_groups();
    if (const auto kilobytes = number_in("/proc/meminfo", "MemAvailable:")) {
        free = std::min(free, *kilobytes * 1024);
    }
    rlimit address_space{};
    if (::getrlimit(RLIMIT_AS, &address_space) == 0 && address_space.rlim_cur != RLIM_INFINITY) {
        free = std::min<std::size_t>(free, address_space.rlim_cur);
    }
    constexpr std::size_t tenths_of_it = 9;
    return free / 10 * tenths_of_it;
}

audit::Input open(const std::string& path, audit::MakeReader make_reader) {
    const auto stream = std::make_shared<io::InputStream>(path);
    note_waiting(*stream, "entries, one a line,");
    return {.source = {.name = path == "-" ? "standard input" : path,
                       .read = [stream](char* to, std::size_t room) { return stream->read(to, room); },
                       .size = stream->size()},
            .make_reader = std::move(make_reader)};
}

struct Raw {
    unsigned table = 0;
    std::size_t key_bytes = 0;
    std::size_t record_bytes = 0;
    std::string path;
};

// TABLE=FILE, or TABLE:KEY_BYTES,RECORD_BYTES=FILE where the table takes several lengths.
Raw parse_raw(const std::string& text) {
    const auto wrong = [&](const std::string& expected) {
        return WrongInput{fmt::format("bad --raw {}: expected {}", printable(text), expected)};
    };
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals + 1 == text.size()) {
        throw wrong("a table id, = and a file, such as 13=table13.bin");
    }
    const std::string_view before = std::string_view{text}.substr(0, equals);
    const std::size_t colon = std::min(before.find(':'), before.size());
    Raw raw{.table = parse_table("--raw", before.substr(0, colon)), .path = text.substr(equals + 1)};
    const Translator& key = catalogue::of_table(raw.table, Role::key);
    const Translator& result = catalogue::of_table(raw.table, Role::result);
    raw.key_bytes = key.logical.most;
    raw.record_bytes = result.physical.most;
    if (colon < before.size()) {
        const std::string_view lengths = before.substr(colon + 1);
        const std::size_t comma = std::min(lengths.find(','), lengths.size());
        const auto key_bytes = parse_number(lengths.substr(0, comma), key.logical.most);
        const auto record_bytes =
            comma < lengths.size() ? parse_number(lengths.substr(comma + 1), result.physical.most) : std::nullopt;
        if (!key_bytes || !record_bytes || !key.logical.allows(*key_bytes) || *key_bytes == 0 ||
            !result.physical.allows(*record_bytes) || *record_bytes == 0) {
            throw wrong(
                fmt::format("behind the colon the bytes of a logical key ({}), a comma and those of a physical "
                            "result ({})",
                            describe(key.logical), describe(result.physical)));
        }
        raw.key_bytes = *key_bytes;
        raw.record_bytes = *record_bytes;
    } else if (!key.logical.fixed() || !result.physical.fixed()) {
        throw wrong(
            fmt::format("{}:KEY_BYTES,RECORD_BYTES=FILE, since table {} takes several lengths", raw.table, raw.table));
    }
    return raw;
}

void check_standard_input(const Options& options, const std::vector<Raw>& raws) {
    auto uses = std::ranges::count(options.held, "-") + std::ranges::count(raws, "-", &Raw::path);
    uses += options.programmed == "-" ? 1 : 0;
    if (uses > 1) {
        throw WrongInput{"expected - for one of the inputs only: standard input can be read once"};
    }
}

// Dumps, oldest first. Raw files of one table belong to one dump each, in their order.
std::vector<std::vector<audit::Input>> open_dumps(const Options& options, const std::vector<Raw>& raws,
                                                  const Tables& tables) {
    std::array<std::size_t, NPXLATE_TABLE_COUNT> of_table{};
    for (const Raw& raw : raws) {
        ++of_table[raw.table];
    }
    std::size_t count = options.held.size();
    if (count == 0) {
        count = *std::ranges::max_element(of_table);
    }
    if (count == 0) {
        throw WrongInput{"expected HELD, the card's entries, or --raw TABLE=FILE"};
    }
    if (count > audit::most_dumps) {
        throw WrongInput{fmt::format("{} dumps are too many: expected at most {}", count, audit::most_dumps)};
    }
    std::vector<std::vector<audit::Input>> dumps(count);
    for (std::size_t i = 0; i < options.held.size(); ++i) {
        dumps[i].push_back(open(options.held[i], held_entries(tables)));
    }
    std::array<std::size_t, NPXLATE_TABLE_COUNT> next{};
    for (const Raw& raw : raws) {
        if (of_table[raw.table] != count) {
            throw WrongInput{
                fmt::format("--raw names {} file{} of table {}, but there are {} dumps: expected one for "
                            "each dump",
                            of_table[raw.table], of_table[raw.table] == 1 ? "" : "s", raw.table, count)};
        }
        if (tables.test(raw.table)) {
            audit::Input input = open(raw.path, raw_entries(raw.table, raw.key_bytes));
            input.source.record_bytes = raw.record_bytes;
            input.raw_of = raw.table;
            dumps[next[raw.table]++].push_back(std::move(input));
        }
    }
    return dumps;
}

std::optional<std::uint64_t> total_size(const audit::Input& programmed,
                                        const std::vector<std::vector<audit::Input>>& dumps) {
    std::optional<std::uint64_t> total = programmed.source.size;
    for (const std::vector<audit::Input>& dump : dumps) {
        for (const audit::Input& input : dump) {
            total = total && input.source.size ? std::optional{*total + *input.source.size} : std::nullopt;
        }
    }
    return total;
}

// Whether nothing was found.
bool audit_all(const Options& options) {
    constexpr std::size_t findings_of_text = 20;
    constexpr std::size_t findings_of_page = 2000;
    constexpr std::size_t mebibyte = std::size_t{1} << 20U;
    const Tables tables = chosen_tables(options.tables);
    const std::size_t limit = number_option("--limit", options.limit, 0, 0);
    std::vector<Raw> raws;
    for (const std::string& text : options.raw) {
        raws.push_back(parse_raw(text));
    }
    check_standard_input(options, raws);
    audit::Settings settings;
    settings.ignored = read_ignored(options);
    settings.threads = options.threads.read();
    settings.memory =
        options.memory.empty() ? free_memory() : number_option("--memory", options.memory, 0, 1) * mebibyte;
    options.tx_adj_key_max.apply({});
    const std::optional<names::Names> named = options.names.read();
    const names::Names* const names = named ? &*named : nullptr;

    const audit::Input programmed = open(options.programmed, programmed_entries(tables, names));
    const std::vector<std::vector<audit::Input>> dumps = open_dumps(options, raws, tables);
    Output output{"-"};
    std::optional<Output> page;
    if (!options.html.empty()) {
        page.emplace(options.html);
    }
    Progress progress{!options.quiet && progress_can_show(false), total_size(programmed, dumps)};
    settings.progress = [&](std::size_t bytes, std::size_t entries) { progress.advance(bytes, entries); };
    std::unique_ptr<audit::Result> result;
    try {
        result = audit::audit(programmed, dumps, settings);
    } catch (const audit::TooLarge& error) {
        throw WrongInput{
            fmt::format("{}; with --table N the entries of that table alone are kept: audit a table at a "
                        "time, or a few (--memory MIB allows more)",
                        error.what())};
    } catch (const std::bad_alloc&) {
        throw WrongInput{
            "the entries do not fit into memory; with --table N the entries of that table alone are kept: audit a "
            "table "
            "at a time, or a few"};
    }
    progress.clear();

    const auto most = [&](std::size_t otherwise) { return options.limit.empty() ? otherwise : limit; };
    if (page) {
        page->write(audit::Report{*result, settings, most(findings_of_page), options.moving, names}.page());
        page->close();
    }
    const auto write = [&](std::string_view text) { output.write(text); };
    if (options.json) {
        audit::Report{*result, settings, most(std::numeric_limits<std::size_t>::max()), options.moving, names}
            .write_json(write);
    } else {
        audit::Report{*result, settings, most(findings_of_text), options.moving, names}.write_text(write);
    }
    output.close();
    return result->clean();
}

void run(const Options& options) {
    run_as_comparison([&options] {
        if (!audit_all(options)) {
            throw RecordsDiffer{};
        }
    });
}

}  // namespace

void add_audit(Command app) {
    const Command command = app.add_subcommand("audit", "Compare what a card holds with what was programmed");
    command.footer(
        "PROGRAMMED has logical entries, HELD physical ones, as batch takes and gives them, in any order:\n"
        "  {\"table\": 17, \"key\": \"HEX\", \"result\": \"HEX\"}\n"
        "  {\"table\": 17, \"physical_key\": \"HEX\", \"physical_result\": \"HEX\"}\n"
        "Given several dumps of a running card, oldest first, only what is wrong in all of them is found.\n"
        "Exit status: 0 nothing found, 1 findings, 2 trouble.\n"
        "Example: npxlate audit programmed.jsonl card.jsonl --ignore 13:P0.3 --html report.html");
    const auto options = std::make_shared<Options>();
    command.add_option("PROGRAMMED", options->programmed, "What was programmed; - for standard input").required();
    command.add_option("HELD", options->held,
                       "What the card holds; - for standard input; several: dumps, oldest first");
    command.add_option("--raw", options->raw, "Results of one table by a numeric key, one behind the other: TABLE=FILE")
        .type_name("TABLE=FILE")
        .one_value_a_time();
    command.add_option("--table", options->tables, "Only this table; several times for several").one_value_a_time();
    command
        .add_option("--ignore", options->ignore,
                    "Bits that the card itself changes: TABLE:POSITIONS, such as 13:P0.3,P12-15")
        .one_value_a_time();
    command.add_option("--ignore-file", options->ignore_files, "A file with such a TABLE:POSITIONS a line")
        .one_value_a_time();
    command.add_option("--limit", options->limit,
                       "List at most so many findings; otherwise 20, with --json all, on a page 2000");
    command.add_flag("--moving", options->moving, "List also what differs in some of the dumps only");
    command.add_flag("--json", options->json, "JSON Lines: a finding a line, the summary last");
    command.add_option("--html", options->html, "Write a page to this file, too");
    options->names.add_to(command);
    options->tx_adj_key_max.add_to(command);
    options->threads.add_to(command);
    command.add_option("--memory", options->memory, "How many MiB the entries may take; otherwise what is free");
    command.add_flag("-q,--quiet", options->quiet, "No progress bar");
    command.callback([options] { run(*options); });
}

}  // namespace tool
