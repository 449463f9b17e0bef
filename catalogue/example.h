// Records that take a translator through its variants.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "catalogue/catalogue.h"

namespace catalogue {

// A record of that variant, of the greatest length that the translator takes. What the variant leaves open is filled
// from the seed; equal seeds give equal records. Throws std::invalid_argument if what the variant holds cannot be read.
std::vector<std::uint8_t> example(const Translator& translator, const Variant& variant, std::uint64_t seed);

// Whether the record holds what the variant holds.
bool satisfies(std::span<const std::uint8_t> record, const Translator& translator, const Variant& variant);

}  // namespace catalogue
