// npxlate verify: test vectors, or entries with both records, held against this library or another.

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "explain/explain.h"
#include "explain/positions.h"
#include "io/chunks.h"
#include "io/entry.h"
#include "io/input.h"
#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"
#include "npxlate/lookup.h"
#include "npxlate/output.h"
#include "npxlate/translation.h"
#include "vectors/library.h"
#include "vectors/vectors.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;
using Member = io::Entry::Member;

struct Options {
    std::string file = "-";
    std::string library;
    std::string limit = "20";
    bool json = false;
};

// One call, and what is known of its outcome.
struct Case {
    const Translator* translator = nullptr;
    vectors::Call call{};
    std::int32_t status = NPXLATE_OK;
    bool says_length = false;  // whether a length is stored, and which
    std::optional<std::uint32_t> length{};
    std::optional<Bytes> out{};
    std::optional<Bytes> in_after{};
    bool whole_buffer = true;  // otherwise `out` is a record, and the bits that are not written may be anything
};

struct Finding {
    std::uint64_t line = 0;
    const Translator* translator = nullptr;
    std::string pattern{};               // "differs in P0.3"
    std::vector<std::string> details{};  // "P0.3 is 0, expected 1; it comes from L4.3"
};

// ---- Reading

class Line {
public:
    explicit Line(std::string_view text) { entry_.parse(text); }

    bool has(std::string_view name) const { return find(name) != nullptr; }

    std::uint32_t number(std::string_view name, std::uint32_t most) const {
        const Member& member = get(name);
        const auto value = parse_number(member.value, most);
        if (!value) {
            throw WrongInput{
                fmt::format("\"{}\": expected a number from 0 to {}, found {}", name, most, printable(member.value))};
        }
        return static_cast<std::uint32_t>(*value);
    }
    std::string text(std::string_view name) const {
        const Member& member = get(name);
        if (!io::is_string(member.value)) {
            throw WrongInput{fmt::format("\"{}\": expected a string, found {}", name, printable(member.value))};
        }
        std::string storage;
        return std::string{io::text_of(member.value, storage)};
    }
    Bytes bytes(std::string_view name) const {
        try {
            return parse_hex(text(name));
        } catch (const WrongInput& error) {
            throw WrongInput{fmt::format("\"{}\": {}", name, error.what())};
        }
    }
    // A table's translator, or the one of a name.
    const Translator& translator(Role role) const {
        const Member& member = get("table");
        return find_translator(io::is_string(member.value) ? text("table") : std::string{member.value}, role);
    }

private:
    const Member* find(std::string_view name) const {
        const auto found = std::ranges::find(entry_.members(), name, &Member::name);
        return found == entry_.members().end() ? nullptr : &*found;
    }
    const Member& get(std::string_view name) const {
        const Member* const member = find(name);
        if (member == nullptr) {
            throw WrongInput{fmt::format("expected \"{}\"", name)};
        }
        return *member;
    }

    io::Entry entry_{};
};

constexpr std::size_t most_vector_bytes = 4096;

