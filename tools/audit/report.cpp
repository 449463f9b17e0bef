#include "audit/report.h"

#include "audit/page.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include "atlas/page.h"
#include "catalogue/catalogue.h"
#include "explain/positions.h"

namespace audit {
namespace {

using Json = nlohmann::ordered_json;

// Findings whose own record is looked at for where their bits come from; others are told as their pattern is.
constexpr std::size_t most_looked_up = 200;

std::string dump(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string hex(ByteSpan bytes) { return fmt::format("{:02x}", fmt::join(bytes, "")); }

struct Part {
    std::string_view name;
    std::uint64_t count;
};

// "10 lines = 8 same + 2 missing"
std::string sum(const std::string& name, std::string_view unit, std::uint64_t all, const std::vector<Part>& parts) {
    std::uint64_t total = 0;
    std::vector<std::string> words;
    for (const Part& part : parts) {
        total += part.count;
        if (part.count != 0) {
            words.push_back(fmt::format("{} {}", grouped(part.count), part.name));
        }
    }
    if (total != all) {
        throw std::logic_error{fmt::format("the numbers of {} do not add up: {} and {}", name, all, total)};
    }
    if (words.empty()) {
        words.emplace_back("none");
    }
    return fmt::format("{}: {} {}{} = {}", name, grouped(all), unit, all == 1 ? "y" : "ies", fmt::join(words, " + "));
}

// The parts of a file that say nothing of a key.
std::vector<Part> other_parts(const std::vector<const FileCounts*>& files) {
    std::uint64_t unreadable = 0;
    std::uint64_t other = 0;
    std::uint64_t empty = 0;
    std::uint64_t refused = 0;
    for (const FileCounts* file : files) {
        unreadable += file->unreadable;
        other += file->other;
        empty += file->empty;
        refused += file->refused;
    }
    return {{"unreadable", unreadable},
            {"of other tables", other},
            {"in empty slots", empty},
            {"in slots whose key the table does not take", refused}};
}

Json to_json(const Counts& counts) {
    return {{"programmed", counts.programmed},
            {"held", counts.held},
            {"same", counts.same},
            {"same_but_for_ignored", counts.same_but_ignored},
            {"different", counts.different},
            {"missing", counts.missing},
            {"unexpected", counts.unexpected},
            {"refused", counts.refused},
            {"duplicate_programmed", counts.duplicate_programmed},
            {"duplicate_held", counts.duplicate_held},
            {"moving", counts.moving}};
}

std::vector<std::string> logical_positions(const Origin& origin) { return explain::positions('L', origin.from); }

std::string value(ByteSpan record, const Origin& origin) {
    return explain::value_at({record.begin(), record.end()}, origin.to);
}

// "L4-5 L8, queue index", "constant 1"
std::string origin_text(const Origin& origin) {
    const std::string from = fmt::format("{}", fmt::join(logical_positions(origin), " "));
    const std::string name = origin.name.empty() ? "" : fmt::format(" ({})", origin.name);
    if (from.empty() || origin.text == "copied") {
        return (from.empty() ? origin.text : from) + name;
    }
    return fmt::format("{}, {}{}", from, origin.text, name);
}

std::vector<std::string> names_at(const names::Record& names, const std::vector<npxlate::Span>& bits) {
    std::vector<std::string> texts;
    for (const names::Mention& mention : names::mentions(names, bits)) {
        texts.push_back(names::to_string(mention));
    }
    return texts;
}

void replace(std::string& text, std::string_view what, std::string_view by) {
    const std::size_t at = text.find(what);
    text.replace(at, what.size(), by);
}

}  // namespace

std::vector<std::string> sums(const Result& result) {
    std::vector<std::string> all;
    const Counts& counts = result.all;
    std::vector<Part> parts{{"same", counts.same},
                            {"different", counts.different},
                            {"missing", counts.missing},
                            {"moving", counts.moving_programmed},
                            {"duplicate", counts.duplicate_programmed}};
    std::vector<Part> others = other_parts({&result.files.front()});
    others.back().name = "refused";
    parts.insert(parts.end(), others.begin(), others.end());
    all.push_back(sum(result.files.front().name, "entr", result.files.front().entries, parts));
    for (std::size_t dump = 0; dump < result.dumps; ++dump) {
        std::vector<const FileCounts*> files;
        std::string name;
        std::uint64_t entries = 0;
        std::uint64_t taken = 0;
        for (const FileCounts& file : result.files) {
            if (&file != &result.files.front() && file.dump == dump) {
                files.push_back(&file);
                name += (name.empty() ? "" : " and ") + file.name;
                entries += file.entries;
                taken += file.taken;
            }
        }
        parts = {{"compared", taken}};
        if (dump + 1 == result.dumps) {
            parts = {{"same", counts.same},
                     {"different", counts.different},
                     {"unexpected", counts.unexpected},
                     {"moving", counts.moving_held + counts.moving_duplicates},
                     {"duplicate", counts.duplicate_held}};
        }
        others = other_parts(files);
        parts.insert(parts.end(), others.begin(), others.end());
        all.push_back(sum(name, "entr", entries, parts));
    }
    return all;
}

Report::Report(const Result& result, const Settings& settings, std::size_t most_findings, bool moving,
               const names::Names* names)
    : result_{result},
      settings_{settings},
      names_{names},
      patterns_{find_patterns(result, settings, most_findings, moving)},
      listed_(patterns_.size()) {
    for (const Pattern& pattern : patterns_) {
        found_ += pattern.count;
    }
    // One of each, then another of each, until there are enough.
    std::uint64_t left = std::min<std::uint64_t>(most_findings, found_);
    listed_in_all_ = left;
    while (left > 0) {
        std::uint64_t open = 0;
        for (std::size_t i = 0; i < patterns_.size(); ++i) {
            open += listed_[i] < patterns_[i].members.size() ? 1 : 0;
        }
        const std::uint64_t each = std::max<std::uint64_t>(1, left / open);
        for (std::size_t i = 0; i < patterns_.size() && left > 0; ++i) {
            const std::uint64_t more = std::min({each, left, patterns_[i].members.size() - listed_[i]});
            listed_[i] += more;
            left -= more;
        }
    }
}

std::size_t Report::file_of(Store::Ref ref) const {
    const Store::Head& head = result_.held.head(ref);
    std::size_t newest = 0;
    for (std::size_t dump = 0; dump < result_.dumps; ++dump) {
        newest = (head.dumps >> dump & 1U) != 0 ? dump : newest;
    }
    for (std::size_t i = 1; i < result_.files.size(); ++i) {
        const FileCounts& file = result_.files[i];
        const bool raw = (head.flags & Store::raw) != 0;
        if (file.dump == newest && (raw ? file.raw_of == head.table : !file.raw_of)) {
            return i;
        }
    }
    throw std::logic_error{"a record of no file"};
}

void Report::put_origins(Finding& finding, const Different& one) const {
    if (one.logical_size != 0 && looked_up_ < most_looked_up) {
        ++looked_up_;
        finding.origins = origins_of(
            origins(catalogue::of_table(finding.pattern->table, catalogue::Role::result), result_.logical(one)),
            finding.bits);
    } else {
        finding.origins = origins_of(finding.pattern->origins, finding.bits);
    }
}

Finding Report::finding(const Pattern& pattern, std::uint64_t member) const {
    Finding finding;
    finding.pattern = &pattern;
    const auto hold = [&](Store::Ref key) {
        const Store::Ref newest = result_.newest(key);
        finding.key = result_.held.key(key);
        finding.held = result_.held.result(newest);
        finding.held_at = result_.held.head(newest).held;
        finding.held_file = file_of(newest);
    };
    const auto ref = static_cast<Store::Ref>(member);
    switch (pattern.kind) {
        case FindingKind::different: {
            const Different& one = result_.different[member];
            hold(one.key);
            finding.programmed_line = one.line;
            finding.programmed = result_.programmed(one);
            finding.explained = one.explained;
            finding.logical = result_.logical(one);
            finding.bits = differing(result_, settings_, one);
            put_origins(finding, one);
            break;
        }
        case FindingKind::missing:
            if ((member & Pattern::in_absent) != 0) {
                finding.key = result_.absent.key(ref);
                finding.programmed = result_.absent.result(ref);
                finding.programmed_line = result_.absent.head(ref).programmed_at;
            } else {
                finding.key = result_.held.key(ref);
                finding.programmed_line = result_.held.head(ref).programmed_at;
            }
            break;
        case FindingKind::unexpected:
            hold(ref);
            break;
        case FindingKind::moving:
            hold(ref);
            if ((result_.held.head(ref).flags & Store::programmed) != 0) {
                finding.programmed_line = result_.held.head(ref).programmed_at;
            }
            break;
        case FindingKind::refused:
            finding.programmed_line = result_.refused[member].line;
            finding.reason = result_.reasons[result_.refused[member].reason];
            break;
        case FindingKind::duplicate_programmed:
        case FindingKind::duplicate_held: {
            const Duplicate& one = result_.duplicates[member];
            finding.key = (one.absent ? result_.absent : result_.held).key(one.key);
            finding.first = one.first;
            finding.same_record = one.same_record;
            if (one.programmed) {
                finding.programmed_line = one.line;
            } else {
                finding.held_at = one.line;
                finding.held_file = file_of(result_.newest(one.key));
            }
            break;
        }
        case FindingKind::unreadable: {
            const Unreadable& one = result_.unreadable[member];
            finding.held_at = one.number;
            finding.held_file = one.file;
            finding.reason = result_.reasons[one.reason];
            break;
        }
    }
    return finding;
}

std::string Report::place(std::size_t file, std::uint64_t number) const {
    const FileCounts& counts = result_.files[file];
    return fmt::format("{} {} of {}", counts.raw_of ? "record" : "line", number, counts.name);
}

std::string Report::text_of(const Finding& finding) const {
    std::string text = "  ";
    std::vector<std::string> places;
    if (finding.programmed_line) {
        places.push_back(place(0, *finding.programmed_line));
    }
    if (finding.held_at) {
        places.push_back(place(finding.held_file, *finding.held_at));
    }
    if (!finding.key.empty()) {
        text += fmt::format("key {}: ", hex(finding.key));
    }
    text += fmt::format("{}", fmt::join(places, ", "));
    if (finding.first) {
        text +=
            fmt::format(", repeats {} with {} record", *finding.first, finding.same_record ? "the same" : "another");
    }
    if (!finding.reason.empty()) {
        text += fmt::format(": {}", finding.reason);
    }
    text += "\n";
    if (!finding.programmed.empty()) {
        text += fmt::format("    programmed  {}\n", hex(finding.programmed));
    }
    if (!finding.held.empty()) {
        text += fmt::format("    held        {}\n", hex(finding.held));
    }
    for (const Origin& origin : finding.origins) {
        text += fmt::format("    {}: {}, programmed {}, held {}", fmt::join(explain::positions('P', origin.to), " "),
                            origin_text(origin), value(finding.programmed, origin), value(finding.held, origin));
        if (const std::string number = logical_value(origin, finding.programmed);
            !number.empty() && number != value(finding.programmed, origin)) {
            text += fmt::format(": {} and {}", number, logical_value(origin, finding.held));
        }
        text += "\n";
        for (const Named& one : named(finding, origin)) {
            text += fmt::format("        {}{}{}\n", one.name, one.programmed.empty() ? "" : " = " + one.programmed,
                                one.held.empty() ? "" : ", held " + one.held);
        }
    }
    return text;
}

std::string Report::tables_text() const {
    constexpr std::string_view row = "{:>6} {:>12} {:>12} {:>12} {:>10} {:>10} {:>10} {:>8} {:>9} {:>8}\n";
    std::string text = fmt::format(row, "table", "programmed", "held", "same", "different", "missing", "unexpected",
                                   "refused", "duplicate", "moving");
    const auto put = [&](const std::string& name, const Counts& counts) {
        text += fmt::format(row, name, grouped(counts.programmed), grouped(counts.held), grouped(counts.same),
                            grouped(counts.different), grouped(counts.missing), grouped(counts.unexpected),
                            grouped(counts.refused), grouped(counts.duplicate_programmed + counts.duplicate_held),
                            grouped(counts.moving));
    };
    // Of many tables, those that are clean are put together.
    constexpr std::size_t most_rows = 24;
    std::vector<unsigned> tables;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const Counts& counts = result_.tables[table];
        if (counts.programmed + counts.held + counts.moving + counts.unexpected != 0) {
            tables.push_back(table);
        }
    }
    Counts others;
    std::size_t clean = 0;
    for (const unsigned table : tables) {
        const Counts& counts = result_.tables[table];
        if (tables.size() > most_rows && counts.same == counts.programmed && counts.same == counts.held) {
            others += counts;
            ++clean;
        } else {
            put(std::to_string(table), counts);
        }
    }
    if (clean != 0) {
        put("others", others);
    }
    put("all", result_.all);
    if (clean != 0) {
        text += fmt::format("others: {} tables that are held as they were programmed\n", clean);
    }
    return text;
}

void Report::write_text(const Write& write) const {
    constexpr std::size_t most_patterns = 50;
    constexpr std::size_t most_origins = 6;
    if (result_.clean()) {
        write(fmt::format("nothing found: {} entries are held as they were programmed\n", grouped(result_.all.same)));
    }
    for (std::size_t i = 0; i < std::min(patterns_.size(), most_patterns); ++i) {
        const Pattern& pattern = patterns_[i];
        write(sentence(result_, pattern) + "\n");
        if (const std::string more = remark(pattern); !more.empty()) {
            write(fmt::format("    {}\n", more));
        }
        for (std::size_t k = 0; k < std::min(pattern.origins.size(), most_origins); ++k) {
            const Origin& origin = pattern.origins[k];
            write(fmt::format("    {}: {}{}\n", fmt::join(explain::positions('P', origin.to), " "), origin_text(origin),
                              names_text(pattern, origin)));
        }
        if (pattern.origins.size() > most_origins) {
            write(fmt::format("    and {} more fields\n", pattern.origins.size() - most_origins));
        }
    }
    if (patterns_.size() > most_patterns) {
        write(fmt::format("and {} more patterns (--json and --html have all)\n",
                          grouped(patterns_.size() - most_patterns)));
    }
    write(fmt::format("\n{}\n", tables_text()));
    for (const std::string& line : sums(result_)) {
        write(line + "\n");
    }
    if (result_.all.same_but_ignored != 0) {
        write(fmt::format("{} of the same differ only in bits that are ignored\n",
                          grouped(result_.all.same_but_ignored)));
    }
    if (listed_in_all_ == 0) {
        return;
    }
    write(fmt::format("\n{} of {} finding{}{}\n", grouped(listed_in_all_), grouped(found_), found_ == 1 ? "" : "s",
                      listed_in_all_ < found_ ? " (--limit lists more)" : ""));
    for (std::size_t i = 0; i < patterns_.size(); ++i) {
        if (listed_[i] == 0) {
            continue;
        }
        write(fmt::format("\n{}\n", sentence(result_, patterns_[i])));
        for (std::size_t k = 0; k < listed_[i]; ++k) {
            write(text_of(finding(patterns_[i], patterns_[i].members[k])));
        }
    }
}

const names::Record* Report::names_of(unsigned table) const {
    return names_ == nullptr ? nullptr : names_->of(catalogue::of_table(table, catalogue::Role::result), table);
}

std::vector<Report::Named> Report::named(const Finding& finding, const Origin& origin) const {
    const names::Record* const names = names_of(finding.pattern->table);
    if (names == nullptr) {
        return {};
    }
    // The logical record as it was programmed and as it would be to give what is held: of a record that was not kept,
    // the bits that came through; of the held one, no bits that something was computed from and that came out
    // otherwise.
    const std::size_t bytes = std::max({names->size, names->translator->in().most, finding.logical.size()});
    names::Bytes programmed(bytes);
    std::ranges::copy(finding.logical, programmed.begin());
    std::vector<bool> known_programmed(8 * bytes);
    std::fill_n(known_programmed.begin(), 8 * finding.logical.size(), true);
    const auto put = [](names::Bytes& record, const Origin::Link& link, ByteSpan physical) {
        const bool set = link.to / 8U < physical.size() && (physical[link.to / 8U] >> link.to % 8U & 1U) != 0;
        const auto mask = static_cast<std::uint8_t>(1U << link.from % 8U);
        std::uint8_t& byte = record.at(link.from / 8U);
        byte = static_cast<std::uint8_t>(set != link.inverted ? byte | mask : byte & ~mask);
    };
    for (const Origin& one : finding.origins) {
        for (const Origin::Link& link : one.links) {
            if (!known_programmed.at(link.from)) {
                put(programmed, link, finding.programmed);
                known_programmed[link.from] = true;
            }
        }
    }
    names::Bytes held = programmed;
    std::vector<bool> known_held = known_programmed;
    for (const Origin& one : finding.origins) {
        for (const npxlate::Span span : one.links.empty() ? one.from : std::vector<npxlate::Span>{}) {
            std::fill_n(known_held.begin() + span.first_bit, span.width, false);
        }
    }
    for (const Origin& one : finding.origins) {
        for (const Origin::Link& link : one.links) {
            put(held, link, finding.held);
            known_held[link.from] = true;
        }
    }
    const auto value = [](const names::Field& field, const names::Bytes& record, const std::vector<bool>& known) {
        const bool whole =
            std::ranges::all_of(names::bits_in_order(field.bits), [&](std::uint16_t bit) { return known[bit]; });
        return whole ? names::value_in(field, record) : "";
    };
    std::vector<Named> all;
    for (const names::Mention& mention : finding.logical.empty()
                                             ? names::mentions(*names, origin.from)
                                             : names::mentions(*names, origin.from, finding.logical)) {
        all.push_back({names::to_string(mention), value(*mention.field, programmed, known_programmed),
                       value(*mention.field, held, known_held)});
    }
    return all;
}

std::string Report::names_text(const Pattern& pattern, const Origin& origin) const {
    const names::Record* const names = names_of(pattern.table);
    const std::vector<std::string> texts =
        names == nullptr ? std::vector<std::string>{} : names_at(*names, origin.from);
    return texts.empty() ? "" : fmt::format(" [{}]", fmt::join(texts, ", "));
}

Json Report::fields_json(const Finding& finding) const {
    Json fields = Json::array();
    for (const Origin& origin : finding.origins) {
        Json field{{"at", explain::positions('P', origin.to)},
                   {"from", logical_positions(origin)},
                   {"text", origin.text},
                   {"name", origin.name.empty() ? Json(nullptr) : Json(origin.name)},
                   {"programmed", value(finding.programmed, origin)},
                   {"held", value(finding.held, origin)}};
        if (const std::string number = logical_value(origin, finding.programmed); !number.empty()) {
            field["programmed_value"] = number;
            field["held_value"] = logical_value(origin, finding.held);
        }
        if (names_of(finding.pattern->table) != nullptr) {
            Json names = Json::array();
            for (const Named& one : named(finding, origin)) {
                const auto known = [](const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); };
                names.push_back({{"name", one.name}, {"programmed", known(one.programmed)}, {"held", known(one.held)}});
            }
            field["names"] = std::move(names);
        }
        fields.push_back(std::move(field));
    }
    return fields;
}

