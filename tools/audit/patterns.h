// Findings that are alike.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audit/attribute.h"
#include "audit/audit.h"

namespace audit {

enum class FindingKind : std::uint8_t {
    different,
    missing,
    unexpected,
    refused,
    duplicate_programmed,
    duplicate_held,
    unreadable,
    moving,
};
std::string_view to_string(FindingKind kind);

struct Pattern {
    FindingKind kind{};
    unsigned table = 0;      // of all but unreadable ones
    std::uint16_t file = 0;  // of unreadable ones
    std::uint64_t count = 0;
    std::uint32_t reason = 0;      // of refused and unreadable ones, in Result::reasons
    bool several_reasons = false;  // which differ in numbers only

    // Of different ones.
    Bits always{};                     // bits that differ in all of them
    Bits ever{};                       // bits that differ in one of them
    Bits within{};                     // the fields in which they do not all differ in the same bits
    bool rest = false;                 // what belongs to no other pattern of the table
    std::uint8_t programmed_size = 0;  // if the held records are of another size
    std::uint8_t held_size = 0;
    Explained explained = Explained::no;
    std::uint64_t with_others = 0;  // further entries that differ in these bits and in others
    Bits programmed_and{};          // bits that are set in all programmed records, and in one of them
    Bits programmed_or{};
    Bits held_and{};
    Bits held_or{};
    std::vector<Origin> origins{};  // of the differing bits, as the entries that are listed first have them
    bool exact() const { return always == ever; }

    // Of those with a key: the lowest and the highest.
    Bytes lowest{};
    Bytes highest{};

    // Which they are, in their order; as many as were asked for. An index of Result::different, refused, duplicates or
    // unreadable; of others the key, in Result::absent if it is marked.
    static constexpr std::uint64_t in_absent = std::uint64_t{1} << 32U;
    std::vector<std::uint64_t> members{};
};

// The strongest first.
std::vector<Pattern> find_patterns(const Result& result, const Settings& settings, std::size_t most_members,
                                   bool moving);

// The bits in which a held record differs from what was programmed, in every dump if there is such a bit.
Bits differing(const Result& result, const Settings& settings, const Different& one);

// The pattern in words: "table 13: 4,102 entries differ in P0.3 only". The second names what stands with it, if
// anything.
std::string sentence(const Result& result, const Pattern& pattern);
std::string remark(const Pattern& pattern);

// 4102 as "4,102".
std::string grouped(std::uint64_t number);

// "P0.3, P12-15"
std::string position_text(const Bits& bits);

}  // namespace audit