Case vector_case(const Line& line) {
    const Translator& translator = find_translator(line.text("translator"));
    Case one{.translator = &translator};
    one.call.in = line.bytes("in");
    one.call.length = static_cast<std::int32_t>(line.number("length_in", most_vector_bytes));
    one.call.out_before = line.bytes("out_before");
    // The translator reads and writes so much, whatever the vector says.
    const auto length = static_cast<std::size_t>(one.call.length);
    if (!translator.in().fixed() && !translator.has(Trait::checks_length) && !translator.in().allows(length)) {
        throw WrongInput{
            fmt::format("\"length_in\": {} takes {}, found {}", translator.name, describe(translator.in()), length)};
    }
    if (const std::size_t read = std::max(translator.in().least, std::min(length, translator.in().most));
        one.call.in.size() < read) {
        throw WrongInput{fmt::format("\"in\": {} reads {}, but {} came", translator.name,
                                     describe(catalogue::Lengths{read}), one.call.in.size())};
    }
    if (one.call.out_before.size() < translator.out().most) {
        throw WrongInput{fmt::format("\"out_before\": {} may write {}, but {} came", translator.name,
                                     describe(catalogue::Lengths{translator.out().most}), one.call.out_before.size())};
    }
    if (translator.has(Trait::takes_type)) {
        one.call.type = line.number("argument", std::numeric_limits<std::uint32_t>::max());
    }
    if (translator.has(Trait::takes_key)) {
        one.call.key = line.bytes("argument");
        check_argument(translator, {.type = {}, .key = one.call.key}, "\"argument\":", "\"argument\":");
    }
    if (line.has("tx_adj_key_max")) {
        one.call.tx_adj_key_max =
            static_cast<std::uint16_t>(line.number("tx_adj_key_max", std::numeric_limits<std::uint16_t>::max()));
    }
    one.status = static_cast<std::int32_t>(line.number("status", std::numeric_limits<std::int32_t>::max()));
    one.says_length = one.status == NPXLATE_OK;
    if (line.has("length")) {
        one.length = line.number("length", std::numeric_limits<std::uint32_t>::max());
    }
    if (line.has("out")) {
        one.out = line.bytes("out");
        if (one.out->size() != one.call.out_before.size()) {
            throw WrongInput{fmt::format(R"("out": expected the {} of "out_before", found {})",
                                         describe(catalogue::Lengths{one.call.out_before.size()}), one.out->size())};
        }
    }
    one.in_after = line.has("in_after") ? line.bytes("in_after") : one.call.in;
    if (one.in_after->size() != one.call.in.size()) {
        throw WrongInput{fmt::format(R"("in_after": expected the {} of "in", found {})",
                                     describe(catalogue::Lengths{one.call.in.size()}), one.in_after->size())};
    }
    return one;
}

// A pair of records of an entry, if it has both.
void add_pair(std::vector<Case>& cases, const Line& line, Role role, std::string_view from, std::string_view to) {
    if (!line.has(from) || !line.has(to)) {
        return;
    }
    const Translator& translator = line.translator(role);
    Case one{.translator = &translator, .whole_buffer = false};
    one.call.in = line.bytes(from);
    check_length(translator, one.call.in.size());
    one.call.length = static_cast<std::int32_t>(std::min(one.call.in.size(), translator.in().most));
    one.call.out_before.resize(most_record_bytes);
    FourthArgument argument;
    if (translator.has(Trait::takes_type) && line.has("type")) {
        argument.type = line.number("type", std::numeric_limits<std::uint32_t>::max());
    }
    if (translator.has(Trait::takes_key) && line.has("logical_key")) {
        argument.key = line.bytes("logical_key");
    }
    check_argument(translator, argument, "\"type\":", "\"logical_key\":");
    one.call.type = argument.type.value_or(0);
    one.call.key = argument.key.value_or(Bytes{});
    one.out = line.bytes(to);
    if (one.out->size() > most_record_bytes) {
        throw WrongInput{
            fmt::format("\"{}\": expected at most {} bytes, found {}", to, most_record_bytes, one.out->size())};
    }
    cases.push_back(std::move(one));
}

std::vector<Case> cases_of(std::string_view text) {
    const Line line{text};
    if (line.has("translator")) {
        return {vector_case(line)};
    }
    std::vector<Case> cases;
    if (line.has("key") || line.has("result")) {
        add_pair(cases, line, Role::key, "key", "physical_key");
        add_pair(cases, line, Role::result, "result", "physical_result");
    } else {
        add_pair(cases, line, Role::reverse, "physical_result", "logical_result");
    }
    if (cases.empty()) {
        throw WrongInput{
            R"(expected a vector ("translator") or an entry with both records: "key" and "physical_key", "result" and )"
            R"("physical_result", or "physical_result" and "logical_result")"};
    }
    return cases;
}

// ---- Checking

std::set<std::uint16_t> differing_bits(const Bytes& expected, const Bytes& found, const Bytes& anything) {
    std::set<std::uint16_t> bits;
    for (std::size_t bit = 0; bit < 8 * expected.size(); ++bit) {
        const bool may_differ = bit / 8 < anything.size() && explain::bit_of(anything, bit);
        if (!may_differ && explain::bit_of(expected, bit) != explain::bit_of(found, bit)) {
            bits.insert(static_cast<std::uint16_t>(bit));
        }
    }
    return bits;
}

