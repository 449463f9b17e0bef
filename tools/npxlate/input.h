// What the tool reads: a record as hex or binary, from the command line, a file or standard input.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "io/input.h"
#include "npxlate/command_line.h"
#include "npxlate/hex.h"

namespace tool {

// Where a command's records come from, as its user says.
struct RecordSource {
    std::vector<std::string> hex;
    std::vector<std::string> files;
    std::string words;
    Command command;
    Option hex_option;
    Option file_option;
    Option words_option;
};

// Gives the command the arguments that fill it: [HEX...], --file and --words.
void add_record_source(Command command, RecordSource& source);

// The record: from the file if one is named, from standard input if there is no hex or just "-", else from the hex.
// Throws WrongInput for bad hex and for a file that cannot be read.
Bytes read_record(const RecordSource& source);

// The same for two records. Each is an argument, "-" or a --file, in the order in which they were given.
void add_record_pair_source(Command command, RecordSource& source);
std::pair<Bytes, Bytes> read_record_pair(const RecordSource& source);

// Tells a user at a terminal that the input is waited for.
void note_waiting(const io::InputStream& input, std::string_view what);

}  // namespace tool
