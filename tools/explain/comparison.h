// Two records compared: what comes back of a record, and two records of the same kind.
#pragma once

#include "explain/explain.h"

namespace explain {

// What became of bits of a logical record on the way to the physical record and back.
struct Returned {
    enum Kind {
        restored,       // stands where it stood
        byte_reversed,  // stands there with its bytes in reverse order
        moved,          // stands elsewhere
        inverted,
        computed,  // a function of it came back
        lost,      // was 1 and did not come back anywhere
        invented,  // is 1 and came from nowhere in the record
        constant,  // is 1 whatever it was, and was 1
        zero,      // was 0, came from nowhere and is 0
    };
    Kind kind;
    std::vector<Span> at{};    // lost: in the record that went in; all others: in the record that came back
    std::vector<Span> from{};  // moved, inverted and computed: in the record that went in; lost: in the record that
                               // came back, the values that depend on it
    bool reversed = false;     // moved: with its bytes in reverse order
    std::string text{};        // computed: the sentence
};
std::string_view to_string(Returned::Kind kind);

struct RoundTrip {
    Account forward;
    std::optional<Account> reverse;  // none if the record was rejected on its way out
    std::vector<Returned> returned;
};

// Nothing is returned if one of the two rejects its record.
RoundTrip round_trip(const Translator& result, const Translator& reverse, std::span<const std::uint8_t> record,
                     std::uint32_t reverse_argument = 0);

// A difference between two records that go in, or between the two that come out.
struct Difference {
    std::vector<Span> at{};
    std::vector<Span> other_side{};  // where it shows, or where it comes from
    bool decides = false;            // of records that go in: takes the record through other layouts
    Fate fate = Fate::carried;       // of records that go in
};

struct Comparison {
    Account first;
    Account second;
    bool same_way = true;  // records of one form
    std::vector<Difference> in;
    std::vector<Difference> out;
};

// Throws std::invalid_argument if the lengths differ.
Comparison compare(const Translator& translator, std::span<const std::uint8_t> first,
                   std::span<const std::uint8_t> second, std::uint32_t argument = 0);

}  // namespace explain