Json Report::to_json(const Pattern& pattern) const {
    Json json{{"finding", to_string(pattern.kind)}};
    if (pattern.kind == FindingKind::unreadable) {
        json["file"] = result_.files[pattern.file].name;
    } else {
        json["table"] = pattern.table;
    }
    json["count"] = pattern.count;
    json["text"] = sentence(result_, pattern);
    if (pattern.kind == FindingKind::different) {
        json["at"] = explain::positions('P', spans_of(Bits{pattern.always} |= pattern.within));
        json["always"] = explain::positions('P', spans_of(pattern.always));
        json["explained"] = pattern.explained == Explained::no ? Json(nullptr) : Json(to_string(pattern.explained));
        json["remark"] = remark(pattern);
        Json origins = Json::array();
        for (const Origin& origin : pattern.origins) {
            Json field{{"at", explain::positions('P', origin.to)},
                       {"from", logical_positions(origin)},
                       {"text", origin.text},
                       {"name", origin.name.empty() ? Json(nullptr) : Json(origin.name)}};
            if (const names::Record* const names = names_of(pattern.table)) {
                field["names"] = names_at(*names, origin.from);
            }
            origins.push_back(std::move(field));
        }
        json["fields"] = std::move(origins);
    }
    if (!pattern.lowest.empty()) {
        json["lowest_key"] = hex(pattern.lowest);
        json["highest_key"] = hex(pattern.highest);
    }
    return json;
}

