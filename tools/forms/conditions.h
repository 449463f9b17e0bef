// Conditions in words, as short as they can be said.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "forms/forms.h"

namespace forms {

// Answers that hold at once, and a choice between several such.
using Answers = std::vector<std::pair<std::size_t, bool>>;
using Cover = std::vector<Answers>;

// "L0.5 and L0.6 clear, L1.0 set"; empty if there is no condition.
std::string when(const Forms& forms, const Form& form);

// What of the answers must be asked for, so that exactly the records of `wanted` are left: as few as possible.
Cover simplest(const Forms& forms, const Cover& answers, Node wanted);
std::string in_words(const Forms& forms, const Cover& cover);

// The values of a field that a condition of this field alone allows: "3 or 4", "1, or 65 to 255".
using Range = std::pair<std::uint32_t, std::uint32_t>;
std::vector<Range> values(const Forms& forms, Node condition, const std::vector<BitId>& field);
std::string in_words(const std::vector<Range>& ranges, unsigned width);

// The name of a bit, whichever space it is of: L3.4, P0.0, T.5, K7.3, M.12.
std::string bit_name(const Translator& translator, BitId id);

}  // namespace forms
