// The engineer's own names for the positions of logical records, as a names file gives them: which bits a name stands
// for, how its value is written, and for which records it holds. docs/names.md describes the file.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "frame/row.h"
#include "io/error.h"

namespace names {

using Bytes = std::vector<std::uint8_t>;
using npxlate::Span;  // bits of a record, counted from bit 0 of byte 0 upwards

// What cannot be used, in one line that says where it is and what was expected.
struct Error : io::WrongInput {
    using io::WrongInput::WrongInput;
};

// How a value is written.
enum class Style { number, signed_number, hex, flag, label, ipv4, ipv6, mac, bytes, words };
std::string_view to_string(Style style);
std::optional<Style> style_of(std::string_view text);
// The styles of bytes as they stand in the record, first byte first; all others are numbers of the host.
bool keeps_byte_order(Style style);

struct Word {
    std::string word;
    std::uint64_t value = 0;  // of the field's bits
};

// Bits that hold a value.
struct Requirement {
    std::string text;  // as the file has it
    std::vector<Span> bits;
    Bytes value;
};
// Alternatives, each of them requirements that hold together. Empty: for every record.
using Condition = std::vector<std::vector<Requirement>>;

struct Field {
    std::string name;
    std::vector<Span> bits;  // of the value, its lowest bits first
    Style style = Style::number;
    std::vector<Word> words{};  // in the order of the file; the first word of a value is the one that is shown
    std::string in_union{};     // names of the same union may share bits
    Condition when{};

    unsigned width() const;
};

// Throws Error unless values of that width can be written in that style.
void check_style(Style style, std::span<const Span> bits);

// The names of one logical record.
struct Record {
    const catalogue::Translator* translator = nullptr;  // of the record: a key or a result translator
    std::optional<unsigned> table{};                    // empty: the record was named by its translator
    std::size_t size = 0;                               // in bytes
    std::vector<Field> fields{};

    // Null if there is no such name.
    const Field* find(std::string_view name) const;
};

// A names file.
class Names {
public:
    // Throw Error, with file, line and column, for what cannot be read or does not fit its record.
    static Names read(const std::string& path);
    static Names parse(std::string_view text, const std::string& source);

    // Names for the logical record that the translator reads or, as a reverse, writes; null if the file has none. The
    // table decides where a translator stands in several. Throws Error if the file names the translator's record for
    // several tables and no table is given.
    const Record* of(const catalogue::Translator& translator, std::optional<unsigned> table = {}) const;

    // All of them, where no table is given: of the translator itself and of the tables in which it stands.
    std::vector<const Record*> all_of(const catalogue::Translator& translator) const;

    const std::vector<Record>& records() const { return records_; }
    const std::string& source() const { return source_; }

private:
    std::string source_;
    std::vector<Record> records_;
};

// The logical record's translator (a key or result translator) and the longest that the record can be: as long as it is
// read, or as long as the reverse fills it.
const catalogue::Translator* forward_of(const catalogue::Translator& translator, std::optional<unsigned> table = {});
std::size_t longest_record(const catalogue::Translator& forward, std::optional<unsigned> table = {});

// ---- Positions: L3.4, L3.4-2, L12, L12-15, several with spaces between

// Throws Error for anything else. Pieces in the order of the text.
std::vector<Span> parse_positions(std::string_view text);
bool is_position(std::string_view text);
std::string positions_text(std::span<const Span> bits);
// Each bit by itself, in the order of the pieces.
std::vector<std::uint16_t> bits_in_order(std::span<const Span> pieces);

// ---- Values, least significant byte first

// Bits beyond the record count as zero.
Bytes extract(std::span<const std::uint8_t> record, std::span<const Span> bits);
void insert(Bytes& record, std::span<const Span> bits, std::span<const std::uint8_t> value);

std::string format_value(const Field& field, std::span<const std::uint8_t> value);
// Throws Error for text that is no such value and for a value that does not fit.
Bytes parse_value(const Field& field, std::string_view text);

// The field's value in a record, as text.
std::string value_in(const Field& field, std::span<const std::uint8_t> record);

bool holds(const Condition& condition, std::span<const std::uint8_t> record);
std::string to_string(const Condition& condition);

// ---- What the tools show

// A name, or a part of the bits of its value.
struct Mention {
    const Field* field = nullptr;
    unsigned high = 0;  // bits of the value
    unsigned low = 0;

    bool whole() const { return low == 0 && high + 1 == field->width(); }
};

// "vqi", "vqi[11:8]", "flags[3]"
std::string to_string(const Mention& mention);

// What the names say of these bits, in the order of the file. With a record at hand, only names that hold for it.
std::vector<Mention> mentions(const Record& names, std::span<const Span> bits);
std::vector<Mention> mentions(const Record& names, std::span<const Span> bits, std::span<const std::uint8_t> record);

// The same in one line: "nexthop_ip", and with a record "nexthop_ip = 10.0.0.1"; empty for bits without a name.
std::string describe(const Record& names, std::span<const Span> bits);
std::string describe(const Record& names, std::span<const Span> bits, std::span<const std::uint8_t> record);

// The names that hold for the record, in the order of the file.
std::vector<const Field*> fields_of(const Record& names, std::span<const std::uint8_t> record);

// ---- Entries of names

struct Assignment {
    std::string name;  // or a position
    std::string value;
};

// The record with the values put in place. Without names, only positions can be assigned. Throws Error for a name that
// is none (suggesting the nearest), a value that does not fit, a position outside the record, and two assignments to
// one bit.
Bytes entry_from_fields(Bytes record, const Record* names, std::span<const Assignment> assignments);

// The names assigned that do not hold for the record, each with the condition under which it would.
std::vector<std::string> unused_names(const Bytes& record, const Record* names,
                                      std::span<const Assignment> assignments);

// ---- Writing

// The record as the text of a names file.
std::string write(const Record& names);

}  // namespace names
