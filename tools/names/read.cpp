// Reading a names file.

#include <toml++/toml.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <map>
#include <system_error>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "names/names.h"

namespace names {
namespace {

using catalogue::Role;
using catalogue::Translator;

// Members of a table in the order of the file.
std::vector<std::pair<const toml::key*, const toml::node*>> in_order(const toml::table& table) {
    std::vector<std::pair<const toml::key*, const toml::node*>> members;
    for (const auto& [key, node] : table) {
        members.emplace_back(&key, &node);
    }
    std::ranges::sort(members, [](const auto& a, const auto& b) {
        const toml::source_position left = a.first->source().begin;
        const toml::source_position right = b.first->source().begin;
        return left < right;
    });
    return members;
}

class Reader {
public:
    explicit Reader(const std::string& source) : source_{source} {}

    std::vector<Record> read(const toml::table& root) {
        expect_members(root, {"record"}, "a names file");
        std::vector<Record> records;
        if (const toml::node* const node = root.get("record")) {
            const toml::array* const array = node->as_array();
            if (array == nullptr || !std::ranges::all_of(*array, &toml::node::is_table)) {
                fail(node->source(), "\"record\": expected tables, each under [[record]]");
            }
            for (const toml::node& one : *array) {
                Record record = read_record(*one.as_table());
                for (const Record& other : records) {
                    if (record.translator == other.translator && record.table == other.table) {
                        fail(one.source(), fmt::format("the {} is named twice: expected one [[record]] for it",
                                                       describe_subject(record)));
                    }
                }
                records.push_back(std::move(record));
            }
        }
        return records;
    }

private:
    [[noreturn]] void fail(const toml::source_region& where, std::string_view message) const {
        throw Error{fmt::format("{}:{}:{}: {}", source_, where.begin.line, where.begin.column, message)};
    }

    // Does what may throw an Error, and says where if it does.
    template <typename Action>
    auto located(const toml::source_region& where, Action action) const {
        try {
            return action();
        } catch (const Error& error) {
            fail(where, error.what());
        }
    }

    void expect_members(const toml::table& table, std::initializer_list<std::string_view> allowed,
                        std::string_view what) const {
        for (const auto& [key, node] : in_order(table)) {
            if (std::ranges::find(allowed, key->str()) == allowed.end()) {
                fail(key->source(),
                     fmt::format("{} has no \"{}\": expected {}", what, key->str(), fmt::join(allowed, ", ")));
            }
        }
    }

    std::string text(const toml::table& table, std::string_view key) const {
        const toml::node* const node = table.get(key);
        return node == nullptr ? std::string{} : text(*node, key);
    }
    std::string text(const toml::node& node, std::string_view key) const {
        const toml::value<std::string>* const value = node.as_string();
        if (value == nullptr || value->get().empty()) {
            fail(node.source(), fmt::format("\"{}\": expected text in quotes", key));
        }
        return value->get();
    }

    std::int64_t number(const toml::node& node, std::string_view key, std::int64_t least, std::int64_t most) const {
        const toml::value<std::int64_t>* const value = node.as_integer();
        if (value == nullptr || value->get() < least || value->get() > most) {
            fail(node.source(), fmt::format("\"{}\": expected a number from {} to {}", key, least, most));
        }
        return value->get();
    }

    static std::string describe_subject(const Record& record) {
        return record.table
                   ? fmt::format("{} of table {}", catalogue::to_string(record.translator->role), *record.table)
                   : fmt::format("record of {}", record.translator->name);
    }

    void read_subject(const toml::table& table, Record& record) const {
        const toml::node* const id = table.get("table");
        const std::string name = text(table, "translator");
        const std::string role = text(table, "role");
        if ((id != nullptr) == !name.empty()) {
            fail(table.source(), R"(expected "table" or "translator", and not both: whose record is it?)");
        }
        if (!role.empty() && role != "key" && role != "result") {
            fail(table.get("role")->source(), R"("role": expected "key" or "result")");
        }
        if (id != nullptr) {
            record.table = static_cast<unsigned>(number(*id, "table", 0, NPXLATE_TABLE_COUNT - 1));
            record.translator = &catalogue::of_table(*record.table, role == "key" ? Role::key : Role::result);
            return;
        }
        if (!role.empty()) {
            fail(table.get("role")->source(), R"("role" goes with "table": a translator has its role)");
        }
        record.translator = catalogue::find(name);
        if (record.translator == nullptr || record.translator->role == Role::reverse) {
            fail(table.get("translator")->source(),
                 fmt::format("\"{}\" is no key or result translator: expected a name that npxlate tables lists", name));
        }
    }

