// What the card itself changes, and is therefore not compared: "13:P0.3,P12-15".
#pragma once

#include <array>
#include <string_view>

#include "audit/bits.h"

namespace audit {

class Ignored {
public:
    // Throws std::invalid_argument, saying what would be right.
    void add(std::string_view text);
    // One such text a line; "#" begins a comment.
    void add_lines(std::string_view text);

    const Bits& of_table(unsigned table) const { return bits_.at(table); }

private:
    std::array<Bits, NPXLATE_TABLE_COUNT> bits_{};
};

}  // namespace audit
