// From the bits of a form to fields: the rows of layouts, the values that code puts, and what is left of either where
// something else was written over a part of it.
#pragma once

#include <vector>

#include "explain/explain.h"

namespace explain {

// What becomes of the first `bits` bits of the record that comes out. The values are left for a record to give.
std::vector<OutBit> out_bits(const forms::Forms& forms, const forms::Form& form, std::size_t bits);

// The same, put together, each bit in one field.
std::vector<Field> fields_of(const forms::Form& form, const std::vector<OutBit>& bits);

// What one step of a form does by itself, whatever is written over it afterwards.
std::vector<Field> fields_of(const npxlate::trace::Step& step);

// Changes of the record that goes in.
std::vector<InputChange> input_changes(const forms::Form& form);

}  // namespace explain
