// What the tool writes: results to standard output or a file, notes and errors to standard error.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "io/output.h"

namespace tool {

// Members in the order in which they are added.
using Json = nlohmann::ordered_json;

using io::Output;
using io::print;

// JSON as people and programs read it: indented, with a line end. Bytes that are no UTF-8 are replaced.
void print_json(const Json& json);

// "npxlate: error: MESSAGE" and "npxlate: note: MESSAGE" on standard error, if that takes them.
void report(std::string_view message);
void note(std::string_view message);

// What the user typed, for a message: cut when it is long, and without control characters.
std::string printable(std::string_view text);

// Whether to colour what goes to that stream: to a terminal that can, unless NO_COLOR is set.
bool colours(std::FILE* stream);

}  // namespace tool