Json Report::to_json(const Finding& finding) const {
    const Pattern& pattern = *finding.pattern;
    Json json{{"finding", to_string(pattern.kind)}};
    if (pattern.kind != FindingKind::unreadable) {
        json["table"] = pattern.table;
    }
    if (pattern.kind == FindingKind::duplicate_programmed || pattern.kind == FindingKind::duplicate_held) {
        json["side"] = pattern.kind == FindingKind::duplicate_programmed ? "programmed" : "held";
    }
    if (!finding.key.empty()) {
        json["physical_key"] = hex(finding.key);
    }
    if (finding.programmed_line) {
        json["programmed_line"] = *finding.programmed_line;
    }
    if (finding.held_at) {
        const bool unreadable = pattern.kind == FindingKind::unreadable;
        const FileCounts& file = result_.files[finding.held_file];
        json[unreadable ? "file" : "held_file"] = file.name;
        json[fmt::format("{}{}", unreadable ? "" : "held_", file.raw_of ? "record" : "line")] = *finding.held_at;
    }
    if (finding.first) {
        json["first"] = *finding.first;
        json["same_record"] = finding.same_record;
    }
    if (!finding.programmed.empty()) {
        json["programmed"] = hex(finding.programmed);
    }
    if (!finding.held.empty()) {
        json["held"] = hex(finding.held);
    }
    if (pattern.kind == FindingKind::different) {
        json["differs_at"] = explain::positions('P', spans_of(finding.bits));
        json["explained"] = finding.explained == Explained::no ? Json(nullptr) : Json(to_string(finding.explained));
        json["fields"] = fields_json(finding);
    }
    if (!finding.reason.empty()) {
        json["reason"] = finding.reason;
    }
    return json;
}

