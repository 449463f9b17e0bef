// Where the bits of a physical record come from.
#pragma once

#include <string>
#include <vector>

#include "audit/bits.h"
#include "audit/store.h"
#include "catalogue/catalogue.h"

namespace audit {

// Bits of the physical record that belong together, and what they are made of.
struct Origin {
    struct Link {
        std::uint16_t to;
        std::uint16_t from;
        bool inverted;
    };

    std::vector<npxlate::Span> to{};
    std::vector<npxlate::Span> from{};  // bits of the logical record; none for constants and cleared bits
    std::string text{};                 // in words
    std::string name{};                 // of the field, where that is settled
    std::vector<Link> links{};          // of a value that is only moved
    bool value = false;                 // one value, rather than a constant or nothing at all

    bool operator==(const Origin& other) const;
};

// For every bit of the record that this logical record gives. The logical record may be longer than is read.
std::vector<Origin> origins(const catalogue::Translator& result, ByteSpan logical);

// Those that hold one of the bits.
std::vector<Origin> origins_of(const std::vector<Origin>& all, const Bits& bits);

// The number that stands in the logical record when these bits stand in the physical one, as text; empty if the value
// is not moved as it is.
std::string logical_value(const Origin& origin, ByteSpan physical);

}  // namespace audit
