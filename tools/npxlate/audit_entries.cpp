#include "npxlate/audit_entries.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/core.h>

#include "io/entry.h"
#include "npxlate/entry_fields.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"
#include "npxlate/lookup.h"
#include "npxlate/output.h"
#include "npxlate/taken.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using audit::Kind;
using catalogue::Role;
using catalogue::Translator;

// The table does not take the record.
struct RefusedRecord : NotDone {
    using NotDone::NotDone;
};

class Translators {
public:
    Translators() {
        for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
            keys_[table] = &catalogue::of_table(table, Role::key);
            results_[table] = &catalogue::of_table(table, Role::result);
        }
    }
    const Translator& key(unsigned table) const { return *keys_[table]; }
    const Translator& result(unsigned table) const { return *results_[table]; }

private:
    std::array<const Translator*, NPXLATE_TABLE_COUNT> keys_{};
    std::array<const Translator*, NPXLATE_TABLE_COUNT> results_{};
};

// The physical record. Throws RefusedRecord if the table does not take the logical one.
void translate_into(const Translator& translator, Bytes& logical, Bytes& physical) {
    try {
        check_record(translator, logical);
    } catch (const WrongInput& error) {
        throw RefusedRecord{error.what()};
    }
    std::array<std::uint8_t, most_record_bytes> out{};
    const Reply reply = translate(translator, logical.data(), logical.size(), out.data(), {});
    if (!reply.translated) {
        throw RefusedRecord{rejection(translator, reply)};
    }
    physical.assign(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(reply.size));
}

// What lines of either side have in common: an object with a table, a key and a result.
class LineReader : public audit::Reader {
public:
    // What the records are called, and where they may be given by name, what they are called then.
    struct Record {
        std::string_view name;
        std::string_view by_name{};
    };

    LineReader(const Tables& tables, const Record& key, const Record& result)
        : tables_{tables}, key_{key}, result_{result} {}

    void read(std::string_view line, std::uint64_t, audit::Entry& entry) final {
        if (line.find_first_not_of(" \t\r") == std::string_view::npos) {
            entry.kind = Kind::blank;
            return;
        }
        try {
            find_members(line);
            entry.table = static_cast<std::uint8_t>(table());
            if (!tables_.test(entry.table)) {
                entry.kind = Kind::other;
                return;
            }
            entry.kind = Kind::entry;
            take(entry);
        } catch (const RefusedRecord& refused) {
            entry.kind = Kind::refused;
            entry.reason = refused.what();
        } catch (const Failure& failure) {
            entry.kind = Kind::unreadable;
            entry.reason = failure.what();
        }
    }

protected:
    virtual void take(audit::Entry& entry) = 0;

    // What stands in the line for a record.
    struct Value {
        const Record& record;
        std::string_view text{};
        bool by_name = false;

        std::string_view name() const { return by_name ? record.by_name : record.name; }
    };
    const Value& key() const { return key_value_; }
    const Value& result() const { return result_value_; }

    void read_record(const Value& value, Bytes& bytes) {
        if (!io::is_string(value.text)) {
            throw WrongInput{fmt::format("\"{}\": expected a string of hex", value.name())};
        }
        try {
            parse_hex(io::text_of(value.text, storage_), bytes);
        } catch (const WrongInput& error) {
            throw WrongInput{fmt::format("\"{}\": {}", value.name(), error.what())};
        }
    }

private:
    static bool is_taken(Value& value, const io::Entry::Member& member) {
        const bool by_name = !value.record.by_name.empty() && member.name == value.record.by_name;
        if (!by_name && member.name != value.record.name) {
            return false;
        }
        if (!value.text.empty()) {
            throw WrongInput{by_name == value.by_name ? fmt::format("expected one \"{}\", found another", member.name)
                                                      : fmt::format(R"(expected "{}" or "{}", found both)",
                                                                    value.record.name, value.record.by_name)};
        }
        value.text = member.value;
        value.by_name = by_name;
        return true;
    }

    void find_members(std::string_view line) {
        json_.parse(line);
        table_ = key_value_.text = result_value_.text = {};
        for (const io::Entry::Member& member : json_.members()) {
            if (member.name == "table") {
                if (!table_.empty()) {
                    throw WrongInput{R"(expected one "table", found another)"};
                }
                table_ = member.value;
            } else if (!is_taken(key_value_, member)) {
                is_taken(result_value_, member);
            }
        }
        for (const auto& [name, value] :
             {std::pair{std::string_view{"table"}, table_}, std::pair{key_.name, key_value_.text},
              std::pair{result_.name, result_value_.text}}) {
            if (value.empty()) {
                throw WrongInput{
                    fmt::format(R"(expected "table", "{}" and "{}", found no "{}")", key_.name, result_.name, name)};
            }
        }
    }

