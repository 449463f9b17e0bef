// What a translator takes, in words, for the messages that refuse something.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "npxlate/hex.h"

namespace tool {

// "a physical record of 20 bytes with a type bit (P0.7-5, P1.6) set": the one place from which all messages have it.
std::string what_is_taken(const catalogue::Translator& translator);

// The lengths that a record for the translator may have. Besides those of the catalogue these are the length of the
// record that the reverse of the same table fills, where that is the longer one (what was read back can go in again),
// and that of a form of the record that is shorter than the other.
std::vector<catalogue::Lengths> accepted_lengths(const catalogue::Translator& translator);

// Throws WrongInput for any other length.
void check_length(const catalogue::Translator& translator, std::size_t length);

// The value of --length. Throws WrongInput for what is no number, and for any other length.
std::size_t parse_length(const catalogue::Translator& translator, std::string_view text);

// Throws WrongInput unless the record has a length that the translator takes in its form. A form that is shorter than
// the translator's longest gets zeros behind it, which are not read.
void check_record(const catalogue::Translator& translator, Bytes& record);

}  // namespace tool
