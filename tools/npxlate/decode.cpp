// npxlate decode: from the record on the card back to what would have to be programmed.

#include "decode/decode.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "explain/explain.h"
#include "explain/positions.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/error.h"
#include "npxlate/input.h"
#include "npxlate/lookup.h"
#include "npxlate/subject.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;
using decode::Candidate;
using decode::Contradiction;
using decode::Refusal;
using explain::Span;

struct Options {
    SubjectOptions subject;
    RecordSource source;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool all = false;
    bool json = false;
};

const Mark marks[] = {
    {'d', fmt::fg(fmt::terminal_color::green), "determined by the bytes"},
    {'c', fmt::fg(fmt::terminal_color::yellow), "chosen by the form"},
    {'a', fmt::fg(fmt::terminal_color::magenta), "one of several values"},
    {'.', fmt::fg(fmt::terminal_color::bright_black), "free: not carried"},
};

constexpr std::size_t free_mark = 3;

bool has(const Bytes& mask, std::size_t bit) { return (mask.at(bit / 8) >> bit % 8 & 1) != 0; }

std::vector<Span> bits_in(const Bytes& mask) {
    std::set<std::uint16_t> bits;
    for (std::size_t bit = 0; bit < 8 * mask.size(); ++bit) {
        if (has(mask, bit)) {
            bits.insert(static_cast<std::uint16_t>(bit));
        }
    }
    return explain::spans_of(bits);
}

// The form, and where the translator takes records of several sizes, the record's.
std::string name_of(const Candidate& candidate) {
    return candidate.form->name +
           (candidate.of->translator().in().fixed() ? "" : ", " + describe(candidate.record.size()));
}

using Candidates = std::span<const Candidate>;  // that are alike

std::string names_of(Candidates candidates) {
    std::string names;
    for (const Candidate& candidate : candidates) {
        names += (names.empty() ? "" : "; or ") + name_of(candidate);
    }
    return names;
}

std::vector<Candidates> alike(const std::vector<Candidate>& candidates) {
    std::vector<Candidates> all;
    for (std::size_t i = 0; i < candidates.size();) {
        std::size_t end = i + 1;
        while (end < candidates.size() && candidates[end].alike == candidates[i].alike) {
            ++end;
        }
        all.push_back(Candidates{candidates}.subspan(i, end - i));
        i = end;
    }
    return all;
}

// "1, or 65 to 255"; bits of more than a byte in hex.
std::string values_text(const decode::Field& field) { return forms::in_words(field.values, field.at.width); }

// The lines of a group, each a value of its first field with what then holds for the others, indented.
void add_lines(std::vector<std::string>& lines, const decode::Alternatives& group, std::size_t depth) {
    for (const auto& [field, then] : group) {
        lines.push_back(std::string(2 * depth, ' ') + explain::position_list('L', {field.at}) + " " +
                        values_text(field));
        for (const decode::Alternatives& others : then) {
            // What has one alternative stands in the same line.
            if (others.size() == 1 && others.front().then.empty()) {
                lines.back() += ", " + explain::position_list('L', {others.front().field.at}) + " " +
                                values_text(others.front().field);
            } else {
                add_lines(lines, others, depth + 1);
            }
        }
    }
}

Json groups_json(const std::vector<decode::Alternatives>& groups) {
    Json json = Json::array();
    for (const decode::Alternatives& group : groups) {
        Json list = Json::array();
        for (const auto& [field, then] : group) {
            Json ranges = Json::array();
            for (const auto& [from, to] : field.values) {
                ranges.push_back({from, to});
            }
            Json one{{"at", explain::position_list('L', {field.at})},
                     {"first_bit", field.at.first_bit},
                     {"width", field.at.width},
                     {"values", std::move(ranges)}};
            if (!then.empty()) {
                one["then"] = groups_json(then);
            }
            list.push_back(std::move(one));
        }
        json.push_back(std::move(list));
    }
    return json;
}

// How much of a name's value the bytes tell.
std::string told_of(const Candidate& candidate, const names::Field& field) {
    bool free = false;
    bool several = false;
    for (const std::uint16_t bit : names::bits_in_order(field.bits)) {
        free = free || bit >= 8 * candidate.record.size() || has(candidate.free, bit);
        several = several || (bit < 8 * candidate.record.size() && !has(candidate.free, bit) &&
                              !has(candidate.determined, bit) && !has(candidate.chosen, bit));
    }
    return several ? "one of several" : free ? "free" : "";
}

