#include "npxlate/audit_entries.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "io/entry.h"
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
    LineReader(const Tables& tables, std::string_view key, std::string_view result)
        : tables_{tables}, key_name_{key}, result_name_{result} {}

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

    void read_key(Bytes& bytes) { read_record(key_name_, key_, bytes); }
    void read_result(Bytes& bytes) { read_record(result_name_, result_, bytes); }

private:
    void find_members(std::string_view line) {
        json_.parse(line);
        table_ = key_ = result_ = {};
        for (const io::Entry::Member& member : json_.members()) {
            std::string_view* const wanted = member.name == "table"        ? &table_
                                             : member.name == key_name_    ? &key_
                                             : member.name == result_name_ ? &result_
                                                                           : nullptr;
            if (wanted == nullptr) {
                continue;
            }
            if (!wanted->empty()) {
                throw WrongInput{fmt::format("expected one \"{}\", found another", member.name)};
            }
            *wanted = member.value;
        }
        for (const auto& [name, value] : {std::pair{std::string_view{"table"}, table_}, std::pair{key_name_, key_},
                                          std::pair{result_name_, result_}}) {
            if (value.empty()) {
                throw WrongInput{
                    fmt::format(R"(expected "table", "{}" and "{}", found no "{}")", key_name_, result_name_, name)};
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

    void read_record(std::string_view name, std::string_view value, Bytes& bytes) {
        if (!io::is_string(value)) {
            throw WrongInput{fmt::format("\"{}\": expected a string of hex", name)};
        }
        try {
            parse_hex(io::text_of(value, storage_), bytes);
        } catch (const WrongInput& error) {
            throw WrongInput{fmt::format("\"{}\": {}", name, error.what())};
        }
    }

    Tables tables_;
    std::string_view key_name_;
    std::string_view result_name_;
    io::Entry json_;
    std::string storage_;
    std::string_view table_;
    std::string_view key_;
    std::string_view result_;
};

class ProgrammedReader final : public LineReader {
public:
    explicit ProgrammedReader(const Tables& tables) : LineReader{tables, "key", "result"} {}

private:
    void take(audit::Entry& entry) override {
        read_key(record_);
        read_result(entry.logical);
        translate_into(translators_.key(entry.table), record_, entry.key);
        record_ = entry.logical;  // which a translator may change
        translate_into(translators_.result(entry.table), record_, entry.result);
    }

    Translators translators_;
    Bytes record_;
};

class HeldReader final : public LineReader {
public:
    explicit HeldReader(const Tables& tables) : LineReader{tables, "physical_key", "physical_result"} {}

private:
    void take(audit::Entry& entry) override {
        read_key(entry.key);
        read_result(entry.result);
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

audit::MakeReader programmed_entries(const Tables& tables) {
    return [tables] { return std::make_unique<ProgrammedReader>(tables); };
}

audit::MakeReader held_entries(const Tables& tables) {
    return [tables] { return std::make_unique<HeldReader>(tables); };
}

audit::MakeReader raw_entries(unsigned table, std::size_t key_bytes) {
    return [table, key_bytes] { return std::make_unique<RawReader>(table, key_bytes); };
}

}  // namespace tool