    void read_size(const toml::table& table, Record& record) const {
        const Translator& translator = *record.translator;
        const std::size_t longest = longest_record(translator, record.table);
        record.size = longest;
        const toml::node* const node = table.get("bytes");
        if (node == nullptr) {
            return;
        }
        record.size = static_cast<std::size_t>(number(*node, "bytes", 0, NPXLATE_MAX_LOGICAL_LENGTH));
        if (!translator.in().allows(record.size) && record.size != longest) {
            std::string expected = fmt::format("{}", translator.in().least);
            if (!translator.in().fixed()) {
                expected += fmt::format(" to {}", translator.in().most);
            }
            if (longest > translator.in().most) {
                expected += fmt::format(" (or {}, as read back)", longest);
            }
            fail(node->source(),
                 fmt::format("the {} has {} bytes, not {}", describe_subject(record), expected, record.size));
        }
    }

    std::map<std::string, std::vector<Word>, std::less<>> read_words(const toml::table& table) const {
        std::map<std::string, std::vector<Word>, std::less<>> lists;
        const toml::node* const node = table.get("words");
        if (node == nullptr) {
            return lists;
        }
        if (!node->is_table()) {
            fail(node->source(), R"("words": expected lists, each under [record.words.NAME])");
        }
        for (const auto& [name, list] : in_order(*node->as_table())) {
            if (!list->is_table()) {
                fail(list->source(), "expected words with their numbers, such as { drop = 0, punt = 1 }");
            }
            for (const auto& [word, value] : in_order(*list->as_table())) {
                const toml::value<std::int64_t>* const code = value->as_integer();
                if (code == nullptr) {
                    fail(value->source(), fmt::format("\"{}\": expected the number that it stands for", word->str()));
                }
                lists[std::string{name->str()}].push_back(
                    {std::string{word->str()}, static_cast<std::uint64_t>(code->get())});
            }
        }
        return lists;
    }

    // The bits of the value, from the lowest on, of positions that stand in the order of the record.
    std::vector<Span> read_bits(const toml::table& table, Style style) const {
        const toml::node* const at = table.get("at");
        if (at == nullptr) {
            fail(table.source(), R"(expected "at", the position, such as "L24-27")");
        }
        std::vector<Span> bits = located(at->source(), [&] { return parse_positions(text(*at, "at")); });
        const std::string order = text(table, "order");
        if (!order.empty() && order != "little" && order != "big") {
            fail(table.get("order")->source(),
                 R"("order": expected "little" (lowest bits first) or "big" (highest bytes first))");
        }
        if (order.empty() ? !keeps_byte_order(style) : order == "little") {
            return bits;
        }
        std::vector<Span> turned;
        for (const Span span : bits) {
            if (span.first_bit % 8 != 0 || span.width % 8 != 0) {
                fail(at->source(), "bits whose highest byte stands first: expected whole bytes");
            }
            for (unsigned byte = 0; byte < span.width / 8U; ++byte) {
                turned.insert(turned.begin(), {static_cast<std::uint16_t>(span.first_bit + 8 * byte), 8});
            }
        }
        return turned;
    }

    void check_name(const toml::node& node, const std::string& name) const {
        const auto forbidden = [](char c) {
            const auto value = static_cast<unsigned char>(c);
            return value <= 0x20 || value == 0x7f || c == '=' || c == '"';
        };
        if (std::ranges::any_of(name, forbidden)) {
            fail(node.source(), "\"name\": expected a name without spaces, control characters, = and quotes");
        }
        if (is_position(name)) {
            fail(node.source(), fmt::format("\"{}\" is a position: expected another name", name));
        }
    }