// Where the bits come from, as far as the record is one that can be explained.
std::string origin(const Case& one, const std::vector<explain::Span>& spans) {
    if (one.call.in.size() < one.translator->in().most) {
        return "";
    }
    const std::uint32_t argument = one.call.key.empty() ? one.call.type : one.call.key.back();
    const explain::Account account =
        explain::account(*one.translator, std::span{one.call.in}.first(one.translator->in().most), argument);
    const std::set<std::uint16_t> bits = explain::bits_of(spans);
    std::string text;
    for (const explain::Field& field : account.fields) {
        const std::set<std::uint16_t> to = explain::bits_of(field.to);
        if (std::ranges::none_of(bits, [&](std::uint16_t bit) { return to.contains(bit); })) {
            continue;
        }
        const std::string from = explain::position_list(explain::in_letter(*one.translator), field.from);
        text += text.empty() ? "; " : ", ";
        text += from.empty()                          ? field.text
                : field.kind == explain::Kind::copied ? "from " + from
                                                      : fmt::format("from {}, {}", from, field.text);
    }
    return text;
}

void compare_records(Finding& finding, const Case& one, char letter, const Bytes& expected, const Bytes& found,
                     const Bytes& anything, bool is_output) {
    const std::vector<explain::Span> spans = explain::spans_of(differing_bits(expected, found, anything));
    if (spans.empty()) {
        return;
    }
    finding.pattern += fmt::format("{}{}{}", finding.pattern.empty() ? "differs in " : " and ",
                                   explain::position_list(letter, spans), is_output ? "" : " of its input");
    for (const explain::Span& span : spans) {
        for (const explain::Span& piece : explain::nameable(span)) {
            finding.details.push_back(fmt::format(
                "{} is {}, expected {}{}", explain::position(letter, piece), explain::value_at(found, {piece}),
                explain::value_at(expected, {piece}), is_output ? origin(one, {piece}) : ""));
        }
    }
}

std::string length_text(const std::optional<std::uint32_t>& length) {
    return length ? fmt::format("the length {}", *length) : "no length";
}

// What differs; nothing if all is as expected.
std::optional<Finding> check(const vectors::Library& library, const Case& one, std::uint64_t line) {
    Finding finding{.line = line, .translator = one.translator};
    const auto other = [&](std::string pattern, std::string detail) {
        finding.pattern = std::move(pattern);
        finding.details = {std::move(detail)};
        return finding;
    };
    if (!library.has(*one.translator)) {
        return other("is not exported", "expected a function of that name");
    }
    const vectors::Done done = library.run(*one.translator, one.call);
    const vectors::Outcome& found = done.outcome;
    if (done.wrote_outside) {
        return other("writes outside of its records", fmt::format("expected nothing beyond {} in and {} out",
                                                                  one.call.in.size(), one.call.out_before.size()));
    }
    if (found.status != one.status) {
        return other(
            fmt::format("returns {} in place of {}", found.status, one.status),
            fmt::format("{}, expected {}", catalogue::status_name(found.status), catalogue::status_name(one.status)));
    }
    if (one.says_length && found.length != one.length) {
        return other(fmt::format("stores {} in place of {}", length_text(found.length), length_text(one.length)),
                     fmt::format("expected {}", length_text(one.length)));
    }
    const bool is_reverse = one.translator->role == Role::reverse;
    if (one.out) {
        Bytes anything;
        if (!one.whole_buffer) {
            const std::size_t size =
                found.length && !one.translator->has(Trait::keeps_length) ? *found.length : one.out->size();
            if (size != one.out->size() && !one.translator->out().fixed()) {
                return other(fmt::format("gives {} in place of {}", describe(catalogue::Lengths{size}),
                                         describe(catalogue::Lengths{one.out->size()})),
                             "the records differ in length");
            }
            // Over ones, what is not written comes out otherwise.
            vectors::Call over_ones = one.call;
            std::ranges::fill(over_ones.out_before, std::uint8_t{0xff});
            anything = *library.run(*one.translator, over_ones).outcome.out;
            std::ranges::transform(anything, *found.out, anything.begin(),
                                   [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a ^ b); });
        }
        compare_records(finding, one, is_reverse ? 'L' : 'P', *one.out, *found.out, anything, true);
    }
    if (one.in_after) {
        compare_records(finding, one, is_reverse ? 'P' : 'L', *one.in_after, found.in, {}, false);
    }
    return finding.pattern.empty() ? std::nullopt : std::optional{finding};
}

