// Choosing the records with which one set of forms is tried.
#pragma once

#include <cstdint>
#include <vector>

#include "forms/forms.h"
#include "vectors/vectors.h"

namespace vectors {

// What a translator looks at in one call.
struct Sample {
    Bytes in;
    Bytes out;  // the buffer before the call
    std::uint32_t argument = 0;
    std::uint16_t tx_adj_key_max = 0;

    forms::Given given() const { return {in, out, argument, tx_adj_key_max}; }
};

// Records that decide the forms: each form is reached; each bit that an output depends on is seen to decide it both
// ways, and to be no other bit of the records; and each bit that a decision depends on likewise, on records for which
// the decision makes a difference.
std::vector<Sample> choose(const forms::Forms& forms, std::size_t in_bytes, std::size_t out_bytes);

}  // namespace vectors
