// npxlate explain: one record, bit by bit.

#include "explain/explain.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "explain/positions.h"
#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/input.h"
#include "npxlate/subject.h"
#include "npxlate/taken.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using catalogue::Trait;
using catalogue::Translator;
using explain::Account;
using explain::Fate;
using explain::Field;
using explain::InBit;
using explain::Kind;

struct Options {
    SubjectOptions subject;
    RecordSource source;
    ArgumentOptions argument;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool json = false;
};

const Mark out_marks[] = {
    {'m', fmt::fg(fmt::terminal_color::green), "moved"},
    {'i', fmt::fg(fmt::terminal_color::cyan), "inverted"},
    {'f', fmt::fg(fmt::terminal_color::magenta), "computed"},
    {'=', fmt::fg(fmt::terminal_color::yellow), "constant"},
    {'.', fmt::fg(fmt::terminal_color::bright_black), "cleared"},
    {'-', fmt::fg(fmt::terminal_color::blue), "left as the caller had it"},
};

std::size_t mark_of(const explain::OutBit& bit) {
    switch (bit.kind) {
        case Kind::computed:
            return 2;
        case Kind::constant:
            return 3;
        case Kind::cleared:
            return 4;
        case Kind::left_alone:
            return 5;
        default:
            return bit.links.size() == 1 && bit.links.front().inverted ? 1 : 0;
    }
}

const Mark in_marks[] = {
    {'+', fmt::fg(fmt::terminal_color::green), "carried"},
    {'*', fmt::fg(fmt::terminal_color::bright_green), "carried, and decides"},
    {'?', fmt::fg(fmt::terminal_color::yellow), "steers only"},
    {'.', fmt::fg(fmt::terminal_color::bright_black), "dropped"},
};

std::size_t mark_of(const InBit& bit) {
    switch (bit.fate) {
        case Fate::carried:
            return bit.decides ? 1 : 0;
        case Fate::steered:
            return 2;
        case Fate::dropped:
            return 3;
    }
    return 3;
}

template <typename Bit>
std::vector<std::size_t> marks_of(const std::vector<Bit>& bits) {
    std::vector<std::size_t> marks;
    std::ranges::transform(bits, std::back_inserter(marks), [](const Bit& bit) { return mark_of(bit); });
    return marks;
}

template <typename Wanted>
std::vector<explain::Span> bits_that(const Account& account, Wanted wanted) {
    std::set<std::uint16_t> bits;
    for (std::size_t i = 0; i < account.in_bits.size(); ++i) {
        if (wanted(account.in_bits[i])) {
            bits.insert(static_cast<std::uint16_t>(i));
        }
    }
    return explain::spans_of(bits);
}

auto with_fate(Fate fate) {
    return [fate](const InBit& bit) { return bit.fate == fate; };
}

bool decides(const InBit& bit) { return bit.decides; }

// Neighbours that are moved together, as one.
std::vector<Field> joined(const std::vector<Field>& fields) {
    std::vector<Field> result;
    const auto ends_at = [](const std::vector<explain::Span>& spans) {
        return spans.front().first_bit + spans.front().width;
    };
    for (const Field& field : fields) {
        const bool joins = !result.empty() && field.kind == Kind::copied && result.back().kind == Kind::copied &&
                           field.title == result.back().title && field.text == result.back().text &&
                           field.to.size() == 1 && field.from.size() == 1 && result.back().to.size() == 1 &&
                           result.back().from.size() == 1 && field.to.front().first_bit == ends_at(result.back().to) &&
                           field.from.front().first_bit == ends_at(result.back().from);
        if (!joins) {
            result.push_back(field);
            continue;
        }
        Field& last = result.back();
        last.to.front().width = static_cast<std::uint16_t>(last.to.front().width + field.to.front().width);
        last.from.front().width = static_cast<std::uint16_t>(last.from.front().width + field.from.front().width);
    }
    return result;
}

// The logical record of the two.
const Bytes& logical_of(const Account& account) {
    return account.translator->role == catalogue::Role::reverse ? account.out : account.in;
}

// What becomes of a name's bits; of a record that comes out, nothing.
std::string fate_of(const Account& account, const names::Field& field) {
    if (account.translator->role == catalogue::Role::reverse) {
        return "";
    }
    const auto any = [&](Fate fate) {
        return std::ranges::any_of(explain::bits_of(field.bits), [&](std::uint16_t bit) {
            return bit < account.in_bits.size() && account.in_bits[bit].fate == fate;
        });
    };
    std::string text;
    for (const Fate fate : {Fate::carried, Fate::steered, Fate::dropped}) {
        if (any(fate)) {
            text += (text.empty() ? "" : ", ") + std::string{to_string(fate)};
        }
    }
    return text;
}

// A table of the names that hold for the record, with their values.
std::string names_text(const Account& account, const Naming& naming, Style style) {
    if (naming.record() == nullptr) {
        return "";
    }
    std::string text = "\n" + heading("The names of the logical record", style);
    constexpr std::size_t columns[] = {26, 18, 18};
    for (const names::Field* const field : names::fields_of(*naming.record(), logical_of(account))) {
        text += line(columns, {field->name, names::positions_text(field->bits),
                               names::value_in(*field, logical_of(account)), fate_of(account, *field)});
    }
    return text;
}