// ---- Telling

std::string subject(const Translator& translator) {
    const std::vector<unsigned> tables = catalogue::tables_of(translator);
    return tables.empty()       ? std::string{translator.name}
           : tables.size() == 1 ? fmt::format("{} ({} of table {})", translator.name,
                                              catalogue::to_string(translator.role), tables.front())
                                : fmt::format("{} ({} of {} tables)", translator.name,
                                              catalogue::to_string(translator.role), tables.size());
}

struct Tally {
    std::uint64_t checked = 0;
    std::uint64_t unreadable = 0;
    std::vector<Finding> findings{};
};

std::string as_text(const Tally& tally, std::size_t limit) {
    std::string text = fmt::format("{} checked = {} same + {} different{}\n", tally.checked,
                                   tally.checked - tally.findings.size(), tally.findings.size(),
                                   tally.unreadable == 0 ? "" : fmt::format("; {} unreadable", tally.unreadable));
    std::map<std::pair<const Translator*, std::string>, std::uint64_t> patterns;
    for (const Finding& finding : tally.findings) {
        ++patterns[{finding.translator, finding.pattern}];
    }
    std::vector<std::pair<std::uint64_t, std::string>> lines;
    lines.reserve(patterns.size());
    for (const auto& [pattern, count] : patterns) {
        lines.emplace_back(count, fmt::format("{}: {}", subject(*pattern.first), pattern.second));
    }
    std::ranges::stable_sort(lines, [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : a.second < b.second;
    });
    const auto rest = [limit](std::size_t count, std::string_view what) {
        return count > limit ? fmt::format("... and {} more {}\n", count - limit, what) : std::string{};
    };
    if (!lines.empty()) {
        text += "\n";
    }
    for (std::size_t i = 0; i < std::min(limit, lines.size()); ++i) {
        text += fmt::format("{:>8}  {}\n", lines[i].first, lines[i].second);
    }
    text += rest(lines.size(), "patterns");
    for (std::size_t i = 0; i < std::min(limit, tally.findings.size()); ++i) {
        const Finding& finding = tally.findings[i];
        text += fmt::format("\nline {}: {} {}\n", finding.line, finding.translator->name, finding.pattern);
        for (const std::string& detail : finding.details) {
            text += fmt::format("  {}\n", detail);
        }
    }
    return text + rest(tally.findings.size(), "differences");
}

std::string as_json_lines(const Tally& tally, std::size_t limit) {
    std::string text;
    for (std::size_t i = 0; i < std::min(limit, tally.findings.size()); ++i) {
        const Finding& finding = tally.findings[i];
        text += Json{{"finding", "different"},
                     {"line", finding.line},
                     {"translator", finding.translator->name},
                     {"pattern", finding.pattern},
                     {"details", finding.details}}
                    .dump() +
                "\n";
    }
    return text +
           Json{{"summary",
                 {{"checked", tally.checked},
                  {"same", tally.checked - tally.findings.size()},
                  {"different", tally.findings.size()},
                  {"unreadable", tally.unreadable}}}}
               .dump() +
           "\n";
}

// ---- Running

// What is being called, where the process that waits can see it.
class Watched {
public:
    Watched() : memory_{::mmap(nullptr, sizeof(Now), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)} {
        if (memory_ == MAP_FAILED) {
            throw WrongInput{"no memory to share with a process that calls the library"};
        }
    }
    ~Watched() { ::munmap(memory_, sizeof(Now)); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

    void now(std::uint64_t line, const Translator& translator) {
        Now& now = *static_cast<Now*>(memory_);
        now.line = line;
        now.name[translator.name.copy(now.name.data(), now.name.size() - 1)] = '\0';
    }
    std::string what() const {
        const Now& now = *static_cast<const Now*>(memory_);
        return now.line == 0 ? "loading it" : fmt::format("line {}, {}", now.line, now.name.data());
    }

private:
    struct Now {
        std::uint64_t line;
        std::array<char, 64> name;  // a pointer would be another in the other process
    };
    void* memory_;
};

// Goes on in a process of its own, so that a library that crashes does not take the report along. Returns in the new
// one; the other ends as that does.
void go_on_apart(const Watched& watched, const std::string& library) {
    const pid_t child = ::fork();
    if (child < 0) {
        throw WrongInput{"cannot start a process that calls the library"};
    }
    if (child == 0) {
        return;
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status)) {
        throw WrongInput{
            fmt::format("{} crashed ({}): {}", printable(library), ::strsignal(WTERMSIG(status)), watched.what())};
    }
    ::_exit(WEXITSTATUS(status));
}

