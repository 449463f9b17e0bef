// The catalogue of everything the library exports as a translator: what the tool, the tests and the benchmarks know
// about each. One entry per translator, in one file per family.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <npxlate/npxlate.h>

namespace catalogue {

enum class Role { key, result, reverse };

// The lengths that a record may have; for all but a few translators just one.
struct Lengths {
    std::size_t least;
    std::size_t most;

    constexpr Lengths(std::size_t exactly) : least{exactly}, most{exactly} {}  // NOLINT(google-explicit-constructor)
    constexpr Lengths(std::size_t at_least, std::size_t at_most) : least{at_least}, most{at_most} {}

    constexpr bool fixed() const { return least == most; }
    constexpr bool allows(std::size_t length) const { return length >= least && length <= most; }
    bool operator==(const Lengths&) const = default;
};

// What a caller must know about a translator beyond the common contract.
enum class Trait : unsigned {
    changes_input = 1,     // writes into the record that goes in
    keeps_length = 2,      // does not store the out-length
    keeps_buffer = 4,      // does not clear the record that comes out, or not all of it
    takes_type = 8,        // the reverse of table 52: a pointer to the entry type as fourth argument
    takes_key = 16,        // the reverse of table 92: the logical key as fourth argument
    checks_length = 32,    // returns 22 for a length that it does not take
    rejects_records = 64,  // returns a status other than 0 for some records
    hides_failures = 128,  // returns 0 even for a record that it rejects: only the out-length is not stored
};

inline constexpr Trait all_traits[] = {
    Trait::changes_input, Trait::keeps_length,  Trait::keeps_buffer,    Trait::takes_type,
    Trait::takes_key,     Trait::checks_length, Trait::rejects_records, Trait::hides_failures,
};

// A hand-picked kind of record for tests and measurements: bits and bytes that it must hold, such as "L0.5=0 L0.6=1
// L8-11=3" (values of several bytes little-endian); everything else may hold anything. What a translator does with all
// records is for its forms to say.
struct Sample {
    const char* name;
    const char* holds = "";
    std::uint32_t argument = 0;  // the entry type, or byte 7 of the logical key, for those that take a fourth argument
};

struct Translator {
    std::string_view name;
    Role role;
    Lengths logical;
    Lengths physical;
    // One of them, as the role and the traits say.
    npxlate_result_fn* forward = nullptr;
    npxlate_reverse_fn* reverse = nullptr;  // also the one result translator that has no out-length argument
    npxlate_reverse_by_type_fn* reverse_by_type = nullptr;
    npxlate_reverse_by_key_fn* reverse_by_key = nullptr;
    unsigned traits = 0;
    std::vector<Sample> samples{{"every record"}};
    std::string_view family{};

    bool has(Trait trait) const { return (traits & static_cast<unsigned>(trait)) != 0; }
    const Lengths& in() const { return role == Role::reverse ? physical : logical; }
    const Lengths& out() const { return role == Role::reverse ? logical : physical; }

    // For the families' files.
    template <typename... Traits>
    Translator with(Traits... more) && {
        traits |= (static_cast<unsigned>(more) | ...);
        return std::move(*this);
    }
    Translator with_samples(std::vector<Sample> list) && {
        samples = std::move(list);
        return std::move(*this);
    }
};

// Every translator, family by family.
std::span<const Translator> translators();

// By exported name; null if there is none of that name.
const Translator* find(std::string_view name);

// The translator in the dispatch slot of a table id (0 to 127).
const Translator& of_table(unsigned table, Role role);

// The table ids in whose slots the translator stands; none for those reached by name.
std::vector<unsigned> tables_of(const Translator& translator);

// What a table holds, in words: "receive adjacency". What a translator translates: its table's title, those of all its
// tables, or its own if it stands in none.
std::string_view title_of_table(unsigned table);
std::string title(const Translator& translator);

std::string_view to_string(Role role);

// "changes_input" and so on, and the same in words that follow upon a translator's name.
std::string_view to_string(Trait trait);
std::string_view words(Trait trait);

// "NPXLATE_OK" and so on, and what the status says.
std::string_view status_name(std::int32_t status);
std::string_view status_words(std::int32_t status);

// The families' own lists, each in its file.
std::vector<Translator> frame();
std::vector<Translator> adjacency();
std::vector<Translator> oam();
std::vector<Translator> route();
std::vector<Translator> mcast();
std::vector<Translator> l2vpn();
std::vector<Translator> subscriber();
std::vector<Translator> feature();

Translator forward(std::string_view name, Role role, npxlate_result_fn* function, Lengths logical, Lengths physical);
Translator result_without_length(std::string_view name, npxlate_reverse_fn* function, Lengths logical,
                                 Lengths physical);
Translator reverse(std::string_view name, npxlate_reverse_fn* function, Lengths logical, Lengths physical);
Translator reverse(std::string_view name, npxlate_reverse_by_type_fn* function, Lengths logical, Lengths physical);
Translator reverse(std::string_view name, npxlate_reverse_by_key_fn* function, Lengths logical, Lengths physical);

// NPXLATE_KEY(function, 3, 2): the key translator of that name, its logical and its physical length. Likewise results
// and reverses; all name the logical length first.
#define NPXLATE_KEY(function, ...) ::catalogue::forward(#function, ::catalogue::Role::key, function, __VA_ARGS__)
#define NPXLATE_RESULT(function, ...) ::catalogue::forward(#function, ::catalogue::Role::result, function, __VA_ARGS__)
#define NPXLATE_RESULT_WITHOUT_LENGTH(function, ...) \
    ::catalogue::result_without_length(#function, function, __VA_ARGS__)
#define NPXLATE_REVERSE(function, ...) ::catalogue::reverse(#function, function, __VA_ARGS__)

}  // namespace catalogue