Json Report::summary_json() const {
    Json summary{{"clean", result_.clean()}};
    Json all_patterns = Json::array();
    for (const Pattern& pattern : patterns_) {
        all_patterns.push_back(to_json(pattern));
    }
    summary["patterns"] = std::move(all_patterns);
    Json tables = Json::array();
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const Counts& counts = result_.tables[table];
        if (counts.programmed + counts.held + counts.unexpected + counts.moving != 0) {
            Json json{{"table", table}};
            json.update(audit::to_json(counts));
            tables.push_back(std::move(json));
        }
    }
    summary["tables"] = std::move(tables);
    summary["all"] = audit::to_json(result_.all);
    Json files = Json::array();
    for (std::size_t i = 0; i < result_.files.size(); ++i) {
        const FileCounts& file = result_.files[i];
        files.push_back({{"name", file.name},
                         {"side", i == 0 ? "programmed" : "held"},
                         {"dump", i == 0 ? Json(nullptr) : Json(file.dump + 1)},
                         {"entries", file.entries},
                         {"unreadable", file.unreadable},
                         {"of_other_tables", file.other},
                         {"refused", file.refused},
                         {"empty", file.empty}});
    }
    summary["files"] = std::move(files);
    summary["sums"] = sums(result_);
    return summary;
}

void Report::write_json(const Write& write) const {
    for (std::size_t i = 0; i < patterns_.size(); ++i) {
        for (std::size_t k = 0; k < listed_[i]; ++k) {
            Json json = to_json(finding(patterns_[i], patterns_[i].members[k]));
            json["pattern"] = i;
            write(dump(json) + "\n");
        }
    }
    write(dump({{"summary", summary_json()}}) + "\n");
}

std::string Report::page() const {
    Json data = summary_json();
    for (std::size_t i = 0; i < patterns_.size(); ++i) {
        Json findings = Json::array();
        for (std::size_t k = 0; k < listed_[i]; ++k) {
            findings.push_back(to_json(finding(patterns_[i], patterns_[i].members[k])));
        }
        data["patterns"][i]["findings"] = std::move(findings);
    }
    std::string text = dump(data);
    for (std::size_t at = 0; (at = text.find('<', at)) != std::string::npos;) {
        text.replace(at, 1, "\\u003c");  // so that nothing in it ends the script
    }
    std::string page{page_html};
    replace(page, "{css}", std::string{atlas::page_css} + std::string{page_css});
    replace(page, "{js}", page_js);
    replace(page, "{data}", text);
    return page;
}

}  // namespace audit
