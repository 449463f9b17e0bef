// The two forms of a batch. Both throw NotDone if something was not translated, after all else was.
#pragma once

#include <span>

#include "catalogue/catalogue.h"
#include "io/input.h"
#include "npxlate/entry_translator.h"
#include "npxlate/output.h"
#include "npxlate/progress.h"
#include "npxlate/translation.h"

namespace tool {

using io::InputStream;

// JSON Lines: an entry a line in, an entry a line out.
void translate_json_lines(const EntryTranslator::Options& options, InputStream& input, Output& output, unsigned threads,
                          Progress& progress);

// A record of an entry of binary records.
struct RawRecord {
    const catalogue::Translator* translator;
    std::size_t length;
};

// What stands in the place of a record that is rejected: zeros, as many as a record has, or nothing.
enum class Rejected { zeros, omitted };

// Entries one behind the other, each of these records, one behind the other. What comes out has the same order.
void translate_raw(std::span<const RawRecord> entry, Rejected rejected, const FourthArgument& argument,
                   InputStream& input, Output& output, unsigned threads, Progress& progress);

}  // namespace tool
