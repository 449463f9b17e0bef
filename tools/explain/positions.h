// Positions in words: L3.4, L3.4-2, L12, L12-15.
#pragma once

#include <set>

#include "explain/explain.h"

namespace explain {

using forms::in_letter;
using forms::out_letter;

// Neighbouring bits as spans, and back.
std::vector<Span> spans_of(const std::set<std::uint16_t>& bits);
std::set<std::uint16_t> bits_of(const std::vector<Span>& spans);

// The span in pieces that can be named: whole bytes, and bits of one byte.
std::vector<Span> nameable(Span span);

std::string position(char letter, Span nameable_span);
std::vector<std::string> positions(char letter, const std::vector<Span>& spans);
// With spaces between.
std::string position_list(char letter, const std::vector<Span>& spans);

// What stands there: whole bytes as hex, in their order; bits from the highest down, after 0b if there are several.
// Bytes that the record does not have count as zero.
std::string value_at(const Bytes& record, const std::vector<Span>& spans);

bool bit_of(const Bytes& record, std::size_t bit);

}  // namespace explain