    Field read_field(const toml::table& table,
                     const std::map<std::string, std::vector<Word>, std::less<>>& lists) const {
        expect_members(table, {"name", "at", "as", "order", "words", "union"}, "a field");
        Field field;
        field.name = text(table, "name");
        if (field.name.empty()) {
            fail(table.source(), "expected \"name\"");
        }
        check_name(*table.get("name"), field.name);
        const std::string list = text(table, "words");
        const std::string as = text(table, "as");
        if (!as.empty()) {
            const std::optional<Style> style = style_of(as);
            if (!style) {
                fail(table.get("as")->source(),
                     fmt::format("there is no \"{}\": expected number, signed, hex, flag, label, ipv4, ipv6, mac, "
                                 "bytes or words",
                                 as));
            }
            field.style = *style;
        }
        if ((!list.empty() && as.empty()) || field.style == Style::words) {
            field.style = Style::words;
            if (list.empty()) {
                fail(table.source(), "expected \"words\", the name of a list under [record.words]");
            }
            const auto found = lists.find(list);
            if (found == lists.end()) {
                fail(table.get("words")->source(), fmt::format("there is no [record.words.{}] in this record", list));
            }
            field.words = found->second;
        } else if (!list.empty()) {
            fail(table.get("words")->source(), fmt::format(R"("words" goes with as = "words", not "{}")", as));
        }
        field.bits = read_bits(table, field.style);
        if (as.empty() && list.empty()) {
            field.style = field.width() == 1 ? Style::flag : field.width() <= 64 ? Style::number : Style::hex;
        }
        located(table.source(), [&] { check_style(field.style, field.bits); });
        check_words(table, field);
        field.in_union = text(table, "union");
        return field;
    }

    // A word's number may be negative: it is then that of a signed field.
    void check_words(const toml::table& table, Field& field) const {
        const std::uint64_t most = ~std::uint64_t{0} >> (64 - std::clamp(field.width(), 1U, 64U));
        for (Word& word : field.words) {
            const auto as_signed = static_cast<std::int64_t>(word.value);
            const bool fits =
                as_signed < 0 ? as_signed >= -static_cast<std::int64_t>(most / 2) - 1 : word.value <= most;
            if (!fits) {
                fail(table.source(), fmt::format("{} has {} bit{}: its word {} = {} does not fit", field.name,
                                                 field.width(), field.width() == 1 ? "" : "s", word.word, as_signed));
            }
            word.value &= most;
        }
    }

    void read_fields(const toml::table& table, Record& record) const {
        const toml::node* const node = table.get("fields");
        const toml::array* const array = node == nullptr ? nullptr : node->as_array();
        if (array == nullptr) {
            fail(node == nullptr ? table.source() : node->source(),
                 R"(expected "fields", a list such as [{ name = "vqi", at = "L4-5" }])");
        }
        const auto lists = read_words(table);
        std::vector<const Field*> owners(8 * record.size, nullptr);
        record.fields.reserve(array->size());
        for (const toml::node& one : *array) {
            if (!one.is_table()) {
                fail(one.source(), R"(expected a field such as { name = "vqi", at = "L4-5" })");
            }
            Field field = read_field(*one.as_table(), lists);
            if (record.find(field.name) != nullptr) {
                fail(one.source(), fmt::format("there is another \"{}\": expected each name once", field.name));
            }
            check_bits(one, field, record);
            record.fields.push_back(std::move(field));
            claim(one, record.fields.back(), owners);
        }
    }

    void check_bits(const toml::node& node, const Field& field, const Record& record) const {
        std::vector<bool> own(8 * record.size);
        for (const Span span : field.bits) {
            for (unsigned bit = span.first_bit; bit < span.first_bit + span.width; ++bit) {
                if (bit >= own.size()) {
                    fail(node.source(), fmt::format("{} at {} lies outside the {}, which has {} bytes", field.name,
                                                    positions_text(field.bits), describe_subject(record), record.size));
                }
                if (own[bit]) {
                    fail(node.source(), fmt::format("{} has L{}.{} twice", field.name, bit / 8, bit % 8));
                }
                own[bit] = true;
            }
        }
    }

