// Records of the samples of a translator.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/catalogue.h"

namespace catalogue {

// A record of that sample, of the greatest length that the translator takes. What the sample leaves open is filled
// from the seed; equal seeds give equal records. Throws std::invalid_argument if what the sample holds cannot be read.
std::vector<std::uint8_t> example(const Translator& translator, const Sample& sample, std::uint64_t seed);

}  // namespace catalogue
