#include "npxlate/entry_translator.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include <fmt/core.h>

#include "npxlate/entry_fields.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"
#include "npxlate/lookup.h"
#include "npxlate/names_option.h"
#include "npxlate/output.h"
#include "npxlate/taken.h"

namespace tool {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;
using Member = io::Entry::Member;

const std::array<std::string_view, EntryTranslator::known_count> EntryTranslator::names{
    "table",  "type",         "logical_key",     "key",           "result", "key_fields",
    "fields", "physical_key", "physical_result", "logical_result"};

const std::array<EntryTranslator::Step, 5> EntryTranslator::steps{{
    {key, physical_key, Role::key},
    {result, physical_result, Role::result},
    {key_fields, physical_key, Role::key, true},
    {fields, physical_result, Role::result, true},
    {physical_result, logical_result, Role::reverse},
}};

const std::array<EntryTranslator::Step, 2> EntryTranslator::decoding{{
    {physical_key, key, Role::key},
    {physical_result, result, Role::result},
}};

EntryTranslator::EntryTranslator(const Options& options) : options_{options} {
    for (unsigned id = 0; id < NPXLATE_TABLE_COUNT; ++id) {
        for (const Role role : {Role::key, Role::result, Role::reverse}) {
            of_table_[id][static_cast<std::size_t>(role)] = &catalogue::of_table(id, role);
        }
    }
    in_.reserve(most_record_bytes);
}

void EntryTranslator::translate(std::string_view line, std::string& text) {
    const std::size_t before = text.size();
    try {
        entry_.parse(line);
        find_members();
        check();
        char separator = '{';
        for (const Member& member : entry_.members()) {
            text += separator;
            text += '"';
            const Step* const step = step_of(member);
            if (step != nullptr && step->by_name) {
                text += fmt::format("{}\":{},\"", member.written, member.value);
            }
            if (step != nullptr) {
                text += names[step->to];
                text += "\":\"";
                if (options_.decode) {
                    write_decoded(text, *step);
                } else {
                    write_record(text, *step);
                    text += '"';
                }
            } else {
                text += member.written;
                text += "\":";
                text += member.value;
            }
            separator = ',';
        }
        text += "}\n";
    } catch (...) {
        text.resize(before);
        throw;
    }
}

void EntryTranslator::find_members() {
    members_.fill(nullptr);
    for (const Member& member : entry_.members()) {
        const auto* const name = std::ranges::find(names, member.name);
        if (name == names.end()) {
            continue;
        }
        const Member*& place = members_[static_cast<std::size_t>(name - names.begin())];
        if (place != nullptr) {
            throw WrongInput{fmt::format("expected one \"{}\", found another", *name)};
        }
        place = &member;
    }
}

void EntryTranslator::check() const {
    if (member(table) == nullptr) {
        throw WrongInput{R"(expected "table", a table id or a translator's name)"};
    }
    for (const auto& [record, by_name] : {std::pair{key, key_fields}, std::pair{result, fields}}) {
        if (member(record) != nullptr && member(by_name) != nullptr) {
            throw WrongInput{fmt::format(R"(expected "{}" or "{}", found both)", names[record], names[by_name])};
        }
    }
    bool translates = false;
    for (const Step& step : all_steps()) {
        if (member(step.from) == nullptr || step_of(*member(step.from)) == nullptr) {
            continue;
        }
        translates = true;
        if (member(step.to) != nullptr) {
            throw WrongInput{
                fmt::format(R"("{}" is there already, and "{}" would be translated to it: expected one of them)",
                            names[step.to], names[step.from])};
        }
    }
    if (!translates && options_.decode) {
        throw WrongInput{R"(expected "physical_key" or "physical_result")"};
    }
    if (!translates) {
        throw WrongInput{R"(expected "key", "result", "key_fields", "fields" or "physical_result")"};
    }
}

// With a logical record in the entry, the physical ones are not what is asked about.
const EntryTranslator::Step* EntryTranslator::step_of(const Member& member) const {
    const bool forward = std::ranges::any_of(
        steps, [this](const Step& step) { return step.role != Role::reverse && this->member(step.from) != nullptr; });
    for (const Step& step : all_steps()) {
        const bool is_asked_for = options_.decode || forward == (step.role != Role::reverse);
        if (&member == this->member(step.from) && is_asked_for) {
            return &step;
        }
    }
    return nullptr;
}

void EntryTranslator::read_hex(Known known, Bytes& bytes) {
    const std::string_view value = member(known)->value;
    try {
        if (!io::is_string(value)) {
            throw WrongInput{"expected a string of hex"};
        }
        parse_hex(io::text_of(value, storage_), bytes);
    } catch (const WrongInput& error) {
        throw WrongInput{fmt::format("\"{}\": {}", names[known], error.what())};
    }
}

const Translator& EntryTranslator::translator_for(Role role) {
    const std::string_view value = member(table)->value;
    if (io::is_string(value)) {
        return find_translator(io::text_of(value, storage_), role);
    }
    if (const auto id = parse_number(value, NPXLATE_TABLE_COUNT - 1)) {
        return *of_table_[*id][static_cast<std::size_t>(role)];
    }
    throw WrongInput{fmt::format("\"table\": expected a table id from 0 to {} or a translator's name, found {}",
                                 NPXLATE_TABLE_COUNT - 1, printable(value))};
}

FourthArgument EntryTranslator::argument_for(const Translator& translator) {
    FourthArgument argument;
    if (translator.has(Trait::takes_type) && member(type) != nullptr) {
        const std::string_view value = member(type)->value;
        const auto number = parse_number(io::is_string(value) ? io::text_of(value, storage_) : value,
                                         std::numeric_limits<std::uint32_t>::max());
        if (!number) {
            throw WrongInput{fmt::format("\"type\": expected a number of 32 bits, found {}", printable(value))};
        }
        argument.type = static_cast<std::uint32_t>(*number);
    }
    if (translator.has(Trait::takes_key) && member(logical_key) != nullptr) {
        read_hex(logical_key, argument.key.emplace());
    }
    check_argument(translator, argument, "\"type\":", "\"logical_key\":");
    return argument;
}

// {"nexthop": "192.0.2.1", "L0.3": 1}: what is not said is 0.
void EntryTranslator::read_fields(const Step& step, const Translator& translator) {
    try {
        const std::string_view said = member(table)->value;
        const std::optional<unsigned> id = io::is_string(said) ? std::nullopt : table_id(said);
        in_ = record_of_fields(member(step.from)->value, translator, id, options_.names);
    } catch (const WrongInput& error) {
        throw WrongInput{fmt::format("\"{}\": {}", names[step.from], error.what())};
    }
}

std::span<const EntryTranslator::Step> EntryTranslator::all_steps() const {
    return options_.decode ? std::span<const Step>{decoding} : std::span<const Step>{steps};
}

// The rest of the member, and how many other forms there are.
void EntryTranslator::write_decoded(std::string& text, const Step& step) {
    const Translator& translator = translator_for(step.role);
    read_hex(step.from, in_);
    std::unique_ptr<decode::Decoder>& decoder = decoders_[&translator];
    if (!decoder) {
        decoder = std::make_unique<decode::Decoder>(translator);
    }
    if (!decoder->makes(in_.size())) {
        throw WrongInput{fmt::format("{} makes no records of {} bytes", translator.name, in_.size())};
    }
    const decode::Decoder::Best best = decoder->best(in_);
    if (!best.found) {
        throw NotDone{fmt::format(R"("{}": {} gives these bytes for no record)", names[step.from], translator.name)};
    }
    append_hex(text, best.record);
    text += fmt::format(R"(","{}_others":{})", names[step.to], best.others);
}

void EntryTranslator::write_record(std::string& text, const Step& step) {
    const Translator& translator = translator_for(step.role);
    if (step.by_name) {
        read_fields(step, translator);
    } else {
        read_hex(step.from, in_);
    }
    check_record(translator, in_);
    out_.fill(0);
    const Reply reply = tool::translate(translator, in_.data(), in_.size(), out_.data(), argument_for(translator));
    if (!reply.translated) {
        throw NotDone{rejection(translator, reply)};
    }
    append_hex(text, {out_.data(), reply.size});
}

}  // namespace tool