Tally verify(const std::string& file, const vectors::Library& library, Watched& watched) {
    io::InputStream input{file};
    io::ChunkReader chunks{[&input](char* to, std::size_t room) { return input.read(to, room); }};
    Tally tally;
    io::BadLines bad_lines{[](const std::string& message) { report(message); }};
    const auto take = [&](std::uint64_t number, std::string_view line) {
        try {
            if (line.find_first_not_of(" \t\r") == std::string_view::npos) {
                return;
            }
            const std::vector<Case> cases = cases_of(line);
            bad_lines.done();
            for (const Case& one : cases) {
                watched.now(number, *one.translator);
                ++tally.checked;
                if (std::optional<Finding> finding = check(library, one, number)) {
                    tally.findings.push_back(std::move(*finding));
                }
            }
        } catch (const io::BadJson& error) {
            bad_lines.bad(number, line, error);
        } catch (const WrongInput& error) {
            bad_lines.done();
            ++tally.unreadable;
            report(fmt::format("line {}: {}", number, error.what()));
        }
    };
    while (const std::shared_ptr<const io::Chunk> chunk = chunks.next()) {
        if (chunk->too_long) {
            bad_lines.done();
            ++tally.unreadable;
            report(fmt::format("line {}: expected a line of less than {} bytes", chunk->first,
                               io::ChunkReader::longest_line));
        }
        io::for_each_line(*chunk, take);
    }
    bad_lines.done();
    tally.unreadable += bad_lines.count();
    return tally;
}

void run(const Options& options) {
    const auto limit = parse_number(options.limit, std::numeric_limits<std::uint32_t>::max());
    if (!limit) {
        throw WrongInput{fmt::format("bad --limit {}: expected a number", printable(options.limit))};
    }
    Watched watched;
    std::unique_ptr<vectors::Library> library;
    if (options.library.empty()) {
        library = std::make_unique<vectors::Library>();
    } else {
        go_on_apart(watched, options.library);
        try {
            library = std::make_unique<vectors::Library>(options.library);
        } catch (const vectors::LoadError& error) {
            throw WrongInput{fmt::format("cannot load {}: {}", printable(options.library), error.what())};
        }
    }
    const Tally tally = verify(options.file, *library, watched);
    print(options.json ? as_json_lines(tally, *limit) : as_text(tally, *limit));
    if (tally.unreadable > 0) {
        throw WrongInput{fmt::format("not checked: {} that cannot be read", tally.unreadable)};
    }
    if (tally.checked == 0) {
        throw WrongInput{"nothing to check: expected test vectors or entries"};
    }
    if (!tally.findings.empty()) {
        throw NotDone{fmt::format("different: {} of {}", tally.findings.size(), tally.checked)};
    }
}

}  // namespace

void add_verify(Command app) {
    const Command command = app.add_subcommand("verify", "Hold a library against test vectors or known entries");
    command.footer(
        "JSON Lines: vectors as npxlate vectors writes them, or entries with both records, as in\n"
        "  {\"table\": 17, \"key\": \"HEX\", \"physical_key\": \"HEX\", \"result\": \"HEX\", \"physical_result\": "
        "\"HEX\"}\n"
        "  {\"table\": 17, \"physical_result\": \"HEX\", \"logical_result\": \"HEX\"}    (what was read back)\n"
        "Exit status: 0 all as expected, 1 something differs, 2 something cannot be read or loaded.\n"
        "Example: npxlate vectors | npxlate verify --library build/libnpxlate.so.1");
    const auto options = std::make_shared<Options>();
    command.add_option("FILE", options->file, "What to check; - or nothing: standard input");
    command.add_option("--library", options->library,
                       "Another library with the same interface; without: npxlate's own");
    command.add_option("--limit", options->limit, "How many differences and patterns to list; 20 without");
    command.add_flag("--json", options->json, "JSON Lines: a difference a line, the summary last");
    command.callback([options] { run(*options); });
}

}  // namespace tool