    // Each bit belongs to one name, or to names of one union.
    void claim(const toml::node& node, const Field& field, std::vector<const Field*>& owners) const {
        for (const Span span : field.bits) {
            for (unsigned bit = span.first_bit; bit < span.first_bit + span.width; ++bit) {
                const Field*& owner = owners[bit];
                if (owner != nullptr && (field.in_union.empty() || field.in_union != owner->in_union)) {
                    fail(node.source(), fmt::format("{} and {} both have L{}.{}: expected that only of names of the "
                                                    "same \"union\"",
                                                    owner->name, field.name, bit / 8, bit % 8));
                }
                owner = &field;
            }
        }
    }

    Requirement read_requirement(const toml::node& node, const Record& record, const std::string& word) const {
        const auto equals = word.find('=');
        if (equals == std::string::npos) {
            fail(node.source(), fmt::format("\"{}\": expected NAME=VALUE or POSITION=VALUE", word));
        }
        const std::string name = word.substr(0, equals);
        Field bits;
        if (const Field* const named = record.find(name)) {
            bits = *named;
        } else if (is_position(name)) {
            bits = {name, parse_positions(name), Style::hex};
        } else {
            fail(node.source(), fmt::format("there is no name \"{}\" in this record", name));
        }
        check_bits(node, bits, record);
        return {word, bits.bits, located(node.source(), [&] { return parse_value(bits, word.substr(equals + 1)); })};
    }

    std::vector<Requirement> read_together(const toml::node& node, const Record& record) const {
        const std::string all = text(node, "when");
        std::vector<Requirement> together;
        for (std::size_t at = all.find_first_not_of(' '); at != std::string::npos;) {
            const std::size_t end = std::min(all.find(' ', at), all.size());
            together.push_back(read_requirement(node, record, all.substr(at, end - at)));
            at = all.find_first_not_of(' ', end);
        }
        if (together.empty()) {
            fail(node.source(), "expected NAME=VALUE");
        }
        return together;
    }

    // when = { "next.v4" = "kind=ipv4" }: of the name, and of all that begin with it.
    void read_conditions(const toml::table& table, Record& record) const {
        const toml::node* const node = table.get("when");
        if (node == nullptr) {
            return;
        }
        if (!node->is_table()) {
            fail(node->source(), R"("when": expected names with conditions, such as { "next.v4" = "kind=ipv4" })");
        }
        for (const auto& [key, value] : in_order(*node->as_table())) {
            Condition condition;
            if (const toml::array* const alternatives = value->as_array()) {
                for (const toml::node& one : *alternatives) {
                    condition.push_back(read_together(one, record));
                }
            } else {
                condition.push_back(read_together(*value, record));
            }
            bool used = false;
            for (Field& field : record.fields) {
                const std::string_view name = key->str();
                const std::string_view rest =
                    std::string_view{field.name}.substr(std::min(name.size(), field.name.size()));
                if (field.name.starts_with(name) && (rest.empty() || rest.front() == '.' || rest.front() == '[')) {
                    field.when = condition;
                    used = true;
                }
            }
            if (!used) {
                fail(key->source(),
                     fmt::format(R"(there is no name "{}", and none that begins with "{}.")", key->str(), key->str()));
            }
        }
    }

    Record read_record(const toml::table& table) const {
        expect_members(table, {"table", "translator", "role", "bytes", "fields", "when", "words"}, "a record");
        Record record;
        read_subject(table, record);
        read_size(table, record);
        read_fields(table, record);
        read_conditions(table, record);
        return record;
    }

    const std::string& source_;
};

}  // namespace

Names Names::parse(std::string_view text, const std::string& source) {
    Names names;
    names.source_ = source;
    try {
        names.records_ = Reader{source}.read(toml::parse(text, source));
    } catch (const toml::parse_error& error) {
        const toml::source_position at = error.source().begin;
        std::string message{error.description()};
        std::ranges::replace(message, '\n', ' ');
        throw Error{fmt::format("{}:{}:{}: {}", source, at.line, at.column, message)};
    }
    return names;
}

Names Names::read(const std::string& path) {
    std::ifstream file{path, std::ios::binary};
    const std::string text{std::istreambuf_iterator<char>{file}, {}};
    if (!file) {
        throw Error{fmt::format("cannot read the names file {}: {}", path, std::generic_category().message(errno))};
    }
    return parse(text, path);
}

}  // namespace names