    // An id, or the name of a translator that stands in one table only.
    unsigned table() {
        const bool text = io::is_string(table_);
        const std::string_view said = text ? io::text_of(table_, storage_) : table_;
        if (const auto number = parse_number(said, NPXLATE_TABLE_COUNT - 1)) {
            return static_cast<unsigned>(*number);
        }
        if (text) {
            if (const Translator* named = catalogue::find(said)) {
                const std::vector<unsigned> tables = catalogue::tables_of(*named);
                if (tables.size() == 1) {
                    return tables.front();
                }
                throw WrongInput{fmt::format("\"table\": {} stands in {} tables: expected a table id", named->name,
                                             tables.empty() ? "no" : "several")};
            }
        }
        throw WrongInput{fmt::format("\"table\": expected a table id from 0 to {} or a translator's name, found {}",
                                     NPXLATE_TABLE_COUNT - 1, printable(table_))};
    }

    Tables tables_;
    Record key_;
    Record result_;
    io::Entry json_;
    std::string storage_;
    std::string_view table_;
    Value key_value_{key_};
    Value result_value_{result_};
};

class ProgrammedReader final : public LineReader {
public:
    ProgrammedReader(const Tables& tables, const names::Names* names)
        : LineReader{tables, {"key", "key_fields"}, {"result", "fields"}}, names_{names} {}

private:
    void take(audit::Entry& entry) override {
        read_value(key(), translators_.key(entry.table), entry.table, record_);
        read_value(result(), translators_.result(entry.table), entry.table, entry.logical);
        translate_into(translators_.key(entry.table), record_, entry.key);
        record_ = entry.logical;  // which a translator may change
        translate_into(translators_.result(entry.table), record_, entry.result);
    }

    void read_value(const Value& value, const Translator& translator, unsigned table, Bytes& bytes) {
        if (!value.by_name) {
            read_record(value, bytes);
            return;
        }
        try {
            bytes = record_of_fields(value.text, translator, table, names_);
        } catch (const WrongInput& error) {
            throw WrongInput{fmt::format("\"{}\": {}", value.name(), error.what())};
        }
    }

    const names::Names* names_;
    Translators translators_;
    Bytes record_;
};

class HeldReader final : public LineReader {
public:
    explicit HeldReader(const Tables& tables) : LineReader{tables, {"physical_key"}, {"physical_result"}} {}

private:
    void take(audit::Entry& entry) override {
        read_record(key(), entry.key);
        read_record(result(), entry.result);
        for (const Bytes* record : {&entry.key, &entry.result}) {
            if (record->size() > NPXLATE_MAX_PHYSICAL_LENGTH) {
                throw WrongInput{fmt::format("expected physical records of at most {} bytes, found {}",
                                             NPXLATE_MAX_PHYSICAL_LENGTH, record->size())};
            }
        }
    }
};

class RawReader final : public audit::Reader {
public:
    RawReader(unsigned table, std::size_t key_bytes)
        : table_{table}, key_translator_{catalogue::of_table(table, Role::key)}, key_(key_bytes) {}

    void read(std::string_view record, std::uint64_t number, audit::Entry& entry) override {
        entry.table = static_cast<std::uint8_t>(table_);
        if (std::ranges::all_of(record, [](char c) { return c == '\0'; })) {
            entry.kind = Kind::empty;
            return;
        }
        std::uint64_t rest = number;
        for (std::uint8_t& byte : key_) {
            byte = static_cast<std::uint8_t>(rest);
            rest >>= 8U;
        }
        try {
            if (rest != 0) {
                throw RefusedRecord{fmt::format("{} is no key of {}", number, describe(key_.size()))};
            }
            translate_into(key_translator_, key_, entry.key);
            entry.kind = Kind::entry;
            entry.result.assign(record.begin(), record.end());
        } catch (const RefusedRecord& refused) {
            entry.kind = Kind::refused;
            entry.reason = refused.what();
        }
    }

private:
    unsigned table_;
    const Translator& key_translator_;
    Bytes key_;
};

}  // namespace

audit::MakeReader programmed_entries(const Tables& tables, const names::Names* names) {
    return [tables, names] { return std::make_unique<ProgrammedReader>(tables, names); };
}

audit::MakeReader held_entries(const Tables& tables) {
    return [tables] { return std::make_unique<HeldReader>(tables); };
}

audit::MakeReader raw_entries(unsigned table, std::size_t key_bytes) {
    return [table, key_bytes] { return std::make_unique<RawReader>(table, key_bytes); };
}

}  // namespace tool