Json to_json(const Account& account, const Naming& naming) {
    const Translator& translator = *account.translator;
    const char in = explain::in_letter(translator);
    const char out = explain::out_letter(translator);
    Json json = translator_json(translator);
    json["form"] = account.form->name;
    json["when"] = account.when;
    json["layouts"] = account.titles;
    json["status"] = account.status;
    json["status_name"] = status_name(account.status);
    json["length"] = account.length ? Json(*account.length) : Json(nullptr);
    json["in"] = to_hex(account.in);
    json["out"] = to_hex(account.out);
    Json changes = Json::array();
    for (const explain::InputChange& change : account.input_changes) {
        changes.push_back({{"at", positions_json(in, change.bits)}, {"text", change.text}});
    }
    if (!changes.empty()) {
        json["in_after"] = to_hex(account.in_after);
        json["in_changes"] = std::move(changes);
    }
    Json fields = Json::array();
    for (const Field& field : account.fields) {
        Json one = field_json(translator, field);
        one["value"] = explain::value_at(account.out, field.to);
        naming.add_to(one, in, field.from, account.in);
        naming.add_to(one, out, field.to, account.out);
        fields.push_back(std::move(one));
    }
    json["fields"] = std::move(fields);
    if (naming.record() != nullptr) {
        json["names"] = names_json(*naming.record(), logical_of(account));
    }
    json["carried"] = positions_json(in, bits_that(account, with_fate(Fate::carried)));
    json["steered"] = positions_json(in, bits_that(account, with_fate(Fate::steered)));
    json["dropped"] = positions_json(in, bits_that(account, with_fate(Fate::dropped)));
    json["decides"] = positions_json(in, bits_that(account, decides));
    Json bits = Json::object();
    const auto bit_name = [](char letter, std::size_t bit) {
        return explain::position(letter, {static_cast<std::uint16_t>(bit), 1});
    };
    for (std::size_t i = 0; i < account.out_bits.size(); ++i) {
        const explain::OutBit& bit = account.out_bits[i];
        Json from = Json::array();
        for (const explain::Link& link : bit.links) {
            from.push_back(bit_name(in, link.from));
        }
        for (const std::uint16_t other : bit.from) {
            from.push_back(bit_name(in, other));
        }
        bits[bit_name(out, i)] = {{"value", bit.value ? 1 : 0}, {"kind", to_string(bit.kind)}, {"from", from}};
    }
    json["bits"] = std::move(bits);
    return json;
}

std::string status_text(const Account& account) {
    const bool hidden = account.translator->has(Trait::hides_failures) && !account.length;
    std::string text{status_name(account.status)};
    text += account.length ? fmt::format(", length {}", *account.length) : "";
    if (account.status != NPXLATE_OK) {
        text += ": the record is rejected; what was written before is shown";
    } else if (hidden) {
        text += ": the record is rejected (no length is stored); what was written before is shown";
    }
    return text;
}

std::string to_text(const Account& account, const Naming& naming, Style style) {
    const Translator& translator = *account.translator;
    const char in = explain::in_letter(translator);
    const char out = explain::out_letter(translator);
    constexpr std::size_t about[] = {10};
    std::string text = heading(describe(translator), style);
    text += line(about, {"record", catalogue::title(translator)});
    text += line(about, {"status", status_text(account)});
    text += line(about, {"form", account.form->name});
    if (!account.when.empty() && account.when != account.form->name) {
        text += line(about, {"when", account.when});
    }

    const std::vector<std::size_t> marks_in = marks_of(account.in_bits);
    text += "\n" + heading(fmt::format("The record that goes in, {} bytes", account.in.size()), style);
    text += grid(in, account.in, marks_in, in_marks, style) + legend(marks_in, in_marks, style);
    for (const auto& [name, spans] : {std::pair{"carried", bits_that(account, with_fate(Fate::carried))},
                                      std::pair{"steers", bits_that(account, with_fate(Fate::steered))},
                                      std::pair{"decides", bits_that(account, decides)},
                                      std::pair{"dropped", bits_that(account, with_fate(Fate::dropped))}}) {
        if (!spans.empty()) {
            text += line(about, {name, explain::position_list(in, spans)});
        }
    }
    for (const explain::InputChange& change : account.input_changes) {
        text += line(about, {"changed", explain::position_list(in, change.bits) + ": " + change.text});
    }

    const std::vector<std::size_t> marks_out = marks_of(account.out_bits);
    text += "\n" + heading(fmt::format("The record that comes out, {} bytes", account.out.size()), style);
    text += grid(out, account.out, marks_out, out_marks, style) + legend(marks_out, out_marks, style);
    constexpr std::size_t columns[] = {18, 20};
    for (const Field& field : joined(account.fields)) {
        if (field.kind != Kind::cleared) {
            text += line(columns, {explain::position_list(out, field.to), explain::value_at(account.out, field.to),
                                   describe(translator, field) + naming.suffix(in, field.from, account.in) +
                                       naming.suffix(out, field.to, account.out)});
        }
    }
    return text + names_text(account, naming, style);
}

void run(const Options& options) {
    const Translator& translator = options.subject.find();
    const Naming naming = options.subject.names();
    const FourthArgument argument = options.argument.read();
    check_argument(translator, argument, "--type", "--key");
    options.tx_adj_key_max.apply({&translator});
    Bytes record = read_record(options.source);
    check_record(translator, record);
    const Account account = explain::account(translator, record, engine_argument(argument));
    if (options.json) {
        print_json(to_json(account, naming));
    } else {
        print(to_text(account, naming, style_of_stdout()));
    }
    check_accepted(account);
}

}  // namespace

void add_explain(Command app) {
    const Command command = app.add_subcommand("explain", "Show what becomes of every bit of a record");
    command.footer("Example: npxlate explain 4 --role key 01 02 03");
    const auto options = std::make_shared<Options>();
    options->subject.add_to(command);
    add_record_source(command, options->source);
    options->argument.add_to(command);
    options->tx_adj_key_max.add_to(command);
    command.add_flag("--json", options->json, "The same as JSON");
    command.callback([options] { run(*options); });
}

}  // namespace tool
