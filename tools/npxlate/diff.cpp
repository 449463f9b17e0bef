// npxlate diff: two records of the same kind.

#include <algorithm>
#include <memory>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "explain/comparison.h"
#include "explain/positions.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"
#include "npxlate/input.h"
#include "npxlate/subject.h"
#include "npxlate/taken.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using catalogue::Translator;
using explain::Account;
using explain::Comparison;
using explain::Difference;
using explain::Fate;

struct Options {
    SubjectOptions subject;
    RecordSource source;
    ArgumentOptions argument;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool json = false;
};

std::string change(const Bytes& first, const Bytes& second, const Difference& difference) {
    return explain::value_at(first, difference.at) + " -> " + explain::value_at(second, difference.at);
}

std::string way(const Account& account) {
    return fmt::format("{}, {}", status_name(account.status), account.form->name);
}

// Names that hold for one of the two records, with what they say in both.
std::string changed_names(const Naming& naming, char letter, const std::vector<explain::Span>& at, const Bytes& first,
                          const Bytes& second) {
    std::vector<std::string> texts;
    if (naming.record() != nullptr && letter == 'L') {
        for (const names::Mention& mention : names::mentions(*naming.record(), at)) {
            const names::Field& field = *mention.field;
            if (names::holds(field.when, first) || names::holds(field.when, second)) {
                texts.push_back(fmt::format("{}: {} -> {}", field.name, names::value_in(field, first),
                                            names::value_in(field, second)));
            }
        }
        texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    }
    return texts.empty() ? "" : fmt::format(" [{}]", fmt::join(texts, ", "));
}

Json to_json(const Comparison& comparison, const Naming& naming) {
    const Translator& translator = *comparison.first.translator;
    const char in = explain::in_letter(translator);
    const char out = explain::out_letter(translator);
    const auto record = [](const Account& account) {
        return Json{{"in", to_hex(account.in)},   {"out", to_hex(account.out)}, {"status", account.status},
                    {"form", account.form->name}, {"when", account.when},       {"layouts", account.titles}};
    };
    Json json = translator_json(translator);
    json["first"] = record(comparison.first);
    json["second"] = record(comparison.second);
    if (naming.record() != nullptr) {
        const bool reverse = translator.role == catalogue::Role::reverse;
        for (const auto& [name, account] : {std::pair{"first", &comparison.first}, {"second", &comparison.second}}) {
            json[name]["names"] = names_json(*naming.record(), reverse ? account->out : account->in);
        }
    }
    json["same_way"] = comparison.same_way;
    Json differences_in = Json::array();
    for (const Difference& one : comparison.in) {
        Json difference{{"at", positions_json(in, one.at)},
                        {"first", explain::value_at(comparison.first.in, one.at)},
                        {"second", explain::value_at(comparison.second.in, one.at)},
                        {"fate", to_string(one.fate)},
                        {"decides", one.decides},
                        {"shows_at", positions_json(out, one.other_side)}};
        naming.add_to(difference, in, one.at);
        differences_in.push_back(std::move(difference));
    }
    json["differences_in"] = std::move(differences_in);
    Json differences_out = Json::array();
    for (const Difference& one : comparison.out) {
        Json difference{{"at", positions_json(out, one.at)},
                        {"first", explain::value_at(comparison.first.out, one.at)},
                        {"second", explain::value_at(comparison.second.out, one.at)},
                        {"from", positions_json(in, one.other_side)}};
        naming.add_to(difference, in, one.other_side);
        naming.add_to(difference, out, one.at);
        differences_out.push_back(std::move(difference));
    }
    json["differences_out"] = std::move(differences_out);
    return json;
}

std::string to_text(const Comparison& comparison, const Naming& naming, Style style) {
    const Translator& translator = *comparison.first.translator;
    const char in = explain::in_letter(translator);
    const char out = explain::out_letter(translator);
    constexpr std::size_t columns[] = {18, 28};
    std::string text = heading(describe(translator), style);
    if (comparison.same_way) {
        text += fmt::format("both: {}\n", way(comparison.first));
    } else {
        text += fmt::format("first: {}\nsecond: {}\n", way(comparison.first), way(comparison.second));
    }
    if (comparison.in.empty()) {
        return text + "The records are the same.\n";
    }
    text += "\n" + heading("Differences of the records that go in", style);
    for (const Difference& one : comparison.in) {
        std::string shows;
        if (!one.other_side.empty()) {
            shows = "shows at " + explain::position_list(out, one.other_side);
        } else if (!one.decides) {
            shows = one.fate == Fate::dropped ? "dropped" : "does not show";
        }
        if (one.decides) {
            shows += shows.empty() ? "decides" : "; decides";
        }
        shows += changed_names(naming, in, one.at, comparison.first.in, comparison.second.in);
        text += line(columns, {explain::position_list(in, one.at),
                               change(comparison.first.in, comparison.second.in, one), shows});
    }
    text += "\n" + heading("Differences of the records that come out", style);
    if (comparison.out.empty()) {
        text += "None.\n";
    }
    for (const Difference& one : comparison.out) {
        const std::string from =
            one.other_side.empty() ? "by the form" : "from " + explain::position_list(in, one.other_side);
        text += line(columns,
                     {explain::position_list(out, one.at), change(comparison.first.out, comparison.second.out, one),
                      from + naming.suffix(in, one.other_side) +
                          changed_names(naming, out, one.at, comparison.first.out, comparison.second.out)});
    }
    return text;
}

void run(const Options& options) {
    const Translator& translator = options.subject.find();
    const Naming naming = options.subject.names();
    const FourthArgument argument = options.argument.read();
    check_argument(translator, argument, "--type", "--key");
    options.tx_adj_key_max.apply({&translator});
    auto [first, second] = read_record_pair(options.source);
    check_record(translator, first);
    check_record(translator, second);
    if (first.size() != second.size()) {
        throw WrongInput{fmt::format("the records have {} and {} bytes: expected two of the same length", first.size(),
                                     second.size())};
    }
    const Comparison comparison = explain::compare(translator, first, second, engine_argument(argument));
    if (options.json) {
        print_json(to_json(comparison, naming));
    } else {
        print(to_text(comparison, naming, style_of_stdout()));
    }
    check_accepted(comparison.first);
    check_accepted(comparison.second);
    if (first != second) {
        throw RecordsDiffer{};
    }
}

}  // namespace

void add_diff(Command app) {
    const Command command = app.add_subcommand("diff", "Compare two records, before and after translation");
    command.footer("Example: npxlate diff 8 --role key 00000000010000 00000000020000");
    const auto options = std::make_shared<Options>();
    options->subject.add_to(command);
    add_record_pair_source(command, options->source);
    options->argument.add_to(command);
    options->tx_adj_key_max.add_to(command);
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run_as_comparison([&] { run(*options); }); });
}

}  // namespace tool
