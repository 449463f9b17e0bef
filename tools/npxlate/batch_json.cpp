// Each line is parsed twice: strictly, which proves it to be JSON, and on demand, which gives the text of the members
// that pass through.

#include <simdjson.h>

#include <array>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "npxlate/batch.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"
#include "npxlate/lookup.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;

// A record that an entry may hold: the name of the member before and after the translation.
struct RecordMember {
    std::string_view name;
    std::string_view translated_name;
    Role role;
};

constexpr std::array<RecordMember, 3> record_members{{
    {"key", "key", Role::key},
    {"result", "result", Role::result},
    {"physical_result", "logical_result", Role::reverse},
}};

// Text of the line that is being translated.
struct Member {
    std::string_view name;   // as written, without the quotes
    std::string_view value;  // as written; of a record, what the string says
    const RecordMember* record = nullptr;
};

// The text of a string from behind its opening quote up to the closing one.
std::string_view up_to_quote(const char* text) {
    const char* end = text;
    while (*end != '"') {
        end += *end == '\\' ? 2 : 1;
    }
    return {text, end};
}

std::string_view without_quotes(std::string_view text) {
    return text.starts_with('"') ? text.substr(1, text.size() - 2) : text;
}

class EntryTranslator {
public:
    EntryTranslator() {
        for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
            for (const RecordMember& member : record_members) {
                of_table_[table][index(member.role)] = &catalogue::of_table(table, member.role);
            }
        }
        in_.reserve(most_record_bytes);
    }

    // Appends the translated entry to the text. Throws a Failure, with the text as it was, for an entry that cannot be
    // translated. Behind the line there must be simdjson's padding.
    void translate(std::string_view line, std::string& text) {
        const std::size_t before = text.size();
        try {
            read(line);
            write(text);
        } catch (...) {
            text.resize(before);
            throw;
        }
    }

