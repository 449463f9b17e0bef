// What a translator does with its records, told bit by bit, from the forms of the translator: the exact conditions, and
// what becomes of every bit under each.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "forms/forms.h"

namespace explain {

using Bytes = std::vector<std::uint8_t>;
using catalogue::Translator;
using npxlate::Span;  // bits of a record, counted from bit 0 of byte 0 upwards

enum class Kind {
    copied,    // bits that keep their order
    reversed,  // bytes whose order is reversed
    inverted,  // bits, each inverted
    label,     // the 20 bits of a label, most significant first on the physical side
    constant,
    computed,    // what the text says
    cleared,     // zero, because nothing is written there
    left_alone,  // as the caller had it
};
std::string_view to_string(Kind kind);

// One bit of the record written comes from one bit of the record read.
struct Link {
    std::uint16_t to;
    std::uint16_t from;
    bool inverted = false;
};

// Bits of the record written that share a fate.
struct Field {
    Kind kind{};
    std::vector<Span> to{};
    std::vector<Span> from{};   // moved: where it comes from; computed: what it depends on
    std::string text{};         // in words
    std::string name{};         // what the field is called; empty where that is not settled
    std::string title{};        // of the layout that says so; empty for what code does, or if it has none
    bool combines = false;      // ORed into what other fields give
    std::vector<Link> links{};  // of moved bits
};

// What code does to the record that was handed in to be read.
struct InputChange {
    std::vector<Span> bits{};
    std::string text{};
    bool operator==(const InputChange&) const = default;
};

// ---- The layouts of a translator

// A layout that a translator places, or values that it puts by code; a later section overwrites an earlier one.
struct Section {
    std::string title{};  // empty for code, and for layouts that have none
    bool by_code = false;
    std::string when{};  // which records get it; empty: all
    npxlate::trace::Node condition = npxlate::trace::always;
    std::vector<Field> fields{};
    std::vector<InputChange> input_changes{};
};

// What a record of one form gets in the end.
struct FormLayout {
    const forms::Form* form = nullptr;
    std::string when{};                   // empty: every record
    std::vector<std::size_t> sections{};  // those that it gets, by their number
    std::vector<Field> fields{};
    std::vector<InputChange> input_changes{};
};

struct LayoutTable {
    const forms::Forms* forms = nullptr;
    std::vector<Section> sections{};  // in the order of the code
    std::vector<FormLayout> all{};
};

// The sections alone.
std::vector<Section> sections_of(const forms::Forms& forms);

// For a length of the record that goes in; without one, the longest that the translator takes.
LayoutTable layout_of(const Translator& translator, std::optional<std::int32_t> length = {});

// ---- One record

struct OutBit {
    Kind kind = Kind::cleared;
    bool value = false;
    std::vector<Link> links{};          // moved: from these bits, ORed
    std::vector<std::uint16_t> from{};  // computed: the bits of the record on which the value depends
};

enum class Fate {
    carried,  // shows in the record that comes out
    steered,  // was only looked at: it decides, or a value depends on it that it does not change in this record
    dropped,  // makes no difference at all
};
std::string_view to_string(Fate fate);

struct InBit {
    Fate fate = Fate::dropped;
    bool value = false;
    bool decides = false;             // the other value takes the record through other layouts
    std::vector<std::uint16_t> to{};  // the bits of the record written that change with it
};

struct Account {
    const Translator* translator = nullptr;
    std::uint32_t argument = 0;
    const forms::Forms* forms = nullptr;
    const forms::Form* form = nullptr;  // the record's
    std::string when{};                 // the condition of the form; empty: every record
    std::vector<std::string> titles{};  // of the layouts placed that have one, in that order
    Bytes in{};
    Bytes in_after{};  // differs from `in` for translators that change it
    Bytes out{};
    std::int32_t status = 0;
    std::optional<std::uint32_t> length{};  // the out-length, if it was stored
    std::vector<OutBit> out_bits{};
    std::vector<InBit> in_bits{};
    std::vector<Field> fields{};  // the same as out_bits, put together
    std::vector<InputChange> input_changes{};
};

// The record must not be shorter than the translator takes (std::invalid_argument otherwise). The argument is the entry
// type or byte 7 of the logical key, for those that take a fourth argument.
Account account(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument = 0);

}  // namespace explain
