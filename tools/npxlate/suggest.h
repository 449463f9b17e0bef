// What somebody may have meant who typed what there is not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

// The nearest of the candidates, best first and few: those that begin with what was typed, then those that have it as a
// part, whatever stands between their words, then those that are spelt like it.
std::vector<std::string> nearest(std::string_view typed, const std::vector<std::string>& candidates);

// "; did you mean a, b or c?"; nothing without a candidate that is near.
std::string did_you_mean(std::string_view typed, const std::vector<std::string>& candidates);

}  // namespace tool