private:
    static std::size_t index(Role role) { return static_cast<std::size_t>(role); }

    void read(std::string_view line) {
        simdjson::dom::element whole;
        if (const auto error = strict_.parse(line.data(), line.size(), false).get(whole)) {
            throw WrongInput{fmt::format("bad JSON: {}", simdjson::error_message(error))};
        }
        if (!whole.is_object()) {
            throw WrongInput{R"(expected an entry, {"table": ..., "key": ..., "result": ...})"};
        }
        members_.clear();
        table_ = type_ = logical_key_ = {};
        document_ = on_demand_.iterate(
            simdjson::padded_string_view{line.data(), line.size(), line.size() + simdjson::SIMDJSON_PADDING});
        bool records[record_members.size()] = {};
        for (auto field : document_.get_object()) {
            Member member;
            member.name = up_to_quote(field.key().value().raw());
            simdjson::ondemand::value value = field.value();
            for (const RecordMember& record : record_members) {
                if (member.name == record.name) {
                    member.record = &record;
                }
            }
            if (member.record != nullptr) {
                once(records[index(member.record->role)], member.name);
                member.value = string(value, member.name);
            } else {
                member.value = simdjson::to_json_string(value);
                if (member.name == "table") {
                    set_once(table_, member);
                } else if (member.name == "type") {
                    set_once(type_, member);
                } else if (member.name == "logical_key") {
                    set_once(logical_key_, member);
                }
            }
            members_.push_back(member);
        }
        if (table_.empty()) {
            throw WrongInput{R"(expected "table", a table id or a translator's name)"};
        }
        if (records[index(Role::reverse)] && (records[index(Role::key)] || records[index(Role::result)])) {
            throw WrongInput{R"(expected either "physical_result" or "key" and "result", not both)"};
        }
        if (!records[index(Role::key)] && !records[index(Role::result)] && !records[index(Role::reverse)]) {
            throw WrongInput{R"(expected "key", "result" or "physical_result")"};
        }
    }

    static void once(bool& seen, std::string_view name) {
        if (seen) {
            throw WrongInput{fmt::format("expected one \"{}\", found another", name)};
        }
        seen = true;
    }

    static void set_once(std::string_view& text, const Member& member) {
        bool seen = !text.empty();
        once(seen, member.name);
        text = member.value;
    }

    static std::string_view string(simdjson::ondemand::value& value, std::string_view name) {
        std::string_view text;
        if (value.get_string().get(text) != simdjson::SUCCESS) {
            throw WrongInput{fmt::format("\"{}\": expected a string of hex", name)};
        }
        return text;
    }

    void write(std::string& text) {
        char before = '{';
        for (const Member& member : members_) {
            text += before;
            text += '"';
            if (member.record != nullptr) {
                text += member.record->translated_name;
                text += "\":\"";
                write_record(text, member);
                text += '"';
            } else {
                text += member.name;
                text += "\":";
                text += member.value;
            }
            before = ',';
        }
        text += "}\n";
    }

    const Translator& translator_for(Role role) const {
        if (!table_.starts_with('"')) {
            if (const auto table = parse_number(table_, NPXLATE_TABLE_COUNT - 1)) {
                return *of_table_[*table][index(role)];
            }
            throw WrongInput{fmt::format("\"table\": expected a table id from 0 to {} or a translator's name, found {}",
                                         NPXLATE_TABLE_COUNT - 1, printable(table_))};
        }
        return find_translator(without_quotes(table_), role);
    }

    FourthArgument argument_for(const Translator& translator) const {
        FourthArgument argument;
        if (translator.has(Trait::takes_type) && !type_.empty()) {
            const auto type = parse_number(without_quotes(type_), std::numeric_limits<std::uint32_t>::max());
            if (!type) {
                throw WrongInput{fmt::format("\"type\": expected a number of 32 bits, found {}", printable(type_))};
            }
            argument.type = static_cast<std::uint32_t>(*type);
        }
        if (translator.has(Trait::takes_key) && !logical_key_.empty()) {
            argument.key = parse_hex(without_quotes(logical_key_));
        }
        check_argument(translator, argument, "\"type\":", "\"logical_key\":");
        return argument;
    }

    void write_record(std::string& text, const Member& member) {
        const Translator& translator = translator_for(member.record->role);
        try {
            parse_hex(member.value, in_);
        } catch (const WrongInput& error) {
            throw WrongInput{fmt::format("\"{}\": {}", member.name, error.what())};
        }
        check_length(translator, in_.size());
        out_.fill(0);
        const Reply reply = tool::translate(translator, in_.data(), in_.size(), out_.data(), argument_for(translator));
        if (!reply.translated) {
            throw NotDone{rejection(translator, reply)};
        }
        append_hex(text, {out_.data(), reply.size});
    }

    std::array<std::array<const Translator*, 3>, NPXLATE_TABLE_COUNT> of_table_{};
    simdjson::dom::parser strict_;
    simdjson::ondemand::parser on_demand_;
    simdjson::ondemand::document document_;
    std::vector<Member> members_;
    // The values of those members; empty without.
    std::string_view table_;
    std::string_view type_;
    std::string_view logical_key_;
    Bytes in_;
    std::array<std::uint8_t, most_record_bytes> out_{};
};

}  // namespace

void translate_json_lines(InputStream& input, Output& output, Progress& progress) {
    LineReader reader{input, simdjson::SIMDJSON_PADDING};
    EntryTranslator translator;
    std::uint64_t line_number = 0;
    std::uint64_t entries = 0;
    std::uint64_t failed = 0;
    std::string_view line;
    std::string translated;
    while (true) {
        const LineReader::Got got = reader.next(line);
        if (got == LineReader::Got::end) {
            break;
        }
        ++line_number;
        if (got == LineReader::Got::line && line.find_first_not_of(" \t\r") == std::string_view::npos) {
            continue;
        }
        ++entries;
        translated.clear();
        try {
            if (got == LineReader::Got::too_long) {
                throw WrongInput{fmt::format("expected a line of less than {} bytes", LineReader::longest_line)};
            }
            translator.translate(line, translated);
        } catch (const Failure& failure) {
            ++failed;
            progress.clear();
            report(fmt::format("line {}: {}", line_number, failure.what()));
        }
        output.write(translated);
        progress.advance(line.size() + 1, 1);
    }
    output.close();
    if (failed > 0) {
        progress.clear();
        throw NotDone{fmt::format("not translated: {} of {} entries", failed, entries)};
    }
}

}  // namespace tool
