// npxlate roundtrip: what comes back of a logical result.

#include <algorithm>
#include <memory>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "explain/comparison.h"
#include "explain/positions.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/error.h"
#include "npxlate/input.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/subject.h"
#include "npxlate/taken.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Translator;
using explain::Account;
using explain::Returned;
using explain::RoundTrip;

struct Options {
    std::string table;
    NamesOption names;
    RecordSource source;
    ArgumentOptions argument;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool json = false;
};

std::string in_words(const RoundTrip& trip, const Returned& returned, const Naming& naming) {
    const std::string at = explain::position_list('L', returned.at);
    const std::string from = explain::position_list('L', returned.from);
    const std::string was = explain::value_at(trip.forward.in, returned.at);
    const std::string is = explain::value_at(trip.reverse->out, returned.at);
    std::string what;
    switch (returned.kind) {
        case Returned::restored:
            what = "restored";
            break;
        case Returned::byte_reversed:
            what = was == is ? "byte-reversed" : fmt::format("byte-reversed ({} became {})", was, is);
            break;
        case Returned::moved:
            what = fmt::format("moved from {}{}", from, returned.reversed ? ", byte-reversed" : "");
            break;
        case Returned::inverted:
            what = fmt::format("inverted from {}", from);
            break;
        case Returned::computed:
            what = fmt::format("computed from {} (was {}, is {}): {}", from, was, is, returned.text);
            break;
        case Returned::lost:
            what = fmt::format("lost (was {}){}", was, from.empty() ? "" : "; counts in " + from);
            break;
        case Returned::invented:
            what = fmt::format("invented (is {})", is);
            break;
        case Returned::constant:
            what = fmt::format("always {}, as it was", is);
            break;
        case Returned::zero:
            what = "0 before and after, not carried";
            break;
    }
    if (returned.kind == Returned::zero) {
        constexpr std::size_t hanging[] = {0};
        return "\n" + line(hanging, {"", what + ": " + at});
    }
    // What does not fit goes on under the first word after the position.
    const std::size_t columns[] = {at.size() + 1};
    return line(columns, {at, what + naming.suffix('L', returned.at, trip.forward.in)});
}

Json to_json(const RoundTrip& trip, const Naming& naming) {
    const auto step = [](const Account& account) {
        Json json = translator_json(*account.translator);
        json["status"] = account.status;
        json["status_name"] = status_name(account.status);
        json["in"] = to_hex(account.in);
        json["out"] = to_hex(account.out);
        return json;
    };
    Json json;
    json["forward"] = step(trip.forward);
    json["reverse"] = trip.reverse ? step(*trip.reverse) : Json(nullptr);
    Json differences = Json::array();
    for (const Returned& returned : trip.returned) {
        Json one{{"at", positions_json('L', returned.at)},
                 {"kind", to_string(returned.kind)},
                 {"from", positions_json('L', returned.from)},
                 {"was", explain::value_at(trip.forward.in, returned.at)},
                 {"is", explain::value_at(trip.reverse->out, returned.at)}};
        if (returned.reversed) {
            one["bytes_reversed"] = true;
        }
        if (!returned.text.empty()) {
            one["text"] = returned.text;
        }
        naming.add_to(one, 'L', returned.at, trip.forward.in);
        differences.push_back(std::move(one));
    }
    json["fields"] = std::move(differences);
    if (naming.record() != nullptr) {
        json["names"] = names_json(*naming.record(), trip.forward.in);
        json["names_back"] = trip.reverse ? names_json(*naming.record(), trip.reverse->out) : Json(nullptr);
    }
    return json;
}

std::string to_text(const RoundTrip& trip, const Naming& naming, Style style) {
    constexpr std::size_t columns[] = {10};
    std::string text = heading(
        fmt::format("{}, back through {}", trip.forward.translator->name, trip.reverse->translator->name), style);
    const auto hex = [&](const char* name, const Bytes& record) {
        // In groups, so that the line can be broken.
        std::string groups;
        for (std::size_t i = 0; i < record.size(); ++i) {
            groups += (i != 0 && i % 4 == 0 ? " " : "") + fmt::format("{:02x}", record[i]);
        }
        return line(columns, {name, groups});
    };
    text += hex("logical", trip.forward.in) + hex("physical", trip.forward.out) + hex("and back", trip.reverse->out);
    text += "\n";
    for (const Returned& returned : trip.returned) {
        text += in_words(trip, returned, naming);
    }
    return text;
}

void run(const Options& options) {
    const Translator* forward = nullptr;
    const Translator* reverse = nullptr;
    const auto table = parse_number(options.table, NPXLATE_TABLE_COUNT - 1);
    if (table) {
        forward = &catalogue::of_table(static_cast<unsigned>(*table), Role::result);
    } else {
        forward = &find_translator(options.table, Role::result);
    }
    const std::vector<unsigned> tables = catalogue::tables_of(*forward);
    if (tables.empty()) {
        throw WrongInput{
            fmt::format("{} stands in no table, so that nothing leads back: expected a table id or a "
                        "translator that stands in a table",
                        forward->name)};
    }
    reverse = &catalogue::of_table(table ? static_cast<unsigned>(*table) : tables.front(), Role::reverse);
    options.tx_adj_key_max.apply({forward});
    Bytes record = read_record(options.source);
    check_record(*forward, record);
    const FourthArgument argument = argument_for_way_back(*reverse, options.argument.read(), record);
    check_argument(*reverse, argument, "--type", "--key");

    const Naming naming{options.names.of(*forward, options.table)};
    const RoundTrip trip = explain::round_trip(*forward, *reverse, record, engine_argument(argument));
    if (options.json) {
        print_json(to_json(trip, naming));
    }
    check_accepted(trip.forward);
    check_accepted(*trip.reverse);
    if (!options.json) {
        print(to_text(trip, naming, style_of_stdout()));
    }
}

}  // namespace

void add_roundtrip(Command app) {
    const Command command =
        app.add_subcommand("roundtrip", "Translate a logical result and back, and list what changed");
    command.footer("Example: npxlate roundtrip 121 01 02 03");
    const auto options = std::make_shared<Options>();
    command.add_option("TABLE_OR_NAME", options->table, table_or_name_help).required();
    add_record_source(command, options->source);
    options->argument.add_to(command);
    options->tx_adj_key_max.add_to(command);
    options->names.add_to(command);
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