// The names that hold for the record, with their values.
std::string names_text(const Candidate& candidate, const Naming& naming) {
    std::string text;
    if (naming.record() != nullptr) {
        text += "names\n";
        constexpr std::size_t columns[] = {2, 26, 18, 18};
        for (const names::Field* const field : names::fields_of(*naming.record(), candidate.record)) {
            text += line(columns, {"", field->name, names::positions_text(field->bits),
                                   names::value_in(*field, candidate.record), told_of(candidate, *field)});
        }
    }
    return text;
}

Json candidate_json(const Candidate& candidate, Candidates alike, const Naming& naming) {
    Json also = Json::array();
    for (const Candidate& other : alike) {
        if (&other != &candidate) {
            also.push_back(other.form->name);
        }
    }
    Json json{{"form", candidate.form->name},
              {"also", std::move(also)},
              {"when", forms::when(*candidate.of, *candidate.form)},
              {"logical", to_hex(candidate.record)},
              {"determined", to_hex(candidate.determined)},
              {"chosen", to_hex(candidate.chosen)},
              {"free", to_hex(candidate.free)},
              {"alternatives", groups_json(candidate.groups)}};
    if (naming.record() != nullptr) {
        json["names"] = names_json(*naming.record(), candidate.record);
    }
    return json;
}

Json to_json(const Translator& translator, const Bytes& record, const decode::Result& result, const Naming& naming) {
    Json json = translator_json(translator);
    json["physical"] = to_hex(record);
    Json candidates = Json::array();
    for (const Candidates group : alike(result.candidates)) {
        for (const Candidate& candidate : group) {
            candidates.push_back(candidate_json(candidate, group, naming));
        }
    }
    json["candidates"] = std::move(candidates);
    Json nearest = Json::array();
    for (const Refusal& refusal : result.nearest) {
        Json contradictions = Json::array();
        for (const Contradiction& one : refusal.contradictions) {
            contradictions.push_back({{"at", positions_json('P', one.at)}, {"needs", one.needs}});
        }
        nearest.push_back(
            {{"form", refusal.form->name}, {"bits", refusal.bits}, {"contradictions", std::move(contradictions)}});
    }
    json["nearest"] = std::move(nearest);
    return json;
}

// The first of them, and what else there is of the others.
std::string candidates_text(const Translator& translator, Candidates alike, const Naming& naming, Style style) {
    std::string text;
    const Candidate& candidate = alike.front();
    constexpr std::size_t about[] = {9};
    const std::string when = forms::when(*candidate.of, *candidate.form);
    // The names of forms that need it to be told apart end with it.
    if (!when.empty() && !candidate.form->name.ends_with(when)) {
        text += line(about, {"when", when});
    }
    text += line(about, {"logical", to_hex(candidate.record)});
    std::vector<std::size_t> kinds;
    for (std::size_t bit = 0; bit < 8 * candidate.record.size(); ++bit) {
        kinds.push_back(has(candidate.determined, bit) ? 0
                        : has(candidate.chosen, bit)   ? 1
                        : has(candidate.free, bit)     ? free_mark
                                                       : 2);
    }
    text += grid('L', candidate.record, kinds, marks, style, free_mark) + legend(kinds, marks, style);
    constexpr std::size_t columns[] = {18, 20};
    const explain::Account account = explain::account(translator, candidate.record);
    for (const explain::Field& field : account.fields) {
        if (!field.from.empty() && field.kind != explain::Kind::computed) {
            const std::string to = explain::position_list('P', field.to);
            text +=
                line(columns, {explain::position_list('L', field.from), explain::value_at(candidate.record, field.from),
                               "from " + to + (field.text == "copied" ? "" : ", " + field.text) +
                                   (field.name.empty() ? "" : " (" + field.name + ")") +
                                   naming.suffix('L', field.from, candidate.record)});
        }
    }
    for (const explain::Field& field : account.fields) {
        if (!field.from.empty() && field.kind == explain::Kind::computed) {
            text +=
                line(columns, {explain::position_list('L', field.from), explain::value_at(candidate.record, field.from),
                               "from " + explain::position_list('P', field.to) + ": " + field.text +
                                   (field.name.empty() ? "" : " (" + field.name + ")") +
                                   naming.suffix('L', field.from, candidate.record)});
        }
    }
    for (const decode::Alternatives& group : candidate.groups) {
        constexpr std::size_t most_lines = 8;
        std::vector<std::string> lines;
        add_lines(lines, group, 0);
        for (std::size_t i = 0; i < std::min(lines.size(), most_lines); ++i) {
            text += line(about, {i == 0 ? "one of" : "", lines[i]});
        }
        if (lines.size() > most_lines) {
            text += line(about, {"", fmt::format("and {} more, which --json lists", lines.size() - most_lines)});
        }
    }
    if (const std::vector<Span> chosen = bits_in(candidate.chosen); !chosen.empty()) {
        text += line(about, {"chosen",
                             explain::position_list('L', chosen) + ": " + explain::value_at(candidate.record, chosen)});
    }
    if (const std::vector<Span> free = bits_in(candidate.free); !free.empty()) {
        text += line(about, {"free", explain::position_list('L', free)});
    }
    text += names_text(candidate, naming);
    for (const Candidate& other : alike.subspan(1)) {
        text += line(about, {"or", name_of(other)}) + line(about, {"", to_hex(other.record)});
    }
    return text;
}

