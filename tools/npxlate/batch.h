// The two forms of a batch. Both throw NotDone if something was not translated, after all else was.
#pragma once

#include "catalogue/catalogue.h"
#include "io/input.h"
#include "names/names.h"
#include "npxlate/output.h"
#include "npxlate/progress.h"
#include "npxlate/translation.h"

namespace tool {

using io::InputStream;
using io::LineReader;

// JSON Lines: an entry a line in, an entry a line out. Without names, "fields" can only name positions.
void translate_json_lines(const names::Names* names, InputStream& input, Output& output, Progress& progress);

// Records of one translator and of that many bytes each, one behind the other.
void translate_raw(const catalogue::Translator& translator, std::size_t length, const FourthArgument& argument,
                   InputStream& input, Output& output, Progress& progress);

}  // namespace tool
