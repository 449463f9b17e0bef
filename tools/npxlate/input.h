// What the tool reads: one record as hex, from the command line, a file or standard input.
#pragma once

#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "npxlate/hex.h"

namespace tool {

// Where a command's record comes from, as its user says.
struct RecordSource {
    std::vector<std::string> hex;
    std::string file;
};

// Gives the command the arguments that fill it: [HEX...] and --file.
void add_record_source(CLI::App& command, RecordSource& source);

// The record: from the file if one is named, from standard input if there is no hex or just "-", else from the hex.
// Throws WrongInput for bad hex and for a file that cannot be read.
Bytes read_record(const RecordSource& source);

}  // namespace tool