// What a caller of the translator has to know besides.
std::string notes(const Translator& translator) {
    std::string text;
    for (const Trait trait : {Trait::changes_input, Trait::keeps_buffer, Trait::keeps_length}) {
        if (translator.has(trait)) {
            text += fmt::format("note: {} {}\n", translator.name, catalogue::words(trait));
        }
    }
    return text;
}

std::string refusal_text(const Refusal& refusal) {
    constexpr std::size_t hanging[] = {2};
    std::string needs;
    for (const Contradiction& one : refusal.contradictions) {
        needs += (needs.empty() ? "" : ", ");
        needs += one.at.empty()                         ? one.needs
                 : one.needs == "0" || one.needs == "1" ? explain::position_list('P', one.at) + " = " + one.needs
                                                        : explain::position_list('P', one.at) + " " + one.needs;
    }
    return line(hanging, {"", fmt::format("{} needs {}", refusal.form->name, needs)});
}

std::string to_text(const Translator& translator, const decode::Result& result, const Naming& naming, bool all,
                    Style style) {
    constexpr std::size_t hanging[] = {0};
    std::string text = heading(describe(translator), style) + line(hanging, {"", catalogue::title(translator)}) + "\n";
    const std::vector<Candidates> groups = alike(result.candidates);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const Candidates group = groups[i];
        if (i == 0 || all) {
            std::string title = line(hanging, {"", name_of(group.front())});
            title.pop_back();
            text += (i == 0 ? "" : "\n") + heading(title, style) + candidates_text(translator, group, naming, style);
        } else if (i == 1) {
            const std::size_t others = result.candidates.size() - groups.front().size();
            text += fmt::format("\n{} other form{} can have made these bytes, too (--all shows {}):\n", others,
                                others == 1 ? "" : "s", others == 1 ? "it" : "them");
        }
        constexpr std::size_t most_others = 6;
        if (i > 0 && !all && i <= most_others) {
            constexpr std::size_t indented[] = {2};
            text += line(indented, {"", names_of(group)});
        }
    }
    return text + notes(translator);
}

void run(const Options& options) {
    const Translator& translator = options.subject.find();
    if (translator.role == Role::reverse) {
        throw WrongInput{
            fmt::format("{} reads records back: expected a key or a result translator, whose records are on the card",
                        translator.name)};
    }
    const Naming naming = options.subject.names();
    options.tx_adj_key_max.apply({&translator});
    const Bytes record = read_record(options.source);
    const decode::Decoder decoder{translator};
    if (!decoder.makes(record.size())) {
        const std::vector<std::size_t> lengths = decoder.lengths();
        const std::string expected = lengths.empty() ? "none: the translator makes no records"
                                     : lengths.size() == 1 || lengths.back() - lengths.front() + 1 != lengths.size()
                                         ? fmt::format("{}", fmt::join(lengths, ", "))
                                         : fmt::format("{} to {}", lengths.front(), lengths.back());
        throw WrongInput{fmt::format("{} bytes: {} makes records of other lengths: expected {}", record.size(),
                                     translator.name, expected)};
    }
    const decode::Result result = decoder.decode(record);
    if (options.json) {
        print_json(to_json(translator, record, result, naming));
    } else if (!result.candidates.empty()) {
        print(to_text(translator, result, naming, options.all, style_of_stdout()));
    }
    if (result.candidates.empty()) {
        constexpr std::size_t most_told = 3;
        std::string told = fmt::format("{} gives these bytes for no record. Nearest:\n", translator.name);
        for (std::size_t i = 0; i < std::min(result.nearest.size(), options.all ? result.nearest.size() : most_told);
             ++i) {
            told += refusal_text(result.nearest[i]);
        }
        told.pop_back();
        throw NotDone{told};
    }
}

}  // namespace

void add_decode(Command app) {
    const Command command =
        app.add_subcommand("decode", "Find what would have to be programmed to get a record of the card");
    command.footer(
        "Every record that is shown gives just these bytes; bits that never reach the card are free.\n"
        "Example: npxlate decode 4 9100000000000d230a00000142000000");
    const auto options = std::make_shared<Options>();
    options->subject.add_to(command);
    add_record_source(command, options->source);
    options->tx_adj_key_max.add_to(command);
    command.add_flag("--all", options->all, "Every candidate in full");
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
